#pragma once

#include "mesh/CheckState.h"

namespace meridyn::mesh {

/// Takes the volume of a cell into the report, and counts it when it is not positive.
///
/// @param surface  area that the cell has about it, which says how much of a volume rounding could have made
void addVolume(CheckState& state, unsigned64 cellId, double volume, double surface);

} // namespace meridyn::mesh
