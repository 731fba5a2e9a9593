#include "SetWriter.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "TextStore.h"

#include <algorithm>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t blockRows = 32 * 1024;

void checkType(int type, const std::string& name)
{
    if (!isPlainType(type))
        throw FormatError("'" + name + "' has the value type " + std::to_string(type) + ", 0 to 9 expected");
}

void checkLengths(const KelValues& lengths, const std::string& name)
{
    lengths.visit([&]<class T>(const T* typed) {
        if constexpr (std::is_signed_v<T>)
            for (std::uint64_t i = 0; i < lengths.count; ++i)
                if (typed[i] < 0)
                    throw FormatError("'" + name + "' has the length " + std::to_string(typed[i]));
    });
}

std::uint64_t sumOf(const KelValues& lengths)
{
    std::uint64_t sum = 0;
    lengths.visit([&](const auto* typed) {
        for (std::uint64_t i = 0; i < lengths.count; ++i)
            sum += static_cast<std::uint64_t>(typed[i]);
    });
    return sum;
}

std::uint64_t countOf(std::uint64_t first, std::uint64_t last)
{
    if (first == 0 || last < first)
        throw FormatError("positions " + std::to_string(first) + " to " + std::to_string(last) +
                          ", ascending ones from 1 expected");
    return last - first + 1;
}

} // namespace

MemberWriter::MemberWriter(Hdf5File& file, Handle group, int compression)
    : _file(file), _group(std::move(group)), _compression(compression)
{}

MemberWriter::~MemberWriter() = default;

hid_t MemberWriter::subgroup(const char* name)
{
    Handle& group = _subgroups[name];
    if (!group)
        group = openOrCreateGroup(_group.get(), name);
    return group.get();
}

CompleteArray& MemberWriter::ids()
{
    if (!_ids)
        _ids = std::make_unique<CompleteArray>(_file, _group.get(), "ids", ArrayShape{Stored::U64, _members, 1},
                                               _compression);
    return *_ids;
}

std::unique_ptr<CompleteArray> MemberWriter::makeValues(hid_t group, const std::string& name, KelPlainDataType type,
                                                        std::uint64_t rows, std::uint64_t columns)
{
    const ArrayShape shape{storedTypeOfPlain(type), rows, columns};
    auto values = std::make_unique<CompleteArray>(_file, group, name, shape, _compression);
    writeNumber(values->id(), "kel_type", type);
    return values;
}

std::unique_ptr<CompleteArray> MemberWriter::makeVariable(const std::string& name, KelPlainDataType type,
                                                          std::uint64_t columns)
{
    checkType(type, name);
    if (columns == 0)
        throw FormatError("'" + name + "' has 0 values per member, 1 or more expected");
    return makeValues(subgroup("variables"), encodeName(name), type, _members, columns);
}

MemberWriter::List MemberWriter::makeList(const std::string& name, KelPlainDataType lengthType)
{
    checkType(lengthType, name);
    const Handle group = replaceGroup(_file, subgroup("lists"), encodeName(name));
    List list;
    list.lengths = std::make_unique<CompleteArray>(_file, group.get(), "lengths", ArrayShape{Stored::U64, _members, 1},
                                                   _compression);
    writeNumber(list.lengths->id(), "kel_type", lengthType);
    return list;
}

// The lengths are complete: where the values of each member start, and room for all of them.
void MemberWriter::openValues(List& list, const std::string& name, KelPlainDataType type)
{
    checkType(type, name);
    if (!list.lengths->isComplete())
        throw FormatError("values of '" + name + "' before the lengths of all members");
    const Handle group = openGroup(subgroup("lists"), encodeName(name));
    list.offsets =
        ArrayWriter::create(_file, group.get(), "offsets", ArrayShape{Stored::U64, _members + 1, 1}, _compression);
    std::uint64_t sum = 0;
    std::vector<std::uint64_t> lengths(std::min(blockRows, _members));
    for (std::uint64_t row = 0; row < _members; row += lengths.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(lengths.size(), _members - row);
        list.lengths->array().read(row, n, targetOf(lengths.data(), Stored::U64));
        for (std::uint64_t i = 0; i < n; ++i)
            sum += std::exchange(lengths[i], sum);
        list.offsets->write(row, n, sourceOf(lengths.data(), Stored::U64));
    }
    list.offsets->write(_members, 1, sourceOf(&sum, Stored::U64));
    list.type = type;
    list.values = makeValues(group.get(), "values", type, sum, 1);
}

