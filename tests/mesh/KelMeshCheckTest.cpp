// The mesh check on generated meshes, and on the same meshes with one thing wrong.
#include "KelMeshCheck.h"
#include "KelGeneratedProvider.h"
#include "mesh/Vector3.h"

#include <gtest/gtest.h>
#include <limits>

using namespace meridyn;
using mesh::Vector3;
using namespace meridyn;
using mesh::Vector3;

namespace {

/// A generated mesh whose answers are changed on the way.
class DamagedBox : public KelGeneratedProvider {
public:
    explicit DamagedBox(const std::string& text)
    {
        setFile(text, KEL_CASE);
        EXPECT_TRUE(startReading(KEL_CASE));
    }

    std::function<void(unsigned64 id, Vector3& point)> onNode;
    std::function<void(unsigned64 id, unsigned64* nodes, std::size_t count)> onFaceNodes;
    std::function<void(unsigned64 id, unsigned64&cell)> onCell0, onCell1;
    unsigned64 missingCells = 0; ///< values that getCell1s leaves out
    unsigned64 extraNodes = 0;   ///< nodes behind those of the box

    using KelGeneratedProvider::getCoordinatesForNodesInRange;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xyz,
                                             unsigned64 capacity) const override
    {
        unsigned64 size = 0;
        getMeshSize(KEL_MESH_SIZE_1, size);
        const unsigned64 end = std::min(last, size - extraNodes);
        if (first <= end)
            KelGeneratedProvider::getCoordinatesForNodesInRange(first, end, xyz, capacity);
        for (unsigned64 id = first; id <= last; ++id) {
            double* at = xyz + 3 * (id - first);
            Vector3 point = id > end ? Vector3() : Vector3{at[0], at[1], at[2]};
            if (onNode)
                onNode(id, point);
            at[0] = point.x, at[1] = point.y, at[2] = point.z;
        }
        return 3 * (last - first + 1);
    }

    unsigned64 getNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* nodes,
                                         unsigned64 capacity) const override
    {
        const unsigned64 found = KelGeneratedProvider::getNodeIdsForFacesInRange(first, last, nodes, capacity);
        for (unsigned64 id = first; id <= last && onFaceNodes; ++id) // the damaged boxes have quadrilaterals only
            onFaceNodes(id, nodes + 4 * (id - first), 4);
        return found;
    }

    unsigned64 getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* cells,
                                        unsigned64 capacity) const override
    {
        const unsigned64 found = KelGeneratedProvider::getCell0sForFacesInRange(first, last, cells, capacity);
        for (unsigned64 n = 0; n < found && onCell0; ++n)
            onCell0(first + n, cells[n]);
        return found;
    }

    unsigned64 getCell1sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* cells,
                                        unsigned64 capacity) const override
    {
        const unsigned64 found = KelGeneratedProvider::getCell1sForFacesInRange(first, last, cells, capacity);
        for (unsigned64 n = 0; n < found && onCell1; ++n)
            onCell1(first + n, cells[n]);
        return found - std::min(found, missingCells);
    }
};

/// Two triangles that fill the unit square: 4 nodes, 5 lines, the diagonal first.
class FlatMesh : public KelProvider {
public:
    FlatMesh()
    {
        const unsigned64 sizes[] = {2, 4, 0, 5, 2};
        for (int type = 0; type < 5; ++type)
            setMeshSize(static_cast<KelMeshSizeType>(type), sizes[type]);
        setZoneIds(KEL_NODE_ZONE, {1});
        setZoneIds(KEL_FACE_ZONE, {2, 3});
        setZoneIds(KEL_CELL_ZONE, {4});
        const unsigned64 ranges[][3] = {{1, 1, 4}, {2, 1, 1}, {3, 2, 5}, {4, 1, 2}};
        for (const auto& range : ranges) {
            setZoneSizeInfo(static_cast<int>(range[0]), KEL_ZONE_FIRST_ID, range[1]);
            setZoneSizeInfo(static_cast<int>(range[0]), KEL_ZONE_LAST_ID, range[2]);
        }
        setFaceZoneType(2, KEL_FACE_ZONE_TYPE_INTERIOR);
        setFaceZoneType(3, KEL_FACE_ZONE_TYPE_WALL);
    }

