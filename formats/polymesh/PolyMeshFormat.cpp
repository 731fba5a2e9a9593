#include "CaseFolder.h"
#include "FoamError.h"
#include "KelFileConsumer.h"
#include "KelFormat.h"
#include "KelPolyMeshProvider.h"

namespace meridyn {

using namespace polymesh;

namespace {

/// The folder is the case, and the data as well when there are times.
KelFormatFiles filesOf(const std::string& path, bool forWriting)
{
    try {
        if (!forWriting)
            return {path, CaseFolder(path).times().empty() ? std::string() : path};
    } catch (const FoamError&) {
        // no case: no files
    }
    return {};
}

} // namespace

KelFormat polymeshFormat()
{
    KelFormat format;
    format.name = "polymesh";
    format.description = "OpenFOAM case folders (polyMesh and fields), read only";
    for (const KelFormatFamily family :
         {KEL_FAMILY_COORDINATES,    KEL_FAMILY_FACE_NODES,  KEL_FAMILY_FACE_CELLS, KEL_FAMILY_SHADOW_FACES,
          KEL_FAMILY_CELL_TYPES,     KEL_FAMILY_CELL_NODES,  KEL_FAMILY_CELL_FACES, KEL_FAMILY_ZONE_PROPERTIES,
          KEL_FAMILY_ZONE_ADJACENCY, KEL_FAMILY_LOCAL_IDS,   KEL_FAMILY_PHASES,     KEL_FAMILY_VARIABLES,
          KEL_FAMILY_ATTRIBUTES,     KEL_FAMILY_TIME_LEVELS, KEL_FAMILY_SETS,       KEL_FAMILY_SETTINGS,
          KEL_FAMILY_LOCATIONS,      KEL_FAMILY_MESHES,      KEL_FAMILY_MESH_SIZES, KEL_FAMILY_SOLVER})
        format.reads |= formatFamily(family);
    format.probe = KelPolyMeshProvider::understands;
    format.files = filesOf;
    format.makeReader = [] { return std::make_unique<KelPolyMeshProvider>(); };
    return format;
}

} // namespace meridyn
