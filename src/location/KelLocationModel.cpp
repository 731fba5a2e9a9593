#include "KelLocationModel.h"

#include "LocationRecord.h"

namespace meridyn {

namespace {

/// Answers a look-up or a creation: hands the id out when there is a region.
template <class T>
bool giveId(const T* region, int& id)
{
    if (region == nullptr)
        return false;
    id = idOf(region);
    return true;
}

template <class T>
bool giveName(const T* region, std::string& name)
{
    if (region == nullptr)
        return false;
    name = region->name();
    return true;
}

template <class T>
bool rename(T* region, const std::string& name)
{
    return region != nullptr && region->rename(name);
}

template <class T>
bool destroy(T* region)
{
    if (region == nullptr)
        return false;
    region->destroy();
    return true;
}

template <class T>
bool givePart(const T* region, int& partId)
{
    return region != nullptr && giveId(region->part(), partId);
}

template <class T>
void giveIds(const std::vector<T*>& regions, std::vector<int>& ids)
{
    ids.clear();
    appendIds(regions, ids);
}

} // namespace

KelLocationModel::KelLocationModel() : _record(std::make_unique<Record>())
{}

KelLocationModel::~KelLocationModel() = default;

// ---- creation and deletion -----------------------------------------------------------

void KelLocationModel::createPart(int dimensionality, const std::string& name, int& id)
{
    giveId(_record->topology->createPart(dimensionality, name), id);
}

bool KelLocationModel::createBody(int partId, const std::string& name, int& id)
{
    strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->createBody(name), id);
}

bool KelLocationModel::createFace(int partId, const std::string& name, int& id)
{
    strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->createFace(name), id);
}

bool KelLocationModel::createComposite(int partId, const std::string& name, int& id)
{
    strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->createComposite(name, {}), id);
}

bool KelLocationModel::createFaceUse(int bodyId, int faceId, int side, int& id)
{
    strata::Body* body = _record->body(bodyId);
    strata::Face* face = _record->face(faceId);
    if (body == nullptr || face == nullptr)
        return false;
    const strata::FaceUse* use = face->faceUse(side);
    if (use == nullptr)
        use = body->createFaceUse(face, side, ""); // refuses a side other than 0 and 1
    if (use == nullptr || use->body() != body)
        return false;
    id = side < 1 ? faceId : -faceId;
    return true;
}

bool KelLocationModel::deletePart(int partId)
{
    return destroy(_record->part(partId));
}

bool KelLocationModel::deleteBody(int bodyId)
{
    strata::Body* body = _record->body(bodyId);
    if (body == nullptr)
        return false;
    body->destroy(false);
    return true;
}

bool KelLocationModel::deleteFace(int faceId)
{
    return destroy(_record->face(faceId));
}

bool KelLocationModel::deleteComposite(int compositeId)
{
    return destroy(_record->composite(compositeId));
}

bool KelLocationModel::deleteFaceUse(int faceUseId)
{
    return destroy(_record->faceUse(faceUseId));
}

void KelLocationModel::clearTopology()
{
    _record->topology->clear();
}

// ---- look-up by name -----------------------------------------------------------------

bool KelLocationModel::findPart(const std::string& name, int& id) const
{
    return giveId(_record->topology->findPartByName(name), id);
}

bool KelLocationModel::findBody(int partId, const std::string& name, int& id) const
{
    const strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->findBodyByName(name), id);
}

bool KelLocationModel::findFace(int partId, const std::string& name, int& id) const
{
    const strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->findFaceByName(name), id);
}

bool KelLocationModel::findComposite(int partId, const std::string& name, int& id) const
{
    const strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->findCompositeByName(name), id);
}

bool KelLocationModel::findFaceUse(int partId, const std::string& name, int& id) const
{
    const strata::Part* part = _record->part(partId);
    return part != nullptr && giveId(part->findFaceUseByName(name), id);
}

// ---- names and relations -------------------------------------------------------------

bool KelLocationModel::getPartName(int partId, std::string& name) const
{
    return giveName(_record->part(partId), name);
}

bool KelLocationModel::getBodyName(int bodyId, std::string& name) const
{
    return giveName(_record->body(bodyId), name);
}

bool KelLocationModel::getFaceName(int faceId, std::string& name) const
{
    return giveName(_record->face(faceId), name);
}

