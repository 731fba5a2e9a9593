#include "formats/hdf5/file/Attributes.h"
#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

namespace {

constexpr const char* interfaceArrays[] = {"share0", "share1", "face0", "face1"};

std::unique_ptr<ArrayReader> interfaceArray(const MeshReader& mesh, int zoneId, int index)
{
    const Handle group = findGroup(mesh.group(), {"faces", "interface", std::to_string(zoneId)});
    return ArrayReader::find(mesh.file(), group, interfaceArrays[index]);
}

std::vector<int> toInts(const std::optional<std::vector<std::int64_t>>& numbers)
{
    std::vector<int> ints;
    for (const std::int64_t number : numbers.value_or(std::vector<std::int64_t>()))
        ints.push_back(static_cast<int>(number));
    return ints;
}

} // namespace

// ---- arrays by range ----

unsigned64 KelHdf5Provider::give(KelArray array, unsigned64 firstId, unsigned64 lastId, const KelBuffer& values) const
{
    return _data->ask(_data->classOf(array), nameOf(array), unsigned64{0},
                      [&](Data::Session&) { return _data->read(array, firstId, lastId, values); });
}

KelDataClass KelHdf5Provider::Data::classOf(KelArray array) const
{
    if (array == KelArray::PhaseVariable)
        return KEL_DATA;
    return array >= KelArray::SetIds ? setClass : KEL_CASE;
}

unsigned64 KelHdf5Provider::Data::read(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& buffer) const
{
    switch (array) {
    case KelArray::CaseSection:
        return section ? section->read(first, last, buffer) : 0;
    case KelArray::PhaseVariable:
        return values ? values->read(first, last, buffer) : 0;
    case KelArray::SetIds:
    case KelArray::SetVariable:
    case KelArray::SetLists:
    case KelArray::SetListLengths:
        return set ? readSet(array, first, last, buffer) : 0;
    default:
        return mesh ? mesh->read(array, first, last, buffer) : 0;
    }
}

std::optional<signed64> KelHdf5Provider::uniformValue(KelArray array, unsigned64 firstId, unsigned64 lastId) const
{
    return _data->askMesh(
        nameOf(array), std::optional<signed64>(),
        [&](const MeshReader& mesh) -> std::optional<signed64> { return mesh.uniformValue(array, firstId, lastId); });
}

KelPlainDataType KelHdf5Provider::storedType(KelArray array) const
{
    return _data->ask(_data->classOf(array), "storedType", noType, [&](Data::Session&) {
        std::optional<Stored> type;
        if (array == KelArray::PhaseVariable && _data->values)
            type = _data->values->type();
        else if (array == KelArray::Coordinates && _data->mesh)
            type = _data->mesh->coordinateType();
        if (!type || (*type != Stored::F32 && *type != Stored::F64))
            return noType;
        return *type == Stored::F32 ? KEL_PLAIN_FLOAT : KEL_PLAIN_DOUBLE;
    });
}

// ---- what else a mesh has ----

unsigned64 KelHdf5Provider::getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const
{
    return _data->askMesh("getLocalElemIdsInZone", unsigned64{0}, [&](const MeshReader& mesh) {
        const Handle group = findGroup(mesh.group(), {"local_ids"});
        const auto array = ArrayReader::find(mesh.file(), group, std::to_string(zoneId));
        return array ? array->readStart({ids, capacity}) : 0;
    });
}

int KelHdf5Provider::getPartitionCountOfCells() const
{
    return _data->askMesh("getPartitionCountOfCells", 0, [](const MeshReader& mesh) { return mesh.partitionCount(); });
}

void KelHdf5Provider::startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1)
{
    zoneIds0.clear();
    zoneIds1.clear();
    _data->askMesh("startReadingInterfaceDataForFaces", false, [&](const MeshReader& mesh) {
        const Handle group = findGroup(mesh.group(), {"faces", "interface"});
        if (group) {
            zoneIds0 = toInts(readNumbers(group.get(), "zones0"));
            zoneIds1 = toInts(readNumbers(group.get(), "zones1"));
        }
        return true;
    });
}

bool KelHdf5Provider::getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb,
                                                          unsigned64& count0, unsigned64& count1) const
{
    return _data->askMesh("getInterfaceDataSizesForFacesInZone", false, [&](const MeshReader& mesh) {
        unsigned64 found[4] = {};
        for (int i = 0; i < 4; ++i) {
            const auto array = interfaceArray(mesh, zoneId, i);
            if (!array)
                return false;
            found[i] = array->shape().valueCount();
        }
        na = found[0];
        nb = found[1];
        count0 = found[2];
        count1 = found[3];
        return true;
    });
}

unsigned64 KelHdf5Provider::giveInterface(int zoneId, const KelInterfaceBuffers& values) const
{
    return _data->askMesh("getInterfaceDataForFacesInZone", unsigned64{0}, [&](const MeshReader& mesh) {
        unsigned64 stored = 0;
        for (int i = 0; i < 4; ++i)
            if (const auto array = interfaceArray(mesh, zoneId, i))
                stored += array->readStart(values[i]);
        return stored;
    });
}

// ---- case sections ----

void KelHdf5Provider::startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names)
{
    _data->sectionCategory = category;
    names =
        _data->askMesh("startReadingCaseSectionCategories", std::vector<std::string>(), [&](const MeshReader& mesh) {
            return decodedNames(findGroup(mesh.group(), {"case_sections", groupNameOf(category)}));
        });
}

KelPlainDataType KelHdf5Provider::startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds)
{
    _data->section.reset();
    return _data->askMesh("startReadingCaseSectionForCategory", noType, [&](const MeshReader& mesh) {
        const Handle group =
            findGroup(mesh.group(), {"case_sections", groupNameOf(_data->sectionCategory), encodeName(name)});
        if (!group)
            return noType;
        const auto number = readNumber(group.get(), "kel_type").value_or(-1);
        auto section = FieldReader::open(mesh.file(), group.get(), "values");
        if (!section || !isPlainType(static_cast<int>(number)))
            return noType;
        const auto type = static_cast<KelPlainDataType>(number);
        if (storedTypeOfPlain(type) != section->type())
            throw FormatError(pathOf(group.get()) + "@kel_type is " + std::to_string(number) +
                              ", not the type of its values");
        zoneIds = section->zones();
        _data->section = std::move(section);
        _data->sectionType = type;
        return type;
    });
}

bool KelHdf5Provider::hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const
{
    if (!_data->section)
        return false;
    const std::vector<int> zones = _data->section->zones();
    if (std::find(zones.begin(), zones.end(), zoneId) == zones.end())
        return false;
    if (count != nullptr)
        *count = _data->section->columns();
    return true;
}

unsigned64 KelHdf5Provider::getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values,
                                                                 unsigned64 capacity) const
{
    return give(KelArray::CaseSection, firstId, lastId, {values, capacity, _data->sectionType});
}

void KelHdf5Provider::endReadingCaseSectionForCategory()
{
    _data->section.reset();
}

} // namespace meridyn
