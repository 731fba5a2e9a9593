#include "arbor/TPropertyType.h"
#include "KelSetting.h"
#include "KelSettingObject.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Strings = std::vector<std::string>;

/// A node with a value of every kind.
class Attributes : public ::testing::Test {
protected:
    Attributes()
    {
        for (const auto& [name, type, text] : std::vector<std::array<std::string, 3>>{{"bool", "bool", "true"},
                                                                                      {"int", "int", "7"},
                                                                                      {"double", "double", "2.5"},
                                                                                      {"string", "std::string", "text"},
                                                                                      {"float", "float", "0.5"}}) {
            make(name, "TPropertyType<" + type + ">", text);
            std::string list = text;
            list.append(",").append(text);
            make(name + "s", "TPropertyType<std::vector<" + type + "> >", list);
        }
    }
    ~Attributes() override { delete root; }

    void make(const std::string& name, const std::string& type, const std::string& text)
    {
        ASSERT_NE(arbor::TProperty::newProperty(type, name, &text, root), nullptr) << type;
    }

    KelSettingAttribute operator[](const std::string& name) const { return KelSettingAttribute(root->property(name)); }

    arbor::TObject* root = arbor::TObject::newObject("TObject", "root", nullptr);
};

std::string testsOf(KelSettingAttribute& a)
{
    std::string tests;
    for (const bool test : {a.isScalar(), a.isVector(), a.isBoolean(), a.isBool(), a.isInteger(), a.isInt(), a.isReal(),
                            a.isDouble(), a.isString()})
        tests += test ? '1' : '0';
    const auto& c = a; // the twins for const handles
    std::string twins;
    for (const bool test : {c.isScalar(), c.isVector(), c.isBoolean(), c.isBool(), c.isInteger(), c.isInt(), c.isReal(),
                            c.isDouble(), c.isString()})
        twins += test ? '1' : '0';
    EXPECT_EQ(tests, twins);
    return tests;
}

TEST_F(Attributes, TestsOfTheElementHoldForScalarsAndVectors)
{
    // scalar vector | boolean bool | integer int | real double | string
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"bool", "101100000"},  {"int", "100011000"},    {"double", "100000110"},  {"string", "100000001"},
        {"bools", "011100000"}, {"ints", "010011000"},   {"doubles", "010000110"}, {"strings", "010000001"},
        {"float", "100000000"}, {"floats", "010000000"}, {"missing", "000000000"}};
    for (const auto& [name, tests] : cases) {
        KelSettingAttribute a = (*this)[name];
        EXPECT_EQ(testsOf(a), tests) << name;
    }
}

TEST(Attribute, AliasesFollowARedirectedTest)
{
    struct AlwaysInteger : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isInteger() override { return true; }
    };
    struct AlwaysInt : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isInt() override { return true; }
    };
    struct AlwaysBoolean : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isBoolean() override { return true; }
    };
    struct AlwaysReal : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isReal() override { return true; }
    };
    AlwaysBoolean boolean;
    EXPECT_TRUE(static_cast<KelSettingAttribute&>(boolean).isBool());
    AlwaysReal real;
    EXPECT_TRUE(static_cast<KelSettingAttribute&>(real).isDouble());
    AlwaysInteger longName;
    KelSettingAttribute& a = longName;
    EXPECT_TRUE(a.isInt());
    EXPECT_FALSE(a.isReal());
    EXPECT_FALSE(a.isDouble());
    AlwaysInt shortName;
    EXPECT_FALSE(static_cast<KelSettingAttribute&>(shortName).isInteger());
}

TEST_F(Attributes, ARedirectedTestDoesNotMakeAValueOfAnotherType)
{
    struct AlwaysReal : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isReal() override { return true; }
    };
    AlwaysReal a(root->property("int"));
    a.asDouble() = 1e300;
    EXPECT_EQ(a.toInt(), 7);
}

