#include "strata/Composite.h"

#include "Store.h"

#include <algorithm>
#include <unordered_set>

namespace strata {

namespace {

/// A walk over composites, each once, without recursion.
class Walk {
public:
    void add(const Region* composite)
    {
        if (_seen.insert(composite).second)
            _waiting.push_back(composite);
    }
    void add(const RegionSet& composites)
    {
        for (const Region* composite : composites)
            add(composite);
    }
    bool hasNext() const { return !_waiting.empty(); }
    const Composite& next()
    {
        const auto& composite = static_cast<const Composite&>(*_waiting.back());
        _waiting.pop_back();
        return composite;
    }
    bool hasSeen(const Region* composite) const { return _seen.count(composite) != 0; }

private:
    std::unordered_set<const Region*> _seen;
    std::vector<const Region*> _waiting;
};

/// Whether a composite would hold itself through new members. Walks down from the members and up from the composite
/// in turn: the shorter way decides, so that long chains are built in linear time from either end.
bool wouldHoldItself(const Composite& composite, const RegionSet& members)
{
    Walk down;
    for (const Region* member : members)
        if (member->kind() == Region::Kind::Composite)
            down.add(member);
    Walk up;
    up.add(&composite);
    if (down.hasSeen(&composite))
        return true;
    while (down.hasNext() && up.hasNext()) {
        down.add(Store::data(down.next()).composites);
        if (down.hasSeen(&composite))
            return true;
        for (const Region* owner : Store::data(up.next()).owners) {
            if (members.count(const_cast<Region*>(owner)) != 0)
                return true;
            up.add(owner);
        }
    }
    return false;
}

} // namespace

Composite::~Composite() = default;

CompositeComponents Composite::components() const
{
    const CompositeData& own = Store::data(*this);
    return {listOf<Region>(own.primitives), listOf<Composite>(own.composites)};
}

std::vector<Region*> Composite::resolve() const
{
    std::vector<Region*> primitives;
    Walk walk;
    walk.add(this);
    while (walk.hasNext()) {
        const CompositeData& own = Store::data(walk.next());
        primitives.insert(primitives.end(), own.primitives.begin(), own.primitives.end());
        walk.add(own.composites);
    }
    std::sort(primitives.begin(), primitives.end(), RegionLess());
    primitives.erase(std::unique(primitives.begin(), primitives.end()), primitives.end());
    return primitives;
}

bool Composite::modify(const RegionSet& members)
{
    for (const Region* member : members)
        if (member == nullptr || member->part()->topology() != part()->topology())
            return false;
    if (wouldHoldItself(*this, members))
        return false;
    Store::setMembers(*this, members);
    return true;
}

void Composite::destroy()
{
    Store::of(*this).remove(*this);
}

} // namespace strata