void MemberWriter::writeOther(const std::string& name, const KelValues& values)
{
    const auto block = makeValues(subgroup("other"), encodeName(name), values.type, values.count, 1);
    block->write(0, values.count, values);
    block->finish();
}

void MemberWriter::writeString(const std::string& name, const std::string& text)
{
    writeLongText(_file, subgroup("texts"), encodeName(name), text);
}

void MemberWriter::finish()
{
    if (_ids)
        _ids->finish();
    for (const auto& [name, variable] : _variables)
        variable->finish();
    for (auto& [name, list] : _lists) {
        list.lengths->finish();
        if (!list.values)
            openValues(list, name, list.type.value_or(KEL_PLAIN_DOUBLE)); // all lengths may be 0
        list.offsets->finish();
        list.values->finish();
    }
}

SetWriter::SetWriter(Hdf5File& file, hid_t scope, const std::string& name, KelZoneCategory category, int compression)
    : MemberWriter(file, replaceGroup(file, openOrCreateGroup(scope, "sets").get(), encodeName(name)), compression)
{
    writeNumber(_group.get(), "kel_category", category);
    writeNumber(_group.get(), "kel_members", 0);
}

void SetWriter::setBlocks(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds,
                          const std::vector<unsigned64>& maxIds)
{
    if (minIds.size() != sizes.size() || maxIds.size() != sizes.size())
        throw FormatError(std::to_string(sizes.size()) + " sizes of blocks with " + std::to_string(minIds.size()) +
                          " smallest and " + std::to_string(maxIds.size()) + " largest ids");
    if (_ids || !_variables.empty() || !_lists.empty())
        throw FormatError("the blocks of a set come before its members");
    std::vector<std::uint64_t> table;
    _members = 0;
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        table.insert(table.end(), {sizes[i], minIds[i], maxIds[i]});
        if (sizes[i] > (1ULL << 56) - _members)
            throw FormatError("a set of more than 2^56 members");
        _members += sizes[i];
    }
    writeArray(_file, _group.get(), "blocks", table, 3);
    writeNumber(_group.get(), "kel_members", static_cast<std::int64_t>(_members));
}

void SetWriter::keep(KelArray array, std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    if (array == KelArray::SetIds)
        ids().write(first - 1, countOf(first, last), values);
    else if (array == KelArray::SetListLengths)
        setLengths(first, last, values);
    else if (array == KelArray::SetLists)
        setListValues(first, last, values);
    else
        setValues(first, last, values);
}

void SetWriter::startLengths(const std::string& name, KelPlainDataType type)
{
    _listName = name;
    if (_lists.find(name) == _lists.end())
        _lists.emplace(name, makeList(name, type));
}

MemberWriter::List& SetWriter::currentList()
{
    const auto found = _lists.find(_listName);
    if (found == _lists.end())
        throw FormatError("values of the variable '" + _listName + "' of a set before their lengths");
    return found->second;
}

void SetWriter::setLengths(std::uint64_t first, std::uint64_t last, const KelValues& lengths)
{
    List& list = currentList();
    if (list.values)
        throw FormatError("lengths of '" + _listName + "' after its values");
    checkLengths(lengths, _listName);
    list.lengths->write(first - 1, countOf(first, last), lengths);
}

void SetWriter::setUniformLength(std::uint64_t first, std::uint64_t last, std::int64_t length)
{
    const std::uint64_t count = countOf(first, last);
    const std::vector<std::int64_t> lengths(std::min(blockRows, count), length);
    for (std::uint64_t done = 0; done < count; done += lengths.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(lengths.size(), count - done);
        setLengths(first + done, first + done + n - 1, {lengths.data(), n});
    }
}

void SetWriter::startVariable(const std::string& name, std::uint64_t columns, KelPlainDataType type)
{
    std::unique_ptr<CompleteArray>& variable = _variables[name];
    if (!variable)
        variable = makeVariable(name, type, columns);
    _variable = variable.get();
}

void SetWriter::setValues(std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    if (_variable == nullptr)
        throw FormatError("values of a variable of a set that was not started");
    _variable->write(first - 1, countOf(first, last), values);
}

void SetWriter::startLists(const std::string& name, KelPlainDataType type, KelPlainDataType)
{
    _listName = name;
    List& list = currentList();
    if (!list.values)
        openValues(list, name, type);
}

