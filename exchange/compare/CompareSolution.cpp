#include "CompareRun.h"

#include <algorithm>
#include <set>

namespace meridyn {

namespace {

using Attributes = std::map<std::string, std::string>;

constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};
const char* const categoryNames[] = {"nodes", "edges", "faces", "cells"};

/// A thing of both models that is found by its name.
template <class Description>
struct Both {
    const Description& first;
    const Description& second;
};

const KelPhaseDescription* findPhase(const KelSolutionDescription& solution, const std::string& name)
{
    for (const KelPhaseDescription& phase : solution.phases)
        if (phase.uniqueName == name)
            return &phase;
    return nullptr;
}

const KelVariableDescription* findVariable(const KelSolutionDescription& solution, short phase, const std::string& name)
{
    for (const KelVariableDescription& variable : solution.variables)
        if (variable.phaseId == phase && variable.uniqueName == name)
            return &variable;
    return nullptr;
}

std::vector<std::string> variableNames(const KelSolutionDescription& solution, short phase)
{
    std::vector<std::string> names;
    for (const KelVariableDescription& variable : solution.variables)
        if (variable.phaseId == phase)
            names.push_back(variable.uniqueName);
    return names;
}

template <class Numbers>
std::string joined(const Numbers& numbers)
{
    std::string list;
    for (const int number : numbers)
        list += (list.empty() ? "" : " ") + std::to_string(number);
    return list;
}

void compareAttributes(CompareRun& run, const std::string& owner, const Attributes& one, const Attributes& other)
{
    const auto namesOf = [](const Attributes& attributes) {
        std::vector<std::string> names;
        for (const auto& [name, value] : attributes)
            names.push_back(name);
        return names;
    };
    for (const std::string& name :
         run.common(KEL_FAMILY_ATTRIBUTES, "attribute of " + owner, namesOf(one), namesOf(other)))
        run.same(KEL_FAMILY_ATTRIBUTES, "'" + name + "' of " + owner, one.at(name), other.at(name));
}

/// Both solutions, and what they have at the time level that is chosen.
class SolutionComparison {
public:
    explicit SolutionComparison(CompareRun& run)
        : _run(run), _one(describeSolution(run.first)), _other(describeSolution(run.second))
    {}

    void compare()
    {
        std::vector<std::string> one, other;
        for (const KelPhaseDescription& phase : _one.phases)
            one.push_back(phase.uniqueName);
        for (const KelPhaseDescription& phase : _other.phases)
            other.push_back(phase.uniqueName);
        for (const std::string& name : _run.common(KEL_FAMILY_PHASES, "phase", one, other)) {
            _phases.push_back({*findPhase(_one, name), *findPhase(_other, name)});
            compareDeclarations(_phases.back());
        }
        compareLevels();
    }

private:
    using PhasePair = Both<KelPhaseDescription>;

    void compareDeclarations(const PhasePair& phase)
    {
        const std::string label = "phase '" + phase.first.uniqueName + "'";
        _run.same(KEL_FAMILY_PHASES, "id of " + label, std::to_string(phase.first.id), std::to_string(phase.second.id));
        compareAttributes(_run, label, phase.first.attributes, phase.second.attributes);
        for (const std::string& name :
             _run.common(KEL_FAMILY_VARIABLES, label + ", variable", variableNames(_one, phase.first.id),
                         variableNames(_other, phase.second.id))) {
            const KelVariableDescription& one = *findVariable(_one, phase.first.id, name);
            const KelVariableDescription& other = *findVariable(_other, phase.second.id, name);
            const std::string variable = "variable '" + name + "' of " + label;
            compareAttributes(_run, variable, one.attributes, other.attributes);
            if (!one.categories.empty() && !other.categories.empty()) // a variable need not say where it lives
                _run.same(KEL_FAMILY_VARIABLES, "zone categories of " + variable, joined(one.categories),
                          joined(other.categories));
        }
    }

    void compareLevels()
    {
        const std::set<int> inOne(_one.timeLevels.begin(), _one.timeLevels.end());
        const std::set<int> inOther(_other.timeLevels.begin(), _other.timeLevels.end());
        std::vector<int> both, bothOfOther;
        for (const int level : _one.timeLevels)
            inOther.count(level) != 0 ? both.push_back(level) : noteLevel(level, "present", "");
        for (const int level : _other.timeLevels)
            inOne.count(level) != 0 ? bothOfOther.push_back(level) : noteLevel(level, "", "present");
        _run.same(KEL_FAMILY_TIME_LEVELS, "order of time levels", joined(both), joined(bothOfOther));
        if (inOne.empty() && inOther.empty())
            return compareLevel();
        compareNoLevel();
        for (const int level : both) {
            _run.first.startReadingTimeLevel(level);
            _run.second.startReadingTimeLevel(level);
            _run.level = level;
            compareLevel();
            _run.level.reset();
        }
    }

    void noteLevel(int level, const char* inOne, const char* inOther)
    {
        _run.level = level;
        _run.differ(KEL_FAMILY_TIME_LEVELS, "data", 0, inOne, inOther);
        _run.level.reset();
    }

