#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

/// The change of a file's old bytes that an append is about to make, in a file beside it ("<name>.journal").
///
/// It is complete and on the disk before the first old byte is changed, and removed when the last one is. Whoever opens
/// the file and finds a complete journal finishes the change; an incomplete one is dropped, since then nothing was
/// changed yet. It holds checksums of the old bytes and the size of the file, so that it is never applied to another
/// file of the same name.
struct Journal {
    /// At most a sector, which a disk writes whole or not at all: so it holds the old bytes or the new ones.
    struct Block {
        std::uint64_t offset = 0;
        std::uint64_t oldSum = 0;
        std::vector<unsigned char> bytes;
    };

    std::uint64_t fileSize = 0; ///< with what was added, which is on the disk before the journal is
    std::vector<Block> blocks;

    static std::string pathFor(const std::string& file);

    /// Writes and syncs it; on an error there is none.
    /// @throws FormatError
    void store(const std::string& file) const;

    /// @param fileSize  of the file as it is, which bounds what a journal can hold
    /// @return false when there is none, or none that is complete
    static bool load(const std::string& file, std::uint64_t fileSize, Journal& journal);

    static void remove(const std::string& file);
};

/// Checksum of a block: FNV-1a, 64 bits.
std::uint64_t checksum(const unsigned char* bytes, std::size_t size);

} // namespace meridyn::hdf5
