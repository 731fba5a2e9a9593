#include "mesh/CellStream.h"

#include "KelProvider.h"
#include "mesh/MeshText.h"

namespace meridyn::mesh {

void CellStream::openZone(const Zone& zone)
{
    const KelProvider& reader = _state.reader;
    _isUniformType = reader.hasUniformTypeForCellsInZone(zone.id, &_type);
    _isUniformCount = reader.hasUniformNodeCountForCellsInZone(zone.id, &_count);
    _block.hasTypes = _isUniformType;
    _block.hasNodes = _isUniformCount && _count > 0;
}

void CellStream::read(const Zone& zone, unsigned64 first, unsigned64 last)
{
    _block.first = first;
    const std::size_t cells = last - first + 1;
    if (first == zone.first && !_isUniformType) { // a format without types gives none for the first cell either
        KelCellType type = KEL_CELL_POLYHEDRON;
        _block.hasTypes = _state.reader.getTypesForCellsInRange(first, first, &type, 1) == 1;
    }
    if (first == zone.first && !_isUniformCount) {
        short count = 0;
        _block.hasNodes = _state.reader.getNodeCountsForCellsInRange(first, first, &count, 1) == 1;
    }
    _block.types.assign(cells, _type);
    _block.counts.assign(cells, _isUniformCount ? _count : short{0});
    if (_block.hasTypes && !_isUniformType)
        readTypes(first, last);
    readNodes(first, last);
}

void CellStream::readTypes(unsigned64 first, unsigned64 last)
{
    if (_state.reader.getTypesForCellsInRange(first, last, _block.types.data(), _block.size()) != _block.size())
        cut("types", first, last);
}

void CellStream::readNodes(unsigned64 first, unsigned64 last)
{
    if (_block.hasNodes && !_isUniformCount &&
        _state.reader.getNodeCountsForCellsInRange(first, last, _block.counts.data(), _block.size()) != _block.size())
        cut("numbers of nodes", first, last);
    _block.starts.assign(1, 0);
    for (short& count : _block.counts) {
        if (count < 0)
            cut("numbers of nodes", first, last);
        _block.starts.push_back(_block.starts.back() + static_cast<std::size_t>(count));
    }
    const std::size_t total = _block.starts.back();
    _block.nodes.resize(total);
    if (_block.hasNodes && total != 0 &&
        _state.reader.getNodeIdsForCellsInRange(first, last, _block.nodes.data(), total) != total)
        cut("nodes", first, last);
}

void CellStream::cut(const char* what, unsigned64 first, unsigned64 last)
{
    CheckState::stop(std::string("the ") + what + " of the cells " + grouped(first) + " to " + grouped(last) +
                     " could not be read");
}

} // namespace meridyn::mesh
