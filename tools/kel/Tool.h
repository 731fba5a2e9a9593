#pragma once

namespace meridyn::tool {

/// The tool: arguments in, text and exit code out.
int run(int argc, const char* const* argv);

} // namespace meridyn::tool
