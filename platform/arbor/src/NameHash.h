#pragma once

#include <cstdint>
#include <string_view>

namespace arbor {

/// Hash of a name with a key drawn once per process, so that no file can be made whose names all collide.
struct NameHash {
    std::uint64_t operator()(std::string_view name) const noexcept;
};

} // namespace arbor
