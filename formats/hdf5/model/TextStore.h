#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace meridyn::hdf5 {

class Hdf5File;

/// Settings: one group per settings group below "settings", one text attribute per key, in the order written.
/// @{
using TextPairs = std::vector<std::pair<std::string, std::string>>;
void writeSettings(hid_t root, const std::string& group, const TextPairs& pairs, bool replaces);
std::optional<std::string> readSetting(hid_t root, const std::string& group, const std::string& key);
void removeSetting(hid_t root, const std::string& group, const std::string& key); ///< if it is there
std::vector<std::string> settingsKeys(hid_t root, const std::string& group);
std::vector<std::string> settingsGroups(hid_t root);
/// @}

/// Log: titles and texts one after the other in the array "log", their lengths in "log_lengths" (title, text).
/// @{
void writeLog(Hdf5File& file, hid_t root, const TextPairs& entries);
TextPairs readLog(Hdf5File& file, hid_t root);
/// @}

/// A text of any length as an array of bytes.
/// @{
void writeLongText(Hdf5File& file, hid_t group, const std::string& name, const std::string& text);
std::optional<std::string> readLongText(Hdf5File& file, hid_t group, const std::string& name);
/// @}

} // namespace meridyn::hdf5
