#include "KelProvider.h"

#include "io/ZoneRange.h"

// The getters of nodes, edges and faces. Markers are bare; every getter goes through the virtual table to the range
// form that a format overrides.

namespace meridyn {

// ---- nodes

void KelProvider::startReadingNodes(const std::vector<int>&)
{}

void KelProvider::startReadingCoordinatesForNodes(const std::vector<int>&)
{}

unsigned64 KelProvider::getCoordinatesForNode(unsigned64 nodeId, float* xyz, unsigned64 capacity) const
{
    return getCoordinatesForNodesInRange(nodeId, nodeId, xyz, capacity);
}

unsigned64 KelProvider::getCoordinatesForNode(unsigned64 nodeId, double* xyz, unsigned64 capacity) const
{
    return getCoordinatesForNodesInRange(nodeId, nodeId, xyz, capacity);
}

unsigned64 KelProvider::getCoordinatesForNodesInRange(unsigned64, unsigned64, float*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getCoordinatesForNodesInRange(unsigned64, unsigned64, double*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getCoordinatesForNodesInZone(int zoneId, float* xyz, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getCoordinatesForNodesInRange(first, last, xyz, capacity);
}

unsigned64 KelProvider::getCoordinatesForNodesInZone(int zoneId, double* xyz, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getCoordinatesForNodesInRange(first, last, xyz, capacity);
}

void KelProvider::endReadingCoordinatesForNodes()
{}

void KelProvider::endReadingNodes()
{}

// ---- edges

void KelProvider::startReadingEdges(const std::vector<int>&)
{}

void KelProvider::startReadingNodesForEdges(const std::vector<int>&)
{}

void KelProvider::startReadingNodeCountsForEdges()
{}

bool KelProvider::hasUniformNodeCountForEdgesInRange(unsigned64, unsigned64, short*) const
{
    return false;
}

bool KelProvider::hasUniformNodeCountForEdgesInZone(int zoneId, short* nodeCount) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return hasUniformNodeCountForEdgesInRange(first, last, nodeCount);
}

short KelProvider::getNodeCountForEdge(unsigned64 edgeId) const
{
    short count = 0;
    return getNodeCountsForEdgesInRange(edgeId, edgeId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getNodeCountsForEdgesInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeCountsForEdgesInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeCountsForEdgesInRange(first, last, nodeCounts, capacity);
}

void KelProvider::endReadingNodeCountsForEdges()
{}

void KelProvider::startReadingNodeIdsForEdges()
{}

unsigned64 KelProvider::getNodeIdsForEdge(unsigned64 edgeId, unsigned64* nodeIds, unsigned64 capacity) const
{
    return getNodeIdsForEdgesInRange(edgeId, edgeId, nodeIds, capacity);
}

unsigned64 KelProvider::getNodeIdsForEdgesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeIdsForEdgesInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeIdsForEdgesInRange(first, last, nodeIds, capacity);
}

void KelProvider::endReadingNodeIdsForEdges()
{}

void KelProvider::endReadingNodesForEdges()
{}

void KelProvider::endReadingEdges()
{}

// ---- faces

void KelProvider::startReadingFaces(const std::vector<int>&)
{}

void KelProvider::startReadingNodesForFaces(const std::vector<int>&)
{}

void KelProvider::startReadingNodeCountsForFaces()
{}

bool KelProvider::hasUniformNodeCountForFacesInRange(unsigned64, unsigned64, short*) const
{
    return false;
}

bool KelProvider::hasUniformNodeCountForFacesInZone(int zoneId, short* nodeCount) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return hasUniformNodeCountForFacesInRange(first, last, nodeCount);
}

short KelProvider::getNodeCountForFace(unsigned64 faceId) const
{
    short count = 0;
    return getNodeCountsForFacesInRange(faceId, faceId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getNodeCountsForFacesInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeCountsForFacesInZone(int zoneId, short* nodeCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeCountsForFacesInRange(first, last, nodeCounts, capacity);
}

void KelProvider::endReadingNodeCountsForFaces()
{}

void KelProvider::startReadingNodeIdsForFaces()
{}

unsigned64 KelProvider::getNodeIdsForFace(unsigned64 faceId, unsigned64* nodeIds, unsigned64 capacity) const
{
    return getNodeIdsForFacesInRange(faceId, faceId, nodeIds, capacity);
}

unsigned64 KelProvider::getNodeIdsForFacesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getNodeIdsForFacesInZone(int zoneId, unsigned64* nodeIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getNodeIdsForFacesInRange(first, last, nodeIds, capacity);
}

void KelProvider::endReadingNodeIdsForFaces()
{}

void KelProvider::endReadingNodesForFaces()
{}

void KelProvider::startReadingCell0sForFaces(const std::vector<int>&)
{}

unsigned64 KelProvider::getCell0ForFace(unsigned64 faceId) const
{
    unsigned64 id = 0;
    return getCell0sForFacesInRange(faceId, faceId, &id, 1) == 1 ? id : 0;
}

unsigned64 KelProvider::getCell0sForFacesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getCell0sForFacesInZone(int zoneId, unsigned64* cellIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getCell0sForFacesInRange(first, last, cellIds, capacity);
}

void KelProvider::endReadingCell0sForFaces()
{}

void KelProvider::startReadingCell1sForFaces(const std::vector<int>&)
{}

unsigned64 KelProvider::getCell1ForFace(unsigned64 faceId) const
{
    unsigned64 id = 0;
    return getCell1sForFacesInRange(faceId, faceId, &id, 1) == 1 ? id : 0;
}

unsigned64 KelProvider::getCell1sForFacesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getCell1sForFacesInZone(int zoneId, unsigned64* cellIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getCell1sForFacesInRange(first, last, cellIds, capacity);
}

void KelProvider::endReadingCell1sForFaces()
{}

void KelProvider::startReadingShadowFaceIdsForFaces(const std::vector<int>&)
{}

unsigned64 KelProvider::getShadowFaceIdForFace(unsigned64 faceId) const
{
    unsigned64 id = 0;
    return getShadowFaceIdsForFacesInRange(faceId, faceId, &id, 1) == 1 ? id : 0;
}

unsigned64 KelProvider::getShadowFaceIdsForFacesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getShadowFaceIdsForFacesInZone(int zoneId, unsigned64* shadowFaceIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getShadowFaceIdsForFacesInRange(first, last, shadowFaceIds, capacity);
}

void KelProvider::endReadingShadowFaceIdsForFaces()
{}

void KelProvider::startReadingInterfaceDataForFaces(std::vector<int>&, std::vector<int>&)
{}

bool KelProvider::getInterfaceDataSizesForFacesInZone(int, unsigned64&, unsigned64&, unsigned64&, unsigned64&) const
{
    return false;
}

unsigned64 KelProvider::getInterfaceDataForFacesInZone(int, float*, unsigned64, float*, unsigned64, unsigned64*,
                                                       unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getInterfaceDataForFacesInZone(int, double*, unsigned64, double*, unsigned64, unsigned64*,
                                                       unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

void KelProvider::endReadingInterfaceDataForFaces()
{}

void KelProvider::startReadingChildFacesForFaces(const std::vector<int>&)
{}

void KelProvider::startReadingChildFaceCountsForFaces()
{}

short KelProvider::getChildFaceCountForFace(unsigned64 faceId) const
{
    short count = 0;
    return getChildFaceCountsForFacesInRange(faceId, faceId, &count, 1) == 1 ? count : short{0};
}

unsigned64 KelProvider::getChildFaceCountsForFacesInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getChildFaceCountsForFacesInZone(int zoneId, short* childCounts, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getChildFaceCountsForFacesInRange(first, last, childCounts, capacity);
}

void KelProvider::endReadingChildFaceCountsForFaces()
{}

void KelProvider::startReadingChildFaceIdsForFaces()
{}

unsigned64 KelProvider::getChildFaceIdsForFace(unsigned64 faceId, unsigned64* childIds, unsigned64 capacity) const
{
    return getChildFaceIdsForFacesInRange(faceId, faceId, childIds, capacity);
}

unsigned64 KelProvider::getChildFaceIdsForFacesInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getChildFaceIdsForFacesInZone(int zoneId, unsigned64* childIds, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getChildFaceIdsForFacesInRange(first, last, childIds, capacity);
}

void KelProvider::endReadingChildFaceIdsForFaces()
{}

void KelProvider::endReadingChildFacesForFaces()
{}

void KelProvider::endReadingFaces()
{}

} // namespace meridyn
