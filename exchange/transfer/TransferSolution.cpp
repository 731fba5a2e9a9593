#include "exchange/common/ConsumerAccess.h"
#include "formats/common/BaseAccess.h"
#include "KelSolutionModel.h"
#include "TransferRun.h"

#include <map>
#include <set>

namespace meridyn {

namespace {

constexpr short mixtureId = -1;
constexpr KelZoneCategory categories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

/// Registers phases and variables on the target, in the order that gives them the ids they have in the source.
class Registration {
public:
    Registration(TransferRun& run, const KelSolutionDescription& solution) : _run(run), _solution(solution) {}

    void run()
    {
        const bool inherits = ConsumerAccess::inheritsAttributes(_run.target);
        _run.target.inheritVariableAttributes(false); // what is stored counts, whatever mapping files say
        registerAll();
        _run.target.inheritVariableAttributes(inherits);
        for (const KelPhaseDescription& phase : _solution.phases)
            if (phase.id == mixtureId) // it is there now
                copyAttributes(phase);
        _run.settle(KEL_FAMILY_PHASES, "phases and variables");
    }

    std::map<short, short> phases; ///< id on the target, by that in the source
    std::map<int, int> variables;  ///< the same
    std::string labelOf(const KelVariableDescription& variable) const
    {
        return "'" + variable.uniqueName + "' of phase '" + nameOf(variable.phaseId) + "'";
    }

private:
    std::string nameOf(short phaseId) const
    {
        for (const KelPhaseDescription& phase : _solution.phases)
            if (phase.id == phaseId)
                return phase.uniqueName;
        return "";
    }

    bool hasPhase(short id) const
    {
        return std::any_of(_solution.phases.begin(), _solution.phases.end(),
                           [id](const auto& phase) { return phase.id == id; });
    }

    /// Ids come from the order of creation. A phase 0 means that the mixture, which comes into being with its first
    /// variable, was there before the first phase.
    void registerAll()
    {
        std::vector<KelVariableDescription> ordered = _solution.variables;
        std::stable_sort(ordered.begin(), ordered.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
        std::vector<short> none;
        if (hasPhase(mixtureId))
            phases[mixtureId] = mixtureId;
        auto next = ordered.begin();
        if (hasPhase(0) && hasPhase(mixtureId)) {
            checkPhases(_run.target.setPhaseNames({}, none));
            while (next != ordered.end() && !BaseAccess::model(_run.target).hasPhase(mixtureId))
                registerVariable(*next++);
            registerPhases(true);
        } else
            registerPhases(false);
        for (; next != ordered.end(); ++next)
            registerVariable(*next);
    }

    void registerPhases(bool hasBegun)
    {
        std::vector<short> ids, targetIds;
        std::vector<std::string> names;
        for (const KelPhaseDescription& phase : _solution.phases) {
            if (phase.id == mixtureId)
                continue;
            ids.push_back(phase.id);
            names.push_back(phase.uniqueName);
            _run.carries(KEL_FAMILY_PHASES, "'" + phase.uniqueName + "'");
        }
        checkPhases(hasBegun ? _run.target.addPhaseNames(names, targetIds)
                             : _run.target.setPhaseNames(names, targetIds));
        for (std::size_t n = 0; n < std::min(ids.size(), targetIds.size()); ++n)
            phases[ids[n]] = targetIds[n];
        for (const KelPhaseDescription& phase : _solution.phases)
            if (phase.id != mixtureId)
                copyAttributes(phase);
    }

    static void checkPhases(bool areTaken)
    {
        if (!areTaken)
            throw TransferStopped(KelTransferProblem::TargetUnwritable, "the writer refused the phases");
    }

    void registerVariable(const KelVariableDescription& variable)
    {
        const auto phase = phases.find(variable.phaseId);
        int id = 0;
        if (phase == phases.end() || !_run.carries(KEL_FAMILY_VARIABLES, labelOf(variable)))
            return;
        if (!_run.target.addPhaseVariable(phase->second, variable.uniqueName, id))
            return _run.refused(KEL_FAMILY_VARIABLES, labelOf(variable));
        variables[variable.id] = id;
        copyAttributes(variable, id);
    }

    /// Whether the target carries attributes; if not, the attribute is a loss unless it repeats the name, as both names
    /// do that every phase and variable begins with.
    bool carriesAttribute(const std::string& attribute, const std::string& value, const std::string& owner,
                          const std::string& item)
    {
        const bool isGiven = (attribute == "Dataset Name" || attribute == "Long Name") && value == owner;
        return isGiven ? _run.takes(KEL_FAMILY_ATTRIBUTES) : _run.carries(KEL_FAMILY_ATTRIBUTES, item);
    }

    void copyAttributes(const KelVariableDescription& variable, int id)
    {
        KelSolutionModel& model = BaseAccess::model(_run.target);
        std::vector<std::string> names;
        model.getAttributeNamesOfVariable(id, names);
        for (const std::string& name : names) // what the writer gave by itself
            if (variable.attributes.count(name) == 0)
                model.removeAttributeOfVariable(id, name);
        for (const auto& [name, value] : variable.attributes) {
            const std::string item = "'" + name + "' of variable " + labelOf(variable);
            if (carriesAttribute(name, value, variable.uniqueName, item) &&
                !_run.target.setAttributeValueOfPhaseVariable(id, name, value))
                _run.refused(KEL_FAMILY_ATTRIBUTES, item);
        }
    }

    void copyAttributes(const KelPhaseDescription& phase)
    {
        const auto found = phases.find(phase.id);
        KelSolutionModel& model = BaseAccess::model(_run.target);
        if (found == phases.end() || !model.hasPhase(found->second))
            return;
        std::vector<std::string> names;
        model.getAttributeNamesOfPhase(found->second, names);
        for (const std::string& name : names)
            if (phase.attributes.count(name) == 0)
                model.removeAttributeOfPhase(found->second, name);
        for (const auto& [name, value] : phase.attributes) {
            const std::string item = "'" + name + "' of phase '" + phase.uniqueName + "'";
            if (carriesAttribute(name, value, phase.uniqueName, item) &&
                !_run.target.setAttributeValueOfPhase(found->second, name, value))
                _run.refused(KEL_FAMILY_ATTRIBUTES, item);
        }
    }

    TransferRun& _run;
    const KelSolutionDescription& _solution;
};

/// Copies the values of one variable on the zones of one category, as values of type V: float where the source holds
/// them so.
template <class V>
class ValueCopy {
public:
    ValueCopy(TransferRun& run, std::string label, unsigned64 size)
        : _run(run), _label(std::move(label)), _task("variable " + _label), _size(size)
    {}

