#include "FileChannel.h"

#include "FormatError.h"
#include "Journal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t pageSize = 512; // a sector, see Journal::Block

bool isSameFile(int descriptor, const std::string& path)
{
    struct stat open {};
    struct stat named {};
    return ::fstat(descriptor, &open) == 0 && ::stat(path.c_str(), &named) == 0 && open.st_dev == named.st_dev &&
           open.st_ino == named.st_ino;
}

} // namespace

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

void syncFolder(const std::string& folder)
{
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

std::string systemWords(const char* call)
{
    return std::string(call) + ": " + std::generic_category().message(errno);
}

FileChannel::FileChannel(const std::string& path, Mode mode) : _path(path), _mode(mode)
{
    const int flags = (mode == Mode::Read ? O_RDONLY : O_RDWR) | (mode == Mode::Create ? O_CREAT : 0) | O_CLOEXEC;
    // A writer that was faster may rename or remove the file between our open and our lock: then it is another one.
    for (int attempt = 0;; ++attempt) {
        _descriptor = ::open(path.c_str(), flags, 0666);
        if (_descriptor < 0)
            throw FormatError(systemWords("open"));
        struct stat status {};
        if (::fstat(_descriptor, &status) == 0 && !S_ISREG(status.st_mode)) {
            ::close(_descriptor);
            throw FormatError("is not a regular file");
        }
        try {
            lock();
        } catch (const FormatError&) {
            ::close(_descriptor);
            throw;
        }
        if (mode == Mode::Read || isSameFile(_descriptor, path) || attempt == 100)
            break;
        ::close(_descriptor);
    }
    try {
        if (mode == Mode::Create) {
            if (::ftruncate(_descriptor, 0) != 0)
                throw FormatError(systemWords("ftruncate"));
        } else {
            recover();
        }
        if (mode == Mode::Append)
            freeze();
    } catch (const FormatError&) {
        ::close(_descriptor);
        throw;
    }
}

FileChannel::~FileChannel()
{
    close();
}

void FileChannel::lock()
{
    if (::flock(_descriptor, (_mode == Mode::Read ? LOCK_SH : LOCK_EX) | LOCK_NB) == 0)
        return;
    if (errno != EWOULDBLOCK)
        return; // a file system without locks
    throw FormatError(_mode == Mode::Read ? "is locked by a writer (" + systemWords("flock") + ")"
                                          : "is in use by another reader or writer (" + systemWords("flock") + ")");
}

// A complete journal beside the file is an append that was decided but not finished. A writer finishes it; a reader,
// which may have no right to write, sees the file as if it were.
void FileChannel::recover()
{
    Journal journal;
    if (!Journal::load(_path, journal)) {
        if (_mode == Mode::Append)
            Journal::remove(_path);
        return;
    }
    if (size() < journal.fileSize)
        return; // of another file that once had this name, as below
    Pages pages;
    for (Journal::Block& block : journal.blocks) {
        std::vector<unsigned char> present(block.bytes.size());
        readPadded(block.offset, present.data(), present.size());
        if (present != block.bytes && checksum(present.data(), present.size()) != block.oldSum)
            return;
        pages[block.offset] = std::move(block.bytes);
    }
    _held = std::move(pages);
    if (_mode == Mode::Append)
        applyHeld();
    else
        for (const auto& [offset, bytes] : _held)
            _frozenSize = std::max(_frozenSize, offset + bytes.size());
}

// What counts is the end that the superblock knows: behind it there may be bytes of a killed writer.
void FileChannel::freeze()
{
    constexpr std::size_t endOfFileField = 28; // in superblocks of version 2 and 3 with 64-bit offsets
    unsigned char block[endOfFileField + 8] = {};
    _oldSize = _frozenSize = size();
    readPadded(0, block, sizeof block);
    if (std::memcmp(block, "\211HDF\r\n\032\n", 8) != 0 || (block[8] != 2 && block[8] != 3) || block[9] != 8)
        return;
    std::uint64_t end = 0;
    for (int i = 7; i >= 0; --i)
        end = end << 8 | block[endOfFileField + static_cast<std::size_t>(i)];
    _oldSize = _frozenSize = std::min(_oldSize, end);
}

// Bytes of a killed writer go before the first of our own comes, so that what is allocated there reads as 0. Not
// earlier: only when HDF5 has found the superblock sound does it write.
void FileChannel::cutTail()
{
    if (_mode != Mode::Append || _isTailCut)
        return;
    if (size() > _oldSize && ::ftruncate(_descriptor, static_cast<off_t>(_oldSize)) != 0)
        throw FormatError(systemWords("ftruncate"));
    _isTailCut = true;
}

std::size_t FileChannel::readFile(std::uint64_t offset, void* buffer, std::size_t size) const
{
    auto* bytes = static_cast<unsigned char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(_descriptor, bytes + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw FormatError(systemWords("pread"));
        if (n == 0)
            break;
        done += static_cast<std::size_t>(n);
    }
    return done;
}

void FileChannel::writeFile(std::uint64_t offset, const void* buffer, std::size_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pwrite(_descriptor, bytes + done, size - done, static_cast<off_t>(offset + done));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            throw FormatError(systemWords("pwrite"));
        done += static_cast<std::size_t>(n);
    }
}

