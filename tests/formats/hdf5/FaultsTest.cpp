// What a disk, a user and other processes can do to the files.
#include "formats/hdf5/file/FileChannel.h"
#include "LevelFile.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace hdf5test;

namespace {

/// The largest amount of memory that this process has had, in KiB.
long residentPeak()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
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

TEST(Faults, AFileIsWrittenOnceAtATime)
{
    const Folder folder;
    const std::string path = folder / "w.case.kel";
    Writer first;
    TwoCells::declare(first);
    ASSERT_TRUE(first.startWriting(path, KEL_CASE));
    EXPECT_FALSE(first.startWriting(path, KEL_CASE));
    EXPECT_NE(first.errors().find("is being written already"), std::string::npos);
    EXPECT_TRUE(first.endWriting(KEL_CASE)) << first.errors();
}

// A journal is never larger than one of its file can be: what lies there is not taken into memory before.
TEST(Faults, AJournalThatIsTooLargeForItsFileIsNotRead)
{
    const Folder folder;
    const std::string path = folder / "j.data.kel";
    Writer writer;
    ASSERT_TRUE(addLevel(writer, path, 1, false)) << writer.errors();
    writeBytes(path + ".journal", {'K', 'E', 'L', 'J', 'R', 'N', 'L', '1'});
    std::filesystem::resize_file(path + ".journal", std::uintmax_t{3} << 30);
    const long before = residentPeak();
    EXPECT_EQ(readableLevels(path), std::vector<int>{1});
    EXPECT_LT(residentPeak() - before, 64 * 1024);
    std::filesystem::remove(path + ".journal");
    ASSERT_EQ(::mkfifo((path + ".journal").c_str(), 0666), 0);
    EXPECT_EQ(readableLevels(path), std::vector<int>{1}); // and nobody waits at a pipe
}

// The journal of a large file, and no memory for it.
TEST(Faults, NothingStaysOpenWhereMemoryRunsOut)
{
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs the address space";
#endif
    const Folder folder;
    const std::string path = folder / "m.data.kel";
    writeBytes(path, {});
    writeBytes(path + ".journal", {});
    std::filesystem::resize_file(path, std::uintmax_t{8} << 30);
    std::filesystem::resize_file(path + ".journal", std::uintmax_t{4} << 30);
    EXPECT_TRUE(inChild([&] {
        const auto descriptors = [] {
            return std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                 std::filesystem::directory_iterator());
        };
        const rlimit size{rlim_t{2} << 30, rlim_t{2} << 30};
        ::setrlimit(RLIMIT_AS, &size);
        const auto before = descriptors();
        for (const auto mode : {meridyn::hdf5::FileChannel::Mode::Read, meridyn::hdf5::FileChannel::Mode::Append}) {
            try {
                const meridyn::hdf5::FileChannel channel(path, mode, {});
                return 1;
            } catch (const std::bad_alloc&) {
                if (descriptors() != before)
                    return 2;
            }
        }
        return 0;
    }));
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
