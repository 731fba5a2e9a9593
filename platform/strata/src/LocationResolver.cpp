#include "LocationResolver.h"

#include <algorithm>

namespace strata {

namespace {

template <class Index, class T>
void collect(const Index& index, const NamePattern& pattern, std::vector<T*>& found)
{
    index.forEachMatch(pattern, [&found](T* bearer) { found.push_back(bearer); });
}

} // namespace

LocationMatch matchEntry(const Store& store, const LocationEntry& entry)
{
    LocationMatch match;
    match.entry = entry.text;
    if (!entry.valid)
        return match;
    if (entry.part) {
        store.partNames.forEachMatch(
            *entry.part, [&](const Part* part) { collect(Store::data(*part).names, entry.name, match.regions); });
    } else {
        collect(store.partNames, entry.name, match.parts);
        collect(store.regionNames, entry.name, match.regions);
    }
    std::sort(match.parts.begin(), match.parts.end(), PartLess());
    std::sort(match.regions.begin(), match.regions.end(), RegionLess());
    return match;
}

void LocationReading::add(const Part& part)
{
    if (!_seen.insert(&part).second)
        return;
    for (Region* body : Store::data(part).regions[static_cast<std::size_t>(Region::Kind::Body)])
        add(body);
}

void LocationReading::add(Region* region)
{
    _waiting.push_back(region);
    while (!_waiting.empty()) {
        Region* next = _waiting.back();
        _waiting.pop_back();
        if (_seen.insert(next).second)
            expand(next);
    }
}

void LocationReading::expand(Region* region)
{
    const bool boundary = _kind == Kind::Boundary;
    const auto wait = [this](const RegionSet& regions) {
        _waiting.insert(_waiting.end(), regions.begin(), regions.end());
    };
    switch (region->kind()) {
    case Region::Kind::Body:
        if (boundary)
            wait(Store::data(static_cast<const Body&>(*region)).boundary);
        else
            _collected.push_back(region);
        break;
    case Region::Kind::Face:
        if (boundary)
            for (const auto& use : Store::data(static_cast<const Face&>(*region)).uses)
                if (use != nullptr)
                    _waiting.push_back(use.get());
        break;
    case Region::Kind::FaceUse:
        if (boundary)
            _collected.push_back(region);
        break;
    case Region::Kind::Composite: {
        const CompositeData& members = Store::data(static_cast<const Composite&>(*region));
        wait(members.primitives);
        wait(members.composites);
    }
    }
}

std::vector<Region*> LocationReading::regions() const
{
    std::vector<Region*> sorted = _collected;
    std::sort(sorted.begin(), sorted.end(), RegionLess());
    return sorted;
}

void readLocation(const Store& store, const std::string& location, std::initializer_list<LocationReading*> readings,
                  std::vector<std::string>& unresolved)
{
    std::vector<std::string> unknown;
    std::unordered_set<std::string> seen;
    for (const LocationEntry& entry : parseLocation(location)) {
        if (!seen.insert(entry.text).second)
            continue;
        const LocationMatch match = matchEntry(store, entry);
        if (match.parts.empty() && match.regions.empty())
            unknown.push_back(entry.text);
        for (LocationReading* reading : readings) {
            for (const Part* part : match.parts)
                reading->add(*part);
            for (Region* region : match.regions)
                reading->add(region);
        }
    }
    unresolved = std::move(unknown);
}

} // namespace strata
