#pragma once

#include "KelTypes.h"

#include <string>
#include <string_view>
#include <vector>

namespace meridyn::tool {

/// Writes one JSON document, indented by two blanks per level.
///
/// Strings become valid UTF-8: a byte that is none becomes U+FFFD. Numbers are written so that they read back exactly;
/// infinities and nans, which JSON does not have, become the strings "inf", "-inf" and "nan".
class JsonWriter {
public:
    JsonWriter& beginObject();
    JsonWriter& endObject();
    JsonWriter& beginArray();
    JsonWriter& endArray();

    /// The name of the next value in an object.
    JsonWriter& key(std::string_view name);

    /// @name Values
    /// @{
    JsonWriter& value(std::string_view text);
    JsonWriter& value(const std::string& text) { return value(std::string_view(text)); }
    JsonWriter& value(const char* text) { return value(std::string_view(text)); }
    JsonWriter& value(bool flag);
    JsonWriter& value(double number);
    JsonWriter& value(long long number);
    JsonWriter& value(int number) { return value(static_cast<long long>(number)); }
    JsonWriter& value(unsigned64 number);
    JsonWriter& null();
    /// @}

    /// A whole list.
    template <class T>
    JsonWriter& value(const std::vector<T>& list)
    {
        beginArray();
        for (const T& entry : list)
            value(entry);
        return endArray();
    }

    /// key() and value() in one.
    template <class T>
    JsonWriter& member(std::string_view name, const T& content)
    {
        key(name);
        return value(content);
    }

    /// The document, with a line end.
    std::string text() const { return _text + "\n"; }

private:
    void separate();
    void open(char bracket);
    void close(char bracket);
    void newLine();
    void quote(std::string_view text);

    std::string _text;
    std::vector<bool> _hasMembers; ///< per open bracket
    bool _afterKey = false;
};

} // namespace meridyn::tool
