#include "RareText.h"

namespace arbor::RareText {

const std::string& get(const std::unique_ptr<std::string>& text)
{
    static const std::string& empty = *new std::string;
    return text == nullptr ? empty : *text;
}

void set(std::unique_ptr<std::string>& text, const std::string& value)
{
    auto copy = value.empty() ? nullptr : std::make_unique<std::string>(value); // value may be the old text itself
    text = std::move(copy);
}

} // namespace arbor::RareText
