#pragma once

#include <map>
#include <string>
#include <vector>

namespace meridyn::tool {

/// The files of a model on their way to their names.
///
/// They are written into a hidden folder beside the target and take their names together, when all of them are
/// complete: a model is there as a whole or not at all, and what was there before stays until then. A failure, or the
/// end of this object, leaves everything as it was.
class StagedFiles {
public:
    StagedFiles() = default;
    ~StagedFiles();
    StagedFiles(const StagedFiles&) = delete;
    StagedFiles& operator=(const StagedFiles&) = delete;

    /// Where the file of that name is to be written. @throws Failure when there is no place beside it
    std::string place(const std::string& target);

    /// Gives all files their names, in the place of those that have them, and removes `obsolete` ones.
    ///
    /// @throws Failure when that fails for one; all names then lead to what they led to before
    void commit(const std::vector<std::string>& obsolete);

    /// A text in which the places are called by the names that their files will have.
    std::string named(std::string text) const;

private:
    struct Step {
        std::string name, backup; ///< what bears the name now, and where the old file is; empty for none
    };

    std::string folderBeside(const std::string& target);
    void setAside(const std::string& name);
    void undo() noexcept;

    std::map<std::string, std::string> _folders; ///< hidden folder of each folder with targets
    std::map<std::string, std::string> _places;  ///< by target, links followed
    std::map<std::string, std::string> _names;   ///< targets as they were named, by place
    std::vector<Step> _done;
};

} // namespace meridyn::tool
