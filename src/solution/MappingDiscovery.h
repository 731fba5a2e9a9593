#pragma once

#include <map>
#include <string>
#include <utility>

namespace meridyn {

/// Which mapping file leads from one vocabulary to another: paths by source and target.
using MappingRegistry = std::map<std::pair<std::string, std::string>, std::string>;

/// What looking for mapping files has found.
struct MappingDiscovery {
    MappingRegistry files; ///< of two files for the same vocabularies, the one that the system lists later
    std::string problem;   ///< why the search ended early; empty when it did not
};

/// The directory of mapping files that the environment names, whether it exists or not; empty for none.
///
/// @param isNamed  whether the environment names one, which may be empty
std::string mappingDirectory(bool& isNamed);

/// The mapping files of this process. The first call looks for them; the answer never changes afterwards, so it is
/// read without a lock. A thread that calls it meanwhile waits.
const MappingDiscovery& discoveredMappings();

} // namespace meridyn
