#pragma once

#include <stdexcept>
#include <string>

namespace meridyn::hdf5 {

/// What went wrong in a file, in words for the user and without the file's name. Never leaves the format: the public
/// classes turn it into a KelError.
class FormatError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace meridyn::hdf5
