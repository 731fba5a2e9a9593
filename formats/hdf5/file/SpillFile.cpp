#include "SpillFile.h"

#include "FileChannel.h"
#include "FormatError.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace meridyn::hdf5 {

SpillFile::SpillFile(const std::string& folder)
{
    _descriptor = FileDescriptor(::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (_descriptor)
        return;
    std::string name = folder + "/.kel-spill-XXXXXX"; // a file system without nameless files
    _descriptor = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
    if (!_descriptor)
        throw FormatError("no temporary file in " + folder + ": " + systemWords("open"));
    ::unlink(name.c_str());
}

std::uint64_t SpillFile::append(const void* bytes, std::size_t size)
{
    const auto* next = static_cast<const unsigned char*>(bytes);
    const std::uint64_t start = _size;
    while (size > 0) {
        const ssize_t n = ::pwrite(_descriptor.get(), next, size, static_cast<off_t>(_size));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw FormatError(systemWords("pwrite to a temporary file"));
        next += n;
        size -= static_cast<std::size_t>(n);
        _size += static_cast<std::uint64_t>(n);
    }
    return start;
}

void SpillFile::read(std::uint64_t offset, void* bytes, std::size_t size) const
{
    auto* next = static_cast<unsigned char*>(bytes);
    while (size > 0) {
        const ssize_t n = ::pread(_descriptor.get(), next, size, static_cast<off_t>(offset));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            throw FormatError(systemWords("pread from a temporary file"));
        next += n;
        size -= static_cast<std::size_t>(n);
        offset += static_cast<std::uint64_t>(n);
    }
}

} // namespace meridyn::hdf5
