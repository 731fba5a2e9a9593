#include "arbor/TPropertyType.h"

#include "PropertyFactory.h"
#include "ValueText.h"

#include <limits>

namespace arbor {

namespace {

template <class T>
constexpr bool isVectorType = false;
template <class T>
constexpr bool isVectorType<std::vector<T>> = true;

double toReal(bool value)
{
    return value ? 1.0 : 0.0;
}

double toReal(int value)
{
    return value;
}

double toReal(double value)
{
    return value;
}

double toReal(float value)
{
    return value;
}

double toReal(const std::string& value)
{
    bool truth = false;
    if (text::read(value, truth))
        return toReal(truth);
    double number = 0.0;
    text::read(value, number);
    return number;
}

template <class T>
double toReal(const std::vector<T>& values)
{
    return values.empty() ? 0.0 : toReal(static_cast<const T&>(values.front()));
}

int cutToInt(double value)
{
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    if (value != value)
        return 0;
    if (value <= least)
        return std::numeric_limits<int>::min();
    return value >= most ? std::numeric_limits<int>::max() : static_cast<int>(value);
}

std::string indented(std::string text, const std::string& indent)
{
    if (indent.empty())
        return text;
    std::string result;
    for (const char c : text) {
        result += c;
        if (c == '\n')
            result += indent;
    }
    return result;
}

} // namespace

template <class T>
TPropertyType<T>::TPropertyType(PropertyKind kind, const std::string& name) : TProperty(kind, name)
{}

template <class T>
TPropertyType<T>::~TPropertyType() = default;

// An int is exact in a double, so one conversion serves all three.
template <class T>
bool TPropertyType<T>::toBool() const
{
    return toReal(_value) != 0.0;
}

template <class T>
int TPropertyType<T>::toInt() const
{
    return cutToInt(toReal(_value));
}

template <class T>
double TPropertyType<T>::toDouble() const
{
    return toReal(_value);
}

template <class T>
std::string TPropertyType<T>::toString(const std::string& indent) const
{
    std::string result;
    text::append(result, _value);
    return indented(std::move(result), indent);
}

template <class T>
void TPropertyType<T>::appendExactText(std::string& out) const
{
    text::append(out, _value, text::Nan::Exact);
}

template <class T>
std::vector<std::string> TPropertyType<T>::toStringVector() const
{
    if constexpr (isVectorType<T>) {
        std::vector<std::string> texts;
        texts.reserve(_value.size());
        for (const auto& element : _value)
            text::append(texts.emplace_back(), static_cast<const typename T::value_type&>(element));
        return texts;
    } else {
        return {toString(std::string())};
    }
}

template <class T>
bool TPropertyType<T>::fromString(const std::string& text)
{
    return text::read(text, _value);
}

template class TPropertyType<bool>;
template class TPropertyType<int>;
template class TPropertyType<double>;
template class TPropertyType<std::string>;
template class TPropertyType<float>;
template class TPropertyType<std::vector<bool>>;
template class TPropertyType<std::vector<int>>;
template class TPropertyType<std::vector<double>>;
template class TPropertyType<std::vector<std::string>>;
template class TPropertyType<std::vector<float>>;

} // namespace arbor
