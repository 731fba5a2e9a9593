#pragma once

#include "KelTypes.h"

#include <array>
#include <vector>

namespace meridyn {

/// How one block of the lattice is divided into cells.
///
/// Local nodes 0 to 7 are the corners (bit 0 set: far in x, bit 1: in y, bit 2: in z), node 8 is the centre. A division
/// splits opposite sides of the block alike, so that every block fits its neighbours.
class BlockTemplate {
public:
    static constexpr int centreNode = 8;

    /// Shapes into which blocks can be divided.
    enum class Shape {
        Hexahedra,
        Tetrahedra,
        Prisms,
        Pyramids,
        Polyhedra
    };

    explicit BlockTemplate(Shape shape);

    /// A cell: its type and its nodes in the order of KelCellType (none for a polyhedron).
    struct Cell {
        KelCellType type;
        std::vector<int> nodes;
        std::array<double, 3> centre; ///< mean of its nodes, in the unit block
    };

    /// A face: its nodes, normal from cell `low` to cell `high`. Inside the block both cells are of this block; on the
    /// plane between two blocks in direction d the nodes lack bit d, `high` is of this block and `low` of the one
    /// before.
    struct Face {
        std::vector<int> nodes;
        int low;
        int high;
    };

    const std::vector<Cell>& cells() const { return _cells; }
    const std::vector<Face>& inner() const { return _inner; }
    const std::vector<Face>& across(int direction) const { return _across[static_cast<std::size_t>(direction)]; }
    bool hasCentre() const { return _hasCentre; }

private:
    using Loop = std::vector<int>;

    void addCell(KelCellType type, std::vector<int> nodes, const std::vector<Loop>& faces);
    void joinFaces();

    struct Side {
        Loop nodes; ///< normal out of the cell
        int cell;
    };

    std::vector<Cell> _cells;
    std::vector<Side> _sides;
    std::vector<Face> _inner;
    std::array<std::vector<Face>, 3> _across;
    bool _hasCentre = false;
};

} // namespace meridyn
