// Any bytes as a case and as a data file: the reader reports or reads, and does nothing else.
#include "ReadEverything.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <hdf5.h>
#include <string>
#include <unistd.h>

/// HDF5 1.10 loses memory of its own when it gives a damaged file up, see DamageTest.cpp; what we would leave open in
/// it is counted below.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
// NOLINTEND(bugprone-reserved-identifier)
{
    return "leak:libhdf5";
}

namespace {

/// One file for all inputs, gone with the program.
class Scratch {
public:
    Scratch() { ::close(::mkstemp(_path.data())); }
    ~Scratch() { std::remove(_path.c_str()); }

    const std::string& fill(const std::uint8_t* data, std::size_t size)
    {
        std::FILE* const file = std::fopen(_path.c_str(), "wb");
        std::fwrite(data, 1, size, file);
        std::fclose(file);
        return _path;
    }

private:
    std::string _path = (std::filesystem::temp_directory_path() / "kel-fuzz-XXXXXX").string();
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static Scratch scratch;
    hdf5test::readEverything(scratch.fill(data, size));
    if (H5Fget_obj_count(H5F_OBJ_ALL, H5F_OBJ_ALL) != 0)
        std::abort(); // the reader is gone, and with it all that it had open
    return 0;
}
