#include "arbor/TDomain.h"
#include "arbor/TPropertyType.h"
#include "arbor/TRegion.h"
#include "arbor/TZone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace arbor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::unique_ptr<TObject> makeRoot(const std::string& name = "root")
{
    return std::unique_ptr<TObject>(TObject::newObject("TObject", name, nullptr));
}

TObject* addChild(TObject& parent, const std::string& name)
{
    return TObject::newObject("TObject", name, &parent);
}

TProperty* addInt(TObject& owner, const std::string& name, const std::string& value = "0")
{
    return TProperty::newProperty("TPropertyType<int>", name, &value, &owner);
}

TEST(Tree, FreshNodeHoldsNothing)
{
    const auto root = makeRoot("solver");
    EXPECT_EQ(root->name(), "solver");
    EXPECT_EQ(root->secondName(), "");
    EXPECT_EQ(root->parent(), nullptr);
    EXPECT_EQ(root->depth(), 1);
    EXPECT_EQ(root->nChild(), 0);
    EXPECT_EQ(root->size(), 0);
    EXPECT_EQ(root->nProperty(), 0);
    EXPECT_EQ(root->child(0), nullptr);
    EXPECT_EQ(root->child("a"), nullptr);
    EXPECT_EQ(root->property(0), nullptr);
    EXPECT_EQ(root->property("a"), nullptr);
    EXPECT_THAT(root->getContentNames(), IsEmpty());
    EXPECT_THAT(root->getPropertiesNames(), IsEmpty());
    EXPECT_FALSE(root->removeProperty("a"));
}

TEST(Tree, BuiltInClassesAnswerTheirTests)
{
    struct Case {
        const char* className;
        bool isRegion, isZone, isDomain;
    };
    for (const Case& c : {Case{"TObject", false, false, false}, Case{"TRegion", true, false, false},
                          Case{"TZone", false, true, false}, Case{"TDomain", false, false, true}}) {
        SCOPED_TRACE(c.className);
        const std::unique_ptr<TObject> node(TObject::newObject(c.className, "n", nullptr));
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(TBase::className(node.get()), c.className);
        EXPECT_TRUE(node->isObject());
        EXPECT_FALSE(node->isProperty());
        EXPECT_EQ(node->isRegion(), c.isRegion);
        EXPECT_EQ(node->isZone(), c.isZone);
        EXPECT_EQ(node->isDomain(), c.isDomain);
        EXPECT_EQ(TObject::baseClassName(c.className),
                  node->isRegion() || node->isZone() || node->isDomain() ? "TObject" : "");
    }
    EXPECT_EQ(TBase::className(nullptr), "");
}

TEST(Tree, ZoneHasTheKindThatWasSet)
{
    const std::unique_ptr<TObject> node(TObject::newObject("TZone", "z", nullptr));
    auto* zone = dynamic_cast<TZone*>(node.get());
    ASSERT_NE(zone, nullptr);
    const auto tests = [&] { return std::vector<bool>{zone->isCellZone(), zone->isFaceZone(), zone->isNodeZone()}; };
    EXPECT_THAT(tests(), ElementsAre(false, false, false));
    zone->setKind(TZone::Cell);
    EXPECT_THAT(tests(), ElementsAre(true, false, false));
    zone->setKind(TZone::Face);
    EXPECT_THAT(tests(), ElementsAre(false, true, false));
    zone->setKind(TZone::Node);
    EXPECT_THAT(tests(), ElementsAre(false, false, true));
    zone->setKind(static_cast<TZone::Kind>(9));
    EXPECT_EQ(zone->kind(), TZone::None);
}

