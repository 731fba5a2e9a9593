#pragma once

#include "KelFormatProvider.h"
#include "KelTreeStore.h"

#include <memory>

namespace meridyn {

/// Reader of a file that is there as a tree, see KelTree: gives back everything that KelTreeConsumer kept. A format
/// gives it a store to load trees from.
///
/// Meshes    a mesh id below 1, the default target and partition -1 stand for the first that the file has; opening a
///           file makes them the current ones. Choosing another mesh reads zones, phases and variables anew. Data that
///           are opened while no mesh is known declare the zones that were known when they were written.
/// Levels    opening the data selects the first time level and the first phase where none is selected.
/// Version   and solver type are taken from the common settings.
/// Ranges    an id that has no values makes the whole range give nothing; cell 1 is 0 wherever there is a cell 0. A
///           buffer that is too small gets the whole elements that fit.
/// Sets      of both data classes are found by name, those of the data class opened last first.
/// Reports   a file or a mesh that is not there, and what cannot be read, post a KelError.
class KEL_API KelTreeProvider : public KelFormatProvider {
public:
    /// @param store  where trees come from
    explicit KelTreeProvider(std::shared_ptr<KelTreeStore> store);
    ~KelTreeProvider() override;

    // The operations of the frame, see KelProvider, that KelFormatProvider leaves to a format.
    // clang-format off

    /// @name Run
    /// @{
    bool isReadingData() const override;
    void getLog(KelDataClass dataClass, std::vector<std::pair<std::string, std::string>>& entries) const override;
    void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group, std::vector<std::string>& keys) const override;
    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text, const std::string& group) const override;
    /// @}

    /// @name Mesh and case sections
    /// @{
    unsigned64 getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const override;
    void startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1) override;
    bool getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb, unsigned64& count0, unsigned64& count1) const override;
    int getPartitionCountOfCells() const override;
    void startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names) override;
    KelPlainDataType startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds) override;
    bool hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const override;
    unsigned64 getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values, unsigned64 capacity) const override;
    void endReadingCaseSectionForCategory() override;
    /// @}

    /// @name Values of variables and particles
    /// @{
    using KelFormatProvider::hasParticles;
    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds) override;
    bool hasParticles(const std::string& phaseName) const override;
    void getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const override;
    /// @}

    /// @name Particle tracks
    /// @{
    using KelFormatProvider::hasParticleTracks;
    bool hasParticleTracks(const std::string& phaseName) const override;
    bool hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const override;
    void startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void getParticleTrackGroups(std::vector<std::string>& groups) const override;
    void startReadingParticleTrackGroup(const std::string& group) override;
    void getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const override;
    void startReadingChunkInParticleTrackGroup(int chunkId) override;
    unsigned64 getPointCountOfParticleTrackChunk() const override;
    void endReadingChunkInParticleTrackGroup() override;
    void endReadingParticleTrackGroup() override;
    void endReadingParticleTracks() override;
    /// @}

    /// @name Sets and set data
    /// @{
    using KelFormatProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const override;
    bool getSetNames(KelZoneCategory category, std::vector<std::string>& names) const override;
    bool startReadingSet(const std::string& name) override;
    KelZoneCategory getCategoryOfSet() const override;
    void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const override;
    KelPlainDataType startReadingSizeOfVariableLengthedVarForSet(const std::string& name) override;
    void endReadingSizeOfVariableLengthedVarForSet() override;
    KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember) override;
    void endReadingDataOfVariableForSet() override;
    KelPlainDataType startReadingVariableLengthedDataOfVariableForSet(const std::string& name) override;
    void endReadingVariableLengthedDataOfVariableForSet() override;
    void endReadingSet() override;
    void getSetDataNames(std::vector<std::string>& names) const override;
    bool startReadingSetData(const std::string& name, unsigned64& memberCount) override;
    void endReadingSetData() override;
    /// @}

    /// @name Beside the frame, see KelSourceLedger
    /// @{
    KelDerived derived() const override;
    KelPlainDataType storedType(KelArray array) const override;
    std::optional<std::vector<KelMeshKey>> meshesWithTracks(short phaseId) const override;
    bool hasDataAtNoLevel() const override;
    std::optional<std::string> locationState(KelDataClass dataClass) const override;
    std::optional<std::vector<KelIdRange>> elementsWithValues(KelArray array, unsigned64 firstId, unsigned64 lastId) const override;
    /// @}

protected:
    /// @name Opening, closing and loading again
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;
    /// @}

    /// @name What all forms of reading values come to
    /// @{
    unsigned64 give(KelArray array, unsigned64 firstId, unsigned64 lastId, const KelBuffer& values) const override;
    std::optional<signed64> uniformValue(KelArray array, unsigned64 firstId, unsigned64 lastId) const override;
    unsigned64 giveInterface(int zoneId, const KelInterfaceBuffers& values) const override;
    std::vector<std::string> namesIn(KelCollection in, KelPart part) const override;
    std::optional<KelArrayInfo> describe(KelCollection in, KelPart part, const std::string& name) const override;
    bool giveWhole(KelCollection in, KelPart part, const std::string& name, const KelRoom& room) const override;
    unsigned64 giveText(KelCollection in, const std::string& name, std::string& text) const override;
    /// @}
    // clang-format on

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace meridyn
