#include "FileChannel.h"

#include "FormatError.h"
#include "Journal.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace meridyn::hdf5 {

namespace {

constexpr std::uint64_t pageSize = 512; // a sector, see Journal::Block

constexpr std::size_t mostDescriptions = 32 * 1024 * 1024; // bytes kept for a reader

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
    const FileDescriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened)
        ::fsync(opened.get());
}

std::string systemWords(const char* call)
{
    return std::string(call) + ": " + std::generic_category().message(errno);
}

FileChannel::FileChannel(const std::string& path, Mode mode, const LockSettings& locks)
    : _path(path), _mode(mode), _locks(locks)
{
    open();
    if (mode == Mode::Create) {
        if (::ftruncate(_descriptor.get(), 0) != 0)
            throw FormatError(systemWords("ftruncate"));
        return;
    }
    // A writer changes the file where a killed one had not finished, a reader only looks.
    auto content = std::make_unique<ContentLock>(
        _descriptor.get(), mode == Mode::Read ? ContentLock::Kind::Read : ContentLock::Kind::Change, locks);
    recover();
    if (mode == Mode::Append)
        freeze();
    _origin = firstPage();
    if (mode == Mode::Read)
        _opening = std::move(content);
}

FileChannel::~FileChannel()
{
    close();
}

// A writer that was faster may rename or remove the file between our open and our lock: then it is another one.
void FileChannel::open()
{
    const int access = _mode == Mode::Read ? O_RDONLY : O_RDWR;
    const int flags = access | (_mode == Mode::Create ? O_CREAT : 0) | O_CLOEXEC | O_NONBLOCK; // a pipe would wait
    for (int attempt = 0; attempt < 100; ++attempt) {
        _descriptor = FileDescriptor(::open(_path.c_str(), flags, 0666));
        if (!_descriptor)
            throw FormatError(systemWords("open"));
        struct stat status {};
        if (::fstat(_descriptor.get(), &status) == 0 && !S_ISREG(status.st_mode))
            throw FormatError("is not a regular file");
        if (_mode == Mode::Read)
            return;
        lockSession(_descriptor.get(), _locks);
        if (!isReplaced())
            return;
    }
    throw FormatError("is replaced by others again and again");
}

