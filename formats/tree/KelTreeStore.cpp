#include "KelTreeStore.h"

namespace meridyn {

KelTreeStore::~KelTreeStore() = default;

} // namespace meridyn
