#include "arbor/TProperty.h"
#include "KelSettingObject.h"
#include "KelSettingsParser.h"
#include "KelVariant.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

using Names = std::vector<std::string>;

/// A parser that answers what it was given, and notes how it was called.
class FakeParser : public KelSettingsParser {
public:
    explicit FakeParser(std::string name) : _name(std::move(name)) {}

    std::string name() const override { return _name; }

    bool parseSetting(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                      std::pair<std::string, std::string>& result, DataInterface* data) override
    {
        note(dataClass, text1, text2, data);
        EXPECT_EQ(result, (std::pair<std::string, std::string>()));
        result = setting;
        return answer;
    }

    bool parseSettingsDataSet(KelDataClass dataClass, const std::string& text1, const std::string& text2,
                              std::map<std::string, std::string>& result, DataInterface* data,
                              const std::vector<std::string>& keywords) override
    {
        note(dataClass, text1, text2, data);
        EXPECT_TRUE(result.empty());
        lastKeywords = keywords;
        result = settings;
        return answer;
    }

    std::pair<std::string, std::string> setting;
    std::map<std::string, std::string> settings;
    bool answer = true;
    Names calls;
    Names lastKeywords;

private:
    void note(KelDataClass dataClass, const std::string& text1, const std::string& text2, const DataInterface* data)
    {
        EXPECT_NE(data, nullptr);
        calls.push_back(std::to_string(dataClass) + " " + text1 + " " + text2);
    }

    std::string _name;
};

class Settings : public ::testing::Test {
protected:
    Settings() { base.registerSettingsParser(&parser); }

    /// Stores a value through the parser.
    bool store(const std::string& path, const std::string& value)
    {
        parser.setting = {path, value};
        return base.addSetting(KEL_CASE, "", "", "fake");
    }

    std::string textAt(const std::string& path) const { return KelVariant(base.lookupSetting(path, -1)).asString(); }

    /// The tree may only be read through KelBase; a reader of a file changes what it finds like this.
    arbor::TObject& root() const { return const_cast<KelSettingObject&>(*base.settingsObject()); }

    FakeParser parser{"fake"};
    OpenBase base;
};

static Names childNames(const arbor::TObject& node)
{
    Names names;
    for (int i = 0; i < node.nChild(); ++i) {
        names.push_back(node.child(i)->name());
    }
    return names;
}

// ---- parsers ---------------------------------------------------------------------

TEST_F(Settings, ParserGetsItsArgumentsAndItsResultIsStored)
{
    parser.setting = {"models/gravity", "9.81"};
    EXPECT_EQ(printedBy([&] { EXPECT_TRUE(base.addSetting(KEL_DATA, "one", "two", "fake")); }), "");
    EXPECT_EQ(parser.calls, (Names{"1 one two"}));
    EXPECT_EQ(textAt("models/gravity"), "9.81");
    EXPECT_FALSE(base.hasError() || base.hasWarning() || base.hasInfo());
}

TEST_F(Settings, DataSetGetsTheKeywordsAndAllEntriesAreStoredByPath)
{
    parser.settings = {{"b/x", "1"}, {"a/y", "2"}, {"z", "3"}};
    EXPECT_TRUE(base.addSettingsDataSet(KEL_CASE, "one", "two", "fake", {"k1", "k2"}));
    EXPECT_EQ(parser.calls, (Names{"0 one two"}));
    EXPECT_EQ(parser.lastKeywords, (Names{"k1", "k2"}));
    EXPECT_EQ(childNames(root()), (Names{"a", "b"})); // "a/y" was stored first
    EXPECT_EQ(textAt("b/x"), "1");
    EXPECT_EQ(textAt("z"), "3");
}

TEST_F(Settings, ParserThatSaysNoStoresNothing)
{
    parser.answer = false;
    parser.settings = {{"a/b", "1"}};
    EXPECT_FALSE(store("a/b", "1"));
    EXPECT_FALSE(base.addSettingsDataSet(KEL_CASE, "", "", "fake", {}));
    EXPECT_EQ(parser.calls.size(), 2u);
    EXPECT_EQ(root().nChild() + root().nProperty(), 0);
}

