#pragma once

#include "solution/MappingDocument.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// A mapping file as it is asked: what its header says, and the attributes of each variable.
struct MappingTable {
    std::string source;
    std::string target;
    bool caseInsensitiveMatch = false;
    bool defaultVariableVisibility = true;
    std::string attributeNameOfMappedKey;   ///< empty when no attribute holds mapped keys
    std::map<std::string, Texts> variables; ///< attributes by the key of the variable, see tableKey
    std::vector<std::string> keys;          ///< of the variables in the order of the file, repeats included
    std::string root;                       ///< name of the root element
    std::string problem;                    ///< why the rest is empty; empty when the file was read as a whole

    /// The key under which a variable is found: in small letters where the file does not distinguish them.
    std::string tableKey(const std::string& key) const;

    /// Whether the header names both vocabularies.
    bool isMapping() const { return !source.empty() && !target.empty(); }
};

/// The table of a mapping file; one with the defaults, and a problem, for a file that cannot be read as a whole.
///
/// A table that was read before is given again as long as the file is known not to have changed since. Any thread may
/// call this at any time.
std::shared_ptr<const MappingTable> mappingTable(const std::string& path);

/// Reads a mapping file and keeps its table for mappingTable, for as long as the process lives.
std::shared_ptr<const MappingTable> keepMappingTable(const std::string& path);

} // namespace meridyn
