#pragma once

#include "FileDescriptor.h"
#include "FileLock.h"

#include <cstdint>
#include <map>

#include <memory>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

class FormatError;
struct Journal;

/// The bytes of one open file. HDF5 and our own array code share it: both read and write through it, so that there is
/// one lock, one place where errors get their words, and one place that protects the old content of a file.
///
/// Read     serves the file as it was at opening, whatever writers of ours do to it meanwhile, and keeps no lock: see
///          below. A change that a killed writer left behind in the journal is seen as done.
/// Create   locked for other writers, empty file.
/// Append   locked for other writers; bytes below the size at opening are frozen: what is written there is held back in
///          memory until commit, what is written behind goes to the file at once. So whatever happens before the
///          commit, the file stays what it was, with bytes behind its end that nothing refers to.
///
/// What a reader sees of a file that grows. An append puts all values of arrays behind the old end, and never gives the
/// room of old ones to others; what it changes in place are descriptions (superblock, headers, tables of links and
/// attributes), at its commit, with the content lock for itself. So a reader can read values at any time without a
/// lock. Descriptions it must have from one and the same moment: it reads them while it is opening, with the content
/// lock shared, and keeps them in memory. A description that was not read then is read later only if the file is
/// still unchanged, which is looked at under the lock; else that is an error. Hence nothing torn is ever served.
class FileChannel {
public:
    enum class Mode {
        Read,
        Create,
        Append
    };

    /// @throws FormatError that says what the system said
    FileChannel(const std::string& path, Mode mode, const LockSettings& locks);
    ~FileChannel();
    FileChannel(const FileChannel&) = delete;
    FileChannel& operator=(const FileChannel&) = delete;

    /// Reads exactly `size` bytes.
    /// @throws FormatError on an error and beyond the end of the file
    void read(std::uint64_t offset, void* buffer, std::size_t size) const;

    /// The same without the demand: bytes beyond the end read as 0, as HDF5 expects of files that it allocates in.
    void readPadded(std::uint64_t offset, void* buffer, std::size_t size) const;

    /// Descriptions, for HDF5, as readPadded: while a file is read, from what is kept in memory.
    /// @throws FormatError also when they are gone because the file was changed since it was opened
    void readDescription(std::uint64_t offset, void* buffer, std::size_t size);

    /// Values, for HDF5, as readPadded. Those that it reads while a file is opened are of large attributes, which an
    /// append replaces as it does descriptions: so they are kept as well.
    void readValues(std::uint64_t offset, void* buffer, std::size_t size);

    /// Whether the descriptions that are kept have not yet reached the size that they may have.
    bool hasRoomForDescriptions() const;

    /// Ends the opening of a file that is read: gives the content lock back.
    void endOpening() { _opening.reset(); }

    /// Whether another file bears the name, or none.
    bool isReplaced() const;

    /// @throws FormatError
    void write(std::uint64_t offset, const void* buffer, std::size_t size);

    /// The same for HDF5, which cannot close a file that it failed to write: from the first error on everything stays
    /// in memory, as HDF5 expects to read it back, and the error is thrown by the next write and by commit.
    void writeOrPostpone(std::uint64_t offset, const void* buffer, std::size_t size);

    std::uint64_t size() const;

    /// The end of the file may not go below this: 0, or for an appended file, as soon as keepEnd was called, the end
    /// that it had. Otherwise the next append would write over what lay at the old end, which somebody may still read.
    std::uint64_t lowestEnd() const { return _keepsEnd ? _oldSize : 0; }
    void keepEnd() { _keepsEnd = true; }

    /// Makes the file longer, or shorter as far as it is new; errors as in writeOrPostpone.
    void resize(std::uint64_t size);

    /// Everything that was written is on the disk afterwards, for Append with the bytes that were held back: either all
    /// of them or, if the process ends on the way, as soon as the file is opened next.
    /// @throws FormatError; for Append nothing is changed then, unless it says that the change is finished later
    void commit();

    /// From now on writing does nothing, so that HDF5 can close a file that will not be kept.
    void discard() { _isDiscarding = true; }

    /// Gives file and lock back; an appended file whose change was discarded gets its old size back. HDF5 may keep the
    /// object itself for longer, if it could not close the file: it then reads and writes nothing any more.
    void close() noexcept;

    const std::string& path() const { return _path; }

private:
    using Pages = std::map<std::uint64_t, std::vector<unsigned char>>; // by offset of the page

    void open();
    void recover();
    void freeze();
    void cutTail();
    Journal journalOfHeld() const;
    void hold(std::uint64_t offset, const unsigned char* bytes, std::size_t size);
    void postpone(const FormatError& error);
    void patch(std::uint64_t offset, unsigned char* bytes, std::size_t size) const;
    std::size_t readFile(std::uint64_t offset, void* buffer, std::size_t size) const;
    void writeFile(std::uint64_t offset, const void* buffer, std::size_t size);
    void applyHeld();
    std::vector<unsigned char> firstPage() const;
    bool isKept(std::uint64_t offset, std::size_t size) const;
    std::vector<unsigned char> readUnlessChanged(std::uint64_t page);
    void checkStillOurs() const;

    std::string _path;
    Mode _mode;
    LockSettings _locks;
    FileDescriptor _descriptor;
    std::unique_ptr<ContentLock> _opening; // of a reader, until all is opened
    bool _isDiscarding = false;
    bool _keepsEnd = false;
    bool _isTailCut = false; // what was behind the frozen bytes when an appended file was opened is gone
    bool _isDecided = false; // the journal is complete: the change is made, if not by us
    std::string _postponedError;
    std::uint64_t _oldSize = 0;    // of an appended file
    std::uint64_t _frozenSize = 0; // bytes below are held back when written: the old ones or, after an error, all
    Pages _held;
    Pages _descriptions;                // of a file that is read
    std::vector<unsigned char> _origin; // first page of the file as it lay on the disk at opening, see firstPage()
};

/// Folder of a path, "." for a bare name.
std::string folderOf(const std::string& path);

/// Brings the entries of a folder to the disk. Errors are ignored: not every file system can do it.
void syncFolder(const std::string& folder);

/// "open: Permission denied", from errno.
std::string systemWords(const char* call);

} // namespace meridyn::hdf5
