#include "KelLocationModel.h"
#include "TransferRun.h"

#include <algorithm>
#include <utility>

namespace meridyn {

/// Whether every writer writes the setting itself when it ends.
static bool isCommonSetting(const std::string& key)
{
    return key == "Solver" || key == "Version" || key == "Origin";
}

void copySettings(TransferRun& run, KelDataClass dataClass)
{
    const std::string of = dataClass == KEL_CASE ? " of the case" : " of the data";
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    std::vector<std::string> groups;
    run.source.getSettingsGroups(dataClass, groups);
    for (const std::string& group : groups) {
        std::vector<std::string> keys;
        run.source.getSettingsKeysOfGroup(dataClass, group, keys);
        const bool isCommonGroup = group == KelBase::_defaultSettingsPath;
        if (isCommonGroup)
            keys.erase(std::remove_if(keys.begin(), keys.end(), isCommonSetting), keys.end());
        if ((keys.empty() && isCommonGroup) || !run.carries(KEL_FAMILY_SETTINGS, "group '" + group + "'" + of))
            continue;
        Pairs pairs;
        for (const std::string& key : keys) {
            std::string text;
            run.source.getSettingString(dataClass, key, text, group);
            pairs.emplace_back(key, text);
        }
        run.target.writeSettingStrings(pairs, dataClass, group);
        run.settle(KEL_FAMILY_SETTINGS, "group '" + group + "'" + of);
    }
    Pairs entries;
    run.source.getLog(dataClass, entries);
    const std::string item = std::to_string(entries.size()) + (entries.size() == 1 ? " entry" : " entries") + of;
    if (!entries.empty() && run.carries(KEL_FAMILY_LOG, item)) {
        run.target.log(entries, dataClass);
        run.settle(KEL_FAMILY_LOG, item);
    }
}

/// Data have locations of their own only if the reader says so; those of the case belong to both.
void copyLocations(TransferRun& run, KelDataClass dataClass)
{
    KelLocationModel ofData;
    const KelLocationModel* model = nullptr;
    if (dataClass == KEL_CASE)
        model = run.source.getLocationModel();
    else if (const auto state = run.ledger != nullptr ? run.ledger->locationState(KEL_DATA) : std::nullopt)
        model = !state->empty() && ofData.reset(*state) ? &ofData : nullptr;
    if (model == nullptr || model->state() == KelLocationModel().state())
        return;
    std::vector<int> parts;
    model->getParts(parts);
    const std::string item = std::to_string(parts.size()) + (parts.size() == 1 ? " part" : " parts") +
                             (dataClass == KEL_CASE ? "" : " of the data");
    if (run.carries(KEL_FAMILY_LOCATIONS, item)) {
        run.target.setLocationModel(model);
        run.settle(KEL_FAMILY_LOCATIONS, item);
    }
}

} // namespace meridyn
