#include "strata/Part.h"

#include "Store.h"

#include <utility>

namespace strata {

namespace {

const RegionSet& regionsOf(const PartData& part, Region::Kind kind)
{
    return part.regions[static_cast<std::size_t>(kind)];
}

} // namespace

Part::Part(std::unique_ptr<PartData> data) : _data(std::move(data))
{}

Part::~Part() = default;

std::string Part::id() const
{
    return std::to_string(_data->number).insert(0, 1, 'p');
}

int Part::number() const
{
    return _data->number;
}

int Part::dimensionality() const
{
    return _data->dimensionality;
}

const std::string& Part::name() const
{
    return _data->name;
}

bool Part::rename(const std::string& name)
{
    _data->store->rename(*this, name);
    return true;
}

Topology* Part::topology() const
{
    return _data->store->topology;
}

Body* Part::createBody(const std::string& name)
{
    Store& store = *_data->store;
    if (store.nextBody > greatestNumber)
        return nullptr;
    Body* body = store.addBody(*this, static_cast<int>(store.nextBody), name);
    store.nextBody += body != nullptr ? 1 : 0;
    return body;
}

Face* Part::createFace(const std::string& name)
{
    Store& store = *_data->store;
    if (store.nextFace > greatestNumber)
        return nullptr;
    Face* face = store.addFace(*this, static_cast<int>(store.nextFace), name);
    store.nextFace += face != nullptr ? 1 : 0;
    return face;
}

Composite* Part::createComposite(const std::string& name, const RegionSet& members)
{
    Store& store = *_data->store;
    if (store.nextComposite > greatestNumber)
        return nullptr;
    for (const Region* member : members)
        if (member == nullptr || member->part()->topology() != topology())
            return nullptr;
    Composite* composite = store.addComposite(*this, static_cast<int>(store.nextComposite), name);
    if (composite == nullptr)
        return nullptr;
    ++store.nextComposite;
    Store::setMembers(*composite, members); // nothing holds the new one yet: no circle
    return composite;
}

Body* Part::findBodyByName(const std::string& name) const
{
    return static_cast<Body*>(findNamed(*_data, Region::Kind::Body, name));
}

Face* Part::findFaceByName(const std::string& name) const
{
    return static_cast<Face*>(findNamed(*_data, Region::Kind::Face, name));
}

Composite* Part::findCompositeByName(const std::string& name) const
{
    return static_cast<Composite*>(findNamed(*_data, Region::Kind::Composite, name));
}

FaceUse* Part::findFaceUseByName(const std::string& name) const
{
    return static_cast<FaceUse*>(findNamed(*_data, Region::Kind::FaceUse, name));
}

std::vector<Body*> Part::bodies() const
{
    return listOf<Body>(regionsOf(*_data, Region::Kind::Body));
}

std::vector<Face*> Part::faces() const
{
    return listOf<Face>(regionsOf(*_data, Region::Kind::Face));
}

std::vector<Composite*> Part::composites() const
{
    return listOf<Composite>(regionsOf(*_data, Region::Kind::Composite));
}

std::vector<FaceUse*> Part::faceUses() const
{
    return listOf<FaceUse>(regionsOf(*_data, Region::Kind::FaceUse));
}

void Part::destroy()
{
    _data->store->remove(*this);
}

} // namespace strata
