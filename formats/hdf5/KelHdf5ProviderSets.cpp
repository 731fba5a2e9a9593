#include "ProviderData.h"

#include <algorithm>
#include <limits>

namespace meridyn {

using namespace hdf5;

namespace {

constexpr auto noType = static_cast<KelPlainDataType>(-1);

// Rows of positions; throws when they are not in the array.
template <class T>
unsigned64 readRows(const ArrayReader& array, unsigned64 first, unsigned64 last, T* values, unsigned64 capacity)
{
    if (first == 0 || last < first || last > array.shape().rows)
        throw FormatError(array.label() + " has " + std::to_string(array.shape().rows) + " members, positions " +
                          std::to_string(first) + " to " + std::to_string(last) + " asked for");
    const unsigned64 columns = array.shape().columns;
    const unsigned64 n = std::min(last - first + 1, capacity / columns) * columns;
    array.read((first - 1) * columns, n, values);
    return n;
}

unsigned64 offsetAt(const ArrayReader& offsets, unsigned64 row)
{
    unsigned64 offset = 0;
    offsets.read(row, 1, &offset);
    return offset;
}

template <class T>
unsigned64 readListRows(const ArrayReader& values, const ArrayReader& offsets, unsigned64 first, unsigned64 last,
                        T* out, unsigned64 capacity)
{
    if (first == 0 || last < first || last >= offsets.shape().rows)
        throw FormatError(offsets.label() + " has " + std::to_string(offsets.shape().rows) + " rows, positions " +
                          std::to_string(first) + " to " + std::to_string(last) + " asked for");
    const unsigned64 begin = offsetAt(offsets, first - 1);
    const unsigned64 end = offsetAt(offsets, last);
    if (end < begin || end > values.shape().valueCount())
        throw FormatError(offsets.label() + " leads from " + std::to_string(begin) + " to " + std::to_string(end) +
                          " of " + std::to_string(values.shape().valueCount()) + " values");
    unsigned64 stop = end;
    while (stop - begin > capacity) // whole members only
        stop = std::max(begin, offsetAt(offsets, --last));
    values.read(begin, stop - begin, out);
    return stop - begin;
}

template <class T>
bool readVector(const std::unique_ptr<ArrayReader>& array, std::vector<T>& values)
{
    if (!array)
        return false;
    values = array->readAll<T>();
    return true;
}

void appendNames(std::vector<std::string>& names, const Handle& group)
{
    if (group)
        for (const std::string& name : linkNames(group.get()))
            names.push_back(decodeName(name));
}

} // namespace

// ---- sets ----

hdf5::Handle KelHdf5Provider::Data::setsGroup(KelDataClass dataClass) const
{
    if (dataClass == KEL_CASE)
        return findGroup(sessions[KEL_CASE]->mesh.get(), {"sets"});
    const Handle level = levelGroup();
    return level ? findGroup(level.get(), {"sets"}) : Handle();
}

bool KelHdf5Provider::getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const
{
    names.clear();
    return _data->ask(dataClass, "getSetNames", false, [&](Data::Session&) {
        appendNames(names, _data->setsGroup(dataClass));
        return !names.empty();
    });
}

bool KelHdf5Provider::getSetNames(KelZoneCategory category, std::vector<std::string>& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        _data->ask(dataClass, "getSetNames", false, [&](Data::Session& session) {
            const Handle group = _data->setsGroup(dataClass);
            if (!group)
                return false;
            for (const std::string& name : linkNames(group.get()))
                if (MemberReader(*session.file, openGroup(group.get(), name)).category() == category)
                    names.push_back(decodeName(name));
            return true;
        });
    return !names.empty();
}

bool KelHdf5Provider::startReadingSet(const std::string& name)
{
    endReadingSet();
    const KelDataClass other = _data->current == KEL_CASE ? KEL_DATA : KEL_CASE;
    for (const KelDataClass dataClass : {_data->current, other}) {
        const bool isOpen = _data->ask(dataClass, "startReadingSet", false, [&](Data::Session& session) {
            const Handle group = _data->setsGroup(dataClass);
            if (!group || !hasLink(group.get(), encodeName(name)))
                return false;
            _data->set = std::make_unique<MemberReader>(*session.file, openGroup(group.get(), encodeName(name)));
            _data->setClass = dataClass;
            return true;
        });
        if (isOpen)
            return true;
    }
    return false;
}

KelZoneCategory KelHdf5Provider::getCategoryOfSet() const
{
    return _data->askSet("getCategoryOfSet", static_cast<KelZoneCategory>(-1),
                         [](const MemberReader& set) { return set.category(); });
}

void KelHdf5Provider::getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                                                 std::vector<unsigned64>& maxIds) const
{
    _data->askSet("getSizesAndMinMaxIdsForSet", false, [&](const MemberReader& set) {
        set.blocks(sizes, minIds, maxIds);
        return true;
    });
}

