#include "mesh/Shell.h"

#include "mesh/CellStream.h"
#include "mesh/MeshText.h"

#include <algorithm>

namespace meridyn::mesh {

namespace {

/// The places of the nodes of one side of a cell.
void takeSide(const std::vector<int>& side, const std::vector<std::size_t>& places, std::vector<std::size_t>& to)
{
    to.clear();
    for (const int place : side)
        to.push_back(places[static_cast<std::size_t>(place)]);
}

} // namespace

void Shell::add(unsigned64 cellId, const CellShape& shape, const std::vector<std::size_t>& places)
{
    std::vector<std::size_t> nodes;
    for (const std::vector<int>& side : shape.sides) {
        takeSide(side, places, nodes);
        const FacePrint print = printOf(nodes.data(), nodes.size(), _state.report.dimension);
        _sides.push_back({print.edges, cellId << 1 | wayOf(print)});
    }
}

void Shell::join()
{
    if (_sides.empty())
        return;
    std::sort(_sides.begin(), _sides.end(), [](const Side& a, const Side& b) {
        return a.print != b.print ? a.print < b.print : a.cellAndWay < b.cellAndWay;
    });
    findOverlaps();
    matchFaces();
    keepOutside();
}

std::size_t Shell::countOf(std::uint64_t print) const
{
    const auto before = [](const Side& side, std::uint64_t wanted) { return side.print < wanted; };
    const auto begin = std::lower_bound(_sides.begin(), _sides.end(), print, before);
    auto end = begin;
    while (end != _sides.end() && end->print == print)
        ++end;
    return static_cast<std::size_t>(end - begin);
}

void Shell::findOverlaps()
{
    for (std::size_t n = 0, end = 0; n < _sides.size(); n = end) {
        end = n + 1;
        while (end < _sides.size() && _sides[end].print == _sides[n].print)
            ++end;
        const bool isSound =
            end - n == 1 || (end - n == 2 && (_sides[n].cellAndWay & 1) != (_sides[n + 1].cellAndWay & 1));
        _state.report.addLookedAt(KelMeshRule::Overlaps, 1);
        if (isSound)
            continue;
        const unsigned64 cell = _sides[n].cellAndWay >> 1;
        _state.add(KelMeshRule::Overlaps, KEL_CELL_ZONE, cell,
                   "cell " + grouped(cell) + " and cell " + grouped(_sides[n + 1].cellAndWay >> 1) +
                       (end - n == 2 ? " are on the same side of a face that they share"
                                     : " share a face with " + counted(end - n - 2, "more cell", "more cells")));
    }
}

/// Faces that name no cells lie on the outside of the cells, or between two of them.
void Shell::matchFaces()
{
    std::vector<OuterFace> others;
    for (const OuterFace& face : _state.outerFaces) {
        if (face.cell != 0) {
            others.push_back(face);
            continue;
        }
        const FacePrint print = printOf(_state.outerNodes.data() + face.start, face.count, _state.report.dimension);
        _state.report.addLookedAt(KelMeshRule::FaceCells, 1);
        if (countOf(print.edges) == 0)
            _state.add(KelMeshRule::FaceCells, KEL_FACE_ZONE, face.face,
                       _state.label(KEL_FACE_ZONE, _state.zones[KEL_FACE_ZONE][face.zone], face.face) +
                           " is no side of a cell");
        else if (const auto [known, isNew] = _faces.try_emplace(print.edges, face); !isNew)
            _state.add(KelMeshRule::FaceCells, KEL_FACE_ZONE, face.face,
                       _state.label(KEL_FACE_ZONE, _state.zones[KEL_FACE_ZONE][face.zone], face.face) +
                           " is the same side as face " + grouped(known->second.face));
    }
    // What is left names its cells; the nodes of the others stay behind, which costs less than moving them all.
    _state.outerFaces.swap(others);
}

/// Reads the cells once more and keeps the sides that no other cell has.
void Shell::keepOutside()
{
    std::vector<std::size_t> places, nodes;
    CellStream(_state).forBlocks("sides of cells", [&](const Zone&, const CellBlock& block) {
        for (std::size_t n = 0; n < block.size(); ++n) {
            const unsigned64 id = block.first + n;
            const CellSums* sums = _state.cell(id);
            const auto count = static_cast<std::size_t>(block.counts[n]);
            if (count == 0 || (sums != nullptr && sums->faces != 0))
                continue;
            places.clear();
            for (std::size_t k = 0; k < count; ++k)
                places.push_back(_state.ids[KEL_NODE_ZONE].indexOf(block.nodesOf(n)[k]));
            if (std::find(places.begin(), places.end(), ElementIds::none) != places.end())
                continue;
            const KelCellType type = block.hasTypes ? block.types[n] : typeByNodes(count, _state.report.dimension);
            const CellShape shape = type == KEL_CELL_POLYGON ? polygonOf(count) : shapeOfType(type);
            if (shape.nodes != count)
                continue;
            for (const std::vector<int>& side : shape.sides) {
                takeSide(side, places, nodes);
                const std::uint64_t print = printOf(nodes.data(), nodes.size(), _state.report.dimension).edges;
                if (countOf(print) != 1)
                    continue;
                const auto face = _faces.find(print);
                const bool isFace = face != _faces.end();
                _state.outerFaces.push_back({isFace ? face->second.face : 0, id,
                                             isFace ? face->second.zone : _state.zones[KEL_FACE_ZONE].size(),
                                             _state.outerNodes.size(), nodes.size()});
                _state.outerNodes.insert(_state.outerNodes.end(), nodes.begin(), nodes.end());
            }
        }
    });
}

} // namespace meridyn::mesh
