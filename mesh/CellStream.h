#pragma once

#include "KelTypes.h"
#include "mesh/CheckState.h"

#include <cstddef>
#include <vector>

namespace meridyn::mesh {

/// Some cells that follow each other, with their types and nodes.
struct CellBlock {
    unsigned64 first = 0;
    bool hasTypes = false;
    bool hasNodes = false;
    std::vector<KelCellType> types;
    std::vector<short> counts;       ///< nodes per cell, 0 for those that have none
    std::vector<std::size_t> starts; ///< where the nodes of each cell begin
    std::vector<unsigned64> nodes;

    std::size_t size() const { return counts.size(); }
    const unsigned64* nodesOf(std::size_t cell) const { return nodes.data() + starts[cell]; }
};

/// Calls visit(zone, block) for the cells of all zones. @throws Stopped when they cannot be read as a whole
class CellStream {
public:
    explicit CellStream(CheckState& state) : _state(state) {}

    template <class Visit>
    void forBlocks(const std::string& task, const Visit& visit)
    {
        for (const Zone& zone : _state.zones[KEL_CELL_ZONE]) {
            openZone(zone);
            CheckState::forChunks(
                zone,
                [&](unsigned64 first, unsigned64 last) {
                    read(zone, first, last);
                    visit(zone, _block);
                    _state.tell(task, _state.ids[KEL_CELL_ZONE].indexOf(last) + 1, _state.ids[KEL_CELL_ZONE].size());
                    return true;
                },
                16384);
        }
    }

private:
    void openZone(const Zone& zone);
    void read(const Zone& zone, unsigned64 first, unsigned64 last);
    void readTypes(unsigned64 first, unsigned64 last);
    void readNodes(unsigned64 first, unsigned64 last);
    [[noreturn]] static void cut(const char* what, unsigned64 first, unsigned64 last);

    CheckState& _state;
    CellBlock _block;
    bool _isUniformType = false;
    KelCellType _type = KEL_CELL_POLYHEDRON;
    bool _isUniformCount = false;
    short _count = 0;
};

} // namespace meridyn::mesh