unsigned64 KelHdf5Provider::getIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* ids,
                                                unsigned64 capacity) const
{
    return _data->askSet("getIdsForSetInRange", unsigned64{0}, [&](const MemberReader& set) {
        const auto array = set.ids();
        return array ? readRows(*array, firstPosition, lastPosition, ids, capacity) : unsigned64{0};
    });
}

void KelHdf5Provider::getVariablesInSet(std::vector<std::string>& names) const
{
    names = _data->askSet("getVariablesInSet", std::vector<std::string>(),
                          [](const MemberReader& set) { return set.names("variables"); });
}

void KelHdf5Provider::getVariableLengthedVariablesInSet(std::vector<std::string>& names) const
{
    names = _data->askSet("getVariableLengthedVariablesInSet", std::vector<std::string>(),
                          [](const MemberReader& set) { return set.names("lists"); });
}

void KelHdf5Provider::getOtherVariablesInSet(std::vector<std::string>& names) const
{
    names = _data->askSet("getOtherVariablesInSet", std::vector<std::string>(),
                          [](const MemberReader& set) { return set.names("other"); });
}

void KelHdf5Provider::getStringVariablesInSet(std::vector<std::string>& names) const
{
    names = _data->askSet("getStringVariablesInSet", std::vector<std::string>(),
                          [](const MemberReader& set) { return set.names("texts"); });
}

KelPlainDataType KelHdf5Provider::startReadingSizeOfVariableLengthedVarForSet(const std::string& name)
{
    _data->setVariable.reset();
    return _data->askSet("startReadingSizeOfVariableLengthedVarForSet", noType, [&](const MemberReader& set) {
        _data->setVariable = set.lengths(name);
        return _data->setVariable ? plainTypeOf(*_data->setVariable) : noType;
    });
}

void KelHdf5Provider::endReadingSizeOfVariableLengthedVarForSet()
{
    _data->setVariable.reset();
}

KelPlainDataType KelHdf5Provider::startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember)
{
    _data->setVariable.reset();
    return _data->askSet("startReadingDataOfVariableForSet", noType, [&](const MemberReader& set) {
        _data->setVariable = set.variable(name);
        if (!_data->setVariable)
            return noType;
        valuesPerMember = _data->setVariable->shape().columns;
        return plainTypeOf(*_data->setVariable);
    });
}

void KelHdf5Provider::endReadingDataOfVariableForSet()
{
    _data->setVariable.reset();
}

KelPlainDataType KelHdf5Provider::startReadingVariableLengthedDataOfVariableForSet(const std::string& name)
{
    _data->setVariable.reset();
    _data->setOffsets.reset();
    return _data->askSet("startReadingVariableLengthedDataOfVariableForSet", noType, [&](const MemberReader& set) {
        auto values = set.listValues(name);
        _data->setOffsets = set.offsets(name);
        if (!values || !_data->setOffsets)
            return noType;
        _data->setVariable = std::move(values);
        return plainTypeOf(*_data->setVariable);
    });
}

void KelHdf5Provider::endReadingVariableLengthedDataOfVariableForSet()
{
    _data->setVariable.reset();
    _data->setOffsets.reset();
}

KelPlainDataType KelHdf5Provider::getDataTypeOfOtherDataForSet(const std::string& name) const
{
    return _data->askSet("getDataTypeOfOtherDataForSet", noType, [&](const MemberReader& set) {
        const auto array = set.other(name);
        return array ? plainTypeOf(*array) : noType;
    });
}

