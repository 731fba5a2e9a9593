#include "StagedFiles.h"

#include "Failure.h"
#include "formats/common/OutputTarget.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace meridyn::tool {

namespace fs = std::filesystem;

StagedFiles::~StagedFiles()
{
    std::error_code ignored;
    for (const auto& [parent, folder] : _folders)
        fs::remove_all(folder, ignored);
}

std::string StagedFiles::folderBeside(const std::string& target)
{
    const fs::path parent = fs::path(target).parent_path();
    std::string& folder = _folders[parent.string()];
    if (folder.empty()) {
        std::string pattern = (parent / ".kel-convert-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            const std::string reason = std::strerror(errno);
            _folders.erase(parent.string());
            throw Failure(target + ": cannot be written: " + (parent.empty() ? "." : parent.string()) + ": " + reason);
        }
        folder = pattern;
    }
    return folder;
}

std::string StagedFiles::place(const std::string& target)
{
    const std::string file = linkedFile(target);
    const std::string place = (fs::path(folderBeside(file)) / fs::path(target).filename()).string();
    _places[file] = place;
    _names[place] = target;
    return place;
}

/// Keeps what bears a name under another one. A second link to it leaves the name valid all the time.
void StagedFiles::setAside(const std::string& name)
{
    std::error_code error;
    if (!fs::exists(name, error))
        return;
    const std::string backup = (fs::path(folderBeside(name)) / ("before-" + std::to_string(_done.size()))).string();
    fs::create_hard_link(name, backup, error);
    if (error)
        fs::rename(name, backup); // throws when that is not possible either
    _done.back().backup = backup;
}

void StagedFiles::undo() noexcept
{
    std::error_code ignored;
    for (std::size_t n = _done.size(); n-- > 0;) {
        if (_done[n].backup.empty())
            fs::remove(_done[n].name, ignored);
        else
            fs::rename(_done[n].backup, _done[n].name, ignored);
    }
    _done.clear();
}

void StagedFiles::commit(const std::vector<std::string>& obsolete)
{
    try {
        for (const auto& [target, place] : _places) {
            _done.push_back({target, ""});
            setAside(target);
            fs::rename(place, target);
        }
        for (const std::string& name : obsolete) {
            _done.push_back({name, ""});
            setAside(name);
            fs::remove(name);
        }
    } catch (const fs::filesystem_error& error) {
        undo();
        throw Failure(named(error.path1().string()) + ": " + error.code().message() + "; everything is as it was");
    }
    _done.clear();
    _places.clear();
}

std::string StagedFiles::named(std::string text) const
{
    for (const auto& [place, name] : _names)
        for (std::size_t at = text.find(place); at != std::string::npos; at = text.find(place, at + name.size()))
            text.replace(at, place.size(), name);
    return text;
}

} // namespace meridyn::tool
