// Two cubes beside each other, with a pressure and a velocity at two times, for any writer.
#pragma once

#include "KelAttributes.h"
#include "KelConsumer.h"

#include <string>
#include <vector>

// clang-format off
const double coordinatesOfNodes[] = {
    0, 0, 0,  0, 1, 0,  0, 1, 1,  0, 0, 1,
    1, 0, 0,  1, 1, 0,  1, 1, 1,  1, 0, 1,
    2, 0, 0,  2, 1, 0,  2, 1, 1,  2, 0, 1};

// Seen from outside, and between the cubes from cell 1, the nodes of a face run anticlockwise: its normal points away
// from cell 0.
const meridyn::unsigned64 nodesOfFaces[] = {
    5, 6, 7, 8,                                             // between the cubes
    1, 4, 3, 2,                                             // inlet
    9, 10, 11, 12,                                          // outlet
    1, 2, 6, 5,   2, 3, 7, 6,    3, 4, 8, 7,    4, 1, 5, 8, // walls
    5, 6, 10, 9,  6, 7, 11, 10,  7, 8, 12, 11,  8, 5, 9, 12};
const meridyn::unsigned64 cell0sOfFaces[] = {1, 1, 2, 1, 1, 1, 1, 2, 2, 2, 2};
const meridyn::unsigned64 cell1sOfFaces[] = {2}; // of face 1 only: boundary faces have none
// clang-format on

inline void declareZone(meridyn::KelConsumer& writer, int id, const std::string& name, meridyn::unsigned64 first,
                        meridyn::unsigned64 last)
{
    writer.setZoneSizeInfo(id, meridyn::KEL_ZONE_FIRST_ID, first);
    writer.setZoneSizeInfo(id, meridyn::KEL_ZONE_LAST_ID, last);
    writer.setZoneStringInfo(id, meridyn::KEL_ZONE_STRING_0, name);
}

/// Zones come before startWriting, arrays after it.
inline void declareTwoCubes(meridyn::KelConsumer& writer)
{
    writer.setMeshSize(meridyn::KEL_MESH_DIMENSION, 3);
    writer.setMeshUnits("m");
    writer.setZoneIds(meridyn::KEL_NODE_ZONE, {1});
    writer.setZoneIds(meridyn::KEL_FACE_ZONE, {2, 3, 4, 5});
    writer.setZoneIds(meridyn::KEL_CELL_ZONE, {6});
    declareZone(writer, 1, "nodes", 1, 12);
    declareZone(writer, 2, "interior", 1, 1);
    declareZone(writer, 3, "inlet", 2, 2);
    declareZone(writer, 4, "outlet", 3, 3);
    declareZone(writer, 5, "walls", 4, 11);
    declareZone(writer, 6, "fluid", 1, 2);
    writer.setFaceZoneType(2, meridyn::KEL_FACE_ZONE_TYPE_INTERIOR);
    writer.setFaceZoneType(3, meridyn::KEL_FACE_ZONE_TYPE_INLET);
    writer.setFaceZoneType(4, meridyn::KEL_FACE_ZONE_TYPE_OUTLET);
    writer.setFaceZoneType(5, meridyn::KEL_FACE_ZONE_TYPE_WALL);
}

/// Arrays are passed for a zone, a range of ids or an element: whatever suits the data.
inline void writeMesh(meridyn::KelConsumer& writer)
{
    writer.startWritingNodes({1});
    writer.startWritingCoordinatesForNodes({1});
    writer.setCoordinatesForNodesInZone(1, coordinatesOfNodes, 36);
    writer.endWritingCoordinatesForNodes();
    writer.endWritingNodes();

    const std::vector<int> faceZones = {2, 3, 4, 5};
    writer.startWritingFaces(faceZones);
    writer.startWritingNodesForFaces(faceZones);
    writer.startWritingNodeCountsForFaces();
    writer.setUniformNodeCountForFacesInRange(1, 11, 4);
    writer.endWritingNodeCountsForFaces();
    writer.startWritingNodeIdsForFaces();
    writer.setNodeIdsForFacesInRange(1, 11, nodesOfFaces, 44);
    writer.endWritingNodeIdsForFaces();
    writer.endWritingNodesForFaces();
    writer.startWritingCell0sForFaces(faceZones);
    writer.setCell0sForFacesInRange(1, 11, cell0sOfFaces, 11);
    writer.endWritingCell0sForFaces();
    writer.startWritingCell1sForFaces({2});
    writer.setCell1ForFace(1, cell1sOfFaces[0]);
    writer.endWritingCell1sForFaces();
    writer.endWritingFaces();

    writer.startWritingCells({6});
    writer.startWritingTypesForCells({6}, {meridyn::KEL_CELL_HEXAHEDRON});
    writer.endWritingTypesForCells();
    writer.endWritingCells();
}

/// Writes the values of a variable on the two cells.
inline void writeVariable(meridyn::KelConsumer& writer, int variableId, const std::vector<double>& values)
{
    std::vector<int> zones = {6};
    writer.startWritingPhaseVariableInZonesOfCategory(meridyn::KEL_CELL_ZONE, variableId, zones, values.size() / 2);
    writer.setValuesOfPhaseVariableForElementsInZone(6, values.data(), values.size());
    writer.endWritingPhaseVariableInZonesOfCategory();
}

inline void writeSolution(meridyn::KelConsumer& writer)
{
    std::vector<short> phases;
    int pressure = 0, velocity = 0;
    writer.setPhaseNames({"water"}, phases);
    writer.addPhaseVariable(phases[0], "pressure", pressure);
    writer.addPhaseVariable(phases[0], "velocity", velocity);
    writer.setAttributeValueOfPhaseVariable(pressure, meridyn::KelAttributes::units, "Pa");

    for (const int timeLevel : {10, 20}) {
        writer.startWritingTimeLevel(timeLevel);
        writer.startWritingPhase(phases[0]);
        // These belong to the active phase. The bare writer has none and answers false.
        writer.setPhaseVariablesOfCategory(meridyn::KEL_CELL_ZONE, std::vector<int>{pressure, velocity});
        writeVariable(writer, pressure, {100.0 + timeLevel, 200.0 + timeLevel});
        writeVariable(writer, velocity, {1, 0, 0, 1, 0.5, 0});
        writer.endWritingPhase();
        writer.endWritingTimeLevel();
    }
}
