// What a client does not say about a mesh and what its zones and arrays tell.
#include "Hdf5TestSupport.h"

#include "formats/hdf5/file/Hdf5File.h"
#include "formats/hdf5/model/ZoneStore.h"

using namespace hdf5test;

namespace {

using Derived = KelDerivedValues;

/// Three hexahedra in a row, which is all that the zones below have to do with: faces 1 and 2 lie between them, 3 to
/// 5 at the walls, one for each cell.
const unsigned64 cell0s[] = {1, 2, 1, 2, 3};
const unsigned64 cell1s[] = {2, 3};

/// Node zone 1 (nodes 1 to 16); face zones 11 (face 1), 12 (face 2), 13 (faces 3 to 5); cell zones 21 (cells 1 and 2)
/// and 22 (cell 3).
void declareZones(Writer& writer)
{
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setZoneIds(KEL_NODE_ZONE, {1});
    writer.setZoneIds(KEL_FACE_ZONE, {11, 12, 13});
    writer.setZoneIds(KEL_CELL_ZONE, {22, 21});
    writer.zone(KEL_NODE_ZONE, 1, 1, 16);
    writer.zone(KEL_FACE_ZONE, 11, 1, 1);
    writer.zone(KEL_FACE_ZONE, 12, 2, 2);
    writer.zone(KEL_FACE_ZONE, 13, 3, 5);
    writer.zone(KEL_CELL_ZONE, 21, 1, 2);
    writer.zone(KEL_CELL_ZONE, 22, 3, 3);
}

void writeCells(Writer& writer)
{
    writer.setCell0sForFacesInRange(1, 5, cell0s, 5);
    writer.setCell1sForFacesInRange(1, 2, cell1s, 2);
}

using Zones = std::list<int>;

struct Neighbours {
    Zones side0, side1;
};

Neighbours ofFaceZone(Reader& reader, int zone)
{
    Neighbours found;
    reader.getFaceCellZone0Ids(zone, found.side0);
    reader.getFaceCellZone1Ids(zone, found.side1);
    return found;
}

Zones ofCellZone(Reader& reader, int zone)
{
    Zones found;
    reader.getCellFaceZoneIds(zone, found);
    return found;
}

std::vector<unsigned64> sizesOf(const Reader& reader)
{
    std::vector<unsigned64> sizes(5);
    for (int type = 0; type < 5; ++type)
        reader.getMeshSize(static_cast<KelMeshSizeType>(type), sizes[static_cast<std::size_t>(type)]);
    return sizes;
}

/// The marks in a file with one mesh.
Derived marksOf(const std::string& path, const std::string& mesh = "mesh_1_target_0_partition_-1")
{
    const auto file = hdf5::Hdf5File::openForReading(path);
    return hdf5::readDerived(*file, hdf5::findGroup(file->id(), {"meshes", mesh}).get());
}

class DerivedValues : public ::testing::TestWithParam<int> {
protected:
    const Folder folder;
    const std::string path = folder / "d.case.kel";
    Writer writer;
    Reader reader;

    void SetUp() override
    {
        writer.setCompression(GetParam());
        declareZones(writer);
    }
    void reopen()
    {
        ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
        ASSERT_TRUE(reader.startReading(path, KEL_CASE)) << reader.errors();
    }
};

} // namespace

TEST_P(DerivedValues, AreThereWhenNothingWasSaid)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    reopen();
    EXPECT_EQ(sizesOf(reader), (std::vector<unsigned64>{3, 16, 0, 5, 3}));
    EXPECT_EQ(ofFaceZone(reader, 11).side0, Zones{21});
    EXPECT_EQ(ofFaceZone(reader, 11).side1, Zones{21});
    EXPECT_EQ(ofFaceZone(reader, 12).side0, Zones{21});
    EXPECT_EQ(ofFaceZone(reader, 12).side1, Zones{22});
    EXPECT_EQ(ofFaceZone(reader, 13).side0, (Zones{22, 21})) << "in the order in which they were declared";
    EXPECT_EQ(ofFaceZone(reader, 13).side1, Zones{});
    EXPECT_EQ(ofCellZone(reader, 21), (Zones{11, 12, 13}));
    EXPECT_EQ(ofCellZone(reader, 22), (Zones{12, 13}));
    EXPECT_EQ(marksOf(path), (Derived{{KEL_MESH_SIZE_1, KEL_MESH_SIZE_3, KEL_MESH_SIZE_4},
                                      {{11, 0}, {11, 1}, {12, 0}, {12, 1}, {13, 0}, {21, 0}, {22, 0}}}));
    const KelDerived ledger = reader.derived();
    EXPECT_TRUE(ledger.adjacency);
    EXPECT_TRUE(ledger.sizes[KEL_MESH_SIZE_1] && ledger.sizes[KEL_MESH_SIZE_3] && ledger.sizes[KEL_MESH_SIZE_4]);
    EXPECT_FALSE(ledger.sizes[KEL_MESH_DIMENSION] || ledger.sizes[KEL_MESH_SIZE_2]);
    EXPECT_EQ(reader.errors(), "");
}

