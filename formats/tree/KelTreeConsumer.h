#pragma once

#include "KelFormatConsumer.h"
#include "KelTreeStore.h"

#include <memory>

namespace meridyn {

/// Writer that gathers a file as a tree, see KelTree, and keeps everything that the frame takes. A format gives it a
/// store to save trees in.
///
/// Files     a tree for each data class; endWriting has it saved, with setAppendOn together with what the file held.
///           Without endWriting nothing is saved.
/// Meshes    what is handed over belongs to the mesh, target and partition (under partitioned post) that are current; a
///           mesh id that was never set counts as 1. Before going on to another mesh, call writeMeshSize: it stores
///           zones, sizes, phases and variables as they are then.
/// Derived   mesh-wide counts and neighbours of zones that were not given are worked out in endWriting, see
///           KelDerivedValues.
/// Order     counts come before the ids that they count; without counts, all elements of a call have the same number.
///           Ranges come in any order; what is handed over again replaces what was there.
/// Levels    what is handed over while no time level is chosen stays beside the levels.
/// Texts     addStringAttribute(section, group, name, value) is a setting `name` of the group "<section>/<group>".
/// Reports   what cannot be kept posts a KelError that names file and data, and changes nothing.
/// Memory    all of the file, until it is saved.
class KEL_API KelTreeConsumer : public KelFormatConsumer {
public:
    /// @param store  where trees go to
    explicit KelTreeConsumer(std::shared_ptr<KelTreeStore> store);
    ~KelTreeConsumer() override;

    // The operations of the frame, see KelConsumer, that KelFormatConsumer leaves to a format.
    // clang-format off

    /// @name Run
    /// @{
    void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass) override;
    bool isWritingData() override;
    bool dropTimeLevelsFrom(int level) override;
    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass, const std::string& group) const override;
    bool addStringAttribute(const std::string& section, const std::string& group, const std::string& name, const std::string& value) const override;
    void writeMeshAttributes() const override;
    /// @}

    /// @name Mesh
    /// @{
    void setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count) override;
    void startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0, const std::vector<int>& zoneIds1) override;
    void startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount) override;
    void startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<std::string>& names) override;
    void startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds, KelPlainDataType type, unsigned64 size) override;
    void setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void* values, unsigned64 count) override;
    void endWritingCaseSectionDataForCategory() override;
    /// @}

    /// @name Values of variables
    /// @{
    using KelFormatConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds, unsigned64 size) override;
    void endWritingPhaseVariableInZonesOfCategory() override;
    /// @}

    /// @name Sets, set data and particle tracks
    /// @{
    void startWritingSet(const std::string& name, KelZoneCategory category) override;
    void setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds, const std::vector<unsigned64>& maxIds) override;
    void endWritingSet() override;
    void startWritingSetData(const std::string& name, unsigned64 memberCount) override;
    void endWritingSetData() override;
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const std::string& name) override;
    void startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount) override;
    void endWritingChunkInPartiticleTrackGroup() override;
    void endWritingPartiticleTrackGroup() override;
    void endWritingParticleTracks() override;
    /// @}

protected:
    /// @name For the frame
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    void cacheLocationModelState(const std::string& state) const override;
    int getLastLogIndex(KelDataClass dataClass) const override;
    /// @}

    /// @name For KelFormatConsumer
    /// @{
    void keep(KelArray array, unsigned64 firstId, unsigned64 lastId, const KelValues& values) override;
    void keepUniform(KelArray array, unsigned64 firstId, unsigned64 lastId, signed64 value) override;
    void keepInterface(int zoneId, const KelInterfaceValues& values) override;
    void startVariable(KelCollection in, const std::string& name, unsigned64 valuesPerMember, KelPlainDataType type) override;
    void startLists(KelCollection in, const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) override;
    void startLengths(const std::string& name, KelPlainDataType type) override;
    bool append(KelPart part, const KelValues& values) override;
    bool appendLists(const KelValues& values, const KelValues& lengths) override;
    void keepBlock(KelCollection in, const std::string& name, const KelValues& values) override;
    void keepText(KelCollection in, const std::string& name, const std::string& text) override;
    /// @}
    // clang-format on

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace meridyn
