#include "SetReader.h"

#include "Attributes.h"
#include "FormatError.h"
#include "Hdf5File.h"
#include "TextStore.h"

namespace meridyn::hdf5 {

MemberReader::MemberReader(Hdf5File& file, Handle group) : _file(file), _group(std::move(group))
{
    const std::int64_t members = readNumber(_group.get(), "kel_members").value_or(0);
    if (members < 0)
        throw FormatError(pathOf(_group.get()) + " has " + std::to_string(members) + " members");
    _members = static_cast<std::uint64_t>(members);
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

std::vector<std::string> MemberReader::names(const char* kind) const
{
    std::vector<std::string> names;
    if (!hasLink(_group.get(), kind))
        return names;
    const Handle group = openGroup(_group.get(), kind);
    for (const std::string& name : linkNames(group.get()))
        names.push_back(decodeName(name));
    return names;
}

bool MemberReader::has(const char* kind, const std::string& name) const
{
    return hasLink(_group.get(), kind) && hasLink(openGroup(_group.get(), kind).get(), encodeName(name));
}

std::unique_ptr<ArrayReader> MemberReader::array(const char* kind, const std::string& name) const
{
    if (!has(kind, name))
        return nullptr;
    const Handle group = openGroup(_group.get(), kind);
    return ArrayReader::open(_file, group.get(), encodeName(name));
}

std::unique_ptr<ArrayReader> MemberReader::listArray(const std::string& name, const char* part) const
{
    if (!has("lists", name))
        return nullptr;
    const Handle lists = openGroup(_group.get(), "lists");
    const Handle group = openGroup(lists.get(), encodeName(name));
    return hasLink(group.get(), part) ? ArrayReader::open(_file, group.get(), part) : nullptr;
}

std::unique_ptr<ArrayReader> MemberReader::ids() const
{
    return hasLink(_group.get(), "ids") ? ArrayReader::open(_file, _group.get(), "ids") : nullptr;
}

std::unique_ptr<ArrayReader> MemberReader::variable(const std::string& name) const
{
    return array("variables", name);
}

std::unique_ptr<ArrayReader> MemberReader::lengths(const std::string& name) const
{
    return listArray(name, "lengths");
}

std::unique_ptr<ArrayReader> MemberReader::offsets(const std::string& name) const
{
    return listArray(name, "offsets");
}

std::unique_ptr<ArrayReader> MemberReader::listValues(const std::string& name) const
{
    return listArray(name, "values");
}

std::unique_ptr<ArrayReader> MemberReader::other(const std::string& name) const
{
    return array("other", name);
}

std::optional<std::string> MemberReader::text(const std::string& name) const
{
    if (!has("texts", name))
        return std::nullopt;
    const Handle group = openGroup(_group.get(), "texts");
    return readLongText(_file, group.get(), encodeName(name));
}

KelPlainDataType plainTypeOf(const ArrayReader& array)
{
    const auto type = readNumber(array.id(), "kel_type");
    if (!type || !isPlainType(static_cast<int>(*type)))
        throw FormatError(array.label() + "@kel_type is missing or not from 0 to 9");
    return static_cast<KelPlainDataType>(*type);
}

} // namespace meridyn::hdf5
