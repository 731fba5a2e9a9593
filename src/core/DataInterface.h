#pragma once

#include "core/MeshContext.h"
#include "core/MessageStorage.h"
#include "core/ZoneTable.h"

#include <array>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace meridyn {

class KelSolutionModel;
class SettingsProvider;

/// All that a KelBase keeps, and its message store. The fields are open: KelBase's operations are the interface.
class DataInterface : public MessageStorage {
public:
    static constexpr int categoryCount = 4;

    explicit DataInterface(int meshId);
    ~DataInterface() override;
    DataInterface(const DataInterface&) = delete;
    DataInterface& operator=(const DataInterface&) = delete;

    /// The category of a zone id, -1 for one never declared.
    KelZoneCategory categoryOf(int zoneId) const;
    /// The table that a zone id belongs to, null for one never declared. It need not have the zone any more.
    ZoneTable* tableOf(int zoneId) const;
    /// Drops sizes, units and zones.
    void resetMesh();

    std::unique_ptr<SettingsProvider> settings;
    MeshContext context;
    MeshSizes meshSizes;
    std::unique_ptr<ZoneTables> zones; ///< never null
    std::unique_ptr<KelSolutionModel> solutionModel;
    bool adjacencyReady = false;
    std::map<int, int> zoneCategories; ///< of every id ever declared, also of those that no table has any more
    int currentTimeLevel = 0;
    std::vector<int> timeLevels; ///< in the order in which they were added
    short activePhase = 0;
    std::array<std::set<int>, categoryCount> variablesOfCategory;
};

} // namespace meridyn
