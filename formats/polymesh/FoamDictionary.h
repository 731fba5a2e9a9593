#pragma once

#include "FoamReader.h"

#include <string>
#include <vector>

namespace meridyn {

/// A small dictionary, kept whole: entries in the order of the file, each a text or again a dictionary.
struct FoamDictionary {
    struct Entry;
    std::vector<Entry> entries;

    /// The last entry of that name, or null.
    const Entry* find(const std::string& name) const;

    /// The text of an entry; `otherwise` when there is none.
    std::string text(const std::string& name, const std::string& otherwise = {}) const;

    /// Reads entries up to the end of the file.
    static FoamDictionary read(FoamReader& reader);

    /// Reads entries up to the "}" that closes the dictionary; takes it.
    static FoamDictionary readBlock(FoamReader& reader, int depth = 1);
};

struct FoamDictionary::Entry {
    std::string name;
    bool isDictionary = false;
    std::string text; ///< its tokens with one blank between them, none inside brackets
    FoamDictionary dictionary;
};

} // namespace meridyn
