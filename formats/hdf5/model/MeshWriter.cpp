#include "MeshWriter.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>
#include <cassert>

namespace meridyn::hdf5 {

namespace {

// Ids are checked and converted piece by piece, so that the second pass finds them in the cache. Compressed arrays get
// long pieces, whose chunks several threads share.
constexpr std::uint64_t plainPiece = 32 * 1024;
constexpr std::uint64_t compressedPiece = 4 * 1024 * 1024;

constexpr ArrayInfo coordinatesInfo{"coordinates", KEL_NODE_ZONE, KEL_NODE_ZONE};

/// Of an array of the mesh.
const ArrayInfo& infoOf(const MeshArray& array)
{
    switch (array.kind) {
    case MeshArray::Kind::Ids:
        return infoOf(array.ids);
    case MeshArray::Kind::Ints:
        return infoOf(array.ints);
    case MeshArray::Kind::Lists:
        return infoOf(array.lists);
    default:
        return coordinatesInfo;
    }
}

/// Values whose type the frame fixes.
template <class T>
const T* valuesAs(const KelValues& values)
{
    assert(values.type == plainTypeOf<T>());
    return static_cast<const T*>(values.data);
}

[[noreturn]] void failCount(const std::string& label, std::uint64_t first, std::uint64_t last, std::uint64_t found,
                            std::uint64_t expected)
{
    throw FormatError(label + " has " + std::to_string(found) + " values for the elements " + std::to_string(first) +
                      " to " + std::to_string(last) + ", " + std::to_string(expected) + " expected");
}

} // namespace

ElementMap elementsOf(const MeshDescription& mesh, KelZoneCategory category)
{
    std::vector<std::pair<std::uint64_t, std::uint64_t>> ranges;
    for (const ZoneRange& zone : mesh.zones(category))
        ranges.emplace_back(zone.first, zone.last);
    ElementMap elements(ranges);
    const std::uint64_t count = mesh.elementCount(category);
    if (elements.rowCount() >= count)
        return elements;
    ranges.emplace_back(1, count);
    return ElementMap(std::move(ranges));
}

MeshWriter::MeshWriter(Hdf5File& file, hid_t group, MeshDescription mesh, int compression)
    : _file(file), _mesh(std::move(mesh)), _compression(compression)
{
    H5Iinc_ref(group);
    _group = Handle(group);
}

MeshWriter::~MeshWriter() = default;

hid_t MeshWriter::groupOf(KelZoneCategory category)
{
    Handle& group = _groups[category];
    if (!group)
        group = openOrCreateGroup(_group.get(), groupNameOf(category));
    return group.get();
}

std::string MeshWriter::labelOf(const ArrayInfo& info) const
{
    return pathOf(_group.get()) + "/" + groupNameOf(info.category) + "/" + info.name;
}

const ElementMap& MeshWriter::elements(KelZoneCategory category)
{
    static const ElementMap none;
    std::optional<ElementMap>& known = _elements[category];
    if (!known) {
        ElementMap found = elementsOf(_mesh, category);
        if (found.isEmpty())
            return none; // not declared yet
        known = std::move(found);
    }
    return *known;
}

const ElementMap& MeshWriter::checkedElements(const ArrayInfo& info, std::uint64_t first, std::uint64_t last)
{
    const ElementMap& map = elements(info.category);
    if (!map.contains(first, last))
        throw FormatError(labelOf(info) + ": elements " + std::to_string(first) + " to " + std::to_string(last) +
                          " are not in the mesh, whose " + groupNameOf(info.category) + " are " +
                          std::to_string(map.rowCount()) + ", the last with id " + std::to_string(map.largestId()));
    return map;
}

// The same for arrays of one value per element.
const ElementMap& MeshWriter::checkedElements(const ArrayInfo& info, const char* suffix, std::uint64_t first,
                                              std::uint64_t last, std::uint64_t count)
{
    const ElementMap& map = checkedElements(info, first, last);
    if (count != last - first + 1)
        failCount(labelOf(info) + suffix, first, last, count, last - first + 1);
    return map;
}

std::vector<Coverage::Interval> MeshWriter::zoneRows(KelZoneCategory category)
{
    const ElementMap& map = elements(category);
    std::vector<Coverage::Interval> rows;
    for (const ZoneRange& zone : _mesh.zones(category))
        map.forEachPiece(zone.first, zone.last, [&rows](std::uint64_t row, std::uint64_t count, std::uint64_t) {
            rows.emplace_back(row, row + count);
        });
    std::sort(rows.begin(), rows.end());
    if (rows.empty() && !map.isEmpty())
        rows.emplace_back(0, map.rowCount());
    return rows;
}

Stored MeshWriter::idTypeFor(KelZoneCategory target)
{
    const std::uint64_t largest = elements(target).largestId();
    return largest > 0 && largest <= UINT32_MAX ? Stored::U32 : Stored::U64;
}

// Both bounds in one pass without branches: a difference that wraps has its top bit set.
void MeshWriter::checkIds(const ArrayInfo& info, const char* suffix, const std::uint64_t* ids, std::uint64_t count,
                          bool zeroIsAllowed)
{
    const std::uint64_t largest = elements(info.target).largestId();
    if (largest == 0)
        return; // the target is not declared
    const std::uint64_t smallest = zeroIsAllowed ? 0 : 1;
    std::uint64_t signs = 0;
    for (std::uint64_t i = 0; i < count; ++i)
        signs |= (largest - ids[i]) | (ids[i] - smallest);
    if (signs >> 63 == 0)
        return;
    for (std::uint64_t i = 0; i < count; ++i)
        if (ids[i] > largest || ids[i] < smallest)
            throw FormatError(labelOf(info) + suffix + " holds the id " + std::to_string(ids[i]) + ", but the " +
                              groupNameOf(info.target) + " of the mesh end with " + std::to_string(largest));
}

void MeshWriter::keep(KelArray array, std::uint64_t first, std::uint64_t last, const KelValues& values,
                      Stored coordinateType)
{
    const MeshArray which = meshArrayOf(array);
    switch (which.kind) {
    case MeshArray::Kind::Coordinates:
        return keepCoordinates(first, last, values, coordinateType);
    case MeshArray::Kind::Ids:
        return keepIds(which.ids, first, last, values);
    case MeshArray::Kind::Ints:
        return keepInts(which.ints, first, last, values);
    case MeshArray::Kind::Lists:
        return isOfCounts(array) ? keepCounts(which.lists, first, last, values)
                                 : keepLists(which.lists, first, last, values);
    case MeshArray::Kind::None:
        assert(false);
    }
}

void MeshWriter::keepUniform(KelArray array, std::uint64_t first, std::uint64_t last, int value)
{
    const MeshArray which = meshArrayOf(array);
    assert(which.kind == MeshArray::Kind::Ints || isOfCounts(array));
    const ElementMap& map = checkedElements(infoOf(which), first, last);
    map.forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t rows, std::uint64_t) {
        if (which.kind == MeshArray::Kind::Ints)
            intsOf(which.ints).setUniform(row, rows, value);
        else
            listsOf(which.lists).setUniformCount(row, rows, value);
    });
}

