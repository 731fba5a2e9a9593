#pragma once

#include <map>
#include <string>
#include <utility>

namespace meridyn {

/// Which mapping file leads from one vocabulary to another: paths by source and target.
using MappingRegistry = std::map<std::pair<std::string, std::string>, std::string>;

/// The registry of this process. Filled once and never emptied; not locked.
MappingRegistry& mappingRegistry();

} // namespace meridyn
