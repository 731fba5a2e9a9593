#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::hdf5 {

/// Which rows of an array have been handed over: disjoint intervals, merged where they touch.
class Coverage {
public:
    using Interval = std::pair<std::uint64_t, std::uint64_t>; // first row, row after the last

    void add(std::uint64_t begin, std::uint64_t end);
    bool covers(std::uint64_t begin, std::uint64_t end) const;
    bool touches(std::uint64_t begin, std::uint64_t end) const;
    bool isEmpty() const { return _intervals.empty(); }

    std::vector<Interval> intervals() const;

    /// What is missing within [begin, end).
    std::vector<Interval> gaps(std::uint64_t begin, std::uint64_t end) const;

private:
    std::map<std::uint64_t, std::uint64_t> _intervals; // begin to end
};

class Hdf5File;

/// Reads a table of stretches (first row, number of rows) of an array that has some of its rows only.
/// @throws FormatError unless they ascend, lie apart and within the rows
Coverage readCoverage(Hdf5File& file, hid_t group, const std::string& name, std::uint64_t rows);

} // namespace meridyn::hdf5
