// Any bytes as a case and as a data file: the reader reports or reads, and does nothing else.
#include "KelHdf5Provider.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

/// HDF5 1.10 keeps memory of its own when it gives a damaged file up; what we would leak has no frame of it.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libhdf5";
}

using namespace meridyn;

namespace {

/// One file for all inputs, gone with the program.
class Scratch {
public:
    Scratch() { ::close(::mkstemp(_path.data())); }
    ~Scratch() { std::remove(_path.c_str()); }

    const std::string& fill(const std::uint8_t* data, std::size_t size)
    {
        std::FILE* const file = std::fopen(_path.c_str(), "wb");
        std::fwrite(data, 1, size, file);
        std::fclose(file);
        return _path;
    }

private:
    std::string _path = (std::filesystem::temp_directory_path() / "kel-fuzz-XXXXXX").string();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Scratch scratch;
    const std::string path = scratch.fill(data, size);
    KelHdf5Provider reader;
    reader.startReading(path, KEL_CASE);
    reader.startReading(path, KEL_DATA);
    std::vector<unsigned64> ids(64);
    std::vector<double> values(64);
    std::vector<std::string> names;
    reader.getCoordinatesForNodesInRange(1, 12, values.data(), values.size());
    reader.getNodeIdsForFacesInRange(1, 11, ids.data(), ids.size());
    reader.getCell0sForFacesInRange(1, 11, ids.data(), ids.size());
    reader.getChildFaceIdsForFacesInRange(1, 11, ids.data(), ids.size());
    reader.getSettingsGroups(KEL_CASE, names);
    reader.getSetNames(names);
    for (const std::string& name : names)
        if (reader.startReadingSet(name))
            reader.getIdsForSetInRange(1, 1, ids.data(), ids.size());
    std::vector<int> zones;
    reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "pressure", zones);
    reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values.data(), values.size());
    return 0;
}
