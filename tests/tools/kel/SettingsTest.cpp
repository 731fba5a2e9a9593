// The command "settings" on a file with trees, texts and groups of both.
#include "KelHdf5Consumer.h"
#include "ToolRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using namespace meridyn::tool;
using ::testing::HasSubstr;
using ::testing::StartsWith;

namespace {

const char* const tree = R"(<?xml version="1.0" encoding="UTF-8"?>
<object arbor="1" name="Common">
  <property name="steady" type="bool" value="true"/>
  <property name="limit" type="double" unit="m" value="0.5"/>
  <property name="steps" type="int" value="7"/>
  <property name="small" type="float" value="0.25"/>
  <property name="words" type="string[]">
    <item value="a"/>
    <item value="b"/>
  </property>
  <property name="title" type="string" value="two&#10;lines"/>
  <object name="mesh/inner">
    <property name="size" type="double" value="2"/>
  </object>
</object>
)";

} // namespace

class SettingsOfAFile : public ::testing::Test {
protected:
    void SetUp() override
    {
        KelHdf5Consumer writer;
        writer.setSolverType("SOLVER");
        ASSERT_TRUE(writer.startWriting(_file, KEL_CASE));
        writer.writeSettingStrings({{"Common", tree}, {"plain", "a text"}}, KEL_CASE, "settings");
        writer.writeSettingStrings({{"k", "v"}}, KEL_CASE, "other/group");
        ASSERT_TRUE(writer.endWriting(KEL_CASE));
    }

    Ran settings(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"settings", _file});
        return runKel(arguments);
    }

    TemporaryFolder _folder;
    std::string _file = _folder / "s.case.kel";
};

TEST_F(SettingsOfAFile, AreShownAsOutline)
{
    const Ran ran = settings({});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, StartsWith("case settings\n"
                                    "  Common\n"
                                    "    steady = true\n"
                                    "    limit = 0.5 m\n"
                                    "    steps = 7\n"
                                    "    small = 0.25\n"
                                    "    words = a,b\n"
                                    "    title = two lines\n"
                                    "    mesh/inner\n"
                                    "      size = 2\n"
                                    "  plain = a text\n"
                                    "  Solver = SOLVER\n"));
    EXPECT_THAT(ran.out, HasSubstr("case other/group\n  k = v\n"));
    EXPECT_EQ(settings({"--data"}).out, "");
}

TEST_F(SettingsOfAFile, ArePickedByTheirPath)
{
    const struct {
        const char* path;
        const char* shown;
    } rows[] = {
        {"Common/limit", "0.5 m\n"},         {"settings/Common/limit", "0.5 m\n"},
        {"Common/title", "two lines\n"},     {"Common/mesh/inner/size", "2\n"},
        {"Common/mesh/inner", "size = 2\n"}, {"plain", "a text\n"},
        {"other/group", "k = v\n"},          {"other/group/k", "v\n"},
    };
    for (const auto& row : rows) {
        const Ran ran = settings({row.path});
        EXPECT_EQ(ran.code, 0) << row.path;
        EXPECT_EQ(ran.out, row.shown) << row.path;
    }
    for (const char* path : {"Common/mesh/none", "Common/limit/more", "plain/more", "k", "other"}) {
        const Ran ran = settings({path});
        EXPECT_EQ(ran.code, 1) << path;
        EXPECT_EQ(ran.out, "") << path;
        EXPECT_EQ(ran.err, "kel: " + _file + ": has no setting " + path + "\n");
    }
}

TEST_F(SettingsOfAFile, AreGivenAsTheyAreStored)
{
    EXPECT_EQ(settings({"--xml", "settings/plain"}).out, "a text\n");
    EXPECT_EQ(settings({"--xml", "other/group"}).out, "v\n");
    EXPECT_EQ(settings({"--xml", "Common"}).out, std::string(tree) + "\n");
    EXPECT_THAT(settings({"--xml", "Common/mesh/inner"}).out,
                HasSubstr("<object arbor=\"1\" name=\"mesh/inner\">\n"
                          "  <property name=\"size\" type=\"double\" value=\"2\"/>\n</object>\n"));
    EXPECT_THAT(settings({"--xml"}).out, StartsWith(std::string(tree) + "\na text\nSOLVER\n"));
}

TEST_F(SettingsOfAFile, KeepTheirTypesInJson)
{
    std::string json = settings({"--json"}).out;
    ASSERT_TRUE(isJson(json)) << json;
    json.erase(std::remove_if(json.begin(), json.end(), [](char c) { return c == ' ' || c == '\n'; }), json.end());
    for (const char* piece :
         {R"({"class":"case","group":"settings","key":"Common","values":[)",
          R"({"name":"steady","value":true,"unit":""})", R"({"name":"limit","value":0.5,"unit":"m"})",
          R"({"name":"steps","value":7,"unit":""})", R"({"name":"small","value":0.25,"unit":""})",
          R"({"name":"words","value":["a","b"],"unit":""})", R"({"name":"title","value":"two\nlines","unit":""})",
          R"("groups":[{"name":"mesh/inner","values":[{"name":"size","value":2.0,"unit":""}],"groups":[]}])",
          R"({"class":"case","group":"other/group","key":"k","text":"v"})"})
        EXPECT_THAT(json, HasSubstr(piece));
}
