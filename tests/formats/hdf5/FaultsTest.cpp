// What a disk, a user and other processes can do to the files.
#include "LevelFile.h"

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>

/// HDF5 1.10 keeps memory of its own when it gives a damaged file up; what we would leak has no frame of it.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:libhdf5";
}

using namespace hdf5test;

namespace {

/// Asks a reader of a file of unknown quality for everything, in the ranges that it claims to have.
void readEverything(const std::string& path)
{
    Reader reader;
    const bool isCase = reader.startReading(path, KEL_CASE);
    const bool isData = reader.startReading(path, KEL_DATA);
    if (!isCase && !isData) {
        EXPECT_TRUE(reader.hasError());
        return;
    }
    std::vector<double> reals(64);
    std::vector<unsigned64> ids(64);
    std::vector<short> counts(64);
    std::vector<int> ints(64);
    std::vector<KelCellType> types(64);
    const unsigned64 room = 64;
    reader.getCoordinatesForNodesInRange(1, 12, reals.data(), room);
    reader.getNodeCountsForFacesInRange(1, 11, counts.data(), room);
    reader.getNodeIdsForFacesInRange(1, 11, ids.data(), room);
    reader.getCell0sForFacesInRange(1, 11, ids.data(), room);
    reader.getCell1sForFacesInRange(1, 11, ids.data(), room);
    reader.getTypesForCellsInRange(1, 2, types.data(), room);
    reader.getChildFaceIdsForFacesInRange(1, 11, ids.data(), room);
    reader.getPartitionIdsForCellsInRange(1, 2, ints.data(), room);
    reader.getLocationModel();
    std::vector<std::string> names;
    std::vector<std::pair<std::string, std::string>> log;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        reader.getLog(dataClass, log);
        reader.getSettingsGroups(dataClass, names);
        reader.getSettingsKeys(dataClass, names);
        reader.availableMeshIds(dataClass);
        if (reader.getSetNames(dataClass, names))
            for (const std::string& name : names)
                if (reader.startReadingSet(name)) {
                    reader.getIdsForSetInRange(1, 1, ids.data(), room);
                    reader.endReadingSet();
                }
    }
    const std::vector<int> levels = reader.getTimeLevels();
    for (std::size_t i = 0; i < std::min<std::size_t>(levels.size(), 4); ++i) {
        reader.startReadingTimeLevel(levels[i]);
        std::vector<short> phases;
        reader.getPhaseIds(phases);
        for (const short phase : phases) {
            reader.startReadingPhase(phase);
            std::vector<int> variables;
            reader.solutionModel()->getVariables(phase, variables);
            for (const int variable : variables) {
                std::vector<int> zones;
                reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variable, zones);
                reader.getValuesOfPhaseVariableForElementsInRange(1, 2, reals.data(), room);
            }
            unsigned64 members = 0;
            reader.getSetDataNames(names);
            for (const std::string& name : names)
                if (reader.startReadingSetData(name, members))
                    reader.getIdsForSetData(ids);
        }
    }
}

} // namespace

