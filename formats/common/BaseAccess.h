#pragma once

#include "KelBase.h"

#include <list>
#include <map>
#include <vector>

namespace meridyn {

/// The one place where code that is neither a reader nor a writer reaches what KelBase keeps for them.
///
/// Copying, comparing and declaring a mesh need adjacency lists, the mesh context and the solution model of any
/// KelBase. A pointer to a protected member, named through a derived class, may be used on all of them.
class BaseAccess : public KelBase {
    using ZoneLists = std::map<int, std::list<int>>;

public:
    static void drop(KelBase& base) { (base.*&BaseAccess::dropMesh)(); }

    static void setCellZones0(KelBase& base, const ZoneLists& lists)
    {
        (base.*&BaseAccess::setFaceCellZone0Ids)(lists);
    }
    static void setCellZones1(KelBase& base, const ZoneLists& lists)
    {
        (base.*&BaseAccess::setFaceCellZone1Ids)(lists);
    }
    static void setFaceZones(KelBase& base, const ZoneLists& lists) { (base.*&BaseAccess::setCellFaceZoneIds)(lists); }

    static void setContext(KelBase& base, int meshId, KelTargetCategory target, int partitionId)
    {
        (base.*&BaseAccess::setMeshContext)(meshId, target, partitionId, KEL_UPDATE_NONE);
    }

    static void variablesOfCategory(const KelBase& base, KelZoneCategory category, std::vector<int>& variableIds)
    {
        (base.*&BaseAccess::getVariablesOfCategory)(category, variableIds);
    }

    static KelSolutionModel& model(const KelBase& base) { return *(base.*&BaseAccess::solutionModel)(); }
};

} // namespace meridyn
