// What a name means, and what becomes of the model that has it when another one is written.
#include "KelHdf5Consumer.h"
#include "ToolRunner.h"

#include <algorithm>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace meridyn::tool;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

namespace {

const std::string cavity = KEL_SOURCE_DIR "/tests/data/polymesh/cavity-ascii";

std::string contentOf(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

} // namespace

class Naming : public ::testing::Test {
protected:
    /// Runs the tool; "@" stands for the folder.
    Ran kel(std::vector<std::string> arguments) const
    {
        for (std::string& argument : arguments)
            for (std::size_t at = argument.find('@'); at != std::string::npos; at = argument.find('@', at))
                argument.replace(at, 1, _folder.path().string());
        return runKel(arguments);
    }

    TemporaryFolder _folder;
};

// ---- recognition --------------------------------------------------------------------------------------------------

TEST_F(Naming, OfAFolderMeansTheFolderAfterItsConversion)
{
    std::filesystem::copy(cavity, _folder / "cavity", std::filesystem::copy_options::recursive);
    ASSERT_EQ(kel({"convert", "@/cavity", "@/cavity.case.kel"}).code, 0);
    EXPECT_THAT(kel({"info", "@/cavity"}).out, HasSubstr("  format       polymesh"));
    EXPECT_THAT(kel({"info", "@/cavity/"}).out, HasSubstr("  format       polymesh"));
    EXPECT_THAT(kel({"info", "@/cavity.case.kel"}).out, HasSubstr("  format       hdf5"));
    std::filesystem::remove_all(_folder / "cavity/constant");
    const Ran damaged = kel({"info", "@/cavity"});
    EXPECT_EQ(damaged.code, 2);
    EXPECT_EQ(damaged.err, "kel: " + (_folder / "cavity: a folder that no format recognises, and beside it ") +
                               (_folder / "cavity.case.kel (hdf5); name that file if it is meant\n"));
}

TEST_F(Naming, IsNotHiddenByAFileOfAnotherKind)
{
    ASSERT_EQ(kel({"convert", "box:1x1x1 fields:1", "@/cube.case.kel"}).code, 0);
    _folder.file("cube", "a text\n");
    EXPECT_THAT(kel({"info", "@/cube"}).out, HasSubstr(_folder / "cube.data.kel"));
    EXPECT_EQ(kel({"info", "@/none.case.kel"}).err, "kel: " + (_folder / "none.case.kel: no such file\n"));
    std::filesystem::remove(_folder / "cube.data.kel");
    EXPECT_EQ(kel({"info", "@/cube.data.kel"}).err, "kel: " + (_folder / "cube.data.kel: no such file\n"))
        << "a file name of ours stands for no other";
}

TEST_F(Naming, LeadsFromTheFolderOfAMeshToItsCase)
{
    for (const char* inside :
         {"", "/constant", "/constant/polyMesh", "/constant/polyMesh/", "/constant/polyMesh/owner"}) {
        const Ran ran = kel({"info", cavity + inside});
        EXPECT_EQ(ran.code, 0) << inside << ran.err;
        EXPECT_THAT(ran.out, HasSubstr("  case file    " + cavity + " (")) << inside;
        EXPECT_THAT(ran.out, HasSubstr("  time levels  ")) << inside << ": the data are there as well";
    }
}

TEST_F(Naming, WhatWasNotReadIsToldByInfoAndMakesADiffIncomplete)
{
    std::filesystem::copy(cavity, _folder / "case", std::filesystem::copy_options::recursive);
    std::filesystem::remove(_folder / "case/truth.json");
    ASSERT_EQ(kel({"diff", "@/case", "@/case"}).out, "The two models are equal.\n");
    _folder.file("case/constant/g", "no dictionary at all {\n");
    const Ran info = kel({"info", "@/case"});
    EXPECT_THAT(info.out, HasSubstr("  not read: "));
    EXPECT_THAT(info.out, HasSubstr("constant/g"));
    const nlohmann::json json = nlohmann::json::parse(kel({"info", "--json", "@/case"}).out);
    EXPECT_TRUE(json["saysWhatIsNotRead"]);
    EXPECT_FALSE(json["notRead"].empty());
    const Ran diff = kel({"diff", "@/case", "@/case"});
    EXPECT_EQ(diff.code, 3);
    const std::string last = diff.out.substr(diff.out.rfind('\n', diff.out.size() - 2) + 1);
    EXPECT_THAT(last, StartsWith("No difference found, but not compared: "));
    EXPECT_THAT(last, HasSubstr("constant/g"));
    EXPECT_EQ(nlohmann::json::parse(kel({"diff", "--json", "@/case", "@/case"}).out)["complete"], false);
}

// ---- a model is written as a whole or not at all ------------------------------------------------------------------

TEST_F(Naming, StaleDataBesideANewCaseAreRefused)
{
    ASSERT_EQ(kel({"convert", "box:2x2x2 fields:1", "@/x.case.kel"}).code, 0);
    ASSERT_EQ(kel({"convert", "--case-only", "box:1x1x1", "@/only.case.kel"}).code, 0);
    std::filesystem::remove(_folder / "x.case.kel");
    const std::string stale = contentOf(_folder / "x.data.kel");
    const Ran refused = kel({"convert", "@/only.case.kel", "@/x.case.kel"});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err, "kel: " + (_folder / "x.data.kel: exists already, and would become the data of the new "
                                                "model, which has none; --force removes it\n"));
    EXPECT_THAT(_folder.names(), UnorderedElementsAre("x.data.kel", "only.case.kel"));
    EXPECT_EQ(contentOf(_folder / "x.data.kel"), stale);
    const Ran forced = kel({"convert", "--force", "@/only.case.kel", "@/x.case.kel"});
    EXPECT_EQ(forced.code, 0) << forced.err;
    EXPECT_THAT(forced.out, HasSubstr("removed " + (_folder / "x.data.kel")));
    EXPECT_THAT(_folder.names(), UnorderedElementsAre("x.case.kel", "only.case.kel"));
}

