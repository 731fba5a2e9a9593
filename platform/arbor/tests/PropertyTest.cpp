#include "arbor/TObject.h"
#include "arbor/TPropertyType.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace arbor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Strings = std::vector<std::string>;

const std::string boolType = "TPropertyType<bool>";
const std::string intType = "TPropertyType<int>";
const std::string doubleType = "TPropertyType<double>";
const std::string stringType = "TPropertyType<std::string>";
const std::string floatType = "TPropertyType<float>";
const std::string boolsType = "TPropertyType<std::vector<bool> >";
const std::string intsType = "TPropertyType<std::vector<int> >";
const std::string doublesType = "TPropertyType<std::vector<double> >";
const std::string stringsType = "TPropertyType<std::vector<std::string> >";
const std::string floatsType = "TPropertyType<std::vector<float> >";

std::unique_ptr<TProperty> make(const std::string& type, const std::string& text)
{
    return std::unique_ptr<TProperty>(TProperty::newProperty(type, "p", &text, nullptr));
}

template <class T>
std::unique_ptr<TProperty> holding(const std::string& type, const T& value)
{
    std::unique_ptr<TProperty> property(TProperty::newProperty(type, "p", nullptr, nullptr));
    dynamic_cast<TPropertyType<T>&>(*property).value() = value;
    return property;
}

struct KindCase {
    const std::string* type;
    const char* tests; // scalar, vector, boolean, integer, real, float, string
    const char* emptyText;
};

TEST(Property, EveryKindHasItsTestsAndItsEmptyValue)
{
    const KindCase cases[] = {{&boolType, "s-b----", "false"}, {&intType, "s--i---", "0"},
                              {&doubleType, "s---r--", "0"},   {&stringType, "s-----t", ""},
                              {&floatType, "s----f-", "0"},    {&boolsType, "-vb----", ""},
                              {&intsType, "-v-i---", ""},      {&doublesType, "-v--r--", ""},
                              {&stringsType, "-v----t", ""},   {&floatsType, "-v---f-", ""}};
    for (const KindCase& c : cases) {
        SCOPED_TRACE(*c.type);
        const std::unique_ptr<TProperty> p(TProperty::newProperty(*c.type, "p", nullptr, nullptr));
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(TBase::className(p.get()), *c.type);
        EXPECT_TRUE(p->isProperty());
        EXPECT_FALSE(p->isObject());
        std::string tests;
        tests += p->isScalar() ? 's' : '-';
        tests += p->isVector() ? 'v' : '-';
        tests += p->isBoolean() ? 'b' : '-';
        tests += p->isInteger() ? 'i' : '-';
        tests += p->isReal() ? 'r' : '-';
        tests += p->isFloat() ? 'f' : '-';
        tests += p->isString() ? 't' : '-';
        EXPECT_EQ(tests, c.tests);
        EXPECT_EQ(p->toString(), c.emptyText);
        EXPECT_FALSE(p->toBool());
        EXPECT_EQ(p->toInt(), 0);
        EXPECT_EQ(p->toDouble(), 0.0);
        EXPECT_EQ(p->toStringVector(), p->isVector() ? Strings() : Strings{c.emptyText});
        EXPECT_EQ(p->owner(), nullptr);
        EXPECT_EQ(p->getUnit(), "");
    }
}

TEST(Property, UnknownClassesMakeNone)
{
    for (const char* type : {"", "int", "TPropertyType<long>", "TPropertyType<std::vector<int>>", "TObject"})
        EXPECT_EQ(TProperty::newProperty(type, "p", nullptr, nullptr), nullptr) << type;
}

struct TextCase {
    const std::string* type;
    const char* given;
    const char* text; // null: does not parse
};

