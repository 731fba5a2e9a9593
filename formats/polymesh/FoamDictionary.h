#pragma once

#include "FoamReader.h"

#include <string>
#include <utility>
#include <vector>

namespace meridyn::polymesh {

/// A dictionary, kept whole: entries in the order of the file, each a text or again a dictionary.
struct FoamDictionary {
    struct Entry;
    std::vector<Entry> entries;

    /// The last entry of that name, or null.
    const Entry* find(const std::string& name) const;

    /// The text of an entry; `otherwise` when there is none.
    std::string text(const std::string& name, const std::string& otherwise = {}) const;

    /// Reads entries up to the end of the file.
    static FoamDictionary read(FoamReader& reader);

    /// Reads the rest of one entry whose name was just taken.
    static Entry readRest(FoamReader& reader, const FoamToken& name, int depth = 0);

    /// Reads entries up to the "}" that closes the dictionary; takes it.
    static FoamDictionary readBlock(FoamReader& reader, int depth = 1);
};

/// One entry of a dictionary.
struct FoamDictionary::Entry {
    enum Kind {
        Text,
        Dictionary,
        Directive, ///< "#include "file"" or "$name;": stands for entries that are elsewhere; `name` is all of it
        LongList   ///< a list of more entries than a dictionary keeps; there is no text
    };
    std::string name;      ///< with quotes when it is a pattern in quotes
    bool isQuoted = false; ///< whether the name is a pattern
    Kind kind = Text;
    std::string text; ///< its tokens with one blank between them, none inside brackets
    FoamDictionary dictionary;

    /// The name without quotes.
    std::string plainName() const { return isQuoted ? name.substr(1, name.size() - 2) : name; }
};

} // namespace meridyn::polymesh
