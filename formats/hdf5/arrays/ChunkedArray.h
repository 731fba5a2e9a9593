#pragma once

#include "ArrayStore.h"

namespace meridyn::hdf5 {

/// Whether an array has values to compress, in rows that are not longer than a chunk.
bool canBeChunked(const ArrayShape& shape);

/// Layout and filters of a compressed array: chunks of about 1 MiB, byte shuffle, Zstandard.
void setChunks(hid_t creationProperties, const ArrayShape& shape, int level);

/// Whether a chunked data set has these chunks and filters; for others see ForeignChunks.h.
bool isOurPipeline(hid_t creationProperties, const ArrayShape& shape);

std::unique_ptr<ArrayWriter> makeChunkedWriter(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape, int level);
std::unique_ptr<ArrayReader> makeChunkedReader(Hdf5File& file, Handle dataSet, const std::string& label,
                                               const ArrayShape& shape);

} // namespace meridyn::hdf5
