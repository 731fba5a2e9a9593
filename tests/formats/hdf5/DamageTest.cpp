// Files with wrong bytes: nothing that they say may crash a reader, and nothing of them stays open behind it.
#include "Hdf5TestSupport.h"
#include "ReadEverything.h"
#include "Sample.h"

#include <hdf5.h>
#include <random>

/// HDF5 1.10 loses memory when an object of a damaged file does not get through its metadata cache (H5C_protect), in
/// any program. Its free lists hand blocks on, so the stack of an allocation does not tell who lost the block, and no
/// narrower name would do. What could be lost by us in there is ids only, and those the tests count.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions()
// NOLINTEND(bugprone-reserved-identifier)
{
    return "leak:libhdf5";
}

using namespace hdf5test;

namespace {

constexpr unsigned damagesPerFile = 600;

/// What the process has open: objects of files as HDF5 counts them, and descriptors.
std::map<std::string, long> openThings()
{
    std::map<std::string, long> counts;
    counts["objects"] = H5Fget_obj_count(H5F_OBJ_ALL, H5F_OBJ_ALL);
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++counts["descriptors"];
    return counts;
}

/// Ids of the kinds that belong to no file. HDF5 does not count them for us, but gives numbers one after the other:
/// what is still valid between a number of before and the next one was left behind.
class NewIds {
public:
    NewIds() : _first(next()) {}

    int count() const
    {
        int valid = 0;
        const std::vector<hid_t> last = next();
        for (std::size_t kind = 0; kind < last.size(); ++kind)
            for (hid_t id = _first[kind] + 1; id < last[kind]; ++id)
                valid += H5Iis_valid(id) > 0 ? 1 : 0;
        return valid;
    }

private:
    static std::vector<hid_t> next()
    {
        std::vector<hid_t> ids{H5Screate(H5S_SCALAR), H5Tcopy(H5T_NATIVE_INT), H5Pcreate(H5P_DATASET_CREATE)};
        for (const hid_t id : ids)
            H5Idec_ref(id);
        return ids;
    }

    std::vector<hid_t> _first;
};

void expectHarmless(const std::string& path, const Bytes& bytes)
{
    writeBytes(path, bytes);
    const NewIds ids;
    const ReadResult result = readEverything(path);
    EXPECT_TRUE(result.isOpen || !result.errors.empty());
    EXPECT_EQ(ids.count(), 0);
}

Bytes damaged(const Bytes& good, std::mt19937& random)
{
    Bytes bad = good;
    for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
        bad[random() % bad.size()] = static_cast<char>(random());
    return bad;
}

} // namespace

class Damage : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        std::string errors;
        ASSERT_TRUE(writeSample(_folder / "d.case.kel", _folder / "d.data.kel", errors, GetParam())) << errors;
        for (const char* const name : {"d.case.kel", "d.data.kel"}) {
            const ReadResult whole = readEverything(_folder / name); // HDF5 makes ids of its own on first use
            ASSERT_TRUE(whole.isOpen);
            _files.push_back(bytesOf(_folder / name));
        }
        _before = openThings();
    }

    Folder _folder;
    std::vector<Bytes> _files;
    std::map<std::string, long> _before;
};

TEST_P(Damage, CutFilesAreReadOrRefusedAndClosed)
{
    for (const Bytes& good : _files)
        for (std::size_t length = 0; length < good.size(); length += 1 + good.size() / 200) {
            expectHarmless(_folder / "bad", Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)));
            ASSERT_EQ(openThings(), _before) << length;
        }
}

TEST_P(Damage, WrongBytesAreReadOrRefusedAndTheFileIsClosed)
{
    std::mt19937 random(5);
    for (const Bytes& good : _files)
        for (unsigned round = 0; round < damagesPerFile; ++round) {
            expectHarmless(_folder / "bad", damaged(good, random));
            ASSERT_EQ(openThings(), _before) << round;
        }
}

TEST(DamageCounting, SeesIdsThatAreLeftBehind)
{
    const NewIds ids;
    const hid_t space = H5Screate(H5S_NULL);
    EXPECT_EQ(ids.count(), 1);
    H5Sclose(space);
    EXPECT_EQ(ids.count(), 0);
}

INSTANTIATE_TEST_SUITE_P(Plain, Damage, ::testing::Values(0));
INSTANTIATE_TEST_SUITE_P(Compressed, Damage, ::testing::Values(1));
