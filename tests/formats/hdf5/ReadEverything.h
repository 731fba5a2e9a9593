#pragma once

#include <string>

namespace hdf5test {

/// What a reader said of a file of unknown quality.
struct ReadResult {
    bool isOpen = false; ///< as a case or as data
    std::string errors;  ///< all that was reported, a line each
};

/// Opens a file as a case and as data, and asks the reader for something of every family, in the ranges that a small
/// sample has and under the names that the file claims to have.
ReadResult readEverything(const std::string& path);

} // namespace hdf5test
