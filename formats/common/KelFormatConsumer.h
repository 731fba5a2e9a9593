#pragma once

#include "KelArrays.h"
#include "KelFileConsumer.h"
#include "KelModelDescription.h"
#include "KelValues.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace meridyn {

/// Base of the writers of our formats: a file writer that is silent, that knows the phase it is in, that describes the
/// mesh and the solution it was told about, and that leads the hundreds of forms of the frame to a few operations.
///
/// Markers   say nothing: the frame's own would print. A format overrides those that mean something to it.
/// Forms     what comes by range, in any value type, reaches keep and keepUniform; blocks, texts and values in the
/// order
///           of the members reach keepBlock, keepText, append and appendLists. A format overrides these.
/// Ids       the forms that take the id of a variable reach those that take its unique name; an unknown id arrives as
///           an empty name.
class KEL_API KelFormatConsumer : public KelFileConsumer {
public:
    /// No file is named and nothing is open.
    KelFormatConsumer();
    ~KelFormatConsumer() override;

    /// @name Switches, before startWriting
    /// @{
    void setAppendOn(bool on) override;           ///< default off: an existing file is replaced
    void setOverrideSettingsOn(bool on) override; ///< default on: a later setting replaces an earlier one
    void setWriteSettingsOn(bool on) override;    ///< default on; off: no settings at all, the common ones neither
    /// @}

    /// Drops the time levels from one on, of all meshes of the data file that is being written, with all that they have
    /// and with their times in the settings (group "timeLevels"). With setAppendOn this is how a restart goes back:
    /// drop, then write the levels anew. As with all that is written, the file stays as it was until endWriting.
    /// A level without a number is not dropped; values that were started are, complete or not.
    /// @return false, after a KelError, when no data file is being written, or the format has no time levels to drop
    virtual bool dropTimeLevelsFrom(int level);

    // clang-format off
    /// @name Markers that do nothing
    /// @{
    void startWritingNodes(const std::vector<int>&) override {}
    void startWritingEdges(const std::vector<int>&) override {}
    void endWritingNodeIdsForEdges() override {}
    void startWritingFaces(const std::vector<int>&) override {}
    void endWritingNodeIdsForFaces() override {}
    void startWritingCell1sForFaces(const std::vector<int>&) override {}
    void startWritingInterfaceDataForFaces(const std::vector<int>&, const std::vector<int>&) override {}
    void endWritingInterfaceDataForFaces() override {}
    void startWritingChildFacesForFaces(const std::vector<int>&) override {}
    void startWritingChildFaceCountsForFaces() override {}
    void endWritingChildFaceCountsForFaces() override {}
    void startWritingChildFaceIdsForFaces() override {}
    void startWritingCells(const std::vector<int>&) override {}
    void startWritingNodeCountsForCells() override {}
    void endWritingPartitionIdsForCells() override {}
    void startWritingChildCellsForCells(const std::vector<int>&) override {}
    void startWritingChildCellCountsForCells() override {}
    void endWritingChildCellCountsForCells() override {}
    void startWritingChildCellIdsForCells() override {}
    void startWritingCaseSectionCategories(KelZoneCategory, const std::vector<std::string>&) override {}
    /// @}

