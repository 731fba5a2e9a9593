#include "BoxArrays.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace whole_file {

using meridyn::unsigned64;

namespace {

/// New numbers of things that are counted from 1: their own, or any.
std::vector<unsigned64> numbering(unsigned64 count, bool scatters, std::mt19937_64& random)
{
    std::vector<unsigned64> numbers(count + 1);
    std::iota(numbers.begin(), numbers.end(), unsigned64{0});
    if (scatters)
        std::shuffle(numbers.begin() + 1, numbers.end(), random);
    return numbers;
}

} // namespace

BoxArrays::BoxArrays(unsigned64 n, bool scatters)
    : nodes((n + 1) * (n + 1) * (n + 1)),
      faces(3 * n * n * (n + 1)),
      interiorFaces(3 * n * n * (n - 1)),
      cells(n * n * n),
      coordinates(3 * nodes),
      faceNodes(4 * faces),
      owners(faces),
      neighbours(interiorFaces)
{
    std::mt19937_64 random(1);
    const std::vector<unsigned64> nodeNumbers = numbering(nodes, scatters, random);
    const std::vector<unsigned64> cellNumbers = numbering(cells, scatters, random);
    const auto node = [&](unsigned64 i, unsigned64 j, unsigned64 k) {
        return nodeNumbers[1 + i + (n + 1) * (j + (n + 1) * k)];
    };
    const auto cell = [&](unsigned64 i, unsigned64 j, unsigned64 k) { return cellNumbers[1 + i + n * (j + n * k)]; };

    const double h = 1.0 / static_cast<double>(n);
    for (unsigned64 k = 0; k <= n; ++k)
        for (unsigned64 j = 0; j <= n; ++j)
            for (unsigned64 i = 0; i <= n; ++i) {
                double* const xyz = coordinates.data() + 3 * (node(i, j, k) - 1);
                xyz[0] = h * static_cast<double>(i);
                xyz[1] = h * static_cast<double>(j);
                xyz[2] = h * static_cast<double>(k);
            }

    std::vector<unsigned64> positions = numbering(interiorFaces, scatters, random);
    unsigned64 interior = 0;
    unsigned64 boundary = interiorFaces;
    const auto add = [&](const unsigned64(&corners)[4], unsigned64 owner, unsigned64 neighbour) {
        const unsigned64 face = neighbour == 0 ? boundary++ : positions[++interior] - 1;
        std::copy(corners, corners + 4, faceNodes.begin() + static_cast<std::ptrdiff_t>(4 * face));
        owners[face] = owner;
        if (neighbour != 0)
            neighbours[face] = neighbour;
    };
    for (unsigned64 k = 0; k < n; ++k)
        for (unsigned64 j = 0; j < n; ++j)
            for (unsigned64 i = 0; i < n; ++i) {
                const unsigned64 c = cell(i, j, k);
                const unsigned64 x1[4] = {node(i + 1, j, k), node(i + 1, j + 1, k), node(i + 1, j + 1, k + 1),
                                          node(i + 1, j, k + 1)};
                const unsigned64 y1[4] = {node(i, j + 1, k), node(i, j + 1, k + 1), node(i + 1, j + 1, k + 1),
                                          node(i + 1, j + 1, k)};
                const unsigned64 z1[4] = {node(i, j, k + 1), node(i + 1, j, k + 1), node(i + 1, j + 1, k + 1),
                                          node(i, j + 1, k + 1)};
                add(x1, c, i + 1 < n ? cell(i + 1, j, k) : 0);
                add(y1, c, j + 1 < n ? cell(i, j + 1, k) : 0);
                add(z1, c, k + 1 < n ? cell(i, j, k + 1) : 0);
                const unsigned64 x0[4] = {node(i, j, k), node(i, j, k + 1), node(i, j + 1, k + 1), node(i, j + 1, k)};
                const unsigned64 y0[4] = {node(i, j, k), node(i + 1, j, k), node(i + 1, j, k + 1), node(i, j, k + 1)};
                const unsigned64 z0[4] = {node(i, j, k), node(i, j + 1, k), node(i + 1, j + 1, k), node(i + 1, j, k)};
                if (i == 0)
                    add(x0, c, 0);
                if (j == 0)
                    add(y0, c, 0);
                if (k == 0)
                    add(z0, c, 0);
            }

    for (int v = 0; v < 5; ++v) {
        variables[v].resize(cells);
        for (unsigned64 k = 0; k < n; ++k)
            for (unsigned64 j = 0; j < n; ++j)
                for (unsigned64 i = 0; i < n; ++i) {
                    const double x = h * (static_cast<double>(i) + 0.5);
                    const double y = h * (static_cast<double>(j) + 0.5);
                    const double z = h * (static_cast<double>(k) + 0.5);
                    variables[v][cell(i, j, k) - 1] = std::sin((v + 1) * x) * std::cos(2 * y) + 0.1 * v * z;
                }
    }
}

unsigned64 BoxArrays::meshBytes() const
{
    return 8 * (coordinates.size() + faceNodes.size() + owners.size() + neighbours.size());
}

unsigned64 BoxArrays::solutionBytes() const
{
    return 8 * 5 * cells;
}

} // namespace whole_file
