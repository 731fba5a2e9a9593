#include "KelValueTypes.h"
#include "TransferRun.h"

#include <vector>

namespace meridyn {

namespace {

using Zone = TransferRun::ZoneRange;

void copyLocalIdsOf(TransferRun& run, KelZoneCategory category)
{
    for (const Zone& zone : run.zonesWithElements(category)) {
        std::vector<unsigned64> ids(1);
        if (run.source.getLocalElemIdsInZone(zone.id, ids.data(), 1) == 0)
            continue;
        if (!run.carries(KEL_FAMILY_LOCAL_IDS, zoneLabel(run.source, zone.id)))
            continue;
        ids.resize(zone.last - zone.first + 1); // only a zone form exists
        const unsigned64 found = run.source.getLocalElemIdsInZone(zone.id, ids.data(), ids.size());
        if (found != ids.size())
            stopShort("local ids", run.source, zone.id, zone.first, zone.last, found, ids.size());
        run.target.setLocalElemIdsInZone(zone.id, ids.data(), ids.size());
    }
}

std::size_t sizeOf(KelPlainDataType type)
{
    std::size_t size = 0;
    visitPlainType(type, [&size](auto* null) { size = sizeof(*null); });
    return size;
}

void copyCaseSection(TransferRun& run, const std::string& name)
{
    KelProvider& from = run.source;
    KelConsumer& to = run.target;
    std::vector<int> zones;
    const KelPlainDataType type = from.startReadingCaseSectionForCategory(name, zones);
    unsigned64 size = 0;
    if (sizeOf(type) != 0 && !zones.empty() && from.hasUniformCaseSectionDataCountForZone(zones.front(), &size) &&
        size > 0) {
        to.startWritingCaseSectionDataForCategory(name, zones, type, size);
        std::vector<char> buffer;
        for (const int id : zones) {
            Zone zone{id, 0, 0};
            from.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
            from.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
            if (zone.first == 0 || zone.last < zone.first)
                continue;
            run.forChunks("case section '" + name + "'", zone, size, sizeOf(type),
                          [&](unsigned64 first, unsigned64 last) {
                              const unsigned64 count = (last - first + 1) * size;
                              buffer.resize(count * sizeOf(type));
                              const unsigned64 found =
                                  from.getCaseSectionDataForElementsInRange(first, last, buffer.data(), count);
                              if (found != count)
                                  stopShort("case section '" + name + "'", from, id, first, last, found, count);
                              to.setCaseSectionDataForElementsInRange(first, last, buffer.data(), count);
                          });
        }
        to.endWritingCaseSectionDataForCategory();
    } else
        run.note(KEL_FAMILY_CASE_SECTIONS, "'" + name + "'", "the reader gives no type, size or zones");
    from.endReadingCaseSectionForCategory();
}

} // namespace

void copyLocalIds(TransferRun& run)
{
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        copyLocalIdsOf(run, category);
}

void copyCaseSections(TransferRun& run)
{
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
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
