// Whole ways: real cases and generated meshes through files and back, damaged files, interrupts.
#include "ToolRunner.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <thread>

using namespace meridyn::tool;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

// ---- real cases ---------------------------------------------------------------------------------------------------

static std::vector<std::string> realCases()
{
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(KEL_SOURCE_DIR "/tests/data/polymesh"))
        if (entry.is_directory())
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class RealCases : public ::testing::TestWithParam<std::string> {
protected:
    const std::string _case = KEL_SOURCE_DIR "/tests/data/polymesh/" + GetParam();
};

TEST_P(RealCases, HaveGoodMeshes)
{
    const Ran ran = runKel({"check", _case});
    EXPECT_EQ(ran.code, 0) << ran.out;
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, EndsWith("\nThe mesh is good.\n"));
}

TEST_P(RealCases, SurviveTheWayIntoFiles)
{
    const TemporaryFolder folder;
    const Ran convert = runKel({"convert", _case, folder / "c.case.kel"});
    EXPECT_EQ(convert.code, 0) << convert.out << convert.err;
    EXPECT_THAT(convert.out, HasSubstr("truth.json")); // no file of a case: named, and nothing else can be lost of it
    const Ran diff = runKel({"diff", _case, folder / "c"});
    EXPECT_THAT(diff.code, ::testing::AnyOf(0, 3)) << diff.out << diff.err; // 3: something could not be looked at
    EXPECT_EQ(runKel({"check", folder / "c"}).code, 0);
}

INSTANTIATE_TEST_SUITE_P(Files, RealCases, ::testing::ValuesIn(realCases()), [](const auto& name) {
    std::string text = name.param;
    std::replace(text.begin(), text.end(), '-', '_');
    return text;
});

// ---- one model in files -------------------------------------------------------------------------------------------

class BoxInFiles : public ::testing::Test {
protected:
    void SetUp() override
    {
        const Ran ran = runKel({"convert", "box:6x5x4 fields:2 levels:3 zones:2", _folder / "box.case.kel"});
        ASSERT_EQ(ran.code, 0) << ran.err;
        ASSERT_THAT(_folder.names(), ::testing::UnorderedElementsAre("box.case.kel", "box.data.kel"));
    }

    Ran kel(std::vector<std::string> arguments) const
    {
        for (std::string& argument : arguments)
            if (argument.starts_with("@"))
                argument = _folder / argument.substr(1);
        return runKel(arguments);
    }

    TemporaryFolder _folder;
};

TEST_F(BoxInFiles, IsFoundByEitherFileAndByTheirName)
{
    for (const char* name : {"@box", "@box.case.kel", "@box.data.kel"}) {
        const Ran ran = kel({"info", name});
        EXPECT_EQ(ran.code, 0) << name;
        EXPECT_THAT(ran.out, HasSubstr("  cells        120\n")) << name;
        EXPECT_THAT(ran.out, HasSubstr("  time levels  1 (0.1 s), 2 (0.2 s), 3 (0.3 s)\n")) << name;
    }
}

