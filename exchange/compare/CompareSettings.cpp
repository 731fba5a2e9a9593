#include "CompareRun.h"
#include "KelLocationModel.h"

#include <set>
#include <utility>

namespace meridyn {

namespace {

/// The keys of a group without those in which every writer says something of itself, which is no part of the model.
std::vector<std::string> keysOf(const KelProvider& model, KelDataClass dataClass, const std::string& group)
{
    static const std::set<std::string> written = {"Solver", "Version", "Origin"};
    std::vector<std::string> keys;
    model.getSettingsKeysOfGroup(dataClass, group, keys);
    if (group == KelBase::_defaultSettingsPath)
        std::erase_if(keys, [](const std::string& key) { return written.count(key) != 0; });
    return keys;
}

void compareLog(CompareRun& run, KelDataClass dataClass)
{
    using Entries = std::vector<std::pair<std::string, std::string>>;
    Entries one, other;
    run.first.getLog(dataClass, one);
    run.second.getLog(dataClass, other);
    run.same(KEL_FAMILY_LOG, "number of log entries", std::to_string(one.size()), std::to_string(other.size()));
    for (std::size_t n = 0; n < std::min(one.size(), other.size()); ++n) {
        const std::string of = " of log entry " + std::to_string(n + 1);
        run.same(KEL_FAMILY_LOG, "title" + of, one[n].first, other[n].first);
        run.same(KEL_FAMILY_LOG, "text" + of, one[n].second, other[n].second);
    }
}

} // namespace

void compareSettings(CompareRun& run, KelDataClass dataClass)
{
    std::vector<std::string> groupsOne, groupsOther;
    run.first.getSettingsGroups(dataClass, groupsOne);
    run.second.getSettingsGroups(dataClass, groupsOther);
    // A group without keys says nothing; a model need not have it.
    std::set<std::string> groups(groupsOne.begin(), groupsOne.end());
    groups.insert(groupsOther.begin(), groupsOther.end());
    for (const std::string& group : groups) {
        const std::string of = "group '" + group + "', setting";
        for (const std::string& key : run.common(KEL_FAMILY_SETTINGS, of, keysOf(run.first, dataClass, group),
                                                 keysOf(run.second, dataClass, group))) {
            std::string textOne, textOther;
            run.first.getSettingString(dataClass, key, textOne, group);
            run.second.getSettingString(dataClass, key, textOther, group);
            run.same(KEL_FAMILY_SETTINGS, "setting '" + key + "' of group '" + group + "'", textOne, textOther);
        }
    }
    compareLog(run, dataClass);
}

void compareLocations(CompareRun& run, KelDataClass dataClass)
{
    const auto stateOf = [dataClass](const KelProvider& model) -> std::string {
        const KelSourceLedger* const ledger = ledgerOf(model);
        const auto told = ledger != nullptr ? ledger->locationState(dataClass) : std::nullopt;
        if (dataClass == KEL_CASE)
            return model.getLocationModel()->state();
        return told && *told != KelLocationModel().state() ? *told : "";
    };
    const std::string one = stateOf(run.first), other = stateOf(run.second);
    if (one != other)
        run.differ(KEL_FAMILY_LOCATIONS, "location model", 0, "a state of " + std::to_string(one.size()) + " bytes",
                   "another of " + std::to_string(other.size()) + " bytes");
}

} // namespace meridyn
