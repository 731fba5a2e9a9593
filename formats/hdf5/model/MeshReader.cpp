#include "MeshReader.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>
#include <numeric>

namespace meridyn::hdf5 {

namespace {

// Kind of the elements that carry an array.
KelZoneCategory categoryOf(const MeshArray& which)
{
    switch (which.kind) {
    case MeshArray::Kind::Ids:
        return infoOf(which.ids).category;
    case MeshArray::Kind::Ints:
        return infoOf(which.ints).category;
    case MeshArray::Kind::Lists:
        return infoOf(which.lists).category;
    default:
        return KEL_NODE_ZONE;
    }
}

} // namespace

MeshReader::MeshReader(Hdf5File& file, hid_t group) : _file(file)
{
    H5Iinc_ref(group);
    _group = Handle(group);
    const std::int64_t dimension = readNumber(group, "dimension").value_or(0);
    if (dimension < 0)
        throw FormatError(pathOf(group) + " has the dimension " + std::to_string(dimension));
    _dimension = static_cast<std::uint64_t>(dimension);
    for (int i = 0; i < categoryCount; ++i) {
        const char* const name = groupNameOf(static_cast<KelZoneCategory>(i));
        if (!hasLink(group, name))
            continue;
        _groups[i] = openGroup(group, name);
        std::vector<std::uint64_t> table;
        for (const std::int64_t id : readNumbers(_groups[i].get(), "ranges").value_or(std::vector<std::int64_t>()))
            table.push_back(static_cast<std::uint64_t>(id));
        try {
            _elements[i] = ElementMap::fromTable(table);
        } catch (const FormatError& error) {
            throw FormatError(pathOf(_groups[i].get()) + "@ranges: " + error.what());
        }
    }
}

int MeshReader::partitionCount() const
{
    const Handle& cells = _groups[KEL_CELL_ZONE];
    return cells ? static_cast<int>(readNumber(cells.get(), "partition_count").value_or(0)) : 0;
}

std::optional<Stored> MeshReader::coordinateType() const
{
    const PlainArray* const known = plain(_coordinates, KEL_NODE_ZONE, "coordinates");
    return known == nullptr ? std::nullopt : std::optional(known->array->shape().type);
}

// 0 to 0 is what an unknown zone becomes on its way here: no rows, and no error either, since it was reported.
MeshReader::Rows MeshReader::rowsOf(KelZoneCategory category, std::uint64_t first, std::uint64_t last) const
{
    Rows rows;
    if (first == 0 && last == 0)
        return rows;
    const ElementMap& map = _elements[category];
    if (!map.forEachPiece(first, last, [&rows](std::uint64_t row, std::uint64_t count, std::uint64_t position) {
            rows = {row - position, position + count}; // ranges that touch have rows that do
        }))
        throw FormatError(pathOf(_group.get()) + ": " + groupNameOf(category) + " " + std::to_string(first) + " to " +
                          std::to_string(last) + " are not in the mesh, which has " + std::to_string(map.rowCount()) +
                          ", the last with id " + std::to_string(map.largestId()));
    return rows;
}

const MeshReader::PlainArray* MeshReader::plain(Lazy<PlainArray>& lazy, KelZoneCategory category,
                                                const char* name) const
{
    if (!lazy.isKnown) {
        lazy.isKnown = true;
        const Handle& group = _groups[category];
        if (group && hasLink(group.get(), name)) {
            auto plain = std::make_unique<PlainArray>();
            plain->array = ArrayReader::open(_file, group.get(), name);
            const std::uint64_t rows = _elements[category].rowCount();
            if (plain->array->shape().rows != rows)
                throw FormatError(plain->array->label() + " has " + std::to_string(plain->array->shape().rows) +
                                  " rows, " + std::to_string(rows) + " expected");
            const std::string given = std::string(name) + "_given";
            if (hasLink(group.get(), given)) {
                plain->given = readCoverage(_file, group.get(), given, rows);
            } else {
                plain->given.add(0, rows);
            }
            lazy.reader = std::move(plain);
        }
    }
    return lazy.reader.get();
}

template <class Reader>
const Reader* MeshReader::open(Lazy<Reader>& lazy, const ArrayInfo& info) const
{
    const Handle& group = _groups[info.category];
    if (!lazy.isKnown && group)
        lazy.reader = Reader::open(_file, group.get(), info.name, _elements[info.category].rowCount());
    lazy.isKnown = true;
    return lazy.reader.get();
}

const RaggedReader* MeshReader::listsOf(Lists lists) const
{
    return open(_lists[static_cast<int>(lists)], infoOf(lists));
}

// The small numbers themselves, or the counts of lists.
const RunLengthArrayReader* MeshReader::runsOf(const MeshArray& which) const
{
    if (which.kind == MeshArray::Kind::Ints)
        return open(_ints[static_cast<int>(which.ints)], infoOf(which.ints));
    const RaggedReader* const lists = which.kind == MeshArray::Kind::Lists ? listsOf(which.lists) : nullptr;
    return lists == nullptr ? nullptr : &lists->counts();
}

std::uint64_t MeshReader::coordinates(const Rows& rows, const KelBuffer& xyz) const
{
    const PlainArray* const known = plain(_coordinates, KEL_NODE_ZONE, "coordinates");
    if (known == nullptr || rows.count == 0)
        return 0;
    const std::uint64_t columns = known->array->shape().columns;
    const std::uint64_t n = std::min(rows.count, xyz.capacity / columns) * columns;
    known->array->read(rows.first * columns, n, xyz);
    return n;
}

std::uint64_t MeshReader::ids(Ids which, const Rows& rows, const KelBuffer& values) const
{
    const ArrayInfo& info = infoOf(which);
    const PlainArray* const known = plain(_ids[static_cast<int>(which)], info.category, info.name);
    if (known == nullptr || rows.count == 0)
        return 0;
    // Boundary faces have no cell 1 and need not be written: they have the value 0 all the same.
    if (which != Ids::Cell1 && !known->given.covers(rows.first, rows.first + rows.count))
        return 0;
    const std::uint64_t n = std::min(rows.count, values.capacity);
    known->array->read(rows.first, n, values);
    return n;
}

std::uint64_t MeshReader::listIds(Lists which, const Rows& rows, const KelBuffer& values) const
{
    const RaggedReader* const known = listsOf(which);
    const bool isGiven = known != nullptr && known->counts().covers(rows.first, rows.count);
    return isGiven ? known->readIds(rows.first, rows.count, values) : 0;
}

std::uint64_t MeshReader::read(KelArray array, std::uint64_t first, std::uint64_t last, const KelBuffer& values) const
{
    const MeshArray which = meshArrayOf(array);
    const Rows rows = rowsOf(categoryOf(which), first, last);
    if (which.kind == MeshArray::Kind::Coordinates)
        return coordinates(rows, values);
    if (which.kind == MeshArray::Kind::Ids)
        return ids(which.ids, rows, values);
    if (which.kind == MeshArray::Kind::Lists && !isOfCounts(array))
        return listIds(which.lists, rows, values);
    const RunLengthArrayReader* const known = runsOf(which);
    if (known == nullptr || !known->covers(rows.first, rows.count))
        return 0;
    const std::uint64_t n = std::min(rows.count, values.capacity);
    known->read(rows.first, n, values);
    return n;
}

bool MeshReader::hasIds(KelArray array) const
{
    const MeshArray which = meshArrayOf(array);
    if (which.kind == MeshArray::Kind::Lists)
        return listsOf(which.lists) != nullptr;
    const ArrayInfo& info = infoOf(which.ids);
    return which.kind == MeshArray::Kind::Ids && plain(_ids[static_cast<int>(which.ids)], info.category, info.name);
}

void MeshReader::showPiece(KelArray array, std::uint64_t first, std::uint64_t last, std::vector<std::uint64_t>& ids,
                           const VisitIds& visit) const
{
    std::uint64_t expected = last - first + 1;
    if (isOfLists(array)) {
        std::vector<short> counts(expected);
        const auto countsOf = static_cast<KelArray>(static_cast<int>(array) + 1);
        if (read(countsOf, first, last, {counts.data(), counts.size()}) == 0)
            expected = 0;
        else
            expected = std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
    }
    ids.resize(expected);
    const std::uint64_t found = expected == 0 ? 0 : read(array, first, last, {ids.data(), ids.size()});
    if (found > 0)
        visit(ids.data(), found);
    else if (first < last) // an element without values hides the others
        for (std::uint64_t id = first; id <= last; ++id)
            showPiece(array, id, id, ids, visit);
}

void MeshReader::showIds(KelArray array, std::uint64_t first, std::uint64_t last, const VisitIds& visit) const
{
    constexpr std::uint64_t pieceSize = 8 * 1024;
    if (!hasIds(array))
        return;
    std::vector<std::uint64_t> ids;
    for (std::uint64_t begin = first; begin <= last; begin += pieceSize)
        showPiece(array, begin, std::min(last, begin + pieceSize - 1), ids, visit);
}

std::optional<int> MeshReader::uniformValue(KelArray array, std::uint64_t first, std::uint64_t last) const
{
    const MeshArray which = meshArrayOf(array);
    const Rows rows = rowsOf(categoryOf(which), first, last);
    const RunLengthArrayReader* const known = runsOf(which);
    return known == nullptr ? std::nullopt : known->uniformValue(rows.first, rows.count);
}

} // namespace meridyn::hdf5
