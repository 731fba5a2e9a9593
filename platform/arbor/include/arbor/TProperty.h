#pragma once

#include "arbor/TBase.h"

#include <memory>
#include <string>
#include <vector>

namespace arbor {

class TObject;
enum class PropertyKind : int;

/// A value of a node: a name, one of ten kinds of value, and a unit.
///
/// Kinds     bool, int, double, std::string, float, and a vector of each. The value itself is reached through
///           TPropertyType<T>.
/// Text      of a bool "true" or "false"; of an int its decimal digits; of a double or float the shortest
///           decimal number that reads back as the same value, with an exponent only below 1e-5 and from 1e21 on,
///           or "inf", "-inf", "nan"; of a string the string; of a vector the texts of its elements with a comma
///           between them, without blanks. It does not depend on the locale.
/// Reading   takes that text. Of bool also "1" and "0"; blanks around a bool or number and a leading "+" do not
///           count; an empty text is an empty vector. Numbers must fit their type and fill the text.
class ARBOR_API TProperty : public TBase {
public:
    /// Makes a property.
    ///
    /// @param className  "TPropertyType<int>", "TPropertyType<std::vector<int> >" and so on
    /// @param valueText  text of the value; null for false, 0, 0.0, the empty string, the empty vector
    /// @param owner      the node that owns it from then on; null makes one that the caller owns
    /// @return null for an unknown class, a text that does not parse, and an owner that already has a property
    ///         of that name
    static TProperty* newProperty(const std::string& className, const std::string& name, const std::string* valueText,
                                  TObject* owner);

    bool setName(const std::string& name) override;
    bool isProperty() const override;
    ~TProperty() override;

    /// The node that owns the property; null when it stands alone.
    TObject* owner() const { return _owner; }

    /// @name Kind
    /// The tests of the element hold for a scalar and for a vector alike.
    /// @{
    bool isScalar() const;
    bool isVector() const;
    bool isBoolean() const;
    bool isInteger() const;
    bool isReal() const;  ///< double only, so that it promises a double in place; a float is no such value
    bool isFloat() const; ///< float
    bool isString() const;
    /// @}

    /// @name Conversions
    /// A number is true unless 0 (nan is true), true is 1. Reals are cut towards zero and stop at the ends of int;
    /// nan gives 0. A string is read as a text of a bool or a number and gives 0 when it is none. A vector converts
    /// its first element; an empty one gives false, 0, 0.0.
    /// @{
    virtual bool toBool() const = 0;
    virtual int toInt() const = 0;
    virtual double toDouble() const = 0;
    /// @}

    /// The text of the value, each further line of it indented.
    ///
    /// @param indent  put behind each line break
    virtual std::string toString(const std::string& indent) const = 0;

    /// The text of the value.
    std::string toString() const { return toString(std::string()); }

    /// The texts of the elements; of a scalar its one text.
    virtual std::vector<std::string> toStringVector() const = 0;

    /// Sets the value from its text; the type stays.
    ///
    /// @return false, and the value stays, when the text does not parse
    virtual bool fromString(const std::string& text) = 0;

    /// The unit of the value: any text, empty at first.
    const std::string& getUnit() const;

    /// Sets the unit; values are not converted.
    void setUnit(const std::string& unit);

private:
    template <class T>
    friend class TPropertyType;
    friend class TObject;
    friend class PropertyFactory;
    friend class TreeWriter;

    TProperty(PropertyKind kind, const std::string& name);

    /// Appends the text of the value with the bits of unusual nans.
    virtual void appendExactText(std::string& out) const = 0;

    PropertyKind _kind;
    TObject* _owner = nullptr;
    std::unique_ptr<std::string> _unit; // null while it is empty, as for most
};

} // namespace arbor
