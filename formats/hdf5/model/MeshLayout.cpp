#include "MeshLayout.h"

#include <charconv>

namespace meridyn::hdf5 {

namespace {

const ArrayInfo listInfos[listsCount] = {
    {"node", KEL_EDGE_ZONE, KEL_NODE_ZONE},  {"node", KEL_FACE_ZONE, KEL_NODE_ZONE},
    {"child", KEL_FACE_ZONE, KEL_FACE_ZONE}, {"node", KEL_CELL_ZONE, KEL_NODE_ZONE},
    {"face", KEL_CELL_ZONE, KEL_FACE_ZONE},  {"child", KEL_CELL_ZONE, KEL_CELL_ZONE},
};

const ArrayInfo idInfos[idsCount] = {
    {"cell0", KEL_FACE_ZONE, KEL_CELL_ZONE},
    {"cell1", KEL_FACE_ZONE, KEL_CELL_ZONE},
    {"shadow_face", KEL_FACE_ZONE, KEL_FACE_ZONE},
};

const ArrayInfo intInfos[intsCount] = {
    {"type", KEL_CELL_ZONE, KEL_CELL_ZONE},
    {"partition", KEL_CELL_ZONE, KEL_CELL_ZONE},
};

bool takeNumber(const std::string& text, std::size_t& at, const std::string& label, int& value)
{
    if (text.compare(at, label.size(), label) != 0)
        return false;
    const char* begin = text.data() + at + label.size();
    const auto [end, error] = std::from_chars(begin, text.data() + text.size(), value);
    at = static_cast<std::size_t>(end - text.data());
    return error == std::errc();
}

} // namespace

const ArrayInfo& infoOf(Lists lists)
{
    return listInfos[static_cast<int>(lists)];
}

const ArrayInfo& infoOf(Ids ids)
{
    return idInfos[static_cast<int>(ids)];
}

const ArrayInfo& infoOf(Ints ints)
{
    return intInfos[static_cast<int>(ints)];
}

bool isCategory(int category)
{
    return category >= KEL_NODE_ZONE && category <= KEL_CELL_ZONE;
}

const char* groupNameOf(KelZoneCategory category)
{
    static const char* const names[] = {"nodes", "edges", "faces", "cells"};
    return isCategory(category) ? names[category] : "other";
}

bool parseMeshKey(const std::string& groupName, MeshKey& key)
{
    std::size_t at = 0;
    return takeNumber(groupName, at, "mesh_", key.meshId) && takeNumber(groupName, at, "_target_", key.target) &&
           takeNumber(groupName, at, "_partition_", key.partitionId) && at == groupName.size();
}

} // namespace meridyn::hdf5
