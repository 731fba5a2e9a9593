#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

namespace {

// Rows of positions; throws when they are not in the array.
unsigned64 readRows(const ArrayReader& array, unsigned64 first, unsigned64 last, const KelBuffer& values)
{
    if (first == 0 || last < first || last > array.shape().rows)
        throw FormatError(array.label() + " has " + std::to_string(array.shape().rows) + " members, positions " +
                          std::to_string(first) + " to " + std::to_string(last) + " asked for");
    const unsigned64 columns = array.shape().columns;
    const unsigned64 n = std::min(last - first + 1, values.capacity / columns) * columns;
    array.read((first - 1) * columns, n, values);
    return n;
}

unsigned64 readListRows(const ArrayReader& array, const ListTable& table, unsigned64 first, unsigned64 last,
                        const KelBuffer& values)
{
    if (first == 0 || last < first || last > table.rows())
        throw FormatError(array.label() + " has the lists of " + std::to_string(table.rows()) + " members, positions " +
                          std::to_string(first) + " to " + std::to_string(last) + " asked for");
    const ListTable::Stretch stretch = table.find(first - 1, last - first + 1, values.capacity);
    array.read(stretch.first, stretch.count, values);
    return stretch.count;
}

} // namespace

// ---- names, arrays and texts of a set, set data or a chunk of particle tracks ----

const MemberReader* KelHdf5Provider::Data::members(KelCollection in) const
{
    return in == KelCollection::Set ? set.get() : in == KelCollection::SetData ? setData.get() : nullptr;
}

std::unique_ptr<ArrayReader> KelHdf5Provider::Data::array(KelCollection in, KelPart part, const std::string& name) const
{
    if (in == KelCollection::TrackChunk)
        return chunk ? ArrayReader::find(*sessions[KEL_DATA]->file, chunk, encodeName(name)) : nullptr;
    const MemberReader* const known = members(in);
    return known != nullptr ? known->array(part, name) : nullptr;
}

std::vector<std::string> KelHdf5Provider::namesIn(KelCollection in, KelPart part) const
{
    using Names = std::vector<std::string>;
    return _data->ask(_data->classOf(in), "namesIn", Names(), [&](Data::Session&) {
        if (in == KelCollection::TrackChunk)
            return decodedNames(_data->chunk);
        const MemberReader* const known = _data->members(in);
        return known != nullptr ? known->names(part) : Names();
    });
}

// An array that lacks its type is there all the same, and only its type is not.
KelPlainDataType KelHdf5Provider::Data::typeOf(KelCollection in, const ArrayReader& array) const
{
    return ask(classOf(in), "describe", noType, [&array](Session&) { return kelTypeOf(array); });
}

std::optional<KelHdf5Provider::KelArrayInfo> KelHdf5Provider::describe(KelCollection in, KelPart part,
                                                                       const std::string& name) const
{
    using Info = std::optional<KelArrayInfo>;
    return _data->ask(_data->classOf(in), "describe", Info(), [&](Data::Session&) {
        const auto array = _data->array(in, part, name);
        return array ? Info({_data->typeOf(in, *array), array->shape().columns, array->shape().valueCount()}) : Info();
    });
}

bool KelHdf5Provider::giveWhole(KelCollection in, KelPart part, const std::string& name, const KelRoom& room) const
{
    return _data->ask(_data->classOf(in), "giveWhole", false, [&](Data::Session&) {
        const auto array = _data->array(in, part, name);
        if (!array)
            return false;
        if (in == KelCollection::SetData) // goes into lists of its size, the others into a caller's buffer
            array->checkPlausible();
        if (part == KelPart::Lists && _data->members(in) != nullptr) // all of them: so all lengths must fit
            if (const auto table = _data->members(in)->listTable(name))
                table->find(0, table->rows(), UINT64_MAX);
        array->readStart(room(array->shape().valueCount()));
        return true;
    });
}

