#include "mesh/OuterDepth.h"

#include "mesh/MeshText.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <vector>

namespace meridyn::mesh {

namespace {

constexpr std::size_t mostLines = 20000; ///< per axis; more outer faces than that are sampled

/// A place where a line goes through an outer face.
struct Crossing {
    double at;        ///< along the line
    bool isEntering;  ///< into the mesh
    std::size_t face; ///< place in the list of outer faces
};

/// All lines along one axis.
class AxisPass {
public:
    AxisPass(CheckState& state, std::size_t axis) : _state(state), _axis(axis)
    {
        _u = (axis + 1) % 3;
        _v = (axis + 2) % 3;
        const double faces = static_cast<double>(state.outerFaces.size());
        _columns = static_cast<std::size_t>(std::clamp(std::sqrt(faces), 1.0, 1024.0));
        _rows = state.isFlat() ? 1 : _columns;
        if (state.isFlat())
            _columns = static_cast<std::size_t>(std::clamp(faces, 1.0, 1e6));
        // In two dimensions the plane stands up, so that lines are faces like any others; the line across it is z.
        if (state.isFlat() && _u == 2) {
            std::swap(_u, _v);
        }
    }

    void run();

private:
    using Point = std::array<double, 3>;

    std::vector<Point> pointsOf(const OuterFace& face) const;
    bool facesAxis(const std::vector<Point>& points, const Point& centre) const;
    static Point centreOf(const std::vector<Point>& points);
    std::size_t bin(double value, std::size_t d, std::size_t bins) const;
    void fillGrid();
    void follow(std::size_t number);
    void addCrossings(std::size_t number, const Point& at, std::vector<Crossing>& to) const;
    void judge(std::vector<Crossing>& crossings);
    double toleranceOf(std::size_t a, std::size_t b) const;
    double sizeOf(std::size_t number) const;

