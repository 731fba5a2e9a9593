#include "KelConsumer.h"
#include "KelLocationModel.h"
#include "KelSetting.h"

#include <gtest/gtest.h>

#include <limits>

namespace meridyn {
namespace {

constexpr int latest = std::numeric_limits<int>::min();

class OpenConsumer : public KelConsumer {
public:
    OpenConsumer() = default;
    explicit OpenConsumer(const std::string& name) : KelConsumer(name) {}

    using KelBase::addTimeLevel;
    using KelBase::getApplicationName;
    using KelBase::locationModel;
    using KelConsumer::getDataPrecision;
    using KelConsumer::getLastLogIndex;
    using KelConsumer::inheritVariableAttributes;

    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass,
                             const std::string& group) const override
    {
        settings = pairs;
        settingsPlace = std::to_string(dataClass) + ":" + group;
    }
    void writeMeshAttributes() const override { ++meshAttributeCalls; }
    void cacheLocationModelState(const std::string& state) const override { states.push_back(state); }

    mutable std::vector<std::pair<std::string, std::string>> settings;
    mutable std::string settingsPlace;
    mutable int meshAttributeCalls = 0;
    mutable std::vector<std::string> states;
};

/// What startWritingTimeLevel says on standard error.
std::string complaintAbout(const KelConsumer& writer, int level)
{
    ::testing::internal::CaptureStderr();
    writer.startWritingTimeLevel(level);
    return ::testing::internal::GetCapturedStderr();
}

TEST(ConsumerRun, ConstructionNamesTheApplicationAndPrintsNothing)
{
    ::testing::internal::CaptureStdout();
    const OpenConsumer named("Solver A");
    const OpenConsumer unnamed;
    const OpenConsumer empty("");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(named.getApplicationName(), "Solver A");
    EXPECT_EQ(unnamed.getApplicationName(), "Unknown");
    EXPECT_EQ(empty.getApplicationName(), "");
}

TEST(ConsumerRun, OwnFieldsStartCleared)
{
    OpenConsumer writer;
    EXPECT_EQ(writer.getDataPrecision(), KelDataPrecisionType(0));
    EXPECT_FALSE(writer.inheritVariableAttributes());
    writer.setDataPrecision(KEL_PRECISION_DOUBLE);
    writer.inheritVariableAttributes(true);
    EXPECT_EQ(writer.getDataPrecision(), KEL_PRECISION_DOUBLE);
    EXPECT_TRUE(writer.inheritVariableAttributes());
    writer.setDataPrecision(KelDataPrecisionType(-7));
    EXPECT_EQ(writer.getDataPrecision(), KelDataPrecisionType(-7));
}

TEST(ConsumerRun, QueriesAnswerNo)
{
    OpenConsumer writer;
    EXPECT_FALSE(writer.startWriting(KEL_CASE));
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_FALSE(writer.isWritingData());
    EXPECT_EQ(writer.getLastLogIndex(KEL_DATA), -1);
}

TEST(ConsumerTimeLevel, ANewLevelIsAddedAndSelected)
{
    const OpenConsumer writer;
    EXPECT_EQ(complaintAbout(writer, 5), "");
    EXPECT_EQ(complaintAbout(writer, 0), "");
    EXPECT_EQ(complaintAbout(writer, 5), "");
    EXPECT_EQ(writer.getTimeLevels(), (std::vector<int>{5, 0}));
    EXPECT_EQ(writer.getTimeLevel(), 5);
    writer.endWritingTimeLevel();
    EXPECT_EQ(writer.getTimeLevel(), 5);
}

TEST(ConsumerTimeLevel, TheSmallestIntSelectsTheLargestKnownLevel)
{
    const OpenConsumer writer;
    writer.addTimeLevel(3);
    writer.addTimeLevel(8);
    writer.addTimeLevel(2);
    EXPECT_EQ(complaintAbout(writer, latest), "");
    EXPECT_EQ(writer.getTimeLevel(), 8);
    EXPECT_EQ(writer.getTimeLevels(), (std::vector<int>{3, 8, 2}));
}

TEST(ConsumerTimeLevel, TheSmallestIntWithoutLevelsSelectsTheLargestInt)
{
    const OpenConsumer writer;
    EXPECT_EQ(complaintAbout(writer, latest), "");
    EXPECT_EQ(writer.getTimeLevel(), 2147483647);
}

TEST(ConsumerTimeLevel, OtherNegativeLevelsAreReported)
{
    const OpenConsumer writer;
    writer.startWritingTimeLevel(4);
    EXPECT_EQ(complaintAbout(writer, -1), "KelConsumer::startWritingTimeLevel(): Invalid Time Level\n");
    EXPECT_EQ(complaintAbout(writer, latest + 1), "KelConsumer::startWritingTimeLevel(): Invalid Time Level\n");
    EXPECT_EQ(writer.getTimeLevel(), 4);
    EXPECT_EQ(writer.getTimeLevels(), std::vector<int>{4});
}

TEST(ConsumerSettings, AnInvalidSettingWritesNothing)
{
    const OpenConsumer writer;
    KelSetting none;
    writer.writeSetting(none, "k", KEL_CASE, "g");
    EXPECT_EQ(writer.settingsPlace, "");
}

TEST(ConsumerSettings, AValidSettingIsOnePairOfKeyAndText)
{
    const OpenConsumer writer;
    KelSetting setting = KelSetting::get("solver");
    writer.writeSetting(setting, "Common", KEL_DATA, "my group");
    ASSERT_EQ(writer.settings.size(), 1U);
    EXPECT_EQ(writer.settings[0].first, "Common");
    EXPECT_EQ(writer.settings[0].second, setting.toSettingString());
    EXPECT_EQ(writer.settingsPlace, "1:my group");
}

TEST(ConsumerSettings, WithoutAGroupTheyGoToTheDefaultOne)
{
    const OpenConsumer open;
    const KelConsumer& writer = open;
    KelSetting setting = KelSetting::get("solver");
    writer.writeSetting(setting, "Common", KEL_CASE);
    EXPECT_EQ(open.settingsPlace, "0:settings");
    writer.writeSettingStrings({{"a", "b"}}, KEL_DATA);
    EXPECT_EQ(open.settingsPlace, "1:settings");
}

TEST(ConsumerSettings, TheBareWriterCountsThePair)
{
    const KelConsumer bare;
    KelSetting setting = KelSetting::get("solver");
    ::testing::internal::CaptureStdout();
    bare.writeSetting(setting, "k", KEL_CASE, "g");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "  1 key-value pairs.\n");
}

