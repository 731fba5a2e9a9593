#include "Hdf5TestSupport.h"

#include "KelLocationModel.h"

using namespace hdf5test;

TEST(Case, ArraysOfTwoCellsComeBack)
{
    const Folder folder;
    const TwoCells mesh;
    Writer writer;
    ASSERT_TRUE(mesh.write(writer, folder / "two.case.kel")) << writer.errors();
    EXPECT_EQ(folder.names(), std::vector<std::string>{"two.case.kel"});

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "two.case.kel", KEL_CASE)) << reader.errors();
    EXPECT_TRUE(reader.isReadingData());
    std::vector<double> xyz(36);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, xyz.data(), 36), 36u);
    EXPECT_EQ(xyz, mesh.xyz);
    std::vector<float> single(3);
    EXPECT_EQ(reader.getCoordinatesForNode(12, single.data(), 3), 3u);
    EXPECT_EQ(single, (std::vector<float>{2.0f, 1.0f, 0.1f}));
    std::vector<unsigned64> ids(44);
    EXPECT_EQ(reader.getNodeIdsForFacesInRange(1, 11, ids.data(), 44), 44u);
    EXPECT_EQ(ids, mesh.faceNodes);
    EXPECT_EQ(reader.getNodeIdsForFacesInZone(12, ids.data(), 44), 40u);
    EXPECT_EQ(ids[0], 1u);
    short count = 0;
    EXPECT_TRUE(reader.hasUniformNodeCountForFacesInRange(1, 11, &count));
    EXPECT_EQ(count, 4);
    std::vector<unsigned64> cells(11);
    EXPECT_EQ(reader.getCell0sForFacesInRange(1, 11, cells.data(), 11), 11u);
    EXPECT_EQ(cells, mesh.cell0);
    EXPECT_EQ(reader.getCell1ForFace(1), 2u);
    EXPECT_EQ(reader.getCell1sForFacesInZone(12, cells.data(), 11), 10u);
    EXPECT_EQ(cells[9], 0u);
    KelCellType type{};
    EXPECT_TRUE(reader.hasUniformTypeForCellsInZone(21, &type));
    EXPECT_EQ(type, KEL_CELL_HEXAHEDRON);
    EXPECT_EQ(reader.getTypeForCell(2), KEL_CELL_HEXAHEDRON);
    EXPECT_EQ(reader.getShadowFaceIdForFace(3), 0u);
    EXPECT_EQ(reader.getNodeCountForCell(1), 0);
    EXPECT_EQ(reader.errors(), "");
    EXPECT_TRUE(reader.endReading(KEL_CASE));
    EXPECT_FALSE(reader.isReadingData());
}

