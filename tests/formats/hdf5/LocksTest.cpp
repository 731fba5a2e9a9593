// Readers and writers of one file at the same time: who waits for whom, and what a reader sees meanwhile.
#include "FileCalls.h"
#include "formats/hdf5/file/FileChannel.h"
#include "formats/hdf5/file/FormatError.h"
#include "KelFormatRegistry.h"
#include "LevelFile.h"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <limits>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>

using namespace hdf5test;
using meridyn::hdf5::FileChannel;
using meridyn::hdf5::LockSettings;

namespace {

/// Sets an environment variable until the end of the block.
class Environment {
public:
    Environment(const char* name, const char* value) : _name(name) { ::setenv(name, value, 1); }
    ~Environment() { ::unsetenv(_name); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

private:
    const char* _name;
};

std::vector<double> valuesAt(Reader& reader, int level)
{
    reader.startReadingTimeLevel(level);
    std::vector<int> zones;
    std::vector<double> values(2);
    reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones);
    values.resize(reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values.data(), 2));
    return values;
}

std::vector<double> valuesOf(int level)
{
    return {level + 0.25, level + 0.5};
}

std::string warningsOf(KelBase& object)
{
    std::string all;
    for (const std::string& warning : object.getWarnings(false, true))
        all += warning + "\n";
    return all;
}

bool add(const std::string& path, int level, int compression = 0)
{
    Writer writer;
    writer.setCompression(compression);
    const bool done = addLevel(writer, path, level, true);
    EXPECT_TRUE(done) << writer.errors();
    return done;
}

