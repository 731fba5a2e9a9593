#pragma once

#include "arbor/TBase.h"

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace arbor {

class TProperty;
struct ObjectClass;

/// A node of a tree: it owns its children and its properties.
///
/// Children     kept in the order of their making. Several may bear one name; a look-up finds the first of them.
/// Properties   kept in the order of their making, names unique within a node. A child and a property of one
///              name live side by side.
/// Look-up      takes a name, never a path: "a/b" is the entry whose name holds a slash. Its time does not grow
///              with the number of siblings.
/// Deleting     a node deletes all below it, to any legal depth without recursion, and leaves its parent.
/// Constness    is that of the node itself; what it owns is handed out for change.
class ARBOR_API TObject : public TBase {
public:
    /// Levels of nodes in a tree, the root being the first. newObject() refuses to go deeper.
    static constexpr int maxDepth = 1024;

    /// Nodes, properties and texts of text lists that fromXMLString() accepts in one tree.
    static constexpr std::size_t maxEntries = std::size_t(1) << 20;

    /// Bytes of text that fromXMLString() accepts.
    static constexpr std::size_t maxTextSize = std::size_t(512) << 20;

    /// Makes a node of a registered class: receives its name and its parent, which may be null for a root, and
    /// gives a node that has joined that parent and holds nothing yet. Null when it cannot.
    using Factory = TObject* (*)(const std::string& name, TObject* parent);

    bool setName(const std::string& name) override;
    bool isObject() const override;
    ~TObject() override;

    /// Writes the node as text: a line with its name and class, a line "name = value" for each property, and
    /// what its children write.
    ///
    /// @param indent       blanks in front of the line of the node; its content is indented by two more
    /// @param recursive    whether the children are written too
    /// @param objectsOnly  whether the properties are left out
    virtual void print(std::ostream& out, int indent, bool recursive, bool objectsOnly) const;

    /// Whether the node is a TRegion.
    virtual bool isRegion() const;

    /// Whether the node is a TZone.
    virtual bool isZone() const;

    /// Whether the node is a TDomain.
    virtual bool isDomain() const;

    /// The node that owns this one; null for a root.
    TObject* parent() const { return _parent; }

    /// Level of the node: 1 for a root, its parent's and one more otherwise.
    int depth() const { return _depth; }

    /// @name Children
    /// @{

    /// Number of children.
    int nChild() const;

    /// The same as nChild().
    int size() const;

    /// The child at a position from 0; null outside of 0 .. nChild() - 1.
    TObject* child(int index) const;

    /// The first child of that name; null when there is none.
    TObject* child(const std::string& name) const;

    /// Names of the children, in their order: what the node contains is its children.
    std::vector<std::string> getContentNames() const;
    /// @}

    /// @name Properties
    /// They are made by TProperty::newProperty().
    /// @{

    /// Number of properties.
    int nProperty() const;

    /// The property at a position from 0; null outside of 0 .. nProperty() - 1.
    TProperty* property(int index) const;

    /// The property of that name; null when there is none.
    TProperty* property(const std::string& name) const;

    /// Names of the properties in the order of their making. Renaming keeps the place; replacing by removal and
    /// a new property moves to the end.
    std::vector<std::string> getPropertiesNames() const;

    /// Deletes the property of that name; false when there is none.
    bool removeProperty(const std::string& name);
    /// @}

    /// @name XML text
    /// docs/settings-xml.md describes the form.
    /// @{

    /// The text of a node with all below it, as UTF-8; empty for null. Reading it back gives an equal tree: every
    /// value bit for bit, every name byte for byte, all orders kept. A tree beyond maxEntries or maxTextSize is
    /// written too, but not read back.
    static std::string toXMLString(const TObject* object);

    /// The tree that a text describes, as a root that the caller owns; null for everything that is not exactly
    /// such a text: malformed or cut XML, a document type, unknown classes, types or attributes, a value that its
    /// type cannot hold, two properties of one name in a node, more than the limits of this class.
    static TObject* fromXMLString(const std::string& text);
    /// @}

    /// @name Classes
    /// "TObject", "TRegion", "TZone" and "TDomain" are registered from the start.
    /// @{

    /// Makes a node of a class under a parent, which owns it, or as a root that the caller owns.
    ///
    /// @param className  full or short name of a registered class
    /// @param parent     null for a root
    /// @return null for an unknown class, a parent at maxDepth, and when the class's factory gives none
    static TObject* newObject(const std::string& className, const std::string& name, TObject* parent);

    /// Registers a class of nodes; a class that is registered again gets the new factory, base and tag.
    ///
    /// @param className      full name
    /// @param baseClassName  full name of a registered class, for example "TObject"
    /// @param tag            name of its XML elements: letters, digits, "_", "-" and ".", a letter or "_" first
    /// @return false, and nothing changes, for an empty name, a null factory, an unknown base, and a tag that is
    ///         no such word, is "property" or "item", or belongs to another class
    static bool registerNewObjectClass(const std::string& className, Factory factory, const std::string& baseClassName,
                                       const std::string& tag);

    /// Binds a short name to a registered class, from then on another name for it in newObject().
    ///
    /// @return false, and nothing changes, for an empty short name, an unknown class, and a short name that is a
    ///         class's full name or is bound to another class
    static bool registerClassShortName(const std::string& shortName, const std::string& className);

    /// Full name of the class on which a class is based; empty for "TObject" and for an unknown class.
    static std::string baseClassName(const std::string& className);
    /// @}

protected:
    /// Makes a node that joins its parent at once, as its last child. Under a parent at maxDepth it becomes a
    /// root instead; newObject() never comes to that.
    TObject(const std::string& name, TObject* parent);

    /// The part of print() behind the node's own line: the properties unless `objectsOnly`, the children if
    /// `recursive`, both indented by two blanks more than `indent`.
    void printContent(std::ostream& out, int indent, bool recursive, bool objectsOnly) const;

private:
    friend class PropertyFactory;
    friend class TProperty;
    struct Content;

    friend class ClassRegistry;
    friend class TreeReader;

    static TObject* create(const std::string& name, TObject* parent);
    static TObject* newObject(const ObjectClass& type, const std::string& name, TObject* parent);
    Content& content();
    void deleteContent();
    bool attach(TProperty* property);
    void detach(TProperty* property);
    bool rename(TProperty* property, const std::string& name);

    TObject* _parent = nullptr;
    int _depth = 1;
    std::unique_ptr<Content> _content; // null while the node holds nothing
};

} // namespace arbor
