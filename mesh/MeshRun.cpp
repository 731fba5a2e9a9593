#include "mesh/MeshRun.h"

#include "mesh/Checks.h"
#include "mesh/CheckState.h"

namespace meridyn::mesh {

namespace {

using Check = void (*)(CheckState& state);

// The one list of checks. Zones and coordinates come first, since all others stand on them; child faces come before
// the faces, whose sums need to know which of them have parents; what asks whether a cell is known by its faces comes
// behind the faces, what asks for outer faces behind the cells.
constexpr Check checks[] = {
    checkZones,   checkCoordinates, checkEdges,      checkChildFaces, checkChildCells,
    checkFaces,   checkCellNodes,   checkCellSums,   checkFaceLists,  checkPartitions,
    checkShadows, checkUsedNodes,   checkOuterFaces, checkSets,       checkLocations,
};

} // namespace

void runChecks(KelProvider& reader, const KelMeshCheckOptions& options, KelMeshReport& report)
{
    CheckState state(reader, options, report);
    for (const Check check : checks)
        check(state);
}

} // namespace meridyn::mesh
