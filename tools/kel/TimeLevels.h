#pragma once

#include "Failure.h"

#include <optional>
#include <string>
#include <vector>

namespace meridyn {
class KelProvider;
}

namespace meridyn::tool {

/// A time level, and at what time it lies where the model says.
struct TimeLevel {
    int level;
    std::optional<double> seconds;
};

/// The time levels of an open reader, in its order.
std::vector<TimeLevel> timeLevelsOf(const KelProvider& reader);

/// "1 (0.1 s), 2 (0.2 s)"; of more than ten the first ten and the last; "none" for none.
std::string levelsText(const std::vector<TimeLevel>& levels);

/// A text that is no list of time levels, whatever the model has.
struct BadLevels : Failure {
    using Failure::Failure;
};

/// The time levels that a text names, ascending, each once: numbers, times ("0.5s"), ranges of either ("5-9",
/// "0.1s-0.5s"), of which those that exist are taken, and "last", with commas between them.
///
/// @throws BadLevels for any other text
/// @throws Failure   when an entry names no level that exists; it names those that do
std::vector<int> chosenLevels(const std::string& text, const std::vector<TimeLevel>& known);

} // namespace meridyn::tool
