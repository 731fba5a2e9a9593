#pragma once

#include "KelExport.h"
#include "KelValues.h"

#include <map>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace meridyn {

/// Values of one of the ten value types. The index of the alternative is the number of its KelPlainDataType.
using KelAnyValues =
    std::variant<std::vector<unsigned char>, std::vector<char>, std::vector<short>, std::vector<unsigned int>,
                 std::vector<int>, std::vector<long>, std::vector<unsigned64>, std::vector<signed64>,
                 std::vector<float>, std::vector<double>>;

/// A copy of a caller's values, converted to a type; empty for a null pointer.
KEL_API KelAnyValues copyOf(const KelValues& values, KelPlainDataType type);
inline KelAnyValues copyOf(const KelValues& values)
{
    return copyOf(values, values.type);
} ///< In their own type.

/// Values per element id: what stands for the disk. Ranges come in any order, later values replace earlier ones. Kept
/// are the buffers as they were handed over, and for each run of ids where in which buffer its values lie.
class KEL_API KelElementValues {
public:
    using Id = unsigned64; ///< an element id, or a number of values

    /// @name Keep values for the ids of a range
    /// False, and nothing is kept, when the range is none or does not go with the number of values.
    /// @{
    bool put(Id first, Id last, KelAnyValues values, Id width = 0); ///< `width` each, or what comes out even
    bool putUniform(Id first, Id last, KelAnyValues values);        ///< All of them for each.
    bool putRagged(Id first, Id last, KelAnyValues values, const KelElementValues& counts); ///< Without counts as put.
    bool append(KelAnyValues values);                                                       ///< One each, at the end.
    /// @}

    /// @name As they lie there, to be saved and loaded
    /// @{
    /// Values of the ids `first` to `last`, `width` each; or one set of `width` values for all of them.
    struct Piece {
        Id first;         ///< the first id
        Id last;          ///< the last one
        Id width;         ///< values of each
        bool isUniform;   ///< whether all ids have the same
        KelValues values; ///< those of this object
    };
    std::vector<Piece> pieces() const;                  ///< By id; ids without values are in none.
    std::vector<Piece> pieces(Id first, Id last) const; ///< The parts of them that lie in a range.
    /// @}

    /// Gives the values of a range, converted, as far as whole elements fit: the number of values stored. 0 when an id
    /// has none, unless its count is 0.
    Id get(Id first, Id last, const KelBuffer& out, const KelElementValues& counts = {}) const;

    std::optional<signed64> at(Id id) const;                       ///< Of one value per id.
    std::optional<signed64> uniformValue(Id first, Id last) const; ///< The value that all ids of a range have.
    Id lastId() const { return _runs.empty() ? 0 : _runs.rbegin()->second.last; } ///< 0 for none.

private:
    struct Run {
        Id last, width, stride, begin; ///< values of the first id begin there, those of the next `stride` behind them
        std::shared_ptr<const KelAnyValues> values;
    };
    using Runs = std::map<Id, Run>; ///< by first id
    const Runs::value_type* find(Id id) const;
    bool insert(Id first, Id last, Id width, Id stride, KelAnyValues&& values);
    void insert(Id first, const Run& run);
    void cutBefore(Id id);

    Runs _runs;
};

} // namespace meridyn
