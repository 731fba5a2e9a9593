#pragma once

#include "KelFormatProvider.h"
#include "KelTree.h"

namespace meridyn {

/// Reader of a file that is there as a tree, see KelTree: gives back everything that KelTreeConsumer kept. A format
/// derives from it and loads the tree: all that it has to override is load.
///
/// Meshes    a mesh id below 1, the default target and partition -1 stand for the first that the file has; opening a
///           file makes them the current ones. Choosing another mesh reads zones, phases and variables anew.
/// Levels    opening the data selects the first time level and the first phase where none is selected.
/// Version   and solver type are taken from the common settings.
/// Ranges    an id that has no values makes the whole range give nothing; cell 1 is 0 wherever there is a cell 0. A
///           buffer that is too small gets the whole elements that fit.
/// Sets      of both data classes are found by name, those of the data class opened last first.
/// Reports   a mesh that is not in the file posts a KelError.
class KEL_API KelTreeProvider : public KelFormatProvider {
public:
    /// No file is named and nothing is open.
    KelTreeProvider();
    ~KelTreeProvider() override;

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
    void getSettingString(KelDataClass dataClass, const Text& key, Text& text, const Text& group) const override { textOf(file(dataClass).settings[group][key], text); }

    // ---- mesh
    Id   getLocalElemIdsInZone(int zone, Id* v, Id n) const override { return tree(KEL_CASE)["local ids"][std::to_string(zone)].getList({v, n}); }
    void startReadingInterfaceDataForFaces(Zones& zones0, Zones& zones1) override { listOf(tree(KEL_CASE)["interface zones 0"], zones0); listOf(tree(KEL_CASE)["interface zones 1"], zones1); }
    bool getInterfaceDataSizesForFacesInZone(int zone, Id& na, Id& nb, Id& n0, Id& n1) const override;
    int  getPartitionCountOfCells() const override { return static_cast<int>(tree(KEL_CASE)["partition count"].values.at(1).value_or(0)); }
    void startReadingCaseSectionCategories(KelZoneCategory category, Names& names) override { _sections = &tree(KEL_CASE)["sections"][std::to_string(category)]; names = _sections->names(); }
    Type startReadingCaseSectionForCategory(const Text& name, Zones& zones) override { _section = &(*_sections)[name]; zones = *_section ? _section->zoneIds : zones; return _section->type; }
    bool hasUniformCaseSectionDataCountForZone(int zone, Id* count) const override;
    Id   getCaseSectionDataForElementsInRange(Id first, Id last, void* v, Id n) const override { return give(KelArray::CaseSection, first, last, {v, n, _section->type}); }
    void endReadingCaseSectionForCategory() override { _section = &Node::nothing; }

    // ---- solution
    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    Id   startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const Text& name, Zones& zones) override { _field = &phase()["fields"][std::to_string(category)][name]; zones = _field->zoneIds; return _field->size; }

    // ---- particles: the set data of a phase
    using KelFormatProvider::hasParticles;
    bool hasParticles(const Text& name) const override { return bool(phase(name)["set data"]); }
    void getVariablesOfInjection(const Text& injection, Names& names) const override;

    // ---- particle tracks
    using KelFormatProvider::hasParticleTracks;
    bool hasParticleTracks(const Text& name) const override { return bool(phase(name)["tracks"]); }
    bool hasParticleTracks(short phaseId, int mesh, KelTargetCategory target, int partition) const override { return bool(tracks(phaseId, mesh, target, partition)); }
    void startReadingParticleTracks(short phaseId, int mesh, KelTargetCategory target, int partition) override { endReadingParticleTracks(); _tracks = &tracks(phaseId, mesh, target, partition); }
    void getParticleTrackGroups(Names& groups) const override { groups = _tracks->names(); }
    void startReadingParticleTrackGroup(const Text& group) override { endReadingParticleTrackGroup(); _group = &(*_tracks)[group]; }
    void getChunksInParticleTrackGroup(std::vector<int>& ids) const override { ids.clear(); for (const Text& name : _group->names()) ids.push_back(std::stoi(name)); }
    void startReadingChunkInParticleTrackGroup(int id) override { _open[KelCollection::TrackChunk] = &(*_group)[std::to_string(id)]; }
    Id   getPointCountOfParticleTrackChunk() const override { return opened(KelCollection::TrackChunk).size; }
    void endReadingChunkInParticleTrackGroup() override { _open.erase(KelCollection::TrackChunk); }
    void endReadingParticleTrackGroup() override { endReadingChunkInParticleTrackGroup(); _group = &Node::nothing; }
    void endReadingParticleTracks() override { endReadingParticleTrackGroup(); _tracks = &Node::nothing; }

