#include "TreeNames.h"

#include <charconv>

namespace meridyn::tree {

namespace {

const std::string levelPrefix = "level ";

} // namespace

std::string levelName(std::optional<int> level)
{
    return levelPrefix + (level ? std::to_string(*level) : "none");
}

std::optional<int> parseNumber(const std::string& text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

std::optional<int> parseLevelName(const std::string& name)
{
    return name.rfind(levelPrefix, 0) == 0 ? parseNumber(name.substr(levelPrefix.size())) : std::nullopt;
}

} // namespace meridyn::tree