    void copyZone(const KelZoneDescription& zone)
    {
        std::vector<KelIdRange> ranges = {{zone.first, zone.last}};
        if (_run.ledger != nullptr)
            if (const auto told = _run.ledger->elementsWithValues(KelArray::PhaseVariable, zone.first, zone.last))
                ranges = *told;
        for (const KelIdRange& range : ranges)
            _run.forChunks(_task, range, _size, sizeof(V), [&](unsigned64 from, unsigned64 to) {
                forGiven(
                    from, to, [&](unsigned64 first, unsigned64 last) { return fill(zone, first, last); },
                    [&](unsigned64 first, unsigned64 last) { write(zone, first, last); });
            });
    }

private:
    bool fill(const KelZoneDescription& zone, unsigned64 first, unsigned64 last)
    {
        const unsigned64 count = (last - first + 1) * _size;
        _values.assign(count, V());
        const unsigned64 found =
            _run.source.getValuesOfPhaseVariableForElementsInRange(first, last, _values.data(), count);
        if (found != count && found != 0)
            stopShort(_task.c_str(), zone, first, last, found, count);
        return found == count;
    }

    void write(const KelZoneDescription& zone, unsigned64 first, unsigned64 last)
    {
        if constexpr (std::is_same_v<V, double>)
            if (overflows(_run, _values.data(), _values.size()))
                _run.note(KEL_FAMILY_VARIABLES, KelLossReason::Changed, _label + ", " + zoneLabel(zone), overflowText,
                          zone.id);
        _run.target.setValuesOfPhaseVariableForElementsInRange(first, last, _values.data(), _values.size());
    }

    TransferRun& _run;
    const std::string _label;
    const std::string _task;
    const unsigned64 _size;
    std::vector<V> _values;
};

/// Copies the values of the variables at one time level, or at none.
class LevelCopy {
public:
    LevelCopy(TransferRun& run, const KelSolutionDescription& solution, const Registration& registered)
        : _run(run), _solution(solution), _registered(registered)
    {}

