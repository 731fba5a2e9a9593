#pragma once

namespace meridyn::tool {

/// Notes SIGINT, SIGTERM and SIGHUP instead of dying of them, so that unfinished files can be removed. A second signal
/// ends the process at once.
void watchForInterrupts();

/// Whether one of the signals came.
bool wasInterrupted();

/// Ends the process by the signal that came, as its caller expects. Returns when none came.
void dieOfInterrupt();

} // namespace meridyn::tool
