#include "ListTable.h"

#include "formats/hdf5/file/FormatError.h"

#include <algorithm>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t blockRows = 32 * 1024; // looked at in one piece

std::uint64_t offsetAt(const ArrayReader& offsets, std::uint64_t row)
{
    std::uint64_t offset = 0;
    offsets.read(row, 1, &offset);
    return offset;
}

} // namespace

ListTable::ListTable(std::unique_ptr<ArrayReader> offsets, Lengths lengths, std::uint64_t rows,
                     std::uint64_t valueCount)
    : _offsets(std::move(offsets)), _lengths(std::move(lengths)), _rows(rows), _valueCount(valueCount)
{
    const std::uint64_t found = _offsets->shape().valueCount();
    if (rows == UINT64_MAX || found != rows + 1)
        throw FormatError(_offsets->label() + " has " + std::to_string(found) + " values, one more than the " +
                          std::to_string(rows) + " rows expected");
    const std::uint64_t first = offsetAt(*_offsets, 0);
    const std::uint64_t last = offsetAt(*_offsets, rows);
    if (first != 0 || last != valueCount)
        throw FormatError(_offsets->label() + " goes from " + std::to_string(first) + " to " + std::to_string(last) +
                          ", 0 to " + std::to_string(valueCount) + " expected");
}

// Block by block, and no further than the room goes: what is not read is not looked at. `offsets` overlaps the next
// block by one, so that every length is held against the two offsets around it.
ListTable::Stretch ListTable::find(std::uint64_t row, std::uint64_t count, std::uint64_t capacity) const
{
    Stretch stretch;
    std::vector<std::uint64_t> offsets(std::min(blockRows, count) + 1);
    std::vector<std::uint64_t> lengths(offsets.size() - 1);
    for (std::uint64_t done = 0; done < count; done += lengths.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(lengths.size(), count - done);
        _offsets->read(row + done, n + 1, offsets.data());
        _lengths(row + done, n, lengths.data());
        if (done == 0)
            stretch.first = offsets[0];
        for (std::uint64_t i = 0; i < n; ++i) {
            if (offsets[i + 1] < offsets[i] || offsets[i + 1] - offsets[i] != lengths[i] ||
                offsets[i + 1] > _valueCount)
                throw FormatError(_offsets->label() + " lets row " + std::to_string(row + done + i) + " go from " +
                                  std::to_string(offsets[i]) + " to " + std::to_string(offsets[i + 1]) + " of " +
                                  std::to_string(_valueCount) + " values, but its length is " +
                                  std::to_string(lengths[i]));
            if (lengths[i] > capacity - stretch.count)
                return stretch;
            stretch.count += lengths[i];
        }
    }
    return stretch;
}

} // namespace meridyn::hdf5
