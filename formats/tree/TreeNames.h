#pragma once

#include "KelArrays.h"

#include <optional>
#include <string>

/// What the nodes of a tree are called: one place for the writer, which makes them, and the reader, which looks for
/// them.
///
///     case   <name of an array>                    values by element; "<name> counts" in it
///            partition count, local ids/<zone>, interface zones <side>, interfaces/<zone>/<0 to 3>
///            sections/<category>/<name>, sets/<name>
///     data   level <number> or "level none"
///                sets/<name>
///                phases/<name>
///                    fields/<category>/<name>, set data/<name>, tracks/<mesh>/<group>/<chunk>
///     set    ids, sizes, min ids, max ids, variables/<name>, lists/<name>, others/<name>, texts/<name>
namespace meridyn::tree {

constexpr const char* caseSections = "sections";
constexpr const char* fields = "fields";
constexpr const char* ids = "ids";
constexpr const char* interfaces = "interfaces";
constexpr const char* interfaceZones[2] = {"interface zones 0", "interface zones 1"};
constexpr const char* localIds = "local ids";
constexpr const char* maxIds = "max ids";
constexpr const char* minIds = "min ids";
constexpr const char* partitionCount = "partition count";
constexpr const char* phases = "phases";
constexpr const char* setData = "set data";
constexpr const char* sets = "sets";
constexpr const char* sizes = "sizes";
constexpr const char* timesGroup = "timeLevels"; ///< of the settings: the physical time of each level
constexpr const char* tracks = "tracks";

/// The part of a collection that holds named data of a kind.
constexpr const char* nameOf(KelPart part)
{
    constexpr const char* names[] = {ids, "variables", "lists", "lists", "others", "texts"}; // as in KelPart
    return names[static_cast<int>(part)];
}

/// What belongs to a time level, or to none.
std::string levelName(std::optional<int> level);

/// The number that a name of digits stands for, none for any other text.
std::optional<int> parseNumber(const std::string& text);

/// The level that levelName has made a name of; none for that of no level, and for other texts.
std::optional<int> parseLevelName(const std::string& name);

} // namespace meridyn::tree
