#include "core/MeshContext.h"

#include "text/Printing.h"

namespace meridyn {

void MeshContext::setPartitionId(int partitionId)
{
    if (_target != KEL_PARTITIONED_POST) {
        printFlushedLine("setPartitionId() should only be called when the target is 'KEL_PARTITIONED_POST'");
    }
    _partitionId = partitionId; // kept: stored all the same
}

} // namespace meridyn
