#pragma once

#include "KelTypes.h"

#include <charconv>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

namespace meridyn {

/// Which of the meshes in a file: its id, what it is prepared for, and the partition, -1 for none.
struct KelMeshKey {
    int meshId = -1;      ///< counted from 1
    int target = 0;       ///< a KelTargetCategory
    int partitionId = -1; ///< -1 for none

    /// The one that a writer's context stands for. A mesh id that was never set is 1; only meshes for partitioned
    /// post-processing have a partition.
    static KelMeshKey ofContext(int meshId, KelTargetCategory target, int partitionId)
    {
        return {meshId < 1 ? 1 : meshId, target, target == KEL_PARTITIONED_POST ? partitionId : -1};
    }

    /// "mesh_4_target_2_partition_3"
    std::string groupName() const
    {
        return "mesh_" + std::to_string(meshId) + "_target_" + std::to_string(target) + "_partition_" +
               std::to_string(partitionId);
    }

    /// The key that groupName gave the name of; none for any other text.
    static std::optional<KelMeshKey> ofGroupName(const std::string& name)
    {
        KelMeshKey key;
        int* const numbers[] = {&key.meshId, &key.target, &key.partitionId};
        const char* const words[] = {"mesh_", "_target_", "_partition_"};
        const char* at = name.data();
        const char* const end = name.data() + name.size();
        for (int n = 0; n < 3; ++n) {
            const std::string_view word = words[n];
            if (std::string_view(at, static_cast<std::size_t>(end - at)).substr(0, word.size()) != word)
                return std::nullopt;
            const auto [next, error] = std::from_chars(at + word.size(), end, *numbers[n]);
            if (error != std::errc())
                return std::nullopt;
            at = next;
        }
        return at == end && key.groupName() == name ? std::optional(key) : std::nullopt;
    }

    friend bool operator==(const KelMeshKey& a, const KelMeshKey& b) { return a.tie() == b.tie(); }
    friend bool operator<(const KelMeshKey& a, const KelMeshKey& b) { return a.tie() < b.tie(); }

private:
    std::tuple<int, int, int> tie() const { return {meshId, target, partitionId}; }
};

} // namespace meridyn
