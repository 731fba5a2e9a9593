#include "core/DataInterface.h"
#include "KelBase.h"

namespace meridyn {

using ZoneLists = std::map<int, std::list<int>>;

// ---- setting ---------------------------------------------------------------------

static void setFaceCellZoneIds(DataInterface& data, const ZoneLists& lists, std::list<int> FaceZone::*side)
{
    for (const auto& [faceZoneId, cellZoneIds] : lists) {
        if (data.categoryOf(faceZoneId) != KEL_FACE_ZONE) {
            continue;
        }
        FaceZone* const zone = data.zones->faces.find(faceZoneId);
        if (zone != nullptr) {
            zone->*side = cellZoneIds;
        }
        data.zones->faces.cellZonesGiven = true; // kept: also for a zone that the table dropped
    }
}

void KelBase::setFaceCellZone0Ids(const ZoneLists& cellZoneIds)
{
    setFaceCellZoneIds(*_data, cellZoneIds, &FaceZone::cellZones0);
}

void KelBase::setFaceCellZone1Ids(const ZoneLists& cellZoneIds)
{
    setFaceCellZoneIds(*_data, cellZoneIds, &FaceZone::cellZones1);
}

void KelBase::setCellFaceZoneIds(const ZoneLists& faceZoneIds)
{
    for (const auto& [cellZoneId, ids] : faceZoneIds) {
        CellZone* const zone =
            getZoneCategory(cellZoneId) == KEL_CELL_ZONE ? _data->zones->cells.find(cellZoneId) : nullptr;
        if (zone != nullptr) {
            zone->faceZones = ids;
        }
    }
}

// ---- reading ---------------------------------------------------------------------

/// Copies the ids that name a zone: others mean that none lies on this side.
static void copyZoneIds(const std::list<int>& from, std::list<int>& to)
{
    for (const int id : from) {
        if (id > 0) {
            to.push_back(id);
        }
    }
}

static void getFaceCellZoneIds(DataInterface& data, int faceZoneId, std::list<int> FaceZone::*side,
                               const char* function, std::list<int>& ids)
{
    if (data.categoryOf(faceZoneId) != KEL_FACE_ZONE) {
        data.registerMessage(KelError("Invalid face-zone id (" + std::to_string(faceZoneId) + ").", function));
        return;
    }
    const FaceZone* const zone = data.zones->faces.find(faceZoneId);
    if (zone != nullptr) {
        copyZoneIds(zone->*side, ids);
    }
}

void KelBase::getFaceCellZone0Ids(int faceZoneId, std::list<int>& ids)
{
    ids.clear();
    prepareAdjacency();
    getFaceCellZoneIds(*_data, faceZoneId, &FaceZone::cellZones0, "getFaceCellZone0Ids", ids);
}

void KelBase::getFaceCellZone1Ids(int faceZoneId, std::list<int>& ids)
{
    ids.clear();
    prepareAdjacency();
    getFaceCellZoneIds(*_data, faceZoneId, &FaceZone::cellZones1, "getFaceCellZone1Ids", ids);
}

void KelBase::getCellFaceZoneIds(int cellZoneId, std::list<int>& ids)
{
    ids.clear();
    prepareAdjacency();
    if (getZoneCategory(cellZoneId) != KEL_CELL_ZONE) {
        _data->registerMessage(
            KelError("Invalid cell-zone id (" + std::to_string(cellZoneId) + ").", "getCellFaceZoneIds"));
        return;
    }
    const CellZone* const zone = _data->zones->cells.find(cellZoneId);
    if (zone != nullptr) {
        copyZoneIds(zone->faceZones, ids);
    }
}

void KelBase::prepareAdjacency()
{
    if (!_data->adjacencyReady) {
        _data->adjacencyReady = true; // before the hook, which may itself ask for what it has set so far
        setZoneAdjacency();
    }
}

} // namespace meridyn
