#pragma once

#include <cstdint>
#include <memory>
#include <string>

/// Marks what the library exports: everything without it stays inside (hidden visibility).
#if defined(__GNUC__) || defined(__clang__)
#    define ARBOR_API __attribute__((visibility("default")))
#else
#    define ARBOR_API
#endif

/// Trees of named objects with typed properties and an XML form.
///
///     TBase                  name, second name, class name
///     +- TObject             a node: children and properties, both in the order of their making
///     |  +- TRegion, TZone, TDomain
///     +- TProperty           a value with a unit
///        +- TPropertyType<T> the ten kinds of value
///
/// Inheritance is single: a pointer to an entry and to its TBase are one address, so entries may travel as `void*`.
/// Names are any bytes, the empty string included. Trees are used from one thread at a time.
namespace arbor {

/// Entries of one owner in their order, with a look-up by name. Defined inside the library.
template <class Entry>
class Siblings;

/// What a node and a value have in common: their names.
class ARBOR_API TBase {
public:
    /// Renames the entry and keeps the look-up by name of its owner right.
    ///
    /// @return false, and nothing changes, for a property whose owner has another property of that name
    virtual bool setName(const std::string& name);

    /// Whether the entry is a node (TObject).
    virtual bool isObject() const;

    /// Whether the entry is a value (TProperty).
    virtual bool isProperty() const;

    /// Takes the entry out of its owner first, so deleting part of a tree leaves the rest intact.
    virtual ~TBase();

    TBase(const TBase&) = delete;
    TBase& operator=(const TBase&) = delete;

    /// The name under which the entry's owner finds it.
    const std::string& name() const { return _name; }

    /// A further text beside the name, for example the label of a user interface. Empty until it is set; it
    /// travels with the XML text and takes no part in any look-up.
    const std::string& secondName() const;

    /// Sets the second name; any text.
    void setSecondName(const std::string& text);

    /// Name of the entry's class: of a node the full name under which its class is registered ("TObject",
    /// "TZone", ...), of a value "TPropertyType<int>", "TPropertyType<std::vector<int> >" and so on; empty for
    /// a null entry.
    static std::string className(const TBase* entry);

protected:
    /// @param className  storage that outlives the entry
    TBase(const std::string& name, const std::string& className);

private:
    friend class TObject;
    template <class Entry>
    friend class Siblings;

    std::string _name;
    std::unique_ptr<std::string> _secondName; // null while it is empty, as for most
    const std::string* _className;
    std::uint64_t _order = 0; // ascending among siblings
};

} // namespace arbor
