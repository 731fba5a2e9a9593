#pragma once

#include "KelFormatProvider.h"
#include "KelMemoryStore.h"

#include <algorithm>

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
class KEL_API KelMemoryProvider : public KelFormatProvider {
public:
    /// No file is named and nothing is open.
    KelMemoryProvider();
    ~KelMemoryProvider() override;

    using Id = unsigned64;           ///< short for it
    using Text = std::string;        ///< short for it
    using Names = std::vector<Text>; ///< short for it
    using Zones = std::vector<int>;  ///< short for it
    using Ids = std::vector<Id>;     ///< short for it
    using Type = KelPlainDataType;   ///< short for it

    // clang-format off
    // ---- run
    bool isReadingData() const override { return _files[0] || _files[1]; }
    void getLog(KelDataClass dataClass, std::vector<std::pair<Text, Text>>& entries) const override { entries = file(dataClass).log; }
    void getSettingsGroups(KelDataClass dataClass, Names& groups) const override { groups = file(dataClass).settings.names(); }
    void getSettingsKeysOfGroup(KelDataClass dataClass, const Text& group, Names& keys) const override { keys = file(dataClass).settings[group].names(); }
    void getSettingString(KelDataClass dataClass, const Text& key, Text& text, const Text& group) const override
    { textOf(file(dataClass).settings[group][key], text); }

    // ---- mesh
    Id   getLocalElemIdsInZone(int zone, Id* v, Id n) const override { return array("local ids")[std::to_string(zone)].get(v, n); }
    Id   getCoordinatesForNodesInRange(Id first, Id last, double* v, Id n) const override { return array("coordinates").get(first, last, v, n); }
    Id   getCoordinatesForNodesInRange(Id first, Id last, float*  v, Id n) const override { return array("coordinates").get(first, last, v, n); }

    bool hasUniformNodeCountForEdgesInRange(Id first, Id last, short* v) const override { return isUniform(array("edge nodes").counts(), first, last, v); }
    Id   getNodeCountsForEdgesInRange(Id first, Id last, short* v, Id n) const override { return array("edge nodes").counts().get(first, last, v, n); }
    Id   getNodeIdsForEdgesInRange(Id first, Id last, Id* v, Id n) const override { return array("edge nodes").get(first, last, v, n); }

