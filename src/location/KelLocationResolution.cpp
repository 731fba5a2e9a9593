#include "KelUtilities.h"
#include "LocationRecord.h"

#include <algorithm>

namespace meridyn {

namespace {

void sortWithoutRepeats(std::vector<int>& values)
{
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
}

/// Primitive regions, sorted by their kind.
void appendPrimitives(const std::vector<strata::Region*>& regions, std::vector<int>& bodies, std::vector<int>& faces,
                      std::vector<int>& faceUses)
{
    for (const strata::Region* region : regions)
        switch (region->kind()) {
        case strata::Region::Kind::Body:
            bodies.push_back(idOf(region));
            break;
        case strata::Region::Kind::Face:
            faces.push_back(idOf(region));
            break;
        case strata::Region::Kind::FaceUse:
            faceUses.push_back(idOf(static_cast<const strata::FaceUse*>(region)));
            break;
        case strata::Region::Kind::Composite: // no primitive
            break;
        }
}

const char* nameOfKind(strata::Region::Kind kind)
{
    switch (kind) {
    case strata::Region::Kind::Body:
        return "body ";
    case strata::Region::Kind::Face:
        return "face ";
    case strata::Region::Kind::FaceUse:
        return "face use ";
    case strata::Region::Kind::Composite:
        break;
    }
    return "composite ";
}

std::vector<std::string> describe(const strata::LocationMatch& match)
{
    using strata::Topology;
    std::vector<std::string> texts;
    for (const strata::Part* part : match.parts)
        texts.push_back("part " + Topology::quoted(part->name()));
    for (const strata::Region* region : match.regions)
        texts.push_back(nameOfKind(region->kind()) + Topology::quoted(region->part()->name()) + '/' +
                        Topology::quoted(region->name()));
    return texts;
}

/// Collects the regions of int ids; remembers whether one was missing.
class Members {
public:
    void add(strata::Region* region)
    {
        if (region == nullptr)
            _complete = false;
        else
            _regions.insert(region);
    }
    bool isComplete() const { return _complete; }
    const strata::RegionSet& regions() const { return _regions; }

private:
    strata::RegionSet _regions;
    bool _complete = true;
};

} // namespace

bool KelLocationModel::resolveLocation(const std::string& location, int /*ignored*/, int mapId,
                                       std::vector<int>& cellZones, std::vector<int>& faceZoneSides) const
{
    std::vector<std::string> unresolved; // dropped: a location may well name what this model does not have
    const strata::LocationRegions regions = _record->topology->resolveLocation(location, unresolved);
    if (regions.boundary.empty() && regions.interior.empty())
        return false;
    for (const strata::FaceUse* use : regions.boundary)
        appendZoneSides(_record->model, use, mapId, faceZoneSides);
    for (const strata::Body* body : regions.interior)
        appendZones(_record->model, body, mapId, cellZones);
    sortWithoutRepeats(cellZones);
    sortWithoutRepeats(faceZoneSides);
    return !cellZones.empty() || !faceZoneSides.empty(); // kept: what the vectors held before counts
}

bool KelLocationModel::resolveLocation(const std::vector<std::string>& locations, int ignored, int mapId,
                                       std::vector<int>& cellZones, std::vector<int>& faceZoneSides) const
{
    std::string joined;
    KelUtilities::joinString(locations, joined, ',', true, false);
    return resolveLocation(joined, ignored, mapId, cellZones, faceZoneSides);
}

void KelLocationModel::explainLocation(const std::string& location,
                                       std::vector<std::pair<std::string, std::vector<std::string>>>& entries) const
{
    entries.clear();
    for (const strata::LocationMatch& match : _record->topology->explainLocation(location))
        entries.emplace_back(match.entry, describe(match));
}

bool KelLocationModel::resolveComposite(int compositeId, std::vector<int>& bodies, std::vector<int>& faces,
                                        std::vector<int>& faceUses) const
{
    const strata::Composite* composite = _record->composite(compositeId);
    if (composite == nullptr)
        return false;
    appendPrimitives(composite->resolve(), bodies, faces, faceUses);
    return true;
}

bool KelLocationModel::getCompositeComponents(int compositeId, std::vector<int>& bodies, std::vector<int>& faces,
                                              std::vector<int>& faceUses, std::vector<int>& composites) const
{
    const strata::Composite* composite = _record->composite(compositeId);
    if (composite == nullptr)
        return false;
    bodies.clear();
    faces.clear();
    faceUses.clear();
    composites.clear();
    const strata::CompositeComponents components = composite->components();
    appendPrimitives(components.primitives, bodies, faces, faceUses);
    appendIds(components.composites, composites);
    return true;
}

bool KelLocationModel::setCompositeComponents(int compositeId, const std::vector<int>& bodies,
                                              const std::vector<int>& faces, const std::vector<int>& faceUses,
                                              const std::vector<int>& composites)
{
    strata::Composite* composite = _record->composite(compositeId);
    if (composite == nullptr)
        return false;
    Members members;
    for (const int id : bodies)
        members.add(_record->body(id));
    for (const int id : faces)
        members.add(_record->face(id));
    for (const int id : faceUses)
        members.add(_record->faceUse(id));
    for (const int id : composites)
        members.add(_record->composite(id));
    return members.isComplete() && composite->modify(members.regions());
}

} // namespace meridyn
