#pragma once

#include "KelTypes.h"
#include "Model.h"
#include "TimeLevels.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::tool {

class Progress;

/// What `kel info` tells of a model: read from it once, then shown as text or JSON.
struct ModelSummary {
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    struct File {
        KelDataClass dataClass;
        std::string path;
        std::string version; ///< "Unknown" when the file does not say
    };
    struct Zone {
        int id;
        KelZoneCategory category;
        std::string name, kind;
        unsigned64 first, last, count;
    };
    struct Phase {
        short id;
        std::string name;
        Attributes attributes;
    };
    struct Variable {
        int id;
        std::string phase, name, longName, units;
        KelZoneCategory category;
        Attributes attributes;
        std::optional<int> level;  ///< that its numbers are of; none without levels, and without values at any
        unsigned64 components = 0; ///< 0 where there are no values
        std::vector<int> zones;
        bool hasRange = false;
        double smallest = 0.0, largest = 0.0;
        unsigned64 notFinite = 0;
    };
    struct Settings {
        KelDataClass dataClass;
        std::string group;
        unsigned64 keys;
    };
    struct Part {
        std::string name;
        unsigned64 bodies, faces, composites;
    };

    struct NotRead {
        KelDataClass dataClass;
        std::string family; ///< empty when nobody knows what it would have been
        std::string place, reason, text;
    };

    std::string path, format, formatDescription;
    std::vector<File> files;
    MeshName mesh{-1, 0, -1};     ///< that the numbers are of
    std::vector<MeshName> meshes; ///< all that there are, those of the data alone as well
    std::string unit, solver;
    unsigned64 dimension = 0;
    std::array<unsigned64, 4> sizes{};
    std::vector<Zone> zones;
    std::vector<Phase> phases;
    std::vector<TimeLevel> timeLevels;
    std::optional<int> level; ///< that the numbers of the variables are of
    std::vector<Variable> variables;
    std::vector<Settings> settings;
    std::vector<Part> parts;
    bool saysWhatIsNotRead = false; ///< whether the reader keeps a ledger of its source
    std::vector<NotRead> notRead;   ///< what lies in the source and is not in all of this
};

/// Reads the summary of an open model.
///
/// @param withRanges  reads all values of the variables
/// @param level       the time level that the numbers are of; the largest unless given. A variable without values there
///                    is looked up at its last level that has some
/// @throws Interrupted when the user interrupts the reading of values
ModelSummary summarise(Model& model, bool withRanges, std::optional<int> level, Progress& progress);

} // namespace meridyn::tool
