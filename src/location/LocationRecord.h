#pragma once

#include "KelLocationModel.h"
#include "StrataIds.h"

#include "strata/Body.h"
#include "strata/Composite.h"
#include "strata/Face.h"
#include "strata/FaceUse.h"
#include "strata/Model.h"
#include "strata/Part.h"
#include "strata/Topology.h"
#include "strata/TopologyMap.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace meridyn {

/// What a location model holds, with the look-ups by int id. Null stands for a missing region.
struct KelLocationModel::Record {
    strata::Model model{""};
    strata::Topology* topology = model.topology();

    strata::Part* part(int id) const { return topology->findPartById(toStrataId('p', id)); }
    strata::Body* body(int id) const { return topology->findBodyById(toStrataId('b', id)); }
    strata::Face* face(std::int64_t id) const { return topology->findFaceById(toStrataId('f', id)); }
    strata::Composite* composite(int id) const { return topology->findCompositeById(toStrataId('c', id)); }

    strata::FaceUse* faceUse(int id) const
    {
        const strata::Face* of = face(std::abs(std::int64_t{id})); // the amount of the smallest int is no int
        return of != nullptr ? of->faceUse(id >= 1 ? 0 : 1) : nullptr;
    }
};

/// The int id of a part or of a region other than a face use.
template <class T>
int idOf(const T* region)
{
    return toIntId(region->id());
}

/// The signed id of a face use.
inline int idOf(const strata::FaceUse* faceUse)
{
    const int faceId = idOf(faceUse->face());
    return faceUse->side() == 1 ? -faceId : faceId;
}

/// Appends the zones that a map says a body consists of.
void appendZones(strata::Model& model, const strata::Body* body, int mapId, std::vector<int>& zones);

/// Appends the sides of face zones that a map says a face use consists of, negative on the far side.
void appendZoneSides(strata::Model& model, const strata::FaceUse* use, int mapId, std::vector<int>& sides);

template <class T>
void appendIds(const std::vector<T*>& regions, std::vector<int>& ids)
{
    ids.reserve(ids.size() + regions.size());
    for (const T* region : regions)
        ids.push_back(idOf(region));
}

} // namespace meridyn
