#pragma once

#include "KelTypes.h"

#include <nlohmann/json.hpp>
#include <string>

namespace meridyn::tool {

/// A JSON value that keeps the order of its members.
using Json = nlohmann::ordered_json;

/// A number, or its text where JSON has no number: "inf", "-inf", "nan".
Json jsonNumber(double value);

/// A document as the tool prints it: indented, with a line break at the end. Bytes of a text that are no UTF-8 become
/// the replacement character.
std::string documentText(const Json& document);

} // namespace meridyn::tool
