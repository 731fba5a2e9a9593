#include "core/DataInterface.h"
#include "core/Report.h"
#include "KelBase.h"

// In each operation: the zone's category first, then whether its table has it, then the type. The reports differ
// from one operation to the next, and are kept as they are: callers compare them.

namespace meridyn {

void KelBase::setNodeZoneInfo(int zoneId, KelNodeZoneInfoType type, int value) const
{
    if (getZoneCategory(zoneId) != KEL_NODE_ZONE) {
        printInvalidId("Warning: KelBase::setNodeZoneInfo: Invalid node-zone id (", zoneId);
        return;
    }
    NodeZone* const zone = _data->zones->nodes.find(zoneId);
    if (zone != nullptr && !zone->setInfo(type, value)) {
        printLine("Warning: KelUtility::setNodeZoneInfo: Invalid ZoneInfoType.");
    }
}

void KelBase::getNodeZoneInfo(int zoneId, KelNodeZoneInfoType type, int& value) const
{
    value = -1;
    if (getZoneCategory(zoneId) != KEL_NODE_ZONE) {
        printInvalidId("Warning: KelBase::getNodeZoneInfo: Invalid node-zone id (", zoneId);
        return;
    }
    const NodeZone* const zone = _data->zones->nodes.find(zoneId);
    if (zone != nullptr && !zone->getInfo(type, value)) {
        printLine("Warning: KelUtility::setNodeZoneInfo: Invalid ZoneInfoType."); // kept: the setter's text
    }
}

void KelBase::setEdgeZoneInfo(int zoneId, KelEdgeZoneInfoType type, int value)
{
    if (getZoneCategory(zoneId) != KEL_EDGE_ZONE) {
        printInvalidId("Warning: KelBase::setEdgeZoneInfo: Invalid cell-zone id (", zoneId); // kept: "cell-zone"
        return;
    }
    EdgeZone* const zone = _data->zones->edges.find(zoneId);
    if (zone != nullptr && !zone->setInfo(type, value)) {
        _data->registerMessage(KelWarning("Invalid ZoneInfoType.", "setInfo"));
    }
}

void KelBase::getEdgeZoneInfo(int zoneId, KelEdgeZoneInfoType type, int& value) const
{
    value = -1;
    if (getZoneCategory(zoneId) != KEL_EDGE_ZONE) {
        printInvalidId("Warning: KelBase::getEdgeZoneInfo: Invalid edge-zone id (", zoneId);
        return;
    }
    value = 0;
    const EdgeZone* const zone = _data->zones->edges.find(zoneId);
    if (zone != nullptr && !zone->getInfo(type, value)) {
        _data->registerMessage(KelWarning("Invalid ZoneInfoType.", "getInfo"));
    }
}

void KelBase::setFaceZoneInfo(int zoneId, KelFaceZoneInfoType type, int value) const
{
    if (getZoneCategory(zoneId) != KEL_FACE_ZONE) {
        printInvalidId("Warning: KelBase::setFaceZoneInfo: Invalid face-zone id (", zoneId);
        return;
    }
    FaceZone* const zone = _data->zones->faces.find(zoneId);
    if (zone != nullptr && !zone->setInfo(type, value)) {
        printLine("Warning: KelUtility::setFaceZoneInfo: Invalid ZoneInfoType.");
    }
}

void KelBase::getFaceZoneInfo(int zoneId, KelFaceZoneInfoType type, int& value) const
{
    value = -1;
    if (getZoneCategory(zoneId) != KEL_FACE_ZONE) {
        printInvalidId("Warning: KelBase::getFaceZoneInfo: Invalid face-zone id (", zoneId);
        return;
    }
    value = 0;
    const FaceZone* const zone = _data->zones->faces.find(zoneId);
    if (zone != nullptr && !zone->getInfo(type, value)) {
        printLine("Warning: KelUtility::getFaceZoneInfo: Invalid ZoneInfoType.");
    }
}

void KelBase::setCellZoneInfo(int zoneId, KelCellZoneInfoType type, int value)
{
    if (getZoneCategory(zoneId) != KEL_CELL_ZONE) {
        printInvalidId("Warning: KelBase::setCellZoneInfo: Invalid cell-zone id (", zoneId);
        return;
    }
    CellZone* const zone = _data->zones->cells.find(zoneId);
    if (zone != nullptr && !zone->setInfo(type, value)) {
        printLine("Warning: KelUtility::setCellZoneInfo: Invalid ZoneInfoType.");
    }
}

void KelBase::getCellZoneInfo(int zoneId, KelCellZoneInfoType type, int& value) const
{
    value = -1;
    if (getZoneCategory(zoneId) != KEL_CELL_ZONE) {
        printInvalidId("Warning: KelBase::getCellZoneInfo: Invalid cell-zone id (", zoneId);
        return;
    }
    const CellZone* const zone = _data->zones->cells.find(zoneId);
    if (zone != nullptr && !zone->getInfo(type, value)) {
        printLine("Warning: KelUtility::getCellZoneInfo: Invalid ZoneInfoType.");
    }
}

// ---- kinds -----------------------------------------------------------------------

void KelBase::setEdgeZoneType(int zoneId, KelEdgeZoneType type)
{
    EdgeZone* const zone = getZoneCategory(zoneId) == KEL_EDGE_ZONE ? _data->zones->edges.find(zoneId) : nullptr;
    if (zone != nullptr) { // kept: silent otherwise, unlike the getter
        zone->info0 = type;
    }
}

void KelBase::getEdgeZoneType(int zoneId, KelEdgeZoneType& type) const
{
    type = static_cast<KelEdgeZoneType>(-1);
    if (getZoneCategory(zoneId) != KEL_EDGE_ZONE) {
        printInvalidId("Warning: KelBase::getEdgeZoneType: Invalid edge-zone id (", zoneId);
        return;
    }
    const EdgeZone* const zone = _data->zones->edges.find(zoneId);
    type = static_cast<KelEdgeZoneType>(zone != nullptr ? zone->info0 : 0);
}

void KelBase::setFaceZoneType(int zoneId, KelFaceZoneType type)
{
    FaceZone* const zone = getZoneCategory(zoneId) == KEL_FACE_ZONE ? _data->zones->faces.find(zoneId) : nullptr;
    if (zone != nullptr) { // kept: silent otherwise, unlike the getter
        zone->type = type;
    }
}

void KelBase::getFaceZoneType(int zoneId, KelFaceZoneType& type) const
{
    type = static_cast<KelFaceZoneType>(-1);
    if (getZoneCategory(zoneId) != KEL_FACE_ZONE) {
        printInvalidId("Warning: KelBase::getFaceZoneType: Invalid face-zone id (", zoneId);
        return;
    }
    const FaceZone* const zone = _data->zones->faces.find(zoneId);
    type = static_cast<KelFaceZoneType>(zone != nullptr ? zone->type : 0);
}

// ---- flags -----------------------------------------------------------------------

static bool isFaceZoneProp(int property)
{
    return property >= KEL_FACE_ZONE_PROP_0 && property <= KEL_FACE_ZONE_PROP_6;
}

void KelBase::setFaceZoneProp(int zoneId, KelFaceZonePropType property)
{
    if (getZoneCategory(zoneId) != KEL_FACE_ZONE) {
        printInvalidId("Warning: KelBase::setFaceZoneProp: Invalid face-zone id (", zoneId);
        return;
    }
    FaceZone* const zone = _data->zones->faces.find(zoneId);
    if (zone == nullptr) {
        return;
    }
    if (!isFaceZoneProp(property)) {
        printLine("Warning: KelUtility::setFaceZoneProp: Invalid ZonePropType.");
        return;
    }
    zone->flags |= 1 << property;
}

bool KelBase::getFaceZoneProp(int zoneId, KelFaceZonePropType property) const
{
    if (getZoneCategory(zoneId) != KEL_FACE_ZONE) {
        printInvalidId("Warning: KelBase::getFaceZoneProp: Invalid face-zone id (", zoneId);
        return false;
    }
    const FaceZone* const zone = _data->zones->faces.find(zoneId);
    if (zone == nullptr) {
        return false;
    }
    if (!isFaceZoneProp(property)) {
        printLine("Warning: KelUtility::getFaceZoneProp: Invalid ZonePropType.");
        return false;
    }
    return (zone->flags & (1 << property)) != 0;
}

void KelBase::setAllFaceZoneFlags(int zoneId, int flags)
{
    // kept: the category is not asked, only the table
    FaceZone* const zone = _data->zones->faces.find(zoneId);
    if (zone != nullptr) {
        zone->flags = flags;
    }
}

void KelBase::getAllFaceZoneFlags(int zoneId, int& flags) const
{
    const FaceZone* const zone = _data->zones->faces.find(zoneId);
    flags = zone != nullptr ? zone->flags : 0;
}

} // namespace meridyn
