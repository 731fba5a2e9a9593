#include "StrataSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace strata;

// Two parts. Side 0 of b1 and b2 is named, the other uses are not.
class Locations : public ::testing::Test {
protected:
    Locations()
    {
        Part* fluid = topology->createPart(3, "fluid");                 // p1
        Part* solid = topology->createPart(3, "solid");                 // p2
        Body* core = fluid->createBody("core");                         // b1
        Body* ring = fluid->createBody("ring");                         // b2
        Body* block = solid->createBody("core");                        // b3
        Face* wall = fluid->createFace("wall");                         // f1
        Face* inlet = fluid->createFace("inlet");                       // f2
        fluid->createFace("lost");                                      // f3, used by nobody
        Face* skin = solid->createFace("wall");                         // f4
        core->createFaceUse(wall, 0, "core-wall");                      // f1:0
        ring->createFaceUse(wall, 1, "");                               // f1:1
        ring->createFaceUse(inlet, 0, "in let");                        // f2:0
        block->createFaceUse(skin, 1, "");                              // f4:1
        Composite* pair = fluid->createComposite("pair", {ring, skin}); // c1
        solid->createComposite("all", {pair, core});                    // c2
        solid->createComposite("none", {});                             // c3
    }

    std::string interior(const std::string& location)
    {
        return text(topology->resolveInteriorLocation(location, unresolved));
    }
    std::string boundary(const std::string& location)
    {
        return text(topology->resolveBoundaryLocation(location, unresolved));
    }

    template <class List>
    static std::string text(const List& list)
    {
        std::string all;
        for (const std::string& id : idsOf(list))
            all += all.empty() ? id : " " + id;
        return all;
    }

    Model model{""};
    Topology* topology = model.topology();
    std::vector<std::string> unresolved{"left over"};
};

struct LocationCase {
    const char* location;
    const char* interior;
    const char* boundary;
    std::vector<std::string> unresolved;
};

// clang-format off
const LocationCase locationCases[] = {
    // what each kind stands for
    {"fluid",                  "b1 b2",    "f1:0 f1:1 f2:0",      {}},
    {"ring",                   "b2",       "f1:1 f2:0",           {}},
    {"inlet",                  "",         "f2:0",                {}},
    {"lost",                   "",         "",                    {}},
    {"core-wall",              "",         "f1:0",                {}},
    {"pair",                   "b2",       "f1:1 f2:0 f4:1",      {}},
    {"all",                    "b1 b2",    "f1:0 f1:1 f2:0 f4:1", {}},
    {"none",                   "",         "",                    {}},
    // names and qualified names
    {"core",                   "b1 b3",    "f1:0 f4:1",           {}},
    {"wall",                   "",         "f1:0 f1:1 f4:1",      {}},
    {"solid/core",             "b3",       "f4:1",                {}},
    {"solid/ring",             "",         "",                    {"solid/ring"}},
    {"solid/solid",            "",         "",                    {"solid/solid"}},
    {"Core",                   "",         "",                    {"Core"}},
    {"cor",                    "",         "",                    {"cor"}},
    {"core1",                  "",         "",                    {"core1"}},
    // lists
    {"ring,core,ring",         "b1 b2 b3", "f1:0 f1:1 f2:0 f4:1", {}},
    {" \tring\t , inlet ",     "b2",       "f1:1 f2:0",           {}},
    {",, ring ,\t,",           "b2",       "f1:1 f2:0",           {}},
    {"",                       "",         "",                    {}},
    {" , ",                    "",         "",                    {}},
    {"x, ring ,y,x",           "b2",       "f1:1 f2:0",           {"x", "y"}},
    {"ring\n",                 "",         "",                    {"ring\n"}},
    // wildcards
    {"*",                      "b1 b2 b3", "f1:0 f1:1 f2:0 f4:1", {}},
    {"r*",                     "b2",       "f1:1 f2:0",           {}},
    {"*in?",                   "b2",       "f1:1 f2:0",           {}},
    {"?*ing?",                 "",         "",                    {"?*ing?"}},
    {"*in*",                   "b2",       "f1:1 f2:0",           {}},
    {"?ing",                   "b2",       "f1:1 f2:0",           {}},
    {"ring?",                  "",         "",                    {"ring?"}},
    {"ring*",                  "b2",       "f1:1 f2:0",           {}},
    {"co*re",                  "b1 b3",    "f1:0 f4:1",           {}},
    {"*/core",                 "b1 b3",    "f1:0 f4:1",           {}},
    {"????\?/wall",             "",         "f1:0 f1:1 f4:1",      {}},
    {"s*/*",                   "b1 b2 b3", "f1:0 f1:1 f2:0 f4:1", {}},
    {"fluid*core",             "",         "",                    {"fluid*core"}},
    {"fluid?core",             "",         "",                    {"fluid?core"}},
    {"*a*l*",                  "b1 b2",    "f1:0 f1:1 f2:0 f4:1", {}},
    // quotes
    {"\"ring\"",               "b2",       "f1:1 f2:0",           {}},
    {"r\"in\"g",               "b2",       "f1:1 f2:0",           {}},
    {"\"r*\"",                 "",         "",                    {"\"r*\""}},
    {"\"r\"*",                 "b2",       "f1:1 f2:0",           {}},
    {"\"fluid\"/\"ring\"",     "b2",       "f1:1 f2:0",           {}},
    {"\"fluid/ring\"",         "",         "",                    {"\"fluid/ring\""}},
    {"\"ring,core\"",          "",         "",                    {"\"ring,core\""}},
    {"in let",                 "",         "f2:0",                {}},
    {"\" ring\"",              "",         "",                    {"\" ring\""}},
    // faults
    {"\"ring",                 "",         "",                    {"\"ring"}},
    {"core,ring\",inlet",      "b1 b3",    "f1:0 f4:1",           {"ring\",inlet"}},
    {"fluid/",                 "",         "",                    {"fluid/"}},
    {"/ring",                  "",         "",                    {"/ring"}},
    {"/",                      "",         "",                    {"/"}},
    {"fluid/ring/x",           "",         "",                    {"fluid/ring/x"}},
    {"\"\"",                   "",         "",                    {"\"\""}},
    {"\"\"/ring",              "",         "",                    {"\"\"/ring"}},
    {"fluid /ring",            "",         "",                    {"fluid /ring"}},
};
// clang-format on

