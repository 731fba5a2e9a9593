#include "KelFormatFamily.h"

namespace meridyn {

std::string formatFamilyName(KelFormatFamily family)
{
    static const char* const names[] = {
        "coordinates",   "edges",           "face nodes",     "face cells", "shadow faces",    "interface data",
        "child faces",   "cell types",      "cell nodes",     "cell faces", "partitions",      "child cells",
        "case sections", "zone properties", "zone adjacency", "local ids",  "phases",          "variables",
        "attributes",    "time levels",     "sets",           "set data",   "particle tracks", "settings",
        "log",           "locations",       "several meshes", "mesh sizes", "solver type",
    };
    static_assert(sizeof(names) / sizeof(*names) == KEL_FAMILY_COUNT);
    return family >= 0 && family < KEL_FAMILY_COUNT ? names[family] : "";
}

} // namespace meridyn
