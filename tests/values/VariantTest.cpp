#include "arbor/TObject.h"
#include "arbor/TProperty.h"
#include "arbor/TZone.h"
#include "KelVariant.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace meridyn;
using arbor::TObject;
using arbor::TProperty;
using arbor::TZone;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Strings = std::vector<std::string>;

const std::string boolType = "TPropertyType<bool>";
const std::string intType = "TPropertyType<int>";
const std::string doubleType = "TPropertyType<double>";
const std::string floatType = "TPropertyType<float>";
const std::string stringType = "TPropertyType<std::string>";
const std::string intsType = "TPropertyType<std::vector<int> >";
const std::string boolsType = "TPropertyType<std::vector<bool> >";
const std::string stringsType = "TPropertyType<std::vector<std::string> >";

std::unique_ptr<TProperty> value(const std::string& type, const std::string& text, TObject* owner = nullptr)
{
    return std::unique_ptr<TProperty>(TProperty::newProperty(type, "p", &text, owner));
}

std::unique_ptr<TObject> node(const std::string& type, const std::string& name = "n")
{
    return std::unique_ptr<TObject>(TObject::newObject(type, name, nullptr));
}

std::unique_ptr<TObject> zone(TZone::Kind kind, const std::string& name)
{
    auto made = node("TZone", name);
    dynamic_cast<TZone&>(*made).setKind(kind);
    return made;
}

void addList(TObject& owner, const std::string& name, const std::string& text, const std::string& type = stringsType)
{
    ASSERT_NE(TProperty::newProperty(type, name, &text, &owner), nullptr);
}

void expectEmpty(const KelVariant& v)
{
    EXPECT_FALSE(v.isValid());
    EXPECT_EQ(v.asInt(), 0);
    EXPECT_EQ(v.asDouble(), 0.0);
    EXPECT_EQ(v.asFloat(), 0.0F);
    EXPECT_FALSE(v.asBool());
    EXPECT_EQ(v.asString(), "");
    EXPECT_EQ(static_cast<std::string>(v), "");
    EXPECT_THAT(v.asStringVector(), IsEmpty());
    EXPECT_THAT(static_cast<Strings>(v), IsEmpty());
    EXPECT_EQ(v.unit(), "");
    EXPECT_THAT(v.cellZones(), IsEmpty());
    EXPECT_THAT(v.faceZones(), IsEmpty());
    EXPECT_THAT(v.nodeZones(), IsEmpty());
    EXPECT_THAT(v.bounds(), IsEmpty());
    EXPECT_THAT(v.location(), IsEmpty());
}

TEST(Variant, WithoutEntryIsInvalidAndSoAreItsCopies)
{
    const KelVariant none;
    const KelVariant null(nullptr);
    expectEmpty(none);
    expectEmpty(null);
    expectEmpty(KelVariant(none));
    expectEmpty(KelVariant(null));
    const auto property = value(intType, "5");
    KelVariant target(property.get());
    target = null;
    expectEmpty(target);
    target = KelVariant(property.get());
    EXPECT_TRUE(target.isValid());
    target = none;
    expectEmpty(target);
}

TEST(Variant, CopiesViewTheSameEntry)
{
    const auto property = value(intType, "5");
    KelVariant v(property.get());
    const KelVariant copy(v);
    KelVariant& same = v;
    v = same;
    EXPECT_EQ(v.asInt(), 5);
    v = KelVariant();
    property->fromString("6");
    EXPECT_EQ(copy.asInt(), 6);
}

struct NumberCase {
    const std::string* type;
    const char* text;
    double asDouble;
    int asInt;
    bool asBool;
};

