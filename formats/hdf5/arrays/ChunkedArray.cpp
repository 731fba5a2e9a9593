#include "ChunkedArray.h"

#include "ChunkCodec.h"
#include "Coverage.h"
#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>
#include <map>
#include <set>
#include <thread>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t targetChunkBytes = 1024 * 1024;
constexpr std::size_t batchSize = 8;   // chunks that are in work at a time
constexpr std::size_t mostPending = 4; // chunks that wait for the rest of their values

std::uint64_t chunkRowsOf(const ArrayShape& shape)
{
    const std::uint64_t rowBytes = shape.columns * sizeOf(shape.type);
    return std::max<std::uint64_t>(1, std::min(shape.rows, targetChunkBytes / rowBytes));
}

/// How an array is divided: chunk n holds the values from n * values on, whole rows, so that values of the array are in
/// one order, whatever the number of columns.
struct Chunking {
    ArrayShape shape;
    std::uint64_t rows = 0;   // of a chunk
    std::uint64_t values = 0; // of a chunk

    explicit Chunking(const ArrayShape& array) : shape(array), rows(chunkRowsOf(array)), values(rows * array.columns) {}

    std::size_t bytes() const { return values * sizeOf(shape.type); }
    std::uint64_t count() const { return (shape.rows + rows - 1) / rows; }
    std::uint64_t valuesIn(std::uint64_t chunk) const { return std::min(values, shape.valueCount() - chunk * values); }
};

/// Does `work(codec, i)` for all i below `count`, on two threads where there is enough to do.
template <class Work>
void inParallel(ChunkWorkspace& workspace, const Chunking& chunking, std::size_t count, Work&& work)
{
    const auto run = [&](std::size_t part, std::size_t step, std::exception_ptr& error) {
        try {
            ChunkCodec& codec = workspace.codecs[part];
            codec.prepare(chunking.bytes(), sizeOf(chunking.shape.type));
            for (std::size_t i = part; i < count; i += step)
                work(codec, i);
        } catch (...) {
            error = std::current_exception();
        }
    };
    std::exception_ptr errors[2];
    if (count > 1 && chunking.bytes() * count >= targetChunkBytes) {
        std::thread second;
        try {
            second = std::thread(run, 1, 2, std::ref(errors[1]));
        } catch (const std::system_error&) { // no more threads: alone then
            run(1, 2, errors[1]);
        }
        run(0, 2, errors[0]);
        if (second.joinable())
            second.join();
    } else {
        run(0, 1, errors[0]);
    }
    for (const std::exception_ptr& error : errors)
        if (error)
            std::rethrow_exception(error);
}

class ChunkFile {
public:
    ChunkFile(const Hdf5File& file, hid_t dataSet, const std::string& label, const Chunking& chunking)
        : _file(file), _dataSet(dataSet), _label(label), _chunking(chunking)
    {}

    /// The encoded bytes of a chunk; empty when it was never written.
    void read(std::uint64_t chunk, std::vector<unsigned char>& bytes) const
    {
        const QuietErrors quiet;
        const hsize_t offset[] = {chunk * _chunking.rows, 0};
        hsize_t size = 0;
        if (H5Dget_chunk_storage_size(_dataSet, offset, &size) < 0)
            size = 0;
        if (size > _file.channel().size() || size > 2 * _chunking.bytes() + 4096)
            throw FormatError(_label + " has a chunk of " + std::to_string(size) + " bytes");
        bytes.resize(size);
        if (size == 0)
            return;
        std::uint32_t skipped = 0;
        checkedCall(H5Dread_chunk(_dataSet, H5P_DEFAULT, offset, &skipped, bytes.data()), _label);
        // HDF5 1.10 gives all bits for a chunk of this session that is still in its cache: not known, not "none
        // applied".
        if (skipped != 0 && skipped != std::numeric_limits<std::uint32_t>::max())
            throw FormatError(_label + " has a chunk without its filters");
    }

    void write(std::uint64_t chunk, const std::vector<unsigned char>& bytes)
    {
        const QuietErrors quiet;
        const hsize_t offset[] = {chunk * _chunking.rows, 0};
        checkedCall(H5Dwrite_chunk(_dataSet, H5P_DEFAULT, 0, offset, bytes.size(), bytes.data()), _label);
    }

private:
    const Hdf5File& _file;
    hid_t _dataSet;
    const std::string& _label;
    const Chunking& _chunking;
};

void decodeOrClear(ChunkCodec& codec, const std::vector<unsigned char>& encoded, std::size_t bytes)
{
    if (encoded.empty())
        std::memset(codec.raw(), 0, bytes);
    else
        codec.decode(encoded.data(), encoded.size());
}

class ChunkedWriter final : public ArrayWriter {
public:
    ChunkedWriter(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape, int level)
        : ArrayWriter(file, std::move(dataSet), label, shape),
          _chunking(shape),
          _chunks(file, _dataSet.get(), _label, _chunking),
          _level(level)
    {}

