#pragma once

#include "Hdf5Handle.h"

#include <memory>

namespace meridyn::hdf5 {

class FileChannel;

/// Access properties under which HDF5 does its input and output through a channel.
Handle accessThrough(const std::shared_ptr<FileChannel>& channel);

} // namespace meridyn::hdf5
