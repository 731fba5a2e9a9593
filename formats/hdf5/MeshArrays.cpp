#include "MeshArrays.h"

#include <iterator>

namespace meridyn::hdf5 {

const MeshArray& meshArrayOf(KelArray array)
{
    static constexpr MeshArray arrays[] = {
        // in the order of KelArray
        {"coordinates", MeshArray::Kind::Coordinates},
        {"edge nodes", Lists::EdgeNodes},
        {"edge node counts", Lists::EdgeNodes},
        {"face nodes", Lists::FaceNodes},
        {"face node counts", Lists::FaceNodes},
        {"face cell 0s", Ids::Cell0},
        {"face cell 1s", Ids::Cell1},
        {"shadow faces", Ids::ShadowFace},
        {"child faces", Lists::FaceChildren},
        {"child face counts", Lists::FaceChildren},
        {"cell types", Ints::CellTypes},
        {"cell nodes", Lists::CellNodes},
        {"cell node counts", Lists::CellNodes},
        {"cell faces", Lists::CellFaces},
        {"cell face counts", Lists::CellFaces},
        {"cell partitions", Ints::CellPartitions},
        {"child cells", Lists::CellChildren},
        {"child cell counts", Lists::CellChildren},
        {"case section"},
        {"phase variable"},
        {"set ids"},
        {"set variable"},
        {"set lists"},
        {"set list lengths"},
    };
    static_assert(std::size(arrays) == static_cast<std::size_t>(KelArray::SetListLengths) + 1);
    return arrays[static_cast<int>(array)];
}

} // namespace meridyn::hdf5
