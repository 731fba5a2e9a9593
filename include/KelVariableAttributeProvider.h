#pragma once

#include "KelExport.h"

#include <string>
#include <vector>

namespace meridyn {

/// Answers what a variable is called elsewhere, and what attributes it has, for a key: the name under which a solver
/// or a file knows it.
///
/// Keys, names and values are byte strings; an empty one always means that there is no answer. No operation fails or
/// prints. The order of the operations and their constness are part of the interface.
class KEL_API KelVariableAttributeProvider {
public:
    /// Answers as the operations say when nobody overrides them.
    KelVariableAttributeProvider() = default;
    KelVariableAttributeProvider(const KelVariableAttributeProvider&) = default;
    KelVariableAttributeProvider& operator=(const KelVariableAttributeProvider&) = default;
    virtual ~KelVariableAttributeProvider();

    /// Whether variables are user visible when nothing else says so. Default: true.
    virtual bool getDefaultVariableVisibility() const;

    /// The key in the target vocabulary. Default: empty.
    virtual std::string getMappedKey(const std::string& key);

    /// The name of the variable's data set in files. Default: the key.
    virtual std::string getDatasetName(const std::string& key);

    /// The name to display. Default: the key.
    virtual std::string getVariableName(const std::string& key);

    /// The names of the attributes that the variable has.
    virtual std::vector<std::string> getSupportedAttributes(const std::string& key) const = 0;

    /// The value of one attribute.
    virtual std::string getAttributeValue(const std::string& key, const std::string& attribute) = 0;
};

} // namespace meridyn
