#include "KelMemoryStore.h"

#include <mutex>

namespace meridyn {

namespace {

struct Files {
    std::mutex mutex;
    std::map<std::pair<std::string, KelDataClass>, KelMemoryStore::File> files;
};

Files& files()
{
    static Files instance;
    return instance;
}

} // namespace

KelMemoryStore::File KelMemoryStore::find(const std::string& name, KelDataClass dataClass)
{
    const std::lock_guard lock(files().mutex);
    const auto found = files().files.find({name, dataClass});
    return found != files().files.end() ? found->second : nullptr;
}

void KelMemoryStore::publish(const std::string& name, KelDataClass dataClass, File file)
{
    const std::lock_guard lock(files().mutex);
    files().files[{name, dataClass}] = std::move(file);
}

bool KelMemoryStore::remove(const std::string& name)
{
    const std::lock_guard lock(files().mutex);
    return files().files.erase({name, KEL_CASE}) + files().files.erase({name, KEL_DATA}) > 0;
}

} // namespace meridyn
