#include "CompareRun.h"
#include "formats/common/BaseAccess.h"
#include "KelSolutionModel.h"

#include <algorithm>
#include <set>
#include <utility>

namespace meridyn {

namespace {

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

std::vector<std::string> phaseNames(const KelProvider& model)
{
    std::vector<short> ids;
    model.getPhaseIds(ids);
    std::vector<std::string> names;
    names.reserve(ids.size());
    for (const short id : ids)
        names.push_back(model.getPhaseName(id));
    return names;
}

short phaseId(const KelProvider& model, const std::string& name)
{
    short id = 0;
    BaseAccess::model(model).findPhaseByUniqueName(name, id);
    return id;
}

std::vector<std::string> variableNames(const KelProvider& model, short phase)
{
    std::vector<int> ids;
    BaseAccess::model(model).getVariables(phase, ids);
    std::vector<std::string> names;
    for (const int id : ids) {
        names.emplace_back();
        BaseAccess::model(model).getUniqueNameOfVariable(id, names.back());
    }
    return names;
}

/// Compares attributes; `get(model, attribute, value)` gives one, `list(model, names)` their names.
template <class List, class Get>
void compareAttributes(CompareRun& run, const std::string& owner, const List& list, const Get& get)
{
    std::vector<std::string> one, other;
    list(run.first, one);
    list(run.second, other);
    std::set<std::string> names(one.begin(), one.end());
    names.insert(other.begin(), other.end());
    names.insert("Dataset Name");
    for (const std::string& name : names) {
        std::string valueOne, valueOther;
        get(run.first, name, valueOne);
        get(run.second, name, valueOther);
        run.same(KEL_FAMILY_ATTRIBUTES, "'" + name + "' of " + owner, valueOne, valueOther);
    }
}

void compareValuesOf(CompareRun& run, const std::string& phase, const std::string& name, const std::string& when)
{
    for (const KelZoneCategory category : categories) {
        std::vector<int> zonesOne, zonesOther;
        const unsigned64 one = run.first.startReadingZonesOfCategoryWithPhaseVariable(category, name, zonesOne);
        const unsigned64 other = run.second.startReadingZonesOfCategoryWithPhaseVariable(category, name, zonesOther);
        const std::string variable = "variable '" + name + "' of phase '" + phase + "'" + when;
        if (!run.same(KEL_FAMILY_VARIABLES, "values per element of " + variable, std::to_string(one),
                      std::to_string(other)) ||
            one == 0)
            continue;
        for (const CompareRun::Zone& zone : run.zones(category)) {
            const bool inOne = std::find(zonesOne.begin(), zonesOne.end(), zone.id) != zonesOne.end();
            const bool inOther = std::find(zonesOther.begin(), zonesOther.end(), zone.id) != zonesOther.end();
            const std::string item = variable + ", " + zone.label;
            if (inOne != inOther)
                run.differ(KEL_FAMILY_VARIABLES, item, 0, inOne ? "present" : "", inOther ? "present" : "");
            else if (inOne)
                run.compareArray<double>(KEL_FAMILY_VARIABLES, item, zone, one,
                                         [](auto& m, auto a, auto b, auto* v, auto n) {
                                             return m.getValuesOfPhaseVariableForElementsInRange(a, b, v, n);
                                         });
        }
    }
}

void comparePhase(CompareRun& run, const std::string& phase)
{
    const short one = phaseId(run.first, phase), other = phaseId(run.second, phase);
    compareAttributes(
        run, "phase '" + phase + "'", [&](KelProvider& m, auto& names) { m.getAttributesOfPhase(phase, names); },
        [&](KelProvider& m, const auto& name, auto& value) {
            // Every writer gives a phase its name as the long one, also where the source has none.
            if (!m.getAttributeValueOfPhase(phase, name, value) && name == "Long Name")
                value = phase;
        });
    for (const std::string& variable : run.common(KEL_FAMILY_VARIABLES, "phase '" + phase + "', variable",
                                                  variableNames(run.first, one), variableNames(run.second, other)))
        compareAttributes(
            run, "variable '" + variable + "' of phase '" + phase + "'",
            [&](KelProvider& m, auto& names) { m.getAttributesOfPhaseVariable(phase, variable, names); },
            [&](KelProvider& m, const auto& name, auto& value) {
                m.getAttributeValueOfPhaseVariable(phase, variable, name, value);
            });
}

void comparePhaseAt(CompareRun& run, const std::string& phase, const std::string& when)
{
    const short one = phaseId(run.first, phase), other = phaseId(run.second, phase);
    if (!run.first.startReadingPhase(one) || !run.second.startReadingPhase(other))
        return;
    const std::vector<std::string> inOther = variableNames(run.second, other);
    for (const std::string& variable : variableNames(run.first, one))
        if (std::find(inOther.begin(), inOther.end(), variable) != inOther.end())
            compareValuesOf(run, phase, variable, when);
    compareSetData(run, phase);
    compareParticleTracks(run, one, other, phase);
}

void compareLevel(CompareRun& run, const std::vector<std::string>& phases, const std::string& when)
{
    for (const std::string& phase : phases)
        comparePhaseAt(run, phase, when);
    compareSets(run, KEL_DATA);
}

} // namespace

void compareSolution(CompareRun& run)
{
    const std::vector<std::string> phases =
        run.common(KEL_FAMILY_PHASES, "phase", phaseNames(run.first), phaseNames(run.second));
    for (const std::string& phase : phases)
        comparePhase(run, phase);

    const std::vector<int> one = run.first.getTimeLevels(), other = run.second.getTimeLevels();
    const std::set<int> inOne(one.begin(), one.end()), inOther(other.begin(), other.end());
    for (const int level : inOther)
        if (inOne.count(level) == 0)
            run.differ(KEL_FAMILY_TIME_LEVELS, "time level " + std::to_string(level), 0, "", "present");
    if (inOne.empty() && inOther.empty())
        compareLevel(run, phases, "");
    for (const int level : inOne)
        if (inOther.count(level) == 0)
            run.differ(KEL_FAMILY_TIME_LEVELS, "time level " + std::to_string(level), 0, "present", "");
        else {
            run.first.startReadingTimeLevel(level);
            run.second.startReadingTimeLevel(level);
            compareLevel(run, phases, ", time level " + std::to_string(level));
        }
}

void compareSettings(CompareRun& run, KelDataClass dataClass)
{
    // What every writer says about itself is no part of the model.
    static const std::set<std::string> written = {"Solver", "Version", "Origin"};
    std::vector<std::string> groupsOne, groupsOther;
    run.first.getSettingsGroups(dataClass, groupsOne);
    run.second.getSettingsGroups(dataClass, groupsOther);
    std::set<std::string> groups(groupsOne.begin(), groupsOne.end());
    groups.insert(groupsOther.begin(), groupsOther.end());
    for (const std::string& group : groups) {
        std::vector<std::string> one, other;
        run.first.getSettingsKeysOfGroup(dataClass, group, one);
        run.second.getSettingsKeysOfGroup(dataClass, group, other);
        const bool isCommon = group == KelBase::_defaultSettingsPath;
        for (std::vector<std::string>* keys : {&one, &other})
            keys->erase(std::remove_if(keys->begin(), keys->end(),
                                       [&](const std::string& key) { return isCommon && written.count(key) != 0; }),
                        keys->end());
        for (const std::string& key : run.common(KEL_FAMILY_SETTINGS, "group '" + group + "', setting", one, other)) {
            std::string textOne, textOther;
            run.first.getSettingString(dataClass, key, textOne, group);
            run.second.getSettingString(dataClass, key, textOther, group);
            run.same(KEL_FAMILY_SETTINGS, "setting '" + key + "' of group '" + group + "'", textOne, textOther);
        }
    }
    using Entries = std::vector<std::pair<std::string, std::string>>;
    Entries one, other;
    run.first.getLog(dataClass, one);
    run.second.getLog(dataClass, other);
    if (one != other)
        run.differ(KEL_FAMILY_LOG, "log", 0, std::to_string(one.size()) + " entries",
                   std::to_string(other.size()) + " entries");
}

} // namespace meridyn
