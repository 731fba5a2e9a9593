// The arrays of the mesh, row by row of the table of the frames' arrays.

#include "exchange/common/ConsumerAccess.h"
#include "formats/common/FrameArrays.h"
#include "TransferRun.h"

#include <cmath>
#include <limits>

namespace meridyn {

namespace {

using Zone = KelZoneDescription;
using Zones = std::vector<Zone>;

/// The elements of a zone that have values, as far as the reader tells; the whole zone where it does not, which may
/// have gaps then.
std::vector<KelIdRange> toldRanges(const TransferRun& run, const FrameArray& row, const Zone& zone)
{
    if (run.ledger != nullptr)
        if (const auto told = run.ledger->elementsWithValues(row.array, zone.first, zone.last))
            return *told;
    return {{zone.first, zone.last}};
}

/// Whether `has(id)` holds for any element of a zone. Mostly the first element tells, or the last.
template <class Has>
bool anyElement(const std::vector<KelIdRange>& ranges, const Has& has)
{
    for (const KelIdRange& range : ranges)
        if (has(range.first) || has(range.last))
            return true;
    for (const KelIdRange& range : ranges)
        for (unsigned64 id = range.first; id < range.last; ++id)
            if (has(id))
                return true;
    return false;
}

/// Whether the target carries an array; if not, notes each zone as lost that `says` something of it. What the reader
/// worked out itself is no loss.
template <class Says>
bool carriesArray(TransferRun& run, const FrameArray& row, const Zones& zones, const Says& says)
{
    if (run.takes(row.family))
        return true;
    if (run.ledger == nullptr || run.ledger->derived().arrays.count(row.array) == 0)
        for (const Zone& zone : zones)
            if (says(zone))
                run.carries(row.family, zone);
    return false;
}

/// Copies an array with the same number of values for each element, as values of type V: T, or float for coordinates
/// that the source holds so.
template <class V, class T>
class FixedCopy {
public:
    FixedCopy(TransferRun& run, const FixedFrameArray<T>& row, unsigned64 perElement)
        : _run(run), _row(row), _perElement(perElement)
    {}

    void copy()
    {
        Zones zones = zonesWithElements(_run.mesh, _row.category);
        std::erase_if(zones, [this](const Zone& zone) { return !hasValues(zone); });
        FrameStart start;
        if (_row.array == KelArray::CellPartitions)
            start.partitionCount = _run.source.getPartitionCountOfCells();
        if (zones.empty() && start.partitionCount == 0)
            return;
        if (!carriesArray(_run, _row, zones, [this](const Zone& zone) { return says(zone); }))
            return;
        for (const Zone& zone : zones)
            start.types.push_back(uniformType(zone));
        _row.start(_run.target, idsOf(zones), start);
        for (const Zone& zone : zones)
            if (uniformType(zone) == noType) // the start marker has told the others
                copyZone(zone);
        (_run.target.*_row.end)();
        _run.settle(_row.family, _row.name());
    }

private:
    static constexpr auto noType = static_cast<KelCellType>(-1);

    KelCellType uniformType(const Zone& zone) const
    {
        KelCellType type = noType;
        if constexpr (std::is_same_v<T, KelCellType>)
            if (!(_run.source.*_row.isUniform)(zone.id, &type))
                type = noType;
        return type;
    }

    unsigned64 read(unsigned64 firstId, unsigned64 lastId, V* values, unsigned64 capacity) const
    {
        if constexpr (std::is_same_v<V, T>)
            return (_run.source.*_row.getRange)(firstId, lastId, values, capacity);
        else
            return _run.source.getCoordinatesForNodesInRange(firstId, lastId, values, capacity);
    }

    void write(unsigned64 firstId, unsigned64 lastId, unsigned64 count)
    {
        if constexpr (std::is_same_v<V, T>)
            (_run.target.*_row.setRange)(firstId, lastId, _values.data(), count);
        else
            _run.target.setCoordinatesForNodesInRange(firstId, lastId, _values.data(), count);
    }

    /// Reads a piece into the buffer; false when one of its elements has no values.
    bool fill(const Zone& zone, unsigned64 firstId, unsigned64 lastId)
    {
        const unsigned64 count = (lastId - firstId + 1) * _perElement;
        _values.assign(count, V());
        const unsigned64 found = read(firstId, lastId, _values.data(), count);
        if (found != count && found != 0)
            stopShort(_row.name(), zone, firstId, lastId, found, count);
        return found == count;
    }

