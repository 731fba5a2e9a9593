#include "FileLock.h"

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace meridyn::hdf5 {

namespace {

namespace fs = std::filesystem;

std::string processWords(long process)
{
    if (process == ::getpid())
        return "this process";
    std::string name;
    std::ifstream command("/proc/" + std::to_string(process) + "/comm");
    std::getline(command, name);
    return "process " + std::to_string(process) + (name.empty() ? "" : " (" + name + ")");
}

bool isNumber(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

/// Whether a descriptor of a process, by its entry in fdinfo, holds a lock of this kind.
bool holds(const fs::path& info, const std::string& kind)
{
    std::ifstream lines(info);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("lock:", 0) == 0 && line.find(kind) != std::string::npos)
            return true;
    return false;
}

/// Processes whose descriptors this one may look at: its user's, or all for root. These know locks of either kind.
void addOpenOnes(int descriptor, const struct stat& wanted, const std::string& kind, std::set<long>& found)
{
    std::error_code error;
    for (fs::directory_iterator process("/proc", error), end; !error && process != end; process.increment(error)) {
        const std::string number = process->path().filename().string();
        if (!isNumber(number))
            continue;
        const long id = std::stol(number);
        std::error_code closed;
        for (fs::directory_iterator entry(process->path() / "fd", closed); !closed && entry != end;
             entry.increment(closed)) {
            struct stat status {};
            const std::string name = entry->path().filename().string();
            const bool isOurs = id == ::getpid() && name == std::to_string(descriptor);
            if (!isOurs && ::stat(entry->path().c_str(), &status) == 0 && status.st_dev == wanted.st_dev &&
                status.st_ino == wanted.st_ino && holds(process->path() / "fdinfo" / name, kind))
                found.insert(id);
        }
    }
}

/// The system's table of locks, which knows all users, but of one kind of lock only (flock).
void addListedOnes(const struct stat& wanted, const std::string& kind, std::set<long>& found)
{
    std::ostringstream file;
    file << std::hex;
    file.fill('0');
    file.width(2);
    file << major(wanted.st_dev) << ':';
    file.width(2);
    file << minor(wanted.st_dev) << ':' << std::dec << wanted.st_ino;
    std::ifstream table("/proc/locks");
    for (std::string line; std::getline(table, line);) {
        std::istringstream words(line);
        std::string number;
        std::string type;
        std::string strength;
        std::string access;
        std::string place;
        long process = 0;
        if (words >> number >> type >> strength >> access >> process >> place && type == kind && process > 0 &&
            process != ::getpid() && place == file.str())
            found.insert(process);
    }
}

} // namespace

std::string lockHolders(int descriptor, const char* kind)
{
    struct stat wanted {};
    std::set<long> found;
    if (::fstat(descriptor, &wanted) == 0) {
        addOpenOnes(descriptor, wanted, kind, found);
        if (found.empty())
            addListedOnes(wanted, kind, found);
    }
    std::string words;
    for (const long process : found)
        words += (words.empty() ? "" : ", ") + processWords(process);
    return words;
}

} // namespace meridyn::hdf5
