#include "Attributes.h"

#include "CreationOrder.h"
#include "FormatError.h"
#include "Hdf5File.h"

namespace meridyn::hdf5 {

namespace {

// An attribute is read whole into memory; what is larger than this was not written by a format of ours.
constexpr hsize_t largestAttribute = 1ULL << 30;

std::string label(hid_t object, const std::string& name)
{
    return "attribute " + pathOf(object) + "@" + name;
}

Handle createAttribute(hid_t object, const std::string& name, hid_t type, hid_t space)
{
    if (H5Aexists(object, name.c_str()) > 0)
        checkedCall(H5Adelete(object, name.c_str()), label(object, name));
    return checkedId(H5Acreate2(object, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT), label(object, name));
}

Handle openAttribute(hid_t object, const std::string& name)
{
    if (H5Aexists(object, name.c_str()) <= 0)
        return {};
    Handle attribute = checkedId(H5Aopen(object, name.c_str(), H5P_DEFAULT), label(object, name));
    if (H5Aget_storage_size(attribute.get()) > largestAttribute)
        throw FormatError(label(object, name) + " is larger than an attribute can be");
    return attribute;
}

hsize_t valueCount(const Handle& attribute)
{
    const Handle space = checkedId(H5Aget_space(attribute.get()), "attribute space");
    const hssize_t count = H5Sget_simple_extent_npoints(space.get());
    return count < 0 ? 0 : static_cast<hsize_t>(count);
}

herr_t addName(hid_t, const char* name, const H5A_info_t* info, void* names)
{
    return withoutThrowing([&] {
        static_cast<std::vector<NumberedName>*>(names)->push_back({info->corder_valid ? info->corder : 0, name});
    });
}

} // namespace

void writeText(hid_t object, const std::string& name, const std::string& text)
{
    const QuietErrors quiet;
    const Handle type = checkedId(H5Tcopy(H5T_C_S1), "text type");
    checkedCall(H5Tset_size(type.get(), text.empty() ? 1 : text.size()), "text type");
    checkedCall(H5Tset_strpad(type.get(), H5T_STR_NULLPAD), "text type");
    checkedCall(H5Tset_cset(type.get(), H5T_CSET_UTF8), "text type");
    const Handle space = checkedId(H5Screate(text.empty() ? H5S_NULL : H5S_SCALAR), "text space");
    const Handle attribute = createAttribute(object, name, type.get(), space.get());
    if (!text.empty())
        checkedCall(H5Awrite(attribute.get(), type.get(), text.data()), label(object, name));
}

void writeNumber(hid_t object, const std::string& name, std::int64_t value)
{
    const QuietErrors quiet;
    const Handle space = checkedId(H5Screate(H5S_SCALAR), "number space");
    const Handle attribute = createAttribute(object, name, H5T_STD_I64LE, space.get());
    checkedCall(H5Awrite(attribute.get(), H5T_NATIVE_INT64, &value), label(object, name));
}

void writeNumbers(hid_t object, const std::string& name, const std::vector<std::int64_t>& values)
{
    const QuietErrors quiet;
    const hsize_t count = values.size();
    const Handle space =
        checkedId(values.empty() ? H5Screate(H5S_NULL) : H5Screate_simple(1, &count, nullptr), "number space");
    const Handle attribute = createAttribute(object, name, H5T_STD_I64LE, space.get());
    if (!values.empty())
        checkedCall(H5Awrite(attribute.get(), H5T_NATIVE_INT64, values.data()), label(object, name));
}

std::optional<std::string> readText(hid_t object, const std::string& name)
{
    const QuietErrors quiet;
    const Handle attribute = openAttribute(object, name);
    if (!attribute)
        return std::nullopt;
    const Handle type = checkedId(H5Aget_type(attribute.get()), label(object, name));
    if (H5Tget_class(type.get()) != H5T_STRING || H5Tis_variable_str(type.get()) != 0)
        throw FormatError(label(object, name) + " is no fixed-length text");
    const hsize_t count = valueCount(attribute);
    if (count == 0)
        return std::string();
    const std::size_t size = H5Tget_size(type.get());
    if (count != 1 || size > largestAttribute)
        throw FormatError(label(object, name) + " has " + std::to_string(count) + " values, 1 expected");
    std::string text(size, '\0');
    checkedCall(H5Aread(attribute.get(), type.get(), text.data()), label(object, name));
    return text;
}

std::optional<std::vector<std::int64_t>> readNumbers(hid_t object, const std::string& name)
{
    const QuietErrors quiet;
    const Handle attribute = openAttribute(object, name);
    if (!attribute)
        return std::nullopt;
    const Handle type = checkedId(H5Aget_type(attribute.get()), label(object, name));
    if (H5Tget_class(type.get()) != H5T_INTEGER)
        throw FormatError(label(object, name) + " is no integer");
    const hsize_t count = valueCount(attribute);
    if (count > largestAttribute / sizeof(std::int64_t))
        throw FormatError(label(object, name) + " has " + std::to_string(count) + " values");
    std::vector<std::int64_t> values(count);
    if (count > 0)
        checkedCall(H5Aread(attribute.get(), H5T_NATIVE_INT64, values.data()), label(object, name));
    return values;
}

std::optional<std::int64_t> readNumber(hid_t object, const std::string& name)
{
    const auto values = readNumbers(object, name);
    if (!values)
        return std::nullopt;
    if (values->size() != 1)
        throw FormatError(label(object, name) + " has " + std::to_string(values->size()) + " values, 1 expected");
    return values->front();
}

void removeAttribute(hid_t object, const std::string& name)
{
    const QuietErrors quiet;
    checkedCall(H5Adelete(object, name.c_str()), label(object, name));
}

bool hasAttribute(hid_t object, const std::string& name)
{
    const QuietErrors quiet;
    return H5Aexists(object, name.c_str()) > 0;
}

std::vector<std::string> attributeNames(hid_t object)
{
    const QuietErrors quiet;
    std::vector<NumberedName> attributes;
    hsize_t index = 0;
    checkedCall(H5Aiterate2(object, H5_INDEX_NAME, H5_ITER_NATIVE, &index, addName, &attributes), pathOf(object));
    return inOrderOfCreation(std::move(attributes));
}

} // namespace meridyn::hdf5
