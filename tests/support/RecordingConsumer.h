#pragma once

#include "KelConsumer.h"

#include <sstream>
#include <string>
#include <type_traits>

namespace meridyn {

/// A writer that overrides what a format would, the range forms, and notes what they receive.
class RecordingConsumer : public KelConsumer {
public:
    RecordingConsumer() : KelConsumer("RecordingConsumer") {}

    /// The calls received, "; " between them: name(first, last, [values], count), with the type of the values where
    /// it is double or float.
    std::string calls() const { return _calls; }

    /// The buffer of the call received last.
    const void* buffer() const { return _buffer; }

    // clang-format off
    using Id = unsigned64;
    void setCoordinatesForNodesInRange(Id f, Id l, const double* v, Id n) override { note("setCoordinatesForNodesInRange", f, l, v, n); }
    void setCoordinatesForNodesInRange(Id f, Id l, const float* v, Id n) override { note("setCoordinatesForNodesInRange", f, l, v, n); }
    void setUniformNodeCountForEdgesInRange(Id f, Id l, short v) override { note("setUniformNodeCountForEdgesInRange", f, l, v); }
    void setNodeCountsForEdgesInRange(Id f, Id l, const short* v, Id n) override { note("setNodeCountsForEdgesInRange", f, l, v, n); }
    void setNodeIdsForEdgesInRange(Id f, Id l, const Id* v, Id n) override { note("setNodeIdsForEdgesInRange", f, l, v, n); }
    void setUniformNodeCountForFacesInRange(Id f, Id l, short v) override { note("setUniformNodeCountForFacesInRange", f, l, v); }
    void setNodeCountsForFacesInRange(Id f, Id l, const short* v, Id n) override { note("setNodeCountsForFacesInRange", f, l, v, n); }
    void setNodeIdsForFacesInRange(Id f, Id l, const Id* v, Id n) override { note("setNodeIdsForFacesInRange", f, l, v, n); }
    void setCell0sForFacesInRange(Id f, Id l, const Id* v, Id n) override { note("setCell0sForFacesInRange", f, l, v, n); }
    void setCell1sForFacesInRange(Id f, Id l, const Id* v, Id n) override { note("setCell1sForFacesInRange", f, l, v, n); }
    void setShadowFaceIdsForFacesInRange(Id f, Id l, const Id* v, Id n) override { note("setShadowFaceIdsForFacesInRange", f, l, v, n); }
    void setChildFaceCountsForFacesInRange(Id f, Id l, const short* v, Id n) override { note("setChildFaceCountsForFacesInRange", f, l, v, n); }
    void setUniformChildFaceCountForFacesInRange(Id f, Id l, short v) override { note("setUniformChildFaceCountForFacesInRange", f, l, v); }
    void setChildFaceIdsForFacesInRange(Id f, Id l, const Id* v, Id n) override { note("setChildFaceIdsForFacesInRange", f, l, v, n); }
    void setTypesForCellsInRange(Id f, Id l, const KelCellType* v, Id n) override { note("setTypesForCellsInRange", f, l, v, n); }
    void setNodeCountsForCellsInRange(Id f, Id l, const short* v, Id n) override { note("setNodeCountsForCellsInRange", f, l, v, n); }
    void setUniformNodeCountForCellsInRange(Id f, Id l, short v) override { note("setUniformNodeCountForCellsInRange", f, l, v); }
    void setNodeIdsForCellsInRange(Id f, Id l, const Id* v, Id n) override { note("setNodeIdsForCellsInRange", f, l, v, n); }
    void setFaceCountsForCellsInRange(Id f, Id l, const short* v, Id n) override { note("setFaceCountsForCellsInRange", f, l, v, n); }
    void setUniformFaceCountForCellsInRange(Id f, Id l, short v) override { note("setUniformFaceCountForCellsInRange", f, l, v); }
    void setFaceIdsForCellsInRange(Id f, Id l, const Id* v, Id n) override { note("setFaceIdsForCellsInRange", f, l, v, n); }
    void setPartitionIdsForCellsInRange(Id f, Id l, const int* v, Id n) override { note("setPartitionIdsForCellsInRange", f, l, v, n); }
    void setChildCellCountsForCellsInRange(Id f, Id l, const short* v, Id n) override { note("setChildCellCountsForCellsInRange", f, l, v, n); }
    void setUniformChildCellCountForCellsInRange(Id f, Id l, short v) override { note("setUniformChildCellCountForCellsInRange", f, l, v); }
    void setChildCellIdsForCellsInRange(Id f, Id l, const Id* v, Id n) override { note("setChildCellIdsForCellsInRange", f, l, v, n); }
    void setCaseSectionDataForElementsInRange(Id f, Id l, const void* v, Id n) override { note("setCaseSectionDataForElementsInRange", f, l, static_cast<const char*>(v), n); }
    void setValuesOfPhaseVariableForElementsInRange(Id f, Id l, const float* v, Id n) override { note("setValuesOfPhaseVariableForElementsInRange", f, l, v, n); }
    void setValuesOfPhaseVariableForElementsInRange(Id f, Id l, const double* v, Id n) override { note("setValuesOfPhaseVariableForElementsInRange", f, l, v, n); }
    // clang-format on

private:
    void append(const std::string& call) { _calls += (_calls.empty() ? "" : "; ") + call; }

    void note(const char* name, unsigned64 first, unsigned64 last, short value)
    {
        std::ostringstream text;
        text << name << '(' << first << ", " << last << ", " << value << ')';
        append(text.str());
    }

    template <class T>
    void note(const char* name, unsigned64 first, unsigned64 last, const T* values, unsigned64 count)
    {
        std::ostringstream text;
        text << name << '(' << first << ", " << last << ", ";
        if (std::is_same_v<T, double>)
            text << "double ";
        if (std::is_same_v<T, float>)
            text << "float ";
        text << '[';
        for (unsigned64 i = 0; i < count; ++i)
            text << (i == 0 ? "" : " ") << values[i];
        text << "], " << count << ')';
        append(text.str());
        _buffer = values;
    }

    std::string _calls;
    const void* _buffer = nullptr;
};

} // namespace meridyn
