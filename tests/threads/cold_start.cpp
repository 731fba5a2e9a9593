// What the library does once in a process, asked for by two threads at the same moment, before anything else has run.
//
//   cold_start FOLDER FIRST
//
// FOLDER   a folder for the files of this process
// FIRST    number of the step with which both threads begin; the others follow in turn
//
// Prints what the library prints; a wrong answer ends the process with exit code 1.
#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatRegistry.h"
#include "KelGeneratedProvider.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "KelMappingFiles.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"
#include "KelPolyMeshProvider.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"
#include "KelVariableAttributeFile.h"
#include "KelVariableAttributeProvider.h"
#include "KelVersion.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace meridyn;

std::atomic<bool> failed{false};

void expect(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "cold_start: %s\n", what);
        failed = true;
    }
}

/// One thread's view of the process.
struct Thread {
    int number;
    std::string folder;
};

/// A reader whose translation of names can be looked at.
template <typename Frame>
class Open : public Frame {
public:
    std::string mappedKey(const std::string& key)
    {
        Frame::initializeVariableAttributeProvider("COLD", "WARM");
        return this->attributeProvider() != nullptr ? this->attributeProvider()->getMappedKey(key) : "none";
    }
};

void makeReader(const Thread&)
{
    Open<KelGeneratedProvider> reader;
    expect(reader.mappedKey("key 7") == "key 7 mapped", "a reader finds the mapping file");
}

void makeWriter(const Thread&)
{
    Open<KelMemoryConsumer> writer;
    expect(writer.mappedKey("key 3") == "key 3 mapped", "a writer finds the mapping file");
}

void makePolyMeshReader(const Thread&)
{
    const KelPolyMeshProvider reader;
    expect(reader.getSolverType() != "", "a reader of cases has a solver type");
}

void readMappingFile(const Thread&)
{
    KelVariableAttributeFile file(std::string(std::getenv("KEL_VARIABLE_CONFIG_DIR")) + "/map0.xml");
    expect(file.getMappedKey("key 1") == "key 1 mapped", "a mapping file is read");
}

void listMappingFiles(const Thread&)
{
    expect(KelMappingFiles::discovered().size() == 3, "three mapping files are listed");
}

void useRegistry(const Thread& thread)
{
    KelFormatRegistry& registry = KelFormatRegistry::instance();
    const KelFormat* memory = registry.find("memory");
    expect(memory != nullptr && memory->makeReader() != nullptr, "the registry makes a reader");
    KelFormat copy = *memory;
    copy.name = "copy-" + std::to_string(thread.number);
    expect(registry.add(copy), "a format is added");
    expect(registry.find(copy.name) != nullptr, "the added format is found");
    for (const KelFormat& format : registry.formats())
        expect(!format.name.empty(), "each format has a name");
    expect(memory->name == "memory", "a format stays where it is");
}

void useSettings(const Thread& thread)
{
    KelSetting root = KelSetting::get("root");
    root.getAttributeInt("a/b", true) = thread.number;
    KelSettingAttribute wrong = root.getAttributeInt("count", true);
    wrong.asString() = "thread " + std::to_string(thread.number);
    std::string& text = wrong.asString();
    text = std::to_string(thread.number);
    expect(text == std::to_string(thread.number), "the fallback object is the thread's own");
    const KelSetting copy = KelSetting::fromSettingString(root.toSettingString());
    expect(copy.group("a").attribute("b").toInt() == thread.number, "a tree comes back");
}

void printBanner(const Thread&)
{
    printSDKVersion();
}

void writeAndReadFile(const Thread& thread)
{
    const std::string file = thread.folder + "/thread" + std::to_string(thread.number) + ".case.kel";
    KelHdf5Consumer writer;
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneSizeInfo(1, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 2);
    writer.startWriting(file, KEL_CASE);
    const double xyz[] = {0, 0, 0, 1.0 * thread.number, 0, 0};
    writer.setCoordinatesForNodesInZone(1, xyz, 6);
    expect(writer.endWriting(KEL_CASE), "a file is written");
    KelHdf5Provider reader;
    reader.startReading(file, KEL_CASE);
    double back[6] = {};
    reader.getCoordinatesForNodesInZone(1, back, 6);
    expect(back[3] == thread.number, "a file is read");
}

using Step = void (*)(const Thread&);
const std::vector<Step> steps = {makeReader,       makeWriter,  readMappingFile,    useRegistry,     useSettings,
                                 writeAndReadFile, printBanner, makePolyMeshReader, listMappingFiles};

void run(const Thread& thread, std::size_t first, std::atomic<int>& arrived)
{
    ++arrived;
    while (arrived < 2) { // spinning: both threads leave within nanoseconds
    }
    for (std::size_t i = 0; i < steps.size(); ++i)
        steps[(first + i) % steps.size()](thread);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3)
        return 2;
    const auto first = static_cast<std::size_t>(std::atoi(argv[2]));
    std::atomic<int> arrived{0};
    const Thread two{2, argv[1]};
    std::thread other(run, two, first, std::ref(arrived));
    run({1, argv[1]}, first, arrived);
    other.join();
    return failed ? 1 : 0;
}
