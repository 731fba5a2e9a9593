// Whole files made to mislead a reader: out of the file, into a circle, or into more memory than the file is worth.
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "Hdf5TestSupport.h"
#include "ReadEverything.h"
#include "Sample.h"

#include <hdf5.h>
#include <sys/inotify.h>

using namespace hdf5test;

namespace {

/// Tells whether a file or folder was opened since the watch began.
class OpenWatch {
public:
    explicit OpenWatch(const std::string& path) { ::inotify_add_watch(_descriptor, path.c_str(), IN_OPEN); }
    ~OpenWatch() { ::close(_descriptor); }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;

    bool wasOpened() const
    {
        char events[1024];
        return ::read(_descriptor, events, sizeof events) > 0;
    }

private:
    int _descriptor = ::inotify_init1(IN_NONBLOCK);
};

/// A file opened with HDF5 alone, to be made worse.
class RawFile {
public:
    explicit RawFile(const std::string& path) : _id(H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT)) {}
    ~RawFile() { H5Fclose(_id); }
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    hid_t id() const { return _id; }

    /// Paths of all links, as "meshes/mesh_4_target_0_partition_-1/zones".
    std::vector<std::string> links() const
    {
        std::vector<std::string> paths;
        H5Lvisit(_id, H5_INDEX_NAME, H5_ITER_NATIVE, addPath, &paths);
        return paths;
    }

    std::string linkEndingWith(const std::string& end) const
    {
        for (const std::string& path : links())
            if (path.size() >= end.size() && path.compare(path.size() - end.size(), end.size(), end) == 0)
                return path;
        ADD_FAILURE() << "no link ends with " << end;
        return {};
    }

    void remove(const std::string& path) const { EXPECT_GE(H5Ldelete(_id, path.c_str(), H5P_DEFAULT), 0) << path; }

    /// Puts a data set in place of another one, without values, with values to be packed, or with a first chunk as it
    /// is.
    /// @param space  taken over, as the properties are
    void replace(const std::string& path, hid_t type, hid_t space, hid_t properties, const double* values = nullptr,
                 const std::vector<unsigned char>& chunk = {}) const
    {
        remove(path);
        const hid_t made = H5Dcreate2(_id, path.c_str(), type, space, H5P_DEFAULT, properties, H5P_DEFAULT);
        EXPECT_GE(made, 0) << path;
        const hsize_t origin[] = {0, 0};
        if (values != nullptr) {
            EXPECT_GE(H5Dwrite(made, H5T_NATIVE_DOUBLE, H5S_ALL, H5S_ALL, H5P_DEFAULT, values), 0);
        }
        if (!chunk.empty()) {
            EXPECT_GE(H5Dwrite_chunk(made, H5P_DEFAULT, 0, origin, chunk.size(), chunk.data()), 0);
        }
        H5Dclose(made);
        H5Sclose(space);
        H5Pclose(properties);
    }

private:
    static herr_t addPath(hid_t, const char* name, const H5L_info_t*, void* paths)
    {
        static_cast<std::vector<std::string>*>(paths)->emplace_back(name);
        return 0;
    }

    hid_t _id;
};

const char coordinates[] = "nodes/coordinates";

hid_t spaceOf(hsize_t rows, hsize_t columns)
{
    const hsize_t extent[] = {rows, columns};
    return H5Screate_simple(2, extent, nullptr);
}

hid_t chunked(hsize_t rows, hsize_t columns)
{
    const hsize_t extent[] = {rows, columns};
    const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
    H5Pset_chunk(properties, 2, extent);
    return properties;
}

} // namespace

/// A sample to be made worse, and another file that it might lead to.
class HostileFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::string errors;
        ASSERT_TRUE(writeSample(caseFile, dataFile, errors)) << errors;
        ASSERT_TRUE(writeSample(otherCase, otherData, errors)) << errors;
    }

    /// What a reader of the case says when it is asked for coordinates.
    std::string coordinatesError() const
    {
        Reader reader;
        std::vector<double> values(64);
        EXPECT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
        EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, values.data(), values.size()), 0u);
        return reader.errors();
    }

    Folder folder;
    const std::string caseFile = folder / "h.case.kel";
    const std::string dataFile = folder / "h.data.kel";
    const std::string otherCase = folder / "other.case.kel";
    const std::string otherData = folder / "other.data.kel";
};

TEST_F(HostileFile, LinksToOtherFilesAreNotFollowed)
{
    for (const auto& [path, other] : {std::pair(caseFile, otherCase), std::pair(dataFile, otherData)}) {
        const Bytes good = bytesOf(path);
        const std::vector<std::string> links = RawFile(path).links();
        ASSERT_GT(links.size(), 10u);
        for (const std::string& link : links) {
            writeBytes(path, good);
            RawFile(path).remove(link);
            const ReadResult without = readEverything(path);
            {
                const RawFile file(path);
                ASSERT_GE(
                    H5Lcreate_external(other.c_str(), link.c_str(), file.id(), link.c_str(), H5P_DEFAULT, H5P_DEFAULT),
                    0);
            }
            const OpenWatch watch(other);
            const ReadResult with = readEverything(path);
            EXPECT_EQ(with.isOpen, without.isOpen) << link;
            EXPECT_EQ(with.errors, without.errors) << link;
            EXPECT_FALSE(watch.wasOpened()) << link;
        }
    }
}

