#include "KelModelDescription.h"

#include "formats/common/BaseAccess.h"
#include "KelSolutionModel.h"

#include <list>

namespace meridyn {

namespace {

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

// KelBase has getters and setters of its own for the numbers of each category; these two choose among them.

int infoOf(const KelBase& base, int category, int zone, int type)
{
    int value = 0;
    switch (category) {
    case KEL_NODE_ZONE:
        base.getNodeZoneInfo(zone, static_cast<KelNodeZoneInfoType>(type), value);
        break;
    case KEL_EDGE_ZONE:
        base.getEdgeZoneInfo(zone, static_cast<KelEdgeZoneInfoType>(type), value);
        break;
    case KEL_FACE_ZONE:
        base.getFaceZoneInfo(zone, static_cast<KelFaceZoneInfoType>(type), value);
        break;
    default:
        base.getCellZoneInfo(zone, static_cast<KelCellZoneInfoType>(type), value);
    }
    return value;
}

void setInfo(KelBase& base, int category, int zone, int type, int value)
{
    switch (category) {
    case KEL_NODE_ZONE:
        base.setNodeZoneInfo(zone, static_cast<KelNodeZoneInfoType>(type), value);
        break;
    case KEL_EDGE_ZONE:
        base.setEdgeZoneInfo(zone, static_cast<KelEdgeZoneInfoType>(type), value);
        break;
    case KEL_FACE_ZONE:
        base.setFaceZoneInfo(zone, static_cast<KelFaceZoneInfoType>(type), value);
        break;
    default:
        base.setCellZoneInfo(zone, static_cast<KelCellZoneInfoType>(type), value);
    }
}

std::vector<int> neighbours(KelBase& base, void (KelBase::*get)(int, std::list<int>&), int zone)
{
    std::list<int> ids;
    (base.*get)(zone, ids);
    return {ids.begin(), ids.end()};
}

/// A mesh as it is described without its zones.
KelMeshDescription describeSizes(const KelBase& base)
{
    KelMeshDescription mesh;
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type)
        base.getMeshSize(static_cast<KelMeshSizeType>(type), mesh.sizes[type]);
    base.getMeshUnits(mesh.units);
    return mesh;
}

KelZoneDescription describeZone(const KelBase& base, KelZoneCategory category, int id)
{
    KelZoneDescription zone;
    zone.category = category;
    zone.id = id;
    base.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
    base.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
    base.getZoneSizeInfo(id, KEL_ZONE_EXTRA_SIZE, zone.extra);
    base.getZoneStringInfo(id, KEL_ZONE_STRING_0, zone.texts[0]);
    base.getZoneStringInfo(id, KEL_ZONE_STRING_1, zone.texts[1]);
    for (int type = 0; type < zoneInfoCount(category); ++type)
        zone.infos[type] = infoOf(base, category, id, type);
    if (category == KEL_FACE_ZONE)
        base.getAllFaceZoneFlags(id, zone.flags);

    KelBase& asked = const_cast<KelBase&>(base); // the adjacency is worked out when it is first asked for
    if (category == KEL_FACE_ZONE) {
        zone.neighbours[0] = neighbours(asked, &KelBase::getFaceCellZone0Ids, id);
        zone.neighbours[1] = neighbours(asked, &KelBase::getFaceCellZone1Ids, id);
    } else if (category == KEL_CELL_ZONE)
        zone.neighbours[0] = neighbours(asked, &KelBase::getCellFaceZoneIds, id);
    return zone;
}

void declareZone(KelBase& base, const KelZoneDescription& zone)
{
    base.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
    base.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
    base.setZoneSizeInfo(zone.id, KEL_ZONE_EXTRA_SIZE, zone.extra);
    base.setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.texts[0]);
    base.setZoneStringInfo(zone.id, KEL_ZONE_STRING_1, zone.texts[1]);
    for (int type = 0; type < zoneInfoCount(zone.category); ++type)
        setInfo(base, zone.category, zone.id, type, zone.infos[type]);
    if (zone.category == KEL_FACE_ZONE)
        base.setAllFaceZoneFlags(zone.id, zone.flags);
}

