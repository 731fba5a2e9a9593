#pragma once

#include "Hdf5TestSupport.h"

#include <functional>

namespace hdf5test {

/// Writes a data file with one time level, or adds one to it: a field on the two cells, and a set.
bool addLevel(Writer& writer, const std::string& path, int level, bool appends);

/// All levels of such a file whose values are those that addLevel writes; nothing when the file cannot be read. A level
/// with other values is a failure of the test.
std::vector<int> readableLevels(const std::string& path);

/// Runs work in a process of its own that may die on the way; gives whether it ended by itself with 0.
bool inChild(const std::function<int()>& work);

} // namespace hdf5test
