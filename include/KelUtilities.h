#pragma once

#include "KelExport.h"

#include <string>
#include <vector>

namespace meridyn {

/// Lists of names as one delimited text and back, and a bool as text.
///
/// Whitespace is always these six bytes: blank, tab, form feed, carriage return, line feed, vertical tab. There is no
/// quoting or escaping. All is linear in the length of the text.
namespace KelUtilities {

/// Splits a text at every delimiter.
///
/// @param text       what to split; may be an element of `tokens`. An empty text has one token, an empty one, and
///                   so has the place behind a delimiter that ends the text
/// @param tokens     receives the tokens behind what it holds: it is not cleared
/// @param trim       cut whitespace off both ends of each token, and drop tokens of which nothing is left
/// @param delimiter  the byte between two tokens
/// @return           always true
KEL_API bool splitString(const std::string& text, std::vector<std::string>& tokens, bool trim, char delimiter);

/// Joins parts, unchanged, behind what `text` holds.
///
/// @param parts              the names, in order
/// @param text               receives them: it is not cleared. A delimiter goes before a part whenever the text holds
///                           something by then, what it held before the call included; so an empty first part leaves
///                           no trace
/// @param delimiter          the byte between two parts
/// @param skipBlank          pass over parts that are empty or only whitespace
/// @param trailingDelimiter  end a text that is not empty with one more delimiter, even if there are no parts
KEL_API void joinString(const std::vector<std::string>& parts, std::string& text, char delimiter, bool skipBlank,
                        bool trailingDelimiter);

/// "true" or "false".
KEL_API std::string toString(bool value);

} // namespace KelUtilities

} // namespace meridyn
