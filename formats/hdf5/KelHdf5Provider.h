#pragma once

#include "KelFormatProvider.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// Reads case and data files of the Kel family on HDF5, see KelHdf5Consumer and docs/file-format.md.
///
/// Opening   fills KelBase: from a case mesh context, sizes, units, zones with their properties and neighbours; from
///           data time levels, phases, variables with their attributes and categories, and the zones when none are
///           known yet. Arrays are opened when they are first asked for, and a range reads that range only.
/// Mesh      the mesh of the file that fits the context that was chosen before, else the first one; the context then
///           names it. Choosing another mesh id, target or partition later loads that one, or gives false and a
///           KelError.
/// Level     opening data selects the first time level and the first phase where none is selected. Values without a
///           time level are read while none is selected.
/// Solver    the solver type is that of the common settings, when they name one.
/// Version   isSupported decides: files of a newer major version are refused, of a newer minor version read with a
///           KelWarning; all older ones are read.
/// Absent    what the file does not have gives 0, false, -1 or an empty list silently; so does a range in which an
///           element has no values, but for cell 1, which is 0 there. Where the room in a buffer ends, the whole
///           elements that fit are given.
/// Faults    everything else that goes wrong (a damaged file, an element that is not in the mesh) is posted as a
///           KelError that names the file; the operation then gives what it gives for an absent array.
/// Settings  getSettingsKeys lists the group "settings".
/// Threads   one thread at a time per object.
class KEL_API KelHdf5Provider : public KelFormatProvider {
public:
    /// Nothing is open.
    KelHdf5Provider();
    ~KelHdf5Provider() override;

    // The operations of the frame, see KelProvider; those that are not named here need nothing of their own.
    // clang-format off

