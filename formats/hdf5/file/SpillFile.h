#pragma once

#include "FileDescriptor.h"

#include <cstdint>
#include <string>

namespace meridyn::hdf5 {

/// Bytes whose place in the file is not known yet: a file without a name, gone with its object.
class SpillFile {
public:
    /// In the folder of the file that the bytes are for, where there must be room for them anyway.
    /// @throws FormatError
    explicit SpillFile(const std::string& folder);

    /// Adds bytes at the end and gives their place.
    std::uint64_t append(const void* bytes, std::size_t size);
    void read(std::uint64_t offset, void* bytes, std::size_t size) const;

private:
    FileDescriptor _descriptor;
    std::uint64_t _size = 0;
};

} // namespace meridyn::hdf5