std::uint64_t SetWriter::offsetOf(List& list, std::uint64_t row)
{
    std::uint64_t offset = 0;
    list.offsets->read(row, 1, targetOf(&offset, Stored::U64));
    return offset;
}

void SetWriter::setListValues(std::uint64_t first, std::uint64_t last, const KelValues& values)
{
    List& list = currentList();
    countOf(first, last);
    if (!list.values || last > _members)
        throw FormatError("values of '" + _listName + "' for the positions " + std::to_string(first) + " to " +
                          std::to_string(last) + " of a set of " + std::to_string(_members));
    const std::uint64_t begin = offsetOf(list, first - 1);
    const std::uint64_t end = offsetOf(list, last);
    list.values->write(begin, end - begin, values);
}

SetDataWriter::SetDataWriter(Hdf5File& file, hid_t scope, const std::string& name, std::uint64_t members,
                             int compression)
    : MemberWriter(file, replaceGroup(file, openOrCreateGroup(scope, "set_data").get(), encodeName(name)), compression)
{
    if (members > 1ULL << 56)
        throw FormatError("set data of more than 2^56 members");
    _members = members;
    writeNumber(_group.get(), "kel_members", static_cast<std::int64_t>(members));
}

void SetDataWriter::addIds(const KelValues& values)
{
    ids().write(_idCount, values.count, values);
    _idCount += values.count;
}

void SetDataWriter::startVariable(const std::string& name, std::uint64_t columns, KelPlainDataType type)
{
    std::unique_ptr<CompleteArray>& variable = _variables[name];
    variable = makeVariable(name, type, columns);
    _variable = variable.get();
    _variableRows = 0;
}

void SetDataWriter::addValues(const KelValues& values)
{
    if (_variable == nullptr)
        throw FormatError("values of a variable of set data that was not started");
    const std::uint64_t rows = values.count / _variable->shape().columns;
    _variable->write(_variableRows, rows, values);
    _variableRows += rows;
}

void SetDataWriter::startLists(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType)
{
    checkType(type, name);
    if (_hasList)
        endLists();
    _lists[name] = makeList(name, lengthType);
    _listName = name;
    _hasList = true;
    _listRows = 0;
    _listValues = 0;
    _listPlainType = type;
    _listType = storedTypeOfPlain(type);
    _spill.reset();
}

void SetDataWriter::spill(const KelValues& values)
{
    if (!_spill)
        _spill = std::make_unique<SpillFile>(folderOf(_file.channel().path()));
    const Source source = sourceOf(values, _listType);
    const std::uint64_t block = _file.buffer().size() / sizeOf(_listType);
    for (std::uint64_t done = 0; done < values.count; done += block) {
        const std::uint64_t n = std::min(block, values.count - done);
        source.convert(partOf(values, done, n).data, _file.buffer().data(), n);
        _spill->append(_file.buffer().data(), n * sizeOf(_listType));
    }
}

void SetDataWriter::addLists(const KelValues& values, const KelValues& lengths)
{
    if (!_hasList)
        throw FormatError("values of a variable of set data that was not started");
    checkLengths(lengths, _listName);
    const std::uint64_t sum = sumOf(lengths);
    if (sum != values.count)
        throw FormatError("'" + _listName + "' has " + std::to_string(values.count) + " values, " +
                          std::to_string(sum) + " expected after their lengths");
    _lists.at(_listName).lengths->write(_listRows, lengths.count, lengths);
    _listRows += lengths.count;
    spill(values);
    _listValues += values.count;
}

void SetDataWriter::endLists()
{
    if (!_hasList)
        return;
    _hasList = false;
    List& list = _lists.at(_listName);
    openValues(list, _listName, _listPlainType);
    std::vector<double> buffer(blockRows); // aligned for all types
    const std::size_t size = sizeOf(_listType);
    for (std::uint64_t done = 0; done < _listValues; done += blockRows) {
        const std::uint64_t n = std::min(blockRows, _listValues - done);
        _spill->read(done * size, buffer.data(), n * size);
        list.values->array().write(done, n, Source{buffer.data(), size, nullptr, true});
    }
    list.values->markAll();
    _spill.reset();
}

void SetDataWriter::finish()
{
    endLists();
    MemberWriter::finish();
}

} // namespace meridyn::hdf5
