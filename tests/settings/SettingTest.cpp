#include "arbor/TProperty.h"
#include "KelSetting.h"
#include "KelSettingObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr char className[] = "meridyn::KelSettingObject";

KelSettingObject* makeObject(const std::string& name, arbor::TObject* parent = nullptr)
{
    return dynamic_cast<KelSettingObject*>(arbor::TObject::newObject(className, name, parent));
}

std::string blanks(int count)
{
    return std::string(static_cast<std::size_t>(count), ' ');
}

/// A node that tells how many of its kind live, to hang into trees whose end is to be seen.
class Witness : public arbor::TObject {
public:
    static int alive;

    static void hangInto(arbor::TObject* parent)
    {
        static const bool isKnown = registerNewObjectClass("Witness", &make, "TObject", "witness");
        ASSERT_TRUE(isKnown);
        ASSERT_NE(newObject("Witness", "w", parent), nullptr);
    }
    ~Witness() override { --alive; }

private:
    Witness(const std::string& name, arbor::TObject* parent) : TObject(name, parent) { ++alive; }
    static arbor::TObject* make(const std::string& name, arbor::TObject* parent) { return new Witness(name, parent); }
};

int Witness::alive = 0;

/// Every test ends with all trees deleted.
class Ownership : public ::testing::Test {
protected:
    ~Ownership() override { EXPECT_EQ(Witness::alive, 0); }

    static KelSettingObject* tree(const std::string& name)
    {
        KelSettingObject* root = makeObject(name);
        Witness::hangInto(root);
        return root;
    }
};

TEST(Registration, LibraryRegistersItsNodeClassWhileLoading)
{
    for (const char* name : {className, "KelSettingObject"}) {
        arbor::TObject* object = arbor::TObject::newObject(name, "n", nullptr);
        ASSERT_NE(dynamic_cast<KelSettingObject*>(object), nullptr) << name;
        EXPECT_EQ(arbor::TBase::className(object), className);
        EXPECT_TRUE(object->isObject());
        EXPECT_FALSE(object->isProperty());
        EXPECT_FALSE(object->isRegion());
        EXPECT_FALSE(object->isZone());
        EXPECT_FALSE(object->isDomain());
        delete object;
    }
    EXPECT_EQ(arbor::TObject::baseClassName(className), "TObject");
}

TEST(Handle, FreshHandlesAreMarkedAsTheyAreValid)
{
    const KelSetting none;
    EXPECT_FALSE(none.isValid());
    EXPECT_FALSE(none);
    EXPECT_FALSE(none.isTouched());
    const KelSetting null(nullptr, true);
    EXPECT_FALSE(null.isValid());
    EXPECT_FALSE(null.isTouched());
    KelSetting root = KelSetting::get("r");
    EXPECT_TRUE(root.isValid());
    EXPECT_TRUE(root);
    EXPECT_TRUE(root.isTouched());
    root.setTouched(false);
    EXPECT_FALSE(root.isTouched());
    root.getGroup("a", true);
    for (const KelSetting& group : {root.group("a"), root.group(0), root.groups()[0], root.getGroup("a", false)}) {
        EXPECT_TRUE(group.isValid());
        EXPECT_TRUE(group.isTouched());
    }
    for (const KelSetting& group : {root.group("b"), root.group(1), root.group(-1), root.getGroup("b", false)}) {
        EXPECT_FALSE(group.isValid());
        EXPECT_FALSE(group.isTouched());
    }
}

TEST_F(Ownership, OwningHandlesDeleteTheirTreeAndOthersDoNot)
{
    KelSettingObject* object = tree("r");
    {
        const KelSetting handle(object, false);
    }
    EXPECT_EQ(Witness::alive, 1);
    {
        const KelSetting handle(object, true);
    }
    EXPECT_EQ(Witness::alive, 0);
}

TEST_F(Ownership, CopiesDoNotOwn)
{
    KelSetting owner(tree("r"), true);
    owner.setTouched(false);
    {
        const KelSetting copy(owner); // NOLINT(performance-unnecessary-copy-initialization): is what is tested
        EXPECT_TRUE(copy.isValid());
        EXPECT_FALSE(copy.isTouched()) << "the mark is copied";
        KelSetting assigned;
        assigned = owner;
        EXPECT_TRUE(assigned.isValid());
        EXPECT_FALSE(assigned.isTouched());
    }
    EXPECT_EQ(Witness::alive, 1);
    EXPECT_TRUE(owner.isValid());
}