    /// @name Markers of arrays: reach announce
    /// @{
    void startWritingCoordinatesForNodes(const std::vector<int>& zoneIds) override { announce(KelArray::Coordinates, zoneIds); }
    void startWritingNodesForEdges(const std::vector<int>& zoneIds) override { announce(KelArray::EdgeNodes, zoneIds); }
    void startWritingNodesForFaces(const std::vector<int>& zoneIds) override { announce(KelArray::FaceNodes, zoneIds); }
    void startWritingCell0sForFaces(const std::vector<int>& zoneIds) override { announce(KelArray::FaceCell0s, zoneIds); }
    void startWritingShadowFaceIdsForFaces(const std::vector<int>& zoneIds) override { announce(KelArray::FaceShadows, zoneIds); }
    void startWritingTypesForCells(const std::vector<int>& zoneIds, const std::vector<KelCellType>& types) override; ///< A type that is not -1 also reaches keepUniform.
    void startWritingNodesForCells(const std::vector<int>& zoneIds) override { announce(KelArray::CellNodes, zoneIds); }
    void startWritingFacesForCells(const std::vector<int>& zoneIds) override { announce(KelArray::CellFaces, zoneIds); }
    void startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int) override { announce(KelArray::CellPartitions, zoneIds); }
    /// @}

    /// Makes the phase the active one.
    void startWritingPhase(short phaseId) const override { setActivePhase(phaseId); }

    /// @name Arrays by range: reach keep, uniform counts keepUniform, interface data keepInterface
    /// @{
    void setCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, const double* xyz, unsigned64 count) override { keep(KelArray::Coordinates, first, last, {xyz, count}); }
    void setCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, const float* xyz, unsigned64 count) override { keep(KelArray::Coordinates, first, last, {xyz, count}); }
    void setNodeIdsForEdgesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::EdgeNodes, first, last, {ids, count}); }
    void setNodeCountsForEdgesInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::EdgeNodeCounts, first, last, {counts, count}); }
    void setUniformNodeCountForEdgesInRange(unsigned64 first, unsigned64 last, short nodeCount) override { keepUniform(KelArray::EdgeNodeCounts, first, last, nodeCount); }
    void setNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::FaceNodes, first, last, {ids, count}); }
    void setNodeCountsForFacesInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::FaceNodeCounts, first, last, {counts, count}); }
    void setUniformNodeCountForFacesInRange(unsigned64 first, unsigned64 last, short nodeCount) override { keepUniform(KelArray::FaceNodeCounts, first, last, nodeCount); }
    void setCell0sForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::FaceCell0s, first, last, {ids, count}); }
    void setCell1sForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::FaceCell1s, first, last, {ids, count}); }
    void setShadowFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::FaceShadows, first, last, {ids, count}); }
    void setInterfaceDataForFacesInZone(int zoneId, const float* a, unsigned64 na, const float* b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1) override { keepInterface(zoneId, {{{a, na}, {b, nb}, {ids0, count0}, {ids1, count1}}}); }
    void setInterfaceDataForFacesInZone(int zoneId, const double* a, unsigned64 na, const double* b, unsigned64 nb, const unsigned64* ids0, unsigned64 count0, const unsigned64* ids1, unsigned64 count1) override { keepInterface(zoneId, {{{a, na}, {b, nb}, {ids0, count0}, {ids1, count1}}}); }
    void setChildFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::FaceChildren, first, last, {ids, count}); }
    void setChildFaceCountsForFacesInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::FaceChildCounts, first, last, {counts, count}); }
    void setUniformChildFaceCountForFacesInRange(unsigned64 first, unsigned64 last, short childCount) override { keepUniform(KelArray::FaceChildCounts, first, last, childCount); }
    void setTypesForCellsInRange(unsigned64 first, unsigned64 last, const KelCellType* types, unsigned64 count) override { keep(KelArray::CellTypes, first, last, {types, count, KEL_PLAIN_INT}); }
    void setNodeIdsForCellsInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::CellNodes, first, last, {ids, count}); }
    void setNodeCountsForCellsInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::CellNodeCounts, first, last, {counts, count}); }
    void setUniformNodeCountForCellsInRange(unsigned64 first, unsigned64 last, short nodeCount) override { keepUniform(KelArray::CellNodeCounts, first, last, nodeCount); }
    void setFaceIdsForCellsInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::CellFaces, first, last, {ids, count}); }
    void setFaceCountsForCellsInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::CellFaceCounts, first, last, {counts, count}); }
    void setUniformFaceCountForCellsInRange(unsigned64 first, unsigned64 last, short faceCount) override { keepUniform(KelArray::CellFaceCounts, first, last, faceCount); }
    void setPartitionIdsForCellsInRange(unsigned64 first, unsigned64 last, const int* ids, unsigned64 count) override { keep(KelArray::CellPartitions, first, last, {ids, count}); }
    void setChildCellIdsForCellsInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::CellChildren, first, last, {ids, count}); }
    void setChildCellCountsForCellsInRange(unsigned64 first, unsigned64 last, const short* counts, unsigned64 count) override { keep(KelArray::CellChildCounts, first, last, {counts, count}); }
    void setUniformChildCellCountForCellsInRange(unsigned64 first, unsigned64 last, short childCount) override { keepUniform(KelArray::CellChildCounts, first, last, childCount); }
    void setValuesOfPhaseVariableForElementsInRange(unsigned64 first, unsigned64 last, const float* values, unsigned64 count) override { keep(KelArray::PhaseVariable, first, last, {values, count}); }
    void setValuesOfPhaseVariableForElementsInRange(unsigned64 first, unsigned64 last, const double* values, unsigned64 count) override { keep(KelArray::PhaseVariable, first, last, {values, count}); }
    void setIdsForSetInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override { keep(KelArray::SetIds, first, last, {ids, count}); }
    /// @}

    /// @name Forms with the id of a variable
    /// @{
    using KelFileConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size) override { startWritingPhaseVariableInZonesOfCategory(category, variableName(variableId), zoneIds, size); }
    /// @}

    /// @name Sets, set data and particle tracks
    /// @{
    void startWritingSizeOfVariableForSet(const std::string& name, std::vector<unsigned64>, KelPlainDataType type) override { startLengths(name, type); }
    void startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64>, unsigned64 valuesPerMember, KelPlainDataType type) override { startVariable(KelCollection::Set, name, valuesPerMember, type); }
    void startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64>, KelPlainDataType type) override { startLists(KelCollection::Set, name, type, static_cast<KelPlainDataType>(-1)); }
    void writeStringDataForSet(const std::string& name, const std::string& text) override { keepText(KelCollection::Set, name, text); }
    unsigned64 setIdsForSetData(const unsigned64* ids, unsigned64 count) override { return append(KelPart::Ids, {ids, count}) ? count : 0; }
    void startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember, KelPlainDataType type) override { startVariable(KelCollection::SetData, name, valuesPerMember, type); }
    void startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) override { startLists(KelCollection::SetData, name, type, lengthType); }
    void writeStringDataForSetData(const std::string& name, const std::string& text) override { keepText(KelCollection::SetData, name, text); }
