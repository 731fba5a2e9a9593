#pragma once

#include "BlockTemplate.h"
#include "KelTypes.h"

#include <array>
#include <string>

namespace meridyn {

/// What the line of text of a generated mesh says.
struct BoxDescription {
    std::array<unsigned64, 3> blocks{1, 1, 1};
    std::array<double, 3> size{1.0, 1.0, 1.0}; ///< m
    BlockTemplate::Shape shape = BlockTemplate::Shape::Hexahedra;
    unsigned64 cellZones = 1;
    int fields = 0;
    int phases = 1;
    int levels = 1;
    int partitions = 0;
    bool periodic = false;
    bool hanging = false;

    /// Reads a line.
    ///
    /// @param problem  on failure the word at fault and what was expected
    static bool parse(const std::string& text, BoxDescription& description, std::string& problem);
};

} // namespace meridyn
