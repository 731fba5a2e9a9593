#include "CompareRun.h"

#include "exchange/transfer/TransferRun.h"
#include "KelLocationModel.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <list>
#include <set>

namespace meridyn {

namespace {

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};
const char* const categoryNames[] = {"node", "edge", "face", "cell"};

std::string joined(const std::list<int>& ids)
{
    std::string text;
    for (const int id : ids)
        text += (text.empty() ? "" : " ") + std::to_string(id);
    return text;
}

std::set<int> zoneIds(const KelBase& base, KelZoneCategory category)
{
    std::vector<int> ids;
    base.getZoneIds(category, ids);
    return {ids.begin(), ids.end()};
}

unsigned64 sizeOf(const KelBase& base, int zone, KelZoneSizeType type)
{
    unsigned64 size = 0;
    base.getZoneSizeInfo(zone, type, size);
    return size;
}

std::string textOf(const KelBase& base, int zone, KelZoneStringInfoType type)
{
    std::string text;
    base.getZoneStringInfo(zone, type, text);
    return text;
}

void compareZone(CompareRun& run, KelZoneCategory category, int zone)
{
    const std::string label = zoneLabel(run.first, zone);
    for (const auto& [type, name] :
         {std::pair{KEL_ZONE_FIRST_ID, "first id"}, {KEL_ZONE_LAST_ID, "last id"}, {KEL_ZONE_EXTRA_SIZE, "extra size"}})
        run.same(KEL_FAMILY_ZONE_PROPERTIES, std::string(name) + " of " + label,
                 std::to_string(sizeOf(run.first, zone, type)), std::to_string(sizeOf(run.second, zone, type)));
    for (const KelZoneStringInfoType type : {KEL_ZONE_STRING_0, KEL_ZONE_STRING_1})
        run.same(KEL_FAMILY_ZONE_PROPERTIES, "text " + std::to_string(type) + " of " + label,
                 textOf(run.first, zone, type), textOf(run.second, zone, type));
    const std::vector<int> one = zoneNumbers(run.first, category, zone),
                           other = zoneNumbers(run.second, category, zone);
    for (std::size_t n = 0; n < one.size(); ++n)
        run.same(KEL_FAMILY_ZONE_PROPERTIES, (n == 6 ? "flags" : "number " + std::to_string(n)) + " of " + label,
                 std::to_string(one[n]), std::to_string(other[n]));
}

void compareAdjacency(CompareRun& run, KelZoneCategory category, int zone)
{
    KelBase& first = run.first;
    KelBase& second = run.second;
    std::list<int> one, other;
    const auto compare = [&](void (KelBase::*get)(int, std::list<int>&), const char* what) {
        (first.*get)(zone, one);
        (second.*get)(zone, other);
        run.same(KEL_FAMILY_ZONE_ADJACENCY, what + zoneLabel(run.first, zone), joined(one), joined(other));
    };
    if (category == KEL_FACE_ZONE) {
        compare(&KelBase::getFaceCellZone0Ids, "cell zones on side 0 of ");
        compare(&KelBase::getFaceCellZone1Ids, "cell zones on side 1 of ");
    } else if (category == KEL_CELL_ZONE)
        compare(&KelBase::getCellFaceZoneIds, "face zones around ");
}

} // namespace

std::string CompareRun::textOfReal(double value)
{
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return {buffer.data(), end};
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

std::vector<CompareRun::Zone> CompareRun::zones(KelZoneCategory category)
{
    std::vector<Zone> both;
    const std::set<int> inOther = zoneIds(second, category);
    for (const int id : zoneIds(first, category)) {
        const unsigned64 from = sizeOf(first, id, KEL_ZONE_FIRST_ID), to = sizeOf(first, id, KEL_ZONE_LAST_ID);
        if (inOther.count(id) != 0 && from != 0 && to >= from && sizeOf(second, id, KEL_ZONE_FIRST_ID) == from &&
            sizeOf(second, id, KEL_ZONE_LAST_ID) == to)
            both.push_back({id, from, to, zoneLabel(first, id)});
    }
    return both;
}

void compareZones(CompareRun& run)
{
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type) {
        unsigned64 one = 0, other = 0;
        run.first.getMeshSize(static_cast<KelMeshSizeType>(type), one);
        run.second.getMeshSize(static_cast<KelMeshSizeType>(type), other);
        run.same(KEL_FAMILY_ZONE_PROPERTIES, "mesh size " + std::to_string(type), std::to_string(one),
                 std::to_string(other));
    }
    std::string one, other;
    run.first.getMeshUnits(one);
    run.second.getMeshUnits(other);
    run.same(KEL_FAMILY_ZONE_PROPERTIES, "mesh units", one, other);
    for (const KelZoneCategory category : categories) {
        const std::set<int> inOne = zoneIds(run.first, category), inOther = zoneIds(run.second, category);
        const std::string kind = std::string(categoryNames[category]) + " ";
        for (const int zone : inOne)
            if (inOther.count(zone) == 0)
                run.differ(KEL_FAMILY_ZONE_PROPERTIES, kind + zoneLabel(run.first, zone), 0, "present", "");
            else {
                compareZone(run, category, zone);
                compareAdjacency(run, category, zone);
            }
        for (const int zone : inOther)
            if (inOne.count(zone) == 0)
                run.differ(KEL_FAMILY_ZONE_PROPERTIES, kind + zoneLabel(run.second, zone), 0, "", "present");
    }
}

void compareLocations(CompareRun& run)
{
    const std::string one = run.first.getLocationModel()->state(), other = run.second.getLocationModel()->state();
    if (one != other)
        run.differ(KEL_FAMILY_LOCATIONS, "location model", 0, "a state of " + std::to_string(one.size()) + " bytes",
                   "another of " + std::to_string(other.size()) + " bytes");
}

} // namespace meridyn
