#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"
#include "KelDerivedValues.h"
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

/// Which mesh sizes and which lists of neighbours the writer derived: the attribute "derived_sizes" and the table
/// "zone_neighbours_derived" (zone, side). Neither is there when everything was given.
/// @{
void writeDerived(Hdf5File& file, hid_t group, const KelDerivedValues& derived);
KelDerivedValues readDerived(Hdf5File& file, hid_t group);
/// @}

} // namespace meridyn::hdf5
