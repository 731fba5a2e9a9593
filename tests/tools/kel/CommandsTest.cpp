// Every command as a tool: arguments in, text and exit code out.
#include "KelHdf5Consumer.h"
#include "KelLocationModel.h"
#include "Tool.h"
#include "ToolRunner.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace meridyn;
using namespace meridyn::tool;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

using Arguments = std::vector<std::string>;

static void declareZone(KelConsumer& writer, KelZoneCategory category, int zone, const char* name)
{
    writer.setZoneIds(category, {zone});
    writer.setZoneStringInfo(zone, KEL_ZONE_STRING_0, name);
}

static std::size_t linesOf(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

static std::string contentOf(const char* path)
{
    std::ifstream in(path);
    return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
}

// ---- help ---------------------------------------------------------------------------------------------------------

class Help : public ::testing::TestWithParam<std::string> {};

TEST_P(Help, ShowsOptionsAndExamples)
{
    const Ran ran = runKel({GetParam(), "--help"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, HasSubstr(std::string("Usage: kel ") + GetParam()));
    EXPECT_THAT(ran.out, HasSubstr(std::string("Examples:\n  kel ") + GetParam()));
}

TEST_P(Help, IsPointedToWhenArgumentsAreWrong)
{
    const Ran ran = runKel({GetParam(), "--no-such-option"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(linesOf(ran.err), 1U);
    EXPECT_THAT(ran.err, StartsWith("kel: "));
    EXPECT_THAT(ran.err, HasSubstr(std::string("see 'kel ") + GetParam() + " --help'"));
}

TEST_P(Help, AgreesWithTheManPageAndTheDocument)
{
    const std::string command = GetParam();
    std::string man = contentOf(KEL_SOURCE_DIR "/tools/kel/kel.1");
    man.erase(std::remove(man.begin(), man.end(), '\\'), man.end());
    EXPECT_THAT(man, HasSubstr("\n.BR " + command + " \""));
    EXPECT_THAT(contentOf(KEL_SOURCE_DIR "/docs/kel.md"), HasSubstr("`kel " + command));
    const std::string help = runKel({command, "--help"}).out;
    for (std::size_t at = help.find("\n  --"); at != std::string::npos; at = help.find("\n  --", at + 1)) {
        const std::string option = help.substr(at + 3, help.find_first_of(" \n", at + 3) - at - 3);
        EXPECT_THAT(man, HasSubstr(option)) << command;
    }
}

INSTANTIATE_TEST_SUITE_P(Commands, Help, ::testing::ValuesIn(commandNames()),
                         [](const auto& command) { return command.param; });

TEST(Tool, KnowsItsCommands)
{
    EXPECT_EQ(commandNames(), (Arguments{"info", "convert", "check", "diff", "trace", "settings", "map", "locate",
                                         "formats", "conform"}));
}

TEST(Tool, ListsItsCommandsAndExitCodes)
{
    const Ran ran = runKel({"--help"});
    EXPECT_EQ(ran.code, 0);
    for (const char* command :
         {"info", "convert", "check", "diff", "trace", "settings", "map", "locate", "formats", "conform"})
        EXPECT_THAT(ran.out, HasSubstr(std::string("\n  ") + command + " "));
    EXPECT_THAT(
        ran.out,
        HasSubstr("Exit code: 0 good, 1 the answer is no, 2 could not, 3 good as far as it could be looked at."));
}

TEST(Tool, TellsItsVersion)
{
    for (const char* option : {"--version", "-V"}) {
        const Ran ran = runKel({option});
        EXPECT_EQ(ran.code, 0);
        EXPECT_EQ(ran.out, "kel 25.1.0\n");
    }
}

TEST(Tool, HelpIsACommandAsWell)
{
    EXPECT_EQ(runKel({"help"}).out, runKel({"--help"}).out);
    const Ran ran = runKel({"help", "info"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, runKel({"info", "--help"}).out);
    EXPECT_EQ(runKel({"help", "info", "more"}).out, ran.out);
}

TEST(Tool, TellsShortlyOfNumbersThatAreLong)
{
    const Ran ran = runKel({"diff", "--atol", std::string(310, '9'), "a", "b"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err, "kel: --atol: expected a number from 0 up, found '" + std::string(40, '9') +
                           "...'; see 'kel diff --help'\n");
}

// ---- what cannot be done ------------------------------------------------------------------------------------------

namespace {

struct Impossible {
    const char* name;
    Arguments arguments; ///< "@" stands for the test's folder
    const char* complaint;
};

void PrintTo(const Impossible& row, std::ostream* out)
{
    *out << row.name;
}

// clang-format off
const Impossible impossibles[] = {
    {"NoCommand",         {},                                              "kel: A subcommand is required; see 'kel --help'\n"},
    {"UnknownCommand",    {"frobnicate"},                                  "kel: no command is called 'frobnicate'; see 'kel --help'\n"},
    {"NoFile",            {"check"},                                       "kel: FILE is required; see 'kel check --help'\n"},
    {"MissingFile",       {"info", "@/none.kel"},                          "kel: @/none.kel: no such file\n"},
    {"UnknownFile",       {"info", "@/text"},                              "kel: @/text: no format recognises it; 'kel formats' lists those that can be read\n"},
    {"Folder",            {"check", "@"},                                  "kel: @: no format recognises it; 'kel formats' lists those that can be read\n"},
    {"SlipInABox",        {"check", "box:3x"},                             "kel: box:3x: expected three numbers from 1, like 'box:4x4x4', of at most 2^44 blocks\n"},
    {"DamagedFile",       {"info", "@/cut.thin"},                          "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedToCheck",    {"check", "@/cut.thin"},                         "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedToDiff",     {"diff", "@/cut.thin", "@/cut.thin"},            "kel: @/cut.thin, @/cut.thin: cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedToTrace",    {"trace", "@/cut.thin"},                         "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedToConvert",  {"convert", "@/cut.thin", "@/new.thin"},         "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedSettings",   {"settings", "@/cut.thin"},                      "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"DamagedLocations",  {"locate", "@/cut.thin", "wall"},                "kel: @/cut.thin: 'ok' expected, found 'o'\n"},
    {"NoMesh",            {"check", "@/good.thin"},                        "kel: @/good.thin: the mesh has 0 dimensions, 2 or 3 expected\n"},
    {"UnknownFormat",     {"info", "--from", "nil", "@/good.thin"},        "kel: no format is called 'nil'; see 'kel formats'\n"},
    {"UnknownTarget",     {"convert", "box:1x1x1", "--to", "nil", "@/o"},  "kel: no format is called 'nil'; see 'kel formats'\n"},
    {"NoWriter",          {"convert", "box:1x1x1", "--to", "generated", "@/o"}, "kel: the format 'generated' cannot be written\n"},
    {"NoSuffix",          {"convert", "box:1x1x1", "@/o"},                 "kel: @/o: no format writes this suffix; name one with --to (see 'kel formats')\n"},
    {"TargetExists",      {"convert", "box:1x1x1", "--case-only", "@/good.thin"}, "kel: @/good.thin: exists already; --force replaces it\n"},
    {"TargetIsSource",    {"convert", "--force", "@/good.thin", "@/good.thin"},   "kel: @/good.thin: is read and cannot be written at the same time\n"},
    {"NoDataToWrite",     {"convert", "--data-only", "@/good.thin", "@/o.thin"},  "kel: @/good.thin: has no data\n"},
    {"NoPlaceForData",    {"convert", "box:1x1x1", "@/o.thin"},            "kel: @/o.thin: the format 'thin' has no file for the data\n"},
    {"NoFolderForTarget", {"convert", "box:1x1x1", "--case-only", "@/none/o.thin"}, "kel: @/none/o.thin: cannot be written: @/none: No such file or directory\n"},
    {"NoTimeLevel",       {"convert", "box:1x1x1 levels:2", "--time", "3", "@/o.case.kel"}, "kel: box:1x1x1 levels:2: has no time level '3'; those that it has: 1 (0.1 s), 2 (0.2 s)\n"},
    {"NoLevelInRange",    {"convert", "box:1x1x1 levels:2", "--time", "3-9", "@/o.case.kel"}, "kel: box:1x1x1 levels:2: has no time level '3-9'; those that it has: 1 (0.1 s), 2 (0.2 s)\n"},
    {"NoSuchTime",        {"info", "box:1x1x1 levels:2", "--time", "0.3s"}, "kel: box:1x1x1 levels:2: has no time level '0.3s'; those that it has: 1 (0.1 s), 2 (0.2 s)\n"},
    {"SeveralTimes",      {"info", "box:1x1x1 levels:2", "--time", "1-2"}, "kel: --time: '1-2' names several time levels, one can be shown\n"},
    {"LevelsThatAreNone", {"convert", "box:1x1x1", "--time", "soon", "@/o.case.kel"}, "kel: 'soon' is no list of time levels; an example is 1,5-8,0.5s,last\n"},
    {"TimeWithoutData",   {"convert", "box:1x1x1", "--case-only", "--time", "1", "@/o.case.kel"}, "kel: box:1x1x1: --time: there are no data to be copied\n"},
    {"IntoMemory",        {"convert", "box:1x1x1", "memory:z"},            "kel: memory:z: a model in memory ends with the process; name a file\n"},
    {"IntoMemoryByName",  {"convert", "box:1x1x1", "--to", "memory", "memory:z"}, "kel: memory:z: a model in memory ends with the process; name a file\n"},
    {"IntoADevice",       {"convert", "--force", "--case-only", "--to", "thin", "box:1x1x1", "/dev/full"}, "kel: /dev/full: is a device, only a regular file can be replaced\n"},
    {"IntoAFolder",       {"convert", "--force", "--case-only", "--to", "thin", "box:1x1x1", "@"}, "kel: @: is a folder, only a regular file can be replaced\n"},
    {"HugeTolerance",     {"diff", "--rtol", "1e999", "a", "b"},           "kel: --rtol: expected a number from 0 up, found '1e999'; see 'kel diff --help'\n"},
    {"MeshZero",          {"info", "--mesh", "0", "box:1x1x1"},            "kel: --mesh: '0' is no mesh: ids begin with 1; see 'kel info --help'\n"},
    {"NoSuchMesh",        {"info", "--mesh", "2", "box:1x1x1"},            "kel: box:1x1x1: has no such mesh; it has mesh 1, target default\n"},
    {"Mistyped",          {"inof", "x"},                                   "kel: no command is called 'inof'; did you mean 'info'?; see 'kel --help'\n"},
    {"CutShort",          {"conv", "x"},                                   "kel: no command is called 'conv'; did you mean 'convert'?; see 'kel --help'\n"},
    {"HelpOfNothing",     {"help", "diffs"},                               "kel: no command is called 'diffs'; did you mean 'diff'?; see 'kel --help'\n"},
    {"NoSuchPlugin",      {"check", "--plugin", "@/none.so", "box:1x1x1"}, "kel: @/none.so: not loaded: @/none.so: cannot open shared object file: No such file or directory\n"},
    {"BothHalvesOnly",    {"convert", "--case-only", "--data-only", "a", "b"}, "kel: --case-only excludes --data-only; see 'kel convert --help'\n"},
    {"NoMappingFolder",   {"map"},                                         "kel: no folder of mapping files: set KEL_VARIABLE_CONFIG_DIR\n"},
    {"NameWithoutTarget", {"map", "T", "--from", "A"},                     "kel: NAME requires --to; see 'kel map --help'\n"},
};
// clang-format on

std::string inFolder(std::string text, const TemporaryFolder& folder)
{
    for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
        text.replace(at, 1, folder.path().string());
    return text;
}

} // namespace

class ImpossibleRuns : public ::testing::TestWithParam<Impossible> {};

TEST_P(ImpossibleRuns, ExitWith2AndOneLineOnStandardError)
{
    const TemporaryFolder folder;
    folder.file("text", "nothing that a format knows\n");
    folder.file("cut.thin", "thin o");
    folder.file("good.thin", "thin ok 0\n");
    Arguments arguments;
    for (const std::string& argument : GetParam().arguments)
        arguments.push_back(inFolder(argument, folder));
    const Ran ran = runKel(arguments);
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, inFolder(GetParam().complaint, folder));
    EXPECT_EQ(folder.names().size(), 3U) << "nothing is left behind";
}

INSTANTIATE_TEST_SUITE_P(Commands, ImpossibleRuns, ::testing::ValuesIn(impossibles),
                         [](const auto& row) { return row.param.name; });

TEST(Tool, SaysWhenItsAnswerCouldNotBeWritten)
{
    const TemporaryFolder folder;
    const Ran ran = runKel({"formats"}, {}, nullptr, "/dev/full");
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err, "kel: standard output: No space left on device\n");
}

TEST(Tool, SurvivesAPluginThatThrows)
{
    const TemporaryFolder folder;
    const std::string file = folder.file("good.thin", "thin ok 0\n");
    const Ran ran = runKel({"info", file}, {{"THIN_THROWS", "1"}});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(ran.err, "kel: no licence\n");
}

TEST(Tool, ComplainsOnceOfAnOutputThatIsFull)
{
    for (const Arguments& arguments : {Arguments{"trace", "box:1x1x1"}, Arguments{"info", "box:1x1x1"}}) {
        const Ran ran = runKel(arguments, {}, nullptr, "/dev/full");
        EXPECT_EQ(ran.code, 2) << arguments[0];
        EXPECT_EQ(linesOf(ran.err), 1U) << ran.err;
        EXPECT_THAT(ran.err, StartsWith("kel: standard output: "));
    }
}

TEST(Conform, LeavesTheCurrentFolderAlone)
{
    const Ran ran = runKel({"conform", "memory"}, {{"TMPDIR", "/none"}});
    EXPECT_EQ(ran.code, 2);
    EXPECT_THAT(ran.err, StartsWith("kel: the folder for temporary files: "));
    EXPECT_EQ(runKel({"conform", "memory", "--folder", "/none"}).err, "kel: /none: No such file or directory\n");
}

// ---- JSON ---------------------------------------------------------------------------------------------------------

namespace {

struct JsonRow {
    const char* name;
    Arguments arguments;
    int code;
    const char* has;
};

void PrintTo(const JsonRow& row, std::ostream* out)
{
    *out << row.name;
}

// clang-format off
const JsonRow jsonRows[] = {
    {"Info",     {"info", "--json", "--stats", "box:8x8x8 fields:2 levels:3"},         0, "\"nodes\": 729,"},
    {"Check",    {"check", "--json", "box:3x3x3 cells:tet"},                           0, "\"tetrahedra\": 162"},
    {"Equal",    {"diff", "--json", "box:2x2x2", "box:2x2x2"},                         0, "\"equal\": true"},
    {"Differs",  {"diff", "--json", "box:2x2x2", "box:2x2x3"},                         1, "\"equal\": false"},
    {"List",     {"conform", "--json", "--list", "memory"},                            0, "\"format\": \"memory\""},
    {"Formats",  {"formats", "--json"},                                                0, "\"name\": \"generated\""},
    {"Locate",   {"locate", "--json", "box:2x2x2", "z-min, box"},                      0, "\"entry\": \"z-min\""},
    {"Nowhere",  {"locate", "--json", "box:2x2x2", "attic"},                           1, "\"cellZones\": []"},
    {"Settings", {"settings", "--json", "box:2x2x2"},                                  0, "\"settings\": []"},
};
// clang-format on

} // namespace

class JsonAnswers : public ::testing::TestWithParam<JsonRow> {};

TEST_P(JsonAnswers, Parse)
{
    const Ran ran = runKel(GetParam().arguments);
    EXPECT_EQ(ran.code, GetParam().code);
    EXPECT_EQ(ran.err, "");
    EXPECT_TRUE(isJson(ran.out)) << ran.out;
    EXPECT_THAT(ran.out, HasSubstr(GetParam().has));
}

INSTANTIATE_TEST_SUITE_P(Commands, JsonAnswers, ::testing::ValuesIn(jsonRows),
                         [](const auto& row) { return row.param.name; });

// ---- info ---------------------------------------------------------------------------------------------------------

TEST(Info, ShowsSizesZonesSolutionAndLocations)
{
    const Ran ran = runKel({"info", "box:10x10x10 fields:2 levels:3"});
    EXPECT_EQ(ran.code, 0);
    for (const char* line :
         {"  format       generated", "  mesh         1, 3 dimensions, in m\n", "  nodes        1,331\n",
          "  cells        1,000\n", "   2  faces  interior  interior  2,700      1  2,700\n",
          "  phase        1 'phase-1'\n", "  time levels  1 (0.1 s), 2 (0.2 s), 3 (0.3 s)\n",
          "  values       of time level 3 (0.3 s)\n", "  phase-1  field-1   cells       1      1\n",
          "  part box: 1 body, 6 faces, 0 composites\n"})
        EXPECT_THAT(ran.out, HasSubstr(line));
    EXPECT_THAT(ran.out, Not(HasSubstr("smallest")));
}

TEST(Info, ShowsTheTimeLevelThatIsAskedFor)
{
    const auto smallest = [](const Arguments& more) {
        Arguments arguments = {"info", "--json", "--stats", "box:1x1x1 fields:1 levels:3"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const nlohmann::json json = nlohmann::json::parse(runKel(arguments).out);
        return std::pair(json["timeLevel"].get<int>(), json["variables"][0]["smallest"].get<double>());
    };
    const auto [last, atLast] = smallest({});
    const auto [first, atFirst] = smallest({"--time", "1"});
    EXPECT_EQ(last, 3);
    EXPECT_EQ(first, 1);
    EXPECT_NEAR(atLast - atFirst, 0.02, 1e-12) << "0.01 for each level";
    EXPECT_EQ(smallest({"--time", "0.2s"}).first, 2);
}

TEST(Info, TellsTheTimesInJson)
{
    const nlohmann::json json = nlohmann::json::parse(runKel({"info", "--json", "box:1x1x1 fields:1 levels:2"}).out);
    EXPECT_EQ(json["times"], (nlohmann::json{0.1, 0.2}));
    EXPECT_EQ(json["variables"][0]["timeLevel"], 2);
    const nlohmann::json steady = nlohmann::json::parse(runKel({"info", "--json", "box:1x1x1 fields:1"}).out);
    EXPECT_EQ(steady["times"], (nlohmann::json{nullptr}));
}

TEST(Info, ShowsAttributesOnDemand)
{
    const Ran ran = runKel({"info", "--attributes", "box:1x1x1 fields:1"});
    EXPECT_THAT(ran.out, HasSubstr("\nAttributes\n  'field-1' of phase 'phase-1'\n    Long Name: Field 1\n"));
    EXPECT_THAT(runKel({"info", "box:1x1x1 fields:1"}).out, Not(HasSubstr("Attributes")));
}

TEST(Info, ShowsRangesOnDemand)
{
    const Ran ran = runKel({"info", "--stats", "box:4x4x4 fields:1"});
    EXPECT_THAT(ran.out, HasSubstr("smallest"));
    EXPECT_THAT(ran.out, HasSubstr("largest"));
}

TEST(Info, CutsLongListsOfTimeLevels)
{
    EXPECT_THAT(runKel({"info", "box:1x1x1 fields:1 levels:12"}).out,
                HasSubstr(", 8 (0.8 s), 9 (0.9 s), 10 (1 s) ... 12 (1.2 s)\n"));
}

// ---- check --------------------------------------------------------------------------------------------------------

TEST(Check, ReportsFiguresAndEachRule)
{
    const Ran ran = runKel({"check", "box:10x10x20 size:1x2x4"});
    EXPECT_EQ(ran.code, 0);
    for (const char* line : {"  2,541 nodes, 6,500 faces, 2,000 cells\n", "    2,000 hexahedra\n",
                             "  bounding box  (0, 0, 0) to (1, 2, 4) m\n", "  volume        8 m^3\n",
                             "  good    cells are closed\n", "\nThe mesh is good.\n"})
        EXPECT_THAT(ran.out, HasSubstr(line));
}

// ---- convert ------------------------------------------------------------------------------------------------------

TEST(Convert, ReportsWhatIsLost)
{
    const TemporaryFolder folder;
    const Arguments arguments = {"convert", "--case-only", "box:2x2x2", folder / "o.thin"};
    const Ran ran = runKel(arguments);
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, StartsWith("written " + folder / "o.thin\n"));
    EXPECT_THAT(ran.out, HasSubstr("losses:\n"));
    EXPECT_THAT(ran.out, HasSubstr("  face cells: zone 2 'interior': not carried by the format\n"));
}

TEST(Convert, IsNoWhenStrictAndLossy)
{
    const TemporaryFolder folder;
    EXPECT_EQ(runKel({"convert", "--strict", "--case-only", "box:2x2x2", folder / "o.thin"}).code, 1);
    EXPECT_EQ(folder.names(), Arguments{"o.thin"}) << "lossy, but written";
    const Ran ran = runKel({"convert", "--strict", "--json", "box:2x2x2 fields:1", folder / "o.case.kel"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_TRUE(isJson(ran.out));
    EXPECT_THAT(ran.out, HasSubstr("\"losses\": []"));
}

TEST(Convert, ReplacesOnlyWhenForced)
{
    const TemporaryFolder folder;
    const std::string target = folder.file("o.thin", "mine");
    EXPECT_EQ(runKel({"convert", "--case-only", "box:2x2x2", target}).code, 2);
    EXPECT_EQ(std::filesystem::file_size(target), 4U);
    EXPECT_EQ(runKel({"convert", "--force", "--case-only", "box:2x2x2", target}).code, 0);
    EXPECT_GT(std::filesystem::file_size(target), 4U);
}

// ---- diff ---------------------------------------------------------------------------------------------------------

TEST(Diff, SaysEqualOrShowsWhatDiffers)
{
    const Ran equal = runKel({"diff", "box:3x3x3 fields:1", "box:3x3x3 fields:1"});
    EXPECT_EQ(equal.code, 0);
    EXPECT_EQ(equal.out, "The two models are equal.\n");
    const Ran differs = runKel({"diff", "box:3x3x3", "box:3x3x3 size:1x1x2"});
    EXPECT_EQ(differs.code, 1);
    EXPECT_THAT(differs.out, StartsWith("  - box:3x3x3\n  + box:3x3x3 size:1x1x2\n\n"));
    EXPECT_THAT(differs.out, HasSubstr(" against "));
}

TEST(Diff, LooksThroughTolerances)
{
    const Arguments models = {"box:3x3x3", "box:3x3x3 size:1x1x1.001"};
    EXPECT_EQ(runKel({"diff", models[0], models[1]}).code, 1);
    EXPECT_EQ(runKel({"diff", "--rtol", "0.01", models[0], models[1]}).code, 0);
    EXPECT_EQ(runKel({"diff", "--atol", "0.01", models[0], models[1]}).code, 0);
    EXPECT_EQ(runKel({"diff", "--atol", "1e-6", models[0], models[1]}).code, 1);
    EXPECT_EQ(runKel({"diff", "--data-only", models[0], models[1]}).code, 0);
    EXPECT_EQ(runKel({"diff", "--rtol", "-1", models[0], models[1]}).code, 2);
}

TEST(Diff, AMissingFileOfAModelIsADifference)
{
    const TemporaryFolder folder;
    const std::string thin = folder.file("good.thin", "thin ok 0\n");
    const Ran ran = runKel({"diff", thin, "box:1x1x1"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("files: the data: nothing against box:1x1x1\n"));
}

// ---- trace --------------------------------------------------------------------------------------------------------

TEST(Trace, IsThatOfTheBareWriter)
{
    const Ran ran = runKel({"trace", "box:1x1x1 fields:1"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, StartsWith("Case\n\n"));
    EXPECT_THAT(ran.out, HasSubstr("  3-D coordinates (8)\n\n"));
    EXPECT_THAT(ran.out, HasSubstr("\nData\n\n"));
    EXPECT_THAT(runKel({"trace", "--case-only", "box:1x1x1"}).out, Not(HasSubstr("Data")));
    EXPECT_THAT(runKel({"trace", "--data-only", "box:1x1x1"}).out, Not(HasSubstr("coordinates")));
}

TEST(Trace, ShowsTheTimeLevels)
{
    const std::string out = runKel({"trace", "--data-only", "box:1x1x1 fields:1 levels:2"}).out;
    EXPECT_THAT(out, HasSubstr("  Time-level = 1\n\n  Phase-id = 1\n\n"));
    EXPECT_THAT(out, HasSubstr("  Time-level = 2\n\n  Phase-id = 1\n\n"));
}

// ---- locate -------------------------------------------------------------------------------------------------------

TEST(Locate, GivesZonesAndExplainsThem)
{
    const Ran ran = runKel({"locate", "box:2x2x2", "z-*"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "face zone 7 'z-min', near side\nface zone 8 'z-max', near side\n");
    EXPECT_EQ(runKel({"locate", "--explain", "box:2x2x2", "x-min, attic"}).out,
              "x-min\n  is face box/x-min\nattic\n  names nothing\nface zone 3 'x-min', near side\n");
}

TEST(Locate, TakesNamesOfZonesInAModelWithoutLocations)
{
    const TemporaryFolder folder;
    const std::string file = folder / "plain.case.kel";
    {
        KelHdf5Consumer writer;
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        declareZone(writer, KEL_NODE_ZONE, 1, "points");
        declareZone(writer, KEL_FACE_ZONE, 2, "wall");
        declareZone(writer, KEL_CELL_ZONE, 3, "wall");
        ASSERT_TRUE(writer.startWriting(file, KEL_CASE) && writer.endWriting(KEL_CASE));
    }
    const Ran ran = runKel({"locate", file, "points , wall"});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.out, "node zone 1 'points'\nface zone 2 'wall'\ncell zone 3 'wall'\n");
    const Ran none = runKel({"locate", file, "inlet"});
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.err, "kel: " + file + ": has no locations, and no zone is called 'inlet'\n");
    EXPECT_EQ(nlohmann::json::parse(runKel({"locate", "--json", file, "wall"}).out)["zones"], (nlohmann::json{2, 3}));
}

TEST(Locate, NamesTheKindThatAZoneHas)
{
    const TemporaryFolder folder;
    const std::string file = folder / "odd.case.kel";
    {
        KelHdf5Consumer writer;
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        declareZone(writer, KEL_FACE_ZONE, 2, "wall");
        KelLocationModel locations;
        int part = 0, body = 0;
        locations.createPart(3, "part", part);
        locations.createBody(part, "body", body);
        locations.setBodyZones(body, 0, {2, 9});
        ASSERT_TRUE(writer.startWriting(file, KEL_CASE));
        writer.setLocationModel(&locations);
        ASSERT_TRUE(writer.endWriting(KEL_CASE));
    }
    EXPECT_EQ(runKel({"locate", file, "body"}).out, "face zone 2 'wall'\nzone 9, which the mesh does not have\n");
}

TEST(Locate, IsNoWhereNothingLies)
{
    const Ran ran = runKel({"locate", "box:2x2x2", "attic"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.out, "");
    EXPECT_EQ(ran.err, "kel: box:2x2x2: no zones lie behind 'attic'\n");
}

// ---- settings -----------------------------------------------------------------------------------------------------

TEST(Settings, OfAModelWithoutAnyAreEmpty)
{
    const Ran ran = runKel({"settings", "box:2x2x2"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "");
    const Ran missing = runKel({"settings", "box:2x2x2", "settings/Solver"});
    EXPECT_EQ(missing.code, 1);
    EXPECT_EQ(missing.err, "kel: box:2x2x2: has no setting settings/Solver\n");
}

// ---- formats ------------------------------------------------------------------------------------------------------

TEST(Formats, ShowsPluginsToo)
{
    const Ran ran = runKel({"formats"});
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, HasSubstr("read, written  .thin"));
    EXPECT_THAT(runKel({"formats", "--markdown"}, {{"KEL_FORMAT_PLUGIN_DIR", ""}}).out, StartsWith("| | "));
    EXPECT_EQ(runKel({"formats", "--markdown", "--json"}).code, 2);
}

TEST(Formats, ComplainOfFoldersOfPluginsThatAreNotThere)
{
    const Variables none = {{"KEL_FORMAT_PLUGIN_DIR", "/none"}};
    const Ran ran = runKel({"formats"}, none);
    EXPECT_EQ(ran.code, 0);
    EXPECT_THAT(ran.out, HasSubstr("generated"));
    EXPECT_EQ(ran.err, "kel: /none: No such file or directory\n");
    EXPECT_THAT(runKel({"formats", "--json"}, none).out,
                HasSubstr("\"pluginProblems\": [\n    \"/none: No such file or directory\"\n  ]"));
}

// ---- map ----------------------------------------------------------------------------------------------------------

namespace {

std::string mapping(const std::string& source, const std::string& target, const std::string& contents)
{
    return "<?xml version=\"1.0\"?><mapping><attribute key=\"Source\" value=\"" + source +
           "\"/><attribute key=\"Target\" value=\"" + target +
           "\"/><attribute key=\"Attribute Name Of Mapped Key\" value=\"To\"/><contents>" + contents +
           "</contents></mapping>";
}

std::string variable(const std::string& name, const std::string& to)
{
    return "<variable><attribute key=\"Name\" value=\"" + name + "\"/><attribute key=\"Long Name\" value=\"L\"/>" +
           (to.empty() ? "" : "<attribute key=\"To\" value=\"" + to + "\"/>") + "</variable>";
}

Variables mappingFolder(const TemporaryFolder& folder)
{
    return {{"KEL_VARIABLE_CONFIG_DIR", folder.path().string()}};
}

} // namespace

TEST(Map, ListsAndTranslates)
{
    const TemporaryFolder folder;
    const std::string path = folder.file("a-b.xml", mapping("A", "B", variable("p", "pressure")));
    const Ran list = runKel({"map"}, mappingFolder(folder));
    EXPECT_EQ(list.code, 0);
    EXPECT_EQ(list.out, "  from  to  variables  file\n  A     B           1  " + path + "\n");
    const Ran name = runKel({"map", "p", "--from", "A", "--to", "B"}, mappingFolder(folder));
    EXPECT_EQ(name.code, 0);
    EXPECT_EQ(name.out, "pressure\n  Long Name: L\n  To: pressure\n");
    EXPECT_TRUE(isJson(runKel({"map", "--json"}, mappingFolder(folder)).out));
    EXPECT_TRUE(isJson(runKel({"map", "p", "--json", "--from", "A", "--to", "B"}, mappingFolder(folder)).out));
}

TEST(Map, IsNoForNamesAndWaysThatDoNotExist)
{
    const TemporaryFolder folder;
    folder.file("a-b.xml", mapping("A", "B", variable("p", "pressure")));
    const Ran name = runKel({"map", "q", "--from", "A", "--to", "B"}, mappingFolder(folder));
    EXPECT_EQ(name.code, 1);
    EXPECT_EQ(name.err, "kel: A has no variable 'q'\n");
    const Ran way = runKel({"map", "p", "--from", "B", "--to", "A"}, mappingFolder(folder));
    EXPECT_EQ(way.code, 1);
    EXPECT_EQ(way.err, "kel: no mapping file leads from B to A\n");
    const Ran json = runKel({"map", "p", "--json", "--from", "B", "--to", "A"}, mappingFolder(folder));
    EXPECT_EQ(json.code, 1);
    EXPECT_TRUE(isJson(json.out));
}

TEST(Map, CheckFindsWhatIsWrong)
{
    const TemporaryFolder folder;
    folder.file("a-b.xml", mapping("A", "B",
                                   variable("p", "pressure") + variable("T", "temperature") +
                                       variable("T", "temperature") + variable("u", "")));
    folder.file("b-a.xml", mapping("B", "A", variable("pressure", "p") + variable("temperature", "t")));
    const Ran ran = runKel({"map", "--check"}, mappingFolder(folder));
    EXPECT_EQ(ran.code, 1);
    for (const char* line : {"a-b.xml: 'T' appears twice\n", "a-b.xml: 'u' has no name in B\n",
                             "a-b.xml: 'T' becomes 'temperature' in B and comes back as 't'\n", "2 mapping files, "})
        EXPECT_THAT(ran.out, HasSubstr(line));
    EXPECT_THAT(ran.out, Not(HasSubstr("'p'")));
    EXPECT_TRUE(isJson(runKel({"map", "--check", "--json"}, mappingFolder(folder)).out));
}

TEST(Map, CheckFindsFilesForTheSameVocabularies)
{
    const TemporaryFolder folder;
    folder.file("1.xml", mapping("A", "B", variable("p", "pressure")));
    folder.file("2.xml", mapping("A", "B", variable("p", "pressure")));
    const Ran ran = runKel({"map", "--check"}, mappingFolder(folder));
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("another file leads from A to B as well; this one is not used\n2 mapping files, 1 "
                                   "problem\n"));
}

TEST(Map, CheckFindsHeadersWithoutTheNameOfTheTarget)
{
    const TemporaryFolder folder;
    folder.file("a-b.xml", "<?xml version=\"1.0\"?><mapping><attribute key=\"Source\" value=\"A\"/><attribute "
                           "key=\"Target\" value=\"B\"/><contents>" +
                               variable("p", "pressure") + "</contents></mapping>");
    const Ran ran = runKel({"map", "--check"}, mappingFolder(folder));
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, HasSubstr("a-b.xml: no attribute holds the names in B: the header lacks 'Attribute Name Of "
                                   "Mapped Key'\n"));
}

TEST(Map, CheckReportsFilesThatAreNoMappingFiles)
{
    const TemporaryFolder folder;
    folder.file("a-b.xml", mapping("A", "B", variable("p", "pressure")));
    folder.file("1-cut.xml", "<mapping><contents>");
    folder.file("2-other.xml", "<settings/>");
    folder.file("3-source.xml", "<mapping><attribute key=\"Target\" value=\"B\"/><contents/></mapping>");
    folder.file("4-target.xml", "<mapping><attribute key=\"Source\" value=\"B\"/><contents/></mapping>");
    folder.file("notes.txt", "not looked at");
    const Ran ran = runKel({"map", "--check"}, mappingFolder(folder));
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(ran.out, StartsWith(folder / "1-cut.xml: is no mapping file: "));
    EXPECT_THAT(
        ran.out,
        EndsWith(folder / "2-other.xml: is no mapping file: its root element is 'settings', 'mapping' expected\n" +
                 (folder / "3-source.xml: is not used: its header has no 'Source'\n") +
                 (folder / "4-target.xml: is not used: its header has no 'Target'\n") +
                 "1 mapping file, 4 problems\n"));
}

TEST(Map, IsNoForAFolderThatDoesNotExist)
{
    const TemporaryFolder folder;
    for (const Arguments& arguments :
         {Arguments{"map"}, Arguments{"map", "--check"}, Arguments{"map", "p", "--from", "A", "--to", "B"}}) {
        const Ran ran = runKel(arguments, {{"KEL_VARIABLE_CONFIG_DIR", folder / "none"}});
        EXPECT_EQ(ran.code, 1);
        EXPECT_EQ(ran.out, "");
        EXPECT_EQ(ran.err, "kel: " + (folder / "none: No such file or directory\n"));
    }
}

TEST(Map, IsNoForANameThatNoFileTranslates)
{
    const TemporaryFolder folder;
    folder.file("a-b.xml", mapping("A", "B", variable("u", "") + variable("same", "same")));
    const Ran none = runKel({"map", "u", "--from", "A", "--to", "B"}, mappingFolder(folder));
    EXPECT_EQ(none.code, 1);
    EXPECT_EQ(none.err, "kel: 'u' of A has no name in B\n");
    EXPECT_EQ(runKel({"map", "same", "--from", "A", "--to", "B"}, mappingFolder(folder)).code, 0);
}

TEST(Map, FindsTheFolderOfTheInstallation)
{
    const TemporaryFolder folder;
    const std::filesystem::path variables = folder.path() / "commonfiles/fluids/config/variables";
    std::filesystem::create_directories(variables);
    std::ofstream(variables / "a-b.xml") << mapping("A", "B", variable("p", "pressure"));
    const Ran ran = runKel({"map", "--check"}, {{"TVR_ROOT251", folder.path().string()}});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(ran.out, "1 mapping file, 0 problems\n");
}

TEST(Map, CheckIsGoodForTheExample)
{
    const Ran ran =
        runKel({"map", "--check"}, {{"KEL_VARIABLE_CONFIG_DIR", std::string(KEL_SOURCE_DIR) + "/examples/mapping"}});
    EXPECT_EQ(ran.code, 0);
    EXPECT_EQ(ran.out, "3 mapping files, 0 problems\n");
}
