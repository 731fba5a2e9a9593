#include "KelProvider.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/FaceGeometry.h"
#include "mesh/FaceStream.h"
#include "mesh/MeshText.h"

#include <algorithm>

namespace meridyn::mesh {

namespace {

/// One pass over all faces. A damaged face is left out of the sums and marks the cells that it names, so that one
/// wrong id is not ten exceptions; a cell that it should name is open.
class FacePass {
public:
    explicit FacePass(CheckState& state) : _state(state) {}

    void run()
    {
        reserveCells();
        for (std::size_t number = 0; number < _state.zones[KEL_FACE_ZONE].size(); ++number)
            readZone(number);
    }

private:
    /// The face at hand: its zone, its id, and what was found of it.
    struct Face {
        std::size_t zoneNumber = 0;
        const Zone* zone = nullptr;
        unsigned64 id = 0;
        const unsigned64* nodes = nullptr;
        std::size_t count = 0;
        unsigned64 cell0 = 0, cell1 = 0;
        bool hasCells = false;
        FaceShape shape;
        FacePrint print;
    };

    void reserveCells();
    void readZone(std::size_t number);
    void readFace(Face& face);
    bool findNodes(const Face& face);
    bool hasRepeats(const Face& face);
    bool findCells(const Face& face);
    void checkKind(const Face& face);
    void checkShape(const Face& face);
    void addTo(CellSums& cell, const Face& face, bool isOutwards) const;
    void addToCells(const Face& face);
    void addOuter(const Face& face);
    void addToParent(const Face& face, ParentFace& parent);
    std::string label(const Face& face) const { return _state.label(KEL_FACE_ZONE, *face.zone, face.id); }
    void offend(KelMeshRule rule, const Face& face, const std::string& what)
    {
        _state.add(rule, KEL_FACE_ZONE, face.id, label(face) + what);
    }