/// A process that does a piece of work; waiting for it gives what the work gave.
class Child {
public:
    template <class Work>
    explicit Child(Work&& work) : _id(::fork())
    {
        if (_id == 0)
            ::_exit(work());
    }
    int wait()
    {
        int status = -1;
        ::waitpid(_id, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    pid_t id() const { return _id; }

private:
    pid_t _id;
};

} // namespace

TEST(Locks, AReaderHoldsNoLockBetweenCalls)
{
    const Folder folder;
    const std::string path = folder / "l.data.kel";
    ASSERT_TRUE(add(path, 1));
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(valuesAt(reader, 1), valuesOf(1));
    meridyn::hdf5::FileDescriptor other(::open(path.c_str(), O_RDWR | O_CLOEXEC));
    EXPECT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
    struct flock all {};
    all.l_type = F_WRLCK;
    EXPECT_EQ(::fcntl(other.get(), F_OFD_SETLK, &all), 0);
    EXPECT_EQ(valuesAt(reader, 1), valuesOf(1)); // nor does it ask for one to read what it has opened
}

TEST(Locks, AReaderDoesNotWaitForAWriterThatIsNotAtItsEnd)
{
    const Folder folder;
    const std::string path = folder / "l.data.kel";
    ASSERT_TRUE(add(path, 1));
    Writer appender;
    TwoCells::declare(appender);
    appender.setAppendOn(true);
    ASSERT_TRUE(appender.startWriting(path, KEL_DATA)) << appender.errors();
    Reader reader;
    reader.setLockTimeout(0);
    EXPECT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(valuesAt(reader, 1), valuesOf(1));
    appender.setLockTimeout(0); // has no effect on what is open
    EXPECT_TRUE(appender.endWriting(KEL_DATA)) << appender.errors();
    EXPECT_EQ(valuesAt(reader, 1), valuesOf(1));
    EXPECT_EQ(reader.errors(), "");
}

class OpenReaders : public ::testing::TestWithParam<int> {}; // by compression

// Level 1 is replaced and others are added; what was opened stays what it was, also parts that were not looked at yet.
TEST_P(OpenReaders, ServeWhatTheyHadOpened)
{
    const Folder folder;
    const std::string path = folder / "o.data.kel";
    for (const int level : {1, 2, 3})
        ASSERT_TRUE(add(path, level, GetParam()));
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(valuesAt(reader, 2), valuesOf(2));
    for (int level = 4; level < 40; ++level)
        ASSERT_TRUE(add(path, level, GetParam()));
    for (int round = 0; round < 3; ++round) {
        Writer writer;
        writer.setCompression(GetParam());
        writer.setAppendOn(true);
        TwoCells::declare(writer);
        short phase = 0;
        int id = 0;
        writer.addPhaseName("gas", phase);
        writer.addPhaseVariable(phase, "p", id);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        writer.startWritingTimeLevel(1);
        writer.startWritingPhase(phase);
        std::vector<int> zones{21};
        const double values[] = {-1, -2};
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
        writer.setValuesOfPhaseVariableForElementsInRange(1, 2, values, 2);
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    }
    EXPECT_EQ(reader.getTimeLevels(), (std::vector<int>{1, 2, 3}));
    for (const int level : {1, 2, 3}) {
        EXPECT_EQ(valuesAt(reader, level), valuesOf(level));
        std::vector<std::string> sets;
        EXPECT_TRUE(reader.getSetNames(KEL_DATA, sets));
    }
    EXPECT_EQ(reader.errors(), "");
    EXPECT_EQ(warningsOf(reader), "");
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    EXPECT_EQ(reader.getTimeLevels().size(), 39U);
    EXPECT_EQ(valuesAt(reader, 1), (std::vector<double>{-1, -2}));
    EXPECT_EQ(valuesAt(reader, 39), valuesOf(39));
}

// A text that is too long for a description of its object lies among the values.
TEST(Locks, AnOpenReaderHasTheLongTextsThatItHadOpened)
{
    const Folder folder;
    const std::string path = folder / "t.data.kel";
    ASSERT_TRUE(add(path, 1));
    const auto put = [&path](char letter) {
        Writer writer;
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        EXPECT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        writer.writeSettingStrings({{"long", std::string(200000, letter)}}, KEL_DATA, "group");
        EXPECT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    };
    put('a');
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    for (int level = 2; level < 6; ++level) {
        put(static_cast<char>('a' + level));
        ASSERT_TRUE(add(path, level));
    }
    std::string text;
    reader.getSettingString(KEL_DATA, "long", text, "group");
    EXPECT_TRUE(text == std::string(200000, 'a')) << text.substr(0, 20);
    EXPECT_EQ(reader.errors(), "");
}

// The last levels of a file are dropped and others are written: not where a reader still looks.
TEST_P(OpenReaders, KeepLevelsThatAreDropped)
{
    const Folder folder;
    const std::string path = folder / "d.data.kel";
    for (const int level : {1, 2, 3})
        ASSERT_TRUE(add(path, level, GetParam()));
    Reader reader;
    ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
    for (int round = 0; round < 2; ++round) {
        Writer writer;
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA)) << writer.errors();
        ASSERT_TRUE(writer.dropTimeLevelsFrom(2));
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
        for (const int level : {7, 8, 9, 10, 11})
            ASSERT_TRUE(add(path, level, GetParam()));
    }
    for (const int level : {1, 2, 3})
        EXPECT_EQ(valuesAt(reader, level), valuesOf(level));
    EXPECT_EQ(reader.errors(), "");
    EXPECT_EQ(readableLevels(path), (std::vector<int>{1, 7, 8, 9, 10, 11}));
}

INSTANTIATE_TEST_SUITE_P(Locks, OpenReaders, ::testing::Values(0, 1));

// What was not read at opening is read later only from an unchanged file.
TEST(Locks, ADescriptionOfAChangedFileIsRefused)
{
    const Folder folder;
    const std::string path = folder / "d.data.kel";
    ASSERT_TRUE(add(path, 1));
    FileChannel channel(path, FileChannel::Mode::Read, {});
    channel.endOpening();
    char bytes[100];
    channel.readDescription(1000, bytes, sizeof bytes);
    ASSERT_TRUE(add(path, 2));
    channel.readDescription(1000, bytes, sizeof bytes); // was read before
    try {
        channel.readDescription(3000, bytes, sizeof bytes);
        FAIL() << "the file was changed";
    } catch (const meridyn::hdf5::FormatError& error) {
        EXPECT_STREQ(error.what(), "was changed by a writer since it was opened, and what is asked for had not been "
                                   "read then; startReading opens it as it is now");
    }
}

