#include "strata/Topology.h"

#include "LocationResolver.h"
#include "Numbers.h"

namespace strata {

namespace {

/// The entry of the number that an id names; null when the id is not the letter and the number's canonical digits.
template <class T>
T* findById(const std::map<int, std::unique_ptr<T>>& all, char letter, const std::string& id)
{
    std::int64_t number = 0;
    if (id.empty() || id[0] != letter || !readNumber(std::string_view(id).substr(1), 1, greatestNumber, number))
        return nullptr;
    const auto found = all.find(static_cast<int>(number));
    return found == all.end() ? nullptr : found->second.get();
}

} // namespace

Topology::Topology() : _store(std::make_unique<Store>())
{
    _store->topology = this;
}

Topology::~Topology() = default;

Part* Topology::createPart(int dimensionality, const std::string& name)
{
    if (_store->nextPart > greatestNumber)
        return nullptr;
    return _store->addPart(static_cast<int>(_store->nextPart++), dimensionality, name);
}

void Topology::clear()
{
    _store->clear();
}

std::vector<Part*> Topology::parts() const
{
    std::vector<Part*> list;
    list.reserve(_store->parts.size());
    for (const auto& [number, part] : _store->parts)
        list.push_back(part.get());
    return list;
}

Part* Topology::findPartById(const std::string& id) const
{
    return findById(_store->parts, 'p', id);
}

Body* Topology::findBodyById(const std::string& id) const
{
    return findById(_store->bodies, 'b', id);
}

Face* Topology::findFaceById(const std::string& id) const
{
    return findById(_store->faces, 'f', id);
}

Composite* Topology::findCompositeById(const std::string& id) const
{
    return findById(_store->composites, 'c', id);
}

Part* Topology::findPartByName(const std::string& name) const
{
    const auto* bearers = _store->partNames.find(name);
    return bearers == nullptr ? nullptr : *bearers->begin();
}

LocationRegions Topology::resolveLocation(const std::string& location, std::vector<std::string>& unresolved) const
{
    LocationReading boundary(LocationReading::Kind::Boundary);
    LocationReading interior(LocationReading::Kind::Interior);
    readLocation(*_store, location, {&boundary, &interior}, unresolved);
    return {listOf<FaceUse>(boundary.regions()), listOf<Body>(interior.regions())};
}

std::vector<FaceUse*> Topology::resolveBoundaryLocation(const std::string& location,
                                                        std::vector<std::string>& unresolved) const
{
    return resolveLocation(location, unresolved).boundary;
}

std::vector<Body*> Topology::resolveInteriorLocation(const std::string& location,
                                                     std::vector<std::string>& unresolved) const
{
    return resolveLocation(location, unresolved).interior;
}

std::vector<LocationMatch> Topology::explainLocation(const std::string& location) const
{
    std::vector<LocationMatch> matches;
    for (const LocationEntry& entry : parseLocation(location))
        matches.push_back(matchEntry(*_store, entry));
    return matches;
}

std::string Topology::quoted(const std::string& name)
{
    const bool outerBlank =
        !name.empty() && (name.find_first_of(" \t") == 0 || name.find_last_of(" \t") + 1 == name.size());
    if (!name.empty() && !outerBlank && name.find_first_of(",/*?\"") == std::string::npos)
        return name;
    std::string text = "\"";
    for (const char byte : name)
        text.append(byte == '"' ? 2 : 1, byte);
    return text + '"';
}

} // namespace strata
