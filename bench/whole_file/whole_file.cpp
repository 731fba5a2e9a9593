// What do whole case and data files cost, compared with the plain limit of pwrite and pread and with bare HDF5?
//
// bench_whole_file [n [level [folder [scattered]]]]: a box of n^3 cells (default 64), compression level (0), folder for
// the files (the system's for temporary files), "scattered" numbers cells, faces and nodes at random. Prints one line
// of JSON: medians in seconds of alternating runs, ratios to the limit of the same run.
#include "BoxArrays.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "PlainFile.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/resource.h>

namespace {

using namespace meridyn;
using namespace whole_file;

constexpr int runs = 7;
const char* const variableNames[] = {"p", "u", "v", "w", "T"};

struct Job {
    BoxArrays box;
    int level;
    std::string caseFile, dataFile, plainMesh, plainSolution, hdf5Mesh, hdf5Solution;
    std::vector<Block> mesh, solution; ///< the arrays, also as room for reading

    Job(unsigned64 n, int compression, bool scatters, const std::string& folder)
        : box(n, scatters),
          level(compression),
          caseFile(folder + "/box.case.kel"),
          dataFile(folder + "/box.data.kel"),
          plainMesh(folder + "/mesh"),
          plainSolution(folder + "/solution"),
          hdf5Mesh(folder + "/mesh.h5"),
          hdf5Solution(folder + "/solution.h5")
    {
        mesh = {{box.coordinates.data(), 8 * box.coordinates.size()},
                {box.faceNodes.data(), 8 * box.faceNodes.size()},
                {box.owners.data(), 8 * box.owners.size()},
                {box.neighbours.data(), 8 * box.neighbours.size()}};
        for (std::vector<double>& variable : box.variables)
            solution.push_back({variable.data(), 8 * variable.size()});
    }
};

void require(bool condition, KelBase& base, const char* what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s failed\n", what);
    for (const std::string& error : base.getErrors(false, true))
        std::fprintf(stderr, "%s\n", error.c_str());
    std::exit(1);
}

void declareMesh(KelHdf5Consumer& writer, const BoxArrays& box)
{
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setMeshSize(KEL_MESH_SIZE_1, box.nodes);
    writer.setMeshSize(KEL_MESH_SIZE_3, box.faces);
    writer.setMeshSize(KEL_MESH_SIZE_4, box.cells);
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneIds(KEL_FACE_ZONE, {10, 11, 12, 13, 14, 15, 16});
    writer.setZoneIds(KEL_CELL_ZONE, {20});
    const auto zone = [&writer](int id, unsigned64 first, unsigned64 last, const char* name) {
        writer.setZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        writer.setZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
        writer.setZoneStringInfo(id, KEL_ZONE_STRING_0, name);
    };
    zone(1, 1, box.nodes, "nodes");
    zone(10, 1, box.interiorFaces, "interior");
    const unsigned64 side = (box.faces - box.interiorFaces) / 6;
    for (int i = 0; i < 6; ++i)
        zone(11 + i, box.interiorFaces + 1 + static_cast<unsigned64>(i) * side,
             box.interiorFaces + static_cast<unsigned64>(i + 1) * side, "wall");
    zone(20, 1, box.cells, "fluid");
}

void writeMesh(Job& job)
{
    const BoxArrays& box = job.box;
    KelHdf5Consumer writer;
    writer.setCompression(job.level);
    declareMesh(writer, box);
    require(writer.startWriting(job.caseFile, KEL_CASE), writer, "startWriting");
    writer.setCoordinatesForNodesInRange(1, box.nodes, box.coordinates.data(), box.coordinates.size());
    writer.setUniformNodeCountForFacesInRange(1, box.faces, 4);
    writer.setNodeIdsForFacesInRange(1, box.faces, box.faceNodes.data(), box.faceNodes.size());
    writer.setCell0sForFacesInRange(1, box.faces, box.owners.data(), box.faces);
    writer.setCell1sForFacesInRange(1, box.interiorFaces, box.neighbours.data(), box.interiorFaces);
    writer.startWritingTypesForCells({20}, {KEL_CELL_HEXAHEDRON});
    require(writer.endWriting(KEL_CASE), writer, "endWriting");
}

void writeSolution(Job& job)
{
    KelHdf5Consumer writer;
    writer.setCompression(job.level);
    declareMesh(writer, job.box);
    short phase = 0;
    writer.addPhaseName("fluid", phase);
    require(writer.startWriting(job.dataFile, KEL_DATA), writer, "startWriting");
    writer.startWritingTimeLevel(1);
    writer.startWritingPhase(phase);
    for (int v = 0; v < 5; ++v) {
        int id = 0;
        std::vector<int> zones{20};
        writer.addPhaseVariable(variableNames[v], id);
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
        writer.setValuesOfPhaseVariableForElementsInZone(20, job.box.variables[v].data(), job.box.cells);
        writer.endWritingPhaseVariableInZonesOfCategory();
    }
    require(writer.endWriting(KEL_DATA), writer, "endWriting");
}

void readMesh(Job& job)
{
    BoxArrays& box = job.box;
    KelHdf5Provider reader;
    require(reader.startReading(job.caseFile, KEL_CASE), reader, "startReading");
    const unsigned64 read =
        reader.getCoordinatesForNodesInRange(1, box.nodes, box.coordinates.data(), box.coordinates.size()) +
        reader.getNodeIdsForFacesInRange(1, box.faces, box.faceNodes.data(), box.faceNodes.size()) +
        reader.getCell0sForFacesInRange(1, box.faces, box.owners.data(), box.faces) +
        reader.getCell1sForFacesInRange(1, box.interiorFaces, box.neighbours.data(), box.interiorFaces);
    require(8 * read == box.meshBytes(), reader, "reading the mesh");
    reader.endReading(KEL_CASE);
}

void readSolution(Job& job)
{
    KelHdf5Provider reader;
    require(reader.startReading(job.dataFile, KEL_DATA), reader, "startReading");
    for (int v = 0; v < 5; ++v) {
        std::vector<int> zones;
        reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variableNames[v], zones);
        const unsigned64 read = reader.getValuesOfPhaseVariableForElementsInRange(
            1, job.box.cells, job.box.variables[v].data(), job.box.cells);
        require(read == job.box.cells, reader, "reading the solution");
    }
    reader.endReading(KEL_DATA);
}

