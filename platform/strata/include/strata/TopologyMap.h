#pragma once

#include "strata/Export.h"
#include "strata/ExternalBody.h"
#include "strata/ExternalFace.h"
#include "strata/ExternalFaceSide.h"

#include <set>

namespace strata {

class Body;
class Face;
class FaceUse;
class Topology;

/// Ties regions to the zones of one mesh, under a number. Maps are independent of each other; within a map regions
/// may share zones.
///
/// Setting replaces the region's zones, or with `merge` adds to them. It is refused with false, and without effect,
/// for a region that is null or of another topology. The sets that are given back are ordered by the externals' own
/// order; the reference is good until the region's zones change or the region ends. A null or foreign region, and
/// one without zones under this map, have the empty set.
class STRATA_API TopologyMap {
public:
    TopologyMap(const TopologyMap&) = delete;
    TopologyMap& operator=(const TopologyMap&) = delete;

    /// The number that the map was made with.
    int number() const;

    /// @name Cell zones of a body
    /// @{
    bool setExternalBodies(Body* body, const std::set<ExternalBody>& zones, bool merge);
    const std::set<ExternalBody>& externalBodies(const Body* body) const;
    /// @}

    /// @name Face zones of a face
    /// @{
    bool setExternalFaces(Face* face, const std::set<ExternalFace>& zones, bool merge);
    const std::set<ExternalFace>& externalFaces(const Face* face) const;
    /// @}

    /// @name Zone sides of a face use
    /// Refused also with a zone id that has no signed int form: below 0 or above 2147483647, except for the far side
    /// of 2147483648.
    /// @{
    bool setExternalFaceSides(FaceUse* faceUse, const std::set<ExternalFaceSide>& sides, bool merge);
    const std::set<ExternalFaceSide>& externalFaceSides(const FaceUse* faceUse) const;
    /// @}

private:
    friend class Model;
    TopologyMap(const Topology* topology, int number);

    const Topology* _topology;
    int _number;
};

} // namespace strata
