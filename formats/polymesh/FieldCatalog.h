#pragma once

#include "FieldFile.h"

#include <string>
#include <vector>

namespace meridyn::polymesh {

class CaseFolder;

/// The fields of a case, whatever times they are in, and the phases that their names tell.
struct FieldCatalog {
    struct Field {
        std::string file;  ///< name of its files: "U.airMean"
        std::string stem;  ///< name within its phase: "UMean"
        std::string phase; ///< empty for the mixture, or in a case of one phase
        FieldHead head;
    };
    /// A file that seems to be a field but cannot be read.
    struct Problem {
        std::string place; ///< in the case
        std::string text;
    };
    std::vector<Field> fields;       ///< by the names of their files
    std::vector<std::string> phases; ///< ascending; empty in a case of one phase

    /// Looks through the folders of all times; reads the head of one file of each name, of the last time at which
    /// it is sound.
    ///
    /// @param problems  receives the files that cannot be read
    static FieldCatalog read(const CaseFolder& folder, std::vector<Problem>& problems);

private:
    void addField(const CaseFolder& folder, const std::string& name, const std::vector<std::string>& times,
                  std::vector<Problem>& problems);
    void findPhases();
    void assignPhases();
};

} // namespace meridyn::polymesh
