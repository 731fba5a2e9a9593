#include "formats/common/BaseAccess.h"
#include "TransferRun.h"

#include <algorithm>
#include <list>

namespace meridyn {

namespace {

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

void copyContext(TransferRun& run)
{
    BaseAccess::setContext(run.target, run.source.getMeshId(), run.source.getTarget(), run.source.getPartitionId());
    for (int type = KEL_MESH_DIMENSION; type <= KEL_MESH_SIZE_4; ++type) {
        unsigned64 size = 0;
        run.source.getMeshSize(static_cast<KelMeshSizeType>(type), size);
        run.target.setMeshSize(static_cast<KelMeshSizeType>(type), size);
    }
    std::string units;
    run.source.getMeshUnits(units);
    run.target.setMeshUnits(units);
    run.target.setSolverType(run.source.getSolverType());
}

void copyRangesAndNames(const KelBase& from, KelBase& to, int zone)
{
    for (const KelZoneSizeType type : {KEL_ZONE_FIRST_ID, KEL_ZONE_LAST_ID, KEL_ZONE_EXTRA_SIZE}) {
        unsigned64 size = 0;
        from.getZoneSizeInfo(zone, type, size);
        to.setZoneSizeInfo(zone, type, size);
    }
    for (const KelZoneStringInfoType type : {KEL_ZONE_STRING_0, KEL_ZONE_STRING_1}) {
        std::string text;
        from.getZoneStringInfo(zone, type, text);
        to.setZoneStringInfo(zone, type, text);
    }
}

void copyNumbers(const KelBase& from, KelBase& to, KelZoneCategory category, int zone)
{
    int value = 0;
    switch (category) {
    case KEL_NODE_ZONE:
        from.getNodeZoneInfo(zone, KEL_NODE_ZONE_INFO_0, value);
        to.setNodeZoneInfo(zone, KEL_NODE_ZONE_INFO_0, value);
        break;
    case KEL_EDGE_ZONE:
        for (const KelEdgeZoneInfoType type : {KEL_EDGE_ZONE_INFO_0, KEL_EDGE_ZONE_INFO_1}) {
            from.getEdgeZoneInfo(zone, type, value);
            to.setEdgeZoneInfo(zone, type, value);
        }
        break;
    case KEL_FACE_ZONE:
        for (int type = KEL_FACE_ZONE_INFO_0; type <= KEL_FACE_ZONE_INFO_TYPE; ++type) {
            from.getFaceZoneInfo(zone, static_cast<KelFaceZoneInfoType>(type), value);
            to.setFaceZoneInfo(zone, static_cast<KelFaceZoneInfoType>(type), value);
        }
        from.getAllFaceZoneFlags(zone, value);
        to.setAllFaceZoneFlags(zone, value);
        break;
    case KEL_CELL_ZONE:
        for (const KelCellZoneInfoType type : {KEL_CELL_ZONE_INFO_0, KEL_CELL_ZONE_INFO_1}) {
            from.getCellZoneInfo(zone, type, value);
            to.setCellZoneInfo(zone, type, value);
        }
        break;
    }
}

/// Whether a zone has a text, a size or a number other than those of a zone that was only declared.
bool hasProperties(const KelBase& base, KelZoneCategory category, int zone)
{
    KelBase fresh;
    fresh.setZoneIds(category, {zone});
    unsigned64 extra = 0;
    std::string name, kind;
    base.getZoneSizeInfo(zone, KEL_ZONE_EXTRA_SIZE, extra);
    base.getZoneStringInfo(zone, KEL_ZONE_STRING_0, name);
    base.getZoneStringInfo(zone, KEL_ZONE_STRING_1, kind);
    return extra != 0 || !name.empty() || !kind.empty() ||
           zoneNumbers(base, category, zone) != zoneNumbers(fresh, category, zone);
}

void copyAdjacency(TransferRun& run)
{
    std::vector<int> faceZones, cellZones;
    run.source.getZoneIds(KEL_FACE_ZONE, faceZones);
    run.source.getZoneIds(KEL_CELL_ZONE, cellZones);
    std::map<int, std::list<int>> side0, side1, around;
    bool isEmpty = true;
    for (const int zone : faceZones) {
        run.source.getFaceCellZone0Ids(zone, side0[zone]);
        run.source.getFaceCellZone1Ids(zone, side1[zone]);
        isEmpty = isEmpty && side0[zone].empty() && side1[zone].empty();
    }
    for (const int zone : cellZones) {
        run.source.getCellFaceZoneIds(zone, around[zone]);
        isEmpty = isEmpty && around[zone].empty();
    }
    if (isEmpty || !run.carries(KEL_FAMILY_ZONE_ADJACENCY, "face and cell zones"))
        return;
    BaseAccess::setCellZones0(run.target, side0);
    BaseAccess::setCellZones1(run.target, side1);
    BaseAccess::setFaceZones(run.target, around);
}

} // namespace

void copyZones(TransferRun& run)
{
    run.tell("zones", 0, 0, 0);
    copyContext(run);
    for (const KelZoneCategory category : categories) {
        std::vector<int> ids;
        run.source.getZoneIds(category, ids);
        run.target.setZoneIds(category, ids);
        for (const int zone : ids) {
            if (!run.takes(KEL_FAMILY_ZONE_PROPERTIES) && hasProperties(run.source, category, zone))
                run.carries(KEL_FAMILY_ZONE_PROPERTIES, zoneLabel(run.source, zone));
            copyRangesAndNames(run.source, run.target, zone);
            copyNumbers(run.source, run.target, category, zone);
        }
    }
    copyAdjacency(run);
}

} // namespace meridyn
