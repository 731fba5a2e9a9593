#pragma once

#include "KelMeshCheck.h"

namespace meridyn::mesh {

/// Runs all checks over a mesh and fills the report.
/// @throws Stopped when the mesh could not be read as a whole, or the check was cancelled
void runChecks(KelProvider& reader, const KelMeshCheckOptions& options, KelMeshReport& report);

} // namespace meridyn::mesh
