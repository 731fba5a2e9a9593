#pragma once

#include "KelTreeStore.h"

#include <string>

namespace meridyn {

/// The files of this process, by name ("memory:" and anything) and data class. A file never changes once it is there:
/// a reader keeps what it opened although a writer puts another in its place. May be used from several threads.
class KEL_API KelMemoryStore : public KelTreeStore {
public:
    ~KelMemoryStore() override;

    /// @name For writers and readers
    /// @{
    KelTreeFile load(KelDataClass dataClass, const std::string& fileName) override;
    void save(KelDataClass dataClass, const std::string& fileName, const KelTreeFile& tree) override;
    /// @}

    static KelTreeFile find(const std::string& name, KelDataClass dataClass); ///< null for none
    static void publish(const std::string& name, KelDataClass dataClass,
                        KelTreeFile file);       ///< in the place of an earlier one
    static bool remove(const std::string& name); ///< of both data classes; false when there are none
};

} // namespace meridyn
