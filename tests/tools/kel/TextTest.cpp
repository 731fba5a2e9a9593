// Texts that the tool makes: numbers, tables, JSON, the line of progress, lists of time levels.
#include "Failure.h"
#include "Json.h"
#include "Model.h"
#include "Numbers.h"
#include "PathWords.h"
#include "Progress.h"
#include "TimeLevels.h"

#include <gtest/gtest.h>
#include <limits>

using namespace meridyn;
using namespace meridyn::tool;

static const double infinity = std::numeric_limits<double>::infinity();

TEST(Numbers, AreGroupedByThousands)
{
    EXPECT_EQ(grouped(0), "0");
    EXPECT_EQ(grouped(999), "999");
    EXPECT_EQ(grouped(1000), "1,000");
    EXPECT_EQ(grouped(123456), "123,456");
    EXPECT_EQ(grouped(std::numeric_limits<unsigned64>::max()), "18,446,744,073,709,551,615");
}

TEST(Numbers, AreShortForPeopleAndExactForMachines)
{
    EXPECT_EQ(shortNumber(0.125), "0.125");
    EXPECT_EQ(shortNumber(1.0 / 3.0), "0.333333");
    EXPECT_EQ(shortNumber(1.0 / 3.0, 3), "0.333");
    EXPECT_EQ(shortNumber(-infinity), "-inf");
    EXPECT_EQ(exactNumber(0.1), "0.1");
    EXPECT_EQ(exactNumber(1.0 / 3.0), "0.3333333333333333");
}

TEST(Numbers, BytesAndTimesReadWell)
{
    EXPECT_EQ(byteText(0), "0 B");
    EXPECT_EQ(byteText(999), "999 B");
    EXPECT_EQ(byteText(1000), "1.0 kB");
    EXPECT_EQ(byteText(999960), "1.0 MB");
    EXPECT_EQ(byteText(4.2e9), "4.2 GB");
    EXPECT_EQ(durationText(-3), "0:00");
    EXPECT_EQ(durationText(7.4), "0:07");
    EXPECT_EQ(durationText(750), "12:30");
    EXPECT_EQ(durationText(3723), "1:02:03");
    EXPECT_EQ(durationText(infinity), "100000:00:00");
}

TEST(Numbers, CountsBearTheirNoun)
{
    EXPECT_EQ(counted(1, "face", "faces"), "1 face");
    EXPECT_EQ(counted(0, "face", "faces"), "0 faces");
    EXPECT_EQ(counted(2000, "face", "faces"), "2,000 faces");
}

TEST(Printable, KeepsTextAndDisarmsTheRest)
{
    EXPECT_EQ(printable("wall \xC3\xA4\xE2\x82\xAC"), "wall \xC3\xA4\xE2\x82\xAC");
    EXPECT_EQ(printable("\x1b[2J"), "\\x1b[2J");
    EXPECT_EQ(printable("a\nb"), "a\\x0ab");
    EXPECT_EQ(printable("\xFF\xC3"), "\\xff\\xc3");
    EXPECT_EQ(printable("\xC2\x9B"), "\\xc2\\x9b") << "the control character CSI in UTF-8";
    EXPECT_EQ(printable("\xC0\xAF"), "\\xc0\\xaf") << "overlong";
    EXPECT_EQ(printable("\xED\xA0\x80"), "\\xed\\xa0\\x80") << "surrogate";
    EXPECT_EQ(columns("\xC3\xA4"
                      "b"),
              2U);
}

TEST(Json, KeepsTheOrderOfMembers)
{
    const Json json = {{"b", 1}, {"a", {true, nullptr}}, {"c", Json::object()}, {"d", std::vector<int>{1, 2}}};
    EXPECT_EQ(documentText(json), "{\n  \"b\": 1,\n  \"a\": [\n    true,\n    null\n  ],\n  \"c\": {},\n"
                                  "  \"d\": [\n    1,\n    2\n  ]\n}\n");
}

TEST(Json, EscapesStrings)
{
    EXPECT_EQ(documentText("\"\\\n\t\x01 \xC3\xA4 \xFF"), "\"\\\"\\\\\\n\\t\\u0001 \xC3\xA4 \xEF\xBF\xBD\"\n");
}

TEST(Json, WritesNumbersThatReadBack)
{
    const Json json = {jsonNumber(0.1), std::numeric_limits<unsigned64>::max(), -7, jsonNumber(infinity),
                       jsonNumber(std::numeric_limits<double>::quiet_NaN())};
    EXPECT_EQ(documentText(json), "[\n  0.1,\n  18446744073709551615,\n  -7,\n  \"inf\",\n  \"nan\"\n]\n");
}

TEST(ProgressLine, HoldsTaskBarShareRateAndTime)
{
    EXPECT_EQ(Progress::line("nodes of faces", 0.5, 120e6, 12, 100),
              "nodes of faces  [===============               ]  50%  120.0 MB/s  0:12 left");
    EXPECT_EQ(Progress::line("nodes", 0.0, 0.0, -1.0, 100), "nodes  [                              ]   0%");
}

