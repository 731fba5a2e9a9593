#include "KelMemoryStore.h"

#include <map>
#include <mutex>

namespace meridyn {

namespace {

std::mutex mutex;
std::map<std::pair<std::string, KelDataClass>, KelTreeFile> files;

} // namespace

KelMemoryStore::~KelMemoryStore() = default;

KelTreeFile KelMemoryStore::load(KelDataClass dataClass, const std::string& fileName)
{
    return find(fileName, dataClass);
}

void KelMemoryStore::save(KelDataClass dataClass, const std::string& fileName, const KelTreeFile& tree)
{
    publish(fileName, dataClass, tree);
}

KelTreeFile KelMemoryStore::find(const std::string& name, KelDataClass dataClass)
{
    const std::lock_guard lock(mutex);
    const auto found = files.find({name, dataClass});
    return found != files.end() ? found->second : nullptr;
}

void KelMemoryStore::publish(const std::string& name, KelDataClass dataClass, KelTreeFile file)
{
    const std::lock_guard lock(mutex);
    files[{name, dataClass}] = std::move(file);
}

bool KelMemoryStore::remove(const std::string& name)
{
    const std::lock_guard lock(mutex);
    return files.erase({name, KEL_CASE}) + files.erase({name, KEL_DATA}) > 0;
}

} // namespace meridyn