TEST_F(BoxInFiles, EqualsItsSource)
{
    const Ran ran = kel({"diff", "box:6x5x4 fields:2 levels:3 zones:2", "@box"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "The two models are equal.\n");
    EXPECT_EQ(kel({"convert", "--strict", "--verify", "@box", "@copy.case.kel"}).code, 0);
    EXPECT_EQ(kel({"diff", "box:6x5x4 fields:2 levels:2 zones:2", "@box"}).code, 1);
}

TEST_F(BoxInFiles, CaseAndDataConvertAlone)
{
    EXPECT_EQ(kel({"convert", "--case-only", "@box", "@a.case.kel"}).code, 0);
    EXPECT_EQ(kel({"convert", "--data-only", "@box", "@b.data.kel"}).code, 0);
    EXPECT_THAT(_folder.names(),
                ::testing::UnorderedElementsAre("box.case.kel", "box.data.kel", "a.case.kel", "b.data.kel"));
    EXPECT_EQ(kel({"diff", "--case-only", "@box", "@a"}).code, 0);
    EXPECT_EQ(kel({"diff", "--data-only", "@box", "@b"}).code, 0);
    EXPECT_EQ(kel({"diff", "@box", "@a"}).code, 1) << "data against none";
    EXPECT_EQ(kel({"check", "@b"}).code, 2);
}

TEST_F(BoxInFiles, TimeLevelsAreChosen)
{
    EXPECT_EQ(kel({"convert", "--time", "1,last", "@box", "@some.case.kel"}).code, 0);
    EXPECT_THAT(kel({"info", "@some"}).out, HasSubstr("  time levels  1 (0.1 s), 3 (0.3 s)\n"));
    const Ran ran = kel({"convert", "--time", "4", "@box", "@none.case.kel"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.err, EndsWith("has no time level '4'; those that it has: 1 (0.1 s), 2 (0.2 s), 3 (0.3 s)\n"));
    EXPECT_FALSE(std::filesystem::exists(_folder / "none.data.kel"));
    EXPECT_FALSE(std::filesystem::exists(_folder / "none.case.kel"))
        << "nothing is written before all options are right";
    EXPECT_EQ(kel({"convert", "--time", "0.2s", "@box", "@two.case.kel"}).code, 0);
    EXPECT_THAT(kel({"info", "@two"}).out, HasSubstr("  time levels  2 (0.2 s)\n"));
}

TEST_F(BoxInFiles, ARestartThatWentBackIsJoined)
{
    ASSERT_EQ(kel({"convert", "box:6x5x4 fields:2 levels:4 zones:2 size:9x9x9", "@again.case.kel"}).code, 0);
    const auto largest = [&](const char* level) {
        const Ran ran = kel({"info", "--json", "--stats", "--time", level, "@box"});
        return nlohmann::json::parse(ran.out)["variables"][0]["largest"].get<double>();
    };
    const double first = largest("1"), second = largest("2");
    const Ran ran = kel({"convert", "--from-level", "2", "@again.data.kel", "@box.data.kel"});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("dropped 2 time levels of it, from 2 on\n"));
    EXPECT_THAT(kel({"info", "@box"}).out, HasSubstr("  time levels  1 (0.1 s), 2 (0.2 s), 3 (0.3 s), 4 (0.4 s)\n"));
    EXPECT_EQ(largest("1"), first);
    EXPECT_GT(largest("2"), second + 1.0) << "that of the larger box";
    EXPECT_EQ(kel({"check", "@box"}).code, 0) << "the case is as it was";
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"convert", "--from-level", "9", "@again.data.kel", "@box.data.kel"},
                                               {"convert", "--from-level", "x", "@again.data.kel", "@box.data.kel"},
                                               {"convert", "--from-level", "1", "box:1x1x1 fields:1", "@box.data.kel"},
                                               {"convert", "--from-level", "1", "@again.data.kel", "@none.data.kel"}}) {
        const Ran refused = kel(arguments);
        EXPECT_EQ(refused.code, 2) << refused.out;
        EXPECT_EQ(largest("1"), first);
    }
}

TEST_F(BoxInFiles, SinglePrecisionIsSmallerAndDiffers)
{
    EXPECT_EQ(kel({"convert", "--precision", "single", "@box", "@single.case.kel"}).code, 0);
    EXPECT_EQ(kel({"diff", "@box", "@single"}).code, 1);
    EXPECT_EQ(kel({"convert", "--strict", "@single", "@again.case.kel"}).code, 0);
    EXPECT_EQ(kel({"diff", "@single", "@again"}).out, "The two models are equal.\n") << "single stays single";
    const Ran close = kel({"diff", "--rtol", "1e-6", "@box", "@single"});
    EXPECT_EQ(close.code, 1) << "the width of the values is another one";
    EXPECT_THAT(close.out, Not(::testing::ContainsRegex("\n[a-z]+: [^t]")));
    EXPECT_THAT(close.out, HasSubstr("\nvariables: type of variable 'field-1' of phase 'phase-1', "));
}

TEST_F(BoxInFiles, SettingsShowAsTreeValueXmlAndJson)
{
    EXPECT_THAT(kel({"settings", "@box"}).out, StartsWith("case settings\n  Solver = "));
    EXPECT_EQ(kel({"settings", "@box", "settings/Version"}).out, "25.1\n");
    EXPECT_EQ(kel({"settings", "@box", "Version"}).out, "25.1\n");
    EXPECT_EQ(kel({"settings", "--xml", "@box", "Version"}).out, "25.1\n");
    EXPECT_EQ(kel({"settings", "@box", "settings/Nothing"}).code, 1);
    EXPECT_THAT(kel({"settings", "--data", "@box"}).out, Not(HasSubstr("case settings")));
    EXPECT_TRUE(isJson(kel({"settings", "--json", "@box"}).out));
}

