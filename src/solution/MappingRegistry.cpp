#include "solution/MappingRegistry.h"

namespace meridyn {

MappingRegistry& mappingRegistry()
{
    static MappingRegistry registry;
    return registry;
}

} // namespace meridyn
