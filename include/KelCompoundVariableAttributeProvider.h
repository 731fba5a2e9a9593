#pragma once

#include "KelVariableAttributeProvider.h"

#include <memory>

namespace meridyn {

/// Two providers in a row, so that a key is translated in two hops.
///
/// The first is asked with the caller's key, the second with that key as the first maps it (the key itself if the
/// first has no mapping). Either may be missing and then answers nothing. getDatasetName is the default: the key.
class KEL_API KelCompoundVariableAttributeProvider : public KelVariableAttributeProvider {
public:
    /// Takes ownership of both; each may be null, and they are two different objects. The first is deleted first.
    /// Copies share the two, which are deleted with the last copy.
    KelCompoundVariableAttributeProvider(KelVariableAttributeProvider* first, KelVariableAttributeProvider* second);
    KelCompoundVariableAttributeProvider(const KelCompoundVariableAttributeProvider&) = default;
    KelCompoundVariableAttributeProvider& operator=(const KelCompoundVariableAttributeProvider&) = default;
    ~KelCompoundVariableAttributeProvider() override;

    /// The first's answer, else the second's, else true.
    bool getDefaultVariableVisibility() const override;

    /// The key after both hops. If there is a second, its answer counts, also an empty one.
    std::string getMappedKey(const std::string& key) override;

    /// The second's answer for the mapped key, else the first's for the key.
    std::string getVariableName(const std::string& key) override;

    /// What either supports, in byte order, each name once.
    std::vector<std::string> getSupportedAttributes(const std::string& key) const override;

    /// The second's answer for the mapped key, else the first's for the key. For "Component Names" and "Parent Name"
    /// the first is preferred: they are phrased in its keys.
    std::string getAttributeValue(const std::string& key, const std::string& attribute) override;

private:
    std::shared_ptr<KelVariableAttributeProvider> _first;
    std::shared_ptr<KelVariableAttributeProvider> _second;
};

} // namespace meridyn
