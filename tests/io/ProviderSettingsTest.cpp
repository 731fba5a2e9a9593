#include "KelSettingsParser.h"
#include "support/RecordingProvider.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace meridyn {
namespace {

using Ids = std::vector<int>;

/// A file: gives its settings as texts and notes what it was asked for.
class FileOfSettings : public OpenProvider {
public:
    std::map<std::string, std::string> texts; // by "<data class>/<group>/<key>"
    mutable std::vector<std::string> asked;

    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                          const std::string& group) const override
    {
        asked.push_back(std::to_string(dataClass) + "/" + group + "/" + key);
        EXPECT_EQ(text, "");
        const auto found = texts.find(asked.back());
        if (found != texts.end()) {
            text = found->second;
        }
    }
};

/// Hands its two texts through as path and value.
class PlainParser : public KelSettingsParser {
public:
    std::string name() const override { return "plain"; }

    bool parseSetting(KelDataClass, const std::string& path, const std::string& value,
                      std::pair<std::string, std::string>& result, DataInterface*) override
    {
        result = {path, value};
        return true;
    }

    bool parseSettingsDataSet(KelDataClass, const std::string&, const std::string&, std::map<std::string, std::string>&,
                              DataInterface*, const std::vector<std::string>&) override
    {
        return false;
    }
};

std::string commonSettingText(const std::string& solver)
{
    KelSetting common = KelSetting::get("Common");
    common.getAttributeString("Solver", true) = solver;
    return common.toSettingString();
}

class ProviderSettings : public ::testing::Test {
protected:
    FileOfSettings reader;
    PlainParser parser;

    void SetUp() override { reader.registerSettingsParser(&parser); }

    void store(const std::string& path, const std::string& value)
    {
        ASSERT_TRUE(reader.addSetting(KEL_CASE, path, value, "plain"));
    }

    std::size_t questions() const { return reader.asked.size(); }
};

// ---- getSetting

TEST_F(ProviderSettings, SettingIsTheTreeOfItsText)
{
    reader.texts["1/models/Energy"] = commonSettingText("flow");
    const KelSetting setting = reader.getSetting("Energy", KEL_DATA, "models");
    ASSERT_TRUE(setting.isValid());
    EXPECT_TRUE(setting.isTouched());
    EXPECT_EQ(setting.attribute("Solver").toString(), "flow");
    EXPECT_EQ(reader.asked, std::vector<std::string>{"1/models/Energy"});
}

TEST_F(ProviderSettings, WithoutAGroupTheDefaultOneIsAsked)
{
    const KelProvider& frame = reader;
    EXPECT_FALSE(frame.getSetting("Energy", KEL_DATA).isValid());
    std::string text;
    frame.getSettingString(KEL_CASE, "Solver", text);
    EXPECT_EQ(reader.asked, (std::vector<std::string>{"1/settings/Energy", "0/settings/Solver"}));
}

TEST_F(ProviderSettings, SettingWithoutTextOrWithABadOneIsInvalid)
{
    EXPECT_FALSE(reader.getSetting("Energy", KEL_DATA, "models").isValid());
    for (const char* bad : {"no tree", "<", " ", "<a><b></a>", "<unknown name=\"x\"/>"}) {
        reader.texts["1/models/Energy"] = bad;
        EXPECT_FALSE(reader.getSetting("Energy", KEL_DATA, "models").isValid()) << bad;
    }
}

// ---- getSettings

TEST_F(ProviderSettings, CommonSettingOfEachDataClassIsAskedForOnce)
{
    reader.texts["0/settings/Common"] = commonSettingText("of the case");
    reader.texts["1/settings/Common"] = commonSettingText("of the data");
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(reader.getSettings(KEL_CASE, "Solver", -1).asString(), "of the case");
        EXPECT_EQ(reader.getSettings(KEL_DATA, "Solver", -1).asString(), "of the data");
        EXPECT_FALSE(reader.getSettings(KEL_CASE, "missing", -1).isValid());
    }
    EXPECT_EQ(reader.asked, (std::vector<std::string>{"0/settings/Common", "1/settings/Common"}));
}

TEST_F(ProviderSettings, MissingCommonSettingIsAskedForOnceToo)
{
    for (int round = 0; round < 3; ++round) {
        EXPECT_FALSE(reader.getSettings(KEL_CASE, "Solver", -1).isValid());
    }
    EXPECT_EQ(questions(), 1U);
    reader.texts["0/settings/Common"] = commonSettingText("too late");
    EXPECT_FALSE(reader.getSettings(KEL_CASE, "Solver", -1).isValid());
    EXPECT_EQ(questions(), 1U);
}