    /// @name Run
    /// @{
    bool isReadingData() const override;
    void getLog(KelDataClass dataClass, std::vector<std::pair<std::string, std::string>>& entries) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group, std::vector<std::string>& keys) const override;
    void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const override;
    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text, const std::string& group) const override;
    void setSkipReadZoneTopology(bool on) override;
    /// @}

    /// @name Nodes and edges
    /// @{
    unsigned64 getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float* xyz, unsigned64 capacity) const override;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz, unsigned64 capacity) const override;
    bool hasUniformNodeCountForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const override;
    unsigned64 getNodeCountsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForEdgesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    /// @}

    /// @name Faces
    /// @{
    bool hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const override;
    unsigned64 getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    unsigned64 getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const override;
    unsigned64 getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const override;
    unsigned64 getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* shadowFaceIds, unsigned64 capacity) const override;
    void startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1) override;
    bool getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb, unsigned64& count0, unsigned64& count1) const override;
    unsigned64 getInterfaceDataForFacesInZone(int zoneId, float* a, unsigned64 na, float* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const override;
    unsigned64 getInterfaceDataForFacesInZone(int zoneId, double* a, unsigned64 na, double* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const override;
    unsigned64 getChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts, unsigned64 capacity) const override;
    unsigned64 getChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds, unsigned64 capacity) const override;
    /// @}

    /// @name Cells
    /// @{
    bool hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const override;
    unsigned64 getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types, unsigned64 capacity) const override;
    bool hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const override;
    unsigned64 getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    bool hasUniformFaceCountForCellsInZone(int zoneId, short* faceCount) const override;
    unsigned64 getFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* faceCounts, unsigned64 capacity) const override;
    unsigned64 getFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* faceIds, unsigned64 capacity) const override;
    unsigned64 getPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, int* partitionIds, unsigned64 capacity) const override;
    int getPartitionCountOfCells() const override;
    unsigned64 getChildCellCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts, unsigned64 capacity) const override;
    unsigned64 getChildCellIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds, unsigned64 capacity) const override;
    /// @}

    /// @name Case sections
    /// @{
    void startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names) override;
    KelPlainDataType startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds) override;
    bool hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const override;
    unsigned64 getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values, unsigned64 capacity) const override;
    void endReadingCaseSectionForCategory() override;
    /// @}

    /// @name Values of variables
    /// @{
    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds) override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, float* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, double* values, unsigned64 capacity) const override;
    /// @}

    /// @name Particles
    /// @{
    using KelFormatProvider::hasParticles;
    bool hasParticles(const std::string& phaseName) const override;
    void getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const override;
    /// @}

    /// @name Particle tracks
    /// @{
    using KelFormatProvider::hasParticleTracks;
    using KelFormatProvider::getValuesOfParticleTrackVariable;
    bool hasParticleTracks(const std::string& phaseName) const override;
    bool hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const override;
    void startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void getParticleTrackGroups(std::vector<std::string>& groups) const override;
    void startReadingParticleTrackGroup(const std::string& group) override;
    void getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const override;
    void startReadingChunkInParticleTrackGroup(int chunkId) override;
    unsigned64 getPointCountOfParticleTrackChunk() const override;
    void getParticleTrackVariables(std::vector<std::string>& names) const override;
    KelPlainDataType getDataTypeOfParticleTrackVariable(const std::string& variableName) const override;
    unsigned64 getValueCountOfParticleTrackVariable(const std::string& variableName) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned char* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, char* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, short* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned int* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, int* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, long* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, unsigned64* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, signed64* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, float* values, unsigned64 capacity) const override;
    unsigned64 getValuesOfParticleTrackVariable(const std::string& variableName, double* values, unsigned64 capacity) const override;
    void endReadingChunkInParticleTrackGroup() override;
    void endReadingParticleTrackGroup() override;
    void endReadingParticleTracks() override;
    /// @}

    /// @name Sets
    /// @{
    using KelFormatProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const override;
    bool getSetNames(KelZoneCategory category, std::vector<std::string>& names) const override;
    bool startReadingSet(const std::string& name) override;
    KelZoneCategory getCategoryOfSet() const override;
    void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const override;
    unsigned64 getIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* ids, unsigned64 capacity) const override;
    void getVariablesInSet(std::vector<std::string>& names) const override;
    void getVariableLengthedVariablesInSet(std::vector<std::string>& names) const override;
    void getOtherVariablesInSet(std::vector<std::string>& names) const override;
    void getStringVariablesInSet(std::vector<std::string>& names) const override;
    KelPlainDataType startReadingSizeOfVariableLengthedVarForSet(const std::string& name) override;
    unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* lengths, unsigned64 capacity) const override;
    unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* lengths, unsigned64 capacity) const override;
    unsigned64 getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* lengths, unsigned64 capacity) const override;
    void endReadingSizeOfVariableLengthedVarForSet() override;
    KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember) override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned char* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, char* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned int* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, long* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, signed64* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, float* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, double* values, unsigned64 capacity) const override;
    void endReadingDataOfVariableForSet() override;
    KelPlainDataType startReadingVariableLengthedDataOfVariableForSet(const std::string& name) override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned char* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, char* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned int* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, long* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, signed64* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, float* values, unsigned64 capacity) const override;
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, double* values, unsigned64 capacity) const override;
    void endReadingVariableLengthedDataOfVariableForSet() override;
    KelPlainDataType getDataTypeOfOtherDataForSet(const std::string& name) const override;
    unsigned64 getOtherDataForSet(const std::string& name, unsigned char* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, char* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, short* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, unsigned int* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, int* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, long* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, unsigned64* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, signed64* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, float* values, unsigned64 capacity) const override;
    unsigned64 getOtherDataForSet(const std::string& name, double* values, unsigned64 capacity) const override;
    unsigned64 getStringDataForSet(const std::string& name, std::string& text) const override;
    void endReadingSet() override;
    /// @}

    /// @name Set data
    /// @{
    void getSetDataNames(std::vector<std::string>& names) const override;
    bool startReadingSetData(const std::string& name, unsigned64& memberCount) override;
    bool getIdsForSetData(std::vector<unsigned64>& ids) const override;
    void getConstantLengthVariablesInSetData(std::vector<std::string>& names) const override;
    void getVariableLengthVariablesInSetData(std::vector<std::string>& names) const override;
    void getOtherVariablesInSetData(std::vector<std::string>& names) const override;
    void getStringVariablesInSetData(std::vector<std::string>& names) const override;
    KelPlainDataType getDataTypeOfDataForSetData(const std::string& name) const override;
    KelPlainDataType getDataTypeOfSizeForSetData(const std::string& name) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned char>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<char>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<short>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned int>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<int>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<long>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<unsigned64>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<signed64>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<float>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<double>& values, unsigned64& valuesPerMember) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned char>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<char>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<short>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned int>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<int>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<long>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned64>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<signed64>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<float>& values) const override;
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<double>& values) const override;
    bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<int>& lengths) const override;
    bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<short>& lengths) const override;
    bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<unsigned64>& lengths) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<unsigned char>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<char>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<short>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<unsigned int>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<int>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<long>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<unsigned64>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<signed64>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<float>& values) const override;
    bool getOtherDataForSetData(const std::string& name, std::vector<double>& values) const override;
    unsigned64 getStringDataForSetData(const std::string& name, std::string& text) const override;
    void endReadingSetData() override;
    /// @}
    // clang-format on

    using KelFileProvider::startReading;

protected:
    /// @name Opening, closing and loading again
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    void initLocationModel() const override;
    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;
    /// @}

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace meridyn
