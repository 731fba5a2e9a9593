#pragma once

#include <string>

namespace meridyn::mesh {

/// Ends a check from anywhere inside it.
struct Stopped {
    std::string problem;
    bool cancelled;
};

} // namespace meridyn::mesh
