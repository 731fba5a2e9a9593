// write_golden <folder>: files with everything that a writer can put into them, made at a time that stands still.
// write_golden --libraries: the versions of the libraries that decide on bytes of the files too.
//
// digests.py holds their SHA-256 against a list, scripts/compare-files those of two builds against each other: whoever
// moves code that must not change files sees whether it did.
#include "Sample.h"

#include <cstdio>
#include <cstring>
#include <hdf5.h>
#include <numeric>
#include <sys/time.h>
#include <zstd.h>

// HDF5 notes in each array when it was made, and asks these; what the program exports comes before the C library.
extern "C" __attribute__((visibility("default"))) int gettimeofday(timeval* now, void*) noexcept
{
    *now = {1000000000, 0};
    return 0;
}

extern "C" __attribute__((visibility("default"))) time_t time(time_t* now) noexcept
{
    if (now != nullptr)
        *now = 1000000000;
    return 1000000000;
}

namespace {

using namespace hdf5test;
using Ids = std::vector<unsigned64>;

const char* const text = "text with a \xc3\xa9";

/// Ends what a writer writes, and says on the way why it cannot.
bool end(Writer& writer, KelDataClass dataClass)
{
    const bool done = writer.endWriting(dataClass);
    std::fprintf(stderr, "%s", writer.errors().c_str());
    return done;
}

/// Lists of different lengths in pieces and single elements, values that come twice, gaps of ids, parts of arrays,
/// several value types: enough rows for several chunks of a compressed array.
bool writeLists(const std::string& path, int compression)
{
    constexpr unsigned64 nodes = 200000, faces = 3000, cells = 1000;
    Writer writer;
    writer.setCompression(compression);
    writer.setDataPrecision(KEL_PRECISION_SINGLE);
    writer.setMeshSize(KEL_MESH_DIMENSION, 2);
    writer.setMeshUnits("mm");
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneIds(KEL_EDGE_ZONE, {2});
    writer.setZoneIds(KEL_FACE_ZONE, {3, 4});
    writer.setZoneIds(KEL_CELL_ZONE, {6, 5});
    writer.zone(KEL_NODE_ZONE, 1, 1, nodes);
    writer.zone(KEL_EDGE_ZONE, 2, 5, 6);
    writer.zone(KEL_FACE_ZONE, 3, 1, faces);
    writer.zone(KEL_FACE_ZONE, 4, 2 * faces + 1, 3 * faces);
    writer.zone(KEL_CELL_ZONE, 5, 1, cells);
    writer.zone(KEL_CELL_ZONE, 6, cells + 1, cells + 2);
    if (!writer.startWriting(path, KEL_CASE))
        return false;
    std::vector<double> xy(2 * nodes);
    for (std::size_t i = 0; i < xy.size(); ++i)
        xy[i] = 0.125 * static_cast<double>(i % 1001);
    writer.setCoordinatesForNodesInRange(100001, nodes, xy.data() + 200000, nodes);
    writer.setCoordinatesForNodesInRange(1, 100000, xy.data(), nodes);
    const unsigned64 edge[] = {7, 8};
    writer.setUniformNodeCountForEdgesInRange(5, 6, 2);
    writer.setNodeIdsForEdge(6, edge, 2);
    writer.setNodeIdsForEdge(5, edge, 2);
    for (const unsigned64 first : {2 * faces + 1, unsigned64{1}}) {
        std::vector<short> counts(faces);
        Ids ids;
        for (std::size_t i = 0; i < faces; ++i)
            for (short n = counts[i] = static_cast<short>(i % 50 == 0 ? 0 : 3 + i % 3); n > 0; --n)
                ids.push_back(1 + (i * 7 + static_cast<std::size_t>(n)) % nodes);
        writer.setNodeCountsForFacesInRange(first, first + faces - 1, counts.data(), faces);
        writer.setNodeIdsForFacesInRange(first, first + faces - 1, ids.data(), ids.size());
        Ids owners(faces, 3);
        writer.setCell0sForFacesInRange(first, first + faces - 1, owners.data(), faces);
        std::iota(owners.begin(), owners.end() - 2000, 1);
        writer.setCell0sForFacesInRange(first, first + faces - 1, owners.data(), faces);
    }
    for (const unsigned64 face : {17, 5, 6, 7})
        writer.setCell1ForFace(face, cells + 1);
    for (const unsigned64 cell : {3, 900})
        writer.setTypeForCell(cell, KEL_CELL_TETRAHEDRON);
    writer.setUniformNodeCountForCellsInRange(1, cells, 1);
    for (unsigned64 cell = cells; cell > 0; --cell)
        writer.setNodeIdsForCell(cell, &cell, 1);
    const short faceCounts[] = {2, 1};
    const unsigned64 cellFaces[] = {3, 2, 1};
    writer.setFaceCountsForCellsInRange(10, 11, faceCounts, 2);
    writer.setFaceIdsForCellsInRange(10, 11, cellFaces, 3);
    for (const int type : {KEL_PLAIN_SHORT, KEL_PLAIN_DOUBLE}) {
        const std::string name = "section " + std::to_string(type);
        writer.startWritingCaseSectionCategories(KEL_CELL_ZONE, {name, "empty"});
        writer.startWritingCaseSectionDataForCategory(name, {6}, static_cast<KelPlainDataType>(type), 2);
        const double reals[] = {1, 2, 3, 4};
        const short shorts[] = {1, 2, 3, 4};
        writer.setCaseSectionDataForElementsInRange(
            cells + 1, cells + 2, type == KEL_PLAIN_SHORT ? static_cast<const void*>(shorts) : reals, 4);
        writer.endWritingCaseSectionDataForCategory();
        writer.endWritingCaseSectionCategories();
    }
    return end(writer, KEL_CASE);
}

template <class T>
void writeTypedSet(Writer& writer, KelPlainDataType type)
{
    const std::string name = "of type " + std::to_string(type);
    std::vector<T> values(12);
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = static_cast<T>(i * 5);
    const unsigned64 ids[] = {9, 5, 1ULL << 41, 1ULL << 40};
    writer.startWritingSet(name, KEL_FACE_ZONE);
    writer.setSizesAndMinMaxIdsForSet({2, 0, 2}, {5, 0, 1ULL << 40}, {9, 0, 1ULL << 41});
    writer.setIdsForSetInRange(3, 4, ids + 2, 2);
    writer.setIdsForSetInRange(1, 2, ids, 2);
    writer.startWritingDataOfVariableForSet("v", {2, 0, 2}, 3, type);
    writer.setDataOfVariableForSetInRange(1, 4, values.data(), 12);
    writer.endWritingDataOfVariableForSet();
    writer.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_SHORT);
    const short lengths[] = {0, 7};
    writer.setSizeOfVariableForSetInRange(3, 4, lengths, 2);
    writer.setSizeOfVariableForSetInRange(1, 2, static_cast<short>(2));
    writer.endWritingSizeOfVariableForSet();
    writer.startWritingVariableLengthedDataOfVariableForSet("l", {}, type);
    writer.setVariableLengthedDataOfVariableForSetInRange(3, 4, values.data() + 4, 7);
    writer.setVariableLengthedDataOfVariableForSetInRange(1, 2, values.data(), 4);
    writer.endWritingVariableLengthedDataOfVariableForSet();
    writer.writeOtherDataForSet("other", values.data(), values.size());
    writer.writeStringDataForSet("text", text);
    writer.endWritingSet();
}

