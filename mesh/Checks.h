#pragma once

namespace meridyn::mesh {

class CheckState;

// The checks, in the order in which they run; each says which rules it counts and what it leaves in the state.

void checkZones(CheckState& state);       ///< Zones. Leaves the zones and ids of all categories.
void checkCoordinates(CheckState& state); ///< Coordinates. Leaves the nodes and the bounding box.
void checkEdges(CheckState& state);       ///< Ids, EdgeNodes.
void checkChildFaces(CheckState& state);  ///< ChildFaces. Leaves which face has which parent.
void checkChildCells(CheckState& state);  ///< ChildCells. Leaves which cells were replaced by others.
void checkFaces(
    CheckState& state); ///< Ids, FaceNodes, FaceShapes, FaceCells. Leaves the sums of the cells and the outer faces.
void checkCellNodes(CheckState& state);  ///< Ids, CellTypes, CellNodes, CellShapes, and volumes of cells without faces.
void checkCellSums(CheckState& state);   ///< CellFaces, Closed, Joined, Volumes, Orientation.
void checkFaceLists(CheckState& state);  ///< FaceLists.
void checkPartitions(CheckState& state); ///< Partitions.
void checkShadows(CheckState& state);    ///< Shadows.
void checkUsedNodes(CheckState& state);  ///< UsedNodes.
void checkOuterFaces(CheckState& state); ///< Shared, Overlaps.
void checkSets(CheckState& state);       ///< Sets.
void checkLocations(CheckState& state);  ///< Locations.

} // namespace meridyn::mesh
