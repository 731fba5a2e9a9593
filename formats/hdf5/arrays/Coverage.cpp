#include "Coverage.h"

#include <algorithm>

namespace meridyn::hdf5 {

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

} // namespace meridyn::hdf5
