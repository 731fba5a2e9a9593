#pragma once

#include <stdexcept>
#include <string>

namespace meridyn {

/// Why a case could not be read: the file, where in it, what was expected and what was found.
///
/// Thrown by everything behind the reader and caught there only, where it becomes a record in the message store.
class FoamError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace meridyn
