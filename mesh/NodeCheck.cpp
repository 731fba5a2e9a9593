#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"

#include <algorithm>

namespace meridyn::mesh {

namespace {

void growBox(KelMeshReport& report, const Vector3& point)
{
    const std::array<double, 3> at{point.x, point.y, point.z};
    if (!report.hasBox)
        report.boxMin = report.boxMax = at;
    report.hasBox = true;
    for (std::size_t d = 0; d < 3; ++d) {
        report.boxMin[d] = std::min(report.boxMin[d], at[d]);
        report.boxMax[d] = std::max(report.boxMax[d], at[d]);
    }
}

void readPiece(CheckState& state, unsigned64 first, unsigned64 last, std::vector<double>& buffer)
{
    const auto dimension = static_cast<std::size_t>(state.report.dimension);
    buffer.resize((last - first + 1) * dimension);
    if (state.reader.getCoordinatesForNodesInRange(first, last, buffer.data(), buffer.size()) != buffer.size())
        CheckState::stop("the coordinates of the nodes " + grouped(first) + " to " + grouped(last) +
                         " could not be read");
    const std::size_t place = state.ids[KEL_NODE_ZONE].indexOf(first);
    for (unsigned64 n = 0; n <= last - first; ++n) {
        const double* xyz = buffer.data() + n * dimension;
        const Vector3 point{xyz[0], xyz[1], dimension == 3 ? xyz[2] : 0.0};
        state.nodes[place + n] = point;
        if (isFinite(point))
            growBox(state.report, point);
        else
            state.add(KelMeshRule::Coordinates, KEL_NODE_ZONE, first + n, "node " + grouped(first + n));
    }
}

} // namespace

void checkCoordinates(CheckState& state)
{
    const ElementIds& ids = state.ids[KEL_NODE_ZONE];
    const auto dimension = static_cast<std::size_t>(state.report.dimension);
    std::vector<double> buffer;
    for (const Zone& zone : state.zones[KEL_NODE_ZONE]) {
        std::array<double, 3> probe{};
        // Memory is taken only for what the last node shows to be there.
        if (state.reader.getCoordinatesForNode(zone.last, probe.data(), dimension) != dimension)
            CheckState::stop("the coordinates of node " + grouped(zone.last) + " could not be read");
        state.nodes.resize(std::max(state.nodes.size(), ids.indexOf(zone.last) + 1));
        CheckState::forChunks(zone, [&](unsigned64 first, unsigned64 last) {
            readPiece(state, first, last, buffer);
            state.tell("nodes", ids.indexOf(last) + 1, ids.size());
            return true;
        });
    }
    state.report.addLookedAt(KelMeshRule::Coordinates, state.nodes.size());
    state.isUsed.assign(state.nodes.size(), false);
}

void checkUsedNodes(CheckState& state)
{
    // Points that nothing stands on are a cloud of points, not a mesh with nodes left over.
    const bool hasCells = std::find(state.hasNodes.begin(), state.hasNodes.end(), true) != state.hasNodes.end();
    if (!state.hasFaceNodes && !hasCells)
        return;
    state.report.addLookedAt(KelMeshRule::UsedNodes, state.nodes.size());
    for (std::size_t place = 0; place < state.nodes.size(); ++place)
        if (!state.isUsed[place]) {
            const unsigned64 id = state.ids[KEL_NODE_ZONE].idOf(place);
            state.add(KelMeshRule::UsedNodes, KEL_NODE_ZONE, id, "node " + grouped(id));
        }
}

void checkEdges(CheckState& state)
{
    std::vector<short> counts;
    std::vector<unsigned64> nodes;
    for (const Zone& zone : state.zones[KEL_EDGE_ZONE])
        CheckState::forChunks(
            zone,
            [&](unsigned64 first, unsigned64 last) {
                const unsigned64 edges = last - first + 1;
                counts.assign(edges, 0);
                short uniform = 0;
                if (state.reader.hasUniformNodeCountForEdgesInRange(first, last, &uniform))
                    std::fill(counts.begin(), counts.end(), uniform);
                else if (const unsigned64 found =
                             state.reader.getNodeCountsForEdgesInRange(first, last, counts.data(), edges);
                         found == 0 && first == zone.first) {
                    state.report.addUnseen({KEL_EDGE_ZONE, zone.size(),
                                            counted(zone.size(), "edge", "edges") + " of zone " +
                                                zoneLabel(state.reader, zone.id) + " without nodes"});
                    return false;
                } else if (found != edges)
                    CheckState::stop("the numbers of nodes of the edges " + grouped(first) + " to " + grouped(last) +
                                     " could not be read");
                std::size_t total = 0;
                for (const short count : counts)
                    total += static_cast<std::size_t>(std::max<short>(count, 0));
                nodes.resize(total);
                if (total != 0 && state.reader.getNodeIdsForEdgesInRange(first, last, nodes.data(), total) != total)
                    CheckState::stop("the nodes of the edges " + grouped(first) + " to " + grouped(last) +
                                     " could not be read");
                state.report.addLookedAt(KelMeshRule::Ids, edges);
                state.report.addLookedAt(KelMeshRule::EdgeNodes, edges);
                const unsigned64* own = nodes.data();
                for (unsigned64 n = 0; n < edges; own += std::max<short>(counts[n++], 0)) {
                    const std::size_t count = static_cast<std::size_t>(std::max<short>(counts[n], 0));
                    const unsigned64 id = first + n;
                    std::vector<unsigned64> different(own, own + count);
                    std::sort(different.begin(), different.end());
                    const bool isRepeated = std::adjacent_find(different.begin(), different.end()) != different.end();
                    if (count < 2 || isRepeated)
                        state.add(KelMeshRule::EdgeNodes, KEL_EDGE_ZONE, id,
                                  state.label(KEL_EDGE_ZONE, zone, id) +
                                      (isRepeated ? " has a node twice" : " has " + counted(count, "node", "nodes")));
                    for (std::size_t k = 0; k < count; ++k) {
                        const std::size_t place = state.ids[KEL_NODE_ZONE].indexOf(own[k]);
                        if (place != ElementIds::none) {
                            state.isUsed[place] = true;
                            continue;
                        }
                        state.add(KelMeshRule::Ids, KEL_EDGE_ZONE, id,
                                  state.label(KEL_EDGE_ZONE, zone, id) + " names node " + grouped(own[k]) + " of " +
                                      grouped(state.nodes.size()));
                        break;
                    }
                }
                return true;
            },
            8192);
}

} // namespace meridyn::mesh
