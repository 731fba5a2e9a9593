#include "TransferRun.h"

#include <utility>

namespace meridyn {

namespace {

using Names = std::vector<std::string>;

/// Calls `copy(firstPosition, lastPosition)` for pieces of a set that need no more than a chunk.
template <class Copy>
void forPositions(TransferRun& run, const std::string& task, unsigned64 members, unsigned64 perMember, const Copy& copy)
{
    if (members > 0)
        run.forChunks(task, {1, members}, perMember, sizeof(unsigned64), copy);
}

/// Copies one open set.
class SetCopy {
public:
    SetCopy(TransferRun& run, std::string name) : _run(run), _task("set '" + std::move(name) + "'") {}

    void copy()
    {
        std::vector<unsigned64> minIds, maxIds;
        _run.source.getSizesAndMinMaxIdsForSet(_sizes, minIds, maxIds);
        _run.target.setSizesAndMinMaxIdsForSet(_sizes, minIds, maxIds);
        for (const unsigned64 size : _sizes)
            _members += size;
        copyIds();
        Names names;
        _run.source.getVariablesInSet(names);
        for (const std::string& name : names)
            copyVariable(name);
        names.clear();
        _run.source.getVariableLengthedVariablesInSet(names);
        for (const std::string& name : names)
            copyVariableLengthed(name);
        copyOther();
    }

private:
    void copyIds()
    {
        std::vector<unsigned64> ids(1);
        _run.source.startReadingIdsForSet();
        if (_members == 0 || _run.source.getIdsForSetInRange(1, 1, ids.data(), 1) == 0)
            return _run.source.endReadingIdsForSet(); // a set may do without
        _run.target.startWritingIdsForSet();
        forPositions(_run, _task, _members, 1, [&](unsigned64 first, unsigned64 last) {
            ids.resize(last - first + 1);
            const unsigned64 found = _run.source.getIdsForSetInRange(first, last, ids.data(), ids.size());
            if (found != ids.size())
                stopShort("ids of " + _task, found, ids.size());
            _run.target.setIdsForSetInRange(first, last, ids.data(), ids.size());
        });
        _run.target.endWritingIdsForSet();
        _run.source.endReadingIdsForSet();
    }

    void copyVariable(const std::string& name)
    {
        unsigned64 perMember = 0;
        const KelPlainDataType type = _run.source.startReadingDataOfVariableForSet(name, perMember);
        _run.withType(KEL_FAMILY_SETS, itemOf(name), type, [&](auto* null) {
            std::vector<std::remove_pointer_t<decltype(null)>> values;
            _run.target.startWritingDataOfVariableForSet(name, _sizes, perMember, type);
            forPositions(_run, _task, _members, perMember, [&](unsigned64 first, unsigned64 last) {
                values.resize((last - first + 1) * perMember);
                const unsigned64 found =
                    _run.source.getDataOfVariableForSetInRange(first, last, values.data(), values.size());
                if (found != values.size())
                    stopShort(itemOf(name), found, values.size());
                _run.target.setDataOfVariableForSetInRange(first, last, values.data(), values.size());
            });
            _run.target.endWritingDataOfVariableForSet();
        });
        _run.source.endReadingDataOfVariableForSet();
    }

    void copyVariableLengthed(const std::string& name)
    {
        const KelPlainDataType lengthType = _run.source.startReadingSizeOfVariableLengthedVarForSet(name);
        _run.target.startWritingSizeOfVariableForSet(name, _sizes, lengthType);
        forPositions(_run, _task, _members, 1, [&](unsigned64 first, unsigned64 last) {
            writeLengths(readLengths(name, first, last), first, last, lengthType);
        });
        _run.target.endWritingSizeOfVariableForSet();
        _run.source.endReadingSizeOfVariableLengthedVarForSet();

        const KelPlainDataType type = _run.source.startReadingVariableLengthedDataOfVariableForSet(name);
        _run.withType(KEL_FAMILY_SETS, itemOf(name), type, [&](auto* null) {
            _run.target.startWritingVariableLengthedDataOfVariableForSet(name, _sizes, type);
            std::vector<std::remove_pointer_t<decltype(null)>> values;
            forPositions(_run, _task, _members, 1, [&](unsigned64 first, unsigned64 last) {
                copyVariableLengthed(name, first, readLengthsAgain(name, first, last), values);
            });
            _run.target.endWritingVariableLengthedDataOfVariableForSet();
        });
        _run.source.endReadingVariableLengthedDataOfVariableForSet();
    }

