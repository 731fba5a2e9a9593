#include "core/DataInterface.h"
#include "KelBase.h"
#include "KelSolutionModel.h"

#include <algorithm>

namespace meridyn {

// ---- time levels and phases ------------------------------------------------------

void KelBase::addTimeLevel(int timeLevel) const
{
    std::vector<int>& levels = _data->timeLevels;
    if (timeLevel >= 0 && std::find(levels.begin(), levels.end(), timeLevel) == levels.end()) {
        levels.push_back(timeLevel);
    }
}

bool KelBase::setTimeLevel(int timeLevel) const
{
    const std::vector<int>& levels = _data->timeLevels;
    const bool latest = timeLevel == KEL_LATEST_TIME_LEVEL;
    const auto found =
        latest ? std::max_element(levels.begin(), levels.end()) : std::find(levels.begin(), levels.end(), timeLevel);
    if (found == levels.end()) {
        return false;
    }
    _data->currentTimeLevel = *found;
    return true;
}

int KelBase::getTimeLevel() const
{
    return _data->currentTimeLevel;
}

const std::vector<int>& KelBase::getTimeLevels() const
{
    return _data->timeLevels;
}

bool KelBase::setActivePhase(short phaseId) const
{
    if (!_data->solutionModel->hasPhase(phaseId)) {
        return false;
    }
    _data->activePhase = phaseId;
    return true;
}

bool KelBase::setActivePhase(const std::string& name) const
{
    short phaseId = 0;
    if (!_data->solutionModel->findPhaseByUniqueName(name, phaseId)) {
        return false;
    }
    _data->activePhase = phaseId;
    return true;
}

bool KelBase::getActivePhase(short& phaseId) const
{
    const bool known = _data->solutionModel->hasPhase(_data->activePhase);
    phaseId = known ? _data->activePhase : static_cast<short>(0);
    return known;
}

bool KelBase::getActivePhase(std::string& name) const
{
    return getPhaseName(_data->activePhase, name);
}

void KelBase::getPhaseIds(std::vector<short>& phaseIds) const
{
    _data->solutionModel->getPhases(phaseIds);
}

bool KelBase::getPhaseName(short phaseId, std::string& name) const
{
    if (_data->solutionModel->getUniqueNameOfPhase(phaseId, name)) {
        return true;
    }
    name.clear();
    return false;
}

std::string KelBase::getPhaseName(short phaseId) const
{
    std::string name;
    getPhaseName(phaseId, name);
    return name;
}

std::string KelBase::getGroupNameForPhase(short phaseId) const
{
    std::string uniqueName;
    if (!getPhaseName(phaseId, uniqueName)) {
        return std::string();
    }
    std::string datasetName;
    _data->solutionModel->getDatasetNameOfPhase(phaseId, datasetName);
    return datasetName.empty() ? uniqueName : datasetName;
}

// ---- variables by zone category --------------------------------------------------

static bool isCategory(int category)
{
    return category >= 0 && category < DataInterface::categoryCount;
}

void KelBase::addVariableOfCategory(int variableId, KelZoneCategory category) const
{
    if (isCategory(category)) {
        _data->variablesOfCategory[category].insert(variableId);
    }
}

void KelBase::getVariablesOfCategory(KelZoneCategory category, std::vector<int>& variableIds) const
{
    variableIds.clear();
    if (isCategory(category)) {
        const auto& variables = _data->variablesOfCategory[category];
        variableIds.assign(variables.begin(), variables.end());
    }
}

void KelBase::clearVariablesOfCategories() const
{
    _data->variablesOfCategory.fill({});
}

} // namespace meridyn