TEST(Case, ZonesComeBackWithEverything)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    writer.setZoneIds(KEL_EDGE_ZONE, {7, -5, 0});
    writer.setZoneSizeInfo(11, KEL_ZONE_EXTRA_SIZE, 1ULL << 60);
    writer.setZoneStringInfo(11, KEL_ZONE_STRING_0, std::string("n\0ul\xff/\xc3\xa9", 8));
    writer.setZoneStringInfo(11, KEL_ZONE_STRING_1, "interior");
    writer.setNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, 5);
    writer.setEdgeZoneType(7, KEL_EDGE_ZONE_TYPE_FEATURE);
    writer.setEdgeZoneInfo(7, KEL_EDGE_ZONE_INFO_1, -77);
    writer.setFaceZoneType(12, KEL_FACE_ZONE_TYPE_WALL);
    for (int i = 0; i < 5; ++i)
        writer.setFaceZoneInfo(12, static_cast<KelFaceZoneInfoType>(i), 100 + i);
    writer.setAllFaceZoneFlags(12, static_cast<int>(0x80000005));
    writer.setCellZoneInfo(21, KEL_CELL_ZONE_INFO_0, 3);
    writer.setCellZoneInfo(21, KEL_CELL_ZONE_INFO_1, 4);
    writer.setFaceCellZone0Ids({{11, {21}}, {12, {21, 22}}});
    writer.setFaceCellZone1Ids({{11, {21}}});
    writer.setCellFaceZoneIds({{21, {12, 11}}});
    ASSERT_TRUE(writer.startWriting(folder / "z.case.kel", KEL_CASE));
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "z.case.kel", KEL_CASE)) << reader.errors();
    std::vector<int> ids;
    reader.getZoneIds(KEL_EDGE_ZONE, ids);
    EXPECT_EQ(ids, (std::vector<int>{7, -5, 0}));
    unsigned64 size = 0;
    reader.getZoneSizeInfo(12, KEL_ZONE_LAST_ID, size);
    EXPECT_EQ(size, 11u);
    reader.getZoneSizeInfo(11, KEL_ZONE_EXTRA_SIZE, size);
    EXPECT_EQ(size, 1ULL << 60);
    std::string text;
    reader.getZoneStringInfo(11, KEL_ZONE_STRING_0, text);
    EXPECT_EQ(text, std::string("n\0ul\xff/\xc3\xa9", 8));
    reader.getZoneStringInfo(11, KEL_ZONE_STRING_1, text);
    EXPECT_EQ(text, "interior");
    int value = 0;
    reader.getNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, value);
    EXPECT_EQ(value, 5);
    reader.getEdgeZoneInfo(7, KEL_EDGE_ZONE_INFO_0, value);
    EXPECT_EQ(value, KEL_EDGE_ZONE_TYPE_FEATURE);
    reader.getEdgeZoneInfo(7, KEL_EDGE_ZONE_INFO_1, value);
    EXPECT_EQ(value, -77);
    reader.getEdgeZoneInfo(0, KEL_EDGE_ZONE_INFO_1, value);
    EXPECT_EQ(value, -1);
    for (int i = 0; i < 5; ++i) {
        reader.getFaceZoneInfo(12, static_cast<KelFaceZoneInfoType>(i), value);
        EXPECT_EQ(value, 100 + i);
    }
    reader.getFaceZoneInfo(11, KEL_FACE_ZONE_INFO_0, value);
    EXPECT_EQ(value, -1);
    KelFaceZoneType type{};
    reader.getFaceZoneType(12, type);
    EXPECT_EQ(type, KEL_FACE_ZONE_TYPE_WALL);
    reader.getAllFaceZoneFlags(12, value);
    EXPECT_EQ(value, static_cast<int>(0x80000005));
    reader.getCellZoneInfo(21, KEL_CELL_ZONE_INFO_0, value);
    EXPECT_EQ(value, 3);
    std::list<int> beside;
    reader.getFaceCellZone0Ids(12, beside);
    EXPECT_EQ(beside, (std::list<int>{21, 22}));
    reader.getFaceCellZone1Ids(11, beside);
    EXPECT_EQ(beside, std::list<int>{21});
    reader.getCellFaceZoneIds(21, beside);
    EXPECT_EQ(beside, (std::list<int>{12, 11}));
    for (int i = 0; i < 5; ++i) {
        unsigned64 wrote = 0;
        writer.getMeshSize(static_cast<KelMeshSizeType>(i), wrote);
        reader.getMeshSize(static_cast<KelMeshSizeType>(i), size);
        EXPECT_EQ(size, wrote) << i;
    }
    reader.getMeshUnits(text);
    EXPECT_EQ(text, "m");
}