TEST_F(Ownership, MovesHandItOn)
{
    KelSetting first(tree("r"), true);
    KelSetting second(std::move(first));
    EXPECT_FALSE(first.isValid()); // NOLINT: what a move leaves is what is tested
    EXPECT_FALSE(first.isTouched());
    EXPECT_TRUE(second.isValid());
    EXPECT_TRUE(second.isTouched());
    KelSetting third;
    third = std::move(second);
    EXPECT_FALSE(second.isValid()); // NOLINT
    EXPECT_FALSE(second.isTouched());
    EXPECT_EQ(Witness::alive, 1);
    first = KelSetting();
    second = KelSetting();
    EXPECT_EQ(Witness::alive, 1);
    third = KelSetting();
    EXPECT_EQ(Witness::alive, 0);
    static_assert(std::is_nothrow_move_constructible_v<KelSetting>);
}

TEST_F(Ownership, AssigningDeletesTheOldTree)
{
    KelSetting owner(tree("r"), true);
    owner = KelSetting(tree("s"), true);
    EXPECT_EQ(Witness::alive, 1);
    EXPECT_EQ(owner.dump(false, true).substr(0, 2), "/s");
    const KelSetting other(tree("t"), true);
    owner = other;
    EXPECT_EQ(Witness::alive, 1);
    EXPECT_EQ(owner.dump(false, true).substr(0, 2), "/t");
}

TEST_F(Ownership, SelfAssignmentKeepsTheTree)
{
    KelSetting owner(tree("r"), true);
    KelSetting& same = owner;
    owner = same;
    EXPECT_TRUE(owner.isValid());
    owner = std::move(same);
    EXPECT_TRUE(owner.isValid());
    owner.swap(same);
    EXPECT_TRUE(owner.isValid());
    const KelSetting copy(owner);
    owner = copy; // the same object by way of a handle that does not own
    EXPECT_EQ(Witness::alive, 1);
    KelSetting moved(owner);
    owner = std::move(moved);
    EXPECT_EQ(Witness::alive, 1);
    KelSetting watcher(owner);
    watcher = std::move(owner);
    EXPECT_EQ(Witness::alive, 1);
    EXPECT_TRUE(watcher.isValid());
}

TEST_F(Ownership, AHandleOverAPartOfTheDeletedTreeBecomesInvalid)
{
    KelSetting walker(tree("r"), true);
    walker = walker.getGroup("a/b", true);
    EXPECT_EQ(Witness::alive, 0);
    EXPECT_FALSE(walker.isValid());
    EXPECT_FALSE(walker.isTouched());
}

TEST_F(Ownership, SwapExchangesAllThree)
{
    KelSetting owner(tree("r"), true);
    owner.setTouched(false);
    {
        KelSetting other;
        other.setTouched(true);
        EXPECT_EQ(&owner.swap(other), &owner);
        EXPECT_FALSE(owner.isValid());
        EXPECT_TRUE(owner.isTouched());
        EXPECT_TRUE(other.isValid());
        EXPECT_FALSE(other.isTouched());
    }
    EXPECT_EQ(Witness::alive, 0) << "deleted with the handle that got the ownership";
}

TEST_F(Ownership, SetObjectLeavesOwnershipAndTheOldObject)
{
    KelSettingObject* old = tree("old");
    {
        KelSetting owner(old, true);
        owner.setTouched(false);
        EXPECT_EQ(&owner.setObject(tree("new")), &owner);
        EXPECT_TRUE(owner.isTouched());
        EXPECT_EQ(owner.dump(false, true).substr(0, 4), "/new");
    }
    EXPECT_EQ(Witness::alive, 1) << "the new one is deleted, the old one is not";
    delete old;
    EXPECT_EQ(Witness::alive, 0);
    KelSettingObject* kept = tree("kept");
    {
        KelSetting watcher;
        watcher.setObject(kept);
    }
    EXPECT_EQ(Witness::alive, 1) << "a handle that did not own still does not";
    delete kept;
    KelSetting none;
    none.setObject(nullptr);
    EXPECT_FALSE(none.isValid());
    EXPECT_TRUE(none.isTouched());
}

TEST_F(Ownership, HandlesOfGroupsNeverOwn)
{
    KelSetting root(tree("r"), true);
    {
        const KelSetting made = root.getGroup("a", true);
        const KelSetting found = root.getGroup("a", false);
        const std::vector<KelSetting> all = root.groups();
        const KelSetting named = root.group("a");
        const KelSetting indexed = root.group(1);
    }
    EXPECT_TRUE(root.group("a").isValid());
    EXPECT_EQ(Witness::alive, 1);
}