    using KelProvider::getCoordinatesForNodesInRange;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xy, unsigned64) const override
    {
        static const double all[] = {0, 0, 1, 0, 1, 1, 0, 1};
        return copy(all, 2, first, last, xy);
    }
    bool hasUniformNodeCountForFacesInRange(unsigned64, unsigned64, short* count) const override
    {
        *count = 2;
        return true;
    }
    unsigned64 getNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64) const override
    {
        static const unsigned64 all[] = {3, 1, 1, 2, 2, 3, 3, 4, 4, 1};
        return copy(all, 2, first, last, ids);
    }
    unsigned64 getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64) const override
    {
        static const unsigned64 all[] = {1, 1, 1, 2, 2};
        return copy(all, 1, first, last, ids);
    }
    unsigned64 getCell1sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64) const override
    {
        static const unsigned64 all[] = {2, 0, 0, 0, 0};
        return copy(all, 1, first, last, ids);
    }

private:
    template <class T>
    static unsigned64 copy(const T* all, unsigned64 per, unsigned64 first, unsigned64 last, T* to)
    {
        std::copy(all + per * (first - 1), all + per * last, to);
        return per * (last - first + 1);
    }
};

using Offenders = std::vector<std::pair<KelMeshRule, unsigned64>>;

/// The rules that have offenders, with their number.
Offenders offendersOf(const KelMeshReport& report)
{
    Offenders offenders;
    for (const KelMeshRule rule : meshRules())
        if (const unsigned64 count = report.outcome(rule).offenders; count > 0)
            offenders.emplace_back(rule, count);
    return offenders;
}

KelMeshReport checked(KelProvider& mesh, KelMeshCheckOptions options = {})
{
    KelMeshCheck check(mesh, std::move(options));
    EXPECT_TRUE(check.run()) << check.problem();
    return check.report();
}

std::string firstOf(const KelMeshReport& report, KelMeshRule rule)
{
    const auto& named = report.outcome(rule).named;
    return named.empty() ? "" : named.front().text;
}

std::vector<std::string> textsOf(const KelMeshReport& report, KelMeshRule rule)
{
    std::vector<std::string> texts;
    for (const KelMeshFinding& finding : report.outcome(rule).named)
        texts.push_back(finding.text);
    return texts;
}

struct GoodMesh {
    const char* name;
    const char* text;
    std::map<KelCellType, unsigned64> types;
};

void PrintTo(const GoodMesh& mesh, std::ostream* out)
{
    *out << mesh.text;
}

} // namespace

// ---- good meshes --------------------------------------------------------------------------------------------------

class GoodMeshes : public ::testing::TestWithParam<GoodMesh> {};

TEST_P(GoodMeshes, PassAndFillTheirBox)
{
    DamagedBox mesh(GetParam().text);
    const KelMeshReport report = checked(mesh);
    EXPECT_TRUE(report.isGood());
    EXPECT_EQ(offendersOf(report), Offenders());
    EXPECT_TRUE(report.hasFaces);
    EXPECT_EQ(report.cellTypes, GetParam().types);
    EXPECT_NEAR(report.volume, 2.0 * 1.0 * 3.0, 1e-12);
    EXPECT_DOUBLE_EQ(report.boxMin[0] + report.boxMin[1] + report.boxMin[2], 0.0);
    EXPECT_DOUBLE_EQ(report.boxMax[0], 2.0);
    EXPECT_DOUBLE_EQ(report.boxMax[1], 1.0);
    EXPECT_DOUBLE_EQ(report.boxMax[2], 3.0);
    EXPECT_GT(report.smallestVolume, 0.0);
    EXPECT_LE(report.smallestVolume, report.largestVolume);
}

