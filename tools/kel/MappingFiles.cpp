#include "MappingFiles.h"

#include "Failure.h"
#include "KelVariableAttributeFile.h"
#include "KelVersion.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <pugixml.hpp>
#include <set>

namespace meridyn::tool {

namespace fs = std::filesystem;

std::string mappingFolder()
{
    if (const char* folder = std::getenv("KEL_VARIABLE_CONFIG_DIR"))
        return folder;
    if (const char* root = std::getenv(("TVR_ROOT" + KelVersion::apiVersionAsString("")).c_str()))
        return (fs::path(root) / "commonfiles" / "fluids" / "config" / "variables").string();
    return "";
}

/// The value of the attribute element of that key right inside an element; the last one counts.
static std::string attributeOf(const pugi::xml_node& element, const char* key)
{
    std::string value;
    for (const pugi::xml_node attribute : element.children("attribute"))
        if (std::strcmp(attribute.attribute("key").value(), key) == 0 && *attribute.attribute("value").value() != '\0')
            value = attribute.attribute("value").value();
    return value;
}

static MappingFile readFile(const std::string& path, const std::string& source, const std::string& target)
{
    MappingFile file{path, source, target, "", {}, true};
    pugi::xml_document document;
    document.load_file(path.c_str());
    const pugi::xml_node root = document.child("mapping");
    file.mappedKeyAttribute = attributeOf(root, "Attribute Name Of Mapped Key");
    if (file.mappedKeyAttribute.empty() && target == "MERIDYN_GENERIC")
        file.mappedKeyAttribute = "Common Name";
    for (const pugi::xpath_node& variable : root.select_nodes(".//variable")) {
        std::string key = attributeOf(variable.node(), "Name");
        key = key.substr(0, key.find('#')); // what follows goes to the names of the attributes
        if (!key.empty())
            file.keys.push_back(key);
    }
    return file;
}

std::vector<MappingFile> mappingFilesIn(const std::string& folder)
{
    std::vector<MappingFile> files;
    std::error_code error;
    if (!fs::is_directory(folder, error))
        return files;
    std::map<std::pair<std::string, std::string>, std::size_t> latest;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::pair<std::string, std::string> vocabularies;
        const std::string path = entry->path().string();
        if (!KelVariableAttributeFile::isMappingFile(path, vocabularies))
            continue;
        // As the discovery has it: of two for the same vocabularies, the one listed later.
        const auto [place, isNew] = latest.try_emplace(vocabularies, files.size());
        if (!isNew)
            files[place->second].isUsed = false;
        place->second = files.size();
        files.push_back(readFile(path, vocabularies.first, vocabularies.second));
    }
    if (error)
        throw Failure(folder + ": " + error.message());
    std::sort(files.begin(), files.end(), [](const MappingFile& a, const MappingFile& b) {
        return std::tie(a.source, a.target, a.path) < std::tie(b.source, b.target, b.path);
    });
    return files;
}

/// What keeps an XML file from being a mapping file; empty when nothing does.
static std::string whyNone(const std::string& path)
{
    pugi::xml_document document;
    const pugi::xml_parse_result parsed = document.load_file(path.c_str());
    std::pair<std::string, std::string> vocabularies;
    if (parsed && KelVariableAttributeFile::isMappingFile(path, vocabularies))
        return "";
    if (!parsed)
        return "is no mapping file: " + std::string(parsed.description()) + " at byte " + std::to_string(parsed.offset);
    const pugi::xml_node root = document.child("mapping");
    if (!root)
        return "is no mapping file: its root element is '" + std::string(document.document_element().name()) +
               "', 'mapping' expected";
    for (const char* name : {"Source", "Target"})
        if (attributeOf(root, name).empty())
            return "is not used: its header has no '" + std::string(name) + "'";
    return "is not used: it cannot be read as a mapping file";
}

std::vector<MappingProblem> filesThatAreNone(const std::string& folder)
{
    std::vector<MappingProblem> problems;
    std::error_code error, ignored;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        if (entry->path().extension() != ".xml" || entry->is_directory(ignored))
            continue;
        if (const std::string reason = whyNone(entry->path().string()); !reason.empty())
            problems.push_back({entry->path().string(), reason});
    }
    std::sort(problems.begin(), problems.end(),
              [](const MappingProblem& a, const MappingProblem& b) { return a.path < b.path; });
    return problems;
}

// ---- check --------------------------------------------------------------------------------------------------------

static void checkKeys(const MappingFile& file, KelVariableAttributeFile& names, std::vector<MappingProblem>& problems)
{
    std::set<std::string> seen;
    for (const std::string& key : file.keys) {
        if (!seen.insert(key).second) {
            problems.push_back({file.path, "'" + key + "' appears twice"});
            continue;
        }
        if (file.source == file.target || file.mappedKeyAttribute.empty())
            continue;
        if (names.getAttributeValue(key, file.mappedKeyAttribute).empty())
            problems.push_back({file.path, "'" + key + "' has no name in " + file.target});
    }
    if (file.mappedKeyAttribute.empty() && file.source != file.target)
        problems.push_back({file.path, "no attribute holds the names in " + file.target +
                                           ": the header lacks 'Attribute Name Of Mapped Key'"});
}

static std::string differentWayBack(const std::string& key, const std::string& mapped, const std::string& target,
                                    const std::string& returned)
{
    return "'" + key + "' becomes '" + mapped + "' in " + target + " and comes back as '" + returned + "'";
}

static void checkWayBack(const MappingFile& file, KelVariableAttributeFile& there, KelVariableAttributeFile& back,
                         std::vector<MappingProblem>& problems)
{
    for (const std::string& key : std::set<std::string>(file.keys.begin(), file.keys.end())) {
        const std::string mapped = there.getMappedKey(key);
        const std::string returned = back.getMappedKey(mapped);
        if (returned != key)
            problems.push_back({file.path, differentWayBack(key, mapped, file.target, returned)});
    }
}

std::vector<MappingProblem> checkMappingFiles(const std::vector<MappingFile>& files)
{
    std::vector<MappingProblem> problems;
    for (const MappingFile& file : files) {
        if (!file.isUsed) {
            problems.push_back({file.path, "another file leads from " + file.source + " to " + file.target +
                                               " as well; this one is not used"});
            continue;
        }
        KelVariableAttributeFile names(file.path);
        checkKeys(file, names, problems);
        for (const MappingFile& other : files)
            if (other.isUsed && file.source != file.target && other.source == file.target &&
                other.target == file.source) {
                KelVariableAttributeFile back(other.path);
                checkWayBack(file, names, back, problems);
            }
    }
    return problems;
}

} // namespace meridyn::tool
