// Body, Face and FaceUse: what bounds what.
#include "Store.h"

namespace strata {

Body::~Body() = default;

FaceUse* Body::createFaceUse(Face* face, int side, const std::string& name)
{
    if (face == nullptr || (side != 0 && side != 1) || face->part()->topology() != part()->topology())
        return nullptr;
    return Store::of(*this).addFaceUse(*this, *face, side, name);
}

std::vector<FaceUse*> Body::boundary() const
{
    return listOf<FaceUse>(Store::data(*this).boundary);
}

void Body::destroy(bool withFaces)
{
    Store& store = Store::of(*this);
    std::set<Face*, RegionLess> used;
    if (withFaces)
        for (const FaceUse* use : boundary())
            used.insert(use->face());
    store.remove(*this);
    for (Face* face : used)
        if (face->faceUse(0) == nullptr && face->faceUse(1) == nullptr)
            store.remove(*face);
}

Face::~Face() = default;

FaceUse* Face::faceUse(int side) const
{
    return side == 0 || side == 1 ? Store::data(*this).uses[static_cast<std::size_t>(side)].get() : nullptr;
}

void Face::destroy()
{
    Store::of(*this).remove(*this);
}

FaceUse::~FaceUse() = default;

Body* FaceUse::body() const
{
    return Store::data(*this).body;
}

Face* FaceUse::face() const
{
    return Store::data(*this).face;
}

int FaceUse::side() const
{
    return Store::data(*this).side;
}

std::string FaceUse::relativeName() const
{
    std::string text = body()->name() + ":" + face()->name();
    const FaceUse* other = face()->faceUse(1 - side());
    if (other != nullptr && other->body() == body())
        text += side() == 0 ? ":0" : ":1";
    return text;
}

void FaceUse::destroy()
{
    Store::of(*this).remove(*this);
}

} // namespace strata