unsigned64 KelHdf5Provider::getStringDataForSet(const std::string& name, std::string& text) const
{
    return _data->askSet("getStringDataForSet", unsigned64{0}, [&](const MemberReader& set) {
        const auto found = set.text(name);
        if (!found)
            return unsigned64{0};
        text = *found;
        return static_cast<unsigned64>(text.size());
    });
}

void KelHdf5Provider::endReadingSet()
{
    _data->setVariable.reset();
    _data->setOffsets.reset();
    _data->set.reset();
}

// ---- set data ----

void KelHdf5Provider::getSetDataNames(std::vector<std::string>& names) const
{
    names.clear();
    _data->ask(KEL_DATA, "getSetDataNames", false, [&](Data::Session&) {
        appendNames(names, _data->groupInPhase(_data->activePhase(), "set_data"));
        return true;
    });
}

bool KelHdf5Provider::startReadingSetData(const std::string& name, unsigned64& memberCount)
{
    endReadingSetData();
    return _data->ask(KEL_DATA, "startReadingSetData", false, [&](Data::Session& session) {
        const Handle group = _data->groupInPhase(_data->activePhase(), "set_data");
        if (!group || !hasLink(group.get(), encodeName(name)))
            return false;
        _data->setData = std::make_unique<MemberReader>(*session.file, openGroup(group.get(), encodeName(name)));
        memberCount = _data->setData->members();
        return true;
    });
}

bool KelHdf5Provider::getIdsForSetData(std::vector<unsigned64>& ids) const
{
    return _data->askSetData("getIdsForSetData", false,
                             [&](const MemberReader& set) { return readVector(set.ids(), ids); });
}

void KelHdf5Provider::getConstantLengthVariablesInSetData(std::vector<std::string>& names) const
{
    names = _data->askSetData("getConstantLengthVariablesInSetData", std::vector<std::string>(),
                              [](const MemberReader& set) { return set.names("variables"); });
}

void KelHdf5Provider::getVariableLengthVariablesInSetData(std::vector<std::string>& names) const
{
    names = _data->askSetData("getVariableLengthVariablesInSetData", std::vector<std::string>(),
                              [](const MemberReader& set) { return set.names("lists"); });
}

void KelHdf5Provider::getOtherVariablesInSetData(std::vector<std::string>& names) const
{
    names = _data->askSetData("getOtherVariablesInSetData", std::vector<std::string>(),
                              [](const MemberReader& set) { return set.names("other"); });
}

void KelHdf5Provider::getStringVariablesInSetData(std::vector<std::string>& names) const
{
    names = _data->askSetData("getStringVariablesInSetData", std::vector<std::string>(),
                              [](const MemberReader& set) { return set.names("texts"); });
}

KelPlainDataType KelHdf5Provider::getDataTypeOfDataForSetData(const std::string& name) const
{
    return _data->askSetData("getDataTypeOfDataForSetData", noType, [&](const MemberReader& set) {
        auto array = set.variable(name);
        if (!array)
            array = set.listValues(name);
        if (!array)
            array = set.other(name);
        return array ? plainTypeOf(*array) : noType;
    });
}

KelPlainDataType KelHdf5Provider::getDataTypeOfSizeForSetData(const std::string& name) const
{
    return _data->askSetData("getDataTypeOfSizeForSetData", noType, [&](const MemberReader& set) {
        const auto array = set.lengths(name);
        return array ? plainTypeOf(*array) : noType;
    });
}

unsigned64 KelHdf5Provider::getStringDataForSetData(const std::string& name, std::string& text) const
{
    return _data->askSetData("getStringDataForSetData", unsigned64{0}, [&](const MemberReader& set) {
        const auto found = set.text(name);
        if (!found)
            return unsigned64{0};
        text = *found;
        return static_cast<unsigned64>(text.size());
    });
}

void KelHdf5Provider::endReadingSetData()
{
    _data->setData.reset();
}

