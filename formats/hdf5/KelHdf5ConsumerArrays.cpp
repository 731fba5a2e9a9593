#include "ConsumerData.h"
#include "formats/hdf5/file/Attributes.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

namespace {

void addZones(std::vector<int>& zones, const std::vector<int>& added)
{
    for (const int id : added)
        if (std::find(zones.begin(), zones.end(), id) == zones.end())
            zones.push_back(id);
}

void writeList(Hdf5File& file, hid_t group, const std::string& name, Stored type, const KelValues& values)
{
    const auto array = ArrayWriter::create(file, group, name, {type, values.count, 1}, 0);
    array->write(0, values.count, sourceOf(values, type));
}

} // namespace

// ---- arrays by range ----

void KelHdf5Consumer::announce(KelArray array, const std::vector<int>& zoneIds)
{
    _data->onMesh(nameOf(array), [&](MeshWriter& mesh) { mesh.announce(array, zoneIds); });
}

void KelHdf5Consumer::keep(KelArray array, unsigned64 first, unsigned64 last, const KelValues& values)
{
    const char* const name = nameOf(array);
    switch (array) {
    case KelArray::CaseSection:
    case KelArray::PhaseVariable:
        _data->onField(array, name, [&](FieldWriter& field) { field.write(first, last, values); });
        break;
    case KelArray::SetIds:
    case KelArray::SetVariable:
    case KelArray::SetLists:
    case KelArray::SetListLengths:
        _data->onSet(name, [&](SetWriter& set) { set.keep(array, first, last, values); });
        break;
    default:
        _data->onMesh(name, [&](MeshWriter& mesh) { mesh.keep(array, first, last, values, _data->realType(values)); });
    }
}

void KelHdf5Consumer::keepUniform(KelArray array, unsigned64 first, unsigned64 last, signed64 value)
{
    const char* const name = nameOf(array);
    if (array == KelArray::SetListLengths)
        _data->onSet(name, [&](SetWriter& set) { set.setUniformLength(first, last, value); });
    else
        _data->onMesh(name, [&](MeshWriter& mesh) { mesh.keepUniform(array, first, last, static_cast<int>(value)); });
}

// ---- what else a mesh has ----

void KelHdf5Consumer::startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0,
                                                        const std::vector<int>& zoneIds1)
{
    _data->onMesh("startWritingInterfaceDataForFaces", [&](MeshWriter& mesh) {
        openOrCreateGroup(mesh.groupOf(KEL_FACE_ZONE), "interface");
        addZones(_data->interfaceZones[0], zoneIds0);
        addZones(_data->interfaceZones[1], zoneIds1);
    });
}

void KelHdf5Consumer::keepInterface(int zoneId, const KelInterfaceValues& values)
{
    _data->onMesh("setInterfaceDataForFacesInZone", [&](MeshWriter& mesh) {
        const Handle all = openOrCreateGroup(mesh.groupOf(KEL_FACE_ZONE), "interface");
        const Handle group = replaceGroup(mesh.file(), all.get(), std::to_string(zoneId));
        for (int side = 0; side < 2; ++side) {
            const KelValues& shares = values[side];
            writeList(mesh.file(), group.get(), "share" + std::to_string(side), _data->realType(shares), shares);
        }
        for (int side = 0; side < 2; ++side)
            writeList(mesh.file(), group.get(), "face" + std::to_string(side), Stored::U64, values[2 + side]);
    });
}

void KelHdf5Consumer::startWritingPartitionIdsForCells(const std::vector<int>& zoneIds, int partitionCount)
{
    _data->onMesh("startWritingPartitionIdsForCells", [&](MeshWriter& mesh) {
        mesh.announce(KelArray::CellPartitions, zoneIds);
        mesh.setPartitionCount(partitionCount);
    });
}

void KelHdf5Consumer::setLocalElemIdsInZone(int zoneId, const unsigned64* ids, unsigned64 count)
{
    _data->onMesh("setLocalElemIdsInZone", [&](MeshWriter& mesh) {
        unsigned64 elements = 0;
        getZoneSizeInfo(zoneId, KEL_ZONE_ELEMENT_COUNT, elements);
        if (count != elements)
            throw FormatError("zone " + std::to_string(zoneId) + " has " + std::to_string(count) + " local ids, " +
                              std::to_string(elements) + " expected");
        const Handle group = openOrCreateGroup(mesh.group(), "local_ids");
        writeList(mesh.file(), group.get(), std::to_string(zoneId), Stored::U64, {ids, count});
    });
}

} // namespace meridyn
