// Processes, calls and machines that die while a file is written or added to: the file is as before or as after.
#include "FileCalls.h"
#include "LevelFile.h"

#include <cerrno>
#include <random>
#include <sys/stat.h>
#include <system_error>

using namespace hdf5test;
using fileCalls::Call;
using fileCalls::Fate;

namespace {

using Levels = std::vector<int>;

struct Way {
    const char* name;
    bool hasFile; ///< with level 1, before
    bool appends;

    Levels before() const { return hasFile ? Levels{1} : Levels{}; }
    Levels after() const { return appends ? Levels{1, 5} : Levels{5}; }
    bool write(Writer& writer, const std::string& path) const { return addLevel(writer, path, 5, appends); }
};

std::ostream& operator<<(std::ostream& out, const Way& way)
{
    return out << way.name;
}

/// The file that is there before, written anew for each try.
class Crash : public ::testing::TestWithParam<Way> {
protected:
    Crash()
    {
        Writer writer;
        if (GetParam().hasFile) {
            EXPECT_TRUE(addLevel(writer, path, 1, false)) << writer.errors();
            before = bytesOf(path);
        }
        clear();
    }

    void clear() const
    {
        for (const std::string& name : folder.names())
            std::filesystem::remove(folder / name);
    }

    void prepare() const
    {
        clear();
        if (GetParam().hasFile)
            writeBytes(path, before);
    }

    /// Checks what is there after a crash and that it is no obstacle; gives whether the new level is there.
    bool isDone() const
    {
        const Levels levels = std::filesystem::exists(path) ? readableLevels(path) : Levels{};
        EXPECT_TRUE(levels == GetParam().before() || levels == GetParam().after()) << ::testing::PrintToString(levels);
        Writer next;
        EXPECT_TRUE(addLevel(next, path, 9, GetParam().appends)) << next.errors();
        Levels expected = GetParam().appends ? levels : Levels{};
        expected.push_back(9);
        EXPECT_EQ(readableLevels(path), expected);
        EXPECT_EQ(folder.names(), std::vector<std::string>{"f.data.kel"});
        return levels == GetParam().after();
    }

    /// Kills a writer at each of its calls; gives their number.
    int killAtEachCall(Fate fate) const
    {
        bool wasDone = false;
        for (int number = 1;; ++number) {
            SCOPED_TRACE("call " + std::to_string(number));
            prepare();
            const bool ended = inChild([&] {
                fileCalls::arm(fate, number);
                Writer writer;
                return GetParam().write(writer, path) ? 0 : 1;
            });
            const bool done = isDone();
            EXPECT_TRUE(done || (!ended && !wasDone));
            if (ended || HasFailure())
                return number - 1;
            wasDone = done;
        }
    }

    const Folder folder;
    const std::string path = folder / "f.data.kel";
    Bytes before;
};

/// What a disk holds of a folder: the cached state, and what is on it for certain.
class Disk {
public:
    Disk(const std::string& path, const Bytes& bytes, ino_t file)
    {
        if (file != 0) {
            _names[path] = file;
            _contents[file] = bytes;
        }
    }

    void see(const Call& call)
    {
        switch (call.kind) {
        case Call::Kind::Write:
        case Call::Kind::Resize:
            if (_contents.count(call.file) == 0) {
                _contents[call.file] = {};
                _pendingNames.push_back([name = call.name, file = call.file](Names& names) { names[name] = file; });
            }
            _pendingBytes[call.file].push_back(&call);
            break;
        case Call::Kind::Sync:
            for (const Call* pending : _pendingBytes[call.file])
                apply(*pending, _contents[call.file], nullptr);
            _pendingBytes[call.file].clear();
            break;
        case Call::Kind::SyncFolder:
            applyNames(_pendingNames.size(), _names);
            _pendingNames.clear();
            break;
        case Call::Kind::Rename:
            _pendingNames.push_back([from = call.name, to = call.newName, file = call.file](Names& names) {
                names.erase(from);
                names[to] = file;
            });
            break;
        case Call::Kind::Remove:
            _pendingNames.push_back([name = call.name](Names& names) { names.erase(name); });
            break;
        }
    }

    /// Puts down what may be left when the power goes now: of what was not synced anything may be missing, the sectors
    /// of a write one by one, the changes of names from some one on.
    void lose(std::mt19937& random) const
    {
        Names names = _names;
        applyNames(random() % (_pendingNames.size() + 1), names);
        for (const auto& [name, file] : names) {
            Bytes bytes = _contents.at(file);
            const auto pending = _pendingBytes.find(file);
            if (pending != _pendingBytes.end())
                for (const Call* call : pending->second)
                    if (random() % 3 != 0)
                        apply(*call, bytes, random() % 2 == 0 ? &random : nullptr);
            writeBytes(name, bytes);
        }
    }

private:
    using Names = std::map<std::string, ino_t>;

    void applyNames(std::size_t count, Names& names) const
    {
        for (std::size_t i = 0; i < count; ++i)
            _pendingNames[i](names);
    }

