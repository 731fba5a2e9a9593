#include "formats/common/BaseAccess.h"
#include "KelSolutionModel.h"
#include "TransferRun.h"

#include <algorithm>
#include <limits>

namespace meridyn {

namespace {

constexpr short mixtureId = -1;

/// One copied phase or variable: its id here and there.
template <class Id>
struct Pair {
    Id source;
    Id target;
};

/// Registers phases and variables on the target and copies their values; one object for one data set.
class SolutionCopy {
public:
    explicit SolutionCopy(TransferRun& run) : _run(run) {}

    void registerAll();
    void copyValues();

private:
    void registerPhases();
    void registerVariables(const Pair<short>& phase);
    bool carriesAttribute(const std::string& attribute, const std::string& value, const std::string& owner,
                          const std::string& item);
    void copyAttributesOfPhase(const Pair<short>& phase, const std::string& name);
    void copyAttributesOfVariable(const Pair<int>& variable, const std::string& name);
    void copyVariable(KelZoneCategory category, const Pair<int>& variable, const std::string& name);
    void copyPhase(const Pair<short>& phase);
    int targetOf(int sourceVariable) const;

    TransferRun& _run;
    std::vector<Pair<short>> _phases;
    std::map<int, int> _variables;
};

/// The attributes by name, "Dataset Name" included, which the lists leave out.
std::vector<std::string> withDatasetName(std::vector<std::string> names)
{
    if (std::find(names.begin(), names.end(), "Dataset Name") == names.end())
        names.emplace_back("Dataset Name");
    return names;
}

void SolutionCopy::registerAll()
{
    registerPhases();
    for (const Pair<short>& phase : _phases)
        registerVariables(phase);
}

void SolutionCopy::registerPhases()
{
    std::vector<short> ids, targetIds;
    std::vector<std::string> names;
    _run.source.getPhaseIds(ids);
    const bool hasMixture = std::find(ids.begin(), ids.end(), mixtureId) != ids.end();
    ids.erase(std::remove(ids.begin(), ids.end(), mixtureId), ids.end());
    for (const short id : ids) {
        names.push_back(static_cast<const KelProvider&>(_run.source).getPhaseName(id));
        _run.carries(KEL_FAMILY_PHASES, "'" + names.back() + "'");
    }
    if (!_run.target.setPhaseNames(names, targetIds))
        throw TransferStopped("the writer refused the phases", false);
    for (std::size_t n = 0; n < ids.size(); ++n)
        _phases.push_back({ids[n], targetIds[n]});
    for (std::size_t n = 0; n < ids.size(); ++n)
        copyAttributesOfPhase(_phases[n], names[n]);
    if (hasMixture) // the target's comes into being with its first variable
        _phases.push_back({mixtureId, mixtureId});
}

/// Whether the target carries attributes; if not, the attribute is a loss unless it repeats the name, as both names do
/// that every phase and variable begins with.
bool SolutionCopy::carriesAttribute(const std::string& attribute, const std::string& value, const std::string& owner,
                                    const std::string& item)
{
    const bool isGiven = (attribute == "Dataset Name" || attribute == "Long Name") && value == owner;
    return isGiven ? _run.takes(KEL_FAMILY_ATTRIBUTES) : _run.carries(KEL_FAMILY_ATTRIBUTES, item);
}

void SolutionCopy::copyAttributesOfPhase(const Pair<short>& phase, const std::string& name)
{
    std::vector<std::string> attributes;
    _run.source.getAttributesOfPhase(phase.source, attributes);
    for (const std::string& attribute : withDatasetName(attributes)) {
        const std::string item = "'" + attribute + "' of phase '" + name + "'";
        std::string value;
        if (_run.source.getAttributeValueOfPhase(phase.source, attribute, value) &&
            carriesAttribute(attribute, value, name, item) &&
            !_run.target.setAttributeValueOfPhase(phase.target, attribute, value))
            _run.refused(KEL_FAMILY_ATTRIBUTES, item);
    }
}

void SolutionCopy::registerVariables(const Pair<short>& phase)
{
    const KelSolutionModel& model = BaseAccess::model(_run.source);
    std::vector<int> ids;
    model.getVariables(phase.source, ids);
    for (const int id : ids) {
        std::string name;
        model.getUniqueNameOfVariable(id, name);
        int targetId = 0;
        if (!_run.carries(KEL_FAMILY_VARIABLES, "'" + name + "'"))
            continue;
        if (!_run.target.addPhaseVariable(phase.target, name, targetId)) {
            _run.refused(KEL_FAMILY_VARIABLES, "'" + name + "'");
            continue;
        }
        _variables[id] = targetId;
        copyAttributesOfVariable({id, targetId}, name);
    }
}

void SolutionCopy::copyAttributesOfVariable(const Pair<int>& variable, const std::string& name)
{
    std::vector<std::string> attributes;
    _run.source.getAttributesOfPhaseVariable(variable.source, attributes);
    for (const std::string& attribute : withDatasetName(attributes)) {
        const std::string item = "'" + attribute + "' of variable '" + name + "'";
        std::string value;
        if (_run.source.getAttributeValueOfPhaseVariable(variable.source, attribute, value) &&
            carriesAttribute(attribute, value, name, item) &&
            !_run.target.setAttributeValueOfPhaseVariable(variable.target, attribute, value))
            _run.refused(KEL_FAMILY_ATTRIBUTES, item);
    }
}

int SolutionCopy::targetOf(int sourceVariable) const
{
    const auto found = _variables.find(sourceVariable);
    return found != _variables.end() ? found->second : 0;
}

void SolutionCopy::copyValues()
{
    for (const Pair<short>& phase : _phases)
        if (_run.source.startReadingPhase(phase.source)) {
            _run.target.startWritingPhase(phase.target);
            copyPhase(phase);
            _run.target.endWritingPhase();
        }
}

void SolutionCopy::copyPhase(const Pair<short>& phase)
{
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids, targetIds;
        _run.source.getPhaseVariablesOfCategory(category, ids);
        ids.erase(std::remove_if(ids.begin(), ids.end(), [this](int id) { return _variables.count(id) == 0; }),
                  ids.end());
        std::transform(ids.begin(), ids.end(), std::back_inserter(targetIds), [this](int id) { return targetOf(id); });
        if (ids.empty())
            continue;
        if (!_run.target.setPhaseVariablesOfCategory(category, targetIds))
            _run.refused(KEL_FAMILY_VARIABLES, "the list of a zone category");
        for (const int id : ids) {
            std::string name;
            BaseAccess::model(_run.source).getUniqueNameOfVariable(id, name);
            copyVariable(category, {id, targetOf(id)}, name);
        }
    }
    copySetData(_run);
    copyParticleTracks(_run, phase.source, phase.target);
}

void SolutionCopy::copyVariable(KelZoneCategory category, const Pair<int>& variable, const std::string& name)
{
    std::vector<int> zones;
    const unsigned64 size = _run.source.startReadingZonesOfCategoryWithPhaseVariable(category, variable.source, zones);
    if (size == 0 || zones.empty())
        return;
    const std::string task = "variable '" + name + "'";
    std::vector<int> targetZones = zones; // the writer's form takes a list that it may change
    _run.target.startWritingPhaseVariableInZonesOfCategory(category, variable.target, targetZones, size);
    std::vector<double> buffer;
    for (const int id : zones) {
        TransferRun::ZoneRange zone{id, 0, 0};
        _run.source.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        _run.source.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        if (zone.first == 0 || zone.last < zone.first)
            continue;
        _run.forChunks(task, zone, size, sizeof(double), [&](unsigned64 first, unsigned64 last) {
            const unsigned64 count = (last - first + 1) * size;
            buffer.resize(count);
            const unsigned64 found =
                _run.source.getValuesOfPhaseVariableForElementsInRange(first, last, buffer.data(), count);
            if (found != count)
                stopShort(task, _run.source, id, first, last, found, count);
            _run.target.setValuesOfPhaseVariableForElementsInRange(first, last, buffer.data(), count);
        });
    }
    _run.target.endWritingPhaseVariableInZonesOfCategory();
}

} // namespace

void copySolution(TransferRun& run, const std::vector<int>& levels)
{
    SolutionCopy solution(run);
    solution.registerAll();
    if (levels.empty()) {
        solution.copyValues();
        copySets(run, KEL_DATA);
        return;
    }
    for (const int level : levels) {
        // A target without levels holds one state: the last.
        if (level != levels.back() && !run.carries(KEL_FAMILY_TIME_LEVELS, "time level " + std::to_string(level)))
            continue;
        run.tell("time level " + std::to_string(level), 0, 0, 0);
        run.source.startReadingTimeLevel(level);
        run.target.startWritingTimeLevel(level);
        solution.copyValues();
        copySets(run, KEL_DATA);
        run.target.endWritingTimeLevel();
    }
}

} // namespace meridyn