TEST(Case, PolyhedraInAnyOrderOfCallsComeBack)
{
    const Folder folder;
    Writer writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 2);
    writer.setZoneIds(KEL_NODE_ZONE, {3, 1});
    writer.zone(KEL_NODE_ZONE, 1, 1, 4);
    writer.zone(KEL_NODE_ZONE, 3, 5, 9);
    writer.setZoneIds(KEL_CELL_ZONE, {30, 20, 10});
    writer.zone(KEL_CELL_ZONE, 10, 1, 2);
    writer.zone(KEL_CELL_ZONE, 20, 3, 3);
    writer.zone(KEL_CELL_ZONE, 30, 4, 6);
    ASSERT_TRUE(writer.startWriting(folder / "p.case.kel", KEL_CASE));
    const std::vector<std::vector<unsigned64>> nodes{{1, 2}, {3, 4, 5}, {9}, {}, {8, 7, 6, 5}, {1, 9}};
    // zone 30 first, ids before counts, element by element and backwards
    writer.startWritingNodesForCells({30, 20, 10});
    for (int cell = 6; cell >= 4; --cell) {
        const auto& list = nodes[static_cast<std::size_t>(cell - 1)];
        writer.setNodeIdsForCell(static_cast<unsigned64>(cell), list.data(), list.size());
    }
    const short counts30[] = {0, 4, 2};
    writer.setNodeCountsForCellsInZone(30, counts30, 3);
    writer.setUniformNodeCountForCellsInZone(20, 1);
    writer.setNodeIdsForCellsInZone(20, nodes[2].data(), 1);
    const short counts10[] = {2, 3};
    const unsigned64 ids10[] = {1, 2, 3, 4, 5};
    writer.setNodeCountsForCellsInZone(10, counts10, 2);
    writer.setNodeIdsForCellsInZone(10, ids10, 5);
    const float upper[] = {5, 5.5f, 6, 6.5f, 7, 7.5f, 8, 8.5f, 9, 9.5f};
    const double lower[] = {1, 1.5, 2, 2.5, 3, 3.5, 4, 4.5};
    writer.setDataPrecision(KEL_PRECISION_DOUBLE);
    writer.setCoordinatesForNodesInZone(3, upper, 10);
    writer.setCoordinatesForNodesInZone(1, lower, 8);
    const KelCellType types[] = {KEL_CELL_POLYGON, KEL_CELL_TRIANGLE, KEL_CELL_POLYGON};
    writer.startWritingTypesForCells({10, 20}, {KEL_CELL_QUADRILATERAL, static_cast<KelCellType>(-1)});
    writer.setTypesForCellsInRange(4, 6, types, 3);
    writer.setTypeForCell(3, KEL_CELL_TRIANGLE);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "p.case.kel", KEL_CASE)) << reader.errors();
    for (unsigned64 cell = 1; cell <= 6; ++cell) {
        std::vector<unsigned64> ids(5);
        ids.resize(reader.getNodeIdsForCell(cell, ids.data(), 5));
        EXPECT_EQ(ids, nodes[cell - 1]) << cell;
        EXPECT_EQ(reader.getNodeCountForCell(cell), static_cast<short>(nodes[cell - 1].size())) << cell;
    }
    std::vector<unsigned64> ids(7);
    EXPECT_EQ(reader.getNodeIdsForCellsInRange(3, 6, ids.data(), 7), 7u);
    EXPECT_EQ(ids, (std::vector<unsigned64>{9, 8, 7, 6, 5, 1, 9}));
    short count = 0;
    EXPECT_TRUE(reader.hasUniformNodeCountForCellsInZone(20, &count));
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(reader.hasUniformNodeCountForCellsInZone(30, &count));
    KelCellType type{};
    EXPECT_TRUE(reader.hasUniformTypeForCellsInZone(10, &type));
    EXPECT_EQ(type, KEL_CELL_QUADRILATERAL);
    EXPECT_FALSE(reader.hasUniformTypeForCellsInZone(30, &type));
    EXPECT_EQ(reader.getTypeForCell(5), KEL_CELL_TRIANGLE);
    std::vector<double> xy(18);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 9, xy.data(), 18), 18u);
    for (int i = 0; i < 18; ++i)
        EXPECT_EQ(xy[static_cast<std::size_t>(i)], 1 + 0.5 * i);
}

