#pragma once

#include "KelTypes.h"
#include "mesh/Vector3.h"

#include <cstddef>
#include <string>
#include <vector>

namespace meridyn::mesh {

/// What the order of the nodes of a cell type means: KelTypes.h draws it.
struct CellShape {
    std::size_t nodes = 0;                 ///< 0 when the type does not fix it
    std::vector<std::vector<int>> sides;   ///< places of the nodes of each face, outwards; in two dimensions lines
    std::vector<std::vector<int>> corners; ///< a node and its three neighbours, which a sound cell sees turn right
    std::size_t sideCorners = 0;           ///< nodes of all sides
};

/// The shape of a type; one without nodes for polyhedra, polygons and unknown types.
const CellShape& shapeOfType(KelCellType type);

/// The sides of a polygon of so many nodes.
CellShape polygonOf(std::size_t nodes);

/// The type that a cell without one has by the number of its nodes; -1 when none fits.
KelCellType typeByNodes(std::size_t nodes, int dimension);

/// "tetrahedron", "hexahedron" ...; "cell of type 17" for an unknown one.
std::string typeName(KelCellType type);

/// Dimension of the meshes whose cells have a type; 0 for an unknown one.
int dimensionOfType(KelCellType type);

/// Volume of a cell by its sides; an area in two dimensions.
double volumeOf(const CellShape& shape, const std::vector<Vector3>& points, int dimension);

/// Number of corners at which the neighbours of the node turn the wrong way; all where a hexahedron is twisted in the
/// middle, which its corners do not show.
std::size_t turnedCorners(const CellShape& shape, const std::vector<Vector3>& points);

} // namespace meridyn::mesh