/// Declares the neighbours of all zones at one go, since KelBase takes them so.
void declareAdjacency(KelBase& base, const std::vector<KelZoneDescription>& zones)
{
    std::map<int, std::list<int>> beside[2], around;
    for (const KelZoneDescription& zone : zones) {
        for (int side = 0; side < 2; ++side)
            if (zone.category == KEL_FACE_ZONE && !zone.neighbours[side].empty())
                beside[side][zone.id].assign(zone.neighbours[side].begin(), zone.neighbours[side].end());
        if (zone.category == KEL_CELL_ZONE && !zone.neighbours[0].empty())
            around[zone.id].assign(zone.neighbours[0].begin(), zone.neighbours[0].end());
    }
    BaseAccess::setCellZones0(base, beside[0]);
    BaseAccess::setCellZones1(base, beside[1]);
    BaseAccess::setFaceZones(base, around);
}

/// The attributes of a phase or a variable, "Dataset Name" included, which the lists leave out.
template <class Id>
std::map<std::string, std::string> attributesOf(const KelSolutionModel& model, Id id,
                                                bool (KelSolutionModel::*getNames)(Id, std::vector<std::string>&) const,
                                                bool (KelSolutionModel::*get)(Id, const std::string&, std::string&)
                                                    const)
{
    std::map<std::string, std::string> attributes;
    std::vector<std::string> names;
    (model.*getNames)(id, names);
    names.emplace_back("Dataset Name");
    for (const std::string& name : names)
        if (std::string value; (model.*get)(id, name, value))
            attributes[name] = value;
    return attributes;
}

/// The zone categories on which each variable lives.
std::map<int, std::set<int>> categoriesOfVariables(const KelBase& base)
{
    std::map<int, std::set<int>> found;
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        BaseAccess::variablesOfCategory(base, category, ids);
        for (const int id : ids)
            found[id].insert(category);
    }
    return found;
}

} // namespace

KelZoneDescription freshZone(KelZoneCategory category, int id)
{
    KelZoneDescription zone;
    zone.category = category;
    zone.id = id;
    switch (category) {
    case KEL_NODE_ZONE:
    case KEL_CELL_ZONE:
        zone.infos[0] = -1;
        break;
    case KEL_EDGE_ZONE:
        zone.infos[0] = zone.infos[1] = -1;
        break;
    case KEL_FACE_ZONE:
        zone.infos[KEL_FACE_ZONE_INFO_0] = zone.infos[KEL_FACE_ZONE_INFO_TYPE] = -1;
        break;
    }
    return zone;
}

KelMeshDescription describeMesh(const KelBase& base)
{
    KelMeshDescription mesh = describeSizes(base);
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        base.getZoneIds(category, ids);
        for (const int id : ids)
            mesh.zones.push_back(describeZone(base, category, id));
    }
    return mesh;
}

void declareMesh(KelBase& base, const KelMeshDescription& mesh)
{
    BaseAccess::drop(base); // otherwise an id of the mesh before would keep its category
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type)
        base.setMeshSize(static_cast<KelMeshSizeType>(type), mesh.sizes[type]);
    base.setMeshUnits(mesh.units);
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        for (const KelZoneDescription& zone : mesh.zones)
            if (zone.category == category)
                ids.push_back(zone.id);
        base.setZoneIds(category, ids);
    }
    for (const KelZoneDescription& zone : mesh.zones)
        if (zoneInfoCount(zone.category) > 0)
            declareZone(base, zone);
    declareAdjacency(base, mesh.zones);
}

void declareZones(KelBase& base, const std::vector<KelZoneDescription>& zones)
{
    KelMeshDescription mesh = describeSizes(base);
    mesh.zones = zones;
    declareMesh(base, mesh);
}

KelSolutionDescription describeSolution(const KelBase& base)
{
    const KelSolutionModel& model = BaseAccess::model(base);
    const std::map<int, std::set<int>> categoriesOf = categoriesOfVariables(base);
    KelSolutionDescription solution;
    solution.timeLevels = base.getTimeLevels();
    std::vector<short> phaseIds;
    model.getPhases(phaseIds);
    for (const short phase : phaseIds) {
        solution.phases.push_back({phase, base.getPhaseName(phase),
                                   attributesOf(model, phase, &KelSolutionModel::getAttributeNamesOfPhase,
                                                &KelSolutionModel::getAttributeOfPhase)});
        std::vector<int> ids;
        model.getVariables(phase, ids);
        for (const int id : ids) {
            std::string name;
            model.getUniqueNameOfVariable(id, name);
            const auto found = categoriesOf.find(id);
            solution.variables.push_back({id, phase, name,
                                          attributesOf(model, id, &KelSolutionModel::getAttributeNamesOfVariable,
                                                       &KelSolutionModel::getAttributeOfVariable),
                                          found == categoriesOf.end() ? std::set<int>() : found->second});
        }
    }
    return solution;
}

} // namespace meridyn