    bool hasUniformNodeCountForFacesInRange(Id first, Id last, short* v) const override { return isUniform(array("face nodes").counts(), first, last, v); }
    Id   getNodeCountsForFacesInRange(Id first, Id last, short* v, Id n) const override { return array("face nodes").counts().get(first, last, v, n); }
    Id   getNodeIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("face nodes").get(first, last, v, n); }
    Id   getCell0sForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("cell 0").get(first, last, v, n); }
    Id   getCell1sForFacesInRange(Id first, Id last, Id* v, Id n) const override;
    Id   getShadowFaceIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("shadow faces").get(first, last, v, n); }
    void startReadingInterfaceDataForFaces(Zones& zones0, Zones& zones1) override
    { array("interface zones 0").get(zones0); array("interface zones 1").get(zones1); }
    bool getInterfaceDataSizesForFacesInZone(int zone, Id& na, Id& nb, Id& n0, Id& n1) const override
    {
        const Node& data = array("interfaces")[std::to_string(zone)];
        return countOf(data["a"], na) && countOf(data["b"], nb) && countOf(data["0"], n0) && countOf(data["1"], n1);
    }
    Id   getInterfaceDataForFacesInZone(int zone, float*  a, Id na, float*  b, Id nb, Id* v0, Id n0, Id* v1, Id n1) const override
    { return interfaceData(zone, a, na, b, nb, v0, n0, v1, n1); }
    Id   getInterfaceDataForFacesInZone(int zone, double* a, Id na, double* b, Id nb, Id* v0, Id n0, Id* v1, Id n1) const override
    { return interfaceData(zone, a, na, b, nb, v0, n0, v1, n1); }
    Id   getChildFaceCountsForFacesInRange(Id first, Id last, short* v, Id n) const override { return array("child faces").counts().get(first, last, v, n); }
    Id   getChildFaceIdsForFacesInRange(Id first, Id last, Id* v, Id n) const override { return array("child faces").get(first, last, v, n); }

    bool hasUniformTypeForCellsInZone(int zone, KelCellType* v) const override { return isUniformInZone(array("cell types"), zone, v); }
    Id   getTypesForCellsInRange(Id first, Id last, KelCellType* v, Id n) const override { return array("cell types").get(first, last, v, n); }
    bool hasUniformNodeCountForCellsInZone(int zone, short* v) const override { return isUniformInZone(array("cell nodes").counts(), zone, v); }
    Id   getNodeCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("cell nodes").counts().get(first, last, v, n); }
    Id   getNodeIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return array("cell nodes").get(first, last, v, n); }
    bool hasUniformFaceCountForCellsInZone(int zone, short* v) const override { return isUniformInZone(array("cell faces").counts(), zone, v); }
    Id   getFaceCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("cell faces").counts().get(first, last, v, n); }
    Id   getFaceIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return array("cell faces").get(first, last, v, n); }
    Id   getPartitionIdsForCellsInRange(Id first, Id last, int* v, Id n) const override { return array("cell partitions").get(first, last, v, n); }
    int  getPartitionCountOfCells() const override { return static_cast<int>(array("partition count").values.at(1).value_or(0)); }
    Id   getChildCellCountsForCellsInRange(Id first, Id last, short* v, Id n) const override { return array("child cells").counts().get(first, last, v, n); }
    Id   getChildCellIdsForCellsInRange(Id first, Id last, Id* v, Id n) const override { return array("child cells").get(first, last, v, n); }

    void startReadingCaseSectionCategories(KelZoneCategory category, Names& names) override
    { _sections = &array("sections")[std::to_string(category)]; names = _sections->names(); }
    Type startReadingCaseSectionForCategory(const Text& name, Zones& zones) override
    {
        _section = &(*_sections)[name];
        zones = *_section ? _section->zoneIds : zones;
        return _section->type;
    }
    bool hasUniformCaseSectionDataCountForZone(int zone, Id* count) const override
    {
        const bool hasZone = std::count(_section->zoneIds.begin(), _section->zoneIds.end(), zone) > 0;
        if (hasZone && count)
            *count = _section->size;
        return hasZone;
    }
    Id   getCaseSectionDataForElementsInRange(Id first, Id last, void* values, Id n) const override;
    void endReadingCaseSectionForCategory() override { _section = &Node::nothing; }

    // ---- solution
    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    Id   startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const Text& name, Zones& zones) override
    {
        _field = &phase()["fields"][std::to_string(category)][name];
        zones = _field->zoneIds;
        return _field->size;
    }
    Id   getValuesOfPhaseVariableForElementsInRange(Id first, Id last, float*  v, Id n) const override { return _field->get(first, last, v, n); }
    Id   getValuesOfPhaseVariableForElementsInRange(Id first, Id last, double* v, Id n) const override { return _field->get(first, last, v, n); }

    // ---- particles: the set data of a phase
    using KelFormatProvider::hasParticles;
    bool hasParticles(const Text& name) const override { return bool(phase(name)["set data"]); }
    void getVariablesOfInjection(const Text& injection, Names& names) const override;

    // ---- particle tracks
    using KelFormatProvider::hasParticleTracks;
    using KelFormatProvider::getValuesOfParticleTrackVariable;
    bool hasParticleTracks(const Text& name) const override { return bool(phase(name)["tracks"]); }
    bool hasParticleTracks(short phaseId, int mesh, KelTargetCategory target, int partition) const override
    { return bool(tracks(phaseId, mesh, target, partition)); }
    void startReadingParticleTracks(short phaseId, int mesh, KelTargetCategory target, int partition) override
    { endReadingParticleTracks(); _tracks = &tracks(phaseId, mesh, target, partition); }
    void getParticleTrackGroups(Names& groups) const override { groups = _tracks->names(); }
    void startReadingParticleTrackGroup(const Text& group) override { endReadingParticleTrackGroup(); _group = &(*_tracks)[group]; }
    void getChunksInParticleTrackGroup(std::vector<int>& ids) const override
    { ids.clear(); for (const Text& name : _group->names()) ids.push_back(std::stoi(name)); }
    void startReadingChunkInParticleTrackGroup(int id) override { _chunk = &(*_group)[std::to_string(id)]; }
    Id   getPointCountOfParticleTrackChunk() const override { return _chunk->size; }
    void getParticleTrackVariables(Names& names) const override { names = _chunk->names(); std::sort(names.begin(), names.end()); }
    Type getDataTypeOfParticleTrackVariable(const Text& name) const override { return (*_chunk)[name].type; }
    Id   getValueCountOfParticleTrackVariable(const Text& name) const override { return (*_chunk)[name].length(); }
    void endReadingChunkInParticleTrackGroup() override { _chunk = &Node::nothing; }
    void endReadingParticleTrackGroup() override { _group = _chunk = &Node::nothing; }
    void endReadingParticleTracks() override { _tracks = _group = _chunk = &Node::nothing; }

    // ---- sets
    using KelFormatProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, Names& names) const override { names = tree(dataClass)["sets"].names(); return !names.empty(); }
    bool getSetNames(KelZoneCategory category, Names& names) const override;
    bool startReadingSet(const Text& name) override
    {
        endReadingSet();
        for (const KelDataClass dataClass : {_current, _current == KEL_CASE ? KEL_DATA : KEL_CASE})
            _set = *_set ? _set : &tree(dataClass)["sets"][name];
        return bool(*_set);
    }
    KelZoneCategory getCategoryOfSet() const override { return _set->category; }
    void getSizesAndMinMaxIdsForSet(Ids& sizes, Ids& minIds, Ids& maxIds) const override
    { (*_set)["sizes"].get(sizes); (*_set)["min ids"].get(minIds); (*_set)["max ids"].get(maxIds); }
    Id   getIdsForSetInRange(Id first, Id last, Id* v, Id n) const override { return (*_set)["ids"].get(first, last, v, n); }
    void getVariablesInSet(Names& names) const override { names = (*_set)["variables"].names(); }
    void getVariableLengthedVariablesInSet(Names& names) const override { names = (*_set)["lists"].names(); }
    void getOtherVariablesInSet(Names& names) const override { names = (*_set)["others"].names(); }
    void getStringVariablesInSet(Names& names) const override { names = (*_set)["texts"].names(); }
    Type startReadingSizeOfVariableLengthedVarForSet(const Text& name) override { return (_variable = &member("lists", name))->counts().type; }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, int*   v, Id n) const override { return _variable->counts().get(first, last, v, n); }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, short* v, Id n) const override { return _variable->counts().get(first, last, v, n); }
    Id   getSizeOfVariableForSetInRange(Id first, Id last, Id*    v, Id n) const override { return _variable->counts().get(first, last, v, n); }
    void endReadingSizeOfVariableLengthedVarForSet() override { _variable = &Node::nothing; }
    Type startReadingDataOfVariableForSet(const Text& name, Id& size) override
    { sizeOf(member("variables", name), size); return (_variable = &member("variables", name))->type; }
    void endReadingDataOfVariableForSet() override { _variable = &Node::nothing; }
    Type startReadingVariableLengthedDataOfVariableForSet(const Text& name) override { return (_variable = &member("lists", name))->type; }
    void endReadingVariableLengthedDataOfVariableForSet() override { _variable = &Node::nothing; }
    Type getDataTypeOfOtherDataForSet(const Text& name) const override { return member("others", name).type; }
    Id   getStringDataForSet(const Text& name, Text& text) const override { return textOf(member("texts", name), text); }
    void endReadingSet() override { _set = _variable = &Node::nothing; }

    // ---- set data
    void getSetDataNames(Names& names) const override { names = setData().names(); }
    bool startReadingSetData(const Text& name, Id& memberCount) override { endReadingSet(); _set = &setData()[name]; return sizeOf(*_set, memberCount); }
    bool getIdsForSetData(Ids& ids) const override { return (*_set)["ids"].get(ids); }
    void getConstantLengthVariablesInSetData(Names& names) const override { getVariablesInSet(names); }
    void getVariableLengthVariablesInSetData(Names& names) const override { getVariableLengthedVariablesInSet(names); }
    void getOtherVariablesInSetData(Names& names) const override { getOtherVariablesInSet(names); }
    void getStringVariablesInSetData(Names& names) const override { getStringVariablesInSet(names); }
    Type getDataTypeOfDataForSetData(const Text& name) const override;
    Type getDataTypeOfSizeForSetData(const Text& name) const override { return member("lists", name).counts().type; }
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<int>&   v) const override { return member("lists", name).counts().get(v); }
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<short>& v) const override { return member("lists", name).counts().get(v); }
    bool getSizeOfVariableLengthVarForSetData(const Text& name, std::vector<Id>&    v) const override { return member("lists", name).counts().get(v); }
    Id   getStringDataForSetData(const Text& name, Text& text) const override { return getStringDataForSet(name, text); }
    void endReadingSetData() override { endReadingSet(); }

