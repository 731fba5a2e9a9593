#pragma once

#include "KelFileConsumer.h"
#include "KelMemoryStore.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// Writer of files that live in this process, see KelMemoryStore. Keeps everything that the frame takes.
///
/// Files     a name and a data class each; endWriting puts the file into the store, where it replaces an earlier one
/// or,
///           with setAppendOn, holds what that one held as well. Without endWriting nothing is left behind.
/// Meshes    what is handed over belongs to the mesh, target and partition (under partitioned post) that are current; a
///           mesh id that was never set counts as 1. Before going on to another mesh, call writeMeshSize: it stores
///           zones, sizes, phases and variables as they are then.
/// Order     counts come before the ids that they count; without counts, all elements of a call have the same number.
///           Ranges come in any order; what is handed over again replaces what was there.
/// Texts     addStringAttribute(section, group, name, value) is a setting `name` of the group "<section>/<group>".
/// Reports   what cannot be kept posts a KelError that names file and data, and changes nothing.
class KEL_API KelMemoryConsumer : public KelFileConsumer {
public:
    KelMemoryConsumer();
    ~KelMemoryConsumer() override;

    // clang-format off
#define KEL_VALUE_TYPES(DEFINE) DEFINE(unsigned char) DEFINE(char) DEFINE(short) DEFINE(unsigned int) DEFINE(int) \
                                DEFINE(long) DEFINE(unsigned64) DEFINE(signed64) DEFINE(float) DEFINE(double)
    using Id = unsigned64;
    using Text = std::string;

    // ---- run
    void log(std::vector<std::pair<Text, Text>> entries, KelDataClass dataClass) override;
    bool isWritingData() override { return _files[0] || _files[1]; }
    void writeSettingStrings(const std::vector<std::pair<Text, Text>>& pairs, KelDataClass dataClass, const Text& group) const override;
    bool addStringAttribute(const Text& section, const Text& group, const Text& name, const Text& value) const override;
    void writeMeshAttributes() const override;
    void setAppendOn(bool on) override { _append = on; }
    void setOverrideSettingsOn(bool on) override { _overrideSettings = on; } ///< On unless switched off.
    void setWriteSettingsOn(bool on) override { _writeSettings = on; }       ///< On unless switched off.

    // ---- mesh
    void setLocalElemIdsInZone(int zoneId, const Id* ids, Id count) override;
    void setCoordinatesForNodesInRange(Id first, Id last, const double* xyz, Id n) override { keepCoordinates(first, last, copyOfValues(xyz, n)); }
    void setCoordinatesForNodesInRange(Id first, Id last, const float* xyz, Id n) override { keepCoordinates(first, last, copyOfValues(xyz, n)); }

