#pragma once

#include "KelTree.h"

#include <string>

namespace meridyn {

/// Where trees are kept: all that a format of its own has to say about files, see KelTreeConsumer and KelTreeProvider.
///
/// What goes wrong is thrown as a std::exception, whose text says what was expected and what was found; the writer or
/// reader puts the name of the file before it and posts both as a KelError.
class KEL_API KelTreeStore {
public:
    virtual ~KelTreeStore();

    /// The file that bears a name.
    /// @return null when there is none
    virtual KelTreeFile load(KelDataClass dataClass, const std::string& fileName) = 0;

    /// Puts a complete tree in the place of what bears the name.
    virtual void save(KelDataClass dataClass, const std::string& fileName, const KelTreeFile& tree) = 0;
};

} // namespace meridyn
