// Texts that the tool makes: numbers, tables, JSON, the line of progress, lists of time levels.
#include "Conversion.h"
#include "Failure.h"
#include "JsonWriter.h"
#include "Model.h"
#include "Numbers.h"
#include "Progress.h"
#include "ToolRunner.h"

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

TEST(Json, WritesNestedListsAndObjects)
{
    JsonWriter json;
    json.beginObject().member("a", 1).key("b").beginArray().value(true).null().endArray();
    json.key("c").beginObject().endObject().member("d", std::vector<int>{1, 2}).endObject();
    EXPECT_EQ(json.text(), "{\n  \"a\": 1,\n  \"b\": [\n    true,\n    null\n  ],\n  \"c\": {},\n"
                           "  \"d\": [\n    1,\n    2\n  ]\n}\n");
    EXPECT_TRUE(isJson(json.text()));
}

TEST(Json, EscapesStrings)
{
    JsonWriter json;
    json.value("\"\\\n\t\x01\x7f \xC3\xA4 \xFF");
    EXPECT_EQ(json.text(), "\"\\\"\\\\\\n\\t\\u0001\\u007f \xC3\xA4 \xEF\xBF\xBD\"\n");
}

TEST(Json, WritesNumbersThatReadBack)
{
    JsonWriter json;
    json.beginArray().value(0.1).value(std::numeric_limits<unsigned64>::max()).value(-7).value(infinity);
    json.value(std::numeric_limits<double>::quiet_NaN()).endArray();
    EXPECT_EQ(json.text(), "[\n  0.1,\n  18446744073709551615,\n  -7,\n  \"inf\",\n  \"nan\"\n]\n");
}

TEST(JsonReader, TellsDocumentsFromOthers)
{
    for (const char* good : {"1", "[]", "{\"a\": [1, -2.5e3, \"\\u00e4\"]}", " null "})
        EXPECT_TRUE(isJson(good)) << good;
    for (const char* bad : {"", "[1,]", "{a: 1}", "1 2", "\"\n\"", "nan", "{\"a\" 1}", "[1"})
        EXPECT_FALSE(isJson(bad)) << bad;
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

TEST(TimeLevels, AreNumbersRangesAndTheLast)
{
    const std::vector<int> known = {1, 2, 5, 9};
    EXPECT_EQ(chosenLevels("2", known), (std::vector<int>{2}));
    EXPECT_EQ(chosenLevels("5,1,5", known), (std::vector<int>{1, 5}));
    EXPECT_EQ(chosenLevels("2-8,last", known), (std::vector<int>{2, 5, 9}));
    EXPECT_EQ(chosenLevels("0-2000000000", known), known) << "a range costs what is known";
    EXPECT_EQ(chosenLevels("3", known), (std::vector<int>{3})) << "the transfer complains about it";
    EXPECT_TRUE(chosenLevels("last", {}).empty());
}

TEST(TimeLevels, OtherTextsAreRefused)
{
    for (const char* text : {"", ",", "a", "1,", "-1", "1-", "1--2", "1.5", "99999999999", " 1", "last1"})
        EXPECT_THROW(chosenLevels(text, {1, 2}), Failure) << text;
}

TEST(AboutFile, NamesTheFileOnce)
{
    EXPECT_EQ(aboutFile("a/b.kel", "is cut"), "a/b.kel: is cut");
    EXPECT_EQ(aboutFile("a/b.kel", "b.kel: is cut"), "a/b.kel: is cut");
    EXPECT_EQ(aboutFile("a/b.kel", "a/b.kel: is cut"), "a/b.kel: is cut");
}
