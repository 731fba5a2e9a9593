#pragma once

#include <memory>
#include <string>

/// A text that most entries do not have, kept as a pointer that is null while the text is empty.
namespace arbor::RareText {

const std::string& get(const std::unique_ptr<std::string>& text);
void set(std::unique_ptr<std::string>& text, const std::string& value);

} // namespace arbor::RareText
