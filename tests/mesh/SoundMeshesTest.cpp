// Meshes that look odd and are sound: nothing may be said against them.
#include "KelMeshCheck.h"
#include "TestMesh.h"

#include <gtest/gtest.h>

using namespace meridyn;

namespace {

struct Sound {
    const char* name;
    TestMesh (*make)();
};

void PrintTo(const Sound& sound, std::ostream* out)
{
    *out << sound.name;
}

TestMesh merged(const char* text, const std::vector<unsigned64>& group)
{
    TestMesh mesh = TestMesh::box(text);
    mesh.merge(group);
    return mesh;
}

TestMesh byNodes(const char* text)
{
    TestMesh mesh = TestMesh::box(text);
    mesh.dropFaces();
    return mesh;
}

/// A prism whose edge lies on an axis, as an axisymmetric mesh has it there.
TestMesh wedge()
{
    TestMesh mesh;
    mesh.nodes = {{}, {0, 0, 0}, {1, -0.04, 0}, {1, 0.04, 0}, {0, 0, 1}, {1, -0.04, 1}, {1, 0.04, 1}};
    TestMesh::Cell cell;
    cell.type = KEL_CELL_PRISM;
    cell.nodes = {1, 2, 3, 4, 5, 6};
    mesh.cells.push_back(cell);
    for (const std::vector<unsigned64>& nodes :
         {std::vector<unsigned64>{1, 3, 2}, {4, 5, 6}, {1, 2, 5, 4}, {2, 3, 6, 5}, {3, 1, 4, 6}})
        mesh.faces.push_back({nodes, 1, 0, 0, {}});
    mesh.zones = {{1, KEL_NODE_ZONE, 1, 6, -1},
                  {3, KEL_FACE_ZONE, 1, 5, KEL_FACE_ZONE_TYPE_SYMMETRY},
                  {10, KEL_CELL_ZONE, 1, 1, -1}};
    return mesh;
}

// box:3x3x1 has the cells i + 3 j + 1, box:3x3x3 the cells i + 3 j + 9 k + 1.
const Sound sounds[] = {
    {"Hexahedra", [] { return TestMesh::box("box:3x2x2"); }},
    {"Polyhedra", [] { return TestMesh::box("box:3x3x3 cells:poly"); }},
    {"Refined", [] { return TestMesh::box("box:3x3x4 hanging"); }},
    {"Periodic", [] { return TestMesh::box("box:3x2x2 periodic"); }},
    {"SeveralZones", [] { return TestMesh::box("box:3x2x4 zones:4"); }},
    {"LAtTheBoundary",
     [] {
         return merged("box:3x3x1", {1, 2, 4});
     }},
    {"LongL",
     [] {
         return merged("box:6x6x1", {1, 2, 3, 4, 5, 6, 7, 13, 19, 25, 31});
     }},
    {"UAtTheBoundary",
     [] {
         return merged("box:3x3x1", {1, 4, 7, 8, 9, 6, 3});
     }},
    {"DeepU",
     [] {
         return merged("box:3x8x1", {1, 4, 7, 10, 13, 16, 19, 22, 23, 24, 21, 18, 15, 12, 9, 6, 3});
     }},
    {"RingAtTheBoundary",
     [] {
         return merged("box:3x3x1", {1, 2, 3, 4, 6, 7, 8, 9});
     }},
    {"RingOfTheWholeBox",
     [] {
         return merged("box:3x3x3", {1, 2, 3, 4, 6, 7, 8, 9});
     }},
    {"ShellAroundACell",
     [] {
         std::vector<unsigned64> shell;
         for (unsigned64 id = 1; id <= 27; ++id)
             if (id != 14)
                 shell.push_back(id);
         return merged("box:3x3x3", shell);
     }},
    {"CellsThatTouchAtAnEdge",
     [] {
         return merged("box:2x2x1", {1, 4});
     }},
    {"Agglomerated",
     [] {
         return merged("box:4x4x4 cells:tet", {1, 2, 3, 7, 8, 9, 30, 31, 40, 41});
     }},
    {"ThinCells", [] { return TestMesh::box("box:3x3x3 size:1x1x1e-7"); }},
    {"SmallCellsFarAway",
     [] {
         TestMesh mesh = TestMesh::box("box:3x3x3 size:0.001x0.001x0.001");
         for (unsigned64 id = 1; id < mesh.nodes.size(); ++id)
             mesh.move(id, 1000.0, -2000.0, 500.0);
         return mesh;
     }},
    {"TinyMesh", [] { return TestMesh::box("box:2x2x2 size:1e-12x1e-12x1e-12"); }},
    {"HugeMesh", [] { return TestMesh::box("box:2x2x2 size:1e12x1e12x1e12"); }},
    {"WarpedFaces",
     [] {
         TestMesh mesh = TestMesh::box("box:3x3x3");
         for (unsigned64 id = 1; id < mesh.nodes.size(); ++id)
             mesh.move(id, 0.04 * static_cast<double>(id * 7 % 5), 0.03 * static_cast<double>(id * 11 % 7),
                       0.05 * static_cast<double>(id * 3 % 4));
         return mesh;
     }},
    {"Plane", [] { return TestMesh::plane(4, 3); }},
    {"PlaneByNodes",
     [] {
         TestMesh mesh = TestMesh::plane(4, 3);
         mesh.dropFaces();
         return mesh;
     }},
    {"Wedge", [] { return wedge(); }},
    {"HexahedraByNodes", [] { return byNodes("box:3x2x2"); }},
    {"TetrahedraByNodes", [] { return byNodes("box:2x2x2 cells:tet"); }},
    {"PrismsByNodes", [] { return byNodes("box:2x2x2 cells:prism"); }},
    {"PyramidsByNodes", [] { return byNodes("box:2x2x2 cells:pyramid"); }},
    {"ByNodesWithoutTypes",
     [] {
         TestMesh mesh = byNodes("box:2x2x2 cells:prism");
         mesh.hasTypes = false;
         return mesh;
     }},
    {"ByNodesWithBoundaryFaces",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.hasFaceCells = false;
         return mesh;
     }},
    {"GapInNodeIds",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.shift(KEL_NODE_ZONE, 1000);
         return mesh;
     }},
    {"GapInCellIds",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.shift(KEL_CELL_ZONE, 500);
         return mesh;
     }},
    {"GapInFaceIds",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2 periodic");
         mesh.shift(KEL_FACE_ZONE, 77);
         return mesh;
     }},
    {"GapBetweenBodiesWithTheNumberStated",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.append(TestMesh::box("box:2x2x2"), 3.0, 0.0, 0.0);
         mesh.sizes = {54, 0, 72, 16};
         return mesh;
     }},
    {"SizesStated",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.sizes = {27, 54, 36, 8};
         return mesh;
     }},
    {"FaceLists",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.listFaces();
         return mesh;
     }},
    {"PartitionsFromZero",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.hasPartitions = true;
         mesh.partitions = 2;
         mesh.cells[8].partition = 1;
         return mesh;
     }},
    {"PartitionsFromOne",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.hasPartitions = true;
         mesh.partitions = 2;
         for (TestMesh::Cell& cell : mesh.cells)
             cell.partition = 1;
         mesh.cells[8].partition = 2;
         return mesh;
     }},
    {"ThinWallWithAZoneOnEachSide",
     [] {
         TestMesh mesh = TestMesh::box("box:2x1x1");
         mesh.split(1, 8, false);
         const TestMesh::Face other = mesh.faces.back();
         mesh.removeFace(mesh.faces.size() - 1);
         mesh.addFace(other, 20);
         return mesh;
     }},
    {"ThinWallInOneZone",
     [] {
         TestMesh mesh = TestMesh::box("box:2x1x1");
         mesh.split(1, 8, false);
         return mesh;
     }},
    {"ThinWallWithNodesOfItsOwn",
     [] {
         TestMesh mesh = TestMesh::box("box:2x1x1");
         mesh.split(1, 8, true);
         return mesh;
     }},
    {"InterfaceOfTwoBodies",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.append(TestMesh::box("box:2x2x2"), 1.0, 0.0, 0.0);
         mesh.zone(4).kind = mesh.zone(103).kind = KEL_FACE_ZONE_TYPE_INTERFACE;
         return mesh;
     }},
    {"InterfaceThatIsDividedDifferently",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.append(TestMesh::box("box:3x3x3"), 1.0, 0.0, 0.0);
         mesh.zone(4).kind = mesh.zone(103).kind = KEL_FACE_ZONE_TYPE_INTERFACE;
         return mesh;
     }},
    {"NodesOnly",
     [] {
         TestMesh mesh;
         mesh.nodes = {{}, {0, 0, 0}, {1, 0, 0}};
         mesh.zones = {{1, KEL_NODE_ZONE, 1, 2, -1}};
         return mesh;
     }},
    {"SetsOfElements",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.sets["hot"] = {KEL_CELL_ZONE, {1, 8}};
         mesh.sets["none"] = {KEL_FACE_ZONE, {}};
         return mesh;
     }},
    {"CellsReplacedByOthers",
     [] {
         TestMesh mesh = TestMesh::box("box:2x2x2");
         mesh.cells.emplace_back();
         mesh.cells.back().type = KEL_CELL_POLYHEDRON;
         mesh.cells.back().children = {1, 2};
         mesh.zone(10).last = 9;
         return mesh;
     }},
};

