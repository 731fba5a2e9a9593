#include "XmlText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace arbor::xml {

namespace {

bool isCodePoint(std::uint32_t code)
{
    if (code < 0x20)
        return code == '\t' || code == '\n' || code == '\r';
    return code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code <= 0x10FFFF);
}

/// Length that the first byte of a sequence announces, and the bits that it carries; 0 for a byte that starts none.
std::size_t sequenceLength(unsigned char first, std::uint32_t& bits)
{
    if (first >= 0xC2 && first <= 0xDF) {
        bits = first & 0x1F;
        return 2;
    }
    if (first >= 0xE0 && first <= 0xEF) {
        bits = first & 0x0F;
        return 3;
    }
    if (first >= 0xF0 && first <= 0xF4) {
        bits = first & 0x07;
        return 4;
    }
    return 0;
}

/// Eight bytes of text at a time, for the passes that mostly find nothing.
namespace word {

constexpr std::size_t size = sizeof(std::uint64_t);

constexpr std::uint64_t repeated(unsigned char byte)
{
    return byte * (~std::uint64_t(0) / 0xFF);
}

constexpr std::uint64_t highBits = repeated(0x80);

std::uint64_t load(const char* bytes)
{
    std::uint64_t word;
    std::memcpy(&word, bytes, size);
    return word;
}

/// Not 0 when a byte is below 0x20 or above 0x7F. The lowest bit that is set belongs to the lowest such byte.
std::uint64_t outsideAscii(std::uint64_t word)
{
    return (word | (word - repeated(0x20))) & highBits;
}

/// Not 0 when a byte is that one.
std::uint64_t holds(std::uint64_t word, char byte)
{
    const std::uint64_t difference = word ^ repeated(static_cast<unsigned char>(byte));
    return (difference - repeated(0x01)) & ~difference & highBits;
}

/// Number of bytes in front of the first one that outsideAscii() marks.
std::size_t plainCount(std::uint64_t marks)
{
    if constexpr (std::endian::native == std::endian::little)
        return static_cast<std::size_t>(std::countr_zero(marks)) / 8;
    else
        return 0;
}

} // namespace word

/// Bytes of an attribute's value that do not stand for themselves when it is read, or may not stand there.
constexpr auto specialBytes = [] {
    std::array<bool, 256> table{};
    for (const char c : {'&', '\\', '<', '\t', '\n', '\r'})
        table[static_cast<unsigned char>(c)] = true;
    return table;
}();

bool isSpecial(char c)
{
    return specialBytes[static_cast<unsigned char>(c)];
}

bool mayWordHoldSpecial(const char* bytes)
{
    const std::uint64_t loaded = word::load(bytes);
    const std::uint64_t controls = (loaded - word::repeated(0x20)) & ~loaded & word::highBits;
    return (controls | word::holds(loaded, '&') | word::holds(loaded, '\\') | word::holds(loaded, '<')) != 0;
}

/// Whether any byte is special. May also say so of a control character, which is none.
bool mayHoldSpecial(std::string_view text)
{
    if (text.size() < word::size)
        return std::any_of(text.begin(), text.end(), isSpecial);
    const char* last = text.data() + text.size() - word::size; // overlaps the word before it
    for (const char* bytes = text.data(); bytes < last; bytes += word::size)
        if (mayWordHoldSpecial(bytes))
            return true;
    return mayWordHoldSpecial(last);
}

void appendUtf8(std::string& out, std::uint32_t code)
{
    const auto put = [&out](std::uint32_t byte) { out += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80)
        return put(code);
    if (code < 0x800) {
        put(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            put(0xE0 | (code >> 12));
        } else {
            put(0xF0 | (code >> 18));
            put(0x80 | ((code >> 12) & 0x3F));
        }
        put(0x80 | ((code >> 6) & 0x3F));
    }
    put(0x80 | (code & 0x3F));
}

/// What XML wants for a character inside of quotes; null when it may stand there as it is.
const char* referenceFor(char c)
{
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    case '\\':
        return "\\\\";
    default:
        return nullptr;
    }
}

