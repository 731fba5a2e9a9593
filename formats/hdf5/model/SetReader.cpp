#include "SetReader.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "TextStore.h"

namespace meridyn::hdf5 {

MemberReader::MemberReader(Hdf5File& file, Handle group) : _file(file), _group(std::move(group))
{
    const std::int64_t members = readNumber(_group.get(), "kel_members").value_or(0);
    if (members < 0)
        throw FormatError(pathOf(_group.get()) + " has " + std::to_string(members) + " members");
    _members = static_cast<std::uint64_t>(members);
}

std::unique_ptr<MemberReader> MemberReader::find(Hdf5File& file, const Handle& group, const std::string& name)
{
    Handle found = group ? findGroup(group.get(), {encodeName(name)}) : Handle();
    return found ? std::make_unique<MemberReader>(file, std::move(found)) : nullptr;
}

KelZoneCategory MemberReader::category() const
{
    return static_cast<KelZoneCategory>(readNumber(_group.get(), "kel_category").value_or(-1));
}

void MemberReader::blocks(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                          std::vector<unsigned64>& maxIds) const
{
    sizes.clear();
    minIds.clear();
    maxIds.clear();
    if (!hasLink(_group.get(), "blocks"))
        return;
    const auto table = ArrayReader::open(_file, _group.get(), "blocks")->readAll<unsigned64>();
    for (std::size_t i = 0; i + 2 < table.size(); i += 3) {
        sizes.push_back(table[i]);
        minIds.push_back(table[i + 1]);
        maxIds.push_back(table[i + 2]);
    }
}

Handle MemberReader::groupOf(KelPart part) const
{
    static const char* const names[] = {"ids", "variables", "lists", "lists", "other", "texts"}; // as in KelPart
    return findGroup(_group.get(), {names[static_cast<int>(part)]});
}

std::vector<std::string> MemberReader::names(KelPart part) const
{
    return decodedNames(groupOf(part));
}

std::unique_ptr<ArrayReader> MemberReader::listArray(const std::string& name, const char* what) const
{
    return ArrayReader::find(_file, findGroup(_group.get(), {"lists", encodeName(name)}), what);
}

std::unique_ptr<ArrayReader> MemberReader::array(KelPart part, const std::string& name) const
{
    switch (part) {
    case KelPart::Ids:
        return ofMembers(ArrayReader::find(_file, _group, "ids"));
    case KelPart::Lists:
        return listArray(name, "values");
    case KelPart::Lengths:
        return ofMembers(listArray(name, "lengths"));
    case KelPart::Variables:
        return ofMembers(ArrayReader::find(_file, groupOf(part), encodeName(name)));
    case KelPart::Others:
        return ArrayReader::find(_file, groupOf(part), encodeName(name));
    case KelPart::Texts:
        break;
    }
    return nullptr;
}

// The number of members stands in each array once more.
std::unique_ptr<ArrayReader> MemberReader::ofMembers(std::unique_ptr<ArrayReader> array) const
{
    if (array && array->shape().rows != _members)
        throw FormatError(array->label() + " has " + std::to_string(array->shape().rows) + " rows, the " +
                          std::to_string(_members) + " members expected");
    return array;
}

std::unique_ptr<ListTable> MemberReader::listTable(const std::string& name) const
{
    const auto values = listArray(name, "values");
    auto offsets = listArray(name, "offsets");
    std::shared_ptr<ArrayReader> lengths = listArray(name, "lengths");
    if (!values && !offsets && !lengths)
        return nullptr;
    if (!values || !offsets || !lengths)
        throw FormatError(pathOf(_group.get()) + "/lists/" + encodeName(name) +
                          " lacks its values, offsets or lengths");
    const auto read = [lengths](std::uint64_t row, std::uint64_t count, std::uint64_t* to) {
        lengths->read(row, count, to);
    };
    return std::make_unique<ListTable>(std::move(offsets), read, _members, values->shape().valueCount());
}

std::optional<std::string> MemberReader::text(const std::string& name) const
{
    const Handle group = groupOf(KelPart::Texts);
    return group ? readLongText(_file, group.get(), encodeName(name)) : std::nullopt;
}

KelPlainDataType kelTypeOf(const ArrayReader& array)
{
    const auto type = readNumber(array.id(), "kel_type");
    if (!type || !isPlainType(static_cast<int>(*type)))
        throw FormatError(array.label() + "@kel_type is missing or not from 0 to 9");
    return static_cast<KelPlainDataType>(*type);
}

} // namespace meridyn::hdf5