void MeshWriter::keepCoordinates(std::uint64_t first, std::uint64_t last, const KelValues& values, Stored type)
{
    const ElementMap& map = checkedElements(coordinatesInfo, first, last);
    const std::uint64_t nodes = last - first + 1;
    if (!_coordinates.array) {
        std::uint64_t dimension = _mesh.dimension();
        if (dimension == 0)
            dimension = values.count / nodes;
        if (dimension == 0)
            failCount(labelOf(coordinatesInfo), first, last, values.count, nodes);
        _coordinates.array = ArrayWriter::create(_file, groupOf(KEL_NODE_ZONE), coordinatesInfo.name,
                                                 {type, map.rowCount(), dimension}, _compression);
    }
    ArrayWriter& array = *_coordinates.array;
    const std::uint64_t dimension = array.shape().columns;
    if (values.count != nodes * dimension)
        failCount(array.label(), first, last, values.count, nodes * dimension);
    map.forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t rows, std::uint64_t position) {
        array.write(row * dimension, rows * dimension,
                    sourceOf(partOf(values, position * dimension, rows * dimension), array.shape().type));
        _coordinates.coverage.add(row, row + rows);
    });
}

void MeshWriter::keepIds(Ids ids, std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    const ArrayInfo& info = infoOf(ids);
    const ElementMap& map = checkedElements(info, "", first, last, values.count);
    PlainArray& plain = _ids[static_cast<int>(ids)];
    if (!plain.array)
        plain.array = ArrayWriter::create(_file, groupOf(info.category), info.name,
                                          {idTypeFor(info.target), map.rowCount(), 1}, _compression);
    const std::uint64_t piece = _compression > 0 ? compressedPiece : plainPiece;
    map.forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t rows, std::uint64_t position) {
        for (std::uint64_t done = 0; done < rows; done += piece) {
            const std::uint64_t n = std::min(piece, rows - done);
            const std::uint64_t* const next = valuesAs<std::uint64_t>(values) + position + done;
            checkIds(info, "", next, n, true);
            plain.array->write(row + done, n, sourceOf(next, plain.array->shape().type));
        }
        plain.coverage.add(row, row + rows);
    });
}

