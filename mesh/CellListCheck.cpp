#include "KelProvider.h"
#include "mesh/CellSums.h"
#include "mesh/Checks.h"
#include "mesh/CheckState.h"
#include "mesh/FaceStream.h"
#include "mesh/MeshText.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace meridyn::mesh {

namespace {

/// The faces that each cell has by the cells of the faces: two sums per cell, one with child faces, one with their
/// parents, since a list may hold either.
class FacesOfCells {
public:
    explicit FacesOfCells(CheckState& state) : _state(state), _flat(state.cells.size())
    {
        if (!state.parents.empty())
            _tree.resize(state.cells.size());
        FaceBlock block;
        for (const Zone& zone : state.zones[KEL_FACE_ZONE]) {
            FaceStream stream(state.reader, zone.id, zone.first, zone.last);
            while (stream.next(block))
                for (std::size_t n = 0; n < block.size(); ++n)
                    for (const unsigned64 cell : {block.cell0s[n], block.cell1s[n]})
                        add(zone, block.first + n, state.ids[KEL_CELL_ZONE].indexOf(cell));
        }
    }

    bool isSame(std::size_t place, std::uint64_t sum) const
    {
        return _flat[place] == sum || (!_tree.empty() && _tree[place] == sum);
    }

private:
    void add(const Zone& zone, unsigned64 face, std::size_t place)
    {
        if (place >= _flat.size())
            return;
        if (!zone.isParent())
            _flat[place] += spread(face);
        if (!_tree.empty() && _state.parentByChild.find(face) == _state.parentByChild.end())
            _tree[place] += spread(face);
    }

    CheckState& _state;
    std::vector<std::uint64_t> _flat, _tree;
};

/// Reads what cells list and compares.
class ListPass {
public:
    explicit ListPass(CheckState& state) : _state(state) {}

    void run()
    {
        for (const Zone& zone : _state.zones[KEL_CELL_ZONE]) {
            _isUniform = _state.reader.hasUniformFaceCountForCellsInZone(zone.id, &_count) && _count > 0;
            CheckState::forChunks(
                zone, [&](unsigned64 first, unsigned64 last) { return readPiece(zone, first, last); }, 8192);
        }
    }

private:
    bool readPiece(const Zone& zone, unsigned64 first, unsigned64 last)
    {
        const unsigned64 cells = last - first + 1;
        _counts.assign(cells, _count);
        if (!_isUniform) {
            _counts.assign(cells, 0);
            const unsigned64 found = _state.reader.getFaceCountsForCellsInRange(first, last, _counts.data(), cells);
            if (found == 0 && first == zone.first)
                return false;
            if (found != cells)
                cut(first, last);
        }
        std::size_t total = 0;
        for (const short count : _counts)
            total += count > 0 ? static_cast<std::size_t>(count) : 0;
        _faces.resize(total);
        if (total == 0)
            return true;
        if (_state.reader.getFaceIdsForCellsInRange(first, last, _faces.data(), total) != total)
            cut(first, last);
        if (!_known)
            _known = std::make_unique<FacesOfCells>(_state);
        const unsigned64* own = _faces.data();
        for (unsigned64 n = 0; n < cells; ++n) {
            const std::size_t count = _counts[n] > 0 ? static_cast<std::size_t>(_counts[n]) : 0;
            compare(zone, first + n, own, count);
            own += count;
        }
        _state.tell("faces of cells", _state.ids[KEL_CELL_ZONE].indexOf(last) + 1, _state.ids[KEL_CELL_ZONE].size());
        return true;
    }

    [[noreturn]] static void cut(unsigned64 first, unsigned64 last)
    {
        CheckState::stop("the faces of the cells " + grouped(first) + " to " + grouped(last) + " could not be read");
    }

    void compare(const Zone& zone, unsigned64 id, const unsigned64* faces, std::size_t count)
    {
        _state.report.addLookedAt(KelMeshRule::FaceLists, 1);
        std::uint64_t sum = 0;
        for (std::size_t n = 0; n < count; ++n) {
            sum += spread(faces[n]);
            if (_state.ids[KEL_FACE_ZONE].contains(faces[n]))
                continue;
            _state.add(KelMeshRule::FaceLists, KEL_CELL_ZONE, id,
                       _state.label(KEL_CELL_ZONE, zone, id) + " lists face " + grouped(faces[n]) +
                           ", which does not exist");
            return;
        }
        const std::size_t place = _state.ids[KEL_CELL_ZONE].indexOf(id);
        const bool hasCells = place < _state.cells.size();
        if (hasCells && !_known->isSame(place, sum) && !_state.cells[place].isDamaged)
            _state.add(KelMeshRule::FaceLists, KEL_CELL_ZONE, id,
                       _state.label(KEL_CELL_ZONE, zone, id) + " lists other faces than those that name it");
    }

    CheckState& _state;
    bool _isUniform = false;
    short _count = 0;
    std::vector<short> _counts;
    std::vector<unsigned64> _faces;
    std::unique_ptr<FacesOfCells> _known; ///< made only where cells list faces
};

} // namespace

void checkFaceLists(CheckState& state)
{
    ListPass(state).run();
}

void checkPartitions(CheckState& state)
{
    const int partitions = state.reader.getPartitionCountOfCells();
    bool hasZero = false;
    unsigned64 lastOne = 0; // a cell of the partition whose number is the count: sound only where numbers start at 1
    std::vector<int> ids;
    for (const Zone& zone : state.zones[KEL_CELL_ZONE])
        CheckState::forChunks(zone, [&](unsigned64 first, unsigned64 last) {
            ids.assign(last - first + 1, 0);
            const unsigned64 found = state.reader.getPartitionIdsForCellsInRange(first, last, ids.data(), ids.size());
            state.report.addLookedAt(KelMeshRule::Partitions, found);
            for (unsigned64 n = 0; n < found && n < ids.size(); ++n) {
                hasZero = hasZero || ids[n] == 0;
                if (ids[n] == partitions && partitions > 0)
                    lastOne = first + n;
                if (ids[n] < 0 || (partitions > 0 && ids[n] > partitions))
                    state.add(KelMeshRule::Partitions, KEL_CELL_ZONE, first + n,
                              state.label(KEL_CELL_ZONE, zone, first + n) + " is in partition " +
                                  std::to_string(ids[n]) + " of " + std::to_string(partitions));
            }
            return true;
        });
    if (hasZero && lastOne != 0)
        state.add(KelMeshRule::Partitions, KEL_CELL_ZONE, lastOne,
                  "cell " + grouped(lastOne) + " is in partition " + std::to_string(partitions) +
                      ", but the partitions are 0 to " + std::to_string(partitions - 1));
}

} // namespace meridyn::mesh
