#include "FieldArray.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>

namespace meridyn::hdf5 {

std::string partName(const std::string& name, std::size_t index)
{
    return index == 0 ? name : name + "#" + std::to_string(index + 1);
}

FieldWriter::FieldWriter(Hdf5File& file, hid_t group, std::string name, std::optional<Stored> type,
                         std::uint64_t columns, int compression)
    : _file(file), _name(std::move(name)), _type(type), _columns(columns), _compression(compression)
{
    H5Iinc_ref(group);
    _group = Handle(group);
    if (columns == 0)
        throw FormatError(arrayLabel(group, _name) + " has 0 values per element, 1 or more expected");
}

// Zones that are new to the field make a part of their own, since the rows of earlier parts may be written already.
void FieldWriter::addZones(const std::vector<ZoneRange>& zones)
{
    Part part;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges;
    for (const ZoneRange& zone : zones) {
        const auto hasZone = [&zone](const Part& other) {
            return std::find(other.zones.begin(), other.zones.end(), zone.id) != other.zones.end();
        };
        if (hasZone(part) || std::any_of(_parts.begin(), _parts.end(), hasZone))
            continue;
        part.zones.push_back(zone.id);
        ranges.emplace_back(zone.first, zone.last);
    }
    if (part.zones.empty())
        return;
    part.elements = ElementMap(std::move(ranges));
    _parts.push_back(std::move(part));
}

void FieldWriter::addElements(std::uint64_t first, std::uint64_t last)
{
    if (!_parts.empty())
        return;
    _parts.emplace_back();
    _parts.back().elements = ElementMap({{first, last}});
}

void FieldWriter::open(Part& part, std::size_t index, Stored type)
{
    const ArrayShape shape{type, part.elements.rowCount(), _columns};
    part.array = std::make_unique<CompleteArray>(_file, _group.get(), partName(_name, index), shape, _compression);
    std::vector<std::int64_t> ranges;
    for (const std::uint64_t id : part.elements.toTable())
        ranges.push_back(static_cast<std::int64_t>(id));
    writeNumbers(part.array->id(), "kel_zones", part.zones);
    writeNumbers(part.array->id(), "kel_ranges", ranges);
}

void FieldWriter::writePiece(Part& part, std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    if (!_type)
        _type = storedTypeOfPlain(values.type);
    if (!part.array)
        open(part, static_cast<std::size_t>(&part - _parts.data()), *_type);
    part.elements.forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t count, std::uint64_t position) {
        part.array->write(row, count, partOf(values, position * _columns, count * _columns));
    });
}

void FieldWriter::write(std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    const std::uint64_t count = values.count;
    const std::string label = arrayLabel(_group.get(), _name);
    if (last < first || (last - first + 1) > count / _columns || (last - first + 1) * _columns != count)
        throw FormatError(label + ": " + std::to_string(count) + " values for the elements " + std::to_string(first) +
                          " to " + std::to_string(last) + ", " + std::to_string(_columns) + " each expected");
    for (Part& part : _parts)
        if (part.elements.contains(first, last)) {
            writePiece(part, first, last, values);
            return;
        }
    // Elements of several parts: piece by piece, and none unless all of them belong to the field.
    for (int pass = 0; pass < 2; ++pass)
        for (std::uint64_t next = first; next <= last;) {
            const ElementMap::Range* found = nullptr;
            Part* owner = nullptr;
            for (Part& part : _parts)
                for (const ElementMap::Range& range : part.elements.ranges())
                    if (range.first <= next && next <= range.last) {
                        found = &range;
                        owner = &part;
                    }
            if (found == nullptr)
                throw FormatError(label + ": element " + std::to_string(next) + " is in none of its zones");
            const std::uint64_t end = std::min(last, found->last);
            if (pass == 1)
                writePiece(*owner, next, end, partOf(values, (next - first) * _columns, (end - next + 1) * _columns));
            next = end + 1;
        }
}

std::vector<Coverage::Interval> FieldWriter::gapsOf(const Part& part)
{
    return part.array ? part.array->gaps() : Coverage().gaps(0, part.elements.rowCount());
}

// What is missing is named by its element ids, which the array does not know.
void FieldWriter::finish()
{
    for (std::size_t i = 0; i < _parts.size(); ++i) {
        Part& part = _parts[i];
        const auto gaps = gapsOf(part);
        if (!gaps.empty())
            throw FormatError(arrayLabel(_group.get(), partName(_name, i)) + " lacks the values of the elements " +
                              std::to_string(part.elements.idOf(gaps.front().first)) + " to " +
                              std::to_string(part.elements.idOf(gaps.front().second - 1)));
        if (!part.array) // zones without elements
            open(part, i, _type.value_or(Stored::F64));
        part.array->finish();
    }
}

std::unique_ptr<FieldReader> FieldReader::open(Hdf5File& file, hid_t group, const std::string& name)
{
    auto reader = std::make_unique<FieldReader>();
    for (std::size_t i = 0; hasLink(group, partName(name, i)); ++i) {
        Part part;
        part.array = ArrayReader::open(file, group, partName(name, i));
        part.zones = readNumbers(part.array->id(), "kel_zones").value_or(std::vector<std::int64_t>());
        std::vector<std::uint64_t> table;
        for (const std::int64_t id : readNumbers(part.array->id(), "kel_ranges").value_or(std::vector<std::int64_t>()))
            table.push_back(static_cast<std::uint64_t>(id));
        part.elements = ElementMap::fromTable(table);
        if (part.elements.rowCount() != part.array->shape().rows)
            throw FormatError(part.array->label() + " has " + std::to_string(part.array->shape().rows) + " rows, " +
                              std::to_string(part.elements.rowCount()) + " expected after its ranges");
        reader->_parts.push_back(std::move(part));
    }
    return reader->_parts.empty() ? nullptr : std::move(reader);
}

std::vector<int> FieldReader::zones() const
{
    std::vector<int> ids;
    for (const Part& part : _parts)
        for (const std::int64_t id : part.zones)
            ids.push_back(static_cast<int>(id));
    return ids;
}

// The elements of a range may lie in several parts, each in several stretches. All are found before the first value is
// read, so that a buffer is left alone unless all elements have values.
std::uint64_t FieldReader::read(std::uint64_t first, std::uint64_t last, const KelBuffer& values) const
{
    // Where each stretch of elements lies; then, if none is missing, its values.
    struct Piece {
        const Part* part;
        std::uint64_t row;
        std::uint64_t rows;
    };
    std::vector<Piece> pieces;
    for (std::uint64_t next = first; next <= last && next != 0;) {
        const ElementMap::Range* range = nullptr;
        const auto owner = std::find_if(_parts.begin(), _parts.end(), [&range, next](const Part& part) {
            range = part.elements.find(next);
            return range != nullptr;
        });
        if (range == nullptr)
            return 0;
        const std::uint64_t end = std::min(last, range->last);
        pieces.push_back({&*owner, range->row + (next - range->first), end - next + 1});
        next = end + 1;
    }
    KelBuffer room = values;
    for (const Piece& piece : pieces) {
        const std::uint64_t columns = piece.part->array->shape().columns;
        const std::uint64_t n = std::min(piece.rows, room.capacity / columns) * columns;
        piece.part->array->read(piece.row * columns, n, room);
        room = restOf(room, n);
        if (n < piece.rows * columns)
            break;
    }
    return values.capacity - room.capacity;
}

} // namespace meridyn::hdf5
