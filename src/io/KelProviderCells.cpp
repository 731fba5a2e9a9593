#include "KelProvider.h"

#include "io/ZoneRange.h"

// The getters of cells and of case sections, built like those of nodes, edges and faces.

namespace meridyn {

namespace {

constexpr auto noCellType = static_cast<KelCellType>(-1);
constexpr auto noType = static_cast<KelPlainDataType>(-1);

} // namespace

// ---- cells

void KelProvider::startReadingCells(const std::vector<int>&)
{}

void KelProvider::startReadingTypesForCells(const std::vector<int>&)
{}

bool KelProvider::hasUniformTypeForCellsInZone(int, KelCellType*) const
{
    return false;
}

KelCellType KelProvider::getTypeForCell(unsigned64 cellId) const
{
    KelCellType type = noCellType;
    return getTypesForCellsInRange(cellId, cellId, &type, 1) == 1 ? type : noCellType;
}

unsigned64 KelProvider::getTypesForCellsInRange(unsigned64, unsigned64, KelCellType*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getTypesForCellsInZone(int zoneId, KelCellType* types, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getTypesForCellsInRange(first, last, types, capacity);
}

void KelProvider::endReadingTypesForCells()
{}

void KelProvider::startReadingNodesForCells(const std::vector<int>&)
{}

void KelProvider::startReadingNodeCountsForCells()
{}

bool KelProvider::hasUniformNodeCountForCellsInZone(int, short*) const
{
    return false;
}

short KelProvider::getNodeCountForCell(unsigned64 cellId) const
{
    short count = 0;
    return getNodeCountsForCellsInRange(cellId, cellId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getNodeCountsForCellsInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeCountsForCellsInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeCountsForCellsInRange(first, last, nodeCounts, capacity);
}

void KelProvider::endReadingNodeCountsForCells()
{}

void KelProvider::startReadingNodeIdsForCells()
{}

unsigned64 KelProvider::getNodeIdsForCell(unsigned64 cellId, unsigned64* nodeIds, unsigned64 capacity) const
{
    return getNodeIdsForCellsInRange(cellId, cellId, nodeIds, capacity);
}

unsigned64 KelProvider::getNodeIdsForCellsInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeIdsForCellsInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeIdsForCellsInRange(first, last, nodeIds, capacity);
}

void KelProvider::endReadingNodeIdsForCells()
{}

void KelProvider::endReadingNodesForCells()
{}

void KelProvider::startReadingFacesForCells(const std::vector<int>&)
{}

void KelProvider::startReadingFaceCountsForCells()
{}

bool KelProvider::hasUniformFaceCountForCellsInZone(int, short*) const
{
    return false;
}

short KelProvider::getFaceCountForCell(unsigned64 cellId) const
{
    // kept: the node counts, not the face counts
    short count = 0;
    return getNodeCountsForCellsInRange(cellId, cellId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getFaceCountsForCellsInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getFaceCountsForCellsInZone(int zoneId, short* faceCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getFaceCountsForCellsInRange(first, last, faceCounts, capacity);
}

void KelProvider::endReadingFaceCountsForCells()
{}

void KelProvider::startReadingFaceIdsForCells()
{}

unsigned64 KelProvider::getFaceIdsForCell(unsigned64 cellId, unsigned64* faceIds, unsigned64 capacity) const
{
    return getFaceIdsForCellsInRange(cellId, cellId, faceIds, capacity);
}

unsigned64 KelProvider::getFaceIdsForCellsInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getFaceIdsForCellsInZone(int zoneId, unsigned64* faceIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getFaceIdsForCellsInRange(first, last, faceIds, capacity);
}

void KelProvider::endReadingFaceIdsForCells()
{}

void KelProvider::endReadingFacesForCells()
{}

void KelProvider::startReadingPartitionIdsForCells(const std::vector<int>&)
{}

int KelProvider::getPartitionIdForCell(unsigned64 cellId) const
{
    int partitionId = 0;
    return getPartitionIdsForCellsInRange(cellId, cellId, &partitionId, 1) == 1 ? partitionId : 0;
}

unsigned64 KelProvider::getPartitionIdsForCellsInRange(unsigned64, unsigned64, int*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getPartitionIdsForCellsInZone(int zoneId, int* partitionIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getPartitionIdsForCellsInRange(first, last, partitionIds, capacity);
}

void KelProvider::endReadingPartitionIdsForCells()
{}

void KelProvider::startReadingChildCellsForCells(const std::vector<int>&)
{}

void KelProvider::startReadingChildCellCountsForCells()
{}

short KelProvider::getChildCellCountForCell(unsigned64 cellId) const
{
    short count = 0;
    return getChildCellCountsForCellsInRange(cellId, cellId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getChildCellCountsForCellsInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getChildCellCountsForCellsInZone(int zoneId, short* childCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getChildCellCountsForCellsInRange(first, last, childCounts, capacity);
}

void KelProvider::endReadingChildCellCountsForCells()
{}

void KelProvider::startReadingChildCellIdsForCells()
{}

unsigned64 KelProvider::getChildCellIdsForCell(unsigned64 cellId, unsigned64* childIds, unsigned64 capacity) const
{
    return getChildCellIdsForCellsInRange(cellId, cellId, childIds, capacity);
}

unsigned64 KelProvider::getChildCellIdsForCellsInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getChildCellIdsForCellsInZone(int zoneId, unsigned64* childIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getChildCellIdsForCellsInRange(first, last, childIds, capacity);
}

void KelProvider::endReadingChildCellIdsForCells()
{}

void KelProvider::endReadingChildCellsForCells()
{}

void KelProvider::endReadingCells()
{}

// ---- case sections

void KelProvider::startReadingCaseSectionCategories(KelZoneCategory, std::vector<std::string>&)
{}

KelPlainDataType KelProvider::startReadingCaseSectionForCategory(const std::string&, std::vector<int>&)
{
    return noType;
}

bool KelProvider::hasUniformCaseSectionDataCountForZone(int, unsigned64*) const
{
    return false;
}

unsigned64 KelProvider::getCaseSectionDataForElementsInRange(unsigned64, unsigned64, void*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getCaseSectionDataForElementsInZone(int zoneId, void* values, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getCaseSectionDataForElementsInRange(first, last, values, capacity);
}

void KelProvider::endReadingCaseSectionForCategory()
{}

void KelProvider::endReadingCaseSectionCategories()
{}

} // namespace meridyn
