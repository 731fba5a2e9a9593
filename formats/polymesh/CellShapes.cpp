#include "CellShapes.h"

#include "FoamError.h"
#include "PolyMesh.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace meridyn::polymesh {

namespace {

constexpr std::size_t largestFaceCount = 32767;
constexpr std::uint32_t noNode = static_cast<std::uint32_t>(-1);

} // namespace

CellShapes::CellShapes(const PolyMesh& mesh) : _mesh(mesh), _offsets(mesh.cellCount + 1)
{
    for (const auto* labels : {&mesh.owner, &mesh.neighbour})
        for (const std::uint32_t cell : *labels)
            ++_offsets[cell + std::size_t{1}];
    std::partial_sum(_offsets.begin(), _offsets.end(), _offsets.begin());
    _faces.resize(_offsets.back());
    std::vector<std::uint64_t> next(_offsets.begin(), _offsets.end() - 1);
    for (std::size_t face = 0; face < mesh.faceCount(); ++face) {
        _faces[next[mesh.owner[face]]++] = static_cast<std::uint32_t>(face);
        if (face < mesh.interiorCount())
            _faces[next[mesh.neighbour[face]]++] = static_cast<std::uint32_t>(face);
    }
    _types.resize(mesh.cellCount);
    for (std::uint64_t cell = 0; cell < mesh.cellCount; ++cell) {
        if (faceCount(cell) > largestFaceCount)
            throw FoamError("expected cells of at most " + std::to_string(largestFaceCount) + " faces, found one of " +
                            std::to_string(faceCount(cell)));
        _types[cell] = static_cast<unsigned char>(findType(cell));
    }
}

short CellShapes::nodeCount(KelCellType type)
{
    switch (type) {
    case KEL_CELL_TETRAHEDRON:
        return 4;
    case KEL_CELL_PYRAMID:
        return 5;
    case KEL_CELL_PRISM:
        return 6;
    case KEL_CELL_HEXAHEDRON:
        return 8;
    default:
        return 0;
    }
}

short CellShapes::nodes(std::uint64_t cell, std::uint32_t* to) const
{
    const short count = nodeCount(type(cell));
    if (count > 0)
        buildNodes(cell, type(cell), to);
    return count;
}

std::size_t CellShapes::sizeOfFace(std::uint32_t face) const
{
    return _mesh.faceOffsets[face + std::size_t{1}] - _mesh.faceOffsets[face];
}

/// The only shape that a cell can have by the sizes of its faces.
KelCellType CellShapes::candidate(std::uint64_t cell) const
{
    std::size_t triangles = 0, quadrilaterals = 0;
    for (const std::uint32_t* face = facesBegin(cell); face != facesEnd(cell); ++face) {
        triangles += sizeOfFace(*face) == 3 ? 1 : 0;
        quadrilaterals += sizeOfFace(*face) == 4 ? 1 : 0;
    }
    if (triangles + quadrilaterals != faceCount(cell))
        return KEL_CELL_POLYHEDRON;
    if (triangles == 4)
        return quadrilaterals == 0   ? KEL_CELL_TETRAHEDRON
               : quadrilaterals == 1 ? KEL_CELL_PYRAMID
                                     : KEL_CELL_POLYHEDRON;
    if (triangles == 2 && quadrilaterals == 3)
        return KEL_CELL_PRISM;
    return triangles == 0 && quadrilaterals == 6 ? KEL_CELL_HEXAHEDRON : KEL_CELL_POLYHEDRON;
}

KelCellType CellShapes::findType(std::uint64_t cell) const
{
    std::uint32_t nodes[8];
    const KelCellType type = candidate(cell);
    return type != KEL_CELL_POLYHEDRON && buildNodes(cell, type, nodes) ? type : KEL_CELL_POLYHEDRON;
}

/// The nodes of a triangle or quadrilateral so that its normal points into the cell: faces point out of their owner.
void CellShapes::inward(std::uint64_t cell, std::uint32_t face, std::uint32_t* nodes) const
{
    const std::uint32_t* from = _mesh.faceNodes.data() + _mesh.faceOffsets[face];
    const std::size_t count = sizeOfFace(face);
    std::copy(from, from + count, nodes);
    if (_mesh.owner[face] == cell)
        std::reverse(nodes + 1, nodes + count);
}

