#pragma once

#include "mesh/CheckState.h"

namespace meridyn::mesh {

/// Follows straight lines through the mesh along each axis and counts how deep they are inside its outer faces: 0
/// outside, 1 inside. Deeper than that, cells of two parts of the mesh fill the same place.
void checkDepth(CheckState& state);

/// KelFaceZoneType of the zone of a face; -1 for none.
int kindOf(const CheckState& state, const OuterFace& face);

/// Whether the faces of such a zone lie on faces of another zone that they are not shared with.
bool isCoupled(int kind);

} // namespace meridyn::mesh