TEST(Case, FamiliesOfFacesAndCellsComeBack)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    writer.setMeshSize(KEL_MESH_SIZE_2, 3);
    ASSERT_TRUE(writer.startWriting(folder / "f.case.kel", KEL_CASE));
    const unsigned64 edgeNodes[] = {1, 2, 2, 3, 3, 6};
    writer.setUniformNodeCountForEdgesInRange(1, 3, 2);
    writer.setNodeIdsForEdgesInRange(1, 3, edgeNodes, 6);
    const unsigned64 shadows[] = {3, 2};
    writer.setShadowFaceIdsForFacesInRange(2, 3, shadows, 2);
    const short childCounts[] = {2, 0, 1};
    const unsigned64 children[] = {9, 10, 11};
    writer.setChildFaceCountsForFacesInRange(4, 6, childCounts, 3);
    writer.setChildFaceIdsForFacesInRange(4, 6, children, 3);
    const unsigned64 cellFaces[] = {1, 2, 4, 6, 8, 10, 1, 3, 5, 7, 9, 11};
    writer.setUniformFaceCountForCellsInZone(21, 6);
    writer.setFaceIdsForCellsInZone(21, cellFaces, 12);
    const int partitions[] = {1, 0};
    writer.startWritingPartitionIdsForCells({21}, 2);
    writer.setPartitionIdsForCellsInZone(21, partitions, 2);
    writer.setChildCellCountForCell(1, 1);
    const unsigned64 child = 2;
    writer.setChildCellIdsForCell(1, &child, 1);
    const float share0[] = {0.25f, 0.75f};
    const float share1[] = {1};
    const unsigned64 face0[] = {2};
    const unsigned64 face1[] = {3, 4, 5};
    writer.startWritingInterfaceDataForFaces({11}, {12, 11});
    writer.setInterfaceDataForFacesInZone(12, share0, 2, share1, 1, face0, 1, face1, 3);
    const std::vector<unsigned64> local{101, 102};
    writer.setLocalElemIdsInZone(21, local.data(), 2);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "f.case.kel", KEL_CASE)) << reader.errors();
    std::vector<unsigned64> ids(12);
    EXPECT_EQ(reader.getNodeIdsForEdgesInRange(2, 3, ids.data(), 12), 4u);
    EXPECT_EQ(ids[3], 6u);
    EXPECT_EQ(reader.getNodeCountForEdge(2), 2);
    EXPECT_EQ(reader.getShadowFaceIdForFace(2), 3u);
    EXPECT_EQ(reader.getShadowFaceIdsForFacesInZone(11, ids.data(), 12), 0u);
    EXPECT_EQ(reader.getChildFaceCountForFace(6), 1);
    EXPECT_EQ(reader.getChildFaceIdsForFace(4, ids.data(), 12), 2u);
    EXPECT_EQ(ids[1], 10u);
    EXPECT_EQ(reader.getChildFaceIdsForFace(7, ids.data(), 12), 0u);
    EXPECT_EQ(reader.getFaceCountForCell(1), 6);
    EXPECT_EQ(reader.getNodeCountForCell(1), 0);
    short count = 0;
    EXPECT_TRUE(reader.hasUniformFaceCountForCellsInZone(21, &count));
    EXPECT_EQ(reader.getFaceIdsForCell(2, ids.data(), 12), 6u);
    EXPECT_EQ(ids[5], 11u);
    EXPECT_EQ(reader.getPartitionIdForCell(1), 1);
    EXPECT_EQ(reader.getPartitionCountOfCells(), 2);
    EXPECT_EQ(reader.getChildCellCountForCell(1), 1);
    EXPECT_EQ(reader.getChildCellIdsForCell(1, ids.data(), 12), 1u);
    std::vector<int> zones0;
    std::vector<int> zones1;
    reader.startReadingInterfaceDataForFaces(zones0, zones1);
    EXPECT_EQ(zones0, std::vector<int>{11});
    EXPECT_EQ(zones1, (std::vector<int>{12, 11}));
    unsigned64 na = 0;
    unsigned64 nb = 0;
    unsigned64 n0 = 0;
    unsigned64 n1 = 0;
    EXPECT_FALSE(reader.getInterfaceDataSizesForFacesInZone(11, na, nb, n0, n1));
    ASSERT_TRUE(reader.getInterfaceDataSizesForFacesInZone(12, na, nb, n0, n1));
    EXPECT_EQ((std::vector<unsigned64>{na, nb, n0, n1}), (std::vector<unsigned64>{2, 1, 1, 3}));
    double a[2] = {};
    double b[1] = {};
    EXPECT_EQ(reader.getInterfaceDataForFacesInZone(12, a, 2, b, 1, ids.data(), 1, ids.data() + 1, 3), 7u);
    EXPECT_EQ(a[1], 0.75);
    EXPECT_EQ(ids[3], 5u);
    EXPECT_EQ(reader.getLocalElemIdsInZone(21, ids.data(), 12), 2u);
    EXPECT_EQ(ids[1], 102u);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Case, SparseIdsBeyond32BitsComeBack)
{
    const Folder folder;
    const unsigned64 far = 1ULL << 40;
    Writer writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 1);
    writer.setZoneIds(KEL_NODE_ZONE, {2, 1});
    writer.zone(KEL_NODE_ZONE, 2, far, far + 3);
    writer.zone(KEL_NODE_ZONE, 1, 10, 11);
    writer.setZoneIds(KEL_FACE_ZONE, {5});
    writer.zone(KEL_FACE_ZONE, 5, 1, 2);
    ASSERT_TRUE(writer.startWriting(folder / "s.case.kel", KEL_CASE));
    const double x[] = {1, 2, 3, 4};
    writer.setCoordinatesForNodesInZone(2, x, 4);
    writer.setCoordinatesForNodesInZone(1, x, 2);
    const unsigned64 nodes[] = {10, far + 3, far, 11};
    writer.setUniformNodeCountForFacesInZone(5, 2);
    writer.setNodeIdsForFacesInZone(5, nodes, 4);
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    EXPECT_LT(std::filesystem::file_size(folder / "s.case.kel"), 100000u);

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "s.case.kel", KEL_CASE)) << reader.errors();
    double value = 0;
    EXPECT_EQ(reader.getCoordinatesForNode(far + 2, &value, 1), 1u);
    EXPECT_EQ(value, 3);
    unsigned64 ids[4] = {};
    EXPECT_EQ(reader.getNodeIdsForFacesInZone(5, ids, 4), 4u);
    EXPECT_EQ(ids[1], far + 3);
    EXPECT_EQ(reader.getCoordinatesForNode(12, &value, 1), 0u);
    EXPECT_NE(reader.errors().find("s.case.kel"), std::string::npos);
}

