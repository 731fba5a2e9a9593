// What a mesh is beside its arrays, held against another item by item.

#include "CompareRun.h"

#include <map>

namespace meridyn {

namespace {

using Zone = KelZoneDescription;

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};
const char* const categoryNames[] = {"node", "edge", "face", "cell"};
const char* const sizeNames[] = {"dimension", "mesh size 1", "mesh size 2", "mesh size 3", "mesh size 4"};

std::string joined(const std::vector<int>& ids)
{
    std::string list;
    for (const int id : ids)
        list += (list.empty() ? "" : " ") + std::to_string(id);
    return list;
}

/// What a reader worked out itself is as good as 0, which stands for not given.
void compareSizes(CompareRun& run)
{
    const KelDerived& one = run.firstDerived;
    const KelDerived& other = run.secondDerived;
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type) {
        const unsigned64 inOne = run.firstMesh.sizes[type], inOther = run.secondMesh.sizes[type];
        const bool isDerived = (one.sizes[type] && inOther == 0) || (other.sizes[type] && inOne == 0);
        if (!isDerived)
            run.same(KEL_FAMILY_MESH_SIZES, sizeNames[type], std::to_string(inOne), std::to_string(inOther));
    }
    run.same(KEL_FAMILY_MESH_SIZES, "mesh units", run.firstMesh.units, run.secondMesh.units);
    run.same(KEL_FAMILY_SOLVER, "solver type", run.first.getSolverType(), run.second.getSolverType());
}

/// The cell zones on a side of a face zone, or the face zones around a cell zone.
void compareNeighbours(CompareRun& run, const Zone& one, const Zone& other, int side)
{
    const std::vector<int>& inOne = one.neighbours[side];
    const std::vector<int>& inOther = other.neighbours[side];
    if ((run.firstDerived.adjacency && inOther.empty()) || (run.secondDerived.adjacency && inOne.empty()))
        return;
    const std::string what = one.category == KEL_FACE_ZONE ? "cell zones on side " + std::to_string(side) + " of "
                                                           : std::string("face zones around ");
    run.same(KEL_FAMILY_ZONE_ADJACENCY, what + zoneLabel(one), joined(inOne), joined(inOther));
}

void compareZone(CompareRun& run, const Zone& one, const Zone& other)
{
    constexpr KelFormatFamily family = KEL_FAMILY_ZONE_PROPERTIES;
    const std::string of = " of " + zoneLabel(one);
    run.currentZone = one.id;
    run.same(family, "category" + of, categoryNames[one.category], categoryNames[other.category]);
    run.same(family, "first id" + of, std::to_string(one.first), std::to_string(other.first));
    run.same(family, "last id" + of, std::to_string(one.last), std::to_string(other.last));
    run.same(family, "extra size" + of, std::to_string(one.extra), std::to_string(other.extra));
    for (int n = 0; n < 2; ++n)
        run.same(family, "text " + std::to_string(n) + of, one.texts[n], other.texts[n]);
    for (int n = 0; one.category == other.category && n < zoneInfoCount(one.category); ++n)
        run.same(family, "number " + std::to_string(n) + of, std::to_string(one.infos[n]),
                 std::to_string(other.infos[n]));
    run.same(family, "flags" + of, std::to_string(one.flags), std::to_string(other.flags));
    for (const int side : {0, 1})
        compareNeighbours(run, one, other, side);
    run.currentZone.reset();
}

std::vector<int> idsOfCategory(const KelMeshDescription& mesh, KelZoneCategory category,
                               const std::map<int, const Zone*>& amongst)
{
    std::vector<int> ids;
    for (const Zone& zone : mesh.zones)
        if (zone.category == category && amongst.count(zone.id) != 0)
            ids.push_back(zone.id);
    return ids;
}

} // namespace

void compareMesh(CompareRun& run)
{
    compareSizes(run);
    std::map<int, const Zone*> inOne, inOther;
    for (const Zone& zone : run.firstMesh.zones)
        inOne[zone.id] = &zone;
    for (const Zone& zone : run.secondMesh.zones)
        inOther[zone.id] = &zone;
    const auto nameOf = [](const Zone& zone) {
        return std::string(categoryNames[zone.category]) + " " + zoneLabel(zone);
    };
    for (const Zone& zone : run.firstMesh.zones)
        if (const auto other = inOther.find(zone.id); other == inOther.end())
            run.differ(KEL_FAMILY_ZONE_PROPERTIES, nameOf(zone), 0, "present", "");
        else
            compareZone(run, zone, *other->second);
    for (const Zone& zone : run.secondMesh.zones)
        if (inOne.count(zone.id) == 0)
            run.differ(KEL_FAMILY_ZONE_PROPERTIES, nameOf(zone), 0, "", "present");
    for (const KelZoneCategory category : categories)
        run.same(KEL_FAMILY_ZONE_PROPERTIES, std::string("order of ") + categoryNames[category] + " zones",
                 joined(idsOfCategory(run.firstMesh, category, inOther)),
                 joined(idsOfCategory(run.secondMesh, category, inOne)));
}

} // namespace meridyn