TEST_F(Settings, UnknownParserIsTheGenericOneIfThereIsOne)
{
    EXPECT_FALSE(base.addSetting(KEL_CASE, "", "", "other"));
    EXPECT_FALSE(base.addSettingsDataSet(KEL_CASE, "", "", "", {}));
    EXPECT_TRUE(parser.calls.empty());
    FakeParser generic("MERIDYN_GENERIC");
    generic.setting = {"x", "1"};
    base.registerSettingsParser(&generic);
    EXPECT_TRUE(base.addSetting(KEL_CASE, "", "", "other"));
    EXPECT_TRUE(base.addSettingsDataSet(KEL_CASE, "", "", "", {}));
    EXPECT_EQ(generic.calls.size(), 2u);
    EXPECT_TRUE(base.addSetting(KEL_CASE, "", "", "fake"));
    EXPECT_EQ(generic.calls.size(), 2u);
    EXPECT_EQ(parser.calls.size(), 1u);
    generic.answer = false; // the fallback's answer counts, too
    EXPECT_FALSE(base.addSetting(KEL_CASE, "", "", "other"));
}

TEST_F(Settings, LaterParserOfANameReplacesTheEarlierOne)
{
    FakeParser second("fake");
    base.registerSettingsParser(&second);
    EXPECT_TRUE(base.addSetting(KEL_CASE, "", "", "fake"));
    EXPECT_TRUE(parser.calls.empty());
    EXPECT_EQ(second.calls.size(), 1u);
}

TEST_F(Settings, ParsersCanBeCopied)
{
    parser.setting = {"a", "1"};
    FakeParser other("other");
    other = parser;
    FakeParser copy(other);
    OpenBase second;
    second.registerSettingsParser(&copy);
    EXPECT_TRUE(second.addSetting(KEL_CASE, "", "", "fake"));
    EXPECT_EQ(KelVariant(second.lookupSetting("a", -1)).asString(), "1");
}

TEST_F(Settings, ParsersAreNotOwned)
{
    FakeParser other("other");
    {
        OpenBase shortLived;
        shortLived.registerSettingsParser(&other);
        shortLived.registerSettingsParser(&parser);
    }
    base.registerSettingsParser(nullptr); // nothing to ask for its name
    base.registerSettingsParser(&other);
    EXPECT_TRUE(base.addSetting(KEL_CASE, "", "", "other"));
}

// ---- store -----------------------------------------------------------------------

TEST_F(Settings, MissingGroupsAreMadeAndPresentOnesUsed)
{
    store("one/two/x", "1");
    store("one/two/y", "2");
    store("one/z", "3");
    EXPECT_EQ(childNames(root()), (Names{"one"}));
    const arbor::TObject* const one = root().child("one");
    EXPECT_NE(dynamic_cast<const KelSettingObject*>(one), nullptr);
    EXPECT_EQ(childNames(*one), (Names{"two"}));
    EXPECT_EQ(one->child("two")->getPropertiesNames(), (Names{"x", "y"}));
    EXPECT_EQ(one->getPropertiesNames(), (Names{"z"}));
}

TEST_F(Settings, EmptyPiecesAndBlanksAroundPiecesDoNotCount)
{
    store("/a// b /c/", "1");
    EXPECT_EQ(textAt("a/b/c"), "1");
    EXPECT_EQ(textAt("//a/b/ c"), "1");
}

TEST_F(Settings, PathWithoutPiecesNamesNothing)
{
    for (const char* path : {"", "/", "// /", " "}) {
        EXPECT_TRUE(store(path, "1")) << path; // the parser's answer
        for (const int index : {-1, 0}) {
            EXPECT_EQ(base.lookupSetting(path, static_cast<short>(index)), nullptr) << path;
        }
    }
    EXPECT_EQ(root().nChild() + root().nProperty(), 0);
}

TEST_F(Settings, MissingValueIsMadeAsText)
{
    store("n", "12");
    EXPECT_EQ(arbor::TBase::className(root().property("n")), "TPropertyType<std::string>");
    store("n", "not a number");
    EXPECT_EQ(textAt("n"), "not a number");
    EXPECT_EQ(root().nProperty(), 1);
}

TEST_F(Settings, PresentValueKeepsItsTypeAndItsUnit)
{
    const std::string one = "1";
    arbor::TProperty* const number = arbor::TProperty::newProperty("TPropertyType<int>", "n", &one, &root());
    number->setUnit("m");
    store("n", "42");
    EXPECT_EQ(root().property("n"), number);
    EXPECT_EQ(number->toInt(), 42);
    EXPECT_EQ(number->getUnit(), "m");
    for (const char* text : {"x", "", "4.5", "99999999999", "7 8"}) {
        EXPECT_TRUE(store("n", text));
        EXPECT_EQ(number->toInt(), 42) << text;
        EXPECT_EQ(number->getUnit(), "m");
    }
}

