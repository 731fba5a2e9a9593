#include "KelConsumer.h"
#include "Trace.h"
#include "ZoneRange.h"

namespace meridyn {

void KelConsumer::startWritingCells(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingTypesForCells(const std::vector<int>& zoneIds, const std::vector<KelCellType>&)
{
    trace::zones(zoneIds);
}

void KelConsumer::setTypeForCell(unsigned64 cellId, KelCellType type)
{
    setTypesForCellsInRange(cellId, cellId, &type, 1);
}

void KelConsumer::setTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, const KelCellType*, unsigned64)
{
    trace::range("  Cell-type id: (", firstId, lastId);
}

void KelConsumer::setTypesForCellsInZone(int zoneId, const KelCellType* types, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setTypesForCellsInRange(first, last, types, count);
}

void KelConsumer::endWritingTypesForCells()
{}

void KelConsumer::startWritingNodesForCells(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingNodeCountsForCells()
{
    trace::emptyLine();
}

void KelConsumer::setNodeCountForCell(unsigned64 cellId, short nodeCount)
{
    setNodeCountsForCellsInRange(cellId, cellId, &nodeCount, 1);
}

void KelConsumer::setNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short*, unsigned64)
{
    trace::count("  cell-node count (", firstId, lastId); // lower case, kept: as it has always been printed
}

void KelConsumer::setNodeCountsForCellsInZone(int zoneId, const short* nodeCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeCountsForCellsInRange(first, last, nodeCounts, count);
}

void KelConsumer::setUniformNodeCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short)
{
    trace::count("  Constant cell-node count (", firstId, lastId);
}

void KelConsumer::setUniformNodeCountForCellsInZone(int zoneId, short nodeCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformNodeCountForCellsInRange(first, last, nodeCount);
}

void KelConsumer::endWritingNodeCountsForCells()
{}

void KelConsumer::startWritingNodeIdsForCells()
{}

void KelConsumer::setNodeIdsForCell(unsigned64 cellId, const unsigned64* nodeIds, unsigned64 count)
{
    setNodeIdsForCellsInRange(cellId, cellId, nodeIds, count);
}

void KelConsumer::setNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-node id (", firstId, lastId); // the text of the faces, kept: as it has always been printed
}

void KelConsumer::setNodeIdsForCellsInZone(int zoneId, const unsigned64* nodeIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeIdsForCellsInRange(first, last, nodeIds, count);
}

void KelConsumer::endWritingNodeIdsForCells()
{}

void KelConsumer::endWritingNodesForCells()
{}

void KelConsumer::startWritingFacesForCells(const std::vector<int>&)
{}

void KelConsumer::startWritingFaceCountsForCells()
{}

void KelConsumer::setFaceCountForCell(unsigned64 cellId, short faceCount)
{
    setFaceCountsForCellsInRange(cellId, cellId, &faceCount, 1);
}

void KelConsumer::setFaceCountsForCellsInRange(unsigned64, unsigned64, const short*, unsigned64)
{}

void KelConsumer::setFaceCountsForCellsInZone(int zoneId, const short* faceCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setFaceCountsForCellsInRange(first, last, faceCounts, count);
}

void KelConsumer::setUniformFaceCountForCellsInRange(unsigned64, unsigned64, short)
{}

void KelConsumer::setUniformFaceCountForCellsInZone(int zoneId, short faceCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformFaceCountForCellsInRange(first, last, faceCount);
}

void KelConsumer::endWritingFaceCountsForCells()
{}

void KelConsumer::startWritingFaceIdsForCells()
{}

void KelConsumer::setFaceIdsForCell(unsigned64 cellId, const unsigned64* faceIds, unsigned64 count)
{
    setFaceIdsForCellsInRange(cellId, cellId, faceIds, count);
}

void KelConsumer::setFaceIdsForCellsInRange(unsigned64, unsigned64, const unsigned64*, unsigned64)
{}

void KelConsumer::setFaceIdsForCellsInZone(int zoneId, const unsigned64* faceIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setFaceIdsForCellsInRange(first, last, faceIds, count);
}

void KelConsumer::endWritingFaceIdsForCells()
{}

void KelConsumer::endWritingFacesForCells()
{}

void KelConsumer::startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int)
{
    trace::zones(zoneIds);
}

void KelConsumer::setPartitionIdForCell(unsigned64 cellId, int partitionId)
{
    setPartitionIdsForCellsInRange(cellId, cellId, &partitionId, 1);
}

void KelConsumer::setPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const int*, unsigned64)
{
    trace::range("  Cell-partition id: (", firstId, lastId);
}

void KelConsumer::setPartitionIdsForCellsInZone(int zoneId, const int* partitionIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setPartitionIdsForCellsInRange(first, last, partitionIds, count);
}

void KelConsumer::endWritingPartitionIdsForCells()
{
    trace::emptyLine();
}

void KelConsumer::startWritingChildCellsForCells(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingChildCellCountsForCells()
{
    trace::emptyLine();
}

void KelConsumer::setChildCellCountForCell(unsigned64 cellId, short childCount)
{
    setChildCellCountsForCellsInRange(cellId, cellId, &childCount, 1);
}

void KelConsumer::setChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short*, unsigned64)
{
    trace::range("  Cell-child count: (", firstId, lastId);
}

void KelConsumer::setChildCellCountsForCellsInZone(int zoneId, const short* childCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setChildCellCountsForCellsInRange(first, last, childCounts, count);
}

void KelConsumer::setUniformChildCellCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short)
{
    trace::range("  Uniform cell-child count: (", firstId, lastId);
}

void KelConsumer::setUniformChildCellCountForCellsInZone(int zoneId, short childCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformChildCellCountForCellsInRange(first, last, childCount);
}

void KelConsumer::endWritingChildCellCountsForCells()
{
    trace::emptyLine();
}

void KelConsumer::startWritingChildCellIdsForCells()
{
    trace::emptyLine();
}

void KelConsumer::setChildCellIdsForCell(unsigned64 cellId, const unsigned64* childIds, unsigned64 count)
{
    setChildCellIdsForCellsInRange(cellId, cellId, childIds, count);
}

void KelConsumer::setChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Cell-child id: (", firstId, lastId);
}

void KelConsumer::setChildCellIdsForCellsInZone(int zoneId, const unsigned64* childIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setChildCellIdsForCellsInRange(first, last, childIds, count);
}

void KelConsumer::endWritingChildCellIdsForCells()
{}

void KelConsumer::endWritingChildCellsForCells()
{}

void KelConsumer::endWritingCells()
{}

} // namespace meridyn
