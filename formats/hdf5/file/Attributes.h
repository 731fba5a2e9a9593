#pragma once

#include "Hdf5Handle.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

/// @name Attributes of a group or data set
/// Texts are fixed-length UTF-8 strings of exactly their bytes, an empty one has no extent; numbers are 64-bit
/// integers, one or a list of them. Writing replaces. Reading gives nothing when there is no such attribute and throws
/// FormatError when it is of another kind. Names are as they stand in the file, see encodeName.
/// @{
void writeText(hid_t object, const std::string& name, const std::string& text);
void writeNumber(hid_t object, const std::string& name, std::int64_t value);
void writeNumbers(hid_t object, const std::string& name, const std::vector<std::int64_t>& values);

std::optional<std::string> readText(hid_t object, const std::string& name);
std::optional<std::int64_t> readNumber(hid_t object, const std::string& name);
std::optional<std::vector<std::int64_t>> readNumbers(hid_t object, const std::string& name);

void removeAttribute(hid_t object, const std::string& name); ///< one that is there
bool hasAttribute(hid_t object, const std::string& name);
std::vector<std::string> attributeNames(hid_t object); ///< in the order in which they were made
/// @}

} // namespace meridyn::hdf5
