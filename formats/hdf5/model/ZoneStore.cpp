#include "ZoneStore.h"

#include "formats/hdf5/arrays/ArrayStore.h"
#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <map>

namespace meridyn::hdf5 {

namespace {

// The lengths of the two texts come last; the texts stand in zone_texts one after the other.
const char zoneColumns[] = "category id first last extra info0 info1 info2 info3 info4 info5 flags text0 text1";
constexpr std::size_t columnCount = 14;

[[noreturn]] void failTexts(hid_t group, std::size_t found)
{
    throw FormatError(arrayLabel(group, "zone_texts") + " has " + std::to_string(found) +
                      " bytes, fewer than the lengths in zones");
}

std::string takeText(const std::vector<unsigned char>& texts, std::size_t& at, std::int64_t length, hid_t group)
{
    if (length < 0 || static_cast<std::uint64_t>(length) > texts.size() - at)
        failTexts(group, texts.size());
    const auto begin = texts.begin() + static_cast<std::ptrdiff_t>(at);
    at += static_cast<std::size_t>(length);
    return {begin, begin + static_cast<std::ptrdiff_t>(length)};
}

// A file that is added to may have a table of marks that belongs to other neighbours.
void writeNeighbours(Hdf5File& file, hid_t group, const std::vector<int>& neighbours, const KelDerivedValues& derived)
{
    writeArray(file, group, "zone_neighbours", neighbours, 3);
    std::vector<int> marks;
    for (const auto& [zone, side] : derived.neighbours)
        marks.insert(marks.end(), {zone, side});
    if (!marks.empty())
        writeArray(file, group, "zone_neighbours_derived", marks, 2);
    else if (hasLink(group, "zone_neighbours_derived"))
        file.removeAtCommit(group, "zone_neighbours_derived");
}

} // namespace

void writeZones(Hdf5File& file, hid_t group, const std::vector<ZoneRecord>& zones, const KelDerivedValues& derived)
{
    if (zones.empty())
        return;
    std::vector<std::int64_t> table;
    std::vector<unsigned char> texts;
    std::vector<int> neighbours;
    for (const ZoneRecord& zone : zones) {
        table.insert(table.end(), {zone.category, zone.id, static_cast<std::int64_t>(zone.first),
                                   static_cast<std::int64_t>(zone.last), static_cast<std::int64_t>(zone.extra)});
        table.insert(table.end(), zone.infos, zone.infos + 6);
        table.push_back(zone.flags);
        for (const std::string& text : zone.texts) {
            table.push_back(static_cast<std::int64_t>(text.size()));
            texts.insert(texts.end(), text.begin(), text.end());
        }
        for (int side = 0; side < 2; ++side)
            for (const int neighbour : zone.neighbours[side])
                neighbours.insert(neighbours.end(), {zone.id, side, neighbour});
    }
    writeArray(file, group, "zones", table, columnCount);
    const Handle zoneTable = checkedId(H5Dopen2(group, "zones", H5P_DEFAULT), arrayLabel(group, "zones"));
    writeText(zoneTable.get(), "columns", zoneColumns);
    if (!texts.empty())
        writeArray(file, group, "zone_texts", texts);
    if (!neighbours.empty())
        writeNeighbours(file, group, neighbours, derived);
}

std::vector<ZoneRecord> readZones(Hdf5File& file, hid_t group)
{
    if (!hasLink(group, "zones"))
        return {};
    const auto array = ArrayReader::open(file, group, "zones");
    const std::uint64_t columns = array->shape().columns;
    if (columns < columnCount)
        throw FormatError(array->label() + " has " + std::to_string(columns) + " columns, " +
                          std::to_string(columnCount) + " expected");
    const auto table = array->readAll<std::int64_t>();
    std::vector<unsigned char> texts;
    if (hasLink(group, "zone_texts"))
        texts = ArrayReader::open(file, group, "zone_texts")->readAll<unsigned char>();
    std::vector<ZoneRecord> zones;
    std::map<int, std::size_t> positions;
    std::size_t textAt = 0;
    for (std::size_t row = 0; row < array->shape().rows; ++row) {
        const std::int64_t* const cells = table.data() + row * columns;
        ZoneRecord zone;
        zone.category = static_cast<int>(cells[0]);
        zone.id = static_cast<int>(cells[1]);
        zone.first = static_cast<std::uint64_t>(cells[2]);
        zone.last = static_cast<std::uint64_t>(cells[3]);
        zone.extra = static_cast<std::uint64_t>(cells[4]);
        for (int i = 0; i < 6; ++i)
            zone.infos[i] = static_cast<int>(cells[5 + i]);
        zone.flags = static_cast<int>(cells[11]);
        for (int i = 0; i < 2; ++i)
            zone.texts[i] = takeText(texts, textAt, cells[12 + i], group);
        if (zone.category < 0 || zone.category > 3 || !positions.emplace(zone.id, zones.size()).second)
            throw FormatError(array->label() + " has in row " + std::to_string(row) + " the category " +
                              std::to_string(zone.category) + " and the id " + std::to_string(zone.id) +
                              ", a category from 0 to 3 and an id of its own expected");
        zones.push_back(std::move(zone));
    }
    if (!hasLink(group, "zone_neighbours"))
        return zones;
    const auto neighbours = ArrayReader::open(file, group, "zone_neighbours")->readAll<int>();
    for (std::size_t i = 0; i + 2 < neighbours.size(); i += 3) {
        const auto found = positions.find(neighbours[i]);
        if (found != positions.end() && (neighbours[i + 1] == 0 || neighbours[i + 1] == 1))
            zones[found->second].neighbours[neighbours[i + 1]].push_back(neighbours[i + 2]);
    }
    return zones;
}

KelDerivedValues readDerived(Hdf5File& file, hid_t group)
{
    KelDerivedValues derived;
    for (const std::int64_t size : readNumbers(group, "derived_sizes").value_or(std::vector<std::int64_t>()))
        if (size >= KEL_MESH_SIZE_1 && size <= KEL_MESH_SIZE_4)
            derived.meshSizes.insert(static_cast<KelMeshSizeType>(size));
    if (!hasLink(group, "zone_neighbours_derived"))
        return derived;
    const auto table = ArrayReader::open(file, group, "zone_neighbours_derived")->readAll<int>();
    for (std::size_t i = 0; i + 1 < table.size(); i += 2)
        derived.neighbours.emplace(table[i], table[i + 1]);
    return derived;
}

} // namespace meridyn::hdf5
