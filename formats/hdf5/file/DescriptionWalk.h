#pragma once

#include "Hdf5File.h"

namespace meridyn::hdf5 {

/// Looks at every object of a file once, by hard links only, so that its channel has read, and keeps, the descriptions
/// of all of them: headers, tables of links, attributes, indices of chunks. Stops where the channel has no more room
/// for them. What is damaged is passed over; whoever asks for it later gets the error.
void readDescriptions(Hdf5File& file);

} // namespace meridyn::hdf5
