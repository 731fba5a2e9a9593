#include "KelConsumer.h"
#include "Trace.h"
#include "ZoneRange.h"

#include <string>

namespace meridyn {

/// What the trace calls a category; empty for one that it does not know.
static std::string categoryLabel(KelZoneCategory category)
{
    switch (category) {
    case KEL_NODE_ZONE:
        return "Node";
    case KEL_FACE_ZONE:
        return "Face";
    case KEL_CELL_ZONE:
        return "Cell";
    default: // KEL_EDGE_ZONE too
        return "";
    }
}

/// What the trace calls a category. One without a label prints the complaint instead, and its label is empty.
static std::string categoryLabelOrLine(KelZoneCategory category, const char* complaint)
{
    std::string label = categoryLabel(category);
    if (label.empty())
        printFlushedLine(complaint);
    return label;
}

void KelConsumer::startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<std::string>& names)
{
    const std::string kind =
        categoryLabelOrLine(category, "KelConsumer::startWritingCaseSectionCategories(): Invalid ZoneCategory.");
    trace::list(kind + "-zone variable names", names);
}

void KelConsumer::startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds,
                                                         KelPlainDataType, unsigned64)
{
    trace::list("Variable-" + name + ", Zones", zoneIds);
}

void KelConsumer::setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void*, unsigned64)
{
    trace::range("  Element id: (", firstId, lastId);
}

void KelConsumer::setCaseSectionDataForElementsInZone(int zoneId, const void* values, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setCaseSectionDataForElementsInRange(first, last, values, count);
}

void KelConsumer::endWritingCaseSectionDataForCategory()
{}

void KelConsumer::endWritingCaseSectionCategories()
{}

void KelConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& variableName,
                                                             std::vector<int>& zoneIds, unsigned64)
{
    // kept: the shorter name is what this form has always printed
    const std::string kind =
        categoryLabelOrLine(category, "KelConsumer::startWritingPhaseVariableOfCategory(): Invalid ZoneCategory.");
    trace::list(kind + "-data, var = " + variableName + ", Zones", zoneIds);
}

void KelConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId,
                                                             std::vector<int>& zoneIds, unsigned64)
{
    const std::string kind = categoryLabelOrLine(
        category, "KelConsumer::startWritingPhaseVariableInZonesOfCategory(): Invalid ZoneCategory.");
    trace::list(kind + "-data, var = " + std::to_string(variableId) + ", Zones", zoneIds);
}

void KelConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& variableName,
                                                             const std::vector<int>& zoneIds, unsigned64 size)
{
    std::vector<int> zones = zoneIds; // the list of a virtual form may be written to
    startWritingPhaseVariableInZonesOfCategory(category, variableName, zones, size);
}

void KelConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId,
                                                             const std::vector<int>& zoneIds, unsigned64 size)
{
    std::vector<int> zones = zoneIds;
    startWritingPhaseVariableInZonesOfCategory(category, variableId, zones, size);
}

void KelConsumer::setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, const float*,
                                                             unsigned64)
{
    trace::range("  Element id: (", firstId, lastId);
}

void KelConsumer::setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, const double*,
                                                             unsigned64)
{
    trace::range("  Element id: (", firstId, lastId);
}

void KelConsumer::setValuesOfPhaseVariableForElementsInZone(int zoneId, const float* values, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setValuesOfPhaseVariableForElementsInRange(first, last, values, count);
}

void KelConsumer::setValuesOfPhaseVariableForElementsInZone(int zoneId, const double* values, unsigned64 count)
{
    const auto [first, last] = rangeOfZone(*this, zoneId);
    setValuesOfPhaseVariableForElementsInRange(first, last, values, count);
}

void KelConsumer::endWritingPhaseVariableInZonesOfCategory()
{}

} // namespace meridyn
