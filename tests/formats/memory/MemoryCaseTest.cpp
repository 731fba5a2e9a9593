#include "MemoryFiles.h"

#include "KelLocationModel.h"

namespace meridyn {
namespace {

class MemoryCase : public MemoryFiles {};
using P = KelMemoryProvider;
using DoubleRange = unsigned64 (P::*)(unsigned64, unsigned64, double*, unsigned64) const;
using FloatRange = unsigned64 (P::*)(unsigned64, unsigned64, float*, unsigned64) const;

TEST_F(MemoryCase, Coordinates)
{
    const double doubles[] = {1, 2, 3, 4, 5, 0.1};
    const float floats[] = {0.5F, 1.5F, 2.5F};
    startCase();
    writer.setCoordinatesForNodesInRange(3, 4, doubles, 6);
    writer.setCoordinatesForNode(1, floats, 3);
    reopen(KEL_CASE);
    EXPECT_EQ(read<double>(DoubleRange(&P::getCoordinatesForNodesInRange), 3, 4),
              std::vector<double>({1, 2, 3, 4, 5, 0.1}));
    EXPECT_EQ(read<float>(FloatRange(&P::getCoordinatesForNodesInRange), 1, 1), std::vector<float>({0.5F, 1.5F, 2.5F}));
    EXPECT_EQ(read<double>(DoubleRange(&P::getCoordinatesForNodesInRange), 1, 4).size(), 0U) << "node 2 has none";
    double xyz[3] = {};
    EXPECT_EQ(reader.getCoordinatesForNode(4, xyz, 3), 3U);
    EXPECT_EQ(xyz[2], 0.1);
}

TEST_F(MemoryCase, PrecisionOfCoordinates)
{
    const double xyz[] = {0.1, 0.2, 0.3};
    startCase();
    writer.setDataPrecision(KEL_PRECISION_SINGLE);
    writer.setCoordinatesForNode(1, xyz, 3);
    writer.setDataPrecision(KEL_PRECISION_DOUBLE);
    writer.setCoordinatesForNode(2, xyz, 3);
    reopen(KEL_CASE);
    const auto values = read<double>(DoubleRange(&P::getCoordinatesForNodesInRange), 1, 2);
    ASSERT_EQ(values.size(), 6U);
    EXPECT_EQ(values[0], static_cast<double>(0.1F));
    EXPECT_EQ(values[3], 0.1);
}

TEST_F(MemoryCase, Edges)
{
    const short counts[] = {2, 3, 2};
    const unsigned64 ids[] = {1, 2, 2, 3, 4, 4, 1};
    startCase();
    writer.setNodeCountsForEdgesInZone(2, counts, 3);
    writer.setNodeIdsForEdgesInZone(2, ids, 7);
    reopen(KEL_CASE);
    short count = 0;
    EXPECT_EQ(read<short>(&P::getNodeCountsForEdgesInRange, 1, 3), (Shorts{2, 3, 2}));
    EXPECT_EQ(read<unsigned64>(&P::getNodeIdsForEdgesInRange, 2, 3), (Ids{2, 3, 4, 4, 1}));
    EXPECT_FALSE(reader.hasUniformNodeCountForEdgesInZone(2, &count));
    EXPECT_TRUE(reader.hasUniformNodeCountForEdgesInRange(1, 1, &count));
    EXPECT_EQ(count, 2);
}

TEST_F(MemoryCase, NodesOfFaces)
{
    const unsigned64 triangles[] = {1, 2, 3, 2, 3, 4, 1, 3, 4, 1, 2, 4};
    const unsigned64 others[] = {4, 3, 2, 1, 1, 2};
    startCase();
    writer.setUniformNodeCountForFacesInZone(3, 3);
    writer.setNodeCountForFace(6, 2);
    writer.setNodeCountForFace(5, 4);
    writer.setNodeIdsForFacesInRange(5, 6, others, 6);
    writer.setNodeIdsForFacesInZone(3, triangles, 12);
    reopen(KEL_CASE);
    short count = 0;
    EXPECT_TRUE(reader.hasUniformNodeCountForFacesInZone(3, &count));
    EXPECT_EQ(count, 3);
    EXPECT_FALSE(reader.hasUniformNodeCountForFacesInZone(4, &count));
    EXPECT_EQ(read<short>(&P::getNodeCountsForFacesInRange, 1, 6), (Shorts{3, 3, 3, 3, 4, 2}));
    EXPECT_EQ(read<unsigned64>(&P::getNodeIdsForFacesInRange, 4, 6), (Ids{1, 2, 4, 4, 3, 2, 1, 1, 2}));
    EXPECT_EQ(reader.getNodeCountForFace(5), 4);
}

TEST_F(MemoryCase, CellsOfFaces)
{
    const unsigned64 cell0s[] = {1, 1, 2, 2, 3, 3};
    const unsigned64 cell1s[] = {2, 3};
    startCase();
    writer.setCell0sForFacesInRange(1, 6, cell0s, 6);
    writer.setCell1sForFacesInRange(2, 3, cell1s, 2);
    reopen(KEL_CASE);
    EXPECT_EQ(read<unsigned64>(&P::getCell0sForFacesInRange, 1, 6), (Ids{1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(read<unsigned64>(&P::getCell1sForFacesInRange, 1, 6), (Ids{0, 2, 3, 0, 0, 0}));
    EXPECT_EQ(read<unsigned64>(&P::getCell1sForFacesInRange, 1, 7), Ids{}) << "there is no face 7";
    EXPECT_EQ(reader.getCell1ForFace(3), 3U);
}

TEST_F(MemoryCase, ShadowAndChildFaces)
{
    const unsigned64 shadows[] = {6, 5};
    const short childCounts[] = {2, 0, 0, 1};
    const unsigned64 children[] = {5, 6};
    startCase();
    writer.setShadowFaceIdsForFacesInRange(3, 4, shadows, 2);
    writer.setChildFaceCountsForFacesInZone(3, childCounts, 4);
    writer.setChildFaceIdsForFace(1, children, 2);
    writer.setChildFaceIdsForFace(4, children, 1);
    reopen(KEL_CASE);
    EXPECT_EQ(read<unsigned64>(&P::getShadowFaceIdsForFacesInRange, 3, 4), (Ids{6, 5}));
    EXPECT_EQ(read<short>(&P::getChildFaceCountsForFacesInRange, 1, 4), (Shorts{2, 0, 0, 1}));
    EXPECT_EQ(read<unsigned64>(&P::getChildFaceIdsForFacesInRange, 1, 4), (Ids{5, 6, 5}));
    EXPECT_EQ(reader.getChildFaceCountForFace(2), 0);
}

TEST_F(MemoryCase, InterfaceData)
{
    const double a[] = {0.25, 0.75}, b[] = {1};
    const unsigned64 ids0[] = {1, 2, 3}, ids1[] = {5};
    startCase();
    writer.startWritingInterfaceDataForFaces({3}, {4, 9});
    writer.setInterfaceDataForFacesInZone(3, a, 2, b, 1, ids0, 3, ids1, 1);
    writer.endWritingInterfaceDataForFaces();
    reopen(KEL_CASE);
    std::vector<int> zones0 = {7}, zones1;
    reader.startReadingInterfaceDataForFaces(zones0, zones1);
    EXPECT_EQ(zones0, std::vector<int>({3}));
    EXPECT_EQ(zones1, (std::vector<int>{4, 9}));
    unsigned64 na = 0, nb = 0, n0 = 0, n1 = 0;
    EXPECT_TRUE(reader.getInterfaceDataSizesForFacesInZone(3, na, nb, n0, n1));
    EXPECT_EQ((Ids{na, nb, n0, n1}), (Ids{2, 1, 3, 1}));
    EXPECT_FALSE(reader.getInterfaceDataSizesForFacesInZone(4, na, nb, n0, n1));
    float readA[2] = {}, readB[1] = {};
    unsigned64 read0[2] = {}, read1[1] = {};
    EXPECT_EQ(reader.getInterfaceDataForFacesInZone(3, readA, 2, readB, 1, read0, 2, read1, 0), 5U);
    EXPECT_EQ(readA[1], 0.75F);
    EXPECT_EQ(readB[0], 1.0F);
    EXPECT_EQ(read0[1], 2U);
    EXPECT_EQ(read1[0], 0U) << "skipped";
}

TEST_F(MemoryCase, TypesOfCells)
{
    const KelCellType types[] = {KEL_CELL_PRISM, KEL_CELL_PYRAMID};
    startCase();
    writer.startWritingTypesForCells({5}, {KEL_CELL_HEXAHEDRON});
    reopen(KEL_CASE);
    KelCellType type = KEL_CELL_POLYHEDRON;
    EXPECT_TRUE(reader.hasUniformTypeForCellsInZone(5, &type));
    EXPECT_EQ(type, KEL_CELL_HEXAHEDRON);

    ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    writer.startWritingTypesForCells({5}, {KelCellType(-1)});
    writer.setTypesForCellsInRange(2, 3, types, 2);
    writer.setTypeForCell(1, KEL_CELL_HEXAHEDRON);
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    ASSERT_TRUE(reader.startReading(KEL_CASE));
    EXPECT_FALSE(reader.hasUniformTypeForCellsInZone(5, &type));
    EXPECT_EQ(read<KelCellType>(&P::getTypesForCellsInRange, 1, 3),
              (std::vector<KelCellType>{KEL_CELL_HEXAHEDRON, KEL_CELL_PRISM, KEL_CELL_PYRAMID}));
    EXPECT_EQ(reader.getTypeForCell(4), KelCellType(-1));
}

TEST_F(MemoryCase, NodesFacesPartitionsAndChildrenOfCells)
{
    const unsigned64 ids[] = {1, 2, 3, 4, 4, 3, 2, 1, 1, 1, 2, 2};
    const short faceCounts[] = {1, 2, 3};
    const int partitions[] = {0, 7, -1};
    startCase();
    writer.setUniformNodeCountForCellsInZone(5, 4);
    writer.setNodeIdsForCellsInZone(5, ids, 12);
    writer.setFaceCountsForCellsInZone(5, faceCounts, 3);
    writer.setFaceIdsForCellsInZone(5, ids, 6);
    writer.startWritingPartitionIdsForCells({5}, 8);
    writer.setPartitionIdsForCellsInZone(5, partitions, 3);
    writer.setUniformChildCellCountForCellsInZone(5, 1);
    writer.setChildCellIdsForCellsInZone(5, ids, 3);
    reopen(KEL_CASE);
    short count = 0;
    EXPECT_TRUE(reader.hasUniformNodeCountForCellsInZone(5, &count));
    EXPECT_EQ(count, 4);
    EXPECT_EQ(read<unsigned64>(&P::getNodeIdsForCellsInRange, 3, 3), (Ids{1, 1, 2, 2}));
    EXPECT_FALSE(reader.hasUniformFaceCountForCellsInZone(5, &count));
    EXPECT_EQ(read<short>(&P::getFaceCountsForCellsInRange, 1, 3), (Shorts{1, 2, 3}));
    EXPECT_EQ(reader.getFaceCountForCell(2), 2) << "faces, not nodes";
    EXPECT_EQ(reader.getNodeCountForCell(2), 4);
    EXPECT_EQ(read<unsigned64>(&P::getFaceIdsForCellsInRange, 2, 3), (Ids{2, 3, 4, 4, 3}));
    EXPECT_EQ(read<int>(&P::getPartitionIdsForCellsInRange, 1, 3), (std::vector<int>{0, 7, -1}));
    EXPECT_EQ(reader.getPartitionCountOfCells(), 8);
    EXPECT_EQ(read<short>(&P::getChildCellCountsForCellsInRange, 1, 3), (Shorts{1, 1, 1}));
    EXPECT_EQ(read<unsigned64>(&P::getChildCellIdsForCellsInRange, 1, 3), (Ids{1, 2, 3}));
}

TEST_F(MemoryCase, CaseSections)
{
    const short pairs[] = {1, 2, 3, 4, 5, 6};
    startCase();
    writer.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"b", "a"});
    writer.startWritingCaseSectionDataForCategory("a", {5}, KEL_PLAIN_SHORT, 2);
    writer.setCaseSectionDataForElementsInZone(5, pairs, 6);
    writer.endWritingCaseSectionDataForCategory();
    writer.endWritingCaseSectionCategories();
    reopen(KEL_CASE);
    Texts names = {"old"};
    std::vector<int> zones = {9};
    reader.startReadingCaseSectionCategories(KEL_FACE_ZONE, names);
    EXPECT_EQ(names, Texts{});
    reader.startReadingCaseSectionCategories(KEL_CELL_ZONE, names);
    EXPECT_EQ(names, (Texts{"b", "a"}));
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("c", zones), KelPlainDataType(-1));
    EXPECT_EQ(zones, std::vector<int>({9}));
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("a", zones), KEL_PLAIN_SHORT);
    EXPECT_EQ(zones, std::vector<int>({5}));
    unsigned64 size = 0;
    EXPECT_TRUE(reader.hasUniformCaseSectionDataCountForZone(5, &size));
    EXPECT_FALSE(reader.hasUniformCaseSectionDataCountForZone(3, &size));
    EXPECT_EQ(size, 2U);
    short values[6] = {};
    EXPECT_EQ(reader.getCaseSectionDataForElementsInRange(2, 3, values, 6), 4U);
    EXPECT_EQ(values[3], 6);
}

TEST_F(MemoryCase, ZonesWithAllTheyHave)
{
    startCase();
    writer.setMeshUnits("mm");
    writer.setMeshSize(KEL_MESH_SIZE_4, 3);
    writer.setZoneSizeInfo(3, KEL_ZONE_EXTRA_SIZE, 77);
    writer.setZoneStringInfo(3, KEL_ZONE_STRING_0, "wall");
    writer.setZoneStringInfo(3, KEL_ZONE_STRING_1, "heated\nwall");
    writer.setFaceZoneType(3, KEL_FACE_ZONE_TYPE_WALL);
    for (int type = 0; type < 5; ++type)
        writer.setFaceZoneInfo(3, KelFaceZoneInfoType(type), 10 + type);
    writer.setAllFaceZoneFlags(3, -2);
    writer.setFaceZoneInfo(3, KelFaceZoneInfoType(6), 5); // the cell zone on side 0
    writer.setNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, 4);
    writer.setEdgeZoneInfo(2, KEL_EDGE_ZONE_INFO_1, 5);
    writer.setEdgeZoneType(2, KEL_EDGE_ZONE_TYPE_FEATURE);
    writer.setCellZoneInfo(5, KEL_CELL_ZONE_INFO_1, 6);
    const unsigned64 local[] = {103, 101, 102};
    writer.setLocalElemIdsInZone(5, local, 3);
    reopen(KEL_CASE);