TEST(Groups, AreListedInOrderWithInvalidHandlesForOtherClasses)
{
    KelSettingObject* object = makeObject("r");
    const KelSetting root(object, true);
    EXPECT_EQ(root.groupCount(), 0);
    EXPECT_THAT(root.groups(), IsEmpty());
    makeObject("b", object);
    arbor::TObject::newObject("TZone", "z", object);
    makeObject("a", object);
    EXPECT_EQ(root.groupCount(), 3);
    const std::vector<KelSetting> groups = root.groups();
    ASSERT_EQ(groups.size(), 3U);
    EXPECT_EQ(groups[0].dump(false, true).substr(0, 3), "/b ");
    EXPECT_FALSE(groups[1].isValid());
    EXPECT_FALSE(groups[1].isTouched());
    EXPECT_EQ(groups[2].dump(false, true).substr(0, 3), "/a ");
    EXPECT_FALSE(root.group("z").isValid());
    EXPECT_FALSE(root.group(1).isValid());
}

/// Asks everything of a handle that stands for no node.
void expectEmptyAnswers(const KelSetting& none)
{
    EXPECT_FALSE(none.group("x").isValid());
    EXPECT_FALSE(none.group(0).isValid());
    EXPECT_FALSE(none.group(-1).isValid());
    EXPECT_EQ(none.groupCount(), 0);
    EXPECT_THAT(none.groups(), IsEmpty());
    EXPECT_FALSE(none.getGroup("x", false).isValid());
    EXPECT_FALSE(none.getGroup("x/y", true).isValid());
    EXPECT_FALSE(none.attribute("x").isValid());
    EXPECT_THAT(none.attributeNames(), IsEmpty());
    EXPECT_THAT(none.attributes(), IsEmpty());
    for (const bool create : {false, true}) {
        for (const char* path : {"x", "x/y", "", "/"}) {
            EXPECT_FALSE(none.getAttributeBool(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeInt(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeDouble(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeString(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeBoolVector(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeIntVector(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeDoubleVector(path, create).isValid()) << path;
            EXPECT_FALSE(none.getAttributeStringVector(path, create).isValid()) << path;
        }
    }
    EXPECT_EQ(none.dump(true, false), "");
    EXPECT_EQ(none.toSettingString(), "");
    EXPECT_FALSE(none.isTouched());
}

TEST(InvalidSetting, AnswersEverything)
{
    expectEmptyAnswers(KelSetting());
    KelSetting moved = KelSetting::get("r");
    const KelSetting taken = std::move(moved);
    expectEmptyAnswers(moved); // NOLINT(bugprone-use-after-move): which is the question
    expectEmptyAnswers(taken.group("typo"));
    expectEmptyAnswers(KelSetting::fromSettingString("no XML"));
}

TEST(InvalidSetting, LookUpsOfItsAttributesAreSafe)
{
    const KelSetting root = KelSetting::get("r");
    const KelSettingAttribute none = root.group("typo").group("typo").attribute("x");
    EXPECT_FALSE(none.isScalar() || none.isVector() || none.isBool() || none.isInt() || none.isDouble());
    EXPECT_FALSE(none.toBool());
    EXPECT_EQ(none.toInt(), 0);
    EXPECT_EQ(none.toDouble(), 0.0);
    EXPECT_EQ(none.toString(), "");
    EXPECT_THAT(none.toIntVector(), IsEmpty());
    EXPECT_THAT(none.toStringVector(), IsEmpty());
}

TEST(InvalidSetting, WritingToItChangesNothing)
{
    const KelSetting root = KelSetting::get("r");
    root.getAttributeInt("x", true) = 1;
    const std::string before = root.toSettingString();
    KelSetting none = root.group("typo");
    none.getAttributeInt("x", true) = 7;
    none.getAttributeString("a/b", true) = "text";
    none.getGroup("x/y", true).getAttributeBool("z", true) = true;
    EXPECT_EQ(none.getAttributeInt("x", true).toInt(), 0);
    none.setTouched(true);
    EXPECT_FALSE(none.isValid());
    EXPECT_EQ(root.toSettingString(), before);
}

TEST(GetGroup, EmptyPathIsInvalid)
{
    const KelSetting root = KelSetting::get("r");
    EXPECT_FALSE(root.getGroup("", true).isValid());
    EXPECT_FALSE(root.getGroup("", false).isValid());
    EXPECT_EQ(root.groupCount(), 0);
}

TEST(GetGroup, WithoutCreateNothingIsMadeAndNoPathFollowed)
{
    const KelSetting root = KelSetting::get("r");
    EXPECT_FALSE(root.getGroup("x", false).isValid());
    EXPECT_FALSE(root.getGroup("x/y", false).isValid());
    EXPECT_EQ(root.groupCount(), 0);
    root.getGroup("x/y", true);
    EXPECT_TRUE(root.getGroup("x", false).isValid());
    EXPECT_FALSE(root.getGroup("x/y", false).isValid()); // kept
}

TEST(GetGroup, MakesThePathOnce)
{
    const KelSetting root = KelSetting::get("r");
    const KelSetting first = root.getGroup("a/b", true);
    first.getAttributeInt("x", true) = 1;
    EXPECT_TRUE(first.isTouched());
    const KelSetting second = root.getGroup("a/b", true);
    EXPECT_EQ(second.attribute("x").property(), first.attribute("x").property());
    EXPECT_EQ(root.groupCount(), 1);
    EXPECT_EQ(root.group("a").groupCount(), 1);
    EXPECT_EQ(root.group("a").group("b").attribute("x").property(), first.attribute("x").property());
}

TEST(GetGroup, EmptyPiecesAndBlanksAroundPiecesDoNotCount)
{
    const KelSetting root = KelSetting::get("r");
    root.getGroup("one/two/three", true).getAttributeInt("x", true);
    for (const char* path : {"one//two/three", "/one/two/three/", "one/two//three//", " one /\ttwo/ three"})
        EXPECT_TRUE(root.getGroup(path, true).attribute("x").isValid()) << path;
    EXPECT_EQ(root.groupCount(), 1);
    EXPECT_TRUE(root.getGroup("one/", true).group("two").isValid());
    root.getGroup("a b/c", true);
    EXPECT_TRUE(root.group("a b").group("c").isValid()) << "blanks inside stay";
    EXPECT_EQ(root.groupCount(), 2);
}

TEST(GetGroup, APathWithoutPiecesIsAName)
{
    const KelSetting root = KelSetting::get("r");
    for (const char* path : {"/", "//", " / ", " ", " x "}) {
        EXPECT_TRUE(root.getGroup(path, true).isValid()) << path;
        EXPECT_TRUE(root.group(path).isValid()) << path;
        EXPECT_TRUE(root.getGroup(path, false).isValid()) << path;
    }
    EXPECT_EQ(root.groupCount(), 5);
}

TEST(GetGroup, AGroupThatBearsTheRestOfThePathComesFirst)
{
    KelSettingObject* object = makeObject("r");
    const KelSetting root(object, true);
    KelSettingObject* a = makeObject("a", object);
    makeObject("x", makeObject("b/c", a));
    makeObject("c", makeObject("b", a));
    EXPECT_TRUE(root.getGroup("a/b/c", true).group("x").isValid()) << "b/c right under a, not c under b";
    makeObject("y", makeObject("a/b/c", object));
    EXPECT_TRUE(root.getGroup("a/b/c", true).group("y").isValid());
    EXPECT_TRUE(root.getGroup("a/b/c", false).group("y").isValid());
    EXPECT_TRUE(root.getGroup("a//b/c", true).group("x").isValid()) << "another path to the first";
}

TEST(GetGroup, PathsTooDeepMakeNothing)
{
    const KelSetting root = KelSetting::get("r");
    std::string deep;
    for (int i = 0; i < 500000; ++i)
        deep += "g/";
    EXPECT_FALSE(root.getGroup(deep, true).isValid());
    EXPECT_EQ(root.groupCount(), 0);
    const std::string deepest = deep.substr(0, 2 * (arbor::TObject::maxDepth - 1));
    const KelSetting last = root.getGroup(deepest, true);
    EXPECT_TRUE(last.isValid());
    EXPECT_FALSE(last.getGroup("g", true).isValid());
    EXPECT_FALSE(root.getGroup(deepest + "g", true).isValid());
    const KelSetting back = KelSetting::fromSettingString(root.toSettingString());
    ASSERT_TRUE(back.isValid());
    EXPECT_EQ(back.dump(true, false), root.dump(true, false));
}

TEST(ListedAttributes, KeepTheirOrder)
{
    const KelSetting root = KelSetting::get("r");
    EXPECT_THAT(root.attributes(), IsEmpty());
    root.getAttributeInt("z", true) = 1;
    root.getAttributeBool("a", true) = true;
    EXPECT_THAT(root.attributeNames(), ElementsAre("z", "a"));
    const std::vector<KelSettingAttribute> all = root.attributes();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].property(), root.attribute("z").property());
    EXPECT_EQ(all[1].toString(), "true");
    EXPECT_FALSE(root.attribute("b").isValid());
    EXPECT_FALSE(root.attribute("r").isValid());
}

TEST(Dump, ShowsNodeValuesAndGroups)
{
    const KelSetting root = KelSetting::get("solver");
    root.getAttributeBool("steady", true) = true;
    root.getAttributeString("models/text", true) = "one\ntwo";
    const std::string head = "/solver" + blanks(23) + "\n";
    const std::string group = "  /models" + blanks(21) + "\n";
    EXPECT_EQ(root.dump(true, false), head + "  steady = true\n" + group + "    text = one\n    two\n");
    EXPECT_EQ(root.dump(false, false), head + "  steady = true\n");
    EXPECT_EQ(root.dump(true, true), head + group);
    EXPECT_EQ(root.dump(false, true), head);
}

TEST(Dump, LabelsOfThirtyColumnsAndMoreAreWhole)
{
    for (const int length : {28, 29, 30, 40}) {
        const std::string label = "/" + std::string(static_cast<std::size_t>(length), 'n');
        const std::string padding = length == 28 ? " " : "";
        KelSettingObject* object = makeObject(label.substr(1));
        const KelSetting root(object, true);
        EXPECT_EQ(root.dump(false, false), label + padding + "\n");
        object->setSecondName("label");
        EXPECT_EQ(root.dump(false, false), label + padding + " label\n");
    }
}

TEST(Dump, SecondNameShowsWhenItDiffers)
{
    KelSettingObject* object = makeObject("n");
    const KelSetting root(object, true);
    object->setSecondName("n");
    EXPECT_EQ(root.dump(false, false), "/n" + blanks(28) + "\n");
    object->setSecondName("m");
    EXPECT_EQ(root.dump(false, false), "/n" + blanks(28) + " m\n");
    object->setSecondName("");
    EXPECT_EQ(root.dump(false, false), "/n" + blanks(28) + "\n");
}

TEST(Dump, IndentCountsInTheFieldOfTheLabel)
{
    KelSettingObject* object = makeObject("a");
    const KelSetting root(object, true);
    arbor::TProperty::newProperty("TPropertyType<int>", "x", nullptr, object);
    std::ostringstream out;
    object->print(out, 5, false, false);
    EXPECT_EQ(out.str(), "     /a" + blanks(23) + "\n       x = 0\n");
}

TEST(SettingString, ReadsBackAsAnOwnedEqualTree)
{
    const KelSetting root = KelSetting::get("solver");
    root.getAttributeBool("steady", true) = true;
    root.getAttributeDouble("models/energy/limit", true) = 0.1;
    root.getAttributeStringVector("models/names", true) = std::vector<std::string>{"a", "b,c"};
    const KelSetting back = KelSetting::fromSettingString(root.toSettingString());
    ASSERT_TRUE(back.isValid());
    EXPECT_TRUE(back.isTouched());
    EXPECT_EQ(back.dump(true, false), root.dump(true, false));
    EXPECT_EQ(back.toSettingString(), root.toSettingString());
    EXPECT_TRUE(back.group("models").group("energy").isValid()) << "groups are setting objects again";
    const KelSetting part = KelSetting::fromSettingString(root.group("models").toSettingString());
    EXPECT_EQ(part.dump(true, false), root.group("models").dump(true, false));
}

TEST(SettingString, TheFormOfASetting)
{
    const KelSetting root = KelSetting::get("r");
    root.getAttributeInt("x", true) = 5;
    EXPECT_EQ(root.toSettingString(), "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                      "<kelSettingObject arbor=\"1\" name=\"r\">\n"
                                      "  <property name=\"x\" type=\"int\" value=\"5\"/>\n"
                                      "</kelSettingObject>\n");
}

TEST(SettingString, OtherTextsAndRootsGiveAnInvalidHandle)
{
    for (const char* text : {"", "x", "<a/>", "<object arbor='1' name='r'/>", "<zone arbor='1' name='r'/>",
                             "<kelSettingObject name='r'/>", "<kelSettingObject arbor='1' name='r'>"}) {
        const KelSetting none = KelSetting::fromSettingString(text);
        EXPECT_FALSE(none.isValid()) << text;
        EXPECT_FALSE(none.isTouched()) << text;
    }
    EXPECT_TRUE(KelSetting::fromSettingString("<kelSettingObject arbor='1' name='r'/>").isValid());
}

} // namespace
