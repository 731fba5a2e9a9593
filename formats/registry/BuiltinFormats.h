#pragma once

#include "KelFormat.h"

#include <vector>

namespace meridyn {

/// Our own formats, in the order in which they are asked to recognise a file.
std::vector<KelFormat> builtinFormats();

} // namespace meridyn
