// The times of time levels, through every format that stores settings.
#include "KelGeneratedProvider.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"
#include "KelTimes.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <limits>

using namespace meridyn;

namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();

/// Writes a solution with three levels, the last of them without a time.
void writeLevels(KelFileConsumer& writer, const std::string& file)
{
    ASSERT_TRUE(writer.startWriting(file, KEL_DATA));
    for (const int level : {7, 3, 5})
        writer.startWritingTimeLevel(level);
    EXPECT_TRUE(KelTimes::set(writer, 7, 0.3));
    EXPECT_TRUE(KelTimes::set(writer, 3, 1.0));
    EXPECT_TRUE(KelTimes::set(writer, 3, 0.1 + 0.2)) << "the last one counts";
    EXPECT_FALSE(KelTimes::set(writer, -1, 1.0));
    EXPECT_FALSE(KelTimes::set(writer, 5, infinite));
    EXPECT_FALSE(KelTimes::set(writer, 5, std::numeric_limits<double>::quiet_NaN()));
    ASSERT_TRUE(writer.endWriting(KEL_DATA));
}

void expectLevels(KelFileProvider& reader, const std::string& file)
{
    ASSERT_TRUE(reader.startReading(file, KEL_DATA));
    double seconds = -1.0;
    EXPECT_TRUE(KelTimes::get(reader, 7, seconds));
    EXPECT_EQ(seconds, 0.3);
    EXPECT_TRUE(KelTimes::get(reader, 3, seconds));
    EXPECT_EQ(seconds, 0.30000000000000004) << "all digits";
    EXPECT_FALSE(KelTimes::get(reader, 5, seconds));
    EXPECT_FALSE(KelTimes::get(reader, 4, seconds));
    EXPECT_EQ(seconds, 0.30000000000000004) << "left alone";
    std::vector<std::string> keys;
    reader.getSettingsKeysOfGroup(KEL_DATA, "timeLevels", keys);
    EXPECT_EQ(keys.size(), 2U);
    std::string text;
    reader.getSettingString(KEL_DATA, "3", text, "timeLevels");
    EXPECT_EQ(text, "0.30000000000000004");
}

} // namespace

TEST(Times, ComeBackFromAFile)
{
    const std::string file = (std::filesystem::temp_directory_path() / "kel-times-test.data.kel").string();
    {
        KelHdf5Consumer writer;
        writeLevels(writer, file);
        KelHdf5Provider reader;
        expectLevels(reader, file);
    }
    std::filesystem::remove(file);
}

TEST(Times, ComeBackFromMemory)
{
    KelMemoryConsumer writer;
    writeLevels(writer, "memory:times");
    KelMemoryProvider reader;
    expectLevels(reader, "memory:times");
}

TEST(Times, FindTheNearestLevelWithinABillionth)
{
    KelMemoryConsumer writer;
    writeLevels(writer, "memory:times");
    KelMemoryProvider reader;
    ASSERT_TRUE(reader.startReading("memory:times", KEL_DATA));
    int level = -1;
    EXPECT_FALSE(KelTimes::find(reader, 0.31, level));
    EXPECT_FALSE(KelTimes::find(reader, 0.300000001, level));
    EXPECT_EQ(level, -1);
    EXPECT_TRUE(KelTimes::find(reader, 0.3, level));
    EXPECT_EQ(level, 7);
    EXPECT_TRUE(KelTimes::find(reader, 0.1 + 0.2, level));
    EXPECT_EQ(level, 3);
    EXPECT_TRUE(KelTimes::find(reader, 0.2999999999, level));
    EXPECT_EQ(level, 7) << "nearer than 0.1 + 0.2";
}

TEST(Times, AreTextsOfTheFewestDigits)
{
    const struct {
        double seconds;
        const char* text;
    } rows[] = {{0.1, "0.1"}, {0.0, "0"}, {-2.5, "-2.5"}, {1e-7, "1e-07"}, {1.0 / 3.0, "0.3333333333333333"}};
    for (const auto& row : rows) {
        EXPECT_EQ(KelTimes::text(row.seconds), row.text);
        double back = 99.0;
        EXPECT_TRUE(KelTimes::parse(row.text, back));
        EXPECT_EQ(back, row.seconds);
    }
    double untouched = 4.0;
    for (const char* bad : {"", " 1", "1 ", "1s", "inf", "nan", "1e999", "0x10", "one", "+1"})
        EXPECT_FALSE(KelTimes::parse(bad, untouched)) << bad;
    EXPECT_EQ(untouched, 4.0);
}

TEST(Times, OfGeneratedLevelsAreATenthOfASecondApart)
{
    KelGeneratedProvider reader;
    ASSERT_TRUE(reader.startReading("box:1x1x1 fields:1 levels:3", KEL_DATA));
    double seconds = 0.0;
    EXPECT_TRUE(KelTimes::get(reader, 3, seconds));
    EXPECT_EQ(seconds, 0.3);
    EXPECT_FALSE(KelTimes::get(reader, 4, seconds));
    std::vector<std::string> groups, keys;
    reader.getSettingsGroups(KEL_DATA, groups);
    EXPECT_EQ(groups, std::vector<std::string>{"timeLevels"});
    reader.getSettingsKeysOfGroup(KEL_DATA, "timeLevels", keys);
    EXPECT_EQ(keys, (std::vector<std::string>{"1", "2", "3"}));
    reader.getSettingsGroups(KEL_CASE, groups);
    EXPECT_TRUE(groups.empty());
}

TEST(Times, AGeneratedModelWithOneLevelIsSteady)
{
    KelGeneratedProvider reader;
    ASSERT_TRUE(reader.startReading("box:1x1x1 fields:1", KEL_DATA));
    double seconds = 0.0;
    EXPECT_FALSE(KelTimes::get(reader, 1, seconds));
    std::vector<std::string> groups = {"old"};
    reader.getSettingsGroups(KEL_DATA, groups);
    EXPECT_TRUE(groups.empty());
}
