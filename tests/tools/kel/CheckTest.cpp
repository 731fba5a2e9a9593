// kel check: what it says of a mesh as a whole, of what it could not look at, and of several meshes in one file.
#include "KelHdf5Consumer.h"
#include "ToolRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using namespace meridyn::tool;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

/// A mesh of one cell by its nodes.
struct OneCell {
    int mesh = 1;
    KelCellType type = KEL_CELL_TETRAHEDRON;
    std::vector<unsigned64> nodes = {1, 2, 3, 4};
    unsigned64 statedCells = 1; ///< 0: the size is not stated
};

/// Writes a mesh into a file, beside those that are there when it is not the first.
void write(const std::string& file, const OneCell& cell, bool isFirst = true)
{
    const double xyz[] = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1};
    KelHdf5Consumer writer;
    writer.setAppendOn(!isFirst);
    writer.setMeshId(cell.mesh);
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setMeshSize(KEL_MESH_SIZE_4, cell.statedCells);
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneIds(KEL_CELL_ZONE, {2});
    writer.setZoneSizeInfo(1, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 4);
    writer.setZoneSizeInfo(2, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(2, KEL_ZONE_LAST_ID, 1);
    ASSERT_TRUE(writer.startWriting(file, KEL_CASE));
    writer.setCoordinatesForNodesInRange(1, 4, xyz, 12);
    writer.setTypesForCellsInRange(1, 1, &cell.type, 1);
    if (!cell.nodes.empty()) {
        const auto count = static_cast<short>(cell.nodes.size());
        writer.setNodeCountsForCellsInRange(1, 1, &count, 1);
        writer.setNodeIdsForCellsInRange(1, 1, cell.nodes.data(), cell.nodes.size());
    }
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
}

} // namespace

TEST(Check, IsGoodOfACellByItsNodesWithoutStatedSizes)
{
    const TemporaryFolder folder;
    write(folder / "a.case.kel", {.statedCells = 0});
    const Ran ran = runKel({"check", folder / "a.case.kel"});
    EXPECT_EQ(ran.code, 0) << ran.out << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("  volume        0.166667\n"));
    EXPECT_THAT(ran.out, HasSubstr("    -     cells are closed\n")) << "nothing to look at";
    EXPECT_THAT(ran.out, EndsWith("\nThe mesh is good.\n"));
}

TEST(Check, FindsACellInsideOut)
{
    const TemporaryFolder folder;
    write(folder / "a.case.kel", {.nodes = {1, 3, 2, 4}});
    const Ran ran = runKel({"check", folder / "a.case.kel"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("  FAILED  volumes are positive: 1 exception\n"
                                   "            cell 1 has the volume -0.166667\n"));
    EXPECT_THAT(ran.out, EndsWith("\nThe mesh is not good.\n"));
}

TEST(Check, SaysInItsLastLineWhatItCouldNotLookAt)
{
    const TemporaryFolder folder;
    write(folder / "a.case.kel", {.type = KEL_CELL_POLYHEDRON, .nodes = {}});
    const Ran ran = runKel({"check", folder / "a.case.kel"});
    EXPECT_EQ(ran.code, 3);
    EXPECT_THAT(ran.out, Not(HasSubstr("is good")));
    EXPECT_THAT(ran.out, EndsWith("\nNo fault found, but not looked at: 1 cell without nodes and faces.\n"));
    const Ran json = runKel({"check", "--json", folder / "a.case.kel"});
    EXPECT_EQ(json.code, 3);
    EXPECT_TRUE(isJson(json.out)) << json.out;
    EXPECT_THAT(json.out, HasSubstr("\"good\": false"));
    EXPECT_THAT(json.out, HasSubstr("\"1 cell without nodes and faces\""));
}

TEST(Check, SaysWhatTheSizesAreSaidToBe)
{
    const TemporaryFolder folder;
    write(folder / "a.case.kel", {.statedCells = 7});
    const Ran ran = runKel({"check", folder / "a.case.kel"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("  FAILED  zones hold each element once: 6 exceptions\n"
                                   "            cells: the zones hold 1, but the mesh is said to have 7\n"));
}

TEST(Check, LooksAtEveryMeshOfTheFile)
{
    const TemporaryFolder folder;
    const std::string file = folder / "two.case.kel";
    write(file, {.mesh = 1});
    write(file, {.mesh = 5}, false);
    const Ran good = runKel({"check", file});
    EXPECT_EQ(good.code, 0) << good.out << good.err;
    EXPECT_THAT(good.out, HasSubstr("two.case.kel, mesh 1\n"));
    EXPECT_THAT(good.out, HasSubstr("two.case.kel, mesh 5\n"));
    EXPECT_THAT(good.out, EndsWith("\nAll 2 meshes are good.\n"));

    write(file, {.mesh = 7, .nodes = {1, 3, 2, 4}}, false);
    const Ran bad = runKel({"check", file});
    EXPECT_EQ(bad.code, 1);
    EXPECT_THAT(bad.out, EndsWith("\nThe meshes are not all good.\n"));
    const Ran json = runKel({"check", "--json", file});
    EXPECT_TRUE(isJson(json.out)) << json.out;
    EXPECT_THAT(json.out, HasSubstr("\"mesh\": 7"));
    EXPECT_EQ(runKel({"check", "--mesh", "5", file}).code, 0);
    EXPECT_EQ(runKel({"check", "--mesh", "7", file}).code, 1);
    EXPECT_EQ(runKel({"check", "--mesh", "7", "--target", "0", file}).code, 1);
    const Ran none = runKel({"check", "--mesh", "6", file});
    EXPECT_EQ(none.code, 2);
    EXPECT_EQ(
        none.err,
        "kel: " + file +
            ": has no such mesh; it has mesh 1, target default; mesh 5, target default; mesh 7, target default\n");
}