    std::string text;
    unsigned64 size = 0;
    int number = 0;
    std::vector<int> ids;
    std::list<int> beside;
    reader.getMeshUnits(text);
    EXPECT_EQ(text, "mm");
    reader.getMeshSize(KEL_MESH_SIZE_4, size);
    EXPECT_EQ(size, 3U);
    reader.getZoneIds(KEL_FACE_ZONE, ids);
    EXPECT_EQ(ids, (std::vector<int>{3, 4}));
    reader.getZoneSizeInfo(4, KEL_ZONE_LAST_ID, size);
    EXPECT_EQ(size, 6U);
    reader.getZoneSizeInfo(3, KEL_ZONE_EXTRA_SIZE, size);
    EXPECT_EQ(size, 77U);
    reader.getZoneStringInfo(3, KEL_ZONE_STRING_0, text);
    EXPECT_EQ(text, "wall");
    reader.getZoneStringInfo(3, KEL_ZONE_STRING_1, text);
    EXPECT_EQ(text, "heated\nwall");
    for (int type = 0; type < 5; ++type) {
        reader.getFaceZoneInfo(3, KelFaceZoneInfoType(type), number);
        EXPECT_EQ(number, 10 + type);
    }
    KelFaceZoneType kind = KEL_FACE_ZONE_TYPE_INTERIOR;
    reader.getFaceZoneType(3, kind);
    EXPECT_EQ(kind, KEL_FACE_ZONE_TYPE_WALL);
    reader.getAllFaceZoneFlags(3, number);
    EXPECT_EQ(number, -2);
    reader.getFaceCellZone0Ids(3, beside);
    EXPECT_EQ(beside, std::list<int>{5});
    reader.getFaceCellZone1Ids(3, beside);
    EXPECT_EQ(beside, std::list<int>{});
    reader.getNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, number);
    EXPECT_EQ(number, 4);
    reader.getEdgeZoneInfo(2, KEL_EDGE_ZONE_INFO_1, number);
    EXPECT_EQ(number, 5);
    reader.getEdgeZoneInfo(2, KEL_EDGE_ZONE_INFO_0, number);
    EXPECT_EQ(number, KEL_EDGE_ZONE_TYPE_FEATURE);
    reader.getCellZoneInfo(5, KEL_CELL_ZONE_INFO_1, number);
    EXPECT_EQ(number, 6);
    unsigned64 localRead[3] = {};
    EXPECT_EQ(reader.getLocalElemIdsInZone(5, localRead, 3), 3U);
    EXPECT_EQ(localRead[0], 103U);
    EXPECT_EQ(reader.getLocalElemIdsInZone(3, localRead, 3), 0U);
}

