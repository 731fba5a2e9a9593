#include "FileDriver.h"

#include "FileChannel.h"
#include "FormatError.h"

#include <algorithm>
#include <exception>
#include <H5FDpublic.h>
#include <mutex>

namespace meridyn::hdf5 {

namespace {

// What HDF5 keeps per open file. It shares the channel, since HDF5 keeps a file that it could not close.
struct DriverFile {
    H5FD_t base{}; // first, since HDF5 addresses the record by it
    std::shared_ptr<FileChannel> channel;
    haddr_t end = 0;
};

struct DriverInfo {
    const std::shared_ptr<FileChannel>* channel; // lives during H5Fopen only, which is when it is read
};

constexpr haddr_t largestAddress = (static_cast<haddr_t>(1) << 62) - 1;

hid_t driverId();

template <class Work>
herr_t reported(hid_t minor, Work&& work) noexcept
{
    try {
        work();
        return 0;
    } catch (const std::exception& error) {
        H5Epush2(H5E_DEFAULT, __FILE__, "FileDriver", __LINE__, H5E_ERR_CLS, H5E_VFL, minor, "%s", error.what());
        return -1;
    }
}

DriverFile& fileOf(H5FD_t* file)
{
    return *reinterpret_cast<DriverFile*>(file);
}

const DriverFile& fileOf(const H5FD_t* file)
{
    return *reinterpret_cast<const DriverFile*>(file);
}

H5FD_t* openFile(const char*, unsigned, hid_t access, haddr_t)
{
    const auto* info = static_cast<const DriverInfo*>(H5Pget_driver_info(access));
    if (info == nullptr)
        return nullptr;
    auto* file = new DriverFile;
    file->channel = *info->channel;
    return &file->base;
}

herr_t closeFile(H5FD_t* file)
{
    delete &fileOf(file);
    return 0;
}

herr_t queryFile(const H5FD_t*, unsigned long* flags)
{
    if (flags != nullptr)
        *flags = H5FD_FEAT_AGGREGATE_METADATA | H5FD_FEAT_ACCUMULATE_METADATA | H5FD_FEAT_DATA_SIEVE |
                 H5FD_FEAT_AGGREGATE_SMALLDATA | H5FD_FEAT_DEFAULT_VFD_COMPATIBLE;
    return 0;
}

haddr_t endOfAllocation(const H5FD_t* file, H5FD_mem_t)
{
    return fileOf(file).end;
}

herr_t setEndOfAllocation(H5FD_t* file, H5FD_mem_t, haddr_t end)
{
    fileOf(file).end = std::max<haddr_t>(end, fileOf(file).channel->lowestEnd());
    return 0;
}

haddr_t endOfFile(const H5FD_t* file, H5FD_mem_t)
{
    haddr_t size = HADDR_UNDEF;
    reported(H5E_READERROR, [&] { size = fileOf(file).channel->size(); });
    return size;
}

herr_t readFile(H5FD_t* file, H5FD_mem_t type, hid_t, haddr_t address, size_t size, void* buffer)
{
    return reported(H5E_READERROR, [&] {
        if (address > largestAddress || size > largestAddress - address || address + size > fileOf(file).end)
            throw FormatError("reading outside the file, at byte " + std::to_string(address));
        if (type == H5FD_MEM_DRAW)
            fileOf(file).channel->readValues(address, buffer, size);
        else
            fileOf(file).channel->readDescription(address, buffer, size);
    });
}

herr_t writeFile(H5FD_t* file, H5FD_mem_t, hid_t, haddr_t address, size_t size, const void* buffer)
{
    return reported(H5E_WRITEERROR, [&] {
        if (address > largestAddress || size > largestAddress - address)
            throw FormatError("writing outside the file, at byte " + std::to_string(address));
        fileOf(file).channel->writeOrPostpone(address, buffer, size);
    });
}

herr_t truncateFile(H5FD_t* file, hid_t, hbool_t)
{
    return reported(H5E_WRITEERROR, [&] { fileOf(file).channel->resize(fileOf(file).end); });
}

// The channel has the lock for as long as it lives.
herr_t lockFile(H5FD_t*, hbool_t)
{
    return 0;
}

herr_t unlockFile(H5FD_t*)
{
    return 0;
}

H5FD_class_t driverClass()
{
    H5FD_class_t driver{};
    driver.name = "kel";
    driver.maxaddr = largestAddress;
    driver.fc_degree = H5F_CLOSE_STRONG;
    driver.fapl_size = sizeof(DriverInfo);
    driver.open = openFile;
    driver.close = closeFile;
    driver.query = queryFile;
    driver.get_eoa = endOfAllocation;
    driver.set_eoa = setEndOfAllocation;
    driver.get_eof = endOfFile;
    driver.read = readFile;
    driver.write = writeFile;
    driver.truncate = truncateFile;
    driver.lock = lockFile;
    driver.unlock = unlockFile;
    constexpr H5FD_mem_t spaces[] = H5FD_FLMAP_DICHOTOMY; // arrays apart from descriptions
    std::copy(std::begin(spaces), std::end(spaces), std::begin(driver.fl_map));
    return driver;
}

hid_t driverId()
{
    static const H5FD_class_t driver = driverClass();
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    static hid_t id = H5I_INVALID_HID;
    if (id < 0 || H5Iis_valid(id) <= 0) // an application may have closed the library in between
        id = H5FDregister(&driver);
    return id;
}

} // namespace

Handle accessThrough(const std::shared_ptr<FileChannel>& channel)
{
    Handle access = checkedId(H5Pcreate(H5P_FILE_ACCESS), "file access properties");
    const DriverInfo info{&channel};
    checkedCall(H5Pset_driver(access.get(), driverId(), &info), "file driver");
    checkedCall(H5Pset_libver_bounds(access.get(), H5F_LIBVER_V110, H5F_LIBVER_V110), "file version bounds");
    checkedCall(H5Pset_fclose_degree(access.get(), H5F_CLOSE_STRONG), "close degree");
    // What we read and write in bulk goes past HDF5; its caches for raw data would only cost memory.
    checkedCall(H5Pset_sieve_buf_size(access.get(), 64 * 1024), "sieve buffer");
    checkedCall(H5Pset_cache(access.get(), 0, 521, 1024 * 1024, 0.75), "chunk cache");
    checkedCall(H5Pset_meta_block_size(access.get(), 64 * 1024), "metadata block size");
    return access;
}

} // namespace meridyn::hdf5
