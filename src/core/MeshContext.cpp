#include "core/MeshContext.h"

#include <iostream>

namespace meridyn {

void MeshContext::setPartitionId(int partitionId)
{
    if (_target != KEL_PARTITIONED_POST) {
        std::cout << "setPartitionId() should only be called when the target is 'KEL_PARTITIONED_POST'" << std::endl;
    }
    _partitionId = partitionId; // kept: stored all the same
}

} // namespace meridyn
