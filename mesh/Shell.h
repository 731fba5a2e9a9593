#pragma once

#include "mesh/CellShape.h"
#include "mesh/CheckState.h"

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace meridyn::mesh {

/// The sides of cells that are known by their nodes alone: two cells that share a side are neighbours, a side of one
/// cell only is on the outside, and any other number of cells, or two on the same side of it, fill the same place.
///
/// Memory: 16 bytes per side.
class Shell {
public:
    explicit Shell(CheckState& state) : _state(state) {}

    /// Adds the sides of a cell by the places of its nodes.
    void add(unsigned64 cellId, const CellShape& shape, const std::vector<std::size_t>& places);

    /// Finds the neighbours, counts what overlaps, holds faces that name no cells against the sides, and leaves the
    /// outside in the state.
    void join();

private:
    /// One side of one cell.
    struct Side {
        std::uint64_t print;      ///< the same for all sides with the same edges
        std::uint64_t cellAndWay; ///< the cell, and in the last bit which way round the side is
    };

    static std::uint64_t wayOf(const FacePrint& print) { return print.loop < 0 - print.loop ? 1 : 0; }
    std::size_t countOf(std::uint64_t print) const;
    void findOverlaps();
    void matchFaces();
    void keepOutside();

    CheckState& _state;
    std::vector<Side> _sides;
    std::unordered_map<std::uint64_t, OuterFace> _faces; ///< faces that name no cells, by print
};

} // namespace meridyn::mesh
