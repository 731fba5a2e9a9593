#include "CaseFiles.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>

namespace meridyn::polymesh {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t largestDepth = 16;

/// Goes through folders one by one; links may lead back to a folder, which is then not entered again.
class Walk {
public:
    Walk(const fs::path& root, CaseFiles& found) : _root(root), _found(found) {}

    void enter(const fs::path& folder, std::size_t depth)
    {
        std::error_code error;
        const fs::path real = fs::canonical(folder, error);
        fs::directory_iterator entry(folder, error);
        if (error || depth > largestDepth || !_seen.insert(real.string()).second) {
            _found.closed.push_back(nameOf(folder));
            return;
        }
        for (const fs::directory_iterator end; !error && entry != end; entry.increment(error)) {
            std::error_code ignored;
            if (entry->is_directory(ignored))
                enter(entry->path(), depth + 1);
            else
                addFile(nameOf(entry->path()));
        }
    }

private:
    std::string nameOf(const fs::path& path) const { return path.lexically_relative(_root).string(); }

    void addFile(std::string name)
    {
        if (name.size() > 3 && name.substr(name.size() - 3) == ".gz") {
            std::error_code ignored;
            if (fs::is_regular_file(_root / name.substr(0, name.size() - 3), ignored))
                _found.outranked.push_back(name);
            name.resize(name.size() - 3);
        }
        _found.files.push_back(std::move(name));
    }

    fs::path _root;
    CaseFiles& _found;
    std::set<std::string> _seen;
};

void sort(std::vector<std::string>& names)
{
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
}

} // namespace

CaseFiles CaseFiles::below(const std::string& folder)
{
    CaseFiles found;
    Walk(folder, found).enter(folder, 0);
    sort(found.files);
    sort(found.closed);
    sort(found.outranked);
    return found;
}

std::vector<std::string> piecesOf(const std::string& path)
{
    std::vector<std::string> pieces(1);
    for (const char c : path)
        if (c == '/')
            pieces.emplace_back();
        else
            pieces.back() += c;
    return pieces;
}

} // namespace meridyn::polymesh
