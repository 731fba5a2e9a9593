#include "FileLock.h"

#include "FileChannel.h"
#include "FormatError.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sstream>
#include <string_view>
#include <sys/file.h>
#include <thread>

namespace meridyn::hdf5 {

namespace {

using Clock = std::chrono::steady_clock;

// Far behind the end of any file: what is locked are numbers, not bytes that somebody reads.
constexpr off_t sessionByte = off_t{1} << 62;
constexpr off_t gateByte = sessionByte + 1;
constexpr double longestTimeout = 24 * 60 * 60;

std::string secondsText(double seconds)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << seconds << (seconds == 1 ? " second" : " seconds");
    return text.str();
}

[[noreturn]] void failWithoutLocks(const char* call)
{
    throw FormatError("cannot be locked, its file system seems to have no locks (" + systemWords(call) +
                      "). Where nobody else reads or writes the file meanwhile, KEL_LOCKS=off in the environment goes "
                      "without");
}

[[noreturn]] void failHeld(int descriptor, const char* kind, const std::string& use, const LockSettings& settings)
{
    const std::string holders = lockHolders(descriptor, kind);
    throw FormatError("is " + use + " by " + (holders.empty() ? "a process that the system does not name" : holders) +
                      ", after waiting " + secondsText(settings.timeout));
}

bool tryContent(int descriptor, int operation)
{
    for (;;) {
        if (::flock(descriptor, operation | LOCK_NB) == 0)
            return true;
        if (errno == EWOULDBLOCK)
            return false;
        if (errno != EINTR)
            failWithoutLocks("flock");
    }
}

bool tryByte(int descriptor, short type, off_t byte)
{
    struct flock range {};
    range.l_type = type;
    range.l_whence = SEEK_SET;
    range.l_start = byte;
    range.l_len = 1;
    for (;;) {
        if (::fcntl(descriptor, F_OFD_SETLK, &range) == 0)
            return true;
        if (errno == EAGAIN || errno == EACCES)
            return false;
        if (errno != EINTR)
            failWithoutLocks("fcntl");
    }
}

void releaseByte(int descriptor, off_t byte) noexcept
{
    struct flock range {};
    range.l_type = F_UNLCK;
    range.l_whence = SEEK_SET;
    range.l_start = byte;
    range.l_len = 1;
    ::fcntl(descriptor, F_OFD_SETLK, &range);
}

/// Gives a byte back at the end of a block.
struct ByteRelease {
    int descriptor;
    off_t byte;

    ~ByteRelease() { releaseByte(descriptor, byte); }
};

/// Tries until it works or the time is over: often at first, since a lock of ours is mostly held for milliseconds.
template <class Attempt>
bool waitFor(Clock::time_point end, Attempt&& attempt)
{
    auto pause = std::chrono::microseconds(200);
    while (!attempt()) {
        const auto left = std::chrono::duration_cast<std::chrono::microseconds>(end - Clock::now());
        if (left.count() <= 0)
            return false;
        std::this_thread::sleep_for(std::min(pause, left));
        pause = std::min(pause * 2, std::chrono::microseconds(20000));
    }
    return true;
}

Clock::time_point endOf(const LockSettings& settings)
{
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(settings.timeout));
}

} // namespace

bool LockSettings::isTimeout(double seconds)
{
    return seconds >= 0 && seconds <= longestTimeout; // false for a NaN
}

LockSettings LockSettings::ofEnvironment(std::string& complaint)
{
    LockSettings settings;
    const char* const locks = std::getenv("KEL_LOCKS");
    settings.isOn = locks == nullptr || std::strcmp(locks, "off") != 0;
    const char* const text = std::getenv("KEL_LOCK_TIMEOUT");
    if (text == nullptr || *text == '\0')
        return settings;
    double seconds = 0;
    const std::string_view digits(text);
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), seconds);
    if (error == std::errc() && end == digits.data() + digits.size() && isTimeout(seconds))
        settings.timeout = seconds;
    else
        complaint = "KEL_LOCK_TIMEOUT is '" + std::string(digits) +
                    "', a number of seconds from 0 to 86400 expected; " + secondsText(settings.timeout) + " hold";
    return settings;
}

std::string LockChoice::setTimeout(double seconds)
{
    _timeout.reset();
    if (!LockSettings::isTimeout(seconds))
        return "a lock timeout of " + secondsText(seconds) + " was given, 0 to 86400 expected; the default holds";
    _timeout = seconds;
    return {};
}

LockSettings LockChoice::settings(std::string& complaint) const
{
    LockSettings settings = LockSettings::ofEnvironment(complaint);
    if (_timeout) {
        settings.timeout = *_timeout;
        complaint.clear();
    }
    return settings;
}

void lockSession(int descriptor, const LockSettings& settings)
{
    if (!settings.isOn)
        return;
    if (!waitFor(endOf(settings), [&] { return tryByte(descriptor, F_WRLCK, sessionByte); }))
        failHeld(descriptor, "OFDLCK", "being written", settings);
}

void unlockAll(int descriptor) noexcept
{
    ::flock(descriptor, LOCK_UN);
    releaseByte(descriptor, sessionByte);
}

ContentLock::ContentLock(int descriptor, Kind kind, const LockSettings& settings)
    : _descriptor(descriptor), _kind(kind), _isOn(settings.isOn)
{
    if (!_isOn)
        return;
    const auto end = endOf(settings);
    const bool reads = kind == Kind::Read;
    if (!waitFor(end, [&] { return tryByte(descriptor, reads ? F_RDLCK : F_WRLCK, gateByte); }))
        failHeld(descriptor, "OFDLCK", "being changed", settings);
    const ByteRelease open{descriptor, gateByte};
    if (!waitFor(end, [&] { return tryContent(descriptor, reads ? LOCK_SH : LOCK_EX); }))
        failHeld(descriptor, "FLOCK", reads ? "being changed" : "kept open", settings);
}

// That another one comes in between when a lock is changed into a shared one is nobody's harm: it has to wait for us,
// or we find at the next change that the file is no longer what it was.
ContentLock::~ContentLock()
{
    if (_isOn)
        ::flock(_descriptor, _kind == Kind::Read ? LOCK_UN : LOCK_SH | LOCK_NB);
}

} // namespace meridyn::hdf5
