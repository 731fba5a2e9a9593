#pragma once

#include <stdexcept>
#include <string>

namespace meridyn::tool {

/// How the tool ends; also what a script may rely on.
enum ExitCode : int {
    EXIT_GOOD = 0,      ///< done, and the answer is yes
    EXIT_NO = 1,        ///< done, and the answer is no: differs, fails a check, something was lost
    EXIT_COULD_NOT = 2, ///< not done: the reason is one line on standard error
    EXIT_NOT_ALL =
        3 ///< nothing speaks against it, but part of the model could not be looked at: the last line says which
};

/// Ends a command that could not do its work; the text says which file and why.
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Ends a command because the user interrupted it, after everything unfinished was removed.
struct Interrupted : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace meridyn::tool