    void copy()
    {
        for (const auto& [source, target] : _registered.phases)
            if (_run.source.startReadingPhase(source)) {
                _run.target.startWritingPhase(target);
                copyPhase(source, target);
                _run.target.endWritingPhase();
            }
        copySets(_run, KEL_DATA);
    }

private:
    void copyPhase(short source, short target)
    {
        for (const KelZoneCategory category : categories) {
            std::vector<int> declared;
            for (const KelVariableDescription& variable : _solution.variables)
                if (variable.phaseId == source && variable.categories.count(category) != 0)
                    if (const auto id = _registered.variables.find(variable.id); id != _registered.variables.end())
                        declared.push_back(id->second);
            if (!declared.empty() && !_run.target.setPhaseVariablesOfCategory(category, declared))
                _run.refused(KEL_FAMILY_VARIABLES, "the list of a zone category");
            for (const KelVariableDescription& variable : _solution.variables)
                if (variable.phaseId == source && _registered.variables.count(variable.id) != 0)
                    copyVariable(category, variable);
        }
        copySetData(_run, static_cast<const KelProvider&>(_run.source).getPhaseName(source));
        copyParticleTracks(_run, source, target);
    }

    /// Also of a variable that does not say on which zones it lives: only the values tell.
    void copyVariable(KelZoneCategory category, const KelVariableDescription& variable)
    {
        std::vector<int> zones;
        const unsigned64 size = _run.source.startReadingZonesOfCategoryWithPhaseVariable(category, variable.id, zones);
        if (size == 0 || zones.empty())
            return;
        const std::string label = _registered.labelOf(variable);
        std::vector<int> targetZones = zones; // the writer's form takes a list that it may change
        _run.target.startWritingPhaseVariableInZonesOfCategory(category, _registered.variables.at(variable.id),
                                                               targetZones, size);
        const bool isFloat =
            _run.ledger != nullptr && _run.ledger->storedType(KelArray::PhaseVariable) == KEL_PLAIN_FLOAT;
        if (isFloat)
            copyZones(ValueCopy<float>(_run, label, size), zones, label);
        else
            copyZones(ValueCopy<double>(_run, label, size), zones, label);
        _run.target.endWritingPhaseVariableInZonesOfCategory();
        _run.settle(KEL_FAMILY_VARIABLES, label);
    }

    template <class V>
    void copyZones(ValueCopy<V> values, const std::vector<int>& zones, const std::string& label)
    {
        for (const int id : zones) {
            const auto zone = std::find_if(_run.mesh.zones.begin(), _run.mesh.zones.end(),
                                           [id](const KelZoneDescription& known) { return known.id == id; });
            if (zone == _run.mesh.zones.end())
                _run.note(KEL_FAMILY_VARIABLES, KelLossReason::NotGiven, label + ", zone " + std::to_string(id),
                          "the mesh has no such zone", id);
            else if (zone->first != 0 && zone->last >= zone->first)
                values.copyZone(*zone);
        }
    }

    TransferRun& _run;
    const KelSolutionDescription& _solution;
    const Registration& _registered;
};

/// Copies what lies at no time level. A writer can take it only as long as it has no time level.
void copyNoLevel(TransferRun& run, LevelCopy& values)
{
    const std::string item = "what lies at no time level";
    auto* const ledger = dynamic_cast<KelSourceLedger*>(&run.source);
    if (ledger == nullptr || !ledger->hasDataAtNoLevel())
        return;
    if (!run.takes(KEL_FAMILY_TIME_LEVELS)) {
        run.carries(KEL_FAMILY_TIME_LEVELS, item);
        return;
    }
    if (!run.target.getTimeLevels().empty())
        return run.note(KEL_FAMILY_TIME_LEVELS, KelLossReason::Refused, item,
                        "refused: the writer has time levels already");
    ledger->chooseNoLevel(true);
    values.copy();
    ledger->chooseNoLevel(false);
}

} // namespace

void copySolution(TransferRun& run, const std::vector<int>& levels)
{
    const KelSolutionDescription solution = describeSolution(run.source);
    Registration registered(run, solution);
    registered.run();
    LevelCopy values(run, solution, registered);
    if (solution.timeLevels.empty())
        return values.copy();
    if (levels.empty())
        copyNoLevel(run, values);
    std::vector<int> copied = solution.timeLevels; // in their order, which is the model's
    if (!levels.empty())
        std::erase_if(copied, [&levels](int level) { return std::count(levels.begin(), levels.end(), level) == 0; });
    for (const int level : copied) {
        const int last = copied.back(); // a target without levels holds one state: the last
        if (level != last && !run.carries(KEL_FAMILY_TIME_LEVELS, "time level " + std::to_string(level)))
            continue;
        run.tell("time level " + std::to_string(level), 0, 0, 0);
        run.source.startReadingTimeLevel(level);
        run.target.startWritingTimeLevel(level);
        run.level = level;
        values.copy();
        run.level.reset();
        run.target.endWritingTimeLevel();
    }
}

} // namespace meridyn
