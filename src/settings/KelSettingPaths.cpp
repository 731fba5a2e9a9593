// The operations of KelSetting that follow or make paths.
#include "KelSetting.h"

#include "arbor/TProperty.h"
#include "KelSettingObject.h"
#include "KelUtilities.h"

#include <string>
#include <vector>

namespace meridyn {

namespace {

using Pieces = std::vector<std::string>;

constexpr char separator = '/';

bool hasSeparator(const std::string& path)
{
    return path.find(separator) != std::string::npos;
}

/// The pieces of a path without the blank ones; none for a path of separators and blanks only.
Pieces piecesOf(const std::string& path)
{
    Pieces pieces;
    KelUtilities::splitString(path, pieces, true, separator);
    return pieces;
}

/// Whether so many further levels fit below a node, so that a path too deep is refused before anything is made.
bool hasRoomBelow(const arbor::TObject& node, std::size_t levels)
{
    return levels <= static_cast<std::size_t>(arbor::TObject::maxDepth - node.depth());
}

arbor::TObject* newGroup(const std::string& name, arbor::TObject* parent)
{
    return arbor::TObject::newObject("meridyn::KelSettingObject", name, parent);
}

KelSettingObject* childSetting(const arbor::TObject& node, const std::string& name)
{
    return dynamic_cast<KelSettingObject*>(node.child(name));
}

/// Follows the pieces, one level each, and makes the groups that are missing. Below the first level, a group that
/// bears all that is left of the path as its name comes before the group of the next piece.
KelSettingObject* makeGroupAt(KelSettingObject* node, const Pieces& pieces)
{
    std::string rest;
    KelUtilities::joinString(pieces, rest, separator, false, false);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        KelSettingObject* found = i == 0 ? nullptr : childSetting(*node, rest);
        if (found != nullptr)
            return found;
        found = childSetting(*node, pieces[i]);
        if (found == nullptr && hasRoomBelow(*node, pieces.size() - i))
            found = dynamic_cast<KelSettingObject*>(newGroup(pieces[i], node));
        if (found == nullptr)
            return nullptr;
        node = found;
        rest.erase(0, pieces[i].size() + 1);
    }
    return node;
}

/// The groups on the way to a value, made where they are missing; null for a path too deep.
arbor::TObject* makeGroups(arbor::TObject* node, const Pieces& pieces)
{
    for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
        arbor::TObject* next = node->child(pieces[i]);
        if (next == nullptr && hasRoomBelow(*node, pieces.size() - 1 - i))
            next = newGroup(pieces[i], node);
        if (next == nullptr)
            return nullptr;
        node = next;
    }
    return node;
}

arbor::TProperty* newValue(const std::string& className, const std::string& name, arbor::TObject* node)
{
    return arbor::TProperty::newProperty(className, name, nullptr, node);
}

/// The value of that name and class at a node. With `create` it is made, and one of another class is replaced by it.
arbor::TProperty* valueAt(arbor::TObject* node, const std::string& name, const std::string& className, bool create)
{
    arbor::TProperty* found = node->property(name);
    if (found != nullptr && arbor::TBase::className(found) == className)
        return found;
    if (!create)
        return nullptr;
    node->removeProperty(name);
    return newValue(className, name, node);
}

/// The value at a path, see "Typed attributes" in the header.
arbor::TProperty* valueAtPath(arbor::TObject* node, const std::string& path, const std::string& className, bool create)
{
    if (node == nullptr) // of an invalid handle, which makes nothing
        return nullptr;
    // kept: without create a path into a group finds nothing; only a value that bears the whole path as its name does
    if (!create || !hasSeparator(path) || node->property(path) != nullptr)
        return path.empty() ? nullptr : valueAt(node, path, className, create);
    const Pieces pieces = piecesOf(path);
    arbor::TObject* owner = pieces.empty() ? nullptr : makeGroups(node, pieces);
    return owner == nullptr ? nullptr : valueAt(owner, pieces.back(), className, create);
}

std::string scalarClass(const std::string& element)
{
    return "TPropertyType<" + element + ">";
}

std::string vectorClass(const std::string& element)
{
    return "TPropertyType<std::vector<" + element + "> >";
}

} // namespace

KelSetting KelSetting::getGroup(const std::string& path, bool create) const
{
    if (!isValid())
        return {};
    KelSettingObject* found = childSetting(*_object, path);
    if (found != nullptr)
        return {found, false};
    if (!create || path.empty()) // kept: without create, no path is followed
        return {};
    const Pieces pieces = hasSeparator(path) ? piecesOf(path) : Pieces();
    if (pieces.empty()) // also for a path of separators only, which then is the name
        return {dynamic_cast<KelSettingObject*>(newGroup(path, _object)), false};
    return {makeGroupAt(_object, pieces), false};
}

KelSettingAttribute KelSetting::getAttributeBool(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, scalarClass("bool"), create));
}

KelSettingAttribute KelSetting::getAttributeInt(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, scalarClass("int"), create));
}

KelSettingAttribute KelSetting::getAttributeDouble(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, scalarClass("double"), create));
}

KelSettingAttribute KelSetting::getAttributeString(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, scalarClass("std::string"), create));
}

KelSettingAttribute KelSetting::getAttributeBoolVector(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, vectorClass("bool"), create));
}

KelSettingAttribute KelSetting::getAttributeIntVector(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, vectorClass("int"), create));
}

KelSettingAttribute KelSetting::getAttributeDoubleVector(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, vectorClass("double"), create));
}

KelSettingAttribute KelSetting::getAttributeStringVector(const std::string& path, bool create) const
{
    return KelSettingAttribute(valueAtPath(_object, path, vectorClass("std::string"), create));
}

} // namespace meridyn
