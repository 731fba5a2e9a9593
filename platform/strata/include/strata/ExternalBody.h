#pragma once

namespace strata {

/// A cell zone of the mesh that a body covers under a map. Ordered by zone id; any int is one.
class ExternalBody {
public:
    /// The zone of that id.
    explicit ExternalBody(int zone) : _zone(zone) {}

    /// The zone id.
    int zone() const { return _zone; }

    /// Whether the zones are one.
    bool operator==(const ExternalBody& other) const { return _zone == other._zone; }
    /// The order in sets.
    bool operator<(const ExternalBody& other) const { return _zone < other._zone; }

private:
    int _zone;
};

} // namespace strata