// ---- the ten value types ----

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelHdf5Provider::getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition,      \
                                                               T* values, unsigned64 capacity) const                   \
    {                                                                                                                  \
        return _data->askSet("getDataOfVariableForSetInRange", unsigned64{0}, [&](const MemberReader&) {               \
            const auto& array = _data->setVariable;                                                                    \
            return array ? readRows(*array, firstPosition, lastPosition, values, capacity) : unsigned64{0};            \
        });                                                                                                            \
    }                                                                                                                  \
    unsigned64 KelHdf5Provider::getVariableLengthedDataOfVariableForSetInRange(                                        \
        unsigned64 firstPosition, unsigned64 lastPosition, T* values, unsigned64 capacity) const                       \
    {                                                                                                                  \
        return _data->askSet(                                                                                          \
            "getVariableLengthedDataOfVariableForSetInRange", unsigned64{0}, [&](const MemberReader&) {                \
                const auto& array = _data->setVariable;                                                                \
                return array && _data->setOffsets                                                                      \
                           ? readListRows(*array, *_data->setOffsets, firstPosition, lastPosition, values, capacity)   \
                           : unsigned64{0};                                                                            \
            });                                                                                                        \
    }                                                                                                                  \
    unsigned64 KelHdf5Provider::getOtherDataForSet(const std::string& name, T* values, unsigned64 capacity) const      \
    {                                                                                                                  \
        return _data->askSet("getOtherDataForSet", unsigned64{0}, [&](const MemberReader& set) {                       \
            const auto array = set.other(name);                                                                        \
            if (!array || values == nullptr)                                                                           \
                return array ? array->shape().valueCount() : unsigned64{0};                                            \
            const unsigned64 n = std::min(capacity, array->shape().valueCount());                                      \
            array->read(0, n, values);                                                                                 \
            return n;                                                                                                  \
        });                                                                                                            \
    }                                                                                                                  \
    bool KelHdf5Provider::getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<T>& values,        \
                                                               unsigned64& valuesPerMember) const                      \
    {                                                                                                                  \
        return _data->askSetData("getDataOfConstantLengthVarForSetData", false, [&](const MemberReader& set) {         \
            const auto array = set.variable(name);                                                                     \
            if (array)                                                                                                 \
                valuesPerMember = array->shape().columns;                                                              \
            return readVector(array, values);                                                                          \
        });                                                                                                            \
    }                                                                                                                  \
    bool KelHdf5Provider::getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<T>& values) const  \
    {                                                                                                                  \
        return _data->askSetData("getDataOfVariableLengthVarForSetData", false,                                        \
                                 [&](const MemberReader& set) { return readVector(set.listValues(name), values); });   \
    }                                                                                                                  \
    bool KelHdf5Provider::getOtherDataForSetData(const std::string& name, std::vector<T>& values) const                \
    {                                                                                                                  \
        return _data->askSetData("getOtherDataForSetData", false,                                                      \
                                 [&](const MemberReader& set) { return readVector(set.other(name), values); });        \
    }
KEL_DEFINE(unsigned char)
KEL_DEFINE(char)
KEL_DEFINE(short)
KEL_DEFINE(unsigned int)
KEL_DEFINE(int)
KEL_DEFINE(long)
KEL_DEFINE(unsigned64)
KEL_DEFINE(signed64)
KEL_DEFINE(float)
KEL_DEFINE(double)
#undef KEL_DEFINE

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelHdf5Provider::getSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition,      \
                                                               T* lengths, unsigned64 capacity) const                  \
    {                                                                                                                  \
        return _data->askSet("getSizeOfVariableForSetInRange", unsigned64{0}, [&](const MemberReader&) {               \
            const auto& array = _data->setVariable;                                                                    \
            return array ? readRows(*array, firstPosition, lastPosition, lengths, capacity) : unsigned64{0};           \
        });                                                                                                            \
    }                                                                                                                  \
    bool KelHdf5Provider::getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<T>& lengths) const \
    {                                                                                                                  \
        return _data->askSetData("getSizeOfVariableLengthVarForSetData", false,                                        \
                                 [&](const MemberReader& set) { return readVector(set.lengths(name), lengths); });     \
    }
KEL_DEFINE(int)
KEL_DEFINE(short)
KEL_DEFINE(unsigned64)
#undef KEL_DEFINE

} // namespace meridyn
