#pragma once

#include "KelFormatConsumer.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// Writes case and data files of the Kel family on HDF5: name.case.kel and name.data.kel, as docs/file-format.md
/// describes them.
///
/// What      everything that the frame carries, both data classes, in any order of calls, ranges and zones. The tracing
///           defaults of the frame are silent here.
/// Mesh      what is handed over belongs to the mesh id, target and partition that are current; a mesh id that was
///           never set counts as 1. Before going on to another mesh, call writeMeshSize: it stores the zones and sizes
///           as they are then. The zones of an element kind are fixed by its first values; a mesh-wide count that is
///           larger than the zones' adds the elements 1 to that count.
/// Files     a new file is written as name.tmp and replaces what bears its name only when endWriting succeeds. With
///           setAppendOn an existing file gets further meshes (a case) or time levels, meshes and variables (data):
///           what has the same place is replaced, everything else stays; until endWriting has succeeded the file reads
///           as before. A case that is appended to replaces the mesh of the same id, target and partition as a whole.
/// Checks    a value that contradicts the mesh or its counts, and anything that is missing, is posted as a KelError
///           with the file's name, at the call where it shows or at endWriting, which then gives false and leaves no
///           file.
///           After an error the remaining calls are ignored. Zones named by a start marker must get their values.
/// Settings  of one key replace each other, also those of a file that is appended to, unless overriding was
///           switched off.
///           A string attribute is a setting of the group "section/group" of the data class being written.
/// Memory    below 64 MiB beyond the caller's arrays, whatever the size of the mesh, as long as calls hand over ranges;
///           single elements in scattered order cost some tens of bytes each.
/// Threads   one thread at a time per object; compression uses a second thread within a call.
class KEL_API KelHdf5Consumer : public KelFormatConsumer {
public:
    /// A writer for the application "Unknown"; setApplicationName names it.
    KelHdf5Consumer();

    /// Drops files that were not ended.
    ~KelHdf5Consumer() override;

    /// @name Switches, before startWriting
    /// @{
    void setAppendOn(bool on) override;           ///< default off: an existing file is replaced
    void setOverrideSettingsOn(bool on) override; ///< default on
    /// Default on; off: no settings at all, the common ones neither.
    void setWriteSettingsOn(bool on) override;
    /// @}

    // The operations of the frame, see KelConsumer; those that are not named here need nothing of their own.
    // clang-format off

