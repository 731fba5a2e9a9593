#include "ValueText.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace arbor::text {

namespace {

constexpr std::string_view nanPrefix = "nan(0x";

template <class Real>
using BitsOf = std::conditional_t<sizeof(Real) == 4, std::uint32_t, std::uint64_t>;

template <class Real>
BitsOf<Real> bitsOf(const Real& value)
{
    BitsOf<Real> bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

template <class Real>
void appendNan(std::string& out, const Real& value, Nan nan)
{
    if (nan == Nan::Plain || bitsOf(value) == bitsOf(std::numeric_limits<Real>::quiet_NaN())) {
        out += "nan";
        return;
    }
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, bitsOf(value), 16).ptr;
    out.append(nanPrefix).append(digits, end).append(")");
}

template <class Real>
void appendReal(std::string& out, const Real& value, Nan nan)
{
    if (std::isnan(value))
        return appendNan(out, value, nan);
    char digits[64];
    const Real size = std::fabs(value);
    const bool isPlain = size == 0 || (size >= Real(1e-5) && size < Real(1e21));
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end = std::isinf(value) ? std::to_chars(digits, digits + sizeof digits, value)
                                       : std::to_chars(digits, digits + sizeof digits, value, format);
    out.append(digits, end.ptr);
}

bool isBlank(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back()))
        text.remove_suffix(1);
    return text;
}

/// Without blanks around it and without the plus sign that from_chars does not know.
std::string_view numberText(std::string_view text)
{
    text = trimmed(text);
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+')
        text.remove_prefix(1);
    return text;
}

template <class Number>
bool readWhole(std::string_view text, Number& value)
{
    Number found{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), found);
    if (error != std::errc() || end != text.data() + text.size())
        return false;
    value = found;
    return true;
}

template <class Real>
bool readNan(std::string_view text, Real& value)
{
    if (text == "nan") {
        value = std::numeric_limits<Real>::quiet_NaN();
        return true;
    }
    if (text.size() <= nanPrefix.size() || text.substr(0, nanPrefix.size()) != nanPrefix || text.back() != ')')
        return false;
    text.remove_prefix(nanPrefix.size());
    text.remove_suffix(1);
    BitsOf<Real> bits = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), bits, 16);
    if (error != std::errc() || end != text.data() + text.size())
        return false;
    Real found;
    std::memcpy(&found, &bits, sizeof found);
    if (!std::isnan(found))
        return false;
    std::memcpy(&value, &bits, sizeof value); // not through a register that would quieten it
    return true;
}

template <class Real>
bool readReal(std::string_view text, Real& value)
{
    text = numberText(text);
    if (text.substr(0, 3) == "nan") // from_chars would take any word in the parentheses
        return readNan(text, value);
    return readWhole(text, value);
}

} // namespace

void append(std::string& out, bool value, Nan)
{
    out += value ? "true" : "false";
}

void append(std::string& out, int value, Nan)
{
    char digits[16];
    out.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void append(std::string& out, double value, Nan nan)
{
    appendReal(out, value, nan);
}

void append(std::string& out, float value, Nan nan)
{
    appendReal(out, value, nan);
}

void append(std::string& out, const std::string& value, Nan)
{
    out += value;
}

bool read(std::string_view text, bool& value)
{
    text = trimmed(text);
    const bool isTrue = text == "true" || text == "1";
    if (!isTrue && text != "false" && text != "0")
        return false;
    value = isTrue;
    return true;
}

bool read(std::string_view text, int& value)
{
    return readWhole(numberText(text), value);
}

bool read(std::string_view text, double& value)
{
    return readReal(text, value);
}

bool read(std::string_view text, float& value)
{
    return readReal(text, value);
}

bool read(std::string_view text, std::string& value)
{
    value.assign(text);
    return true;
}

} // namespace arbor::text
