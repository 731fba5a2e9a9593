#include "Coverage.h"

#include "ArrayStore.h"
#include "formats/hdf5/file/FormatError.h"

#include <algorithm>

namespace meridyn::hdf5 {

// Invariant: intervals ascend and neither overlap nor touch. A new one may bridge any number of them: it starts in, or
// right behind, at most one (the last that begins before it), and swallows those that begin before it ends.
void Coverage::add(std::uint64_t begin, std::uint64_t end)
{
    if (begin >= end)
        return;
    auto next = _intervals.upper_bound(begin);
    if (next != _intervals.begin()) {
        const auto before = std::prev(next);
        if (before->second >= begin) {
            begin = before->first;
            end = std::max(end, before->second);
            next = _intervals.erase(before);
        }
    }
    while (next != _intervals.end() && next->first <= end) {
        end = std::max(end, next->second);
        next = _intervals.erase(next);
    }
    _intervals.emplace_hint(next, begin, end);
}

bool Coverage::covers(std::uint64_t begin, std::uint64_t end) const
{
    if (begin >= end)
        return true;
    const auto next = _intervals.upper_bound(begin);
    return next != _intervals.begin() && std::prev(next)->second >= end;
}

bool Coverage::touches(std::uint64_t begin, std::uint64_t end) const
{
    if (begin >= end)
        return false;
    const auto next = _intervals.lower_bound(end);
    return next != _intervals.begin() && std::prev(next)->second > begin;
}

std::vector<Coverage::Interval> Coverage::intervals() const
{
    return {_intervals.begin(), _intervals.end()};
}

// `begin` runs ahead to the end of each interval; what lies between it and the next interval is missing.
std::vector<Coverage::Interval> Coverage::gaps(std::uint64_t begin, std::uint64_t end) const
{
    std::vector<Interval> gaps;
    auto next = _intervals.upper_bound(begin);
    if (next != _intervals.begin())
        begin = std::max(begin, std::prev(next)->second);
    for (; next != _intervals.end() && next->first < end; ++next) {
        if (begin < next->first)
            gaps.emplace_back(begin, next->first);
        begin = next->second;
    }
    if (begin < end)
        gaps.emplace_back(begin, end);
    return gaps;
}

Coverage readCoverage(Hdf5File& file, hid_t group, const std::string& name, std::uint64_t rows)
{
    const auto array = ArrayReader::open(file, group, name);
    const auto table = array->readAll<std::uint64_t>();
    Coverage coverage;
    std::uint64_t end = 0;
    for (std::size_t i = 0; i + 1 < table.size(); i += 2) {
        const bool isApart = i == 0 || table[i] > end;
        if (!isApart || table[i] > rows || table[i + 1] == 0 || table[i + 1] > rows - table[i])
            throw FormatError(array->label() + " has " + std::to_string(table[i + 1]) + " rows from row " +
                              std::to_string(table[i]) + " on, ascending stretches of " + std::to_string(rows) +
                              " rows expected");
        end = table[i] + table[i + 1];
        coverage.add(table[i], end);
    }
    return coverage;
}

} // namespace meridyn::hdf5
