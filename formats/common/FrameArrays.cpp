#include "formats/common/FrameArrays.h"

namespace meridyn {

namespace {

using C = KelConsumer;
using P = KelProvider;

// The element forms of arrays with one value take and give it by value; in a row they look like those with several.

template <class T, void (C::*set)(unsigned64, T)>
void setOne(C& writer, unsigned64 id, const T* value, unsigned64)
{
    (writer.*set)(id, *value);
}

template <class T, T (P::*get)(unsigned64) const>
unsigned64 getOne(const P& reader, unsigned64 id, T* value, unsigned64)
{
    *value = (reader.*get)(id);
    return 1;
}

template <void (C::*start)(const std::vector<int>&)>
void startOf(C& writer, const std::vector<int>& zoneIds, const FrameStart&)
{
    (writer.*start)(zoneIds);
}

} // namespace

const std::vector<FrameMarkers>& frameMarkers()
{
    static const std::vector<FrameMarkers> markers = {
        {KEL_NODE_ZONE, &C::startWritingNodes, &C::endWritingNodes, &P::startReadingNodes, &P::endReadingNodes},
        {KEL_EDGE_ZONE, &C::startWritingEdges, &C::endWritingEdges, &P::startReadingEdges, &P::endReadingEdges},
        {KEL_FACE_ZONE, &C::startWritingFaces, &C::endWritingFaces, &P::startReadingFaces, &P::endReadingFaces},
        {KEL_CELL_ZONE, &C::startWritingCells, &C::endWritingCells, &P::startReadingCells, &P::endReadingCells},
    };
    return markers;
}

// clang-format off
const std::vector<AnyFrameArray>& frameArrays()
{
    static const std::vector<AnyFrameArray> arrays = {
        FixedFrameArray<double>{
            {KelArray::Coordinates, KEL_FAMILY_COORDINATES, KEL_NODE_ZONE, {}, false},
            startOf<&C::startWritingCoordinatesForNodes>, [](C& w, unsigned64 id, const double* xyz, unsigned64 count) { w.setCoordinatesForNode(id, xyz, count); }, &C::setCoordinatesForNodesInRange, &C::setCoordinatesForNodesInZone, &C::endWritingCoordinatesForNodes,
            &P::startReadingCoordinatesForNodes, [](const P& r, unsigned64 id, double* xyz, unsigned64 room) { return r.getCoordinatesForNode(id, xyz, room); }, &P::getCoordinatesForNodesInRange, &P::getCoordinatesForNodesInZone, nullptr, &P::endReadingCoordinatesForNodes},
        RaggedFrameArray{
            {KelArray::EdgeNodes, KEL_FAMILY_EDGES, KEL_EDGE_ZONE, KEL_NODE_ZONE, false},
            &C::startWritingNodesForEdges, &C::startWritingNodeCountsForEdges, &C::setNodeCountForEdge, &C::setNodeCountsForEdgesInRange, &C::setNodeCountsForEdgesInZone,
            &C::setUniformNodeCountForEdgesInRange, &C::setUniformNodeCountForEdgesInZone, &C::endWritingNodeCountsForEdges,
            &C::startWritingNodeIdsForEdges, &C::setNodeIdsForEdge, &C::setNodeIdsForEdgesInRange, &C::setNodeIdsForEdgesInZone, &C::endWritingNodeIdsForEdges, &C::endWritingNodesForEdges,
            &P::startReadingNodesForEdges, &P::startReadingNodeCountsForEdges, &P::hasUniformNodeCountForEdgesInRange, &P::hasUniformNodeCountForEdgesInZone,
            &P::getNodeCountForEdge, &P::getNodeCountsForEdgesInRange, &P::getNodeCountsForEdgesInZone, &P::endReadingNodeCountsForEdges,
            &P::startReadingNodeIdsForEdges, &P::getNodeIdsForEdge, &P::getNodeIdsForEdgesInRange, &P::getNodeIdsForEdgesInZone, &P::endReadingNodeIdsForEdges, &P::endReadingNodesForEdges},
        RaggedFrameArray{
            {KelArray::FaceNodes, KEL_FAMILY_FACE_NODES, KEL_FACE_ZONE, KEL_NODE_ZONE, false},
            &C::startWritingNodesForFaces, &C::startWritingNodeCountsForFaces, &C::setNodeCountForFace, &C::setNodeCountsForFacesInRange, &C::setNodeCountsForFacesInZone,
            &C::setUniformNodeCountForFacesInRange, &C::setUniformNodeCountForFacesInZone, &C::endWritingNodeCountsForFaces,
            &C::startWritingNodeIdsForFaces, &C::setNodeIdsForFace, &C::setNodeIdsForFacesInRange, &C::setNodeIdsForFacesInZone, &C::endWritingNodeIdsForFaces, &C::endWritingNodesForFaces,
            &P::startReadingNodesForFaces, &P::startReadingNodeCountsForFaces, &P::hasUniformNodeCountForFacesInRange, &P::hasUniformNodeCountForFacesInZone,
            &P::getNodeCountForFace, &P::getNodeCountsForFacesInRange, &P::getNodeCountsForFacesInZone, &P::endReadingNodeCountsForFaces,
            &P::startReadingNodeIdsForFaces, &P::getNodeIdsForFace, &P::getNodeIdsForFacesInRange, &P::getNodeIdsForFacesInZone, &P::endReadingNodeIdsForFaces, &P::endReadingNodesForFaces},
        FixedFrameArray<unsigned64>{
            {KelArray::FaceCell0s, KEL_FAMILY_FACE_CELLS, KEL_FACE_ZONE, KEL_CELL_ZONE, false},
            startOf<&C::startWritingCell0sForFaces>, setOne<unsigned64, &C::setCell0ForFace>, &C::setCell0sForFacesInRange, &C::setCell0sForFacesInZone, &C::endWritingCell0sForFaces,
            &P::startReadingCell0sForFaces, getOne<unsigned64, &P::getCell0ForFace>, &P::getCell0sForFacesInRange, &P::getCell0sForFacesInZone, nullptr, &P::endReadingCell0sForFaces},
        // The frame's zone form of cell 1 arrives at cell 0.
        FixedFrameArray<unsigned64>{
            {KelArray::FaceCell1s, KEL_FAMILY_FACE_CELLS, KEL_FACE_ZONE, KEL_CELL_ZONE, true},
            startOf<&C::startWritingCell1sForFaces>, setOne<unsigned64, &C::setCell1ForFace>, &C::setCell1sForFacesInRange, nullptr, &C::endWritingCell1sForFaces,
            &P::startReadingCell1sForFaces, getOne<unsigned64, &P::getCell1ForFace>, &P::getCell1sForFacesInRange, &P::getCell1sForFacesInZone, nullptr, &P::endReadingCell1sForFaces},
        FixedFrameArray<unsigned64>{
            {KelArray::FaceShadows, KEL_FAMILY_SHADOW_FACES, KEL_FACE_ZONE, KEL_FACE_ZONE, true},
            startOf<&C::startWritingShadowFaceIdsForFaces>, setOne<unsigned64, &C::setShadowFaceIdForFace>, &C::setShadowFaceIdsForFacesInRange, &C::setShadowFaceIdsForFacesInZone, &C::endWritingShadowFaceIdsForFaces,
            &P::startReadingShadowFaceIdsForFaces, getOne<unsigned64, &P::getShadowFaceIdForFace>, &P::getShadowFaceIdsForFacesInRange, &P::getShadowFaceIdsForFacesInZone, nullptr, &P::endReadingShadowFaceIdsForFaces},
        RaggedFrameArray{
            {KelArray::FaceChildren, KEL_FAMILY_CHILD_FACES, KEL_FACE_ZONE, KEL_FACE_ZONE, true},
            &C::startWritingChildFacesForFaces, &C::startWritingChildFaceCountsForFaces, &C::setChildFaceCountForFace, &C::setChildFaceCountsForFacesInRange, &C::setChildFaceCountsForFacesInZone,
            &C::setUniformChildFaceCountForFacesInRange, &C::setUniformChildFaceCountForFacesInZone, &C::endWritingChildFaceCountsForFaces,
            &C::startWritingChildFaceIdsForFaces, &C::setChildFaceIdsForFace, &C::setChildFaceIdsForFacesInRange, &C::setChildFaceIdsForFacesInZone, &C::endWritingChildFaceIdsForFaces, &C::endWritingChildFacesForFaces,
            &P::startReadingChildFacesForFaces, &P::startReadingChildFaceCountsForFaces, nullptr, nullptr,
            &P::getChildFaceCountForFace, &P::getChildFaceCountsForFacesInRange, &P::getChildFaceCountsForFacesInZone, &P::endReadingChildFaceCountsForFaces,
            &P::startReadingChildFaceIdsForFaces, &P::getChildFaceIdsForFace, &P::getChildFaceIdsForFacesInRange, &P::getChildFaceIdsForFacesInZone, &P::endReadingChildFaceIdsForFaces, &P::endReadingChildFacesForFaces},
        FixedFrameArray<KelCellType>{
            {KelArray::CellTypes, KEL_FAMILY_CELL_TYPES, KEL_CELL_ZONE, {}, false},
            [](C& w, const std::vector<int>& zones, const FrameStart& told) { w.startWritingTypesForCells(zones, told.types); }, setOne<KelCellType, &C::setTypeForCell>, &C::setTypesForCellsInRange, &C::setTypesForCellsInZone, &C::endWritingTypesForCells,
            &P::startReadingTypesForCells, getOne<KelCellType, &P::getTypeForCell>, &P::getTypesForCellsInRange, &P::getTypesForCellsInZone, &P::hasUniformTypeForCellsInZone, &P::endReadingTypesForCells},
        RaggedFrameArray{
            {KelArray::CellNodes, KEL_FAMILY_CELL_NODES, KEL_CELL_ZONE, KEL_NODE_ZONE, false},
            &C::startWritingNodesForCells, &C::startWritingNodeCountsForCells, &C::setNodeCountForCell, &C::setNodeCountsForCellsInRange, &C::setNodeCountsForCellsInZone,
            &C::setUniformNodeCountForCellsInRange, &C::setUniformNodeCountForCellsInZone, &C::endWritingNodeCountsForCells,
            &C::startWritingNodeIdsForCells, &C::setNodeIdsForCell, &C::setNodeIdsForCellsInRange, &C::setNodeIdsForCellsInZone, &C::endWritingNodeIdsForCells, &C::endWritingNodesForCells,
            &P::startReadingNodesForCells, &P::startReadingNodeCountsForCells, nullptr, &P::hasUniformNodeCountForCellsInZone,
            &P::getNodeCountForCell, &P::getNodeCountsForCellsInRange, &P::getNodeCountsForCellsInZone, &P::endReadingNodeCountsForCells,
            &P::startReadingNodeIdsForCells, &P::getNodeIdsForCell, &P::getNodeIdsForCellsInRange, &P::getNodeIdsForCellsInZone, &P::endReadingNodeIdsForCells, &P::endReadingNodesForCells},
        RaggedFrameArray{
            {KelArray::CellFaces, KEL_FAMILY_CELL_FACES, KEL_CELL_ZONE, KEL_FACE_ZONE, false},
            &C::startWritingFacesForCells, &C::startWritingFaceCountsForCells, &C::setFaceCountForCell, &C::setFaceCountsForCellsInRange, &C::setFaceCountsForCellsInZone,
            &C::setUniformFaceCountForCellsInRange, &C::setUniformFaceCountForCellsInZone, &C::endWritingFaceCountsForCells,
            &C::startWritingFaceIdsForCells, &C::setFaceIdsForCell, &C::setFaceIdsForCellsInRange, &C::setFaceIdsForCellsInZone, &C::endWritingFaceIdsForCells, &C::endWritingFacesForCells,
            &P::startReadingFacesForCells, &P::startReadingFaceCountsForCells, nullptr, &P::hasUniformFaceCountForCellsInZone,
            &P::getFaceCountForCell, &P::getFaceCountsForCellsInRange, &P::getFaceCountsForCellsInZone, &P::endReadingFaceCountsForCells,
            &P::startReadingFaceIdsForCells, &P::getFaceIdsForCell, &P::getFaceIdsForCellsInRange, &P::getFaceIdsForCellsInZone, &P::endReadingFaceIdsForCells, &P::endReadingFacesForCells},
        FixedFrameArray<int>{
            {KelArray::CellPartitions, KEL_FAMILY_CELL_PARTITIONS, KEL_CELL_ZONE, {}, false},
            [](C& w, const std::vector<int>& zones, const FrameStart& told) { w.startWritingPartitionIdsForCells(zones, told.partitionCount); }, setOne<int, &C::setPartitionIdForCell>, &C::setPartitionIdsForCellsInRange, &C::setPartitionIdsForCellsInZone, &C::endWritingPartitionIdsForCells,
            &P::startReadingPartitionIdsForCells, getOne<int, &P::getPartitionIdForCell>, &P::getPartitionIdsForCellsInRange, &P::getPartitionIdsForCellsInZone, nullptr, &P::endReadingPartitionIdsForCells},
        RaggedFrameArray{
            {KelArray::CellChildren, KEL_FAMILY_CHILD_CELLS, KEL_CELL_ZONE, KEL_CELL_ZONE, true},
            &C::startWritingChildCellsForCells, &C::startWritingChildCellCountsForCells, &C::setChildCellCountForCell, &C::setChildCellCountsForCellsInRange, &C::setChildCellCountsForCellsInZone,
            &C::setUniformChildCellCountForCellsInRange, &C::setUniformChildCellCountForCellsInZone, &C::endWritingChildCellCountsForCells,
            &C::startWritingChildCellIdsForCells, &C::setChildCellIdsForCell, &C::setChildCellIdsForCellsInRange, &C::setChildCellIdsForCellsInZone, &C::endWritingChildCellIdsForCells, &C::endWritingChildCellsForCells,
            &P::startReadingChildCellsForCells, &P::startReadingChildCellCountsForCells, nullptr, nullptr,
            &P::getChildCellCountForCell, &P::getChildCellCountsForCellsInRange, &P::getChildCellCountsForCellsInZone, &P::endReadingChildCellCountsForCells,
            &P::startReadingChildCellIdsForCells, &P::getChildCellIdsForCell, &P::getChildCellIdsForCellsInRange, &P::getChildCellIdsForCellsInZone, &P::endReadingChildCellIdsForCells, &P::endReadingChildCellsForCells},
    };
    return arrays;
}
// clang-format on

} // namespace meridyn
