#pragma once

#include "KelFileProvider.h"
#include "KelMemoryStore.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace meridyn {

/// Reader of files that live in this process, see KelMemoryStore. Gives back everything that KelMemoryConsumer kept.
///
/// Meshes    a mesh id below 1, the default target and partition -1 stand for the first that the file has; opening a
///           file makes them the current ones. Choosing another mesh reads zones, phases and variables anew.
/// Levels    opening the data selects the first time level and the first phase where none is selected.
/// Version   and solver type are taken from the common settings.
/// Ranges    an id that has no values makes the whole range give nothing; cell 1 is 0 wherever there is a cell 0. A
///           buffer that is too small gets the whole elements that fit.
/// Sets      of both data classes are found by name, those of the data class opened last first.
/// Reports   a file, or a mesh in it, that is not there posts a KelError.
class KEL_API KelMemoryProvider : public KelFileProvider {
public:
    KelMemoryProvider();
    ~KelMemoryProvider() override;

    // clang-format off
#define KEL_VALUE_TYPES(DEFINE) DEFINE(unsigned char) DEFINE(char) DEFINE(short) DEFINE(unsigned int) DEFINE(int) \
                                DEFINE(long) DEFINE(unsigned64) DEFINE(signed64) DEFINE(float) DEFINE(double)
    using Id = unsigned64;
    using Text = std::string;
    using Names = std::vector<std::string>;

