#pragma once

#include "KelTypes.h"

#include <array>
#include <string>

namespace meridyn {

/// Which mesh of a file, prepared for what, and which part of it.
class MeshContext {
public:
    explicit MeshContext(int meshId) : _meshId(meshId) {}

    int meshId() const { return _meshId; }
    int partitionId() const { return _partitionId; }
    KelTargetCategory target() const { return _target; }

    void setMeshId(int meshId) { _meshId = meshId; }
    void setTarget(KelTargetCategory target) { _target = target; }
    /// Keeps the id under every target, and prints a line when the target makes it meaningless.
    void setPartitionId(int partitionId);

private:
    int _meshId;
    int _partitionId = -1;
    KelTargetCategory _target = KEL_DEFAULT_TARGET;
};

/// Sizes of the whole mesh, by KelMeshSizeType, and the unit of its coordinates.
struct MeshSizes {
    static constexpr int sizeCount = 5;

    std::array<unsigned64, sizeCount> sizes{};
    std::string units;
};

} // namespace meridyn