double secondsOf(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// Ours, the limit and bare HDF5 in turn, after one round that warms all of them; medians.
void measure(const char* name, const std::function<void()>& ours, const std::function<void()>& limit,
             const std::function<void()>& bare)
{
    std::vector<double> times[3];
    for (int run = 0; run <= runs; ++run) {
        const double round[] = {secondsOf(ours), secondsOf(limit), secondsOf(bare)};
        for (int i = 0; run > 0 && i < 3; ++i)
            times[i].push_back(round[i]);
    }
    const double own = median(times[0]);
    std::printf("\"%s_s\": %.6f, \"%s_limit_s\": %.6f, \"%s_ratio\": %.3f, \"%s_to_bare_hdf5\": %.3f, ", name, own,
                name, median(times[1]), name, own / median(times[1]), name, own / median(times[2]));
}

unsigned long peakBytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<unsigned long>(usage.ru_maxrss) * 1024;
}

} // namespace

int main(int argc, char** argv)
{
    const unsigned64 n = argc > 1 ? std::strtoull(argv[1], nullptr, 10) : 64;
    const int level = argc > 2 ? std::atoi(argv[2]) : 0;
    const std::string folder = argc > 3 ? argv[3] : std::filesystem::temp_directory_path().string();
    const bool scatters = argc > 4 && std::strcmp(argv[4], "scattered") == 0;
    if (n < 1) {
        std::fprintf(stderr, "usage: bench_whole_file [n [level [folder [scattered]]]]\n");
        return 2;
    }
    std::string own = folder + "/whole-file-XXXXXX";
    if (::mkdtemp(own.data()) == nullptr) {
        std::perror(own.c_str());
        return 1;
    }
    Job job(n, level, scatters, own);
    const unsigned long before = peakBytes();
    std::printf("{\"n\": %llu, \"level\": %d, \"scattered\": %s, \"runs\": %d, ", static_cast<unsigned long long>(n),
                level, scatters ? "true" : "false", runs);
    measure(
        "write_mesh", [&] { writeMesh(job); }, [&] { writePlain(job.plainMesh, job.mesh); },
        [&] { writeHdf5(job.hdf5Mesh, job.mesh); });
    measure(
        "write_solution", [&] { writeSolution(job); }, [&] { writePlain(job.plainSolution, job.solution); },
        [&] { writeHdf5(job.hdf5Solution, job.solution); });
    measure(
        "read_mesh", [&] { readMesh(job); }, [&] { readPlain(job.plainMesh, job.mesh); },
        [&] { readHdf5(job.hdf5Mesh, job.mesh); });
    measure(
        "read_solution", [&] { readSolution(job); }, [&] { readPlain(job.plainSolution, job.solution); },
        [&] { readHdf5(job.hdf5Solution, job.solution); });
    const auto bytes = std::filesystem::file_size(job.caseFile) + std::filesystem::file_size(job.dataFile);
    const auto arrays = job.box.meshBytes() + job.box.solutionBytes();
    std::printf("\"bytes\": %llu, \"array_bytes\": %llu, \"compression_ratio\": %.2f, \"peak_rss_bytes\": %lu, "
                "\"extra_rss_bytes\": %lu}\n",
                static_cast<unsigned long long>(bytes), static_cast<unsigned long long>(arrays),
                static_cast<double>(arrays) / static_cast<double>(bytes), peakBytes(), peakBytes() - before);
    std::filesystem::remove_all(own);
    return 0;
}