    /// @name Run
    /// @{
    void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass) override;
    void setCompression(int level) override;
    bool isWritingData() override;
    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass, const std::string& group) const override;
    bool addStringAttribute(const std::string& section, const std::string& group, const std::string& name, const std::string& value) const override;
    void writeMeshAttributes() const override;
    void setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count) override;
    /// @}

    /// @name Nodes
    /// @{
    void startWritingCoordinatesForNodes(const std::vector<int>& zoneIds) override;
    void setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const double* xyz, unsigned64 count) override;
    void setCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, const float* xyz, unsigned64 count) override;
    /// @}

    /// @name Edges
    /// @{
    void startWritingNodesForEdges(const std::vector<int>& zoneIds) override;
    void setUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount) override;
    void setNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count) override;
    void setNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count) override;
    /// @}

    /// @name Faces
    /// @{
    void startWritingNodesForFaces(const std::vector<int>& zoneIds) override;
    void setUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount) override;
    void setNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count) override;
    void setNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count) override;
    void startWritingCell0sForFaces(const std::vector<int>& zoneIds) override;
    void setCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds, unsigned64 count) override;
    void setCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* cellIds, unsigned64 count) override;
    void startWritingShadowFaceIdsForFaces(const std::vector<int>& zoneIds) override;
    void setShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* shadowFaceIds, unsigned64 count) override;
    void startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0, const std::vector<int>& zoneIds1) override;
    void setInterfaceDataForFacesInZone(int zoneId, const float* a, unsigned64 na, const float* b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1) override;
    void setInterfaceDataForFacesInZone(int zoneId, const double* a, unsigned64 na, const double* b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1) override;
    void setChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const short* childCounts, unsigned64 count) override;
    void setUniformChildFaceCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short childCount) override;
    void setChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds, unsigned64 count) override;
    /// @}

    /// @name Cells
    /// @{
    void startWritingTypesForCells(const std::vector<int>& zoneIds, const std::vector<KelCellType>& types) override;
    void setTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, const KelCellType* types, unsigned64 count) override;
    void startWritingNodesForCells(const std::vector<int>& zoneIds) override;
    void setNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* nodeCounts, unsigned64 count) override;
    void setUniformNodeCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short nodeCount) override;
    void setNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* nodeIds, unsigned64 count) override;
    void startWritingFacesForCells(const std::vector<int>& zoneIds) override;
    void setFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* faceCounts, unsigned64 count) override;
    void setUniformFaceCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short faceCount) override;
    void setFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* faceIds, unsigned64 count) override;
    void startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount) override;
    void setPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const int* partitionIds, unsigned64 count) override;
    void setChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const short* childCounts, unsigned64 count) override;
    void setUniformChildCellCountForCellsInRange(unsigned64 firstId, unsigned64 lastId, short childCount) override;
    void setChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, const unsigned64* childIds, unsigned64 count) override;
    /// @}

    /// @name Case sections
    /// @{
    void startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<std::string>& names) override;
    void startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds, KelPlainDataType type, unsigned64 size) override;
    void setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void* values, unsigned64 count) override;
    void endWritingCaseSectionDataForCategory() override;
    void endWritingCaseSectionCategories() override;
    /// @}

    /// @name Values of variables
    /// @{
    void startWritingPhase(short phaseId) const override;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds, unsigned64 size) override;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size) override;
    void setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, const float* values, unsigned64 count) override;
    void setValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, const double* values, unsigned64 count) override;
    void endWritingPhaseVariableInZonesOfCategory() override;
    /// @}

    /// @name Sets
    /// @{
    void startWritingSet(const std::string& name, KelZoneCategory category) override;
    void setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds, const std::vector<unsigned64>& maxIds) override;
    void setIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* ids, unsigned64 count) override;
    void startWritingSizeOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, KelPlainDataType type) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int* lengths, unsigned64 count) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short* lengths, unsigned64 count) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* lengths, unsigned64 count) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int length) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short length) override;
    void setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64 length) override;
    void startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, unsigned64 valuesPerMember, KelPlainDataType type) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned char* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const char* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned int* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const long* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const signed64* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const float* values, unsigned64 count) override;
    void setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const double* values, unsigned64 count) override;
    void endWritingDataOfVariableForSet() override;
    void startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, KelPlainDataType type) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned char* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const char* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const short* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned int* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const int* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const long* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const signed64* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const float* values, unsigned64 count) override;
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const double* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const unsigned char* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const char* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const short* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const unsigned int* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const int* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const long* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const unsigned64* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const signed64* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const float* values, unsigned64 count) override;
    void writeOtherDataForSet(const std::string& name, const double* values, unsigned64 count) override;
    void writeStringDataForSet(const std::string& name, const std::string& text) override;
    void endWritingSet() override;
    /// @}

    /// @name Set data
    /// @{
    void startWritingSetData(const std::string& name, unsigned64 memberCount) override;
    unsigned64 setIdsForSetData(const unsigned64* ids, unsigned64 count) override;
    void startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember, KelPlainDataType type) override;
    unsigned64 setVariableForSetData(const unsigned char* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const char* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const short* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const unsigned int* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const int* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const long* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const unsigned64* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const signed64* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const float* values, unsigned64 count) override;
    unsigned64 setVariableForSetData(const double* values, unsigned64 count) override;
    void startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned char* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const char* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const short* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned int* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const int* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const long* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const unsigned64* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const signed64* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const float* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const int* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const short* lengths, unsigned64 lengthCount) override;
    unsigned64 setVariableLengthVariableForSetData(const double* values, unsigned64 count, const unsigned64* lengths, unsigned64 lengthCount) override;
    void endWritingVariableLengthVariableForSetData() override;
    void writeOtherDataForSetData(const std::string& name, const unsigned char* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const char* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const short* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const unsigned int* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const int* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const long* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const unsigned64* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const signed64* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const float* values, unsigned64 count) override;
    void writeOtherDataForSetData(const std::string& name, const double* values, unsigned64 count) override;
    void writeStringDataForSetData(const std::string& name, const std::string& text) override;
    void endWritingSetData() override;
    /// @}

    /// @name Particle tracks
    /// @{
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const std::string& name) override;
    void startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount) override;
    void setValuesOfParticleTrackVariable(int variableId, const unsigned char* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const char* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const short* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const unsigned int* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const int* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const long* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const unsigned64* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const signed64* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const float* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(int variableId, const double* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned char* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const char* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const short* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned int* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const int* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const long* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const unsigned64* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const signed64* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const float* values, unsigned64 count) override;
    void setValuesOfParticleTrackVariable(const std::string& variableName, const double* values, unsigned64 count) override;
    void endWritingChunkInPartiticleTrackGroup() override;
    void endWritingPartiticleTrackGroup() override;
    void endWritingParticleTracks() override;
    /// @}
    // clang-format on

    using KelFileConsumer::startWriting;

protected:
    /// @name Opening and closing of the files
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    /// @}

    /// @name For the frame
    /// @{
    void cacheLocationModelState(const std::string& state) const override;
    int getLastLogIndex(KelDataClass dataClass) const override;
    /// @}

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace meridyn