TEST(Faults, MissingThingsAreNamedAndLeaveNoFile)
{
    const struct {
        const char* name;
        void (*write)(Writer&, const TwoCells&);
        const char* words;
    } cases[] = {
        {"half of the coordinates",
         [](Writer& w, const TwoCells& m) { w.setCoordinatesForNodesInRange(1, 6, m.xyz.data(), 18); },
         "/nodes/coordinates lacks the values of the elements 7 to 12"},
        {"too few coordinates",
         [](Writer& w, const TwoCells& m) { w.setCoordinatesForNodesInRange(1, 12, m.xyz.data(), 35); },
         "has 35 values for the elements 1 to 12, 36 expected"},
        {"node outside the mesh",
         [](Writer& w, const TwoCells& m) { w.setCoordinatesForNodesInRange(12, 13, m.xyz.data(), 6); },
         "elements 12 to 13 are not in the mesh"},
        {"announced zone",
         [](Writer& w, const TwoCells& m) {
             w.startWritingNodesForFaces({11, 12});
             w.setUniformNodeCountForFacesInZone(11, 4);
             w.setNodeIdsForFacesInZone(11, m.faceNodes.data(), 4);
         },
         "lacks values of zone 12, which was announced"},
        {"ids without counts",
         [](Writer& w, const TwoCells& m) { w.setNodeIdsForFacesInZone(11, m.faceNodes.data(), 4); },
         "/faces/node_ids were handed over without counts"},
        {"counts without ids", [](Writer& w, const TwoCells&) { w.setUniformNodeCountForFacesInRange(1, 11, 4); },
         "/faces/node_ids lacks 44 ids"},
        {"counts that do not add up",
         [](Writer& w, const TwoCells& m) {
             w.setUniformNodeCountForFacesInRange(1, 11, 4);
             w.setNodeIdsForFacesInRange(1, 11, m.faceNodes.data(), 43);
         },
         "has 43 ids for the rows 0 to 10, 44 expected"},
        {"a node id too large",
         [](Writer& w, const TwoCells&) {
             const unsigned64 nodes[] = {1, 2, 3, 13};
             w.setUniformNodeCountForFacesInRange(1, 11, 4);
             w.setNodeIdsForFacesInRange(1, 1, nodes, 4);
         },
         "/faces/node_ids holds the id 13, but the nodes of the mesh end with 12"},
        {"node 0",
         [](Writer& w, const TwoCells&) {
             const unsigned64 nodes[] = {1, 2, 3, 0};
             w.setUniformNodeCountForFacesInRange(1, 11, 4);
             w.setNodeIdsForFacesInRange(1, 1, nodes, 4);
         },
         "/faces/node_ids holds the id 0"},
        {"a negative count", [](Writer& w, const TwoCells&) { w.setUniformNodeCountForFacesInRange(1, 11, -1); },
         "/faces/node_counts holds -1"},
        {"cell 0 of some faces",
         [](Writer& w, const TwoCells& m) { w.setCell0sForFacesInRange(2, 11, m.cell0.data() + 1, 10); },
         "/faces/cell0 lacks the values of the elements 1 to 1"},
        {"a cell too many", [](Writer& w, const TwoCells&) { w.setCell1ForFace(1, 3); },
         "/faces/cell1 holds the id 3, but the cells of the mesh end with 2"},
        {"zones that change",
         [](Writer& w, const TwoCells& m) {
             w.setCoordinatesForNodesInRange(1, 12, m.xyz.data(), 36);
             w.setMeshSize(KEL_MESH_SIZE_1, 13);
         },
         "the zones of the nodes changed after their first values were written"},
    };
    for (const auto& row : cases) {
        const Folder folder;
        const TwoCells mesh;
        Writer writer;
        TwoCells::declare(writer);
        ASSERT_TRUE(writer.startWriting(folder / "m.case.kel", KEL_CASE));
        row.write(writer, mesh);
        EXPECT_FALSE(writer.endWriting(KEL_CASE)) << row.name;
        const std::string errors = writer.errors();
        EXPECT_NE(errors.find(row.words), std::string::npos) << row.name << ": " << errors;
        EXPECT_NE(errors.find((folder / "m.case.kel") + ": "), std::string::npos) << row.name << ": " << errors;
        EXPECT_TRUE(folder.names().empty()) << row.name;
        EXPECT_FALSE(writer.isWritingData());
    }
}

TEST(Faults, AFailedWriteKeepsTheFileThatWasThere)
{
    const Folder folder;
    const TwoCells mesh;
    Writer good;
    ASSERT_TRUE(mesh.write(good, folder / "k.case.kel"));
    const Bytes before = bytesOf(folder / "k.case.kel");
    Writer bad;
    TwoCells::declare(bad);
    ASSERT_TRUE(bad.startWriting(folder / "k.case.kel", KEL_CASE));
    EXPECT_EQ(bytesOf(folder / "k.case.kel"), before); // also while it is being written
    bad.setCell1ForFace(1, 3);
    EXPECT_FALSE(bad.endWriting(KEL_CASE));
    EXPECT_EQ(bytesOf(folder / "k.case.kel"), before);
    {
        Writer unfinished;
        TwoCells::declare(unfinished);
        ASSERT_TRUE(unfinished.startWriting(folder / "k.case.kel", KEL_CASE));
    }
    EXPECT_EQ(folder.names(), std::vector<std::string>{"k.case.kel"});
    EXPECT_EQ(bytesOf(folder / "k.case.kel"), before);
}

