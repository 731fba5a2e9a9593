#pragma once

#include "KelExport.h"

#include <string>
#include <vector>

namespace meridyn {

/// One value of a settings tree: a handle over a property, which the tree owns.
///
/// A handle is got from KelSetting. It tells the type of the value, gives the value in place (`as...`) and converted
/// (`to...`). It must not outlive the property. An invalid handle, one without property, answers every question:
/// no test holds, conversions are empty.
///
/// Fallback  `as...` of a property of another type, or of none, gives a reference to a fallback object, one per
///           operation and thread, reset to false, 0, 0.0, the empty string or vector by every such access. What is
///           written there changes no tree and is gone at the next failed access, or when the thread ends.
/// Threads   one thread at a time per tree; trees of different threads share nothing.
/// Slots     the tests are virtual and not const; a subclass that redirects isBoolean, isInteger or isReal redirects
///           isBool, isInt and isDouble with it. Their const twins serve const handles and call them.
class KEL_API KelSettingAttribute {
public:
    /// Does nothing to the property.
    virtual ~KelSettingAttribute();

    /// @name Type of the value
    /// The tests of the element hold for a scalar and a vector alike. isReal holds for values that are kept as
    /// double; a float comes with files only, passes no test of the element and is read by conversion.
    /// @{
    virtual bool isScalar();
    virtual bool isVector();
    virtual bool isBoolean();
    virtual bool isBool(); ///< isBoolean
    virtual bool isInteger();
    virtual bool isInt(); ///< isInteger
    virtual bool isReal();
    virtual bool isDouble(); ///< isReal
    virtual bool isString();

    bool isScalar() const;
    bool isVector() const;
    bool isBoolean() const;
    bool isBool() const;
    bool isInteger() const;
    bool isInt() const;
    bool isReal() const;
    bool isDouble() const;
    bool isString() const;
    /// @}

    /// An invalid handle.
    KelSettingAttribute();

    /// @param property  an `arbor::TProperty*`, or null
    explicit KelSettingAttribute(void* property);

    /// Another handle over the same property.
    KelSettingAttribute(const KelSettingAttribute& other);

    /// Changes the handle, not the value: it is over the other's property then.
    KelSettingAttribute& operator=(const KelSettingAttribute& other);

    /// The `arbor::TProperty*`, or null.
    void* property() const;

    /// Changes the handle, not the value.
    ///
    /// @param property  an `arbor::TProperty*`, or null
    KelSettingAttribute& setProperty(void* property);

    /// Whether there is a property.
    bool isValid() const;

    /// isValid
    operator bool() const;

    /// @name The value in place
    /// When shape and element are those of the operation; a reference to its fallback object otherwise.
    /// @{
    bool& asBool() const;
    int& asInt() const;
    double& asDouble() const;
    std::string& asString() const;
    std::vector<bool>& asBoolVector() const;
    std::vector<int>& asIntVector() const;
    std::vector<double>& asDoubleVector() const;
    std::vector<std::string>& asStringVector() const;
    /// @}

    /// @name Assigning a value
    /// Stores into what the `as...` operation of the type refers to; the property never changes its type. A null
    /// text does nothing.
    /// @{
    KelSettingAttribute& operator=(bool value);
    KelSettingAttribute& operator=(int value);
    KelSettingAttribute& operator=(double value);
    KelSettingAttribute& operator=(const std::string& value);
    KelSettingAttribute& operator=(const char* value);
    KelSettingAttribute& operator=(const std::vector<int>& value);
    KelSettingAttribute& operator=(const std::vector<double>& value);
    KelSettingAttribute& operator=(const std::vector<std::string>& value);
    KelSettingAttribute& operator=(const std::vector<bool>& value);
    /// @}

    /// @name The value converted
    /// As the property converts it, see arbor::TProperty: from every type to every type. False, 0, 0.0 or empty for
    /// an invalid handle.
    /// @{
    bool toBool() const;
    int toInt() const;
    double toDouble() const;
    std::string toString() const;
    std::vector<std::string> toStringVector() const;
    /// @}

    /// @name The value as a vector
    /// A copy of a vector, or one element for a scalar, of exactly that element type; empty for every other type.
    /// @{
    std::vector<bool> toBoolVector() const;
    std::vector<int> toIntVector() const;
    std::vector<double> toDoubleVector() const;
    /// @}

private:
    void* _property = nullptr;
};

} // namespace meridyn
