#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

/// The system calls that change files, as this program makes them: a test sees each of them and may let one go wrong.
/// They are write, pwrite, ftruncate, fsync, fdatasync, rename and unlink, of the program and of its libraries.
/// Syncs succeed without waiting for the disk: no test here pulls the plug, and they are what takes the time.
namespace fileCalls {

enum class Fate {
    Kill, ///< the process is killed before the call
    Tear, ///< the process is killed when the sectors of the first half are written
    Fail  ///< the call does nothing and gives an error
};

/// The `number`-th call from now on, counted from 1, meets its fate.
/// @param error of Fate::Fail, as in errno
void arm(Fate fate, int number, int error = 0);

/// No call goes wrong any more; gives how many there were since arm.
int disarm();

/// One call that did its work.
struct Call {
    enum class Kind {
        Write,
        Resize,
        Sync,
        SyncFolder,
        Rename,
        Remove
    };
    Kind kind;
    ino_t file;              ///< which file, or folder, it was done to
    std::string name;        ///< of Write, Resize, Rename and Remove: path at that time
    std::string newName;     ///< of Rename
    std::uint64_t offset;    ///< of Write; the new size for Resize
    std::vector<char> bytes; ///< of Write
};

/// Notes all calls in `log` until stopRecording.
void record(std::vector<Call>& log);
void stopRecording();

/// From now on flock fails with an error, as on a file system without locks; 0: it works again.
void refuseLocks(int error);

} // namespace fileCalls
