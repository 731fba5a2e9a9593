#include "core/SettingsProvider.h"

#include "arbor/TProperty.h"
#include "KelSettingObject.h"
#include "KelUtilities.h"

#include <vector>

namespace meridyn {

KelSettingsProvider::~KelSettingsProvider() = default;

/// A path taken apart: the groups on the way, and the entry in the last of them.
struct SettingsPath {
    explicit SettingsPath(const std::string& path)
    {
        KelUtilities::splitString(path, groups, true, '/');
        if (!groups.empty()) {
            leaf = groups.back();
            groups.pop_back();
        }
    }

    std::vector<std::string> groups;
    std::string leaf; ///< empty when the path has no pieces
};

static KelSettingObject* newGroup(const std::string& name, arbor::TObject* parent)
{
    return dynamic_cast<KelSettingObject*>(arbor::TObject::newObject("meridyn::KelSettingObject", name, parent));
}

static arbor::TProperty* propertyOf(arbor::TObject& group, const std::string& name)
{
    arbor::TProperty* const property = group.property(name);
    if (property != nullptr) {
        return property;
    }
    return arbor::TProperty::newProperty("TPropertyType<std::string>", name, nullptr, &group);
}

static const arbor::TObject* findGroup(const arbor::TObject& parent, const std::string& name, int index)
{
    const arbor::TObject* group = parent.child(name);
    if (group == nullptr || index == 0) {
        return group;
    }
    for (int i = 0; i < parent.nChild(); ++i) {
        const arbor::TObject* const child = parent.child(i);
        if (child->name() == name && index-- == 0) {
            return child;
        }
    }
    return nullptr;
}

SettingsProvider::SettingsProvider() : _root(newGroup("settings", nullptr))
{}

SettingsProvider::~SettingsProvider() = default;

const void* SettingsProvider::lookup(const std::string& name, short index) const
{
    const SettingsPath path(name);
    if (path.leaf.empty()) {
        return nullptr;
    }
    const arbor::TObject* group = _root.get();
    for (const std::string& piece : path.groups) {
        group = group->child(piece);
        if (group == nullptr) {
            return nullptr;
        }
    }
    // An entry is handed out by the address of its TBase, from which a KelVariant can tell what it is.
    const arbor::TBase* entry = nullptr;
    if (index >= 0) {
        entry = findGroup(*group, path.leaf, index);
    } else {
        entry = group->property(path.leaf);
        if (entry == nullptr) {
            entry = group->child(path.leaf);
        }
    }
    return entry;
}

void SettingsProvider::store(const std::string& path, const std::string& value)
{
    const SettingsPath pieces(path);
    const bool isTooDeep = pieces.groups.size() >= static_cast<std::size_t>(arbor::TObject::maxDepth);
    if (pieces.leaf.empty() || isTooDeep) {
        return;
    }
    arbor::TObject* group = _root.get();
    for (const std::string& piece : pieces.groups) {
        arbor::TObject* const known = group->child(piece);
        group = known != nullptr ? known : newGroup(piece, group);
    }
    arbor::TProperty* const property = propertyOf(*group, pieces.leaf);
    const std::string unit = property->getUnit();
    property->fromString(value);
    property->setUnit(unit); // a new text says nothing about the unit
}

} // namespace meridyn