TEST(ProgressLine, FitsNarrowTerminals)
{
    for (const int width : {1, 10, 30, 40, 79})
        EXPECT_LT(Progress::line("values of 'a variable with a long name'", 0.25, 1e6, 90, width).size(),
                  static_cast<std::size_t>(width))
            << width;
}

static const std::vector<TimeLevel> knownLevels = {{1, 0.1}, {2, 0.30000000000000004}, {5, 0.5}, {9, std::nullopt}};

TEST(TimeLevels, AreNumbersRangesAndTheLast)
{
    EXPECT_EQ(chosenLevels("2", knownLevels), (std::vector<int>{2}));
    EXPECT_EQ(chosenLevels("5,1,5", knownLevels), (std::vector<int>{1, 5}));
    EXPECT_EQ(chosenLevels("2-8,last", knownLevels), (std::vector<int>{2, 5, 9}));
    EXPECT_EQ(chosenLevels("0-2000000000", knownLevels), (std::vector<int>{1, 2, 5, 9})) << "costs what is known";
}

TEST(TimeLevels, AreTimesAndRangesOfTimes)
{
    EXPECT_EQ(chosenLevels("0.5s", knownLevels), (std::vector<int>{5}));
    EXPECT_EQ(chosenLevels("0.3s,1", knownLevels), (std::vector<int>{1, 2})) << "to within a billionth";
    EXPECT_EQ(chosenLevels("0.1s-0.3s", knownLevels), (std::vector<int>{1, 2}));
    EXPECT_EQ(chosenLevels("-1s-1e-1s", knownLevels), (std::vector<int>{1})) << "signs are no dashes";
    EXPECT_EQ(chosenLevels("0.10000000005s", {{1, 0.1}, {2, 0.10000000004}}), (std::vector<int>{2})) << "the nearest";
}

TEST(TimeLevels, ThatDoNotExistAreRefusedWithThoseThatDo)
{
    const auto complaintOf = [](const std::string& text, const std::vector<TimeLevel>& known) {
        try {
            chosenLevels(text, known);
        } catch (const Failure& failure) {
            return std::string(failure.what());
        }
        return std::string("none");
    };
    EXPECT_EQ(complaintOf("1,3", knownLevels),
              "has no time level '3'; those that it has: 1 (0.1 s), 2 (0.30000000000000004 s), 5 (0.5 s), 9");
    EXPECT_EQ(complaintOf("0.7s", {{4, 0.25}}), "has no time level '0.7s'; those that it has: 4 (0.25 s)");
    EXPECT_EQ(complaintOf("6-8", {{4, 0.25}}), "has no time level '6-8'; those that it has: 4 (0.25 s)");
    EXPECT_EQ(complaintOf("last", {}), "has no time level 'last'; those that it has: none");
}

TEST(TimeLevels, OtherTextsAreRefused)
{
    for (const char* text : {"", ",", "a", "1,", "-1", "1-", "1--2", "1.5", "99999999999", " 1", "last1", "s", "1 s",
                             "nans", "infs", "1-2s", "1s-2", "0x1s"})
        EXPECT_THROW(chosenLevels(text, knownLevels), BadLevels) << text;
}

TEST(PathWords, StandBeforeThePath)
{
    const struct {
        const char* text;
        const char* shown;
    } rows[] = {
        {"a.kel: is cut", "a.kel: is cut"},
        {"a.kel: /meshes/mesh_2_target_0_partition_-1/faces/cell0 has 12 rows, 20 expected",
         "a.kel: faces, cell 0 of mesh 2 (/meshes/mesh_2_target_0_partition_-1/faces/cell0) has 12 rows, 20 expected"},
        {"/meshes/mesh_1_target_0_partition_-1/sets/probe%2F1/ids: x",
         "set 'probe/1', ids of mesh 1 (/meshes/mesh_1_target_0_partition_-1/sets/probe%2F1/ids): x"},
        {"/meshes/mesh_1_target_2_partition_3/levels/40/phases/gas/cells/p",
         "time level '40', phase 'gas', cells, p of mesh 1 "
         "(/meshes/mesh_1_target_2_partition_3/levels/40/phases/gas/cells/p)"},
        {"/meshes/mesh_1_target_0_partition_-1 has no zones",
         "mesh 1 (/meshes/mesh_1_target_0_partition_-1) has no zones"},
        {"/meshes/mesh_1_target_0_partition_-1/sets/100%",
         "set '100%' of mesh 1 (/meshes/mesh_1_target_0_partition_-1/sets/100%)"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(withWordsForPaths(row.text), row.shown);
}

TEST(AboutFile, NamesTheFileOnce)
{
    EXPECT_EQ(aboutFile("a/b.kel", "is cut"), "a/b.kel: is cut");
    EXPECT_EQ(aboutFile("a/b.kel", "b.kel: is cut"), "a/b.kel: is cut");
    EXPECT_EQ(aboutFile("a/b.kel", "a/b.kel: is cut"), "a/b.kel: is cut");
}
