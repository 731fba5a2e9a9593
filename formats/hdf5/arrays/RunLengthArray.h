#pragma once

#include "ArrayStore.h"
#include "Coverage.h"

#include <map>
#include <optional>

namespace meridyn::hdf5 {

/// A small integer per element (counts, types, partitions) being written. Stretches of one value cost nothing; an array
/// in the file is made only when values differ within a call.
///
/// In the group: an attribute <name> when all rows have one value, else the array <name>, the table <name>_runs of the
/// zones that have one value (first row, number of rows, value) and, if rows are missing, the table <name>_given of
/// those that are there (first row, number of rows).
class RunLengthArrayWriter {
public:
    /// @param missing  value of rows that are never written
    RunLengthArrayWriter(Hdf5File& file, hid_t group, std::string name, Stored type, std::uint64_t rows, int missing,
                         int compression);
    ~RunLengthArrayWriter();

    void setUniform(std::uint64_t row, std::uint64_t count, int value);
    template <class T>
    void set(std::uint64_t row, std::uint64_t count, const T* values);

    const Coverage& coverage() const { return _coverage; }

    /// The one value of rows that are known to share one.
    std::optional<int> uniformValue(std::uint64_t row, std::uint64_t count) const;

    /// Values of rows, those that are missing included.
    void read(std::uint64_t row, std::uint64_t count, int* values);

    /// Writes what is left. `zones`: rows of the zones whose common values are worth noting.
    void finish(const std::vector<Coverage::Interval>& zones);

private:
    struct Run {
        std::uint64_t end;
        std::optional<int> value; // none: the values are in the array
    };
    using Runs = std::map<std::uint64_t, Run>; // by first row, disjoint

    void assign(std::uint64_t begin, std::uint64_t end, std::optional<int> value);
    void split(std::uint64_t row);
    void storeRun(std::uint64_t begin, std::uint64_t end, int value);
    void storeShortRuns();
    ArrayWriter& array();
    std::optional<int> commonValue(std::uint64_t begin, std::uint64_t end);
    void writeRunTable(const std::vector<Coverage::Interval>& zones);

    Hdf5File& _file;
    hid_t _group;
    std::string _name;
    ArrayShape _shape;
    int _missing;
    int _compression;
    Runs _runs;
    Coverage _coverage;
    std::unique_ptr<ArrayWriter> _array;
};

/// A small integer per element, as RunLengthArrayWriter wrote it, being read: any range of rows.
class RunLengthArrayReader {
public:
    /// @return null when there is no such array
    static std::unique_ptr<RunLengthArrayReader> open(Hdf5File& file, hid_t group, const std::string& name,
                                                      std::uint64_t rows);

    std::uint64_t rows() const { return _rows; }
    bool covers(std::uint64_t row, std::uint64_t count) const
    {
        return count > 0 && _coverage.covers(row, row + count);
    }
    /// The one value of rows that share one, as far as the file has noted it.
    /// @throws FormatError when the values are not what it has noted
    std::optional<int> uniformValue(std::uint64_t row, std::uint64_t count) const;

    /// Values of rows, into room for at least as many.
    void read(std::uint64_t row, std::uint64_t count, const KelBuffer& values) const;

    template <class T>
    void read(std::uint64_t row, std::uint64_t count, T* values) const
    {
        read(row, count, KelBuffer(values, count));
    }

private:
    struct Run {
        std::uint64_t end;
        int value;
        mutable bool isChecked = false; // held against the values of the array
    };

    void readGiven(Hdf5File& file, hid_t group, const std::string& name);
    void readRuns(Hdf5File& file, hid_t group, const std::string& name);
    void checkRun(std::uint64_t begin, const Run& run) const;

    std::uint64_t _rows = 0;
    Coverage _coverage;
    std::map<std::uint64_t, Run> _runs;
    std::unique_ptr<ArrayReader> _array; // none when one run has all rows
};

} // namespace meridyn::hdf5
