#include "KelFileConsumer.h"
#include "KelFormat.h"
#include "KelGeneratedProvider.h"

namespace meridyn {

KelFormat generatedFormat()
{
    KelFormat format;
    format.name = "generated";
    format.description = "Meshes and fields made from one line of text, like 'box:32x32x32 fields:5'";
    for (const KelFormatFamily family :
         {KEL_FAMILY_COORDINATES, KEL_FAMILY_FACE_NODES, KEL_FAMILY_FACE_CELLS, KEL_FAMILY_SHADOW_FACES,
          KEL_FAMILY_CHILD_FACES, KEL_FAMILY_CELL_TYPES, KEL_FAMILY_CELL_NODES, KEL_FAMILY_CELL_PARTITIONS,
          KEL_FAMILY_ZONE_PROPERTIES, KEL_FAMILY_ZONE_ADJACENCY, KEL_FAMILY_PHASES, KEL_FAMILY_VARIABLES,
          KEL_FAMILY_ATTRIBUTES, KEL_FAMILY_TIME_LEVELS, KEL_FAMILY_SETTINGS, KEL_FAMILY_LOCATIONS,
          KEL_FAMILY_MESH_SIZES})
        format.reads |= formatFamily(family);
    format.probe = KelGeneratedProvider::understands;
    format.files = [](const std::string& text, bool) { return KelFormatFiles{text, text}; };
    format.makeReader = [] { return std::make_unique<KelGeneratedProvider>(); };
    format.prefix = "box:";
    format.samples = {"box:1x1x1",
                      "box:3x2x4 zones:2 partitions:3 fields:2 phases:2 levels:2",
                      "box:2x3x2 cells:tet periodic",
                      "box:3x2x2 cells:prism size:1x2x3",
                      "box:2x2x3 cells:pyramid zones:3 fields:1",
                      "box:3x2x2 cells:poly",
                      "box:4x3x4 hanging periodic"};
    return format;
}

} // namespace meridyn
