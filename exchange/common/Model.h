#pragma once

#include "KelMeshKey.h"
#include "KelModelDescription.h"
#include "KelSourceLedger.h"
#include "KelTypes.h"

#include <string>
#include <vector>

namespace meridyn {

class KelBase;
class KelProvider;

// What transfer and comparison both need to know about a model that is read.

/// "zone 7 'wall'".
std::string zoneLabel(const KelZoneDescription& zone);

/// "mesh 2", "mesh 2, target 1", "mesh 2, target 2, partition 3".
std::string meshLabel(const KelMeshKey& key);

/// The zones of a mesh of one category that have elements, in the order of their first element.
std::vector<KelZoneDescription> zonesWithElements(const KelMeshDescription& mesh, KelZoneCategory category);

/// The ids of zones.
std::vector<int> idsOf(const std::vector<KelZoneDescription>& zones);

/// Errors that a reader or writer has stored, in one line, or what it should say without any.
std::string storedErrors(KelBase& base, const std::string& otherwise);

/// What a reader tells beside the frame; null for one that keeps no ledger.
const KelSourceLedger* ledgerOf(const KelProvider& reader);

/// All meshes of an open data class, each partition behind the mesh without one, since a partition once chosen cannot
/// be unchosen. A reader that keeps no ledger is asked for its ids, targets and partitions.
std::vector<KelMeshKey> meshesOf(const KelProvider& reader, KelDataClass dataClass);

/// The mesh that a reader's or writer's context stands for.
KelMeshKey chosenMesh(const KelBase& base);

/// The meshes, of this file or another, -1 for none, for which a phase has particle tracks at the chosen time level.
std::vector<KelMeshKey> meshesWithTracks(const KelProvider& reader, short phase);

/// The zones of a mesh with interface data, which any zone may have, and the two lists of coupled zones. The interface
/// data are left open: endReadingInterfaceDataForFaces closes them.
std::vector<int> zonesWithInterfaces(KelProvider& reader, const KelMeshDescription& mesh, std::vector<int>& side0,
                                     std::vector<int>& side1);

} // namespace meridyn
