#pragma once

#include "KelCompare.h"
#include "KelFormat.h"
#include "KelLossReport.h"
#include "KelTypes.h"

#include <functional>
#include <string>
#include <vector>

namespace meridyn {

class KelConsumer;
class KelProvider;

/// How far a transfer is.
struct KelTransferProgress {
    std::string task;             ///< what is being copied: "nodes of faces", "variable 'p'"
    unsigned64 elementsDone = 0;  ///< of this task
    unsigned64 elementsTotal = 0; ///< of this task; 0 when not known
    unsigned64 bytes = 0;         ///< copied since the transfer began
};

/// Copies a case and a data set from any reader to any writer, through the frames alone.
///
/// The caller names the files on both (KelFileIO::setFile) and makes the switches it wants; the transfer starts and
/// ends reading and writing. Bulk arrays go zone by zone in chunks, so that memory stays bounded whatever the size of
/// the mesh. Reader and writer are not owned and must live as long as the transfer.
///
/// Losses    what the source has and the target's families do not include is reported, zone by zone, name by name, and
///           so is everything that the writer refuses; a target without time levels gets the last of them; with verify,
///           also what comes back from the target otherwise than it was.
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

    /// Copies only these time levels; all when the list is empty, as by default. A level that the source does not have
    /// is a failure.
    void setTimeLevels(const std::vector<int>& levels);

    /// Copies the current mesh of the source and everything that belongs to the case.
    bool copyCase();

    /// Copies the solution. The zones must be known on both sides: the case has been copied or is open.
    bool copyData();

    /// Reads the target back through a reader of its format, whose files the caller has named, and adds what differs to
    /// the losses. Time levels that setTimeLevels left out are no losses.
    bool verify(KelProvider& readBack, const KelCompareOptions& options = {});

    /// What was lost so far.
    const KelLossReport& losses() const;

    /// Why the last operation gave false; empty otherwise.
    const std::string& problem() const;

    /// Whether the progress function cancelled the last operation.
    bool wasCancelled() const;

private:
    template <class Copy>
    bool run(KelDataClass dataClass, const Copy& copy);
    bool isLeftOut(const KelDifference& difference) const;

    KelProvider& _source;
    KelConsumer& _target;
    KelFormatFamilies _targetFamilies = allFormatFamilies;
    Progress _progress;
    unsigned64 _chunkSize = 524288;
    std::vector<int> _timeLevels;
    KelLossReport _losses;
    std::string _problem;
    bool _cancelled = false;
};

} // namespace meridyn
