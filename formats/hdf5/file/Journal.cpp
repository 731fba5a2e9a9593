#include "Journal.h"

#include "FileChannel.h"
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
constexpr std::uint64_t largestJournal = 1ULL << 32;

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

bool parse(const std::vector<unsigned char>& bytes, Journal& journal)
{
    if (bytes.size() < sizeof magic + 24 || std::memcmp(bytes.data(), magic, sizeof magic) != 0)
        return false;
    Cursor tail{bytes, bytes.size() - 8};
    std::uint64_t sum = 0;
    if (!tail.take(sum) || sum != checksum(bytes.data(), bytes.size() - 8))
        return false;
    Cursor cursor{bytes, sizeof magic};
    std::uint64_t count = 0;
    if (!cursor.take(journal.fileSize) || !cursor.take(count))
        return false;
    for (; count > 0; --count) {
        Journal::Block block;
        std::uint64_t size = 0;
        if (!cursor.take(block.offset) || !cursor.take(size) || !cursor.take(block.oldSum) ||
            size > bytes.size() - cursor.at)
            return false;
        const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(cursor.at);
        block.bytes.assign(begin, begin + static_cast<std::ptrdiff_t>(size));
        cursor.at += size;
        journal.blocks.push_back(std::move(block));
    }
    return true;
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
    if (out.size() > largestJournal)
        throw FormatError(path + ": would have " + std::to_string(out.size()) + " bytes, at most " +
                          std::to_string(largestJournal) + " can be read back");
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0)
        throw FormatError(path + ": " + systemWords("open"));
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t n = ::write(descriptor, out.data() + done, out.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            break;
        done += static_cast<std::size_t>(n);
    }
    std::string trouble;
    if (done < out.size())
        trouble = systemWords("write");
    else if (::fsync(descriptor) != 0)
        trouble = systemWords("fsync");
    ::close(descriptor);
    if (!trouble.empty()) {
        ::unlink(path.c_str());
        throw FormatError(path + ": " + trouble);
    }
    syncFolder(folderOf(path));
}

bool Journal::load(const std::string& file, Journal& journal)
{
    const int descriptor = ::open(pathFor(file).c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    struct stat status {};
    std::vector<unsigned char> bytes;
    if (::fstat(descriptor, &status) == 0 && status.st_size > 0 &&
        static_cast<std::uint64_t>(status.st_size) <= largestJournal) {
        bytes.resize(static_cast<std::size_t>(status.st_size));
        std::size_t done = 0;
        while (done < bytes.size()) {
            const ssize_t n = ::read(descriptor, bytes.data() + done, bytes.size() - done);
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            done += static_cast<std::size_t>(n);
        }
        bytes.resize(done);
    }
    ::close(descriptor);
    journal.blocks.clear();
    return parse(bytes, journal);
}

void Journal::remove(const std::string& file)
{
    if (::unlink(pathFor(file).c_str()) == 0)
        syncFolder(folderOf(file));
}

} // namespace meridyn::hdf5