void FileChannel::read(std::uint64_t offset, void* buffer, std::size_t size) const
{
    const std::size_t done = readFile(offset, buffer, size);
    if (done < size)
        throw FormatError("ends at byte " + std::to_string(offset + done) + ", " + std::to_string(size) +
                          " bytes expected at " + std::to_string(offset));
    patch(offset, static_cast<unsigned char*>(buffer), size);
}

void FileChannel::readPadded(std::uint64_t offset, void* buffer, std::size_t size) const
{
    const std::size_t done = readFile(offset, buffer, size);
    std::memset(static_cast<unsigned char*>(buffer) + done, 0, size - done);
    patch(offset, static_cast<unsigned char*>(buffer), size);
}

void FileChannel::write(std::uint64_t offset, const void* buffer, std::size_t size)
{
    if (_isDiscarding || size == 0)
        return;
    if (!_postponedError.empty())
        throw FormatError(_postponedError);
    cutTail();
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    if (offset < _frozenSize) {
        const auto held = static_cast<std::size_t>(std::min<std::uint64_t>(size, _frozenSize - offset));
        hold(offset, bytes, held);
        offset += held;
        bytes += held;
        size -= held;
    }
    writeFile(offset, bytes, size);
}

void FileChannel::writeOrPostpone(std::uint64_t offset, const void* buffer, std::size_t size)
{
    if (_postponedError.empty()) {
        try {
            write(offset, buffer, size);
            return;
        } catch (const FormatError& error) {
            postpone(error);
        }
    }
    if (!_isDiscarding)
        hold(offset, static_cast<const unsigned char*>(buffer), size);
}

void FileChannel::postpone(const FormatError& error)
{
    _postponedError = error.what();
    _frozenSize = std::numeric_limits<std::uint64_t>::max();
}

// Held pages are whole, but for the last one, which ends with the frozen bytes.
void FileChannel::hold(std::uint64_t offset, const unsigned char* bytes, std::size_t size)
{
    while (size > 0) {
        const std::uint64_t start = offset / pageSize * pageSize;
        const auto length = static_cast<std::size_t>(std::min(pageSize, _frozenSize - start));
        auto found = _held.find(start);
        if (found == _held.end()) {
            std::vector<unsigned char> page(length);
            readFile(start, page.data(), length);
            found = _held.emplace(start, std::move(page)).first;
        }
        const auto at = static_cast<std::size_t>(offset - start);
        const std::size_t n = std::min(size, length - at);
        std::memcpy(found->second.data() + at, bytes, n);
        offset += n;
        bytes += n;
        size -= n;
    }
}

void FileChannel::patch(std::uint64_t offset, unsigned char* bytes, std::size_t size) const
{
    if (_held.empty() || offset >= _frozenSize)
        return;
    const std::uint64_t end = offset + size;
    auto page = _held.upper_bound(offset);
    if (page != _held.begin())
        --page;
    for (; page != _held.end() && page->first < end; ++page) {
        const std::uint64_t from = std::max(offset, page->first);
        const std::uint64_t to = std::min(end, page->first + page->second.size());
        if (from < to)
            std::memcpy(bytes + (from - offset), page->second.data() + (from - page->first), to - from);
    }
}

std::uint64_t FileChannel::size() const
{
    struct stat status {};
    if (::fstat(_descriptor, &status) != 0)
        throw FormatError(systemWords("fstat"));
    return static_cast<std::uint64_t>(status.st_size);
}

void FileChannel::resize(std::uint64_t size)
{
    if (_isDiscarding || size < _frozenSize)
        return; // the end of an appended file is never cut
    try {
        cutTail();
        if (::ftruncate(_descriptor, static_cast<off_t>(size)) != 0)
            throw FormatError(systemWords("ftruncate"));
    } catch (const FormatError& error) {
        postpone(error);
    }
}

Journal FileChannel::journalOfHeld() const
{
    Journal journal;
    journal.fileSize = size();
    for (const auto& [offset, bytes] : _held) {
        std::vector<unsigned char> old(bytes.size());
        readFile(offset, old.data(), old.size());
        if (old != bytes)
            journal.blocks.push_back({offset, checksum(old.data(), old.size()), bytes});
    }
    return journal;
}

// The held bytes stand in a complete journal.
void FileChannel::applyHeld()
{
    try {
        for (const auto& [offset, bytes] : _held)
            writeFile(offset, bytes.data(), bytes.size());
        if (::fdatasync(_descriptor) != 0)
            throw FormatError(systemWords("fdatasync"));
    } catch (const FormatError& error) {
        throw FormatError(std::string(error.what()) + "; the change stands in " + Journal::pathFor(_path) +
                          " and is finished when the file is next opened for writing");
    }
    _held.clear();
    Journal::remove(_path);
}

void FileChannel::commit()
{
    if (!_postponedError.empty())
        throw FormatError(_postponedError);
    if (::fsync(_descriptor) != 0)
        throw FormatError(systemWords("fsync"));
    const Journal journal = journalOfHeld();
    if (journal.blocks.empty())
        return;
    journal.store(_path);
    _isDecided = true;
    applyHeld();
}

void FileChannel::close() noexcept
{
    if (_descriptor < 0)
        return;
    // Without the cut there are bytes behind the end that nothing refers to: harmless.
    if (_isDiscarding && _isTailCut && !_isDecided && ::ftruncate(_descriptor, static_cast<off_t>(_oldSize)) != 0)
        errno = 0;
    ::close(_descriptor);
    _descriptor = -1;
    _isDiscarding = true;
}

} // namespace meridyn::hdf5
