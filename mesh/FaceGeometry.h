#pragma once

#include "mesh/Vector3.h"

#include <vector>

namespace meridyn::mesh {

/// What the nodes of a face make of it.
struct FaceShape {
    Vector3 centre;        ///< mean of the nodes
    Vector3 area;          ///< area vector by the order of the nodes; in two dimensions the line, turned to its right
    bool hasArea = true;   ///< false when it is not larger than what rounding leaves of nothing
    bool hasSpike = false; ///< an edge has no length, or a corner turns back on itself
};

/// The shape of a face from its nodes in order.
FaceShape shapeOf(const std::vector<Vector3>& points, int dimension);

} // namespace meridyn::mesh