TEST(Case, SectionsOfTheCaseComeBack)
{
    const Folder folder;
    Writer writer;
    TwoCells::declare(writer);
    ASSERT_TRUE(writer.startWriting(folder / "c.case.kel", KEL_CASE));
    writer.startWritingCaseSectionCategories(KEL_FACE_ZONE, {"rough", "motion", "empty"});
    const signed64 motion[] = {1, -1, 1LL << 60, 3};
    writer.startWritingCaseSectionDataForCategory("motion", {11}, KEL_PLAIN_LONG, 4);
    writer.setCaseSectionDataForElementsInZone(11, motion, 4);
    writer.endWritingCaseSectionDataForCategory();
    std::vector<float> rough(11, 0.5f);
    rough[10] = 0.25f;
    writer.startWritingCaseSectionDataForCategory("rough", {12}, KEL_PLAIN_FLOAT, 1);
    writer.setCaseSectionDataForElementsInRange(2, 6, rough.data() + 1, 5);
    writer.setCaseSectionDataForElementsInRange(7, 11, rough.data() + 6, 5);
    writer.startWritingCaseSectionDataForCategory("rough", {11}, KEL_PLAIN_FLOAT, 1);
    writer.setCaseSectionDataForElementsInZone(11, rough.data(), 1);
    writer.endWritingCaseSectionCategories();
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "c.case.kel", KEL_CASE));
    std::vector<std::string> names;
    reader.startReadingCaseSectionCategories(KEL_CELL_ZONE, names);
    EXPECT_TRUE(names.empty());
    reader.startReadingCaseSectionCategories(KEL_FACE_ZONE, names);
    EXPECT_EQ(names, (std::vector<std::string>{"rough", "motion", "empty"}));
    std::vector<int> zones{99};
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("none", zones), -1);
    EXPECT_EQ(zones, std::vector<int>{99});
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("motion", zones), KEL_PLAIN_LONG);
    EXPECT_EQ(zones, std::vector<int>{11});
    unsigned64 count = 0;
    EXPECT_TRUE(reader.hasUniformCaseSectionDataCountForZone(11, &count));
    EXPECT_EQ(count, 4u);
    EXPECT_FALSE(reader.hasUniformCaseSectionDataCountForZone(12, &count));
    signed64 values[4] = {};
    EXPECT_EQ(reader.getCaseSectionDataForElementsInZone(11, values, 4), 4u);
    EXPECT_EQ(values[2], 1LL << 60);
    EXPECT_EQ(reader.startReadingCaseSectionForCategory("rough", zones), KEL_PLAIN_FLOAT);
    EXPECT_EQ(zones, (std::vector<int>{12, 11}));
    std::vector<float> back(11);
    EXPECT_EQ(reader.getCaseSectionDataForElementsInRange(1, 11, back.data(), 11), 11u);
    EXPECT_EQ(back, rough);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Case, SettingsLogAndLocationsComeBack)
{
    const Folder folder;
    Writer writer;
    writer.setSolverType("SOLVER");
    writer.setApplicationName("App");
    KelLocationModel model;
    int part = 0;
    int body = 0;
    model.createPart(3, "pump", part);
    model.createBody(part, "rotor", body);
    ASSERT_TRUE(writer.startWriting(folder / "t.case.kel", KEL_CASE));
    writer.setLocationModel(&model);
    EXPECT_EQ(writer.getLastLogIndex(KEL_CASE), -1);
    writer.log({{"title", "text"}, {"", std::string("\0\xff", 2)}}, KEL_CASE);
    writer.log({{"third", ""}}, KEL_CASE);
    EXPECT_EQ(writer.getLastLogIndex(KEL_CASE), 2);
    const std::string large(200000, 'x');
    writer.writeSettingStrings({{"b", large}, {"a", ""}, {"", "no key"}, {"Solver", "old"}}, KEL_CASE, "settings");
    writer.writeSettingStrings({{"k/%\xff", "v\nw"}}, KEL_CASE, "group/sub");
    EXPECT_TRUE(writer.addStringAttribute("section", "group", "name", "value"));
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "t.case.kel", KEL_CASE)) << reader.errors();
    std::vector<std::string> keys;
    reader.getSettingsKeys(KEL_CASE, keys);
    EXPECT_EQ(keys, (std::vector<std::string>{"b", "a", "", "Solver", "Version", "Origin"}));
    std::string text = "left alone";
    reader.getSettingString(KEL_CASE, "missing", text, "settings");
    EXPECT_EQ(text, "left alone");
    reader.getSettingString(KEL_CASE, "b", text, "settings");
    EXPECT_EQ(text, large);
    reader.getSettingString(KEL_CASE, "Solver", text, "settings");
    EXPECT_EQ(text, "SOLVER");
    reader.getSettingString(KEL_CASE, "a", text, "settings");
    EXPECT_EQ(text, "");
    reader.getSettingString(KEL_CASE, "k/%\xff", text, "group/sub");
    EXPECT_EQ(text, "v\nw");
    std::vector<std::string> groups;
    reader.getSettingsGroups(KEL_CASE, groups);
    EXPECT_EQ(groups, (std::vector<std::string>{"settings", "group/sub", "section/group"}));
    reader.getSettingsKeysOfGroup(KEL_CASE, "section/group", keys);
    EXPECT_EQ(keys, std::vector<std::string>{"name"});
    std::vector<std::pair<std::string, std::string>> log;
    reader.getLog(KEL_CASE, log);
    ASSERT_EQ(log.size(), 3u);
    EXPECT_EQ(log[1].second, std::string("\0\xff", 2));
    int found = 0;
    EXPECT_TRUE(reader.getLocationModel()->findPart("pump", found));
    std::string version;
    EXPECT_TRUE(reader.getFileVersion(KEL_CASE, version));
    EXPECT_EQ(version, "25.1.0");
    EXPECT_EQ(reader.errors(), "");
}

