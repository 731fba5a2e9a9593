// Several meshes in one run of a writer, and meshes that have no zones.
#include "Hdf5TestSupport.h"

#include <gmock/gmock.h>

using namespace hdf5test;
using ::testing::HasSubstr;

namespace {

/// Declares a mesh of three nodes and three cells on a line.
void declareLine(Writer& writer)
{
    writer.setMeshSize(KEL_MESH_DIMENSION, 1);
    writer.setZoneIds(KEL_NODE_ZONE, {5});
    writer.setZoneIds(KEL_CELL_ZONE, {6});
    writer.zone(KEL_NODE_ZONE, 5, 1, 3);
    writer.zone(KEL_CELL_ZONE, 6, 1, 3);
}

const double line[] = {0.5, 1.5, 2.5};

/// Writes values of the variable "p" of the phase "gas" on all cells.
void writeCellValues(Writer& writer, const std::vector<double>& values)
{
    std::vector<int> zones;
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "p", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, values.size(), values.data(), values.size());
    writer.endWritingPhaseVariableInZonesOfCategory();
}

void addPhase(Writer& writer)
{
    short phase = 0;
    int variable = 0;
    writer.addPhaseName("gas", phase);
    writer.addPhaseVariable(phase, "p", variable);
    writer.startWritingPhase(phase);
}

/// Values of the variable "p" on the first cells.
std::vector<double> cellValues(Reader& reader, std::size_t count)
{
    std::vector<int> zones;
    std::vector<double> values(count);
    reader.setActivePhase("gas");
    reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones);
    values.resize(reader.getValuesOfPhaseVariableForElementsInRange(1, count, values.data(), count));
    return values;
}

} // namespace

TEST(Meshes, OfOneRunFollowEachOther)
{
    const Folder folder;
    const TwoCells mesh;
    Writer writer;
    writer.context(4, 0, -1);
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "m.case.kel", KEL_CASE));
    mesh.writeArrays(writer);
    writer.startWritingSet("of the first", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({}, {}, {});
    writer.writeMeshSize();
    writer.context(9, 0, -1);
    declareLine(writer);
    writer.setCoordinatesForNodesInRange(1, 3, line, 3);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "m.case.kel", KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), (std::vector<int>{4, 9}));
    EXPECT_EQ(reader.getMeshId(), 4);
    EXPECT_EQ(reader.getNumZones(KEL_FACE_ZONE), 2u);
    std::vector<unsigned64> cells(11);
    EXPECT_EQ(reader.getCell0sForFacesInRange(1, 11, cells.data(), 11), 11u);
    EXPECT_EQ(cells, mesh.cell0);
    EXPECT_TRUE(reader.startReadingSet("of the first"));
    ASSERT_TRUE(reader.setMeshContext(9, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_CASE));
    EXPECT_EQ(reader.getNumZones(KEL_FACE_ZONE), 0u);
    double x[3] = {};
    EXPECT_EQ(reader.getCoordinatesForNodesInZone(5, x, 3), 3u);
    EXPECT_EQ(x[2], 2.5);
    EXPECT_FALSE(reader.startReadingSet("of the first"));
    EXPECT_EQ(reader.errors(), "");
}

TEST(Meshes, OfOneRunHaveTheirOwnValues)
{
    const Folder folder;
    Writer writer;
    writer.context(4, 0, -1);
    TwoCells::declare(writer);
    addPhase(writer);
    ASSERT_TRUE(writer.startWriting(folder / "m.data.kel", KEL_DATA));
    writeCellValues(writer, {1, 2});
    writer.writeMeshSize();
    writer.context(9, 0, -1);
    declareLine(writer);
    writeCellValues(writer, {3, 4, 5});
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    for (const int mesh : {4, 9}) {
        Reader reader;
        reader.setMeshContext(mesh, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_NONE);
        ASSERT_TRUE(reader.startReading(folder / "m.data.kel", KEL_DATA)) << reader.errors();
        EXPECT_EQ(cellValues(reader, mesh == 4 ? 2 : 3),
                  (mesh == 4 ? std::vector<double>{1, 2} : std::vector<double>{3, 4, 5}));
        EXPECT_EQ(reader.errors(), "");
    }
}

