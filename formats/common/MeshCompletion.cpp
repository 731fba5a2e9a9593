#include "MeshCompletion.h"

#include <algorithm>
#include <map>

namespace meridyn {

namespace {

/// Which zones of a category have an element. Zones may overlap, so the ids are cut into stretches that have the same
/// zones from end to end.
class ZonesByElement {
public:
    struct Stretch {
        unsigned64 first;
        unsigned64 last;
        std::vector<int> zones;
    };

    ZonesByElement(const std::vector<KelZoneDescription>& zones, KelZoneCategory category)
    {
        std::map<unsigned64, std::vector<const KelZoneDescription*>> starts, ends; // ends: behind the last id
        std::set<unsigned64> cuts;
        for (const KelZoneDescription& zone : zones)
            if (zone.category == category && zone.first != 0 && zone.last >= zone.first && zone.last + 1 != 0) {
                starts[zone.first].push_back(&zone);
                ends[zone.last + 1].push_back(&zone);
                cuts.insert({zone.first, zone.last + 1});
            }
        std::set<int> present;
        for (auto cut = cuts.begin(); cut != cuts.end() && std::next(cut) != cuts.end(); ++cut) {
            for (const KelZoneDescription* zone : ends[*cut])
                present.erase(zone->id);
            for (const KelZoneDescription* zone : starts[*cut])
                present.insert(zone->id);
            if (!present.empty())
                _stretches.push_back({*cut, *std::next(cut) - 1, {present.begin(), present.end()}});
        }
    }

    unsigned64 elementCount() const
    {
        unsigned64 count = 0;
        for (const Stretch& stretch : _stretches)
            count += stretch.last - stretch.first + 1;
        return count;
    }

    /// Null for an element that is in no zone.
    const Stretch* find(unsigned64 id) const
    {
        const auto next =
            std::upper_bound(_stretches.begin(), _stretches.end(), id,
                             [](unsigned64 value, const Stretch& stretch) { return value < stretch.first; });
        return next != _stretches.begin() && id <= std::prev(next)->last ? &*std::prev(next) : nullptr;
    }

private:
    std::vector<Stretch> _stretches; // ascending and disjoint
};

/// The zones of the elements whose ids pass. Neighbouring faces mostly have cells of one zone, so the stretch that was
/// found last is tried first.
class SeenZones {
public:
    explicit SeenZones(const ZonesByElement& zones) : _zones(zones) {}

    void add(const unsigned64* ids, unsigned64 count)
    {
        for (unsigned64 n = 0; n < count; ++n) {
            if (_latest != nullptr && ids[n] >= _latest->first && ids[n] <= _latest->last)
                continue;
            if (const ZonesByElement::Stretch* const found = _zones.find(ids[n])) {
                _latest = found;
                _seen.insert(found->zones.begin(), found->zones.end());
            }
        }
    }

    const std::set<int>& zones() const { return _seen; }

private:
    const ZonesByElement& _zones;
    const ZonesByElement::Stretch* _latest = nullptr;
    std::set<int> _seen;
};

/// Completes the neighbours of the zones of a mesh. Lists that were given take part in the other direction only: they
/// tell cell zones about their face zones, as the faces do.
class NeighbourFinder {
public:
    NeighbourFinder(KelMeshDescription& mesh, const ShowIds& show)
        : _mesh(mesh), _show(show), _cells(mesh.zones, KEL_CELL_ZONE), _faces(mesh.zones, KEL_FACE_ZONE)
    {}

    void fillIn(KelDerivedValues& derived)
    {
        const bool areCellsComplete = std::all_of(_mesh.zones.begin(), _mesh.zones.end(), [](const auto& zone) {
            return zone.category != KEL_CELL_ZONE || !zone.neighbours[0].empty();
        });
        for (KelZoneDescription& zone : _mesh.zones)
            for (int side = 0; zone.category == KEL_FACE_ZONE && side < 2; ++side)
                fillInSide(zone, side, areCellsComplete, derived);
        for (KelZoneDescription& zone : _mesh.zones)
            if (zone.category == KEL_CELL_ZONE && zone.neighbours[0].empty())
                fillInAround(zone, derived);
    }

private:
    std::set<int> seen(KelArray array, const KelZoneDescription& zone, const ZonesByElement& among) const
    {
        SeenZones seen(among);
        if (zone.first != 0 && zone.last >= zone.first)
            _show(array, zone.first, zone.last,
                  [&seen](const unsigned64* ids, unsigned64 count) { seen.add(ids, count); });
        return seen.zones();
    }

