#include "KelProvider.h"
#include "mesh/CellShape.h"
#include "mesh/CellStream.h"
#include "mesh/CellVolumes.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/MeshText.h"
#include "mesh/Shell.h"

#include <algorithm>

namespace meridyn::mesh {

namespace {

/// Looks at the types and the nodes of all cells. Cells that faces name are held against those; the sides of all
/// others, which are known by their nodes alone, go into the shell, where neighbours find each other.
class CellNodePass {
public:
    explicit CellNodePass(CheckState& state) : _state(state), _shell(state) {}

    void run();

private:
    /// The cell at hand.
    struct Cell {
        const Zone* zone = nullptr;
        unsigned64 id = 0;
        std::size_t place = 0;
        bool hasType = false;
        KelCellType type = KEL_CELL_POLYHEDRON;
        const unsigned64* nodes = nullptr;
        std::size_t count = 0;
        const CellSums* sums = nullptr; ///< null when no face names the cell
    };

    void look(Cell& cell);
    bool checkType(const Cell& cell);
    bool findNodes(const Cell& cell);
    void compareWithFaces(const Cell& cell, const CellShape& shape);
    void judgeAlone(const Cell& cell, const CellShape& shape);
    void tellUnseen();
    void offend(KelMeshRule rule, const Cell& cell, const std::string& what)
    {
        _state.add(rule, KEL_CELL_ZONE, cell.id, _state.label(KEL_CELL_ZONE, *cell.zone, cell.id) + what);
    }

