#include "ForeignChunks.h"

#include "ChunkCodec.h"
#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>
#include <array>
#include <zlib.h>
#include <zstd.h>

namespace meridyn::hdf5 {

namespace {

using Bytes = std::vector<unsigned char>;
using Value = std::array<unsigned char, 8>; // of any stored type

/// How an array is divided, and what was done to the divisions.
struct ForeignLayout {
    std::uint64_t rows = 1; // of a chunk
    std::uint64_t columns = 1;
    std::vector<H5Z_filter_t> filters; // in the order of writing
    Value fill{};                      // of what was never written
};

std::vector<H5Z_filter_t> filtersOf(hid_t properties)
{
    std::vector<H5Z_filter_t> filters;
    const int count = H5Pget_nfilters(properties);
    for (int i = 0; i < count; ++i) {
        unsigned flags = 0;
        std::size_t valueCount = 0;
        const H5Z_filter_t filter =
            H5Pget_filter2(properties, static_cast<unsigned>(i), &flags, &valueCount, nullptr, 0, nullptr, nullptr);
        const bool isKnown = filter == H5Z_FILTER_SHUFFLE || filter == H5Z_FILTER_DEFLATE || filter == zstandardFilter;
        if (!isKnown || std::find(filters.begin(), filters.end(), filter) != filters.end())
            throw FormatError("has the filter " + std::to_string(filter) +
                              ", shuffle, deflate and Zstandard expected, " + "each at most once");
        filters.push_back(filter);
    }
    return filters;
}

// Chunks are taken into memory whole.
ForeignLayout layoutOf(hid_t properties, const ArrayShape& shape, std::uint64_t fileSize)
{
    constexpr std::uint64_t bestRatio = 1000; // of packing a chunk
    ForeignLayout layout;
    hsize_t extent[2] = {1, 1};
    checkedCall(H5Pget_chunk(properties, 2, extent), "chunks");
    const std::uint64_t most = (fileSize + 1) * bestRatio / sizeOf(shape.type);
    if (extent[0] == 0 || extent[1] == 0 || extent[0] > most || extent[1] > most / extent[0])
        throw FormatError("has chunks of " + std::to_string(extent[0]) + " times " + std::to_string(extent[1]) +
                          " values, which are not in a file of " + std::to_string(fileSize) + " bytes");
    layout.rows = extent[0];
    layout.columns = extent[1];
    layout.filters = filtersOf(properties);
    if (H5Pget_fill_value(properties, fileTypeOf(shape.type), layout.fill.data()) < 0)
        layout.fill.fill(0);
    return layout;
}

class ForeignReader final : public ArrayReader {
public:
    ForeignReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape,
                  ForeignLayout layout)
        : ArrayReader(file, std::move(dataSet), label, shape), _layout(std::move(layout))
    {}

private:
    std::uint64_t chunkBytes() const { return _layout.rows * _layout.columns * sizeOf(_shape.type); }

    // Chunk by chunk, each one once. All columns of chunks are passed unless the values are of one row.
    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) const override
    {
        const QuietErrors quiet;
        const std::uint64_t last = first + count - 1;
        const std::uint64_t firstRow = first / _shape.columns;
        const std::uint64_t lastRow = last / _shape.columns;
        const bool isOneRow = firstRow == lastRow;
        const std::uint64_t firstColumn = isOneRow ? first % _shape.columns : 0;
        const std::uint64_t lastColumn = isOneRow ? last % _shape.columns : _shape.columns - 1;
        for (std::uint64_t down = firstRow / _layout.rows; down <= lastRow / _layout.rows; ++down)
            for (std::uint64_t across = firstColumn / _layout.columns; across <= lastColumn / _layout.columns;
                 ++across) {
                const std::uint64_t row = down * _layout.rows;
                const std::uint64_t column = across * _layout.columns;
                if (_cached.empty() || row != _cachedRow || column != _cachedColumn) {
                    _cached = {}; // of another chunk, if the next line throws
                    _cached = unpacked(row, column);
                    _cachedRow = row;
                    _cachedColumn = column;
                }
                give(_cached, row, column, first, count, target);
            }
    }