// A complete journal beside the file is an append that was decided but not finished. A writer finishes it; a reader,
// which may have no right to write, sees the file as if it were.
void FileChannel::recover()
{
    Journal journal;
    if (!Journal::load(_path, size(), journal)) {
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
    if (size() > _oldSize && ::ftruncate(_descriptor.get(), static_cast<off_t>(_oldSize)) != 0)
        throw FormatError(systemWords("ftruncate"));
    _isTailCut = true;
}

std::size_t FileChannel::readFile(std::uint64_t offset, void* buffer, std::size_t size) const
{
    auto* bytes = static_cast<unsigned char*>(buffer);
    std::size_t done = 0;
    while (done < size) {
        const ssize_t n = ::pread(_descriptor.get(), bytes + done, size - done, static_cast<off_t>(offset + done));
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
        const ssize_t n = ::pwrite(_descriptor.get(), bytes + done, size - done, static_cast<off_t>(offset + done));
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

// Only pages as they lay on the disk can tell whether a writer was here: what is held may be of a killed writer, whose
// change the next writer finishes before it makes its own.
std::vector<unsigned char> FileChannel::firstPage() const
{
    std::vector<unsigned char> page(pageSize);
    page.resize(readFile(0, page.data(), page.size()));
    return page;
}

bool FileChannel::isReplaced() const
{
    struct stat open {};
    struct stat named {};
    return ::fstat(_descriptor.get(), &open) != 0 || ::stat(_path.c_str(), &named) != 0 ||
           open.st_dev != named.st_dev || open.st_ino != named.st_ino;
}

bool FileChannel::hasRoomForDescriptions() const
{
    return _descriptions.size() < mostDescriptions / pageSize;
}

// A page that is not kept, for want of room, is the same whenever it is read: from a file that has changed it is not.
void FileChannel::readDescription(std::uint64_t offset, void* buffer, std::size_t size)
{
    if (_mode != Mode::Read)
        return readPadded(offset, buffer, size);
    auto* bytes = static_cast<unsigned char*>(buffer);
    for (std::size_t done = 0; done < size;) {
        const std::uint64_t start = (offset + done) / pageSize * pageSize;
        const auto kept = _descriptions.find(start);
        std::vector<unsigned char> page = kept == _descriptions.end() ? readUnlessChanged(start) : kept->second;
        const auto at = static_cast<std::size_t>(offset + done - start);
        const std::size_t n = std::min(size - done, static_cast<std::size_t>(pageSize) - at);
        std::memcpy(bytes + done, page.data() + at, n);
        if (kept == _descriptions.end() && hasRoomForDescriptions())
            _descriptions.emplace(start, std::move(page));
        done += n;
    }
}

bool FileChannel::isKept(std::uint64_t offset, std::size_t size) const
{
    for (std::uint64_t page = offset / pageSize * pageSize; page < offset + size; page += pageSize)
        if (!_descriptions.contains(page))
            return false;
    return true;
}

void FileChannel::readValues(std::uint64_t offset, void* buffer, std::size_t size)
{
    if (_opening || (_mode == Mode::Read && isKept(offset, size)))
        readDescription(offset, buffer, size);
    else
        readPadded(offset, buffer, size);
}

// Every commit changes the first page: the end of the file stands in it. A killed writer's change that another one has
// finished meanwhile is no change to what is seen here.
std::vector<unsigned char> FileChannel::readUnlessChanged(std::uint64_t page)
{
    std::unique_ptr<ContentLock> content;
    if (!_opening) {
        content = std::make_unique<ContentLock>(_descriptor.get(), ContentLock::Kind::Read, _locks);
        std::vector<unsigned char> finished = _origin;
        patch(0, finished.data(), finished.size());
        const std::vector<unsigned char> found = firstPage();
        if (found != _origin && found != finished)
            throw FormatError("was changed by a writer since it was opened, and what is asked for had not been read "
                              "then; startReading opens it as it is now");
    }
    std::vector<unsigned char> bytes(pageSize);
    readPadded(page, bytes.data(), bytes.size());
    return bytes;
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

// Puts new bytes over frozen ones in memory. A page is taken from the file when its first byte changes, so that a
// journal never holds bytes that nobody has written. Held pages are whole, but for the last one, which ends with the
// frozen bytes.
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

// Lays held pages over bytes that were read from the file. Pages do not overlap, and only the first one may begin
// before the bytes.
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
    if (::fstat(_descriptor.get(), &status) != 0)
        throw FormatError(systemWords("fstat"));
    return static_cast<std::uint64_t>(status.st_size);
}

void FileChannel::resize(std::uint64_t size)
{
    if (_isDiscarding || size < _frozenSize)
        return; // the end of an appended file is never cut
    try {
        cutTail();
        if (::ftruncate(_descriptor.get(), static_cast<off_t>(size)) != 0)
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
        if (::fdatasync(_descriptor.get()) != 0)
            throw FormatError(systemWords("fdatasync"));
    } catch (const FormatError& error) {
        throw FormatError(std::string(error.what()) + "; the change stands in " + Journal::pathFor(_path) +
                          " and is finished when the file is next opened for writing");
    }
    _held.clear();
    Journal::remove(_path);
}

// The locks are advisory, and the name is free: other programs may have done something to the file, or to its name.
void FileChannel::checkStillOurs() const
{
    if (isReplaced())
        throw FormatError("was replaced or removed while something was added to it");
    if (firstPage() != _origin)
        throw FormatError("was changed by another program while something was added to it");
}

// What was added is on the disk before the journal is, the journal before the first old byte changes, and all old bytes
// before the journal goes: at every moment the file, with a journal that is complete, is either the old or the new one.
void FileChannel::commit()
{
    if (!_postponedError.empty())
        throw FormatError(_postponedError);
    if (::fsync(_descriptor.get()) != 0)
        throw FormatError(systemWords("fsync"));
    if (_held.empty())
        return;
    const ContentLock content(_descriptor.get(), ContentLock::Kind::Change, _locks);
    checkStillOurs();
    const Journal journal = journalOfHeld();
    if (journal.blocks.empty())
        return;
    journal.store(_path);
    _isDecided = true;
    applyHeld();
}

void FileChannel::close() noexcept
{
    if (!_descriptor)
        return;
    // Without the cut there are bytes behind the end that nothing refers to: harmless.
    const bool isCut = _isDiscarding && _isTailCut && !_isDecided;
    if (isCut && ::ftruncate(_descriptor.get(), static_cast<off_t>(_oldSize)) != 0)
        errno = 0;
    _opening.reset();
    unlockAll(_descriptor.get());
    _descriptor = FileDescriptor();
    _isDiscarding = true;
}

} // namespace meridyn::hdf5
