#pragma once

#include "KelTransfer.h"
#include "Terminal.h"

#include <chrono>
#include <string>

namespace meridyn {
class KelProvider;
}

namespace meridyn::tool {

/// Shows on a terminal how far a job is, how fast it goes and how long it will take; looks out for interrupts.
class Progress {
public:
    explicit Progress(Terminal& terminal);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// The bytes that the whole job will move, from here on; 0 when that is not known.
    void setTotal(double bytes);

    /// Shows how far a transfer is. False when the user interrupted the job.
    bool operator()(const KelTransferProgress& state);

    /// Shows how far a job without bytes is. False when the user interrupted it.
    bool operator()(const std::string& task, unsigned64 done, unsigned64 total);

    /// Removes the line.
    void finish();

    /// The line for a state: task, bar, share, rate and time left in `width` columns at most.
    static std::string line(const std::string& task, double share, double bytesPerSecond, double secondsLeft,
                            int width);

private:
    using Clock = std::chrono::steady_clock;

    bool isDue();
    double seconds() const;

    Terminal& _terminal;
    Clock::time_point _start = Clock::now();
    Clock::time_point _next = _start;
    double _total = 0.0;
};

/// About how many bytes a transfer of a data class will move, from the sizes of an open reader and a look at single
/// elements; good enough for a time left. Leaves the state of the reader alone: all phases count like the active one.
double estimateBytes(const KelProvider& reader, KelDataClass dataClass, std::size_t levels);

} // namespace meridyn::tool