    // What of a chunk belongs to the wanted values, row by row.
    void give(const Bytes& chunk, std::uint64_t row, std::uint64_t column, std::uint64_t first, std::uint64_t count,
              const Target& target) const
    {
        const std::uint64_t width = std::min(_layout.columns, _shape.columns - column);
        const std::uint64_t height = std::min(_layout.rows, _shape.rows - row);
        for (std::uint64_t i = 0; i < height; ++i) {
            const std::uint64_t begin = (row + i) * _shape.columns + column;
            const std::uint64_t from = std::max(begin, first);
            const std::uint64_t to = std::min(begin + width, first + count);
            if (from < to)
                target.convert(chunk.data() + (i * _layout.columns + (from - begin)) * sizeOf(_shape.type),
                               static_cast<unsigned char*>(target.values) + (from - first) * target.size, to - from);
        }
    }

    Bytes unpacked(std::uint64_t row, std::uint64_t column) const
    {
        const hsize_t offset[] = {row, column};
        hsize_t size = 0;
        if (H5Dget_chunk_storage_size(_dataSet.get(), offset, &size) < 0 || size == 0)
            return unwritten();
        if (size > _file.channel().size() || size > 2 * chunkBytes() + 4096)
            throw FormatError(_label + " has a chunk of " + std::to_string(size) + " bytes");
        Bytes bytes(size);
        std::uint32_t skipped = 0;
        checkedCall(H5Dread_chunk(_dataSet.get(), H5P_DEFAULT, offset, &skipped, bytes.data()), _label);
        for (std::size_t i = _layout.filters.size(); i-- > 0;)
            if ((skipped >> i & 1U) == 0)
                bytes = undone(_layout.filters[i], bytes);
        if (bytes.size() != chunkBytes())
            throw FormatError(_label + " has a chunk of " + std::to_string(bytes.size()) + " bytes, " +
                              std::to_string(chunkBytes()) + " expected");
        return bytes;
    }

    Bytes unwritten() const
    {
        const std::size_t size = sizeOf(_shape.type);
        Bytes bytes(chunkBytes());
        for (std::size_t at = 0; at < bytes.size(); at += size)
            std::copy_n(_layout.fill.begin(), size, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        return bytes;
    }

    Bytes undone(H5Z_filter_t filter, const Bytes& bytes) const
    {
        Bytes result(chunkBytes());
        if (filter == H5Z_FILTER_SHUFFLE) {
            const std::size_t size = sizeOf(_shape.type);
            result = bytes; // what does not fill a value stays where it is
            unshuffleBytes(bytes.data(), result.data(), bytes.size() / size, size);
            return result;
        }
        if (filter == H5Z_FILTER_DEFLATE) {
            uLongf length = result.size();
            if (::uncompress(result.data(), &length, bytes.data(), bytes.size()) != Z_OK)
                throw FormatError(_label + " has a chunk that is no zlib stream of " + std::to_string(result.size()) +
                                  " bytes");
            result.resize(length);
            return result;
        }
        const std::size_t length = ZSTD_decompress(result.data(), result.size(), bytes.data(), bytes.size());
        if (ZSTD_isError(length))
            throw FormatError(_label + " has a damaged chunk: " + ZSTD_getErrorName(length));
        result.resize(length);
        return result;
    }

    ForeignLayout _layout;
    mutable Bytes _cached; // the last chunk, for calls of few elements
    mutable std::uint64_t _cachedRow = 0;
    mutable std::uint64_t _cachedColumn = 0;
};

} // namespace

std::unique_ptr<ArrayReader> makeForeignReader(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape, hid_t creationProperties)
{
    ForeignLayout layout = layoutOf(creationProperties, shape, file.channel().size());
    return std::make_unique<ForeignReader>(file, std::move(dataSet), label, shape, std::move(layout));
}

} // namespace meridyn::hdf5
