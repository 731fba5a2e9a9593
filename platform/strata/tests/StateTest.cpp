#include "StrataSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace strata;

/// Every kind of record, and names that no list, line or markup would survive unescaped.
void fill(Model& model)
{
    Topology* topology = model.topology();
    Part* fluid = topology->createPart(3, "fluid");
    Part* odd = topology->createPart(-2, std::string("\0 \"'<&>,;%=\r\n\t\xFF\xC3\xBC", 17));
    odd->createBody("gone")->destroy(false);
    Body* core = fluid->createBody("core");
    Body* block = odd->createBody("core");
    Face* wall = fluid->createFace("wall");
    Face* skin = odd->createFace("");
    FaceUse* inner = core->createFaceUse(wall, 0, "inner");
    FaceUse* outer = block->createFaceUse(wall, 1, "");
    block->createFaceUse(skin, 1, " ");
    Composite* first = fluid->createComposite("first", {});
    Composite* second = fluid->createComposite("second", {block, wall, inner});
    first->modify({second, outer, core});
    model.createMeshMap(0)->setExternalBodies(core, {ExternalBody(5), ExternalBody(-2147483647 - 1)}, false);
    model.createMeshMap(-1)->setExternalFaces(wall, {ExternalFace(2147483647)}, false);
    model.createMeshMap(2)->setExternalFaceSides(
        inner, {{3, true}, {3, false}, {0, true}, {0, false}, {2147483648, true}}, false);
    model.createMeshMap(1)->setExternalFaceSides(inner, {{7, false}}, false);
}

const char* const filledRecords = "strata 1\n"
                                  "model =a%20model\n"
                                  "next 3 4 3 3\n"
                                  "part 1 3 =fluid\n"
                                  "part 2 -2 =%00%20\"'<&>,;%25=%0D%0A%09%FF%C3%BC\n"
                                  "body 2 1 =core\n"
                                  "body 3 2 =core\n"
                                  "face 1 1 =wall\n"
                                  "face 2 2 =\n"
                                  "use 1 0 2 =inner\n"
                                  "use 1 1 3 =\n"
                                  "use 2 1 3 =%20\n"
                                  "composite 1 1 =first\n"
                                  "composite 2 1 =second\n"
                                  "members 1 b2 f1:1 c2\n"
                                  "members 2 b3 f1 f1:0\n"
                                  "zones b2 0 -2147483648 5\n"
                                  "zones f1 -1 2147483647\n"
                                  "zones f1:0 1 7\n"
                                  "zones f1:0 2 0 -0 3 -3 -2147483648\n";

/// The records with the last line that belongs to them, for texts of the tests' own.
std::string sealed(const std::string& records)
{
    unsigned long long hash = 14695981039346656037ULL; // FNV-1a
    for (const char byte : records) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 1099511628211ULL;
    }
    char line[32];
    std::snprintf(line, sizeof line, "end %016llX", hash);
    return records + line;
}

TEST(State, IsThisText)
{
    Model model("a model");
    fill(model);
    EXPECT_EQ(model.state(), sealed(filledRecords));
    EXPECT_EQ(Model("").state(), sealed("strata 1\nmodel =\nnext 1 1 1 1\n"));
}

TEST(State, RebuildsAnEqualModel)
{
    Model model("a model");
    fill(model);
    const std::string state = model.state();
    Model other("other");
    Topology* topology = other.topology();
    TopologyMap* map = other.createMeshMap(2);
    Body* old = topology->createPart(1, "old")->createBody("old");
    other.createMeshMap(5)->setExternalBodies(old, {ExternalBody(1)}, false);
    ASSERT_TRUE(other.reset(state));
    EXPECT_EQ(other.state(), state);
    EXPECT_EQ(other.name(), "a model");
    EXPECT_EQ(other.topology(), topology) << "handed out once for the life of the model";
    EXPECT_EQ(other.createMeshMap(2), map);
    Part* fluid = topology->findPartByName("fluid");
    ASSERT_NE(fluid, nullptr);
    EXPECT_EQ(fluid->topology(), topology);
    EXPECT_EQ(map->externalFaceSides(fluid->findFaceUseByName("inner")).size(), 5U);
    std::vector<std::string> unresolved;
    EXPECT_EQ(idsOf(topology->resolveInteriorLocation("first", unresolved)), (Ids{"b2", "b3"}));
    EXPECT_EQ(fluid->createBody("next")->id(), "b4") << "the counters travel";
    EXPECT_TRUE(map->setExternalBodies(fluid->findBodyByName("next"), {ExternalBody(1)}, false));
}

