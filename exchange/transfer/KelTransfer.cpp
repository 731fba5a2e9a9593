#include "KelTransfer.h"

#include "KelCompare.h"
#include "TransferRun.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <utility>

namespace meridyn {

KelTransfer::KelTransfer(KelProvider& source, KelConsumer& target) : _source(source), _target(target)
{}

void KelTransfer::setTargetFamilies(KelFormatFamilies families)
{
    _targetFamilies = families;
}

void KelTransfer::setProgress(Progress progress)
{
    _progress = std::move(progress);
}

void KelTransfer::setChunkSize(unsigned64 values)
{
    _chunkSize = std::max<unsigned64>(values, 1);
}

void KelTransfer::setTimeLevels(const std::vector<int>& levels)
{
    _timeLevels = levels;
}

template <class Copy>
bool KelTransfer::run(KelDataClass dataClass, const Copy& copy)
{
    _problem.clear();
    _cancelled = false;
    _source.getErrors(false, true); // those of this run count
    if (!_source.startReading(dataClass)) {
        _problem = storedErrors(_source, "the reader could not open the source");
        return false;
    }
    try {
        TransferRun run(_source, _target, _targetFamilies, _progress, _chunkSize, _losses);
        copy(run);
        if (_source.hasError()) // what it gave is not all that is there
            throw TransferStopped(storedErrors(_source, ""), false);
        if (!_target.endWriting(dataClass))
            _problem = storedErrors(_target, "the writer could not complete the target");
    } catch (const TransferStopped& stopped) {
        _problem = stopped.what();
        _cancelled = stopped.cancelled;
    } catch (const std::bad_alloc&) {
        _problem = "not enough memory";
    } catch (const std::length_error&) { // a reader promised more values than there can be
        _problem = "not enough memory";
    }
    _source.endReading(dataClass);
    return _problem.empty();
}

/// Opens the target, or stops the transfer with the writer's own words.
static void startTarget(TransferRun& run, KelDataClass dataClass)
{
    if (!run.target.startWriting(dataClass))
        throw TransferStopped(storedErrors(run.target, "the writer could not open the target"), false);
}

bool KelTransfer::copyCase()
{
    return run(KEL_CASE, [](TransferRun& run) {
        copyZones(run);
        startTarget(run, KEL_CASE);
        copyTopology(run);
        copyLocalIds(run);
        copyCaseSections(run);
        copySets(run, KEL_CASE);
        copyLocations(run);
        copySettings(run, KEL_CASE);
    });
}

bool KelTransfer::copyData()
{
    return run(KEL_DATA, [this](TransferRun& run) {
        const std::vector<int>& known = _source.getTimeLevels();
        for (const int level : _timeLevels)
            if (std::find(known.begin(), known.end(), level) == known.end())
                throw TransferStopped("the source has no time level " + std::to_string(level), false);
        startTarget(run, KEL_DATA);
        copySolution(run, _timeLevels.empty() ? known : _timeLevels);
        copySettings(run, KEL_DATA);
    });
}

/// Whether a difference is a time level that was not to be copied.
bool KelTransfer::isLeftOut(const KelDifference& difference) const
{
    const auto isOf = [&difference](int level) { return difference.item == "time level " + std::to_string(level); };
    return !_timeLevels.empty() && difference.family == formatFamilyName(KEL_FAMILY_TIME_LEVELS) &&
           difference.second.empty() && std::none_of(_timeLevels.begin(), _timeLevels.end(), isOf);
}

bool KelTransfer::verify(KelProvider& readBack, const KelCompareOptions& options)
{
    KelCompare compare(_source, readBack, options);
    _cancelled = false;
    const bool done = compare.run();
    _problem = compare.problem();
    if (!done)
        return false;
    for (const KelDifference& difference : compare.differences())
        if (!isLeftOut(difference))
            _losses.add(difference.family, difference.item,
                        "changed: " + (difference.first.empty() ? "nothing" : difference.first) + " became " +
                            (difference.second.empty() ? "nothing" : difference.second));
    return true;
}

const KelLossReport& KelTransfer::losses() const
{
    return _losses;
}

const std::string& KelTransfer::problem() const
{
    return _problem;
}

bool KelTransfer::wasCancelled() const
{
    return _cancelled;
}

} // namespace meridyn