TEST_F(ProviderSettings, CommonSettingIsNeverRefreshed)
{
    reader.texts["0/settings/Common"] = commonSettingText("first");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "Solver", -1).asString(), "first");
    reader.texts["0/settings/Common"] = commonSettingText("second");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "Solver", -1).asString(), "first");
}

TEST_F(ProviderSettings, VariantStaysValidAcrossLaterCalls)
{
    reader.texts["0/settings/Common"] = commonSettingText("flow");
    const KelVariant solver = reader.getSettings(KEL_CASE, "Solver", -1);
    reader.getSettings(KEL_DATA, "Solver", -1);
    reader.getSettings(KEL_CASE, "missing", 3);
    EXPECT_EQ(KelVariant(solver).asString(), "flow");
}

TEST_F(ProviderSettings, WhatTheFileLacksComesFromTheSettingsOfTheBase)
{
    reader.texts["0/settings/Common"] = commonSettingText("flow");
    store("Solver", "of the base");
    store("models/energy", "on");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "Solver", -1).asString(), "flow"); // the file comes first
    EXPECT_EQ(reader.getSettings(KEL_DATA, "Solver", -1).asString(), "of the base");
    EXPECT_EQ(reader.getSettings(KEL_CASE, "models/energy", -1).asString(), "on");
    EXPECT_TRUE(reader.getSettings(KEL_CASE, "models", -1).isValid());
    EXPECT_TRUE(reader.getSettings(KEL_CASE, "models", 0).isValid());
    EXPECT_FALSE(reader.getSettings(KEL_CASE, "models", 1).isValid());
    EXPECT_FALSE(reader.getSettings(KEL_CASE, "", -1).isValid());
}

TEST_F(ProviderSettings, OtherDataClassesSkipTheFile)
{
    store("Solver", "of the base");
    for (const int dataClass : {-1, 2, 7, -2147483647}) {
        EXPECT_EQ(reader.getSettings(static_cast<KelDataClass>(dataClass), "Solver", -1).asString(), "of the base");
    }
    EXPECT_EQ(questions(), 0U);
}

/// A format that overrides getSetting itself and answers with trees that it does not have as texts.
class TreesOfSettings : public OpenProvider {
public:
    mutable int asked = 0;

    KelSetting getSetting(const std::string& key, KelDataClass, const std::string& group) const override
    {
        ++asked;
        EXPECT_EQ(key, "Common");
        EXPECT_EQ(group, "settings");
        KelSetting tree = KelSetting::get(key);
        tree.getAttributeInt("n", true) = 3;
        tree.setTouched(false);
        return tree;
    }
};

TEST(ProviderSettingsOfAFormat, GetSettingIsReachedThroughTheVirtualTableOnce)
{
    const TreesOfSettings reader;
    EXPECT_EQ(reader.getSettings(KEL_CASE, "n", -1).asInt(), 3);
    EXPECT_EQ(reader.getSettings(KEL_CASE, "n", -1).asInt(), 3); // an untouched answer counts as touched
    EXPECT_EQ(reader.asked, 1);
}

// ---- dump and print

class ProviderDump : public ProviderSettings {
protected:
    const TemporaryFolder folder;
};

TEST_F(ProviderDump, DumpWritesTheSettingsOfTheBaseAsXml)
{
    store("models/energy", "on");
    const std::filesystem::path path = folder / "settings.xml";
    std::ofstream(path) << "what was there before, and is longer than what comes";
    reader.dump(path.string());
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    const KelSetting read = KelSetting::fromSettingString(text.str());
    ASSERT_TRUE(read.isValid());
    EXPECT_EQ(read.toSettingString(), text.str());
    EXPECT_EQ(read.getGroup("models", false).attribute("energy").toString(), "on");
}

