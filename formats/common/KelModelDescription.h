#pragma once

#include "KelTypes.h"

#include <map>
#include <set>
#include <string>
#include <vector>

namespace meridyn {

// What KelBase knows about a mesh and a solution, as plain data: what a format stores beside the arrays. A
// KelFormatConsumer takes it, a KelFormatProvider gives it back.

/// Everything that is kept of a zone.
struct KelZoneDescription {
    int category = 0;     ///< a KelZoneCategory
    int id = 0;           ///< unique over all categories
    unsigned64 first = 0; ///< id of the first element, 0 for none
    unsigned64 last = 0;  ///< id of the last element
    unsigned64 extra = 0; ///< KEL_ZONE_EXTRA_SIZE
    int infos[6] = {};    ///< the numbered information of its category, 0 where it has none
    int flags = 0;        ///< bit n: KEL_FACE_ZONE_PROP_n
    std::string texts[2]; ///< name and name of the kind
    std::vector<int>
        neighbours[2]; ///< face zone: cell zones on side 0 and 1; cell zone: face zones around it, and none
};

/// A mesh without its arrays.
struct KelMeshDescription {
    unsigned64 sizes[5] = {};              ///< in the order of KelMeshSizeType
    std::string units;                     ///< of the coordinates
    std::vector<KelZoneDescription> zones; ///< of all categories
};

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

} // namespace meridyn