INSTANTIATE_TEST_SUITE_P(
    KelMeshCheck, GoodMeshes,
    ::testing::Values(
        GoodMesh{"Hexahedra", "box:2x3x4 size:2x1x3", {{KEL_CELL_HEXAHEDRON, 24}}},
        GoodMesh{"Tetrahedra", "box:2x3x4 size:2x1x3 cells:tet", {{KEL_CELL_TETRAHEDRON, 144}}},
        GoodMesh{"Prisms", "box:2x3x4 size:2x1x3 cells:prism", {{KEL_CELL_PRISM, 48}}},
        GoodMesh{"Pyramids", "box:2x3x4 size:2x1x3 cells:pyramid", {{KEL_CELL_PYRAMID, 144}}},
        GoodMesh{"Polyhedra", "box:2x3x4 size:2x1x3 cells:poly", {{KEL_CELL_POLYHEDRON, 24}}},
        GoodMesh{"Periodic", "box:2x3x4 size:2x1x3 periodic", {{KEL_CELL_HEXAHEDRON, 24}}},
        GoodMesh{"Hanging", "box:2x3x4 size:2x1x3 hanging", {{KEL_CELL_HEXAHEDRON, 12}, {KEL_CELL_POLYHEDRON, 12}}},
        GoodMesh{"SeveralZones", "box:2x3x4 size:2x1x3 zones:4", {{KEL_CELL_HEXAHEDRON, 24}}},
        GoodMesh{"OneCell", "box:1x1x1 size:2x1x3", {{KEL_CELL_HEXAHEDRON, 1}}}),
    [](const auto& mesh) { return mesh.param.name; });

TEST(MeshCheckTest, FacesThatAreNotFlatCloseTheirCellsAllTheSame)
{
    DamagedBox mesh("box:2x2x2");
    mesh.onNode = [](unsigned64 id, Vector3& point) {
        if (id == 14) // the one in the middle
            point += {0.11, 0.07, -0.05};
    };
    const KelMeshReport report = checked(mesh);
    EXPECT_EQ(offendersOf(report), Offenders());
    EXPECT_NEAR(report.volume, 1.0, 1e-14);
    EXPECT_LT(report.smallestVolume, report.largestVolume);
}

TEST(MeshCheckTest, LinesOfTwoDimensionsBoundAreas)
{
    FlatMesh mesh;
    const KelMeshReport report = checked(mesh);
    EXPECT_EQ(offendersOf(report), Offenders());
    EXPECT_EQ(report.dimension, 2);
    EXPECT_DOUBLE_EQ(report.volume, 1.0);
    EXPECT_DOUBLE_EQ(report.smallestVolume, 0.5);
    EXPECT_TRUE(report.cellTypes.empty()) << "the reader gives none";
}

// ---- damage -------------------------------------------------------------------------------------------------------
// box:2x2x2 has 27 nodes, 8 cells and 36 faces: 12 inside (zone 2), then 4 on each side (zones 3 to 8). Face 1 lies
// between the cells 1 and 2.

