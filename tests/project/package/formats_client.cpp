// The same with the formats: writes a file and reads it back.
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include <vector>

using namespace meridyn;

int main()
{
    const std::vector<double> written = {0, 0, 0, 1, 0, 0};
    KelHdf5Consumer writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneSizeInfo(1, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 2);
    writer.startWriting("client.case.kel", KEL_CASE);
    writer.startWritingCoordinatesForNodes({1});
    writer.setCoordinatesForNodesInZone(1, written.data(), written.size());
    writer.endWritingCoordinatesForNodes();
    if (!writer.endWriting(KEL_CASE))
        return 1;

    KelHdf5Provider reader;
    std::vector<double> read(written.size());
    if (!reader.startReading("client.case.kel", KEL_CASE))
        return 2;
    reader.getCoordinatesForNodesInZone(1, read.data(), read.size());
    return read == written ? 0 : 3;
}
