#pragma once

#include "KelConsumer.h"
#include "KelFormat.h"
#include "KelLossReport.h"
#include "KelProvider.h"
#include "KelTransfer.h"
#include "KelValueTypes.h"

#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// Ends a transfer from anywhere inside it; never leaves the library.
struct TransferStopped : std::runtime_error {
    TransferStopped(const std::string& reason, bool isCancel) : std::runtime_error(reason), cancelled(isCancel) {}
    bool cancelled;
};

/// What the parts of one transfer share: both ends, the chunk size, progress and losses.
class TransferRun {
public:
    struct ZoneRange {
        int id;
        unsigned64 first;
        unsigned64 last;
    };

    TransferRun(KelProvider& from, KelConsumer& to, KelFormatFamilies families, KelTransfer::Progress ask,
                unsigned64 chunkValues, KelLossReport& report);

    /// Whether the target carries a family.
    bool takes(KelFormatFamily family) const { return (_families & formatFamily(family)) != 0; }

    /// Whether the target carries a family; if not, notes the item as lost.
    bool carries(KelFormatFamily family, const std::string& item);

    /// Notes a loss, once.
    void note(KelFormatFamily family, const std::string& item, const std::string& reason);

    /// Notes that the writer refused something.
    void refused(KelFormatFamily family, const std::string& item);

    /// Copies values whose type the reader tells: calls `copy` with a null pointer to it. Without a type they are lost.
    template <class Copy>
    void withType(KelFormatFamily family, const std::string& item, KelPlainDataType type, const Copy& copy)
    {
        if (!visitPlainType(type, copy))
            note(family, item, "the reader gives no type");
    }

    /// Tells how far a task is; throws when the transfer is cancelled.
    void tell(const std::string& task, unsigned64 done, unsigned64 total, unsigned64 newBytes);

    /// The zones of a category that have elements, in the order of their first element.
    std::vector<ZoneRange> zonesWithElements(KelZoneCategory category) const;

    /// Ids of zones.
    static std::vector<int> idsOf(const std::vector<ZoneRange>& zones);

    /// Calls `copy(first, last)` for each piece of a range that needs no more than a chunk.
    template <class Copy>
    void forChunks(const std::string& task, const ZoneRange& zone, unsigned64 valuesPerElement,
                   unsigned64 bytesPerValue, const Copy& copy)
    {
        const unsigned64 perElement = valuesPerElement > 0 ? valuesPerElement : 1;
        const unsigned64 step = chunkSize / perElement > 0 ? chunkSize / perElement : 1;
        const unsigned64 total = zone.last - zone.first + 1;
        for (unsigned64 done = 0; done < total;) {
            const unsigned64 count = total - done < step ? total - done : step;
            copy(zone.first + done, zone.first + done + count - 1);
            done += count;
            tell(task, done, total, count * perElement * bytesPerValue);
        }
    }

    KelProvider& source;
    KelConsumer& target;
    const unsigned64 chunkSize;

private:
    KelFormatFamilies _families;
    KelTransfer::Progress _ask;
    KelLossReport& _report;
    std::set<std::pair<int, std::string>> _noted;
    unsigned64 _bytes = 0;
};

/// The errors that a reader or writer has stored, in one line; `otherwise` when there are none.
std::string storedErrors(KelBase& base, const std::string& otherwise);

/// All seven numbers of a zone, those of its category in their order, flags last, 0 where it has fewer.
std::vector<int> zoneNumbers(const KelBase& base, KelZoneCategory category, int zone);

/// "zone 7 'wall'".
std::string zoneLabel(const KelBase& base, int zoneId);

/// Stops a transfer because a reader gave fewer or more values of something than it promised.
[[noreturn]] void stopShort(const std::string& what, unsigned64 found, unsigned64 expected);

/// Stops a transfer because a reader gave fewer or more values than the mesh has.
[[noreturn]] void stopShort(const std::string& task, const KelBase& source, int zone, unsigned64 first, unsigned64 last,
                            unsigned64 found, unsigned64 expected);

void copyZones(TransferRun& run);        ///< TransferZones.cpp: context, sizes, zones and properties
void copyTopology(TransferRun& run);     ///< TransferTopology.cpp: nodes, edges, faces, cells
void copyLocalIds(TransferRun& run);     ///< TransferElementData.cpp
void copyCaseSections(TransferRun& run); ///< TransferElementData.cpp
void copySettings(TransferRun& run, KelDataClass dataClass);         ///< TransferSettings.cpp: settings, log
void copyLocations(TransferRun& run);                                ///< TransferSettings.cpp
void copySolution(TransferRun& run, const std::vector<int>& levels); ///< TransferSolution.cpp
void copySets(TransferRun& run, KelDataClass dataClass);             ///< TransferSets.cpp
void copySetData(TransferRun& run);                                  ///< TransferSets.cpp: of the active phase
void copyParticleTracks(TransferRun& run, short sourcePhase, short targetPhase); ///< TransferTracks.cpp

} // namespace meridyn
