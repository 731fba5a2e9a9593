#pragma once

#include <unistd.h>
#include <utility>

namespace meridyn::hdf5 {

/// Owns an open file descriptor: closes it, and gives back with it the locks that were taken through it.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : _descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : _descriptor(std::exchange(other._descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(_descriptor, other._descriptor); // the old one is closed by its new owner
        return *this;
    }
    ~FileDescriptor()
    {
        if (_descriptor >= 0)
            ::close(_descriptor);
    }

    int get() const { return _descriptor; }
    explicit operator bool() const { return _descriptor >= 0; } ///< false for what open() failed to open

private:
    int _descriptor = -1;
};

} // namespace meridyn::hdf5