    static void apply(const Call& call, Bytes& bytes, std::mt19937* random)
    {
        constexpr std::size_t sector = 512;
        if (call.kind == Call::Kind::Resize) {
            bytes.resize(call.offset);
            return;
        }
        bytes.resize(std::max<std::size_t>(bytes.size(), call.offset + call.bytes.size()));
        for (std::size_t i = 0; i < call.bytes.size();) {
            const std::size_t at = call.offset + i;
            const std::size_t n = std::min(sector - at % sector, call.bytes.size() - i);
            if (random == nullptr || (*random)() % 2 == 0)
                std::copy_n(call.bytes.data() + i, n, bytes.data() + at);
            i += n;
        }
    }

    Names _names;
    std::map<ino_t, Bytes> _contents; // as synced
    std::map<ino_t, std::vector<const Call*>> _pendingBytes;
    std::vector<std::function<void(Names&)>> _pendingNames;
};

ino_t inodeOf(const std::string& path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

TEST_P(Crash, AWriterKilledAtAnyCallLosesNothing)
{
    EXPECT_GT(killAtEachCall(Fate::Kill), 5);
}

TEST_P(Crash, AWriterKilledWithinAnyWriteLosesNothing)
{
    EXPECT_GT(killAtEachCall(Fate::Tear), 5);
}

TEST_P(Crash, AnyCallThatFailsLosesNothing)
{
    for (const int error : {ENOSPC, EIO}) {
        int reported = 0;
        for (int number = 1;; ++number) {
            SCOPED_TRACE("call " + std::to_string(number) + ", error " + std::to_string(error));
            prepare();
            std::string words;
            bool succeeded = false;
            int calls = 0;
            {
                Writer writer;
                fileCalls::arm(Fate::Fail, number, error);
                succeeded = GetParam().write(writer, path);
                calls = fileCalls::disarm();
                words = writer.errors();
            }
            const bool mustContinue =
                words.find("is finished when the file is next opened for writing") != std::string::npos;
            EXPECT_EQ(isDone(), succeeded || mustContinue) << words;
            if (!succeeded) {
                ++reported;
                EXPECT_NE(words.find(path), std::string::npos) << words;
                EXPECT_NE(words.find(std::generic_category().message(error)), std::string::npos) << words;
            }
            if (calls < number || HasFailure())
                break;
        }
        EXPECT_GT(reported, 5);
    }
}

TEST_P(Crash, APowerFailureAtAnyMomentLosesNothing)
{
    prepare();
    const ino_t file = inodeOf(path);
    std::vector<Call> calls;
    fileCalls::record(calls);
    {
        Writer writer;
        EXPECT_TRUE(GetParam().write(writer, path)) << writer.errors();
    }
    fileCalls::stopRecording();
    ASSERT_GT(calls.size(), 5u);
    std::mt19937 random(3);
    Disk disk(path, before, file);
    for (std::size_t done = 0;; ++done) {
        for (int round = 0; round < 12; ++round) {
            SCOPED_TRACE("after call " + std::to_string(done) + ", round " + std::to_string(round));
            clear();
            disk.lose(random);
            const bool isThere = isDone();
            EXPECT_TRUE(isThere || done < calls.size());
            if (HasFailure())
                return;
        }
        if (done == calls.size())
            break;
        disk.see(calls[done]);
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, Crash,
                         ::testing::Values(Way{"Append", true, true}, Way{"Write", false, false},
                                           Way{"Replace", true, false}),
                         [](const auto& way) { return way.param.name; });

TEST(Crashes, TwoHundredKilledAppendersLoseNothing)
{
    const Folder folder;
    const std::string path = folder / "k.data.kel";
    Writer first;
    fileCalls::arm(Fate::Kill, 0); // counts
    ASSERT_TRUE(addLevel(first, path, 0, false)) << first.errors();
    const int calls = fileCalls::disarm();
    Levels expected{0};
    std::mt19937 random(11);
    int killed = 0;
    for (int round = 1; killed < 200; ++round) {
        const int number = 1 + static_cast<int>(random() % static_cast<unsigned>(2 * calls));
        const Fate fate = random() % 2 == 0 ? Fate::Kill : Fate::Tear;
        const bool ended = inChild([&] {
            fileCalls::arm(fate, number);
            Writer writer;
            return addLevel(writer, path, round, true) ? 0 : 1;
        });
        killed += ended ? 0 : 1;
        const Levels now = readableLevels(path);
        if (ended || now.size() > expected.size())
            expected.push_back(round);
        ASSERT_EQ(now, expected) << "round " << round << ", call " << number;
    }
}

// Every length of a journal: one that is not whole is as none.
TEST(Crashes, AnInterruptedCommitIsFinishedOrDropped)
{
    const Folder folder;
    const std::string path = folder / "j.data.kel";
    Writer first;
    ASSERT_TRUE(addLevel(first, path, 1, false)) << first.errors();
    const Bytes before = bytesOf(path);
    std::vector<Call> calls;
    fileCalls::record(calls);
    Writer second;
    EXPECT_TRUE(addLevel(second, path, 2, true)) << second.errors();
    fileCalls::stopRecording();

    // the file as it is when the journal is whole and nothing of it is done
    Bytes interrupted = before;
    Bytes journal;
    std::size_t changed = 0;
    for (const Call& call : calls) {
        const bool isJournal = call.name == path + ".journal";
        if (call.kind == Call::Kind::Remove)
            break;
        if (call.kind != Call::Kind::Write)
            continue;
        Bytes& bytes = isJournal ? journal : interrupted;
        if (!isJournal && !journal.empty()) {
            changed = call.offset;
            continue;
        }
        bytes.resize(std::max<std::size_t>(bytes.size(), call.offset + call.bytes.size()));
        std::copy(call.bytes.begin(), call.bytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(call.offset));
    }
    ASSERT_FALSE(journal.empty());
    ASSERT_GT(interrupted.size(), before.size());

    for (std::size_t length = 0; length < journal.size(); length += 41) {
        writeBytes(path, interrupted);
        writeBytes(path + ".journal", Bytes(journal.begin(), journal.begin() + static_cast<std::ptrdiff_t>(length)));
        EXPECT_EQ(readableLevels(path), Levels{1}) << length;
    }
    writeBytes(path, interrupted);
    writeBytes(path + ".journal", journal);
    EXPECT_EQ(readableLevels(path), (Levels{1, 2})); // seen as done
    EXPECT_EQ(bytesOf(path), interrupted);           // by a reader, who changes nothing
    Writer third;
    EXPECT_TRUE(addLevel(third, path, 3, true)) << third.errors();
    EXPECT_EQ(readableLevels(path), (Levels{1, 2, 3}));
    EXPECT_EQ(folder.names(), std::vector<std::string>{"j.data.kel"});

    // another file of the same name: the journal is not for it
    Bytes other = interrupted;
    other[changed] ^= 1;
    for (const Bytes& bytes : {other, before}) {
        writeBytes(path, bytes);
        writeBytes(path + ".journal", journal);
        Reader reader;
        reader.startReading(path, KEL_DATA);
        EXPECT_EQ(bytesOf(path), bytes);
    }
    EXPECT_EQ(readableLevels(path), Levels{1}); // the same old bytes, but not those that were added
    Writer fourth;
    EXPECT_TRUE(addLevel(fourth, path, 4, true)) << fourth.errors();
    EXPECT_EQ(readableLevels(path), (Levels{1, 4}));
    EXPECT_EQ(folder.names(), std::vector<std::string>{"j.data.kel"});
}

// The end of the file as its superblock states it decides what is cut before something is added.
TEST(Crashes, AFileThatCannotBeOpenedIsNotCut)
{
    const Folder folder;
    const std::string path = folder / "d.data.kel";
    Writer first;
    ASSERT_TRUE(addLevel(first, path, 1, false)) << first.errors();
    Bytes damaged = bytesOf(path);
    constexpr std::size_t endOfFileField = 28;
    ASSERT_NE(damaged[endOfFileField + 1], 0);
    damaged[endOfFileField + 1] = 0;
    writeBytes(path, damaged);
    Writer second;
    EXPECT_FALSE(addLevel(second, path, 2, true));
    EXPECT_NE(second.errors().find(path), std::string::npos);
    EXPECT_EQ(bytesOf(path), damaged);
    EXPECT_EQ(folder.names(), std::vector<std::string>{"d.data.kel"});
}

// Whether something can be added to a damaged file or not: if not, it stays as it is.
TEST(Crashes, AFailedAppendToADamagedFileChangesNothing)
{
    const Folder folder;
    const std::string path = folder / "d.data.kel";
    for (int level = 1; level <= 12; ++level) { // enough for the denser ways in which HDF5 keeps links
        Writer writer;
        ASSERT_TRUE(addLevel(writer, path, level, true)) << writer.errors();
    }
    const Bytes good = bytesOf(path);
    std::vector<std::size_t> used; // most of a small file is room for later
    for (std::size_t i = 0; i < good.size(); ++i)
        if (good[i] != 0)
            used.push_back(i);
    std::mt19937 random(6);
    int failed = 0;
    for (int round = 0; round < 300; ++round) {
        Bytes damaged = good;
        for (unsigned flips = 1 + random() % 4; flips > 0; --flips)
            damaged[used[random() % used.size()]] = static_cast<char>(random());
        writeBytes(path, damaged);
        Writer writer;
        if (addLevel(writer, path, 99, true))
            continue;
        ++failed;
        EXPECT_NE(writer.errors().find(path), std::string::npos) << round;
        ASSERT_EQ(bytesOf(path) == damaged, true) << round;
        ASSERT_EQ(folder.names(), std::vector<std::string>{"d.data.kel"}) << round;
    }
    EXPECT_GT(failed, 50);
}
