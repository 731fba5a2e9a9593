#include "Catalogue.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "KelAttributes.h"

#include <algorithm>
#include <climits>
#include <set>

namespace meridyn::hdf5 {

namespace {

using KelAttributes::datasetName;

// '#' counts the arrays of a field, see FieldArray.
template <class Entries>
std::string freeLink(const Entries& entries, const std::string& wanted, int id)
{
    std::string link = encodeName(wanted);
    for (std::size_t at = 0; (at = link.find('#', at)) != std::string::npos; at += 3)
        link.replace(at, 1, "%23");
    const auto isTaken = [&entries](const std::string& name) {
        return std::any_of(entries.begin(), entries.end(), [&name](const auto& entry) { return entry.link == name; });
    };
    std::string free = link;
    for (int i = id; isTaken(free); ++i)
        free = link + "~" + std::to_string(i);
    return free;
}

void storeAttributes(hid_t group, const std::string& uniqueName, int id,
                     const std::map<std::string, std::string>& attributes)
{
    if (readNumber(group, "kel_id") != id)
        writeNumber(group, "kel_id", id);
    const auto put = [group](const std::string& name, const std::string& text) {
        if (readText(group, name) != text)
            writeText(group, name, text);
    };
    put("kel_unique_name", uniqueName);
    for (const auto& [name, text] : attributes)
        put(encodeAttributeName(name), text);
}

template <class Entry>
void loadAttributes(hid_t group, Entry& entry)
{
    for (const std::string& name : attributeNames(group))
        if (name == "kel_unique_name")
            entry.uniqueName = readText(group, name).value_or("");
        else if (name == "kel_id")
            entry.id = static_cast<decltype(entry.id)>(readNumber(group, name).value_or(0));
        else if (name.rfind("kel_", 0) != 0)
            entry.attributes[decodeName(name)] = readText(group, name).value_or("");
}

std::string datasetOf(const std::map<std::string, std::string>& attributes)
{
    const auto found = attributes.find(datasetName);
    return found == attributes.end() ? std::string() : found->second;
}

template <class Entry>
bool byId(const Entry& a, const Entry& b)
{
    return a.id < b.id;
}

} // namespace

const Catalogue::Variable* Catalogue::Phase::find(const std::string& name) const
{
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&name](const Variable& variable) { return variable.uniqueName == name; });
    return found == variables.end() ? nullptr : &*found;
}

const Catalogue::Phase* Catalogue::find(const std::string& name) const
{
    const auto found =
        std::find_if(_phases.begin(), _phases.end(), [&name](const Phase& phase) { return phase.uniqueName == name; });
    return found == _phases.end() ? nullptr : &*found;
}

Catalogue Catalogue::of(const KelSolutionDescription& solution)
{
    Catalogue catalogue;
    for (const KelPhaseDescription& phase : solution.phases) {
        catalogue._phases.push_back({phase, {}, {}});
        for (const KelVariableDescription& variable : solution.variables)
            if (variable.phaseId == phase.id)
                catalogue._phases.back().variables.push_back({variable, {}});
    }
    return catalogue;
}

KelSolutionDescription Catalogue::description() const
{
    KelSolutionDescription solution;
    for (const Phase& phase : _phases) {
        solution.phases.push_back(phase);
        for (const Variable& variable : phase.variables) {
            solution.variables.push_back(variable);
            solution.variables.back().phaseId = phase.id;
        }
    }
    return solution;
}

Catalogue::Phase& Catalogue::phaseNamed(const std::string& name, const std::string& dataset, short id)
{
    for (Phase& phase : _phases)
        if (phase.uniqueName == name)
            return phase;
    const auto isTaken = [this](short wanted) {
        return std::any_of(_phases.begin(), _phases.end(), [wanted](const Phase& phase) { return phase.id == wanted; });
    };
    while (isTaken(id) && id < SHRT_MAX)
        ++id;
    Phase phase;
    phase.id = id;
    phase.uniqueName = name;
    phase.link = freeLink(_phases, dataset.empty() ? name : dataset, id);
    _phases.push_back(std::move(phase));
    return _phases.back();
}

