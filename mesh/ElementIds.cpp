#include "mesh/ElementIds.h"

#include <algorithm>
#include <iterator>

namespace meridyn::mesh {

void ElementIds::add(unsigned64 first, unsigned64 last)
{
    if (!_runs.empty() && first <= _runs.back().last)
        first = _runs.back().last + 1; // the part that another zone has added stays where it is
    if (first == 0 || first > last)
        return;
    if (!_runs.empty() && _runs.back().last + 1 == first)
        _runs.back().last = last;
    else
        _runs.push_back({first, last, _size});
    _size += last - first + 1;
}

std::size_t ElementIds::indexOf(unsigned64 id) const
{
    // Nearly every mesh has one run per category, so that this is asked for each node of each face.
    if (_runs.size() == 1)
        return id >= _runs[0].first && id <= _runs[0].last ? id - _runs[0].first : none;
    const auto next = std::upper_bound(_runs.begin(), _runs.end(), id,
                                       [](unsigned64 wanted, const Run& run) { return wanted < run.first; });
    if (next == _runs.begin())
        return none;
    const Run& run = *std::prev(next);
    return id <= run.last ? run.place + (id - run.first) : none;
}

unsigned64 ElementIds::idOf(std::size_t index) const
{
    const auto next = std::upper_bound(_runs.begin(), _runs.end(), index,
                                       [](std::size_t wanted, const Run& run) { return wanted < run.place; });
    const Run& run = *std::prev(next);
    return run.first + (index - run.place);
}

} // namespace meridyn::mesh
