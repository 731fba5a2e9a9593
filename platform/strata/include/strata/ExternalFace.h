#pragma once

namespace strata {

/// A face zone of the mesh that a face covers under a map. Ordered by zone id; any int is one.
class ExternalFace {
public:
    /// The zone of that id.
    explicit ExternalFace(int zone) : _zone(zone) {}

    /// The zone id.
    int zone() const { return _zone; }

    /// Whether the zones are one.
    bool operator==(const ExternalFace& other) const { return _zone == other._zone; }
    /// The order in sets.
    bool operator<(const ExternalFace& other) const { return _zone < other._zone; }

private:
    int _zone;
};

} // namespace strata