    CheckState& _state;
    Shell _shell;
    std::vector<std::size_t> _places; ///< of the nodes of the cell at hand
    std::vector<Vector3> _points;
    unsigned64 _unknown = 0;    ///< cells with neither nodes nor faces
    unsigned64 _shapeless = 0;  ///< polyhedra without faces, or cells whose number of nodes names no shape
    unsigned64 _uncompared = 0; ///< polyhedra with nodes and faces
};

void CellNodePass::run()
{
    CellStream(_state).forBlocks("cells", [&](const Zone& zone, const CellBlock& block) {
        Cell cell;
        cell.zone = &zone;
        cell.hasType = block.hasTypes;
        for (std::size_t n = 0; n < block.size(); ++n) {
            cell.id = block.first + n;
            cell.place = _state.ids[KEL_CELL_ZONE].indexOf(cell.id);
            cell.type = block.types[n];
            cell.nodes = block.nodesOf(n);
            cell.count = static_cast<std::size_t>(block.counts[n]);
            cell.sums = _state.cell(cell.id);
            if (cell.sums != nullptr && cell.sums->faces == 0 && !cell.sums->isDamaged)
                cell.sums = nullptr;
            look(cell);
        }
    });
    _shell.join();
    tellUnseen();
}

void CellNodePass::look(Cell& cell)
{
    if (cell.hasType) {
        ++_state.report.cellTypes[cell.type];
        _state.report.addLookedAt(KelMeshRule::CellTypes, 1);
    }
    if (cell.hasType && !checkType(cell))
        return;
    if (cell.count == 0) {
        const bool hasChildren = !_state.hasChildren.empty() && _state.hasChildren[cell.place];
        if (cell.sums == nullptr && _state.cells.empty() && !hasChildren)
            ++_unknown;
        return;
    }
    _state.report.addLookedAt(KelMeshRule::Ids, 1);
    _state.report.addLookedAt(KelMeshRule::CellNodes, 1);
    if (_state.hasNodes.empty())
        _state.hasNodes.assign(_state.ids[KEL_CELL_ZONE].size(), false);
    _state.hasNodes[cell.place] = true;
    if (!findNodes(cell))
        return;
    if (!cell.hasType)
        cell.type = typeByNodes(cell.count, _state.report.dimension);
    const CellShape polygon = cell.type == KEL_CELL_POLYGON ? polygonOf(cell.count) : CellShape();
    const CellShape& shape = cell.type == KEL_CELL_POLYGON ? polygon : shapeOfType(cell.type);
    if (shape.nodes == 0) {
        ++(cell.sums != nullptr ? _uncompared : _shapeless);
        return;
    }
    _state.report.addLookedAt(KelMeshRule::CellShapes, 1);
    if (cell.sums != nullptr)
        compareWithFaces(cell, shape);
    else
        judgeAlone(cell, shape);
}

/// The type against the dimension, the number of nodes, and the numbers of faces and of their nodes.
bool CellNodePass::checkType(const Cell& cell)
{
    const CellShape& shape = shapeOfType(cell.type);
    if (dimensionOfType(cell.type) != _state.report.dimension) {
        offend(KelMeshRule::CellTypes, cell,
               dimensionOfType(cell.type) == 0
                   ? " has the type " + std::to_string(cell.type) + ", which does not exist"
                   : " is a " + typeName(cell.type) + " in " + std::to_string(_state.report.dimension) + " dimensions");
        return false;
    }
    const std::size_t fewest = _state.isFlat() ? 3 : 4;
    if (cell.count != 0 && (shape.nodes != 0 ? cell.count != shape.nodes : cell.count < fewest)) {
        offend(KelMeshRule::CellTypes, cell,
               " is a " + typeName(cell.type) + ", but has " + counted(cell.count, "node", "nodes"));
        return false;
    }
    // What hangs on child faces has more faces than its type; an open cell is counted as such.
    if (shape.nodes == 0 || cell.sums == nullptr || cell.sums->isDamaged || cell.sums->hasChildFaces)
        return true;
    if (cell.sums->faces == shape.sides.size() && cell.sums->corners == shape.sideCorners)
        return true;
    if (cell.sums->loop == 0 || cell.sums->faces > shape.sides.size())
        offend(KelMeshRule::CellTypes, cell,
               " is a " + typeName(cell.type) + ", but has " + counted(cell.sums->faces, "face", "faces") + " with " +
                   counted(cell.sums->corners, "node", "nodes"));
    return false;
}

bool CellNodePass::findNodes(const Cell& cell)
{
    _places.clear();
    _points.clear();
    bool isFinitePoint = true;
    for (std::size_t n = 0; n < cell.count; ++n) {
        const std::size_t place = _state.ids[KEL_NODE_ZONE].indexOf(cell.nodes[n]);
        if (place == ElementIds::none) {
            offend(KelMeshRule::Ids, cell,
                   " names node " + grouped(cell.nodes[n]) + " of " + grouped(_state.nodes.size()));
            return false;
        }
        // Where faces name the cell, theirs are the nodes that count as used.
        _state.isUsed[place] = _state.isUsed[place] || cell.sums == nullptr;
        isFinitePoint = isFinitePoint && isFinite(_state.nodes[place]);
        _places.push_back(place);
        _points.push_back(_state.nodes[place]);
    }
    std::vector<std::size_t> sorted = _places;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice == sorted.end())
        return isFinitePoint;
    offend(KelMeshRule::CellNodes, cell, " has node " + grouped(_state.ids[KEL_NODE_ZONE].idOf(*twice)) + " twice");
    return false;
}

/// The sides that the nodes span must be the faces that name the cell, and must look outwards as those do.
void CellNodePass::compareWithFaces(const Cell& cell, const CellShape& shape)
{
    if (cell.sums->isDamaged)
        return;
    std::uint64_t sides = 0;
    std::vector<std::size_t> side;
    for (const std::vector<int>& places : shape.sides) {
        side.clear();
        for (const int place : places)
            side.push_back(_places[static_cast<std::size_t>(place)]);
        sides += spread(printOf(side.data(), side.size(), _state.report.dimension).edges);
    }
    const auto correction = _state.corrections.find(cell.place);
    const std::uint64_t tree = correction == _state.corrections.end() ? 0 : correction->second.shape;
    if (cell.sums->shape != sides && cell.sums->shape + tree != sides)
        offend(KelMeshRule::CellNodes, cell, " has nodes that do not span its faces");
    else if (volumeOf(shape, _points, _state.report.dimension) < 0.0 && cell.sums->volume > 0.0)
        offend(KelMeshRule::CellShapes, cell, " has its nodes in the order that turns it inside out");
}

/// A cell that is known by its nodes alone.
void CellNodePass::judgeAlone(const Cell& cell, const CellShape& shape)
{
    _state.report.addLookedAt(KelMeshRule::Volumes, 1);
    const double volume = volumeOf(shape, _points, _state.report.dimension);
    double longest = 0.0;
    for (const Vector3& point : _points)
        longest = std::max(longest, length(point - _points.front()));
    addVolume(_state, cell.id, volume, longest * longest);
    // One corner that is pushed in makes a cell concave; two are nodes in the wrong order.
    if (volume > 0.0 && turnedCorners(shape, _points) > 1)
        offend(KelMeshRule::CellShapes, cell, " has its nodes in an order that twists it");
    else
        _shell.add(cell.id, shape, _places);
}

void CellNodePass::tellUnseen()
{
    const auto tell = [&](unsigned64 count, const char* one, const char* many, const char* why) {
        if (count > 0)
            _state.report.addUnseen({KEL_CELL_ZONE, count, counted(count, one, many) + why});
    };
    tell(_unknown, "cell", "cells", " without nodes and faces");
    tell(_shapeless, "cell", "cells",
         _state.isFlat() ? " of unknown shape" : " whose shape needs faces, and that have none");
    tell(_uncompared, "polyhedron", "polyhedra", " whose nodes could not be held against the faces");
}

} // namespace

void checkCellNodes(CheckState& state)
{
    CellNodePass(state).run();
}

} // namespace meridyn::mesh
