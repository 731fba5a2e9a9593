#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Texts of values, and values from texts, as TProperty describes them. The locale plays no part.
namespace arbor::text {

/// How much of a nan shows: "nan" for all, or "nan(0x<bits>)" for those with other bits than the usual one.
enum class Nan {
    Plain,
    Exact
};

/// @name Appending the text of a value
/// @{
void append(std::string& out, bool value, Nan nan = Nan::Plain);
void append(std::string& out, int value, Nan nan = Nan::Plain);
void append(std::string& out, double value, Nan nan = Nan::Plain);
void append(std::string& out, float value, Nan nan = Nan::Plain);
void append(std::string& out, const std::string& value, Nan nan = Nan::Plain);

template <class T>
void append(std::string& out, const std::vector<T>& values, Nan nan = Nan::Plain)
{
    const char* separator = "";
    for (const auto& value : values) {
        out += separator;
        append(out, static_cast<const T&>(value), nan);
        separator = ",";
    }
}
/// @}

/// @name Reading a whole text
/// False, with the value unchanged, when it is none.
/// @{
bool read(std::string_view text, bool& value);
bool read(std::string_view text, int& value);
bool read(std::string_view text, double& value);
bool read(std::string_view text, float& value);
bool read(std::string_view text, std::string& value);

template <class T>
bool read(std::string_view text, std::vector<T>& values)
{
    std::vector<T> found;
    for (bool isMore = !text.empty(); isMore;) {
        const std::size_t comma = text.find(',');
        T value{};
        if (!read(text.substr(0, comma), value))
            return false;
        found.push_back(std::move(value));
        isMore = comma != std::string_view::npos;
        if (isMore)
            text.remove_prefix(comma + 1);
    }
    values = std::move(found);
    return true;
}
/// @}

} // namespace arbor::text