TEST_F(HostileFile, PathsDoNotLeadThroughLinksToOtherFiles)
{
    {
        const RawFile file(caseFile);
        ASSERT_GE(H5Lcreate_external(otherCase.c_str(), "/", file.id(), "out", H5P_DEFAULT, H5P_DEFAULT), 0);
    }
    const auto file = hdf5::Hdf5File::openForReading(caseFile);
    const OpenWatch watch(otherCase);
    EXPECT_FALSE(hdf5::hasLink(file->id(), "out"));
    EXPECT_FALSE(hdf5::hasLink(file->id(), "out/meshes"));
    EXPECT_THROW(hdf5::openGroup(file->id(), "out/meshes"), hdf5::FormatError);
    EXPECT_FALSE(watch.wasOpened());
    EXPECT_TRUE(hdf5::hasLink(file->id(), "meshes"));
}

TEST_F(HostileFile, SoftLinksAreNotFollowed)
{
    {
        const RawFile file(caseFile);
        const std::string path = file.linkEndingWith(coordinates);
        const std::string moved = path + "_moved";
        H5Lmove(file.id(), path.c_str(), file.id(), moved.c_str(), H5P_DEFAULT, H5P_DEFAULT);
        H5Lcreate_soft(("/" + moved).c_str(), file.id(), path.c_str(), H5P_DEFAULT, H5P_DEFAULT);
    }
    EXPECT_EQ(coordinatesError(), ""); // as if it were not there
}

TEST_F(HostileFile, ValuesInOtherFilesAreNotRead)
{
    {
        const RawFile file(caseFile);
        const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_external(properties, otherCase.c_str(), 0, 12 * 3 * sizeof(double));
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties);
    }
    const OpenWatch watch(otherCase);
    EXPECT_NE(coordinatesError().find("nodes/coordinates has a layout that these files do not have"),
              std::string::npos);
    readEverything(caseFile);
    EXPECT_FALSE(watch.wasOpened());
}

TEST_F(HostileFile, ValuesPutTogetherOfOtherFilesAreNotRead)
{
    {
        const RawFile file(caseFile);
        const std::string path = file.linkEndingWith(coordinates);
        const hsize_t start[] = {0, 0};
        const hsize_t block[] = {1, 3};
        const hsize_t many[] = {H5S_UNLIMITED, 1};
        const hsize_t extent[] = {12, 3};
        const hsize_t most[] = {H5S_UNLIMITED, 3};
        const hid_t target = H5Screate_simple(2, extent, most);
        const hid_t source = H5Screate_simple(2, extent, most);
        const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
        H5Sselect_hyperslab(target, H5S_SELECT_SET, start, nullptr, many, block);
        H5Sselect_hyperslab(source, H5S_SELECT_SET, start, nullptr, many, block);
        ASSERT_GE(H5Pset_virtual(properties, target, otherCase.c_str(), path.c_str(), source), 0);
        H5Sclose(source);
        H5Sselect_all(target);
        file.replace(path, H5T_IEEE_F64LE, target, properties);
    }
    const OpenWatch watch(otherCase);
    EXPECT_NE(coordinatesError().find("nodes/coordinates has a layout that these files do not have"),
              std::string::npos);
    readEverything(caseFile);
    EXPECT_FALSE(watch.wasOpened());
}

TEST_F(HostileFile, NoPlugInIsLookedFor)
{
    const std::string plugIns = folder / "plug-ins";
    std::filesystem::create_directory(plugIns);
    ASSERT_GE(H5PLprepend(plugIns.c_str()), 0);
    {
        const RawFile file(caseFile);
        const hid_t properties = chunked(12, 3);
        const unsigned none = 0;
        H5Pset_filter(properties, 400, H5Z_FLAG_OPTIONAL, 0, &none);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties);
    }
    const OpenWatch watch(plugIns);
    EXPECT_NE(coordinatesError().find("nodes/coordinates has the filter 400"), std::string::npos);
    std::string errors;
    ASSERT_TRUE(writeSample(caseFile, dataFile, errors, 1)) << errors; // nor for our own filter
    Reader reader;
    std::vector<double> values(64);
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, values.data(), values.size()), 36u) << reader.errors();
    EXPECT_FALSE(watch.wasOpened());
    H5PLremove(0);
}

TEST_F(HostileFile, AFilterMayComeOnce)
{
    {
        const RawFile file(caseFile);
        const hid_t properties = chunked(12, 3);
        H5Pset_deflate(properties, 9);
        H5Pset_deflate(properties, 9);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties);
    }
    EXPECT_NE(coordinatesError().find("nodes/coordinates has the filter 1"), std::string::npos);
}

