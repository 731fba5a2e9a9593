#pragma once

#include "ConformanceCase.h"
#include "MeshArrays.h"

#include <functional>
#include <string>
#include <vector>

namespace meridyn::conformance {

/// One check: what it is called, the families that reader and writer must both carry, what it does.
struct Check {
    enum class Kind {
        RoundTrip,  ///< writes and reads: for formats with both
        Reading,    ///< reads what exists: for formats with a reader and something to read
        Recognition ///< for every format with a reader
    };
    std::string name;
    KelFormatFamilies needs;
    std::function<void(Case&)> run;
    Kind kind = Kind::RoundTrip;
};

using Checks = std::vector<Check>;

void addMeshChecks(Checks& checks);     ///< arrays of the mesh
void addZoneChecks(Checks& checks);     ///< zones, interfaces, case sections, local ids, several meshes
void addSolutionChecks(Checks& checks); ///< phases, variables, time levels
void addSetChecks(Checks& checks);      ///< sets
void addSetDataChecks(Checks& checks);  ///< set data
void addTrackChecks(Checks& checks);    ///< particle tracks
void addTextChecks(Checks& checks);     ///< settings, log, locations
void addOrderChecks(Checks& checks);    ///< calls too early, too late or twice
void addReadingChecks(Checks& checks);  ///< what holds for every model that is read

/// The set of some families.
inline KelFormatFamilies families(std::initializer_list<KelFormatFamily> list)
{
    KelFormatFamilies set = 0;
    for (const KelFormatFamily family : list)
        set |= formatFamily(family);
    return set;
}

using Writing = std::function<void(KelFileConsumer&)>;
using Reading = std::function<void(KelFileProvider&)>;

/// Writes a case with the mesh and what `inCase` adds, then, unless `inData` is null, data; opens both with a new
/// reader and reads. Stops at the first class that cannot be written or read.
void roundTrip(Case& test, const Mesh& mesh, const Writing& inCase, const Writing& inData, const Reading& read);

/// Names that a format may not stumble over.
const std::vector<std::string>& hostileNames();

/// A few values of a type, the extremes among them, repeated with small changes up to a number.
template <class T>
std::vector<T> someValues(std::size_t count, int seed = 0)
{
    std::vector<T> values(count);
    for (std::size_t n = 0; n < count; ++n) {
        const int step = static_cast<int>(n) + seed;
        values[n] = step % 5 == 0   ? std::numeric_limits<T>::lowest()
                    : step % 5 == 1 ? std::numeric_limits<T>::max()
                                    : static_cast<T>((step * 7) % 120);
    }
    return values;
}

} // namespace meridyn::conformance
