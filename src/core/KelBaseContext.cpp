#include "core/DataInterface.h"
#include "core/Report.h"
#include "KelBase.h"
#include "KelSolutionModel.h"

namespace meridyn {

int KelBase::getMeshId() const
{
    return _data->context.meshId();
}

int KelBase::getPartitionId() const
{
    return _data->context.partitionId();
}

KelTargetCategory KelBase::getTarget() const
{
    return _data->context.target();
}

bool KelBase::setMeshId(int meshId)
{
    return setMeshContext(meshId, getTarget(), getPartitionId(), KEL_UPDATE_CASE_AND_DATA);
}

bool KelBase::setTarget(KelTargetCategory target)
{
    return setMeshContext(getMeshId(), target, getPartitionId(), KEL_UPDATE_CASE_AND_DATA);
}

bool KelBase::setPartitionId(int partitionId)
{
    return setMeshContext(getMeshId(), getTarget(), partitionId, KEL_UPDATE_CASE_AND_DATA);
}

/// Changes what is stored and drops the mesh when anything is new.
static void changeContext(DataInterface& data, int meshId, KelTargetCategory target, int partitionId)
{
    MeshContext& context = data.context;
    const int newMeshId = meshId >= 1 ? meshId : context.meshId();
    const KelTargetCategory newTarget = target != -1 ? target : context.target();
    const int newPartitionId = partitionId >= 0 ? partitionId : context.partitionId();
    if (newMeshId == context.meshId() && newTarget == context.target() && newPartitionId == context.partitionId()) {
        return;
    }
    data.resetMesh();
    context.setMeshId(newMeshId);
    context.setTarget(newTarget);
    if (target == KEL_PARTITIONED_POST) { // kept: the argument, not the stored target
        context.setPartitionId(newPartitionId);
    }
}

bool KelBase::setMeshContext(int meshId, KelTargetCategory target, int partitionId, UpdateMethod method)
{
    changeContext(*_data, meshId, target, partitionId);

    const bool hasMesh = _data->meshSizes.sizes[KEL_MESH_DIMENSION] != 0;
    if (!hasMesh && (method == KEL_UPDATE_CASE || method == KEL_UPDATE_CASE_AND_DATA)) {
        if (!updateData(KEL_CASE)) {
            return false;
        }
    }
    std::vector<short> phaseIds;
    _data->solutionModel->getPhases(phaseIds);
    if (phaseIds.empty() && (method == KEL_UPDATE_DATA || method == KEL_UPDATE_CASE_AND_DATA)) {
        return updateData(KEL_DATA);
    }
    return true;
}

void KelBase::dropMesh()
{
    _data->resetMesh();
}

// ---- mesh sizes ------------------------------------------------------------------

static bool isMeshSizeType(int type)
{
    return type >= 0 && type < MeshSizes::sizeCount;
}

void KelBase::setMeshSize(KelMeshSizeType type, unsigned64 size)
{
    if (!isMeshSizeType(type)) {
        printLine("Warning: KelBase::setMeshSize: Invalid MeshSizeType.");
        return;
    }
    _data->meshSizes.sizes[type] = size;
}

void KelBase::getMeshSize(KelMeshSizeType type, unsigned64& size) const
{
    size = 0;
    if (!isMeshSizeType(type)) {
        printLine("Warning: KelBase::getMeshSize: Invalid MeshSizeType.");
        return;
    }
    size = _data->meshSizes.sizes[type];
}

void KelBase::setMeshSize(unsigned64 dimension, unsigned64 size1, unsigned64 size2, unsigned64 size3, unsigned64 size4)
{
    _data->meshSizes.sizes = {dimension, size1, size2, size3, size4};
}

void KelBase::setMeshUnits(const std::string& units)
{
    _data->meshSizes.units = units;
}

void KelBase::getMeshUnits(std::string& units) const
{
    units = _data->meshSizes.units;
}

} // namespace meridyn