TEST(Faults, NamesThatCannotBeWrittenOrReadAreReported)
{
    const Folder folder;
    Writer writer;
    EXPECT_FALSE(writer.startWriting(folder / "none/x.case.kel", KEL_CASE));
    EXPECT_NE(writer.errors().find("No such file or directory"), std::string::npos);
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_NE(writer.errors().find("is not being written"), std::string::npos);
    writer.setCell1ForFace(1, 1);
    EXPECT_NE(writer.errors().find("no case file is being written"), std::string::npos);
    Reader reader;
    EXPECT_FALSE(reader.startReading(folder / "missing.case.kel", KEL_CASE));
    EXPECT_NE(reader.errors().find("missing.case.kel: open: No such file or directory"), std::string::npos);
    std::filesystem::create_directory(folder / "dir.case.kel");
    EXPECT_FALSE(reader.startReading(folder / "dir.case.kel", KEL_CASE));
    EXPECT_NE(reader.errors(), "");
    writeBytes(folder / "text.case.kel", {'h', 'e', 'l', 'l', 'o'});
    EXPECT_FALSE(reader.startReading(folder / "text.case.kel", KEL_CASE));
    EXPECT_NE(reader.errors().find("text.case.kel"), std::string::npos);
    EXPECT_FALSE(reader.endReading(KEL_CASE));
}

TEST(Faults, CaseAndDataAreToldApart)
{
    const Folder folder;
    const TwoCells mesh;
    Writer writer;
    ASSERT_TRUE(mesh.write(writer, folder / "a.case.kel"));
    Reader reader;
    EXPECT_FALSE(reader.startReading(folder / "a.case.kel", KEL_DATA));
    EXPECT_NE(reader.errors().find("'Kel case', 'Kel data' expected"), std::string::npos);
    Writer appender;
    appender.setAppendOn(true);
    EXPECT_FALSE(appender.startWriting(folder / "a.case.kel", KEL_DATA));
    EXPECT_FALSE(appender.startWriting(folder / "a.case.kel", static_cast<KelDataClass>(2)));
}

TEST(Faults, AReadOnlyFileIsNeitherReplacedNorAddedTo)
{
    if (::geteuid() == 0) {
        // root may write anything; a child without the right does the test
        const Folder folder;
        const std::string path = folder / "r.data.kel";
        Writer writer;
        ASSERT_TRUE(addLevel(writer, path, 1, false)) << writer.errors();
        ::chmod(path.c_str(), 0444);
        ::chmod((folder / "").c_str(), 0777);
        EXPECT_TRUE(inChild([&path] {
            if (::setgid(65534) != 0 || ::setuid(65534) != 0)
                return 0;
            for (const bool appends : {false, true}) {
                Writer other;
                if (addLevel(other, path, 2, appends) || other.errors().find("Permission denied") == std::string::npos)
                    return 1;
            }
            return readableLevels(path) == std::vector<int>{1} ? 0 : 2;
        }));
        return;
    }
    const Folder folder;
    const std::string path = folder / "r.data.kel";
    Writer writer;
    ASSERT_TRUE(addLevel(writer, path, 1, false)) << writer.errors();
    ::chmod(path.c_str(), 0444);
    for (const bool appends : {false, true}) {
        Writer other;
        EXPECT_FALSE(addLevel(other, path, 2, appends));
        EXPECT_NE(other.errors().find("Permission denied"), std::string::npos);
    }
    EXPECT_EQ(readableLevels(path), std::vector<int>{1});
}

