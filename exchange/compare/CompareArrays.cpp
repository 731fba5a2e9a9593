// The arrays of the mesh, row by row of the table of the frames' arrays.

#include "CompareRun.h"
#include "formats/common/FrameArrays.h"

namespace meridyn {

namespace {

using Zone = KelZoneDescription;
using Told = std::function<std::optional<std::vector<KelIdRange>>(const KelProvider&)>;

/// What a reader knows of the elements of a zone that have values of an array.
Told toldOf(KelArray array, const Zone& zone)
{
    return [array, first = zone.first, last = zone.last](const KelProvider& model) {
        const KelSourceLedger* const ledger = ledgerOf(model);
        return ledger != nullptr ? ledger->elementsWithValues(array, first, last) : std::nullopt;
    };
}

/// Whether one of the readers worked an array out, and the other has nothing of it in a zone.
template <class HasAny>
bool isDerivedOnOneSide(CompareRun& run, KelArray array, const HasAny& hasAny)
{
    return (run.firstDerived.arrays.count(array) != 0 && !hasAny(run.second)) ||
           (run.secondDerived.arrays.count(array) != 0 && !hasAny(run.first));
}

std::string typeName(KelPlainDataType type)
{
    return type == KEL_PLAIN_FLOAT ? "float" : type == KEL_PLAIN_DOUBLE ? "double" : "";
}

template <class T>
void compareRow(CompareRun& run, const FixedFrameArray<T>& row, const Zone& zone)
{
    // Enumerators are compared as the numbers they stand for.
    using Value = std::conditional_t<std::is_enum_v<T>, int, T>;
    unsigned64 perElement = 1;
    if (row.array == KelArray::Coordinates)
        perElement = run.firstMesh.sizes[KEL_MESH_DIMENSION];
    if (perElement == 0 ||
        (row.array == KelArray::Coordinates && perElement != run.secondMesh.sizes[KEL_MESH_DIMENSION]))
        return; // the dimensions differ, which has been said
    const auto read = [&row, &zone](KelProvider& model, unsigned64 first, unsigned64 last, Value* values,
                                    unsigned64 capacity) {
        if (T uniform; row.isUniform != nullptr && (model.*row.isUniform)(zone.id, &uniform)) {
            std::fill(values, values + capacity, static_cast<Value>(uniform));
            return capacity;
        }
        if constexpr (std::is_same_v<T, Value>)
            return (model.*row.getRange)(first, last, values, capacity);
        else {
            std::vector<T> typed(capacity);
            const unsigned64 found = (model.*row.getRange)(first, last, typed.data(), capacity);
            std::transform(typed.begin(), typed.end(), values, [](T value) { return static_cast<Value>(value); });
            return found;
        }
    };
    const auto hasAny = [&](KelProvider& model) {
        std::vector<Value> values(perElement);
        return read(model, zone.first, zone.first, values.data(), perElement) != 0 ||
               read(model, zone.last, zone.last, values.data(), perElement) != 0;
    };
    if (!isDerivedOnOneSide(run, row.array, hasAny))
        run.compareArray<Value>({row.family, std::string(row.name()) + " of " + zoneLabel(zone), perElement,
                                 row.zeroIsNone, read, toldOf(row.array, zone)},
                                zone);
}

/// Compares counts, then the ids of those elements whose counts are the same.
class RaggedComparison {
public:
    RaggedComparison(CompareRun& run, const RaggedFrameArray& row, const Zone& zone)
        : _run(run), _row(row), _zone(zone), _item(std::string(row.name()) + " of " + zoneLabel(zone))
    {}

