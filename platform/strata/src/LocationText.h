#pragma once

#include "NamePattern.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace strata {

/// One entry of a location text.
struct LocationEntry {
    std::string text;                ///< as written, without the blanks around it
    bool valid = false;              ///< whether it keeps to the grammar
    std::optional<NamePattern> part; ///< what stands before the `/`, if there is one
    NamePattern name;
};

/// Takes a location text apart. Entries that are blank are left out; faulty ones are kept and marked.
std::vector<LocationEntry> parseLocation(std::string_view text);

} // namespace strata
