#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <optional>
#include <type_traits>
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
KelMemoryValues copyOfValues(const T* values, unsigned64 count)
{
    return values ? std::vector<T>(values, values + count) : std::vector<T>();
}

/// A value in another type: floating-point values are cut to whole numbers within the range of an integer type, and a
/// nan is then 0.
template <class To, class From>
To convertedValue(From value)
{
    if constexpr (std::is_floating_point_v<From> && std::is_integral_v<To>) {
        if (!(value > static_cast<From>(std::numeric_limits<To>::min())))
            return std::isnan(value) ? To(0) : std::numeric_limits<To>::min();
        if (value >= static_cast<From>(std::numeric_limits<To>::max()))
            return std::numeric_limits<To>::max();
    }
    return static_cast<To>(value);
}

/// Values per element id: each run of consecutive ids as it was handed over, in any order. Later values replace
/// earlier ones.
class KEL_API KelMemoryArray {
public:
    /// Keeps `width` values for each id of a range; 0 stands for as many as there are per element. False, and nothing
    /// is kept, when the range is none or does not go with the number of values.
    bool put(unsigned64 first, unsigned64 last, KelMemoryValues values, unsigned64 width = 0);

    /// Keeps the same values for each id of a range.
    bool putUniform(unsigned64 first, unsigned64 last, KelMemoryValues values);

    /// Keeps as many values for each id as `counts` says, or the same number for each where `counts` says nothing.
    bool putRagged(unsigned64 first, unsigned64 last, KelMemoryValues values, const KelMemoryArray& counts);

    /// Keeps values behind the last id, one per id.
    bool append(KelMemoryValues values);

    /// Gives the values of a range, converted, one element after the other, as far as whole elements fit: the number of
    /// values stored. 0 when an id has none, unless it has as many zeros as `missing` says.
    template <class T, class Missing>
    unsigned64 get(unsigned64 first, unsigned64 last, T* out, unsigned64 capacity, const Missing& missing) const;

    /// The same without an answer for missing ids.
    template <class T>
    unsigned64 get(unsigned64 first, unsigned64 last, T* out, unsigned64 capacity) const
    {
        return get(first, last, out, capacity, [](unsigned64) { return std::optional<unsigned64>(); });
    }

    /// The value of one id, or nothing; for arrays of one value per id.
    std::optional<long> at(unsigned64 id) const;

    /// Whether all ids of a range have the same one value, and which.
    std::optional<long> uniformValue(unsigned64 first, unsigned64 last) const;

    /// The largest id that has values, 0 for none.
    unsigned64 lastId() const { return _runs.empty() ? 0 : _runs.rbegin()->second.last; }

private:
    /// Element number n of a run has the values from begin(n) to begin(n + 1).
    struct Run {
        unsigned64 last = 0;
        unsigned64 width = 0;            ///< per element; without meaning where there are offsets
        bool isUniform = false;          ///< one element's values stand for all
        std::vector<unsigned64> offsets; ///< of each element and of the end, where the numbers of values differ
        KelMemoryValues values;

        unsigned64 begin(unsigned64 n) const { return isUniform ? 0 : offsets.empty() ? n * width : offsets[n]; }
        unsigned64 size(unsigned64 n) const { return offsets.empty() ? width : offsets[n + 1] - offsets[n]; }
        Run piece(unsigned64 from, unsigned64 to, unsigned64 newLast) const;
    };
    using Runs = std::map<unsigned64, Run>; ///< by first id

    template <class T>
    static bool copyRun(const Run& run, unsigned64 n, unsigned64 end, T* out, unsigned64 capacity, unsigned64& stored);
    Runs::const_iterator find(unsigned64 id) const;
    void cutBefore(unsigned64 id);
    bool overwrite(unsigned64 first, const Run& run);
    bool insert(unsigned64 first, Run run);

    Runs _runs;
};

/// Copies the elements n to end - 1 of a run; false when there is no room for all of them.
template <class T>
bool KelMemoryArray::copyRun(const Run& run, unsigned64 n, unsigned64 end, T* out, unsigned64 capacity,
                             unsigned64& stored)
{
    const auto copy = [&](const auto& values) {
        for (; n < end; ++n) {
            const unsigned64 begin = run.begin(n), size = run.size(n);
            if (size > capacity - stored)
                return false;
            for (unsigned64 i = begin; i < begin + size; ++i)
                out[stored++] = convertedValue<T>(values[i]);
        }
        return true;
    };
    return std::visit(copy, run.values);
}

template <class T, class Missing>
unsigned64 KelMemoryArray::get(unsigned64 first, unsigned64 last, T* out, unsigned64 capacity,
                               const Missing& missing) const
{
    unsigned64 stored = 0;
    for (unsigned64 id = first, end; id != 0 && id <= last; id = end + 1) { // 0: behind the largest id
        const auto run = find(id);
        end = id;
        if (run == _runs.end()) {
            const std::optional<unsigned64> zeros = missing(id);
            if (!zeros)
                return 0;
            if (*zeros > capacity - stored)
                return stored;
            std::fill_n(out + stored, *zeros, T(0));
            stored += *zeros;
        } else {
            end = std::min(last, run->second.last);
            if (!copyRun(run->second, id - run->first, end - run->first + 1, out, capacity, stored))
                return stored;
        }
    }
    return stored;
}

} // namespace meridyn