    // ---- run
    bool isReadingData() const override { return _files[0] || _files[1]; }
    void getLog(KelDataClass dataClass, std::vector<std::pair<Text, Text>>& entries) const override;
    void getSettingsKeys(KelDataClass dataClass, Names& keys) const override { getSettingsKeysOfGroup(dataClass, _defaultSettingsPath, keys); }
    void getSettingString(KelDataClass dataClass, const Text& key, Text& text, const Text& group) const override;
    void getSettingsGroups(KelDataClass dataClass, Names& groups) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const Text& group, Names& keys) const override;

    using KelProvider::availableTargets;
    using KelProvider::availablePartitionIds;
    std::vector<int>               availableMeshIds(KelDataClass dataClass) const override;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override;
    std::vector<int>               availablePartitionIds(int meshId, KelDataClass dataClass) const override;

    // ---- mesh
    Id getLocalElemIdsInZone(int zoneId, Id* ids, Id capacity) const override;
    Id getCoordinatesForNodesInRange(Id first, Id last, double* xyz, Id n) const override { return array("coordinates").get(first, last, xyz, n); }
    Id getCoordinatesForNodesInRange(Id first, Id last, float*  xyz, Id n) const override { return array("coordinates").get(first, last, xyz, n); }

    bool hasUniformNodeCountForEdgesInRange(Id first, Id last, short* count) const override { return uniform("edge node counts", first, last, count); }
    Id   getNodeCountsForEdgesInRange(Id first, Id last, short* v, Id n) const override { return array("edge node counts").get(first, last, v, n); }
    Id   getNodeIdsForEdgesInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("edge node ids"), array("edge node counts"), first, last, v, n); }

    bool hasUniformNodeCountForFacesInRange(Id first, Id last, short* count) const override { return uniform("face node counts", first, last, count); }
    Id   getNodeCountsForFacesInRange(Id first, Id last, short* v, Id n) const override { return array("face node counts").get(first, last, v, n); }
    Id   getNodeIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("face node ids"), array("face node counts"), first, last, v, n); }
    Id   getCell0sForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("cell 0").get(first, last, v, n); }
    Id   getCell1sForFacesInRange(Id first, Id last, Id* v, Id n) const override;
    Id   getShadowFaceIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("shadow faces").get(first, last, v, n); }
    void startReadingInterfaceDataForFaces(std::vector<int>& zones0, std::vector<int>& zones1) override;
    bool getInterfaceDataSizesForFacesInZone(int zone, Id& na, Id& nb, Id& n0, Id& n1) const override;
    Id   getInterfaceDataForFacesInZone(int zone, float*  a, Id na, float*  b, Id nb, Id* ids0, Id n0, Id* ids1, Id n1) const override { return interfaceData(zone, a, na, b, nb, ids0, n0, ids1, n1); }
    Id   getInterfaceDataForFacesInZone(int zone, double* a, Id na, double* b, Id nb, Id* ids0, Id n0, Id* ids1, Id n1) const override { return interfaceData(zone, a, na, b, nb, ids0, n0, ids1, n1); }
    Id   getChildFaceCountsForFacesInRange(Id first, Id last, short* v, Id n) const override { return array("child face counts").get(first, last, v, n); }
    Id   getChildFaceIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("child face ids"), array("child face counts"), first, last, v, n); }

    bool hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const override;
    Id   getTypesForCellsInRange(Id first, Id last, KelCellType* v, Id n) const override;
    bool hasUniformNodeCountForCellsInZone(int zoneId, short* count) const override { return uniformInZone("cell node counts", zoneId, count); }
    Id   getNodeCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("cell node counts").get(first, last, v, n); }
    Id   getNodeIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("cell node ids"), array("cell node counts"), first, last, v, n); }
    bool hasUniformFaceCountForCellsInZone(int zoneId, short* count) const override { return uniformInZone("cell face counts", zoneId, count); }
    short getFaceCountForCell(Id cellId) const override;
    Id   getFaceCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("cell face counts").get(first, last, v, n); }
    Id   getFaceIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("cell face ids"), array("cell face counts"), first, last, v, n); }
    Id   getPartitionIdsForCellsInRange(Id first, Id last, int* v, Id n) const override { return array("cell partitions").get(first, last, v, n); }
    int  getPartitionCountOfCells() const override { return _models[KEL_CASE] ? _models[KEL_CASE]->partitionCount : 0; }
    Id   getChildCellCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("child cell counts").get(first, last, v, n); }
    Id   getChildCellIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return ragged(array("child cell ids"), array("child cell counts"), first, last, v, n); }

    void startReadingCaseSectionCategories(KelZoneCategory category, Names& names) override;
    KelPlainDataType startReadingCaseSectionForCategory(const Text& name, std::vector<int>& zoneIds) override;
    bool hasUniformCaseSectionDataCountForZone(int zoneId, Id* count) const override;
    Id   getCaseSectionDataForElementsInRange(Id first, Id last, void* values, Id capacity) const override;
    void endReadingCaseSectionForCategory() override { _section = nullptr; }

    // ---- solution
    Id startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const Text& name, std::vector<int>& zoneIds) override;
    Id startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId, std::vector<int>& zoneIds) override { return startReadingZonesOfCategoryWithPhaseVariable(category, variableName(variableId), zoneIds); }
    Id getValuesOfPhaseVariableForElementsInRange(Id first, Id last, float*  v, Id n) const override { return _field ? _field->values.get(first, last, v, n) : 0; }
    Id getValuesOfPhaseVariableForElementsInRange(Id first, Id last, double* v, Id n) const override { return _field ? _field->values.get(first, last, v, n) : 0; }

    // ---- particles and particle tracks
    bool hasParticles() const override { return setData() != nullptr; }
    bool hasParticles(const Text& phaseName) const override { return setDataOf(phaseName) != nullptr; }
    bool hasParticles(short phaseId) const override { return hasParticles(getPhaseName(phaseId)); }
    bool startReadingParticles() override { return hasParticles(); }
    bool startReadingParticles(const Text& phaseName) override { return setActivePhase(phaseName) && hasParticles(); }
    bool startReadingParticles(short phaseId) override { return setActivePhase(phaseId) && hasParticles(); }
    void getInjectionNames(Names& names) const override { getSetDataNames(names); }
    void getVariablesOfInjection(const Text& injection, Names& names) const override;

    bool hasParticleTracks() const override;
    bool hasParticleTracks(const Text& phaseName) const override;
    bool hasParticleTracks(short phaseId) const override { return hasParticleTracks(getPhaseName(phaseId)); }
    bool hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const override { return tracks(phaseId, meshId, target, partitionId) != nullptr; }
    bool hasParticleTracksInActivePhase() const override;
    std::vector<short> getPhasesWithParticleTracks(int meshId, KelTargetCategory target, int partitionId) const override;
    void startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void getParticleTrackGroups(Names& groups) const override { groups = _tracks ? _tracks->names : Names(); }
    void startReadingParticleTrackGroup(const Text& group) override { _group = _tracks ? _tracks->find(group) : nullptr; _chunk = nullptr; }
    void getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const override { chunkIds = _group ? _group->chunkIds : std::vector<int>(); }
    void startReadingChunkInParticleTrackGroup(int chunkId) override;
    Id   getPointCountOfParticleTrackChunk() const override { return _chunk ? _chunk->pointCount : 0; }
    void getParticleTrackVariables(Names& names) const override;
    KelPlainDataType getDataTypeOfParticleTrackVariable(const Text& name) const override { return typeOf(track(name)); }
    Id   getValueCountOfParticleTrackVariable(const Text& name) const override { return copyValues<char>(track(name), nullptr, 0); }
    void endReadingChunkInParticleTrackGroup() override { _chunk = nullptr; }
    void endReadingParticleTrackGroup() override { _group = nullptr; _chunk = nullptr; }
    void endReadingParticleTracks() override { _tracks = nullptr; endReadingParticleTrackGroup(); }

    // ---- sets
    bool getSetNames(Names& names) const override;
    bool getSetNames(KelDataClass dataClass, Names& names) const override;
    bool getSetNames(KelZoneCategory category, Names& names) const override;
    bool startReadingSet(const Text& name) override;
    KelZoneCategory getCategoryOfSet() const override { return _set ? _set->category : KelZoneCategory(-1); }
    void getSizesAndMinMaxIdsForSet(std::vector<Id>& sizes, std::vector<Id>& minIds, std::vector<Id>& maxIds) const override;
    Id   getIdsForSetInRange(Id first, Id last, Id* ids, Id n) const override { return _set ? _set->ids.get(first, last, ids, n) : 0; }
    void getVariablesInSet(Names& names) const override { names = _set ? _set->constant.names : Names(); }
    void getVariableLengthedVariablesInSet(Names& names) const override { names = _set ? _set->variableLength.names : Names(); }
    void getOtherVariablesInSet(Names& names) const override { names = _set ? _set->others.names : Names(); }
    void getStringVariablesInSet(Names& names) const override { names = _set ? _set->texts.names : Names(); }
    KelPlainDataType startReadingSizeOfVariableLengthedVarForSet(const Text& name) override { return startVariable(&KelMemorySet::variableLength, name) ? _setVariable->lengthType : KelPlainDataType(-1); }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, int*   v, Id n) const override { return _setVariable ? _setVariable->lengths.get(first, last, v, n) : 0; }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, short* v, Id n) const override { return _setVariable ? _setVariable->lengths.get(first, last, v, n) : 0; }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, Id*    v, Id n) const override { return _setVariable ? _setVariable->lengths.get(first, last, v, n) : 0; }
    void endReadingSizeOfVariableLengthedVarForSet() override { _setVariable = nullptr; }
    KelPlainDataType startReadingDataOfVariableForSet(const Text& name, Id& valuesPerMember) override;
    void endReadingDataOfVariableForSet() override { _setVariable = nullptr; }
    KelPlainDataType startReadingVariableLengthedDataOfVariableForSet(const Text& name) override { return startVariable(&KelMemorySet::variableLength, name) ? _setVariable->type : KelPlainDataType(-1); }
    void endReadingVariableLengthedDataOfVariableForSet() override { _setVariable = nullptr; }
    KelPlainDataType getDataTypeOfOtherDataForSet(const Text& name) const override { return typeOf(other(name)); }
    Id   getStringDataForSet(const Text& name, Text& text) const override;
    void endReadingSet() override { _set = nullptr; _setVariable = nullptr; }

    // ---- set data
    void getSetDataNames(Names& names) const override { names = setData() ? setData()->names : Names(); }
    bool startReadingSetData(const Text& name, Id& memberCount) override;
    bool getIdsForSetData(std::vector<Id>& ids) const override { return _set && fill(_set->ids, ids); }
    void getConstantLengthVariablesInSetData(Names& names) const override { getVariablesInSet(names); }
    void getVariableLengthVariablesInSetData(Names& names) const override { getVariableLengthedVariablesInSet(names); }
    void getOtherVariablesInSetData(Names& names) const override { getOtherVariablesInSet(names); }
    void getStringVariablesInSetData(Names& names) const override { getStringVariablesInSet(names); }
    KelPlainDataType getDataTypeOfDataForSetData(const Text& name) const override;
    KelPlainDataType getDataTypeOfSizeForSetData(const Text& name) const override;
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<int>&   v) const override { return fillLengths(name, v); }
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<short>& v) const override { return fillLengths(name, v); }
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<Id>&    v) const override { return fillLengths(name, v); }
    Id   getStringDataForSetData(const Text& name, Text& text) const override { return getStringDataForSet(name, text); }
    void endReadingSetData() override { endReadingSet(); }