TEST(Property, ReadsAndShowsTexts)
{
    const TextCase cases[] = {{&boolType, "true", "true"},
                              {&boolType, " false ", "false"},
                              {&boolType, "1", "true"},
                              {&boolType, "0", "false"},
                              {&boolType, "True", nullptr},
                              {&boolType, "", nullptr},
                              {&boolType, "2", nullptr},
                              {&intType, "42", "42"},
                              {&intType, " -7\n", "-7"},
                              {&intType, "+3", "3"},
                              {&intType, "2147483647", "2147483647"},
                              {&intType, "-2147483648", "-2147483648"},
                              {&intType, "2147483648", nullptr},
                              {&intType, "1.5", nullptr},
                              {&intType, "1 2", nullptr},
                              {&intType, "0x10", nullptr},
                              {&intType, "", nullptr},
                              {&intType, "+-1", nullptr},
                              {&intType, "+", nullptr},
                              {&doubleType, "2.5", "2.5"},
                              {&doubleType, "1e6", "1000000"},
                              {&doubleType, "-0", "-0"},
                              {&doubleType, "0.1", "0.1"},
                              {&doubleType, "1e-5", "0.00001"},
                              {&doubleType, "1e-7", "1e-07"},
                              {&doubleType, "1e20", "100000000000000000000"},
                              {&doubleType, "1e21", "1e+21"},
                              {&doubleType, "inf", "inf"},
                              {&doubleType, "-inf", "-inf"},
                              {&doubleType, "nan", "nan"},
                              {&doubleType, "4.9406564584124654e-324", "5e-324"},
                              {&doubleType, "1,5", nullptr},
                              {&doubleType, "1e999", nullptr},
                              {&doubleType, "2.5m", nullptr},
                              {&doubleType, "", nullptr},
                              {&doubleType, "nan(0x1)", nullptr},
                              {&doubleType, "nan(0x", nullptr},
                              {&floatType, "0.1", "0.1"},
                              {&floatType, "1e39", nullptr},
                              {&stringType, " a,b ", " a,b "},
                              {&stringType, "", ""},
                              {&boolsType, "true,0", "true,false"},
                              {&intsType, "1, 2 ,3", "1,2,3"},
                              {&intsType, "", ""},
                              {&intsType, "1,", nullptr},
                              {&intsType, ",1", nullptr},
                              {&intsType, " ", nullptr},
                              {&doublesType, "0.5,inf", "0.5,inf"},
                              {&floatsType, "0.5", "0.5"},
                              {&stringsType, "a, b,", "a, b,"},
                              {&stringsType, ",", ","}};
    for (const TextCase& c : cases) {
        SCOPED_TRACE(*c.type + " from \"" + c.given + "\"");
        const auto p = make(*c.type, c.given);
        ASSERT_EQ(p != nullptr, c.text != nullptr);
        if (p != nullptr) {
            EXPECT_EQ(p->toString(), c.text);
        }
    }
}

TEST(Property, FailedReadingLeavesTheValue)
{
    const auto scalar = make(intType, "5");
    EXPECT_FALSE(scalar->fromString("x"));
    EXPECT_EQ(scalar->toString(), "5");
    EXPECT_TRUE(scalar->fromString("6"));
    EXPECT_EQ(scalar->toInt(), 6);
    const auto vector = make(intsType, "1,2");
    EXPECT_FALSE(vector->fromString("3,x"));
    EXPECT_EQ(vector->toString(), "1,2");
}

TEST(Property, StringListsAreCutAtEveryComma)
{
    EXPECT_THAT(make(stringsType, "a, b,")->toStringVector(), ElementsAre("a", " b", ""));
    EXPECT_THAT(make(stringsType, ",")->toStringVector(), ElementsAre("", ""));
    EXPECT_THAT(make(stringsType, "")->toStringVector(), IsEmpty());
    EXPECT_THAT(make(doublesType, "1,2.50")->toStringVector(), ElementsAre("1", "2.5"));
    EXPECT_THAT(make(stringType, "a,b")->toStringVector(), ElementsAre("a,b"));
}