std::string allOf(const KelMeshReport& report)
{
    std::string text;
    for (const KelMeshRule rule : meshRules())
        for (const KelMeshFinding& finding : report.outcome(rule).named)
            text += std::string(textOf(rule).key) + ": " + finding.text + "\n";
    for (const KelMeshUnseen& unseen : report.unseen())
        text += "unseen: " + unseen.text + "\n";
    return text;
}

} // namespace

class SoundMeshes : public ::testing::TestWithParam<Sound> {};

TEST_P(SoundMeshes, AreGood)
{
    TestMesh mesh = GetParam().make();
    mesh.open();
    KelMeshCheck check(mesh);
    ASSERT_TRUE(check.run()) << check.problem();
    EXPECT_EQ(check.report().verdict(), KelMeshVerdict::Good) << allOf(check.report());
}

INSTANTIATE_TEST_SUITE_P(KelMeshCheck, SoundMeshes, ::testing::ValuesIn(sounds),
                         [](const auto& sound) { return sound.param.name; });

// ---- what cannot be looked at -------------------------------------------------------------------------------------

namespace {

/// What a check could not look at, of a mesh with no fault otherwise.
std::string unseenOf(TestMesh mesh)
{
    mesh.open();
    KelMeshCheck check(mesh);
    EXPECT_TRUE(check.run()) << check.problem();
    EXPECT_EQ(check.report().verdict(), KelMeshVerdict::NotAllSeen) << allOf(check.report());
    return allOf(check.report());
}

} // namespace

TEST(UnseenParts, OfCellsWithoutNodesAndFaces)
{
    TestMesh mesh = TestMesh::box("box:2x2x2 cells:poly");
    mesh.dropFaces();
    EXPECT_EQ(unseenOf(mesh), "unseen: 8 cells without nodes and faces\n");
}

TEST(UnseenParts, OfPolyhedraThatHaveNodesOnly)
{
    TestMesh mesh = TestMesh::box("box:2x2x2");
    mesh.dropFaces();
    mesh.cells[3].type = KEL_CELL_POLYHEDRON;
    EXPECT_EQ(unseenOf(mesh), "unseen: 1 cell whose shape needs faces, and that have none\n");
}

TEST(UnseenParts, OfFacesWithoutNodes)
{
    TestMesh mesh = TestMesh::box("box:2x2x2");
    mesh.faces.resize(1);
    EXPECT_EQ(unseenOf(mesh).substr(0, 44), "unseen: 12 faces of zone 2 without nodes\nuns");
}
