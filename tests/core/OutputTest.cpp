#include "KelOutput.h"

#include "KelBase.h"
#include "KelConsumer.h"
#include "support/Captured.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

const char repeated[] = "Warning: KelBase::setZoneIds: Repeated Id supplied.";

/// Makes KelBase print one line.
void printOne()
{
    KelBase base;
    base.setZoneIds(KEL_CELL_ZONE, {1, 1});
}

class Output : public ::testing::Test {
protected:
    ~Output() override { KelOutput::reset(); }

    KelOutput::Callback into(Lines& lines)
    {
        return KelOutput::redirect([&lines](KelOutputStream, const std::string& line) { lines.push_back(line); });
    }
};

TEST_F(Output, GoesToStandardOutputUnlessTold)
{
    EXPECT_EQ(printedBy(printOne), std::string(repeated) + "\n");
}

TEST_F(Output, GoesToTheCallbackInstead)
{
    Lines lines;
    into(lines);
    EXPECT_EQ(printedBy(printOne), "");
    EXPECT_THAT(lines, ElementsAre(repeated));
    KelOutput::reset();
    EXPECT_EQ(printedBy(printOne), std::string(repeated) + "\n");
    EXPECT_EQ(lines.size(), 1u);
}

TEST_F(Output, TraceComesLineByLine)
{
    KelConsumer bare;
    Lines lines;
    into(lines);
    EXPECT_EQ(printedBy([&bare] { bare.startWritingCell0sForFaces({3, 5}); }), "");
    EXPECT_THAT(lines, ElementsAre("  Zones = 3, 5.", ""));
}

TEST_F(Output, BannerComesLineByLine)
{
    Lines lines;
    into(lines);
    EXPECT_EQ(printedBy(printCopyrightNotice), "");
    EXPECT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines[2].substr(0, 21), "              Welcome");
}

TEST_F(Output, TellsWhatIsForStandardError)
{
    KelConsumer bare;
    std::vector<KelOutputStream> streams;
    KelOutput::redirect([&](KelOutputStream stream, const std::string& line) {
        streams.push_back(stream);
        EXPECT_EQ(line, "KelConsumer::startWritingTimeLevel(): Invalid Time Level");
    });
    ::testing::internal::CaptureStderr();
    bare.startWritingTimeLevel(-5);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(streams, ElementsAre(KEL_STANDARD_ERROR));
}

TEST_F(Output, StaysOnStandardErrorUnlessTold)
{
    KelConsumer bare;
    ::testing::internal::CaptureStderr();
    bare.startWritingTimeLevel(-5);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "KelConsumer::startWritingTimeLevel(): Invalid Time Level\n");
}

TEST_F(Output, IsDroppedWhenSilenced)
{
    KelOutput::silence();
    EXPECT_EQ(printedBy(printOne), "");
}

TEST_F(Output, GivesBackWhatWasSetBefore)
{
    Lines outer, inner;
    EXPECT_FALSE(into(outer)) << "the streams";
    const KelOutput::Callback before = into(inner);
    ASSERT_TRUE(before);
    printOne();
    KelOutput::redirect(before);
    printOne();
    printOne();
    EXPECT_EQ(inner.size(), 1u);
    EXPECT_EQ(outer.size(), 2u);
    EXPECT_TRUE(KelOutput::redirect({}));
    EXPECT_FALSE(KelOutput::reset());
}

TEST_F(Output, ThatACallbackThrowsAtIsPrinted)
{
    KelOutput::redirect([](KelOutputStream, const std::string&) { throw std::runtime_error("full"); });
    KelBase base;
    EXPECT_EQ(printedBy([&base] {
                  EXPECT_NO_THROW(base.setZoneIds(KEL_CELL_ZONE, {1, 1}));
              }),
              std::string(repeated) + "\n");
    KelOutput::redirect([](KelOutputStream, const std::string&) { throw 5; });
    EXPECT_EQ(printedBy([&base] {
                  EXPECT_NO_THROW(base.setZoneIds(KEL_CELL_ZONE, {1, 1}));
              }),
              std::string(repeated) + "\n");
    Lines lines;
    into(lines);
    printOne();
    EXPECT_EQ(lines.size(), 1u) << "the next callback is called again";
}

TEST_F(Output, OfACallbackItselfGoesToTheStreams)
{
    int calls = 0;
    KelOutput::redirect([&calls](KelOutputStream, const std::string&) {
        ++calls;
        printOne();
    });
    EXPECT_EQ(printedBy(printOne), std::string(repeated) + "\n");
    EXPECT_EQ(calls, 1);
}

TEST_F(Output, CallbackMayRedirect)
{
    Lines lines;
    KelOutput::redirect([this, &lines](KelOutputStream, const std::string& line) {
        lines.push_back("first: " + line);
        into(lines);
    });
    printOne();
    printOne();
    EXPECT_THAT(lines, ElementsAre(std::string("first: ") + repeated, repeated));
}

TEST_F(Output, MayBeRedirectedWhileOtherThreadsPrint)
{
    std::atomic<int> taken{0};
    const auto count = [&taken](KelOutputStream, const std::string&) { ++taken; };
    KelOutput::redirect(count);
    constexpr int lines = 200;
    const auto print = [] {
        KelBase base;
        for (int i = 0; i < lines; ++i)
            base.setZoneIds(KEL_CELL_ZONE, {1, 1});
    };
    std::thread one(print), two(print);
    for (int i = 0; i < 100; ++i)
        KelOutput::redirect(count);
    one.join();
    two.join();
    EXPECT_EQ(taken, 2 * lines);
}

} // namespace
} // namespace meridyn
