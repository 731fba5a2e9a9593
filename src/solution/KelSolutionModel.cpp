#include "KelSolutionModel.h"

#include "KelAttributes.h"

#include <limits>
#include <map>
#include <set>
#include <string_view>

namespace meridyn {

static const short mixturePhase = -1;
static const char mixtureName[] = "<Mixture>";
using KelAttributes::datasetName;

using Attributes = std::map<std::string, std::string>;

/// The attribute names that the lists of names leave out. A function, so that a model may be filled before this
/// file's statics exist.
static const std::set<std::string>& reservedNames()
{
    static const std::set<std::string> names = {datasetName};
    return names;
}

struct KelSolutionModel::Record {
    std::map<short, std::string> phaseNames;
    std::map<short, std::set<int>> phaseVariables;
    std::map<short, Attributes> phaseAttributes;
    std::map<int, std::string> variableNames;
    std::map<int, Attributes> variableAttributes;

    // Ids by name. The keys are views of the names above, which stay where they are until clearModel.
    std::map<std::string_view, short> phaseIds;
    std::map<short, std::map<std::string_view, int>> variableIds;

    /// Where two phases share a name, the index keeps the smaller id.
    void storePhase(short id, const std::string& name)
    {
        const auto stored = phaseNames.emplace(id, name).first;
        const auto [indexed, isNew] = phaseIds.emplace(stored->second, id);
        if (!isNew && id < indexed->second)
            indexed->second = id;
    }

