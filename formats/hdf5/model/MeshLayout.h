#pragma once

#include "KelMeshKey.h"
#include "KelTypes.h"

#include <string>

namespace meridyn::hdf5 {

/// The arrays of a mesh and where they stand in the group of their element kind. Order and names are those of the file.

/// Lists of ids per element.
enum class Lists : int {
    EdgeNodes,
    FaceNodes,
    FaceChildren,
    CellNodes,
    CellFaces,
    CellChildren
};
constexpr int listsCount = 6;

/// One id per face.
enum class Ids : int {
    Cell0,
    Cell1,
    ShadowFace
};
constexpr int idsCount = 3;

/// One small number per cell.
enum class Ints : int {
    CellTypes,
    CellPartitions
};
constexpr int intsCount = 2;

struct ArrayInfo {
    const char* name;
    KelZoneCategory category; ///< of the elements that carry it
    KelZoneCategory target;   ///< of the elements whose ids it holds
};

const ArrayInfo& infoOf(Lists lists);
const ArrayInfo& infoOf(Ids ids);
const ArrayInfo& infoOf(Ints ints);

constexpr int categoryCount = 4;
bool isCategory(int category);

/// "nodes", "edges", "faces", "cells".
const char* groupNameOf(KelZoneCategory category);

/// Which mesh a group of a file describes.
using MeshKey = KelMeshKey;
bool parseMeshKey(const std::string& groupName, MeshKey& key);

} // namespace meridyn::hdf5