TEST_F(Attributes, ARedirectedShapeClosesTheAccess)
{
    struct NeverVector : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isVector() override { return false; }
    };
    for (const char* name : {"bools", "ints", "doubles", "strings"}) {
        NeverVector a(root->property(name));
        a.asBoolVector() = {};
        a.asIntVector() = {};
        a.asDoubleVector() = {};
        a.asStringVector() = {};
        EXPECT_NE(a.toString(), "") << name;
    }
    struct NeverScalar : KelSettingAttribute {
        using KelSettingAttribute::KelSettingAttribute;
        bool isScalar() override { return false; }
    };
    for (const char* name : {"bool", "int", "double", "string"}) {
        NeverScalar a(root->property(name));
        const std::string before = a.toString();
        a.asBool() = false;
        a.asInt() = 0;
        a.asDouble() = 0;
        a.asString() = "";
        EXPECT_EQ(a.toString(), before) << name;
    }
}

TEST(Attribute, NullAnswersEverything)
{
    KelSettingAttribute a;
    EXPECT_EQ(a.property(), nullptr);
    EXPECT_FALSE(a.isValid());
    EXPECT_FALSE(a);
    EXPECT_EQ(testsOf(a), "000000000");
    EXPECT_EQ(a.toString(), "");
    EXPECT_FALSE(a.toBool());
    EXPECT_EQ(a.toInt(), 0);
    EXPECT_EQ(a.toDouble(), 0.0);
    EXPECT_THAT(a.toStringVector(), IsEmpty());
    EXPECT_THAT(a.toBoolVector(), IsEmpty());
    EXPECT_THAT(a.toIntVector(), IsEmpty());
    EXPECT_THAT(a.toDoubleVector(), IsEmpty());
    EXPECT_FALSE(a.asBool());
    EXPECT_EQ(a.asInt(), 0);
    EXPECT_EQ(a.asDouble(), 0.0);
    EXPECT_EQ(a.asString(), "");
    EXPECT_THAT(a.asBoolVector(), IsEmpty());
    EXPECT_THAT(a.asIntVector(), IsEmpty());
    EXPECT_THAT(a.asDoubleVector(), IsEmpty());
    EXPECT_THAT(a.asStringVector(), IsEmpty());
}

TEST_F(Attributes, HandlesAreOverThePropertyTheyWereGiven)
{
    KelSettingAttribute a = (*this)["int"];
    EXPECT_TRUE(a.isValid());
    EXPECT_TRUE(a);
    EXPECT_EQ(a.property(), root->property("int"));
    const KelSettingAttribute copy(a); // NOLINT(performance-unnecessary-copy-initialization): is what is tested
    EXPECT_EQ(copy.property(), a.property());
    KelSettingAttribute b;
    b = a;
    EXPECT_EQ(b.property(), a.property());
    EXPECT_EQ(&b.setProperty(root->property("double")), &b);
    EXPECT_EQ(b.toDouble(), 2.5);
    b = (*this)["int"]; // another handle, not another value
    EXPECT_EQ((*this)["double"].toDouble(), 2.5);
    EXPECT_FALSE(b.setProperty(nullptr).isValid());
}

TEST_F(Attributes, ValuesAreReachedInPlace)
{
    (*this)["bool"].asBool() = false;
    (*this)["int"].asInt() = -1;
    (*this)["double"].asDouble() = 0.25;
    (*this)["string"].asString() += "s";
    (*this)["bools"].asBoolVector().push_back(false);
    (*this)["ints"].asIntVector().push_back(8);
    (*this)["doubles"].asDoubleVector().clear();
    (*this)["strings"].asStringVector()[0] = "first";
    EXPECT_EQ((*this)["bool"].toString(), "false");
    EXPECT_EQ((*this)["int"].toString(), "-1");
    EXPECT_EQ((*this)["double"].toString(), "0.25");
    EXPECT_EQ((*this)["string"].toString(), "texts");
    EXPECT_EQ((*this)["bools"].toString(), "true,true,false");
    EXPECT_EQ((*this)["ints"].toString(), "7,7,8");
    EXPECT_EQ((*this)["doubles"].toString(), "");
    EXPECT_EQ((*this)["strings"].toString(), "first,text");
}