TEST(Variant, ReadsNumbersFromTexts)
{
    const int most = std::numeric_limits<int>::max();
    const int least = std::numeric_limits<int>::min();
    const NumberCase cases[] = {{&intType, "42", 42, 42, true},
                                {&intType, "0", 0, 0, false},
                                {&boolType, "true", 1, 1, true},
                                {&boolType, "false", 0, 0, false},
                                {&doubleType, "2.5", 2.5, 2, true},
                                {&doubleType, "-2.5", -2.5, -2, true},
                                {&doubleType, "1000000", 1e6, 1000000, true},
                                {&doubleType, "1e-7", 1e-7, 0, false},
                                {&doubleType, "1e30", 1e30, most, true},
                                {&doubleType, "-1e30", -1e30, least, true},
                                {&doubleType, "5000000000", 5e9, most, true},
                                {&doubleType, "0", 0, 0, false},
                                {&floatType, "0.5", 0.5, 0, false},
                                {&stringType, "12", 12, 12, true},
                                {&stringType, " 12abc", 12, 12, true},
                                {&stringType, "-3 m", -3, -3, true},
                                {&stringType, "abc", 0, 0, false},
                                {&stringType, "", 0, 0, false},
                                {&stringType, "true", 1, 1, true},
                                {&stringType, "false", 0, 0, false},
                                {&stringType, "1.25e2x", 125, 125, true},
                                {&stringType, "1,5", 1, 1, true},
                                {&intsType, "7,8", 7, 7, true},
                                {&boolsType, "true,false", 1, 1, true},
                                {&stringsType, "3.5,x", 3.5, 3, true}};
    for (const NumberCase& c : cases) {
        SCOPED_TRACE(*c.type + " " + c.text);
        const auto property = value(*c.type, c.text);
        const KelVariant v(property.get());
        EXPECT_EQ(v.asInt(), c.asInt);
        EXPECT_EQ(v.asDouble(), c.asDouble);
        EXPECT_EQ(v.asFloat(), static_cast<float>(c.asDouble));
        EXPECT_EQ(v.asBool(), c.asBool);
    }
    const auto infinite = value(doubleType, "-inf");
    EXPECT_EQ(KelVariant(infinite.get()).asDouble(), -std::numeric_limits<double>::infinity());
    const auto nan = value(doubleType, "nan");
    EXPECT_NE(KelVariant(nan.get()).asDouble(), KelVariant(nan.get()).asDouble());
}

TEST(Variant, NumbersFromAnEmptyVectorThrow)
{
    const auto property = value(intsType, "");
    const KelVariant v(property.get());
    const auto messageOf = [&](auto read) -> std::string {
        try {
            read();
        } catch (const std::out_of_range& error) {
            return error.what();
        }
        return "nothing thrown";
    };
    EXPECT_EQ(messageOf([&] { return v.asInt(); }), "invalid vector subscript");
    EXPECT_EQ(messageOf([&] { return v.asDouble(); }), "invalid vector subscript");
    EXPECT_EQ(messageOf([&] { return v.asFloat(); }), "invalid vector subscript");
    EXPECT_EQ(messageOf([&] { return v.asBool(); }), "invalid vector subscript");
    EXPECT_EQ(v.asString(), "");
    EXPECT_THAT(v.asStringVector(), IsEmpty());
}

TEST(Variant, TextCarriesTheUnit)
{
    const auto property = value(doubleType, "2.5");
    const KelVariant v(property.get());
    EXPECT_EQ(v.asString(), "2.5");
    property->setUnit("m");
    EXPECT_EQ(v.asString(), "2.5 m");
    EXPECT_EQ(static_cast<std::string>(v), "2.5 m");
    EXPECT_EQ(v.unit(), "m");
    EXPECT_EQ(v.asDouble(), 2.5);
    EXPECT_THAT(static_cast<Strings>(v), ElementsAre("2.5")) << "the list of texts has no unit";
}

TEST(Variant, TextIsCutAtCommasOnly)
{
    const auto list = value(stringsType, "a, b ,,c");
    list->setUnit("m");
    EXPECT_THAT(KelVariant(list.get()).asStringVector(), ElementsAre("a", " b ", "", "c m"));
    EXPECT_THAT(static_cast<Strings>(KelVariant(list.get())), ElementsAre("a", " b ", "", "c"));
    const auto text = value(stringType, "x,y,");
    EXPECT_THAT(KelVariant(text.get()).asStringVector(), ElementsAre("x", "y", ""));
    EXPECT_THAT(static_cast<Strings>(KelVariant(text.get())), ElementsAre("x,y,"));
}

TEST(Variant, NodeCountsAndListsItsContent)
{
    const auto root = node("TObject");
    const KelVariant v(root.get());
    EXPECT_TRUE(v.isValid());
    EXPECT_EQ(v.asInt(), 0);
    EXPECT_FALSE(v.asBool());
    EXPECT_EQ(v.asString(), "");
    EXPECT_THAT(v.asStringVector(), IsEmpty());
    for (const char* name : {"b", "a", "c"})
        TObject::newObject("TObject", name, root.get());
    addList(*root, "property", "x");
    EXPECT_EQ(v.asInt(), 3);
    EXPECT_EQ(v.asDouble(), 3.0);
    EXPECT_EQ(v.asFloat(), 3.0F);
    EXPECT_TRUE(v.asBool());
    EXPECT_THAT(static_cast<Strings>(v), ElementsAre("b", "a", "c"));
    EXPECT_EQ(v.asString(), "b,a,c");
    EXPECT_EQ(v.unit(), "");
}

