#pragma once

#include "KelExport.h"

namespace meridyn {

/// What the operations with a range hand over, as one list: arrays of the mesh by element id, and arrays of what the
/// last start marker opened. Those named "counts" and "lengths" say how many values the ids or members of the array
/// before them have; they come before it. See the frames for shapes.
enum class KelArray {
    Coordinates,     ///< of nodes
    EdgeNodes,       ///< ids of the nodes of edges
    EdgeNodeCounts,  ///< how many
    FaceNodes,       ///< ids of the nodes of faces
    FaceNodeCounts,  ///< how many
    FaceCell0s,      ///< the cell on one side
    FaceCell1s,      ///< the cell on the other, 0 for none
    FaceShadows,     ///< ids of shadow faces
    FaceChildren,    ///< ids of child faces
    FaceChildCounts, ///< how many
    CellTypes,       ///< a KelCellType each, as int
    CellNodes,       ///< ids of the nodes of cells
    CellNodeCounts,  ///< how many
    CellFaces,       ///< ids of the faces of cells
    CellFaceCounts,  ///< how many
    CellPartitions,  ///< a partition each
    CellChildren,    ///< ids of child cells
    CellChildCounts, ///< how many
    CaseSection,     ///< values of the case section that was started, by element id
    PhaseVariable,   ///< values of the variable that was started, by element id
    SetIds,          ///< ids of the members of the set, by position, as all that follows
    SetVariable,     ///< values of the variable that was started
    SetLists,        ///< values of the variable-length variable that was started
    SetListLengths   ///< how many each member has
};

/// Whether an array says how many values the elements of another have.
constexpr bool isOfCounts(KelArray array)
{
    switch (array) {
    case KelArray::EdgeNodeCounts:
    case KelArray::FaceNodeCounts:
    case KelArray::FaceChildCounts:
    case KelArray::CellNodeCounts:
    case KelArray::CellFaceCounts:
    case KelArray::CellChildCounts:
    case KelArray::SetListLengths:
        return true;
    default:
        return false;
    }
}

/// What an array of counts or lengths is for: the one before it.
constexpr KelArray listsOf(KelArray counts)
{
    return static_cast<KelArray>(static_cast<int>(counts) - 1);
}

/// Whether the one behind it says how many values its elements have; all others have the same number for each.
constexpr bool isOfLists(KelArray array)
{
    return isOfCounts(static_cast<KelArray>(static_cast<int>(array) + 1));
}

/// What an array is called in messages, "nodes of faces".
KEL_API const char* nameOf(KelArray array);

/// What holds data under names.
enum class KelCollection {
    Set,       ///< the set that was started
    SetData,   ///< the set data that were started
    TrackChunk ///< the chunk of particle tracks that was started; has variables only
};

/// The kinds of named data in a collection.
enum class KelPart {
    Ids,       ///< of the members; has no name
    Variables, ///< the same number of values for each member, or any number in a chunk
    Lists,     ///< values of a variable-length variable
    Lengths,   ///< how many each member has of them
    Others,    ///< blocks of other data
    Texts      ///< text each
};

} // namespace meridyn
