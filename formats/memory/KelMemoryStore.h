#pragma once

#include "KelExport.h"
#include "KelMeshKey.h"
#include "KelModelDescription.h"
#include "KelValueTypes.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace meridyn {

/// Values of one of the ten value types. The index of the alternative is the number of its KelPlainDataType.
using KelMemoryValues =
    std::variant<std::vector<unsigned char>, std::vector<char>, std::vector<short>, std::vector<unsigned int>,
                 std::vector<int>, std::vector<long>, std::vector<unsigned64>, std::vector<signed64>,
                 std::vector<float>, std::vector<double>>;

/// A copy of a caller's buffer; empty for a null one.
template <class T>
KelMemoryValues copyOf(const T* values, unsigned64 count)
{
    return values ? std::vector<T>(values, values + count) : std::vector<T>();
}

/// Values per element id: what stands for the disk. Ranges come in any order, later values replace earlier ones. Kept
/// are the buffers as they were handed over, and for each run of ids where in which buffer its values lie.
class KEL_API KelMemoryArray {
public:
    using Id = unsigned64; ///< an element id, or a number of values

    // clang-format off
    /// @name Keep values for the ids of a range
    /// False, and nothing is kept, when the range is none or does not go with the number of values.
    /// @{
    bool put(Id first, Id last, KelMemoryValues values, Id width = 0); ///< `width` for each id, or what comes out even
    bool putUniform(Id first, Id last, KelMemoryValues values) { return insert(first, last, countOf(values), 0, std::move(values)); } ///< All of them for each.
    bool putRagged(Id first, Id last, KelMemoryValues values, const KelMemoryArray& counts); ///< Without counts as put.
    bool append(KelMemoryValues values) { const Id n = countOf(values); return n == 0 || put(lastId() + 1, lastId() + n, std::move(values)); } ///< One each.
    /// @}

    /// Gives the values of a range, converted, as far as whole elements fit: the number of values stored. 0 when an id
    /// has none, unless its count is 0.
    template <class T>
    Id get(Id first, Id last, T* out, Id capacity, const KelMemoryArray& counts = {}) const;

    std::optional<long> at(Id id) const ///< Of one value per id.
    { long value = 0; return find(id) && get(id, id, &value, 1) == 1 ? std::optional(value) : std::nullopt; }
    std::optional<long> uniformValue(Id first, Id last) const; ///< The value that all ids of a range have.
    Id lastId() const { return _runs.empty() ? 0 : _runs.rbegin()->second.last; } ///< 0 for none.

private:
    struct Run {
        Id last, width, stride, begin; ///< values of the first id begin there, those of the next `stride` behind them
        std::shared_ptr<const KelMemoryValues> values;
    };
    using Runs = std::map<Id, Run>; ///< by first id
    const Runs::value_type* find(Id id) const
    { const auto next = _runs.upper_bound(id); return next != _runs.begin() && id <= std::prev(next)->second.last ? &*std::prev(next) : nullptr; }
    static Id countOf(const KelMemoryValues& values) { return std::visit([](const auto& list) { return static_cast<Id>(list.size()); }, values); }
    // clang-format on
    bool insert(Id first, Id last, Id width, Id stride, KelMemoryValues&& values);
    void insert(Id first, const Run& run);
    void cutBefore(Id id);

    Runs _runs;
};

template <class T>
KelMemoryArray::Id KelMemoryArray::get(Id first, Id last, T* out, Id capacity, const KelMemoryArray& counts) const
{
    Id stored = 0;
    for (Id id = first; id != 0 && id <= last; ++id) { // 0: behind the largest id
        const auto* found = find(id);
        if (!found && counts.at(id) != 0)
            return 0;
        if (!found)
            continue;
        const Run& run = found->second;
        if (run.width > capacity - stored)
            return stored;
        const auto copy = [&, begin = run.begin + (id - found->first) * run.stride](const auto& values) {
            for (Id n = begin; n < begin + run.width; ++n)
                out[stored++] = convertedValue<T>(values[n]);
        };
        std::visit(copy, *run.values);
    }
    return stored;
}

/// What has a name in a file: a tree, in which each node may carry values.
struct KEL_API KelMemoryNode {
    std::string name;                               ///< under which its parent has it
    std::list<KelMemoryNode> children = {};         ///< in the order in which they came
    std::string text = {};                          ///< of a setting, an attribute, a text of a set
    std::vector<int> zoneIds = {};                  ///< the zones that were named for it
    KelZoneCategory category = KelZoneCategory(-1); ///< of its elements; -1 for none
    KelPlainDataType type = KelPlainDataType(-1);   ///< of its values; -1 for none
    unsigned64 size = 0;        ///< values per element, 0: see counts; or a number of members or points
    KelMemoryArray values = {}; ///< per element id; of a list: one for each of 1, 2, ...

    static const KelMemoryNode nothing;                         ///< stands for a node that is not there
    explicit operator bool() const { return this != &nothing; } ///< whether it is there

    KelMemoryNode& operator[](const std::string& child);             ///< made behind the others if missing
    const KelMemoryNode& operator[](const std::string& child) const; ///< `nothing` if missing
    std::vector<std::string> names() const;                          ///< of the children

    /// How many values each element has, where that differs: one number per element.
    // clang-format off
    KelMemoryNode& counts() { KelMemoryNode& node = (*this)[name + " counts"]; node.size = 1; return node; }
    /// The same, `nothing` if missing.
    const KelMemoryNode& counts() const { return (*this)[name + " counts"]; }

    /// Gives the values of a range of elements; those with a count of 0 need not have been kept.
    template <class T>
    unsigned64 get(unsigned64 first, unsigned64 last, T* out, unsigned64 capacity) const { return values.get(first, last, out, capacity, counts().values); }
    unsigned64 length() const { return values.lastId(); } ///< of a list
    /// Gives the values of a list as far as there is room.
    template <class T>
    unsigned64 get(T* out, unsigned64 capacity) const { return values.get(1, std::min(capacity, length()), out, capacity); }
    /// Gives all values of a list; whether there are any.
    template <class T>
    bool get(std::vector<T>& list) const { list.resize(length()); return get(list.data(), list.size()) > 0; }
    // clang-format on
};

/// What a file holds for one data class.
struct KelMemoryFile {
    /// One of the meshes, or what belongs to one.
    struct Mesh {
        KelMeshDescription mesh;         ///< what KelBase knows of it
        KelSolutionDescription solution; ///< phases, variables and time levels; data only
        std::string locations;           ///< state of the location model
        KelMemoryNode tree; ///< case: arrays, sections, sets; data: by time level, sets and phases with all they have
    };
    KelMemoryNode settings;                               ///< groups, and in them a text for each key
    std::vector<std::pair<std::string, std::string>> log; ///< titles and texts
    std::map<KelMeshKey, Mesh> meshes;                    ///< all of the file
};

/// The files of this process, by name ("memory:" and anything) and data class. A file never changes once it is there:
/// a reader keeps what it opened although a writer puts another in its place. May be used from several threads.
class KEL_API KelMemoryStore {
public:
    using File = std::shared_ptr<const KelMemoryFile>; ///< a file as readers hold it

    static File find(const std::string& name, KelDataClass dataClass); ///< null for none
    static void publish(const std::string& name, KelDataClass dataClass,
                        File file);              ///< puts a file in the place of what has the name
    static bool remove(const std::string& name); ///< of both data classes; false when there are none
};

} // namespace meridyn
