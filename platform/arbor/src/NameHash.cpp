#include "NameHash.h"

#include <cstdint>
#include <cstring>
#include <random>

namespace arbor {

namespace {

__extension__ using Wide = unsigned __int128;

// A polynomial over the field of this prime: two different names collide with a chance of length / 2^61, whatever
// the names are, as long as the point of evaluation is not known.
constexpr std::uint64_t prime = (std::uint64_t(1) << 61) - 1;

std::uint64_t drawPoint()
{
    std::random_device source;
    const std::uint64_t bits = (std::uint64_t(source()) << 32) | source();
    return bits % (prime - 2) + 2;
}

std::uint64_t multiplyAdd(std::uint64_t a, std::uint64_t b, std::uint64_t c)
{
    const Wide product = Wide(a) * b + c;
    const std::uint64_t folded = (std::uint64_t(product) & prime) + std::uint64_t(product >> 61);
    return folded >= prime ? folded - prime : folded;
}

} // namespace

std::uint64_t NameHash::operator()(std::string_view name) const noexcept
{
    static const std::uint64_t point = drawPoint();
    constexpr std::size_t step = 7; // bytes that fit below the prime
    constexpr std::uint64_t stepMask = (std::uint64_t(1) << (8 * step)) - 1;
    std::uint64_t hash = name.size() + 1;
    while (name.size() > step) {
        std::uint64_t piece;
        std::memcpy(&piece, name.data(), sizeof piece);
        hash = multiplyAdd(hash, point, piece & stepMask);
        name.remove_prefix(step);
    }
    std::uint64_t rest = 0;
    for (const char c : name)
        rest = (rest << 8) | static_cast<unsigned char>(c);
    return multiplyAdd(multiplyAdd(hash, point, rest), point, 1);
}

} // namespace arbor
