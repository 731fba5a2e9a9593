#pragma once

#include "core/KelSettingsProvider.h"

#include <memory>

namespace meridyn {

class KelSettingObject;

/// Settings as a tree: a group for each piece of a path but the last, which names a value in its group.
///
/// Blanks around the pieces of a path and empty pieces do not count; a path without pieces names nothing.
/// A value that is missing is made as text; one that is there keeps its type and its unit, and keeps its value too
/// when the new text is none of its type. A group and a value of one name live side by side.
class SettingsProvider : public KelSettingsProvider {
public:
    SettingsProvider();
    ~SettingsProvider() override;

    const void* lookup(const std::string& name, short index) const override;
    void store(const std::string& path, const std::string& value) override;

    /// The root of all settings.
    const KelSettingObject* root() const { return _root.get(); }

private:
    std::unique_ptr<KelSettingObject> _root;
};

} // namespace meridyn
