#pragma once

#include <map>
#include <string>
#include <vector>

namespace meridyn {

using Texts = std::map<std::string, std::string>;

/// Puts an entry into another map, in place of one of its key, and gives its place. Entries are moved as they are on
/// their way from the file to the table: that is half the time of making them anew.
Texts::iterator moveEntry(Texts::node_type entry, Texts& map, Texts::iterator hint);

/// What a mapping file says, before it becomes a table. Texts are UTF-8.
struct MappingDocument {
    /// Why the document is empty, with the place in the file where it is known; empty when it was read as a whole.
    std::string problem;

    /// The name of the root element.
    std::string root;

    /// The attributes of the root.
    Texts header;

    /// Values by variable key, '#', attribute name, in one text. Two variables of one key thus share their attributes.
    Texts entries;

    /// The keys of the variables in the order of the file, repeats included, each up to its first '#'.
    std::vector<std::string> keys;
};

/// Reads a mapping file. A document that is empty but for its problem, if there is no regular file of that name or it
/// is not well-formed as a whole. Never throws. Opens nothing but the file; memory is bounded by what the file defines.
/// Any thread may call this at any time.
MappingDocument readMappingFile(const std::string& path);

/// Reads a mapping file's text in memory, as readMappingFile reads the file.
MappingDocument readMappingText(const std::string& text);

} // namespace meridyn