// The first page tells readers that a file was changed: no change may leave it as it was.
TEST(Locks, EveryChangeShowsInTheFirstPage)
{
    const Folder folder;
    const std::string path = folder / "p.data.kel";
    ASSERT_TRUE(add(path, 1));
    for (const char* const what : {"nothing", "a setting", "the same setting", "a level"}) {
        const Bytes before = bytesOf(path);
        Writer writer;
        TwoCells::declare(writer);
        writer.setAppendOn(true);
        ASSERT_TRUE(writer.startWriting(path, KEL_DATA));
        if (std::string(what).find("setting") != std::string::npos)
            writer.writeSettingStrings({{"key", "text"}}, KEL_DATA, "group");
        if (std::string(what) == "a level")
            writer.startWritingTimeLevel(7);
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
        const Bytes after = bytesOf(path);
        const Bytes start(after.begin(), after.begin() + 512);
        EXPECT_TRUE(after == before || start != Bytes(before.begin(), before.begin() + 512)) << what;
    }
}

TEST(Locks, AWriterWaitsForAnotherAndThenSaysWhoItIs)
{
    const Folder folder;
    const std::string path = folder / "w.data.kel";
    ASSERT_TRUE(add(path, 1));
    for (const bool appends : {true, false}) {
        Writer first;
        TwoCells::declare(first);
        first.setAppendOn(appends);
        ASSERT_TRUE(first.startWriting(path, KEL_DATA)) << first.errors();
        const std::string expected = path + ": is being written by process " + std::to_string(::getpid());
        EXPECT_TRUE(inChild([&] {
            Writer second;
            second.setLockTimeout(0.25);
            const auto start = std::chrono::steady_clock::now();
            if (addLevel(second, path, 2, appends))
                return 1;
            if (std::chrono::steady_clock::now() - start < std::chrono::milliseconds(250))
                return 2;
            const std::string errors = second.errors();
            const bool names = errors.find(expected) != std::string::npos &&
                               errors.find(", after waiting 0.25 seconds") != std::string::npos;
            return names ? 0 : 3;
        }));
        Writer third; // of the same process
        third.setLockTimeout(0);
        EXPECT_FALSE(addLevel(third, path, 2, appends));
        EXPECT_NE(third.errors().find(path + ": is being written by this process, after waiting 0 seconds"),
                  std::string::npos)
            << third.errors();
        Child waiting([&] {
            Writer writer;
            return addLevel(writer, path, 3, appends) ? 0 : 1;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_TRUE(first.endWriting(KEL_DATA)) << first.errors();
        EXPECT_EQ(waiting.wait(), 0);
    }
}

// Programs on HDF5 alone lock a file for as long as they have it open.
TEST(Locks, WhoKeepsAFileOpenWithALockIsNamed)
{
    const Folder folder;
    const std::string path = folder / "h.data.kel";
    ASSERT_TRUE(add(path, 1));
    meridyn::hdf5::FileDescriptor other(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(other.get(), LOCK_SH | LOCK_NB), 0);
    Writer writer;
    writer.setLockTimeout(0);
    EXPECT_FALSE(addLevel(writer, path, 2, true));
    EXPECT_NE(writer.errors().find(path + ": is kept open by this process, after waiting 0 seconds"), std::string::npos)
        << writer.errors();
    ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
    Reader reader;
    reader.setLockTimeout(0);
    EXPECT_FALSE(reader.startReading(path, KEL_DATA));
    EXPECT_NE(reader.errors().find(path + ": is being changed by this process, after waiting 0 seconds"),
              std::string::npos)
        << reader.errors();
    ASSERT_EQ(::flock(other.get(), LOCK_UN), 0);
    EXPECT_TRUE(reader.startReading(path, KEL_DATA));
}

TEST(Locks, ALockedFileIsStillOfItsFormat)
{
    const Folder folder;
    const std::string path = folder / "f.data.kel";
    ASSERT_TRUE(add(path, 1));
    const meridyn::hdf5::FileDescriptor other(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
    const auto start = std::chrono::steady_clock::now();
    const KelFormat* const format = KelFormatRegistry::instance().probe(path);
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->name, "hdf5");
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(Locks, TimeLimitsThatAreNoneAreRefusedAndTheDefaultHolds)
{
    const Folder folder;
    const std::string path = folder / "t.data.kel";
    ASSERT_TRUE(add(path, 1));
    meridyn::hdf5::FileDescriptor other(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(::flock(other.get(), LOCK_EX | LOCK_NB), 0);
    const Environment environment("KEL_LOCK_TIMEOUT", "0.01");
    const double infinite = std::numeric_limits<double>::infinity();
    for (const double wrong : {-1.0, -0.001, 86400.5, 1e300, infinite, -infinite, std::nan("")}) {
        Reader reader;
        reader.setLockTimeout(5000);
        reader.setLockTimeout(wrong);
        EXPECT_NE(warningsOf(reader).find("was given, 0 to 86400 expected; the default holds"), std::string::npos);
        EXPECT_FALSE(reader.startReading(path, KEL_DATA));
        EXPECT_NE(reader.errors().find("after waiting 0.01 seconds"), std::string::npos) << reader.errors();
        Writer writer;
        writer.setLockTimeout(wrong);
        EXPECT_NE(warningsOf(writer).find("the default holds"), std::string::npos);
        EXPECT_FALSE(addLevel(writer, path, 2, true));
        EXPECT_NE(writer.errors().find("after waiting 0.01 seconds"), std::string::npos) << writer.errors();
    }
    for (const double right : {0.0, 86400.0}) {
        Reader reader;
        reader.setLockTimeout(right);
        EXPECT_EQ(warningsOf(reader), "");
    }
}

TEST(Locks, AWrongLimitInTheEnvironmentIsReported)
{
    for (const char* const wrong : {"soon", "-1", "86401", "1e9", "nan", "inf", "5 s", " 5", "0x10", "1,5"}) {
        const Environment environment("KEL_LOCK_TIMEOUT", wrong);
        std::string complaint;
        EXPECT_EQ(LockSettings::ofEnvironment(complaint).timeout, 30) << wrong;
        EXPECT_EQ(complaint, "KEL_LOCK_TIMEOUT is '" + std::string(wrong) +
                                 "', a number of seconds from 0 to 86400 expected; 30 seconds hold");
    }
    for (const char* const right : {"0", "2.5", "86400", "1e2"}) {
        const Environment environment("KEL_LOCK_TIMEOUT", right);
        std::string complaint;
        EXPECT_EQ(LockSettings::ofEnvironment(complaint).timeout, std::strtod(right, nullptr));
        EXPECT_EQ(complaint, "");
    }
    const Folder folder;
    ASSERT_TRUE(add(folder / "e.data.kel", 1));
    const Environment environment("KEL_LOCK_TIMEOUT", "soon");
    Reader reader;
    EXPECT_TRUE(reader.startReading(folder / "e.data.kel", KEL_DATA));
    EXPECT_NE(warningsOf(reader).find("KEL_LOCK_TIMEOUT is 'soon'"), std::string::npos);
}

TEST(Locks, AFileSystemWithoutLocksIsNamedAndCanBeUsed)
{
    const Folder folder;
    const std::string path = folder / "n.data.kel";
    ASSERT_TRUE(add(path, 1));
    fileCalls::refuseLocks(ENOLCK);
    Reader reader;
    EXPECT_FALSE(reader.startReading(path, KEL_DATA));
    EXPECT_NE(reader.errors().find(path + ": cannot be locked, its file system seems to have no locks (flock: No locks "
                                          "available). Where nobody else reads or writes the file meanwhile, "
                                          "KEL_LOCKS=off in the environment goes without"),
              std::string::npos)
        << reader.errors();
    Writer writer;
    EXPECT_FALSE(addLevel(writer, path, 2, true));
    EXPECT_NE(writer.errors().find("KEL_LOCKS=off"), std::string::npos) << writer.errors();
    {
        const Environment environment("KEL_LOCKS", "off");
        EXPECT_TRUE(add(path, 2));
        EXPECT_EQ(readableLevels(path), (std::vector<int>{1, 2}));
    }
    fileCalls::refuseLocks(0);
    EXPECT_EQ(readableLevels(path), (std::vector<int>{1, 2}));
}

TEST(Locks, AReaderWhoseFileWasReplacedSaysSo)
{
    const Folder folder;
    const std::string path = folder / "r.data.kel";
    ASSERT_TRUE(add(path, 1));
    for (const bool removes : {false, true}) {
        Reader reader;
        ASSERT_TRUE(reader.startReading(path, KEL_DATA)) << reader.errors();
        const int level = reader.getTimeLevels().front();
        EXPECT_EQ(warningsOf(reader), "");
        Writer writer;
        if (removes)
            std::filesystem::remove(path);
        else
            ASSERT_TRUE(addLevel(writer, path, 5, false)) << writer.errors();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_EQ(valuesAt(reader, level), valuesOf(level));
        EXPECT_EQ(valuesAt(reader, level), valuesOf(level));
        EXPECT_EQ(reader.errors(), "");
        const std::string warnings = warningsOf(reader);
        const std::string expected = path + ": was replaced or removed since it was opened";
        EXPECT_NE(warnings.find(expected), std::string::npos) << warnings;
        EXPECT_EQ(warnings.find(expected), warnings.rfind(expected)) << "once";
    }
}

TEST(Locks, AnAppendToAFileThatWasReplacedFails)
{
    const Folder folder;
    const std::string path = folder / "a.data.kel";
    ASSERT_TRUE(add(path, 1));
    Writer appender;
    TwoCells::declare(appender);
    appender.setAppendOn(true);
    ASSERT_TRUE(appender.startWriting(path, KEL_DATA)) << appender.errors();
    appender.startWritingTimeLevel(2);
    const Bytes before = bytesOf(path);
    std::filesystem::remove(path);
    writeBytes(path, before);
    EXPECT_FALSE(appender.endWriting(KEL_DATA));
    EXPECT_NE(appender.errors().find(path + ": was replaced or removed while something was added to it"),
              std::string::npos)
        << appender.errors();
    EXPECT_EQ(bytesOf(path), before);
}

// A run is watched: three programs read its file again and again, one keeps it open.
TEST(Locks, AGrowingFileIsReadByOthers)
{
    const char* const full = std::getenv("KEL_TEST_FULL");
    const int levels = full != nullptr ? 200 : 60;
    const Folder folder;
    const std::string path = folder / "run.data.kel";
    ASSERT_TRUE(add(path, 1));
    std::vector<Child> children;
    for (int i = 0; i < 3; ++i)
        children.emplace_back([&] { // until the last level is there
            for (std::size_t seen = 1; seen < static_cast<std::size_t>(levels);) {
                Reader reader;
                if (!reader.startReading(path, KEL_DATA) || reader.getTimeLevels().size() < seen)
                    return 1;
                seen = reader.getTimeLevels().size();
                for (const int level : {1, static_cast<int>(seen + 1) / 2, static_cast<int>(seen)})
                    if (valuesAt(reader, level) != valuesOf(level))
                        return 2;
                if (!reader.errors().empty() || !warningsOf(reader).empty())
                    return 3;
            }
            return 0;
        });
    Reader staying;
    ASSERT_TRUE(staying.startReading(path, KEL_DATA));
    for (int level = 2; level <= levels; ++level) {
        ASSERT_TRUE(add(path, level));
        EXPECT_EQ(valuesAt(staying, 1), valuesOf(1));
    }
    for (Child& child : children)
        EXPECT_EQ(child.wait(), 0);
    EXPECT_EQ(staying.getTimeLevels(), std::vector<int>{1});
    EXPECT_EQ(staying.errors() + warningsOf(staying), "");
    EXPECT_EQ(readableLevels(path).size(), static_cast<std::size_t>(levels));
    EXPECT_EQ(folder.names(), std::vector<std::string>{"run.data.kel"});
}
