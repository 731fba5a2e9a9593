#include "ElementMap.h"

#include "formats/hdf5/file/FormatError.h"

#include <algorithm>
#include <string>

namespace meridyn::hdf5 {

// Invariant: ranges ascend, lie apart by at least one id, and each begins with the row behind the last one of the range
// before it. Sorted by their first ids, a range can only join the one that was kept last.
ElementMap::ElementMap(std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges)
{
    std::erase_if(ranges, [](const auto& range) { return range.first == 0 || range.second < range.first; });
    std::sort(ranges.begin(), ranges.end());
    for (const auto& [first, last] : ranges) {
        if (!_ranges.empty() && (_ranges.back().last == UINT64_MAX || first <= _ranges.back().last + 1))
            _ranges.back().last = std::max(_ranges.back().last, last);
        else
            _ranges.push_back({first, last, 0});
    }
    for (std::size_t i = 1; i < _ranges.size(); ++i)
        _ranges[i].row = _ranges[i - 1].row + (_ranges[i - 1].last - _ranges[i - 1].first + 1);
}

ElementMap ElementMap::fromTable(const std::vector<std::uint64_t>& table)
{
    ElementMap map;
    for (std::size_t i = 0; i + 1 < table.size(); i += 2) {
        const std::uint64_t row = map.rowCount();
        if (table[i] == 0 || table[i + 1] < table[i] || (i > 0 && table[i] <= table[i - 1]) ||
            table[i + 1] - table[i] == UINT64_MAX)
            throw FormatError("range " + std::to_string(i / 2) + " goes from " + std::to_string(table[i]) + " to " +
                              std::to_string(table[i + 1]) + ", ascending ranges expected");
        map._ranges.push_back({table[i], table[i + 1], row});
    }
    return map;
}

std::vector<std::uint64_t> ElementMap::toTable() const
{
    std::vector<std::uint64_t> table;
    for (const Range& range : _ranges)
        table.insert(table.end(), {range.first, range.last});
    return table;
}

std::uint64_t ElementMap::rowCount() const
{
    return _ranges.empty() ? 0 : _ranges.back().row + (_ranges.back().last - _ranges.back().first + 1);
}

std::size_t ElementMap::indexOf(std::uint64_t id) const
{
    const auto found = std::lower_bound(_ranges.begin(), _ranges.end(), id,
                                        [](const Range& range, std::uint64_t value) { return range.last < value; });
    return static_cast<std::size_t>(found - _ranges.begin());
}

bool ElementMap::contains(std::uint64_t first, std::uint64_t last) const
{
    if (last < first)
        return false;
    for (std::size_t i = indexOf(first); i < _ranges.size(); ++i) {
        if (first < _ranges[i].first)
            return false;
        if (last <= _ranges[i].last)
            return true;
        first = _ranges[i].last + 1;
    }
    return false;
}

const ElementMap::Range* ElementMap::find(std::uint64_t id) const
{
    const std::size_t index = indexOf(id);
    return index < _ranges.size() && _ranges[index].first <= id ? &_ranges[index] : nullptr;
}

std::uint64_t ElementMap::idOf(std::uint64_t row) const
{
    for (const Range& range : _ranges)
        if (row - range.row <= range.last - range.first)
            return range.first + (row - range.row);
    return 0;
}

} // namespace meridyn::hdf5
