#pragma once

#include "arbor/TProperty.h"

#include <string>
#include <vector>

namespace arbor {

/// A property with its value. T is bool, int, double, std::string, float or a std::vector of one of them; the ten
/// are in the library, so that a dynamic_cast to them holds across libraries. Made by TProperty::newProperty().
template <class T>
class ARBOR_API TPropertyType : public TProperty {
public:
    ~TPropertyType() override;

    /// The value in place, for reading and writing.
    T& value() { return _value; }
    /// The value in place.
    const T& value() const { return _value; }

    using TProperty::toString;
    bool toBool() const override;
    int toInt() const override;
    double toDouble() const override;
    std::string toString(const std::string& indent) const override;
    std::vector<std::string> toStringVector() const override;
    bool fromString(const std::string& text) override;

private:
    friend class PropertyFactory;

    TPropertyType(PropertyKind kind, const std::string& name);

    void appendExactText(std::string& out) const override;

    T _value{};
};

extern template class TPropertyType<bool>;
extern template class TPropertyType<int>;
extern template class TPropertyType<double>;
extern template class TPropertyType<std::string>;
extern template class TPropertyType<float>;
extern template class TPropertyType<std::vector<bool>>;
extern template class TPropertyType<std::vector<int>>;
extern template class TPropertyType<std::vector<double>>;
extern template class TPropertyType<std::vector<std::string>>;
extern template class TPropertyType<std::vector<float>>;

} // namespace arbor
