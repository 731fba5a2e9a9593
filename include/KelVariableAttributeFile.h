#pragma once

#include "KelVariableAttributeProvider.h"

#include <memory>
#include <utility>

namespace meridyn {

struct MappingTable;

/// Answers from one XML mapping file: the variables of a source vocabulary, each with its key ("Name") and named
/// attributes, among them the one that holds its key in the target vocabulary.
///
/// The header of the file, all optional:
///   "Source", "Target"               names of the two vocabularies
///   "Case Insensitive Match"         keys are found without regard to letter case (A to Z); default false
///   "Attribute Name Of Mapped Key"   the attribute that holds the mapped key; default "Common Name" if the target is
///                                    "MERIDYN_GENERIC", else none
///   "Default Variable Visibility"    default true
/// A boolean is true if it is on, t, true or yes, in any case; anything else is false.
///
/// Texts are kept as UTF-8. An attribute cannot be empty. In "Dataset Name" every '/' becomes a blank. A key that
/// contains '#' is cut there, the rest goes to the names of its attributes. Keys that are one without regard to case
/// are merged, the later in byte order winning.
///
/// A file is read only if it is a regular one. A document type declaration is passed over: no entity is expanded and
/// nothing but the file is opened. The provider does not change after construction; copies share their table, and so do
/// the providers of one file that the discovery of mapping files has read, while the file does not change.
///
/// Several threads may make providers at once, and ask one. A program that uses Xerces-C++ itself starts it before its
/// threads do, since that library counts its users without a lock.
class KEL_API KelVariableAttributeFile : public KelVariableAttributeProvider {
public:
    /// Reads a mapping file. Never throws: if the path is empty, or the file is missing or not well-formed as a whole,
    /// the provider is empty and has the defaults above.
    explicit KelVariableAttributeFile(const std::string& path);
    KelVariableAttributeFile(const KelVariableAttributeFile&) = default;
    KelVariableAttributeFile& operator=(const KelVariableAttributeFile&) = default;
    ~KelVariableAttributeFile() override;

    /// Tells whether a file is a mapping file: well-formed as a whole, with a source and a target in its header.
    ///
    /// @param sourceAndTarget  the two vocabularies; untouched if the answer is false
    static bool isMappingFile(const std::string& path, std::pair<std::string, std::string>& sourceAndTarget);

    /// What the header says, else true.
    bool getDefaultVariableVisibility() const override;

    /// The value of the attribute that holds the mapped key; the key itself if there is none.
    std::string getMappedKey(const std::string& key) override;

    /// The attribute "Dataset Name"; the key itself if there is none.
    std::string getDatasetName(const std::string& key) override;

    /// The names of the variable's attributes in byte order; "Name" is none of them.
    std::vector<std::string> getSupportedAttributes(const std::string& key) const override;

    /// The value of one attribute, whose name is matched exactly.
    std::string getAttributeValue(const std::string& key, const std::string& attribute) override;

private:
    std::shared_ptr<const MappingTable> _table;
};

} // namespace meridyn
