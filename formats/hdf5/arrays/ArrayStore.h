#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"
#include "KelValues.h"
#include "ValueType.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

class Hdf5File;

/// Shape of an array in the file: rows of the same number of values. One column makes a one-dimensional data set.
struct ArrayShape {
    Stored type = Stored::F64;
    std::uint64_t rows = 0;
    std::uint64_t columns = 1;

    std::uint64_t valueCount() const { return rows * columns; }
};

/// An array being written: any range of values, in any order; what is never written reads as 0.
///
/// Without compression the data set lies in one piece whose place is fixed at once, and ranges go there past HDF5; with
/// it, see ChunkedArray.h. The extra memory is one buffer of the file, whatever the size of a range.
class ArrayWriter {
public:
    /// Makes the data set.
    /// @param name  empty: without a link, see link()
    static std::unique_ptr<ArrayWriter> create(Hdf5File& file, hid_t group, const std::string& name,
                                               const ArrayShape& shape, int compression);
    virtual ~ArrayWriter();

    hid_t id() const { return _dataSet.get(); }
    const std::string& label() const { return _label; }
    const ArrayShape& shape() const { return _shape; }

    /// Writes values, counted over all rows from 0.
    /// @throws FormatError, also for a range outside the array
    void write(std::uint64_t first, std::uint64_t count, const Source& source);

    /// Reads back what was written.
    void read(std::uint64_t first, std::uint64_t count, const Target& target);

    /// Links a data set that was made without a name.
    void link(hid_t group, const std::string& name);

    /// Brings what is kept in memory to the file. Nothing is written afterwards.
    virtual void finish();

protected:
    ArrayWriter(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape);
    virtual void writeValues(std::uint64_t first, std::uint64_t count, const Source& source) = 0;
    virtual void readValues(std::uint64_t first, std::uint64_t count, const Target& target) = 0;

    Hdf5File& _file;
    Handle _dataSet;
    std::string _label;
    ArrayShape _shape;
};

/// An array of a file that is read.
class ArrayReader {
public:
    /// Opens the data set and checks that it is an array as above and lies within the file.
    /// @throws FormatError
    static std::unique_ptr<ArrayReader> open(Hdf5File& file, hid_t group, const std::string& name);
    virtual ~ArrayReader();

    hid_t id() const { return _dataSet.get(); }
    const std::string& label() const { return _label; }
    const ArrayShape& shape() const { return _shape; }

    /// Opens an array that need not be there.
    /// @return null without the array, or the group
    static std::unique_ptr<ArrayReader> find(Hdf5File& file, const Handle& group, const std::string& name);

    /// Reads values, counted over all rows from 0, into room for at least as many.
    /// @throws FormatError, also for a range outside the array
    void read(std::uint64_t first, std::uint64_t count, const KelBuffer& values) const;

    template <class T>
    void read(std::uint64_t first, std::uint64_t count, T* values) const
    {
        read(first, count, KelBuffer(values, count));
    }

    /// Reads from the start as many values as there are and fit.
    /// @return how many
    std::uint64_t readStart(const KelBuffer& values) const;

    /// For what takes memory for the whole array.
    /// @throws FormatError when it has far more values than the file can hold
    void checkPlausible() const;

    /// The whole array.
    /// @throws FormatError, also as checkPlausible
    template <class T>
    std::vector<T> readAll() const
    {
        checkPlausible();
        std::vector<T> values(_shape.valueCount());
        read(0, values.size(), values.data());
        return values;
    }

protected:
    ArrayReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape);
    virtual void readValues(std::uint64_t first, std::uint64_t count, const Target& target) const = 0;

    Hdf5File& _file;
    Handle _dataSet;
    std::string _label;
    ArrayShape _shape;
};

/// Writes a small array at once, in place of one that is there.
template <class T>
void writeArray(Hdf5File& file, hid_t group, const std::string& name, const std::vector<T>& values,
                std::uint64_t columns = 1);

/// "/faces/cell0", for messages.
std::string arrayLabel(hid_t group, const std::string& name);

} // namespace meridyn::hdf5