TEST(Variant, ZoneOfTheAskedKindIsItsOwnEntry)
{
    const auto cell = zone(TZone::Cell, "fluid");
    const auto face = zone(TZone::Face, "wall");
    const auto point = zone(TZone::Node, "corner");
    addList(*cell, "cellZones", "ignored");
    EXPECT_THAT(KelVariant(cell.get()).cellZones(), ElementsAre("cellZones/fluid"));
    EXPECT_THAT(KelVariant(face.get()).faceZones(), ElementsAre("faceZones/wall"));
    EXPECT_THAT(KelVariant(point.get()).nodeZones(), ElementsAre("nodeZones/corner"));
}

TEST(Variant, ZoneOfAnotherKindGivesItsList)
{
    const auto face = zone(TZone::Face, "wall");
    const KelVariant v(face.get());
    EXPECT_THAT(v.cellZones(), IsEmpty());
    addList(*face, "cellZones", "a,b");
    addList(*face, "nodeZones", "one, whole", stringType);
    EXPECT_THAT(v.cellZones(), ElementsAre("a", "b"));
    EXPECT_THAT(v.nodeZones(), ElementsAre("one, whole")) << "a string is one entry";
    const auto none = zone(TZone::None, "z");
    addList(*none, "cellZones", "1,2", intsType);
    addList(*none, "faceZones", "5", intType);
    EXPECT_THAT(KelVariant(none.get()).cellZones(), ElementsAre("1", "2"));
    EXPECT_THAT(KelVariant(none.get()).faceZones(), IsEmpty()) << "a number is no list";
}

TEST(Variant, OtherEntriesStandForNoZones)
{
    for (const char* type : {"TObject", "TRegion", "TDomain"}) {
        const auto other = node(type);
        addList(*other, "cellZones", "a");
        addList(*other, "bounds", "a");
        EXPECT_THAT(KelVariant(other.get()).cellZones(), IsEmpty()) << type;
        EXPECT_THAT(KelVariant(other.get()).bounds(), IsEmpty()) << type;
    }
    const auto text = value(stringType, "a");
    EXPECT_THAT(KelVariant(text.get()).cellZones(), IsEmpty());
    EXPECT_THAT(KelVariant(text.get()).bounds(), IsEmpty());
    EXPECT_THAT(KelVariant(text.get()).location(), IsEmpty());
}

TEST(Variant, OnlyCellZonesHaveBounds)
{
    for (const TZone::Kind kind : {TZone::None, TZone::Cell, TZone::Face, TZone::Node}) {
        const auto z = zone(kind, "z");
        EXPECT_THAT(KelVariant(z.get()).bounds(), IsEmpty());
        addList(*z, "bounds", "wall,inlet");
        EXPECT_EQ(KelVariant(z.get()).bounds(), kind == TZone::Cell ? Strings({"wall", "inlet"}) : Strings()) << kind;
    }
}

TEST(Variant, LocationEndsWithTheZonesOwnEntry)
{
    const auto located = [](TZone::Kind kind) {
        const auto z = zone(kind, "z");
        addList(*z, "cellZones", "c1,c2");
        addList(*z, "faceZones", "f1,f2");
        addList(*z, "nodeZones", "n1");
        addList(*z, "location", "l");
        return KelVariant(z.get()).location();
    };
    EXPECT_THAT(located(TZone::Cell), ElementsAre("f1", "f2", "cellZones/z"));
    EXPECT_THAT(located(TZone::Face), ElementsAre("c1", "c2", "faceZones/z"));
    EXPECT_THAT(located(TZone::Node), ElementsAre("nodeZones/z"));
    EXPECT_THAT(located(TZone::None), IsEmpty());
    const auto bare = zone(TZone::Cell, "z");
    EXPECT_THAT(KelVariant(bare.get()).location(), ElementsAre("cellZones/z"));
}

TEST(Variant, LocationOfADomainIsItsProperty)
{
    for (const auto& [type, hasLocation] :
         std::vector<std::pair<std::string, bool>>{{"TDomain", true}, {"TRegion", false}, {"TObject", false}}) {
        const auto other = node(type);
        EXPECT_THAT(KelVariant(other.get()).location(), IsEmpty());
        addList(*other, "location", "cellZones/a,faceZones/b");
        EXPECT_EQ(KelVariant(other.get()).location(), hasLocation ? Strings({"cellZones/a", "faceZones/b"}) : Strings())
            << type;
    }
}

} // namespace
