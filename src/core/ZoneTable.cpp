#include "core/ZoneTable.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"

namespace meridyn {

ZoneTable::ZoneTable(KelMessageRegistrar* registrar) : _registrar(registrar)
{}
ZoneTable::~ZoneTable() = default;

void ZoneTable::reset(const std::vector<int>& ids)
{
    const std::size_t count = ids.size();
    _ids = ids;
    _strings0.assign(count, std::string());
    _strings1.assign(count, std::string());
    _extraSizes.assign(count, 0);
    _firstIds.assign(count, 0);
    _lastIds.assign(count, 0);
    _index.clear();
    for (std::size_t position = 0; position < count; ++position) {
        _index[ids[position]] = position;
    }
    resetInformation(count);
}

std::size_t ZoneTable::positionOf(int zoneId) const
{
    const auto found = _index.find(zoneId);
    return found == _index.end() ? noPosition : found->second;
}

void ZoneTable::setSize(int zoneId, KelZoneSizeType type, unsigned64 value)
{
    const std::size_t position = positionOf(zoneId);
    if (position == noPosition) {
        return;
    }
    switch (type) {
    case KEL_ZONE_FIRST_ID:
        _firstIds[position] = value;
        return;
    case KEL_ZONE_LAST_ID:
        _lastIds[position] = value;
        return;
    case KEL_ZONE_EXTRA_SIZE:
        _extraSizes[position] = value;
        return;
    case KEL_ZONE_ELEMENT_COUNT: // derived
        break;
    }
    _registrar->registerMessage(KelWarning("Invalid ZoneSizeType.", "setZoneSize"));
}

unsigned64 ZoneTable::getSize(int zoneId, KelZoneSizeType type) const
{
    const std::size_t position = positionOf(zoneId);
    if (position == noPosition) {
        return 0;
    }
    switch (type) {
    case KEL_ZONE_FIRST_ID:
        return _firstIds[position];
    case KEL_ZONE_LAST_ID:
        return _lastIds[position];
    case KEL_ZONE_ELEMENT_COUNT:
        // kept: a last id below the first is not checked, the count wraps
        return _firstIds[position] == 0 ? 0 : _lastIds[position] - _firstIds[position] + 1;
    case KEL_ZONE_EXTRA_SIZE:
        return _extraSizes[position];
    }
    _registrar->registerMessage(KelWarning("Invalid ZoneSizeType.", "getZoneSize"));
    return 0;
}

void ZoneTable::setString(int zoneId, KelZoneStringInfoType type, const std::string& text)
{
    const std::size_t position = positionOf(zoneId);
    if (position == noPosition) {
        return;
    }
    switch (type) {
    case KEL_ZONE_STRING_0:
        _strings0[position] = text;
        return;
    case KEL_ZONE_STRING_1:
        _strings1[position] = text;
        return;
    }
    _registrar->registerMessage(KelWarning("Invalid ZoneStringInfoType.", "setZoneStringInfo"));
}

std::string ZoneTable::getString(int zoneId, KelZoneStringInfoType type) const
{
    const std::size_t position = positionOf(zoneId);
    if (position == noPosition) {
        return std::string();
    }
    switch (type) {
    case KEL_ZONE_STRING_0:
        return _strings0[position];
    case KEL_ZONE_STRING_1:
        return _strings1[position];
    }
    _registrar->registerMessage(KelWarning("Invalid ZoneStringInfoType.", "getZoneStringInfo"));
    return std::string();
}

bool NodeZone::setInfo(int type, int value)
{
    if (type != KEL_NODE_ZONE_INFO_0) {
        return false;
    }
    info0 = value;
    return true;
}

bool NodeZone::getInfo(int type, int& value) const
{
    if (type != KEL_NODE_ZONE_INFO_0) {
        return false;
    }
    value = info0;
    return true;
}

bool EdgeZone::setInfo(int type, int value)
{
    switch (type) {
    case KEL_EDGE_ZONE_INFO_0:
        info0 = value;
        return true;
    case KEL_EDGE_ZONE_INFO_1:
        info1 = value;
        return true;
    default:
        return false;
    }
}

bool EdgeZone::getInfo(int type, int& value) const
{
    switch (type) {
    case KEL_EDGE_ZONE_INFO_0:
        value = info0;
        return true;
    case KEL_EDGE_ZONE_INFO_1:
        value = info1;
        return true;
    default:
        return false;
    }
}

bool FaceZone::setInfo(int infoType, int value)
{
    switch (infoType) {
    case KEL_FACE_ZONE_INFO_0:
        info0 = static_cast<short>(value);
        return true;
    case KEL_FACE_ZONE_INFO_1:
        info1 = value;
        return true;
    case KEL_FACE_ZONE_INFO_2:
        info2 = value;
        return true;
    case KEL_FACE_ZONE_INFO_3:
        info3 = value;
        return true;
    case KEL_FACE_ZONE_INFO_4:
        info4 = value;
        return true;
    case KEL_FACE_ZONE_INFO_TYPE:
        type = value;
        return true;
    case 6: // kept: 6 and 7 can be set, not got
        cellZones0.assign(1, value);
        return true;
    case 7:
        cellZones1.assign(1, value);
        return true;
    default:
        return false;
    }
}

bool FaceZone::getInfo(int infoType, int& value) const
{
    switch (infoType) {
    case KEL_FACE_ZONE_INFO_0:
        value = info0;
        return true;
    case KEL_FACE_ZONE_INFO_1:
        value = info1;
        return true;
    case KEL_FACE_ZONE_INFO_2:
        value = info2;
        return true;
    case KEL_FACE_ZONE_INFO_3:
        value = info3;
        return true;
    case KEL_FACE_ZONE_INFO_4:
        value = info4;
        return true;
    case KEL_FACE_ZONE_INFO_TYPE:
        value = type;
        return true;
    default:
        return false;
    }
}

bool CellZone::setInfo(int type, int value)
{
    switch (type) {
    case KEL_CELL_ZONE_INFO_0:
        info0 = static_cast<short>(value);
        return true;
    case KEL_CELL_ZONE_INFO_1:
        info1 = value;
        return true;
    default:
        return false;
    }
}

bool CellZone::getInfo(int type, int& value) const
{
    switch (type) {
    case KEL_CELL_ZONE_INFO_0:
        value = info0;
        return true;
    case KEL_CELL_ZONE_INFO_1:
        value = info1;
        return true;
    default:
        return false;
    }
}

ZoneTables::ZoneTables(KelMessageRegistrar* registrar)
    : nodes(registrar), edges(registrar), faces(registrar), cells(registrar)
{}

ZoneTable* ZoneTables::ofCategory(int category)
{
    switch (category) {
    case KEL_NODE_ZONE:
        return &nodes;
    case KEL_EDGE_ZONE:
        return &edges;
    case KEL_FACE_ZONE:
        return &faces;
    case KEL_CELL_ZONE:
        return &cells;
    default:
        return nullptr;
    }
}

} // namespace meridyn
