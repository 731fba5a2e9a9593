// Chunks of compressed arrays that are not what our writer leaves.
#include "FileEdit.h"
#include "formats/hdf5/arrays/ChunkCodec.h"
#include "Hdf5TestSupport.h"

#include <gmock/gmock.h>

using namespace hdf5test;
using ::testing::StartsWith;

namespace {

const std::string coordinates = "/meshes/mesh_1_target_0_partition_-1/nodes/coordinates";

/// The coordinates of two cells, compressed: 12 rows of 3 doubles in one chunk of 288 bytes.
class Chunks : public ::testing::Test {
protected:
    void SetUp() override
    {
        Writer writer;
        writer.setCompression(1);
        ASSERT_TRUE(_mesh.write(writer, _path)) << writer.errors();
    }

    void replaceChunk(const std::vector<unsigned char>& bytes, unsigned skippedFilters = 0) const
    {
        const hid_t file = H5Fopen(_path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
        const hid_t set = H5Dopen2(file, coordinates.c_str(), H5P_DEFAULT);
        const hsize_t offset[] = {0, 0};
        EXPECT_GE(H5Dwrite_chunk(set, H5P_DEFAULT, skippedFilters, offset, bytes.size(), bytes.data()), 0);
        H5Dclose(set);
        H5Fclose(file);
    }

    /// What the reader says when it is asked for all coordinates and gives none.
    std::string refusal() const
    {
        Reader reader;
        EXPECT_TRUE(reader.startReading(_path, KEL_CASE)) << reader.errors();
        std::vector<double> xyz(36);
        EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, xyz.data(), 36), 0u);
        return reader.errors();
    }

    Folder _folder;
    std::string _path = _folder / "c.case.kel";
    TwoCells _mesh;
};

} // namespace

TEST_F(Chunks, ThatAreNoFrameAreRefused)
{
    replaceChunk({'a', 'b', 'c'});
    EXPECT_THAT(refusal(), StartsWith(_path + ": a chunk is damaged: "));
}

TEST_F(Chunks, OfAnotherSizeAreRefused)
{
    meridyn::hdf5::ChunkCodec codec;
    std::vector<unsigned char> frame;
    codec.prepare(8, 8);
    codec.encode(1, frame);
    replaceChunk(frame);
    EXPECT_EQ(refusal(), _path + ": a chunk has 8 bytes, 288 expected\n");
}

TEST_F(Chunks, ThatSkipAFilterAreRefused)
{
    replaceChunk(std::vector<unsigned char>(288), 3);
    EXPECT_EQ(refusal(), _path + ": " + coordinates + " has a chunk without its filters\n");
}

TEST_F(Chunks, OfImplausibleSizeAreNotTakenIntoMemory)
{
    replaceChunk(std::vector<unsigned char>(5000));
    EXPECT_EQ(refusal(), _path + ": " + coordinates + " has a chunk of 5000 bytes\n");
}

TEST_F(Chunks, ThatWereNeverWrittenAreZero)
{
    {
        const hid_t file = H5Fopen(_path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
        const hid_t set = H5Dopen2(file, coordinates.c_str(), H5P_DEFAULT), space = H5Dget_space(set);
        const hid_t creation = H5Dget_create_plist(set);
        H5Dclose(set);
        H5Ldelete(file, coordinates.c_str(), H5P_DEFAULT);
        H5Dclose(H5Dcreate2(file, coordinates.c_str(), H5T_IEEE_F64LE, space, H5P_DEFAULT, creation, H5P_DEFAULT));
        H5Pclose(creation);
        H5Sclose(space);
        H5Fclose(file);
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(_path, KEL_CASE)) << reader.errors();
    std::vector<double> xyz(36, 1);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, xyz.data(), 36), 36u);
    EXPECT_EQ(xyz, std::vector<double>(36, 0.0));
    EXPECT_EQ(reader.errors(), "");
}
