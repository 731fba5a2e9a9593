#pragma once

#include "formats/hdf5/file/Hdf5Handle.h"
#include "KelDerivedValues.h"
#include "KelModelDescription.h"

#include <vector>

namespace meridyn::hdf5 {

class Hdf5File;

using ZoneRecord = KelZoneDescription;

/// All zones of a mesh, in one table (one row per zone, see zoneColumns), their texts in one run of bytes, and one
/// table of neighbours (zone, side, zone beside it) with one of those that the writer derived (zone, side).
/// @{
void writeZones(Hdf5File& file, hid_t group, const std::vector<ZoneRecord>& zones, const KelDerivedValues& derived);
std::vector<ZoneRecord> readZones(Hdf5File& file, hid_t group);
/// @}

/// Which mesh sizes (attribute "derived_sizes") and which lists of neighbours (table "zone_neighbours_derived") the
/// writer derived. Neither is there when everything was given.
KelDerivedValues readDerived(Hdf5File& file, hid_t group);

} // namespace meridyn::hdf5
