#include "KelMemoryArray.h"

#include <iterator>

namespace meridyn {

static unsigned64 countOf(const KelMemoryValues& values)
{
    return std::visit([](const auto& list) { return static_cast<unsigned64>(list.size()); }, values);
}

bool KelMemoryArray::put(unsigned64 first, unsigned64 last, KelMemoryValues values, unsigned64 width)
{
    if (first == 0 || last < first)
        return false;
    const unsigned64 elements = last - first + 1, count = countOf(values);
    if (width == 0)
        width = count / elements;
    if (width == 0 || count % width != 0 || count / width != elements)
        return false;
    return insert(first, {last, width, false, {}, std::move(values)});
}

bool KelMemoryArray::putUniform(unsigned64 first, unsigned64 last, KelMemoryValues values)
{
    const unsigned64 width = countOf(values);
    return first != 0 && last >= first && insert(first, {last, width, true, {}, std::move(values)});
}

bool KelMemoryArray::putRagged(unsigned64 first, unsigned64 last, KelMemoryValues values, const KelMemoryArray& counts)
{
    if (const std::optional<long> same = counts.uniformValue(first, last); same > 0)
        return put(first, last, std::move(values), static_cast<unsigned64>(*same));
    if (!counts.at(first))
        return put(first, last, std::move(values));

    const unsigned64 total = countOf(values);
    std::vector<unsigned64> offsets = {0};
    for (unsigned64 id = first; id <= last && id != 0; ++id) {
        const std::optional<long> count = counts.at(id);
        if (!count || *count < 0 || static_cast<unsigned64>(*count) > total - offsets.back())
            return false;
        offsets.push_back(offsets.back() + static_cast<unsigned64>(*count));
    }
    return last >= first && offsets.back() == total && insert(first, {last, 0, false, offsets, std::move(values)});
}

bool KelMemoryArray::append(KelMemoryValues values)
{
    const unsigned64 count = countOf(values);
    return count == 0 || put(lastId() + 1, lastId() + count, std::move(values), 1);
}

std::optional<long> KelMemoryArray::at(unsigned64 id) const
{
    long value = 0;
    return get(id, id, &value, 1) == 1 ? std::optional<long>(value) : std::nullopt;
}

std::optional<long> KelMemoryArray::uniformValue(unsigned64 first, unsigned64 last) const
{
    const std::optional<long> value = at(first);
    for (unsigned64 id = first; value && id != 0 && id <= last;) {
        const auto run = find(id);
        if (run == _runs.end())
            return std::nullopt;
        const unsigned64 end = run->second.isUniform ? id : std::min(last, run->second.last);
        for (; id <= end && id != 0; ++id)
            if (at(id) != value)
                return std::nullopt;
        if (run->second.isUniform)
            id = run->second.last + 1;
    }
    return value;
}

KelMemoryArray::Run KelMemoryArray::Run::piece(unsigned64 from, unsigned64 to, unsigned64 newLast) const
{
    if (isUniform)
        return {newLast, width, true, {}, values};
    Run part = {newLast, width, false, {}, {}};
    for (unsigned64 n = from; !offsets.empty() && n <= to; ++n)
        part.offsets.push_back(offsets[n] - offsets[from]);
    const auto copy = [&](const auto& list) {
        const auto at = list.begin();
        part.values = std::decay_t<decltype(list)>(at + static_cast<std::ptrdiff_t>(begin(from)),
                                                   at + static_cast<std::ptrdiff_t>(begin(to)));
    };
    std::visit(copy, values);
    return part;
}

KelMemoryArray::Runs::const_iterator KelMemoryArray::find(unsigned64 id) const
{
    const auto next = _runs.upper_bound(id);
    if (next == _runs.begin())
        return _runs.end();
    const auto run = std::prev(next);
    return id <= run->second.last ? run : _runs.end();
}

/// Makes two runs of one that goes on from id - 1 to id.
void KelMemoryArray::cutBefore(unsigned64 id)
{
    const auto next = _runs.lower_bound(id);
    if (next == _runs.begin())
        return;
    const auto run = std::prev(next);
    const unsigned64 cut = id - run->first, last = run->second.last;
    if (id > last)
        return;
    _runs.emplace_hint(next, id, run->second.piece(cut, last - run->first + 1, last));
    run->second = run->second.piece(0, cut, id - 1);
}

/// Replaces values within a run of the same shape: single corrections must not cost a copy of the run each.
bool KelMemoryArray::overwrite(unsigned64 first, const Run& run)
{
    auto old = _runs.upper_bound(first);
    if (old == _runs.begin() || run.last > (--old)->second.last || old->second.isUniform || run.isUniform ||
        !old->second.offsets.empty() || !run.offsets.empty() || old->second.width != run.width)
        return false;
    const auto copy = [&](auto& target) {
        const auto* source = std::get_if<std::decay_t<decltype(target)>>(&run.values);
        if (source)
            std::copy(source->begin(), source->end(),
                      target.begin() + static_cast<std::ptrdiff_t>(old->second.begin(first - old->first)));
        return source != nullptr;
    };
    return std::visit(copy, old->second.values);
}

bool KelMemoryArray::insert(unsigned64 first, Run run)
{
    if (overwrite(first, run))
        return true;
    cutBefore(first);
    if (run.last + 1 != 0)
        cutBefore(run.last + 1);
    _runs.erase(_runs.lower_bound(first), _runs.upper_bound(run.last));
    _runs.emplace(first, std::move(run));
    return true;
}

} // namespace meridyn
