#pragma once

#include "KelExport.h"
#include "KelFormatFamily.h"
#include "KelMeshKey.h"
#include "KelTypes.h"

#include <optional>
#include <string>
#include <vector>

namespace meridyn {

class CompareRun;
class KelProvider;

/// What to compare, and how closely.
struct KelCompareOptions {
    double relativeTolerance = 0.0;    ///< of the larger magnitude of the two values
    double absoluteTolerance = 0.0;    ///< values that are this close are equal
    unsigned64 differencesPerItem = 5; ///< first differences that are reported per array
    bool compareCase = true;           ///< whether the cases are opened and compared
    bool compareData = true;           ///< whether the data are
    std::vector<KelMeshKey> meshes;    ///< only these meshes; all when it is empty
};

/// One difference between two models.
struct KelDifference {
    KelFormatFamily family = KEL_FAMILY_COUNT; ///< of data; KEL_FAMILY_COUNT where it is about none
    std::string item;         ///< what: "cell 0 of faces of zone 7 'wall'", "variable 'p' of phase 'water'"
    unsigned64 id = 0;        ///< id of the element that differs, 0 when it is not one element
    std::string first;        ///< what the first model has; empty for nothing
    std::string second;       ///< what the second model has; empty for nothing
    std::optional<int> zone;  ///< the zone that it is about, where it is about one
    std::optional<int> level; ///< the time level at which it was found, or that only one has

    /// One line without its end: "face cells: cell 0 of faces of zone 7 'wall', id 9: 3 against 4".
    KEL_API std::string line() const;
};

/// Holds two readers against each other: meshes, zones, arrays, fields, sets, settings, locations.
///
/// The caller names the files on both (KelFileIO::setFile); the comparison starts and ends reading. All meshes, time
/// levels and what lies at none are compared; zones and elements by id, phases and variables by name, values within the
/// tolerances; two nans are equal. Order counts where it means something: of zones, meshes, time levels, log entries.
/// Attributes are those of the files, whatever mapping files make of them.
///
/// Equal     where 0 stands for none (cell 1, shadow faces, numbers of children), an array of zeros is as good as no
///           array; what a reader worked out itself (KelSourceLedger::derived) is as good as not given. The settings
///           "Solver", "Version" and "Origin" of the group "settings", which every writer writes itself, are left out.
/// Complete  two models without a difference are equal only if isComplete(): both readers keep a ledger, and nothing in
///           it was left unread.
/// Memory    arrays of the mesh and values of variables need a bounded memory; sets, particle tracks and local ids are
///           compared as wholes.
class KEL_API KelCompare {
public:
    /// Compares two models; the readers stay the caller's and must live as long as the comparison.
    KelCompare(KelProvider& first, KelProvider& second, const KelCompareOptions& options = {});

    /// Compares. False when one of the two could not be read, or stored an error on the way: see problem(). Errors from
    /// before are dropped.
    bool run();

    /// The differences found, in the order of the frames' groups.
    const std::vector<KelDifference>& differences() const;

    /// What could not be compared, a line each: what a reader did not hand over, or that it does not tell.
    const std::vector<std::string>& notCompared() const;

    /// Whether everything in both models was compared.
    bool isComplete() const { return _notCompared.empty(); }

    /// One line per difference.
    std::string text() const;

    /// Why run gave false; empty otherwise.
    const std::string& problem() const;

private:
    bool compareClass(KelDataClass dataClass);
    void compareMeshes(CompareRun& run, KelDataClass dataClass);
    void noteNotCompared(const KelProvider& model, const char* which, KelDataClass dataClass);

    KelProvider& _first;
    KelProvider& _second;
    KelCompareOptions _options;
    std::vector<KelDifference> _differences;
    std::vector<std::string> _notCompared;
    std::string _problem;
};

} // namespace meridyn
