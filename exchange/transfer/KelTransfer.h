#pragma once

#include "KelCompare.h"
#include "KelFormatFamily.h"
#include "KelLossReport.h"
#include "KelMeshKey.h"
#include "KelTypes.h"

#include <functional>
#include <string>
#include <vector>

namespace meridyn {

class KelConsumer;
class KelProvider;
class TransferRun;

/// How far a transfer is.
struct KelTransferProgress {
    std::string task;             ///< what is being copied: "nodes of faces", "variable 'p' of phase 'water'"
    unsigned64 elementsDone = 0;  ///< of this task
    unsigned64 elementsTotal = 0; ///< of this task; 0 when not known
    unsigned64 bytes = 0;         ///< copied since the transfer began
};

/// Why a transfer was not completed.
enum class KelTransferProblem : int {
    None,             ///< it was completed
    BadRequest,       ///< a mesh or time level was asked for that the source does not have
    SourceUnreadable, ///< the reader could not open its source, or posted an error while it read
    SourceBroken,     ///< the reader did not give what it promised
    TargetUnwritable, ///< the writer could not open or complete its target, or took no phases
    NoMemory,         ///< there was not enough memory
    Cancelled         ///< the progress function said so
};

/// Copies a case and a data set from any reader to any writer, through the frames alone.
///
/// The caller names the files on both (KelFileIO::setFile) and makes the switches it wants; the transfer starts and
/// ends reading and writing. Bulk arrays go zone by zone in chunks, so that memory stays bounded whatever the size of
/// the mesh. Reader and writer are not owned and must live as long as the transfer.
///
/// Whole     all meshes, targets and partitions, all time levels and what lies at none, unless some were chosen.
///           Attributes go as the source stores them, whatever mapping files make of them; phases and variables keep
///           their ids; elements without values stay without.
/// Losses    what the source has and the target's families do not include is reported, zone by zone, name by name, and
///           so is everything that the writer refuses, every error that it posts (taken out of its message store), what
///           the reader's KelSourceLedger says was not read, or that it has none; a target without time levels gets the
///           last of them; with verify, also what comes back from the target otherwise than it was.
/// Failure   false, with problem() telling why; the writer's endWriting is then not asked, so that a format which
///           completes its files there leaves none. An error that the reader stores on the way is a failure, since what
///           could not be read looks like what is not there; errors from before are dropped.
class KEL_API KelTransfer {
public:
    /// Tells how far the transfer is; false cancels it.
    using Progress = std::function<bool(const KelTransferProgress&)>;

    /// Copies from a reader to a writer; nothing happens yet.
    KelTransfer(KelProvider& source, KelConsumer& target);

    /// Families that the target carries, from its format's description; all of them unless set.
    void setTargetFamilies(KelFormatFamilies families);

    /// Asked after each chunk and at the start of each task.
    void setProgress(Progress progress);

    /// Size of the chunks, in values of 8 bytes; at least one element is copied at a time. Default 524288 (4 MiB).
    void setChunkSize(unsigned64 values);

    /// Copies only these meshes; all when the list is empty, as by default. A mesh that the source does not have is a
    /// failure.
    void setMeshes(const std::vector<KelMeshKey>& meshes);

    /// Copies only these time levels, and not what lies at none; all when the list is empty, as by default. A level
    /// that the source does not have is a failure.
    void setTimeLevels(const std::vector<int>& levels);

    /// Copies the meshes and everything that belongs to the case.
    bool copyCase();

    /// Copies the solution, with the zones that its values belong to: those of the case where the reader has one.
    bool copyData();

    /// Reads the target back through a reader of its format, whose files the caller has named, and adds what differs to
    /// the losses. Meshes and time levels that were not chosen are no losses.
    bool verify(KelProvider& readBack, const KelCompareOptions& options = {});

    /// What was lost so far.
    const KelLossReport& losses() const;

    /// Why the last operation gave false, in words; empty otherwise.
    const std::string& problem() const;

    /// Why the last operation gave false.
    KelTransferProblem problemKind() const;

    /// Whether the progress function cancelled the last operation.
    bool wasCancelled() const;

private:
    template <class Copy>
    bool run(KelDataClass dataClass, const Copy& copy);
    template <class Copy>
    void forMeshes(TransferRun& run, KelDataClass dataClass, const Copy& copy);
    std::vector<KelMeshKey> wantedMeshes(TransferRun& run, KelDataClass dataClass) const;
    void fail(KelTransferProblem kind, const std::string& text);
    bool isLeftOut(const KelDifference& difference) const;

    KelProvider& _source;
    KelConsumer& _target;
    KelFormatFamilies _targetFamilies = allFormatFamilies;
    Progress _progress;
    unsigned64 _chunkSize = 524288;
    std::vector<KelMeshKey> _meshes;
    std::vector<int> _timeLevels;
    KelLossReport _losses;
    std::string _problem;
    KelTransferProblem _problemKind = KelTransferProblem::None;
};

} // namespace meridyn
