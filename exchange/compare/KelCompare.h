#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <string>
#include <vector>

namespace meridyn {

class KelProvider;

/// What to compare, and how closely.
struct KelCompareOptions {
    double relativeTolerance = 0.0;    ///< of the larger magnitude of the two values
    double absoluteTolerance = 0.0;    ///< values that are this close are equal
    unsigned64 differencesPerItem = 5; ///< first differences that are reported per array
    bool compareCase = true;           ///< whether the cases are opened and compared
    bool compareData = true;           ///< whether the data are
};

/// One difference between two models.
struct KelDifference {
    std::string family; ///< name of the family of data, see formatFamilyName
    std::string item;   ///< what differs: "cell 0 of zone 7", "variable 'p' of phase 'water', zone 3, time level 2"
    unsigned64 id = 0;  ///< id of the element that differs, 0 when it is not one element
    std::string first;  ///< what the first model has; empty for nothing
    std::string second; ///< what the second model has; empty for nothing
};

/// Holds two readers against each other: zones, arrays, fields, settings, locations.
///
/// The caller names the files on both (KelFileIO::setFile); the comparison starts and ends reading. Zones and arrays
/// are compared by id, phases and variables by name, values within the tolerances; two nans are equal. Where 0 stands
/// for none (cell 1, shadow faces, numbers of children), an array of zeros is as good as no array; a phase without a
/// long name as one whose long name is its name. The settings "Solver", "Version" and "Origin" of the group "settings",
/// which every writer writes itself, are left out. Arrays of the mesh and values of variables need a bounded memory;
/// sets, particle tracks and local ids are compared as wholes.
class KEL_API KelCompare {
public:
    /// Compares two models; the readers stay the caller's and must live as long as the comparison.
    KelCompare(KelProvider& first, KelProvider& second, const KelCompareOptions& options = {});

    /// Compares. False when one of the two could not be read, or stored an error on the way: see problem(). Errors from
    /// before are dropped.
    bool run();

    /// The differences found, in the order of the frames' groups.
    const std::vector<KelDifference>& differences() const;

    /// One line per difference.
    std::string text() const;

    /// Why run gave false; empty otherwise.
    const std::string& problem() const;

private:
    bool compareClass(KelDataClass dataClass);

    KelProvider& _first;
    KelProvider& _second;
    KelCompareOptions _options;
    std::vector<KelDifference> _differences;
    std::string _problem;
};

} // namespace meridyn
