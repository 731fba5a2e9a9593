#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace meridyn {

/// The file that a name stands for once symbolic links at its end are followed. What is written beside a file, and
/// renamed over it, belongs beside this one: so a link stays a link, and all names of a file share one journal.
/// A link to nothing gives the name of what it leads to; one that leads in a circle gives an empty path.
inline std::string linkedFile(const std::string& path)
{
    constexpr int mostLinks = 40; // as the system has it
    std::filesystem::path file(path);
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        const std::filesystem::path next = std::filesystem::read_symlink(file, error);
        if (error || links == mostLinks)
            return {};
        file = file.parent_path() / next; // an absolute one replaces it
    }
    return file.string();
}

/// Why a file of this name must not be written in place of what bears the name: only regular files, and nothing, are
/// ever replaced, since a rename over a device, a pipe, a socket or a folder destroys what other programs rely on.
/// Empty when it may be written; whether rights and disk allow it shows when it is done.
inline std::string outputProblem(const std::string& path)
{
    using std::filesystem::file_type;
    const std::string expected = ", only a regular file can be replaced";
    const std::string file = linkedFile(path);
    if (file.empty() && !path.empty())
        return "is a symbolic link that leads in a circle" + expected;
    std::error_code error;
    switch (std::filesystem::status(file, error).type()) {
    case file_type::directory:
        return "is a folder" + expected;
    case file_type::character:
    case file_type::block:
        return "is a device" + expected;
    case file_type::fifo:
        return "is a pipe" + expected;
    case file_type::socket:
        return "is a socket" + expected;
    default:
        return {};
    }
}

} // namespace meridyn
