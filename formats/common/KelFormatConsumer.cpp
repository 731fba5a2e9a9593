#include "KelFormatConsumer.h"

#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

namespace {

/// The attributes of a phase or a variable, "Dataset Name" included, which the lists leave out.
template <class Id>
std::map<std::string, std::string> attributesOf(const KelSolutionModel& model, Id id,
                                                bool (KelSolutionModel::*getNames)(Id, std::vector<std::string>&) const,
                                                bool (KelSolutionModel::*get)(Id, const std::string&, std::string&)
                                                    const)
{
    std::map<std::string, std::string> attributes;
    std::vector<std::string> names;
    (model.*getNames)(id, names);
    names.emplace_back("Dataset Name");
    for (const std::string& name : names)
        if (std::string value; (model.*get)(id, name, value))
            attributes[name] = value;
    return attributes;
}

} // namespace

KelFormatConsumer::KelFormatConsumer() = default;
KelFormatConsumer::~KelFormatConsumer() = default;

// ---- switches

void KelFormatConsumer::setAppendOn(bool on)
{
    _isAppendOn = on;
}

void KelFormatConsumer::setOverrideSettingsOn(bool on)
{
    _isOverrideSettingsOn = on;
}

void KelFormatConsumer::setWriteSettingsOn(bool on)
{
    _isWriteSettingsOn = on;
}

bool KelFormatConsumer::isAppendOn() const
{
    return _isAppendOn;
}

bool KelFormatConsumer::isOverrideSettingsOn() const
{
    return _isOverrideSettingsOn;
}

bool KelFormatConsumer::isWriteSettingsOn() const
{
    return _isWriteSettingsOn;
}

bool KelFormatConsumer::dropTimeLevelsFrom(int)
{
    const std::string text = getFile(KEL_DATA) + ": the format cannot drop time levels";
    getMessageRegistrar()->registerMessage(KelError(text, "dropTimeLevelsFrom"));
    return false;
}

// ---- forms of one operation

void KelFormatConsumer::startWritingTypesForCells(const std::vector<int>& zoneIds,
                                                  const std::vector<KelCellType>& types)
{
    announce(KelArray::CellTypes, zoneIds);
    for (std::size_t i = 0; i < std::min(zoneIds.size(), types.size()); ++i)
        if (const auto [first, last] = rangeOfZone(zoneIds[i]); types[i] != -1 && first != 0 && last >= first)
            keepUniform(KelArray::CellTypes, first, last, types[i]);
}

// ---- what a format overrides

void KelFormatConsumer::announce(KelArray, const std::vector<int>&)
{}

void KelFormatConsumer::keep(KelArray, unsigned64, unsigned64, const KelValues&)
{}

void KelFormatConsumer::keepUniform(KelArray, unsigned64, unsigned64, signed64)
{}

void KelFormatConsumer::keepInterface(int, const KelInterfaceValues&)
{}

void KelFormatConsumer::startVariable(KelCollection, const std::string&, unsigned64, KelPlainDataType)
{}

void KelFormatConsumer::startLists(KelCollection, const std::string&, KelPlainDataType, KelPlainDataType)
{}

void KelFormatConsumer::startLengths(const std::string&, KelPlainDataType)
{}

bool KelFormatConsumer::append(KelPart, const KelValues&)
{
    return false;
}

bool KelFormatConsumer::appendLists(const KelValues&, const KelValues&)
{
    return false;
}

void KelFormatConsumer::keepBlock(KelCollection, const std::string&, const KelValues&)
{}

void KelFormatConsumer::keepText(KelCollection, const std::string&, const std::string&)
{}

// ---- what KelBase knows

KelMeshDescription KelFormatConsumer::describeMesh() const
{
    return meridyn::describeMesh(*this);
}

KelSolutionDescription KelFormatConsumer::describeSolution() const
{
    const KelSolutionModel& model = *solutionModel();
    std::map<int, std::set<int>> categories; // by variable
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        std::vector<int> ids;
        getVariablesOfCategory(category, ids);
        for (const int id : ids)
            categories[id].insert(category);
    }
    KelSolutionDescription solution;
    solution.timeLevels = getTimeLevels();
    std::vector<short> phaseIds;
    model.getPhases(phaseIds);
    for (const short phase : phaseIds) {
        solution.phases.push_back({phase, getPhaseName(phase),
                                   attributesOf(model, phase, &KelSolutionModel::getAttributeNamesOfPhase,
                                                &KelSolutionModel::getAttributeOfPhase)});
        std::vector<int> ids;
        model.getVariables(phase, ids);
        for (const int id : ids)
            solution.variables.push_back({id, phase, variableName(id),
                                          attributesOf(model, id, &KelSolutionModel::getAttributeNamesOfVariable,
                                                       &KelSolutionModel::getAttributeOfVariable),
                                          categories[id]});
    }
    return solution;
}

std::pair<unsigned64, unsigned64> KelFormatConsumer::rangeOfZone(int zoneId) const
{
    std::pair<unsigned64, unsigned64> range;
    getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, range.first);
    getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, range.second);
    return range;
}

std::string KelFormatConsumer::variableName(int variableId) const
{
    std::string name;
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    return name;
}

} // namespace meridyn
