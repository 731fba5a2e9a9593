#include "KelConsumer.h"
#include "Trace.h"
#include "ZoneRange.h"

namespace meridyn {

void KelConsumer::startWritingFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingNodesForFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingNodeCountsForFaces()
{}

void KelConsumer::setUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short)
{
    trace::count("  Constant face-node count (", firstId, lastId);
}

void KelConsumer::setUniformNodeCountForFacesInZone(int zoneId, short nodeCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformNodeCountForFacesInRange(first, last, nodeCount);
}

void KelConsumer::setNodeCountForFace(unsigned64 faceId, short nodeCount)
{
    setNodeCountsForFacesInRange(faceId, faceId, &nodeCount, 1);
}

void KelConsumer::setNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short*, unsigned64)
{
    trace::count("  Face-node count (", firstId, lastId);
}

void KelConsumer::setNodeCountsForFacesInZone(int zoneId, const short* nodeCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeCountsForFacesInRange(first, last, nodeCounts, count);
}

void KelConsumer::endWritingNodeCountsForFaces()
{}

void KelConsumer::startWritingNodeIdsForFaces()
{}

void KelConsumer::setNodeIdsForFace(unsigned64 faceId, const unsigned64* nodeIds, unsigned64 count)
{
    setNodeIdsForFacesInRange(faceId, faceId, nodeIds, count);
}

void KelConsumer::setNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-node id (", firstId, lastId);
}

void KelConsumer::setNodeIdsForFacesInZone(int zoneId, const unsigned64* nodeIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeIdsForFacesInRange(first, last, nodeIds, count);
}

void KelConsumer::endWritingNodeIdsForFaces()
{
    trace::emptyLine();
}

void KelConsumer::endWritingNodesForFaces()
{}

void KelConsumer::startWritingCell0sForFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::setCell0ForFace(unsigned64 faceId, unsigned64 cellId)
{
    setCell0sForFacesInRange(faceId, faceId, &cellId, 1);
}

void KelConsumer::setCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-C0 id: (", firstId, lastId);
}

void KelConsumer::setCell0sForFacesInZone(int zoneId, const unsigned64* cellIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setCell0sForFacesInRange(first, last, cellIds, count);
}

void KelConsumer::endWritingCell0sForFaces()
{}

void KelConsumer::startWritingCell1sForFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::setCell1ForFace(unsigned64 faceId, unsigned64 cellId)
{
    setCell1sForFacesInRange(faceId, faceId, &cellId, 1);
}

void KelConsumer::setCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-C1 id: (", firstId, lastId);
}

void KelConsumer::setCell1sForFacesInZone(int zoneId, const unsigned64* cellIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setCell0sForFacesInRange(first, last, cellIds, count); // C0, kept: existing writers rely on it
}

void KelConsumer::endWritingCell1sForFaces()
{}

void KelConsumer::startWritingShadowFaceIdsForFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::setShadowFaceIdForFace(unsigned64 faceId, unsigned64 shadowFaceId)
{
    setShadowFaceIdsForFacesInRange(faceId, faceId, &shadowFaceId, 1);
}

void KelConsumer::setShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-shadow id: (", firstId, lastId);
}

void KelConsumer::setShadowFaceIdsForFacesInZone(int zoneId, const unsigned64* shadowFaceIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setShadowFaceIdsForFacesInRange(first, last, shadowFaceIds, count);
}

void KelConsumer::endWritingShadowFaceIdsForFaces()
{}

void KelConsumer::startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0, const std::vector<int>&)
{
    trace::zones(zoneIds0);
}

void KelConsumer::setInterfaceDataForFacesInZone(int zoneId, const float*, unsigned64, const float*, unsigned64,
                                                 const unsigned64*, unsigned64, const unsigned64*, unsigned64)
{
    trace::line("  Interface-faces: (zone-", zoneId, ")");
}

void KelConsumer::setInterfaceDataForFacesInZone(int zoneId, const double*, unsigned64, const double*, unsigned64,
                                                 const unsigned64*, unsigned64, const unsigned64*, unsigned64)
{
    trace::line("  Interface-faces: (zone-", zoneId, ")");
}

void KelConsumer::endWritingInterfaceDataForFaces()
{
    trace::emptyLine();
}

void KelConsumer::startWritingChildFacesForFaces(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingChildFaceCountsForFaces()
{
    trace::emptyLine();
}

void KelConsumer::setChildFaceCountForFace(unsigned64 faceId, short childCount)
{
    setChildFaceCountsForFacesInRange(faceId, faceId, &childCount, 1);
}

void KelConsumer::setChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short*, unsigned64)
{
    trace::range("  Face-child count: (", firstId, lastId);
}

void KelConsumer::setChildFaceCountsForFacesInZone(int zoneId, const short* childCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setChildFaceCountsForFacesInRange(first, last, childCounts, count);
}

void KelConsumer::setUniformChildFaceCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short)
{
    trace::range("  Uniform face-child count: (", firstId, lastId);
}

void KelConsumer::setUniformChildFaceCountForFacesInZone(int zoneId, short childCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformChildFaceCountForFacesInRange(first, last, childCount);
}

void KelConsumer::endWritingChildFaceCountsForFaces()
{
    trace::emptyLine();
}

void KelConsumer::startWritingChildFaceIdsForFaces()
{
    trace::emptyLine();
}

void KelConsumer::setChildFaceIdsForFace(unsigned64 faceId, const unsigned64* childIds, unsigned64 count)
{
    setChildFaceIdsForFacesInRange(faceId, faceId, childIds, count);
}

void KelConsumer::setChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Face-child id: (", firstId, lastId);
}

void KelConsumer::setChildFaceIdsForFacesInZone(int zoneId, const unsigned64* childIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setChildFaceIdsForFacesInRange(first, last, childIds, count);
}

void KelConsumer::endWritingChildFaceIdsForFaces()
{}

void KelConsumer::endWritingChildFacesForFaces()
{}

void KelConsumer::endWritingFaces()
{}

} // namespace meridyn
