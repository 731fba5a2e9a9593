#pragma once

#include "exchange/common/Model.h"
#include "KelConsumer.h"
#include "KelFormatFamily.h"
#include "KelLossReport.h"
#include "KelProvider.h"
#include "KelTransfer.h"
#include "KelValueTypes.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace meridyn {

/// Ends a transfer from anywhere inside it; never leaves the library.
struct TransferStopped : std::runtime_error {
    TransferStopped(KelTransferProblem why, const std::string& text) : std::runtime_error(text), problem(why) {}
    KelTransferProblem problem;
};

/// What the parts of one transfer share: both ends, the mesh that is being copied, the chunk size, progress and losses.
class TransferRun {
public:
    TransferRun(KelProvider& from, KelConsumer& to, KelFormatFamilies families, KelTransfer::Progress ask,
                unsigned64 chunkValues, KelLossReport& report);

    /// Whether the target carries a family.
    bool takes(KelFormatFamily family) const { return (_families & formatFamily(family)) != 0; }

    /// Whether the target carries a family; if not, notes the item as lost.
    bool carries(KelFormatFamily family, const std::string& item);
    /// The same for a zone.
    bool carries(KelFormatFamily family, const KelZoneDescription& zone);

    /// Notes a loss at the current time level, if any.
    void note(KelFormatFamily family, KelLossReason reason, const std::string& item, const std::string& text,
              std::optional<int> zone = {});

    /// Notes that the writer refused something.
    void refused(KelFormatFamily family, const std::string& item);

    /// Notes the errors that the writer has posted since this was called last, and takes them out of its message store:
    /// they are about what was handed over in between.
    void settle(KelFormatFamily family, const std::string& item);

    /// Copies values whose type the reader tells: calls `copy` with a null pointer to it. Without a type they are lost.
    template <class Copy>
    void withType(KelFormatFamily family, const std::string& item, KelPlainDataType type, const Copy& copy)
    {
        if (!visitPlainType(type, copy))
            note(family, KelLossReason::NotGiven, item, "the reader gives no type");
    }

    /// Tells how far a task is; throws when the transfer is cancelled.
    void tell(const std::string& task, unsigned64 done, unsigned64 total, unsigned64 newBytes);

    /// Calls `copy(firstId, lastId)` for each piece of a range that needs no more than a chunk.
    template <class Copy>
    void forChunks(const std::string& task, const KelIdRange& range, unsigned64 valuesPerElement,
                   unsigned64 bytesPerValue, const Copy& copy)
    {
        const unsigned64 perElement = std::max<unsigned64>(valuesPerElement, 1);
        const unsigned64 step = std::max<unsigned64>(chunkSize / perElement, 1);
        const unsigned64 total = range.last - range.first + 1;
        for (unsigned64 done = 0; done < total;) {
            const unsigned64 count = std::min(total - done, step);
            copy(range.first + done, range.first + done + count - 1);
            done += count;
            tell(task, done, total, count * perElement * bytesPerValue);
        }
    }

    KelProvider& source;
    KelConsumer& target;
    const KelSourceLedger* const ledger; ///< of the source; null when it keeps none
    const unsigned64 chunkSize;          ///< in values
    KelMeshDescription mesh;             ///< the one that is being copied
    std::optional<int> level;            ///< the time level that is being copied

private:
    KelFormatFamilies _families;
    KelTransfer::Progress _ask;
    KelLossReport& _report;
    unsigned64 _bytes = 0;
};

/// Whether a writer that stores single precision makes any of these values infinite.
bool overflows(const TransferRun& run, const double* values, unsigned64 count);

/// What a loss report says then.
constexpr const char* overflowText = "changed: values beyond the range of single precision became infinite";

/// Stops a transfer because a reader gave fewer or more values of something than it promised.
[[noreturn]] void stopShort(const std::string& what, unsigned64 found, unsigned64 expected);

/// Stops a transfer because a reader gave fewer or more values than the elements of a zone have.
[[noreturn]] void stopShort(const char* task, const KelZoneDescription& zone, unsigned64 firstId, unsigned64 lastId,
                            unsigned64 found, unsigned64 expected);

/// Calls `use(firstId, lastId)` for the pieces of a range whose elements have values. `read` reads a piece and says
/// whether its elements have them; where one has none it reads nothing, and the piece is halved, down to single
/// elements.
template <class Read, class Use>
void forGiven(unsigned64 firstId, unsigned64 lastId, const Read& read, const Use& use)
{
    if (read(firstId, lastId))
        use(firstId, lastId);
    else if (firstId != lastId) {
        const unsigned64 middle = firstId + (lastId - firstId) / 2;
        forGiven(firstId, middle, read, use);
        forGiven(middle + 1, lastId, read, use);
    }
}

void chooseMesh(TransferRun& run, KelDataClass dataClass, const KelMeshKey& key); ///< TransferMesh.cpp: on the source
void copyMesh(TransferRun& run, const KelMeshKey& key); ///< TransferMesh.cpp: context, sizes, zones with all they have
void copyArrays(TransferRun& run);                      ///< TransferArrays.cpp: of nodes, edges, faces, cells
void copyInterfaces(TransferRun& run);                  ///< TransferInterfaces.cpp
void copyLocalIds(TransferRun& run);                    ///< TransferElementData.cpp
void copyCaseSections(TransferRun& run);                ///< TransferElementData.cpp
void copySettings(TransferRun& run, KelDataClass dataClass);         ///< TransferSettings.cpp: settings, log
void copyLocations(TransferRun& run, KelDataClass dataClass);        ///< TransferSettings.cpp
void copySolution(TransferRun& run, const std::vector<int>& levels); ///< TransferSolution.cpp
void copySets(TransferRun& run, KelDataClass dataClass);             ///< TransferSets.cpp
void copySetData(TransferRun& run, const std::string& phase);        ///< TransferSets.cpp: of the active phase
void copyParticleTracks(TransferRun& run, short sourcePhase, short targetPhase); ///< TransferTracks.cpp

} // namespace meridyn