TEST_F(BoxInFiles, DamagedFilesAreOneLineEach)
{
    const auto size = std::filesystem::file_size(_folder / "box.case.kel");
    for (int tenth = 0; tenth < 10; ++tenth) {
        std::filesystem::copy_file(_folder / "box.case.kel", _folder / "cut.case.kel",
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::resize_file(_folder / "cut.case.kel", size * static_cast<unsigned>(tenth) / 10);
        for (const std::vector<std::string>& arguments :
             std::vector<std::vector<std::string>>{{"info", "@cut.case.kel"},
                                                   {"check", "@cut.case.kel"},
                                                   {"diff", "@cut.case.kel", "@box"},
                                                   {"trace", "@cut.case.kel"},
                                                   {"settings", "@cut.case.kel"},
                                                   {"locate", "@cut.case.kel", "box"},
                                                   {"convert", "@cut.case.kel", "@new.case.kel"}}) {
            const Ran ran = kel(arguments);
            EXPECT_EQ(ran.code, 2) << arguments[0] << ", " << tenth << " tenths";
            EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
            EXPECT_THAT(ran.err, HasSubstr("cut.case.kel: "));
            EXPECT_FALSE(std::filesystem::exists(_folder / "new.case.kel"));
        }
    }
}

TEST_F(BoxInFiles, ChangedBytesNeverCrash)
{
    std::ifstream in(_folder / "box.case.kel", std::ios::binary);
    const std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    for (std::size_t n = 0; n < 24; ++n) {
        std::string damaged = content;
        damaged[n * 997 % damaged.size()] ^= static_cast<char>(0x55);
        _folder.file("odd.case.kel", damaged);
        const Ran ran = kel({"check", "@odd.case.kel"});
        EXPECT_EQ(ran.signal, 0) << "byte " << n * 997 % damaged.size();
        EXPECT_THAT(ran.err, Not(HasSubstr("\nkel: "))) << "one complaint";
    }
}

TEST(Files, AnInterruptedConversionLeavesNone)
{
    const TemporaryFolder folder;
    const Ran ran = runKel({"convert", "box:250x250x250", folder / "big.case.kel"}, {}, [&](pid_t process) {
        for (int n = 0; n < 1000 && folder.names().empty(); ++n)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        kill(process, SIGINT);
    });
    EXPECT_EQ(ran.signal, SIGINT);
    EXPECT_TRUE(folder.names().empty()) << folder.names().front();
}

// ---- conformance --------------------------------------------------------------------------------------------------

TEST(Conform, RunsTheSuiteOrOneCheck)
{
    const Ran list = runKel({"conform", "--list", "memory"});
    EXPECT_EQ(list.code, 0);
    ASSERT_FALSE(list.out.empty());
    const std::string check = list.out.substr(0, list.out.find('\n'));
    const Ran one = runKel({"conform", "memory", "--check", check});
    EXPECT_EQ(one.code, 0);
    EXPECT_EQ(one.out, "passed  " + check + "\n1 passed, 0 failed\n");
    EXPECT_TRUE(isJson(runKel({"conform", "--json", "memory", "--check", check}).out));
    EXPECT_EQ(runKel({"conform", "generated"}).code, 0);
}

TEST(Conform, FindsOutAPluginThatFallsShort)
{
    const Ran ran =
        runKel({"conform", "--plugin", KEL_TEST_PLUGINS "/kel_thin_format.so"}, {{"KEL_FORMAT_PLUGIN_DIR", ""}});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("FAILED  "));
    EXPECT_EQ(ran.err, "");
}

TEST(Conform, NeedsAFormat)
{
    EXPECT_EQ(runKel({"conform"}).code, 2);
    EXPECT_EQ(runKel({"conform", "nil"}).err, "kel: no format is called 'nil'; see 'kel formats'\n");
    EXPECT_EQ(runKel({"conform", "memory", "--check", "nil"}).code, 1);
    EXPECT_EQ(runKel({"conform", "--plugin", "/none.so"}).code, 2);
}
