#pragma once

#include "KelLossReport.h"
#include "KelTypes.h"
#include "Model.h"

#include <string>
#include <vector>

namespace meridyn::tool {

class Terminal;

/// What to convert, and how.
struct ConversionOptions {
    std::string source, target;
    std::string sourceFormat, targetFormat; ///< names; empty: found out
    std::string timeLevels;                 ///< see chosenLevels; empty: all
    std::string fromLevel; ///< the target keeps its levels before this one and gets the source's from it on
    MeshChoice mesh;       ///< of the source
    int compression = 0;
    KelDataPrecisionType precision = KEL_PRECISION_AS_GIVEN;
    bool caseOnly = false;
    bool dataOnly = false;
    bool force = false;  ///< a model of the target's name is replaced
    bool verify = false; ///< the target is read back and compared
};

/// What came of it.
struct ConversionResult {
    std::string format;               ///< of the target
    std::vector<std::string> files;   ///< written
    std::vector<std::string> removed; ///< of the model that had the name before
    std::vector<int> dropped;         ///< time levels that the target had
    std::vector<KelLoss> losses;
    unsigned64 bytes = 0;
    double seconds = 0.0;
};

/// Converts a model, showing progress. All options are looked at before anything is written, and the files of the
/// target take their names together when all of them are complete.
///
/// @throws Failure      when it could not be done; Interrupted by the user. Everything is then as it was
ConversionResult convert(const ConversionOptions& options, Terminal& terminal);

} // namespace meridyn::tool