RunLengthArrayWriter& MeshWriter::intsOf(Ints ints)
{
    const ArrayInfo& info = infoOf(ints);
    std::unique_ptr<RunLengthArrayWriter>& writer = _ints[static_cast<int>(ints)];
    if (!writer)
        writer = std::make_unique<RunLengthArrayWriter>(_file, groupOf(info.category), info.name, Stored::I32,
                                                        elements(info.category).rowCount(), -1, _compression);
    return *writer;
}

void MeshWriter::keepInts(Ints ints, std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    checkedElements(infoOf(ints), "", first, last, values.count)
        .forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t rows, std::uint64_t position) {
            intsOf(ints).set(row, rows, valuesAs<int>(values) + position);
        });
}

RaggedWriter& MeshWriter::listsOf(Lists lists)
{
    const ArrayInfo& info = infoOf(lists);
    std::unique_ptr<RaggedWriter>& writer = _lists[static_cast<int>(lists)];
    if (!writer)
        writer =
            std::make_unique<RaggedWriter>(_file, groupOf(info.category), info.name, elements(info.category).rowCount(),
                                           idTypeFor(info.target), _compression);
    return *writer;
}

void MeshWriter::keepCounts(Lists lists, std::uint64_t first, std::uint64_t last, const KelValues& counts)
{
    checkedElements(infoOf(lists), "_counts", first, last, counts.count)
        .forEachPiece(first, last, [&](std::uint64_t row, std::uint64_t rows, std::uint64_t position) {
            listsOf(lists).setCounts(row, rows, valuesAs<short>(counts) + position);
        });
}

void MeshWriter::keepLists(Lists lists, std::uint64_t first, std::uint64_t last, const KelValues& ids)
{
    const ArrayInfo& info = infoOf(lists);
    const ElementMap& map = checkedElements(info, first, last);
    RaggedWriter& writer = listsOf(lists);
    std::vector<Coverage::Interval> pieces;
    map.forEachPiece(first, last, [&pieces](std::uint64_t row, std::uint64_t rows, std::uint64_t) {
        pieces.emplace_back(row, row + rows);
    });
    // Rows follow each other also where ids do not: the whole range is one stretch of rows.
    writer.setIds(pieces.front().first, pieces.back().second - pieces.front().first, valuesAs<std::uint64_t>(ids),
                  ids.count,
                  [&](const std::uint64_t* part, std::uint64_t n) { checkIds(info, "_ids", part, n, false); });
}

void MeshWriter::announce(KelArray array, const std::vector<int>& zoneIds)
{
    _announcements.emplace_back(array, zoneIds);
}

// Of lists, their counts.
const Coverage& MeshWriter::coverageOf(const MeshArray& array) const
{
    static const Coverage nothing;
    switch (array.kind) {
    case MeshArray::Kind::Ids:
        return _ids[static_cast<int>(array.ids)].coverage;
    case MeshArray::Kind::Ints:
        if (const auto& writer = _ints[static_cast<int>(array.ints)])
            return writer->coverage();
        return nothing;
    case MeshArray::Kind::Lists:
        if (const auto& writer = _lists[static_cast<int>(array.lists)])
            return writer->countCoverage();
        return nothing;
    default:
        return _coordinates.coverage;
    }
}