void writeAllSets(Writer& writer)
{
    writeTypedSet<unsigned char>(writer, KEL_PLAIN_UNSIGNED_CHAR);
    writeTypedSet<char>(writer, KEL_PLAIN_CHAR);
    writeTypedSet<short>(writer, KEL_PLAIN_SHORT);
    writeTypedSet<unsigned int>(writer, KEL_PLAIN_UNSIGNED_INT);
    writeTypedSet<int>(writer, KEL_PLAIN_INT);
    writeTypedSet<long>(writer, KEL_PLAIN_LONG);
    writeTypedSet<unsigned64>(writer, KEL_PLAIN_UNSIGNED64);
    writeTypedSet<signed64>(writer, KEL_PLAIN_SIGNED64);
    writeTypedSet<float>(writer, KEL_PLAIN_FLOAT);
    writeTypedSet<double>(writer, KEL_PLAIN_DOUBLE);
}

/// Sets, set data and tracks of all value types, in a case and at a time level and at none.
bool writeSets(const std::string& casePath, const std::string& dataPath)
{
    Writer writer;
    short gas = 0;
    writer.addPhaseName("gas", gas);
    if (!writer.startWriting(casePath, KEL_CASE))
        return false;
    writeAllSets(writer);
    if (!end(writer, KEL_CASE) || !writer.startWriting(dataPath, KEL_DATA))
        return false;
    writer.startWritingPhase(gas);
    writeAllSets(writer);
    writer.startWritingTimeLevel(7);
    writeAllSets(writer);
    writer.startWritingSetData("particles", 2);
    const float speeds[] = {1, 2, 3, 4, 5, 6};
    writer.startWritingVariableForSetData("speed", 3, KEL_PLAIN_FLOAT);
    writer.setVariableForSetData(speeds, 3);
    writer.setVariableForSetData(speeds + 3, 3);
    writer.writeOtherDataForSetData("block", speeds, 2);
    writer.writeStringDataForSetData("note", text);
    writer.endWritingSetData();
    for (const int mesh : {1, -1}) {
        writer.startWritingParticleTracks(gas, mesh, KEL_DEFAULT_TARGET, -1);
        writer.startWritingPartiticleTrackGroup("group");
        for (const int chunk : {3, 0}) {
            writer.startWritingChunkInPartiticleTrackGroup(chunk, 2);
            writer.setValuesOfParticleTrackVariable("speed", speeds, 6);
            writer.endWritingChunkInPartiticleTrackGroup();
        }
        writer.endWritingPartiticleTrackGroup();
        writer.endWritingParticleTracks();
    }
    return end(writer, KEL_DATA);
}

