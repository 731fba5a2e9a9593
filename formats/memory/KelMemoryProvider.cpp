#include "KelMemoryProvider.h"

namespace meridyn {

KelMemoryProvider::KelMemoryProvider() = default;
KelMemoryProvider::~KelMemoryProvider() = default;

KelTreeFile KelMemoryProvider::load(KelDataClass dataClass, const std::string& fileName)
{
    KelTreeFile file = KelMemoryStore::find(fileName, dataClass);
    if (!file)
        fail(fileName + ": there is no such file");
    return file;
}

} // namespace meridyn
