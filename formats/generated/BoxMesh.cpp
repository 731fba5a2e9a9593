#include "BoxMesh.h"

#include <algorithm>
#include <utility>

namespace meridyn {

namespace {

constexpr int nodeZoneId = 1;
constexpr int interiorZoneId = 2;
constexpr int firstBoundaryZoneId = 3;
constexpr int parentZoneId = 9;
constexpr int firstCellZoneId = 10;

} // namespace

BoxMesh::BoxMesh(const BoxDescription& description) : _box(description), _template(description.shape)
{
    const auto [nx, ny, nz] = _box.blocks;
    _blockCount = nx * ny * nz;
    _latticeNodes = (nx + 1) * (ny + 1) * (nz + 1);
    _plane = _box.hanging ? nz / 2 : 0;
    _nodeCount = _latticeNodes;
    if (_template.hasCentre())
        _nodeCount += _blockCount;
    if (_plane != 0)
        _nodeCount += nx * (ny + 1) + (nx + 1) * ny + nx * ny;

    using Kind = Group::Kind;
    addGroup(Kind::Inner, 0, 0, _blockCount * _template.inner().size());
    addGroup(Kind::Across, 0, 0, (nx - 1) * ny * nz * _template.across(0).size());
    addGroup(Kind::Across, 1, 0, nx * (ny - 1) * nz * _template.across(1).size());
    addGroup(Kind::Across, 2, 0, nx * ny * (nz - 1 - (_plane != 0 ? 1 : 0)) * _template.across(2).size());
    addGroup(Kind::Children, 2, 0, _plane != 0 ? 4 * nx * ny : 0);
    for (int direction = 0; direction < 3; ++direction)
        for (int side = 0; side < 2; ++side)
            addGroup(Kind::Boundary, direction, side,
                     _blockCount / _box.blocks[static_cast<std::size_t>(direction)] *
                         _template.across(direction).size());
    addGroup(Kind::Parents, 2, 0, _plane != 0 ? nx * ny : 0);
    addZones();
}

void BoxMesh::addGroup(Group::Kind kind, int direction, int side, unsigned64 count)
{
    _groups.push_back({kind, direction, side, _faceCount + 1, count});
    _faceCount += count;
}

void BoxMesh::addZones()
{
    static const char* const boundaryNames[] = {"x-min", "x-max", "y-min", "y-max", "z-min", "z-max"};
    _zones.push_back({nodeZoneId, KEL_NODE_ZONE, "nodes", -1, 1, _nodeCount});
    unsigned64 interiorLast = 0;
    int boundary = 0;
    std::vector<Zone> boundaries;
    for (const Group& group : _groups) {
        const unsigned64 last = group.first + group.count - 1;
        if (group.kind == Group::Kind::Boundary) {
            const bool periodic = _box.periodic && group.direction == 0;
            boundaries.push_back({firstBoundaryZoneId + boundary, KEL_FACE_ZONE, boundaryNames[boundary],
                                  periodic ? KEL_FACE_ZONE_TYPE_PERIODIC : KEL_FACE_ZONE_TYPE_WALL, group.first, last});
            ++boundary;
        } else if (group.kind == Group::Kind::Parents) {
            if (group.count != 0)
                boundaries.push_back(
                    {parentZoneId, KEL_FACE_ZONE, "parents", KEL_FACE_ZONE_TYPE_PARENT, group.first, last});
        } else
            interiorLast = last;
    }
    _zones.push_back({interiorZoneId, KEL_FACE_ZONE, "interior", KEL_FACE_ZONE_TYPE_INTERIOR, 1, interiorLast});
    _zones.insert(_zones.end(), boundaries.begin(), boundaries.end());

    const unsigned64 cellsPerLayer = _box.blocks[0] * _box.blocks[1] * _template.cells().size();
    for (unsigned64 n = 0; n < _box.cellZones; ++n) {
        const unsigned64 from = _box.blocks[2] * n / _box.cellZones;
        const unsigned64 to = _box.blocks[2] * (n + 1) / _box.cellZones;
        const std::string name = _box.cellZones == 1 ? "cells" : "cells-" + std::to_string(n + 1);
        _zones.push_back({firstCellZoneId + static_cast<int>(n), KEL_CELL_ZONE, name, -1, from * cellsPerLayer + 1,
                          to * cellsPerLayer});
    }
}

const BoxMesh::Group& BoxMesh::groupOf(unsigned64 faceId) const
{
    const auto next = std::upper_bound(_groups.begin(), _groups.end(), faceId,
                                       [](unsigned64 id, const Group& group) { return id < group.first; });
    return *std::prev(next); // of groups that share a first id, all but the last are empty
}

BoxMesh::Position BoxMesh::blockPosition(unsigned64 block, const Position& extent) const
{
    return {block % extent[0], block / extent[0] % extent[1], block / (extent[0] * extent[1])};
}

unsigned64 BoxMesh::block(const Position& at) const
{
    return at[0] + _box.blocks[0] * (at[1] + _box.blocks[1] * at[2]);
}

unsigned64 BoxMesh::cell(const Position& at, int inBlock) const
{
    return block(at) * _template.cells().size() + static_cast<unsigned64>(inBlock) + 1;
}

unsigned64 BoxMesh::node(const Position& at, int local) const
{
    if (local == BlockTemplate::centreNode)
        return _latticeNodes + block(at) + 1;
    const auto bits = static_cast<unsigned64>(local);
    const unsigned64 i = at[0] + (bits & 1), j = at[1] + (bits >> 1 & 1), k = at[2] + (bits >> 2);
    return i + (_box.blocks[0] + 1) * (j + (_box.blocks[1] + 1) * k) + 1;
}

/// Node at the point (u, v) of the hanging plane, counted in half blocks.
unsigned64 BoxMesh::planeNode(unsigned64 u, unsigned64 v) const
{
    const auto [nx, ny, nz] = _box.blocks;
    const unsigned64 i = u / 2, j = v / 2;
    const bool midX = u % 2 != 0, midY = v % 2 != 0;
    if (!midX && !midY)
        return node({i, j, _plane}, 0);
    unsigned64 before = _latticeNodes;
    if (midX && !midY)
        return before + i + nx * j + 1;
    before += nx * (ny + 1);
    if (!midX)
        return before + i + (nx + 1) * j + 1;
    before += (nx + 1) * ny;
    return before + i + nx * j + 1;
}

std::array<double, 3> BoxMesh::coordinates(unsigned64 nodeId) const
{
    const auto [nx, ny, nz] = _box.blocks;
    std::array<double, 3> at{};
    unsigned64 index = nodeId - 1;
    if (index < _latticeNodes) {
        const Position p = blockPosition(index, {nx + 1, ny + 1, nz + 1});
        at = {static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
    } else if (_template.hasCentre()) {
        const Position p = blockPosition(index - _latticeNodes, _box.blocks);
        at = {static_cast<double>(p[0]) + 0.5, static_cast<double>(p[1]) + 0.5, static_cast<double>(p[2]) + 0.5};
    } else { // middles of the edges along x, along y, then of the faces of the hanging plane
        index -= _latticeNodes;
        const unsigned64 alongX = nx * (ny + 1), alongY = (nx + 1) * ny;
        const bool midX = index < alongX || index >= alongX + alongY;
        const bool midY = index >= alongX;
        if (index >= alongX + alongY)
            index -= alongX + alongY;
        else if (index >= alongX)
            index -= alongX;
        const unsigned64 width = midX ? nx : nx + 1;
        const unsigned64 column = index % width;
        const unsigned64 row = index / width;
        at = {static_cast<double>(column) + (midX ? 0.5 : 0.0), static_cast<double>(row) + (midY ? 0.5 : 0.0),
              static_cast<double>(_plane)};
    }
    for (std::size_t d = 0; d < 3; ++d)
        at[d] = at[d] / static_cast<double>(_box.blocks[d]) * _box.size[d];
    return at;
}

BoxMesh::Face BoxMesh::face(unsigned64 faceId) const
{
    const Group& group = groupOf(faceId);
    const unsigned64 index = faceId - group.first;
    switch (group.kind) {
    case Group::Kind::Inner: {
        const BlockTemplate::Face& pattern = _template.inner()[index % _template.inner().size()];
        const Position at = blockPosition(index / _template.inner().size(), _box.blocks);
        Face face = templateFace(pattern, at);
        face.cell0 = cell(at, pattern.low);
        face.cell1 = cell(at, pattern.high);
        return face;
    }
    case Group::Kind::Across:
        return acrossFace(group, index);
    case Group::Kind::Children:
        return childFace(index);
    case Group::Kind::Boundary:
        return boundaryFace(group, index);
    case Group::Kind::Parents:
        break;
    }
    return parentFace(index);
}

BoxMesh::Face BoxMesh::templateFace(const BlockTemplate::Face& pattern, const Position& at) const
{
    Face face;
    for (const int local : pattern.nodes)
        face.nodes[static_cast<std::size_t>(face.nodeCount++)] = node(at, local);
    return face;
}

BoxMesh::Face BoxMesh::acrossFace(const Group& group, unsigned64 index) const
{
    const auto d = static_cast<std::size_t>(group.direction);
    const auto& patterns = _template.across(group.direction);
    const BlockTemplate::Face& pattern = patterns[index % patterns.size()];
    Position extent = _box.blocks;
    extent[d] -= 1;
    Position at = blockPosition(index / patterns.size(), extent);
    at[d] += 1;
    if (d == 2 && _plane != 0 && at[2] >= _plane) // the hanging plane is not among these layers
        at[2] += 1;
    Position before = at;
    before[d] -= 1;
    Face face = templateFace(pattern, at);
    face.cell0 = cell(before, pattern.low);
    face.cell1 = cell(at, pattern.high);
    return face;
}

BoxMesh::Face BoxMesh::boundaryFace(const Group& group, unsigned64 index) const
{
    const auto d = static_cast<std::size_t>(group.direction);
    const auto& patterns = _template.across(group.direction);
    const BlockTemplate::Face& pattern = patterns[index % patterns.size()];
    Position extent = _box.blocks;
    extent[d] = 1;
    Position at = blockPosition(index / patterns.size(), extent);
    at[d] = group.side == 0 ? 0 : _box.blocks[d];
    Face face = templateFace(pattern, at);
    if (group.side == 0) {
        std::reverse(face.nodes.begin() + 1, face.nodes.begin() + face.nodeCount); // the normal points out of the box
        face.cell0 = cell(at, pattern.high);
    } else {
        at[d] -= 1;
        face.cell0 = cell(at, pattern.low);
    }
    if (_box.periodic && d == 0)
        face.shadow = group.side == 0 ? group.first + group.count + index : group.first - group.count + index;
    return face;
}

BoxMesh::Face BoxMesh::childFace(unsigned64 index) const
{
    const unsigned64 parent = index / 4, nx = _box.blocks[0];
    const Position at{parent % nx, parent / nx, _plane};
    const unsigned64 u = 2 * at[0] + index % 2, v = 2 * at[1] + index / 2 % 2;
    Face face;
    face.nodes = {planeNode(u, v), planeNode(u + 1, v), planeNode(u + 1, v + 1), planeNode(u, v + 1)};
    face.nodeCount = 4;
    face.cell0 = cell({at[0], at[1], _plane - 1}, 0);
    face.cell1 = cell(at, 0);
    return face;
}

BoxMesh::Face BoxMesh::parentFace(unsigned64 index) const
{
    const unsigned64 nx = _box.blocks[0];
    const Position at{index % nx, index / nx, _plane};
    Face face = templateFace(_template.across(2).front(), at);
    face.cell0 = cell({at[0], at[1], _plane - 1}, 0);
    face.cell1 = cell(at, 0);
    const auto children =
        std::find_if(_groups.begin(), _groups.end(), [](const Group& g) { return g.kind == Group::Kind::Children; });
    face.childCount = 4;
    for (unsigned64 n = 0; n < 4; ++n)
        face.children[n] = children->first + 4 * index + n;
    return face;
}

bool BoxMesh::touchesPlane(unsigned64 layer) const
{
    return _plane != 0 && (layer == _plane || layer + 1 == _plane);
}

KelCellType BoxMesh::cellType(unsigned64 cellId) const
{
    const unsigned64 perBlock = _template.cells().size();
    if (touchesPlane((cellId - 1) / perBlock / (_box.blocks[0] * _box.blocks[1])))
        return KEL_CELL_POLYHEDRON;
    return _template.cells()[(cellId - 1) % perBlock].type;
}

std::vector<unsigned64> BoxMesh::cellNodes(unsigned64 cellId) const
{
    std::vector<unsigned64> nodes;
    if (cellType(cellId) == KEL_CELL_POLYHEDRON)
        return nodes;
    const unsigned64 perBlock = _template.cells().size();
    const Position at = blockPosition((cellId - 1) / perBlock, _box.blocks);
    for (const int local : _template.cells()[(cellId - 1) % perBlock].nodes)
        nodes.push_back(node(at, local));
    return nodes;
}

std::array<double, 3> BoxMesh::cellCentre(unsigned64 cellId) const
{
    const unsigned64 perBlock = _template.cells().size();
    const Position at = blockPosition((cellId - 1) / perBlock, _box.blocks);
    std::array<double, 3> centre = _template.cells()[(cellId - 1) % perBlock].centre;
    for (std::size_t d = 0; d < 3; ++d)
        centre[d] = (static_cast<double>(at[d]) + centre[d]) / static_cast<double>(_box.blocks[d]) * _box.size[d];
    return centre;
}

int BoxMesh::cellPartition(unsigned64 cellId) const
{
    const unsigned64 i = (cellId - 1) / _template.cells().size() % _box.blocks[0];
    return static_cast<int>(i * static_cast<unsigned64>(_box.partitions) / _box.blocks[0]);
}

short BoxMesh::uniformFaceNodeCount(unsigned64 first, unsigned64 last) const
{
    short common = 0;
    for (const Group& group : _groups) {
        if (group.count == 0 || group.first > last || group.first + group.count <= first)
            continue;
        const short count = face(group.first).nodeCount; // the same all over a group
        if (common != 0 && common != count)
            return 0;
        common = count;
    }
    return common;
}

short BoxMesh::uniformCellNodeCount() const
{
    return _plane != 0 ? short{0} : static_cast<short>(_template.cells().front().nodes.size());
}

bool BoxMesh::hasUniformType(unsigned64 first, unsigned64 last, KelCellType& type) const
{
    const unsigned64 perLayer = _box.blocks[0] * _box.blocks[1] * _template.cells().size();
    const unsigned64 firstLayer = (first - 1) / perLayer, lastLayer = (last - 1) / perLayer;
    if (_plane != 0) {
        const bool meetsPlane = firstLayer <= _plane && lastLayer + 1 >= _plane;
        if (meetsPlane && !(touchesPlane(firstLayer) && touchesPlane(lastLayer)))
            return false;
    }
    type = cellType(first);
    return true;
}

} // namespace meridyn
