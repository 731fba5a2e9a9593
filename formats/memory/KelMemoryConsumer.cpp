#include "KelMemoryConsumer.h"

namespace meridyn {

KelMemoryConsumer::KelMemoryConsumer() = default;
KelMemoryConsumer::~KelMemoryConsumer() = default;

KelTreeFile KelMemoryConsumer::load(KelDataClass dataClass, const std::string& fileName) const
{
    return KelMemoryStore::find(fileName, dataClass);
}

bool KelMemoryConsumer::save(KelDataClass dataClass, const std::string& fileName, KelTreeFile tree)
{
    KelMemoryStore::publish(fileName, dataClass, std::move(tree));
    return true;
}

} // namespace meridyn
