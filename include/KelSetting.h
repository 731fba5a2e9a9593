#pragma once

#include "KelExport.h"
#include "KelSettingAttribute.h"

#include <string>
#include <vector>

namespace meridyn {

class KelSettingObject;

/// A handle over a node of a settings tree: named groups in groups, with typed values (attributes).
///
///     KelSetting solver = KelSetting::get("solver");
///     solver.getAttributeDouble("models/energy/limit", true) = 0.5;
///     std::string xml = solver.toSettingString();
///
/// Owning   A handle over a root (get, fromSettingString) owns the tree and deletes it; a handle over a group never
///          does, and must not outlive the root. Moving and swap() hand ownership on; a copy of an owning handle does
///          not own, so no tree is deleted twice. Do not make two owning handles over one object by hand.
/// Touched  a mark for the user of the handle; it starts out equal to isValid().
/// Invalid  a handle without node answers like an empty one: group, getGroup an invalid handle; attribute and
///          getAttribute... an invalid attribute, which in turn answers everything; groupCount 0; groups, attributes
///          and attributeNames an empty list; toSettingString and dump an empty text. Asking with `create`, or writing
///          to such an attribute, makes and changes nothing. So `s.group("typo").attribute("x").toInt()` is 0.
/// Threads  one thread at a time per tree; trees of different threads share nothing.
/// Paths    "a/b/c" leads from group to group. Empty pieces and blanks around a piece do not count in a path with "/".
class KEL_API KelSetting {
public:
    /// An invalid handle: owns nothing, not touched.
    KelSetting();

    /// @param object  null for an invalid handle
    /// @param owned   whether the handle deletes the object; at most one handle does so
    KelSetting(KelSettingObject* object, bool owned);

    /// A handle over the same object that does not own it, with the same mark.
    KelSetting(const KelSetting& other);

    /// Takes over object, ownership and mark; the other becomes invalid, owns nothing and is not touched.
    KelSetting(KelSetting&& other) noexcept;

    /// Deletes what it owned, then becomes a copy of the other. When that stands for a node of the deleted tree,
    /// this handle becomes invalid. Assigning a handle over the same object keeps the object and its ownership.
    KelSetting& operator=(const KelSetting& other);

    /// Deletes what it owned, then takes over from the other, which becomes invalid.
    KelSetting& operator=(KelSetting&& other) noexcept;

    /// Deletes the object when the handle owns it.
    virtual ~KelSetting();

    /// Makes a new root.
    static KelSetting get(const std::string& name);

    /// Reads a tree that toSettingString() wrote.
    ///
    /// @return a handle that owns it; an invalid one for every other text, and when the root is no KelSettingObject
    static KelSetting fromSettingString(const std::string& text);

    /// The XML text of the node and all below it; empty for an invalid handle.
    std::string toSettingString() const;

    /// Whether the handle stands for a node.
    bool isValid() const;

    /// isValid
    operator bool() const;

    /// The mark of this handle.
    bool isTouched() const;

    /// Sets the mark of this handle.
    void setTouched(bool touched);

    /// Lets the handle stand for another node and touches it. Ownership stays: an owning handle will delete the new
    /// object. The old object is left to the caller.
    KelSetting& setObject(KelSettingObject* object);

    /// Exchanges object, ownership and mark with the other.
    KelSetting& swap(KelSetting& other) noexcept;

    /// @name Groups
    /// Handles that do not own; touched when valid.
    /// @{

    /// The group of that name right under this node, the first of several; invalid when there is none.
    KelSetting group(const std::string& name) const;

    /// The group at a position from 0; invalid outside of 0 .. groupCount() - 1.
    KelSetting group(int index) const;

    /// Number of groups right under this node.
    int groupCount() const;

    /// All groups right under this node, in order. A child of another class gives an invalid handle in its place.
    std::vector<KelSetting> groups() const;

    /// The group at a path. A group right under this node that bears the whole path as its name is found first;
    /// without `create` it is the only one that is found. With it, the groups on the way are found or made.
    ///
    /// @return invalid for an empty path, a group that is not found, and a path too deep for a tree, which makes
    ///         nothing
    KelSetting getGroup(const std::string& path, bool create) const;
    /// @}

    /// @name Attributes
    /// @{

    /// The value of that name at this node; an invalid handle when there is none.
    KelSettingAttribute attribute(const std::string& name) const;

    /// Names of the values of this node, in the order of their making.
    std::vector<std::string> attributeNames() const;

    /// The values of this node, in the order of their making.
    std::vector<KelSettingAttribute> attributes() const;
    /// @}

    /// @name Typed attributes
    /// The value of that type. With `create`, groups on the way that are missing and the value are made (false, 0, 0.0,
    /// empty), and a value of another type is replaced by such a new one. Without it, only a value of this very node
    /// that bears the whole path as its name is found: a path into a group gives an invalid handle. An empty path, or
    /// one of separators only, gives an invalid handle and makes nothing.
    /// @{
    KelSettingAttribute getAttributeBool(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeInt(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeDouble(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeString(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeBoolVector(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeIntVector(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeDoubleVector(const std::string& path, bool create) const;
    KelSettingAttribute getAttributeStringVector(const std::string& path, bool create) const;
    /// @}

    /// The node as text, see KelSettingObject::print().
    ///
    /// @param recursive    whether all groups below are printed
    /// @param objectsOnly  whether the values are left out
    std::string dump(bool recursive, bool objectsOnly) const;

private:
    KelSettingObject* _object = nullptr;
    bool _owned = false;
    bool _touched = false;
};

} // namespace meridyn
