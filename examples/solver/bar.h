// The mesh of the solver: a bar of cubes in a row along x.
#pragma once

#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include <fstream>
#include <string>
#include <vector>

const int nodeZone = 1, innerZone = 2, leftZone = 3, rightZone = 4, sideZone = 5, cellZone = 6;
const meridyn::unsigned64 cellCount = 8;

inline bool exists(const std::string& file)
{
    return std::ifstream(file).good();
}

inline void declareZone(meridyn::KelConsumer& writer, int id, const std::string& name, meridyn::unsigned64 first,
                        meridyn::unsigned64 last)
{
    writer.setZoneSizeInfo(id, meridyn::KEL_ZONE_FIRST_ID, first);
    writer.setZoneSizeInfo(id, meridyn::KEL_ZONE_LAST_ID, last);
    writer.setZoneStringInfo(id, meridyn::KEL_ZONE_STRING_0, name);
}

/// The zones, which every file of the run has: faces between the cells first, then the two ends, then the sides.
inline void declareBar(meridyn::KelConsumer& writer)
{
    writer.setMeshSize(meridyn::KEL_MESH_DIMENSION, 3);
    writer.setMeshUnits("m");
    writer.setZoneIds(meridyn::KEL_NODE_ZONE, {nodeZone});
    writer.setZoneIds(meridyn::KEL_FACE_ZONE, {innerZone, leftZone, rightZone, sideZone});
    writer.setZoneIds(meridyn::KEL_CELL_ZONE, {cellZone});
    declareZone(writer, nodeZone, "nodes", 1, 4 * (cellCount + 1));
    declareZone(writer, innerZone, "inside", 1, cellCount - 1);
    declareZone(writer, leftZone, "hot end", cellCount, cellCount);
    declareZone(writer, rightZone, "cold end", cellCount + 1, cellCount + 1);
    declareZone(writer, sideZone, "sides", cellCount + 2, 5 * cellCount + 1);
    declareZone(writer, cellZone, "bar", 1, cellCount);
    writer.setFaceZoneType(innerZone, meridyn::KEL_FACE_ZONE_TYPE_INTERIOR);
    for (const int zone : {leftZone, rightZone, sideZone})
        writer.setFaceZoneType(zone, meridyn::KEL_FACE_ZONE_TYPE_WALL);
}

/// Node `corner` (0 to 3, around the x axis) of the plane number `plane` (from 0).
inline meridyn::unsigned64 node(meridyn::unsigned64 plane, meridyn::unsigned64 corner)
{
    return 4 * plane + corner % 4 + 1;
}

/// Writes the mesh, face by face. False if the file is not complete.
inline bool writeBar(meridyn::KelHdf5Consumer& writer, const std::string& file)
{
    using meridyn::unsigned64;
    if (!writer.startWriting(file, meridyn::KEL_CASE))
        return false;
    for (unsigned64 plane = 0; plane <= cellCount; ++plane) {
        const auto x = static_cast<double>(plane);
        const double corners[] = {x, 0, 0, x, 1, 0, x, 1, 1, x, 0, 1};
        writer.setCoordinatesForNodesInRange(node(plane, 0), node(plane, 3), corners, 12);
    }
    writer.setUniformNodeCountForFacesInRange(1, 5 * cellCount + 1, 4);
    // Seen from cell 0, the nodes of a face run clockwise, so that its normal points away from that cell.
    const auto across = [&](unsigned64 face, unsigned64 plane, unsigned64 cell, bool toTheRight) {
        const unsigned64 nodes[] = {node(plane, 0), node(plane, toTheRight ? 1 : 3), node(plane, 2),
                                    node(plane, toTheRight ? 3 : 1)};
        writer.setNodeIdsForFace(face, nodes, 4);
        writer.setCell0ForFace(face, cell);
    };
    for (unsigned64 cell = 1; cell < cellCount; ++cell) {
        across(cell, cell, cell, true);
        writer.setCell1ForFace(cell, cell + 1);
    }
    across(cellCount, 0, 1, false);
    across(cellCount + 1, cellCount, cellCount, true);
    unsigned64 face = cellCount + 2;
    for (unsigned64 cell = 1; cell <= cellCount; ++cell)
        for (unsigned64 side = 0; side < 4; ++side, ++face) {
            const unsigned64 nodes[] = {node(cell - 1, side), node(cell - 1, side + 1), node(cell, side + 1),
                                        node(cell, side)};
            writer.setNodeIdsForFace(face, nodes, 4);
            writer.setCell0ForFace(face, cell);
        }
    writer.startWritingTypesForCells({cellZone}, {meridyn::KEL_CELL_HEXAHEDRON});
    return writer.endWriting(meridyn::KEL_CASE);
}
