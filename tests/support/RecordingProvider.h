#pragma once

#include "KelProvider.h"

#include <sstream>
#include <string>
#include <vector>

namespace meridyn {

/// A bare reader whose protected operations are open.
class OpenProvider : public KelProvider {
public:
    using KelBase::addTimeLevel;
    using KelBase::addVariableOfCategory;
    using KelBase::getActivePhase;
    using KelBase::lookupSetting;
    using KelBase::setActivePhase;
    using KelBase::settingsObject;
    using KelBase::setVariableMappingSource;
    using KelBase::solutionModel;
    using KelBase::variableMappingSource;
    using KelProvider::applyVariableRecipe;
    using KelProvider::fileExists;
};

/// What a format does: overrides the range forms alone. Notes each call as "name(first, last, capacity)", puts `value`
/// into the buffer and answers `stored`.
class RecordingProvider : public OpenProvider {
public:
    unsigned64 stored = 1;
    int value = 41;

    /// The calls since the last question, with ";" between them.
    std::string calls() const
    {
        const std::string text = _calls;
        _calls.clear();
        return text;
    }

    /// The buffer that the last call brought.
    const void* buffer() const { return _buffer; }

    // clang-format off
#define KEL_RANGE_FORM(NAME, T)                                                                                        \
    unsigned64 NAME(unsigned64 first, unsigned64 last, T* buffer, unsigned64 capacity) const override                  \
    {                                                                                                                  \
        return note(#NAME, first, last, buffer, capacity);                                                             \
    }
    KEL_RANGE_FORM(getCoordinatesForNodesInRange, float)
    KEL_RANGE_FORM(getCoordinatesForNodesInRange, double)
    KEL_RANGE_FORM(getNodeCountsForEdgesInRange, short)
    KEL_RANGE_FORM(getNodeIdsForEdgesInRange, unsigned64)
    KEL_RANGE_FORM(getNodeCountsForFacesInRange, short)
    KEL_RANGE_FORM(getNodeIdsForFacesInRange, unsigned64)
    KEL_RANGE_FORM(getCell0sForFacesInRange, unsigned64)
    KEL_RANGE_FORM(getCell1sForFacesInRange, unsigned64)
    KEL_RANGE_FORM(getShadowFaceIdsForFacesInRange, unsigned64)
    KEL_RANGE_FORM(getChildFaceCountsForFacesInRange, short)
    KEL_RANGE_FORM(getChildFaceIdsForFacesInRange, unsigned64)
    KEL_RANGE_FORM(getTypesForCellsInRange, KelCellType)
    KEL_RANGE_FORM(getNodeCountsForCellsInRange, short)
    KEL_RANGE_FORM(getNodeIdsForCellsInRange, unsigned64)
    KEL_RANGE_FORM(getFaceCountsForCellsInRange, short)
    KEL_RANGE_FORM(getFaceIdsForCellsInRange, unsigned64)
    KEL_RANGE_FORM(getPartitionIdsForCellsInRange, int)
    KEL_RANGE_FORM(getChildCellCountsForCellsInRange, short)
    KEL_RANGE_FORM(getChildCellIdsForCellsInRange, unsigned64)
    KEL_RANGE_FORM(getValuesOfPhaseVariableForElementsInRange, float)
    KEL_RANGE_FORM(getValuesOfPhaseVariableForElementsInRange, double)
#undef KEL_RANGE_FORM
    // clang-format on

    unsigned64 getCaseSectionDataForElementsInRange(unsigned64 first, unsigned64 last, void* values,
                                                    unsigned64 capacity) const override
    {
        return note("getCaseSectionDataForElementsInRange", first, last, static_cast<unsigned char*>(values), capacity);
    }

    bool hasUniformNodeCountForEdgesInRange(unsigned64 first, unsigned64 last, short* count) const override
    {
        return note("hasUniformNodeCountForEdgesInRange", first, last, count, 1) == 1;
    }

    bool hasUniformNodeCountForFacesInRange(unsigned64 first, unsigned64 last, short* count) const override
    {
        return note("hasUniformNodeCountForFacesInRange", first, last, count, 1) == 1;
    }

private:
    template <typename T>
    unsigned64 note(const char* name, unsigned64 first, unsigned64 last, T* buffer, unsigned64 capacity) const
    {
        std::ostringstream call;
        call << (_calls.empty() ? "" : ";") << name << '(' << first << ", " << last << ", " << capacity << ')';
        _calls += call.str();
        _buffer = buffer;
        if (buffer != nullptr && capacity > 0) {
            *buffer = static_cast<T>(value);
        }
        return stored;
    }

    mutable std::string _calls;
    mutable const void* _buffer = nullptr;
};

} // namespace meridyn
