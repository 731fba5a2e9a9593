// Any bytes as a case: a bundle of files, each begun by a line "@<path>", is written into a folder and read whole.
#include "KelPolyMeshProvider.h"
#include "support/TemporaryFolder.h"

#include <cstddef>
#include <cstdint>
#include <list>
#include <string>
#include <vector>

namespace {

const char* const files[] = {"constant/polyMesh/points",
                             "constant/polyMesh/faces",
                             "constant/polyMesh/owner",
                             "constant/polyMesh/neighbour",
                             "constant/polyMesh/boundary",
                             "constant/polyMesh/cellZones",
                             "constant/polyMesh/faceZones",
                             "constant/polyMesh/pointZones",
                             "constant/polyMesh/faces.gz",
                             "constant/polyMesh/sets/a",
                             "0/uniform/time",
                             "system/controlDict",
                             "0/p",
                             "0/U"};

/// Writes the files of the bundle; only names of the list, so that nothing is written elsewhere.
void unpack(const std::string& bundle, const TemporaryFolder& folder)
{
    for (const char* name : files) {
        std::filesystem::remove(folder / name);
        const std::string mark = std::string("@") + name + "\n";
        const std::size_t from = bundle.find(mark);
        if (from == std::string::npos)
            continue;
        const std::size_t to = bundle.find("\n@", from + mark.size());
        folder.write(name, bundle.substr(from + mark.size(), to - from - mark.size()));
    }
}

void readAll(meridyn::KelPolyMeshProvider& reader)
{
    using namespace meridyn;
    unsigned64 faces = 0, cells = 0;
    reader.getMeshSize(KEL_MESH_SIZE_3, faces);
    reader.getMeshSize(KEL_MESH_SIZE_4, cells);
    std::vector<unsigned64> ids(10000);
    std::vector<double> values(10000);
    reader.getNodeIdsForFacesInRange(1, faces, ids.data(), ids.size());
    reader.getNodeIdsForCellsInRange(1, cells, ids.data(), ids.size());
    std::list<int> beside;
    reader.getFaceCellZone0Ids(2, beside);
    reader.getLocationModel();
    for (const KelZoneCategory category : {KEL_FACE_ZONE, KEL_CELL_ZONE})
        for (const char* name : {"p", "U"}) {
            std::vector<int> zones;
            reader.startReadingZonesOfCategoryWithPhaseVariable(category, name, zones);
            for (const int zone : zones)
                reader.getValuesOfPhaseVariableForElementsInZone(zone, values.data(), values.size());
        }
    std::vector<std::string> groups, keys;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        reader.notHandedOver(dataClass);
        reader.getSettingsGroups(dataClass, groups);
        for (const std::string& group : groups)
            reader.getSettingsKeysOfGroup(dataClass, group, keys);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const TemporaryFolder folder;
    for (const char* name : {"constant/polyMesh/sets", "system", "0/uniform"})
        std::filesystem::create_directories(folder / name);
    unpack(std::string(reinterpret_cast<const char*>(data), size), folder);
    meridyn::KelPolyMeshProvider reader;
    if (reader.startReading(folder.path(), meridyn::KEL_CASE) && reader.startReading(folder.path(), meridyn::KEL_DATA))
        readAll(reader);
    return 0;
}
