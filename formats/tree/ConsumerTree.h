#pragma once

#include "KelTreeConsumer.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <set>

namespace meridyn {

/// What a writer of trees keeps between calls. A null node stands for one that is not open, which was reported then.
struct KelTreeConsumer::Data {
    Data(KelTreeConsumer& consumer, std::shared_ptr<KelTreeStore> where) : writer(consumer), store(std::move(where)) {}

    KelTreeConsumer& writer;
    std::shared_ptr<KelTreeStore> store;
    std::shared_ptr<KelTree> files[2];         ///< being written, by data class; null while none is
    KelDataClass current = KEL_CASE;           ///< opened last
    std::set<int> dropped;                     ///< levels that KelBase still knows; only new values bring one back
    std::map<KelMeshKey, KelTree::Mesh> cases; ///< meshes that were completed, without their trees

    // What the start markers opened; null when nothing is.
    KelTreeNode* sections = nullptr;
    KelTreeNode* section = nullptr;
    KelTreeNode* field = nullptr;
    KelTreeNode* tracks = nullptr;
    KelTreeNode* trackGroup = nullptr;
    std::map<KelCollection, KelTreeNode*> open;
    std::map<KelCollection, KelTreeNode*> variable;

    /// Posts a KelError that names the file; false.
    bool fail(const std::string& text) const;

    bool isOpen(KelDataClass dataClass) const;
    bool started(KelDataClass dataClass) const; ///< the same, with a report
    KelTreeNode* started(KelTreeNode* node) const;

    KelTree::Mesh* mesh(KelDataClass dataClass) const; ///< the current one; null while no file is open
    KelTreeNode* tree(KelDataClass dataClass) const;   ///< of the current mesh and, for data, time level
    KelTreeNode* phase() const;                        ///< in it, of the active phase
    KelTreeNode* nodeOf(KelArray array);

    void forgetOpenParts();
    void close(KelCollection collection);
    void keepSolution(KelTree::Mesh& mesh) const;
    void completeMeshes(KelDataClass dataClass);
};

} // namespace meridyn
