#pragma once

#include "KelTypes.h"

#include <string>
#include <string_view>

namespace meridyn {
class KelBase;
}

namespace meridyn::mesh {

// Words of the findings. They are the same in every locale.

/// An id or a count with commas: "1,234,567".
std::string grouped(unsigned64 number);

/// A value in at most `digits` digits, fewer where they give the value back exactly: "0.125", "1e-05".
std::string shortNumber(double value, int digits = 6);

/// A number with its noun: "1 face", "2,000 faces".
std::string counted(unsigned64 count, std::string_view one, std::string_view many);

/// The plural of a category of elements: "nodes", "edges", "faces", "cells".
const char* categoryName(KelZoneCategory category);

/// The singular of a category of elements: "node", "edge", "face", "cell".
const char* elementName(KelZoneCategory category);

/// The id of a zone and, where it has one, its name: "7 'wall'".
std::string zoneLabel(const KelBase& base, int zoneId);

} // namespace meridyn::mesh
