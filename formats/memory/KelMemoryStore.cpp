#include "KelMemoryStore.h"

#include <mutex>

namespace meridyn {

bool KelMemoryArray::put(Id first, Id last, KelMemoryValues values, Id width)
{
    const Id elements = last - first + 1, count = countOf(values);
    if (width == 0 && elements != 0)
        width = count / elements;
    if (width == 0 || count % width != 0 || count / width != elements)
        return false;
    return insert(first, last, width, width, std::move(values));
}

bool KelMemoryArray::putRagged(Id first, Id last, KelMemoryValues values, const KelMemoryArray& counts)
{
    if (!counts.at(first))
        return put(first, last, std::move(values));
    const auto shared = std::make_shared<KelMemoryValues>(std::move(values));
    const Id total = countOf(*shared);
    Id begin = 0;
    Runs runs; // one for each stretch of elements with the same count
    for (Id id = first; id != 0 && id <= last; ++id) {
        const std::optional<long> count = counts.at(id);
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

std::optional<long> KelMemoryArray::uniformValue(Id first, Id last) const
{
    const std::optional<long> value = at(first);
    for (Id id = first; id != 0 && id <= last;) {
        if (!value || at(id) != value)
            return std::nullopt;
        const Run& run = find(id)->second;
        id = run.stride == 0 ? run.last + 1 : id + 1;
    }
    return value;
}

bool KelMemoryArray::insert(Id first, Id last, Id width, Id stride, KelMemoryValues&& values)
{
    const bool isRange = first != 0 && last >= first;
    if (isRange)
        insert(first, {last, width, stride, 0, std::make_shared<KelMemoryValues>(std::move(values))});
    return isRange;
}

void KelMemoryArray::insert(Id first, const Run& run)
{
    cutBefore(first);
    if (run.last + 1 != 0)
        cutBefore(run.last + 1);
    _runs.erase(_runs.lower_bound(first), _runs.upper_bound(run.last));
    _runs[first] = run;
}

/// Makes two runs of one that goes on from id - 1 to id.
void KelMemoryArray::cutBefore(Id id)
{
    const auto next = _runs.lower_bound(id);
    if (next == _runs.begin() || std::prev(next)->second.last < id)
        return;
    auto& [first, run] = *std::prev(next);
    _runs[id] = {run.last, run.width, run.stride, run.begin + (id - first) * run.stride, run.values};
    run.last = id - 1;
}

const KelMemoryNode KelMemoryNode::nothing;

template <class Children>
static auto findNamed(Children& children, const std::string& name)
{
    return std::find_if(children.begin(), children.end(), [&name](const auto& child) { return child.name == name; });
}

KelMemoryNode& KelMemoryNode::operator[](const std::string& child)
{
    const auto found = findNamed(children, child);
    if (found != children.end())
        return *found;
    children.emplace_back().name = child;
    return children.back();
}

const KelMemoryNode& KelMemoryNode::operator[](const std::string& child) const
{
    const auto found = findNamed(children, child);
    return found != children.end() ? *found : nothing;
}

std::vector<std::string> KelMemoryNode::names() const
{
    std::vector<std::string> list;
    for (const KelMemoryNode& child : children)
        list.push_back(child.name);
    return list;
}

static std::mutex mutex;
static std::map<std::pair<std::string, KelDataClass>, KelMemoryStore::File> files;

KelMemoryStore::File KelMemoryStore::find(const std::string& name, KelDataClass dataClass)
{
    const std::lock_guard lock(mutex);
    const auto found = files.find({name, dataClass});
    return found != files.end() ? found->second : nullptr;
}

void KelMemoryStore::publish(const std::string& name, KelDataClass dataClass, File file)
{
    const std::lock_guard lock(mutex);
    files[{name, dataClass}] = std::move(file);
}

bool KelMemoryStore::remove(const std::string& name)
{
    const std::lock_guard lock(mutex);
    return files.erase({name, KEL_CASE}) + files.erase({name, KEL_DATA}) > 0;
}

} // namespace meridyn