unsigned64 KelHdf5Provider::giveText(KelCollection in, const std::string& name, std::string& text) const
{
    return _data->ask(_data->classOf(in), "giveText", unsigned64{0}, [&](Data::Session&) {
        const MemberReader* const known = _data->members(in);
        const std::optional<std::string> found = known != nullptr ? known->text(name) : std::nullopt;
        if (!found)
            return unsigned64{0};
        text = *found;
        return static_cast<unsigned64>(text.size());
    });
}

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
    names = _data->ask(dataClass, "getSetNames", std::vector<std::string>(),
                       [&](Data::Session&) { return decodedNames(_data->setsGroup(dataClass)); });
    return !names.empty();
}

bool KelHdf5Provider::getSetNames(KelZoneCategory category, std::vector<std::string>& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        _data->ask(dataClass, "getSetNames", false, [&](Data::Session& session) {
            if (const Handle group = _data->setsGroup(dataClass))
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
            _data->set = MemberReader::find(*session.file, _data->setsGroup(dataClass), name);
            _data->setClass = dataClass;
            return _data->set != nullptr;
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

unsigned64 KelHdf5Provider::Data::readSet(KelArray array, unsigned64 first, unsigned64 last,
                                          const KelBuffer& buffer) const
{
    if (array == KelArray::SetIds) {
        const auto ids = set->array(KelPart::Ids, {});
        return ids ? readRows(*ids, first, last, buffer) : 0;
    }
    if (!setVariable)
        return 0;
    if (array == KelArray::SetLists)
        return setLists ? readListRows(*setVariable, *setLists, first, last, buffer) : 0;
    return readRows(*setVariable, first, last, buffer);
}

KelPlainDataType KelHdf5Provider::startReadingSizeOfVariableLengthedVarForSet(const std::string& name)
{
    _data->setVariable.reset();
    return _data->askSet("startReadingSizeOfVariableLengthedVarForSet", noType, [&](const MemberReader& set) {
        _data->setVariable = set.array(KelPart::Lengths, name);
        return _data->setVariable ? kelTypeOf(*_data->setVariable) : noType;
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
        _data->setVariable = set.array(KelPart::Variables, name);
        if (!_data->setVariable)
            return noType;
        valuesPerMember = _data->setVariable->shape().columns;
        return kelTypeOf(*_data->setVariable);
    });
}

void KelHdf5Provider::endReadingDataOfVariableForSet()
{
    _data->setVariable.reset();
}

KelPlainDataType KelHdf5Provider::startReadingVariableLengthedDataOfVariableForSet(const std::string& name)
{
    _data->setVariable.reset();
    _data->setLists.reset();
    return _data->askSet("startReadingVariableLengthedDataOfVariableForSet", noType, [&](const MemberReader& set) {
        auto values = set.array(KelPart::Lists, name);
        _data->setLists = set.listTable(name);
        if (!values || !_data->setLists)
            return noType;
        _data->setVariable = std::move(values);
        return kelTypeOf(*_data->setVariable);
    });
}

void KelHdf5Provider::endReadingVariableLengthedDataOfVariableForSet()
{
    _data->setVariable.reset();
    _data->setLists.reset();
}

void KelHdf5Provider::endReadingSet()
{
    _data->setVariable.reset();
    _data->setLists.reset();
    _data->set.reset();
}

// ---- set data ----

hdf5::Handle KelHdf5Provider::Data::setDataGroup() const
{
    return groupInPhase(activePhase(), "set_data");
}

void KelHdf5Provider::getSetDataNames(std::vector<std::string>& names) const
{
    names = _data->ask(KEL_DATA, "getSetDataNames", std::vector<std::string>(),
                       [&](Data::Session&) { return decodedNames(_data->setDataGroup()); });
}

bool KelHdf5Provider::startReadingSetData(const std::string& name, unsigned64& memberCount)
{
    endReadingSetData();
    return _data->ask(KEL_DATA, "startReadingSetData", false, [&](Data::Session& session) {
        _data->setData = MemberReader::find(*session.file, _data->setDataGroup(), name);
        if (_data->setData)
            memberCount = _data->setData->members();
        return _data->setData != nullptr;
    });
}

void KelHdf5Provider::endReadingSetData()
{
    _data->setData.reset();
}

} // namespace meridyn