TEST_F(Attributes, AnotherShapeOrElementGivesTheFallback)
{
    const std::vector<std::string> names = {"bool",  "int",  "double",  "string",  "float",
                                            "bools", "ints", "doubles", "strings", "floats"};
    const auto isInPlace = [](const std::string& name, const void* reference, const std::string& access) {
        EXPECT_EQ(reference != nullptr, name == access) << name << " as " << access;
    };
    // in place when the reference is another one than that of a null handle
    const KelSettingAttribute none;
    const auto apart = [](auto& a, auto& b) { return &a == &b ? nullptr : &a; };
    for (const std::string& name : names) {
        const KelSettingAttribute a = (*this)[name];
        isInPlace(name, apart(a.asBool(), none.asBool()), "bool");
        isInPlace(name, apart(a.asInt(), none.asInt()), "int");
        isInPlace(name, apart(a.asDouble(), none.asDouble()), "double");
        isInPlace(name, apart(a.asString(), none.asString()), "string");
        isInPlace(name, apart(a.asBoolVector(), none.asBoolVector()), "bools");
        isInPlace(name, apart(a.asIntVector(), none.asIntVector()), "ints");
        isInPlace(name, apart(a.asDoubleVector(), none.asDoubleVector()), "doubles");
        isInPlace(name, apart(a.asStringVector(), none.asStringVector()), "strings");
    }
}

TEST_F(Attributes, WritesToAFallbackAreGoneAtTheNextFailedAccess)
{
    const KelSettingAttribute none;
    int& first = none.asInt();
    first = 5;
    EXPECT_EQ(first, 5);
    EXPECT_EQ((*this)["int"].asInt(), 7) << "an access that succeeds resets nothing";
    EXPECT_EQ(first, 5);
    EXPECT_EQ(&none.asInt(), &first) << "one object for all";
    EXPECT_EQ(first, 0);
    (*this)["double"].asString() = "x";
    EXPECT_EQ(none.asString(), "");
    (*this)["int"].asIntVector() = {1};
    EXPECT_THAT(none.asIntVector(), IsEmpty());
    none.asBool() = true;
    EXPECT_FALSE(none.asBool());
    none.asDouble() = 1;
    EXPECT_EQ(none.asDouble(), 0.0);
    EXPECT_EQ((*this)["double"].toDouble(), 2.5);
    EXPECT_EQ((*this)["int"].toInt(), 7);
}

TEST_F(Attributes, AssigningStoresIntoTheValue)
{
    KelSettingAttribute a = (*this)["bool"];
    EXPECT_EQ(&(a = false), &a);
    EXPECT_FALSE(a.toBool());
    a = (*this)["int"];
    EXPECT_EQ(&(a = 9), &a);
    EXPECT_EQ(a.toInt(), 9);
    a = (*this)["double"];
    EXPECT_EQ(&(a = 1.5), &a);
    EXPECT_EQ(a.toDouble(), 1.5);
    a = (*this)["string"];
    EXPECT_EQ(&(a = std::string("new")), &a);
    EXPECT_EQ(a.toString(), "new");
    EXPECT_EQ(&(a = "newer"), &a);
    EXPECT_EQ(a.toString(), "newer");
    a = (*this)["ints"];
    EXPECT_EQ(&(a = std::vector<int>{3}), &a);
    EXPECT_EQ(a.toString(), "3");
    a = (*this)["doubles"];
    EXPECT_EQ(&(a = std::vector<double>{0.5, 1}), &a);
    EXPECT_EQ(a.toString(), "0.5,1");
    a = (*this)["strings"];
    EXPECT_EQ(&(a = Strings{"a", "b"}), &a);
    EXPECT_EQ(a.toString(), "a,b");
    a = (*this)["bools"];
    EXPECT_EQ(&(a = std::vector<bool>{false}), &a);
    EXPECT_EQ(a.toString(), "false");
}

TEST_F(Attributes, ANullTextChangesNothing)
{
    KelSettingAttribute a = (*this)["string"];
    const char* none = nullptr;
    EXPECT_EQ(&(a = none), &a);
    EXPECT_EQ(a.toString(), "text");
}

TEST_F(Attributes, AssigningAVectorToItselfChangesNothing)
{
    KelSettingAttribute a = (*this)["ints"];
    a = a.asIntVector();
    EXPECT_EQ(a.toString(), "7,7");
    KelSettingAttribute s = (*this)["strings"];
    s = s.asStringVector();
    EXPECT_EQ(s.toString(), "text,text");
}