TEST_F(MemoryCase, Locations)
{
    KelLocationModel model;
    int part = 0;
    model.createPart(3, "fluid", part);
    startCase();
    writer.setLocationModel(&model);
    reopen(KEL_CASE);
    EXPECT_EQ(reader.getLocationModel()->state(), model.state());
}

TEST_F(MemoryCase, SetsOfTheCase)
{
    const unsigned64 ids[] = {3, 1, 3};
    startCase();
    writer.startWritingSet("s", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({3, 0}, {1, 0}, {3, 0});
    writer.setIdsForSetInRange(1, 3, ids, 3);
    writer.endWritingSet();
    reopen(KEL_CASE);
    Texts names;
    EXPECT_FALSE(reader.getSetNames(KEL_DATA, names));
    EXPECT_FALSE(reader.getSetNames(KEL_FACE_ZONE, names));
    EXPECT_TRUE(reader.getSetNames(KEL_CELL_ZONE, names));
    EXPECT_EQ(names, Texts{"s"});
    EXPECT_TRUE(reader.startReadingSet("s"));
    EXPECT_EQ(reader.getCategoryOfSet(), KEL_CELL_ZONE);
    EXPECT_EQ(read<unsigned64>(&P::getIdsForSetInRange, 1, 3), (Ids{3, 1, 3}));
    EXPECT_FALSE(reader.startReadingSet("t"));
    EXPECT_EQ(reader.getCategoryOfSet(), KelZoneCategory(-1));
}

} // namespace
} // namespace meridyn