TEST_P(DerivedValues, DoNotReplaceWhatWasGiven)
{
    writer.setMeshSize(KEL_MESH_SIZE_1, 16);
    writer.setMeshSize(KEL_MESH_SIZE_4, 7); // more than the zones have
    writer.setFaceCellZone0Ids({{11, {22}}});
    writer.setFaceCellZone1Ids({{12, {21, 22}}});
    writer.setCellFaceZoneIds({{22, {11}}});
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    reopen();
    EXPECT_EQ(sizesOf(reader), (std::vector<unsigned64>{3, 16, 0, 5, 7}));
    EXPECT_EQ(ofFaceZone(reader, 11).side0, Zones{22});
    EXPECT_EQ(ofFaceZone(reader, 11).side1, Zones{21});
    EXPECT_EQ(ofFaceZone(reader, 12).side0, Zones{21});
    EXPECT_EQ(ofFaceZone(reader, 12).side1, (Zones{21, 22}));
    EXPECT_EQ(ofCellZone(reader, 22), Zones{11});
    EXPECT_EQ(ofCellZone(reader, 21), (Zones{11, 12, 13}));
    EXPECT_EQ(marksOf(path), (Derived{{KEL_MESH_SIZE_3}, {{11, 1}, {12, 0}, {13, 0}, {21, 0}}}));
    EXPECT_FALSE(reader.derived().adjacency) << "some was given";
    EXPECT_EQ(reader.derived().neighbours, marksOf(path).neighbours);
}

TEST_P(DerivedValues, HaveNoMarksWhenAllWasGiven)
{
    for (const auto& [type, size] : {std::pair{KEL_MESH_SIZE_1, 16}, {KEL_MESH_SIZE_3, 5}, {KEL_MESH_SIZE_4, 3}})
        writer.setMeshSize(type, static_cast<unsigned64>(size));
    writer.setFaceCellZone0Ids({{11, {21}}, {12, {21}}, {13, {21, 22}}});
    writer.setFaceCellZone1Ids({{11, {21}}, {12, {22}}});
    writer.setCellFaceZoneIds({{21, {11, 12, 13}}, {22, {12, 13}}});
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    reopen();
    EXPECT_TRUE(marksOf(path).isEmpty());
    const auto file = hdf5::Hdf5File::openForReading(path);
    const auto mesh = hdf5::findGroup(file->id(), {"meshes", "mesh_1_target_0_partition_-1"});
    EXPECT_FALSE(hdf5::hasLink(mesh.get(), "zone_neighbours_derived"));
}

TEST_P(DerivedValues, FollowTheLastValuesOfARange)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    const unsigned64 wrong[] = {3, 3, 3, 3, 3};
    writer.setCell0sForFacesInRange(1, 5, wrong, 5);
    writeCells(writer);
    reopen();
    EXPECT_EQ(ofFaceZone(reader, 11).side0, Zones{21});
    EXPECT_EQ(ofCellZone(reader, 22), (Zones{12, 13}));
}