    bool hasValues(const Zone& zone)
    {
        return uniformType(zone) != noType ||
               anyElement(toldRanges(_run, _row, zone), [&](unsigned64 id) { return fill(zone, id, id); });
    }

    /// Whether a zone has more to lose than values that stand for none.
    bool says(const Zone& zone)
    {
        bool isAny = !_row.zeroIsNone;
        for (unsigned64 first = zone.first; !isAny && first != 0 && first <= zone.last; first += _run.chunkSize)
            forGiven(
                first, std::min(zone.last, first + _run.chunkSize - 1),
                [&](unsigned64 a, unsigned64 b) { return fill(zone, a, b); },
                [&](unsigned64, unsigned64) {
                    isAny = isAny || std::any_of(_values.begin(), _values.end(), [](V value) { return value != V(); });
                });
        return isAny;
    }

    void copyZone(const Zone& zone)
    {
        for (const KelIdRange& range : toldRanges(_run, _row, zone))
            _run.forChunks(_row.name(), range, _perElement, sizeof(V), [&](unsigned64 first, unsigned64 last) {
                forGiven(
                    first, last, [&](unsigned64 a, unsigned64 b) { return fill(zone, a, b); },
                    [&](unsigned64 a, unsigned64 b) {
                        noteOverflow(zone);
                        write(a, b, _values.size());
                    });
            });
    }

    /// Notes coordinates that a writer which stores single precision makes infinite.
    void noteOverflow(const Zone& zone)
    {
        if constexpr (std::is_same_v<V, double>)
            if (overflows(_run, _values.data(), _values.size()))
                _run.note(_row.family, KelLossReason::Changed, zoneLabel(zone), overflowText, zone.id);
    }

    TransferRun& _run;
    const FixedFrameArray<T>& _row;
    const unsigned64 _perElement;
    std::vector<V> _values;
};

template <class T>
void copyArray(TransferRun& run, const FixedFrameArray<T>& row)
{
    FixedCopy<T, T>(run, row, 1).copy();
}

template <>
void copyArray(TransferRun& run, const FixedFrameArray<double>& row)
{
    const unsigned64 dimension = run.mesh.sizes[KEL_MESH_DIMENSION];
    if (dimension == 0) // there is no mesh
        return;
    if (run.ledger != nullptr && run.ledger->storedType(row.array) == KEL_PLAIN_FLOAT)
        FixedCopy<float, double>(run, row, dimension).copy();
    else
        FixedCopy<double, double>(run, row, dimension).copy();
}

/// Copies an array with a count and as many ids per element: all counts first, then all ids.
class RaggedCopy {
public:
    RaggedCopy(TransferRun& run, const RaggedFrameArray& row) : _run(run), _row(row) {}

    void copy()
    {
        Zones zones = zonesWithElements(_run.mesh, _row.category);
        std::erase_if(zones, [this](const Zone& zone) { return !hasCounts(zone); });
        if (zones.empty() || !carriesArray(_run, _row, zones, [this](const Zone& zone) { return says(zone); }))
            return;
        KelConsumer& to = _run.target;
        (to.*_row.start)(idsOf(zones));
        (to.*_row.startCounts)();
        for (const Zone& zone : zones)
            copyCounts(zone);
        (to.*_row.endCounts)();
        (to.*_row.startIds)();
        for (const Zone& zone : zones)
            copyIds(zone);
        (to.*_row.endIds)();
        (to.*_row.end)();
        _run.settle(_row.family, _row.name());
    }

private:
    /// The count of all elements of a zone, if the reader says that there is one.
    std::optional<short> uniformCount(const Zone& zone) const
    {
        short count = 0;
        const bool isUniform = _row.isUniform != nullptr && (_run.source.*_row.isUniform)(zone.id, &count);
        return isUniform ? std::optional(count) : std::nullopt;
    }

    /// Reads the counts of a piece; false when one of its elements has none.
    bool fillCounts(const Zone& zone, unsigned64 firstId, unsigned64 lastId)
    {
        _counts.assign(lastId - firstId + 1, 0);
        const unsigned64 found = (_run.source.*_row.getCountRange)(firstId, lastId, _counts.data(), _counts.size());
        if (found != _counts.size() && found != 0)
            stopShort(_row.name(), zone, firstId, lastId, found, _counts.size());
        const auto negative = std::find_if(_counts.begin(), _counts.end(), [](short count) { return count < 0; });
        if (negative != _counts.end())
            throw TransferStopped(KelTransferProblem::SourceBroken,
                                  std::string(_row.name()) + " of " + zoneLabel(zone) +
                                      ": the reader gave a count of " + std::to_string(*negative));
        return found != 0;
    }