namespace {

struct Damage {
    const char* name;
    std::function<void(DamagedBox&)> make;
    Offenders offenders;
    const char* first; ///< line of the first rule
};

void PrintTo(const Damage& damage, std::ostream* out)
{
    *out << damage.name;
}

const Damage damages[] = {
    // A cell that no face names any more where one should is open, and nothing tells that it lost a face.
    {"OneCellOnBothSides",
     [](DamagedBox& box) { box.onCell1 = [](unsigned64 id, unsigned64& cell) { cell = id == 1 ? 1 : cell; }; },
     {{KelMeshRule::FaceCells, 1}, {KelMeshRule::Closed, 1}},
     "face 1 of zone 2 'interior' has cell 1 on both sides"},
    {"InteriorFaceWithoutCell1",
     [](DamagedBox& box) { box.onCell1 = [](unsigned64 id, unsigned64& cell) { cell = id == 1 ? 0 : cell; }; },
     {{KelMeshRule::FaceCells, 1}, {KelMeshRule::Closed, 1}},
     "face 1 of zone 2 'interior' has no cell 1"},
    {"Cell1BeyondTheMesh",
     [](DamagedBox& box) { box.onCell1 = [](unsigned64 id, unsigned64& cell) { cell = id == 1 ? 9 : cell; }; },
     {{KelMeshRule::Ids, 1}, {KelMeshRule::Closed, 1}},
     "face 1 of zone 2 'interior' names cell 9 of 8 on side 1"},
    {"NoCell0",
     [](DamagedBox& box) { box.onCell0 = [](unsigned64 id, unsigned64& cell) { cell = id == 36 ? 0 : cell; }; },
     {{KelMeshRule::Ids, 1}, {KelMeshRule::Closed, 1}},
     "face 36 of zone 8 'z-max' names cell 0 of 8 on side 0"},
    {"NodeBeyondTheMesh",
     [](DamagedBox& box) {
         box.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t) { nodes[0] = id == 1 ? 2800 : nodes[0]; };
     },
     {{KelMeshRule::Ids, 1}},
     "face 1 of zone 2 'interior' names node 2,800 of 27"},
    {"NodeZero",
     [](DamagedBox& box) {
         box.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t) { nodes[3] = id == 1 ? 0 : nodes[3]; };
     },
     {{KelMeshRule::Ids, 1}},
     "face 1 of zone 2 'interior' names node 0 of 27"},
    {"FaceOfTwoNodes",
     [](DamagedBox& box) {
         box.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t) {
             if (id == 1)
                 nodes[2] = nodes[0], nodes[3] = nodes[1];
         };
     },
     {{KelMeshRule::FaceNodes, 1}},
     "face 1 of zone 2 'interior' has node 2 twice"},
    {"FaceTurnedRound",
     [](DamagedBox& box) {
         box.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t count) {
             if (id == 1)
                 std::reverse(nodes, nodes + count);
         };
     },
     {{KelMeshRule::Closed, 2}, {KelMeshRule::Orientation, 1}},
     "cell 1 is open by 0.333 of its surface"},
    {"BoundaryFaceTurnedRound",
     [](DamagedBox& box) {
         box.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t count) {
             if (id == 36)
                 std::reverse(nodes, nodes + count);
         };
     },
     {{KelMeshRule::Closed, 1}, {KelMeshRule::Orientation, 1}},
     "cell 8 is open by 0.333 of its surface"},
    {"MirroredMesh",
     [](DamagedBox& box) { box.onNode = [](unsigned64, Vector3& point) { point.x = -point.x; }; },
     {{KelMeshRule::Volumes, 8}, {KelMeshRule::Orientation, 36}},
     "cell 1 has the volume -0.125"},
    {"FlattenedMesh",
     [](DamagedBox& box) { box.onNode = [](unsigned64, Vector3& point) { point.z = 0.0; }; },
     {{KelMeshRule::FaceShapes, 24}, {KelMeshRule::Volumes, 8}},
     "face 1 of zone 2 'interior' has no area"},
    {"CoordinateThatIsNoNumber",
     [](DamagedBox& box) {
         box.onNode = [](unsigned64 id, Vector3& point) {
             point.y = id == 14 ? std::numeric_limits<double>::quiet_NaN() : point.y;
         };
     },
     {{KelMeshRule::Coordinates, 1}},
     "node 14"},
    {"NodeThatNoFaceHas",
     [](DamagedBox& box) {
         box.extraNodes = 1;
         box.setMeshSize(KEL_MESH_SIZE_1, 28);
         box.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 28);
     },
     {{KelMeshRule::UsedNodes, 1}},
     "node 28"},
    {"FaceInNoZone",
     [](DamagedBox& box) { box.setZoneSizeInfo(3, KEL_ZONE_FIRST_ID, 14); },
     {{KelMeshRule::Closed, 1}},
     "cell 1 is open by 0.2 of its surface"},
    {"FaceInTwoZones",
     [](DamagedBox& box) { box.setZoneSizeInfo(3, KEL_ZONE_FIRST_ID, 12); },
     {{KelMeshRule::Zones, 1}},
     "faces: zone 3 'x-min' begins at 12, which is in another zone"},
    {"ZoneBeyondTheMesh",
     [](DamagedBox& box) { box.setZoneSizeInfo(10, KEL_ZONE_LAST_ID, 9); },
     {{KelMeshRule::Zones, 1}},
     "cells: zone 10 'cells' ends at 9, but the mesh is said to have 8 cells"},
};

} // namespace

class DamagedMeshes : public ::testing::TestWithParam<Damage> {};

