#include "KelProvider.h"

#include "io/ZoneRange.h"
#include "KelAttributes.h"
#include "KelSolutionModel.h"
#include "KelVariableAttributeProvider.h"
#include "KelVariableRecipe.h"
#include "KelVariableRecipeProvider.h"

#include <algorithm>
#include <iterator>

// Phases and variables: look-ups in the solution model of KelBase, and the values of a variable.

namespace meridyn {

bool KelProvider::startReadingPhase(short phaseId) const
{
    return setActivePhase(phaseId);
}

// ---- attributes of phases

bool KelProvider::getAttributesOfPhase(short phaseId, std::vector<std::string>& names) const
{
    return solutionModel()->getAttributeNamesOfPhase(phaseId, names);
}

bool KelProvider::getAttributesOfPhase(const std::string& phaseName, std::vector<std::string>& names) const
{
    names.clear();
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) && getAttributesOfPhase(phaseId, names);
}

bool KelProvider::getAttributesOfPhase(std::vector<std::string>& names) const
{
    names.clear();
    short phaseId = 0;
    return getActivePhase(phaseId) && getAttributesOfPhase(phaseId, names);
}

bool KelProvider::getAttributeValueOfPhase(short phaseId, const std::string& attribute, std::string& value) const
{
    return solutionModel()->hasPhase(phaseId) && solutionModel()->getAttributeOfPhase(phaseId, attribute, value);
}

bool KelProvider::getAttributeValueOfPhase(const std::string& phaseName, const std::string& attribute,
                                           std::string& value) const
{
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) &&
           getAttributeValueOfPhase(phaseId, attribute, value);
}

bool KelProvider::getAttributeValueOfPhase(const std::string& attribute, std::string& value) const
{
    short phaseId = 0;
    return getActivePhase(phaseId) && getAttributeValueOfPhase(phaseId, attribute, value);
}

// ---- variables

bool KelProvider::getVariableId(const std::string& phaseName, const std::string& variableName, int& variableId) const
{
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) &&
           getVariableId(phaseId, variableName, variableId);
}

bool KelProvider::getVariableId(const std::string& variableName, int& variableId) const
{
    short phaseId = 0;
    return getActivePhase(phaseId) && getVariableId(phaseId, variableName, variableId);
}

bool KelProvider::getVariableId(short phaseId, const std::string& variableName, int& variableId) const
{
    return solutionModel()->findVariableByUniqueName(phaseId, variableName, variableId);
}

unsigned64 KelProvider::getPhaseVariableCountOfCategory(KelZoneCategory category) const
{
    std::vector<int> variableIds;
    getPhaseVariablesOfCategory(category, variableIds);
    return variableIds.size();
}

void KelProvider::getPhaseVariablesOfCategory(KelZoneCategory category, std::vector<int>& variableIds) const
{
    variableIds.clear();
    short phaseId = 0;
    if (!getActivePhase(phaseId)) {
        return;
    }
    std::vector<int> ofCategory;
    std::vector<int> ofPhase;
    getVariablesOfCategory(category, ofCategory);
    solutionModel()->getVariables(phaseId, ofPhase);
    std::sort(ofCategory.begin(), ofCategory.end());
    std::sort(ofPhase.begin(), ofPhase.end());
    std::set_intersection(ofCategory.begin(), ofCategory.end(), ofPhase.begin(), ofPhase.end(),
                          std::back_inserter(variableIds));
}

void KelProvider::getPhaseVariablesOfCategory(KelZoneCategory category, std::vector<std::string>& names) const
{
    names.clear();
    std::vector<int> variableIds;
    getPhaseVariablesOfCategory(category, variableIds);
    for (const int variableId : variableIds) {
        solutionModel()->getUniqueNameOfVariable(variableId, names.emplace_back());
    }
}

// ---- attributes of variables

bool KelProvider::getAttributesOfPhaseVariable(int variableId, std::vector<std::string>& names) const
{
    const bool isKnown = solutionModel()->getAttributeNamesOfVariable(variableId, names);
    if (KelVariableAttributeProvider* provider = attributeProvider()) {
        std::string uniqueName; // stays empty for an unknown variable: the provider may have names for any key
        solutionModel()->getUniqueNameOfVariable(variableId, uniqueName);
        std::vector<std::string> stored;
        stored.swap(names);
        std::vector<std::string> supported = provider->getSupportedAttributes(uniqueName);
        std::sort(stored.begin(), stored.end());
        std::sort(supported.begin(), supported.end());
        std::set_union(stored.begin(), stored.end(), supported.begin(), supported.end(), std::back_inserter(names));
    }
    return isKnown || !names.empty();
}

bool KelProvider::getAttributesOfPhaseVariable(short phaseId, const std::string& variableName,
                                               std::vector<std::string>& names) const
{
    int variableId = 0;
    if (getVariableId(phaseId, variableName, variableId)) {
        return getAttributesOfPhaseVariable(variableId, names);
    }
    names.clear();
    KelVariableAttributeProvider* provider = attributeProvider();
    if (provider == nullptr) {
        return false;
    }
    names = provider->getSupportedAttributes(variableName);
    return true;
}

