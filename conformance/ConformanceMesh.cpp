#include "ConformanceMesh.h"

#include "KelGeneratedProvider.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>

namespace meridyn::conformance {

std::size_t Ragged::begin(std::size_t n) const
{
    return std::accumulate(counts.begin(), counts.begin() + static_cast<std::ptrdiff_t>(n), std::size_t{0},
                           [](std::size_t sum, short count) { return sum + static_cast<std::size_t>(count); });
}

void Ragged::add(const std::vector<unsigned64>& elementIds)
{
    counts.push_back(static_cast<short>(elementIds.size()));
    ids.insert(ids.end(), elementIds.begin(), elementIds.end());
}

unsigned64 Mesh::count(KelZoneCategory category) const
{
    unsigned64 last = 0;
    for (const Zone& zone : zones)
        if (zone.category == category)
            last = std::max(last, zone.last);
    return last;
}

std::vector<Zone> Mesh::zonesOf(KelZoneCategory category) const
{
    std::vector<Zone> found;
    std::copy_if(zones.begin(), zones.end(), std::back_inserter(found),
                 [category](const Zone& zone) { return zone.category == category && zone.first != 0; });
    return found;
}

const Zone& Mesh::zone(int id) const
{
    return *std::find_if(zones.begin(), zones.end(), [id](const Zone& zone) { return zone.id == id; });
}

namespace {

constexpr int edgeZoneId = 9001;

void takeZones(const KelGeneratedProvider& box, Mesh& mesh)
{
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids;
        box.getZoneIds(category, ids);
        for (const int id : ids) {
            Zone zone{id, category, 0, 0, "", -1};
            box.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
            box.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
            box.getZoneStringInfo(id, KEL_ZONE_STRING_0, zone.name);
            if (category == KEL_FACE_ZONE)
                box.getFaceZoneInfo(id, KEL_FACE_ZONE_INFO_TYPE, zone.kind);
            mesh.zones.push_back(zone);
        }
    }
}

/// Reads counts and ids of all elements; both stay empty where the box has no counts.
template <class Counts, class Ids>
Ragged takeRagged(unsigned64 elements, const Counts& readCounts, const Ids& readIds)
{
    Ragged all;
    all.counts.resize(elements);
    all.counts.resize(readCounts(all.counts.data(), elements));
    all.ids.resize(all.begin(all.counts.size()));
    all.ids.resize(readIds(all.ids.data(), all.ids.size()));
    return all;
}

void takeArrays(const KelGeneratedProvider& box, Mesh& mesh)
{
    const unsigned64 nodes = mesh.count(KEL_NODE_ZONE), faces = mesh.count(KEL_FACE_ZONE);
    const unsigned64 cells = mesh.count(KEL_CELL_ZONE);
    mesh.coordinates.resize(3 * nodes);
    box.getCoordinatesForNodesInRange(1, nodes, mesh.coordinates.data(), mesh.coordinates.size());
    mesh.faceNodes = takeRagged(
        faces, [&](short* to, auto n) { return box.getNodeCountsForFacesInRange(1, faces, to, n); },
        [&](auto* to, auto n) { return box.getNodeIdsForFacesInRange(1, faces, to, n); });
    mesh.childFaces = takeRagged(
        faces, [&](short* to, auto n) { return box.getChildFaceCountsForFacesInRange(1, faces, to, n); },
        [&](auto* to, auto n) { return box.getChildFaceIdsForFacesInRange(1, faces, to, n); });
    mesh.cellNodes = takeRagged(
        cells, [&](short* to, auto n) { return box.getNodeCountsForCellsInRange(1, cells, to, n); },
        [&](auto* to, auto n) { return box.getNodeIdsForCellsInRange(1, cells, to, n); });
    for (std::vector<unsigned64>* ids : {&mesh.cell0, &mesh.cell1, &mesh.shadows})
        ids->resize(faces);
    box.getCell0sForFacesInRange(1, faces, mesh.cell0.data(), faces);
    box.getCell1sForFacesInRange(1, faces, mesh.cell1.data(), faces);
    mesh.shadows.resize(box.getShadowFaceIdsForFacesInRange(1, faces, mesh.shadows.data(), faces));
    mesh.types.resize(cells);
    box.getTypesForCellsInRange(1, cells, mesh.types.data(), cells);
    mesh.partitions.resize(cells);
    mesh.partitions.resize(box.getPartitionIdsForCellsInRange(1, cells, mesh.partitions.data(), cells));
    mesh.partitionCount = box.getPartitionCountOfCells();
}

/// Faces of cells from the cells of faces; a face that was split stays out.
void addFacesOfCells(Mesh& mesh)
{
    std::vector<std::vector<unsigned64>> around(mesh.types.size());
    for (std::size_t face = 0; face < mesh.cell0.size(); ++face) {
        if (!mesh.childFaces.counts.empty() && mesh.childFaces.counts[face] != 0)
            continue;
        around[mesh.cell0[face] - 1].push_back(face + 1);
        if (mesh.cell1[face] != 0)
            around[mesh.cell1[face] - 1].push_back(face + 1);
    }
    for (const std::vector<unsigned64>& faces : around)
        mesh.cellFaces.add(faces);
}

/// An edge along the first side of each face; every seventh goes on to the next node, so that the counts differ.
void addEdges(Mesh& mesh)
{
    for (std::size_t face = 0; face < mesh.faceNodes.counts.size(); ++face) {
        const std::size_t at = mesh.faceNodes.begin(face);
        std::vector<unsigned64> nodes{mesh.faceNodes.ids[at], mesh.faceNodes.ids[at + 1]};
        if (face % 7 == 6)
            nodes.push_back(mesh.faceNodes.ids[at + 2]);
        mesh.edgeNodes.add(nodes);
    }
    mesh.zones.push_back(
        {edgeZoneId, KEL_EDGE_ZONE, 1, mesh.edgeNodes.counts.size(), "edges", KEL_EDGE_ZONE_TYPE_FEATURE});
}

} // namespace

