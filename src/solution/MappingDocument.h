#pragma once

#include <map>
#include <string>

namespace meridyn {

using Texts = std::map<std::string, std::string>;

/// Puts an entry into another map, in place of one of its key, and gives its place. Entries are moved as they are on
/// their way from the file to the table: that is half the time of making them anew.
Texts::iterator moveEntry(Texts::node_type entry, Texts& map, Texts::iterator hint);

/// What a mapping file says, before it becomes a table. Texts are UTF-8.
struct MappingDocument {
    /// The attributes of the root.
    Texts header;

    /// Values by variable key, '#', attribute name, in one text. Two variables of one key thus share their attributes.
    Texts entries;
};

/// How much of a mapping file is kept. It is read to its end in any case.
enum class MappingParts {
    HEADER,
    ALL
};

/// Reads a mapping file. An empty document if there is no regular file of that name or it is not well-formed as a
/// whole. Never throws. Opens nothing but the file; memory is bounded by what the file defines.
MappingDocument readMappingFile(const std::string& path, MappingParts parts);

/// The same for a text in memory.
MappingDocument readMappingText(const std::string& text, MappingParts parts);

} // namespace meridyn