void appendByte(std::string& out, char byte)
{
    constexpr char digits[] = "0123456789ABCDEF";
    const auto value = static_cast<unsigned char>(byte);
    out += "\\x";
    out += digits[value >> 4];
    out += digits[value & 15];
}

/// Appends the character of "#10", "#xA" or "lt".
bool appendReference(std::string& out, std::string_view name)
{
    struct Named {
        std::string_view name;
        char character;
    };
    constexpr Named known[] = {{"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
    for (const Named& entry : known)
        if (entry.name == name) {
            out += entry.character;
            return true;
        }
    if (name.size() < 2 || name[0] != '#')
        return false;
    const bool isHex = name[1] == 'x';
    name.remove_prefix(isHex ? 2 : 1);
    std::uint32_t code = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), code, isHex ? 16 : 10);
    if (error != std::errc() || end != name.data() + name.size() || !isCodePoint(code))
        return false;
    appendUtf8(out, code);
    return true;
}

bool resolveReferences(std::string_view value, std::string& text)
{
    for (std::size_t i = 0; i < value.size(); ++i) {
        const char c = value[i];
        if (c == '<')
            return false;
        if (c == '&') {
            const std::size_t end = value.find(';', i);
            if (end == std::string_view::npos || !appendReference(text, value.substr(i + 1, end - i - 1)))
                return false;
            i = end;
        } else if (c == '\r' && i + 1 < value.size() && value[i + 1] == '\n') {
            continue; // one line break, so one blank
        } else {
            text += c == '\t' || c == '\n' || c == '\r' ? ' ' : c;
        }
    }
    return true;
}

bool resolveEscapes(const std::string& text, std::string& bytes)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            bytes += text[i];
        } else if (text.compare(i, 2, "\\\\") == 0) {
            bytes += '\\';
            ++i;
        } else if (text.compare(i, 2, "\\x") == 0 && i + 4 <= text.size()) {
            unsigned char byte = 0;
            const char* digits = text.data() + i + 2;
            if (std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2)
                return false;
            bytes += static_cast<char>(byte);
            i += 3;
        } else {
            return false;
        }
    }
    return true;
}

} // namespace

std::size_t characterLength(std::string_view text)
{
    const auto first = static_cast<unsigned char>(text.front());
    if (first < 0x80)
        return isCodePoint(first) ? 1 : 0;
    std::uint32_t code = 0;
    const std::size_t length = sequenceLength(first, code);
    if (length == 0 || text.size() < length)
        return 0;
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    const bool isOverlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    return !isOverlong && isCodePoint(code) ? length : 0;
}

bool isCharacters(std::string_view text)
{
    while (!text.empty()) {
        if (text.size() >= word::size) {
            const std::uint64_t marks = word::outsideAscii(word::load(text.data()));
            text.remove_prefix(marks == 0 ? word::size : word::plainCount(marks));
            if (marks == 0)
                continue;
        }
        const std::size_t length = characterLength(text);
        if (length == 0)
            return false;
        text.remove_prefix(length);
    }
    return true;
}

void appendEscaped(std::string& out, std::string_view bytes)
{
    std::size_t runStart = 0; // bytes from here on may stand as they are
    std::size_t i = 0;
    while (i < bytes.size()) {
        const char* reference = referenceFor(bytes[i]);
        const std::size_t length = reference != nullptr ? 0 : characterLength(bytes.substr(i));
        if (length > 0) {
            i += length;
            continue;
        }
        out.append(bytes, runStart, i - runStart);
        if (reference != nullptr)
            out += reference;
        else
            appendByte(out, bytes[i]);
        runStart = ++i;
    }
    out.append(bytes, runStart, bytes.size() - runStart);
}

bool unescape(std::string_view value, std::string& bytes)
{
    bytes.clear();
    if (!mayHoldSpecial(value)) {
        bytes.assign(value);
        return true;
    }
    std::string text;
    return resolveReferences(value, text) && resolveEscapes(text, bytes);
}

} // namespace arbor::xml