TEST(Faults, WritersOfOneFileExcludeEachOther)
{
    const Folder folder;
    const std::string path = folder / "w.case.kel";
    Writer first;
    TwoCells::declare(first);
    ASSERT_TRUE(first.startWriting(path, KEL_CASE));
    EXPECT_FALSE(first.startWriting(path, KEL_CASE));
    EXPECT_NE(first.errors().find("is being written already"), std::string::npos);
    Writer second;
    EXPECT_FALSE(second.startWriting(path, KEL_CASE));
    EXPECT_NE(second.errors().find("in use by another reader or writer"), std::string::npos);
    EXPECT_TRUE(first.endWriting(KEL_CASE)) << first.errors();

    Writer appender;
    TwoCells::declare(appender);
    appender.setAppendOn(true);
    ASSERT_TRUE(appender.startWriting(path, KEL_CASE)) << appender.errors();
    Reader reader;
    EXPECT_FALSE(reader.startReading(path, KEL_CASE));
    EXPECT_NE(reader.errors().find("is locked by a writer"), std::string::npos);
    EXPECT_TRUE(appender.endWriting(KEL_CASE)) << appender.errors();
    EXPECT_TRUE(reader.startReading(path, KEL_CASE)) << reader.errors();
    EXPECT_FALSE(appender.startWriting(path, KEL_CASE)); // being read
    EXPECT_TRUE(reader.endReading(KEL_CASE));
    EXPECT_TRUE(appender.startWriting(path, KEL_CASE)) << appender.errors();
    EXPECT_TRUE(appender.endWriting(KEL_CASE)) << appender.errors();
}

// The file may grow to n bytes and no further, for many n: what cannot be finished leaves nothing behind.
TEST(Faults, AFullDiskLeavesNoFileAndNoLostLevel)
{
    const Folder folder;
    const std::string path = folder / "f.data.kel";
    Writer first;
    ASSERT_TRUE(addLevel(first, path, 1, false)) << first.errors();
    const Bytes before = bytesOf(path);
    int failed = 0;
    for (rlim_t limit = 0; limit < 3 * before.size(); limit += 700) {
        for (const bool appends : {true, false}) {
            const bool done = inChild([&] {
                ::signal(SIGXFSZ, SIG_IGN);
                const rlimit size{limit, limit};
                ::setrlimit(RLIMIT_FSIZE, &size);
                Writer writer;
                if (addLevel(writer, appends ? path : folder / "new.data.kel", 2, appends))
                    return 0;
                return writer.errors().find("File too large") == std::string::npos ? 2 : 1;
            });
            if (done) {
                const std::vector<int> expected = appends ? std::vector<int>{1, 2} : std::vector<int>{2};
                EXPECT_EQ(readableLevels(appends ? path : folder / "new.data.kel"), expected) << limit;
                std::filesystem::remove(folder / "new.data.kel");
                writeBytes(path, before);
                continue;
            }
            ++failed;
            EXPECT_EQ(folder.names(), std::vector<std::string>{"f.data.kel"}) << limit;
            EXPECT_EQ(bytesOf(path), before) << limit;
        }
    }
    EXPECT_GT(failed, 5);
}

class Damage : public ::testing::TestWithParam<int> {};

TEST_P(Damage, NeverCrashesAReader)
{
    const Folder folder;
    const TwoCells mesh;
    Writer writer;
    writer.setCompression(GetParam());
    ASSERT_TRUE(mesh.write(writer, folder / "d.case.kel")) << writer.errors();
    ASSERT_TRUE(addLevel(writer, folder / "d.data.kel", 1, false)) << writer.errors();
    std::mt19937 random(5);
    for (const char* const name : {"d.case.kel", "d.data.kel"}) {
        const Bytes good = bytesOf(folder / name);
        for (std::size_t length = 0; length < good.size(); length += 1 + good.size() / 200) {
            writeBytes(folder / "bad", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)));
            readEverything(folder / "bad");
        }
        for (int round = 0; round < 1500; ++round) {
            Bytes bad = good;
            for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
                bad[random() % bad.size()] = static_cast<char>(random());
            writeBytes(folder / "bad", bad);
            readEverything(folder / "bad");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Plain, Damage, ::testing::Values(0));
INSTANTIATE_TEST_SUITE_P(Compressed, Damage, ::testing::Values(1));
