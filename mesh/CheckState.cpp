#include "mesh/CheckState.h"

#include "KelProvider.h"
#include "mesh/MeshText.h"

namespace meridyn::mesh {

std::string CheckState::label(KelZoneCategory category, const Zone& zone, unsigned64 id) const
{
    return std::string(elementName(category)) + " " + grouped(id) + " of zone " + zoneLabel(reader, zone.id);
}

} // namespace meridyn::mesh
