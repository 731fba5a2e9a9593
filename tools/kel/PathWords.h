#pragma once

#include <string>

namespace meridyn::tool {

/// A text with paths inside a Kel file put behind words: "/meshes/mesh_2_target_0_partition_-1/faces/cell0 has ..."
/// becomes "faces, cell 0 of mesh 2 (/meshes/mesh_2_target_0_partition_-1/faces/cell0) has ...". Texts without such a
/// path stay as they are.
std::string withWordsForPaths(const std::string& text);

} // namespace meridyn::tool