    /// What lies at no time level, of models that have levels.
    void compareNoLevel()
    {
        const auto ledger = [](KelProvider& model) { return dynamic_cast<KelSourceLedger*>(&model); };
        KelSourceLedger* const one = ledger(_run.first);
        KelSourceLedger* const other = ledger(_run.second);
        const bool inOne = one != nullptr && (one->hasDataAtNoLevel() || (_one.timeLevels.empty()));
        const bool inOther = other != nullptr && (other->hasDataAtNoLevel() || (_other.timeLevels.empty()));
        if (inOne != inOther)
            _run.differ(KEL_FAMILY_TIME_LEVELS, "what lies at no time level", 0, inOne ? "present" : "",
                        inOther ? "present" : "");
        if (!inOne || !inOther)
            return;
        one->chooseNoLevel(true);
        other->chooseNoLevel(true);
        compareLevel();
        one->chooseNoLevel(false);
        other->chooseNoLevel(false);
    }

    void compareLevel()
    {
        for (const PhasePair& phase : _phases) {
            const std::string& name = phase.first.uniqueName;
            const bool one = _run.first.startReadingPhase(phase.first.id);
            const bool other = _run.second.startReadingPhase(phase.second.id);
            if (one != other)
                _run.differ(KEL_FAMILY_PHASES, "phase '" + name + "'", 0, one ? "readable" : "",
                            other ? "readable" : "");
            if (!one || !other)
                continue;
            const std::vector<std::string> inOther = variableNames(_other, phase.second.id);
            for (const std::string& variable : variableNames(_one, phase.first.id))
                if (std::find(inOther.begin(), inOther.end(), variable) != inOther.end())
                    for (const KelZoneCategory category : categories)
                        compareValues(name, variable, category);
            compareSetData(_run, name);
            compareParticleTracks(_run, phase.first.id, phase.second.id, name);
        }
        compareSets(_run, KEL_DATA);
    }

    void compareValues(const std::string& phase, const std::string& name, KelZoneCategory category)
    {
        constexpr KelFormatFamily family = KEL_FAMILY_VARIABLES;
        std::vector<int> zonesOne, zonesOther;
        const unsigned64 one = _run.first.startReadingZonesOfCategoryWithPhaseVariable(category, name, zonesOne);
        const unsigned64 other = _run.second.startReadingZonesOfCategoryWithPhaseVariable(category, name, zonesOther);
        const std::string variable = "variable '" + name + "' of phase '" + phase + "'";
        if (!_run.same(family, std::string("values per element on ") + categoryNames[category] + " of " + variable,
                       std::to_string(one), std::to_string(other)) ||
            one == 0)
            return;
        compareTypes(variable);
        const std::set<int> inOne(zonesOne.begin(), zonesOne.end()), inOther(zonesOther.begin(), zonesOther.end());
        for (const auto* const zones : {&inOne, &inOther})
            for (const int zone : *zones)
                if (inOne.count(zone) != inOther.count(zone))
                    _run.differ(family, variable + ", zone " + std::to_string(zone), 0,
                                inOne.count(zone) != 0 ? "present" : "", inOther.count(zone) != 0 ? "present" : "");
        for (const KelZoneDescription& zone : _run.zones(category))
            if (inOne.count(zone.id) != 0 && inOther.count(zone.id) != 0)
                compareValuesIn(zone, variable, one);
    }

    /// Float against double, where both readers know.
    void compareTypes(const std::string& variable)
    {
        const auto typeOf = [](const KelProvider& model) {
            const KelSourceLedger* const ledger = ledgerOf(model);
            const int type = ledger != nullptr ? ledger->storedType(KelArray::PhaseVariable) : -1;
            return type == KEL_PLAIN_FLOAT ? "float" : type == KEL_PLAIN_DOUBLE ? "double" : "";
        };
        const std::string one = typeOf(_run.first), other = typeOf(_run.second);
        if (!one.empty() && !other.empty())
            _run.same(KEL_FAMILY_VARIABLES, "type of " + variable, one, other);
    }

    void compareValuesIn(const KelZoneDescription& zone, const std::string& variable, unsigned64 size)
    {
        _run.compareArray<double>(
            {KEL_FAMILY_VARIABLES, variable + ", " + zoneLabel(zone), size, false,
             [](KelProvider& model, unsigned64 from, unsigned64 to, double* values, unsigned64 room) {
                 return model.getValuesOfPhaseVariableForElementsInRange(from, to, values, room);
             },
             [&zone](const KelProvider& model) {
                 const KelSourceLedger* const ledger = ledgerOf(model);
                 return ledger != nullptr ? ledger->elementsWithValues(KelArray::PhaseVariable, zone.first, zone.last)
                                          : std::nullopt;
             }},
            zone);
    }

    CompareRun& _run;
    const KelSolutionDescription _one, _other;
    std::vector<PhasePair> _phases;
};

} // namespace

void compareSolution(CompareRun& run)
{
    SolutionComparison(run).compare();
}

} // namespace meridyn
