#include "MeshArrays.h"

#include <algorithm>

namespace meridyn::conformance {

// clang-format off
const std::vector<FixedArray<unsigned64>>& idArrays()
{
    using C = KelConsumer;
    using P = KelProvider;
    static const std::vector<FixedArray<unsigned64>> arrays = {
        // Cell 1 by zone would arrive as cell 0, so its range form stands in: the zone form is null.
        {KEL_FAMILY_FACE_CELLS, "cell 0", KEL_FACE_ZONE, &Mesh::cell0,
         [](C& w, const Mesh&, const Ids& zones) { w.startWritingCell0sForFaces(zones); },
         &C::setCell0ForFace, &C::setCell0sForFacesInRange, &C::setCell0sForFacesInZone, &C::endWritingCell0sForFaces,
         &P::getCell0ForFace, &P::getCell0sForFacesInRange, &P::getCell0sForFacesInZone},
        {KEL_FAMILY_FACE_CELLS, "cell 1", KEL_FACE_ZONE, &Mesh::cell1,
         [](C& w, const Mesh&, const Ids& zones) { w.startWritingCell1sForFaces(zones); },
         &C::setCell1ForFace, &C::setCell1sForFacesInRange, nullptr, &C::endWritingCell1sForFaces,
         &P::getCell1ForFace, &P::getCell1sForFacesInRange, &P::getCell1sForFacesInZone},
        {KEL_FAMILY_SHADOW_FACES, "shadow faces", KEL_FACE_ZONE, &Mesh::shadows,
         [](C& w, const Mesh&, const Ids& zones) { w.startWritingShadowFaceIdsForFaces(zones); },
         &C::setShadowFaceIdForFace, &C::setShadowFaceIdsForFacesInRange, &C::setShadowFaceIdsForFacesInZone, &C::endWritingShadowFaceIdsForFaces,
         &P::getShadowFaceIdForFace, &P::getShadowFaceIdsForFacesInRange, &P::getShadowFaceIdsForFacesInZone},
    };
    return arrays;
}

const FixedArray<KelCellType>& typeArray()
{
    using C = KelConsumer;
    using P = KelProvider;
    static const FixedArray<KelCellType> array = {KEL_FAMILY_CELL_TYPES, "cell types", KEL_CELL_ZONE, &Mesh::types,
        [](C& w, const Mesh&, const Ids& zones) { w.startWritingTypesForCells(zones, {}); },
        &C::setTypeForCell, &C::setTypesForCellsInRange, &C::setTypesForCellsInZone, &C::endWritingTypesForCells,
        &P::getTypeForCell, &P::getTypesForCellsInRange, &P::getTypesForCellsInZone};
    return array;
}

const FixedArray<int>& partitionArray()
{
    using C = KelConsumer;
    using P = KelProvider;
    static const FixedArray<int> array = {KEL_FAMILY_CELL_PARTITIONS, "partitions", KEL_CELL_ZONE, &Mesh::partitions,
        [](C& w, const Mesh& mesh, const Ids& zones) { w.startWritingPartitionIdsForCells(zones, mesh.partitionCount); },
        &C::setPartitionIdForCell, &C::setPartitionIdsForCellsInRange, &C::setPartitionIdsForCellsInZone, &C::endWritingPartitionIdsForCells,
        &P::getPartitionIdForCell, &P::getPartitionIdsForCellsInRange, &P::getPartitionIdsForCellsInZone};
    return array;
}

const std::vector<RaggedArray>& raggedArrays()
{
    using C = KelConsumer;
    using P = KelProvider;
    static const std::vector<RaggedArray> arrays = {
        {KEL_FAMILY_EDGES, "nodes of edges", KEL_EDGE_ZONE, &Mesh::edgeNodes,
         &C::startWritingNodesForEdges, &C::startWritingNodeCountsForEdges, &C::setNodeCountForEdge, &C::setNodeCountsForEdgesInRange, &C::setNodeCountsForEdgesInZone,
         &C::setUniformNodeCountForEdgesInRange, &C::setUniformNodeCountForEdgesInZone, &C::endWritingNodeCountsForEdges,
         &C::startWritingNodeIdsForEdges, &C::setNodeIdsForEdge, &C::setNodeIdsForEdgesInRange, &C::setNodeIdsForEdgesInZone, &C::endWritingNodeIdsForEdges, &C::endWritingNodesForEdges,
         &P::getNodeCountForEdge, &P::getNodeCountsForEdgesInRange, &P::getNodeCountsForEdgesInZone, &P::hasUniformNodeCountForEdgesInZone,
         &P::getNodeIdsForEdge, &P::getNodeIdsForEdgesInRange, &P::getNodeIdsForEdgesInZone},
        {KEL_FAMILY_FACE_NODES, "nodes of faces", KEL_FACE_ZONE, &Mesh::faceNodes,
         &C::startWritingNodesForFaces, &C::startWritingNodeCountsForFaces, &C::setNodeCountForFace, &C::setNodeCountsForFacesInRange, &C::setNodeCountsForFacesInZone,
         &C::setUniformNodeCountForFacesInRange, &C::setUniformNodeCountForFacesInZone, &C::endWritingNodeCountsForFaces,
         &C::startWritingNodeIdsForFaces, &C::setNodeIdsForFace, &C::setNodeIdsForFacesInRange, &C::setNodeIdsForFacesInZone, &C::endWritingNodeIdsForFaces, &C::endWritingNodesForFaces,
         &P::getNodeCountForFace, &P::getNodeCountsForFacesInRange, &P::getNodeCountsForFacesInZone, &P::hasUniformNodeCountForFacesInZone,
         &P::getNodeIdsForFace, &P::getNodeIdsForFacesInRange, &P::getNodeIdsForFacesInZone},
        {KEL_FAMILY_CHILD_FACES, "child faces", KEL_FACE_ZONE, &Mesh::childFaces,
         &C::startWritingChildFacesForFaces, &C::startWritingChildFaceCountsForFaces, &C::setChildFaceCountForFace, &C::setChildFaceCountsForFacesInRange, &C::setChildFaceCountsForFacesInZone,
         &C::setUniformChildFaceCountForFacesInRange, &C::setUniformChildFaceCountForFacesInZone, &C::endWritingChildFaceCountsForFaces,
         &C::startWritingChildFaceIdsForFaces, &C::setChildFaceIdsForFace, &C::setChildFaceIdsForFacesInRange, &C::setChildFaceIdsForFacesInZone, &C::endWritingChildFaceIdsForFaces, &C::endWritingChildFacesForFaces,
         &P::getChildFaceCountForFace, &P::getChildFaceCountsForFacesInRange, &P::getChildFaceCountsForFacesInZone, nullptr,
         &P::getChildFaceIdsForFace, &P::getChildFaceIdsForFacesInRange, &P::getChildFaceIdsForFacesInZone},
        {KEL_FAMILY_CELL_NODES, "nodes of cells", KEL_CELL_ZONE, &Mesh::cellNodes,
         &C::startWritingNodesForCells, &C::startWritingNodeCountsForCells, &C::setNodeCountForCell, &C::setNodeCountsForCellsInRange, &C::setNodeCountsForCellsInZone,
         &C::setUniformNodeCountForCellsInRange, &C::setUniformNodeCountForCellsInZone, &C::endWritingNodeCountsForCells,
         &C::startWritingNodeIdsForCells, &C::setNodeIdsForCell, &C::setNodeIdsForCellsInRange, &C::setNodeIdsForCellsInZone, &C::endWritingNodeIdsForCells, &C::endWritingNodesForCells,
         &P::getNodeCountForCell, &P::getNodeCountsForCellsInRange, &P::getNodeCountsForCellsInZone, &P::hasUniformNodeCountForCellsInZone,
         &P::getNodeIdsForCell, &P::getNodeIdsForCellsInRange, &P::getNodeIdsForCellsInZone},
        {KEL_FAMILY_CELL_FACES, "faces of cells", KEL_CELL_ZONE, &Mesh::cellFaces,
         &C::startWritingFacesForCells, &C::startWritingFaceCountsForCells, &C::setFaceCountForCell, &C::setFaceCountsForCellsInRange, &C::setFaceCountsForCellsInZone,
         &C::setUniformFaceCountForCellsInRange, &C::setUniformFaceCountForCellsInZone, &C::endWritingFaceCountsForCells,
         &C::startWritingFaceIdsForCells, &C::setFaceIdsForCell, &C::setFaceIdsForCellsInRange, &C::setFaceIdsForCellsInZone, &C::endWritingFaceIdsForCells, &C::endWritingFacesForCells,
         &P::getFaceCountForCell, &P::getFaceCountsForCellsInRange, &P::getFaceCountsForCellsInZone, &P::hasUniformFaceCountForCellsInZone,
         &P::getFaceIdsForCell, &P::getFaceIdsForCellsInRange, &P::getFaceIdsForCellsInZone},
        {KEL_FAMILY_CHILD_CELLS, "child cells", KEL_CELL_ZONE, &Mesh::childCells,
         &C::startWritingChildCellsForCells, &C::startWritingChildCellCountsForCells, &C::setChildCellCountForCell, &C::setChildCellCountsForCellsInRange, &C::setChildCellCountsForCellsInZone,
         &C::setUniformChildCellCountForCellsInRange, &C::setUniformChildCellCountForCellsInZone, &C::endWritingChildCellCountsForCells,
         &C::startWritingChildCellIdsForCells, &C::setChildCellIdsForCell, &C::setChildCellIdsForCellsInRange, &C::setChildCellIdsForCellsInZone, &C::endWritingChildCellIdsForCells, &C::endWritingChildCellsForCells,
         &P::getChildCellCountForCell, &P::getChildCellCountsForCellsInRange, &P::getChildCellCountsForCellsInZone, nullptr,
         &P::getChildCellIdsForCell, &P::getChildCellIdsForCellsInRange, &P::getChildCellIdsForCellsInZone},
    };
    return arrays;
}
// clang-format on

Ids idsOf(const std::vector<Zone>& zones)
{
    Ids ids;
    for (const Zone& zone : zones)
        ids.push_back(zone.id);
    return ids;
}

namespace {

/// The zones of a category in which `says(index of element)` holds somewhere.
template <class Says>
std::vector<Zone> zonesThatSay(const Mesh& mesh, KelZoneCategory category, const Says& says)
{
    std::vector<Zone> zones = mesh.zonesOf(category);
    zones.erase(std::remove_if(zones.begin(), zones.end(),
                               [&](const Zone& zone) {
                                   for (unsigned64 id = zone.first; id <= zone.last; ++id)
                                       if (says(id - 1))
                                           return false;
                                   return true;
                               }),
                zones.end());
    return zones;
}

} // namespace

std::vector<Zone> zonesWith(const FixedArray<unsigned64>& array, const Mesh& mesh)
{
    const std::vector<unsigned64>& values = mesh.*array.data;
    if (values.empty())
        return {};
    const bool all = array.family != KEL_FAMILY_SHADOW_FACES;
    return zonesThatSay(mesh, array.category, [&](unsigned64 n) { return all || values[n] != 0; });
}

std::vector<Zone> zonesWith(const FixedArray<KelCellType>& array, const Mesh& mesh)
{
    return (mesh.*array.data).empty() ? std::vector<Zone>{} : mesh.zonesOf(array.category);
}

std::vector<Zone> zonesWith(const FixedArray<int>& array, const Mesh& mesh)
{
    return (mesh.*array.data).empty() ? std::vector<Zone>{} : mesh.zonesOf(array.category);
}

std::vector<Zone> zonesWith(const RaggedArray& array, const Mesh& mesh)
{
    const std::vector<short>& counts = (mesh.*array.data).counts;
    if (counts.empty())
        return {};
    const bool all = array.family != KEL_FAMILY_CHILD_FACES && array.family != KEL_FAMILY_CHILD_CELLS;
    return zonesThatSay(mesh, array.category, [&](unsigned64 n) { return all || counts[n] != 0; });
}

} // namespace meridyn::conformance
