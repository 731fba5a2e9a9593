#include "TransferRun.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace meridyn {

namespace {

using Zone = KelZoneDescription;

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

std::size_t sizeOf(KelPlainDataType type)
{
    std::size_t size = 0;
    visitPlainType(type, [&size](auto* null) { size = sizeof(*null); });
    return size;
}

/// Copies values of one case section zone by zone; elements without values are left out.
void copySectionValues(TransferRun& run, const std::string& item, const std::vector<int>& zones, KelPlainDataType type,
                       unsigned64 size)
{
    const unsigned64 bytes = sizeOf(type);
    std::vector<char> buffer;
    for (const Zone& zone : run.mesh.zones) {
        if (std::count(zones.begin(), zones.end(), zone.id) == 0 || zone.first == 0 || zone.last < zone.first)
            continue;
        const auto read = [&](unsigned64 first, unsigned64 last) {
            const unsigned64 count = (last - first + 1) * size;
            buffer.resize(count * bytes);
            const unsigned64 found = run.source.getCaseSectionDataForElementsInRange(first, last, buffer.data(), count);
            if (found != count && found != 0)
                stopShort(item.c_str(), zone, first, last, found, count);
            return found == count;
        };
        run.forChunks(item, {zone.first, zone.last}, size, bytes, [&](unsigned64 from, unsigned64 to) {
            forGiven(from, to, read, [&](unsigned64 first, unsigned64 last) {
                run.target.setCaseSectionDataForElementsInRange(first, last, buffer.data(), (last - first + 1) * size);
            });
        });
    }
}

void copyCaseSection(TransferRun& run, const std::string& name)
{
    const std::string item = "case section '" + name + "'";
    std::vector<int> zones;
    const KelPlainDataType type = run.source.startReadingCaseSectionForCategory(name, zones);
    // A section without zones was named and never filled: the name is all that there is, and has been copied.
    if (!zones.empty()) {
        unsigned64 size = 0;
        const bool isKnown =
            sizeOf(type) != 0 && run.source.hasUniformCaseSectionDataCountForZone(zones.front(), &size) && size > 0;
        if (isKnown) {
            run.target.startWritingCaseSectionDataForCategory(name, zones, type, size);
            copySectionValues(run, item, zones, type, size);
            run.target.endWritingCaseSectionDataForCategory();
            run.settle(KEL_FAMILY_CASE_SECTIONS, "'" + name + "'");
        } else
            run.note(KEL_FAMILY_CASE_SECTIONS, KelLossReason::NotGiven, "'" + name + "'",
                     "the reader gives no type or size");
    }
    run.source.endReadingCaseSectionForCategory();
}

} // namespace

void copyLocalIds(TransferRun& run)
{
    for (const Zone& zone : run.mesh.zones) {
        std::vector<unsigned64> ids(1);
        if (zone.first == 0 || zone.last < zone.first || run.source.getLocalElemIdsInZone(zone.id, ids.data(), 1) == 0)
            continue;
        if (!run.carries(KEL_FAMILY_LOCAL_IDS, zone))
            continue;
        ids.resize(zone.last - zone.first + 1); // only a zone form exists
        const unsigned64 found = run.source.getLocalElemIdsInZone(zone.id, ids.data(), ids.size());
        if (found != ids.size())
            stopShort("local ids", zone, zone.first, zone.last, found, ids.size());
        run.target.setLocalElemIdsInZone(zone.id, ids.data(), ids.size());
        run.settle(KEL_FAMILY_LOCAL_IDS, zoneLabel(zone));
    }
}

void copyCaseSections(TransferRun& run)
{
    for (const KelZoneCategory category : categories) {
        std::vector<std::string> names;
        run.source.startReadingCaseSectionCategories(category, names);
        if (!run.takes(KEL_FAMILY_CASE_SECTIONS))
            for (const std::string& name : names)
                run.carries(KEL_FAMILY_CASE_SECTIONS, "'" + name + "'");
        else if (!names.empty()) {
            run.target.startWritingCaseSectionCategories(category, names);
            for (const std::string& name : names)
                copyCaseSection(run, name);
            run.target.endWritingCaseSectionCategories();
        }
        run.source.endReadingCaseSectionCategories();
    }
}

} // namespace meridyn
