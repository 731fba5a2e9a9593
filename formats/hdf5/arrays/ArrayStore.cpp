#include "ArrayStore.h"

#include "ChunkedArray.h"
#include "ForeignChunks.h"
#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t largestArray = 1ULL << 60; // bytes; keeps products of sizes from wrapping

void checkRange(const std::string& label, const ArrayShape& shape, std::uint64_t first, std::uint64_t count)
{
    const std::uint64_t total = shape.valueCount();
    if (first > total || count > total - first)
        throw FormatError(label + " has " + std::to_string(total) + " values, " + std::to_string(first + count) +
                          " expected");
}

/// Converts `count` values of `size` bytes in blocks that fit into the buffer.
///
/// @param read  puts `n` values, from the one at `done` on, into the buffer
template <class Read>
void readBlocks(std::vector<unsigned char>& buffer, std::size_t size, std::uint64_t count, const Target& target,
                const Read& read)
{
    auto* values = static_cast<unsigned char*>(target.values);
    const std::uint64_t block = buffer.size() / size;
    for (std::uint64_t done = 0; done < count; done += block) {
        const std::uint64_t n = std::min(block, count - done);
        read(done, n, buffer.data());
        target.convert(buffer.data(), values + done * target.size, n);
    }
}

class ContiguousWriter final : public ArrayWriter {
public:
    ContiguousWriter(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
        : ArrayWriter(file, std::move(dataSet), label, shape)
    {
        _offset = H5Dget_offset(_dataSet.get());
        if (_offset == HADDR_UNDEF && shape.valueCount() > 0)
            throw FormatError("no room for " + _label + ": " + hdf5Words());
    }

private:
    void writeValues(std::uint64_t first, std::uint64_t count, const Source& source) override
    {
        const std::size_t size = sizeOf(_shape.type);
        if (source.isSame) {
            _file.channel().write(_offset + first * size, source.values, count * size);
            return;
        }
        const auto* values = static_cast<const unsigned char*>(source.values);
        std::vector<unsigned char>& buffer = _file.buffer();
        const std::uint64_t block = buffer.size() / size;
        for (std::uint64_t done = 0; done < count; done += block) {
            const std::uint64_t n = std::min(block, count - done);
            source.convert(values + done * source.size, buffer.data(), n);
            _file.channel().write(_offset + (first + done) * size, buffer.data(), n * size);
        }
    }

    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) override
    {
        const std::size_t size = sizeOf(_shape.type);
        readBlocks(_file.buffer(), size, count, target, [&](std::uint64_t done, std::uint64_t n, unsigned char* to) {
            _file.channel().readPadded(_offset + (first + done) * size, to, n * size);
        });
    }

    std::uint64_t _offset = 0;
};

class ContiguousReader final : public ArrayReader {
public:
    ContiguousReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
        : ArrayReader(file, std::move(dataSet), label, shape)
    {
        const std::uint64_t bytes = shape.valueCount() * sizeOf(shape.type);
        if (bytes == 0)
            return;
        _offset = H5Dget_offset(_dataSet.get());
        const std::uint64_t end = file.channel().size();
        if (_offset == HADDR_UNDEF || _offset > end || bytes > end - _offset)
            throw FormatError("has " + std::to_string(bytes) + " bytes, which are not in a file of " +
                              std::to_string(end) + " bytes");
    }

private:
    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) const override
    {
        const std::size_t size = sizeOf(_shape.type);
        if (target.isSame) {
            _file.channel().read(_offset + first * size, target.values, count * size);
            return;
        }
        readBlocks(_file.buffer(), size, count, target, [&](std::uint64_t done, std::uint64_t n, unsigned char* to) {
            _file.channel().read(_offset + (first + done) * size, to, n * size);
        });
    }

    std::uint64_t _offset = 0;
};

// A small array in its description: not written by us, but a tool may have made it of ours (h5repack).
class CompactReader final : public ArrayReader {
public:
    CompactReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
        : ArrayReader(file, std::move(dataSet), label, shape)
    {
        // HDF5 does not compare the two before it reads.
        const std::uint64_t bytes = shape.valueCount() * sizeOf(shape.type);
        const std::uint64_t found = H5Dget_storage_size(_dataSet.get());
        if (found != bytes || bytes > largestCompact)
            throw FormatError("has " + std::to_string(found) + " bytes, " + std::to_string(bytes) + " expected");
    }

private:
    static constexpr std::uint64_t largestCompact = 64 * 1024; // of any message in a description