    /// Copies the values of members whose lengths are known, in pieces of a chunk at most.
    template <class T>
    void copyVariableLengthed(const std::string& name, unsigned64 first, const std::vector<unsigned64>& lengths,
                              std::vector<T>& values)
    {
        for (std::size_t from = 0; from < lengths.size();) {
            std::size_t to = from;
            unsigned64 sum = 0;
            do
                sum += lengths[to++];
            while (to < lengths.size() && lengths[to] <= _run.chunkSize && sum + lengths[to] <= _run.chunkSize);
            if (sum > 0) {
                values.resize(sum);
                const unsigned64 found = _run.source.getVariableLengthedDataOfVariableForSetInRange(
                    first + from, first + to - 1, values.data(), sum);
                if (found != sum)
                    stopShort(itemOf(name), found, sum);
                _run.target.setVariableLengthedDataOfVariableForSetInRange(first + from, first + to - 1, values.data(),
                                                                           sum);
            }
            from = to;
        }
    }

    std::vector<unsigned64> readLengths(const std::string& name, unsigned64 first, unsigned64 last)
    {
        std::vector<unsigned64> lengths(last - first + 1);
        const unsigned64 found =
            _run.source.getSizeOfVariableForSetInRange(first, last, lengths.data(), lengths.size());
        if (found != lengths.size())
            stopShort("lengths of '" + name + "' of " + _task, found, lengths.size());
        return lengths;
    }

    /// The same while the values are being read.
    std::vector<unsigned64> readLengthsAgain(const std::string& name, unsigned64 first, unsigned64 last)
    {
        _run.source.startReadingSizeOfVariableLengthedVarForSet(name);
        std::vector<unsigned64> lengths = readLengths(name, first, last);
        _run.source.endReadingSizeOfVariableLengthedVarForSet();
        _run.source.startReadingVariableLengthedDataOfVariableForSet(name);
        return lengths;
    }

    void writeLengths(const std::vector<unsigned64>& lengths, unsigned64 first, unsigned64 last, KelPlainDataType type)
    {
        if (type == KEL_PLAIN_INT) {
            const std::vector<int> narrow(lengths.begin(), lengths.end());
            _run.target.setSizeOfVariableForSetInRange(first, last, narrow.data(), narrow.size());
        } else if (type == KEL_PLAIN_SHORT) {
            const std::vector<short> narrow(lengths.begin(), lengths.end());
            _run.target.setSizeOfVariableForSetInRange(first, last, narrow.data(), narrow.size());
        } else
            _run.target.setSizeOfVariableForSetInRange(first, last, lengths.data(), lengths.size());
    }

    void copyOther()
    {
        Names names;
        _run.source.getOtherVariablesInSet(names);
        for (const std::string& name : names)
            _run.withType(KEL_FAMILY_SETS, itemOf(name), _run.source.getDataTypeOfOtherDataForSet(name),
                          [&](auto* null) { copyBlock(name, null); });
        names.clear();
        _run.source.getStringVariablesInSet(names);
        for (const std::string& name : names) {
            std::string text;
            _run.source.getStringDataForSet(name, text);
            _run.target.writeStringDataForSet(name, text);
        }
    }

    template <class T>
    void copyBlock(const std::string& name, T* null)
    {
        std::vector<T> values(_run.source.getOtherDataForSet(name, null, 0));
        const unsigned64 found = _run.source.getOtherDataForSet(name, values.data(), values.size());
        if (found != values.size())
            stopShort(itemOf(name), found, values.size());
        _run.target.writeOtherDataForSet(name, values.data(), values.size());
    }

    std::string itemOf(const std::string& name) const { return "'" + name + "' of " + _task; }

    TransferRun& _run;
    std::string _task;
    std::vector<unsigned64> _sizes;
    unsigned64 _members = 0;
};

/// Copies one open set-data block; the frame's getters give whole variables.
class SetDataCopy {
public:
    SetDataCopy(TransferRun& run, const std::string& item) : _run(run), _task("set data " + item) {}

    void copy()
    {
        std::vector<unsigned64> ids;
        if (_run.source.getIdsForSetData(ids)) {
            _run.target.startWritingIdsForSetData();
            checkTaken("ids", _run.target.setIdsForSetData(ids.data(), ids.size()), ids.size());
            _run.target.endWritingIdsForSetData();
        }
        Names names;
        _run.source.getConstantLengthVariablesInSetData(names);
        for (const std::string& name : names)
            copyVariable(name);
        names.clear();
        _run.source.getVariableLengthVariablesInSetData(names);
        for (const std::string& name : names)
            copyVariableLength(name);
        copyOther();
    }

private:
    void checkTaken(const std::string& name, unsigned64 taken, unsigned64 given)
    {
        if (taken != given)
            _run.refused(KEL_FAMILY_SET_DATA, itemOf(name));
    }

