#include "core/DataInterface.h"
#include "core/Report.h"
#include "KelBase.h"

#include <algorithm>

namespace meridyn {

static bool hasRepeats(std::vector<int> ids)
{
    std::sort(ids.begin(), ids.end());
    return std::adjacent_find(ids.begin(), ids.end()) != ids.end();
}

unsigned64 KelBase::getNumZones(KelZoneCategory category) const
{
    const ZoneTable* const table = _data->zones->ofCategory(category);
    if (table == nullptr) {
        printLine("Warning: KelBase::getNumZones: Invalid ZoneCategory.");
        return 0;
    }
    return table->ids().size();
}

void KelBase::getZoneIds(KelZoneCategory category, std::vector<int>& ids) const
{
    const ZoneTable* const table = _data->zones->ofCategory(category);
    if (table == nullptr) {
        printLine("Warning: KelBase::getZoneIds: Invalid ZoneCategory.");
        ids.clear();
        return;
    }
    ids = table->ids();
}

void KelBase::setZoneIds(KelZoneCategory category, const std::vector<int>& ids)
{
    if (hasRepeats(ids)) {
        printLine("Warning: KelBase::setZoneIds: Repeated Id supplied.");
        return;
    }
    for (const int id : ids) {
        const KelZoneCategory known = getZoneCategory(id);
        if (known != -1 && known != category) {
            printLine("Warning: KelBase::setZoneIds: Unable to define with Id '" + std::to_string(id) +
                      "' as it is already in use.");
            return;
        }
    }
    ZoneTable* const table = _data->zones->ofCategory(category);
    if (table == nullptr) {
        printLine("Warning: KelBase::setZoneIds: Invalid ZoneCategory.");
        return;
    }
    table->reset(ids);
    // kept: ids that the category had and that are not in the list keep their category
    setZoneCategory(ids, category);
}

KelZoneCategory KelBase::getZoneCategory(int zoneId) const
{
    return _data->categoryOf(zoneId);
}

void KelBase::setZoneCategory(const std::vector<int>& zoneIds, KelZoneCategory category)
{
    for (const int id : zoneIds) {
        _data->zoneCategories[id] = category;
    }
}

void KelBase::setZoneSizeInfo(int zoneId, KelZoneSizeType type, unsigned64 value)
{
    ZoneTable* const table = _data->tableOf(zoneId);
    if (table == nullptr) {
        printInvalidId("Warning: KelBase::setZoneSizeInfo: Invalid zone id (", zoneId);
        return;
    }
    table->setSize(zoneId, type, value);
}

void KelBase::getZoneSizeInfo(int zoneId, KelZoneSizeType type, unsigned64& value) const
{
    value = 0;
    const ZoneTable* const table = _data->tableOf(zoneId);
    if (table == nullptr) {
        printInvalidId("Warning: KelBase::getZoneSizeInfo: Invalid zone id (", zoneId);
        return;
    }
    value = table->getSize(zoneId, type);
}

void KelBase::setZoneStringInfo(int zoneId, KelZoneStringInfoType type, const std::string& text)
{
    ZoneTable* const table = _data->tableOf(zoneId);
    if (table != nullptr) { // kept: silent otherwise, unlike the getter
        table->setString(zoneId, type, text);
    }
}

void KelBase::getZoneStringInfo(int zoneId, KelZoneStringInfoType type, std::string& text) const
{
    const ZoneTable* const table = _data->tableOf(zoneId);
    if (table == nullptr) {
        printInvalidId("Warning: KelBase::getZoneStringInfo: Invalid zone id (", zoneId);
        return; // kept: the text stays as it was
    }
    text = table->getString(zoneId, type);
}

void KelBase::getSortedMinIdZoneId(KelZoneCategory category, std::vector<std::pair<unsigned64, int>>& zones) const
{
    const ZoneTable* const table = _data->zones->ofCategory(category);
    if (table == nullptr) {
        return; // kept: silent
    }
    const std::vector<int>& ids = table->ids();
    const std::vector<unsigned64>& firstIds = table->firstIds();
    std::vector<unsigned64> sorted = firstIds;
    std::sort(sorted.begin(), sorted.end());
    zones.resize(ids.size());
    for (std::size_t i = 0; i < ids.size(); ++i) {
        // kept: zones with the same first id share the first of their slots, and the others are not written
        const auto slot = std::lower_bound(sorted.begin(), sorted.end(), firstIds[i]) - sorted.begin();
        zones[static_cast<std::size_t>(slot)] = {firstIds[i], ids[i]};
    }
}

} // namespace meridyn
