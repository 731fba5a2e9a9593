#pragma once

#include "KelMemoryStore.h"
#include "KelTreeConsumer.h"

namespace meridyn {

/// Writer of files that live in this process, see KelMemoryStore: a name and a data class each. endWriting puts the
/// file in the place of an earlier one.
class KEL_API KelMemoryConsumer : public KelTreeConsumer {
public:
    /// No file is named and nothing is open.
    KelMemoryConsumer();
    ~KelMemoryConsumer() override;
};

} // namespace meridyn
