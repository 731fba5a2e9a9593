#include "KelMemoryConsumer.h"

namespace meridyn {

KelMemoryConsumer::KelMemoryConsumer() : KelTreeConsumer(std::make_shared<KelMemoryStore>())
{}

KelMemoryConsumer::~KelMemoryConsumer() = default;

} // namespace meridyn