Catalogue::Variable& Catalogue::variableNamed(Phase& phase, const std::string& name, const std::string& dataset, int id)
{
    for (Variable& variable : phase.variables)
        if (variable.uniqueName == name)
            return variable;
    bool isTaken = false;
    int largest = 0;
    for (const Phase& other : _phases)
        for (const Variable& variable : other.variables) {
            isTaken = isTaken || variable.id == id;
            largest = std::max(largest, variable.id);
        }
    Variable variable;
    variable.id = isTaken && largest < INT_MAX ? largest + 1 : id;
    variable.uniqueName = name;
    variable.link = freeLink(phase.variables, dataset.empty() ? name : dataset, variable.id);
    phase.variables.push_back(std::move(variable));
    return phase.variables.back();
}

void Catalogue::merge(const Catalogue& other)
{
    for (const Phase& theirs : other._phases) {
        Phase& phase = phaseNamed(theirs.uniqueName, datasetOf(theirs.attributes), theirs.id);
        for (const auto& [name, value] : theirs.attributes)
            phase.attributes[name] = value;
        for (const Variable& their : theirs.variables) {
            Variable& variable = variableNamed(phase, their.uniqueName, datasetOf(their.attributes), their.id);
            for (const auto& [name, value] : their.attributes)
                variable.attributes[name] = value;
            variable.categories.insert(their.categories.begin(), their.categories.end());
        }
    }
}

Catalogue Catalogue::load(hid_t meshGroup)
{
    Catalogue catalogue;
    if (!hasLink(meshGroup, "phases"))
        return catalogue;
    // Groups that are linked many times would make a small file a catalogue of any size.
    std::set<haddr_t> known;
    const auto openOnce = [&known](hid_t group, const std::string& link) {
        Handle opened = openGroup(group, link);
        H5O_info_t info{};
        checkedCall(H5Oget_info2(opened.get(), &info, H5O_INFO_BASIC), pathOf(opened.get()));
        if (!known.insert(info.addr).second)
            throw FormatError(pathOf(opened.get()) + " has several names");
        return opened;
    };
    const Handle phases = openGroup(meshGroup, "phases");
    for (const std::string& phaseLink : linkNames(phases.get())) {
        const Handle phaseGroup = openOnce(phases.get(), phaseLink);
        Phase phase;
        phase.link = phaseLink;
        loadAttributes(phaseGroup.get(), phase);
        for (const std::string& variableLink : linkNames(phaseGroup.get())) {
            const Handle variableGroup = openOnce(phaseGroup.get(), variableLink);
            Variable variable;
            variable.link = variableLink;
            loadAttributes(variableGroup.get(), variable);
            if (const auto categories = readNumbers(variableGroup.get(), "kel_categories"))
                for (const std::int64_t category : *categories)
                    variable.categories.insert(static_cast<int>(category));
            phase.variables.push_back(std::move(variable));
        }
        std::stable_sort(phase.variables.begin(), phase.variables.end(), byId<Variable>);
        catalogue._phases.push_back(std::move(phase));
    }
    std::stable_sort(catalogue._phases.begin(), catalogue._phases.end(), byId<Phase>);
    return catalogue;
}

void Catalogue::store(hid_t meshGroup) const
{
    if (_phases.empty())
        return;
    const Handle phases = openOrCreateGroup(meshGroup, "phases");
    for (const Phase& phase : _phases) {
        const Handle phaseGroup = openOrCreateGroup(phases.get(), phase.link);
        storeAttributes(phaseGroup.get(), phase.uniqueName, phase.id, phase.attributes);
        for (const Variable& variable : phase.variables) {
            const Handle group = openOrCreateGroup(phaseGroup.get(), variable.link);
            storeAttributes(group.get(), variable.uniqueName, variable.id, variable.attributes);
            const std::vector<std::int64_t> categories(variable.categories.begin(), variable.categories.end());
            if (readNumbers(group.get(), "kel_categories") != categories)
                writeNumbers(group.get(), "kel_categories", categories);
        }
    }
}

} // namespace meridyn::hdf5
