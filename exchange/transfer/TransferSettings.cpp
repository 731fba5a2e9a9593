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
        if (group == KelBase::_defaultSettingsPath)
            keys.erase(std::remove_if(keys.begin(), keys.end(), isCommonSetting), keys.end());
        if (keys.empty() || !run.carries(KEL_FAMILY_SETTINGS, "group '" + group + "'" + of))
            continue;
        Pairs pairs;
        for (const std::string& key : keys) {
            std::string text;
            run.source.getSettingString(dataClass, key, text, group);
            pairs.emplace_back(key, text);
        }
        run.target.writeSettingStrings(pairs, dataClass, group);
    }
    Pairs entries;
    run.source.getLog(dataClass, entries);
    if (!entries.empty() && run.carries(KEL_FAMILY_LOG, std::to_string(entries.size()) + " entries" + of))
        run.target.log(entries, dataClass);
}

void copyLocations(TransferRun& run)
{
    const KelLocationModel* model = run.source.getLocationModel();
    std::vector<int> parts;
    model->getParts(parts);
    if (model->state() != KelLocationModel().state() &&
        run.carries(KEL_FAMILY_LOCATIONS, std::to_string(parts.size()) + " parts"))
        run.target.setLocationModel(model);
}

} // namespace meridyn
