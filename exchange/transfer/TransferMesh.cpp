// What a mesh is beside its arrays: context, sizes, zones with all that they have.

#include "formats/common/BaseAccess.h"
#include "TransferRun.h"

namespace meridyn {

namespace {

/// Whether a zone has a text, a size or a number other than those of a zone that was only declared with its ids.
bool hasProperties(const KelZoneDescription& zone)
{
    KelZoneDescription fresh = freshZone(static_cast<KelZoneCategory>(zone.category), zone.id);
    const bool sameInfos = std::equal(std::begin(zone.infos), std::end(zone.infos), std::begin(fresh.infos));
    return zone.extra != 0 || zone.flags != 0 || !zone.texts[0].empty() || !zone.texts[1].empty() || !sameInfos;
}

/// Takes out of a description what is no part of the model, since the reader or the writer of the source worked it out:
/// the target's writer may do so, too.
void dropDerived(KelMeshDescription& mesh, const KelDerived& derived)
{
    for (int type = KEL_MESH_SIZE_1; type <= KEL_MESH_SIZE_4; ++type)
        if (derived.sizes[type])
            mesh.sizes[type] = 0;
    for (KelZoneDescription& zone : mesh.zones)
        for (std::vector<int>& neighbours : zone.neighbours)
            if (derived.adjacency)
                neighbours.clear();
}

/// Notes what the target's format does not carry; neighbours are taken out, since its writer would store them.
void leaveOut(TransferRun& run, KelMeshDescription& mesh)
{
    const bool hasSizes = !mesh.units.empty() || std::any_of(std::begin(mesh.sizes), std::end(mesh.sizes),
                                                             [](unsigned64 size) { return size != 0; });
    if (hasSizes)
        run.carries(KEL_FAMILY_MESH_SIZES, "dimension, sizes and units");
    for (const KelZoneDescription& zone : mesh.zones)
        if (hasProperties(zone))
            run.carries(KEL_FAMILY_ZONE_PROPERTIES, zone);
    const bool hasNeighbours = std::any_of(mesh.zones.begin(), mesh.zones.end(), [](const KelZoneDescription& zone) {
        return !zone.neighbours[0].empty() || !zone.neighbours[1].empty();
    });
    if (hasNeighbours && !run.carries(KEL_FAMILY_ZONE_ADJACENCY, "face and cell zones"))
        for (KelZoneDescription& zone : mesh.zones)
            for (std::vector<int>& neighbours : zone.neighbours)
                neighbours.clear();
}

} // namespace

/// Opening anew chooses a mesh on every reader, also on one that has already declared the phases of another; asking it
/// to load again would not.
void chooseMesh(TransferRun& run, KelDataClass dataClass, const KelMeshKey& key)
{
    if (chosenMesh(run.source) == key)
        return;
    run.source.endReading(dataClass);
    BaseAccess::setContext(run.source, key.meshId, static_cast<KelTargetCategory>(key.target), key.partitionId);
    if (!run.source.startReading(dataClass))
        throw TransferStopped(KelTransferProblem::SourceUnreadable,
                              storedErrors(run.source, "the reader could not open " + meshLabel(key)));
    if (!(chosenMesh(run.source) == key))
        throw TransferStopped(KelTransferProblem::SourceBroken, "the reader lists " + meshLabel(key) + ", but opens " +
                                                                    meshLabel(chosenMesh(run.source)));
}

void copyMesh(TransferRun& run, const KelMeshKey& key)
{
    run.tell("zones", 0, 0, 0);
    run.mesh = describeMesh(run.source);
    KelMeshDescription mesh = run.mesh;
    if (run.ledger != nullptr)
        dropDerived(mesh, run.ledger->derived());
    leaveOut(run, mesh);
    BaseAccess::setContext(run.target, key.meshId, static_cast<KelTargetCategory>(key.target), key.partitionId);
    declareMesh(run.target, mesh);
    const std::string solver = run.source.getSolverType();
    if (solver != KelBase().getSolverType())
        run.carries(KEL_FAMILY_SOLVER, "'" + solver + "'");
    run.target.setSolverType(solver);
}

} // namespace meridyn