TEST(Tree, ChildrenKeepTheirOrderAndTheFirstOfANameIsFound)
{
    const auto root = makeRoot();
    TObject* first = addChild(*root, "b");
    TObject* second = addChild(*root, "a");
    TObject* third = addChild(*root, "b");
    EXPECT_EQ(root->nChild(), 3);
    EXPECT_EQ(root->size(), 3);
    EXPECT_EQ(root->child(1), second);
    EXPECT_EQ(root->child(3), nullptr);
    EXPECT_EQ(root->child(-1), nullptr);
    EXPECT_EQ(root->child("b"), first);
    EXPECT_EQ(first->depth(), 2);
    EXPECT_THAT(root->getContentNames(), ElementsAre("b", "a", "b"));
    delete first;
    EXPECT_EQ(root->child("b"), third);
    EXPECT_THAT(root->getContentNames(), ElementsAre("a", "b"));
}

TEST(Tree, ALaterChildOfANameIsFoundNoMoreOnceItIsGone)
{
    for (const int others : {0, 1000}) { // looked through, and looked up
        const auto root = makeRoot();
        TObject* same[4] = {};
        for (TObject*& child : same) {
            child = addChild(*root, "same");
            for (int i = 0; i < others; ++i)
                addChild(*root, "other");
        }
        delete same[1];
        EXPECT_TRUE(same[2]->setName("renamed"));
        EXPECT_EQ(root->child("same"), same[0]);
        delete same[0];
        EXPECT_EQ(root->child("same"), same[3]) << others;
        EXPECT_EQ(root->child("renamed"), same[2]) << others;
        EXPECT_TRUE(same[2]->setName("same"));
        EXPECT_EQ(root->child("same"), same[2]) << "the first in their order, with " << others;
    }
}

TEST(Tree, NamesAreNeverPaths)
{
    const auto root = makeRoot();
    TObject* slash = addChild(*root, "a/b");
    addChild(*addChild(*root, "a"), "b");
    EXPECT_EQ(root->child("a/b"), slash);
    EXPECT_EQ(root->child("a/c"), nullptr);
    TObject* blank = addChild(*root, "");
    EXPECT_EQ(root->child(""), blank);
}

TEST(Tree, PropertyNamesAreUniqueAndBesideThoseOfChildren)
{
    const auto root = makeRoot();
    TProperty* x = addInt(*root, "x", "1");
    TObject* child = addChild(*root, "x");
    EXPECT_EQ(addInt(*root, "x", "2"), nullptr);
    EXPECT_EQ(x->toInt(), 1);
    EXPECT_EQ(root->property("x"), x);
    EXPECT_EQ(root->child("x"), child);
    EXPECT_EQ(x->owner(), root.get());
    addInt(*root, "a");
    EXPECT_THAT(root->getPropertiesNames(), ElementsAre("x", "a"));
    EXPECT_EQ(root->nProperty(), 2);
    EXPECT_EQ(root->property(1)->name(), "a");
    EXPECT_EQ(root->property(2), nullptr);
    EXPECT_EQ(root->property(-1), nullptr);
    EXPECT_TRUE(root->removeProperty("x"));
    EXPECT_FALSE(root->removeProperty("x"));
    addInt(*root, "x");
    EXPECT_THAT(root->getPropertiesNames(), ElementsAre("a", "x")) << "a new property goes to the end";
}

TEST(Tree, RenamingKeepsThePlaceAndTheLookUp)
{
    for (const int others : {0, 40}) { // a scan, and a table
        SCOPED_TRACE(others);
        const auto root = makeRoot();
        TObject* a = addChild(*root, "a");
        TObject* b = addChild(*root, "b");
        TProperty* x = addInt(*root, "x");
        TProperty* y = addInt(*root, "y");
        for (int i = 0; i < others; ++i) {
            addChild(*root, std::to_string(i));
            addInt(*root, std::to_string(i));
        }
        EXPECT_TRUE(a->setName("b"));
        EXPECT_EQ(root->child("a"), nullptr);
        EXPECT_EQ(root->child("b"), a) << "the older of the two";
        EXPECT_TRUE(a->setName("c"));
        EXPECT_EQ(root->child("b"), b);
        EXPECT_TRUE(b->setName(a->name()));
        EXPECT_EQ(root->child("c"), a);
        EXPECT_FALSE(x->setName("y"));
        EXPECT_EQ(x->name(), "x");
        EXPECT_TRUE(x->setName("x"));
        EXPECT_TRUE(y->setName("z"));
        EXPECT_EQ(root->property("y"), nullptr);
        EXPECT_EQ(root->property("z"), y);
        EXPECT_EQ(root->property(1), y);
    }
    const auto root = makeRoot();
    EXPECT_TRUE(root->setName("other"));
    EXPECT_EQ(root->name(), "other");
}

