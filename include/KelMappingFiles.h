#pragma once

#include "KelExport.h"

#include <string>
#include <vector>

namespace meridyn {

/// A file in a folder of variable mapping files, and what it holds. See KelVariableAttributeFile for the form.
struct KelMappingFile {
    std::string path;               ///< where it lies, below the folder that was looked through
    std::string source;             ///< the vocabulary that it describes; empty when the header names none
    std::string target;             ///< the vocabulary that it leads to; empty when the header names none
    std::string mappedKeyAttribute; ///< the attribute that holds mapped keys; empty for none
    std::vector<std::string> keys;  ///< of its variables in the order of the file, repeats included
    bool isUsed = false;            ///< whether readers and writers use it: of two for one source and target, one is
    std::string problem;            ///< why it is no mapping file, as part of a sentence; empty for a mapping file
};

/// The variable mapping files that readers and writers use, and what is wrong with others. May be called from several
/// threads.
namespace KelMappingFiles {

/// The folder in which the first reader or writer of a process looks for mapping files: KEL_VARIABLE_CONFIG_DIR, else
/// the folder of the installation below TVR_ROOT251. Empty when the environment names neither.
KEL_API std::string folder();

/// The mapping files of this process, by source, then target. The first call, or the first reader or writer, looks for
/// them; afterwards the answer no longer follows the environment or the folder. A file that has gone since then has a
/// problem.
KEL_API std::vector<KelMappingFile> discovered();

/// Looks into one file.
///
/// @return its problem is empty, "is no mapping file: " and a reason (it is no regular file, does not parse and where,
///         has another root element), or "is not used: its header has no 'Source'" (or 'Target'). isUsed is false
KEL_API KelMappingFile read(const std::string& path);

/// Looks into every file of a folder, not into folders below it, by source, target, then path.
///
/// @param problem  why the folder could not be read, which may leave the list short; untouched on success
/// @return of several with one source and target, the one that the system lists last is used, as in a discovery
KEL_API std::vector<KelMappingFile> inFolder(const std::string& folder, std::string& problem);

} // namespace KelMappingFiles

} // namespace meridyn
