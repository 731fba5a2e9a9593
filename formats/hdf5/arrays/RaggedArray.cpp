#include "RaggedArray.h"

#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t blockRows = 32 * 1024; // taken in one piece

} // namespace

RaggedWriter::RaggedWriter(Hdf5File& file, hid_t group, std::string name, std::uint64_t rows, Stored idType,
                           int compression)
    : _file(file),
      _group(group),
      _name(std::move(name)),
      _label(arrayLabel(group, _name)),
      _rows(rows),
      _idType(idType),
      _compression(compression),
      _counts(file, group, _name + "_counts", Stored::I16, rows, 0, compression)
{}

void RaggedWriter::checkOpen() const
{
    if (_isSettled)
        throw FormatError(_label + "_counts change after the counts of all elements and ids were handed over");
}

void RaggedWriter::setUniformCount(std::uint64_t row, std::uint64_t count, int value)
{
    if (value < 0)
        throw FormatError(_label + "_counts holds " + std::to_string(value));
    if (_isSettled && _counts.uniformValue(row, count) == value)
        return;
    checkOpen();
    _counts.setUniform(row, count, value);
}

void RaggedWriter::setCounts(std::uint64_t row, std::uint64_t count, const short* counts)
{
    checkOpen();
    if (std::any_of(counts, counts + count, [](short value) { return value < 0; }))
        throw FormatError(_label + "_counts holds a count below 0");
    _counts.set(row, count, counts);
}

void RaggedWriter::failSum(std::uint64_t row, std::uint64_t count, std::uint64_t found, std::uint64_t expected) const
{
    throw FormatError(_label + "_ids has " + std::to_string(found) + " ids for the rows " + std::to_string(row) +
                      " to " + std::to_string(row + count - 1) + ", " + std::to_string(expected) +
                      " expected after their counts");
}

std::uint64_t RaggedWriter::sumOfCounts(std::uint64_t row, std::uint64_t count)
{
    if (const auto value = _counts.uniformValue(row, count))
        return count * static_cast<std::uint64_t>(*value);
    std::uint64_t sum = 0;
    std::vector<int> values(std::min(blockRows, count));
    for (std::uint64_t done = 0; done < count; done += values.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(values.size(), count - done);
        _counts.read(row + done, n, values.data());
        for (std::uint64_t i = 0; i < n; ++i)
            sum += static_cast<std::uint64_t>(values[i]);
    }
    return sum;
}

void RaggedWriter::setIds(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
                          const IdCheck& check)
{
    if (!_isSettled && _counts.coverage().covers(0, _rows))
        settle();
    if (_isSettled)
        place(row, count, ids, idCount, check);
    else
        keep(row, count, ids, idCount, check);
    _given.add(row, row + count);
}

// The counts of all rows are known, so the place of every id is.
void RaggedWriter::place(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
                         const IdCheck& check)
{
    const std::uint64_t begin = offsetOf(row);
    const std::uint64_t end = offsetOf(row + count);
    if (end - begin != idCount)
        failSum(row, count, idCount, end - begin);
    // Pieces stay in the cache between the check and the conversion; compressed ones are long, for the threads.
    const std::uint64_t piece = _compression > 0 ? 128 * blockRows : blockRows;
    for (std::uint64_t done = 0; done < idCount; done += piece) {
        const std::uint64_t n = std::min(piece, idCount - done);
        check(ids + done, n);
        _ids->write(begin + done, n, sourceOf(ids + done, _idType));
    }
}

// Some counts are still missing, so nobody knows where these ids will lie: they wait in a temporary file, one segment
// for rows and bytes that follow each other. A segment whose counts are all known is checked now, the others when
// they are placed.
void RaggedWriter::keep(std::uint64_t row, std::uint64_t count, const std::uint64_t* ids, std::uint64_t idCount,
                        const IdCheck& check)
{
    const bool isChecked = _counts.coverage().covers(row, row + count);
    if (isChecked) {
        const std::uint64_t expected = sumOfCounts(row, count);
        if (expected != idCount)
            failSum(row, count, idCount, expected);
    }
    if (!_spill)
        _spill = std::make_unique<SpillFile>(folderOf(_file.channel().path()));
    const std::size_t size = sizeOf(_idType);
    const Source source = sourceOf(ids, _idType);
    const std::uint64_t block = _file.buffer().size() / size;
    Segment segment{row, count, idCount, 0, isChecked};
    for (std::uint64_t done = 0; done < idCount; done += block) {
        const std::uint64_t n = std::min(block, idCount - done);
        check(ids + done, n);
        source.convert(ids + done, _file.buffer().data(), n);
        const std::uint64_t offset = _spill->append(_file.buffer().data(), n * size);
        if (done == 0)
            segment.offset = offset;
    }
    if (!_segments.empty()) {
        Segment& last = _segments.back();
        const bool continues = last.row + last.rows == row && last.isChecked && isChecked &&
                               (idCount == 0 || last.ids == 0 || last.offset + last.ids * size == segment.offset);
        if (continues) {
            if (last.ids == 0)
                last.offset = segment.offset;
            last.rows += count;
            last.ids += idCount;
            return;
        }
    }
    _segments.push_back(segment);
}