    void finish() override
    {
        while (!_pending.empty())
            writePending(_pending.begin());
    }

private:
    struct Pending {
        std::vector<unsigned char> bytes;
        Coverage given;
        std::uint64_t age = 0;
    };
    using PendingChunks = std::map<std::uint64_t, Pending>;

    void writeValues(std::uint64_t first, std::uint64_t count, const Source& source) override
    {
        std::uint64_t done = 0;
        while (done < count) {
            const std::uint64_t chunk = (first + done) / _chunking.values;
            const std::uint64_t start = first + done - chunk * _chunking.values;
            const std::uint64_t room = _chunking.valuesIn(chunk);
            if (start == 0 && count - done >= room) {
                done += writeWholeChunks(chunk, done, count, source);
                continue;
            }
            const std::uint64_t n = std::min(room - start, count - done);
            writePart(chunk, start, n, done, source);
            done += n;
        }
    }

    // All whole chunks from here on, a batch at a time; gives the number of values.
    std::uint64_t writeWholeChunks(std::uint64_t chunk, std::uint64_t done, std::uint64_t count, const Source& source)
    {
        std::uint64_t offsets[batchSize];
        std::size_t n = 0;
        std::uint64_t total = 0;
        while (n < batchSize && chunk + n < _chunking.count() &&
               done + total + _chunking.valuesIn(chunk + n) <= count) {
            offsets[n] = done + total;
            total += _chunking.valuesIn(chunk + n);
            ++n;
        }
        auto& encoded = chunksOf(_file).encoded;
        encoded.resize(batchSize);
        inParallel(chunksOf(_file), _chunking, n, [&](ChunkCodec& codec, std::size_t i) {
            const std::uint64_t values = _chunking.valuesIn(chunk + i);
            const std::size_t size = sizeOf(_shape.type);
            copy(source, offsets[i], values, codec.raw());
            std::memset(codec.raw() + values * size, 0, _chunking.bytes() - values * size);
            codec.encode(_level, encoded[i]);
        });
        for (std::size_t i = 0; i < n; ++i) {
            _pending.erase(chunk + i);
            _written.insert(chunk + i);
            _chunks.write(chunk + i, encoded[i]);
        }
        return total;
    }

    void copy(const Source& source, std::uint64_t offset, std::uint64_t count, unsigned char* to) const
    {
        const auto* from = static_cast<const unsigned char*>(source.values) + offset * source.size;
        if (source.isSame)
            std::memcpy(to, from, count * source.size);
        else
            source.convert(from, to, count);
    }

    void writePart(std::uint64_t chunk, std::uint64_t start, std::uint64_t count, std::uint64_t offset,
                   const Source& source)
    {
        const auto found = pending(chunk);
        Pending& part = found->second;
        copy(source, offset, count, part.bytes.data() + start * sizeOf(_shape.type));
        part.given.add(start, start + count);
        part.age = ++_clock;
        if (part.given.covers(0, _chunking.valuesIn(chunk)))
            writePending(found);
    }

    PendingChunks::iterator pending(std::uint64_t chunk)
    {
        const auto found = _pending.find(chunk);
        if (found != _pending.end())
            return found;
        if (_pending.size() >= mostPending)
            writePending(std::min_element(_pending.begin(), _pending.end(),
                                          [](const auto& a, const auto& b) { return a.second.age < b.second.age; }));
        Pending part;
        part.bytes.resize(_chunking.bytes());
        if (_written.count(chunk) > 0) {
            std::vector<unsigned char> encoded;
            _chunks.read(chunk, encoded);
            decodeOrClear(codec(), encoded, _chunking.bytes());
            std::memcpy(part.bytes.data(), codec().raw(), part.bytes.size());
        }
        return _pending.emplace(chunk, std::move(part)).first;
    }

    void writePending(PendingChunks::iterator part)
    {
        std::memcpy(codec().raw(), part->second.bytes.data(), _chunking.bytes());
        std::vector<unsigned char> encoded;
        codec().encode(_level, encoded);
        _chunks.write(part->first, encoded);
        _written.insert(part->first);
        _pending.erase(part);
    }

    ChunkCodec& codec()
    {
        chunksOf(_file).codecs[0].prepare(_chunking.bytes(), sizeOf(_shape.type));
        return chunksOf(_file).codecs[0];
    }

    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) override
    {
        auto* values = static_cast<unsigned char*>(target.values);
        const std::size_t size = sizeOf(_shape.type);
        for (std::uint64_t done = 0; done < count;) {
            const std::uint64_t chunk = (first + done) / _chunking.values;
            const std::uint64_t start = first + done - chunk * _chunking.values;
            const std::uint64_t n = std::min(_chunking.valuesIn(chunk) - start, count - done);
            const Pending& part = pending(chunk)->second;
            target.convert(part.bytes.data() + start * size, values + done * target.size, n);
            done += n;
        }
    }

    Chunking _chunking;
    ChunkFile _chunks;
    int _level;
    PendingChunks _pending;
    std::set<std::uint64_t> _written;
    std::uint64_t _clock = 0;
};

