#include "Model.h"

#include "KelProvider.h"

#include <algorithm>

namespace meridyn {

std::string zoneLabel(const KelZoneDescription& zone)
{
    return "zone " + std::to_string(zone.id) + (zone.texts[0].empty() ? "" : " '" + zone.texts[0] + "'");
}

std::string meshLabel(const KelMeshKey& key)
{
    return "mesh " + std::to_string(key.meshId) + (key.target == 0 ? "" : ", target " + std::to_string(key.target)) +
           (key.partitionId < 0 ? "" : ", partition " + std::to_string(key.partitionId));
}

std::vector<KelZoneDescription> zonesWithElements(const KelMeshDescription& mesh, KelZoneCategory category)
{
    std::vector<KelZoneDescription> zones;
    std::copy_if(mesh.zones.begin(), mesh.zones.end(), std::back_inserter(zones),
                 [category](const KelZoneDescription& zone) {
                     return zone.category == category && zone.first != 0 && zone.last >= zone.first;
                 });
    std::stable_sort(zones.begin(), zones.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    return zones;
}

std::vector<int> idsOf(const std::vector<KelZoneDescription>& zones)
{
    std::vector<int> ids;
    ids.reserve(zones.size());
    for (const KelZoneDescription& zone : zones)
        ids.push_back(zone.id);
    return ids;
}

std::string storedErrors(KelBase& base, const std::string& otherwise)
{
    std::string text;
    for (const std::string& error : base.getErrors(false, false))
        text += (text.empty() ? "" : "; ") + error;
    return text.empty() ? otherwise : text;
}

const KelSourceLedger* ledgerOf(const KelProvider& reader)
{
    return dynamic_cast<const KelSourceLedger*>(&reader);
}

namespace {

/// The meshes as the three lists of the frame have them: every partition counts for the partitioned target only.
std::vector<KelMeshKey> listedMeshes(const KelProvider& reader, KelDataClass dataClass)
{
    std::vector<KelMeshKey> keys;
    for (const int meshId : reader.availableMeshIds(dataClass))
        for (const KelTargetCategory target : reader.availableTargets(meshId, dataClass)) {
            const std::vector<int> partitions =
                target == KEL_PARTITIONED_POST ? reader.availablePartitionIds(meshId, dataClass) : std::vector<int>();
            if (partitions.empty())
                keys.push_back({meshId, target, -1});
            for (const int partition : partitions)
                keys.push_back({meshId, target, partition});
        }
    return keys;
}

} // namespace

std::vector<KelMeshKey> meshesOf(const KelProvider& reader, KelDataClass dataClass)
{
    const KelSourceLedger* const ledger = ledgerOf(reader);
    const auto told = ledger != nullptr ? ledger->meshesOf(dataClass) : std::nullopt;
    std::vector<KelMeshKey> keys = told ? *told : listedMeshes(reader, dataClass);
    if (keys.empty()) // a reader of one mesh need not list it
        keys.push_back(chosenMesh(reader));
    std::stable_partition(keys.begin(), keys.end(), [](const KelMeshKey& key) { return key.partitionId < 0; });
    return keys;
}

KelMeshKey chosenMesh(const KelBase& base)
{
    return KelMeshKey::ofContext(base.getMeshId(), base.getTarget(), base.getPartitionId());
}

std::vector<KelMeshKey> meshesWithTracks(const KelProvider& reader, short phase)
{
    const KelSourceLedger* const ledger = ledgerOf(reader);
    if (const auto told = ledger != nullptr ? ledger->meshesWithTracks(phase) : std::nullopt)
        return *told;
    // Tried are the meshes of the file as they are named, and with every one of the three left open.
    std::vector<KelMeshKey> tried = meshesOf(reader, KEL_DATA), keys;
    const KelMeshKey chosen = {reader.getMeshId(), reader.getTarget(), reader.getPartitionId()};
    tried.push_back(chosen);
    for (std::size_t n = 0, count = tried.size(); n < count; ++n)
        for (const int meshId : {tried[n].meshId, -1})
            for (const int target : {tried[n].target, -1})
                for (const int partition : {tried[n].partitionId, -1})
                    tried.push_back({meshId, target, partition});
    for (const KelMeshKey& key : tried)
        if (std::find(keys.begin(), keys.end(), key) == keys.end() &&
            reader.hasParticleTracks(phase, key.meshId, static_cast<KelTargetCategory>(key.target), key.partitionId))
            keys.push_back(key);
    return keys;
}

std::vector<int> zonesWithInterfaces(KelProvider& reader, const KelMeshDescription& mesh, std::vector<int>& side0,
                                     std::vector<int>& side1)
{
    side0.clear();
    side1.clear();
    reader.startReadingInterfaceDataForFaces(side0, side1);
    std::vector<int> asked;
    for (const KelZoneDescription& zone : mesh.zones)
        asked.push_back(zone.id);
    asked.insert(asked.end(), side0.begin(), side0.end());
    asked.insert(asked.end(), side1.begin(), side1.end());
    std::vector<int> zones;
    for (const int zone : asked) {
        unsigned64 sizes[4] = {};
        if (std::find(zones.begin(), zones.end(), zone) == zones.end() &&
            reader.getInterfaceDataSizesForFacesInZone(zone, sizes[0], sizes[1], sizes[2], sizes[3]))
            zones.push_back(zone);
    }
    return zones;
}

} // namespace meridyn
