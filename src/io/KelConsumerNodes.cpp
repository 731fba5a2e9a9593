#include "KelConsumer.h"
#include "Trace.h"
#include "ZoneRange.h"

#include <string>

namespace meridyn {

static void traceCoordinates(const KelBase& base, unsigned64 firstId, unsigned64 lastId)
{
    unsigned64 dimension = 0;
    base.getMeshSize(KEL_MESH_DIMENSION, dimension);
    trace::count("  " + std::to_string(dimension) + "-D coordinates (", firstId, lastId);
}

void KelConsumer::startWritingZonesOfCategory(KelZoneCategory)
{}

void KelConsumer::endWritingZonesOfCategory()
{}

void KelConsumer::startWritingNodes(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingCoordinatesForNodes(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::setCoordinatesForNode(unsigned64 nodeId, const double* xyz, unsigned64 count)
{
    setCoordinatesForNodesInRange(nodeId, nodeId, xyz, count);
}

void KelConsumer::setCoordinatesForNode(unsigned64 nodeId, const float* xyz, unsigned64 count)
{
    setCoordinatesForNodesInRange(nodeId, nodeId, xyz, count);
}

void KelConsumer::setCoordinatesForNodesInZone(int zoneId, const double* xyz, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setCoordinatesForNodesInRange(first, last, xyz, count);
}

void KelConsumer::setCoordinatesForNodesInZone(int zoneId, const float* xyz, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setCoordinatesForNodesInRange(first, last, xyz, count);
}

void KelConsumer::setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const double*, unsigned64)
{
    traceCoordinates(*this, firstId, lastId);
}

void KelConsumer::setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const float*, unsigned64)
{
    traceCoordinates(*this, firstId, lastId);
}

void KelConsumer::endWritingCoordinatesForNodes()
{}

void KelConsumer::endWritingNodes()
{}

void KelConsumer::startWritingEdges(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::startWritingNodesForEdges(const std::vector<int>& zoneIds)
{
    trace::zones(zoneIds);
}

void KelConsumer::setUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short)
{
    trace::count("  Constant edge-node count (", firstId, lastId);
}

void KelConsumer::setUniformNodeCountForEdgesInZone(int zoneId, short nodeCount)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setUniformNodeCountForEdgesInRange(first, last, nodeCount);
}

void KelConsumer::setNodeCountForEdge(unsigned64 edgeId, short nodeCount)
{
    setNodeCountsForEdgesInRange(edgeId, edgeId, &nodeCount, 1);
}

void KelConsumer::setNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const short*, unsigned64)
{
    trace::count("  Edge-node count (", firstId, lastId);
}

void KelConsumer::setNodeCountsForEdgesInZone(int zoneId, const short* nodeCounts, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeCountsForEdgesInRange(first, last, nodeCounts, count);
}

void KelConsumer::startWritingNodeCountsForEdges()
{}

void KelConsumer::startWritingNodeIdsForEdges()
{}

void KelConsumer::setNodeIdsForEdge(unsigned64 edgeId, const unsigned64* nodeIds, unsigned64 count)
{
    setNodeIdsForEdgesInRange(edgeId, edgeId, nodeIds, count);
}

void KelConsumer::setNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64*, unsigned64)
{
    trace::range("  Edge-node id (", firstId, lastId);
}

void KelConsumer::setNodeIdsForEdgesInZone(int zoneId, const unsigned64* nodeIds, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setNodeIdsForEdgesInRange(first, last, nodeIds, count);
}

void KelConsumer::endWritingNodeIdsForEdges()
{
    trace::emptyLine();
}

void KelConsumer::endWritingNodeCountsForEdges()
{}

void KelConsumer::endWritingNodesForEdges()
{}

void KelConsumer::endWritingEdges()
{}

} // namespace meridyn
