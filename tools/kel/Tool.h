#pragma once

#include <string>
#include <vector>

namespace meridyn::tool {

/// Runs the tool with the arguments of a process; gives its exit code, see ExitCode.
int run(int argc, const char* const* argv);

/// The names of all commands, in the order of the help.
std::vector<std::string> commandNames();

} // namespace meridyn::tool
