#include "MappingCheck.h"

#include "KelVariableAttributeFile.h"

#include <filesystem>
#include <set>

namespace meridyn::tool {

static void checkKeys(const KelMappingFile& file, KelVariableAttributeFile& names,
                      std::vector<MappingProblem>& problems)
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

static void checkWayBack(const KelMappingFile& file, KelVariableAttributeFile& there, KelVariableAttributeFile& back,
                         std::vector<MappingProblem>& problems)
{
    for (const std::string& key : std::set<std::string>(file.keys.begin(), file.keys.end())) {
        const std::string mapped = there.getMappedKey(key);
        const std::string returned = back.getMappedKey(mapped);
        if (returned != key)
            problems.push_back({file.path, differentWayBack(key, mapped, file.target, returned)});
    }
}

std::vector<MappingProblem> checkMappingFiles(const std::vector<KelMappingFile>& files)
{
    std::vector<MappingProblem> problems;
    for (const KelMappingFile& file : files) {
        if (!file.problem.empty()) {
            if (std::filesystem::path(file.path).extension() == ".xml") // others may lie there for other reasons
                problems.push_back({file.path, file.problem});
            continue;
        }
        if (!file.isUsed) {
            problems.push_back({file.path, "another file leads from " + file.source + " to " + file.target +
                                               " as well; this one is not used"});
            continue;
        }
        KelVariableAttributeFile names(file.path);
        checkKeys(file, names, problems);
        for (const KelMappingFile& other : files)
            if (other.isUsed && file.source != file.target && other.source == file.target &&
                other.target == file.source) {
                KelVariableAttributeFile back(other.path);
                checkWayBack(file, names, back, problems);
            }
    }
    return problems;
}

} // namespace meridyn::tool
