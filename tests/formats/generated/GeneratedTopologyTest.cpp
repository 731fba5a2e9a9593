#include "KelGeneratedProvider.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <map>
#include <set>

// Every mesh must be a valid one: closed cells, faces between two cells, volumes that fill the box.
namespace meridyn {
namespace {

using Point = std::array<double, 3>;

Point operator+(const Point& a, const Point& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
Point operator*(double f, const Point& a)
{
    return {f * a[0], f * a[1], f * a[2]};
}
Point operator-(const Point& a, const Point& b)
{
    return a + -1.0 * b;
}
Point cross(const Point& a, const Point& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
double dot(const Point& a, const Point& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

struct Face {
    std::vector<unsigned64> nodes;
    unsigned64 cell0 = 0, cell1 = 0, shadow = 0;
    std::vector<unsigned64> children;
    Point area{}, centre{}; ///< area vector by the right-hand rule, mean of the nodes
};

/// A mesh read element by element.
struct Mesh {
    explicit Mesh(const std::string& line)
    {
        box.setFile(line, KEL_CASE);
        if (!box.startReading(KEL_CASE))
            throw std::runtime_error(line);
        unsigned64 nodes = 0, faceCount = 0;
        box.getMeshSize(KEL_MESH_SIZE_1, nodes);
        box.getMeshSize(KEL_MESH_SIZE_3, faceCount);
        box.getMeshSize(KEL_MESH_SIZE_4, cells);
        points.resize(nodes);
        for (unsigned64 node = 1; node <= nodes; ++node)
            EXPECT_EQ(box.getCoordinatesForNode(node, points[node - 1].data(), 3), 3U);
        for (unsigned64 id = 1; id <= faceCount; ++id)
            faces.push_back(readFace(id));
    }

    Face readFace(unsigned64 id)
    {
        Face face;
        face.nodes.resize(static_cast<std::size_t>(box.getNodeCountForFace(id)));
        EXPECT_EQ(box.getNodeIdsForFace(id, face.nodes.data(), face.nodes.size()), face.nodes.size());
        face.cell0 = box.getCell0ForFace(id);
        face.cell1 = box.getCell1ForFace(id);
        face.shadow = box.getShadowFaceIdForFace(id);
        face.children.resize(static_cast<std::size_t>(box.getChildFaceCountForFace(id)));
        box.getChildFaceIdsForFace(id, face.children.data(), face.children.size());
        const Point& origin = point(face.nodes[0]);
        for (std::size_t n = 0; n < face.nodes.size(); ++n) {
            face.centre = face.centre + 1.0 / static_cast<double>(face.nodes.size()) * point(face.nodes[n]);
            if (n >= 2)
                face.area = face.area + 0.5 * cross(point(face.nodes[n - 1]) - origin, point(face.nodes[n]) - origin);
        }
        return face;
    }

    const Point& point(unsigned64 node) const { return points.at(node - 1); }

    KelGeneratedProvider box;
    unsigned64 cells = 0;
    std::vector<Point> points;
    std::vector<Face> faces;
};

class Topology : public ::testing::TestWithParam<std::string> {
protected:
    Mesh mesh{GetParam()};
};

TEST_P(Topology, FacesJoinTwoCellsOrOneAndTheOutside)
{
    unsigned64 interiorLast = 0;
    mesh.box.getZoneSizeInfo(2, KEL_ZONE_LAST_ID, interiorLast);
    for (std::size_t n = 0; n < mesh.faces.size(); ++n) {
        const Face& face = mesh.faces[n];
        EXPECT_GE(face.cell0, 1U);
        EXPECT_LE(face.cell0, mesh.cells);
        EXPECT_LE(face.cell1, mesh.cells);
        EXPECT_NE(face.cell0, face.cell1);
        EXPECT_EQ(face.cell1 != 0, n < interiorLast || !face.children.empty()) << "face " << n + 1;
        const std::set<unsigned64> distinct(face.nodes.begin(), face.nodes.end());
        EXPECT_EQ(distinct.size(), face.nodes.size()) << "face " << n + 1;
        EXPECT_GE(face.nodes.size(), 3U);
    }
}

TEST_P(Topology, CellsAreClosedAndFillTheBox)
{
    std::vector<Point> areas(mesh.cells, Point{}), centres(mesh.cells, Point{});
    std::vector<double> volumes(mesh.cells, 0.0);
    std::vector<int> sides(mesh.cells, 0);
    const auto forSides = [&](const auto& visit) {
        for (const Face& face : mesh.faces) {
            if (!face.children.empty()) // its children stand for it
                continue;
            visit(face, face.cell0 - 1, 1.0);
            if (face.cell1 != 0)
                visit(face, face.cell1 - 1, -1.0);
        }
    };
    forSides([&](const Face& face, std::size_t cell, double sign) {
        areas[cell] = areas[cell] + sign * face.area;
        volumes[cell] += sign * dot(face.area, face.centre) / 3.0;
        centres[cell] = centres[cell] + face.centre;
        ++sides[cell];
    });
    double sum = 0;
    for (std::size_t cell = 0; cell < mesh.cells; ++cell) {
        EXPECT_LT(std::sqrt(dot(areas[cell], areas[cell])), 1e-12) << "cell " << cell + 1 << " is not closed";
        EXPECT_GT(volumes[cell], 0.0) << "cell " << cell + 1;
        sum += volumes[cell];
    }
    EXPECT_NEAR(sum, 3.0 * 2.0 * 0.5, 1e-12);
    // From the middle of cell 0 every face is seen from behind: its normal leads to cell 1.
    forSides([&](const Face& face, std::size_t cell, double sign) {
        const Point middle = 1.0 / sides[cell] * centres[cell];
        EXPECT_GT(sign * dot(face.area, face.centre - middle), 0.0) << "a face of cell " << cell + 1;
    });
}

TEST_P(Topology, NodesOfCellsAreThoseOfTheirFaces)
{
    std::vector<std::set<unsigned64>> byFaces(mesh.cells);
    for (const Face& face : mesh.faces)
        for (const unsigned64 cell : {face.cell0, face.cell1})
            if (cell != 0)
                byFaces[cell - 1].insert(face.nodes.begin(), face.nodes.end());
    const std::map<KelCellType, std::size_t> nodesOfType = {
        {KEL_CELL_TETRAHEDRON, 4}, {KEL_CELL_PYRAMID, 5}, {KEL_CELL_PRISM, 6}, {KEL_CELL_HEXAHEDRON, 8}};
    for (unsigned64 cell = 1; cell <= mesh.cells; ++cell) {
        const KelCellType type = mesh.box.getTypeForCell(cell);
        std::vector<unsigned64> nodes(8);
        nodes.resize(mesh.box.getNodeIdsForCell(cell, nodes.data(), nodes.size()));
        EXPECT_EQ(static_cast<std::size_t>(mesh.box.getNodeCountForCell(cell)), nodes.size());
        if (type == KEL_CELL_POLYHEDRON) {
            EXPECT_TRUE(nodes.empty());
            continue;
        }
        EXPECT_EQ(nodes.size(), nodesOfType.at(type));
        EXPECT_EQ(std::set<unsigned64>(nodes.begin(), nodes.end()), byFaces[cell - 1]) << "cell " << cell;
    }
}

TEST_P(Topology, ShadowsArePairsOfTheSameShape)
{
    const bool periodic = std::string(GetParam()).find("periodic") != std::string::npos;
    std::size_t pairs = 0;
    for (std::size_t n = 0; n < mesh.faces.size(); ++n) {
        const Face& face = mesh.faces[n];
        if (face.shadow == 0)
            continue;
        const Face& partner = mesh.faces.at(face.shadow - 1);
        ++pairs;
        EXPECT_EQ(partner.shadow, n + 1);
        const Point apart = partner.centre - face.centre;
        EXPECT_NEAR(std::fabs(apart[0]), 3.0, 1e-12);
        EXPECT_NEAR(apart[1], 0.0, 1e-12);
        EXPECT_NEAR(apart[2], 0.0, 1e-12);
        EXPECT_NEAR(face.area[0], -partner.area[0], 1e-12);
        EXPECT_EQ(face.nodes.size(), partner.nodes.size());
    }
    unsigned64 first = 0, last = 0;
    mesh.box.getZoneSizeInfo(3, KEL_ZONE_FIRST_ID, first);
    mesh.box.getZoneSizeInfo(3, KEL_ZONE_LAST_ID, last);
    EXPECT_EQ(pairs, periodic ? 2 * (last - first + 1) : 0U);
}

TEST_P(Topology, ChildrenCoverTheirParent)
{
    const bool hanging = std::string(GetParam()).find("hanging") != std::string::npos;
    std::size_t parents = 0;
    std::set<unsigned64> seen;
    for (const Face& face : mesh.faces) {
        if (face.children.empty())
            continue;
        ++parents;
        Point sum{}, centre{};
        for (const unsigned64 child : face.children) {
            const Face& part = mesh.faces.at(child - 1);
            EXPECT_TRUE(seen.insert(child).second) << "child " << child << " has two parents";
            EXPECT_EQ(part.cell0, face.cell0);
            EXPECT_EQ(part.cell1, face.cell1);
            EXPECT_TRUE(part.children.empty());
            sum = sum + part.area;
            centre = centre + 1.0 / static_cast<double>(face.children.size()) * part.centre;
        }
        EXPECT_LT(std::sqrt(dot(sum - face.area, sum - face.area)), 1e-12);
        EXPECT_LT(std::sqrt(dot(centre - face.centre, centre - face.centre)), 1e-12);
    }
    EXPECT_EQ(parents != 0, hanging);
}

INSTANTIATE_TEST_SUITE_P(Generated, Topology,
                         ::testing::Values("box:3x2x4 size:3x2x0.5", "box:1x1x1 size:3x2x0.5 periodic",
                                           "box:2x3x4 size:3x2x0.5 cells:tet periodic",
                                           "box:3x2x2 size:3x2x0.5 cells:prism zones:2",
                                           "box:2x2x3 size:3x2x0.5 cells:pyramid periodic",
                                           "box:3x3x2 size:3x2x0.5 cells:poly periodic",
                                           "box:3x2x4 size:3x2x0.5 hanging periodic zones:2",
                                           "box:2x2x2 size:3x2x0.5 hanging", "box:1x1x5 size:3x2x0.5 hanging"));

} // namespace
} // namespace meridyn
