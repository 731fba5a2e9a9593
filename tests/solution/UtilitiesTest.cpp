#include "KelUtilities.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using Names = std::vector<std::string>;

namespace {

struct SplitCase {
    std::string text;
    char delimiter;
    Names plain;
    Names trimmed;
};

// clang-format off
const SplitCase splitCases[] = {
    {"a,,b",                   ',',  {"a", "", "b"},              {"a", "b"}},
    {"a,b,",                   ',',  {"a", "b", ""},              {"a", "b"}},
    {"",                       ',',  {""},                        {}},
    {",",                      ',',  {"", ""},                    {}},
    {" x \t",                  ',',  {" x \t"},                   {"x"}},
    {" a b ",                  ',',  {" a b "},                   {"a b"}},
    {" \t\f\r\n\vx\v\n\r\f\t ,y", ',', {" \t\f\r\n\vx\v\n\r\f\t ", "y"}, {"x", "y"}},
    {"a, ,b",                  ',',  {"a", " ", "b"},             {"a", "b"}},
    {"\"a,b\"",                ',',  {"\"a", "b\""},              {"\"a", "b\""}},
    {"a/b",                    ',',  {"a/b"},                     {"a/b"}},
    {"/settings//x/",          '/',  {"", "settings", "", "x", ""}, {"settings", "x"}},
    {"a b",                    ' ',  {"a", "b"},                  {"a", "b"}},
    {"a\nb",                   '\n', {"a", "b"},                  {"a", "b"}},
    {"\xA0x",                  ',',  {"\xA0x"},                   {"\xA0x"}}, // no blank but the six
    {std::string("a\0b", 3),   '\0', {"a", "b"},                  {"a", "b"}},
    {std::string("\0,b", 3),   ',',  {std::string(1, '\0'), "b"}, {std::string(1, '\0'), "b"}},
};
// clang-format on

} // namespace

TEST(SplitString, CutsAtEveryDelimiter)
{
    for (const SplitCase& row : splitCases) {
        Names tokens;
        EXPECT_TRUE(KelUtilities::splitString(row.text, tokens, false, row.delimiter));
        EXPECT_EQ(tokens, row.plain) << "splitting \"" << row.text << '"';
    }
}

TEST(SplitString, TrimsAndDropsBlankTokens)
{
    for (const SplitCase& row : splitCases) {
        Names tokens;
        EXPECT_TRUE(KelUtilities::splitString(row.text, tokens, true, row.delimiter));
        EXPECT_EQ(tokens, row.trimmed) << "splitting \"" << row.text << '"';
    }
}

TEST(SplitString, AppendsToWhatIsThere)
{
    Names tokens = {"old"};
    EXPECT_TRUE(KelUtilities::splitString("a,b", tokens, false, ','));
    EXPECT_EQ(tokens, (Names{"old", "a", "b"}));
}

TEST(SplitString, TextMayBeOneOfTheTokens)
{
    Names tokens = {"a long text, which does not fit into the object itself,b,c,d,e"};
    tokens.shrink_to_fit();
    EXPECT_TRUE(KelUtilities::splitString(tokens[0], tokens, true, ','));
    EXPECT_EQ(tokens,
              (Names{tokens[0], "a long text", "which does not fit into the object itself", "b", "c", "d", "e"}));
}

namespace {

struct JoinCase {
    std::string before;
    Names parts;
    bool skipBlank;
    bool trailingDelimiter;
    std::string joined;
};

// clang-format off
const JoinCase joinCases[] = {
    {"",  {"a", " ", "b"},         true,  false, "a;b"},
    {"",  {"a", " ", "b"},         false, false, "a; ;b"},
    {"x", {"a"},                   false, true,  "x;a;"},
    {"",  {},                      false, true,  ""},
    {"x", {},                      false, true,  "x;"},
    {"x", {},                      false, false, "x"},
    {"",  {"", "b"},               false, false, "b"},
    {"",  {"", "", "b"},           false, false, "b"},
    {"",  {"a", "", "b"},          false, false, "a;;b"},
    {"x", {""},                    false, false, "x;"},
    {"",  {"", ""},                false, true,  ""},
    {"",  {" a ", "b"},            true,  false, " a ;b"},
    {"",  {" \t\f\r\n\v", "", "b"}, true, true,  "b;"},
    {"",  {"a", "\xA0"},           true,  false, "a;\xA0"},
};
// clang-format on

} // namespace

TEST(JoinString, PutsADelimiterBeforeAPartOnceThereIsText)
{
    for (const JoinCase& row : joinCases) {
        std::string text = row.before;
        KelUtilities::joinString(row.parts, text, ';', row.skipBlank, row.trailingDelimiter);
        EXPECT_EQ(text, row.joined) << row.parts.size() << " parts behind \"" << row.before << '"';
    }
}

TEST(JoinString, UndoesASplitOfAMegabyte)
{
    std::string text = "first";
    while (text.size() < 1000000)
        text += ",token" + std::to_string(text.size());
    Names tokens;
    EXPECT_TRUE(KelUtilities::splitString(text, tokens, false, ','));
    std::string joined;
    KelUtilities::joinString(tokens, joined, ',', false, false);
    EXPECT_EQ(joined == text, true);
}

TEST(ToString, GivesTheTwoWords)
{
    EXPECT_EQ(KelUtilities::toString(true), "true");
    EXPECT_EQ(KelUtilities::toString(false), "false");
}
