#pragma once

#include "KelExport.h"

#include <functional>
#include <string>

namespace meridyn {

/// The stream for which a printed line is meant.
enum KelOutputStream : int {
    KEL_STANDARD_OUTPUT = 0, ///< warnings of KelBase, the trace of a bare writer, notices, dumps: nearly all there is
    KEL_STANDARD_ERROR       ///< the bare writer's refusal of a time level
};

/// Where the lines go that the library prints. Unless a program says otherwise, that is standard output and standard
/// error. Records (KelMessage) are not printed and have their own way, see KelMessageRegistrar.
///
///     KelOutput::redirect([](KelOutputStream, const std::string& line) { logFile << line << '\n'; });
///     KelOutput::silence();   // nothing is printed
///     KelOutput::reset();     // as in the beginning
///
/// One setting holds for the whole process, for all objects and threads. It may be changed at any time, by any thread.
/// Formats of this project print nothing by themselves; one from elsewhere takes part when it prints with
/// KelOutput::print.
namespace KelOutput {

/// Receives one line, without the line end. A name that holds line breaks keeps them, so there may be some inside.
///
/// Thread       It is called by the thread that prints, in the middle of the operation that prints, and by several
///              threads at once when several print: it guards what it shares.
/// May do       Anything with other objects, and ask the object that prints. It must not change or destroy that one.
///              It may call redirect, silence and reset.
/// Nested       What the library prints on the same thread while a callback runs goes to the streams, not to the
///              callback again.
/// Exceptions   What it throws ends there: the operation goes on, and the line goes to its stream after all, so that it
///              is not lost.
using Callback = std::function<void(KelOutputStream stream, const std::string& line)>;

/// Hands every line to a callback from now on; nothing is printed any more.
///
/// @param callback  an empty one is the same as reset()
/// @return what was set before, to be handed to redirect again: empty for the streams
///
/// A call that another thread has begun by then may still be running when this returns. The old callback, with all that
/// it holds, lives until the last such call has ended.
KEL_API Callback redirect(Callback callback);

/// Drops every line from now on.
///
/// @return as redirect() does
KEL_API Callback silence();

/// Prints every line to its stream from now on.
///
/// @return as redirect() does
KEL_API Callback reset();

/// Prints a line as the library does: to the callback, if one is set, else with a line end to its stream. For formats,
/// so that what they print can be redirected as well.
KEL_API void print(KelOutputStream stream, const std::string& line);

} // namespace KelOutput

} // namespace meridyn
