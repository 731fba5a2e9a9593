#pragma once

#include "KelFormatConsumer.h"
#include "KelMemoryStore.h"

#include <initializer_list>
#include <numeric>

namespace meridyn {

/// Writer of files that live in this process, see KelMemoryStore. Keeps everything that the frame takes.
///
/// Files     a name and a data class each; endWriting puts the file into the store, in the place of an earlier one or,
///           with setAppendOn, with what that one held as well. Without endWriting nothing is left behind.
/// Meshes    what is handed over belongs to the mesh, target and partition (under partitioned post) that are current; a
///           mesh id that was never set counts as 1. Before going on to another mesh, call writeMeshSize: it stores
///           zones, sizes, phases and variables as they are then.
/// Order     counts come before the ids that they count; without counts, all elements of a call have the same number.
///           Ranges come in any order; what is handed over again replaces what was there.
/// Texts     addStringAttribute(section, group, name, value) is a setting `name` of the group "<section>/<group>".
/// Reports   what cannot be kept posts a KelError that names file and data, and changes nothing.
class KEL_API KelMemoryConsumer : public KelFormatConsumer {
public:
    /// No file is named and nothing is open.
    KelMemoryConsumer();
    ~KelMemoryConsumer() override;

    using Id = unsigned64;                            ///< short for it
    using Text = std::string;                         ///< short for it
    using Zones = std::vector<int>;                   ///< short for it
    using Ids = std::vector<Id>;                      ///< short for it
    using Type = KelPlainDataType;                    ///< short for it
    using Pairs = std::vector<std::pair<Text, Text>>; ///< short for it

    // clang-format off
    // ---- run
    void log(Pairs entries, KelDataClass dataClass) override
    { if (started(dataClass)) _files[dataClass]->log.insert(_files[dataClass]->log.end(), entries.begin(), entries.end()); }
    bool isWritingData() override { return _files[0] || _files[1]; }
    void writeSettingStrings(const Pairs& pairs, KelDataClass dataClass, const Text& group) const override;
    bool addStringAttribute(const Text& section, const Text& group, const Text& name, const Text& value) const override;
    void writeMeshAttributes() const override;
    void setAppendOn(bool on) override { _append = on; }
    void setOverrideSettingsOn(bool on) override { _overrideSettings = on; } ///< On unless switched off.
    void setWriteSettingsOn(bool on) override { _writeSettings = on; }       ///< On unless switched off.

    // ---- mesh
    void setLocalElemIdsInZone(int zone, const Id* v, Id n) override { keepList(open(array("local ids"), {std::to_string(zone)}), copyOf(v, n)); }
    void setCoordinatesForNodesInRange(Id first, Id last, const double* v, Id n) override { keepCoordinates(first, last, inPrecision(v, n)); }
    void setCoordinatesForNodesInRange(Id first, Id last, const float*  v, Id n) override { keepCoordinates(first, last, inPrecision(v, n)); }

    void setUniformNodeCountForEdgesInRange(Id first, Id last, short n) override { storeUniform(counts("edge nodes"), first, last, n); }
    void setNodeCountsForEdgesInRange(Id first, Id last, const short* v, Id n) override { store(counts("edge nodes"), first, last, copyOf(v, n)); }
    void setNodeIdsForEdgesInRange(Id first, Id last, const Id* v, Id n) override { store(array("edge nodes"), first, last, copyOf(v, n)); }

    void setUniformNodeCountForFacesInRange(Id first, Id last, short n) override { storeUniform(counts("face nodes"), first, last, n); }
    void setNodeCountsForFacesInRange(Id first, Id last, const short* v, Id n) override { store(counts("face nodes"), first, last, copyOf(v, n)); }
    void setNodeIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { store(array("face nodes"), first, last, copyOf(v, n)); }
    void setCell0sForFacesInRange(Id first, Id last, const Id* v, Id n) override { store(array("cell 0", 1), first, last, copyOf(v, n)); }
    void setCell1sForFacesInRange(Id first, Id last, const Id* v, Id n) override { store(array("cell 1", 1), first, last, copyOf(v, n)); }
    void setShadowFaceIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { store(array("shadow faces", 1), first, last, copyOf(v, n)); }
    void startWritingInterfaceDataForFaces(const Zones& zones0, const Zones& zones1) override
    { keepList(array("interface zones 0"), zones0); keepList(array("interface zones 1"), zones1); }
    void setInterfaceDataForFacesInZone(int zone, const float*  a, Id na, const float*  b, Id nb, const Id* v0, Id n0, const Id* v1, Id n1) override
    { storeInterface(zone, a, na, b, nb, v0, n0, v1, n1); }
    void setInterfaceDataForFacesInZone(int zone, const double* a, Id na, const double* b, Id nb, const Id* v0, Id n0, const Id* v1, Id n1) override
    { storeInterface(zone, a, na, b, nb, v0, n0, v1, n1); }
    void setUniformChildFaceCountForFacesInRange(Id first, Id last, short n) override { storeUniform(counts("child faces"), first, last, n); }
    void setChildFaceCountsForFacesInRange(Id first, Id last, const short* v, Id n) override { store(counts("child faces"), first, last, copyOf(v, n)); }
    void setChildFaceIdsForFacesInRange(Id first, Id last, const Id* v, Id n) override { store(array("child faces"), first, last, copyOf(v, n)); }

