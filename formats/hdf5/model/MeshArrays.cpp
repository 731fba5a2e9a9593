#include "MeshArrays.h"

namespace meridyn::hdf5 {

MeshArray meshArrayOf(KelArray array)
{
    switch (array) {
    case KelArray::Coordinates:
        return MeshArray::Kind::Coordinates;
    case KelArray::EdgeNodes:
    case KelArray::EdgeNodeCounts:
        return Lists::EdgeNodes;
    case KelArray::FaceNodes:
    case KelArray::FaceNodeCounts:
        return Lists::FaceNodes;
    case KelArray::FaceCell0s:
        return Ids::Cell0;
    case KelArray::FaceCell1s:
        return Ids::Cell1;
    case KelArray::FaceShadows:
        return Ids::ShadowFace;
    case KelArray::FaceChildren:
    case KelArray::FaceChildCounts:
        return Lists::FaceChildren;
    case KelArray::CellTypes:
        return Ints::CellTypes;
    case KelArray::CellNodes:
    case KelArray::CellNodeCounts:
        return Lists::CellNodes;
    case KelArray::CellFaces:
    case KelArray::CellFaceCounts:
        return Lists::CellFaces;
    case KelArray::CellPartitions:
        return Ints::CellPartitions;
    case KelArray::CellChildren:
    case KelArray::CellChildCounts:
        return Lists::CellChildren;
    default:
        return MeshArray::Kind::None;
    }
}

} // namespace meridyn::hdf5