#define KEL_DEFINE(T)                                                                                                                                                    \
    Id   getValuesOfParticleTrackVariable(int variableId, T* v, Id n) const override { return copyValues(track(variableName(variableId)), v, n); }                       \
    Id   getValuesOfParticleTrackVariable(const Text& name, T* v, Id n) const override { return copyValues(track(name), v, n); }                                         \
    Id   getDataOfVariableForSetInRange(Id first, Id last, T* v, Id n) const override { return _setVariable ? _setVariable->values.get(first, last, v, n) : 0; }         \
    Id   getVariableLengthedDataOfVariableForSetInRange(Id first, Id last, T* v, Id n) const override { return _setVariable ? ragged(_setVariable->values, _setVariable->lengths, first, last, v, n) : 0; } \
    Id   getOtherDataForSet(const Text& name, T* v, Id n) const override { return copyValues(other(name), v, n); }                                                       \
    bool getDataOfConstantLengthVarForSetData(const Text& name, std::vector<T>& v, Id& valuesPerMember) const override { return fillConstant(name, v, valuesPerMember); } \
    bool getDataOfVariableLengthVarForSetData(const Text& name, std::vector<T>& v) const override { return fillVariable(name, v); }                                      \
    bool getOtherDataForSetData(const Text& name, std::vector<T>& v) const override { return fillOther(name, v); }
    KEL_VALUE_TYPES(KEL_DEFINE)
