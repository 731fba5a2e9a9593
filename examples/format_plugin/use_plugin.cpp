// Writes and reads a model in a format that comes as a plug-in; the program knows no more of it than its name.
#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatConformance.h"
#include "KelFormatRegistry.h"

#include <filesystem>
#include <iostream>

using namespace meridyn;

int main(int argc, char* argv[])
{
    KelFormatRegistry& registry = KelFormatRegistry::instance();
    std::string problem = "usage: use_plugin <shared object>";
    if (argc != 2 || !registry.loadPlugin(argv[1], problem)) {
        std::cerr << problem << '\n';
        return 1;
    }

    // By the suffix of its name: which format writes it?
    const KelFormat& format = *registry.forWriting("corners.points");
    std::cout << format.name << ": " << format.description << '\n';
    const auto writer = format.makeWriter();
    const double xyz[] = {0, 0, 0, 1, 0, 0, 0.1, 1, 0};
    writer->setMeshSize(KEL_MESH_DIMENSION, 3);
    writer->setMeshSize(KEL_MESH_SIZE_1, 3);
    writer->setZoneIds(KEL_NODE_ZONE, {7});
    writer->setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 1);
    writer->setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 3);
    writer->startWriting("corners.points", KEL_CASE);
    writer->setCoordinatesForNodesInZone(7, xyz, 9);
    std::cout << "written: " << writer->endWriting(KEL_CASE) << '\n';

    // By its content: which format is this file of?
    const KelFormat* found = registry.probe("corners.points");
    const auto reader = found->makeReader();
    double back[3] = {};
    reader->startReading("corners.points", KEL_CASE);
    reader->getCoordinatesForNode(3, back, 3);
    std::cout << "node 3 is at " << back[0] << ' ' << back[1] << ' ' << back[2] << '\n';
    reader->endReading(KEL_CASE);

    // And is the format a good one?
    std::filesystem::create_directory("scratch");
    KelFormatConformance suite(format, "scratch");
    std::cout << (suite.run() ? "all checks passed" : suite.text()) << '\n';
    return 0;
}
