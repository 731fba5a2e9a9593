#include "ByteSource.h"

#include "FoamError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <zlib.h>

namespace meridyn::polymesh {

namespace {

/// What one compressed byte can become at most.
constexpr std::uint64_t largestRatio = 1032;

bool isFile(const std::string& path, std::uint64_t& size)
{
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

} // namespace

bool ByteSource::exists(const std::string& path)
{
    std::uint64_t size = 0;
    return isFile(path, size) || isFile(path + ".gz", size);
}

ByteSource::ByteSource(const std::string& path) : _path(path)
{
    if (isFile(path, _size)) {
        _file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (_file < 0)
            throw FoamError(path + ": cannot be opened: " + std::strerror(errno));
    } else if (isFile(path + ".gz", _size)) {
        _path += ".gz";
        _compressed = gzopen(_path.c_str(), "rbe");
        if (_compressed == nullptr)
            throw FoamError(_path + ": cannot be opened: " + std::strerror(errno));
        gzbuffer(_compressed, 1U << 17U);
        if (gzdirect(_compressed) != 0) {
            gzclose_r(_compressed);
            throw FoamError(_path + ": is not compressed with gzip, as its name says");
        }
    } else
        throw FoamError(path + ": there is no such file, nor one with .gz behind its name");
    _buffer.resize(std::min<std::uint64_t>(bufferSize, _compressed != nullptr ? bufferSize : _size + 1));
    _begin = _end = _buffer.data();
}

ByteSource::ByteSource(std::string name, std::string_view text)
    : _path(std::move(name)),
      _inMemory(true),
      _text(text),
      _size(text.size()),
      _begin(text.data()),
      _end(text.data() + text.size()),
      _offsetOfEnd(text.size()),
      _atEnd(true)
{}

ByteSource::~ByteSource()
{
    if (_file >= 0)
        ::close(_file);
    if (_compressed != nullptr)
        gzclose_r(_compressed);
}

std::size_t ByteSource::readFile(char* to, std::size_t count)
{
    std::size_t done = 0;
    while (done < count && !_atEnd) {
        const std::size_t piece = std::min(count - done, std::size_t{1} << 30U);
        const auto got = _compressed != nullptr ? gzread(_compressed, to + done, static_cast<unsigned>(piece))
                                                : ::read(_file, to + done, piece);
        if (got < 0 && _compressed == nullptr && errno == EINTR)
            continue;
        int problem = Z_OK;
        if (_compressed != nullptr)
            gzerror(_compressed, &problem);
        if (got < 0 || problem != Z_OK)
            throw FoamError(_path + ": byte " + std::to_string(_offsetOfEnd + done) + ": " +
                            (_compressed == nullptr   ? "cannot be read"
                             : problem == Z_BUF_ERROR ? "the compressed data end too early"
                                                      : "the compressed data are damaged"));
        _atEnd = got == 0;
        done += static_cast<std::size_t>(got);
    }
    _offsetOfEnd += done;
    return done;
}

bool ByteSource::refill(std::size_t count)
{
    const auto kept = static_cast<std::size_t>(_end - _begin);
    if (!_atEnd) {
        std::memmove(_buffer.data(), _begin, kept);
        _begin = _buffer.data();
        _end = _begin + kept; // also should reading fail
        _end += readFile(_buffer.data() + kept, _buffer.size() - kept);
    }
    return static_cast<std::size_t>(_end - _begin) >= count;
}

std::size_t ByteSource::read(char* to, std::size_t count)
{
    const std::size_t visible = std::min(count, static_cast<std::size_t>(_end - _begin));
    if (visible > 0)
        std::memcpy(to, _begin, visible);
    _begin += visible;
    if (visible == count || _inMemory)
        return visible;
    return visible + readFile(to + visible, count - visible); // large arrays go past the buffer
}

std::uint64_t ByteSource::leftAtMost() const
{
    const std::uint64_t total = _compressed != nullptr ? _size * largestRatio : _size;
    return total > offset() ? total - offset() : static_cast<std::uint64_t>(_end - _begin);
}

std::uint64_t ByteSource::plausiblyLeft() const
{
    return _compressed != nullptr ? std::min(leftAtMost(), _size * 8) : leftAtMost();
}

std::uint64_t ByteSource::lineOf(std::uint64_t offset) const
{
    const auto lineEnds = [](const char* from, std::uint64_t count) {
        return static_cast<std::uint64_t>(std::count(from, from + count, '\n'));
    };
    if (_inMemory)
        return 1 + lineEnds(_text.data(), std::min<std::uint64_t>(offset, _text.size()));
    const bool hasSuffix = _compressed != nullptr;
    ByteSource again(hasSuffix ? _path.substr(0, _path.size() - 3) : _path);
    std::uint64_t line = 1;
    while (offset > 0 && again.ensure(1)) {
        const std::uint64_t count =
            std::min<std::uint64_t>(offset, static_cast<std::uint64_t>(again._end - again._begin));
        line += lineEnds(again._begin, count);
        again.advance(again._begin + count);
        offset -= count;
    }
    return line;
}

} // namespace meridyn::polymesh