    void fillInSide(KelZoneDescription& faceZone, int side, bool areCellsComplete, KelDerivedValues& derived)
    {
        std::vector<int>& list = faceZone.neighbours[side];
        for (const int cellZone : list)
            _around[cellZone].insert(faceZone.id);
        if (!list.empty() && areCellsComplete)
            return; // nobody needs the faces
        const std::set<int> found = seen(side == 0 ? KelArray::FaceCell0s : KelArray::FaceCell1s, faceZone, _cells);
        for (const int cellZone : found)
            _around[cellZone].insert(faceZone.id);
        if (list.empty())
            take(faceZone, side, found, derived);
    }

    void fillInAround(KelZoneDescription& cellZone, KelDerivedValues& derived)
    {
        std::set<int> found = _around[cellZone.id];
        if (found.empty()) // a mesh whose faces do not know their cells
            found = seen(KelArray::CellFaces, cellZone, _faces);
        take(cellZone, 0, found, derived);
    }

    /// Neighbours stand in the order in which the zones were declared.
    void take(KelZoneDescription& zone, int side, const std::set<int>& found, KelDerivedValues& derived)
    {
        if (found.empty())
            return;
        for (const KelZoneDescription& other : _mesh.zones)
            if (found.count(other.id) > 0)
                zone.neighbours[side].push_back(other.id);
        derived.neighbours.emplace(zone.id, side);
    }

    KelMeshDescription& _mesh;
    const ShowIds& _show;
    ZonesByElement _cells;
    ZonesByElement _faces;
    std::map<int, std::set<int>> _around; // face zones by cell zone
};

} // namespace

KelDerivedValues completeMesh(KelMeshDescription& mesh, const ShowIds& show)
{
    KelDerivedValues derived;
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        const auto size = static_cast<KelMeshSizeType>(KEL_MESH_SIZE_1 + static_cast<int>(category));
        if (mesh.sizes[size] != 0)
            continue;
        mesh.sizes[size] = ZonesByElement(mesh.zones, category).elementCount();
        if (mesh.sizes[size] != 0)
            derived.meshSizes.insert(size);
    }
    NeighbourFinder(mesh, show).fillIn(derived);
    return derived;
}

KelDerivedValues completeFrom(KelMeshDescription& mesh, const KelMeshDescription& ofCase)
{
    KelDerivedValues derived;
    std::map<int, const KelZoneDescription*> known;
    for (const KelZoneDescription& zone : ofCase.zones)
        known[zone.id] = &zone;
    for (KelZoneDescription& zone : mesh.zones) {
        const auto found = known.find(zone.id);
        if (found == known.end() || found->second->category != zone.category || found->second->first != zone.first ||
            found->second->last != zone.last)
            continue;
        for (int side = 0; side < 2; ++side)
            if (zone.neighbours[side].empty() && !found->second->neighbours[side].empty()) {
                zone.neighbours[side] = found->second->neighbours[side];
                derived.neighbours.emplace(zone.id, side);
            }
    }
    return derived;
}

KelDerived toLedger(const KelDerivedValues& derived, const std::vector<KelZoneDescription>& zones)
{
    KelDerived known;
    for (const KelMeshSizeType size : derived.meshSizes)
        known.sizes[size] = true;
    known.neighbours = derived.neighbours;
    known.adjacency = !derived.neighbours.empty();
    for (const KelZoneDescription& zone : zones)
        for (int side = 0; side < 2; ++side)
            if (!zone.neighbours[side].empty() && derived.neighbours.count({zone.id, side}) == 0)
                known.adjacency = false;
    return known;
}

} // namespace meridyn