    void startWritingTypesForCells(const Zones& zones, const std::vector<KelCellType>& types) override;
    void setTypesForCellsInRange(Id first, Id last, const KelCellType* v, Id n) override
    { store(array("cell types", 1), first, last, std::vector<int>(v, v + (v ? n : 0))); }
    void setUniformNodeCountForCellsInRange(Id first, Id last, short n) override { storeUniform(counts("cell nodes"), first, last, n); }
    void setNodeCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { store(counts("cell nodes"), first, last, copyOf(v, n)); }
    void setNodeIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { store(array("cell nodes"), first, last, copyOf(v, n)); }
    void setUniformFaceCountForCellsInRange(Id first, Id last, short n) override { storeUniform(counts("cell faces"), first, last, n); }
    void setFaceCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { store(counts("cell faces"), first, last, copyOf(v, n)); }
    void setFaceIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { store(array("cell faces"), first, last, copyOf(v, n)); }
    void startWritingPartitionIdsForCells(const Zones&, int count) override { keepList(array("partition count"), copyOf(&count, 1)); }
    void setPartitionIdsForCellsInRange(Id first, Id last, const int* v, Id n) override { store(array("cell partitions", 1), first, last, copyOf(v, n)); }
    void setUniformChildCellCountForCellsInRange(Id first, Id last, short n) override { storeUniform(counts("child cells"), first, last, n); }
    void setChildCellCountsForCellsInRange(Id first, Id last, const short* v, Id n) override { store(counts("child cells"), first, last, copyOf(v, n)); }
    void setChildCellIdsForCellsInRange(Id first, Id last, const Id* v, Id n) override { store(array("child cells"), first, last, copyOf(v, n)); }

    void startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<Text>& names) override
    {
        _section = nullptr;
        _sections = open(tree(KEL_CASE), {"sections", std::to_string(category)});
        for (const Text& name : names)
            open(_sections, {name});
    }
    void startWritingCaseSectionDataForCategory(const Text& name, const Zones& zones, Type type, Id size) override;
    void setCaseSectionDataForElementsInRange(Id first, Id last, const void* values, Id n) override;
    void endWritingCaseSectionDataForCategory() override { _section = nullptr; }

