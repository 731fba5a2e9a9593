#pragma once

#include "KelExport.h"
#include "KelFormatFamily.h"

#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace meridyn {

/// Why the target of a transfer does not have something as the source has it.
enum class KelLossReason : int {
    NotCarried, ///< the target's format has no place for it
    Refused,    ///< the writer did not take it, or posted an error when it was handed over
    Changed,    ///< the target holds it otherwise: found by reading it back, or known when it was written
    NotRead,    ///< the reader says that it did not hand it over, see KelSourceLedger
    NotGiven,   ///< the reader lists it, but gives no type or no values
    NotTold,    ///< the reader keeps no ledger, so that nobody can tell what it left in its source
    NotCompared ///< read back, but something kept it from being compared
};

/// One thing that the target of a transfer does not have as the source has it.
struct KelLoss {
    KelFormatFamily family = KEL_FAMILY_COUNT;        ///< of data; KEL_FAMILY_COUNT when that is not known
    KelLossReason reason = KelLossReason::NotCarried; ///< why
    std::string item;                                 ///< what: "zone 7 'wall'", "variable 'p' of phase 'water'"
    std::string text;                                 ///< the reason in words: "changed: 3 became 4"
    std::optional<int> zone;                          ///< the zone that it is about, where it is about one
    std::vector<int> levels;                          ///< the time levels at which it was found; empty: it has none

    /// "time level 3", "time levels 1, 2 and 5", "12 time levels from 1 to 40"; empty without levels.
    KEL_API std::string when() const;
    /// One line without its end: "shadow faces: zone 7 'wall': not carried by the format".
    KEL_API std::string line() const;
};

/// What was lost or changed on the way. Empty means that nothing was.
class KEL_API KelLossReport {
public:
    /// Adds a loss behind the others. One that differs from an earlier one in nothing but the time levels only adds
    /// these to it.
    void add(const KelLoss& loss);

    /// Whether nothing was lost.
    bool empty() const;

    /// The losses in the order in which they were found.
    const std::vector<KelLoss>& losses() const;

    /// One line per loss. Empty without losses.
    std::string text() const;

private:
    using Key = std::tuple<int, int, std::string, std::string>;
    std::vector<KelLoss> _losses;
    std::map<Key, std::size_t> _known; ///< position by what makes it one
};

} // namespace meridyn
