#pragma once

#include "KelBase.h"

namespace meridyn {

/// First and last element id of a zone, both included.
struct IdRange {
    unsigned64 first = 0;
    unsigned64 last = 0;
};

/// The element ids of a zone; 0 and 0 for an unknown one, which the range form then receives.
inline IdRange rangeOfZone(const KelBase& base, int zoneId)
{
    IdRange range;
    base.getZoneSizeInfo(zoneId, KEL_ZONE_FIRST_ID, range.first);
    base.getZoneSizeInfo(zoneId, KEL_ZONE_LAST_ID, range.last);
    return range;
}

} // namespace meridyn
