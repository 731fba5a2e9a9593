#include "KelSettingAttribute.h"

#include "arbor/TPropertyType.h"

#include <cstring>

namespace meridyn {

namespace {

arbor::TProperty* propertyOf(const KelSettingAttribute& attribute)
{
    return static_cast<arbor::TProperty*>(attribute.property());
}

/// The slots are not const, since subclasses override them as such; asking them changes no handle.
KelSettingAttribute& slotsOf(const KelSettingAttribute& attribute)
{
    return const_cast<KelSettingAttribute&>(attribute);
}

/// The object that failed accesses of one type share on one thread, in its empty state.
template <class T>
T& fallback()
{
    static thread_local T value;
    value = T();
    return value;
}

/// The value in place. The tests that led here may be a subclass's, so the property has the last word.
template <class T>
T& valueOrFallback(const KelSettingAttribute& attribute, bool isOfType)
{
    auto* typed = isOfType ? dynamic_cast<arbor::TPropertyType<T>*>(propertyOf(attribute)) : nullptr;
    return typed == nullptr ? fallback<T>() : typed->value();
}

template <class T>
std::vector<T> toVector(const KelSettingAttribute& attribute, bool isOfElement,
                        T& (KelSettingAttribute::*scalar)() const,
                        std::vector<T>& (KelSettingAttribute::*vector)() const)
{
    if (!attribute.isValid() || !isOfElement)
        return {};
    if (attribute.isVector())
        return (attribute.*vector)();
    return std::vector<T>(1, (attribute.*scalar)());
}

} // namespace

KelSettingAttribute::~KelSettingAttribute() = default;
KelSettingAttribute::KelSettingAttribute() = default;
KelSettingAttribute::KelSettingAttribute(void* property) : _property(property)
{}
KelSettingAttribute::KelSettingAttribute(const KelSettingAttribute& other) = default;
KelSettingAttribute& KelSettingAttribute::operator=(const KelSettingAttribute& other) = default;

void* KelSettingAttribute::property() const
{
    return _property;
}

KelSettingAttribute& KelSettingAttribute::setProperty(void* property)
{
    _property = property;
    return *this;
}

bool KelSettingAttribute::isValid() const
{
    return _property != nullptr;
}

KelSettingAttribute::operator bool() const
{
    return isValid();
}

// ---- type tests ----------------------------------------------------------------------

bool KelSettingAttribute::isScalar()
{
    return isValid() && propertyOf(*this)->isScalar();
}

bool KelSettingAttribute::isVector()
{
    return isValid() && propertyOf(*this)->isVector();
}

bool KelSettingAttribute::isBoolean()
{
    return isValid() && propertyOf(*this)->isBoolean();
}

bool KelSettingAttribute::isBool()
{
    return isBoolean();
}

bool KelSettingAttribute::isInteger()
{
    return isValid() && propertyOf(*this)->isInteger();
}

bool KelSettingAttribute::isInt()
{
    return isInteger();
}

bool KelSettingAttribute::isReal()
{
    return isValid() && propertyOf(*this)->isReal();
}

bool KelSettingAttribute::isDouble()
{
    return isReal();
}

bool KelSettingAttribute::isString()
{
    return isValid() && propertyOf(*this)->isString();
}

bool KelSettingAttribute::isScalar() const
{
    return slotsOf(*this).isScalar();
}

bool KelSettingAttribute::isVector() const
{
    return slotsOf(*this).isVector();
}

bool KelSettingAttribute::isBoolean() const
{
    return slotsOf(*this).isBoolean();
}

bool KelSettingAttribute::isBool() const
{
    return slotsOf(*this).isBool();
}

bool KelSettingAttribute::isInteger() const
{
    return slotsOf(*this).isInteger();
}

bool KelSettingAttribute::isInt() const
{
    return slotsOf(*this).isInt();
}

bool KelSettingAttribute::isReal() const
{
    return slotsOf(*this).isReal();
}

bool KelSettingAttribute::isDouble() const
{
    return slotsOf(*this).isDouble();
}

bool KelSettingAttribute::isString() const
{
    return slotsOf(*this).isString();
}

// ---- the value in place --------------------------------------------------------------

bool& KelSettingAttribute::asBool() const
{
    return valueOrFallback<bool>(*this, isScalar() && isBool());
}

int& KelSettingAttribute::asInt() const
{
    return valueOrFallback<int>(*this, isScalar() && isInt());
}

double& KelSettingAttribute::asDouble() const
{
    return valueOrFallback<double>(*this, isScalar() && isDouble());
}

std::string& KelSettingAttribute::asString() const
{
    return valueOrFallback<std::string>(*this, isScalar() && isString());
}

std::vector<bool>& KelSettingAttribute::asBoolVector() const
{
    return valueOrFallback<std::vector<bool>>(*this, isVector() && isBool());
}

std::vector<int>& KelSettingAttribute::asIntVector() const
{
    return valueOrFallback<std::vector<int>>(*this, isVector() && isInt());
}

std::vector<double>& KelSettingAttribute::asDoubleVector() const
{
    return valueOrFallback<std::vector<double>>(*this, isVector() && isDouble());
}

std::vector<std::string>& KelSettingAttribute::asStringVector() const
{
    return valueOrFallback<std::vector<std::string>>(*this, isVector() && isString());
}

// ---- assigning -----------------------------------------------------------------------

KelSettingAttribute& KelSettingAttribute::operator=(bool value)
{
    asBool() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(int value)
{
    asInt() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(double value)
{
    asDouble() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const std::string& value)
{
    asString() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const char* value)
{
    if (value != nullptr)
        asString() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const std::vector<int>& value)
{
    asIntVector() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const std::vector<double>& value)
{
    asDoubleVector() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const std::vector<std::string>& value)
{
    asStringVector() = value;
    return *this;
}

KelSettingAttribute& KelSettingAttribute::operator=(const std::vector<bool>& value)
{
    asBoolVector() = value;
    return *this;
}

// ---- conversions ---------------------------------------------------------------------

bool KelSettingAttribute::toBool() const
{
    return isValid() && propertyOf(*this)->toBool();
}

int KelSettingAttribute::toInt() const
{
    return isValid() ? propertyOf(*this)->toInt() : 0;
}

double KelSettingAttribute::toDouble() const
{
    return isValid() ? propertyOf(*this)->toDouble() : 0.0;
}

std::string KelSettingAttribute::toString() const
{
    return isValid() ? propertyOf(*this)->toString() : std::string();
}

std::vector<std::string> KelSettingAttribute::toStringVector() const
{
    return isValid() ? propertyOf(*this)->toStringVector() : std::vector<std::string>();
}

std::vector<bool> KelSettingAttribute::toBoolVector() const
{
    return toVector(*this, isBool(), &KelSettingAttribute::asBool, &KelSettingAttribute::asBoolVector);
}

std::vector<int> KelSettingAttribute::toIntVector() const
{
    return toVector(*this, isInt(), &KelSettingAttribute::asInt, &KelSettingAttribute::asIntVector);
}

std::vector<double> KelSettingAttribute::toDoubleVector() const
{
    return toVector(*this, isDouble(), &KelSettingAttribute::asDouble, &KelSettingAttribute::asDoubleVector);
}

} // namespace meridyn
