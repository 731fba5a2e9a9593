// The commands on a model with something of every family.
#include "exchange/RichModel.h"
#include "formats/hdf5/FileEdit.h"
#include "KelHdf5Consumer.h"
#include "ToolRunner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

using namespace meridyn;
using namespace meridyn::tool;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

namespace {

/// Writes a rich model as the files <name>.case.kel and <name>.data.kel.
void writeRich(const std::string& name, const RichWriter::Change& inCase = nullptr,
               const RichWriter::Change& inData = nullptr)
{
    makeRichModel("memory:rich", inCase, inData);
    KelMemoryProvider source;
    KelHdf5Consumer target;
    setBoth(source, "memory:rich");
    target.setFile(name + ".case.kel", KEL_CASE);
    target.setFile(name + ".data.kel", KEL_DATA);
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
}

} // namespace

TEST(RichModel, SurvivesTheTool)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich");
    const Ran convert = runKel({"convert", "--strict", "--verify", folder / "rich", folder / "copy.case.kel"});
    EXPECT_EQ(convert.code, 0) << convert.err;
    EXPECT_THAT(convert.out, EndsWith("Nothing was lost.\n"));
    EXPECT_EQ(runKel({"diff", folder / "rich", folder / "copy"}).out, "The two models are equal.\n");
    const Ran trace = runKel({"trace", folder / "rich"});
    EXPECT_EQ(trace.code, 0) << trace.err;
    EXPECT_THAT(trace.out, HasSubstr("\nData\n\n"));
}

TEST(RichModel, IsTracedWithSetsAndTracks)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich");
    const Ran ran = runKel({"trace", folder / "rich"});
    for (const char* piece : {"  Set = ", "  Set-data = ", "  Track-group = group\n\n", "  Track-chunk = 4 (",
                              "  Track-variable = speed (", "  Case-section = "})
        EXPECT_THAT(ran.out, HasSubstr(piece));
}

TEST(RichModel, NamesThatCouldSteerATerminalAreEscapedInATrace)
{
    const TemporaryFolder folder;
    const std::string file = folder / "odd.data.kel";
    {
        KelHdf5Consumer writer;
        short phase = 0;
        int variable = 0;
        std::vector<int> zones = {1};
        writer.setZoneIds(KEL_CELL_ZONE, {1});
        writer.setZoneSizeInfo(1, KEL_ZONE_FIRST_ID, 1);
        writer.setZoneSizeInfo(1, KEL_ZONE_LAST_ID, 1);
        ASSERT_TRUE(writer.startWriting(file, KEL_DATA));
        writer.addPhaseName("gas", phase);
        writer.addPhaseVariable(phase, "p\x1b[2J\nq", variable);
        writer.startWritingPhase(phase);
        writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<int>{variable});
        const double value = 1.0;
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, variable, zones, 1);
        writer.setValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1);
        writer.endWritingPhaseVariableInZonesOfCategory();
        ASSERT_TRUE(writer.endWriting(KEL_DATA));
    }
    const Ran ran = runKel({"trace", file});
    EXPECT_EQ(ran.code, 0) << ran.err;
    EXPECT_THAT(ran.out, HasSubstr("p\\x1b[2J\\x0aq"));
    EXPECT_THAT(ran.out, Not(HasSubstr("\x1b")));
}

TEST(RichModel, WithADamagedArrayIsNotTakenForWhole)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich");
    const std::string mesh = "/meshes/mesh_1_target_0_partition_-1";
    {
        hdf5test::FileEdit edit(folder / "rich.case.kel");
        edit.array(mesh + "/faces/cell0", H5T_NATIVE_INT, {3}, nullptr);
        edit.array("/locations", H5T_NATIVE_UCHAR, {3}, nullptr);
    }
    const std::string path = folder / "rich.case.kel";
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"convert", "--strict", path, folder / "copy.case.kel"},
                                               {"check", path},
                                               {"diff", "--case-only", path, path},
                                               {"info", path},
                                               {"locate", path, "box"}}) {
        const Ran ran = runKel(arguments);
        EXPECT_EQ(ran.code, 2) << arguments[0];
        EXPECT_EQ(ran.out, "") << arguments[0];
        EXPECT_THAT(ran.err, StartsWith("kel: " + path)) << arguments[0];
        EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "copy.case.kel"));
}

