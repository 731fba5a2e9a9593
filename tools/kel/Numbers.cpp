#include "Numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fmt/format.h>

namespace meridyn::tool {

std::string grouped(unsigned64 number)
{
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, ",");
    }
    return text;
}

template <class... Precision>
static std::string numberText(double value, Precision... precision)
{
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, precision...);
    return std::string(buffer.data(), end.ptr);
}

std::string shortNumber(double value, int digits)
{
    const std::string exact = exactNumber(value);
    const std::string rounded = numberText(value, std::chars_format::general, digits);
    return exact.size() <= rounded.size() ? exact : rounded;
}

std::string exactNumber(double value)
{
    return numberText(value);
}

std::string byteText(double bytes)
{
    if (!(bytes >= 1000.0))
        return fmt::format("{:.0f} B", bytes);
    const char* unit = "kMGTPE";
    for (bytes /= 1000.0; bytes >= 999.95 && unit[1] != '\0'; bytes /= 1000.0)
        ++unit;
    return fmt::format("{:.1f} {}B", bytes, *unit);
}

std::string durationText(double seconds)
{
    const auto whole = static_cast<unsigned64>(std::llround(std::fmin(std::fmax(seconds, 0.0), 3.6e8)));
    const unsigned64 hours = whole / 3600;
    return hours > 0 ? fmt::format("{}:{:02}:{:02}", hours, whole / 60 % 60, whole % 60)
                     : fmt::format("{}:{:02}", whole / 60, whole % 60);
}

std::string counted(unsigned64 count, std::string_view one, std::string_view many)
{
    return fmt::format("{} {}", grouped(count), count == 1 ? one : many);
}

std::size_t utf8Length(std::string_view text)
{
    if (text.empty())
        return 0;
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return 1;
    const std::size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                               : lead >> 4 == 0xE             ? 3
                               : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                              : 0;
    if (length == 0 || text.size() < length)
        return 0;
    for (std::size_t at = 1; at < length; ++at)
        if (byte(at) >> 6 != 2)
            return 0;
    // Overlong forms, surrogates and what lies beyond the last character.
    if ((lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xED && byte(1) > 0x9F) || (lead == 0xF0 && byte(1) < 0x90) ||
        (lead == 0xF4 && byte(1) > 0x8F))
        return 0;
    return length;
}

std::string printable(std::string_view text)
{
    std::string shown;
    while (!text.empty()) {
        std::size_t length = utf8Length(text);
        const auto byte = static_cast<unsigned char>(text[0]);
        // C0 and DEL; C1 in its two bytes steers terminals as well.
        const bool steers =
            byte < 0x20 || byte == 0x7F || (length == 2 && byte == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
        if (length == 0 || steers) {
            length = length == 0 ? 1 : length;
            for (const char c : text.substr(0, length))
                shown += fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
        } else
            shown += text.substr(0, length);
        text.remove_prefix(length);
    }
    return shown;
}

std::size_t columns(std::string_view text)
{
    std::size_t count = 0;
    for (const char c : text)
        if ((static_cast<unsigned char>(c) & 0xC0) != 0x80)
            ++count;
    return count;
}

} // namespace meridyn::tool
