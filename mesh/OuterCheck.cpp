#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/FaceGeometry.h"
#include "mesh/MeshText.h"
#include "mesh/OuterDepth.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace meridyn::mesh {

namespace {

/// Finds outer faces that lie in the same place. Two cells that touch should share one face; where they do not, the
/// mesh has a crack, unless something says that it is meant: interfaces, shadows, a thin wall with the same nodes on
/// both sides and a zone for each.
class Coincidence {
public:
    explicit Coincidence(CheckState& state) : _state(state)
    {
        double diagonal = 0.0;
        for (std::size_t d = 0; d < 3; ++d)
            diagonal = std::hypot(diagonal, state.report.boxMax[d] - state.report.boxMin[d]);
        _width = diagonal * 1e-8;
    }

    void run()
    {
        if (!(_width > 0.0) || _state.outerFaces.empty())
            return;
        _state.report.addLookedAt(KelMeshRule::Shared, _state.outerFaces.size());
        std::vector<Vector3> points;
        for (const OuterFace& face : _state.outerFaces) {
            points.clear();
            for (std::size_t n = 0; n < face.count; ++n)
                points.push_back(_state.nodes[_state.outerNodes[face.start + n]]);
            _shapes.push_back(shapeOf(points, _state.report.dimension));
        }
        for (std::size_t n = 0; n < _shapes.size(); ++n)
            _places.emplace_back(boxOf(_shapes[n].centre, {}), n);
        std::sort(_places.begin(), _places.end());
        for (std::size_t n = 0; n < _shapes.size(); ++n)
            findTwin(n);
    }

private:
    /// Number of the small box about a point; boxes are some widths large, so that a point is mostly in the middle.
    std::uint64_t boxOf(const Vector3& point, const Vector3& shift) const
    {
        const auto step = [&](double x, double by) {
            return static_cast<std::uint64_t>(static_cast<std::int64_t>(std::floor(x / (8.0 * _width) + 0.125 * by)));
        };
        return spread(step(point.x, shift.x) + spread(step(point.y, shift.y) + spread(step(point.z, shift.z))));
    }

    void findTwin(std::size_t n)
    {
        std::vector<std::uint64_t> boxes;
        for (const double x : {-1.0, 1.0})
            for (const double y : {-1.0, 1.0})
                for (const double z : {-1.0, 1.0})
                    boxes.push_back(boxOf(_shapes[n].centre, {x, y, z}));
        std::sort(boxes.begin(), boxes.end());
        boxes.erase(std::unique(boxes.begin(), boxes.end()), boxes.end());
        for (const std::uint64_t box : boxes)
            for (auto at = std::lower_bound(_places.begin(), _places.end(), std::pair(box, std::size_t{0}));
                 at != _places.end() && at->first == box; ++at)
                if (at->second > n && judge(n, at->second))
                    return;
    }

    /// Whether the two are in one place, which is then counted if nothing speaks for it.
    bool judge(std::size_t a, std::size_t b)
    {
        const FaceShape &first = _shapes[a], &second = _shapes[b];
        const double size = length(first.area);
        if (length(first.centre - second.centre) > _width)
            return false;
        const bool isSame = length(first.area - second.area) <= 1e-5 * size;
        if (!isSame && length(first.area + second.area) > 1e-5 * size)
            return false;
        const OuterFace &one = _state.outerFaces[a], &other = _state.outerFaces[b];
        if (isSame)
            _state.add(KelMeshRule::Overlaps, KEL_CELL_ZONE, one.cell,
                       nameOf(one) + " and " + nameOf(other) + " bound cells on the same side of one place");
        else if (!isMeant(one, other))
            _state.add(KelMeshRule::Shared, KEL_FACE_ZONE, one.face,
                       nameOf(one) + " and " + nameOf(other) + " are in one place, but not shared");
        return true;
    }

    std::string nameOf(const OuterFace& face) const
    {
        if (face.face == 0)
            return "a side of cell " + grouped(face.cell);
        return _state.label(KEL_FACE_ZONE, _state.zones[KEL_FACE_ZONE][face.zone], face.face);
    }

    bool isMeant(const OuterFace& one, const OuterFace& other)
    {
        if (one.face != 0 && _state.reader.getShadowFaceIdForFace(one.face) == other.face)
            return true;
        const int kinds[] = {kindOf(_state, one), kindOf(_state, other)};
        if (std::all_of(std::begin(kinds), std::end(kinds), isCoupled))
            return true;
        // A wall without thickness has cells on both sides, which do not touch each other. Sound cases have such walls
        // with the same nodes on both sides and with nodes of their own, in one zone and in two.
        const bool isThinWall = kinds[0] == KEL_FACE_ZONE_TYPE_WALL && kinds[1] == KEL_FACE_ZONE_TYPE_WALL;
        _state.report.thinWallPairs += isThinWall ? 1 : 0;
        return isThinWall;
    }

    CheckState& _state;
    double _width = 0.0; ///< points that are closer are one
    std::vector<FaceShape> _shapes;
    std::vector<std::pair<std::uint64_t, std::size_t>> _places; ///< box of the centre, number of the face
};

} // namespace

int kindOf(const CheckState& state, const OuterFace& face)
{
    return face.zone < state.zones[KEL_FACE_ZONE].size() ? state.zones[KEL_FACE_ZONE][face.zone].kind : -1;
}

bool isCoupled(int kind)
{
    return kind == KEL_FACE_ZONE_TYPE_INTERFACE || kind == KEL_FACE_ZONE_TYPE_PERIODIC ||
           kind == KEL_FACE_ZONE_TYPE_PARTITION;
}

void checkOuterFaces(CheckState& state)
{
    // Faces without cells bound nothing, and holes in a damaged mesh would show as overlaps.
    std::erase_if(state.outerFaces, [](const OuterFace& face) { return face.cell == 0; });
    if (state.report.hasOffenders())
        return;
    Coincidence(state).run();
    if (!state.report.hasOffenders())
        checkDepth(state);
}

} // namespace meridyn::mesh