TEST_F(Naming, AFailedConversionLeavesTheOldPair)
{
    ASSERT_EQ(kel({"convert", "box:2x2x2 fields:1", "@/x.case.kel"}).code, 0);
    ASSERT_EQ(kel({"convert", "box:3x3x3 fields:2", "@/bad.case.kel"}).code, 0);
    const std::string oldCase = contentOf(_folder / "x.case.kel"), oldData = contentOf(_folder / "x.data.kel");
    std::filesystem::resize_file(_folder / "bad.data.kel", std::filesystem::file_size(_folder / "bad.data.kel") / 2);
    const Ran ran = kel({"convert", "--force", "@/bad.case.kel", "@/x.case.kel"});
    EXPECT_EQ(ran.code, 2);
    EXPECT_EQ(std::count(ran.err.begin(), ran.err.end(), '\n'), 1) << ran.err;
    EXPECT_THAT(ran.err, ::testing::Not(HasSubstr(".kel-convert")));
    EXPECT_TRUE(contentOf(_folder / "x.case.kel") == oldCase);
    EXPECT_TRUE(contentOf(_folder / "x.data.kel") == oldData);
    EXPECT_EQ(_folder.names().size(), 4U) << "nothing else";
}

TEST_F(Naming, ALinkStaysALink)
{
    ASSERT_EQ(kel({"convert", "--case-only", "box:2x2x2", "@/x.case.kel"}).code, 0);
    std::filesystem::create_symlink("x.case.kel", _folder / "link.case.kel");
    ASSERT_EQ(kel({"convert", "--force", "--case-only", "box:1x1x1", "@/link.case.kel"}).code, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(_folder / "link.case.kel"));
    EXPECT_EQ(kel({"diff", "--case-only", "box:1x1x1", "@/x.case.kel"}).code, 0);
}

TEST_F(Naming, DataAloneKeepAllThatTheySayOfThemselves)
{
    const std::string file = _folder / "all.data.kel";
    {
        meridyn::KelHdf5Consumer writer;
        writer.setMeshId(3);
        writer.setTarget(meridyn::KEL_PARTITIONED_POST);
        writer.setPartitionId(7);
        writer.setSolverType("SOLVER");
        writer.setZoneIds(meridyn::KEL_FACE_ZONE, {5});
        writer.setZoneSizeInfo(5, meridyn::KEL_ZONE_FIRST_ID, 1);
        writer.setZoneSizeInfo(5, meridyn::KEL_ZONE_LAST_ID, 4);
        writer.setFaceZoneType(5, meridyn::KEL_FACE_ZONE_TYPE_INLET);
        ASSERT_TRUE(writer.startWriting(file, meridyn::KEL_DATA) && writer.endWriting(meridyn::KEL_DATA));
    }
    const auto facts = [&](const std::string& name) {
        const nlohmann::json json = nlohmann::json::parse(runKel({"info", "--json", name}).out);
        return nlohmann::json{json["solver"], json["mesh"]["id"], json["mesh"]["target"], json["mesh"]["partition"],
                              json["zones"]};
    };
    ASSERT_EQ(facts(file)[0], "SOLVER");
    ASSERT_EQ(facts(file)[3], 7);
    ASSERT_EQ(facts(file)[4][0]["kind"], "inlet");
    const Ran ran = kel({"convert", "--data-only", "@/all.data.kel", "@/copy.data.kel"});
    ASSERT_EQ(ran.code, 0) << ran.err;
    EXPECT_EQ(facts(_folder / "copy.data.kel"), facts(file));
}

TEST_F(Naming, DataWithoutACaseConvertAlone)
{
    ASSERT_EQ(kel({"convert", "box:2x2x2 fields:2 levels:2 zones:2", "@/x.case.kel"}).code, 0);
    std::filesystem::remove(_folder / "x.case.kel");
    for (const char* path : {"@/x.data.kel", "@/x"}) {
        const Ran ran = kel({"convert", "--force", "--strict", "--verify", path, "@/y.data.kel"});
        EXPECT_EQ(ran.code, 0) << ran.out << ran.err;
        EXPECT_THAT(ran.out, StartsWith("written " + (_folder / "y.data.kel\n")));
        EXPECT_EQ(kel({"diff", path, "@/y.data.kel"}).out, "The two models are equal.\n");
    }
}