TEST(Tree, DeletingAPartLeavesItsOwnerIntact)
{
    const auto root = makeRoot();
    TObject* a = addChild(*root, "a");
    addInt(*addChild(*a, "deep"), "x");
    TProperty* x = addInt(*root, "x");
    addInt(*root, "y");
    delete a;
    delete x;
    EXPECT_EQ(root->nChild(), 0);
    EXPECT_THAT(root->getPropertiesNames(), ElementsAre("y"));
}

TEST(Tree, DeletesEveryNodeOnce)
{
    struct Counted : TObject {
        static int& alive()
        {
            static int count = 0;
            return count;
        }
        Counted(const std::string& name, TObject* parent) : TObject(name, parent) { ++alive(); }
        ~Counted() override { --alive(); }
        static TObject* make(const std::string& name, TObject* parent) { return new Counted(name, parent); }
    };
    ASSERT_TRUE(TObject::registerNewObjectClass("Counted", &Counted::make, "TObject", "counted"));
    TObject* root = TObject::newObject("Counted", "r", nullptr);
    for (int i = 0; i < 5; ++i) {
        TObject* child = TObject::newObject("Counted", "c", root);
        for (int k = 0; k < 30; ++k)
            TObject::newObject("Counted", "g", child);
    }
    EXPECT_EQ(Counted::alive(), 156);
    delete root->child(2);
    EXPECT_EQ(Counted::alive(), 125);
    delete root;
    EXPECT_EQ(Counted::alive(), 0);
}

TEST(Tree, DepthIsLimitedAndTheDeepestTreeIsDeleted)
{
    static_assert(TObject::maxDepth >= 1000);
    static_assert(TObject::maxEntries >= 1000000);
    static_assert(TObject::maxTextSize >= 256000000);
    const auto root = makeRoot();
    TObject* node = root.get();
    for (int depth = 2; depth <= TObject::maxDepth; ++depth) {
        node = addChild(*node, "n");
        ASSERT_NE(node, nullptr) << depth;
    }
    EXPECT_EQ(node->depth(), TObject::maxDepth);
    EXPECT_EQ(addChild(*node, "n"), nullptr);
    EXPECT_EQ(node->nChild(), 0);
    EXPECT_NE(addInt(*node, "x"), nullptr);
}

TEST(Tree, ManySiblingsAreFoundRemovedAndRenamed)
{
    constexpr int count = 100000;
    const auto name = [](int i) { return "a rather long name of number " + std::to_string(i); };
    const auto root = makeRoot();
    for (int i = 0; i < count; ++i) {
        ASSERT_NE(addInt(*root, name(i)), nullptr);
        ASSERT_NE(addChild(*root, name(i % 1000)), nullptr);
    }
    for (int i = 0; i < count; ++i)
        ASSERT_EQ(root->property(name(i)), root->property(i));
    for (int i = 0; i < 1000; ++i)
        ASSERT_EQ(root->child(name(i)), root->child(i));
    for (int i = 0; i < count; ++i)
        ASSERT_TRUE(root->child(i)->setName("same"));
    EXPECT_EQ(root->child("same"), root->child(0));
    while (root->nChild() > 1)
        delete root->child(0);
    EXPECT_EQ(root->child("same"), root->child(0));
    for (int i = 0; i < count; i += 2)
        ASSERT_TRUE(root->removeProperty(name(i)));
    EXPECT_EQ(root->nProperty(), count / 2);
    EXPECT_EQ(root->property(name(0)), nullptr);
    EXPECT_EQ(root->property(0), root->property(name(1)));
    EXPECT_EQ(root->property(count / 2 - 1), root->property(name(count - 1)));
}