TEST(State, OfEqualModelsIsEqual)
{
    Model one("");
    Model two("");
    for (Model* model : {&one, &two})
        fill(*model);
    Part* part = two.topology()->findPartByName("fluid");
    part->rename("x");
    part->rename("fluid");
    two.createMeshMap(77);
    two.createMeshMap(78)->setExternalBodies(part->findBodyByName("core"), {}, false);
    EXPECT_EQ(one.state(), two.state());
}

TEST(State, CutTextsChangeNothing)
{
    Model model("a model");
    fill(model);
    const std::string state = model.state();
    Model other("kept");
    other.topology()->createPart(1, "kept");
    const std::string before = other.state();
    for (std::size_t length = 0; length < state.size(); ++length)
        ASSERT_FALSE(other.reset(state.substr(0, length))) << length;
    EXPECT_EQ(other.state(), before);
}

TEST(State, ChangedBytesAreNoticed)
{
    Model model("a model");
    fill(model);
    const std::string state = model.state();
    Model other("");
    for (std::size_t at = 0; at < state.size(); ++at)
        for (const int bit : {1, 32, 128}) {
            std::string damaged = state;
            damaged[at] = static_cast<char>(damaged[at] ^ bit);
            ASSERT_FALSE(other.reset(damaged)) << at;
        }
    for (const std::string& text : {state + "\n", state + " ", "\n" + state, state + state, std::string(state + '\0')})
        EXPECT_FALSE(other.reset(text));
}

