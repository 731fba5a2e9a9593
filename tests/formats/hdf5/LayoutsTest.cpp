// Arrays as other programs lay them out when they copy a file: they read as before.
#include "FileEdit.h"
#include "formats/hdf5/arrays/ChunkCodec.h"
#include "Sample.h"

using namespace hdf5test;

namespace {

struct Layout {
    const char* name;
    void (*describe)(hid_t creation);
};

void PrintTo(const Layout& row, std::ostream* out)
{
    *out << row.name;
}

const hsize_t chunk[] = {5, 2};

const Layout layouts[] = {
    {"Compact", [](hid_t creation) { H5Pset_layout(creation, H5D_COMPACT); }},
    {"Chunked", [](hid_t creation) { H5Pset_chunk(creation, 2, chunk); }},
    {"Deflated",
     [](hid_t creation) {
         H5Pset_chunk(creation, 2, chunk);
         H5Pset_shuffle(creation);
         H5Pset_deflate(creation, 6);
     }},
    {"Zstandard", // in chunks of another size than ours
     [](hid_t creation) {
         meridyn::hdf5::registerZstandard();
         const unsigned level = 5;
         H5Pset_chunk(creation, 2, chunk);
         H5Pset_filter(creation, meridyn::hdf5::zstandardFilter, H5Z_FLAG_MANDATORY, 1, &level);
     }},
};

} // namespace

class Layouts : public ::testing::TestWithParam<Layout> {
protected:
    void SetUp() override
    {
        std::string errors;
        ASSERT_TRUE(writeSample(_folder / "l.case.kel", _folder / "l.data.kel", errors)) << errors;
        const hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
        GetParam().describe(creation);
        FileEdit edit(_folder / "l.case.kel");
        edit.array(sampleMesh + "/nodes/coordinates", H5T_NATIVE_DOUBLE, {12, 3}, _mesh.xyz.data(), creation);
        H5Pclose(creation);
    }

    Folder _folder;
    TwoCells _mesh;
};

TEST_P(Layouts, ReadWholeAndInPieces)
{
    Reader reader;
    ASSERT_TRUE(reader.startReading(_folder / "l.case.kel", KEL_CASE)) << reader.errors();
    for (unsigned64 first = 1; first <= 12; ++first)
        for (unsigned64 last = first; last <= 12; ++last) {
            std::vector<double> xyz(3 * (last - first + 1));
            ASSERT_EQ(reader.getCoordinatesForNodesInRange(first, last, xyz.data(), xyz.size()), xyz.size());
            ASSERT_TRUE(std::equal(xyz.begin(), xyz.end(), _mesh.xyz.data() + 3 * (first - 1))) << first << " " << last;
        }
    std::vector<float> single(3);
    EXPECT_EQ(reader.getCoordinatesForNode(12, single.data(), 3), 3u);
    EXPECT_EQ(single, (std::vector<float>{2.0f, 1.0f, 0.1f}));
    EXPECT_EQ(reader.errors(), "");
}

INSTANTIATE_TEST_SUITE_P(Files, Layouts, ::testing::ValuesIn(layouts),
                         [](const auto& row) { return std::string(row.param.name); });

/// A file in which nothing keeps the order of creation: names come in their own order then.
TEST(Order, OfFilesWithoutOneIsThatOfTheNames)
{
    const Folder folder;
    const std::string path = folder / "o.case.kel";
    const hid_t access = H5Pcreate(H5P_FILE_ACCESS);
    H5Pset_libver_bounds(access, H5F_LIBVER_LATEST, H5F_LIBVER_LATEST);
    const hid_t file = H5Fcreate(path.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, access);
    H5Pclose(access);
    for (const char* group : {"/meshes", "/meshes/mesh_2_target_0_partition_-1", "/meshes/mesh_1_target_0_partition_-1",
                              "/settings", "/settings/second", "/settings/first"})
        H5Gclose(H5Gcreate2(file, group, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT));
    H5Fclose(file);
    {
        FileEdit edit(path);
        edit.text("/", "format", "Kel case");
        edit.text("/", "format_version", "25.1.0");
        for (char key = 'j'; key >= 'a'; --key) // more than an object keeps in its head
            edit.text("/settings/first", std::string(1, key), "text");
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_CASE)) << reader.errors();
    std::vector<std::string> names;
    reader.getSettingsGroups(KEL_CASE, names);
    EXPECT_EQ(names, (std::vector<std::string>{"first", "second"}));
    reader.getSettingsKeysOfGroup(KEL_CASE, "first", names);
    EXPECT_EQ(names, (std::vector<std::string>{"a", "b", "c", "d", "e", "f", "g", "h", "i", "j"}));
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), (std::vector<int>{1, 2}));
    EXPECT_EQ(reader.getMeshId(), 1);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Layouts, OtherThanThoseAreRefused)
{
    const Folder folder;
    std::string errors;
    ASSERT_TRUE(writeSample(folder / "e.case.kel", folder / "e.data.kel", errors)) << errors;
    const TwoCells mesh;
    {
        const hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_external(creation, (folder / "elsewhere").c_str(), 0, 36 * sizeof(double));
        FileEdit edit(folder / "e.case.kel");
        edit.array(sampleMesh + "/nodes/coordinates", H5T_NATIVE_DOUBLE, {12, 3}, mesh.xyz.data(), creation);
        H5Pclose(creation);
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "e.case.kel", KEL_CASE)) << reader.errors();
    double xyz[3];
    EXPECT_EQ(reader.getCoordinatesForNode(1, xyz, 3), 0u);
    EXPECT_EQ(reader.errors(), (folder / "e.case.kel") + ": " + sampleMesh +
                                   "/nodes/coordinates has a layout that these files do not have\n");
}

/// Rows that a few bytes claim, but that no memory holds.
TEST(Layouts, HugeRowsAreReadInPieces)
{
    const Folder folder;
    std::string errors;
    ASSERT_TRUE(writeSample(folder / "h.case.kel", folder / "h.data.kel", errors)) << errors;
    constexpr hsize_t values = hsize_t{1} << 37;
    const long long last = static_cast<long long>(values) - 1;
    {
        const hid_t creation = H5Pcreate(H5P_DATASET_CREATE);
        const hsize_t pieces[] = {1, 1024};
        H5Pset_chunk(creation, 2, pieces);
        FileEdit edit(folder / "h.case.kel");
        edit.numbers(sampleMesh + "/faces", "ranges", {1, last});
        edit.remove(sampleMesh + "/faces/child_counts");
        edit.numbers(sampleMesh + "/faces", "child_counts", {0});
        edit.array(sampleMesh + "/faces/child_offsets", H5T_NATIVE_ULLONG, {1, values}, nullptr, creation);
        edit.array(sampleMesh + "/faces/child_ids", H5T_NATIVE_ULLONG, {0}, nullptr);
        H5Pclose(creation);
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "h.case.kel", KEL_CASE)) << reader.errors();
    unsigned64 ids[4];
    EXPECT_EQ(reader.getChildFaceIdsForFace(static_cast<unsigned64>(last), ids, 4), 0u);
    EXPECT_EQ(reader.errors(), ""); // all offsets are 0
}