Mesh boxMesh(const std::string& line)
{
    KelGeneratedProvider box;
    box.setFile(line, KEL_CASE);
    if (!box.startReading(KEL_CASE))
        throw std::logic_error("no box: " + line);
    Mesh mesh;
    takeZones(box, mesh);
    takeArrays(box, mesh);
    addFacesOfCells(mesh);
    addEdges(mesh);
    return mesh;
}

Mesh smallMesh()
{
    return boxMesh("box:3x2x4 size:3x1x0.7 zones:2 partitions:3");
}

Mesh planeMesh()
{
    Mesh mesh;
    mesh.dimension = 2;
    mesh.zones = {{1, KEL_NODE_ZONE, 1, 8, "nodes", -1},
                  {2, KEL_FACE_ZONE, 1, 2, "inner", KEL_FACE_ZONE_TYPE_INTERIOR},
                  {3, KEL_FACE_ZONE, 3, 10, "rim", KEL_FACE_ZONE_TYPE_WALL},
                  {4, KEL_CELL_ZONE, 1, 3, "cells", -1}};
    for (int node = 0; node < 8; ++node) { // 1 to 4 below, 5 to 8 above
        mesh.coordinates.push_back(node % 4);
        mesh.coordinates.push_back(node < 4 ? 0.0 : 1.0);
    }
    for (const std::vector<unsigned64>& line : std::vector<std::vector<unsigned64>>{
             {2, 6}, {3, 7}, {1, 2}, {2, 3}, {3, 4}, {4, 8}, {8, 7}, {7, 6}, {6, 5}, {5, 1}})
        mesh.faceNodes.add(line);
    mesh.cell0 = {1, 2, 1, 2, 3, 3, 3, 2, 1, 1};
    mesh.cell1 = {2, 3, 0, 0, 0, 0, 0, 0, 0, 0};
    mesh.types.assign(3, KEL_CELL_QUADRILATERAL);
    for (unsigned64 cell = 1; cell <= 3; ++cell)
        mesh.cellNodes.add({cell, cell + 1, cell + 5, cell + 4});
    addFacesOfCells(mesh);
    return mesh;
}

} // namespace meridyn::conformance
