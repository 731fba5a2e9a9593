#pragma once

#include "KelMappingFiles.h"

#include <string>
#include <vector>

namespace meridyn::tool {

/// One thing wrong with a set of mapping files.
struct MappingProblem {
    std::string path, text;
};

/// Looks for files whose names end in ".xml" and that are no mapping files, several with the same vocabularies, keys
/// that appear twice, variables without a mapped key, and keys that another file does not lead back to.
std::vector<MappingProblem> checkMappingFiles(const std::vector<KelMappingFile>& files);

} // namespace meridyn::tool
