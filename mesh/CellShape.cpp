#include "mesh/CellShape.h"

#include "mesh/FaceGeometry.h"

#include <array>

namespace meridyn::mesh {

namespace {

constexpr int typeCount = 8;

CellShape makeShape(std::size_t nodes, std::vector<std::vector<int>> sides, std::vector<std::vector<int>> corners)
{
    CellShape shape{nodes, std::move(sides), std::move(corners), 0};
    for (const std::vector<int>& side : shape.sides)
        shape.sideCorners += side.size();
    return shape;
}

/// By type; the base of a volume looks into the cell, so that its side is the base turned round.
std::array<CellShape, typeCount> makeShapes()
{
    std::array<CellShape, typeCount> shapes;
    shapes[KEL_CELL_TETRAHEDRON] = makeShape(4, {{0, 2, 1}, {0, 1, 3}, {1, 2, 3}, {2, 0, 3}}, {{0, 1, 2, 3}});
    shapes[KEL_CELL_PYRAMID] = makeShape(5, {{0, 3, 2, 1}, {0, 1, 4}, {1, 2, 4}, {2, 3, 4}, {3, 0, 4}},
                                         {{0, 1, 3, 4}, {1, 2, 0, 4}, {2, 3, 1, 4}, {3, 0, 2, 4}});
    shapes[KEL_CELL_PRISM] =
        makeShape(6, {{0, 2, 1}, {3, 4, 5}, {0, 1, 4, 3}, {1, 2, 5, 4}, {2, 0, 3, 5}},
                  {{0, 1, 2, 3}, {1, 2, 0, 4}, {2, 0, 1, 5}, {3, 5, 4, 0}, {4, 3, 5, 1}, {5, 4, 3, 2}});
    shapes[KEL_CELL_HEXAHEDRON] =
        makeShape(8, {{0, 3, 2, 1}, {4, 5, 6, 7}, {0, 1, 5, 4}, {1, 2, 6, 5}, {2, 3, 7, 6}, {3, 0, 4, 7}},
                  {{0, 1, 3, 4},
                   {1, 2, 0, 5},
                   {2, 3, 1, 6},
                   {3, 0, 2, 7},
                   {4, 7, 5, 0},
                   {5, 4, 6, 1},
                   {6, 5, 7, 2},
                   {7, 6, 4, 3}});
    shapes[KEL_CELL_TRIANGLE] = polygonOf(3);
    shapes[KEL_CELL_QUADRILATERAL] = polygonOf(4);
    return shapes;
}

} // namespace

const CellShape& shapeOfType(KelCellType type)
{
    static const std::array<CellShape, typeCount> shapes = makeShapes();
    static const CellShape unknown;
    return type >= 0 && type < typeCount ? shapes[static_cast<std::size_t>(type)] : unknown;
}

CellShape polygonOf(std::size_t nodes)
{
    std::vector<std::vector<int>> sides;
    for (std::size_t n = 0; n < nodes; ++n)
        sides.push_back({static_cast<int>(n), static_cast<int>((n + 1) % nodes)});
    return makeShape(nodes, sides, {});
}

KelCellType typeByNodes(std::size_t nodes, int dimension)
{
    static const KelCellType volumes[] = {KEL_CELL_TETRAHEDRON, KEL_CELL_PYRAMID, KEL_CELL_PRISM, KEL_CELL_HEXAHEDRON};
    if (dimension == 2)
        return nodes < 3    ? static_cast<KelCellType>(-1)
               : nodes == 3 ? KEL_CELL_TRIANGLE
               : nodes == 4 ? KEL_CELL_QUADRILATERAL
                            : KEL_CELL_POLYGON;
    for (const KelCellType type : volumes)
        if (shapeOfType(type).nodes == nodes)
            return type;
    return static_cast<KelCellType>(-1);
}

std::string typeName(KelCellType type)
{
    static const char* const names[typeCount] = {"polyhedron", "tetrahedron", "pyramid",  "prism",
                                                 "hexahedron", "polygon",     "triangle", "quadrilateral"};
    const int number = type;
    return number >= 0 && number < typeCount ? names[number] : "cell of type " + std::to_string(number);
}

int dimensionOfType(KelCellType type)
{
    const int number = type;
    return number < 0 || number >= typeCount ? 0 : number >= KEL_CELL_POLYGON ? 2 : 3;
}

double volumeOf(const CellShape& shape, const std::vector<Vector3>& points, int dimension)
{
    double volume = 0.0;
    std::vector<Vector3> side;
    for (const std::vector<int>& places : shape.sides) {
        side.clear();
        for (const int place : places)
            side.push_back(points[static_cast<std::size_t>(place)]);
        const FaceShape face = shapeOf(side, dimension);
        volume += dot(face.area, face.centre - points.front()) / dimension;
    }
    return volume;
}

namespace {

/// Whether the two squares of a hexahedron are turned against each other so far that it has no inside in the middle.
bool isTwisted(const CellShape& shape, const std::vector<Vector3>& points)
{
    if (shape.nodes != 8)
        return false;
    // The three directions from side to opposite side, as sums over their nodes.
    static constexpr double signs[3][8] = {
        {-1, 1, 1, -1, -1, 1, 1, -1}, {-1, -1, 1, 1, -1, -1, 1, 1}, {-1, -1, -1, -1, 1, 1, 1, 1}};
    Vector3 ways[3];
    for (std::size_t way = 0; way < 3; ++way)
        for (std::size_t n = 0; n < 8; ++n)
            ways[way] += signs[way][n] * (points[n] - points[0]);
    return !(dot(cross(ways[0], ways[1]), ways[2]) > 0.0);
}

} // namespace

std::size_t turnedCorners(const CellShape& shape, const std::vector<Vector3>& points)
{
    std::size_t turned = 0;
    for (const std::vector<int>& corner : shape.corners) {
        const auto arm = [&](std::size_t n) {
            return points[static_cast<std::size_t>(corner[n])] - points[static_cast<std::size_t>(corner[0])];
        };
        if (dot(cross(arm(1), arm(2)), arm(3)) <= 0.0)
            ++turned;
    }
    return isTwisted(shape, points) ? shape.corners.size() : turned;
}

} // namespace meridyn::mesh
