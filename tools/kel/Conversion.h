#pragma once

#include "KelLossReport.h"
#include "KelTypes.h"

#include <string>
#include <vector>

namespace meridyn::tool {

class Terminal;

/// What to convert, and how.
struct ConversionOptions {
    std::string source, target;
    std::string sourceFormat, targetFormat; ///< names; empty: found out
    std::string timeLevels;                 ///< see chosenLevels; empty: all
    int compression = 0;
    KelDataPrecisionType precision = KEL_PRECISION_AS_GIVEN;
    bool caseOnly = false;
    bool dataOnly = false;
    bool force = false;  ///< files that exist are replaced
    bool verify = false; ///< the target is read back and compared
};

/// What came of it.
struct ConversionResult {
    std::string format;             ///< of the target
    std::vector<std::string> files; ///< written
    std::vector<KelLoss> losses;
    unsigned64 bytes = 0;
    double seconds = 0.0;
};

/// Converts a model, showing progress.
///
/// @throws Failure      when it could not be done; Interrupted by the user. What is unfinished is removed
ConversionResult convert(const ConversionOptions& options, Terminal& terminal);

/// The time levels that a text names: numbers, ranges of which only known levels count ("5-9"), and "last", with
/// commas between them. Ascending, each once; a single level that is not known is kept, to be complained about.
///
/// @throws Failure for any other text
std::vector<int> chosenLevels(const std::string& text, const std::vector<int>& known);

} // namespace meridyn::tool
