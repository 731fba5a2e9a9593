#include "mesh/CellVolumes.h"

#include "mesh/MeshText.h"

#include <cmath>

namespace meridyn::mesh {

void addVolume(CheckState& state, unsigned64 cellId, double volume, double surface)
{
    const double rounding = 1e-15 * (state.isFlat() ? surface * surface : surface * std::sqrt(surface));
    if (!(volume > rounding))
        state.add(KelMeshRule::Volumes, KEL_CELL_ZONE, cellId,
                  "cell " + grouped(cellId) + " has the volume " + shortNumber(volume));
    KelMeshReport& report = state.report;
    report.volume += volume;
    if (report.smallestCell == 0 || volume < report.smallestVolume) {
        report.smallestVolume = volume;
        report.smallestCell = cellId;
    }
    if (report.largestCell == 0 || volume > report.largestVolume) {
        report.largestVolume = volume;
        report.largestCell = cellId;
    }
}

} // namespace meridyn::mesh
