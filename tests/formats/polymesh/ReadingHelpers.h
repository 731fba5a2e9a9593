#pragma once

#include "KelPolyMeshProvider.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace meridyn {

using Ids = std::vector<unsigned64>;

inline std::vector<double> coordinatesOf(const KelProvider& reader)
{
    std::vector<double> xyz(36, -1);
    EXPECT_EQ(reader.getCoordinatesForNodesInRange(1, 12, xyz.data(), 36), 36u);
    return xyz;
}

inline Ids nodesOfFaces(const KelProvider& reader)
{
    Ids ids(44);
    EXPECT_EQ(reader.getNodeIdsForFacesInRange(1, 11, ids.data(), 44), 44u);
    return ids;
}

inline Ids cell0s(const KelProvider& reader)
{
    Ids ids(11);
    EXPECT_EQ(reader.getCell0sForFacesInRange(1, 11, ids.data(), 11), 11u);
    return ids;
}

inline std::string zoneName(const KelProvider& reader, int zone)
{
    std::string name;
    reader.getZoneStringInfo(zone, KEL_ZONE_STRING_0, name);
    return name;
}

inline std::vector<std::string> zoneNames(const KelProvider& reader, KelZoneCategory category)
{
    std::vector<int> ids;
    std::vector<std::string> names;
    reader.getZoneIds(category, ids);
    for (const int id : ids)
        names.push_back(zoneName(reader, id));
    return names;
}

inline Ids rangeOf(const KelProvider& reader, int zone)
{
    unsigned64 first = 0, last = 0;
    reader.getZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, first);
    reader.getZoneSizeInfo(zone, KEL_ZONE_LAST_ID, last);
    return {first, last};
}

/// Values of a variable of the active phase, zone after zone, all components of an element together.
inline std::vector<double> valuesOf(KelProvider& reader, KelZoneCategory category, const std::string& name,
                                    std::vector<int>* zones = nullptr)
{
    std::vector<int> ids;
    std::vector<double> values;
    const unsigned64 components = reader.startReadingZonesOfCategoryWithPhaseVariable(category, name, ids);
    if (components == 0)
        ids.clear();
    for (const int id : ids) {
        std::vector<double> part(12 * components);
        part.resize(reader.getValuesOfPhaseVariableForElementsInZone(id, part.data(), part.size()));
        values.insert(values.end(), part.begin(), part.end());
    }
    if (zones != nullptr)
        *zones = ids;
    return values;
}

inline std::string attribute(const KelProvider& reader, const std::string& variable, const std::string& name)
{
    std::string value;
    reader.getAttributeValueOfPhaseVariable(variable, name, value);
    return value;
}

} // namespace meridyn