bool CellShapes::buildNodes(std::uint64_t cell, KelCellType type, std::uint32_t* to) const
{
    const std::size_t baseSize = type == KEL_CELL_PYRAMID || type == KEL_CELL_HEXAHEDRON ? 4 : 3;
    std::size_t base = 0;
    while (sizeOfFace(facesBegin(cell)[base]) != baseSize)
        ++base;
    return type == KEL_CELL_TETRAHEDRON || type == KEL_CELL_PYRAMID ? buildWithApex(cell, base, to)
                                                                    : buildWithTop(cell, base, to);
}

/// Every side has to be a triangle over one edge of the base, all with the same third node.
bool CellShapes::buildWithApex(std::uint64_t cell, std::size_t base, std::uint32_t* to) const
{
    const std::size_t size = sizeOfFace(facesBegin(cell)[base]);
    inward(cell, facesBegin(cell)[base], to);
    std::uint32_t apex = noNode;
    unsigned edges = 0; // bit n: the edge from node n of the base was met
    for (std::size_t n = 0; n < faceCount(cell); ++n) {
        if (n == base)
            continue;
        std::uint32_t side[4];
        inward(cell, facesBegin(cell)[n], side);
        bool isOverEdge = false;
        for (std::size_t edge = 0; edge < size && !isOverEdge; ++edge)
            for (std::size_t k = 0; k < 3 && !isOverEdge; ++k)
                if (side[k] == to[(edge + 1) % size] && side[(k + 1) % 3] == to[edge]) {
                    const std::uint32_t third = side[(k + 2) % 3];
                    if ((apex != noNode && third != apex) || (edges & (1U << edge)) != 0)
                        return false;
                    apex = third;
                    edges |= 1U << edge;
                    isOverEdge = true;
                }
        if (!isOverEdge)
            return false;
    }
    to[size] = apex;
    return std::find(to, to + size, apex) == to + size;
}

/// Every edge of the base has to have a quadrilateral over it, and the nodes beyond have to make up the last face.
bool CellShapes::buildWithTop(std::uint64_t cell, std::size_t base, std::uint32_t* to) const
{
    const std::size_t size = sizeOfFace(facesBegin(cell)[base]);
    std::uint32_t* top = to + size;
    inward(cell, facesBegin(cell)[base], to);
    std::fill(top, top + size, noNode);
    std::size_t lid = faceCount(cell);
    unsigned edges = 0;
    for (std::size_t n = 0; n < faceCount(cell); ++n) {
        if (n == base)
            continue;
        std::uint32_t side[4];
        inward(cell, facesBegin(cell)[n], side);
        bool isOverEdge = false;
        for (std::size_t edge = 0; edge < size && !isOverEdge && sizeOfFace(facesBegin(cell)[n]) == 4; ++edge)
            for (std::size_t k = 0; k < 4 && !isOverEdge; ++k)
                if (side[k] == to[(edge + 1) % size] && side[(k + 1) % 4] == to[edge]) {
                    for (const auto& [at, node] :
                         {std::pair{edge, side[(k + 2) % 4]}, std::pair{(edge + 1) % size, side[(k + 3) % 4]}}) {
                        if (top[at] != noNode && top[at] != node)
                            return false;
                        top[at] = node;
                    }
                    if ((edges & (1U << edge)) != 0)
                        return false;
                    edges |= 1U << edge;
                    isOverEdge = true;
                }
        if (isOverEdge)
            continue;
        if (lid != faceCount(cell))
            return false;
        lid = n;
    }
    if (lid == faceCount(cell) || edges != (1U << size) - 1U || sizeOfFace(facesBegin(cell)[lid]) != size)
        return false;
    std::uint32_t last[4], all[8];
    inward(cell, facesBegin(cell)[lid], last);
    std::copy(to, to + 2 * size, all);
    std::sort(all, all + 2 * size);
    return std::adjacent_find(all, all + 2 * size) == all + 2 * size && std::is_permutation(last, last + size, top);
}

} // namespace meridyn::polymesh
