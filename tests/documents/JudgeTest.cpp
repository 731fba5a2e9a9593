// docs/testing.md, "Tests that need a judge".

#include "support/Judge.h"

#include <gtest/gtest-spi.h>

namespace meridyn {
namespace {

void askJudge(const char* program, bool& isAsked)
{
    KEL_NEEDS_JUDGE(program)
    isAsked = true;
}

TEST(Judge, IsAskedWhereItIsInstalled)
{
    bool isAsked = false;
    askJudge("sh", isAsked);
    EXPECT_TRUE(isAsked);
}

class MissingJudge : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override { setenv("KEL_REQUIRE_JUDGES", GetParam().c_str(), 1); }
};

TEST_P(MissingJudge, SkipsOrFailsTheTest)
{
    const bool isRequired = GetParam() == "1" || GetParam() == "yes";
    EXPECT_EQ(areJudgesRequired(), isRequired);
    EXPECT_FALSE(isInstalled("no-such-judge"));
    ::testing::TestPartResultArray outcome;
    bool isAsked = false;
    {
        const ::testing::ScopedFakeTestPartResultReporter reporter(
            ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &outcome);
        askJudge("no-such-judge", isAsked);
    }
    EXPECT_FALSE(isAsked);
    ASSERT_EQ(outcome.size(), 1);
    EXPECT_EQ(outcome.GetTestPartResult(0).failed(), isRequired);
    EXPECT_EQ(outcome.GetTestPartResult(0).skipped(), !isRequired);
}

INSTANTIATE_TEST_SUITE_P(Values, MissingJudge, ::testing::Values("", "0", "1", "yes"),
                         [](const auto& row) { return "Value" + (row.param.empty() ? "Empty" : row.param); });

} // namespace
} // namespace meridyn
