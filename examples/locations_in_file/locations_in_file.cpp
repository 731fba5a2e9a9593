// Builds locations for a mesh, hands them to a writer with it, and asks the file where things are.
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "KelLocationModel.h"

#include <cstdio>
#include <string>
#include <vector>

using namespace meridyn;

namespace {

const char fileName[] = "tetra.case.kel";

void declareZone(KelConsumer& writer, KelZoneCategory category, int zoneId, const char* name, unsigned64 elements)
{
    writer.setZoneIds(category, {zoneId});
    writer.setZoneStringInfo(zoneId, KEL_ZONE_STRING_0, name);
    writer.setZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, elements);
}

/// A part with one body, the volume, and one face, its surface. Both are tied to zones of mesh map 0.
void buildLocations(KelLocationModel& model)
{
    int part = 0, body = 0, face = 0, use = 0;
    model.createPart(3, "tank", part);
    model.createBody(part, "fluid", body);
    model.setBodyZones(body, 0, {2}); // cell zone 2
    model.createFace(part, "wall", face);
    model.setFaceZones(face, 0, {3}); // face zone 3
    model.createFaceUse(body, face, 0, use);
    model.setFaceUseZoneSides(use, 0, {3}); // the fluid lies on its near side
}

bool write()
{
    const double xyz[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    const unsigned64 corners[] = {1, 3, 2, 1, 2, 4, 2, 3, 4, 1, 4, 3}; // four triangles that point out of the cell
    const unsigned64 cells[] = {1, 1, 1, 1};
    KelHdf5Consumer writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    declareZone(writer, KEL_NODE_ZONE, 1, "points", 4);
    declareZone(writer, KEL_FACE_ZONE, 3, "surface", 4);
    declareZone(writer, KEL_CELL_ZONE, 2, "volume", 1);
    writer.setFaceZoneType(3, KEL_FACE_ZONE_TYPE_WALL);
    if (!writer.startWriting(fileName, KEL_CASE))
        return false;
    writer.setCoordinatesForNodesInZone(1, xyz, 12);
    writer.setUniformNodeCountForFacesInZone(3, 3);
    writer.setNodeIdsForFacesInZone(3, corners, 12);
    writer.setCell0sForFacesInRange(1, 4, cells, 4);
    KelLocationModel locations;
    buildLocations(locations);
    writer.setLocationModel(&locations); // copied: the model may go
    return writer.endWriting(KEL_CASE);
}

void ask(const KelProvider& reader, const std::string& location)
{
    std::vector<int> cellZones, faceZoneSides;
    std::printf("%s:", location.c_str());
    if (!reader.getLocationModel()->resolveLocation(location, 0, 0, cellZones, faceZoneSides))
        std::printf(" nothing");
    for (const int zone : cellZones)
        std::printf(" cell zone %d", zone);
    for (const int side : faceZoneSides)
        std::printf(" %s side of face zone %d", side >= 1 ? "near" : "far", side >= 1 ? side : -side);
    std::printf("\n");
}

} // namespace

int main()
{
    if (!write())
        return 1;
    KelHdf5Provider reader;
    if (!reader.startReading(fileName, KEL_CASE))
        return 1;
    ask(reader, "tank");
    ask(reader, "tank/wall");
    ask(reader, "inlet");
    return reader.endReading(KEL_CASE) ? 0 : 1;
}