    CheckState& _state;
    std::vector<std::size_t> _places; ///< of the nodes of the face at hand
    std::vector<std::size_t> _sorted;
    std::vector<Vector3> _points;
};

/// Cells have sums if faces name any of them.
void FacePass::reserveCells()
{
    const std::size_t cells = _state.ids[KEL_CELL_ZONE].size();
    for (const Zone& zone : _state.zones[KEL_FACE_ZONE]) {
        unsigned64 cell0 = 0;
        if (_state.reader.getCell0sForFacesInRange(zone.last, zone.last, &cell0, 1) == 1)
            _state.report.hasFaces = true;
    }
    if (!_state.report.hasFaces || cells == 0)
        return;
    _state.cells.assign(cells, CellSums());
}

void FacePass::readZone(std::size_t number)
{
    const Zone& zone = _state.zones[KEL_FACE_ZONE][number];
    FaceStream stream(_state.reader, zone.id, zone.first, zone.last);
    FaceBlock block;
    Face face;
    face.zoneNumber = number;
    face.zone = &zone;
    while (stream.next(block)) {
        for (const KelMeshRule rule : {KelMeshRule::Ids, KelMeshRule::FaceNodes, KelMeshRule::FaceShapes})
            _state.report.addLookedAt(rule, block.size());
        if (block.hasCells && !zone.isParent())
            _state.report.addLookedAt(KelMeshRule::FaceCells, block.size());
        _state.hasFaceNodes = true;
        for (std::size_t n = 0; n < block.size(); ++n) {
            face.id = block.first + n;
            face.nodes = block.nodesOf(n);
            face.count = static_cast<std::size_t>(block.counts[n]);
            face.cell0 = block.cell0s[n];
            face.cell1 = block.cell1s[n];
            // Parents were replaced by their children, which name the cells in their place.
            face.hasCells = (block.hasCells || !_state.cells.empty()) && !zone.isParent();
            readFace(face);
        }
        _state.tell("faces", _state.ids[KEL_FACE_ZONE].indexOf(stream.position() - 1) + 1,
                    _state.ids[KEL_FACE_ZONE].size());
    }
    if (stream.isCut())
        CheckState::stop("face zone " + zoneLabel(_state.reader, zone.id) + ": the nodes or cells from face " +
                         grouped(stream.position()) + " on could not be read");
    if (stream.isWithoutNodes())
        _state.report.addUnseen({KEL_FACE_ZONE, zone.size(),
                                 counted(zone.size(), "face", "faces") + " of zone " +
                                     zoneLabel(_state.reader, zone.id) + " without nodes"});
}

void FacePass::readFace(Face& face)
{
    const bool hasGoodNodes = findNodes(face);
    const bool hasGoodCells = !face.hasCells || findCells(face);
    if (!hasGoodNodes || !hasGoodCells) {
        for (CellSums* cell : {_state.cell(face.cell0), _state.cell(face.cell1)})
            if (cell != nullptr && face.hasCells)
                cell->isDamaged = true;
        return;
    }
    face.shape = shapeOf(_points, _state.report.dimension);
    face.print = printOf(_places.data(), _places.size(), _state.report.dimension);
    checkShape(face);
    if (face.hasCells) {
        checkKind(face);
        addToCells(face);
    }
    if (!face.zone->isParent() && (!face.hasCells || face.cell1 == 0))
        addOuter(face);
    if (_state.parents.empty())
        return;
    if (const auto own = _state.parentByFace.find(face.id); own != _state.parentByFace.end()) {
        _state.parents[own->second].own = face.print;
        _state.parents[own->second].area = face.shape.area;
    }
    if (const auto parent = _state.parentByChild.find(face.id); parent != _state.parentByChild.end())
        addToParent(face, _state.parents[parent->second]);
}

// ---- ids ----------------------------------------------------------------------------------------------------------

bool FacePass::findNodes(const Face& face)
{
    _places.clear();
    _points.clear();
    bool isFinitePoint = true;
    for (std::size_t n = 0; n < face.count; ++n) {
        const std::size_t place = _state.ids[KEL_NODE_ZONE].indexOf(face.nodes[n]);
        if (place == ElementIds::none) {
            offend(KelMeshRule::Ids, face,
                   " names node " + grouped(face.nodes[n]) + " of " + grouped(_state.nodes.size()));
            return false;
        }
        _state.isUsed[place] = true;
        isFinitePoint = isFinitePoint && isFinite(_state.nodes[place]);
        _places.push_back(place);
        _points.push_back(_state.nodes[place]);
    }
    if (face.count < _state.nodesPerFace()) {
        offend(KelMeshRule::FaceNodes, face, " has " + counted(face.count, "node", "nodes"));
        return false;
    }
    return !hasRepeats(face) && isFinitePoint;
}

bool FacePass::hasRepeats(const Face& face)
{
    _sorted = _places;
    std::sort(_sorted.begin(), _sorted.end());
    const auto twice = std::adjacent_find(_sorted.begin(), _sorted.end());
    if (twice == _sorted.end())
        return false;
    offend(KelMeshRule::FaceNodes, face, " has node " + grouped(_state.ids[KEL_NODE_ZONE].idOf(*twice)) + " twice");
    return true;
}

bool FacePass::findCells(const Face& face)
{
    const ElementIds& cells = _state.ids[KEL_CELL_ZONE];
    const bool isFirst = !cells.contains(face.cell0);
    if (isFirst || (face.cell1 != 0 && !cells.contains(face.cell1))) {
        offend(KelMeshRule::Ids, face,
               " names cell " + grouped(isFirst ? face.cell0 : face.cell1) + " of " + grouped(cells.size()) +
                   " on side " + (isFirst ? "0" : "1"));
        return false;
    }
    if (face.cell0 == face.cell1)
        offend(KelMeshRule::FaceCells, face, " has cell " + grouped(face.cell0) + " on both sides");
    else if (face.cell1 == 0 && face.zone->kind == KEL_FACE_ZONE_TYPE_INTERIOR)
        offend(KelMeshRule::FaceCells, face, " has no cell 1");
    else
        return true;
    return false;
}

/// A boundary has the mesh on one side only. Interfaces and boundaries of partitions may know what is beyond.
void FacePass::checkKind(const Face& face)
{
    static const int boundaries[] = {
        KEL_FACE_ZONE_TYPE_WALL,     KEL_FACE_ZONE_TYPE_INLET, KEL_FACE_ZONE_TYPE_OUTLET,  KEL_FACE_ZONE_TYPE_SYMMETRY,
        KEL_FACE_ZONE_TYPE_PERIODIC, KEL_FACE_ZONE_TYPE_EMPTY, KEL_FACE_ZONE_TYPE_BOUNDARY};
    if (face.cell1 != 0 &&
        std::find(std::begin(boundaries), std::end(boundaries), face.zone->kind) != std::end(boundaries))
        offend(KelMeshRule::FaceCells, face, " is on a boundary, but has cell 1 " + grouped(face.cell1));
}

// ---- geometry -----------------------------------------------------------------------------------------------------

void FacePass::checkShape(const Face& face)
{
    if (!face.shape.hasArea)
        offend(KelMeshRule::FaceShapes, face, " has no area");
    else if (face.shape.hasSpike)
        offend(KelMeshRule::FaceShapes, face, " has a spike or an edge of no length");
}

/// The triangles of a face all have their tip in its centre, so that the sum of their pyramids is one product.
void FacePass::addTo(CellSums& cell, const Face& face, bool isOutwards) const
{
    if (cell.reference == 0)
        cell.reference = static_cast<std::uint32_t>(_places.front() % 0xffffffffU) + 1;
    const Vector3 area = isOutwards ? face.shape.area : -1.0 * face.shape.area;
    cell.areas += area;
    cell.surface += length(area);
    cell.volume += dot(area, face.shape.centre - _state.nodes[cell.reference - 1]) / _state.report.dimension;
    cell.loop += isOutwards ? face.print.loop : 0 - face.print.loop;
    cell.shape += spread(face.print.edges);
    ++cell.faces;
    cell.corners += static_cast<std::uint32_t>(face.count);
}

void FacePass::addToCells(const Face& face)
{
    if (CellSums* cell0 = _state.cell(face.cell0))
        addTo(*cell0, face, true);
    if (CellSums* cell1 = _state.cell(face.cell1))
        addTo(*cell1, face, false);
}

void FacePass::addOuter(const Face& face)
{
    _state.outerFaces.push_back(
        {face.id, face.hasCells ? face.cell0 : 0, face.zoneNumber, _state.outerNodes.size(), _places.size()});
    _state.outerNodes.insert(_state.outerNodes.end(), _places.begin(), _places.end());
}

void FacePass::addToParent(const Face& face, ParentFace& parent)
{
    const std::size_t sides[] = {_state.ids[KEL_CELL_ZONE].indexOf(face.cell0),
                                 _state.ids[KEL_CELL_ZONE].indexOf(face.cell1)};
    for (std::size_t side = 0; side < 2; ++side) {
        if (sides[side] < _state.cells.size())
            _state.cells[sides[side]].hasChildFaces = true;
        parent.isMixed[side] = parent.isMixed[side] || (parent.seen > 0 && parent.cells[side] != sides[side]);
        parent.cells[side] = sides[side];
    }
    ++parent.seen;
    parent.children.loop += face.print.loop;
    parent.children.edges += spread(face.print.edges);
    parent.childArea += face.shape.area;
}

} // namespace

void checkFaces(CheckState& state)
{
    FacePass(state).run();
    // Every face of a cell on one side may be the child of one parent, so this waits until all have passed by.
    for (const ParentFace& parent : state.parents)
        for (std::size_t side = 0; side < 2; ++side) {
            if (parent.seen != parent.expected || parent.isMixed[side] || parent.cells[side] >= state.cells.size())
                continue;
            TreeCorrection& correction = state.corrections[parent.cells[side]];
            const bool isTurned = (dot(parent.area, parent.childArea) < 0.0) != (side == 1);
            correction.loop += isTurned ? 0 - parent.own.loop : parent.own.loop;
            correction.loop -= side == 1 ? 0 - parent.children.loop : parent.children.loop;
            correction.shape += spread(parent.own.edges) - parent.children.edges;
        }
}

} // namespace meridyn::mesh