bool writeLevel(Writer& writer, int level, const char* variable)
{
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable(variable, id);
    writer.startWritingTimeLevel(level);
    std::vector<int> zones{21};
    const double values[] = {level + 0.25, level + 0.5};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, variable, zones, 1);
    writer.setValuesOfPhaseVariableForElementsInZone(21, values, 2);
    writer.endWritingPhaseVariableInZonesOfCategory();
    writer.writeSettingStrings({{std::to_string(level), "0.5"}}, KEL_DATA, "timeLevels");
    return !writer.hasError();
}

/// A file that grows, whose levels are replaced and dropped, and one of several meshes that grows too.
bool writeAppended(const std::string& casePath, const std::string& dataPath, int compression)
{
    for (const int level : {1, 2, 3, 2, 4}) {
        Writer writer;
        writer.setCompression(compression);
        writer.setAppendOn(true);
        TwoCells::declare(writer);
        if (!writer.startWriting(dataPath, KEL_DATA))
            return false;
        if (level == 4)
            writer.dropTimeLevelsFrom(3);
        writer.log({{"level", std::to_string(level)}}, KEL_DATA);
        if (!writeLevel(writer, level, level == 2 ? "q" : "p") || !end(writer, KEL_DATA))
            return false;
    }
    for (const int mesh : {1, 2, 1}) {
        Writer writer;
        writer.setCompression(compression);
        writer.setAppendOn(true);
        writer.context(mesh, mesh == 2 ? KEL_PARTITIONED_POST : KEL_POST, 3);
        if (!TwoCells().write(writer, casePath))
            return false;
    }
    return true;
}

bool writeAll(const std::string& folder)
{
    std::string errors;
    for (const int level : {0, 1, 6}) {
        const std::string stem = folder + "/sample-" + std::to_string(level);
        if (!writeSample(stem + ".case.kel", stem + ".data.kel", errors, level))
            return false;
    }
    return writeLists(folder + "/lists-0.case.kel", 0) && writeLists(folder + "/lists-1.case.kel", 1) &&
           writeSets(folder + "/sets-0.case.kel", folder + "/sets-0.data.kel") &&
           writeAppended(folder + "/appended-0.case.kel", folder + "/appended-0.data.kel", 0) &&
           writeAppended(folder + "/appended-1.case.kel", folder + "/appended-1.data.kel", 1);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: write_golden <folder>\n       write_golden --libraries\n");
        return 2;
    }
    if (std::strcmp(argv[1], "--libraries") == 0) {
        unsigned major = 0, minor = 0, patch = 0;
        H5get_libversion(&major, &minor, &patch);
        std::printf("HDF5 %u.%u.%u, Zstandard %s\n", major, minor, patch, ZSTD_versionString());
        return 0;
    }
    return writeAll(argv[1]) ? 0 : 1;
}
