#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"
#include "KelModelDescription.h"

#include <vector>

namespace meridyn::hdf5 {

class Hdf5File;

using ZoneRecord = KelZoneDescription;

/// All zones of a mesh, in one table (one row per zone, see zoneColumns), their texts in one run of bytes, and one
/// table of neighbours (zone, side, zone beside it).
/// @{
void writeZones(Hdf5File& file, hid_t group, const std::vector<ZoneRecord>& zones);
std::vector<ZoneRecord> readZones(Hdf5File& file, hid_t group);
/// @}

} // namespace meridyn::hdf5
