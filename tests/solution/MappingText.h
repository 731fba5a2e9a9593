#pragma once

#include <initializer_list>
#include <string>
#include <utility>

/// Pieces of mapping files.
using Pairs = std::initializer_list<std::pair<const char*, const char*>>;

inline std::string attributesText(Pairs pairs)
{
    std::string text;
    for (const auto& [key, value] : pairs)
        text += std::string("<attribute key=\"") + key + "\" value=\"" + value + "\"/>\n";
    return text;
}

inline std::string variableText(Pairs pairs)
{
    return "<variable>\n" + attributesText(pairs) + "</variable>\n";
}

inline std::string mappingText(Pairs header, const std::string& variables)
{
    return "<?xml version=\"1.0\"?>\n<mapping>\n" + attributesText(header) + "<contents>\n" + variables +
           "</contents>\n</mapping>\n";
}
