#include "TransferRun.h"

#include <algorithm>
#include <utility>

namespace meridyn {

TransferRun::TransferRun(KelProvider& from, KelConsumer& to, KelFormatFamilies families, KelTransfer::Progress ask,
                         unsigned64 chunkValues, KelLossReport& report)
    : source(from), target(to), chunkSize(chunkValues), _families(families), _ask(std::move(ask)), _report(report)
{}

bool TransferRun::carries(KelFormatFamily family, const std::string& item)
{
    if (!takes(family))
        note(family, item, "not carried by the format");
    return takes(family);
}

void TransferRun::note(KelFormatFamily family, const std::string& item, const std::string& reason)
{
    if (_noted.emplace(family, item).second) // once, also where each time level asks again
        _report.add(formatFamilyName(family), item, reason);
}

void TransferRun::refused(KelFormatFamily family, const std::string& item)
{
    note(family, item, "refused by the writer");
}

void TransferRun::tell(const std::string& task, unsigned64 done, unsigned64 total, unsigned64 newBytes)
{
    _bytes += newBytes;
    if (_ask && !_ask({task, done, total, _bytes}))
        throw TransferStopped("cancelled at " + task, true);
}

std::vector<TransferRun::ZoneRange> TransferRun::zonesWithElements(KelZoneCategory category) const
{
    std::vector<int> ids;
    source.getZoneIds(category, ids);
    std::vector<ZoneRange> zones;
    for (const int id : ids) {
        ZoneRange zone{id, 0, 0};
        source.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        source.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        if (zone.first != 0 && zone.last >= zone.first)
            zones.push_back(zone);
    }
    std::sort(zones.begin(), zones.end(), [](const ZoneRange& a, const ZoneRange& b) { return a.first < b.first; });
    return zones;
}

std::vector<int> TransferRun::idsOf(const std::vector<ZoneRange>& zones)
{
    std::vector<int> ids;
    ids.reserve(zones.size());
    for (const ZoneRange& zone : zones)
        ids.push_back(zone.id);
    return ids;
}

std::string storedErrors(KelBase& base, const std::string& otherwise)
{
    std::string text;
    for (const std::string& error : base.getErrors(false, false))
        text += (text.empty() ? "" : "; ") + error;
    return text.empty() ? otherwise : text;
}

std::vector<int> zoneNumbers(const KelBase& base, KelZoneCategory category, int zone)
{
    std::vector<int> numbers(7, 0);
    switch (category) {
    case KEL_NODE_ZONE:
        base.getNodeZoneInfo(zone, KEL_NODE_ZONE_INFO_0, numbers[0]);
        break;
    case KEL_EDGE_ZONE:
        base.getEdgeZoneInfo(zone, KEL_EDGE_ZONE_INFO_0, numbers[0]);
        base.getEdgeZoneInfo(zone, KEL_EDGE_ZONE_INFO_1, numbers[1]);
        break;
    case KEL_FACE_ZONE:
        for (int type = KEL_FACE_ZONE_INFO_0; type <= KEL_FACE_ZONE_INFO_TYPE; ++type)
            base.getFaceZoneInfo(zone, static_cast<KelFaceZoneInfoType>(type), numbers[static_cast<std::size_t>(type)]);
        base.getAllFaceZoneFlags(zone, numbers[6]);
        break;
    case KEL_CELL_ZONE:
        base.getCellZoneInfo(zone, KEL_CELL_ZONE_INFO_0, numbers[0]);
        base.getCellZoneInfo(zone, KEL_CELL_ZONE_INFO_1, numbers[1]);
        break;
    }
    return numbers;
}

std::string zoneLabel(const KelBase& base, int zoneId)
{
    std::string name;
    base.getZoneStringInfo(zoneId, KEL_ZONE_STRING_0, name);
    return "zone " + std::to_string(zoneId) + (name.empty() ? "" : " '" + name + "'");
}

void stopShort(const std::string& what, unsigned64 found, unsigned64 expected)
{
    throw TransferStopped(
        what + ": the reader gave " + std::to_string(found) + " values, expected " + std::to_string(expected), false);
}

void stopShort(const std::string& task, const KelBase& source, int zone, unsigned64 first, unsigned64 last,
               unsigned64 found, unsigned64 expected)
{
    stopShort(task + " of " + zoneLabel(source, zone) + ", ids " + std::to_string(first) + " to " +
                  std::to_string(last),
              found, expected);
}

} // namespace meridyn
