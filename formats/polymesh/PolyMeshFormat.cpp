#include "CaseFolder.h"
#include "FoamError.h"
#include "KelFileConsumer.h"
#include "KelFormat.h"
#include "KelPolyMeshProvider.h"

#include <filesystem>
#include <system_error>

namespace meridyn {

using namespace polymesh;

namespace {

/// The case that a path stands for: a case folder, or the one around the folder of a mesh or around a file in it. Empty
/// when there is none.
std::string caseBehind(std::string path)
{
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    if (KelPolyMeshProvider::understands(path))
        return path;
    std::error_code error;
    if (!std::filesystem::exists(path, error))
        return {};
    bool isInMesh = false;
    std::filesystem::path at = path;
    for (int depth = 0; depth < 4 && at.has_filename(); ++depth) { // case/constant/polyMesh/sets/file
        isInMesh = isInMesh || at.filename() == "polyMesh" || (depth == 0 && at.filename() == "constant");
        at = at.has_parent_path() ? at.parent_path() : std::filesystem::path(".");
        if (isInMesh && KelPolyMeshProvider::understands(at.string()))
            return at.string();
        if (at == ".")
            break;
    }
    // From within the case the way up is not in the name.
    return std::filesystem::path(path).is_relative() ? caseBehind(std::filesystem::absolute(path).string())
                                                     : std::string();
}

/// The folder is the case, and the data as well when there are times.
KelFormatFiles filesOf(const std::string& path, bool forWriting)
{
    const std::string folder = caseBehind(path);
    if (forWriting || folder.empty())
        return {};
    try {
        return {folder, CaseFolder(folder).times().empty() ? std::string() : folder};
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
    format.probe = [](const std::string& path) { return !caseBehind(path).empty(); };
    format.files = filesOf;
    format.makeReader = [] { return std::make_unique<KelPolyMeshProvider>(); };
    return format;
}

} // namespace meridyn
