#pragma once

#include "KelFileConsumer.h"
#include "KelModelDescription.h"
#include "KelValueTypes.h"

#include <string>
#include <vector>

namespace meridyn {

/// Base of the writers of our formats: a file writer that is silent, that knows the phase it is in, and that describes
/// the mesh and the solution it was told about.
///
/// Markers   say nothing: the frame's own would print. A format overrides those that mean something to it.
/// Ids       the forms that take the id of a variable reach those that take its unique name; an unknown id arrives as
///           an empty name.
class KEL_API KelFormatConsumer : public KelFileConsumer {
public:
    /// No file is named and nothing is open.
    KelFormatConsumer();
    ~KelFormatConsumer() override;

    // clang-format off
    /// @name Markers that do nothing
    /// @{
    void startWritingNodes(const std::vector<int>&) override {}
    void startWritingCoordinatesForNodes(const std::vector<int>&) override {}
    void startWritingEdges(const std::vector<int>&) override {}
    void startWritingNodesForEdges(const std::vector<int>&) override {}
    void endWritingNodeIdsForEdges() override {}
    void startWritingFaces(const std::vector<int>&) override {}
    void startWritingNodesForFaces(const std::vector<int>&) override {}
    void endWritingNodeIdsForFaces() override {}
    void startWritingCell0sForFaces(const std::vector<int>&) override {}
    void startWritingCell1sForFaces(const std::vector<int>&) override {}
    void startWritingShadowFaceIdsForFaces(const std::vector<int>&) override {}
    void startWritingInterfaceDataForFaces(const std::vector<int>&, const std::vector<int>&) override {}
    void endWritingInterfaceDataForFaces() override {}
    void startWritingChildFacesForFaces(const std::vector<int>&) override {}
    void startWritingChildFaceCountsForFaces() override {}
    void endWritingChildFaceCountsForFaces() override {}
    void startWritingChildFaceIdsForFaces() override {}
    void startWritingCells(const std::vector<int>&) override {}
    void startWritingTypesForCells(const std::vector<int>&, const std::vector<KelCellType>&) override {}
    void startWritingNodesForCells(const std::vector<int>&) override {}
    void startWritingNodeCountsForCells() override {}
    void startWritingPartitionIdsForCells(const std::vector<int>&, int) override {}
    void endWritingPartitionIdsForCells() override {}
    void startWritingChildCellsForCells(const std::vector<int>&) override {}
    void startWritingChildCellCountsForCells() override {}
    void endWritingChildCellCountsForCells() override {}
    void startWritingChildCellIdsForCells() override {}
    void startWritingCaseSectionCategories(KelZoneCategory, const std::vector<std::string>&) override {}
    /// @}

    /// Makes the phase the active one.
    void startWritingPhase(short phaseId) const override { setActivePhase(phaseId); }

    /// @name Forms with the id of a variable
    /// @{
    using KelFileConsumer::startWritingPhaseVariableInZonesOfCategory;
    using KelFileConsumer::setValuesOfParticleTrackVariable;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size) override
    {
        startWritingPhaseVariableInZonesOfCategory(category, variableName(variableId), zoneIds, size);
    }
#define KEL_DEFINE(T) \
    void setValuesOfParticleTrackVariable(int variableId, const T* values, unsigned64 count) override \
    { setValuesOfParticleTrackVariable(variableName(variableId), values, count); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    /// @}
    // clang-format on

protected:
    /// Sizes, units and zones as they are now.
    KelMeshDescription describeMesh() const;

    /// Time levels, phases and variables as they are now.
    KelSolutionDescription describeSolution() const;

    /// Element ids of a zone, 0 and 0 for an unknown one.
    std::pair<unsigned64, unsigned64> rangeOfZone(int zoneId) const;

    /// The unique name of a variable, empty for an unknown one.
    std::string variableName(int variableId) const;
};

} // namespace meridyn
