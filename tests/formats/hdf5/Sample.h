#pragma once

#include "Hdf5TestSupport.h"

namespace hdf5test {

/// Writes a case and a data file with something of every family, always the same: what the scripts and the files of
/// older versions are checked against.
bool writeSample(const std::string& caseFile, const std::string& dataFile, std::string& errors, int compression = 0);

} // namespace hdf5test
