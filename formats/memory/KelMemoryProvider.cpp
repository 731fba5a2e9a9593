#include "KelMemoryProvider.h"

namespace meridyn {

KelMemoryProvider::KelMemoryProvider() : KelTreeProvider(std::make_shared<KelMemoryStore>())
{}

KelMemoryProvider::~KelMemoryProvider() = default;

} // namespace meridyn
