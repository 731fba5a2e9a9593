#pragma once

#include "ArrayStore.h"
#include "Coverage.h"

namespace meridyn::hdf5 {

/// An array that is written row range by row range, in any order, and knows which rows it has: at the end all of them
/// must be there.
class CompleteArray {
public:
    CompleteArray(Hdf5File& file, hid_t group, const std::string& name, const ArrayShape& shape, int compression);

    hid_t id() const { return _array->id(); }
    const ArrayShape& shape() const { return _array->shape(); }
    ArrayWriter& array() { return *_array; }
    bool isComplete() const { return _coverage.covers(0, shape().rows); }

    /// @throws FormatError unless the values make the rows
    void write(std::uint64_t row, std::uint64_t rows, const KelValues& values);

    /// Rows that were not written yet.
    std::vector<Coverage::Interval> gaps() const { return _coverage.gaps(0, shape().rows); }

    /// All rows were written to the array itself.
    void markAll() { _coverage.add(0, shape().rows); }

    /// @throws FormatError when rows are missing
    void finish();

private:
    std::unique_ptr<ArrayWriter> _array;
    Coverage _coverage;
};

} // namespace meridyn::hdf5
