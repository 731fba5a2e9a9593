#pragma once

#include "formats/hdf5/file/Hdf5File.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace meridyn::hdf5 {

/// Number under which the HDF Group has registered Zstandard.
constexpr int zstandardFilter = 32015;

/// Puts the first bytes of all values together, then the second ones, and so on: what HDF5's shuffle filter does.
/// @{
void shuffleBytes(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t valueSize);
void unshuffleBytes(const unsigned char* from, unsigned char* to, std::size_t count, std::size_t valueSize);
/// @}

/// Encodes and decodes chunks with shuffle and Zstandard. One per thread: it keeps the buffers.
class ChunkCodec {
public:
    ChunkCodec();
    ~ChunkCodec();
    ChunkCodec(const ChunkCodec&) = delete;
    ChunkCodec& operator=(const ChunkCodec&) = delete;

    /// Takes up chunks of another array.
    void prepare(std::size_t chunkBytes, std::size_t valueSize);

    /// The raw bytes of a chunk, to be filled before encoding, or as decoding left them.
    unsigned char* raw() { return _raw.data(); }

    /// Encodes raw() at a level of 1 to 9.
    void encode(int level, std::vector<unsigned char>& encoded);

    /// Decodes into raw().
    /// @throws FormatError when the bytes are no chunk of this size
    void decode(const unsigned char* encoded, std::size_t size);

private:
    struct Contexts;
    std::size_t _valueSize = 1;
    std::vector<unsigned char> _raw;
    std::vector<unsigned char> _shuffled;
    std::unique_ptr<Contexts> _contexts;
};

/// What the compressed arrays of a file share while one of them reads or writes.
struct ChunkWorkspace final : FileAttachment {
    ChunkCodec codecs[2];                            ///< one per thread
    std::vector<std::vector<unsigned char>> encoded; ///< chunks on their way between threads and file
};

/// The workspace of a file, made when its first compressed array needs it.
ChunkWorkspace& chunksOf(Hdf5File& file);

/// Makes the filter known to HDF5 in this process.
void registerZstandard();

} // namespace meridyn::hdf5