    bool hasCounts(const Zone& zone)
    {
        return uniformCount(zone) ||
               anyElement(toldRanges(_run, _row, zone), [&](unsigned64 id) { return fillCounts(zone, id, id); });
    }

    /// Whether a zone has more to lose than elements without ids.
    bool says(const Zone& zone)
    {
        bool isAny = !_row.zeroIsNone || uniformCount(zone).value_or(0) > 0;
        forCounts(zone, 0, [&](unsigned64, unsigned64) {
            isAny = isAny || std::any_of(_counts.begin(), _counts.end(), [](short count) { return count > 0; });
        });
        return isAny;
    }

    /// Calls `use(firstId, lastId)` for the pieces of a zone whose counts are in the buffer then.
    template <class Use>
    void forCounts(const Zone& zone, unsigned64 bytesPerCount, const Use& use)
    {
        for (const KelIdRange& range : toldRanges(_run, _row, zone))
            _run.forChunks(_row.name(), range, 1, bytesPerCount, [&](unsigned64 first, unsigned64 last) {
                forGiven(
                    first, last, [&](unsigned64 a, unsigned64 b) { return fillCounts(zone, a, b); }, use);
            });
    }

    void copyCounts(const Zone& zone)
    {
        if (const std::optional<short> count = uniformCount(zone))
            return (_run.target.*_row.setUniformRange)(zone.first, zone.last, *count);
        forCounts(zone, sizeof(short), [&](unsigned64 first, unsigned64 last) {
            (_run.target.*_row.setCountRange)(first, last, _counts.data(), _counts.size());
        });
    }

    void copyIds(const Zone& zone)
    {
        const std::optional<short> uniform = uniformCount(zone);
        if (!uniform)
            return forCounts(zone, 0, [&](unsigned64 first, unsigned64) { copyIdsOfPiece(zone, first); });
        _run.forChunks(_row.name(), {zone.first, zone.last}, 1, 0, [&](unsigned64 first, unsigned64 last) {
            _counts.assign(last - first + 1, *uniform);
            copyIdsOfPiece(zone, first);
        });
    }

    /// Copies the ids of the elements whose counts are in the buffer, in pieces of a chunk at most; one element is the
    /// smallest piece.
    void copyIdsOfPiece(const Zone& zone, unsigned64 firstId)
    {
        for (std::size_t from = 0; from < _counts.size();) {
            std::size_t to = from;
            unsigned64 sum = 0;
            do
                sum += static_cast<unsigned64>(_counts[to++]);
            while (to < _counts.size() && sum + static_cast<unsigned64>(_counts[to]) <= _run.chunkSize);
            if (sum > 0)
                copyIdsOf(zone, firstId + from, firstId + to - 1, sum);
            _run.tell(_row.name(), firstId + to - zone.first, zone.last - zone.first + 1, sum * sizeof(unsigned64));
            from = to;
        }
    }

    void copyIdsOf(const Zone& zone, unsigned64 firstId, unsigned64 lastId, unsigned64 count)
    {
        _ids.assign(count, 0);
        const unsigned64 found = (_run.source.*_row.getIdRange)(firstId, lastId, _ids.data(), count);
        if (found != count)
            stopShort(_row.name(), zone, firstId, lastId, found, count);
        (_run.target.*_row.setIdRange)(firstId, lastId, _ids.data(), count);
    }

    TransferRun& _run;
    const RaggedFrameArray& _row;
    std::vector<short> _counts;
    std::vector<unsigned64> _ids;
};

void copyArray(TransferRun& run, const RaggedFrameArray& row)
{
    RaggedCopy(run, row).copy();
}

} // namespace

void copyArrays(TransferRun& run)
{
    for (const FrameMarkers& markers : frameMarkers()) {
        const std::vector<int> zones = idsOf(zonesWithElements(run.mesh, markers.category));
        if (zones.empty())
            continue;
        (run.target.*markers.startWriting)(zones);
        forFrameArrays(markers.category, [&run](const auto& row) { copyArray(run, row); });
        (run.target.*markers.endWriting)();
    }
}

} // namespace meridyn
