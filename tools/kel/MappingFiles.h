#pragma once

#include <string>
#include <vector>

namespace meridyn::tool {

/// A variable mapping file, as far as the tool looks into it.
struct MappingFile {
    std::string path, source, target;
    std::string mappedKeyAttribute; ///< the attribute that holds mapped keys; empty for none
    std::vector<std::string> keys;  ///< in the order of the file, repeats included
    bool isUsed = true;             ///< of several for the same vocabularies one is used
};

/// The folder in which readers and writers look for mapping files; empty when the environment names none.
std::string mappingFolder();

/// The mapping files of a folder, by source and target. @throws Failure when the folder cannot be read
std::vector<MappingFile> mappingFilesIn(const std::string& folder);

/// One thing wrong with a set of mapping files.
struct MappingProblem {
    std::string path, text;
};

/// Why files of a folder whose names end in ".xml" are no mapping files: not readable, not well-formed, another root
/// element, a header without a source or a target.
std::vector<MappingProblem> filesThatAreNone(const std::string& folder);

/// Looks for several files with the same vocabularies, keys that appear twice, variables without a mapped key, and keys
/// that another file does not lead back to.
std::vector<MappingProblem> checkMappingFiles(const std::vector<MappingFile>& files);

} // namespace meridyn::tool