    void copyVariable(const std::string& name)
    {
        const KelPlainDataType type = _run.source.getDataTypeOfDataForSetData(name);
        _run.withType(KEL_FAMILY_SET_DATA, itemOf(name), type, [&](auto* null) {
            std::vector<std::remove_pointer_t<decltype(null)>> values;
            unsigned64 perMember = 0;
            if (!_run.source.getDataOfConstantLengthVarForSetData(name, values, perMember))
                return _run.note(KEL_FAMILY_SET_DATA, KelLossReason::NotGiven, itemOf(name), noValues);
            _run.target.startWritingVariableForSetData(name, perMember, type);
            checkTaken(name, _run.target.setVariableForSetData(values.data(), values.size()), values.size());
            _run.target.endWritingVariableForSetData();
            _run.tell(_task, 0, 0, values.size() * sizeof(*null));
        });
    }

    void copyVariableLength(const std::string& name)
    {
        const KelPlainDataType type = _run.source.getDataTypeOfDataForSetData(name);
        const KelPlainDataType lengthType = _run.source.getDataTypeOfSizeForSetData(name);
        _run.withType(KEL_FAMILY_SET_DATA, itemOf(name), type, [&](auto* null) {
            std::vector<std::remove_pointer_t<decltype(null)>> values;
            if (!_run.source.getDataOfVariableLengthVarForSetData(name, values))
                return _run.note(KEL_FAMILY_SET_DATA, KelLossReason::NotGiven, itemOf(name), noValues);
            _run.target.startWritingVariableLengthVariableForSetData(name, type, lengthType);
            if (lengthType == KEL_PLAIN_SHORT)
                writeVariableLength<short>(name, values);
            else if (lengthType == KEL_PLAIN_INT)
                writeVariableLength<int>(name, values);
            else
                writeVariableLength<unsigned64>(name, values);
            _run.target.endWritingVariableLengthVariableForSetData();
            _run.tell(_task, 0, 0, values.size() * sizeof(*null));
        });
    }

    template <class Length, class T>
    void writeVariableLength(const std::string& name, const std::vector<T>& values)
    {
        std::vector<Length> lengths;
        _run.source.getSizeOfVariableLengthVarForSetData(name, lengths);
        checkTaken(name,
                   _run.target.setVariableLengthVariableForSetData(values.data(), values.size(), lengths.data(),
                                                                   lengths.size()),
                   values.size());
    }

    void copyOther()
    {
        Names names;
        _run.source.getOtherVariablesInSetData(names);
        for (const std::string& name : names)
            _run.withType(
                KEL_FAMILY_SET_DATA, itemOf(name), _run.source.getDataTypeOfDataForSetData(name), [&](auto* null) {
                    std::vector<std::remove_pointer_t<decltype(null)>> values;
                    if (!_run.source.getOtherDataForSetData(name, values))
                        return _run.note(KEL_FAMILY_SET_DATA, KelLossReason::NotGiven, itemOf(name), noValues);
                    _run.target.writeOtherDataForSetData(name, values.data(), values.size());
                });
        names.clear();
        _run.source.getStringVariablesInSetData(names);
        for (const std::string& name : names) {
            std::string text;
            _run.source.getStringDataForSetData(name, text);
            _run.target.writeStringDataForSetData(name, text);
        }
    }

    std::string itemOf(const std::string& name) const { return "'" + name + "' of " + _task; }

    static constexpr const char* noValues = "the reader gives no values";
    TransferRun& _run;
    std::string _task;
};

} // namespace

void copySets(TransferRun& run, KelDataClass dataClass)
{
    Names names;
    run.source.getSetNames(dataClass, names);
    for (const std::string& name : names) {
        if (!run.carries(KEL_FAMILY_SETS, "'" + name + "'"))
            continue;
        if (!run.source.startReadingSet(name))
            throw TransferStopped(KelTransferProblem::SourceBroken,
                                  "set '" + name + "': the reader lists it but does not open it");
        run.target.startWritingSet(name, run.source.getCategoryOfSet());
        SetCopy(run, name).copy();
        run.target.endWritingSet();
        run.source.endReadingSet();
        run.settle(KEL_FAMILY_SETS, "'" + name + "'");
    }
}

void copySetData(TransferRun& run, const std::string& phase)
{
    Names names;
    run.source.getSetDataNames(names);
    for (const std::string& name : names) {
        unsigned64 members = 0;
        const std::string item = "'" + name + "' of phase '" + phase + "'";
        if (!run.carries(KEL_FAMILY_SET_DATA, item))
            continue;
        if (!run.source.startReadingSetData(name, members))
            throw TransferStopped(KelTransferProblem::SourceBroken,
                                  "set data '" + name + "': the reader lists them but does not open them");
        run.target.startWritingSetData(name, members);
        SetDataCopy(run, item).copy();
        run.target.endWritingSetData();
        run.source.endReadingSetData();
        run.settle(KEL_FAMILY_SET_DATA, item);
    }
}

} // namespace meridyn