TEST_F(ProviderDump, DumpToAPathThatCannotBeWrittenIsSilent)
{
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    reader.dump((folder / "missing/settings.xml"));
    reader.dump("");
    EXPECT_EQ(::testing::internal::GetCapturedStdout() + ::testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(ProviderDump, PrintShowsTheGroupsBelowOnlyWhenAsked)
{
    store("steady", "true");
    store("models/energy", "on");
    ::testing::internal::CaptureStdout();
    reader.print(false);
    const std::string flat = ::testing::internal::GetCapturedStdout();
    ::testing::internal::CaptureStdout();
    reader.print(true);
    const std::string deep = ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(flat.front(), '/');
    EXPECT_NE(flat.find("\n  steady = true\n"), std::string::npos) << flat;
    EXPECT_EQ(flat.find("models"), std::string::npos) << flat;
    std::string group = "  /models";
    group.resize(30, ' ');
    EXPECT_EQ(deep, flat + group + "\n    energy = on\n");
}

TEST_F(ProviderDump, FileExistsWhenItCanBeOpened)
{
    const std::string path = folder / "case.kel";
    EXPECT_FALSE(reader.fileExists(path));
    EXPECT_FALSE(reader.fileExists(""));
    std::ofstream(path).flush();
    EXPECT_TRUE(reader.fileExists(path)); // an empty one too
}

// ---- the target of variable names

TEST_F(ProviderSettings, VariableTargetReachesTheMappingOnlyWhenItChanges)
{
    reader.setVariableTarget(""); // the target that there is
    EXPECT_EQ(reader.variableMappingSource(), "");
    reader.setVariableTarget("POST");
    EXPECT_EQ(reader.variableMappingSource(), "POST");
    reader.setVariableMappingSource("moved");
    reader.setVariableTarget("POST");
    EXPECT_EQ(reader.variableMappingSource(), "moved");
    reader.setVariableTarget(""); // back to none: the solver's own names
    EXPECT_EQ(reader.variableMappingSource(), reader.getSolverType());
    reader.setVariableTarget("POST");
    EXPECT_EQ(reader.variableMappingSource(), "POST");
}

// ---- mesh queries

/// A file with several meshes: overrides the three lists alone.
class FileOfMeshes : public OpenProvider {
public:
    mutable std::string asked;

    std::vector<int> availableMeshIds(KelDataClass dataClass) const override
    {
        asked += "meshes " + std::to_string(dataClass) + ";";
        return {1, 5};
    }

    using KelProvider::availableTargets;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override
    {
        asked += "targets " + std::to_string(meshId) + " " + std::to_string(dataClass) + ";";
        return {KEL_SOLVER};
    }

    using KelProvider::availablePartitionIds;
    Ids availablePartitionIds(int meshId, KelDataClass dataClass) const override
    {
        asked += "partitions " + std::to_string(meshId) + " " + std::to_string(dataClass) + ";";
        return {0, 3, 8};
    }
};

TEST(ProviderMeshQueries, BareReaderHasNone)
{
    const OpenProvider reader;
    EXPECT_FALSE(reader.hasMeshId(5));
    EXPECT_FALSE(reader.hasTarget(KEL_SOLVER));
    EXPECT_TRUE(reader.availableTargets().empty());
    EXPECT_FALSE(reader.hasPartition(0));
    EXPECT_EQ(reader.getPartitionCount(), 0U);
    EXPECT_TRUE(reader.availablePartitionIds().empty());
}

TEST(ProviderMeshQueries, AllAnswersComeFromTheThreeLists)
{
    const FileOfMeshes reader;
    EXPECT_TRUE(reader.hasMeshId(5));
    EXPECT_FALSE(reader.hasMeshId(2));
    EXPECT_EQ(reader.asked, "meshes 0;meshes 0;");
    reader.asked.clear();
    EXPECT_TRUE(reader.hasTarget(5, KEL_SOLVER));
    EXPECT_FALSE(reader.hasTarget(KEL_POST));
    EXPECT_EQ(reader.availableTargets(), std::vector<KelTargetCategory>{KEL_SOLVER});
    EXPECT_EQ(reader.asked, "targets 5 0;targets -1 0;targets -1 0;");
    reader.asked.clear();
    EXPECT_TRUE(reader.hasPartition(5, 8));
    EXPECT_FALSE(reader.hasPartition(1));
    EXPECT_EQ(reader.getPartitionCount(5), 3U);
    EXPECT_EQ(reader.getPartitionCount(), 3U);
    EXPECT_EQ(reader.availablePartitionIds(), (Ids{0, 3, 8}));
    EXPECT_EQ(reader.asked, "partitions 5 0;partitions -1 0;partitions 5 0;partitions -1 0;partitions -1 0;");
}

/// A format that answers for a mesh without looking into the lists.
class OwnAnswers : public OpenProvider {
public:
    using KelProvider::hasTarget;
    bool hasTarget(int meshId, KelTargetCategory) const override { return meshId == -1; }
    using KelProvider::hasPartition;
    bool hasPartition(int meshId, int) const override { return meshId == -1; }
    using KelProvider::getPartitionCount;
    unsigned64 getPartitionCount(int meshId) const override { return meshId == -1 ? 7 : 0; }
};

TEST(ProviderMeshQueries, FormsForTheCurrentMeshGoThroughTheVirtualTable)
{
    const OwnAnswers reader;
    EXPECT_TRUE(reader.hasTarget(KEL_POST));
    EXPECT_TRUE(reader.hasPartition(4));
    EXPECT_EQ(reader.getPartitionCount(), 7U);
}

} // namespace
} // namespace meridyn
