#include "Progress.h"

#include "Interrupt.h"
#include "KelProvider.h"
#include "Numbers.h"

#include <algorithm>

namespace meridyn::tool {

Progress::Progress(Terminal& terminal) : _terminal(terminal)
{}

Progress::~Progress()
{
    finish();
}

void Progress::finish()
{
    _terminal.showProgress("");
}

void Progress::setTotal(double bytes)
{
    _total = bytes;
    _start = Clock::now();
}

double Progress::seconds() const
{
    return std::chrono::duration<double>(Clock::now() - _start).count();
}

/// Ten lines a second are enough for the eye, and cost nothing.
bool Progress::isDue()
{
    if (!_terminal.showsProgress() || Clock::now() < _next)
        return false;
    _next = Clock::now() + std::chrono::milliseconds(100);
    return true;
}

bool Progress::operator()(const KelTransferProgress& state)
{
    if (isDue()) {
        const auto bytes = static_cast<double>(state.bytes);
        const double rate = seconds() > 0.0 ? bytes / seconds() : 0.0;
        // The total is an estimate, so the job is never shown as complete before it is.
        const double share = _total > 0.0 ? std::min(bytes / _total, 0.99) : 0.0;
        const double left = rate > 0.0 && _total > bytes ? (_total - bytes) / rate : -1.0;
        _terminal.showProgress(line(state.task, share, rate, left, _terminal.width()));
    }
    return !wasInterrupted();
}

bool Progress::operator()(const std::string& task, unsigned64 done, unsigned64 total)
{
    if (isDue()) {
        const double share = total > 0 ? static_cast<double>(done) / static_cast<double>(total) : 0.0;
        const double left = share > 0.0 ? seconds() * (1.0 - share) / share : -1.0;
        _terminal.showProgress(line(task, share, 0.0, left, _terminal.width()));
    }
    return !wasInterrupted();
}

std::string Progress::line(const std::string& task, double share, double bytesPerSecond, double secondsLeft, int width)
{
    std::string figures = fmt::format(" {:3.0f}%", 100.0 * share);
    if (bytesPerSecond > 0.0)
        figures += fmt::format("  {}/s", byteText(bytesPerSecond));
    if (secondsLeft >= 0.0)
        figures += fmt::format("  {} left", durationText(secondsLeft));
    // One column stays free: a full line would wrap.
    const int room = width - 1 - static_cast<int>(figures.size());
    std::string name = printable(task).substr(0, static_cast<std::size_t>(std::max(room, 0)));
    const int cells = std::min(room - 4 - static_cast<int>(name.size()), 30);
    std::string bar;
    if (cells >= 5) {
        const auto filled = static_cast<std::size_t>(share * cells);
        bar = "  [" + std::string(filled, '=') + std::string(static_cast<std::size_t>(cells) - filled, ' ') + "]";
    }
    return (name + bar + figures).substr(0, static_cast<std::size_t>(std::max(width - 1, 0)));
}

// ---- estimate -----------------------------------------------------------------------------------------------------

static double idBytes(short count)
{
    return count > 0 ? 8.0 * count : 0.0;
}

/// Bytes of one element of a zone, as its first one has them.
static double bytesPerElement(const KelProvider& reader, KelZoneCategory category, unsigned64 first, double dimension)
{
    switch (category) {
    case KEL_NODE_ZONE:
        return 8.0 * dimension;
    case KEL_EDGE_ZONE:
        return idBytes(reader.getNodeCountForEdge(first));
    case KEL_FACE_ZONE:
        return idBytes(reader.getNodeCountForFace(first)) + 16.0;
    case KEL_CELL_ZONE: {
        unsigned64 node = 0;
        const bool hasNodes = reader.getNodeIdsForCell(first, &node, 1) == 1;
        return 4.0 + (hasNodes ? idBytes(reader.getNodeCountForCell(first)) : 0.0);
    }
    }
    return 0.0;
}

/// Bytes of all elements of a category in the mesh, and how many elements there are.
static double caseBytes(const KelProvider& reader, KelZoneCategory category, double dimension, double& elements)
{
    std::vector<int> zones;
    reader.getZoneIds(category, zones);
    double bytes = 0.0;
    for (const int zone : zones) {
        unsigned64 first = 0, count = 0;
        reader.getZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, first);
        reader.getZoneSizeInfo(zone, KEL_ZONE_ELEMENT_COUNT, count);
        elements += static_cast<double>(count);
        if (count > 0)
            bytes += static_cast<double>(count) * bytesPerElement(reader, category, first, dimension);
    }
    return bytes;
}

double estimateBytes(const KelProvider& reader, KelDataClass dataClass, std::size_t levels)
{
    unsigned64 dimension = 0;
    reader.getMeshSize(KEL_MESH_DIMENSION, dimension);
    std::vector<short> phases;
    reader.getPhaseIds(phases);
    double bytes = 0.0;
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
        double elements = 0.0;
        const double mesh = caseBytes(reader, category, static_cast<double>(dimension), elements);
        const auto variables = static_cast<double>(reader.getPhaseVariableCountOfCategory(category) * phases.size() *
                                                   std::max<std::size_t>(levels, 1));
        bytes += dataClass == KEL_CASE ? mesh : 8.0 * elements * variables;
    }
    return bytes;
}

} // namespace meridyn::tool
