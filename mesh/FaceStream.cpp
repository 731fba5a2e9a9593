#include "mesh/FaceStream.h"

#include "KelProvider.h"

#include <algorithm>

namespace meridyn::mesh {

namespace {

constexpr unsigned64 facesPerBlock = 32768;
constexpr std::size_t nodesPerBlock = 1U << 20;

} // namespace

FaceStream::FaceStream(const KelProvider& reader, int zone, unsigned64 first, unsigned64 last)
    : _reader(reader), _zone(zone), _next(first), _last(last), _first(first)
{}

bool FaceStream::next(FaceBlock& block)
{
    if (_isCut || _isWithoutNodes || _next > _last || _next == 0)
        return false;
    block.zone = _zone;
    block.first = _next;
    _isCut = !readCounts(block) || (!_isWithoutNodes && (!readNodes(block) || !readCells(block)));
    if (_isCut || _isWithoutNodes)
        return false;
    _next += block.size();
    return true;
}

/// Counts and starts of as many faces as a block takes.
bool FaceStream::readCounts(FaceBlock& block)
{
    const unsigned64 faces = std::min(_last - _next + 1, facesPerBlock);
    block.counts.assign(faces, 0);
    short uniform = 0;
    if (_reader.hasUniformNodeCountForFacesInRange(_next, _next + faces - 1, &uniform))
        std::fill(block.counts.begin(), block.counts.end(), uniform);
    else {
        const unsigned64 found =
            _reader.getNodeCountsForFacesInRange(_next, _next + faces - 1, block.counts.data(), faces);
        _isWithoutNodes = found == 0 && _next == _first;
        if (_isWithoutNodes || found != faces)
            return _isWithoutNodes;
    }
    block.starts.assign(1, 0);
    for (std::size_t n = 0; n < block.counts.size(); ++n) {
        if (block.counts[n] < 0)
            return false;
        const std::size_t end = block.starts.back() + static_cast<std::size_t>(block.counts[n]);
        if (n > 0 && end > nodesPerBlock) {
            block.counts.resize(n);
            break;
        }
        block.starts.push_back(end);
    }
    return true;
}

bool FaceStream::readNodes(FaceBlock& block) const
{
    const std::size_t count = block.starts.back();
    block.nodes.resize(count);
    return count == 0 || _reader.getNodeIdsForFacesInRange(block.first, block.first + block.size() - 1,
                                                           block.nodes.data(), count) == count;
}

bool FaceStream::readCells(FaceBlock& block) const
{
    const unsigned64 last = block.first + block.size() - 1;
    block.cell0s.assign(block.size(), 0);
    block.cell1s.assign(block.size(), 0);
    const unsigned64 found0 = _reader.getCell0sForFacesInRange(block.first, last, block.cell0s.data(), block.size());
    const unsigned64 found1 = _reader.getCell1sForFacesInRange(block.first, last, block.cell1s.data(), block.size());
    block.hasCells = found0 != 0;
    // A zone may have no cells on a side at all; half of them is damage.
    return (found0 == 0 || found0 == block.size()) && (found1 == 0 || found1 == block.size());
}

} // namespace meridyn::mesh