TEST_F(HostileFile, ChunksLargerThanTheFileIsWorthAreRefused)
{
    {
        const RawFile file(caseFile);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 1 << 28), chunked(1, 1 << 28));
    }
    EXPECT_NE(coordinatesError().find("nodes/coordinates has chunks of 1 times 268435456 values"), std::string::npos);
}

TEST_F(HostileFile, RowsWiderThanTheFileAreNotTakenIntoMemory)
{
    {
        const RawFile file(caseFile);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 1ULL << 40), chunked(1, 1 << 17));
    }
    Reader reader;
    std::vector<double> values(1 << 18, 1);
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
    // one row does not fit, so nothing is given
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, values.data(), values.size()), 0u);
    EXPECT_EQ(reader.errors(), "");
}

namespace {

/// Eight zero bytes as a zlib stream, stored.
const std::vector<unsigned char> eightBytes{0x78, 0x01, 0x01, 8, 0, 0xF7, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0, 8, 0, 1};

} // namespace

TEST_F(HostileFile, AChunkOfFewerBytesThanItShouldHaveIsRefused)
{
    {
        const RawFile file(caseFile);
        const hid_t properties = chunked(12, 3);
        H5Pset_deflate(properties, 9);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties, nullptr, eightBytes);
    }
    EXPECT_NE(coordinatesError().find("nodes/coordinates has a chunk of 8 bytes, 288 expected"), std::string::npos);
}

TEST_F(HostileFile, AChunkOfMoreBytesThanItShouldHaveIsRefused)
{
    {
        const RawFile file(caseFile);
        const hid_t properties = chunked(1, 1);
        H5Pset_deflate(properties, 9);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F32LE, spaceOf(12, 3), properties, nullptr, eightBytes);
    }
    EXPECT_NE(coordinatesError().find("nodes/coordinates has a chunk that is no zlib stream of 4 bytes"),
              std::string::npos);
}

// What h5repack may make of an array: not hostile, and read as it was.
TEST_F(HostileFile, ChunksOfOtherProgramsAreReadWhateverTheirExtent)
{
    const TwoCells mesh;
    for (const auto& [rows, columns] : {std::pair(5, 2), std::pair(12, 3), std::pair(1, 1), std::pair(7, 3)})
        for (const int filters : {0, 1, 2, 3}) {
            {
                const RawFile file(caseFile);
                const hid_t properties = chunked(static_cast<hsize_t>(rows), static_cast<hsize_t>(columns));
                if ((filters & 1) != 0)
                    H5Pset_shuffle(properties);
                if ((filters & 2) != 0)
                    H5Pset_deflate(properties, 6);
                file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties,
                             mesh.xyz.data());
            }
            Reader reader;
            std::vector<double> values(36);
            ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
            EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, values.data(), 36), 36u) << reader.errors();
            EXPECT_EQ(values, mesh.xyz) << rows << " " << columns << " " << filters;
            std::vector<double> part(6);
            EXPECT_EQ(reader.getCoordinatesForNodesInRange(5, 6, part.data(), 6), 6u) << reader.errors();
            EXPECT_EQ(part, std::vector<double>(mesh.xyz.begin() + 12, mesh.xyz.begin() + 18));
        }
}

TEST_F(HostileFile, ChunksThatWereNeverWrittenHaveTheFillValue)
{
    const double fill = 2.5;
    {
        const RawFile file(caseFile);
        const hid_t properties = chunked(5, 2);
        H5Pset_fill_value(properties, H5T_NATIVE_DOUBLE, &fill);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties);
    }
    Reader reader;
    std::vector<double> values(36);
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, values.data(), 36), 36u) << reader.errors();
    EXPECT_EQ(values, std::vector<double>(36, fill));
}

TEST_F(HostileFile, CompactArraysAreRead)
{
    const TwoCells mesh;
    {
        const RawFile file(caseFile);
        const hid_t properties = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_layout(properties, H5D_COMPACT);
        file.replace(file.linkEndingWith(coordinates), H5T_IEEE_F64LE, spaceOf(12, 3), properties, mesh.xyz.data());
    }
    Reader reader;
    std::vector<double> values(6);
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(5, 6, values.data(), 6), 6u) << reader.errors();
    EXPECT_EQ(values, std::vector<double>(mesh.xyz.begin() + 12, mesh.xyz.begin() + 18));
}

TEST_F(HostileFile, AGroupOfManyNamesMakesNoLargeCatalogue)
{
    {
        const RawFile file(dataFile);
        const std::string phases = file.linkEndingWith("partition_-1/phases");
        for (int i = 0; i < 3; ++i)
            ASSERT_GE(H5Lcreate_hard(file.id(), phases.c_str(), file.id(),
                                     (phases + "/again" + std::to_string(i)).c_str(), H5P_DEFAULT, H5P_DEFAULT),
                      0);
    }
    Reader reader;
    EXPECT_FALSE(reader.startReading(dataFile, KEL_DATA));
    EXPECT_NE(reader.errors().find("has several names"), std::string::npos) << reader.errors();
}