TEST_F(Settings, ValueAndGroupOfANameLiveSideBySide)
{
    store("a", "value");
    store("a/b", "inner");
    EXPECT_EQ(textAt("a"), "value"); // the value comes first
    EXPECT_EQ(textAt("a/b"), "inner");
    EXPECT_EQ(base.lookupSetting("a", 0), static_cast<arbor::TBase*>(root().child("a")));
}

TEST_F(Settings, ValuesAreAnyBytes)
{
    const std::string bytes("\0\n\xff<&>", 6);
    store("x", bytes);
    EXPECT_EQ(textAt("x"), bytes);
}

TEST_F(Settings, PathThatIsTooDeepIsDroppedAsAWhole)
{
    std::string path;
    for (int i = 0; i < 100000; ++i) {
        path += "a/";
    }
    EXPECT_TRUE(store(path, "1"));
    EXPECT_EQ(root().nChild(), 0);
    EXPECT_EQ(base.lookupSetting(path, -1), nullptr);
    path.assign("x");
    for (int depth = 1; depth < arbor::TObject::maxDepth; ++depth) { // the root is the first level
        path.insert(0, "a/");
    }
    store(path, "deepest");
    EXPECT_EQ(textAt(path), "deepest");
    store("a/" + path, "too deep");
    EXPECT_EQ(textAt("a/" + path), "");
}

TEST_F(Settings, ManyValuesAreKept)
{
    for (int i = 0; i < 5000; ++i) {
        parser.settings["group/" + std::to_string(i)] = std::to_string(i);
    }
    EXPECT_TRUE(base.addSettingsDataSet(KEL_CASE, "", "", "fake", {}));
    EXPECT_EQ(textAt("group/4999"), "4999");
    EXPECT_EQ(root().child("group")->nProperty(), 5000);
}

// ---- look-up ---------------------------------------------------------------------

TEST_F(Settings, LookUpFindsValuesAndGroups)
{
    store("a/b/c", "1");
    EXPECT_EQ(base.lookupSetting("a", -1), static_cast<arbor::TBase*>(root().child("a")));
    EXPECT_EQ(base.lookupSetting("a/b", -1), static_cast<arbor::TBase*>(root().child("a")->child("b")));
    EXPECT_EQ(base.lookupSetting("a/b/c", -32768),
              static_cast<arbor::TBase*>(root().child("a")->child("b")->property("c")));
    for (const char* path : {"b", "a/x", "a/b/c/d", "x/b/c", "a/b/C"}) {
        EXPECT_EQ(base.lookupSetting(path, -1), nullptr) << path;
        EXPECT_EQ(base.lookupSetting(path, 0), nullptr) << path;
    }
    EXPECT_EQ(root().nChild(), 1); // asking makes nothing
}

TEST_F(Settings, IndexCountsTheGroupsOfAName)
{
    store("zones/x", "1");
    arbor::TObject* const zones = root().child("zones");
    arbor::TObject* const first = arbor::TObject::newObject("meridyn::KelSettingObject", "zone", zones);
    arbor::TObject::newObject("meridyn::KelSettingObject", "other", zones);
    arbor::TObject* const second = arbor::TObject::newObject("meridyn::KelSettingObject", "zone", zones);
    EXPECT_EQ(base.lookupSetting("zones/zone", 0), static_cast<arbor::TBase*>(first));
    EXPECT_EQ(base.lookupSetting("zones/zone", 1), static_cast<arbor::TBase*>(second));
    EXPECT_EQ(base.lookupSetting("zones/zone", 2), nullptr);
    EXPECT_EQ(base.lookupSetting("zones/zone", 32767), nullptr);
    EXPECT_EQ(base.lookupSetting("zones/x", 0), nullptr); // a value is no group
}

TEST_F(Settings, BelongToTheirObject)
{
    store("x", "1");
    OpenBase other;
    EXPECT_NE(other.settingsObject(), nullptr);
    EXPECT_EQ(other.settingsObject()->name(), "settings");
    EXPECT_EQ(other.lookupSetting("x", -1), nullptr);
}

} // namespace meridyn
