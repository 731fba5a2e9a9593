#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace meridyn::hdf5 {

/// A link or attribute as it is met.
///
/// HDF5 is always asked for its own order (H5_ITER_NATIVE): for any other, 1.10 makes a table first, and frees what is
/// not yet in it when the file turns out to be damaged.
struct NumberedName {
    std::int64_t number; ///< in the order of creation; 0 where the file keeps none
    std::string name;
};

inline std::vector<std::string> inOrderOfCreation(std::vector<NumberedName> met)
{
    std::sort(met.begin(), met.end(), [](const NumberedName& a, const NumberedName& b) {
        return std::tie(a.number, a.name) < std::tie(b.number, b.name);
    });
    std::vector<std::string> names;
    names.reserve(met.size());
    for (NumberedName& entry : met)
        names.push_back(std::move(entry.name));
    return names;
}

} // namespace meridyn::hdf5
