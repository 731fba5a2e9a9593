#include "KelFormat.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"

namespace meridyn {

/// Whether a text names a file of a data class.
static bool exists(const std::string& name, KelDataClass dataClass)
{
    return name.compare(0, 7, "memory:") == 0 && KelMemoryStore::find(name, dataClass);
}

KelFormat memoryFormat()
{
    KelFormat format;
    format.name = "memory";
    format.description = "Files that live in the process, named 'memory:' and anything";
    format.reads = allFormatFamilies;
    format.writes = allFormatFamilies;
    format.probe = [](const std::string& name) { return exists(name, KEL_CASE) || exists(name, KEL_DATA); };
    format.files = [](const std::string& name, bool forWriting) {
        return KelFormatFiles{forWriting || exists(name, KEL_CASE) ? name : "",
                              forWriting || exists(name, KEL_DATA) ? name : ""};
    };
    format.makeReader = [] { return std::make_unique<KelMemoryProvider>(); };
    format.makeWriter = [] { return std::make_unique<KelMemoryConsumer>(); };
    format.prefix = "memory:";
    return format;
}

} // namespace meridyn
