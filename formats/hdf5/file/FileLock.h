#pragma once

#include <optional>
#include <string>

namespace meridyn::hdf5 {

/// How to go about locks that others hold.
struct LockSettings {
    double timeout = 30; ///< seconds to wait, 0 to a day
    bool isOn = true;    ///< false: for file systems that have none, see KEL_LOCKS

    /// Whether a number can be a timeout: 0 to 86,400.
    static bool isTimeout(double seconds);

    /// The settings of this process: KEL_LOCK_TIMEOUT in seconds, and KEL_LOCKS, where "off" means none.
    /// @param complaint  set to a sentence about a timeout that is none; the default holds then
    static LockSettings ofEnvironment(std::string& complaint);
};

/// What the user of a reader or writer has chosen about locks: a timeout, or the one of the environment.
class LockChoice {
public:
    /// @return a sentence about a timeout that is none: the one of the environment holds then; else empty
    std::string setTimeout(double seconds);

    /// @param complaint  as in LockSettings::ofEnvironment
    LockSettings settings(std::string& complaint) const;

private:
    std::optional<double> _timeout;
};

/// Three locks on an open file keep its readers and writers apart. All are advisory and of the open file, so that two
/// objects of one process exclude each other too.
///
/// content  flock of the whole file, which HDF5's own tools take as well. Readers share it while they open a file, a
///          writer has it alone while it changes bytes that a reader may look at.
/// session  byte `sessionByte` (fcntl, of the open file): a writer has it from opening to closing, so that there is
/// one. gate     byte `gateByte`: readers pass it on their way to the content lock, a writer keeps it shut while it
/// waits
///          for that. Otherwise readers that come one after the other would keep a writer waiting for ever.
///
/// Nobody waits with a lock of a later line in hand for one of an earlier line, so there is no circle of waiting.
/// @{

/// One writer at a time: taken until the descriptor is closed.
/// @throws FormatError when another one has it beyond the time limit, with its name as far as the system knows it
void lockSession(int descriptor, const LockSettings& settings);

/// Gives all locks back. Closing alone does not where a child process has inherited the descriptor.
void unlockAll(int descriptor) noexcept;

/// Holds the content lock for as long as it lives.
class ContentLock {
public:
    enum class Kind {
        Read,  ///< shared with other readers
        Change ///< alone; afterwards shared, so that nobody else changes the file before the session ends
    };

    /// @throws FormatError as lockSession
    ContentLock(int descriptor, Kind kind, const LockSettings& settings);
    ~ContentLock();
    ContentLock(const ContentLock&) = delete;
    ContentLock& operator=(const ContentLock&) = delete;

private:
    int _descriptor;
    Kind _kind;
    bool _isOn;
};
/// @}

/// "process 12 (solver)" for the processes that have the file of a descriptor open with a lock on it, other than
/// through this descriptor; empty when the system names none.
/// @param kind  of lock, as the system calls it: FLOCK or OFDLCK
std::string lockHolders(int descriptor, const char* kind);

} // namespace meridyn::hdf5
