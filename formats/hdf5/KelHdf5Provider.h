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
/// Others    a reader keeps no lock between calls, and serves the file as it was opened while others add to it;
///           new time levels are seen by startReading again. That its file was replaced or removed is a KelWarning. See
///           setLockTimeout, and docs/file-format.md.
/// Settings  getSettingsKeys lists the group "settings".
/// Threads   one thread at a time per object.
class KEL_API KelHdf5Provider : public KelFormatProvider {
public:
    /// Nothing is open.
    KelHdf5Provider();
    ~KelHdf5Provider() override;

    /// How long startReading may wait for a writer that is changing the file.
    ///
    /// @param seconds  0 (not at all) to 86,400 (a day); another value is refused with a KelWarning, and the default
    ///                 holds: KEL_LOCK_TIMEOUT of the environment, or else 30
    void setLockTimeout(double seconds);

    // The operations of the frame, see KelProvider, that KelFormatProvider leaves to a format.
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
    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    using KelFormatProvider::hasParticles;
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

    using KelFileProvider::startReading;

    /// @name Beside the frame, see KelSourceLedger
    /// @{
    KelDerived derived() const override;
    KelPlainDataType storedType(KelArray array) const override;
    std::optional<std::vector<KelMeshKey>> meshesWithTracks(short phaseId) const override;
    bool hasDataAtNoLevel() const override;
    std::optional<std::string> locationState(KelDataClass dataClass) const override;
    /// @}

protected:
    /// @name Opening, closing and loading again
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    void initLocationModel() const override;
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