TEST_F(Attributes, AssigningAnotherTypeChangesNoValue)
{
    KelSettingAttribute a = (*this)["double"];
    a = 3; // an int, and the value is a double
    a = true;
    a = "text";
    a = std::vector<double>{1};
    EXPECT_EQ(a.toString(), "2.5");
    KelSettingAttribute f = (*this)["float"];
    f = 9.0;
    EXPECT_EQ(f.toString(), "0.5");
    KelSettingAttribute none;
    none = 4;
    EXPECT_EQ(none.asInt(), 0) << "reset by the failed access, not the value written";
    EXPECT_FALSE(none.isValid());
}

TEST_F(Attributes, ConvertsAsThePropertyDoes)
{
    EXPECT_EQ((*this)["bool"].toInt(), 1);
    EXPECT_EQ((*this)["bool"].toString(), "true");
    EXPECT_EQ((*this)["double"].toInt(), 2);
    EXPECT_EQ((*this)["float"].toDouble(), 0.5);
    EXPECT_TRUE((*this)["float"].toBool());
    EXPECT_EQ((*this)["string"].toInt(), 0);
    EXPECT_THAT((*this)["ints"].toStringVector(), ElementsAre("7", "7"));
    EXPECT_THAT((*this)["double"].toStringVector(), ElementsAre("2.5"));
}

TEST_F(Attributes, VectorConversionsTakeTheirElementOnly)
{
    EXPECT_THAT((*this)["int"].toIntVector(), ElementsAre(7));
    EXPECT_THAT((*this)["ints"].toIntVector(), ElementsAre(7, 7));
    EXPECT_THAT((*this)["string"].toIntVector(), IsEmpty());
    EXPECT_THAT((*this)["double"].toIntVector(), IsEmpty());
    EXPECT_THAT((*this)["double"].toDoubleVector(), ElementsAre(2.5));
    EXPECT_THAT((*this)["doubles"].toDoubleVector(), ElementsAre(2.5, 2.5));
    EXPECT_THAT((*this)["int"].toDoubleVector(), IsEmpty());
    EXPECT_THAT((*this)["float"].toDoubleVector(), IsEmpty());
    EXPECT_THAT((*this)["bool"].toBoolVector(), ElementsAre(true));
    EXPECT_THAT((*this)["bools"].toBoolVector(), ElementsAre(true, true));
    EXPECT_THAT((*this)["int"].toBoolVector(), IsEmpty());
}

// ---- typed look-up -------------------------------------------------------------------

struct LookUp {
    const char* className;
    KelSettingAttribute (KelSetting::*get)(const std::string&, bool) const;
};

const LookUp lookUps[] = {
    {"TPropertyType<bool>", &KelSetting::getAttributeBool},
    {"TPropertyType<int>", &KelSetting::getAttributeInt},
    {"TPropertyType<double>", &KelSetting::getAttributeDouble},
    {"TPropertyType<std::string>", &KelSetting::getAttributeString},
    {"TPropertyType<std::vector<bool> >", &KelSetting::getAttributeBoolVector},
    {"TPropertyType<std::vector<int> >", &KelSetting::getAttributeIntVector},
    {"TPropertyType<std::vector<double> >", &KelSetting::getAttributeDoubleVector},
    {"TPropertyType<std::vector<std::string> >", &KelSetting::getAttributeStringVector},
};

std::string classOf(const KelSettingAttribute& attribute)
{
    return arbor::TBase::className(static_cast<const arbor::TBase*>(attribute.property()));
}

TEST(TypedLookUp, MakesFindsAndReplaces)
{
    for (const LookUp& wanted : lookUps)
        for (const LookUp& other : lookUps) {
            SCOPED_TRACE(std::string(wanted.className) + " where " + other.className + " is");
            const KelSetting root = KelSetting::get("r");
            EXPECT_FALSE((root.*wanted.get)("x", false).isValid());
            EXPECT_THAT(root.attributeNames(), IsEmpty());
            const KelSettingAttribute before = (root.*other.get)("x", true);
            EXPECT_EQ(classOf(before), other.className);
            const bool isSame = &wanted == &other;
            EXPECT_EQ((root.*wanted.get)("x", false).property(), isSame ? before.property() : nullptr);
            EXPECT_EQ(classOf(root.attribute("x")), other.className) << "left alone";
            const KelSettingAttribute after = (root.*wanted.get)("x", true);
            EXPECT_EQ(classOf(after), wanted.className);
            EXPECT_EQ(root.attribute("x").property(), after.property());
            EXPECT_THAT(root.attributeNames(), ElementsAre("x"));
            EXPECT_EQ(after.toInt(), 0);
        }
}

