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
/// Derived   mesh-wide counts that are 0, and empty lists of neighbouring zones, are worked out from zones and arrays
///           at the end and marked as derived, see KelDerivedValues; what was given stays. The data that the same
///           writer writes after its case have the same neighbours.
/// Others    a symbolic link is followed to its file; only a regular file, or nothing, is replaced. One writer
///           at a time has a file; others wait, see setLockTimeout. Readers may open it all the time.
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

    /// How long startWriting and endWriting may wait for another writer, or for programs that keep the file locked.
    ///
    /// @param seconds  0 (not at all) to 86,400 (a day); another value is refused with a KelWarning, and the default
    ///                 holds: KEL_LOCK_TIMEOUT of the environment, or else 30
    void setLockTimeout(double seconds);

    // What means something to files; KelFormatConsumer leads all that comes by range or in many types to the hooks
    // below.
    // clang-format off

    /// @name Run
    /// @{
    void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass) override;
    void setCompression(int level) override;
    bool dropTimeLevelsFrom(int level) override;
    bool isWritingData() override;
    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass, const std::string& group) const override;
    bool addStringAttribute(const std::string& section, const std::string& group, const std::string& name, const std::string& value) const override;
    void writeMeshAttributes() const override;
    /// @}

    /// @name Mesh
    /// @{
    void setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count) override;
    void startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0, const std::vector<int>& zoneIds1) override;
    void startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount) override;
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
    using KelFormatConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds, unsigned64 size) override;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size) override;
    void endWritingPhaseVariableInZonesOfCategory() override;
    /// @}

    /// @name Sets and set data
    /// @{
    void startWritingSet(const std::string& name, KelZoneCategory category) override;
    void setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds, const std::vector<unsigned64>& maxIds) override;
    void endWritingSet() override;
    void startWritingSetData(const std::string& name, unsigned64 memberCount) override;
    void endWritingVariableLengthVariableForSetData() override;
    void endWritingSetData() override;
    /// @}

    /// @name Particle tracks
    /// @{
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const std::string& name) override;
    void startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount) override;
    using KelFormatConsumer::setValuesOfParticleTrackVariable;
#define KEL_DEFINE(T) \
    void setValuesOfParticleTrackVariable(int variableId, const T* values, unsigned64 count) override { keepTrackVariable(variableId, {values, count}); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE) // so that the report names an unknown id
#undef KEL_DEFINE
    void endWritingChunkInPartiticleTrackGroup() override;
    void endWritingPartiticleTrackGroup() override;
    void endWritingParticleTracks() override;
    /// @}
    // clang-format on

    using KelFileConsumer::startWriting;

protected:
    // clang-format off
    /// @name For the frame
    /// @{
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    void cacheLocationModelState(const std::string& state) const override;
    int getLastLogIndex(KelDataClass dataClass) const override;
    /// @}

    /// @name For KelFormatConsumer
    /// @{
    void announce(KelArray array, const std::vector<int>& zoneIds) override;
    void keep(KelArray array, unsigned64 first, unsigned64 last, const KelValues& values) override;
    void keepUniform(KelArray array, unsigned64 first, unsigned64 last, signed64 value) override;
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
    void keepTrackVariable(int variableId, const KelValues& values);

    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace meridyn