TEST_F(Locations, AreReadByTheGrammar)
{
    for (const LocationCase& row : locationCases) {
        unresolved = {"left over"};
        EXPECT_EQ(interior(row.location), row.interior) << row.location;
        EXPECT_EQ(unresolved, row.unresolved) << row.location;
        unresolved = {"left over"};
        EXPECT_EQ(boundary(row.location), row.boundary) << row.location;
        EXPECT_EQ(unresolved, row.unresolved) << row.location;
    }
}

TEST_F(Locations, RegionsWithoutNameAreNotNamed)
{
    topology->createPart(3, "")->createBody("");
    EXPECT_EQ(interior("*"), "b1 b2 b3");
    EXPECT_EQ(interior("*/*"), "b1 b2 b3");
}

TEST_F(Locations, AnyNameIsReachedInQuotes)
{
    Part* odd = topology->createPart(3, "a/b, \"c\"");
    for (const std::string name : {"a,b", "a/b", "\"", "\"\"", "a\"b", " a", "a\t", "*", "?", "a*b", "\n", "plain",
                                   "two words", "\xC3\xBC", "\xFF"}) {
        Body* body = odd->createBody(name);
        const std::string entry = Topology::quoted(name);
        EXPECT_EQ(interior(entry), body->id()) << entry;
        EXPECT_EQ(interior(Topology::quoted(odd->name()) + "/" + entry), body->id()) << entry;
        EXPECT_EQ(interior("nobody ," + entry + "\t,"), body->id()) << entry;
        body->destroy(false);
    }
    odd->createBody(std::string("nul\0nul", 7));
    EXPECT_EQ(interior(std::string("nul\0nul", 7)), "b19");
    EXPECT_EQ(interior("nul"), "");
    EXPECT_EQ(Topology::quoted("plain"), "plain");
    EXPECT_EQ(Topology::quoted("two words"), "two words");
    EXPECT_EQ(Topology::quoted(" a\"b"), "\" a\"\"b\"");
    EXPECT_EQ(Topology::quoted(""), "\"\"");
}

TEST_F(Locations, AQuestionMarkIsOneCharacter)
{
    Part* part = topology->createPart(3, "utf");
    part->createBody("\xE2\x82\xAC"); // b4, one character of three bytes
    part->createBody("\xFF\x82");     // b5, two bytes of no character
    part->createBody("\xE2\x82");     // b6, a cut character: two bytes
    EXPECT_EQ(interior("utf/?"), "b4");
    EXPECT_EQ(interior("utf/*?"), "b4 b5 b6");
    EXPECT_EQ(interior("utf/*??"), "b5 b6");
    EXPECT_EQ(interior("utf/??"), "b5 b6");
    EXPECT_EQ(interior("utf/???"), "");
}

TEST_F(Locations, AreExplainedEntryByEntry)
{
    const std::vector<LocationMatch> matches = topology->explainLocation(" wall ,x,,s*,wall,\"");
    ASSERT_EQ(matches.size(), 5U);
    EXPECT_EQ(matches[0].entry, "wall");
    EXPECT_EQ(idsOf(matches[0].regions), (Ids{"f1", "f4"}));
    EXPECT_TRUE(matches[0].parts.empty());
    EXPECT_EQ(matches[1].entry, "x");
    EXPECT_TRUE(matches[1].regions.empty());
    EXPECT_EQ(idsOf(matches[2].parts), Ids{"p2"});
    EXPECT_EQ(matches[3].entry, "wall");
    EXPECT_EQ(matches[4].entry, "\"");
    EXPECT_TRUE(matches[4].regions.empty());
}

TEST_F(Locations, ManyEntriesForManyRegionsStayQuick)
{
    Part* many = topology->createPart(3, "many");
    std::string location;
    for (int i = 0; i < 20000; ++i) {
        Body* body = many->createBody("n" + std::to_string(i));
        body->createFaceUse(many->createFace("same" + std::to_string(i)), 0, "");
        location += "many,n" + std::to_string(i) + ",";
    }
    EXPECT_EQ(topology->resolveInteriorLocation(location, unresolved).size(), 20000U);
    EXPECT_EQ(topology->resolveBoundaryLocation(location, unresolved).size(), 20000U);
    EXPECT_TRUE(unresolved.empty());
}

} // namespace
