#pragma once

#include "KelExport.h"

#include <string>
#include <vector>

namespace meridyn {

/// One thing that the target of a transfer does not have as the source has it.
struct KelLoss {
    std::string family; ///< name of the family of data, see formatFamilyName: "shadow faces"
    std::string item;   ///< what is concerned: "zone 7 'wall'", "variable 'p' of phase 'water'"
    std::string reason; ///< why: "not carried by the format", "refused by the writer", "changed: 3 became 4"
};

/// What was lost or changed on the way. Empty means that nothing was.
class KEL_API KelLossReport {
public:
    /// Adds a loss behind the others.
    void add(const std::string& family, const std::string& item, const std::string& reason);

    /// Whether nothing was lost.
    bool empty() const;

    /// The losses in the order in which they were found.
    const std::vector<KelLoss>& losses() const;

    /// One line per loss: "shadow faces: zone 7 'wall': not carried by the format". Empty without losses.
    std::string text() const;

private:
    std::vector<KelLoss> _losses;
};

} // namespace meridyn