TEST(Property, Converts)
{
    struct Case {
        const std::string* type;
        const char* text;
        bool asBool;
        int asInt;
        double asDouble;
    };
    const int least = std::numeric_limits<int>::min();
    const int most = std::numeric_limits<int>::max();
    const Case cases[] = {{&boolType, "true", true, 1, 1.0},
                          {&intType, "-3", true, -3, -3.0},
                          {&intType, "2147483647", true, most, 2147483647.0},
                          {&doubleType, "2.9", true, 2, 2.9},
                          {&doubleType, "-2.9", true, -2, -2.9},
                          {&doubleType, "0.25", true, 0, 0.25},
                          {&doubleType, "1e300", true, most, 1e300},
                          {&doubleType, "-1e300", true, least, -1e300},
                          {&floatType, "0.5", true, 0, 0.5},
                          {&stringType, "12", true, 12, 12.0},
                          {&stringType, " true", true, 1, 1.0},
                          {&stringType, "false", false, 0, 0.0},
                          {&stringType, "12 m", false, 0, 0.0},
                          {&intsType, "7,8", true, 7, 7.0},
                          {&boolsType, "true,false", true, 1, 1.0},
                          {&stringsType, "3.5,x", true, 3, 3.5}};
    for (const Case& c : cases) {
        SCOPED_TRACE(*c.type + " " + c.text);
        const auto p = make(*c.type, c.text);
        EXPECT_EQ(p->toBool(), c.asBool);
        EXPECT_EQ(p->toInt(), c.asInt);
        EXPECT_EQ(p->toDouble(), c.asDouble);
    }
    const auto nan = make(doubleType, "nan");
    EXPECT_TRUE(nan->toBool());
    EXPECT_EQ(nan->toInt(), 0);
}

TEST(Property, TextOfSeveralLinesIsIndentedBehindEachBreak)
{
    const auto p = make(stringType, "a\n\nb\n");
    EXPECT_EQ(p->toString("  "), "a\n  \n  b\n  ");
    EXPECT_EQ(p->toString(""), "a\n\nb\n");
    EXPECT_EQ(p->toString(), "a\n\nb\n");
}

TEST(Property, ValueIsReachedInPlace)
{
    const auto p = make(intsType, "1,2");
    auto* typed = dynamic_cast<TPropertyType<std::vector<int>>*>(p.get());
    ASSERT_NE(typed, nullptr);
    EXPECT_EQ(dynamic_cast<TPropertyType<int>*>(p.get()), nullptr);
    typed->value().push_back(3);
    EXPECT_EQ(p->toString(), "1,2,3");
}

TEST(Property, NanShowsAsNanWhateverItsBits)
{
    EXPECT_EQ(holding(doubleType, -std::numeric_limits<double>::quiet_NaN())->toString(), "nan");
    EXPECT_EQ(make(doubleType, "nan(0x7ff8000000000001)")->toString(), "nan");
}

TEST(Property, UnitIsFreeText)
{
    const auto p = make(doubleType, "2.5");
    p->setUnit("m s^-1");
    EXPECT_EQ(p->getUnit(), "m s^-1");
    EXPECT_EQ(p->toString(), "2.5");
}

TEST(Property, EntryPointersAreOneAddress)
{
    const std::unique_ptr<TObject> root(TObject::newObject("TZone", "z", nullptr));
    TProperty* p = TProperty::newProperty(intType, "p", nullptr, root.get());
    EXPECT_EQ(static_cast<void*>(p), static_cast<void*>(static_cast<TBase*>(p)));
    EXPECT_EQ(static_cast<void*>(p), static_cast<void*>(dynamic_cast<TPropertyType<int>*>(p)));
    EXPECT_EQ(static_cast<void*>(root.get()), static_cast<void*>(static_cast<TBase*>(root.get())));
}

struct CommaPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(Property, TextsDoNotDependOnTheLocale)
{
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
    const auto p = make(doubleType, "1234567.5");
    const auto none = make(doubleType, "1,5");
    const std::string shown = p == nullptr ? "" : p->toString();
    std::locale::global(before);
    EXPECT_EQ(shown, "1234567.5");
    EXPECT_EQ(none, nullptr);
}

} // namespace
