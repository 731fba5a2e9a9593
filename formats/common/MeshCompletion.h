#pragma once

#include "KelArrays.h"
#include "KelDerivedValues.h"
#include "KelModelDescription.h"
#include "KelSourceLedger.h"

#include <functional>

namespace meridyn {

/// Takes some of the ids that elements have in an array, in any order.
using VisitIds = std::function<void(const unsigned64* ids, unsigned64 count)>;

/// Shows the ids that the elements of a range have in an array, stretch by stretch; elements without any are left out.
using ShowIds = std::function<void(KelArray array, unsigned64 first, unsigned64 last, const VisitIds& visit)>;

/// Fills in what a client did not say about a mesh and what its zones and arrays tell: the mesh-wide counts, which
/// cell zones lie on each side of a face zone, which face zones lie around a cell zone. What was given stays.
///
/// Everything is read from the arrays as they are in the end, not while they pass: a range that was handed over twice
/// counts with its last values, and zones may have been declared after the faces. Memory is that of one stretch.
/// @return what was filled in
KelDerivedValues completeMesh(KelMeshDescription& mesh, const ShowIds& show);

/// The same for the description of a mesh in a data file, which has no arrays: neighbours come from the mesh as the
/// case has it, for zones that are the same in both.
KelDerivedValues completeFrom(KelMeshDescription& mesh, const KelMeshDescription& ofCase);

/// What a reader says in its ledger about values that the writer of its file has marked.
KelDerived toLedger(const KelDerivedValues& derived, const std::vector<KelZoneDescription>& zones);

} // namespace meridyn