    void readValues(std::uint64_t first, std::uint64_t count, const Target& target) const override
    {
        const QuietErrors quiet;
        const std::size_t size = sizeOf(_shape.type);
        std::vector<unsigned char> whole(_shape.valueCount() * size);
        checkedCall(H5Dread(_dataSet.get(), fileTypeOf(_shape.type), H5S_ALL, H5S_ALL, H5P_DEFAULT, whole.data()),
                    _label);
        target.convert(whole.data() + first * size, target.values, count);
    }
};

ArrayShape shapeOf(hid_t dataSet)
{
    const Handle type = checkedId(H5Dget_type(dataSet), "type");
    const Handle space = checkedId(H5Dget_space(dataSet), "space");
    ArrayShape shape;
    shape.type = storedTypeOf(type.get());
    hsize_t extent[2] = {0, 1};
    const int rank = H5Sget_simple_extent_type(space.get()) == H5S_SIMPLE ? H5Sget_simple_extent_ndims(space.get()) : 0;
    if (rank != 1 && rank != 2)
        throw FormatError("has " + std::to_string(rank) + " dimensions, 1 or 2 expected");
    checkedCall(H5Sget_simple_extent_dims(space.get(), extent, nullptr), "extent");
    shape.rows = extent[0];
    shape.columns = extent[1];
    if (shape.columns == 0 || shape.rows > largestArray || shape.columns > largestArray ||
        (shape.rows > 0 && shape.columns > largestArray / shape.rows / sizeOf(shape.type)))
        throw FormatError("has an extent of " + std::to_string(shape.rows) + " times " + std::to_string(shape.columns));
    return shape;
}

// Values outside the file are never fetched, whatever name the file gives.
H5D_layout_t layoutOf(hid_t properties)
{
    const H5D_layout_t layout = H5Pget_layout(properties);
    const bool isOutside = layout == H5D_CONTIGUOUS && H5Pget_external_count(properties) != 0;
    if (isOutside || (layout != H5D_CONTIGUOUS && layout != H5D_CHUNKED && layout != H5D_COMPACT))
        throw FormatError("has a layout that these files do not have");
    return layout;
}

} // namespace

std::string arrayLabel(hid_t group, const std::string& name)
{
    return pathOf(group) + "/" + name;
}