    CheckState& _state;
    std::size_t _axis, _u, _v;
    std::size_t _columns, _rows;
    std::vector<std::vector<std::uint32_t>> _grid;     ///< outer faces by the place that they cover across the axis
    std::set<std::pair<unsigned64, unsigned64>> _told; ///< cells whose overlap was counted
};

/// The nodes of a face; a line of a two-dimensional mesh becomes a wall of height 1.
std::vector<AxisPass::Point> AxisPass::pointsOf(const OuterFace& face) const
{
    std::vector<Point> points;
    for (std::size_t n = 0; n < face.count; ++n) {
        const Vector3& node = _state.nodes[_state.outerNodes[face.start + n]];
        points.push_back({node.x, node.y, node.z});
    }
    if (_state.isFlat()) {
        points = {points.front(), points.back()};
        points.push_back({points[1][0], points[1][1], 1.0});
        points.push_back({points[0][0], points[0][1], 1.0});
    }
    return points;
}

AxisPass::Point AxisPass::centreOf(const std::vector<Point>& points)
{
    Point centre{};
    for (const Point& point : points)
        for (std::size_t d = 0; d < 3; ++d)
            centre[d] += point[d] / static_cast<double>(points.size());
    return centre;
}

std::size_t AxisPass::bin(double value, std::size_t d, std::size_t bins) const
{
    const double low = _state.report.boxMin[d], size = _state.report.boxMax[d] - low;
    if (!(size > 0.0))
        return 0;
    return static_cast<std::size_t>(
        std::clamp((value - low) / size * static_cast<double>(bins), 0.0, static_cast<double>(bins) - 1.0));
}

void AxisPass::fillGrid()
{
    _grid.resize(_columns * _rows);
    for (std::size_t number = 0; number < _state.outerFaces.size(); ++number) {
        Point low{1e300, 1e300, 1e300}, high{-1e300, -1e300, -1e300};
        for (const Point& point : pointsOf(_state.outerFaces[number]))
            for (std::size_t d = 0; d < 3; ++d) {
                low[d] = std::min(low[d], point[d]);
                high[d] = std::max(high[d], point[d]);
            }
        const std::size_t lastColumn = bin(high[_u], _u, _columns), lastRow = bin(high[_v], _v, _rows);
        for (std::size_t row = bin(low[_v], _v, _rows); row <= lastRow; ++row)
            for (std::size_t column = bin(low[_u], _u, _columns); column <= lastColumn; ++column)
                _grid[row * _columns + column].push_back(static_cast<std::uint32_t>(number));
    }
}

void AxisPass::run()
{
    fillGrid();
    const std::size_t step = _state.outerFaces.size() / mostLines + 1;
    for (std::size_t number = 0; number < _state.outerFaces.size(); number += step) {
        follow(number);
        if (number / step % 1000 == 0)
            _state.tell("overlaps", number, _state.outerFaces.size());
    }
}

/// Whether a face looks along the axis more than across it.
bool AxisPass::facesAxis(const std::vector<Point>& points, const Point& centre) const
{
    Point normal{};
    for (std::size_t n = 0; n < points.size(); ++n) {
        const Point &a = points[n], &b = points[(n + 1) % points.size()];
        for (std::size_t d = 0; d < 3; ++d) {
            const std::size_t e = (d + 1) % 3, f = (d + 2) % 3;
            normal[d] += (a[e] - centre[e]) * (b[f] - centre[f]) - (a[f] - centre[f]) * (b[e] - centre[e]);
        }
    }
    return std::abs(normal[_axis]) > 0.4 * std::hypot(normal[0], normal[1], normal[2]);
}

/// Follows the line through a point within a face: somewhere in its first triangle, at no place that a regular mesh
/// would have a node or an edge above.
void AxisPass::follow(std::size_t number)
{
    const std::vector<Point> points = pointsOf(_state.outerFaces[number]);
    const Point centre = centreOf(points);
    // A line that runs along a face grazes its edges, where it is a matter of rounding what is inside.
    if (!facesAxis(points, centre))
        return;
    Point at{};
    for (std::size_t d = 0; d < 3; ++d)
        at[d] = 0.52713 * centre[d] + 0.29171 * points[0][d] + 0.18116 * points[1][d];
    std::vector<Crossing> crossings;
    for (const std::uint32_t other : _grid[bin(at[_v], _v, _rows) * _columns + bin(at[_u], _u, _columns)])
        addCrossings(other, at, crossings);
    judge(crossings);
}

/// Where the line at a point crosses the triangles of a face. The sign of an edge is computed from its ends in one
/// order, so that two triangles that share it never both take or both leave a point on it.
void AxisPass::addCrossings(std::size_t number, const Point& at, std::vector<Crossing>& to) const
{
    const std::vector<Point> points = pointsOf(_state.outerFaces[number]);
    const Point centre = centreOf(points);
    const auto turn = [&](const Point& a, const Point& b) {
        return (a[_u] - at[_u]) * (b[_v] - at[_v]) - (a[_v] - at[_v]) * (b[_u] - at[_u]);
    };
    const auto side = [&](const Point& a, const Point& b) { return a < b ? turn(a, b) : -turn(b, a); };
    const auto isLeft = [&](const Point& a, const Point& b) { return a < b ? turn(a, b) >= 0.0 : turn(b, a) < 0.0; };
    for (std::size_t n = 0; n < points.size(); ++n) {
        const Point &a = points[n], &b = points[(n + 1) % points.size()];
        const double wa = side(b, centre), wb = side(centre, a), wc = side(a, b), sum = wa + wb + wc;
        const bool isInside = isLeft(b, centre) == isLeft(centre, a) && isLeft(centre, a) == isLeft(a, b);
        if (!isInside || sum == 0.0)
            continue;
        const double height = (wa * a[_axis] + wb * b[_axis] + wc * centre[_axis]) / sum;
        // The normal of a face points out of the mesh; u, v and the axis are a right-handed system, or in two
        // dimensions a left-handed one, where _u and _v were exchanged.
        const bool isUpwards = (sum > 0.0) == ((_u + 1) % 3 == _v);
        to.push_back({height, !isUpwards, number});
    }
}

double AxisPass::sizeOf(std::size_t number) const
{
    const std::vector<Point> points = pointsOf(_state.outerFaces[number]);
    double longest = 0.0;
    const std::size_t count = _state.isFlat() ? 2 : points.size();
    for (std::size_t n = 0; n < count; ++n)
        longest = std::max(longest, std::hypot(points[n][0] - points[(n + 1) % count][0],
                                               points[n][1] - points[(n + 1) % count][1],
                                               points[n][2] - points[(n + 1) % count][2]));
    return longest;
}

/// How far two faces may be inside each other. Where parts of a mesh are meant to lie on one another without sharing
/// faces, curved surfaces that are divided differently stand in each other a little.
double AxisPass::toleranceOf(std::size_t a, std::size_t b) const
{
    const OuterFace &one = _state.outerFaces[a], &other = _state.outerFaces[b];
    const int kinds[] = {kindOf(_state, one), kindOf(_state, other)};
    const bool areCoupled = isCoupled(kinds[0]) && isCoupled(kinds[1]);
    const bool areWalls =
        kinds[0] == KEL_FACE_ZONE_TYPE_WALL && kinds[1] == KEL_FACE_ZONE_TYPE_WALL && one.zone != other.zone;
    return (areCoupled || areWalls ? 0.25 : 1e-3) * std::max(sizeOf(a), sizeOf(b));
}

void AxisPass::judge(std::vector<Crossing>& crossings)
{
    std::sort(crossings.begin(), crossings.end(), [](const Crossing& a, const Crossing& b) { return a.at < b.at; });
    _state.report.addLookedAt(KelMeshRule::Overlaps, 1);
    std::vector<const Crossing*> inside; // the faces through which the line came in and has not gone out
    for (const Crossing& crossing : crossings) {
        if (crossing.isEntering) {
            inside.push_back(&crossing);
            continue;
        }
        if (inside.size() > 1) {
            const Crossing& entered = *inside.back();
            const unsigned64 cells[] = {_state.outerFaces[entered.face].cell, _state.outerFaces[crossing.face].cell};
            if (crossing.at - entered.at > toleranceOf(entered.face, crossing.face) &&
                _told.emplace(cells[0], cells[1]).second)
                _state.add(KelMeshRule::Overlaps, KEL_CELL_ZONE, cells[0],
                           "between cell " + grouped(cells[0]) + " and cell " + grouped(cells[1]) +
                               " the mesh fills the same place twice");
        }
        if (!inside.empty())
            inside.pop_back();
    }
}

} // namespace

void checkDepth(CheckState& state)
{
    if (state.outerFaces.empty() || !state.report.hasBox)
        return;
    for (std::size_t axis = 0; axis < static_cast<std::size_t>(state.report.dimension); ++axis)
        AxisPass(state, axis).run();
}

} // namespace meridyn::mesh