bool KelLocationModel::getCompositeName(int compositeId, std::string& name) const
{
    return giveName(_record->composite(compositeId), name);
}

bool KelLocationModel::getFaceUseName(int faceUseId, std::string& name) const
{
    const strata::FaceUse* use = _record->faceUse(faceUseId);
    return use != nullptr && !use->name().empty() && giveName(use, name); // kept: unnamed is false, here alone
}

bool KelLocationModel::getFaceUseRelativeName(int faceUseId, std::string& name) const
{
    const strata::FaceUse* use = _record->faceUse(faceUseId);
    if (use == nullptr)
        return false;
    name = use->relativeName();
    return true;
}

bool KelLocationModel::setPartName(int partId, const std::string& name)
{
    return rename(_record->part(partId), name);
}

bool KelLocationModel::setBodyName(int bodyId, const std::string& name)
{
    return rename(_record->body(bodyId), name);
}

bool KelLocationModel::setFaceName(int faceId, const std::string& name)
{
    return rename(_record->face(faceId), name);
}

bool KelLocationModel::setCompositeName(int compositeId, const std::string& name)
{
    return rename(_record->composite(compositeId), name);
}

bool KelLocationModel::setFaceUseName(int faceUseId, const std::string& name)
{
    return rename(_record->faceUse(faceUseId), name);
}

void KelLocationModel::getParts(std::vector<int>& ids) const
{
    giveIds(_record->topology->parts(), ids);
}

bool KelLocationModel::getPartBodies(int partId, std::vector<int>& ids) const
{
    const strata::Part* part = _record->part(partId);
    if (part != nullptr)
        giveIds(part->bodies(), ids);
    return part != nullptr;
}

bool KelLocationModel::getPartFaces(int partId, std::vector<int>& ids) const
{
    const strata::Part* part = _record->part(partId);
    if (part != nullptr)
        giveIds(part->faces(), ids);
    return part != nullptr;
}

bool KelLocationModel::getPartComposites(int partId, std::vector<int>& ids) const
{
    const strata::Part* part = _record->part(partId);
    if (part != nullptr)
        giveIds(part->composites(), ids);
    return part != nullptr;
}

bool KelLocationModel::getPartFaceUses(int partId, std::vector<int>& ids) const
{
    const strata::Part* part = _record->part(partId);
    if (part != nullptr)
        giveIds(part->faceUses(), ids);
    return part != nullptr;
}

bool KelLocationModel::getBodyBoundary(int bodyId, std::vector<int>& faceUseIds) const
{
    const strata::Body* body = _record->body(bodyId);
    if (body != nullptr)
        giveIds(body->boundary(), faceUseIds);
    return body != nullptr;
}

bool KelLocationModel::getPartDimensionality(int partId, int& dimensionality) const
{
    const strata::Part* part = _record->part(partId);
    if (part != nullptr)
        dimensionality = part->dimensionality();
    return part != nullptr;
}

bool KelLocationModel::getBodyPart(int bodyId, int& partId) const
{
    return givePart(_record->body(bodyId), partId);
}

bool KelLocationModel::getFacePart(int faceId, int& partId) const
{
    return givePart(_record->face(faceId), partId);
}

bool KelLocationModel::getFaceUsePart(int faceUseId, int& partId) const
{
    return givePart(_record->faceUse(faceUseId), partId);
}

bool KelLocationModel::getFaceSides(int faceId, int& side0, int& side1) const
{
    const strata::Face* face = _record->face(faceId);
    if (face == nullptr)
        return false;
    side0 = face->faceUse(0) != nullptr ? faceId : 0;
    side1 = face->faceUse(1) != nullptr ? -faceId : 0;
    return true;
}

bool KelLocationModel::getFaceUseDefinition(int faceUseId, int& bodyId, int& faceId, int& side) const
{
    const strata::FaceUse* use = _record->faceUse(faceUseId);
    if (use == nullptr)
        return false;
    bodyId = idOf(use->body());
    faceId = idOf(use->face());
    side = use->side();
    return true;
}

// ---- state ---------------------------------------------------------------------------

std::string KelLocationModel::state() const
{
    return _record->model.state();
}

bool KelLocationModel::reset(const std::string& state)
{
    return _record->model.reset(state);
}

} // namespace meridyn
