#pragma once

#include "KelBase.h"

#include <list>
#include <map>

namespace meridyn {

/// The one place where transfer and comparison reach what KelBase keeps for readers and writers.
///
/// A transfer stands between a reader and a writer and belongs to neither, yet carries over what only they can say
/// about themselves: adjacency lists, the mesh context, the solution model. A pointer to a protected member, named
/// through a derived class, may be used on any KelBase.
class BaseAccess : public KelBase {
    using ZoneLists = std::map<int, std::list<int>>;

public:
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

    static KelSolutionModel& model(const KelBase& base) { return *(base.*&BaseAccess::solutionModel)(); }
};

} // namespace meridyn