    // ---- solution
    using KelFormatConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name, Zones& zones, Id size) override;
    void setValuesOfPhaseVariableForElementsInRange(Id first, Id last, const float* v, Id n) override { store(started(_field), first, last, inPrecision(v, n)); }
    void setValuesOfPhaseVariableForElementsInRange(Id first, Id last, const double* v, Id n) override
    { store(started(_field), first, last, inPrecision(v, n)); }
    void endWritingPhaseVariableInZonesOfCategory() override { _field = nullptr; }

    // ---- sets
    void startWritingSet(const Text& name, KelZoneCategory category) override
    { endWritingSet(); if ((_set = renew(open(tree(_current), {"sets", name})))) _set->category = category; }
    void setSizesAndMinMaxIdsForSet(const Ids& sizes, const Ids& minIds, const Ids& maxIds) override
    {
        keepList(open(started(_set), {"sizes"}), sizes);
        keepList(open(_set, {"min ids"}), minIds);
        keepList(open(_set, {"max ids"}), maxIds);
    }
    void setIdsForSetInRange(Id first, Id last, const Id* v, Id n) override { store(open(started(_set), {"ids"}, 1), first, last, copyOf(v, n)); }
    void startWritingSizeOfVariableForSet(const Text& name, Ids, Type type) override { startList(name, Type(-1), type); }
    void setSizeOfVariableForSetInRange(Id first, Id last, const int*   v, Id n) override { store(lengths(), first, last, copyOf(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, const short* v, Id n) override { store(lengths(), first, last, copyOf(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, const Id*    v, Id n) override { store(lengths(), first, last, copyOf(v, n)); }
    void setSizeOfVariableForSetInRange(Id first, Id last, int   n) override { storeUniform(lengths(), first, last, n); }
    void setSizeOfVariableForSetInRange(Id first, Id last, short n) override { storeUniform(lengths(), first, last, n); }
    void setSizeOfVariableForSetInRange(Id first, Id last, Id    n) override { storeUniform(lengths(), first, last, static_cast<long>(n)); }
    void startWritingDataOfVariableForSet(const Text& name, Ids, Id size, Type type) override { startWritingVariableForSetData(name, size, type); }
    void startWritingVariableLengthedDataOfVariableForSet(const Text& name, Ids, Type type) override { startList(name, type, Type(-1)); }
    void writeStringDataForSet(const Text& name, const Text& text) override { if (Node* to = open(started(_set), {"texts", name})) to->text = text; }
    void endWritingSet() override { _set = _variable = nullptr; }

    // ---- set data
    void startWritingSetData(const Text& name, Id memberCount) override { endWritingSet(); _set = renew(open(phase(), {"set data", name}), memberCount); }
    Id   setIdsForSetData(const Id* v, Id n) override { return addTo(open(started(_set), {"ids"}), copyOf(v, n)) ? n : 0; }
    void startWritingVariableForSetData(const Text& name, Id size, Type type) override
    { if ((_variable = open(started(_set), {"variables", name}, size))) _variable->type = type; }
    void startWritingVariableLengthVariableForSetData(const Text& name, Type type, Type lengthType) override { startList(name, type, lengthType); }
    void writeStringDataForSetData(const Text& name, const Text& text) override { writeStringDataForSet(name, text); }
    void endWritingSetData() override { endWritingSet(); }

    // ---- particle tracks
    using KelFormatConsumer::setValuesOfParticleTrackVariable;
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const Text& name) override { _chunk = nullptr; _group = open(started(_tracks), {name}); }
    void startWritingChunkInPartiticleTrackGroup(int id, Id pointCount) override { _chunk = renew(open(started(_group), {std::to_string(id)}), pointCount); }
    void endWritingChunkInPartiticleTrackGroup() override { _chunk = nullptr; }
    void endWritingPartiticleTrackGroup() override { _group = _chunk = nullptr; }
    void endWritingParticleTracks() override { _tracks = _group = _chunk = nullptr; }

#define KEL_DEFINE(T) \
    void setDataOfVariableForSetInRange(Id first, Id last, const T* v, Id n) override { store(started(_variable), first, last, copyOf(v, n)); } \
    void setVariableLengthedDataOfVariableForSetInRange(Id first, Id last, const T* v, Id n) override { store(started(_variable), first, last, copyOf(v, n)); } \
    void writeOtherDataForSet(const Text& name, const T* v, Id n) override { keepList(open(started(_set), {"others", name}), copyOf(v, n)); } \
    Id   setVariableForSetData(const T* v, Id n) override { return addTo(started(_variable), copyOf(v, n)) ? n : 0; } \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const int*   lengths, Id count) override { return addLists(v, n, lengths, count); } \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const short* lengths, Id count) override { return addLists(v, n, lengths, count); } \
    Id   setVariableLengthVariableForSetData(const T* v, Id n, const Id*    lengths, Id count) override { return addLists(v, n, lengths, count); } \
    void writeOtherDataForSetData(const Text& name, const T* v, Id n) override { writeOtherDataForSet(name, v, n); } \
    void setValuesOfParticleTrackVariable(const Text& name, const T* v, Id n) override { keepTrack(name, copyOf(v, n), n); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

protected:
    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    int  getLastLogIndex(KelDataClass dataClass) const override { return isOpen(dataClass) ? static_cast<int>(_files[dataClass]->log.size()) - 1 : -1; }

private:
    bool isOpen(KelDataClass dataClass) const { return (dataClass == KEL_CASE || dataClass == KEL_DATA) && _files[dataClass]; }
    bool started(KelDataClass dataClass) const { return isOpen(dataClass) || fail("a call before startWriting"); }
    bool fail(const Text& what) const; ///< Posts a KelError; false.

    // Where things go. Null stands for a node that is not open, which has been reported then.
    using Node = KelMemoryNode; ///< short for it
    KelMemoryFile::Mesh* mesh(KelDataClass dataClass) const
    { return isOpen(dataClass) ? &_files[dataClass]->meshes[KelMeshKey::ofContext(getMeshId(), getTarget(), getPartitionId())] : nullptr; }
    Node* tree(KelDataClass dataClass) const ///< of the current mesh and, for data, time level
    {
        Node* tree = started(dataClass) ? &mesh(dataClass)->tree : nullptr;
        return dataClass == KEL_DATA ? open(tree, {"level " + std::to_string(getTimeLevel())}) : tree;
    }
    Node* phase() const ///< in it, of the active phase
    {
        Text name;
        const bool isActive = getActivePhase(name) || fail("values of a phase, but none is active");
        return isActive ? open(tree(KEL_DATA), {"phases", name}) : nullptr;
    }
    Node* array(const char* name, Id size = 0) const { return open(tree(KEL_CASE), {name}, size); }
    Node* counts(const char* name) const { return countsOf(array(name)); }
    Node* lengths() const { return countsOf(started(_variable)); }
    Node* started(Node* node) const { return node || fail("values without a start marker") ? node : nullptr; }
    static Node* countsOf(Node* node) { return node ? &node->counts() : nullptr; }
    static Node* renew(Node* node, Id size = 0) { if (node) { *node = Node{node->name}; node->size = size; } return node; }
    static Node* open(Node* node, std::initializer_list<Text> path, Id size = 0)
    {
        for (const Text& name : path)
            node = node ? &(*node)[name] : nullptr;
        if (node && size > 0)
            node->size = size;
        return node;
    }
    static Node* openField(Node* parent, const Text& name, const Zones& zones, Type type, Id size);
    void forgetOpenParts() { _sections = _section = _field = _set = _variable = _tracks = _group = _chunk = nullptr; }
    void startList(const Text& name, Type type, Type lengthType)
    {
        _variable = open(started(_set), {"lists", name});
        if (_variable && type != -1)
            _variable->type = type;
        if (_variable && lengthType != -1)
            _variable->counts().type = lengthType;
    }

    // How they go there.
    void keepCoordinates(Id first, Id last, KelMemoryValues v) const
    { Id size = 0; getMeshSize(KEL_MESH_DIMENSION, size); store(array("coordinates", size), first, last, std::move(v)); }
    void store(Node* to, Id first, Id last, KelMemoryValues values) const;
    void storeUniform(Node* to, Id first, Id last, long value) const;
    void keepTrack(const Text& name, KelMemoryValues values, Id count) const;
    bool addTo(Node* to, KelMemoryValues values) const { return to && to->values.append(std::move(values)); }
    static void keepList(Node* to, KelMemoryValues values) { if (renew(to)) { to->type = Type(values.index()); to->values.append(std::move(values)); } }

    template <class T>
    void storeInterface(int zone, const T* a, Id na, const T* b, Id nb, const Id* v0, Id n0, const Id* v1, Id n1) const
    {
        Node* to = open(array("interfaces"), {std::to_string(zone)});
        keepList(open(to, {"a"}), copyOf(a, na));
        keepList(open(to, {"b"}), copyOf(b, nb));
        keepList(open(to, {"0"}), copyOf(v0, n0));
        keepList(open(to, {"1"}), copyOf(v1, n1));
    }

    template <class T, class L>
    Id addLists(const T* v, Id n, const L* lengths, Id count) const
    {
        const double total = lengths ? std::accumulate(lengths, lengths + count, 0.0) : 0;
        const bool fits = total == static_cast<double>(n) || fail("lengths that do not go with the number of values");
        return fits && addTo(started(_variable), copyOf(v, n)) && addTo(this->lengths(), copyOf(lengths, count)) ? n : 0;
    }

    template <class T>
    KelMemoryValues inPrecision(const T* v, Id n) const
    {
        if (v && getDataPrecision() == KEL_PRECISION_SINGLE)
            return std::vector<float>(v, v + n);
        if (v && getDataPrecision() == KEL_PRECISION_DOUBLE)
            return std::vector<double>(v, v + n);
        return copyOf(v, n);
    }
    // clang-format on

    std::shared_ptr<KelMemoryFile> _files[2]; ///< being written, by data class; null while none is
    KelDataClass _current = KEL_CASE;         ///< opened last
    bool _append = false, _overrideSettings = true, _writeSettings = true;

    // What the start markers opened; null when nothing is.
    Node *_sections = nullptr, *_section = nullptr, *_field = nullptr, *_set = nullptr, *_variable = nullptr;
    Node *_tracks = nullptr, *_group = nullptr, *_chunk = nullptr;
};

} // namespace meridyn