    // ---- sets and set data
    using KelFormatProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, Names& names) const override { names = tree(dataClass)["sets"].names(); return !names.empty(); }
    bool getSetNames(KelZoneCategory category, Names& names) const override;
    bool startReadingSet(const Text& name) override;
    KelZoneCategory getCategoryOfSet() const override { return opened(KelCollection::Set).category; }
    void getSizesAndMinMaxIdsForSet(Ids& sizes, Ids& minIds, Ids& maxIds) const override;
    Type startReadingSizeOfVariableLengthedVarForSet(const Text& name) override { return (_variable = &part(KelCollection::Set, KelPart::Lists, name))->counts().type; }
    void endReadingSizeOfVariableLengthedVarForSet() override { _variable = &Node::nothing; }
    Type startReadingDataOfVariableForSet(const Text& name, Id& size) override { return sizeOf(*(_variable = &part(KelCollection::Set, KelPart::Variables, name)), size).type; }
    void endReadingDataOfVariableForSet() override { _variable = &Node::nothing; }
    Type startReadingVariableLengthedDataOfVariableForSet(const Text& name) override { return (_variable = &part(KelCollection::Set, KelPart::Lists, name))->type; }
    void endReadingVariableLengthedDataOfVariableForSet() override { _variable = &Node::nothing; }
    void endReadingSet() override { _open.erase(KelCollection::Set); _variable = &Node::nothing; }
    void getSetDataNames(Names& names) const override { names = phase()["set data"].names(); }
    bool startReadingSetData(const Text& name, Id& memberCount) override { return bool(sizeOf(*(_open[KelCollection::SetData] = &phase()["set data"][name]), memberCount)); }
    void endReadingSetData() override { _open.erase(KelCollection::SetData); }

    // ---- beside the frame
    std::optional<std::vector<KelMeshKey>> meshesWithTracks(short phaseId) const override;
    bool hasDataAtNoLevel() const override;
    std::optional<std::string> locationState(KelDataClass dataClass) const override { return isOpen(dataClass) && _meshes[dataClass] ? _meshes[dataClass]->locations : Text(); }

protected:
    virtual KelTreeFile load(KelDataClass dataClass, const Text& fileName) = 0; ///< What a format overrides: null, after a KelError, when it cannot.
    bool fail(const Text& text) const; ///< Posts a KelError; false.

    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;

    // ---- what the forms of the frame come down to
    Id   give(KelArray array, Id first, Id last, const KelBuffer& values) const override;
    std::optional<signed64> uniformValue(KelArray array, Id first, Id last) const override { return nodeOf(array).values.uniformValue(first, last); }
    Id   giveInterface(int zoneId, const KelInterfaceBuffers& values) const override;
    Names namesIn(KelCollection in, KelPart part) const override { return opened(in)[nameOf(part)].names(); }
    std::optional<KelArrayInfo> describe(KelCollection in, KelPart part, const Text& name) const override;
    bool giveWhole(KelCollection in, KelPart part, const Text& name, const KelRoom& room) const override;
    Id   giveText(KelCollection in, const Text& name, Text& text) const override { return textOf(part(in, KelPart::Texts, name), text); }

private:
    // What is not there is an empty file, mesh or node: every question to it is answered by nothing.
    using Node = KelTreeNode; ///< short for it
    const KelTree& file(KelDataClass dataClass) const { return isOpen(dataClass) ? *_files[dataClass] : noFile; }
    bool isOpen(KelDataClass dataClass) const { return (dataClass == KEL_CASE || dataClass == KEL_DATA) && _files[dataClass]; }
    const Node& tree(KelDataClass dataClass) const; ///< of the current mesh and, for data, time level
    const Node& phase(const Text& name) const { return tree(KEL_DATA)["phases"][name]; }
    const Node& phase() const { Text name; return getActivePhase(name) ? phase(name) : Node::nothing; }
    const Node& tracks(short phaseId, int mesh, KelTargetCategory target, int partition) const { return phase(getPhaseName(phaseId))["tracks"][KelMeshKey{mesh, target, partition}.groupName()]; }
    const Node& nodeOf(KelArray array) const;
    const Node& opened(KelCollection in) const { const auto found = _open.find(in); return found != _open.end() ? *found->second : Node::nothing; }
    const Node& part(KelCollection in, KelPart part, const Text& name) const;
    static const char* nameOf(KelPart part) { const char* const names[] = {"ids", "variables", "lists", "lists", "others", "texts"}; return names[static_cast<int>(part)]; }
    static const Node& sizeOf(const Node& node, Id& size) { size = node ? node.size : size; return node; }
    static Id textOf(const Node& node, Text& text) { text = node ? node.text : text; return node.text.size(); }
    template <class T> static void listOf(const Node& node, std::vector<T>& list) { list.resize(node.length()); node.getList({list.data(), list.size()}); }
    bool select(KelDataClass dataClass);
    void forgetOpenParts() { _sections = _section = _field = _tracks = _group = _variable = &Node::nothing; _open.clear(); }
    // clang-format on

    static const KelTree noFile;
    KelTreeFile _files[2];                                ///< being read, by data class; null while none is
    const KelTree::Mesh* _meshes[2] = {nullptr, nullptr}; ///< current one in each
    KelDataClass _current = KEL_CASE;                     ///< opened last

    // What the start markers opened.
    const Node *_sections = &Node::nothing, *_section = &Node::nothing, *_field = &Node::nothing;
    const Node *_tracks = &Node::nothing, *_group = &Node::nothing, *_variable = &Node::nothing;
    std::map<KelCollection, const Node*> _open;
};

} // namespace meridyn
