#include "KelElementValues.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace meridyn {

using Id = KelElementValues::Id;

namespace {

Id countOf(const KelAnyValues& values)
{
    return std::visit([](const auto& list) { return static_cast<Id>(list.size()); }, values);
}

/// Calls `work` with both lists in their type, which is the same.
template <class To, class Work>
void visitBoth(To& to, const KelAnyValues& from, const Work& work)
{
    std::visit([&](auto& list) { work(list, std::get<std::decay_t<decltype(list)>>(from)); }, to);
}

void appendValues(KelAnyValues& to, const KelAnyValues& from, Id begin, Id count)
{
    visitBoth(to, from, [&](auto& list, const auto& more) {
        const auto start = more.begin() + static_cast<std::ptrdiff_t>(begin);
        list.insert(list.end(), start, start + static_cast<std::ptrdiff_t>(count));
    });
}

/// Stores `count` values from a position on, converted. False for a buffer of no value type.
bool copyTo(const KelBuffer& out, Id stored, const KelAnyValues& values, Id begin, Id count)
{
    return out.visit([&](auto* to) {
        using T = std::remove_pointer_t<decltype(to)>;
        const auto copy = [&](const auto& list) {
            using From = typename std::decay_t<decltype(list)>::value_type;
            const auto start = list.begin() + static_cast<std::ptrdiff_t>(begin);
            std::transform(start, start + static_cast<std::ptrdiff_t>(count), to + stored, convertedValue<T, From>);
        };
        std::visit(copy, values);
    });
}

signed64 numberAt(const KelAnyValues& values, Id position)
{
    return std::visit([position](const auto& list) { return convertedValue<signed64>(list[position]); }, values);
}

bool areEqual(const KelAnyValues& one, const KelAnyValues& other)
{
    return one.index() == other.index() && one == other;
}

} // namespace

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

KelAnyValues copyOf(const KelValues& values)
{
    return copyOf(values, values.type);
}

/// Ids that follow each other in what is handed over, with as many values each, or with offsets.
struct KelElementValues::Part {
    Id first;
    Id last;
    Id width;
    Id begin;
    std::vector<Id> offsets; // one more than ids; empty where all have the same number
};

Id KelElementValues::Run::beginOf(Id position) const
{
    return offsets ? (*offsets)[firstOffset + position] : isUniform ? begin : begin + position * width;
}

Id KelElementValues::Run::widthOf(Id position) const
{
    return offsets ? (*offsets)[firstOffset + position + 1] - (*offsets)[firstOffset + position] : width;
}

// ---- keeping

bool KelElementValues::put(Id first, Id last, KelAnyValues values, Id width)
{
    const Id elements = last - first + 1, count = countOf(values);
    if (width == 0 && elements != 0)
        width = count / elements;
    if (width == 0 || count % width != 0 || count / width != elements || first == 0 || last < first)
        return false;
    if (!overwrite(first, last, values, width) && !extend(first, last, values, width))
        insert(first, {last, width, 0, false, std::make_shared<KelAnyValues>(std::move(values)), nullptr, 0});
    return true;
}

bool KelElementValues::putUniform(Id first, Id last, KelAnyValues values)
{
    if (first == 0 || last < first)
        return false;
    if (Run* const before = runBefore(first, last);
        before != nullptr && before->isUniform && before->begin == 0 && areEqual(*before->values, values))
        before->last = last;
    else
        insert(first, {last, countOf(values), 0, true, std::make_shared<KelAnyValues>(std::move(values)), nullptr, 0});
    return true;
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
    const auto parts = partsOf(first, last, countOf(values), counts);
    if (!parts)
        return false;
    if (parts->size() == 1 && extendLists(parts->front(), values))
        return true;
    const auto shared = std::make_shared<KelAnyValues>(std::move(values));
    for (const Part& part : *parts)
        insert(part.first, {part.last, part.width, part.begin, false, shared,
                            part.offsets.empty() ? nullptr : std::make_shared<std::vector<Id>>(part.offsets), 0});
    return true;
}

/// Divides a range after the counts of its ids: a stretch of one count becomes a part, whatever its length, and so does
/// an array of counts. Nothing when an id has no count, or the counts do not go with the number of values.
std::optional<std::vector<KelElementValues::Part>> KelElementValues::partsOf(Id first, Id last, Id total,
                                                                             const KelElementValues& counts) const
{
    std::vector<Part> parts;
    Id next = first, begin = 0;
    for (const Piece& piece : counts.pieces(first, last)) {
        if (piece.first != next || piece.width != 1)
            return std::nullopt;
        const KelAnyValues numbers = copyOf(piece.values, KEL_PLAIN_SIGNED64);
        const auto& widths = std::get<std::vector<signed64>>(numbers);
        const bool isEven =
            std::all_of(widths.begin(), widths.end(), [&](signed64 width) { return width == widths[0]; });
        const Id elements = piece.last - piece.first + 1;
        Part part{piece.first, piece.last, static_cast<Id>(widths[0]), begin, {}};
        for (Id n = 0; n < widths.size(); ++n) {
            const Id left = total - begin, repeats = isEven ? elements : 1;
            if (widths[n] < 0 || (widths[n] > 0 && static_cast<Id>(widths[n]) > left / repeats))
                return std::nullopt;
            if (!isEven)
                part.offsets.push_back(begin);
            begin += static_cast<Id>(widths[n]) * repeats;
            if (isEven)
                break;
        }
        if (!isEven)
            part.offsets.push_back(begin);
        parts.push_back(std::move(part));
        next = piece.last + 1;
    }
    if (parts.empty() || parts.back().last != last || begin != total)
        return std::nullopt;
    return parts;
}