TEST(RichModel, IsShownByInfo)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich");
    const Ran ran = runKel({"info", folder / "rich"});
    EXPECT_EQ(ran.code, 0) << ran.err;
    for (const char* line : {"  edges        2\n", "wall of glass", "  phase        -1 '<Mixture>'\n",
                             "  phase        1 'phase-1'\n", "  phase        2 'phase-2'\n", "\nSettings\n",
                             "  case  group/one: 2 entries\n", "  data  group: 1 entry\n", "\nLocations\n"})
        EXPECT_THAT(ran.out, HasSubstr(line));
    const Ran json = runKel({"info", "--json", "--stats", folder / "rich"});
    EXPECT_TRUE(isJson(json.out)) << json.out;
    EXPECT_THAT(json.out, HasSubstr("\"group\": \"group/one\",\n      \"entries\": 2"));
}

TEST(RichModel, LosesWhatAFormatDoesNotCarry)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich");
    const Ran ran = runKel({"convert", "--json", "--case-only", folder / "rich", folder / "o.thin"});
    EXPECT_EQ(ran.code, 0) << ran.err;
    ASSERT_TRUE(isJson(ran.out)) << ran.out;
    for (const char* family : {"edges", "interface data", "child faces", "child cells", "case sections", "local ids",
                               "sets", "settings", "log", "locations"})
        EXPECT_THAT(ran.out, HasSubstr(std::string("\"family\": \"") + family + "\"")) << family;
}

TEST(RichModel, ReportsWhatDoesNotFitIntoSinglePrecision)
{
    const TemporaryFolder folder;
    writeRich(folder / "large", nullptr, [](RichWriter& writer) { writer.addMixtureValue(1e300); });
    const Ran large = runKel({"convert", "--strict", "--precision", "single", folder / "large", folder / "a.case.kel"});
    EXPECT_EQ(large.code, 1) << large.out << large.err;
    EXPECT_THAT(large.out, HasSubstr("inf"));
    writeRich(folder / "small", nullptr, [](RichWriter& writer) { writer.addMixtureValue(0.1); });
    const Ran small = runKel({"convert", "--strict", "--precision", "single", folder / "small", folder / "b.case.kel"});
    EXPECT_EQ(small.code, 0) << small.out << small.err;
}

TEST(RichModel, DiffersByOneValue)
{
    const TemporaryFolder folder;
    writeRich(folder / "one");
    writeRich(folder / "other", nullptr, [](RichWriter& writer) { writer.addTracks(1.5); });
    const Ran ran = runKel({"diff", "--first", "1", folder / "one", folder / "other"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_THAT(
        ran.out,
        HasSubstr("particle tracks: 'speed' of chunk 4 of track group 'group' of phase 'phase-2', mesh 1, time "
                  "level 3, id 1: 1.25 against 1.5\n"
                  "particle tracks: 'speed' of chunk 4 of track group 'group' of phase 'phase-2', mesh 1, in all, "
                  "time level 3: nothing against 3 differences\n"));
    EXPECT_THAT(ran.out, EndsWith("\n2 differences shown; the models differ.\n"));
    EXPECT_EQ(runKel({"diff", "--case-only", folder / "one", folder / "other"}).code, 0);
}

TEST(RichModel, ValuesThatAreNoNumbersAreCounted)
{
    const TemporaryFolder folder;
    writeRich(folder / "rich", nullptr,
              [](RichWriter& writer) { writer.addMixtureValue(std::numeric_limits<double>::infinity()); });
    const Ran text = runKel({"info", "--stats", folder / "rich"});
    EXPECT_EQ(text.code, 0) << text.err;
    EXPECT_THAT(text.out, HasSubstr("  12 values are infinite or not a number\n"));
    EXPECT_THAT(runKel({"info", "--stats", "--json", folder / "rich"}).out, HasSubstr("\"notFinite\": 12"));
}

TEST(RichModel, FailsTheCheckWithDamagedFaces)
{
    const TemporaryFolder folder;
    writeRich(folder / "good");
    EXPECT_THAT(runKel({"check", folder / "good"}).out, Not(HasSubstr("has no cell 1")));
    writeRich(folder / "bad", [](RichWriter& writer) {
        writer.setCell1ForFace(3, 0);
        writer.setCell1ForFace(4, 0);
    });
    const Ran ran = runKel({"check", "--named", "1", folder / "bad"});
    EXPECT_EQ(ran.code, 1);
    EXPECT_EQ(ran.err, "");
    EXPECT_THAT(ran.out, HasSubstr(": 2 exceptions\n            face 3 of zone 2 'interior' has no cell 1\n"
                                   "            ...\n"));
    EXPECT_THAT(ran.out, EndsWith("\nThe mesh is not good.\n"));
    const Ran json = runKel({"check", "--json", folder / "bad"});
    EXPECT_EQ(json.code, 1);
    EXPECT_TRUE(isJson(json.out)) << json.out;
    EXPECT_THAT(json.out, HasSubstr("\"good\": false"));
    EXPECT_THAT(json.out, HasSubstr("\"face 4 of zone 2 'interior' has no cell 1\""));
}
