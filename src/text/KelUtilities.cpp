#include "KelUtilities.h"

namespace meridyn::KelUtilities {

static const char whitespace[] = " \t\f\r\n\v";

static std::string trimmed(const std::string& token)
{
    const std::size_t first = token.find_first_not_of(whitespace);
    if (first == std::string::npos)
        return {};
    return token.substr(first, token.find_last_not_of(whitespace) - first + 1);
}

bool splitString(const std::string& text, std::vector<std::string>& tokens, bool trim, char delimiter)
{
    // The text may be one of the tokens, which move as the vector grows.
    const std::string copy = text; // NOLINT(performance-unnecessary-copy-initialization)
    std::size_t end = 0;
    for (std::size_t begin = 0; end != std::string::npos; begin = end + 1) {
        end = copy.find(delimiter, begin);
        std::string token = copy.substr(begin, end - begin); // to the end of the text when there is no more delimiter
        if (trim) {
            token = trimmed(token);
            if (token.empty())
                continue;
        }
        tokens.push_back(std::move(token));
    }
    return true;
}

void joinString(const std::vector<std::string>& parts, std::string& text, char delimiter, bool skipBlank,
                bool trailingDelimiter)
{
    for (const std::string& part : parts) {
        if (skipBlank && part.find_first_not_of(whitespace) == std::string::npos)
            continue;
        if (!text.empty())
            text += delimiter;
        text += part;
    }
    if (trailingDelimiter && !text.empty())
        text += delimiter;
}

std::string toString(bool value)
{
    return value ? "true" : "false";
}

} // namespace meridyn::KelUtilities
