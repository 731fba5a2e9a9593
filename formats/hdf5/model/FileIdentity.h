#pragma once

#include "KelTypes.h"
#include "MeshLayout.h"

#include "formats/hdf5/file/Hdf5Handle.h"

#include <optional>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

/// What the root of a file says about it: the attributes "format" ("Kel case", "Kel data") and "format_version".
/// @{
void writeIdentity(hid_t root, KelDataClass dataClass);
std::string formatVersion(); ///< of the files that are written

/// The version text of a file of the data class.
/// @throws FormatError when it is none
std::string readIdentity(hid_t root, KelDataClass dataClass);
/// @}

/// The meshes of a file, in the order in which they were written.
std::vector<MeshKey> meshKeys(hid_t root);

/// Group of a mesh.
/// @throws FormatError when it is missing
Handle openMesh(hid_t root, const MeshKey& key);

/// The mesh that was asked for: its mesh id unless that is below 1, its target, and its partition where one is chosen
/// and the target has partitions.
std::optional<MeshKey> findMesh(const std::vector<MeshKey>& keys, const MeshKey& wanted);

/// The mesh that fits best what a reader has chosen so far, which may be nothing.
std::optional<MeshKey> findBestMesh(const std::vector<MeshKey>& keys, const MeshKey& wanted);

} // namespace meridyn::hdf5
