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

/// A copy of a caller's values in their own type.
KEL_API KelAnyValues copyOf(const KelValues& values);

/// Values per element id: what stands for the disk. Ranges come in any order, later values replace earlier ones.
///
/// Ids that follow each other share an array, also when they came one by one or in another order. A copy shares the
/// arrays with its original until one of the two is changed.
class KEL_API KelElementValues {
public:
    using Id = unsigned64; ///< an element id, or a number of values

    /// @name Keep values for the ids of a range
    /// False, and nothing is kept, when the range is none or does not go with the number of values.
    /// @{
    /// `width` values for each id; without a width what comes out even.
    bool put(Id first, Id last, KelAnyValues values, Id width = 0);
    /// All values for each id.
    bool putUniform(Id first, Id last, KelAnyValues values);
    /// As many values for each id as its count says; as put when the first id has no count.
    bool putRagged(Id first, Id last, KelAnyValues values, const KelElementValues& counts);
    /// One value for each of the ids behind the last one.
    bool append(KelAnyValues values);
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
    /// has none, unless its count is 0; and 0 for a buffer of no value type.
    Id get(Id first, Id last, const KelBuffer& out) const;
    /// The same with the counts of the ids.
    Id get(Id first, Id last, const KelBuffer& out, const KelElementValues& counts) const;

    std::optional<signed64> at(Id id) const;                       ///< Of one value per id.
    std::optional<signed64> uniformValue(Id first, Id last) const; ///< The value that all ids of a range have.
    Id lastId() const;                                             ///< 0 for none.

private:
    /// Where the values of some ids that follow each other lie in an array.
    struct Run {
        Id last;
        Id width;       ///< values of each id, if that is the same for all
        Id begin;       ///< position of the first value
        bool isUniform; ///< all ids have the values there
        std::shared_ptr<KelAnyValues> values;
        std::shared_ptr<std::vector<Id>> offsets; ///< positions of the values of each id, where widths differ
        Id firstOffset;                           ///< which of them is that of the first id

        Id beginOf(Id position) const; ///< of the values of the id at a position in the run
        Id widthOf(Id position) const;
    };
    struct Part;
    using Runs = std::map<Id, Run>; ///< by first id

    const Runs::value_type* find(Id id) const;
    Run* runBefore(Id first, Id last);
    bool overwrite(Id first, Id last, const KelAnyValues& values, Id width);
    bool extend(Id first, Id last, const KelAnyValues& values, Id width);
    bool extendLists(const Part& part, const KelAnyValues& values);
    std::optional<std::vector<Part>> partsOf(Id first, Id last, Id total, const KelElementValues& counts) const;
    void insert(Id first, Run run);
    void cutBefore(Id id);
    void compact();

    Runs _runs;                  // disjoint
    std::size_t _runLimit = 256; // beyond which runs are joined
};

} // namespace meridyn