TEST(Meshes, ThatWereNotStoredBeforeTheNextAreAnError)
{
    const Folder folder;
    Writer writer;
    writer.context(4, 0, -1);
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "m.case.kel", KEL_CASE));
    writer.setUniformNodeCountForFacesInRange(1, 11, 4);
    writer.context(9, 0, -1);
    declareLine(writer);
    writer.setCoordinatesForNodesInRange(1, 3, line, 3);
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_THAT(writer.errors(), HasSubstr("m.case.kel: another mesh was chosen, but writeMeshSize has not stored the "
                                           "zones of mesh_4_target_0_partition_-1"));
    EXPECT_TRUE(folder.names().empty());
}

TEST(Meshes, WithoutZonesHaveTheElementsThatTheyCount)
{
    const Folder folder;
    Writer writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 1);
    writer.setMeshSize(KEL_MESH_SIZE_1, 3);
    writer.setMeshSize(KEL_MESH_SIZE_4, 2);
    ASSERT_TRUE(writer.startWriting(folder / "n.case.kel", KEL_CASE));
    writer.setCoordinatesForNodesInRange(1, 3, line, 3);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    addPhase(writer);
    ASSERT_TRUE(writer.startWriting(folder / "n.data.kel", KEL_DATA));
    writeCellValues(writer, {7, 8});
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "n.case.kel", KEL_CASE)) << reader.errors();
    ASSERT_TRUE(reader.startReading(folder / "n.data.kel", KEL_DATA)) << reader.errors();
    double x = 0;
    EXPECT_EQ(reader.getCoordinatesForNode(3, &x, 1), 1u);
    EXPECT_EQ(x, 2.5);
    EXPECT_EQ(cellValues(reader, 2), (std::vector<double>{7, 8}));
    EXPECT_EQ(reader.errors(), "");
}

TEST(Meshes, CanBeReadWithoutTheirZones)
{
    const Folder folder;
    const TwoCells mesh;
    Writer writer;
    ASSERT_TRUE(mesh.write(writer, folder / "z.case.kel")) << writer.errors();
    Reader reader;
    reader.setSkipReadZoneTopology(true);
    ASSERT_TRUE(reader.startReading(folder / "z.case.kel", KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.getNumZones(KEL_FACE_ZONE), 0u);
    EXPECT_EQ(reader.getCell1ForFace(1), 2u);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Meshes, MayBeRefinedAlike)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "c.case.kel", KEL_CASE));
    const unsigned64 faces[] = {3, 4, 5, 6}, cells[] = {2, 1};
    writer.setUniformChildFaceCountForFacesInRange(1, 2, 2);
    writer.setChildFaceIdsForFacesInRange(1, 2, faces, 4);
    writer.setUniformChildCellCountForCellsInRange(1, 2, 1);
    writer.setChildCellIdsForCellsInRange(1, 2, cells, 2);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "c.case.kel", KEL_CASE)) << reader.errors();
    unsigned64 ids[4] = {};
    EXPECT_EQ(reader.getChildFaceCountForFace(2), 2);
    EXPECT_EQ(reader.getChildFaceCountForFace(3), 0);
    EXPECT_EQ(reader.getChildFaceIdsForFace(2, ids, 4), 2u);
    EXPECT_EQ(ids[0], 5u);
    EXPECT_EQ(reader.getChildCellCountForCell(2), 1);
    EXPECT_EQ(reader.getChildCellIdsForCell(2, ids, 4), 1u);
    EXPECT_EQ(ids[0], 1u);
    EXPECT_EQ(reader.errors(), "");
}
