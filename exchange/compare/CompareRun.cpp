#include "CompareRun.h"

#include <array>
#include <charconv>
#include <set>

namespace meridyn {

void CompareRun::differ(KelFormatFamily family, const std::string& item, unsigned64 id, const std::string& one,
                        const std::string& other)
{
    KelDifference difference;
    difference.family = family;
    difference.item = item;
    difference.id = id;
    difference.first = one;
    difference.second = other;
    difference.zone = currentZone;
    difference.level = level;
    _found.push_back(difference);
}

bool CompareRun::same(KelFormatFamily family, const std::string& item, const std::string& one, const std::string& other)
{
    if (one != other)
        differ(family, item, 0, one, other);
    return one == other;
}

std::vector<std::string> CompareRun::common(KelFormatFamily family, const std::string& what,
                                            const std::vector<std::string>& one, const std::vector<std::string>& other)
{
    const std::set<std::string> inOne(one.begin(), one.end()), inOther(other.begin(), other.end());
    std::vector<std::string> both;
    for (const std::string& name : one)
        if (inOther.count(name) != 0)
            both.push_back(name);
        else
            differ(family, what + " '" + name + "'", 0, "present", "");
    for (const std::string& name : other)
        if (inOne.count(name) == 0)
            differ(family, what + " '" + name + "'", 0, "", "present");
    return both;
}

std::vector<KelZoneDescription> CompareRun::zones(KelZoneCategory category) const
{
    std::vector<KelZoneDescription> both;
    for (const KelZoneDescription& zone : zonesWithElements(firstMesh, category))
        if (std::any_of(secondMesh.zones.begin(), secondMesh.zones.end(), [&zone](const KelZoneDescription& other) {
                return other.id == zone.id && other.category == zone.category && other.first == zone.first &&
                       other.last == zone.last;
            }))
            both.push_back(zone);
    return both;
}

void CompareRun::noteRest(KelFormatFamily family, const std::string& item, unsigned64 differences)
{
    if (differences > options.differencesPerItem)
        differ(family, item + ", in all", 0, "", text(differences) + " differences");
}

std::string CompareRun::textOfReal(double value, bool isFloat)
{
    std::array<char, 32> buffer{};
    char* const begin = buffer.data();
    char* const end = begin + buffer.size();
    const auto result =
        isFloat ? std::to_chars(begin, end, static_cast<float>(value)) : std::to_chars(begin, end, value);
    return {begin, result.ptr};
}

} // namespace meridyn