class ChunkedReader final : public ArrayReader {
public:
    ChunkedReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
        : ArrayReader(file, std::move(dataSet), label, shape),
          _chunking(shape),
          _chunks(file, _dataSet.get(), _label, _chunking)
    {}

private:
    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) const override
    {
        const std::uint64_t begin = first / _chunking.values;
        const std::uint64_t end = (first + count - 1) / _chunking.values + 1;
        if (end - begin == 1) {
            readCached(begin, first, count, target);
            return;
        }
        auto& encoded = chunksOf(_file).encoded;
        encoded.resize(batchSize);
        for (std::uint64_t chunk = begin; chunk < end; chunk += batchSize) {
            const std::size_t n = std::min<std::uint64_t>(batchSize, end - chunk);
            for (std::size_t i = 0; i < n; ++i)
                _chunks.read(chunk + i, encoded[i]);
            inParallel(chunksOf(_file), _chunking, n, [&](ChunkCodec& codec, std::size_t i) {
                decodeOrClear(codec, encoded[i], _chunking.bytes());
                give(chunk + i, codec.raw(), first, count, target);
            });
        }
    }

    // What of a chunk belongs to the wanted values.
    void give(std::uint64_t chunk, const unsigned char* raw, std::uint64_t first, std::uint64_t count,
              const Target& target) const
    {
        const std::uint64_t start = chunk * _chunking.values;
        const std::uint64_t from = std::max(first, start);
        const std::uint64_t to = std::min(first + count, start + _chunking.valuesIn(chunk));
        auto* const values = static_cast<unsigned char*>(target.values) + (from - first) * target.size;
        const unsigned char* const part = raw + (from - start) * sizeOf(_shape.type);
        if (target.isSame)
            std::memcpy(values, part, (to - from) * target.size);
        else
            target.convert(part, values, to - from);
    }

    void readCached(std::uint64_t chunk, std::uint64_t first, std::uint64_t count, const Target& target) const
    {
        if (_cachedChunk != chunk) {
            _cachedChunk = UINT64_MAX;
            std::vector<unsigned char> encoded;
            _chunks.read(chunk, encoded);
            ChunkCodec& codec = chunksOf(_file).codecs[0];
            codec.prepare(_chunking.bytes(), sizeOf(_shape.type));
            decodeOrClear(codec, encoded, _chunking.bytes());
            _cached.assign(codec.raw(), codec.raw() + _chunking.bytes());
            _cachedChunk = chunk;
        }
        give(chunk, _cached.data(), first, count, target);
    }

    Chunking _chunking;
    ChunkFile _chunks;
    mutable std::vector<unsigned char> _cached; // the last single chunk, for calls of few elements
    mutable std::uint64_t _cachedChunk = UINT64_MAX;
};

} // namespace

bool canBeChunked(const ArrayShape& shape)
{
    return shape.valueCount() > 0 && shape.columns * sizeOf(shape.type) <= targetChunkBytes;
}

void setChunks(hid_t creationProperties, const ArrayShape& shape, int level)
{
    const hsize_t extent[] = {chunkRowsOf(shape), shape.columns};
    checkedCall(H5Pset_chunk(creationProperties, shape.columns == 1 ? 1 : 2, extent), "chunks");
    checkedCall(H5Pset_shuffle(creationProperties), "shuffle filter");
    registerZstandard();
    const unsigned value = static_cast<unsigned>(level);
    checkedCall(H5Pset_filter(creationProperties, zstandardFilter, H5Z_FLAG_MANDATORY, 1, &value), "Zstandard filter");
}

bool isOurPipeline(hid_t creationProperties, const ArrayShape& shape)
{
    hsize_t extent[2] = {0, 1};
    const int rank = H5Pget_chunk(creationProperties, 2, extent);
    if (rank < 1 || rank > 2 || !canBeChunked(shape) || extent[0] != chunkRowsOf(shape) || extent[1] != shape.columns ||
        H5Pget_nfilters(creationProperties) != 2)
        return false;
    const auto filterAt = [creationProperties](unsigned index) {
        unsigned flags = 0;
        std::size_t valueCount = 0;
        return H5Pget_filter2(creationProperties, index, &flags, &valueCount, nullptr, 0, nullptr, nullptr);
    };
    return filterAt(0) == H5Z_FILTER_SHUFFLE && filterAt(1) == zstandardFilter;
}

std::unique_ptr<ArrayWriter> makeChunkedWriter(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape, int level)
{
    return std::make_unique<ChunkedWriter>(file, std::move(dataSet), label, shape, level);
}

std::unique_ptr<ArrayReader> makeChunkedReader(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape)
{
    return std::make_unique<ChunkedReader>(file, std::move(dataSet), label, shape);
}

} // namespace meridyn::hdf5
