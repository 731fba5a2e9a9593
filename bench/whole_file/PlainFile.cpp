#include "PlainFile.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <hdf5.h>
#include <unistd.h>

namespace whole_file {

namespace {

void require(bool condition, const char* what)
{
    if (condition)
        return;
    std::perror(what);
    std::exit(1);
}

void syncAndRename(const std::string& from, const std::string& to)
{
    const int file = ::open(from.c_str(), O_RDONLY);
    require(file >= 0 && ::fsync(file) == 0, "fsync");
    ::close(file);
    require(std::rename(from.c_str(), to.c_str()) == 0, "rename");
    const int folder = ::open(to.substr(0, to.rfind('/') + 1).c_str(), O_RDONLY | O_DIRECTORY);
    require(folder >= 0 && ::fsync(folder) == 0, "fsync of the folder");
    ::close(folder);
}

} // namespace

void writePlain(const std::string& path, const std::vector<Block>& blocks)
{
    const std::string temporary = path + ".tmp";
    const int file = ::open(temporary.c_str(), O_RDWR | O_CREAT | O_TRUNC, 0666);
    require(file >= 0, "open");
    std::size_t offset = 0;
    for (const Block& block : blocks)
        for (std::size_t done = 0; done < block.size;) {
            const ssize_t n = ::pwrite(file, static_cast<const char*>(block.bytes) + done, block.size - done,
                                       static_cast<off_t>(offset));
            require(n > 0, "pwrite");
            done += static_cast<std::size_t>(n);
            offset += static_cast<std::size_t>(n);
        }
    ::close(file);
    syncAndRename(temporary, path);
}

void readPlain(const std::string& path, const std::vector<Block>& blocks)
{
    const int file = ::open(path.c_str(), O_RDONLY);
    require(file >= 0, "open");
    std::size_t offset = 0;
    for (const Block& block : blocks)
        for (std::size_t done = 0; done < block.size;) {
            const ssize_t n =
                ::pread(file, static_cast<char*>(block.bytes) + done, block.size - done, static_cast<off_t>(offset));
            require(n > 0, "pread");
            done += static_cast<std::size_t>(n);
            offset += static_cast<std::size_t>(n);
        }
    ::close(file);
}

void writeHdf5(const std::string& path, const std::vector<Block>& blocks)
{
    const std::string temporary = path + ".tmp";
    const hid_t file = H5Fcreate(temporary.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const hsize_t count = blocks[i].size / 8;
        const hid_t space = H5Screate_simple(1, &count, nullptr);
        const hid_t set =
            H5Dcreate2(file, std::to_string(i).c_str(), H5T_STD_U64LE, space, H5P_DEFAULT, H5P_DEFAULT, H5P_DEFAULT);
        require(H5Dwrite(set, H5T_STD_U64LE, H5S_ALL, H5S_ALL, H5P_DEFAULT, blocks[i].bytes) >= 0, "H5Dwrite");
        H5Dclose(set);
        H5Sclose(space);
    }
    require(H5Fclose(file) >= 0, "H5Fclose");
    syncAndRename(temporary, path);
}

void readHdf5(const std::string& path, const std::vector<Block>& blocks)
{
    const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const hid_t set = H5Dopen2(file, std::to_string(i).c_str(), H5P_DEFAULT);
        require(H5Dread(set, H5T_STD_U64LE, H5S_ALL, H5S_ALL, H5P_DEFAULT, blocks[i].bytes) >= 0, "H5Dread");
        H5Dclose(set);
    }
    H5Fclose(file);
}

} // namespace whole_file
