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
    int category = 0;
    int id = 0;
    unsigned64 first = 0;
    unsigned64 last = 0;
    unsigned64 extra = 0;
    int infos[6] = {}; ///< the numbered information of its category, 0 where it has none
    int flags = 0;
    std::string texts[2];
    std::vector<int>
        neighbours[2]; ///< face zone: cell zones on side 0 and 1; cell zone: face zones around it, and none
};

struct KelMeshDescription {
    unsigned64 sizes[5] = {}; ///< in the order of KelMeshSizeType
    std::string units;
    std::vector<KelZoneDescription> zones;
};

struct KelPhaseDescription {
    short id = 0;
    std::string uniqueName;
    std::map<std::string, std::string> attributes; ///< "Dataset Name" among them
};

struct KelVariableDescription {
    int id = 0;
    short phaseId = 0;
    std::string uniqueName;
    std::map<std::string, std::string> attributes; ///< "Dataset Name" among them
    std::set<int> categories;                      ///< of the zones on which it lives
};

struct KelSolutionDescription {
    std::vector<int> timeLevels;
    std::vector<KelPhaseDescription> phases;
    std::vector<KelVariableDescription> variables;
};

} // namespace meridyn
