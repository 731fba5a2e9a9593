#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace meridyn {

class KelBase;

// What KelBase knows about a mesh and a solution, as plain data: what a format stores beside the arrays, what a
// transfer hands on and a comparison looks at.

/// How many numbers zones of a category have: KEL_NODE_ZONE_INFO_0 and so on. 0 outside the four categories.
constexpr int zoneInfoCount(int category)
{
    constexpr int counts[] = {1, 2, 6, 2};
    return category >= KEL_NODE_ZONE && category <= KEL_CELL_ZONE ? counts[category] : 0;
}

/// Everything that is kept of a zone.
struct KelZoneDescription {
    int category = 0;     ///< a KelZoneCategory
    int id = 0;           ///< unique over all categories
    unsigned64 first = 0; ///< id of the first element, 0 for none
    unsigned64 last = 0;  ///< id of the last element
    unsigned64 extra = 0; ///< KEL_ZONE_EXTRA_SIZE
    int infos[6] = {};    ///< the numbers of its category, see zoneInfoCount; 0 where it has none
    int flags = 0;        ///< bit n: KEL_FACE_ZONE_PROP_n
    std::string texts[2]; ///< name and name of the kind
    std::vector<int>
        neighbours[2]; ///< face zone: cell zones on side 0 and 1; cell zone: face zones around it, and none
};

/// A mesh without its arrays.
struct KelMeshDescription {
    unsigned64 sizes[5] = {};              ///< in the order of KelMeshSizeType
    std::string units;                     ///< of the coordinates
    std::vector<KelZoneDescription> zones; ///< node, edge, face and cell zones, each in the order of their declaration
};

/// A zone with the numbers that KelBase gives to one that was only declared: -1 or 0, each as KelTypes.h says.
KEL_API KelZoneDescription freshZone(KelZoneCategory category, int id);

/// Everything that a reader or writer knows of its mesh without the arrays: sizes, units and zones with their numbers,
/// texts, flags and neighbours. Asks for the adjacency of the zones, and so may run setZoneAdjacency.
KEL_API KelMeshDescription describeMesh(const KelBase& base);

/// Declares a mesh in the place of what `base` knew of one: describeMesh then gives it back, but for neighbours below
/// 1, which stand for "no zone on this side". The mesh id, the target and the partition stay.
KEL_API void declareMesh(KelBase& base, const KelMeshDescription& mesh);

/// Declares zones in the place of those that were there; sizes and units stay.
KEL_API void declareZones(KelBase& base, const std::vector<KelZoneDescription>& zones);

/// A phase.
struct KelPhaseDescription {
    short id = 0;                                  ///< -1 is the mixture
    std::string uniqueName;                        ///< among the phases
    std::map<std::string, std::string> attributes; ///< "Dataset Name" among them
};

/// A variable without its values.
struct KelVariableDescription {
    int id = 0;                                    ///< unique over all phases
    short phaseId = 0;                             ///< the phase that it belongs to
    std::string uniqueName;                        ///< within its phase
    std::map<std::string, std::string> attributes; ///< "Dataset Name" among them
    std::set<int> categories;                      ///< of the zones on which it lives
};

/// A solution without its values.
struct KelSolutionDescription {
    std::vector<int> timeLevels;                   ///< in the order of the model
    std::vector<KelPhaseDescription> phases;       ///< in their order
    std::vector<KelVariableDescription> variables; ///< of all phases, in their order
};

/// Everything that a reader or writer knows of its solution without the values: time levels, phases and variables with
/// their attributes as they are stored, whatever mapping files would make of them.
KEL_API KelSolutionDescription describeSolution(const KelBase& base);

} // namespace meridyn