ArrayWriter::ArrayWriter(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
    : _file(file), _dataSet(std::move(dataSet)), _label(label), _shape(shape)
{}

ArrayWriter::~ArrayWriter() = default;

std::unique_ptr<ArrayWriter> ArrayWriter::create(Hdf5File& file, hid_t group, const std::string& name,
                                                 const ArrayShape& shape, int compression)
{
    const QuietErrors quiet;
    const std::string label = arrayLabel(group, name);
    if (shape.rows > largestArray || shape.columns > largestArray ||
        (shape.rows > 0 && shape.columns > largestArray / shape.rows / sizeOf(shape.type)))
        throw FormatError(label + " would have " + std::to_string(shape.rows) + " times " +
                          std::to_string(shape.columns) + " values");
    const hsize_t extent[] = {shape.rows, shape.columns};
    const Handle space = checkedId(H5Screate_simple(shape.columns == 1 ? 1 : 2, extent, nullptr), label);
    const Handle properties = checkedId(H5Pcreate(H5P_DATASET_CREATE), label);
    const bool isChunked = compression > 0 && canBeChunked(shape);
    if (isChunked) {
        setChunks(properties.get(), shape, compression);
    } else {
        checkedCall(H5Pset_fill_time(properties.get(), H5D_FILL_TIME_NEVER), label);
        checkedCall(H5Pset_alloc_time(properties.get(), H5D_ALLOC_TIME_EARLY), label);
    }
    const hid_t type = fileTypeOf(shape.type);
    Handle dataSet = checkedId(H5Dcreate_anon(group, type, space.get(), properties.get(), H5P_DEFAULT), label);
    if (!name.empty() && hasLink(group, name))
        file.linkAtCommit(dataSet.get(), group, name);
    else if (!name.empty())
        linkNew(dataSet, group, name);
    if (isChunked)
        return makeChunkedWriter(file, std::move(dataSet), label, shape, compression);
    return std::make_unique<ContiguousWriter>(file, std::move(dataSet), label, shape);
}

void ArrayWriter::write(std::uint64_t first, std::uint64_t count, const Source& source)
{
    checkRange(_label, _shape, first, count);
    if (count > 0)
        writeValues(first, count, source);
}

void ArrayWriter::read(std::uint64_t first, std::uint64_t count, const Target& target)
{
    checkRange(_label, _shape, first, count);
    if (count > 0)
        readValues(first, count, target);
}

void ArrayWriter::link(hid_t group, const std::string& name)
{
    linkNew(_dataSet, group, name);
}

void ArrayWriter::finish()
{}

ArrayReader::ArrayReader(Hdf5File& file, Handle dataSet, const std::string& label, const ArrayShape& shape)
    : _file(file), _dataSet(std::move(dataSet)), _label(label), _shape(shape)
{}

ArrayReader::~ArrayReader() = default;

std::unique_ptr<ArrayReader> ArrayReader::open(Hdf5File& file, hid_t group, const std::string& name)
{
    const QuietErrors quiet;
    const std::string label = arrayLabel(group, name);
    if (!hasLink(group, name))
        throw FormatError(label + " is missing");
    Handle dataSet = checkedId(H5Dopen2(group, name.c_str(), H5P_DEFAULT), label);
    try {
        const Handle properties = checkedId(H5Dget_create_plist(dataSet.get()), "properties");
        const H5D_layout_t layout = layoutOf(properties.get()); // first: the space of a virtual one is in other files
        const ArrayShape shape = shapeOf(dataSet.get());
        if (layout == H5D_CONTIGUOUS)
            return std::make_unique<ContiguousReader>(file, std::move(dataSet), label, shape);
        if (layout == H5D_COMPACT)
            return std::make_unique<CompactReader>(file, std::move(dataSet), label, shape);
        if (isOurPipeline(properties.get(), shape))
            return makeChunkedReader(file, std::move(dataSet), label, shape);
        return makeForeignReader(file, std::move(dataSet), label, shape, properties.get());
    } catch (const FormatError& error) {
        throw FormatError(label + " " + error.what());
    }
}

std::unique_ptr<ArrayReader> ArrayReader::find(Hdf5File& file, const Handle& group, const std::string& name)
{
    return group && hasLink(group.get(), name) ? open(file, group.get(), name) : nullptr;
}

void ArrayReader::read(std::uint64_t first, std::uint64_t count, const KelBuffer& values) const
{
    checkRange(_label, _shape, first, count);
    if (count > 0)
        readValues(first, count, targetOf(values, _shape.type));
}

std::uint64_t ArrayReader::readStart(const KelBuffer& values) const
{
    const std::uint64_t n = std::min(values.capacity, _shape.valueCount());
    read(0, n, values);
    return n;
}

void ArrayReader::checkPlausible() const
{
    constexpr std::uint64_t bestRatio = 1000; // of compressing a table that is worth reading whole
    const std::uint64_t bytes = _shape.valueCount() * sizeOf(_shape.type);
    if (bytes / bestRatio > _file.channel().size())
        throw FormatError(_label + " has " + std::to_string(bytes) + " bytes, which are not in a file of " +
                          std::to_string(_file.channel().size()) + " bytes");
}

template <class T>
void writeArray(Hdf5File& file, hid_t group, const std::string& name, const std::vector<T>& values,
                std::uint64_t columns)
{
    const ArrayShape shape{storedAs<T>(), values.size() / columns, columns};
    const auto array = ArrayWriter::create(file, group, name, shape, 0);
    array->write(0, values.size(), sourceOf(values.data(), shape.type));
}

template void writeArray(Hdf5File&, hid_t, const std::string&, const std::vector<unsigned char>&, std::uint64_t);
template void writeArray(Hdf5File&, hid_t, const std::string&, const std::vector<int>&, std::uint64_t);
template void writeArray(Hdf5File&, hid_t, const std::string&, const std::vector<std::uint64_t>&, std::uint64_t);
template void writeArray(Hdf5File&, hid_t, const std::string&, const std::vector<std::int64_t>&, std::uint64_t);

} // namespace meridyn::hdf5
