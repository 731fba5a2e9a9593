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

void KelTransfer::setMeshes(const std::vector<KelMeshKey>& meshes)
{
    _meshes = meshes;
}

void KelTransfer::setTimeLevels(const std::vector<int>& levels)
{
    _timeLevels = levels;
}

void KelTransfer::fail(KelTransferProblem kind, const std::string& text)
{
    _problemKind = kind;
    _problem = text;
}

namespace {

/// Notes what the reader says it did not hand over of the open data class.
void noteLedger(TransferRun& run, KelDataClass dataClass)
{
    if (run.ledger == nullptr)
        return run.note(KEL_FAMILY_COUNT, KelLossReason::NotTold, "the source",
                        "its reader does not tell what it leaves out");
    for (const KelSourceItem& item : run.ledger->notHandedOver(dataClass))
        run.note(item.family, KelLossReason::NotRead, item.place,
                 "not read: " + notReadName(item.reason) + (item.text.empty() ? "" : " (" + item.text + ")"));
}

/// Opens the target, or stops the transfer with the writer's own words.
void startTarget(TransferRun& run, KelDataClass dataClass)
{
    if (!run.target.startWriting(dataClass))
        throw TransferStopped(KelTransferProblem::TargetUnwritable,
                              storedErrors(run.target, "the writer could not open the target"));
}

/// Values belong to zones, which some files of data do not hold: then the case is looked at.
void knowZones(TransferRun& run)
{
    if (!describeMesh(run.source).zones.empty())
        return;
    if (run.source.startReading(KEL_CASE))
        run.source.endReading(KEL_CASE);
    else
        run.source.getErrors(false, true); // data without a case are no mistake
}

} // namespace

template <class Copy>
bool KelTransfer::run(KelDataClass dataClass, const Copy& copy)
{
    fail(KelTransferProblem::None, "");
    _source.getErrors(false, true); // those of this run count
    _target.getErrors(false, true);
    if (!_source.startReading(dataClass)) {
        fail(KelTransferProblem::SourceUnreadable, storedErrors(_source, "the reader could not open the source"));
        return false;
    }
    try {
        TransferRun run(_source, _target, _targetFamilies, _progress, _chunkSize, _losses);
        copy(run);
        noteLedger(run, dataClass);
        if (_source.hasError()) // what it gave is not all that is there
            throw TransferStopped(KelTransferProblem::SourceUnreadable, storedErrors(_source, ""));
        if (!_target.endWriting(dataClass))
            fail(KelTransferProblem::TargetUnwritable,
                 storedErrors(_target, "the writer could not complete the target"));
    } catch (const TransferStopped& stopped) {
        fail(stopped.problem, stopped.what());
    } catch (const std::bad_alloc&) {
        fail(KelTransferProblem::NoMemory, "not enough memory");
    } catch (const std::length_error&) { // a reader promised more values than there can be
        fail(KelTransferProblem::NoMemory, "not enough memory");
    }
    _source.endReading(dataClass);
    return _problem.empty();
}

/// The meshes to copy. A target that takes one only gets the one that the reader has opened.
std::vector<KelMeshKey> KelTransfer::wantedMeshes(TransferRun& run, KelDataClass dataClass) const
{
    std::vector<KelMeshKey> keys = meshesOf(run.source, dataClass);
    for (const KelMeshKey& wanted : _meshes)
        if (std::find(keys.begin(), keys.end(), wanted) == keys.end())
            throw TransferStopped(KelTransferProblem::BadRequest, "the source has no " + meshLabel(wanted));
    if (!_meshes.empty())
        std::erase_if(keys, [this](const KelMeshKey& key) {
            return std::find(_meshes.begin(), _meshes.end(), key) == _meshes.end();
        });
    if (keys.size() > 1 && !run.takes(KEL_FAMILY_MESHES)) {
        const KelMeshKey chosen = chosenMesh(run.source);
        const bool isListed = std::find(keys.begin(), keys.end(), chosen) != keys.end();
        const KelMeshKey kept = isListed ? chosen : keys.front();
        for (const KelMeshKey& key : keys)
            if (!(key == kept))
                run.carries(KEL_FAMILY_MESHES, meshLabel(key));
        keys = {kept};
    }
    return keys;
}

/// Calls `copy(isFirst)` for each mesh to copy, chosen and declared on both sides.
template <class Copy>
void KelTransfer::forMeshes(TransferRun& run, KelDataClass dataClass, const Copy& copy)
{
    bool isFirst = true;
    for (const KelMeshKey& key : wantedMeshes(run, dataClass)) {
        if (!isFirst)
            run.target.writeMeshSize(); // completes the mesh before
        noteLedger(run, dataClass);     // choosing a mesh opens it anew
        chooseMesh(run, dataClass, key);
        if (dataClass == KEL_DATA)
            knowZones(run);
        copyMesh(run, key);
        copy(isFirst);
        isFirst = false;
    }
}

bool KelTransfer::copyCase()
{
    return run(KEL_CASE, [this](TransferRun& run) {
        forMeshes(run, KEL_CASE, [&run](bool isFirst) {
            if (isFirst)
                startTarget(run, KEL_CASE);
            copyArrays(run);
            copyInterfaces(run);
            copyLocalIds(run);
            copyCaseSections(run);
            copySets(run, KEL_CASE);
            copyLocations(run, KEL_CASE); // some formats keep them with each mesh
        });
        copySettings(run, KEL_CASE);
    });
}

bool KelTransfer::copyData()
{
    return run(KEL_DATA, [this](TransferRun& run) {
        forMeshes(run, KEL_DATA, [this, &run](bool isFirst) {
            const std::vector<int>& known = _source.getTimeLevels();
            for (const int level : _timeLevels)
                if (std::find(known.begin(), known.end(), level) == known.end())
                    throw TransferStopped(KelTransferProblem::BadRequest,
                                          "the source has no time level " + std::to_string(level));
            if (isFirst)
                startTarget(run, KEL_DATA);
            copySolution(run, _timeLevels);
        });
        copyLocations(run, KEL_DATA);
        copySettings(run, KEL_DATA);
    });
}

/// Whether a difference is a time level that was not to be copied.
bool KelTransfer::isLeftOut(const KelDifference& difference) const
{
    return !_timeLevels.empty() && difference.family == KEL_FAMILY_TIME_LEVELS && difference.second.empty() &&
           difference.level &&
           std::find(_timeLevels.begin(), _timeLevels.end(), *difference.level) == _timeLevels.end();
}

bool KelTransfer::verify(KelProvider& readBack, const KelCompareOptions& options)
{
    KelCompare compare(_source, readBack, options);
    const bool isDone = compare.run();
    fail(isDone ? KelTransferProblem::None : KelTransferProblem::SourceUnreadable, compare.problem());
    if (!isDone)
        return false;
    const auto orNothing = [](const std::string& text) { return text.empty() ? std::string("nothing") : text; };
    for (const KelDifference& difference : compare.differences())
        if (!isLeftOut(difference)) {
            KelLoss loss;
            loss.family = difference.family;
            loss.reason = KelLossReason::Changed;
            loss.item = difference.item;
            loss.text = "changed: " + orNothing(difference.first) + " became " + orNothing(difference.second);
            loss.zone = difference.zone;
            if (difference.level)
                loss.levels = {*difference.level};
            _losses.add(loss);
        }
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

KelTransferProblem KelTransfer::problemKind() const
{
    return _problemKind;
}

bool KelTransfer::wasCancelled() const
{
    return _problemKind == KelTransferProblem::Cancelled;
}

} // namespace meridyn
