#pragma once

#include "KelTypes.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace meridyn::polymesh {

struct PolyMesh;

/// The faces around the cells of a mesh, and what follows from them: the shapes of cells and their nodes.
///
/// Nodes of a cell come in the order of its shape: those of the base so that its normal points into the cell, then the
/// apex of a tetrahedron or a pyramid, or the nodes opposite to those of the base of a prism or a hexahedron, in the
/// same order. The base is the first triangle of a tetrahedron or a prism, the quadrilateral of a pyramid, the first
/// face of a hexahedron, by face id. A cell of another shape is a polyhedron and has no nodes.
class CellShapes {
public:
    /// @throws FoamError when a cell has more faces than a short can count
    explicit CellShapes(const PolyMesh& mesh);

    /// Faces of a cell, ascending; all count from 0.
    const std::uint32_t* facesBegin(std::uint64_t cell) const { return _faces.data() + _offsets[cell]; }
    const std::uint32_t* facesEnd(std::uint64_t cell) const { return _faces.data() + _offsets[cell + 1]; }
    std::size_t faceCount(std::uint64_t cell) const { return _offsets[cell + 1] - _offsets[cell]; }

    KelCellType type(std::uint64_t cell) const { return static_cast<KelCellType>(_types[cell]); }

    /// Nodes of a cell of this shape; 0 for a polyhedron.
    static short nodeCount(KelCellType type);

    /// Stores the nodes of a cell, which has room for 8; their number.
    short nodes(std::uint64_t cell, std::uint32_t* to) const;

private:
    KelCellType findType(std::uint64_t cell) const;
    KelCellType candidate(std::uint64_t cell) const;
    bool buildNodes(std::uint64_t cell, KelCellType type, std::uint32_t* to) const;
    bool buildWithApex(std::uint64_t cell, std::size_t base, std::uint32_t* to) const;
    bool buildWithTop(std::uint64_t cell, std::size_t base, std::uint32_t* to) const;
    std::size_t sizeOfFace(std::uint32_t face) const;
    void inward(std::uint64_t cell, std::uint32_t face, std::uint32_t* nodes) const;

    const PolyMesh& _mesh;
    std::vector<std::uint64_t> _offsets;
    std::vector<std::uint32_t> _faces;
    std::vector<unsigned char> _types;
};

} // namespace meridyn::polymesh
