#pragma once

#include "KelFormatConsumer.h"
#include "KelTree.h"

#include <initializer_list>

namespace meridyn {

/// Writer that gathers a file as a tree, see KelTree, and keeps everything that the frame takes. A format derives from
/// it and saves the tree: all that it has to override is save, and load for setAppendOn.
///
/// Files     a tree for each data class; endWriting has it saved, with setAppendOn together with what the file held.
///           Without endWriting nothing is saved.
/// Meshes    what is handed over belongs to the mesh, target and partition (under partitioned post) that are current; a
///           mesh id that was never set counts as 1. Before going on to another mesh, call writeMeshSize: it stores
///           zones, sizes, phases and variables as they are then.
/// Order     counts come before the ids that they count; without counts, all elements of a call have the same number.
///           Ranges come in any order; what is handed over again replaces what was there.
/// Texts     addStringAttribute(section, group, name, value) is a setting `name` of the group "<section>/<group>".
/// Reports   what cannot be kept posts a KelError that names file and data, and changes nothing.
/// Memory    all of the file, until it is saved.
class KEL_API KelTreeConsumer : public KelFormatConsumer {
public:
    /// No file is named and nothing is open.
    KelTreeConsumer();
    ~KelTreeConsumer() override;

    using Id = unsigned64;                            ///< short for it
    using Text = std::string;                         ///< short for it
    using Zones = std::vector<int>;                   ///< short for it
    using Ids = std::vector<Id>;                      ///< short for it
    using Type = KelPlainDataType;                    ///< short for it
    using Pairs = std::vector<std::pair<Text, Text>>; ///< short for it

    // clang-format off
    // ---- run
    void log(Pairs entries, KelDataClass dataClass) override;
    bool dropTimeLevelsFrom(int level) override;
    bool isWritingData() override { return _files[0] || _files[1]; }
    void writeSettingStrings(const Pairs& pairs, KelDataClass dataClass, const Text& group) const override;
    bool addStringAttribute(const Text& section, const Text& group, const Text& name, const Text& value) const override;
    void writeMeshAttributes() const override;
    void cacheLocationModelState(const Text& state) const override;

    // ---- mesh
    void setLocalElemIdsInZone(int zone, const Id* v, Id n) override { keepList(open(tree(KEL_CASE), {"local ids", std::to_string(zone)}), {v, n}); }
    void startWritingInterfaceDataForFaces(const Zones& zones0, const Zones& zones1) override;
    void startWritingPartitionIdsForCells(const Zones&, int count) override { keepList(open(tree(KEL_CASE), {"partition count"}), {&count, 1}); }
    void startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<Text>& names) override;
    void startWritingCaseSectionDataForCategory(const Text& name, const Zones& zones, Type type, Id size) override;
    void setCaseSectionDataForElementsInRange(Id first, Id last, const void* v, Id n) override { if (started(_section)) keep(KelArray::CaseSection, first, last, {v, n, _section->type}); }
    void endWritingCaseSectionDataForCategory() override { _section = nullptr; }

    // ---- solution
    using KelFormatConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const Text& name, Zones& zones, Id size) override;
    void endWritingPhaseVariableInZonesOfCategory() override { _field = nullptr; }

    // ---- sets, set data, particle tracks
    void startWritingSet(const Text& name, KelZoneCategory category) override;
    void setSizesAndMinMaxIdsForSet(const Ids& sizes, const Ids& minIds, const Ids& maxIds) override;
    void endWritingSet() override { close(KelCollection::Set); }
    void startWritingSetData(const Text& name, Id memberCount) override;
    void endWritingSetData() override { close(KelCollection::SetData); }
    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const Text& name) override { close(KelCollection::TrackChunk); _group = open(started(_tracks), {name}); }
    void startWritingChunkInPartiticleTrackGroup(int id, Id pointCount) override { _open[KelCollection::TrackChunk] = renew(open(started(_group), {std::to_string(id)}), pointCount); }
    void endWritingChunkInPartiticleTrackGroup() override { close(KelCollection::TrackChunk); }
    void endWritingPartiticleTrackGroup() override { close(KelCollection::TrackChunk); _group = nullptr; }
    void endWritingParticleTracks() override { endWritingPartiticleTrackGroup(); _tracks = nullptr; }

protected:
    /// @name What a format overrides
    /// @{
    virtual KelTreeFile load(KelDataClass dataClass, const Text& fileName) const; ///< The file that is there now, to be added to. Null here.
    virtual bool save(KelDataClass dataClass, const Text& fileName, KelTreeFile tree) = 0; ///< False, after a KelError, when it cannot.
    /// @}

    bool openData(KelDataClass dataClass, const Text& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    int  getLastLogIndex(KelDataClass dataClass) const override { return isOpen(dataClass) ? static_cast<int>(_files[dataClass]->log.size()) - 1 : -1; }

    bool fail(const Text& what) const; ///< Posts a KelError that names the file; false.

    // ---- what the forms of the frame come down to
    void keep(KelArray array, Id first, Id last, const KelValues& values) override;
    void keepUniform(KelArray array, Id first, Id last, signed64 value) override;
    void keepInterface(int zoneId, const KelInterfaceValues& values) override;
    void startVariable(KelCollection in, const Text& name, Id valuesPerMember, Type type) override;
    void startLists(KelCollection in, const Text& name, Type type, Type lengthType) override;
    void startLengths(const Text& name, Type type) override { startLists(KelCollection::Set, name, Type(-1), type); }
    bool append(KelPart part, const KelValues& values) override;
    bool appendLists(const KelValues& values, const KelValues& lengths) override;
    void keepBlock(KelCollection in, const Text& name, const KelValues& values) override;
    void keepText(KelCollection in, const Text& name, const Text& text) override { if (Node* to = open(started(_open[in]), {"texts", name})) to->text = text; }

private:
    bool isOpen(KelDataClass dataClass) const { return (dataClass == KEL_CASE || dataClass == KEL_DATA) && _files[dataClass]; }
    bool started(KelDataClass dataClass) const { return isOpen(dataClass) || fail("a call before startWriting"); }

    // Where things go. Null stands for a node that is not open, which has been reported then.
    using Node = KelTreeNode; ///< short for it
    KelTree::Mesh* mesh(KelDataClass dataClass) const;
    Node* tree(KelDataClass dataClass) const; ///< of the current mesh and, for data, time level
    Node* phase() const;                      ///< in it, of the active phase
    Node* nodeOf(KelArray array);
    Node* started(Node* node) const { return node || fail("values without a start marker") ? node : nullptr; }
    static Node* open(Node* node, std::initializer_list<Text> path, Id size = 0);
    static Node* openField(Node* parent, const Text& name, const Zones& zones, Type type, Id size);
    static Node* renew(Node* node, Id size = 0) { if (node) { *node = Node{node->name}; node->size = size; } return node; }
    static bool keepList(Node* to, const KelValues& values);
    void close(KelCollection collection) { _open[collection] = _variable[collection] = nullptr; }
    void forgetOpenParts() { _sections = _section = _field = _tracks = _group = nullptr; _open.clear(); _variable.clear(); }
    // clang-format on

    std::shared_ptr<KelTree> _files[2]; ///< being written, by data class; null while none is
    KelDataClass _current = KEL_CASE;   ///< opened last
    std::set<int> _dropped; ///< time levels that KelBase still knows; only what is written anew brings one back

    // What the start markers opened; null when nothing is.
    Node *_sections = nullptr, *_section = nullptr, *_field = nullptr, *_tracks = nullptr, *_group = nullptr;
    std::map<KelCollection, Node*> _open, _variable;
};

} // namespace meridyn
