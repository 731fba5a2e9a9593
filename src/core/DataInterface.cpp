#include "core/DataInterface.h"

#include "core/SettingsProvider.h"
#include "KelSolutionModel.h"

namespace meridyn {

DataInterface::DataInterface(int meshId)
    : settings(std::make_unique<SettingsProvider>()),
      context(meshId),
      zones(std::make_unique<ZoneTables>(this)),
      solutionModel(std::make_unique<KelSolutionModel>())
{}

DataInterface::~DataInterface() = default;

KelZoneCategory DataInterface::categoryOf(int zoneId) const
{
    const auto found = zoneCategories.find(zoneId);
    return static_cast<KelZoneCategory>(found == zoneCategories.end() ? -1 : found->second);
}

ZoneTable* DataInterface::tableOf(int zoneId) const
{
    return zones->ofCategory(categoryOf(zoneId));
}

void DataInterface::resetMesh()
{
    // The solution model, time levels and active phase stay: a reader that loads them again clears them itself.
    meshSizes = MeshSizes();
    zones = std::make_unique<ZoneTables>(this);
    zoneCategories.clear();
}

} // namespace meridyn
