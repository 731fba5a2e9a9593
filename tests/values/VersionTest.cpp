#include "KelVersion.h"

#include <gtest/gtest.h>
#include <iostream>
#include <sstream>
#include <type_traits>

using namespace meridyn;

namespace {

const std::string indent(14, ' ');

/// Collects what is printed, and counts the flushes.
class Recorder : public std::stringbuf {
public:
    int flushes = 0;

protected:
    int sync() override
    {
        ++flushes;
        return std::stringbuf::sync();
    }
};

/// What an operation prints on standard output, as lines; fails unless each line is flushed.
std::vector<std::string> printedBy(void (*operation)())
{
    Recorder recorder;
    std::streambuf* const console = std::cout.rdbuf(&recorder);
    operation();
    std::cout.rdbuf(console);

    std::vector<std::string> lines;
    std::istringstream text(recorder.str());
    for (std::string line; std::getline(text, line);)
        lines.push_back(line);
    EXPECT_TRUE(recorder.str().empty() || recorder.str().back() == '\n');
    EXPECT_EQ(recorder.flushes, static_cast<int>(lines.size()));
    return lines;
}

} // namespace

TEST(Version, NumbersAndLabels)
{
    EXPECT_EQ(KelVersion::getMajor(), 25u);
    EXPECT_EQ(KelVersion::getMinor(), 1u);
    EXPECT_EQ(KelVersion::getPatch(), 0u);
    EXPECT_FALSE(KelVersion::isBeta());
    EXPECT_EQ(KelVersion::getSHA(), "d93e6bf8");
    static_assert(std::is_same_v<decltype(KelVersion::getMajor()), unsigned int>);
}

TEST(Version, HasNoDataAndCanBeCopied)
{
    static_assert(std::is_empty_v<KelVersion>);
    const KelVersion one;
    KelVersion other(one);
    other = one;
    EXPECT_EQ(other.getMajor(), 25u);
}

TEST(Version, ApiVersionTakesAnySeparator)
{
    EXPECT_EQ(KelVersion::apiVersionAsString("."), "25.1");
    EXPECT_EQ(KelVersion::apiVersionAsString("_"), "25_1");
    EXPECT_EQ(KelVersion::apiVersionAsString(""), "251");
    EXPECT_EQ(KelVersion::apiVersionAsString(" to "), "25 to 1");
}

TEST(Version, ApplicationVersionKeepsBothBlanks)
{
    EXPECT_EQ(KelVersion::meridynApplicationVersion("Fluids file SDK"), "MERIDYN Fluids file SDK 2025 R1");
    EXPECT_EQ(KelVersion::meridynApplicationVersion(""), "MERIDYN  2025 R1");
}

TEST(Version, CopyrightIsOneLineAndTheWarningASentenceBehindIt)
{
    const std::string notice = KelVersion::copyright(false);
    EXPECT_EQ(notice, "Copyright 2021-2025 MERIDYN");
    EXPECT_EQ(KelVersion::copyright(true),
              notice + " Unauthorised use, distribution or duplication of this software is prohibited.");
}

TEST(Version, NoticeIsPrintedToTheByte)
{
    const std::vector<std::string> expected = {
        "",
        "",
        indent + "Welcome to MERIDYN Fluids file SDK 2025 R1",
        "",
        indent + "Copyright 2021-2025 MERIDYN",
        indent + "Unauthorised use, distribution or duplication of this software is prohibited.",
        indent + "This software may be subject to export control laws and regulations.",
        indent + "Further information is found in the documents that come with it.",
    };
    EXPECT_EQ(printedBy(printCopyrightNotice), expected);
    EXPECT_EQ(printedBy(printCopyrightNotice), expected) << "the notice itself is not limited to once";
}

TEST(Version, BannerIsPrintedEachTimeAndTheNoticeOnce)
{
    const std::vector<std::string> banner = {
        "",
        "",
        indent + "MERIDYN Fluids file SDK 2025 R1[d93e6bf8]",
        indent + "can produce abridged version of MERIDYN Fluids 19.0 files; and",
        indent + "can read files produced by the following MERIDYN Fluids versions:",
        indent + indent + "16.0 to 25.1",
        "",
        "",
    };
    std::vector<std::string> first = printedBy(printCopyrightNotice);
    first.insert(first.end(), banner.begin(), banner.end());
    EXPECT_EQ(printedBy(printSDKVersion), first);
    EXPECT_EQ(printedBy(printSDKVersion), banner);
}