    void compare()
    {
        const auto read = [this](KelProvider& model, unsigned64 first, unsigned64 last, short* counts,
                                 unsigned64 capacity) {
            const unsigned64 found = readCounts(model, first, last, counts, capacity);
            _isGiven[&model == &_run.second ? 1 : 0] |= found != 0;
            return found;
        };
        const auto hasAny = [&](KelProvider& model) {
            short count = 0;
            return read(model, _zone.first, _zone.first, &count, 1) != 0 ||
                   read(model, _zone.last, _zone.last, &count, 1) != 0;
        };
        if (isDerivedOnOneSide(_run, _row.array, hasAny))
            return;
        const Told told = toldOf(_row.array, _zone);
        _run.compareArray<short>({_row.family, "number of " + _item, 1, _row.zeroIsNone, read, told}, _zone);
        if (!_isGiven[0] || !_isGiven[1])
            return; // there are no ids to compare
        _run.currentZone = _zone.id;
        // A list may have many ids, hence the small pieces.
        _run.forChunks(_zone, 8, [this](unsigned64 first, unsigned64 last) { compareIds(first, last); });
        _run.noteRest(_row.family, _item, _differences);
        _run.currentZone.reset();
    }

private:
    unsigned64 readCounts(KelProvider& model, unsigned64 first, unsigned64 last, short* counts,
                          unsigned64 capacity) const
    {
        if (short uniform = 0; _row.isUniform != nullptr && (model.*_row.isUniform)(_zone.id, &uniform)) {
            std::fill(counts, counts + capacity, uniform);
            return capacity;
        }
        return (model.*_row.getCountRange)(first, last, counts, capacity);
    }

    void compareIds(unsigned64 first, unsigned64 last)
    {
        std::vector<short> one(last - first + 1), other(one.size());
        const unsigned64 inOne = readCounts(_run.first, first, last, one.data(), one.size());
        const unsigned64 inOther = readCounts(_run.second, first, last, other.data(), other.size());
        if (inOne == one.size() && inOther == other.size() && one == other)
            return compareIdsOf(first, one);
        if (first == last)
            return; // counts that differ have been reported
        const unsigned64 middle = first + (last - first) / 2;
        compareIds(first, middle);
        compareIds(middle + 1, last);
    }

    void compareIdsOf(unsigned64 first, const std::vector<short>& counts)
    {
        unsigned64 sum = 0;
        for (const short count : counts)
            sum += static_cast<unsigned64>(std::max<short>(count, 0));
        if (sum == 0)
            return;
        const unsigned64 last = first + counts.size() - 1;
        std::vector<unsigned64> one(sum), other(sum);
        one.resize(std::min(sum, (_run.first.*_row.getIdRange)(first, last, one.data(), sum)));
        other.resize(std::min(sum, (_run.second.*_row.getIdRange)(first, last, other.data(), sum)));
        if (one.size() != other.size()) {
            if (_differences++ < _run.options.differencesPerItem)
                _run.differ(_row.family, "number of ids of " + _item, first, std::to_string(one.size()),
                            std::to_string(other.size()));
            return;
        }
        if (one == other)
            return;
        for (std::size_t element = 0, end = 0, n = 0; element < counts.size(); ++element)
            for (end += static_cast<std::size_t>(std::max<short>(counts[element], 0)); n < end && n < one.size(); ++n)
                if (one[n] != other[n] && _differences++ < _run.options.differencesPerItem)
                    _run.differ(_row.family, _item, first + element, std::to_string(one[n]), std::to_string(other[n]));
    }

    CompareRun& _run;
    const RaggedFrameArray& _row;
    const Zone& _zone;
    const std::string _item;
    unsigned64 _differences = 0;
    bool _isGiven[2] = {false, false}; ///< whether a model has counts of any element
};

void compareRow(CompareRun& run, const RaggedFrameArray& row, const Zone& zone)
{
    RaggedComparison(run, row, zone).compare();
}

} // namespace

void compareArrays(CompareRun& run)
{
    forFrameArrays([&run](const auto& row) {
        for (const Zone& zone : run.zones(row.category))
            compareRow(run, row, zone);
    });
    const auto stored = [](const KelProvider& model) {
        const KelSourceLedger* const ledger = ledgerOf(model);
        return typeName(ledger != nullptr ? ledger->storedType(KelArray::Coordinates)
                                          : static_cast<KelPlainDataType>(-1));
    };
    const std::string one = stored(run.first), other = stored(run.second);
    if (!one.empty() && !other.empty())
        run.same(KEL_FAMILY_COORDINATES, "type of coordinates", one, other);
    run.same(KEL_FAMILY_CELL_PARTITIONS, "number of partitions", std::to_string(run.first.getPartitionCountOfCells()),
             std::to_string(run.second.getPartitionCountOfCells()));
}

} // namespace meridyn