TEST(ConsumerRun, WriteMeshSizeAsksForTheMeshAttributes)
{
    const OpenConsumer writer;
    writer.writeMeshSize();
    EXPECT_EQ(writer.meshAttributeCalls, 1);
}

TEST(ConsumerLocations, NullDoesNothing)
{
    const OpenConsumer writer;
    writer.setLocationModel(nullptr);
    EXPECT_TRUE(writer.states.empty());
}

TEST(ConsumerLocations, EachCallCopiesTheModelAndHandsOutItsState)
{
    KelLocationModel model;
    int part = 0;
    model.createPart(3, "fluid", part);
    const OpenConsumer writer;
    writer.setLocationModel(&model);
    writer.setLocationModel(&model);
    EXPECT_EQ(writer.states, (std::vector<std::string>{model.state(), model.state()}));
    int found = 0;
    EXPECT_TRUE(writer.locationModel()->findPart("fluid", found));
    EXPECT_EQ(found, part);
}

TEST(ConsumerLocations, TheBareWriterTakesTheModelAndSaysNothing)
{
    KelLocationModel model;
    int part = 0;
    model.createPart(3, "fluid", part);
    const KelConsumer bare("Locations");
    ::testing::internal::CaptureStdout();
    bare.setLocationModel(&model);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(bare.getLocationModel()->state(), model.state());
}

TEST(ConsumerLocations, TheOwnModelCanBeHandedBack)
{
    const OpenConsumer writer;
    int part = 0;
    writer.locationModel()->createPart(3, "fluid", part);
    writer.setLocationModel(writer.getLocationModel());
    ASSERT_EQ(writer.states.size(), 1U);
    EXPECT_EQ(writer.states[0], writer.locationModel()->state());
    EXPECT_TRUE(writer.locationModel()->findPart("fluid", part));
}

} // namespace
} // namespace meridyn