#undef KEL_DEFINE
#undef KEL_VALUE_TYPES

protected:
    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;

private:
    const KelMemoryFile* file(KelDataClass dataClass) const { return dataClass == KEL_CASE || dataClass == KEL_DATA ? _files[dataClass].get() : nullptr; }
    const KelMemoryList<Text>* settings(KelDataClass dataClass, const Text& group) const;
    bool select(KelDataClass dataClass);
    void forgetOpenParts();
    void declareMesh();
    void declareZones(const KelMemoryModel& mesh);
    void declareSolution();
    Text variableName(int variableId) const;

    const KelMemoryArray& array(const char* name) const;
    bool uniform(const char* counts, Id first, Id last, short* count) const;
    bool uniformInZone(const char* counts, int zoneId, short* count) const;
    const KelMemoryLevel* level(KelDataClass dataClass) const;
    const KelMemoryList<KelMemorySet>* sets(KelDataClass dataClass) const;
    const KelMemoryList<KelMemorySet>* setData() const;
    const KelMemoryList<KelMemorySet>* setDataOf(const Text& phaseName) const;
    const KelMemoryList<KelMemoryTrackGroup>* tracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const;
    const KelMemoryValues* track(const Text& name) const;
    const KelMemoryValues* other(const Text& name) const { return _set ? _set->others.find(name) : nullptr; }
    bool startVariable(KelMemoryList<KelMemorySetVariable> KelMemorySet::*list, const Text& name);
    static KelPlainDataType typeOf(const KelMemoryValues* values) { return values ? KelPlainDataType(values->index()) : KelPlainDataType(-1); }
    // clang-format on

    /// Values of elements with different numbers of them: those with a count of 0 need not have been handed over.
    template <class T>
    static Id ragged(const KelMemoryArray& values, const KelMemoryArray& counts, Id first, Id last, T* out, Id capacity)
    {
        return values.get(first, last, out, capacity,
                          [&counts](Id id) { return counts.at(id) == 0 ? std::optional<Id>(0) : std::optional<Id>(); });
    }

    /// Copies a block as far as there is room; the number of values copied, or of all for a null buffer.
    template <class T>
    static Id copyValues(const KelMemoryValues* values, T* out, Id capacity)
    {
        const auto copy = [&](const auto& list) {
            const Id count = out ? std::min<Id>(list.size(), capacity) : list.size();
            for (Id n = 0; out && n < count; ++n)
                out[n] = convertedValue<T>(list[n]);
            return count;
        };
        return values ? std::visit(copy, *values) : 0;
    }

    template <class T>
    static bool fill(const KelMemoryArray& from, std::vector<T>& values)
    {
        values.resize(from.lastId());
        return from.get(1, from.lastId(), values.data(), values.size()) > 0;
    }

    template <class T>
    bool fillConstant(const Text& name, std::vector<T>& values, Id& valuesPerMember) const
    {
        const KelMemorySetVariable* variable = _set ? _set->constant.find(name) : nullptr;
        if (variable)
            valuesPerMember = variable->valuesPerMember;
        return variable && fill(variable->values, values);
    }

    template <class T>
    bool fillVariable(const Text& name, std::vector<T>& values) const
    {
        const KelMemorySetVariable* variable = _set ? _set->variableLength.find(name) : nullptr;
        return variable && fill(variable->values, values);
    }

    template <class T>
    bool fillLengths(const Text& name, std::vector<T>& lengths) const
    {
        const KelMemorySetVariable* variable = _set ? _set->variableLength.find(name) : nullptr;
        return variable && fill(variable->lengths, lengths);
    }

    template <class T>
    bool fillOther(const Text& name, std::vector<T>& values) const
    {
        values.resize(copyValues<T>(other(name), nullptr, 0));
        return copyValues(other(name), values.data(), values.size()) > 0;
    }

    template <class T>
    Id interfaceData(int zone, T* a, Id na, T* b, Id nb, Id* ids0, Id n0, Id* ids1, Id n1) const
    {
        const KelMemoryInterface* data = interfaceOf(zone);
        const auto take = [](const KelMemoryValues& values, auto* out, Id room) {
            return out != nullptr ? copyValues(&values, out, room) : 0; // a list that is not wanted
        };
        return data ? take(data->shares0, a, na) + take(data->shares1, b, nb) + take(data->faces0, ids0, n0) +
                          take(data->faces1, ids1, n1)
                    : 0;
    }
    const KelMemoryInterface* interfaceOf(int zone) const;

    KelMemoryStore::File _files[2];                        ///< being read, by data class; null while none is
    const KelMemoryModel* _models[2] = {nullptr, nullptr}; ///< current mesh in each
    KelDataClass _current = KEL_CASE;                      ///< opened last

    // What the start markers opened; null when nothing is.
    KelZoneCategory _sectionCategory = KelZoneCategory(-1);
    const KelMemorySection* _section = nullptr;
    const KelMemoryField* _field = nullptr;
    const KelMemorySet* _set = nullptr;
    const KelMemorySetVariable* _setVariable = nullptr;
    const KelMemoryList<KelMemoryTrackGroup>* _tracks = nullptr;
    const KelMemoryTrackGroup* _group = nullptr;
    const KelMemoryTrackChunk* _chunk = nullptr;
};

} // namespace meridyn