    void setUniformNodeCountForEdgesInRange(Id first, Id last, short n) override { keepUniform("edge node counts", first, last, n); }
    void setNodeCountsForEdgesInRange(Id first, Id last, const short* v, Id n) override { keep("edge node counts", first, last, copyOfValues(v, n)); }
    void setNodeIdsForEdgesInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("edge node ids", "edge node counts", first, last, v, n); }

    void setUniformNodeCountForFacesInRange(Id first, Id last, short n) override { keepUniform("face node counts", first, last, n); }
    void setNodeCountsForFacesInRange(Id first, Id last, const short* v, Id n) override { keep("face node counts", first, last, copyOfValues(v, n)); }
    void setNodeIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("face node ids", "face node counts", first, last, v, n); }
    void setCell0sForFacesInRange(Id first, Id last, const Id* v, Id n) override { keep("cell 0", first, last, copyOfValues(v, n)); }
    void setCell1sForFacesInRange(Id first, Id last, const Id* v, Id n) override { keep("cell 1", first, last, copyOfValues(v, n)); }
    void setShadowFaceIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { keep("shadow faces", first, last, copyOfValues(v, n)); }
    void startWritingInterfaceDataForFaces(const std::vector<int>& zones0, const std::vector<int>& zones1) override;
    void setInterfaceDataForFacesInZone(int zone, const float*  a, Id na, const float*  b, Id nb, const Id* ids0, Id n0, const Id* ids1, Id n1) override { keepInterface(zone, {copyOfValues(a, na), copyOfValues(b, nb), copyOfValues(ids0, n0), copyOfValues(ids1, n1)}); }
    void setInterfaceDataForFacesInZone(int zone, const double* a, Id na, const double* b, Id nb, const Id* ids0, Id n0, const Id* ids1, Id n1) override { keepInterface(zone, {copyOfValues(a, na), copyOfValues(b, nb), copyOfValues(ids0, n0), copyOfValues(ids1, n1)}); }
    void setChildFaceCountsForFacesInRange(Id first, Id last, const short* v, Id n) override { keep("child face counts", first, last, copyOfValues(v, n)); }
    void setUniformChildFaceCountForFacesInRange(Id first, Id last, short n) override { keepUniform("child face counts", first, last, n); }
    void setChildFaceIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("child face ids", "child face counts", first, last, v, n); }

    void startWritingTypesForCells(const std::vector<int>& zoneIds, const std::vector<KelCellType>& types) override;
    void setTypesForCellsInRange(Id first, Id last, const KelCellType* v, Id n) override;
    void setNodeCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { keep("cell node counts", first, last, copyOfValues(v, n)); }
    void setUniformNodeCountForCellsInRange(Id first, Id last, short n) override { keepUniform("cell node counts", first, last, n); }
    void setNodeIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("cell node ids", "cell node counts", first, last, v, n); }
    void setFaceCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { keep("cell face counts", first, last, copyOfValues(v, n)); }
    void setUniformFaceCountForCellsInRange(Id first, Id last, short n) override { keepUniform("cell face counts", first, last, n); }
    void setFaceIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("cell face ids", "cell face counts", first, last, v, n); }
    void startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount) override;
    void setPartitionIdsForCellsInRange(Id first, Id last, const int* v, Id n) override { keep("cell partitions", first, last, copyOfValues(v, n)); }
    void setChildCellCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { keep("child cell counts", first, last, copyOfValues(v, n)); }
    void setUniformChildCellCountForCellsInRange(Id first, Id last, short n) override { keepUniform("child cell counts", first, last, n); }
    void setChildCellIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { keepRagged("child cell ids", "child cell counts", first, last, v, n); }

    void startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<Text>& names) override;
    void startWritingCaseSectionDataForCategory(const Text& name, const std::vector<int>& zoneIds, KelPlainDataType type, Id size) override;
    void setCaseSectionDataForElementsInRange(Id first, Id last, const void* values, Id count) override;
    void endWritingCaseSectionDataForCategory() override { _section = nullptr; }

    // ---- markers that say nothing here: the frame's own would print
    void startWritingNodes(const std::vector<int>&) override {}
    void startWritingCoordinatesForNodes(const std::vector<int>&) override {}
    void startWritingEdges(const std::vector<int>&) override {}
    void startWritingNodesForEdges(const std::vector<int>&) override {}
    void startWritingFaces(const std::vector<int>&) override {}
    void startWritingNodesForFaces(const std::vector<int>&) override {}
    void startWritingCell0sForFaces(const std::vector<int>&) override {}
    void startWritingCell1sForFaces(const std::vector<int>&) override {}
    void startWritingShadowFaceIdsForFaces(const std::vector<int>&) override {}
    void startWritingChildFacesForFaces(const std::vector<int>&) override {}
    void startWritingCells(const std::vector<int>&) override {}
    void startWritingNodesForCells(const std::vector<int>&) override {}
    void startWritingChildCellsForCells(const std::vector<int>&) override {}
    void endWritingNodeIdsForEdges() override {}
    void endWritingNodeIdsForFaces() override {}
    void endWritingInterfaceDataForFaces() override {}
    void startWritingChildFaceCountsForFaces() override {}
    void endWritingChildFaceCountsForFaces() override {}
    void startWritingChildFaceIdsForFaces() override {}
    void startWritingNodeCountsForCells() override {}
    void endWritingPartitionIdsForCells() override {}
    void startWritingChildCellCountsForCells() override {}
    void endWritingChildCellCountsForCells() override {}
    void startWritingChildCellIdsForCells() override {}

    // ---- solution
    void startWritingPhase(short phaseId) const override { setActivePhase(phaseId); }
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name, std::vector<int>& zoneIds, Id size) override;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, Id size) override;
    void setValuesOfPhaseVariableForElementsInRange(Id first, Id last, const float*  v, Id n) override { keepValues(first, last, copyOfValues(v, n)); }
    void setValuesOfPhaseVariableForElementsInRange(Id first, Id last, const double* v, Id n) override { keepValues(first, last, copyOfValues(v, n)); }
    void endWritingPhaseVariableInZonesOfCategory() override { _field = nullptr; }

    // ---- sets
    void startWritingSet(const Text& name, KelZoneCategory category) override;
    void setSizesAndMinMaxIdsForSet(const std::vector<Id>& sizes, const std::vector<Id>& minIds, const std::vector<Id>& maxIds) override;
    void setIdsForSetInRange(Id first, Id last, const Id* ids, Id n) override { report(_set && _set->ids.put(first, last, copyOfValues(ids, n), 1), "ids of a set", first, last); }
    void startWritingSizeOfVariableForSet(const Text& name, std::vector<Id> sizes, KelPlainDataType type) override;
    void setSizeOfVariableForSetInRange(Id first, Id last, const int*   v, Id n) override { keepLengths(first, last, copyOfValues(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, const short* v, Id n) override { keepLengths(first, last, copyOfValues(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, const Id*    v, Id n) override { keepLengths(first, last, copyOfValues(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, int   length) override { keepLengths(first, last, copyOfValues(&length, 1), true); }
    void setSizeOfVariableForSetInRange(Id first, Id last, short length) override { keepLengths(first, last, copyOfValues(&length, 1), true); }
    void setSizeOfVariableForSetInRange(Id first, Id last, Id    length) override { keepLengths(first, last, copyOfValues(&length, 1), true); }
    void startWritingDataOfVariableForSet(const Text& name, std::vector<Id> sizes, Id valuesPerMember, KelPlainDataType type) override;
    void startWritingVariableLengthedDataOfVariableForSet(const Text& name, std::vector<Id> sizes, KelPlainDataType type) override;
    void writeStringDataForSet(const Text& name, const Text& text) override { keepText(name, text); }
    void endWritingSet() override { _set = nullptr; _setVariable = nullptr; }

    // ---- set data
    void startWritingSetData(const Text& name, Id memberCount) override;
    Id   setIdsForSetData(const Id* ids, Id n) override { return report(_set && _set->ids.append(copyOfValues(ids, n)), "ids of set data") ? n : 0; }
    void startWritingVariableForSetData(const Text& name, Id valuesPerMember, KelPlainDataType type) override;
    void startWritingVariableLengthVariableForSetData(const Text& name, KelPlainDataType type, KelPlainDataType lengthType) override;
    void writeStringDataForSetData(const Text& name, const Text& text) override { keepText(name, text); }
    void endWritingSetData() override { endWritingSet(); }

    // ---- particle tracks
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const Text& name) override;
    void startWritingChunkInPartiticleTrackGroup(int chunkId, Id pointCount) override;
    void endWritingChunkInPartiticleTrackGroup() override { _chunk = nullptr; }
    void endWritingPartiticleTrackGroup() override { _group = nullptr; _chunk = nullptr; }
    void endWritingParticleTracks() override { _tracks = nullptr; endWritingPartiticleTrackGroup(); }

#define KEL_DEFINE(T)                                                                                                                                                             \
    void setDataOfVariableForSetInRange(Id first, Id last, const T* v, Id n) override { keepSetValues(first, last, copyOfValues(v, n)); }                                          \
    void setVariableLengthedDataOfVariableForSetInRange(Id first, Id last, const T* v, Id n) override { keepSetValues(first, last, copyOfValues(v, n)); }                          \
    void writeOtherDataForSet(const Text& name, const T* v, Id n) override { keepOther(name, copyOfValues(v, n)); }                                                                \
    Id   setVariableForSetData(const T* v, Id n) override { return appendSetData(copyOfValues(v, n)) ? n : 0; }                                                                    \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const int*   lengths, Id count) override { return appendSetData(copyOfValues(v, n), copyOfValues(lengths, count)) ? n : 0; } \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const short* lengths, Id count) override { return appendSetData(copyOfValues(v, n), copyOfValues(lengths, count)) ? n : 0; } \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const Id*    lengths, Id count) override { return appendSetData(copyOfValues(v, n), copyOfValues(lengths, count)) ? n : 0; } \
    void writeOtherDataForSetData(const Text& name, const T* v, Id n) override { keepOther(name, copyOfValues(v, n)); }                                                            \
    void setValuesOfParticleTrackVariable(int variableId, const T* v, Id n) override { keepTrack(variableName(variableId), copyOfValues(v, n)); }                                  \
    void setValuesOfParticleTrackVariable(const Text& name, const T* v, Id n) override { keepTrack(name, copyOfValues(v, n)); }
    KEL_VALUE_TYPES(KEL_DEFINE)
#undef KEL_DEFINE
#undef KEL_VALUE_TYPES

protected:
    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    void cacheLocationModelState(const Text& state) const override { _locations = state; }
    int  getLastLogIndex(KelDataClass dataClass) const override;

private:
    bool report(bool done, const char* what, Id first = 0, Id last = 0) const;
    KelMemoryFile*  file(KelDataClass dataClass) const { return dataClass == KEL_CASE || dataClass == KEL_DATA ? _files[dataClass].get() : nullptr; }
    KelMemoryModel* model(KelDataClass dataClass) const;
    KelMemoryLevel* level(KelDataClass dataClass) const;
    void describeMesh(KelBase& base, KelMemoryModel& mesh) const;
    void describeSolution(KelMemoryModel& solution) const;
    Text variableName(int variableId) const;
    KelMemoryValues inPrecision(KelMemoryValues values) const;

    KelMemoryArray* array(const char* name);
    void keep(const char* name, Id first, Id last, KelMemoryValues values);
    void keepUniform(const char* name, Id first, Id last, short count);
    void keepRagged(const char* name, const char* counts, Id first, Id last, const Id* ids, Id count);
    void keepCoordinates(Id first, Id last, KelMemoryValues xyz);
    void keepInterface(int zone, KelMemoryInterface data);
    void keepValues(Id first, Id last, KelMemoryValues values);
    void startVariable(KelMemoryList<KelMemorySetVariable> KelMemorySet::*list, const Text& name, Id valuesPerMember, KelPlainDataType type);
    void keepLengths(Id first, Id last, KelMemoryValues lengths, bool isUniform = false);
    void keepSetValues(Id first, Id last, KelMemoryValues values);
    bool appendSetData(KelMemoryValues values);
    bool appendSetData(KelMemoryValues values, KelMemoryValues lengths);
    void keepOther(const Text& name, KelMemoryValues values);
    void keepText(const Text& name, const Text& text);
    void keepTrack(const Text& name, KelMemoryValues values);
    // clang-format on

    std::shared_ptr<KelMemoryFile> _files[2]; ///< being written, by data class; null while none is
    KelDataClass _current = KEL_CASE;         ///< opened last
    bool _append = false;
    bool _overrideSettings = true;
    bool _writeSettings = true;
    mutable std::string _locations;

    // What the start markers opened; null when nothing is.
    KelZoneCategory _sectionCategory = KelZoneCategory(-1);
    KelMemorySection* _section = nullptr;
    KelMemoryField* _field = nullptr;
    KelMemorySet* _set = nullptr;
    KelMemorySetVariable* _setVariable = nullptr;
    KelMemoryList<KelMemoryTrackGroup>* _tracks = nullptr;
    KelMemoryTrackGroup* _group = nullptr;
    KelMemoryTrackChunk* _chunk = nullptr;
};

} // namespace meridyn