TEST(TypedLookUp, PathsMakeGroups)
{
    const KelSetting root = KelSetting::get("r");
    KelSettingAttribute x = root.getAttributeDouble("a/b/x", true);
    ASSERT_TRUE(x.isValid());
    x = 2.5;
    EXPECT_EQ(root.group("a").group("b").attribute("x").property(), x.property());
    EXPECT_EQ(root.getAttributeDouble(" a // b/x/", true).property(), x.property());
    EXPECT_EQ(root.groupCount(), 1);
    const KelSettingAttribute y = root.getAttributeInt("/y", true);
    EXPECT_EQ(y.property(), root.attribute("y").property());
    EXPECT_THAT(root.attributeNames(), ElementsAre("y"));
    EXPECT_EQ(classOf(root.getAttributeInt("a/b/x", true)), "TPropertyType<int>") << "replaced in the group";
    EXPECT_EQ(root.group("a").group("b").attributeNames().size(), 1U);
}

TEST(TypedLookUp, PathsLeadThroughNodesOfEveryClass)
{
    auto* object =
        dynamic_cast<KelSettingObject*>(arbor::TObject::newObject("meridyn::KelSettingObject", "r", nullptr));
    const KelSetting root(object, true);
    const arbor::TObject* zone = arbor::TObject::newObject("TZone", "a", object);
    const KelSettingAttribute x = root.getAttributeInt("a/x", true);
    EXPECT_EQ(zone->property("x"), x.property());
    EXPECT_EQ(object->nChild(), 1) << "no second node of that name";
}

TEST(TypedLookUp, WithoutCreateNoPathIsFollowed)
{
    const KelSetting root = KelSetting::get("r");
    root.getAttributeInt("a/x", true) = 1;
    EXPECT_FALSE(root.getAttributeInt("a/x", false).isValid()); // kept
    EXPECT_TRUE(root.group("a").getAttributeInt("x", false).isValid());
}

TEST(TypedLookUp, AValueThatBearsTheWholePathComesFirst)
{
    KelSettingObject* object =
        dynamic_cast<KelSettingObject*>(arbor::TObject::newObject("meridyn::KelSettingObject", "r", nullptr));
    const KelSetting root(object, true);
    arbor::TProperty* whole = arbor::TProperty::newProperty("TPropertyType<int>", "a/x", nullptr, object);
    EXPECT_EQ(root.getAttributeInt("a/x", false).property(), whole);
    EXPECT_EQ(root.getAttributeInt("a/x", true).property(), whole);
    EXPECT_EQ(classOf(root.getAttributeBool("a/x", true)), "TPropertyType<bool>");
    EXPECT_THAT(root.attributeNames(), ElementsAre("a/x")) << "replaced under the same name";
    EXPECT_EQ(root.groupCount(), 0);
}

TEST(TypedLookUp, EmptyAndTooDeepPathsMakeNothing)
{
    const KelSetting root = KelSetting::get("r");
    std::string deep;
    for (int i = 0; i < 100000; ++i)
        deep += "g/";
    for (const std::string& path : {std::string(), std::string("/"), std::string(" / /\t"), deep + "x"})
        for (const LookUp& lookUp : lookUps)
            for (const bool create : {false, true})
                EXPECT_FALSE((root.*lookUp.get)(path, create).isValid()) << path.substr(0, 20);
    EXPECT_EQ(root.groupCount(), 0);
    EXPECT_THAT(root.attributeNames(), IsEmpty());
    std::string deepest;
    for (int i = 1; i < arbor::TObject::maxDepth; ++i)
        deepest += "g/";
    EXPECT_TRUE(root.getAttributeInt(deepest + "x", true).isValid());
    EXPECT_FALSE(root.getAttributeInt(deepest + "g/x", true).isValid());
}

} // namespace