TEST(Case, SettingsCanBeLeftOut)
{
    const Folder folder;
    Writer writer;
    writer.setWriteSettingsOn(false);
    ASSERT_TRUE(writer.startWriting(folder / "n.case.kel", KEL_CASE));
    ASSERT_TRUE(writer.endWriting(KEL_CASE));
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "n.case.kel", KEL_CASE));
    std::vector<std::string> groups{"x"};
    reader.getSettingsGroups(KEL_CASE, groups);
    EXPECT_TRUE(groups.empty());
}

TEST(Case, SeveralMeshesLiveInOneFile)
{
    const Folder folder;
    const std::string path = folder / "m.case.kel";
    struct {
        int mesh, target, partition;
        unsigned64 nodes;
    } const meshes[] = {{4, 0, -1, 3}, {4, KEL_PARTITIONED_POST, 0, 4}, {4, KEL_PARTITIONED_POST, 7, 5}, {9, 0, -1, 6}};
    for (const auto& mesh : meshes) {
        Writer writer;
        writer.setAppendOn(true);
        writer.context(mesh.mesh, mesh.target, mesh.partition);
        writer.setMeshSize(KEL_MESH_DIMENSION, 1);
        writer.setZoneIds(mesh.mesh == 9 ? KEL_EDGE_ZONE : KEL_NODE_ZONE, {1});
        writer.zone(KEL_NODE_ZONE, 1, 1, mesh.nodes);
        if (mesh.mesh == 9)
            writer.setMeshSize(KEL_MESH_SIZE_1, mesh.nodes);
        ASSERT_TRUE(writer.startWriting(path, KEL_CASE)) << writer.errors();
        const std::vector<double> x(mesh.nodes, static_cast<double>(mesh.nodes));
        writer.setCoordinatesForNodesInRange(1, mesh.nodes, x.data(), mesh.nodes);
        ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    }
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_CASE)) << reader.errors();
    EXPECT_EQ(reader.availableMeshIds(KEL_CASE), (std::vector<int>{4, 9}));
    EXPECT_EQ(reader.availableTargets(4, KEL_CASE),
              (std::vector<KelTargetCategory>{KEL_DEFAULT_TARGET, KEL_PARTITIONED_POST}));
    EXPECT_EQ(reader.availablePartitionIds(4, KEL_CASE), (std::vector<int>{0, 7}));
    EXPECT_EQ(reader.availablePartitionIds(9, KEL_CASE), std::vector<int>());
    EXPECT_EQ(reader.getMeshId(), 4);
    const auto nodesNow = [&reader] {
        std::vector<double> x(10);
        return reader.getCoordinatesForNodesInRange(1, 3, x.data(), 10) == 3 ? x[0] : -1;
    };
    EXPECT_EQ(nodesNow(), 3);
    reader.setTarget(KEL_PARTITIONED_POST); // false: there is no data file to reload
    EXPECT_EQ(nodesNow(), 4);
    reader.setPartitionId(7);
    EXPECT_EQ(nodesNow(), 5);
    EXPECT_EQ(reader.getPartitionId(), 7);
    EXPECT_TRUE(reader.setMeshContext(9, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_CASE));
    EXPECT_EQ(nodesNow(), 6);
    EXPECT_EQ(reader.getNumZones(KEL_EDGE_ZONE), 1u);
    EXPECT_EQ(reader.errors(), "");
    EXPECT_FALSE(reader.setMeshContext(5, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_CASE));
    EXPECT_NE(reader.errors(), "");
    unsigned64 dimension = 7;
    reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    EXPECT_EQ(dimension, 0u);
    EXPECT_TRUE(reader.setMeshContext(4, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_CASE));
    EXPECT_EQ(nodesNow(), 3);

    Reader chosen;
    chosen.setMeshContext(9, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_NONE);
    ASSERT_TRUE(chosen.startReading(path, KEL_CASE));
    EXPECT_EQ(chosen.getMeshId(), 9);
    Reader missing;
    missing.setMeshContext(6, KEL_DEFAULT_TARGET, -1, KelBase::KEL_UPDATE_NONE);
    EXPECT_FALSE(missing.startReading(path, KEL_CASE));
}

TEST(Case, TenThousandZonesAreOneTable)
{
    const Folder folder;
    Writer writer;
    const unsigned64 n = 10000;
    std::vector<int> ids;
    for (int id = 1; id <= static_cast<int>(n); ++id)
        ids.push_back(id);
    writer.setZoneIds(KEL_CELL_ZONE, ids);
    for (const int id : ids) {
        writer.zone(KEL_CELL_ZONE, id, static_cast<unsigned64>(id), static_cast<unsigned64>(id));
        writer.setZoneStringInfo(id, KEL_ZONE_STRING_0, "zone-" + std::to_string(id));
    }
    ASSERT_TRUE(writer.startWriting(folder / "y.case.kel", KEL_CASE));
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();
    EXPECT_LT(std::filesystem::file_size(folder / "y.case.kel"), 2000000u);
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "y.case.kel", KEL_CASE));
    EXPECT_EQ(reader.getNumZones(KEL_CELL_ZONE), n);
    std::string name;
    reader.getZoneStringInfo(9999, KEL_ZONE_STRING_0, name);
    EXPECT_EQ(name, "zone-9999");
}
