#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"

#include <algorithm>
#include <map>

namespace meridyn::mesh {

namespace {

/// Number of elements of a category that the mesh is said to have; 0 when nobody said it.
unsigned64 statedSize(const KelBase& base, KelZoneCategory category)
{
    static constexpr KelMeshSizeType slots[] = {KEL_MESH_SIZE_1, KEL_MESH_SIZE_2, KEL_MESH_SIZE_3, KEL_MESH_SIZE_4};
    unsigned64 size = 0;
    base.getMeshSize(slots[category], size);
    return size;
}

int kindOf(const KelBase& base, KelZoneCategory category, int zoneId)
{
    if (category != KEL_FACE_ZONE)
        return -1;
    int kind = -1;
    base.getFaceZoneInfo(zoneId, KEL_FACE_ZONE_INFO_TYPE, kind);
    return kind;
}

/// The zones of a category that have elements, ascending; those whose ids make no sense are exceptions instead.
std::vector<Zone> zonesOf(CheckState& state, KelZoneCategory category)
{
    std::vector<Zone> zones;
    std::vector<int> ids;
    state.reader.getZoneIds(category, ids);
    state.report.addLookedAt(KelMeshRule::Zones, ids.size());
    for (const int id : ids) {
        Zone zone{id, 0, 0, kindOf(state.reader, category, id)};
        state.reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        state.reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        // A format may say of an empty zone that it ends before it begins.
        if (zone.first == 0 || zone.first == zone.last + 1)
            continue;
        if (zone.first > zone.last)
            state.add(KelMeshRule::Zones, category, 0,
                      std::string(categoryName(category)) + ": zone " + zoneLabel(state.reader, id) + " has the ids " +
                          grouped(zone.first) + " to " + grouped(zone.last));
        else
            zones.push_back(zone);
    }
    std::sort(zones.begin(), zones.end(), [](const Zone& a, const Zone& b) { return a.first < b.first; });
    return zones;
}

/// Counts the elements that are in two zones, and leaves them to the first.
void checkTwice(CheckState& state, KelZoneCategory category)
{
    unsigned64 covered = 0;
    for (Zone& zone : state.zones[category]) {
        if (zone.first <= covered) {
            state.add(KelMeshRule::Zones, category, zone.first,
                      std::string(categoryName(category)) + ": zone " + zoneLabel(state.reader, zone.id) +
                          " begins at " + grouped(zone.first) + ", which is in another zone",
                      std::min(covered, zone.last) - zone.first + 1);
            zone.first = covered + 1;
        }
        covered = std::max(covered, zone.last);
    }
    std::erase_if(state.zones[category], [](const Zone& zone) { return zone.first > zone.last; });
}

/// Takes the elements out of the zones that the mesh is not said to have.
void cutZones(CheckState& state, KelZoneCategory category, unsigned64 last)
{
    for (Zone& zone : state.zones[category])
        zone.last = std::min(zone.last, last);
    std::erase_if(state.zones[category], [](const Zone& zone) { return zone.first > zone.last; });
}

/// Holds the zones against the number of elements that the mesh is said to have. Ids may have gaps, so that number is
/// either how many elements there are or the largest id.
void checkSize(CheckState& state, KelZoneCategory category)
{
    const ElementIds& ids = state.ids[category];
    const unsigned64 stated = statedSize(state.reader, category);
    const std::string name = categoryName(category);
    if (stated == 0 || stated == ids.size() || stated == ids.last())
        return;
    // A mesh may count edges without having them one by one.
    if (category == KEL_EDGE_ZONE && ids.size() == 0)
        return;
    if (ids.size() > stated) {
        const Zone* last = &state.zones[category].back();
        state.add(KelMeshRule::Zones, category, last->last,
                  name + ": zone " + zoneLabel(state.reader, last->id) + " ends at " + grouped(last->last) +
                      ", but the mesh is said to have " + grouped(stated) + " " + name,
                  ids.size() - stated);
        cutZones(state, category, stated);
    } else
        state.add(KelMeshRule::Zones, category, 0,
                  name + ": the zones hold " + grouped(ids.size()) + ", but the mesh is said to have " +
                      grouped(stated),
                  stated - ids.size());
}

void readDimension(CheckState& state)
{
    unsigned64 dimension = 0;
    state.reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    if (dimension != 2 && dimension != 3)
        CheckState::stop("the mesh has " + std::to_string(dimension) + " dimensions, 2 or 3 expected");
    state.report.dimension = static_cast<int>(dimension);
}

void numberElements(CheckState& state, KelZoneCategory category)
{
    state.ids[category] = ElementIds();
    for (const Zone& zone : state.zones[category])
        state.ids[category].add(zone.first, zone.last);
    state.report.sizes[category] = state.ids[category].size();
}

} // namespace

void checkZones(CheckState& state)
{
    readDimension(state);
    for (const KelZoneCategory category : allCategories) {
        state.zones[category] = zonesOf(state, category);
        checkTwice(state, category);
        numberElements(state, category);
        checkSize(state, category);
        numberElements(state, category);
    }
    // A node that is shared by a thousand elements of a kind is a damaged size, and would cost hours or all memory.
    const unsigned64 most = 1000 * std::max<unsigned64>(state.ids[KEL_NODE_ZONE].size(), 1);
    for (const KelZoneCategory category : {KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        if (state.ids[category].size() > most)
            CheckState::stop("the mesh has " + grouped(state.ids[category].size()) + " " + categoryName(category) +
                             ", but only " + counted(state.ids[KEL_NODE_ZONE].size(), "node", "nodes"));
}

} // namespace meridyn::mesh
