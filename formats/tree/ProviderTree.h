#pragma once

#include "KelTreeProvider.h"

#include <map>
#include <optional>

namespace meridyn {

/// What a reader of trees keeps between calls. What is not there is an empty file or node: every question to it is
/// answered by nothing.
struct KelTreeProvider::Data {
    Data(KelTreeProvider& provider, std::shared_ptr<KelTreeStore> where) : reader(provider), store(std::move(where)) {}

    KelTreeProvider& reader;
    std::shared_ptr<KelTreeStore> store;
    KelTreeFile files[2];                                ///< being read, by data class; null while none is
    const KelTree::Mesh* meshes[2] = {nullptr, nullptr}; ///< the current one in each
    KelDataClass current = KEL_CASE;                     ///< opened last

    // What the start markers opened.
    const KelTreeNode* sections = &KelTreeNode::nothing;
    const KelTreeNode* section = &KelTreeNode::nothing;
    const KelTreeNode* field = &KelTreeNode::nothing;
    const KelTreeNode* tracks = &KelTreeNode::nothing;
    const KelTreeNode* trackGroup = &KelTreeNode::nothing;
    const KelTreeNode* variable = &KelTreeNode::nothing;
    std::map<KelCollection, const KelTreeNode*> open;

    /// Posts a KelError; false.
    bool fail(const std::string& text) const;

    bool isOpen(KelDataClass dataClass) const;
    const KelTree& file(KelDataClass dataClass) const;
    bool select(KelDataClass dataClass);
    bool fits(const KelMeshKey& key) const;
    void declare(KelDataClass dataClass, const KelTree::Mesh& mesh);
    bool hasMesh() const;
    void forgetOpenParts();

    const KelTreeNode& tree(KelDataClass dataClass) const; ///< of the current mesh and, for data, time level
    const KelTreeNode& phase(const std::string& name) const;
    const KelTreeNode& phase() const; ///< the active one
    const KelTreeNode& tracksOf(short phaseId, int meshId, KelTargetCategory target, int partitionId) const;
    const KelTreeNode& nodeOf(KelArray array) const;
    const KelTreeNode& opened(KelCollection in) const;
    const KelTreeNode& part(KelCollection in, KelPart part, const std::string& name) const;

    unsigned64 giveCell1s(unsigned64 first, unsigned64 last, const KelBuffer& values) const;
};

} // namespace meridyn
