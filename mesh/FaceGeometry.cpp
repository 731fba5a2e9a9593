#include "mesh/FaceGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace meridyn::mesh {

namespace {

/// A length that differences of coordinates may be wrong by, since coordinates are rounded.
double roundingOf(const std::vector<Vector3>& points)
{
    double largest = 0.0;
    for (const Vector3& point : points)
        largest = std::max({largest, std::abs(point.x), std::abs(point.y), std::abs(point.z)});
    return 4.0 * std::numeric_limits<double>::epsilon() * largest;
}

FaceShape lineOf(const std::vector<Vector3>& points)
{
    FaceShape shape;
    const Vector3 line = points.back() - points.front();
    shape.centre = 0.5 * (points.front() + points.back());
    shape.area = {line.y, -line.x, 0.0};
    shape.hasArea = length(line) > roundingOf(points);
    return shape;
}

} // namespace

FaceShape shapeOf(const std::vector<Vector3>& points, int dimension)
{
    if (dimension == 2)
        return lineOf(points);
    FaceShape shape;
    for (const Vector3& point : points)
        shape.centre += point;
    shape.centre = 1.0 / static_cast<double>(points.size()) * shape.centre;
    const double rounding = roundingOf(points);
    double longest = 0.0; // squared
    Vector3 before = points.front() - points.back();
    for (std::size_t n = 0; n < points.size(); ++n) {
        const Vector3& from = points[n];
        const Vector3& to = points[n + 1 < points.size() ? n + 1 : 0];
        const Vector3 edge = to - from;
        shape.area += 0.5 * cross(from - shape.centre, to - shape.centre);
        const double square = dot(edge, edge), turn = dot(before, edge);
        longest = std::max(longest, square);
        if (square <= rounding * rounding)
            shape.hasSpike = true;
        else if (turn < 0.0) {
            // The sine of the corner is what tells a spike from a sharp corner; 1e-9 is far below any mesh that a
            // solver takes, and rounding adds its share for short edges.
            const double sine = length(cross(before, edge));
            shape.hasSpike = shape.hasSpike || sine <= -turn * 1e-9 + rounding * std::sqrt(-turn);
        }
        before = edge;
    }
    shape.hasArea = length(shape.area) > 1e-14 * longest + rounding * std::sqrt(longest);
    return shape;
}

} // namespace meridyn::mesh
