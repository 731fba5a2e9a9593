// Declares a mesh of one cell, a cube with an inlet and an outlet, and prints what the library now knows about it. Then
// it writes the mesh twice: to the bare writer frame, which prints a line for each array, and to a file.

#include "KelConsumer.h"
#include "KelHdf5Consumer.h"

#include <iostream>
#include <string>
#include <vector>

using namespace meridyn;

namespace {

struct Zone {
    int id;
    const char* name;
    unsigned64 firstId; // ids begin with 1, and the zones of a category follow each other without gaps
    unsigned64 lastId;
};

const Zone nodeZones[] = {{1, "corners", 1, 8}};
const Zone edgeZones[] = {{2, "rim of the inlet", 1, 4}};
const Zone faceZones[] = {{3, "inlet", 1, 1}, {4, "outlet", 2, 2}, {5, "walls", 3, 6}};
const Zone cellZones[] = {{6, "fluid", 1, 1}};

// Seen from outside, the nodes of a face run anticlockwise.
// clang-format off
const double coordinates[] = {
    0, 0, 0,  1, 0, 0,  1, 1, 0,  0, 1, 0, // nodes 1 to 4, below
    0, 0, 1,  1, 0, 1,  1, 1, 1,  0, 1, 1, // nodes 5 to 8, above
};
const unsigned64 nodesOfEdges[] = {1, 4,  4, 8,  8, 5,  5, 1};
const unsigned64 nodesOfFaces[] = {
    1, 5, 8, 4,                                          // inlet
    2, 3, 7, 6,                                          // outlet
    1, 4, 3, 2,  5, 6, 7, 8,  1, 2, 6, 5,  4, 8, 7, 3,   // walls
};
const unsigned64 cellsOfFaces[] = {1, 1, 1, 1, 1, 1};
// clang-format on

template <std::size_t count>
void declareZones(KelBase& mesh, KelZoneCategory category, const Zone (&zones)[count])
{
    std::vector<int> ids;
    for (const Zone& zone : zones) {
        ids.push_back(zone.id);
    }
    mesh.setZoneIds(category, ids); // all zones of a category in one call; what they hold is set afterwards
    for (const Zone& zone : zones) {
        mesh.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.firstId);
        mesh.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.lastId);
        mesh.setZoneStringInfo(zone.id, KEL_ZONE_STRING_0, zone.name);
    }
}

void declareMesh(KelBase& mesh)
{
    mesh.setMeshSize(KEL_MESH_DIMENSION, 3);
    mesh.setMeshUnits("m");
    declareZones(mesh, KEL_NODE_ZONE, nodeZones);
    declareZones(mesh, KEL_EDGE_ZONE, edgeZones);
    declareZones(mesh, KEL_FACE_ZONE, faceZones);
    declareZones(mesh, KEL_CELL_ZONE, cellZones);
    mesh.setEdgeZoneType(2, KEL_EDGE_ZONE_TYPE_FEATURE);
    mesh.setFaceZoneType(3, KEL_FACE_ZONE_TYPE_INLET);
    mesh.setFaceZoneType(4, KEL_FACE_ZONE_TYPE_OUTLET);
    mesh.setFaceZoneType(5, KEL_FACE_ZONE_TYPE_WALL);
}

void printZones(const KelBase& mesh, KelZoneCategory category, const std::string& title)
{
    std::vector<int> ids;
    mesh.getZoneIds(category, ids);
    std::cout << mesh.getNumZones(category) << ' ' << title << '\n';
    for (const int id : ids) {
        unsigned64 first = 0;
        unsigned64 last = 0;
        unsigned64 count = 0;
        std::string name;
        mesh.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        mesh.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
        mesh.getZoneSizeInfo(id, KEL_ZONE_ELEMENT_COUNT, count);
        mesh.getZoneStringInfo(id, KEL_ZONE_STRING_0, name);
        std::cout << "  zone " << id << " '" << name << "': " << count << " (" << first << " to " << last << ")\n";
    }
}

/// False if the file is not complete; a bare writer, which writes none, always says so.
bool writeMesh(KelConsumer& writer)
{
    writer.startWriting(KEL_CASE);

    writer.startWritingCoordinatesForNodes({1});
    writer.setCoordinatesForNodesInZone(1, coordinates, 24);
    writer.endWritingCoordinatesForNodes();

    writer.setUniformNodeCountForEdgesInZone(2, 2);
    writer.setNodeIdsForEdgesInZone(2, nodesOfEdges, 8);

    for (const Zone& zone : faceZones) {
        const unsigned64 count = zone.lastId - zone.firstId + 1;
        writer.setUniformNodeCountForFacesInZone(zone.id, 4);
        writer.setNodeIdsForFacesInZone(zone.id, nodesOfFaces + 4 * (zone.firstId - 1), 4 * count);
        writer.setCell0sForFacesInZone(zone.id, cellsOfFaces + zone.firstId - 1, count);
    }

    writer.startWritingTypesForCells({6}, {KEL_CELL_HEXAHEDRON}); // one type for all: no values need to follow
    writer.endWritingTypesForCells();

    return writer.endWriting(KEL_CASE);
}

} // namespace

int main()
{
    KelConsumer trace("declare_mesh");
    declareMesh(trace);
    printZones(trace, KEL_NODE_ZONE, "node zone");
    printZones(trace, KEL_EDGE_ZONE, "edge zone");
    printZones(trace, KEL_FACE_ZONE, "face zones");
    printZones(trace, KEL_CELL_ZONE, "cell zone");

    std::cout << "What a writer is given:\n";
    writeMesh(trace);

    KelHdf5Consumer file;
    file.setFile("cube.case.kel", KEL_CASE);
    declareMesh(file);
    const bool isComplete = writeMesh(file);
    for (const std::string& error : file.getErrors(true, true)) {
        std::cerr << error << '\n';
    }
    return isComplete ? 0 : 1;
}
