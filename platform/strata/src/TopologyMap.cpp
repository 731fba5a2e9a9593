#include "strata/TopologyMap.h"

#include "Store.h"
#include "strata/Topology.h"

namespace strata {

namespace {

bool isOf(const Topology* topology, const Region* region)
{
    return region != nullptr && region->part()->topology() == topology;
}

template <class External>
void setZones(ZonesByMap<External>& all, int map, const std::set<External>& zones, bool merge)
{
    std::set<External> next = zones;
    const auto found = all.find(map);
    if (merge && found != all.end())
        next.insert(found->second.begin(), found->second.end());
    if (!next.empty())
        all[map] = std::move(next);
    else if (found != all.end())
        all.erase(found);
}

template <class External, class T>
const std::set<External>& zonesOf(const Topology* topology, const T* region, int map)
{
    static const std::set<External> none;
    if (!isOf(topology, region))
        return none;
    const ZonesByMap<External>& all = Store::data(*region).zones;
    const auto found = all.find(map);
    return found == all.end() ? none : found->second;
}

bool hasSignedForm(const ExternalFaceSide& side)
{
    return side.zone() >= 0 && side.zone() <= (side.farSide() ? greatestNumber + 1 : greatestNumber);
}

} // namespace

TopologyMap::TopologyMap(const Topology* topology, int number) : _topology(topology), _number(number)
{}

int TopologyMap::number() const
{
    return _number;
}

bool TopologyMap::setExternalBodies(Body* body, const std::set<ExternalBody>& zones, bool merge)
{
    if (!isOf(_topology, body))
        return false;
    setZones(Store::data(*body).zones, _number, zones, merge);
    return true;
}

const std::set<ExternalBody>& TopologyMap::externalBodies(const Body* body) const
{
    return zonesOf<ExternalBody>(_topology, body, _number);
}

bool TopologyMap::setExternalFaces(Face* face, const std::set<ExternalFace>& zones, bool merge)
{
    if (!isOf(_topology, face))
        return false;
    setZones(Store::data(*face).zones, _number, zones, merge);
    return true;
}

const std::set<ExternalFace>& TopologyMap::externalFaces(const Face* face) const
{
    return zonesOf<ExternalFace>(_topology, face, _number);
}

bool TopologyMap::setExternalFaceSides(FaceUse* faceUse, const std::set<ExternalFaceSide>& sides, bool merge)
{
    if (!isOf(_topology, faceUse))
        return false;
    for (const ExternalFaceSide& side : sides)
        if (!hasSignedForm(side))
            return false;
    setZones(Store::data(*faceUse).zones, _number, sides, merge);
    return true;
}

const std::set<ExternalFaceSide>& TopologyMap::externalFaceSides(const FaceUse* faceUse) const
{
    return zonesOf<ExternalFaceSide>(_topology, faceUse, _number);
}

} // namespace strata