TEST_P(DamagedMeshes, AreFoundOutAndNamed)
{
    DamagedBox mesh("box:2x2x2");
    GetParam().make(mesh);
    const KelMeshReport report = checked(mesh);
    EXPECT_FALSE(report.isGood());
    EXPECT_EQ(offendersOf(report), GetParam().offenders);
    EXPECT_EQ(firstOf(report, GetParam().offenders.front().first), GetParam().first);
}

INSTANTIATE_TEST_SUITE_P(KelMeshCheck, DamagedMeshes, ::testing::ValuesIn(damages),
                         [](const auto& damage) { return damage.param.name; });

TEST(MeshCheckTest, TurnedFacesSayWhereTheyPoint)
{
    DamagedBox mesh("box:2x2x2");
    mesh.onFaceNodes = [](unsigned64 id, unsigned64* nodes, std::size_t count) {
        if (id == 1 || id == 36)
            std::reverse(nodes, nodes + count);
    };
    EXPECT_EQ(textsOf(checked(mesh), KelMeshRule::Orientation),
              (std::vector<std::string>{"face 1 of zone 2 'interior' points from cell 2 to cell 1",
                                        "face 36 of zone 8 'z-max' points into cell 8"}));
}

TEST(MeshCheckTest, NamesAsManyAsAskedForAndCountsAll)
{
    DamagedBox mesh("box:2x2x2");
    mesh.onNode = [](unsigned64, Vector3& point) { point.x = -point.x; };
    KelMeshCheckOptions options;
    options.named = 2;
    const KelMeshReport report = checked(mesh, options);
    EXPECT_EQ(report.outcome(KelMeshRule::Volumes).offenders, 8U);
    EXPECT_EQ(report.outcome(KelMeshRule::Volumes).named.size(), 2U);
}

TEST(MeshCheckTest, ParentFacesMayLackCellsButNotNodes)
{
    DamagedBox mesh("box:2x2x2 hanging");
    std::vector<int> zones;
    mesh.getZoneIds(KEL_FACE_ZONE, zones);
    unsigned64 first = 0, last = 0;
    mesh.getZoneSizeInfo(9, KEL_ZONE_FIRST_ID, first);
    mesh.getZoneSizeInfo(9, KEL_ZONE_LAST_ID, last);
    ASSERT_LE(first, last);
    mesh.onCell0 = [&](unsigned64 id, unsigned64& cell) { cell = id >= first && id <= last ? 0 : cell; };
    mesh.onCell1 = mesh.onCell0;
    EXPECT_EQ(offendersOf(checked(mesh)), Offenders());
}

// ---- what cannot be checked ---------------------------------------------------------------------------------------

TEST(MeshCheckTest, CutArraysAreAProblemNotAnOffender)
{
    DamagedBox mesh("box:2x2x2");
    mesh.missingCells = 1;
    KelMeshCheck check(mesh);
    EXPECT_FALSE(check.run());
    EXPECT_FALSE(check.wasCancelled());
    EXPECT_EQ(check.problem(), "face zone 2 'interior': the nodes or cells from face 1 on could not be read");
}

TEST(MeshCheckTest, SizesThatTheFacesCannotFillTakeNoMemory)
{
    DamagedBox mesh("box:2x2x2");
    mesh.setMeshSize(KEL_MESH_SIZE_4, 1ULL << 60);
    mesh.setZoneSizeInfo(10, KEL_ZONE_LAST_ID, 1ULL << 60);
    KelMeshCheck check(mesh);
    EXPECT_FALSE(check.run());
    EXPECT_EQ(check.problem(), "the mesh has 1,152,921,504,606,846,976 cells, but only 27 nodes");
}

TEST(MeshCheckTest, NoMeshIsAProblem)
{
    KelProvider nothing;
    KelMeshCheck check(nothing);
    EXPECT_FALSE(check.run());
    EXPECT_EQ(check.problem(), "the mesh has 0 dimensions, 2 or 3 expected");
}

TEST(MeshCheckTest, CanBeCancelled)
{
    DamagedBox mesh("box:2x2x2");
    KelMeshCheckOptions options;
    options.progress = [](const std::string& task, unsigned64, unsigned64) { return task != "faces"; };
    KelMeshCheck check(mesh, options);
    EXPECT_FALSE(check.run());
    EXPECT_TRUE(check.wasCancelled());
}
