// How near does the reading of large lists come to the plain limit? Text: the same numbers taken from memory with
// std::from_chars alone, after one read of the file. Binary: one read of the same bytes. "ratio" is our time over the
// limit's, medians of runs in turns; both sides fill an array that has room already or not in the same way.
#include "ByteSource.h"
#include "FoamReader.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using meridyn::polymesh::ByteSource;
using meridyn::polymesh::FoamReader;

constexpr std::size_t pointCount = 1'000'000;

std::string head(const char* className, const char* format)
{
    return std::string("FoamFile { version 2.0; format ") + format + "; class " + className + "; }\n";
}

double coordinate(std::size_t n)
{
    return static_cast<double>((n * 2654435761U) % 1'000'003) / 977.0;
}

void writePoints(const std::string& path, bool isBinary)
{
    std::ofstream out(path, std::ios::binary);
    out << head("vectorField", isBinary ? "binary" : "ascii") << pointCount << "\n(";
    for (std::size_t n = 0; n < 3 * pointCount; ++n) {
        const double value = coordinate(n);
        char text[40];
        if (isBinary)
            out.write(reinterpret_cast<const char*>(&value), sizeof value);
        else
            out.write(text, std::snprintf(text, sizeof text, "%s%.6g%s", n % 3 == 0 ? "(" : " ", value,
                                          n % 3 == 2 ? ")\n" : ""));
    }
    out << ")\n";
}

void writeLabels(const std::string& path)
{
    std::ofstream out(path, std::ios::binary);
    out << head("labelList", "ascii") << 3 * pointCount << "\n(\n";
    for (std::size_t n = 0; n < 3 * pointCount; ++n)
        out << (n * 2654435761U) % pointCount << "\n";
    out << ")\n";
}

std::string slurp(const std::string& path)
{
    std::string text(std::filesystem::file_size(path), '\0');
    const int file = ::open(path.c_str(), O_RDONLY);
    const bool isWhole = ::pread(file, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
    ::close(file);
    return isWhole ? text : std::string();
}

/// All numbers of a text, whatever stands between them.
template <class T>
std::size_t plainNumbers(const std::string& path)
{
    const std::string text = slurp(path);
    std::vector<T> values;
    values.reserve(3 * pointCount);
    const char *at = text.data() + text.find('\n'), *end = text.data() + text.size();
    while (at != end) {
        T value;
        const auto [next, error] = std::from_chars(at, end, value);
        if (error == std::errc())
            values.push_back(value);
        at = error == std::errc() ? next : at + 1;
    }
    return values.size();
}

std::size_t plainBytes(const std::string& path)
{
    std::vector<double> values(3 * pointCount);
    const int file = ::open(path.c_str(), O_RDONLY);
    const ssize_t got = ::pread(file, values.data(), values.size() * sizeof(double), 64);
    ::close(file);
    return static_cast<std::size_t>(got);
}

std::size_t ourScalars(const std::string& path)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader();
    return reader.scalars("points", 3, true, FoamReader::anyCount).size();
}

std::size_t ourLabels(const std::string& path)
{
    ByteSource source(path);
    FoamReader reader(source);
    reader.readHeader();
    return reader.labels("labels", pointCount, FoamReader::anyCount).size();
}

double seconds(std::size_t (*run)(const std::string&), const std::string& path)
{
    const auto from = std::chrono::steady_clock::now();
    if (run(path) == 0)
        std::abort();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - from).count();
}

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

void compare(const char* what, const std::string& path, std::size_t (*ours)(const std::string&),
             std::size_t (*limit)(const std::string&))
{
    std::vector<double> our, their;
    seconds(ours, path), seconds(limit, path); // warm both
    for (int n = 0; n < 9; ++n) {
        our.push_back(seconds(ours, path));
        their.push_back(seconds(limit, path));
    }
    const double megabytes = static_cast<double>(std::filesystem::file_size(path)) * 1e-6;
    std::printf("%-14s %6.1f MB  ours %7.0f MB/s  limit %7.0f MB/s  ratio %.2f\n", what, megabytes,
                megabytes / median(our), megabytes / median(their), median(our) / median(their));
}

} // namespace

int main()
{
    const std::string path =
        (std::filesystem::temp_directory_path() / ("bench_polymesh_" + std::to_string(::getpid()))).string();
    writePoints(path, false);
    compare("text points", path, ourScalars, plainNumbers<double>);
    writeLabels(path);
    compare("text labels", path, ourLabels, plainNumbers<unsigned>);
    writePoints(path, true);
    compare("binary points", path, ourScalars, plainBytes);
    std::filesystem::remove(path);
}
