#pragma once

#include "Hdf5Handle.h"

#include <cstdint>
#include <string>
#include <vector>

namespace meridyn::hdf5 {

class Hdf5File;

/// Everything that is kept of a zone.
struct ZoneRecord {
    int category = 0;
    int id = 0;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
    std::uint64_t extra = 0;
    int infos[6] = {}; ///< the numbered information of its category, 0 where it has none
    int flags = 0;
    std::string texts[2];
    std::vector<int>
        neighbours[2]; ///< face zone: cell zones on side 0 and 1; cell zone: face zones around it, and none
};

/// All zones of a mesh, in one table (one row per zone, see zoneColumns), their texts in one run of bytes, and one
/// table of neighbours (zone, side, zone beside it).
/// @{
void writeZones(Hdf5File& file, hid_t group, const std::vector<ZoneRecord>& zones);
std::vector<ZoneRecord> readZones(Hdf5File& file, hid_t group);
/// @}

} // namespace meridyn::hdf5