#define KEL_DEFINE(T) \
    Id   getValuesOfParticleTrackVariable(const Text& name, T* v, Id n) const override { return (*_chunk)[name].get(v, n); } \
    Id   getDataOfVariableForSetInRange(Id first, Id last, T* v, Id n) const override { return _variable->get(first, last, v, n); } \
    Id   getVariableLengthedDataOfVariableForSetInRange(Id first, Id last, T* v, Id n) const override { return _variable->get(first, last, v, n); } \
    Id   getOtherDataForSet(const Text& name, T* v, Id n) const override { return v ? member("others", name).get(v, n) : member("others", name).length(); } \
    bool getDataOfConstantLengthVarForSetData(const Text& name, std::vector<T>& v, Id& size) const override \
    { return sizeOf(member("variables", name), size) && member("variables", name).get(v); } \
    bool getDataOfVariableLengthVarForSetData(const Text& name, std::vector<T>& v) const override { return member("lists", name).get(v); } \
    bool getOtherDataForSetData(const Text& name, std::vector<T>& v) const override { return member("others", name).get(v); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

protected:
    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;

private:
    // What is not there is an empty file, mesh or node: every question to it is answered by nothing.
    using Node = KelMemoryNode; ///< short for it
    const KelMemoryFile& file(KelDataClass dataClass) const { return isOpen(dataClass) ? *_files[dataClass] : noFile; }
    bool isOpen(KelDataClass dataClass) const { return (dataClass == KEL_CASE || dataClass == KEL_DATA) && _files[dataClass]; }
    const Node& member(const char* kind, const Text& name) const { return (*_set)[kind][name]; } ///< of the open set
    const Node& tree(KelDataClass dataClass) const ///< of the current mesh and, for data, time level
    {
        const Node& tree = isOpen(dataClass) && _meshes[dataClass] ? _meshes[dataClass]->tree : Node::nothing;
        return dataClass == KEL_DATA ? tree["level " + std::to_string(getTimeLevel())] : tree;
    }
    const Node& array(const char* name) const { return tree(KEL_CASE)[name]; }
    const Node& phase(const Text& name) const { return tree(KEL_DATA)["phases"][name]; }
    const Node& phase() const { Text name; return getActivePhase(name) ? phase(name) : Node::nothing; }
    const Node& setData() const { return phase()["set data"]; }
    const Node& tracks(short phaseId, int mesh, KelTargetCategory target, int partition) const
    { return phase(getPhaseName(phaseId))["tracks"][KelMeshKey{mesh, target, partition}.groupName()]; }
    bool fail(const Text& text) const;
    bool select(KelDataClass dataClass);
    void forgetOpenParts() { _sections = _section = _field = _set = _variable = _tracks = _group = _chunk = &Node::nothing; }
    static bool countOf(const Node& list, Id& count) { count = list ? list.length() : count; return bool(list); }
    static bool sizeOf(const Node& node, Id& size) { size = node ? node.size : size; return bool(node); }
    static Id textOf(const Node& node, Text& text) { text = node ? node.text : text; return node.text.size(); }

    template <class T>
    static bool isUniform(const Node& node, Id first, Id last, T* value)
    {
        const std::optional<long> found = node.values.uniformValue(first, last);
        if (found && value)
            *value = static_cast<T>(*found);
        return found.has_value();
    }
    template <class T>
    bool isUniformInZone(const Node& node, int zone, T* value) const
    { const auto [first, last] = rangeOfZone(zone); return isUniform(node, first, last, value); }

    template <class T>
    Id interfaceData(int zone, T* a, Id na, T* b, Id nb, Id* v0, Id n0, Id* v1, Id n1) const
    {
        const Node& data = array("interfaces")[std::to_string(zone)];
        return data["a"].get(a, na) + data["b"].get(b, nb) + data["0"].get(v0, n0) + data["1"].get(v1, n1);
    }
    // clang-format on

    static const KelMemoryFile noFile;
    KelMemoryStore::File _files[2];                             ///< being read, by data class; null while none is
    const KelMemoryFile::Mesh* _meshes[2] = {nullptr, nullptr}; ///< current one in each
    KelDataClass _current = KEL_CASE;                           ///< opened last

    // What the start markers opened.
    const Node *_sections = &Node::nothing, *_section = &Node::nothing, *_field = &Node::nothing;
    const Node *_set = &Node::nothing, *_variable = &Node::nothing;
    const Node *_tracks = &Node::nothing, *_group = &Node::nothing, *_chunk = &Node::nothing;
};

} // namespace meridyn