void RaggedWriter::placeSegment(const Segment& segment)
{
    const std::uint64_t begin = offsetOf(segment.row);
    const std::uint64_t end = offsetOf(segment.row + segment.rows);
    if (end - begin != segment.ids)
        failSum(segment.row, segment.rows, segment.ids, end - begin);
    const std::size_t size = sizeOf(_idType);
    std::vector<unsigned char> buffer(_compression > 0 ? 4 * 1024 * 1024 : _file.buffer().size());
    const std::uint64_t block = buffer.size() / size;
    for (std::uint64_t done = 0; done < segment.ids; done += block) {
        const std::uint64_t n = std::min(block, segment.ids - done);
        _spill->read(segment.offset + done * size, buffer.data(), n * size);
        if (_idType == Stored::U32)
            _ids->write(begin + done, n, sourceOf(reinterpret_cast<const unsigned int*>(buffer.data()), _idType));
        else
            _ids->write(begin + done, n, sourceOf(reinterpret_cast<const unsigned64*>(buffer.data()), _idType));
    }
}

// The counts are complete: the place of every list is known.
void RaggedWriter::settle()
{
    _isSettled = true;
    _uniform = _counts.uniformValue(0, _rows);
    if (!_uniform)
        writeOffsets();
    const ArrayShape shape{_idType, offsetOf(_rows), 1};
    _ids = ArrayWriter::create(_file, _group, _name + "_ids", shape, _compression);
    for (const Segment& segment : _segments)
        placeSegment(segment);
    _segments.clear();
    _spill.reset();
}

void RaggedWriter::writeOffsets()
{
    const std::uint64_t total = sumOfCounts(0, _rows);
    const ArrayShape shape{total <= UINT32_MAX ? Stored::U32 : Stored::U64, _rows + 1, 1};
    _offsets = ArrayWriter::create(_file, _group, _name + "_offsets", shape, _compression);
    std::uint64_t sum = 0;
    std::vector<int> counts(std::min(blockRows, _rows));
    std::vector<std::uint64_t> offsets(counts.size());
    for (std::uint64_t row = 0; row < _rows; row += counts.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(counts.size(), _rows - row);
        _counts.read(row, n, counts.data());
        for (std::uint64_t i = 0; i < n; ++i) {
            offsets[i] = sum;
            sum += static_cast<std::uint64_t>(counts[i]);
        }
        _offsets->write(row, n, sourceOf(offsets.data(), shape.type));
    }
    _offsets->write(_rows, 1, sourceOf(&sum, shape.type));
}

std::uint64_t RaggedWriter::offsetOf(std::uint64_t row)
{
    if (_uniform)
        return row * static_cast<std::uint64_t>(*_uniform);
    std::uint64_t offset = 0;
    _offsets->read(row, 1, targetOf(&offset, _offsets->shape().type));
    return offset;
}

void RaggedWriter::finish(const std::vector<Coverage::Interval>& zones)
{
    if (_counts.coverage().isEmpty() && _given.isEmpty())
        return;
    if (_counts.coverage().isEmpty())
        throw FormatError(_label + "_ids were handed over without counts");
    if (!_isSettled)
        settle();
    for (const auto& [begin, end] : _given.gaps(0, _rows)) {
        const std::uint64_t missing = offsetOf(end) - offsetOf(begin);
        if (missing > 0)
            throw FormatError(_label + "_ids lacks " + std::to_string(missing) + " ids in the rows " +
                              std::to_string(begin) + " to " + std::to_string(end - 1));
    }
    _counts.finish(zones);
    if (_offsets)
        _offsets->finish();
    _ids->finish();
}

std::unique_ptr<RaggedReader> RaggedReader::open(Hdf5File& file, hid_t group, const std::string& name,
                                                 std::uint64_t rows)
{
    auto reader = std::make_unique<RaggedReader>();
    reader->_counts = RunLengthArrayReader::open(file, group, name + "_counts", rows);
    if (!reader->_counts)
        return nullptr;
    reader->_ids = ArrayReader::open(file, group, name + "_ids");
    const std::uint64_t total = reader->_ids->shape().valueCount();
    if (hasLink(group, name + "_offsets")) {
        const auto lengths = [counts = reader->_counts.get()](std::uint64_t row, std::uint64_t n, std::uint64_t* to) {
            counts->read(row, n, to);
        };
        reader->_table =
            std::make_unique<ListTable>(ArrayReader::open(file, group, name + "_offsets"), lengths, rows, total);
        return reader;
    }
    const auto uniform = reader->_counts->uniformValue(0, rows);
    if (!uniform || *uniform < 0)
        throw FormatError(arrayLabel(group, name) + "_offsets is missing");
    reader->_uniform = static_cast<std::uint64_t>(*uniform);
    if (reader->_uniform == 0 ? total != 0 : total % reader->_uniform != 0 || total / reader->_uniform != rows)
        throw FormatError(reader->_ids->label() + " has " + std::to_string(total) + " ids, " +
                          std::to_string(reader->_uniform) + " for each of " + std::to_string(rows) + " rows expected");
    return reader;
}

ListTable::Stretch RaggedReader::find(std::uint64_t row, std::uint64_t count, std::uint64_t capacity) const
{
    if (_table)
        return _table->find(row, count, capacity);
    const std::uint64_t fits = _uniform == 0 ? count : std::min(count, capacity / _uniform);
    return {row * _uniform, fits * _uniform};
}

std::uint64_t RaggedReader::readIds(std::uint64_t row, std::uint64_t count, const KelBuffer& ids) const
{
    const ListTable::Stretch stretch = find(row, count, ids.capacity);
    _ids->read(stretch.first, stretch.count, ids);
    return stretch.count;
}

} // namespace meridyn::hdf5
