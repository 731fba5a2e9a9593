#pragma once

#include <cstdint>

namespace strata {

/// One side of a face zone of the mesh that a face use covers under a map.
///
/// Zone ids are held in 64 bits, so that the amount of the smallest int is one. Ordered by zone id; of one zone the
/// near side comes before the far one.
class ExternalFaceSide {
public:
    /// A side of a zone: the far one with the flag, the near one without.
    ExternalFaceSide(std::int64_t zone, bool farSide) : _zone(zone), _farSide(farSide) {}

    /// The zone id.
    std::int64_t zone() const { return _zone; }
    /// The side flag: true on the far side.
    bool farSide() const { return _farSide; }

    /// Whether zone and side are the same.
    bool operator==(const ExternalFaceSide& other) const { return _zone == other._zone && _farSide == other._farSide; }
    /// The order in sets.
    bool operator<(const ExternalFaceSide& other) const
    {
        return _zone != other._zone ? _zone < other._zone : !_farSide && other._farSide;
    }

private:
    std::int64_t _zone;
    bool _farSide;
};

} // namespace strata
