#include "KelAttributes.h"
#include "KelConsumer.h"
#include "KelSolutionModel.h"
#include "KelVariableAttributeProvider.h"
#include "Trace.h"

#include <algorithm>

namespace meridyn {

bool KelConsumer::addStringAttribute(const std::string&, const std::string&, const std::string&,
                                     const std::string&) const
{
    return false;
}

// ---- phases ------------------------------------------------------------------------------------------------------

bool KelConsumer::addPhaseName(const std::string& name, short& phaseId) const
{
    if (solutionModel()->findPhaseByUniqueName(name, phaseId))
        return true;
    if (!solutionModel()->createPhase(name, phaseId))
        return false;
    setAttributeValueOfPhase(phaseId, KelAttributes::longName, name);
    return true;
}

bool KelConsumer::addPhaseNames(const std::vector<std::string>& names, std::vector<short>& phaseIds) const
{
    phaseIds.clear();
    for (const std::string& name : names) {
        short phaseId = 0;
        if (!addPhaseName(name, phaseId))
            return false;
        phaseIds.push_back(phaseId);
    }
    return true;
}

bool KelConsumer::setAttributeValueOfPhase(const std::string& attribute, const std::string& value) const
{
    short phaseId = 0;
    return getActivePhase(phaseId) && solutionModel()->addAttributeOfPhase(phaseId, attribute, value);
}

bool KelConsumer::setAttributeValueOfPhase(const std::string& phaseName, const std::string& attribute,
                                           const std::string& value) const
{
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) &&
           setAttributeValueOfPhase(phaseId, attribute, value);
}

bool KelConsumer::setAttributeValueOfPhase(short phaseId, const std::string& attribute, const std::string& value) const
{
    return solutionModel()->addAttributeOfPhase(phaseId, attribute, value);
}

bool KelConsumer::setPhaseNames(const std::vector<std::string>& names, std::vector<short>& phaseIds) const
{
    solutionModel()->clearModel();
    clearVariablesOfCategories();
    return addPhaseNames(names, phaseIds);
}

void KelConsumer::startWritingPhase(short phaseId) const
{
    trace::line("  Phase-id = ", phaseId);
}

void KelConsumer::endWritingPhase() const
{}

// ---- variables ---------------------------------------------------------------------------------------------------

void KelConsumer::inheritVariableAttributes(bool on)
{
    _inheritVariableAttributes = on;
}

bool KelConsumer::inheritVariableAttributes() const
{
    return _inheritVariableAttributes;
}

bool KelConsumer::addPhaseVariable(const std::string& name, int& variableId) const
{
    short phaseId = 0;
    return getActivePhase(phaseId) && addPhaseVariable(phaseId, name, variableId);
}

bool KelConsumer::addPhaseVariable(const std::string& phaseName, const std::string& name, int& variableId) const
{
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) && addPhaseVariable(phaseId, name, variableId);
}

bool KelConsumer::addPhaseVariable(short phaseId, const std::string& name, int& variableId) const
{
    if (solutionModel()->findVariableByUniqueName(phaseId, name, variableId))
        return true;
    if (!solutionModel()->createVariable(phaseId, name, variableId))
        return false;

    const std::string datasetName = attributeProvider() ? attributeProvider()->getDatasetName(name) : "";
    solutionModel()->setDatasetNameOfVariable(variableId, datasetName.empty() ? name : datasetName);
    if (inheritVariableAttributes())
        copyProviderAttributes(name, variableId);
    return true;
}

void KelConsumer::copyProviderAttributes(const std::string& name, int variableId) const
{
    std::vector<std::string> attributes;
    if (attributeProvider())
        attributes = attributeProvider()->getSupportedAttributes(name);
    for (const std::string& attribute : attributes)
        setAttributeValueOfPhaseVariable(variableId, attribute,
                                         attributeProvider()->getAttributeValue(name, attribute));
    if (std::find(attributes.begin(), attributes.end(), KelAttributes::longName) == attributes.end())
        setAttributeValueOfPhaseVariable(variableId, KelAttributes::longName, name);
}

bool KelConsumer::setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<std::string>& names) const
{
    std::vector<int> variableIds;
    return setPhaseVariablesOfCategory(category, names, variableIds);
}

bool KelConsumer::setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<std::string>& names,
                                              std::vector<int>& variableIds) const
{
    short phaseId = 0;
    std::string phaseName;
    if (!getActivePhase(phaseId) || !getActivePhase(phaseName))
        return false;

    for (const std::string& name : names) {
        int variableId = 0;
        if (!solutionModel()->findVariableByUniqueName(phaseId, name, variableId) &&
            !addPhaseVariable(phaseId, name, variableId))
            return false;
        variableIds.push_back(variableId);
    }
    setPhaseVariablesOfCategory(category, variableIds); // kept: its answer is not this operation's
    return true;
}

bool KelConsumer::setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<int>& variableIds) const
{
    short phaseId = 0;
    if (!getActivePhase(phaseId))
        return false;
    for (const int variableId : variableIds)
        if (!solutionModel()->hasVariable(phaseId, variableId))
            return false;
    for (const int variableId : variableIds)
        addVariableOfCategory(variableId, category);
    return true;
}

bool KelConsumer::setAttributeValueOfPhaseVariable(const std::string& variableName, const std::string& attribute,
                                                   const std::string& value) const
{
    short phaseId = 0;
    return getActivePhase(phaseId) && setAttributeValueOfPhaseVariable(phaseId, variableName, attribute, value);
}

bool KelConsumer::setAttributeValueOfPhaseVariable(short phaseId, const std::string& variableName,
                                                   const std::string& attribute, const std::string& value) const
{
    int variableId = 0;
    return solutionModel()->findVariableByUniqueName(phaseId, variableName, variableId) &&
           setAttributeValueOfPhaseVariable(variableId, attribute, value);
}

bool KelConsumer::setAttributeValueOfPhaseVariable(int variableId, const std::string& attribute,
                                                   const std::string& value) const
{
    return solutionModel()->addAttributeOfVariable(variableId, attribute, value);
}

} // namespace meridyn
