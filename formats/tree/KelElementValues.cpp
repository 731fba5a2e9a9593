#include "KelElementValues.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace meridyn {

KelAnyValues copyOf(const KelValues& values, KelPlainDataType type)
{
    KelAnyValues copy;
    visitPlainType(type, [&](auto* null) {
        using T = std::remove_pointer_t<decltype(null)>;
        auto& list = copy.emplace<std::vector<T>>();
        values.visit([&](auto* from) {
            if (from)
                std::transform(from, from + values.count, std::back_inserter(list),
                               convertedValue<T, std::decay_t<decltype(*from)>>);
        });
    });
    return copy;
}

static unsigned64 countOf(const KelAnyValues& values)
{
    return std::visit([](const auto& list) { return static_cast<unsigned64>(list.size()); }, values);
}

bool KelElementValues::put(Id first, Id last, KelAnyValues values, Id width)
{
    const Id elements = last - first + 1, count = countOf(values);
    if (width == 0 && elements != 0)
        width = count / elements;
    if (width == 0 || count % width != 0 || count / width != elements)
        return false;
    return insert(first, last, width, width, std::move(values));
}

bool KelElementValues::putUniform(Id first, Id last, KelAnyValues values)
{
    return insert(first, last, countOf(values), 0, std::move(values));
}

bool KelElementValues::append(KelAnyValues values)
{
    const Id count = countOf(values);
    return count == 0 || put(lastId() + 1, lastId() + count, std::move(values));
}

bool KelElementValues::putRagged(Id first, Id last, KelAnyValues values, const KelElementValues& counts)
{
    if (!counts.at(first))
        return put(first, last, std::move(values));
    const auto shared = std::make_shared<KelAnyValues>(std::move(values));
    const Id total = countOf(*shared);
    Id begin = 0;
    Runs runs; // one for each stretch of elements with the same count
    for (Id id = first; id != 0 && id <= last; ++id) {
        const std::optional<signed64> count = counts.at(id);
        if (!count || *count < 0 || static_cast<Id>(*count) > total - begin)
            return false;
        const Id width = static_cast<Id>(*count);
        if (runs.empty() || runs.rbegin()->second.width != width)
            runs[id] = {id, width, width, begin, shared};
        runs.rbegin()->second.last = id;
        begin += width;
    }
    if (runs.empty() || begin != total)
        return false;
    for (const auto& [id, run] : runs)
        insert(id, run);
    return true;
}

KelElementValues::Id KelElementValues::get(Id first, Id last, const KelBuffer& out,
                                           const KelElementValues& counts) const
{
    Id stored = 0;
    for (Id id = first; id != 0 && id <= last; ++id) { // 0: behind the largest id
        const auto* found = find(id);
        if (!found && counts.at(id) != 0)
            return 0;
        if (!found)
            continue;
        const Run& run = found->second;
        if (run.width > out.capacity - stored)
            return stored;
        const Id begin = run.begin + (id - found->first) * run.stride;
        out.visit([&](auto* to) {
            using T = std::remove_pointer_t<decltype(to)>;
            const auto copy = [&](const auto& values) {
                for (Id n = 0; n < run.width; ++n)
                    to[stored + n] = convertedValue<T>(values[begin + n]);
            };
            std::visit(copy, *run.values);
        });
        stored += run.width;
    }
    return stored;
}

std::vector<KelElementValues::Piece> KelElementValues::pieces() const
{
    return pieces(0, std::numeric_limits<Id>::max());
}

std::vector<KelElementValues::Piece> KelElementValues::pieces(Id first, Id last) const
{
    std::vector<Piece> pieces;
    const auto* const inside = find(first);
    for (auto next = inside ? _runs.find(inside->first) : _runs.lower_bound(first);
         next != _runs.end() && next->first <= last; ++next) {
        const auto& [runFirst, run] = *next;
        const Id from = std::max(first, runFirst), to = std::min(last, run.last);
        const bool isUniform = run.stride == 0;
        const Id count = run.width * (isUniform ? 1 : to - from + 1);
        const auto view = [begin = run.begin + (from - runFirst) * run.stride, count](const auto& list) {
            return KelValues(list.data() + begin, count);
        };
        if (count > 0)
            pieces.push_back({from, to, run.width, isUniform, std::visit(view, *run.values)});
    }
    return pieces;
}

std::optional<signed64> KelElementValues::at(Id id) const
{
    signed64 value = 0;
    return find(id) && get(id, id, {&value, 1}) == 1 ? std::optional(value) : std::nullopt;
}

const KelElementValues::Runs::value_type* KelElementValues::find(Id id) const
{
    const auto next = _runs.upper_bound(id);
    return next != _runs.begin() && id <= std::prev(next)->second.last ? &*std::prev(next) : nullptr;
}

std::optional<signed64> KelElementValues::uniformValue(Id first, Id last) const
{
    const std::optional<signed64> value = at(first);
    for (Id id = first; id != 0 && id <= last;) {
        if (!value || at(id) != value)
            return std::nullopt;
        const Run& run = find(id)->second;
        id = run.stride == 0 ? run.last + 1 : id + 1;
    }
    return value;
}

bool KelElementValues::insert(Id first, Id last, Id width, Id stride, KelAnyValues&& values)
{
    const bool isRange = first != 0 && last >= first;
    if (isRange)
        insert(first, {last, width, stride, 0, std::make_shared<KelAnyValues>(std::move(values))});
    return isRange;
}

void KelElementValues::insert(Id first, const Run& run)
{
    cutBefore(first);
    if (run.last + 1 != 0)
        cutBefore(run.last + 1);
    _runs.erase(_runs.lower_bound(first), _runs.upper_bound(run.last));
    _runs[first] = run;
}

/// Makes two runs of one that goes on from id - 1 to id.
void KelElementValues::cutBefore(Id id)
{
    const auto next = _runs.lower_bound(id);
    if (next == _runs.begin() || std::prev(next)->second.last < id)
        return;
    auto& [first, run] = *std::prev(next);
    _runs[id] = {run.last, run.width, run.stride, run.begin + (id - first) * run.stride, run.values};
    run.last = id - 1;
}

} // namespace meridyn