#define KEL_DEFINE(L) \
    void setSizeOfVariableForSetInRange(unsigned64 first, unsigned64 last, const L* lengths, unsigned64 count) override { keep(KelArray::SetListLengths, first, last, {lengths, count}); } \
    void setSizeOfVariableForSetInRange(unsigned64 first, unsigned64 last, L length) override { keepUniform(KelArray::SetListLengths, first, last, static_cast<signed64>(length)); }
    KEL_DEFINE(int)
    KEL_DEFINE(short)
    KEL_DEFINE(unsigned64)
#undef KEL_DEFINE
#define KEL_DEFINE_LISTS(T, L) \
    unsigned64 setVariableLengthVariableForSetData(const T* values, unsigned64 count, const L* lengths, unsigned64 lengthCount) override { return appendLists({values, count}, {lengths, lengthCount}) ? count : 0; }
#define KEL_DEFINE(T) \
    void setDataOfVariableForSetInRange(unsigned64 first, unsigned64 last, const T* values, unsigned64 count) override { keep(KelArray::SetVariable, first, last, {values, count}); } \
    void setVariableLengthedDataOfVariableForSetInRange(unsigned64 first, unsigned64 last, const T* values, unsigned64 count) override { keep(KelArray::SetLists, first, last, {values, count}); } \
    void writeOtherDataForSet(const std::string& name, const T* values, unsigned64 count) override { keepBlock(KelCollection::Set, name, {values, count}); } \
    unsigned64 setVariableForSetData(const T* values, unsigned64 count) override { return append(KelPart::Variables, {values, count}) ? count : 0; } \
    KEL_DEFINE_LISTS(T, int) \
    KEL_DEFINE_LISTS(T, short) \
    KEL_DEFINE_LISTS(T, unsigned64) \
    void writeOtherDataForSetData(const std::string& name, const T* values, unsigned64 count) override { keepBlock(KelCollection::SetData, name, {values, count}); } \
    void setValuesOfParticleTrackVariable(int variableId, const T* values, unsigned64 count) override { setValuesOfParticleTrackVariable(variableName(variableId), values, count); } \
    void setValuesOfParticleTrackVariable(const std::string& name, const T* values, unsigned64 count) override { keepBlock(KelCollection::TrackChunk, name, {values, count}); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
#undef KEL_DEFINE_LISTS
    /// @}
    // clang-format on

protected:
    /// The four buffers of interface data: two of shares, two of face ids, see setInterfaceDataForFacesInZone.
    using KelInterfaceValues = std::array<KelValues, 4>;

    /// @name What a format overrides; nothing, and false, here
    /// @{
    /// Values of an array will come for the elements of these zones.
    virtual void announce(KelArray array, const std::vector<int>& zoneIds);
    /// Values of an array for the ids or positions of a range.
    virtual void keep(KelArray array, unsigned64 first, unsigned64 last, const KelValues& values);
    /// One value for all of them: a count, or a cell type.
    virtual void keepUniform(KelArray array, unsigned64 first, unsigned64 last, signed64 value);
    /// Interface data of a zone.
    virtual void keepInterface(int zoneId, const KelInterfaceValues& values);

    /// A variable of a set or of set data begins.
    virtual void startVariable(KelCollection in, const std::string& name, unsigned64 valuesPerMember,
                               KelPlainDataType type);
    /// Values of a variable-length variable begin; a length type of -1: startLengths says it.
    virtual void startLists(KelCollection in, const std::string& name, KelPlainDataType type,
                            KelPlainDataType lengthType);
    /// Lengths of a variable-length variable of a set begin.
    virtual void startLengths(const std::string& name, KelPlainDataType type);

    /// Ids, or values of the variable that was started, of the next members of set data. False when they are not taken.
    virtual bool append(KelPart part, const KelValues& values);
    /// Values and lengths of the next members of set data, of the variable-length variable that was started.
    virtual bool appendLists(const KelValues& values, const KelValues& lengths);

    /// A block: other data of a set or set data, a variable of a chunk of particle tracks.
    virtual void keepBlock(KelCollection in, const std::string& name, const KelValues& values);
    /// A text of a set or set data.
    virtual void keepText(KelCollection in, const std::string& name, const std::string& text);
    /// @}

    /// @name The switches as they are
    /// @{
    bool isAppendOn() const;
    bool isOverrideSettingsOn() const;
    bool isWriteSettingsOn() const;
    /// @}

    /// Sizes, units and zones as they are now.
    KelMeshDescription describeMesh() const;

    /// Time levels, phases and variables as they are now.
    KelSolutionDescription describeSolution() const;

    /// The time level to which data belong now; none before the first was started.
    std::optional<int> chosenLevel() const;

    /// Element ids of a zone, 0 and 0 for an unknown one.
    std::pair<unsigned64, unsigned64> rangeOfZone(int zoneId) const;

    /// The unique name of a variable, empty for an unknown one.
    std::string variableName(int variableId) const;

private:
    bool _isAppendOn = false;
    bool _isOverrideSettingsOn = true;
    bool _isWriteSettingsOn = true;
};

} // namespace meridyn
