#include "arbor/TProperty.h"

#include "arbor/TObject.h"
#include "PropertyFactory.h"
#include "RareText.h"

#include <array>
#include <utility>

namespace arbor {

namespace {

struct KindNames {
    PropertyKind kind;
    std::string className;
    std::string xmlType;
};

constexpr PropertyKind vectorOf(PropertyKind element)
{
    return static_cast<PropertyKind>(static_cast<int>(element) | vectorBit);
}

using KindTable = std::array<KindNames, 10>;

/// Never destroyed, since properties refer to the names in it.
const KindTable& kinds()
{
    static const KindTable& table = *new KindTable{{
        {PropertyKind::Bool, "TPropertyType<bool>", "bool"},
        {PropertyKind::Int, "TPropertyType<int>", "int"},
        {PropertyKind::Double, "TPropertyType<double>", "double"},
        {PropertyKind::String, "TPropertyType<std::string>", "string"},
        {PropertyKind::Float, "TPropertyType<float>", "float"},
        {vectorOf(PropertyKind::Bool), "TPropertyType<std::vector<bool> >", "bool[]"},
        {vectorOf(PropertyKind::Int), "TPropertyType<std::vector<int> >", "int[]"},
        {vectorOf(PropertyKind::Double), "TPropertyType<std::vector<double> >", "double[]"},
        {vectorOf(PropertyKind::String), "TPropertyType<std::vector<std::string> >", "string[]"},
        {vectorOf(PropertyKind::Float), "TPropertyType<std::vector<float> >", "float[]"},
    }};
    return table;
}

const KindNames& namesOf(PropertyKind kind)
{
    const auto index = static_cast<std::size_t>(PropertyFactory::element(kind));
    return kinds()[index + (PropertyFactory::isVector(kind) ? kinds().size() / 2 : 0)];
}

} // namespace

PropertyKind PropertyFactory::element(PropertyKind kind)
{
    return static_cast<PropertyKind>(static_cast<int>(kind) & ~vectorBit);
}

bool PropertyFactory::isVector(PropertyKind kind)
{
    return (static_cast<int>(kind) & vectorBit) != 0;
}

const std::string& PropertyFactory::className(PropertyKind kind)
{
    return namesOf(kind).className;
}

PropertyKind PropertyFactory::kindOfClass(const std::string& className)
{
    for (const KindNames& names : kinds())
        if (names.className == className)
            return names.kind;
    return PropertyKind::Unknown;
}

const std::string& PropertyFactory::xmlType(PropertyKind kind)
{
    return namesOf(kind).xmlType;
}

PropertyKind PropertyFactory::kindOfXmlType(std::string_view type)
{
    for (const KindNames& names : kinds())
        if (names.xmlType == type)
            return names.kind;
    return PropertyKind::Unknown;
}

const std::vector<std::string>* PropertyFactory::textList(const TProperty& property)
{
    const bool isList = property._kind == vectorOf(PropertyKind::String);
    return isList ? &static_cast<const TPropertyType<std::vector<std::string>>&>(property).value() : nullptr;
}

std::vector<std::string>* PropertyFactory::textList(TProperty& property)
{
    return const_cast<std::vector<std::string>*>(textList(std::as_const(property)));
}

std::unique_ptr<TProperty> PropertyFactory::make(PropertyKind kind, const std::string& name)
{
    const auto choose = [&](auto scalar) -> std::unique_ptr<TProperty> {
        using T = decltype(scalar);
        if (isVector(kind))
            return std::unique_ptr<TProperty>(new TPropertyType<std::vector<T>>(kind, name));
        return std::unique_ptr<TProperty>(new TPropertyType<T>(kind, name));
    };
    switch (element(kind)) {
    case PropertyKind::Bool:
        return choose(bool());
    case PropertyKind::Int:
        return choose(int());
    case PropertyKind::Double:
        return choose(double());
    case PropertyKind::String:
        return choose(std::string());
    case PropertyKind::Float:
        return choose(float());
    case PropertyKind::Unknown:
        break;
    }
    return nullptr;
}

TProperty* PropertyFactory::handOver(std::unique_ptr<TProperty> property, TObject* owner)
{
    if (owner != nullptr && !owner->attach(property.get()))
        return nullptr;
    return property.release();
}

TProperty* TProperty::newProperty(const std::string& className, const std::string& name, const std::string* valueText,
                                  TObject* owner)
{
    const PropertyKind kind = PropertyFactory::kindOfClass(className);
    if (kind == PropertyKind::Unknown)
        return nullptr;
    auto property = PropertyFactory::make(kind, name);
    if (valueText != nullptr && !property->fromString(*valueText))
        return nullptr;
    return PropertyFactory::handOver(std::move(property), owner);
}

TProperty::TProperty(PropertyKind kind, const std::string& name)
    : TBase(name, PropertyFactory::className(kind)), _kind(kind)
{}

TProperty::~TProperty()
{
    if (_owner != nullptr)
        _owner->detach(this);
}

bool TProperty::setName(const std::string& name)
{
    return _owner == nullptr ? TBase::setName(name) : _owner->rename(this, name);
}

const std::string& TProperty::getUnit() const
{
    return RareText::get(_unit);
}

void TProperty::setUnit(const std::string& unit)
{
    RareText::set(_unit, unit);
}

bool TProperty::isProperty() const
{
    return true;
}

bool TProperty::isScalar() const
{
    return !isVector();
}

bool TProperty::isVector() const
{
    return PropertyFactory::isVector(_kind);
}

bool TProperty::isBoolean() const
{
    return PropertyFactory::element(_kind) == PropertyKind::Bool;
}

bool TProperty::isInteger() const
{
    return PropertyFactory::element(_kind) == PropertyKind::Int;
}

bool TProperty::isReal() const
{
    return PropertyFactory::element(_kind) == PropertyKind::Double;
}

bool TProperty::isFloat() const
{
    return PropertyFactory::element(_kind) == PropertyKind::Float;
}

bool TProperty::isString() const
{
    return PropertyFactory::element(_kind) == PropertyKind::String;
}

} // namespace arbor
