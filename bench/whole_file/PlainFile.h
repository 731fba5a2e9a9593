#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace whole_file {

/// Bytes in the caller's memory.
struct Block {
    void* bytes;
    std::size_t size;
};

/// The limit: the blocks one after the other with pwrite, synced and renamed as a file that must not get lost; and back
/// with pread.
/// @{
void writePlain(const std::string& path, const std::vector<Block>& blocks);
void readPlain(const std::string& path, const std::vector<Block>& blocks);
/// @}

/// The same blocks as contiguous data sets of a bare HDF5 file, synced; and back.
/// @{
void writeHdf5(const std::string& path, const std::vector<Block>& blocks);
void readHdf5(const std::string& path, const std::vector<Block>& blocks);
/// @}

} // namespace whole_file
