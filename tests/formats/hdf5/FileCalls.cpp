#include "FileCalls.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace fileCalls {

namespace {

struct State {
    bool isArmed = false;
    Fate fate = Fate::Kill;
    int number = 0;
    int error = 0;
    int count = 0;
    std::vector<Call>* log = nullptr;
    int lockError = 0;
};

State state;

void die()
{
    ::kill(::getpid(), SIGKILL);
    for (;;)
        ::pause();
}

/// Whether this call is to fail; does not come back where the process is to be killed before it.
bool mustFail()
{
    if (!state.isArmed || ++state.count != state.number)
        return false;
    if (state.fate != Fate::Fail)
        die();
    errno = state.error;
    return true;
}

/// How many bytes of a write are written: all, or the sectors of the first half before the process is killed.
std::size_t bytesBeforeDeath(std::uint64_t offset, std::size_t size)
{
    constexpr std::uint64_t sector = 512;
    const bool isTorn = state.isArmed && state.fate == Fate::Tear && state.count + 1 == state.number;
    if (!isTorn)
        return size;
    const std::uint64_t end = (offset + size / 2) / sector * sector;
    return end > offset ? end - offset : 0;
}

std::string nameOf(int descriptor)
{
    char name[PATH_MAX] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const ssize_t size = ::readlink(link.c_str(), name, sizeof name);
    return {name, size > 0 ? static_cast<std::size_t>(size) : 0};
}

void note(Call::Kind kind, int descriptor, std::uint64_t offset = 0, const void* bytes = nullptr, std::size_t size = 0)
{
    struct stat status {};
    if (state.log == nullptr || ::fstat(descriptor, &status) != 0)
        return;
    if (kind == Call::Kind::Sync && S_ISDIR(status.st_mode))
        kind = Call::Kind::SyncFolder;
    const char* const begin = static_cast<const char*>(bytes);
    state.log->push_back({kind, status.st_ino, nameOf(descriptor), {}, offset, {begin, begin + size}});
}

void noteName(Call::Kind kind, const char* name, const char* newName)
{
    struct stat status {};
    if (state.log != nullptr && ::stat(name, &status) == 0)
        state.log->push_back({kind, status.st_ino, name, newName, 0, {}});
}

template <class Write>
ssize_t written(std::uint64_t offset, std::size_t size, const Write& write)
{
    const std::size_t allowed = bytesBeforeDeath(offset, size);
    if (allowed < size) {
        write(allowed);
        die();
    }
    return mustFail() ? -1 : write(size);
}

} // namespace

void arm(Fate fate, int number, int error)
{
    state.isArmed = true;
    state.fate = fate;
    state.number = number;
    state.error = error;
    state.count = 0;
}

int disarm()
{
    state.isArmed = false;
    return state.count;
}

void record(std::vector<Call>& log)
{
    state.log = &log;
}

void refuseLocks(int error)
{
    state.lockError = error;
}

void stopRecording()
{
    state.log = nullptr;
}

} // namespace fileCalls

using namespace fileCalls;

#define KEL_REPLACED extern "C" __attribute__((visibility("default")))

KEL_REPLACED ssize_t pwrite(int descriptor, const void* bytes, std::size_t size, off_t offset)
{
    const auto at = static_cast<std::uint64_t>(offset);
    return written(at, size, [&](std::size_t n) {
        note(Call::Kind::Write, descriptor, at, bytes, n);
        return ::syscall(SYS_pwrite64, descriptor, bytes, n, offset);
    });
}

KEL_REPLACED ssize_t write(int descriptor, const void* bytes, std::size_t size)
{
    if (descriptor <= STDERR_FILENO)
        return ::syscall(SYS_write, descriptor, bytes, size);
    const auto at = static_cast<std::uint64_t>(::lseek(descriptor, 0, SEEK_CUR));
    return written(at, size, [&](std::size_t n) {
        note(Call::Kind::Write, descriptor, at, bytes, n);
        return ::syscall(SYS_write, descriptor, bytes, n);
    });
}

// The function has the name of a struct, which a compiler finds odd: so it is everywhere.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wshadow"
KEL_REPLACED int flock(int descriptor, int operation) noexcept
{
    if (state.lockError != 0) {
        errno = state.lockError;
        return -1;
    }
    return static_cast<int>(::syscall(SYS_flock, descriptor, operation));
}
#pragma GCC diagnostic pop

KEL_REPLACED int ftruncate(int descriptor, off_t size) noexcept
{
    if (mustFail())
        return -1;
    note(Call::Kind::Resize, descriptor, static_cast<std::uint64_t>(size));
    return static_cast<int>(::syscall(SYS_ftruncate, descriptor, size));
}

KEL_REPLACED int fsync(int descriptor)
{
    if (mustFail())
        return -1;
    note(Call::Kind::Sync, descriptor);
    return 0;
}

KEL_REPLACED int fdatasync(int descriptor)
{
    if (mustFail())
        return -1;
    note(Call::Kind::Sync, descriptor);
    return 0;
}

KEL_REPLACED int rename(const char* from, const char* to) noexcept
{
    if (mustFail())
        return -1;
    noteName(Call::Kind::Rename, from, to);
    return static_cast<int>(::syscall(SYS_rename, from, to));
}

KEL_REPLACED int unlink(const char* path) noexcept
{
    if (mustFail())
        return -1;
    noteName(Call::Kind::Remove, path, "");
    return static_cast<int>(::syscall(SYS_unlink, path));
}