/// The run that ends right before a range that has no values yet, and whose array belongs to nobody else and ends with
/// it; null without one.
KelElementValues::Run* KelElementValues::runBefore(Id first, Id last)
{
    const auto next = _runs.lower_bound(first);
    if (next == _runs.begin() || (next != _runs.end() && next->first <= last))
        return nullptr;
    auto& [from, run] = *std::prev(next);
    const bool isFree = run.last + 1 == first && run.values.use_count() == 1;
    const Id end = run.beginOf(run.last - from) + run.widthOf(run.last - from);
    return isFree && end == countOf(*run.values) ? &run : nullptr;
}

/// Replaces values of a run where they lie.
bool KelElementValues::overwrite(Id first, Id last, const KelAnyValues& values, Id width)
{
    const auto* const found = find(first);
    if (found == nullptr)
        return false;
    const Run& run = found->second;
    if (last > run.last || run.isUniform || run.offsets || run.width != width ||
        run.values->index() != values.index() || run.values.use_count() > 1)
        return false;
    visitBoth(*run.values, values, [&](auto& to, const auto& from) {
        std::copy(from.begin(), from.end(),
                  to.begin() + static_cast<std::ptrdiff_t>(run.beginOf(first - found->first)));
    });
    return true;
}

/// Adds values to the run before them.
bool KelElementValues::extend(Id first, Id last, const KelAnyValues& values, Id width)
{
    Run* const run = runBefore(first, last);
    if (run == nullptr || run->isUniform || run->offsets || run->width != width ||
        run->values->index() != values.index())
        return false;
    appendValues(*run->values, values, 0, countOf(values));
    run->last = last;
    return true;
}

/// The same for lists, whose lengths may differ: the run then gets offsets.
bool KelElementValues::extendLists(const Part& part, const KelAnyValues& values)
{
    if (part.offsets.empty() && part.width > 0 && extend(part.first, part.last, values, part.width))
        return true;
    Run* const run = runBefore(part.first, part.last);
    constexpr Id longStretch = 1024; // of equal lengths, which need no offsets
    if (run == nullptr || run->isUniform || run->values->index() != values.index() ||
        part.last - part.first >= longStretch + part.offsets.size())
        return false;
    const Id first = std::prev(_runs.lower_bound(part.first))->first;
    if (!run->offsets && run->last - first >= longStretch)
        return false;
    if (!run->offsets) {
        auto offsets = std::make_shared<std::vector<Id>>();
        for (Id position = 0; position <= run->last - first + 1; ++position)
            offsets->push_back(run->begin + position * run->width);
        run->offsets = offsets;
        run->firstOffset = 0;
    }
    if (run->offsets.use_count() > 1)
        return false;
    Id end = run->offsets->back();
    for (Id position = 0; position <= part.last - part.first; ++position) {
        end += part.offsets.empty() ? part.width : part.offsets[position + 1] - part.offsets[position];
        run->offsets->push_back(end);
    }
    appendValues(*run->values, values, 0, countOf(values));
    run->last = part.last;
    return true;
}

void KelElementValues::insert(Id first, Run run)
{
    cutBefore(first);
    if (run.last + 1 != 0)
        cutBefore(run.last + 1);
    _runs.erase(_runs.lower_bound(first), _runs.upper_bound(run.last));
    _runs.emplace(first, std::move(run));
    if (_runs.size() > _runLimit)
        compact();
}

/// Makes two runs of one that goes on from id - 1 to id.
void KelElementValues::cutBefore(Id id)
{
    const auto next = _runs.lower_bound(id);
    if (next == _runs.begin() || std::prev(next)->second.last < id)
        return;
    auto& [first, run] = *std::prev(next);
    Run rest = run;
    rest.begin = run.offsets ? 0 : run.beginOf(id - first);
    rest.firstOffset = run.firstOffset + (id - first);
    run.last = id - 1;
    _runs.emplace(id, std::move(rest));
}

