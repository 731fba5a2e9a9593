#pragma once

#include <string>

namespace meridyn {

/// What KelBase asks of the place where its settings are kept.
class KelSettingsProvider {
public:
    KelSettingsProvider() = default;
    KelSettingsProvider(const KelSettingsProvider&) = delete;
    KelSettingsProvider& operator=(const KelSettingsProvider&) = delete;
    virtual ~KelSettingsProvider();

    /// The entry at a "/"-separated path, or null.
    ///
    /// @param index  negative: the value at the path, or the group when there is no such value; n >= 0: the n-th
    ///               group with that path, counted from 0
    virtual const void* lookup(const std::string& name, short index) const = 0;

    /// Sets the value at a "/"-separated path from its text, and makes the groups and the value that are missing.
    virtual void store(const std::string& path, const std::string& value) = 0;
};

} // namespace meridyn
