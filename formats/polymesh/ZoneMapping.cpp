#include "PolyMesh.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace meridyn::polymesh {

namespace {

constexpr std::uint32_t noZone = static_cast<std::uint32_t>(-1);

KelFaceZoneType faceTypeOf(const PolyMesh& mesh, const PolyPatch& patch)
{
    static const std::pair<const char*, KelFaceZoneType> types[] = {
        {"wall", KEL_FACE_ZONE_TYPE_WALL},
        {"mappedWall", KEL_FACE_ZONE_TYPE_WALL},
        {"symmetry", KEL_FACE_ZONE_TYPE_SYMMETRY},
        {"symmetryPlane", KEL_FACE_ZONE_TYPE_SYMMETRY},
        {"cyclicAMI", KEL_FACE_ZONE_TYPE_INTERFACE},
        {"cyclicACMI", KEL_FACE_ZONE_TYPE_INTERFACE},
        {"empty", KEL_FACE_ZONE_TYPE_EMPTY},
        {"processor", KEL_FACE_ZONE_TYPE_PARTITION},
        {"processorCyclic", KEL_FACE_ZONE_TYPE_PARTITION},
    };
    if (mesh.partner(patch) != nullptr)
        return KEL_FACE_ZONE_TYPE_PERIODIC;
    for (const auto& [name, type] : types)
        if (patch.type == name)
            return type;
    return KEL_FACE_ZONE_TYPE_BOUNDARY;
}

/// The first zone of each cell; tells whether a cell is named twice.
std::vector<std::uint32_t> zoneOfCells(PolyMesh& mesh)
{
    std::vector<std::uint32_t> zoneOf(mesh.cellCount, noZone);
    for (std::size_t zone = 0; zone < mesh.cellZones.size(); ++zone)
        for (const std::uint32_t cell : mesh.cellZones[zone].labels) {
            if (zoneOf[cell] == noZone)
                zoneOf[cell] = static_cast<std::uint32_t>(zone);
            else if (zoneOf[cell] != zone)
                mesh.hasOverlappingCellZones = true;
        }
    return zoneOf;
}

/// Orders the cells by zone, those of one zone as the case does; gives the number of cells of each zone and of the
/// rest.
std::vector<std::uint64_t> orderCells(PolyMesh& mesh)
{
    const std::size_t zones = mesh.cellZones.size();
    const std::vector<std::uint32_t> zoneOf = zoneOfCells(mesh);
    std::vector<std::uint64_t> counts(zones + 1), next(zones + 1);
    const auto slot = [&](std::size_t cell) { return std::min<std::size_t>(zoneOf[cell], zones); };
    for (std::size_t cell = 0; cell < mesh.cellCount; ++cell)
        ++counts[slot(cell)];
    std::exclusive_scan(counts.begin(), counts.end(), next.begin(), std::uint64_t{0});
    std::vector<std::uint32_t> ours(mesh.cellCount);
    bool isInOrder = true;
    for (std::size_t cell = 0; cell < mesh.cellCount; ++cell) {
        ours[cell] = static_cast<std::uint32_t>(next[slot(cell)]++);
        isInOrder = isInOrder && ours[cell] == cell;
    }
    if (isInOrder)
        return counts;
    for (auto* labels : {&mesh.owner, &mesh.neighbour})
        for (std::uint32_t& label : *labels)
            label = ours[label];
    mesh.caseCells.resize(mesh.cellCount);
    for (std::size_t cell = 0; cell < mesh.cellCount; ++cell)
        mesh.caseCells[ours[cell]] = static_cast<std::uint32_t>(cell);
    return counts;
}

/// "cells", or with a number behind when a zone of the case bears that name.
std::string nameOfRest(const PolyMesh& mesh)
{
    std::string name = "cells";
    const auto isTaken = [&name](const PolySelection& zone) { return zone.name == name; };
    for (int n = 2; std::any_of(mesh.cellZones.begin(), mesh.cellZones.end(), isTaken); ++n)
        name = "cells-" + std::to_string(n);
    return name;
}

} // namespace

void mapZones(PolyMesh& mesh)
{
    const std::vector<std::uint64_t> cells = orderCells(mesh);
    int id = 0;
    const auto add = [&](KelZoneCategory category, const std::string& name, const std::string& kind,
                         std::uint64_t before, std::uint64_t count,
                         KelFaceZoneType type = KEL_FACE_ZONE_TYPE_INTERIOR) {
        mesh.zones.push_back({++id, category, name, kind, before + 1, before + count, type});
    };
    add(KEL_NODE_ZONE, "nodes", "nodes", 0, mesh.pointCount());
    add(KEL_FACE_ZONE, "interior", "interior", 0, mesh.interiorCount());
    for (const PolyPatch& patch : mesh.patches)
        add(KEL_FACE_ZONE, patch.name, patch.type, patch.first, patch.count, faceTypeOf(mesh, patch));
    std::uint64_t before = 0;
    for (std::size_t zone = 0; zone < mesh.cellZones.size(); ++zone) {
        add(KEL_CELL_ZONE, mesh.cellZones[zone].name, "cellZone", before, cells[zone]);
        before += cells[zone];
    }
    if (cells.back() > 0 || mesh.cellZones.empty())
        add(KEL_CELL_ZONE, nameOfRest(mesh), "cells", before, cells.back());
}

} // namespace meridyn::polymesh