void MeshWriter::checkAnnouncements()
{
    for (const auto& [array, zoneIds] : _announcements) {
        const MeshArray which = meshArrayOf(array);
        const ArrayInfo& info = infoOf(which);
        const Coverage& coverage = coverageOf(which);
        for (const ZoneRange& zone : _mesh.zones(info.category)) {
            if (std::find(zoneIds.begin(), zoneIds.end(), zone.id) == zoneIds.end())
                continue;
            const auto check = [&](std::uint64_t row, std::uint64_t rows, std::uint64_t) {
                if (!coverage.covers(row, row + rows))
                    throw FormatError(labelOf(info) + (which.kind == MeshArray::Kind::Lists ? "_counts" : "") +
                                      " lacks values of zone " + std::to_string(zone.id) + ", which was announced");
            };
            elements(info.category).forEachPiece(zone.first, zone.last, check);
        }
    }
}

void MeshWriter::checkElements()
{
    for (int i = 0; i < categoryCount; ++i) {
        const auto category = static_cast<KelZoneCategory>(i);
        if (_elements[i] && !(*_elements[i] == elementsOf(_mesh, category)))
            throw FormatError(std::string("the zones of the ") + groupNameOf(category) +
                              " changed after their first values were written");
    }
}

void MeshWriter::finishPlain(PlainArray& plain, const ArrayInfo& info, bool gapsAreAllowed)
{
    if (!plain.array)
        return;
    const std::uint64_t columns = plain.array->shape().columns;
    const auto gaps = plain.coverage.gaps(0, plain.array->shape().rows);
    if (!gaps.empty() && !gapsAreAllowed)
        throw FormatError(labelOf(info) + " lacks the values of the elements " +
                          std::to_string(elements(info.category).idOf(gaps.front().first)) + " to " +
                          std::to_string(elements(info.category).idOf(gaps.front().second - 1)));
    const std::vector<std::uint64_t> zeros(plainPiece);
    for (const auto& [begin, end] : gaps)
        for (std::uint64_t row = begin; row < end; row += plainPiece)
            plain.array->write(row * columns, std::min(plainPiece, end - row) * columns,
                               sourceOf(zeros.data(), plain.array->shape().type));
    if (!gaps.empty()) {
        std::vector<std::uint64_t> given;
        for (const auto& [begin, end] : plain.coverage.intervals())
            given.insert(given.end(), {begin, end - begin});
        writeArray(_file, groupOf(info.category), std::string(info.name) + "_given", given, 2);
    }
    plain.array->finish();
}

void MeshWriter::finish(MeshDescription mesh)
{
    _mesh = std::move(mesh);
    checkElements();
    checkAnnouncements();
    finishPlain(_coordinates, coordinatesInfo, false);
    for (int i = 0; i < idsCount; ++i)
        finishPlain(_ids[i], infoOf(static_cast<Ids>(i)), static_cast<Ids>(i) != Ids::Cell0);
    for (int i = 0; i < intsCount; ++i)
        if (_ints[i])
            _ints[i]->finish(zoneRows(infoOf(static_cast<Ints>(i)).category));
    for (int i = 0; i < listsCount; ++i)
        if (_lists[i])
            _lists[i]->finish(zoneRows(infoOf(static_cast<Lists>(i)).category));
    for (int i = 0; i < categoryCount; ++i) {
        const auto category = static_cast<KelZoneCategory>(i);
        std::vector<std::int64_t> ranges;
        for (const std::uint64_t id : elements(category).toTable())
            ranges.push_back(static_cast<std::int64_t>(id));
        if (!ranges.empty())
            writeNumbers(groupOf(category), "ranges", ranges);
    }
    if (_partitionCount)
        writeNumber(groupOf(KEL_CELL_ZONE), "partition_count", *_partitionCount);
    const std::uint64_t dimension = _coordinates.array ? _coordinates.array->shape().columns : _mesh.dimension();
    writeNumber(_group.get(), "dimension", static_cast<std::int64_t>(dimension));
}

} // namespace meridyn::hdf5