/// Texts whose checksum is right, and which yet are no state.
TEST(State, RecordsThatDoNotFitAreRefused)
{
    const std::string start = "strata 1\nmodel =\nnext 3 3 3 3\n";
    const std::string part = start + "part 1 3 =p\n";
    const std::string bodies = part + "body 1 1 =a\nbody 2 1 =b\n";
    const std::string faces = bodies + "face 1 1 =f\n";
    const std::string uses = faces + "use 1 0 1 =\n";
    const std::string composites = uses + "composite 1 1 =c\ncomposite 2 1 =d\n";
    for (const std::string& good : {start, part, bodies, faces, uses, composites}) {
        Model model("");
        EXPECT_TRUE(model.reset(sealed(good))) << good;
    }
    const std::string bad[] = {
        "",
        "\n",
        "strata 1\n",
        "strata 2\nmodel =\nnext 1 1 1 1\n",
        "strata 1\nnext 1 1 1 1\nmodel =\n",
        "strata 1\nmodel =\n",
        "strata 1\nmodel x\nnext 1 1 1 1\n",
        "strata 1\nmodel =%4\nnext 1 1 1 1\n",
        "strata 1\nmodel =%\nnext 1 1 1 1\n",
        "strata 1\nmodel =%zz\nnext 1 1 1 1\n",
        "strata 1\nmodel =%41\nnext 1 1 1 1\n", // not how "A" is written
        "strata 1\nmodel =%0a\nnext 1 1 1 1\n",
        "strata 1\nmodel =\nnext 0 1 1 1\n",
        "strata 1\nmodel =\nnext 1 1 1 2147483649\n",
        "strata 1\nmodel =\nnext 1 1 1\n",
        "strata 1\nmodel =\nnext 1 1 1 1 1\n",
        "strata 1\nmodel =\nnext +1 1 1 1\n",
        "strata 1\nmodel =\nnext 01 1 1 1\n",
        start + "\n",
        start + "what 1\n",
        start + "part 3 3 =p\n", // not below the counter
        start + "part 0 3 =p\n",
        start + "part 1 2147483648 =p\n",
        start + "part 1  3 =p\n",
        start + "part 1 3 =p \n",
        start + "part 2 3 =p\npart 1 3 =q\n", // not ascending
        part + "part 1 3 =q\n",
        part + "body 1 2 =a\n",
        bodies + "body 2 1 =c\n",
        part + "body 1 1 =a\nbody 2 1 =a\n", // a name twice
        part + "face 1 1 =f\nbody 1 1 =a\n", // records out of order
        faces + "use 1 2 1 =\n",
        faces + "use 2 0 1 =\n",
        faces + "use 1 0 3 =\n",
        uses + "use 1 0 2 =\n",
        faces + "use 1 0 1 =n\nuse 1 1 1 =n\n",
        composites + "members 1\n",
        composites + "members 1 c1\n",
        composites + "members 1 c2\nmembers 2 c1\n",
        composites + "members 1 b3\n",
        composites + "members 1 f1:1\n",
        composites + "members 1 f1:00\n",
        composites + "members 1 b1 b1\n",
        composites + "members 1 b2 b1\n",
        composites + "members 1 p1\n",
        composites + "members 1 :\n",
        composites + "members 1 b1:0\n",
        composites + "members 3 b1\n",
        uses + "zones b1 0\n",
        uses + "zones b1\n",
        uses + "zones b1 0 2147483648\n",
        uses + "zones b1 0 2 1\n",
        uses + "zones b1 0 1 1\n",
        uses + "zones b1 0 1\nzones b1 0 2\n",
        uses + "zones b1 1 1\nzones b1 0 2\n",
        uses + "zones f1:0 0 -3 3\n",
        uses + "zones f1:0 0 2147483648\n",
        uses + "zones f1:0 0 --1\n",
        uses + "zones f1:0 0 -\n",
        composites + "zones c1 0 1\n",
    };
    Model model("kept");
    const std::string before = model.state();
    for (const std::string& records : bad)
        EXPECT_FALSE(model.reset(sealed(records))) << records;
    EXPECT_EQ(model.state(), before);
}

TEST(State, CarriesCountersToTheirEnd)
{
    Model model("");
    ASSERT_TRUE(model.reset(sealed("strata 1\nmodel =\nnext 2147483647 2147483648 2147483648 2147483648\n")));
    Part* last = model.topology()->createPart(3, "last");
    ASSERT_NE(last, nullptr);
    EXPECT_EQ(last->id(), "p2147483647");
    EXPECT_EQ(model.topology()->findPartById("p2147483647"), last);
    EXPECT_EQ(model.topology()->createPart(3, "one too many"), nullptr);
    EXPECT_EQ(last->createBody("b"), nullptr);
    EXPECT_EQ(last->createFace("f"), nullptr);
    EXPECT_EQ(last->createComposite("c", {}), nullptr);
    EXPECT_TRUE(model.reset(model.state()));
}

TEST(State, AndEndOfManyRegionsStayQuick)
{
    Model model("");
    Part* part = model.topology()->createPart(3, "part");
    Composite* all = part->createComposite("all", {});
    RegionSet members;
    for (int i = 0; i < 20000; ++i) {
        Body* body = part->createBody("body" + std::to_string(i));
        members.insert(body->createFaceUse(part->createFace(""), i % 2, ""));
        model.createMeshMap(i)->setExternalBodies(body, {ExternalBody(i)}, false);
    }
    ASSERT_TRUE(all->modify(members));
    const std::string state = model.state();
    ASSERT_TRUE(model.reset(state));
    EXPECT_EQ(model.state(), state);
    model.topology()->findPartByName("part")->destroy();
    EXPECT_EQ(model.state(), sealed("strata 1\nmodel =\nnext 2 20001 20001 2\n"));
    ASSERT_TRUE(model.reset(state));
    model.topology()->clear();
    EXPECT_EQ(model.state(), sealed("strata 1\nmodel =\nnext 2 20001 20001 2\n"));
}

} // namespace