TEST(Classes, NewObjectKnowsFullAndShortNames)
{
    struct Valve : TObject {
        using TObject::TObject;
        static TObject* make(const std::string& name, TObject* parent) { return new Valve(name, parent); }
    };
    struct Pump : TObject {
        using TObject::TObject;
        static TObject* make(const std::string& name, TObject* parent) { return new Pump(name, parent); }
    };
    EXPECT_EQ(TObject::newObject("plant::Valve", "v", nullptr), nullptr);
    ASSERT_TRUE(TObject::registerNewObjectClass("plant::Valve", &Valve::make, "TObject", "valve"));
    ASSERT_TRUE(TObject::registerClassShortName("Valve", "plant::Valve"));
    const auto root = makeRoot();
    for (const char* name : {"plant::Valve", "Valve"}) {
        TObject* made = TObject::newObject(name, "v", root.get());
        ASSERT_NE(dynamic_cast<Valve*>(made), nullptr) << name;
        EXPECT_EQ(TBase::className(made), "plant::Valve");
        EXPECT_EQ(made->parent(), root.get());
    }
    EXPECT_EQ(TObject::baseClassName("Valve"), "TObject");
    EXPECT_EQ(TObject::newObject("valve", "v", root.get()), nullptr) << "the tag is no class name";

    const auto add = &TObject::registerNewObjectClass;
    EXPECT_FALSE(add("", &Pump::make, "TObject", "pump"));
    EXPECT_FALSE(add("plant::Pump", nullptr, "TObject", "pump"));
    EXPECT_FALSE(add("plant::Pump", &Pump::make, "Unknown", "pump"));
    EXPECT_FALSE(add("plant::Pump", &Pump::make, "plant::Pump", "pump"));
    for (const char* tag : {"", "property", "item", "valve", "zone", "1pump", "a b", "a<b", "p\xC3\xBCmpe"})
        EXPECT_FALSE(add("plant::Pump", &Pump::make, "TObject", tag)) << tag;
    EXPECT_FALSE(add("Valve", &Pump::make, "TObject", "pump")) << "a short name already";
    EXPECT_EQ(TObject::newObject("plant::Pump", "p", nullptr), nullptr);

    const auto shorten = &TObject::registerClassShortName;
    EXPECT_FALSE(shorten("", "plant::Valve"));
    EXPECT_FALSE(shorten("P", "plant::Pump"));
    EXPECT_FALSE(shorten("Valve", "TZone"));
    EXPECT_FALSE(shorten("TZone", "plant::Valve"));
    EXPECT_TRUE(shorten("Valve", "plant::Valve"));

    EXPECT_TRUE(add("plant::Valve", &Pump::make, "TZone", "valve2")) << "registered again";
    EXPECT_NE(dynamic_cast<Pump*>(TObject::newObject("Valve", "v", root.get())), nullptr);
    EXPECT_EQ(TObject::baseClassName("Valve"), "TZone");
    EXPECT_TRUE(add("plant::Pump", &Pump::make, "TObject", "valve")) << "the old tag is free again";
}

TEST(Print, ShowsNodeAndContentIndented)
{
    const auto root = makeRoot("r");
    addInt(*root, "x", "5");
    const std::string text = "one\ntwo";
    TProperty::newProperty("TPropertyType<std::string>", "t", &text, TObject::newObject("TZone", "z", root.get()));
    const auto printed = [&](bool recursive, bool objectsOnly) {
        std::ostringstream out;
        root->print(out, 1, recursive, objectsOnly);
        return out.str();
    };
    EXPECT_EQ(printed(false, false), " r (TObject)\n   x = 5\n");
    EXPECT_EQ(printed(true, true), " r (TObject)\n   z (TZone)\n");
    EXPECT_EQ(printed(true, false), " r (TObject)\n   x = 5\n   z (TZone)\n     t = one\n     two\n");
}

} // namespace