bool KelProvider::getAttributesOfPhaseVariable(const std::string& phaseName, const std::string& variableName,
                                               std::vector<std::string>& names) const
{
    names.clear();
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) &&
           getAttributesOfPhaseVariable(phaseId, variableName, names);
}

bool KelProvider::getAttributesOfPhaseVariable(const std::string& variableName, std::vector<std::string>& names) const
{
    names.clear();
    short phaseId = 0;
    return getActivePhase(phaseId) && getAttributesOfPhaseVariable(phaseId, variableName, names);
}

bool KelProvider::getAttributeValueOfPhaseVariable(int variableId, const std::string& attribute,
                                                   std::string& value) const
{
    value.clear();
    KelVariableAttributeProvider* provider = attributeProvider();
    std::string uniqueName;
    if (provider != nullptr && solutionModel()->getUniqueNameOfVariable(variableId, uniqueName)) {
        value = provider->getAttributeValue(uniqueName, attribute);
    }
    if (value.empty()) {
        solutionModel()->getAttributeOfVariable(variableId, attribute, value);
    }
    if (!value.empty()) {
        applyVariableRecipe(variableId, attribute, value);
        return !value.empty();
    }
    if (provider != nullptr && attribute == KelAttributes::userVisible) {
        value = provider->getDefaultVariableVisibility() ? KelAttributes::yes : KelAttributes::no;
        return true; // kept: no recipe sees the default
    }
    return false;
}

bool KelProvider::getAttributeValueOfPhaseVariable(short phaseId, const std::string& variableName,
                                                   const std::string& attribute, std::string& value) const
{
    int variableId = 0;
    if (getVariableId(phaseId, variableName, variableId)) {
        return getAttributeValueOfPhaseVariable(variableId, attribute, value);
    }
    value.clear();
    if (KelVariableAttributeProvider* provider = attributeProvider()) {
        value = provider->getAttributeValue(variableName, attribute);
    }
    return !value.empty();
}

bool KelProvider::getAttributeValueOfPhaseVariable(const std::string& phaseName, const std::string& variableName,
                                                   const std::string& attribute, std::string& value) const
{
    value.clear();
    short phaseId = 0;
    return solutionModel()->findPhaseByUniqueName(phaseName, phaseId) &&
           getAttributeValueOfPhaseVariable(phaseId, variableName, attribute, value);
}

bool KelProvider::getAttributeValueOfPhaseVariable(const std::string& variableName, const std::string& attribute,
                                                   std::string& value) const
{
    value.clear();
    short phaseId = 0;
    return getActivePhase(phaseId) && getAttributeValueOfPhaseVariable(phaseId, variableName, attribute, value);
}

bool KelProvider::getStoredAttributesOfPhaseVariable(int variableId, std::vector<std::string>& names) const
{
    return solutionModel()->getAttributeNamesOfVariable(variableId, names);
}

bool KelProvider::getStoredAttributeValueOfPhaseVariable(int variableId, const std::string& attribute,
                                                         std::string& value) const
{
    return solutionModel()->getAttributeOfVariable(variableId, attribute, value);
}

void KelProvider::applyVariableRecipe(int variableId, std::string attribute, std::string& value) const
{
    if (attribute == KelAttributes::recipe) {
        return; // the name of a recipe is never rewritten, least of all by itself
    }
    std::string recipeName;
    if (!getAttributeValueOfPhaseVariable(variableId, KelAttributes::recipe, recipeName) || recipeName.empty() ||
        _variableRecipeProvider == nullptr) {
        return;
    }
    const KelVariableRecipe* recipe = _variableRecipeProvider->getRecipe(recipeName);
    if (recipe != nullptr && recipe->isApplicableTo(attribute)) {
        recipe->apply(value, this, variableId, attribute);
    }
}

// ---- values of variables

unsigned64 KelProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory, const std::string&,
                                                                     std::vector<int>& zoneIds)
{
    zoneIds.clear();
    return 0;
}

unsigned64 KelProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory, int, std::vector<int>& zoneIds)
{
    zoneIds.clear();
    return 0;
}

unsigned64 KelProvider::getValuesOfPhaseVariableForElementsInRange(unsigned64, unsigned64, float*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getValuesOfPhaseVariableForElementsInRange(unsigned64, unsigned64, double*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getValuesOfPhaseVariableForElementsInZone(int zoneId, float* values, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getValuesOfPhaseVariableForElementsInRange(first, last, values, capacity);
}

unsigned64 KelProvider::getValuesOfPhaseVariableForElementsInZone(int zoneId, double* values, unsigned64 capacity) const
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    return getValuesOfPhaseVariableForElementsInRange(first, last, values, capacity);
}

} // namespace meridyn
