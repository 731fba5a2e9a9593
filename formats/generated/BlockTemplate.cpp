#include "BlockTemplate.h"

#include <algorithm>

namespace meridyn {

namespace {

using Point = std::array<double, 3>;

Point position(int node)
{
    if (node == BlockTemplate::centreNode)
        return {0.5, 0.5, 0.5};
    return {node & 1 ? 1.0 : 0.0, node & 2 ? 1.0 : 0.0, node & 4 ? 1.0 : 0.0};
}

Point mean(const std::vector<int>& nodes)
{
    Point sum{};
    for (const int node : nodes)
        for (std::size_t d = 0; d < 3; ++d)
            sum[d] += position(node)[d] / static_cast<double>(nodes.size());
    return sum;
}

/// Twice the area vector of a flat face.
Point normal(const std::vector<int>& nodes)
{
    Point sum{};
    const Point p0 = position(nodes[0]);
    for (std::size_t n = 1; n + 1 < nodes.size(); ++n) {
        const Point p1 = position(nodes[n]), p2 = position(nodes[n + 1]);
        for (std::size_t d = 0; d < 3; ++d) {
            const std::size_t e = (d + 1) % 3, f = (d + 2) % 3;
            sum[d] += (p1[e] - p0[e]) * (p2[f] - p0[f]) - (p1[f] - p0[f]) * (p2[e] - p0[e]);
        }
    }
    return sum;
}

bool pointsAwayFrom(const std::vector<int>& nodes, const Point& inside)
{
    const Point n = normal(nodes), c = mean(nodes);
    double dot = 0;
    for (std::size_t d = 0; d < 3; ++d)
        dot += n[d] * (c[d] - inside[d]);
    return dot > 0;
}

std::vector<int> sorted(std::vector<int> nodes)
{
    std::sort(nodes.begin(), nodes.end());
    return nodes;
}

/// Whether all nodes lie on the near (0) or far (1) side of the block in a direction.
bool liesOnSide(const std::vector<int>& nodes, int direction, int side)
{
    return std::all_of(nodes.begin(), nodes.end(), [=](int node) {
        return node != BlockTemplate::centreNode && ((node >> direction) & 1) == side;
    });
}

/// Puts the nodes of a cell into the order of its type: the base looks into the cell, see KelCellType.
void turnInwards(KelCellType type, std::vector<int>& nodes, const Point& centre)
{
    if (nodes.empty())
        return;
    const bool isSquare = type == KEL_CELL_PYRAMID || type == KEL_CELL_HEXAHEDRON;
    const std::ptrdiff_t size = isSquare ? 4 : 3;
    const std::vector<int> base(nodes.begin(), nodes.begin() + size);
    if (!pointsAwayFrom(base, centre))
        return;
    std::reverse(nodes.begin() + 1, nodes.begin() + size);
    if (type == KEL_CELL_PRISM || type == KEL_CELL_HEXAHEDRON)
        std::reverse(nodes.begin() + size + 1, nodes.begin() + 2 * size);
}

} // namespace

BlockTemplate::BlockTemplate(Shape shape)
{
    switch (shape) {
    case Shape::Hexahedra:
        addCell(KEL_CELL_HEXAHEDRON, {0, 1, 3, 2, 4, 5, 7, 6},
                {{0, 2, 6, 4}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 5, 7, 6}});
        break;
    case Shape::Tetrahedra: // the six paths along edges from corner 0 to corner 7
        for (const auto& [a, b] : {std::pair{1, 2}, {1, 4}, {2, 1}, {2, 4}, {4, 1}, {4, 2}})
            addCell(KEL_CELL_TETRAHEDRON, {0, a, a + b, 7}, {{0, a, a + b}, {0, a, 7}, {0, a + b, 7}, {a, a + b, 7}});
        break;
    case Shape::Prisms: // two, along the diagonal 0-3
        for (const int b : {1, 2})
            addCell(KEL_CELL_PRISM, {0, b, 3, 4, b + 4, 7},
                    {{0, b, 3}, {4, b + 4, 7}, {0, b, b + 4, 4}, {b, 3, 7, b + 4}, {0, 3, 7, 4}});
        break;
    case Shape::Pyramids: // one on each side, all with the centre as apex
        _hasCentre = true;
        for (const Loop& base :
             {Loop{0, 2, 6, 4}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 5, 7, 6}}) {
            std::vector<Loop> faces{base};
            for (std::size_t n = 0; n < 4; ++n)
                faces.push_back({base[n], base[(n + 1) % 4], centreNode});
            addCell(KEL_CELL_PYRAMID, {base[0], base[1], base[2], base[3], centreNode}, faces);
        }
        break;
    case Shape::Polyhedra: // the whole block, the sides in z divided along the diagonals 0-3 and 4-7
        addCell(KEL_CELL_POLYHEDRON, {},
                {{0, 2, 6, 4}, {1, 3, 7, 5}, {0, 1, 5, 4}, {2, 3, 7, 6}, {0, 1, 3}, {0, 3, 2}, {4, 5, 7}, {4, 7, 6}});
        break;
    }
    joinFaces();
}

void BlockTemplate::addCell(KelCellType type, std::vector<int> nodes, const std::vector<Loop>& faces)
{
    const int cell = static_cast<int>(_cells.size());
    const Point centre = nodes.empty() ? Point{0.5, 0.5, 0.5} : mean(nodes);
    turnInwards(type, nodes, centre);
    _cells.push_back({type, nodes, centre});
    for (Loop loop : faces) {
        if (!pointsAwayFrom(loop, centre))
            std::reverse(loop.begin() + 1, loop.end());
        _sides.push_back({loop, cell});
    }
}

void BlockTemplate::joinFaces()
{
    for (std::size_t n = 0; n < _sides.size(); ++n) {
        const Side& side = _sides[n];
        int direction = 0;
        while (direction < 3 && !liesOnSide(side.nodes, direction, 0))
            ++direction;
        if (direction < 3) { // on the near side: its twin is on the far side of the block before
            const int bit = 1 << direction;
            std::vector<int> far;
            for (const int node : side.nodes)
                far.push_back(node | bit);
            const auto twin = std::find_if(_sides.begin(), _sides.end(),
                                           [&](const Side& s) { return sorted(s.nodes) == sorted(far); });
            std::vector<int> nodes = side.nodes;
            std::reverse(nodes.begin() + 1, nodes.end());
            _across[static_cast<std::size_t>(direction)].push_back({nodes, twin->cell, side.cell});
        } else {
            const auto twin = std::find_if(_sides.begin(), _sides.end(), [&](const Side& s) {
                return s.cell > side.cell && sorted(s.nodes) == sorted(side.nodes);
            });
            if (twin != _sides.end())
                _inner.push_back({side.nodes, side.cell, twin->cell});
        }
    }
}

} // namespace meridyn