    void storeVariable(short phase, int id, const std::string& name)
    {
        phaseVariables[phase].insert(id);
        const auto stored = variableNames.emplace(id, name).first;
        variableIds[phase].emplace(stored->second, id);
    }
};

/// The id after the largest one; the smallest number of the type when that was its largest.
template <typename Id>
static Id nextId(const std::map<Id, std::string>& names)
{
    if (names.empty())
        return 1;
    const Id largest = names.rbegin()->first;
    return largest == std::numeric_limits<Id>::max() ? std::numeric_limits<Id>::min() : static_cast<Id>(largest + 1);
}

template <typename Map, typename Key, typename Value>
static bool find(const Map& map, const Key& key, Value& value)
{
    const auto found = map.find(key);
    if (found == map.end())
        return false;
    value = found->second;
    return true;
}

// ---- attributes: the same for phases and variables -------------------------------------

// kept: reserved names are added, read and removed like all others; only listNames hides them.

template <typename Id>
static bool add(const std::map<Id, std::string>& ids, std::map<Id, Attributes>& all, Id id, const std::string& name,
                const std::string& value)
{
    if (ids.count(id) == 0)
        return false;
    all[id].insert_or_assign(name, value);
    return true;
}

template <typename Id>
static bool get(const std::map<Id, Attributes>& all, Id id, const std::string& name, std::string& value)
{
    const auto attributes = all.find(id);
    return attributes != all.end() && find(attributes->second, name, value);
}

template <typename Id>
static bool remove(std::map<Id, Attributes>& all, Id id, const std::string& name)
{
    const auto attributes = all.find(id);
    return attributes != all.end() && attributes->second.erase(name) > 0;
}

template <typename Id>
static bool listNames(const std::map<Id, Attributes>& all, Id id, std::vector<std::string>& names)
{
    names.clear();
    const auto attributes = all.find(id);
    if (attributes == all.end())
        return false;
    names.reserve(attributes->second.size());
    for (const auto& [name, value] : attributes->second)
        if (reservedNames().count(name) == 0)
            names.push_back(name);
    return true;
}

// ---- phases ----------------------------------------------------------------------------

KelSolutionModel::KelSolutionModel() : _record(std::make_unique<Record>())
{}

KelSolutionModel::~KelSolutionModel() = default;

bool KelSolutionModel::createPhase(const std::string& name, short& id)
{
    if (findPhaseByUniqueName(name, id))
        return false;
    id = nextId(_record->phaseNames);
    if (id < 0)
        return false;
    _record->storePhase(id, name);
    return addAttributeToPhase(id, datasetName, name);
}

bool KelSolutionModel::findPhaseByUniqueName(const std::string& name, short& id) const
{
    return find(_record->phaseIds, name, id);
}

bool KelSolutionModel::getUniqueNameOfPhase(short id, std::string& name) const
{
    return find(_record->phaseNames, id, name);
}

bool KelSolutionModel::hasPhase(short id) const
{
    return _record->phaseNames.count(id) > 0;
}

void KelSolutionModel::getPhases(std::vector<short>& ids) const
{
    ids.clear();
    for (const auto& [id, name] : _record->phaseNames)
        ids.push_back(id);
}

// ---- variables -------------------------------------------------------------------------

bool KelSolutionModel::createVariable(short phase, const std::string& name, int& id)
{
    // kept: the mixture appears even if the variable then turns out to exist, and has no attributes of its own
    if (phase == mixturePhase && !hasPhase(mixturePhase))
        _record->storePhase(mixturePhase, mixtureName);
    if (findVariableByUniqueName(phase, name, id))
        return false;
    id = nextId(_record->variableNames);
    if (id < 0)
        return false;
    _record->storeVariable(phase, id, name);
    return addAttributeToVariable(id, datasetName, name);
}

bool KelSolutionModel::createVariable(const std::string& name, int& id)
{
    return createVariable(mixturePhase, name, id);
}

bool KelSolutionModel::findVariableByUniqueName(short phase, const std::string& name, int& id) const
{
    const auto ids = _record->variableIds.find(phase);
    return ids != _record->variableIds.end() && find(ids->second, name, id);
}

bool KelSolutionModel::findVariableByUniqueName(const std::string& name, int& id) const
{
    return findVariableByUniqueName(mixturePhase, name, id);
}

bool KelSolutionModel::getUniqueNameOfVariable(int id, std::string& name) const
{
    return find(_record->variableNames, id, name);
}

bool KelSolutionModel::hasVariable(short phase, int id) const
{
    const auto variables = _record->phaseVariables.find(phase);
    return variables != _record->phaseVariables.end() && variables->second.count(id) > 0;
}

bool KelSolutionModel::hasVariable(int id) const
{
    return hasVariable(mixturePhase, id); // kept: not "in any phase"
}

void KelSolutionModel::getVariables(short phase, std::vector<int>& ids) const
{
    ids.clear();
    const auto variables = _record->phaseVariables.find(phase);
    if (variables != _record->phaseVariables.end())
        ids.assign(variables->second.begin(), variables->second.end());
}

void KelSolutionModel::getVariables(std::vector<int>& ids) const
{
    getVariables(mixturePhase, ids);
}

// ---- attributes of phases --------------------------------------------------------------

bool KelSolutionModel::addAttributeToPhase(short id, const std::string& name, const std::string& value)
{
    return add(_record->phaseNames, _record->phaseAttributes, id, name, value);
}

bool KelSolutionModel::addAttributeOfPhase(short id, const std::string& name, const std::string& value)
{
    return addAttributeToPhase(id, name, value);
}

bool KelSolutionModel::getAttributeOfPhase(short id, const std::string& name, std::string& value) const
{
    return get(_record->phaseAttributes, id, name, value);
}

bool KelSolutionModel::removeAttributeOfPhase(short id, const std::string& name)
{
    return remove(_record->phaseAttributes, id, name);
}

bool KelSolutionModel::getAttributeNamesOfPhase(short id, std::vector<std::string>& names) const
{
    return listNames(_record->phaseAttributes, id, names);
}

bool KelSolutionModel::setDatasetNameOfPhase(short id, const std::string& name)
{
    return !name.empty() && addAttributeToPhase(id, datasetName, name);
}

bool KelSolutionModel::getDatasetNameOfPhase(short id, std::string& name) const
{
    name.clear();
    return get(_record->phaseAttributes, id, datasetName, name);
}

// ---- attributes of variables -----------------------------------------------------------

bool KelSolutionModel::addAttributeToVariable(int id, const std::string& name, const std::string& value)
{
    return add(_record->variableNames, _record->variableAttributes, id, name, value);
}

bool KelSolutionModel::addAttributeOfVariable(int id, const std::string& name, const std::string& value)
{
    return addAttributeToVariable(id, name, value);
}

bool KelSolutionModel::getAttributeOfVariable(int id, const std::string& name, std::string& value) const
{
    return get(_record->variableAttributes, id, name, value);
}

bool KelSolutionModel::removeAttributeOfVariable(int id, const std::string& name)
{
    return remove(_record->variableAttributes, id, name);
}

bool KelSolutionModel::getAttributeNamesOfVariable(int id, std::vector<std::string>& names) const
{
    return listNames(_record->variableAttributes, id, names);
}

bool KelSolutionModel::setDatasetNameOfVariable(int id, const std::string& name)
{
    return !name.empty() && addAttributeToVariable(id, datasetName, name);
}

bool KelSolutionModel::getDatasetNameOfVariable(int id, std::string& name) const
{
    name.clear();
    return get(_record->variableAttributes, id, datasetName, name);
}

// ---- model -----------------------------------------------------------------------------

void KelSolutionModel::clearModel()
{
    *_record = Record();
}

} // namespace meridyn
