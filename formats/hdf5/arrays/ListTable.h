#pragma once

#include "ArrayStore.h"

#include <functional>

namespace meridyn::hdf5 {

/// Where lists of different lengths lie in the array of their values: those of row r from offset r to offset r + 1.
///
/// A file has the lengths of the rows too, so each of the two tables says what the other one must say. They are held
/// against each other for the rows that are asked for, whenever they are asked for: a table with one wrong number
/// gives an error and never the values of another row.
class ListTable {
public:
    /// Lengths of `count` rows from `row` on.
    using Lengths = std::function<void(std::uint64_t row, std::uint64_t count, std::uint64_t* lengths)>;

    /// @param offsets  rows + 1 of them, the first one 0, the last one `valueCount`
    /// @throws FormatError when they are not
    ListTable(std::unique_ptr<ArrayReader> offsets, Lengths lengths, std::uint64_t rows, std::uint64_t valueCount);

    std::uint64_t rows() const { return _rows; }

    /// A stretch of values that belong to whole rows.
    struct Stretch {
        std::uint64_t first = 0; ///< counted from 0
        std::uint64_t count = 0;
    };

    /// The values of the rows, as many whole rows as have not more than `capacity` values together.
    /// @throws FormatError when the tables contradict each other
    Stretch find(std::uint64_t row, std::uint64_t count, std::uint64_t capacity) const;

private:
    std::unique_ptr<ArrayReader> _offsets;
    Lengths _lengths;
    std::uint64_t _rows;
    std::uint64_t _valueCount;
};

} // namespace meridyn::hdf5
