#include "FileIdentity.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "KelVersion.h"

namespace meridyn::hdf5 {

namespace {

const char* formatNameOf(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "Kel case" : "Kel data";
}

} // namespace

std::string formatVersion()
{
    return KelVersion::apiVersionAsString(".") + "." + std::to_string(KelVersion::getPatch());
}

void writeIdentity(hid_t root, KelDataClass dataClass)
{
    writeText(root, "format", formatNameOf(dataClass));
    writeText(root, "format_version", formatVersion());
}

std::string readIdentity(hid_t root, KelDataClass dataClass)
{
    const std::string format = readText(root, "format").value_or("");
    if (format != formatNameOf(dataClass))
        throw FormatError("is " + (format.empty() ? "no Kel file" : "a file of the format '" + format + "'") + ", '" +
                          formatNameOf(dataClass) + "' expected");
    return readText(root, "format_version").value_or("");
}

std::vector<MeshKey> meshKeys(hid_t root)
{
    std::vector<MeshKey> keys;
    if (!hasLink(root, "meshes"))
        return keys;
    const Handle meshes = openGroup(root, "meshes");
    for (const std::string& name : linkNames(meshes.get()))
        if (MeshKey key; parseMeshKey(name, key))
            keys.push_back(key);
    return keys;
}

Handle openMesh(hid_t root, const MeshKey& key)
{
    const Handle meshes = openGroup(root, "meshes");
    return openGroup(meshes.get(), key.groupName());
}

std::optional<MeshKey> findMesh(const std::vector<MeshKey>& keys, const MeshKey& wanted)
{
    for (const MeshKey& key : keys) {
        const bool hasPartition = wanted.target == KEL_PARTITIONED_POST && wanted.partitionId >= 0;
        if ((wanted.meshId < 1 || key.meshId == wanted.meshId) && key.target == wanted.target &&
            (!hasPartition || key.partitionId == wanted.partitionId))
            return key;
    }
    return std::nullopt;
}

std::optional<MeshKey> findBestMesh(const std::vector<MeshKey>& keys, const MeshKey& wanted)
{
    std::optional<MeshKey> best;
    int bestScore = -1;
    for (const MeshKey& key : keys) {
        if (wanted.meshId >= 1 && key.meshId >= 1 && key.meshId != wanted.meshId)
            continue; // another mesh than the one that was chosen
        const int score = (key.meshId == wanted.meshId ? 4 : 0) + (key.target == wanted.target ? 2 : 0) +
                          (key.partitionId == wanted.partitionId ? 1 : 0);
        if (score > bestScore) {
            best = key;
            bestScore = score;
        }
    }
    return best;
}

} // namespace meridyn::hdf5