TEST_P(DerivedValues, OfCellZonesComeFromTheirFacesWhereFacesHaveNoCells)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    const short counts[] = {2, 3, 2};
    const unsigned64 faces[] = {1, 3, 1, 2, 4, 2, 5};
    writer.setFaceCountsForCellsInRange(1, 3, counts, 3);
    writer.setFaceIdsForCellsInRange(1, 3, faces, 7);
    reopen();
    EXPECT_EQ(ofFaceZone(reader, 11).side0, Zones{}) << "sides are not known";
    EXPECT_EQ(ofCellZone(reader, 21), (Zones{11, 12, 13}));
    EXPECT_EQ(ofCellZone(reader, 22), (Zones{12, 13}));
    EXPECT_EQ(marksOf(path).neighbours, (std::set<std::pair<int, int>>{{21, 0}, {22, 0}}));
}

TEST_P(DerivedValues, CountAnElementOfTwoZonesOnce)
{
    writer.setZoneIds(KEL_CELL_ZONE, {21, 22, 23});
    writer.zone(KEL_CELL_ZONE, 21, 1, 2);
    writer.zone(KEL_CELL_ZONE, 22, 3, 3);
    writer.zone(KEL_CELL_ZONE, 23, 2, 3);
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    reopen();
    EXPECT_EQ(sizesOf(reader)[KEL_MESH_SIZE_4], 3u);
    EXPECT_EQ(ofFaceZone(reader, 12).side0, (Zones{21, 23}));
    EXPECT_EQ(ofFaceZone(reader, 12).side1, (Zones{22, 23}));
    EXPECT_EQ(ofCellZone(reader, 23), (Zones{11, 12, 13}));
}

TEST_P(DerivedValues, OfEachMeshAreItsOwn)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    writer.writeMeshSize();
    writer.context(2, 0, -1);
    writer.setMeshSize(KEL_MESH_DIMENSION, 1);
    writer.setZoneIds(KEL_NODE_ZONE, {5});
    writer.zone(KEL_NODE_ZONE, 5, 11, 12);
    const double line[] = {0, 1};
    writer.setCoordinatesForNodesInRange(11, 12, line, 2);
    reopen();
    EXPECT_EQ(sizesOf(reader), (std::vector<unsigned64>{3, 16, 0, 5, 3}));
    ASSERT_TRUE(reader.setMeshContext(2, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_CASE));
    EXPECT_EQ(sizesOf(reader), (std::vector<unsigned64>{1, 2, 0, 0, 0}));
    EXPECT_EQ(marksOf(path, "mesh_2_target_0_partition_-1"), (Derived{{KEL_MESH_SIZE_1}, {}}));
}

TEST_P(DerivedValues, OfTheCaseStandInTheDataOfTheSameWriter)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    const std::string data = folder / "d.data.kel";
    ASSERT_TRUE(writer.startWriting(data, KEL_DATA));
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    ASSERT_TRUE(reader.startReading(data, KEL_DATA)) << reader.errors();
    EXPECT_EQ(ofFaceZone(reader, 12).side1, Zones{22});
    EXPECT_EQ(ofCellZone(reader, 21), (Zones{11, 12, 13}));
    EXPECT_TRUE(reader.derived().adjacency);
    writer.setCellFaceZoneIds({{21, {11}}, {22, {12}}});
    writer.setFaceCellZone0Ids({{11, {21}}, {12, {21}}, {13, {21}}});
    writer.setFaceCellZone1Ids({{11, {21}}, {12, {22}}, {13, {22}}});
    writer.setAppendOn(true);
    reader.endReading(KEL_DATA);
    ASSERT_TRUE(writer.startWriting(data, KEL_DATA)) << writer.errors();
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    EXPECT_TRUE(marksOf(data).isEmpty()) << "now they are given";
}

TEST_P(DerivedValues, DoNotBecomePartOfTheWriter)
{
    ASSERT_TRUE(writer.startWriting(path, KEL_CASE));
    writeCells(writer);
    reopen();
    unsigned64 size = 1;
    writer.getMeshSize(KEL_MESH_SIZE_4, size);
    EXPECT_EQ(size, 0u) << "or a mesh with more cells would have the old size, as if it had been given";
    Zones zones{1};
    writer.getFaceCellZone0Ids(11, zones);
    EXPECT_EQ(zones, Zones{});
}

INSTANTIATE_TEST_SUITE_P(Compression, DerivedValues, ::testing::Values(0, 1),
                         [](const auto& row) { return row.param == 0 ? "None" : "Level1"; });
