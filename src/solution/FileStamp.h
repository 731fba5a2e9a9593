#pragma once

#include <string>
#include <sys/stat.h>
#include <time.h>

namespace meridyn {

/// What tells that a file is the same and has not been written to: identity, size and times.
class FileStamp {
public:
    /// The stamp of a file as it is now; one that equals no other when there is none.
    static FileStamp of(const std::string& path)
    {
        FileStamp stamp;
        stamp._exists = stat(path.c_str(), &stamp._status) == 0;
        clock_gettime(CLOCK_REALTIME_COARSE, &stamp._taken);
        return stamp;
    }

    /// Whether a change after this stamp must change it. The system counts the times of files in ticks of some
    /// milliseconds, so a file changed in the tick in which it was looked at could change again unseen.
    bool isSettled() const { return _exists && isBefore(_status.st_ctim, _taken); }

    friend bool operator==(const FileStamp& a, const FileStamp& b)
    {
        const auto areEqual = [](const timespec& s, const timespec& t) {
            return s.tv_sec == t.tv_sec && s.tv_nsec == t.tv_nsec;
        };
        return a._exists && b._exists && a._status.st_dev == b._status.st_dev && a._status.st_ino == b._status.st_ino &&
               a._status.st_size == b._status.st_size && areEqual(a._status.st_mtim, b._status.st_mtim) &&
               areEqual(a._status.st_ctim, b._status.st_ctim);
    }

private:
    static bool isBefore(const timespec& a, const timespec& b)
    {
        return a.tv_sec != b.tv_sec ? a.tv_sec < b.tv_sec : a.tv_nsec < b.tv_nsec;
    }

    bool _exists = false;
    struct stat _status = {};
    timespec _taken = {};
};

} // namespace meridyn
