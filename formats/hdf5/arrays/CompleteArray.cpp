#include "CompleteArray.h"

#include "formats/hdf5/file/FormatError.h"

namespace meridyn::hdf5 {

CompleteArray::CompleteArray(Hdf5File& file, hid_t group, const std::string& name, const ArrayShape& shape,
                             int compression)
    : _array(ArrayWriter::create(file, group, name, shape, compression))
{}

void CompleteArray::write(std::uint64_t row, std::uint64_t rows, const KelValues& values)
{
    if (row > shape().rows || rows > shape().rows - row)
        throw FormatError(_array->label() + " has " + std::to_string(shape().rows) + " rows, the positions " +
                          std::to_string(row + 1) + " to " + std::to_string(row + rows) + " are not among them");
    if (values.count != rows * shape().columns)
        throw FormatError(_array->label() + ": " + std::to_string(values.count) + " values for " +
                          std::to_string(rows) + " positions, " + std::to_string(rows * shape().columns) + " expected");
    _array->write(row * shape().columns, values.count, sourceOf(values, shape().type));
    _coverage.add(row, row + rows);
}

void CompleteArray::finish()
{
    const auto missing = gaps();
    if (!missing.empty())
        throw FormatError(_array->label() + " lacks the values of the positions " +
                          std::to_string(missing.front().first + 1) + " to " + std::to_string(missing.front().second));
    _array->finish();
}

} // namespace meridyn::hdf5
