// Runs a fuzz entry point without libFuzzer: replays every file of the corpus folders given as arguments, then
// feeds mutated and cut seeds for KEL_FUZZ_SECONDS (default 2). The random sequence is always the same.
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

void run(const Bytes& input)
{
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

std::vector<Bytes> readCorpus(int count, char** folders)
{
    std::vector<Bytes> seeds;
    for (int i = 0; i < count; ++i)
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folders[i])) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path(), std::ios::binary);
            seeds.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
    return seeds;
}

void mutate(Bytes& input, const std::vector<Bytes>& seeds, std::mt19937& random)
{
    const auto below = [&random](std::size_t n) { return n == 0 ? 0 : random() % n; };
    for (std::size_t n = 1 + below(4); n > 0; --n)
        switch (below(5)) {
        case 0: // another byte
            if (!input.empty())
                input[below(input.size())] = static_cast<std::uint8_t>(random());
            break;
        case 1: // cut the end
            input.resize(below(input.size() + 1));
            break;
        case 2: // drop a piece
            if (!input.empty()) {
                const std::size_t from = below(input.size());
                const std::size_t to = from + below(input.size() - from + 1);
                input.erase(input.begin() + static_cast<std::ptrdiff_t>(from),
                            input.begin() + static_cast<std::ptrdiff_t>(to));
            }
            break;
        case 3: // repeat a piece
            if (!input.empty() && input.size() < 100000) {
                const std::size_t from = below(input.size());
                const Bytes piece(input.begin() + static_cast<std::ptrdiff_t>(from), input.end());
                input.insert(input.begin() + static_cast<std::ptrdiff_t>(below(input.size())), piece.begin(),
                             piece.end());
            }
            break;
        default: { // the front of one, the back of another
            const Bytes& other = seeds[below(seeds.size())];
            const std::size_t from = below(other.size() + 1);
            input.resize(below(input.size() + 1));
            input.insert(input.end(), other.begin() + static_cast<std::ptrdiff_t>(from), other.end());
        }
        }
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<Bytes> seeds = readCorpus(argc - 1, argv + 1);
    if (seeds.empty()) {
        std::fprintf(stderr, "no corpus: name at least one folder with files\n");
        return 2;
    }
    for (const Bytes& seed : seeds)
        run(seed);

    const char* seconds = std::getenv("KEL_FUZZ_SECONDS");
    const auto end =
        std::chrono::steady_clock::now() + std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 2);
    std::mt19937 random(20250101);
    unsigned long count = 0;
    for (; std::chrono::steady_clock::now() < end; ++count) {
        Bytes input = seeds[random() % seeds.size()];
        mutate(input, seeds, random);
        run(input);
    }
    std::printf("%zu seeds, %lu mutations\n", seeds.size(), count);
    return 0;
}
