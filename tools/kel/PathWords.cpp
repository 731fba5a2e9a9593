#include "PathWords.h"

#include <map>
#include <regex>
#include <sstream>
#include <vector>

namespace meridyn::tool {

/// A name as people gave it: the file writes "/" and some others as "%" and two digits.
static std::string decoded(const std::string& name)
{
    std::string text;
    for (std::size_t at = 0; at < name.size(); ++at) {
        const bool isCode = name[at] == '%' && at + 2 < name.size() &&
                            name.find_first_not_of("0123456789ABCDEFabcdef", at + 1) >= at + 3;
        text += isCode ? static_cast<char>(std::stoi(name.substr(at + 1, 2), nullptr, 16)) : name[at];
        at += isCode ? 2 : 0;
    }
    return text;
}

/// What the pieces of a path below a mesh are called, with commas between them.
static std::string wordsOf(const std::vector<std::string>& pieces)
{
    static const std::map<std::string, std::string> groups = {
        {"levels", "time level"}, {"phases", "phase"},           {"sets", "set"},
        {"set_data", "set data"}, {"tracks", "particle tracks"}, {"sections", "case section"}};
    static const std::map<std::string, std::string> arrays = {
        {"cell0", "cell 0"}, {"cell1", "cell 1"}, {"kel_members", "number of members"}};
    std::string text;
    for (std::size_t n = 0; n < pieces.size(); ++n) {
        std::string words = decoded(pieces[n]);
        if (const auto array = arrays.find(words); array != arrays.end())
            words = array->second;
        if (const auto group = groups.find(words); group != groups.end()) {
            words = group->second;
            if (n + 1 < pieces.size())
                words += " '" + decoded(pieces[++n]) + "'";
        }
        text += (text.empty() ? "" : ", ") + words;
    }
    return text;
}

std::string withWordsForPaths(const std::string& text)
{
    static const std::regex mesh("/meshes/mesh_(-?[0-9]+)_target_(-?[0-9]+)_partition_(-?[0-9]+)((/[^/ :;,()'@]+)*)");
    std::string shown;
    std::size_t done = 0;
    for (std::sregex_iterator found(text.begin(), text.end(), mesh), end; found != end; ++found) {
        std::vector<std::string> pieces;
        std::istringstream path((*found)[4].str());
        for (std::string piece; std::getline(path, piece, '/');)
            if (!piece.empty())
                pieces.push_back(piece);
        const std::string words = wordsOf(pieces);
        const auto at = static_cast<std::size_t>(found->position());
        shown += text.substr(done, at - done) + words + (words.empty() ? "" : " of ") + "mesh " + (*found)[1].str() +
                 " (" + found->str() + ")";
        done = at + static_cast<std::size_t>(found->length());
    }
    return shown + text.substr(done);
}

} // namespace meridyn::tool
