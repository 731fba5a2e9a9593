// Small sound meshes that are changed in one thing, and the rule that has to notice.
#include "KelMeshCheck.h"
#include "TestMesh.h"

#include <gtest/gtest.h>
#include <limits>

using namespace meridyn;

namespace {

struct Defect {
    const char* name;
    TestMesh (*start)();
    void (*change)(TestMesh& mesh);
    KelMeshRule rule;
    const char* text; ///< the first finding; empty where its words do not matter
};

void PrintTo(const Defect& defect, std::ostream* out)
{
    *out << defect.name;
}

// box:2x2x2 has the nodes i + 3 j + 9 k + 1, so that 14 is the one in the middle, the cells i + 2 j + 4 k + 1 in zone
// 10, and 36 faces: 1 to 12 inside (zone 2), then four in each of the zones 3 to 8. Face 1 lies between the cells 1 and
// 2, face 13 is on the outside of cell 1.
TestMesh hexahedra()
{
    return TestMesh::box("box:2x2x2");
}

TestMesh periodic()
{
    return TestMesh::box("box:2x2x2 periodic");
}

TestMesh refined()
{
    return TestMesh::box("box:2x2x2 hanging");
}

TestMesh polyhedra()
{
    return TestMesh::box("box:2x2x2 cells:poly");
}

TestMesh squares()
{
    return TestMesh::plane(2, 2);
}

template <int shape>
TestMesh byNodes()
{
    static const char* const texts[] = {"box:2x2x2", "box:2x2x2 cells:tet", "box:2x2x2 cells:prism",
                                        "box:2x2x2 cells:pyramid"};
    TestMesh mesh = TestMesh::box(texts[shape]);
    mesh.dropFaces();
    return mesh;
}

TestMesh oneByNodes()
{
    TestMesh mesh = TestMesh::box("box:1x1x1");
    mesh.dropFaces();
    return mesh;
}

TestMesh squaresByNodes()
{
    TestMesh mesh = TestMesh::plane(2, 2);
    mesh.dropFaces();
    return mesh;
}

/// Cells by their nodes, and the boundary as faces without cells.
TestMesh facesByNodes()
{
    TestMesh mesh = TestMesh::box("box:2x2x2");
    mesh.hasFaceCells = false;
    return mesh;
}

using Rule = KelMeshRule;
using Mesh = TestMesh;

const Defect defects[] = {
    // ---- zones and nodes
    {"ZoneTwiceOverAFace", hexahedra, [](Mesh& m) { m.zone(3).first = 12; }, Rule::Zones, ""},
    {"ZoneThatEndsBeforeItBegins", hexahedra, [](Mesh& m) { m.zones.push_back({20, KEL_NODE_ZONE, 9, 3, -1}); },
     Rule::Zones, "nodes: zone 20 has the ids 9 to 3"},
    {"MoreCellsThanStated", hexahedra, [](Mesh& m) { m.sizes = {27, 0, 36, 7}; }, Rule::Zones,
     "cells: zone 10 ends at 8, but the mesh is said to have 7 cells"},
    {"FewerNodesThanStated", hexahedra, [](Mesh& m) { m.sizes = {28, 0, 36, 8}; }, Rule::Zones,
     "nodes: the zones hold 27, but the mesh is said to have 28"},
    {"CoordinateNan", hexahedra, [](Mesh& m) { m.nodes[14][1] = std::numeric_limits<double>::quiet_NaN(); },
     Rule::Coordinates, "node 14"},
    {"CoordinateInfinite", byNodes<0>, [](Mesh& m) { m.nodes[14][0] = std::numeric_limits<double>::infinity(); },
     Rule::Coordinates, "node 14"},
    {"NodeOfNothing", hexahedra, [](Mesh& m) { m.copyNode(1); }, Rule::UsedNodes, "node 28"},
    {"NodeOfNothingByNodes", byNodes<1>, [](Mesh& m) { m.copyNode(1); }, Rule::UsedNodes, "node 28"},
    // ---- edges
    {"EdgeNodeBeyond", hexahedra,
     [](Mesh& m) {
         m.edges.push_back({1, 28});
         m.zones.push_back({20, KEL_EDGE_ZONE, 1, 1, -1});
     },
     Rule::Ids, "edge 1 of zone 20 names node 28 of 27"},
    {"EdgeOfOneNodeTwice", hexahedra,
     [](Mesh& m) {
         m.edges.push_back({5, 5});
         m.zones.push_back({20, KEL_EDGE_ZONE, 1, 1, -1});
     },
     Rule::EdgeNodes, "edge 1 of zone 20 has a node twice"},
    // ---- ids of faces
    {"FaceNodeBeyond", hexahedra, [](Mesh& m) { m.faces[1].nodes[0] = 28; }, Rule::Ids,
     "face 1 of zone 2 names node 28 of 27"},
    {"FaceNodeInAGap", hexahedra,
     [](Mesh& m) {
         m.shift(KEL_NODE_ZONE, 10);
         m.faces[1].nodes[0] = 7;
     },
     Rule::Ids, "face 1 of zone 2 names node 7 of 27"},
    {"FaceCell0Beyond", hexahedra, [](Mesh& m) { m.faces[13].cell0 = 9; }, Rule::Ids,
     "face 13 of zone 3 names cell 9 of 8 on side 0"},
    {"FaceCell1Beyond", hexahedra, [](Mesh& m) { m.faces[1].cell1 = 9; }, Rule::Ids,
     "face 1 of zone 2 names cell 9 of 8 on side 1"},
    {"FaceWithoutCell0", hexahedra, [](Mesh& m) { m.faces[13].cell0 = 0; }, Rule::Ids,
     "face 13 of zone 3 names cell 0 of 8 on side 0"},
    // ---- nodes and shapes of faces
    {"FaceOfTwoNodes", hexahedra, [](Mesh& m) { m.faces[1].nodes.resize(2); }, Rule::FaceNodes,
     "face 1 of zone 2 has 2 nodes"},
    {"FaceNodeTwice", hexahedra, [](Mesh& m) { m.faces[1].nodes.push_back(m.faces[1].nodes[0]); }, Rule::FaceNodes, ""},
    {"FaceNodeTwiceApart", hexahedra,
     [](Mesh& m) { m.faces[1].nodes.insert(m.faces[1].nodes.begin() + 2, m.faces[1].nodes[0]); }, Rule::FaceNodes, ""},
    {"LineOfOneNode", squares, [](Mesh& m) { m.faces[1].nodes[1] = m.faces[1].nodes[0]; }, Rule::FaceNodes, ""},
    {"FaceWithASpike", hexahedra,
     [](Mesh& m) {
         const auto& nodes = m.faces[13].nodes;
         const unsigned64 tip = m.copyNode(nodes[1]), back = m.copyNode(nodes[1]);
         m.move(tip, -1.0, 0.0, 0.0);
         m.move(back, -0.5, 0.0, 0.0);
         m.faces[13].nodes.insert(m.faces[13].nodes.begin() + 2, {tip, back});
     },
     Rule::FaceShapes, ""},
    {"FaceWithAnEdgeOfNoLength", hexahedra,
     [](Mesh& m) {
         const unsigned64 twin = m.copyNode(m.faces[13].nodes[1]);
         m.faces[13].nodes.insert(m.faces[13].nodes.begin() + 2, twin);
     },
     Rule::FaceShapes, "face 13 of zone 3 has a spike or an edge of no length"},
    {"FaceWithoutArea", hexahedra,
     [](Mesh& m) {
         for (const unsigned64 node : m.faces[13].nodes)
             m.nodes[node][2] = 0.0;
     },
     Rule::FaceShapes, ""},
    {"LineWithoutLength", squares, [](Mesh& m) { m.nodes[1] = m.nodes[2]; }, Rule::FaceShapes, ""},
    // ---- cells of faces
    {"InnerFaceWithoutCell1", hexahedra, [](Mesh& m) { m.faces[1].cell1 = 0; }, Rule::FaceCells,
     "face 1 of zone 2 has no cell 1"},
    {"OneCellOnBothSides", hexahedra, [](Mesh& m) { m.faces[1].cell1 = 1; }, Rule::FaceCells,
     "face 1 of zone 2 has cell 1 on both sides"},
    {"WallWithACell1", hexahedra, [](Mesh& m) { m.faces[13].cell1 = 2; }, Rule::FaceCells,
     "face 13 of zone 3 is on a boundary, but has cell 1 2"},
    {"InteriorZoneTypedWall", hexahedra, [](Mesh& m) { m.zone(2).kind = KEL_FACE_ZONE_TYPE_WALL; }, Rule::FaceCells,
     "face 1 of zone 2 is on a boundary, but has cell 1 2"},
    {"InteriorZoneTypedInlet", hexahedra, [](Mesh& m) { m.zone(2).kind = KEL_FACE_ZONE_TYPE_INLET; }, Rule::FaceCells,
     ""},
    {"WallTypedInterior", hexahedra, [](Mesh& m) { m.zone(3).kind = KEL_FACE_ZONE_TYPE_INTERIOR; }, Rule::FaceCells,
     "face 13 of zone 3 has no cell 1"},
    {"FaceThatIsNoSide", facesByNodes, [](Mesh& m) { std::swap(m.faces[13].nodes[0], m.faces[13].nodes[1]); },
     Rule::FaceCells, "face 13 of zone 3 is no side of a cell"},
    {"FaceGivenTwiceByNodes", facesByNodes, [](Mesh& m) { m.faces[14].nodes = m.faces[13].nodes; }, Rule::FaceCells,
     "face 14 of zone 3 is the same side as face 13"},
    // ---- shadow faces
    {"ShadowBeyond", periodic, [](Mesh& m) { m.faces[13].shadow = 37; }, Rule::Shadows,
     "face 13 has the shadow face 37, which does not exist"},
    {"ShadowOfItself", periodic, [](Mesh& m) { m.faces[13].shadow = 13; }, Rule::Shadows,
     "face 13 is its own shadow face"},
    {"ShadowNotMutual", periodic, [](Mesh& m) { m.faces[13].shadow = 18; }, Rule::Shadows,
     "face 13 has the shadow face 18, which has the shadow face 14"},
    {"ShadowOfOneSideOnly", periodic, [](Mesh& m) { m.faces[17].shadow = 0; }, Rule::Shadows, ""},
    {"ShadowInAWall", periodic, [](Mesh& m) { m.faces[13].shadow = 30; }, Rule::Shadows,
     "face 13 has the shadow face 30, which has none"},
    // ---- children
    {"ChildFaceBeyond", refined, [](Mesh& m) { m.faces.back().children[0] = 900; }, Rule::ChildFaces, ""},
    {"ChildFaceOfItself", refined, [](Mesh& m) { m.faces.back().children[0] = m.faces.size() - 1; }, Rule::ChildFaces,
     ""},
    {"ChildFaceOfTwoParents", refined,
     [](Mesh& m) { m.faces.back().children[0] = m.faces[m.faces.size() - 2].children[0]; }, Rule::ChildFaces, ""},
    {"ChildCellBeyond", hexahedra, [](Mesh& m) { m.cells[1].children = {9}; }, Rule::ChildCells,
     "cell 1 of zone 10 has the child cell 9, which does not exist"},
    {"ChildCellOfItself", hexahedra, [](Mesh& m) { m.cells[1].children = {1}; }, Rule::ChildCells,
     "cell 1 of zone 10 is its own child"},
    {"ChildCellOfTwoParents", hexahedra,
     [](Mesh& m) {
         m.cells[1].children = {3};
         m.cells[2].children = {3};
     },
     Rule::ChildCells, "cell 2 of zone 10 has the child cell 3, which is a child of cell 1 as well"},
    {"ChildCellsInACircle", hexahedra,
     [](Mesh& m) {
         m.cells[1].children = {2};
         m.cells[2].children = {1};
     },
     Rule::ChildCells, ""},
    // ---- types
    {"HexahedronTypedPrism", hexahedra, [](Mesh& m) { m.cells[1].type = KEL_CELL_PRISM; }, Rule::CellTypes,
     "cell 1 of zone 10 is a prism, but has 8 nodes"},
    {"PolyhedronTypedHexahedron", polyhedra, [](Mesh& m) { m.cells[1].type = KEL_CELL_HEXAHEDRON; }, Rule::CellTypes,
     "cell 1 of zone 10 is a hexahedron, but has 8 faces with 28 nodes"},
    {"HexahedronTypedQuadrilateral", hexahedra, [](Mesh& m) { m.cells[1].type = KEL_CELL_QUADRILATERAL; },
     Rule::CellTypes, "cell 1 of zone 10 is a quadrilateral in 3 dimensions"},
    {"SquareTypedHexahedron", squares, [](Mesh& m) { m.cells[1].type = KEL_CELL_HEXAHEDRON; }, Rule::CellTypes,
     "cell 1 of zone 10 is a hexahedron in 2 dimensions"},
    {"TypeThatDoesNotExist", hexahedra, [](Mesh& m) { m.cells[1].type = 17; }, Rule::CellTypes,
     "cell 1 of zone 10 has the type 17, which does not exist"},
    {"TypeMinusOne", byNodes<1>, [](Mesh& m) { m.cells[1].type = -1; }, Rule::CellTypes, ""},
    {"TetrahedronTypedPyramidByNodes", byNodes<1>, [](Mesh& m) { m.cells[1].type = KEL_CELL_PYRAMID; },
     Rule::CellTypes, "cell 1 of zone 10 is a pyramid, but has 4 nodes"},
    // ---- nodes of cells
    {"CellNodeBeyond", byNodes<0>, [](Mesh& m) { m.cells[1].nodes[0] = 28; }, Rule::Ids,
     "cell 1 of zone 10 names node 28 of 27"},
    {"CellNodeZero", byNodes<2>, [](Mesh& m) { m.cells[1].nodes[0] = 0; }, Rule::Ids,
     "cell 1 of zone 10 names node 0 of 27"},
    {"CellNodeBeyondWithFaces", hexahedra, [](Mesh& m) { m.cells[1].nodes[0] = 28; }, Rule::Ids, ""},
    {"CellNodeTwice", byNodes<0>, [](Mesh& m) { m.cells[1].nodes[0] = m.cells[1].nodes[1]; }, Rule::CellNodes,
     "cell 1 of zone 10 has node 2 twice"},
    {"CellNodesOfAnotherCell", hexahedra, [](Mesh& m) { m.cells[1].nodes = m.cells[2].nodes; }, Rule::CellNodes,
     "cell 1 of zone 10 has nodes that do not span its faces"},
    {"CellNodesSwapped", hexahedra, [](Mesh& m) { std::swap(m.cells[1].nodes[0], m.cells[1].nodes[1]); },
     Rule::CellNodes, "cell 1 of zone 10 has nodes that do not span its faces"},
    {"CellNodesOfAFlatCellSwapped", squares, [](Mesh& m) { std::swap(m.cells[1].nodes[0], m.cells[1].nodes[1]); },
     Rule::CellNodes, ""},
    {"CellNodesTopAndBottomExchanged", hexahedra,
     [](Mesh& m) { std::rotate(m.cells[1].nodes.begin(), m.cells[1].nodes.begin() + 4, m.cells[1].nodes.end()); },
     Rule::CellShapes, "cell 1 of zone 10 has its nodes in the order that turns it inside out"},
    {"LoneHexahedronNodesSwapped", oneByNodes, [](Mesh& m) { std::swap(m.cells[1].nodes[0], m.cells[1].nodes[1]); },
     Rule::CellShapes, "cell 1 of zone 10 has its nodes in an order that twists it"},
    {"LoneHexahedronTopTurnedHalfRound", oneByNodes,
     [](Mesh& m) { std::rotate(m.cells[1].nodes.begin() + 4, m.cells[1].nodes.begin() + 6, m.cells[1].nodes.end()); },
     Rule::CellShapes, ""},
    {"TetrahedronInsideOut", byNodes<1>, [](Mesh& m) { std::swap(m.cells[1].nodes[0], m.cells[1].nodes[1]); },
     Rule::Volumes, ""},
    {"PrismInsideOut", byNodes<2>,
     [](Mesh& m) { std::rotate(m.cells[1].nodes.begin(), m.cells[1].nodes.begin() + 3, m.cells[1].nodes.end()); },
     Rule::Volumes, ""},
    {"PyramidInsideOut", byNodes<3>,
     [](Mesh& m) { std::reverse(m.cells[1].nodes.begin(), m.cells[1].nodes.begin() + 4); }, Rule::Volumes, ""},
    {"SquareInsideOutByNodes", squaresByNodes,
     [](Mesh& m) { std::reverse(m.cells[1].nodes.begin(), m.cells[1].nodes.end()); }, Rule::Volumes,
     "cell 1 has the volume -1"},
    // ---- lists and partitions
    {"ListedFaceBeyond", hexahedra,
     [](Mesh& m) {
         m.listFaces();
         m.cells[1].faces[0] = 37;
     },
     Rule::FaceLists, "cell 1 of zone 10 lists face 37, which does not exist"},
    {"ListedFaceOfAnotherCell", hexahedra,
     [](Mesh& m) {
         m.listFaces();
         m.cells[1].faces[0] = 4;
     },
     Rule::FaceLists, "cell 1 of zone 10 lists other faces than those that name it"},
    {"ListedFaceMissing", hexahedra,
     [](Mesh& m) {
         m.listFaces();
         m.cells[1].faces.pop_back();
     },
     Rule::FaceLists, ""},
    {"PartitionBeyond", hexahedra,
     [](Mesh& m) {
         m.hasPartitions = true;
         m.partitions = 2;
         m.cells[8].partition = 2;
     },
     Rule::Partitions, "cell 8 is in partition 2, but the partitions are 0 to 1"},
    {"PartitionFarBeyond", hexahedra,
     [](Mesh& m) {
         m.hasPartitions = true;
         m.partitions = 2;
         m.cells[8].partition = 7;
     },
     Rule::Partitions, "cell 8 of zone 10 is in partition 7 of 2"},
    {"PartitionNegative", hexahedra,
     [](Mesh& m) {
         m.hasPartitions = true;
         m.cells[8].partition = -3;
     },
     Rule::Partitions, ""},
    // ---- cells by their faces
    {"CellOfNoFaces", hexahedra,
     [](Mesh& m) {
         m.cells.emplace_back();
         m.cells.back().type = KEL_CELL_POLYHEDRON;
         m.zone(10).last = 9;
     },
     Rule::CellFaces, "cell 9 has 0 faces"},
    {"FaceMissing", hexahedra, [](Mesh& m) { m.removeFace(13); }, Rule::Closed, "cell 1 is open by 0.2 of its surface"},
    {"FaceTurnedRound", hexahedra, [](Mesh& m) { std::reverse(m.faces[1].nodes.begin(), m.faces[1].nodes.end()); },
     Rule::Orientation, "face 1 of zone 2 points from cell 2 to cell 1"},
    {"OuterFaceTurnedRound", hexahedra,
     [](Mesh& m) { std::reverse(m.faces[13].nodes.begin(), m.faces[13].nodes.end()); }, Rule::Orientation,
     "face 13 of zone 3 points into cell 1"},
    {"CellsOfAFaceExchanged", hexahedra, [](Mesh& m) { std::swap(m.faces[1].cell0, m.faces[1].cell1); },
     Rule::Orientation, ""},
    {"FaceNamesTheNextCell", hexahedra, [](Mesh& m) { m.faces[13].cell0 = 3; }, Rule::Closed, ""},
    {"LineTurnedRound", squares, [](Mesh& m) { std::swap(m.faces[1].nodes[0], m.faces[1].nodes[1]); },
     Rule::Orientation, ""},
    {"HangingNodeInOneFace", polyhedra,
     [](Mesh& m) {
         auto& nodes = m.faces[1].nodes;
         const unsigned64 middle = m.copyNode(nodes[0]);
         for (std::size_t d = 0; d < 3; ++d)
             m.nodes[middle][d] = 0.5 * (m.nodes[nodes[0]][d] + m.nodes[nodes[1]][d]);
         nodes.insert(nodes.begin() + 1, middle);
     },
     Rule::Joined, ""},
    {"NodeOfOneFaceCopied", polyhedra,
     [](Mesh& m) {
         const unsigned64 twin = m.copyNode(m.faces[1].nodes[0]);
         m.faces[1].nodes[0] = twin;
     },
     Rule::Joined, ""},
    {"MirroredMesh", polyhedra,
     [](Mesh& m) {
         for (auto& node : m.nodes)
             if (!node.empty())
                 node[0] = -node[0];
     },
     Rule::Volumes, "cell 1 has the volume -0.125"},
    {"NodeMovedThroughItsCells", hexahedra, [](Mesh& m) { m.move(14, 5.0, 0.0, 0.0); }, Rule::Volumes, ""},
    // ---- cracks and overlaps
    {"CrackWithTheSameNodes", hexahedra,
     [](Mesh& m) {
         m.zone(8).kind = KEL_FACE_ZONE_TYPE_BOUNDARY;
         m.split(1, 8, false);
     },
     Rule::Shared, ""},
    {"CrackWithNodesOfItsOwn", [] { return TestMesh::box("box:2x1x1"); }, [](Mesh& m) {
         m.zone(8).kind = KEL_FACE_ZONE_TYPE_BOUNDARY;
         m.split(1, 8, true);
     },
     Rule::Shared, ""},
    {"TwoBodiesThatTouch", hexahedra, [](Mesh& m) { m.append(hexahedra(), 1.0, 0.0, 0.0).zone(103).kind = KEL_FACE_ZONE_TYPE_BOUNDARY; },
     Rule::Shared, ""},
    {"TwoBodiesByNodesThatTouch", byNodes<0>, [](Mesh& m) { m.append(byNodes<0>(), 1.0, 0.0, 0.0).open(); },
     Rule::Shared, ""},
    {"CellTwice", hexahedra, [](Mesh& m) { m.append(hexahedra(), 0.0, 0.0, 0.0); }, Rule::Overlaps, ""},
    {"CellTwiceByNodes", byNodes<0>,
     [](Mesh& m) {
         m.cells.push_back(m.cells[1]);
         m.zone(10).last = 9;
     },
     Rule::Overlaps, ""},
    {"BodiesThatOverlap", hexahedra, [](Mesh& m) { m.append(hexahedra(), 0.8, 0.1, 0.1); }, Rule::Overlaps, ""},
    {"BodyInsideAnother", hexahedra,
     [](Mesh& m) { m.append(TestMesh::box("box:1x1x1 size:0.2x0.2x0.2"), 0.3, 0.3, 0.3); }, Rule::Overlaps, ""},
    {"BodiesThatOverlapByNodes", byNodes<0>, [](Mesh& m) { m.append(byNodes<0>(), 0.1, 0.1, 0.7); }, Rule::Overlaps,
     ""},
    {"FlatBodiesThatOverlap", squares, [](Mesh& m) { m.append(squares(), 0.3, 1.4, 0.0); }, Rule::Overlaps, ""},
    // ---- sets and locations
    {"SetNamesNothing", hexahedra, [](Mesh& m) { m.sets["hot"] = {KEL_CELL_ZONE, {1, 9}}; }, Rule::Sets,
     "set 'hot' holds cell 9, which does not exist"},
    {"SetOfNodesNamesZero", hexahedra, [](Mesh& m) { m.sets["probe"] = {KEL_NODE_ZONE, {0}}; }, Rule::Sets,
     "set 'probe' holds node 0, which does not exist"},
};

KelMeshReport checked(TestMesh& mesh)
{
    mesh.open();
    KelMeshCheck check(mesh);
    EXPECT_TRUE(check.run()) << check.problem();
    return check.report();
}

/// What a report says, for the failure of a test.
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

class MeshDefects : public ::testing::TestWithParam<Defect> {};

TEST_P(MeshDefects, AreNoticedByTheirRule)
{
    TestMesh sound = GetParam().start();
    const KelMeshReport before = checked(sound);
    ASSERT_TRUE(before.isGood()) << allOf(before);
    TestMesh mesh = GetParam().start();
    GetParam().change(mesh);
    const KelMeshReport report = checked(mesh);
    EXPECT_EQ(report.verdict(), KelMeshVerdict::Faulty);
    const KelMeshReport::Outcome& outcome = report.outcome(GetParam().rule);
    ASSERT_GT(outcome.offenders, 0U) << allOf(report);
    if (*GetParam().text != '\0') {
        EXPECT_EQ(outcome.named.front().text, GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(KelMeshCheck, MeshDefects, ::testing::ValuesIn(defects),
                         [](const auto& defect) { return defect.param.name; });
