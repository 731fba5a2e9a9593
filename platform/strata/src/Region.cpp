#include "strata/Region.h"

#include "Store.h"

#include <utility>

namespace strata {

namespace {

char letterOf(Region::Kind kind)
{
    switch (kind) {
    case Region::Kind::Body:
        return 'b';
    case Region::Kind::Face:
    case Region::Kind::FaceUse: // called by its face and side
        return 'f';
    case Region::Kind::Composite:
        break;
    }
    return 'c';
}

} // namespace

Region::Region(std::unique_ptr<RegionData> data) : _data(std::move(data))
{}

Region::~Region() = default;

Region::Kind Region::kind() const
{
    return _data->kind;
}

std::string Region::id() const
{
    std::string text = std::to_string(_data->number).insert(0, 1, letterOf(_data->kind));
    if (_data->kind == Kind::FaceUse)
        text += _data->side == 0 ? ":0" : ":1";
    return text;
}

int Region::number() const
{
    return _data->number;
}

const std::string& Region::name() const
{
    return _data->name;
}

bool Region::rename(const std::string& name)
{
    return Store::of(*this).rename(*this, name);
}

Part* Region::part() const
{
    return _data->part;
}

std::vector<Composite*> Region::composites() const
{
    return listOf<Composite>(_data->owners);
}

bool RegionLess::operator()(const Region* left, const Region* right) const
{
    if (left == nullptr || right == nullptr)
        return left == nullptr && right != nullptr;
    return Store::data(*left).place() < Store::data(*right).place();
}

} // namespace strata
