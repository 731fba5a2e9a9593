#include "Store.h"

#include <utility>

namespace strata {

namespace {

RegionSet& sameKind(const Region& region)
{
    return Store::data(*region.part()).regions[static_cast<std::size_t>(region.kind())];
}

/// The set among a composite's members where one of its kind stands.
RegionSet& membersLike(Composite& composite, const Region& member)
{
    CompositeData& data = Store::data(composite);
    return member.kind() == Region::Kind::Composite ? data.composites : data.primitives;
}

} // namespace

Region* findNamed(const PartData& part, Region::Kind kind, const std::string& name)
{
    const auto* bearers = part.names.find(name);
    if (bearers != nullptr)
        for (Region* region : *bearers) // at most one of each kind
            if (region->kind() == kind)
                return region;
    return nullptr;
}

void Store::enter(Region& region)
{
    RegionSet& others = sameKind(region);
    others.insert(others.end(), &region); // numbers ascend, so mostly it comes last
    data(*region.part()).names.add(region.name(), &region);
    regionNames.add(region.name(), &region);
}

void Store::leave(Region& region)
{
    for (Region* owner : data(region).owners)
        membersLike(static_cast<Composite&>(*owner), region).erase(&region);
    regionNames.remove(region.name(), &region);
    data(*region.part()).names.remove(region.name(), &region);
    sameKind(region).erase(&region);
}

Part* Store::addPart(int number, int dimensionality, const std::string& name)
{
    auto partData = std::make_unique<PartData>();
    partData->store = this;
    partData->number = number;
    partData->dimensionality = dimensionality;
    partData->name = name;
    std::unique_ptr<Part> part(new Part(std::move(partData)));
    Part* made = part.get();
    parts.emplace_hint(parts.end(), number, std::move(part));
    partNames.add(name, made);
    return made;
}

template <class T, class Data>
T* Store::addNumbered(std::map<int, std::unique_ptr<T>>& all, Region::Kind kind, Part& part, int number,
                      const std::string& name)
{
    if (findNamed(data(part), kind, name) != nullptr)
        return nullptr;
    std::unique_ptr<T> region(new T(std::make_unique<Data>(kind, number, &part, name)));
    T* made = region.get();
    all.emplace_hint(all.end(), number, std::move(region));
    enter(*made);
    return made;
}

Body* Store::addBody(Part& part, int number, const std::string& name)
{
    return addNumbered<Body, BodyData>(bodies, Region::Kind::Body, part, number, name);
}

Face* Store::addFace(Part& part, int number, const std::string& name)
{
    return addNumbered<Face, FaceData>(faces, Region::Kind::Face, part, number, name);
}

Composite* Store::addComposite(Part& part, int number, const std::string& name)
{
    return addNumbered<Composite, CompositeData>(composites, Region::Kind::Composite, part, number, name);
}

FaceUse* Store::addFaceUse(Body& body, Face& face, int side, const std::string& name)
{
    std::unique_ptr<FaceUse>& slot = data(face).uses[static_cast<std::size_t>(side)];
    if (slot != nullptr || findNamed(data(*body.part()), Region::Kind::FaceUse, name) != nullptr)
        return nullptr;
    auto useData = std::make_unique<FaceUseData>(Region::Kind::FaceUse, face.number(), body.part(), name, side);
    useData->body = &body;
    useData->face = &face;
    slot.reset(new FaceUse(std::move(useData)));
    enter(*slot);
    data(body).boundary.insert(slot.get());
    return slot.get();
}

void Store::remove(FaceUse& faceUse)
{
    const FaceUseData& use = data(faceUse);
    leave(faceUse);
    data(*use.body).boundary.erase(&faceUse);
    data(*use.face).uses[static_cast<std::size_t>(use.side)].reset();
}

void Store::remove(Face& face)
{
    for (const auto& use : data(face).uses)
        if (use != nullptr)
            remove(*use);
    leave(face);
    faces.erase(face.number());
}

void Store::remove(Body& body)
{
    RegionSet& boundary = data(body).boundary;
    while (!boundary.empty())
        remove(static_cast<FaceUse&>(**boundary.begin()));
    leave(body);
    bodies.erase(body.number());
}

void Store::remove(Composite& composite)
{
    setMembers(composite, {});
    leave(composite);
    composites.erase(composite.number());
}

void Store::remove(Part& part)
{
    const auto removeAll = [&]<class T>(T*, Region::Kind kind) {
        RegionSet& regions = data(part).regions[static_cast<std::size_t>(kind)];
        while (!regions.empty())
            remove(static_cast<T&>(**regions.begin()));
    };
    removeAll(static_cast<Composite*>(nullptr), Region::Kind::Composite);
    removeAll(static_cast<Body*>(nullptr), Region::Kind::Body);
    removeAll(static_cast<Face*>(nullptr), Region::Kind::Face);
    partNames.remove(part.name(), &part);
    parts.erase(part.number());
}

void Store::clear()
{
    // Nothing looks at another region on its way out, so the order among them is free.
    partNames.clear();
    regionNames.clear();
    composites.clear();
    bodies.clear();
    faces.clear();
    parts.clear();
}

bool Store::rename(Region& region, const std::string& name)
{
    PartData& part = data(*region.part());
    const Region* bearer = findNamed(part, region.kind(), name);
    if (bearer != nullptr)
        return bearer == &region;
    std::string next = name; // may be the very text that is replaced
    part.names.remove(region.name(), &region);
    regionNames.remove(region.name(), &region);
    part.names.add(next, &region);
    regionNames.add(next, &region);
    data(region).name = std::move(next);
    return true;
}

void Store::rename(Part& part, const std::string& name)
{
    std::string next = name; // as above
    partNames.remove(part.name(), &part);
    partNames.add(next, &part);
    data(part).name = std::move(next);
}

void Store::setMembers(Composite& composite, const RegionSet& members)
{
    CompositeData& own = data(composite);
    for (RegionSet* old : {&own.primitives, &own.composites}) {
        for (Region* member : *old)
            data(*member).owners.erase(&composite);
        old->clear();
    }
    for (Region* member : members) {
        RegionSet& like = membersLike(composite, *member);
        like.insert(like.end(), member);
        data(*member).owners.insert(&composite);
    }
}

} // namespace strata
