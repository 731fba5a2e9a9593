#include "Journal.h"

#include "FileChannel.h"
#include "FileDescriptor.h"
#include "FormatError.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace meridyn::hdf5 {

namespace {

// "KELJRNL1", size of the file, number of blocks, per block offset, size, checksum of the old bytes and the new bytes;
// at the end the checksum of everything before it. All numbers little-endian, 64 bits.
constexpr char magic[8] = {'K', 'E', 'L', 'J', 'R', 'N', 'L', '1'};
constexpr std::uint64_t largestBlock = 512; // a sector
constexpr std::uint64_t frameBytes = sizeof magic + 3 * 8;
constexpr std::uint64_t blockFrameBytes = 3 * 8;

// A journal changes every sector of its file at most once, so no sound one is larger. What lies beside a small file
// can therefore not take more than a small amount of memory.
std::uint64_t largestJournal(std::uint64_t fileSize)
{
    return frameBytes + (fileSize / largestBlock + 1) * (blockFrameBytes + largestBlock);
}

void put(std::vector<unsigned char>& out, std::uint64_t value)
{
    for (int i = 0; i < 8; ++i)
        out.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

struct Cursor {
    const std::vector<unsigned char>& bytes;
    std::size_t at;

    bool take(std::uint64_t& value)
    {
        if (bytes.size() - at < 8)
            return false;
        value = 0;
        for (int i = 7; i >= 0; --i)
            value = value << 8 | bytes[at + static_cast<std::size_t>(i)];
        at += 8;
        return true;
    }
};

// Blocks lie in the file and ascend, so that none is changed twice.
bool parse(const std::vector<unsigned char>& bytes, Journal& journal)
{
    if (bytes.size() < frameBytes || std::memcmp(bytes.data(), magic, sizeof magic) != 0)
        return false;
    Cursor tail{bytes, bytes.size() - 8};
    std::uint64_t sum = 0;
    if (!tail.take(sum) || sum != checksum(bytes.data(), bytes.size() - 8))
        return false;
    Cursor cursor{bytes, sizeof magic};
    std::uint64_t count = 0;
    if (!cursor.take(journal.fileSize) || !cursor.take(count))
        return false;
    std::uint64_t end = 0; // of the last block
    for (; count > 0; --count) {
        Journal::Block block;
        std::uint64_t size = 0;
        if (!cursor.take(block.offset) || !cursor.take(size) || !cursor.take(block.oldSum) || size > largestBlock ||
            size > bytes.size() - cursor.at || block.offset < end || block.offset > journal.fileSize ||
            size > journal.fileSize - block.offset)
            return false;
        end = block.offset + size;
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(cursor.at);
        block.bytes.assign(begin, begin + static_cast<std::ptrdiff_t>(size));
        cursor.at += size;
        journal.blocks.push_back(std::move(block));
    }
    return true;
}

void writeWhole(const std::string& path, const std::vector<unsigned char>& bytes)
{
    const FileDescriptor file(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
    if (!file)
        throw FormatError(systemWords("open"));
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::write(file.get(), bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            throw FormatError(systemWords("write"));
        done += static_cast<std::size_t>(n);
    }
    if (::fsync(file.get()) != 0)
        throw FormatError(systemWords("fsync"));
}

// Nothing unless it is a regular file of at most `largest` bytes. A pipe of the name is not waited for.
std::vector<unsigned char> readWhole(const std::string& path, std::uint64_t largest)
{
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size < 0 ||
        static_cast<std::uint64_t>(status.st_size) > largest)
        return {};
    std::vector<unsigned char> bytes(static_cast<std::size_t>(status.st_size));
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::read(file.get(), bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        done += static_cast<std::size_t>(n);
    }
    bytes.resize(done);
    return bytes;
}

} // namespace

std::uint64_t checksum(const unsigned char* bytes, std::size_t size)
{
    std::uint64_t sum = 14695981039346656037ULL;
    for (std::size_t i = 0; i < size; ++i)
        sum = (sum ^ bytes[i]) * 1099511628211ULL;
    return sum;
}

std::string Journal::pathFor(const std::string& file)
{
    return file + ".journal";
}

void Journal::store(const std::string& file) const
{
    std::vector<unsigned char> out(magic, magic + sizeof magic);
    put(out, fileSize);
    put(out, blocks.size());
    for (const Block& block : blocks) {
        put(out, block.offset);
        put(out, block.bytes.size());
        put(out, block.oldSum);
        out.insert(out.end(), block.bytes.begin(), block.bytes.end());
    }
    put(out, checksum(out.data(), out.size()));

    const std::string path = pathFor(file);
    try {
        writeWhole(path, out);
    } catch (const FormatError& error) {
        ::unlink(path.c_str());
        throw FormatError(path + ": " + error.what());
    }
    syncFolder(folderOf(path));
}

bool Journal::load(const std::string& file, std::uint64_t fileSize, Journal& journal)
{
    journal.blocks.clear();
    return parse(readWhole(pathFor(file), largestJournal(fileSize)), journal);
}

void Journal::remove(const std::string& file)
{
    if (::unlink(pathFor(file).c_str()) == 0)
        syncFolder(folderOf(file));
}

} // namespace meridyn::hdf5
