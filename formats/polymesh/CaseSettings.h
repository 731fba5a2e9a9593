#pragma once

#include "FoamDictionary.h"
#include "KelSourceLedger.h"
#include "KelTypes.h"
#include "PolyMesh.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::polymesh {

class CaseFolder;

/// What the files of a case say beside arrays of numbers, as settings: a file is a group, named by its path in the
/// case, and an entry of it a key, its path in the file.
///
/// Dictionaries in system and constant, and the entries of patches, belong to the case; dictionaries and fields in the
/// folders of times to the data. What a file says in numbers (values of a field, labels of a zone) is no setting. What
/// else is no setting is told by leftOut.
class CaseSettings {
public:
    /// Keys and texts, in the order of the file.
    using Values = std::vector<std::pair<std::string, std::string>>;

    explicit CaseSettings(const CaseFolder& folder) : _folder(folder) {}

    /// Looks through the files of a data class anew.
    void find(KelDataClass dataClass);

    /// The groups of a data class, by path; those of times in the order of the times.
    const std::vector<std::string>& groups(KelDataClass dataClass) const { return _groups[dataClass]; }

    /// What a group holds; nothing for an unknown one. Stays until the next call.
    const Values& values(KelDataClass dataClass, const std::string& group) const;

    /// The text of a dictionary of the case, as it stands in its file; empty for what is no dictionary.
    std::string text(const std::string& group) const;

    /// What there is in the case and is neither a setting nor anything else that is handed over. Reads all files.
    std::vector<KelSourceItem> leftOut(KelDataClass dataClass) const;

private:
    /// What a file is, by its place and its head.
    enum class Form {
        Dictionary,
        Field,
        Patches, ///< polyMesh/boundary
        Zones,   ///< polyMesh/cellZones and its like
    };

    /// A file that is a group.
    struct File {
        Form form = Form::Dictionary;
        KelDataClass dataClass = KEL_CASE;
    };

    /// What one file gives.
    struct Content {
        Values values;
        std::vector<KelSourceItem> leftOut;
    };

    void findInFolder(KelDataClass dataClass, const std::string& folder, bool withSubfolders);
    void findMeshFiles();
    void add(KelDataClass dataClass, const std::string& group, Form form);
    const Content& content(const std::string& group) const;
    Content read(const std::string& group, Form form) const;
    std::vector<PolyPatch> patchesAt(const std::string& time) const;

    const CaseFolder& _folder;
    std::vector<std::string> _groups[2];
    std::vector<KelSourceItem> _leftOut[2]; ///< whole files
    std::map<std::string, File> _files;     ///< by group
    mutable std::string _lastGroup;
    mutable Content _last;
};

} // namespace meridyn::polymesh
