// What only a terminal gets, and what an interrupt leaves behind.
#include "ToolRunner.h"

#include <chrono>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

using namespace meridyn::tool;
using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::Not;

static const Variables slowly = {{"THIN_SLOW", "1"}};

/// Waits until a file of that name lies in a folder of the folder, for ten seconds at most.
static bool appearsBelow(const std::filesystem::path& folder, const std::string& name)
{
    for (int n = 0; n < 1000; ++n) {
        std::error_code error; // a folder may go while it is looked at
        for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error))
            if (std::filesystem::exists(entry->path() / name, error))
                return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return false;
}

TEST(InATerminal, ProgressShowsBarRateAndTimeLeft)
{
    const TemporaryFolder folder;
    const Ran ran = runKelInTerminal({"convert", "--case-only", "box:100x100x60", folder / "o.thin"}, slowly);
    EXPECT_EQ(ran.code, 0) << ran.out;
    EXPECT_THAT(ran.out, ContainsRegex("coordinates.*\\[=* *\\] +[0-9]+%"));
    EXPECT_THAT(ran.out, ContainsRegex("B/s +[0-9:]+ left"));
    EXPECT_THAT(ran.out, HasSubstr("\r\x1b[K")) << "the line is taken away again";
}

TEST(InATerminal, AnswersAreColoured)
{
    EXPECT_THAT(runKelInTerminal({"check", "box:1x1x1"}).out, HasSubstr("\x1b[32mgood"));
    EXPECT_THAT(runKelInTerminal({"check", "box:1x1x1"}, {{"NO_COLOR", "1"}}).out, Not(HasSubstr("\x1b[32m")));
    const Ran dumb = runKelInTerminal({"check", "box:1x1x1"}, {{"TERM", "dumb"}});
    EXPECT_THAT(dumb.out, Not(HasSubstr("\x1b")));
}

TEST(InAPipe, ThereIsNeitherColourNorProgress)
{
    const TemporaryFolder folder;
    const Ran ran = runKel({"convert", "--case-only", "box:100x100x60", folder / "o.thin"}, slowly);
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, Not(HasSubstr("\x1b")));
    EXPECT_THAT(ran.out, Not(HasSubstr("\r")));
}

class Interrupts : public ::testing::TestWithParam<int> {};

TEST_P(Interrupts, LeaveNoPartialFile)
{
    const TemporaryFolder folder;
    const Ran ran =
        runKel({"convert", "--case-only", "box:200x200x100", folder / "o.thin"}, slowly, [&](pid_t process) {
            EXPECT_TRUE(appearsBelow(folder.path(), "o.thin.partial"));
            kill(process, GetParam());
        });
    EXPECT_EQ(ran.signal, GetParam()) << "the caller sees that the run was interrupted";
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "kel: " + folder / "o.thin: interrupted; nothing unfinished is left behind\n");
    EXPECT_TRUE(folder.names().empty());
}

TEST_P(Interrupts, EndATrace)
{
    const Ran ran = runKel({"trace", "box:300x300x300"}, {}, [](pid_t process) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        kill(process, GetParam());
    });
    EXPECT_EQ(ran.signal, GetParam());
}

INSTANTIATE_TEST_SUITE_P(Signals, Interrupts, ::testing::Values(SIGINT, SIGTERM, SIGHUP),
                         [](const auto& signal) { return "Signal" + std::to_string(signal.param); });
