#pragma once

#include "KelMemoryStore.h"
#include "KelTreeProvider.h"

namespace meridyn {

/// Reader of files that live in this process, see KelMemoryStore. A file that is not there posts a KelError.
class KEL_API KelMemoryProvider : public KelTreeProvider {
public:
    /// No file is named and nothing is open.
    KelMemoryProvider();
    ~KelMemoryProvider() override;
};

} // namespace meridyn
