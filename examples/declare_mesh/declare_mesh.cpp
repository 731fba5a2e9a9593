// Declares a mesh of one cell, a cube with an inlet and an outlet, prints what the library now knows about it, and
// hands its arrays to the writer frame, which traces them on standard output in place of a file.

#include "KelConsumer.h"

#include <iostream>
#include <string>
#include <vector>

using namespace meridyn;

namespace {

struct Zone {
    int id;
    const char* name;
    unsigned64 firstId; // element ids count from 1 and run through the zones of a category without gaps
    unsigned64 lastId;
};

const Zone nodeZones[] = {{1, "corners", 1, 8}};
const Zone edgeZones[] = {{2, "rim of the inlet", 1, 4}};
const Zone faceZones[] = {{3, "inlet", 1, 1}, {4, "outlet", 2, 2}, {5, "walls", 3, 6}};
const Zone cellZones[] = {{6, "fluid", 1, 1}};

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
    mesh.setZoneIds(category, ids); // all zones of a category at once; their values come after
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

void writeMesh(KelConsumer& writer)
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

    writer.endWriting(KEL_CASE);
}

} // namespace

int main()
{
    KelConsumer writer("declare_mesh");
    declareMesh(writer);

    printZones(writer, KEL_NODE_ZONE, "node zone");
    printZones(writer, KEL_EDGE_ZONE, "edge zone");
    printZones(writer, KEL_FACE_ZONE, "face zones");
    printZones(writer, KEL_CELL_ZONE, "cell zone");

    std::cout << "What a writer is given:\n";
    writeMesh(writer);

    for (const std::string& warning : writer.getWarnings(true, true)) {
        std::cerr << warning << '\n';
    }
    return writer.hasError() ? 1 : 0;
}
