#pragma once

#include "KelTypes.h"

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::tool {

class Model;
class Progress;

/// What `kel info` tells of a model: read from it once, then shown as text or JSON.
struct ModelSummary {
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
    struct Variable {
        int id;
        std::string phase, name, longName;
        KelZoneCategory category;
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

    std::string path, format, formatDescription;
    std::vector<File> files;
    int meshId = -1;
    std::vector<int> meshIds;
    std::string unit, solver;
    unsigned64 dimension = 0;
    std::array<unsigned64, 4> sizes{};
    std::vector<Zone> zones;
    std::vector<std::pair<short, std::string>> phases;
    std::vector<int> timeLevels;
    std::vector<Variable> variables;
    std::vector<Settings> settings;
    std::vector<Part> parts;
};

/// Reads the summary of an open model.
///
/// @param withRanges  reads all values of the variables, at the largest time level
/// @throws Interrupted when the user interrupts the reading of values
ModelSummary summarise(Model& model, bool withRanges, Progress& progress);

} // namespace meridyn::tool
