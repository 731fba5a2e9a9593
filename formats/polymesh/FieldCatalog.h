#pragma once

#include "FieldFile.h"

#include <string>
#include <vector>

namespace meridyn {

class CaseFolder;

/// The fields of a case, whatever times they are in, and the phases that their names tell.
struct FieldCatalog {
    struct Field {
        std::string file;  ///< name of its files: "U.airMean"
        std::string stem;  ///< name within its phase: "UMean"
        std::string phase; ///< empty for the mixture, or in a case of one phase
        FieldHead head;
    };
    std::vector<Field> fields;       ///< by the names of their files
    std::vector<std::string> phases; ///< ascending; empty in a case of one phase

    /// Looks through the folders of all times; reads the head of one file of each name, of the last time that has it.
    ///
    /// @param problems  files that seem to be fields but cannot be read
    static FieldCatalog read(const CaseFolder& folder, std::vector<std::string>& problems);

private:
    void findPhases();
    void assignPhases();
};

} // namespace meridyn
