#pragma once

#include "KelConsumer.h"

#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// A writer of a format that passes over one kind of marker: a client that forgets it.
template <class Writer>
class OmittingWriter : public Writer {
public:
    /// `marker` is the name of the operation that is left out; an empty one leaves out none.
    explicit OmittingWriter(std::string marker) : _omitted(std::move(marker)) {}

    /// How often each marker was called, those that were left out too.
    const std::map<std::string, int>& calls() const { return _calls; }

    using Ids = const std::vector<int>&;
    using Text = const std::string&;
    using Sizes = std::vector<unsigned64>;

    // clang-format off
#define KEL_MARKER(NAME, PARAMETERS, ...) void NAME PARAMETERS override { if (passes(#NAME)) Writer::NAME(__VA_ARGS__); }
    KEL_MARKER(startWritingNodes, (Ids zones), zones)
    KEL_MARKER(startWritingCoordinatesForNodes, (Ids zones), zones)
    KEL_MARKER(endWritingCoordinatesForNodes, ())
    KEL_MARKER(endWritingNodes, ())
    KEL_MARKER(startWritingEdges, (Ids zones), zones)
    KEL_MARKER(startWritingNodesForEdges, (Ids zones), zones)
    KEL_MARKER(startWritingNodeCountsForEdges, ())
    KEL_MARKER(endWritingNodeCountsForEdges, ())
    KEL_MARKER(startWritingNodeIdsForEdges, ())
    KEL_MARKER(endWritingNodeIdsForEdges, ())
    KEL_MARKER(endWritingNodesForEdges, ())
    KEL_MARKER(endWritingEdges, ())
    KEL_MARKER(startWritingFaces, (Ids zones), zones)
    KEL_MARKER(startWritingNodesForFaces, (Ids zones), zones)
    KEL_MARKER(startWritingNodeCountsForFaces, ())
    KEL_MARKER(endWritingNodeCountsForFaces, ())
    KEL_MARKER(startWritingNodeIdsForFaces, ())
    KEL_MARKER(endWritingNodeIdsForFaces, ())
    KEL_MARKER(endWritingNodesForFaces, ())
    KEL_MARKER(startWritingCell0sForFaces, (Ids zones), zones)
    KEL_MARKER(endWritingCell0sForFaces, ())
    KEL_MARKER(startWritingCell1sForFaces, (Ids zones), zones)
    KEL_MARKER(endWritingCell1sForFaces, ())
    KEL_MARKER(startWritingShadowFaceIdsForFaces, (Ids zones), zones)
    KEL_MARKER(endWritingShadowFaceIdsForFaces, ())
    KEL_MARKER(startWritingInterfaceDataForFaces, (Ids zones0, Ids zones1), zones0, zones1)
    KEL_MARKER(endWritingInterfaceDataForFaces, ())
    KEL_MARKER(startWritingChildFacesForFaces, (Ids zones), zones)
    KEL_MARKER(startWritingChildFaceCountsForFaces, ())
    KEL_MARKER(endWritingChildFaceCountsForFaces, ())
    KEL_MARKER(startWritingChildFaceIdsForFaces, ())
    KEL_MARKER(endWritingChildFaceIdsForFaces, ())
    KEL_MARKER(endWritingChildFacesForFaces, ())
    KEL_MARKER(endWritingFaces, ())
    KEL_MARKER(startWritingCells, (Ids zones), zones)
    KEL_MARKER(startWritingTypesForCells, (Ids zones, const std::vector<KelCellType>& types), zones, types)
    KEL_MARKER(endWritingTypesForCells, ())
    KEL_MARKER(startWritingNodesForCells, (Ids zones), zones)
    KEL_MARKER(startWritingNodeCountsForCells, ())
    KEL_MARKER(endWritingNodeCountsForCells, ())
    KEL_MARKER(startWritingNodeIdsForCells, ())
    KEL_MARKER(endWritingNodeIdsForCells, ())
    KEL_MARKER(endWritingNodesForCells, ())
    KEL_MARKER(startWritingFacesForCells, (Ids zones), zones)
    KEL_MARKER(startWritingFaceCountsForCells, ())
    KEL_MARKER(endWritingFaceCountsForCells, ())
    KEL_MARKER(startWritingFaceIdsForCells, ())
    KEL_MARKER(endWritingFaceIdsForCells, ())
    KEL_MARKER(endWritingFacesForCells, ())
    KEL_MARKER(startWritingPartitionIdsForCells, (Ids zones, int count), zones, count)
    KEL_MARKER(endWritingPartitionIdsForCells, ())
    KEL_MARKER(startWritingChildCellsForCells, (Ids zones), zones)
    KEL_MARKER(startWritingChildCellCountsForCells, ())
    KEL_MARKER(endWritingChildCellCountsForCells, ())
    KEL_MARKER(startWritingChildCellIdsForCells, ())
    KEL_MARKER(endWritingChildCellIdsForCells, ())
    KEL_MARKER(endWritingChildCellsForCells, ())
    KEL_MARKER(endWritingCells, ())
    KEL_MARKER(startWritingCaseSectionCategories, (KelZoneCategory category, const std::vector<std::string>& names), category, names)
    KEL_MARKER(startWritingCaseSectionDataForCategory, (Text name, Ids zones, KelPlainDataType type, unsigned64 size), name, zones, type, size)
    KEL_MARKER(endWritingCaseSectionDataForCategory, ())
    KEL_MARKER(endWritingCaseSectionCategories, ())
    KEL_MARKER(startWritingPhaseVariableInZonesOfCategory, (KelZoneCategory category, Text name, std::vector<int>& zones, unsigned64 size), category, name, zones, size)
    KEL_MARKER(startWritingPhaseVariableInZonesOfCategory, (KelZoneCategory category, int variableId, std::vector<int>& zones, unsigned64 size), category, variableId, zones, size)
    KEL_MARKER(endWritingPhaseVariableInZonesOfCategory, ())
    KEL_MARKER(startWritingSet, (Text name, KelZoneCategory category), name, category)
    KEL_MARKER(startWritingIdsForSet, ())
    KEL_MARKER(endWritingIdsForSet, ())
    KEL_MARKER(startWritingSizeOfVariableForSet, (Text name, Sizes sizes, KelPlainDataType type), name, sizes, type)
    KEL_MARKER(endWritingSizeOfVariableForSet, ())
    KEL_MARKER(startWritingDataOfVariableForSet, (Text name, Sizes sizes, unsigned64 perMember, KelPlainDataType type), name, sizes, perMember, type)
    KEL_MARKER(endWritingDataOfVariableForSet, ())
    KEL_MARKER(startWritingVariableLengthedDataOfVariableForSet, (Text name, Sizes sizes, KelPlainDataType type), name, sizes, type)
    KEL_MARKER(endWritingVariableLengthedDataOfVariableForSet, ())
    KEL_MARKER(endWritingSet, ())
    KEL_MARKER(startWritingSetData, (Text name, unsigned64 members), name, members)
    KEL_MARKER(startWritingIdsForSetData, ())
    KEL_MARKER(endWritingIdsForSetData, ())
    KEL_MARKER(startWritingVariableForSetData, (Text name, unsigned64 perMember, KelPlainDataType type), name, perMember, type)
    KEL_MARKER(endWritingVariableForSetData, ())
    KEL_MARKER(startWritingVariableLengthVariableForSetData, (Text name, KelPlainDataType type, KelPlainDataType lengths), name, type, lengths)
    KEL_MARKER(endWritingVariableLengthVariableForSetData, ())
    KEL_MARKER(endWritingSetData, ())
    KEL_MARKER(startWritingPartiticleTrackGroup, (Text name), name)
    KEL_MARKER(startWritingChunkInPartiticleTrackGroup, (int chunk, unsigned64 points), chunk, points)
    KEL_MARKER(endWritingChunkInPartiticleTrackGroup, ())
    KEL_MARKER(endWritingPartiticleTrackGroup, ())
    KEL_MARKER(endWritingParticleTracks, ())
#undef KEL_MARKER
    void startWritingPhase(short phaseId) const override { if (passes("startWritingPhase")) Writer::startWritingPhase(phaseId); }
    void endWritingPhase() const override { if (passes("endWritingPhase")) Writer::endWritingPhase(); }
    // clang-format on

    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override
    {
        return !passes("startWritingParticleTracks") ||
               Writer::startWritingParticleTracks(phaseId, meshId, target, partitionId);
    }

private:
    bool passes(const std::string& marker) const
    {
        ++_calls[marker];
        return marker != _omitted;
    }

    std::string _omitted;
    mutable std::map<std::string, int> _calls;
};

} // namespace meridyn
