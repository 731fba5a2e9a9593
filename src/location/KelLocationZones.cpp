#include "LocationRecord.h"

#include <set>

namespace meridyn {

void appendZones(strata::Model& model, const strata::Body* body, int mapId, std::vector<int>& zones)
{
    for (const strata::ExternalBody& external : model.createMeshMap(mapId)->externalBodies(body))
        zones.push_back(external.zone());
}

void appendZoneSides(strata::Model& model, const strata::FaceUse* use, int mapId, std::vector<int>& sides)
{
    for (const strata::ExternalFaceSide& external : model.createMeshMap(mapId)->externalFaceSides(use))
        sides.push_back(static_cast<int>(external.farSide() ? -external.zone() : external.zone()));
}

bool KelLocationModel::setBodyZones(int bodyId, int mapId, const std::vector<int>& zones)
{
    strata::Body* body = _record->body(bodyId);
    if (body == nullptr)
        return false;
    std::set<strata::ExternalBody> externals;
    for (const int zone : zones)
        externals.emplace(zone);
    return _record->model.createMeshMap(mapId)->setExternalBodies(body, externals, false);
}

bool KelLocationModel::getBodyZones(int bodyId, int mapId, std::vector<int>& zones) const
{
    zones.clear();
    const strata::Body* body = _record->body(bodyId);
    if (body == nullptr)
        return false;
    appendZones(_record->model, body, mapId, zones);
    return true;
}

bool KelLocationModel::setFaceZones(int faceId, int mapId, const std::vector<int>& zones)
{
    strata::Face* face = _record->face(faceId);
    if (face == nullptr)
        return false;
    std::set<strata::ExternalFace> externals;
    for (const int zone : zones)
        externals.emplace(zone);
    return _record->model.createMeshMap(mapId)->setExternalFaces(face, externals, false);
}

bool KelLocationModel::getFaceZones(int faceId, int mapId, std::vector<int>& zones) const
{
    zones.clear();
    const strata::Face* face = _record->face(faceId);
    if (face == nullptr)
        return false;
    for (const strata::ExternalFace& external : _record->model.createMeshMap(mapId)->externalFaces(face))
        zones.push_back(external.zone());
    return true;
}

bool KelLocationModel::setFaceUseZoneSides(int faceUseId, int mapId, const std::vector<int>& sides)
{
    strata::FaceUse* use = _record->faceUse(faceUseId);
    if (use == nullptr)
        return false;
    std::set<strata::ExternalFaceSide> externals;
    for (const int side : sides)
        externals.emplace(std::abs(std::int64_t{side}), side < 1); // kept: 0 is the far side of zone 0
    return _record->model.createMeshMap(mapId)->setExternalFaceSides(use, externals, false);
}

bool KelLocationModel::getFaceUseZoneSides(int faceUseId, int mapId, std::vector<int>& sides) const
{
    sides.clear();
    const strata::FaceUse* use = _record->faceUse(faceUseId);
    if (use == nullptr)
        return false;
    appendZoneSides(_record->model, use, mapId, sides);
    return true;
}

} // namespace meridyn
