#pragma once

#include "ArrayStore.h"

namespace meridyn::hdf5 {

/// A reader of chunks that other programs have made of our arrays (h5repack): of any extent, with the filters shuffle,
/// deflate and Zstandard, each at most once. They are unpacked here: HDF5 1.10 takes a chunk that unpacks to fewer
/// bytes than it should for a whole one, and reads behind it.
/// @throws FormatError, without the array's name, for chunks that the file cannot hold and for other filters
std::unique_ptr<ArrayReader> makeForeignReader(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape, hid_t creationProperties);

} // namespace meridyn::hdf5
