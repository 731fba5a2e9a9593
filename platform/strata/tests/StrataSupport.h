#pragma once

#include "strata/Body.h"
#include "strata/Composite.h"
#include "strata/Face.h"
#include "strata/FaceUse.h"
#include "strata/Model.h"
#include "strata/Part.h"
#include "strata/Topology.h"
#include "strata/TopologyMap.h"

#include <string>
#include <vector>

/// The ids of regions or parts, in the order of the list.
template <class List>
std::vector<std::string> idsOf(const List& list)
{
    std::vector<std::string> ids;
    ids.reserve(list.size());
    for (const auto* item : list)
        ids.push_back(item->id());
    return ids;
}

using Ids = std::vector<std::string>;
