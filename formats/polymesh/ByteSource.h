#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct gzFile_s;

namespace meridyn::polymesh {

/// The bytes of a file, plain or compressed with gzip, one buffer after the other; or those of a text in memory.
class ByteSource {
public:
    /// Bytes that are visible at once, when the file has them.
    static constexpr std::size_t bufferSize = std::size_t{1} << 18;

    /// Opens a file, or the one of that name with ".gz" behind it when there is no such file.
    /// @throws FoamError when there is neither, or when the second is not compressed
    explicit ByteSource(const std::string& path);

    /// @param name  stands for the path in messages
    ByteSource(std::string name, std::string_view text);

    ~ByteSource();
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;

    /// Whether one of the two files exists that the constructor would open.
    static bool exists(const std::string& path);

    const std::string& path() const { return _path; }

    /// The visible bytes; advance() says how far they were used.
    const char* begin() const { return _begin; }
    const char* end() const { return _end; }
    void advance(const char* to) { _begin = to; }

    /// Makes at least `count` bytes visible, at most half a buffer; false when the file ends before.
    /// Pointers into the visible bytes are void afterwards.
    bool ensure(std::size_t count) { return static_cast<std::size_t>(_end - _begin) >= count || refill(count); }

    /// Copies `count` bytes out; the number that there were.
    std::size_t read(char* to, std::size_t count);

    /// Bytes used so far, after decompression.
    std::uint64_t offset() const { return _offsetOfEnd - static_cast<std::uint64_t>(_end - _begin); }

    /// An upper bound of the bytes that are still to come.
    std::uint64_t leftAtMost() const;

    /// How many of the bytes still to come it is sensible to make room for before they are seen.
    std::uint64_t plausiblyLeft() const;

    /// The line, counted from 1, in which a byte lies; found by reading the file again.
    std::uint64_t lineOf(std::uint64_t offset) const;

private:
    bool refill(std::size_t count);
    std::size_t readFile(char* to, std::size_t count);

    std::string _path;
    bool _inMemory = false;
    std::string_view _text;
    int _file = -1;
    gzFile_s* _compressed = nullptr;
    std::uint64_t _size = 0; ///< of the file on disk
    std::vector<char> _buffer;
    const char* _begin = nullptr;
    const char* _end = nullptr;
    std::uint64_t _offsetOfEnd = 0;
    bool _atEnd = false;
};

} // namespace meridyn::polymesh