// Elements that come one by one in any order make a run each. When there are twice as many as after the last time,
// those that follow each other get an array together, so that a value is copied some twenty times at most.
void KelElementValues::compact()
{
    constexpr Id shortStretch = 64; // of one value for all, which may become an array
    const auto canJoin = [](const Runs::value_type& entry) {
        return !entry.second.isUniform || (entry.second.last - entry.first) * entry.second.width < shortStretch;
    };
    Runs joined;
    for (auto next = _runs.begin(); next != _runs.end();) {
        auto end = std::next(next);
        Id last = next->second.last;
        bool isEven = true;
        for (; canJoin(*next) && end != _runs.end() && last + 1 == end->first && canJoin(*end) &&
               end->second.values->index() == next->second.values->index();
             ++end) {
            isEven = isEven && !end->second.offsets && end->second.width == next->second.width;
            last = end->second.last;
        }
        if (end == std::next(next)) {
            joined.insert(*next++);
            continue;
        }
        isEven = isEven && !next->second.offsets;
        const Id first = next->first;
        auto values = std::make_shared<KelAnyValues>();
        std::visit([&](const auto& list) { *values = std::decay_t<decltype(list)>(); }, *next->second.values);
        auto offsets = isEven ? nullptr : std::make_shared<std::vector<Id>>(1, 0);
        const Id width = next->second.width;
        for (; next != end; ++next) {
            const Run& run = next->second;
            const Id elements = run.last - next->first + 1;
            for (Id position = 0; offsets && position < elements; ++position)
                offsets->push_back(offsets->back() + run.widthOf(position));
            for (Id repeat = 0; run.isUniform && repeat < elements; ++repeat)
                appendValues(*values, *run.values, run.begin, run.width);
            if (!run.isUniform)
                appendValues(*values, *run.values, run.beginOf(0),
                             run.beginOf(elements - 1) + run.widthOf(elements - 1) - run.beginOf(0));
        }
        joined.emplace(first, Run{last, width, 0, false, std::move(values), std::move(offsets), 0});
    }
    _runs = std::move(joined);
    _runLimit = std::max<std::size_t>(256, 2 * _runs.size());
}

// ---- reading

Id KelElementValues::lastId() const
{
    return _runs.empty() ? 0 : _runs.rbegin()->second.last;
}

const KelElementValues::Runs::value_type* KelElementValues::find(Id id) const
{
    const auto next = _runs.upper_bound(id);
    return next != _runs.begin() && id <= std::prev(next)->second.last ? &*std::prev(next) : nullptr;
}

Id KelElementValues::get(Id first, Id last, const KelBuffer& out) const
{
    return get(first, last, out, {});
}

Id KelElementValues::get(Id first, Id last, const KelBuffer& out, const KelElementValues& counts) const
{
    Id stored = 0;
    for (Id id = first; id != 0 && id <= last; ++id) { // 0: behind the largest id
        const auto* const found = find(id);
        if (found == nullptr) {
            const auto* const count = counts.find(id);
            if (count == nullptr || counts.at(id) != 0)
                return 0;
            // Ids that have one count together are passed over together, up to the next one with values.
            if (count->second.isUniform) {
                const auto next = _runs.lower_bound(id);
                id = std::min(count->second.last, next == _runs.end() ? count->second.last : next->first - 1);
            }
            continue;
        }
        const auto& [from, run] = *found;
        const Id end = std::min(last, run.last);
        while (id <= end) {
            // Ids whose values lie one behind the other go together.
            const Id position = id - from, width = run.widthOf(position);
            const bool isEven = !run.offsets && !run.isUniform && width > 0;
            const Id fitting = width == 0 ? 1 : (out.capacity - stored) / width;
            const Id elements = isEven ? std::min(fitting, end - id + 1) : std::min<Id>(fitting, 1);
            if (elements == 0)
                return stored;
            if (width > 0 && !copyTo(out, stored, *run.values, run.beginOf(position), elements * width))
                return 0;
            stored += elements * width;
            id += elements;
            if (id == 0) // behind the largest id
                return stored;
        }
        id = end;
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
        const auto& [from, run] = *next;
        const Id end = std::min(last, run.last);
        for (Id id = std::max(first, from); id != 0 && id <= end;) {
            const Id width = run.widthOf(id - from);
            Id same = id; // the last id with as many values
            if (!run.offsets)
                same = end;
            while (run.offsets && same < end && run.widthOf(same + 1 - from) == width)
                ++same;
            const Id count = width * (run.isUniform ? 1 : same - id + 1);
            const auto view = [begin = run.beginOf(id - from), count](const auto& list) {
                return KelValues(list.data() + begin, count);
            };
            if (count > 0)
                pieces.push_back({id, same, width, run.isUniform, std::visit(view, *run.values)});
            id = same + 1;
        }
    }
    return pieces;
}

std::optional<signed64> KelElementValues::at(Id id) const
{
    const auto* const found = find(id);
    if (found == nullptr || found->second.widthOf(id - found->first) != 1)
        return std::nullopt;
    return numberAt(*found->second.values, found->second.beginOf(id - found->first));
}

std::optional<signed64> KelElementValues::uniformValue(Id first, Id last) const
{
    const std::optional<signed64> value = at(first);
    for (Id id = first; value && id != 0 && id <= last;) {
        const auto* const found = find(id);
        if (found == nullptr)
            return std::nullopt;
        const auto& [from, run] = *found;
        const Id end = run.isUniform ? id : std::min(last, run.last);
        for (Id each = id; each != 0 && each <= end; ++each)
            if (run.widthOf(each - from) != 1 || numberAt(*run.values, run.beginOf(each - from)) != *value)
                return std::nullopt;
        id = (run.isUniform ? run.last : end) + 1;
    }
    return value;
}

} // namespace meridyn
