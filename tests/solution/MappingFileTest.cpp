#include "KelVariableAttributeFile.h"
#include "MappingText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace meridyn;
using Names = std::vector<std::string>;
using Vocabularies = std::pair<std::string, std::string>;

namespace {

class MappingFile : public ::testing::Test {
protected:
    /// A provider from a file of that text.
    KelVariableAttributeFile provider(const std::string& text) const
    {
        return KelVariableAttributeFile(_folder.write("mapping.xml", text));
    }

    /// Whether a file of that text is a mapping file; its vocabularies, or the two that were there before.
    bool isMapping(const std::string& text)
    {
        _vocabularies = {"old source", "old target"};
        return KelVariableAttributeFile::isMappingFile(_folder.write("mapping.xml", text), _vocabularies);
    }

    void expectEmptyWithDefaults(KelVariableAttributeFile provider) const
    {
        EXPECT_TRUE(provider.getDefaultVariableVisibility());
        EXPECT_EQ(provider.getMappedKey("T"), "T");
        EXPECT_EQ(provider.getDatasetName("T"), "T");
        EXPECT_EQ(provider.getAttributeValue("T", "Common Name"), "");
        EXPECT_TRUE(provider.getSupportedAttributes("T").empty());
    }

    TemporaryFolder _folder;
    Vocabularies _vocabularies;
};

const Pairs vocabularies = {{"Source", "S"}, {"Target", "T"}};
const Pairs temperature = {{"Name", "T"}, {"Common Name", "temperature"}};

} // namespace

// ---- look-ups --------------------------------------------------------------------------

TEST_F(MappingFile, AnswersWhatTheVariablesSay)
{
    auto file = provider(mappingText(
        {{"Source", "S"}, {"Target", "T"}, {"Attribute Name Of Mapped Key", "Theirs"}},
        variableText(
            {{"Name", "p"}, {"Theirs", "pressure"}, {"Dataset Name", "SV_P"}, {"Long Name", "Static Pressure"}}) +
            variableText({{"Name", "u"}, {"Long Name", "Velocity"}})));
    EXPECT_EQ(file.getMappedKey("p"), "pressure");
    EXPECT_EQ(file.getMappedKey("u"), "u") << "no such attribute: the key";
    EXPECT_EQ(file.getMappedKey("unknown"), "unknown"); // kept: not empty, unlike the interface's default
    EXPECT_EQ(file.getMappedKey(""), "");
    EXPECT_EQ(file.getDatasetName("p"), "SV_P");
    EXPECT_EQ(file.getDatasetName("u"), "u");
    EXPECT_EQ(file.getVariableName("p"), "p") << "the interface's default";
    EXPECT_EQ(file.getAttributeValue("p", "Long Name"), "Static Pressure");
    EXPECT_EQ(file.getAttributeValue("p", "long name"), "");
    EXPECT_EQ(file.getAttributeValue("p", "Name"), "");
    EXPECT_EQ(file.getSupportedAttributes("p"), (Names{"Dataset Name", "Long Name", "Theirs"}));
    EXPECT_TRUE(file.getSupportedAttributes("unknown").empty());
}

TEST_F(MappingFile, CopiesAnswerAlike)
{
    auto file = provider(mappingText({{"Target", "MERIDYN_GENERIC"}}, variableText(temperature)));
    KelVariableAttributeFile copy(file);
    EXPECT_EQ(copy.getMappedKey("T"), "temperature");
    KelVariableAttributeFile assigned("");
    assigned = copy;
    EXPECT_EQ(assigned.getMappedKey("T"), "temperature");
}

TEST_F(MappingFile, NamesAskForTheAttributeVirtually)
{
    class Shouting : public KelVariableAttributeFile {
    public:
        explicit Shouting(const std::string& path) : KelVariableAttributeFile(path) {}
        std::string getAttributeValue(const std::string& key, const std::string& attribute) override
        {
            return attribute + " of " + key;
        }
    } shouting(_folder.write("mapping.xml", mappingText({{"Target", "MERIDYN_GENERIC"}}, "")));
    EXPECT_EQ(shouting.getDatasetName("p"), "Dataset Name of p");
    EXPECT_EQ(shouting.getMappedKey("p"), "Common Name of p");
}

// ---- header ----------------------------------------------------------------------------

TEST_F(MappingFile, GenericTargetMapsThroughTheCommonName)
{
    const std::string variables = variableText({{"Name", "T"}, {"Common Name", "temperature"}, {"Other", "o"}});
    EXPECT_EQ(provider(mappingText({{"Target", "MERIDYN_GENERIC"}}, variables)).getMappedKey("T"), "temperature");
    EXPECT_EQ(provider(mappingText({{"Target", "MERIDYN_COMMON"}}, variables)).getMappedKey("T"), "T");
    EXPECT_EQ(provider(mappingText({{"Target", "meridyn_generic"}}, variables)).getMappedKey("T"), "T");
    EXPECT_EQ(
        provider(mappingText({{"Target", "MERIDYN_GENERIC"}, {"Attribute Name Of Mapped Key", "Other"}}, variables))
            .getMappedKey("T"),
        "o");
}

TEST_F(MappingFile, BooleansAreFourWordsInAnyCase)
{
    const std::pair<const char*, bool> words[] = {
        {"on", true},   {"t", true},  {"true", true},   {"yes", true},  {"Yes", true},
        {"TRUE", true}, {"oN", true}, {"1", false},     {"off", false}, {"y", false},
        {"no", false},  {"f", false}, {"false", false}, {" on", false}, {"true ", false},
    };
    for (const auto& [word, expected] : words) {
        const std::string text = mappingText({{"Case Insensitive Match", word}, {"Default Variable Visibility", word}},
                                             variableText({{"Name", "Temp"}, {"a", "1"}}));
        auto file = provider(text);
        EXPECT_EQ(file.getDefaultVariableVisibility(), expected) << word;
        EXPECT_EQ(file.getAttributeValue("TEMP", "a"), expected ? "1" : "") << word;
    }
}

TEST_F(MappingFile, HeaderKeysAreExact)
{
    EXPECT_TRUE(provider(mappingText({{"default variable visibility", "off"}}, "")).getDefaultVariableVisibility());
    EXPECT_FALSE(isMapping(mappingText({{"source", "S"}, {"target", "T"}}, "")));
}

TEST_F(MappingFile, HeaderIsThatOfTheMappingElementThatEndsLast)
{
    const std::string inner = "<mapping>" + attributesText({{"Source", "I"}, {"Target", "T"}}) + "</mapping>";
    EXPECT_TRUE(isMapping("<mapping>" + attributesText({{"Source", "O"}, {"Target", "U"}}) + inner + "</mapping>"));
    EXPECT_EQ(_vocabularies, Vocabularies("O", "U"));
    EXPECT_FALSE(isMapping("<mapping>" + inner + "</mapping>")) << "replaced as a whole, not completed";
    EXPECT_FALSE(isMapping("<mapping>" + attributesText({{"Source", "O"}}) + inner + "</mapping>"));
}

TEST_F(MappingFile, CaseFoldingMergesKeysAndLeavesAttributeNamesAlone)
{
    auto file = provider(mappingText({{"Case Insensitive Match", "true"}},
                                     variableText({{"Name", "temp"}, {"a", "of temp"}, {"c", "3"}}) +
                                         variableText({{"Name", "Temp"}, {"a", "of Temp"}, {"b", "2"}})));
    EXPECT_EQ(file.getAttributeValue("TEMP", "a"), "of temp") << "the later key in byte order wins";
    EXPECT_EQ(file.getAttributeValue("tEMP", "b"), "2");
    EXPECT_EQ(file.getAttributeValue("tEMP", "B"), "");
    EXPECT_EQ(file.getSupportedAttributes("Temp"), (Names{"a", "b", "c"}));
    EXPECT_EQ(file.getMappedKey("TEMP"), "TEMP") << "a key that is not mapped comes back as given";
}

// ---- variables -------------------------------------------------------------------------

TEST_F(MappingFile, VariableWithoutNameContributesNothing)
{
    auto file = provider(mappingText({}, variableText({{"Common Name", "lost"}}) +
                                             variableText({{"Name", ""}, {"Common Name", "lost"}}) +
                                             variableText({{"name", "x"}, {"Common Name", "lost"}})));
    EXPECT_TRUE(file.getSupportedAttributes("").empty());
    EXPECT_TRUE(file.getSupportedAttributes("x").empty());
}

TEST_F(MappingFile, DatasetNameLosesItsSlashes)
{
    auto file = provider(mappingText({}, variableText({{"Name", "p/q"}, {"Dataset Name", "a/b/c"}, {"Other", "a/b"}})));
    EXPECT_EQ(file.getDatasetName("p/q"), "a b c");
    EXPECT_EQ(file.getAttributeValue("p/q", "Other"), "a/b");
}

TEST_F(MappingFile, AttributesNeedKeyAndValue)
{
    auto file = provider("<mapping><contents><variable><attribute key='Name' value='p'/>"
                         "<attribute key='empty' value=''/><attribute key='' value='x'/><attribute key='no value'/>"
                         "<attribute value='no key'/><attribute/><attribute Key='a' Value='b'/>"
                         "<attribute value='turned' other='x' key='order'/>"
                         "</variable></contents></mapping>");
    EXPECT_EQ(file.getSupportedAttributes("p"), (Names{"order"}));
    EXPECT_EQ(file.getAttributeValue("p", "order"), "turned");
}

TEST_F(MappingFile, LaterAttributesOverwriteEarlierOnes)
{
    auto file =
        provider(mappingText({}, variableText({{"Name", "lost"}, {"Name", "p"}, {"a", "1"}, {"a", "2"}, {"b", "x"}}) +
                                     variableText({{"Name", "p"}, {"b", "y"}, {"c", "z"}})));
    EXPECT_EQ(file.getAttributeValue("p", "a"), "2");
    EXPECT_EQ(file.getAttributeValue("p", "b"), "y") << "two variables of one name are one";
    EXPECT_EQ(file.getAttributeValue("p", "c"), "z");
    EXPECT_TRUE(file.getSupportedAttributes("lost").empty());
}

TEST_F(MappingFile, KeysAreCutAtTheFirstHash)
{
    auto file = provider(mappingText({}, variableText({{"Name", "a#b"}, {"c", "1"}}) +
                                             variableText({{"Name", "#"}, {"d", "2"}}) +
                                             variableText({{"Name", "k"}, {"x#y", "3"}})));
    EXPECT_EQ(file.getAttributeValue("a", "b#c"), "1"); // kept
    EXPECT_TRUE(file.getSupportedAttributes("a#b").empty());
    EXPECT_EQ(file.getAttributeValue("", "#d"), "2");
    EXPECT_EQ(file.getAttributeValue("k", "x#y"), "3");
}

TEST_F(MappingFile, AttributesBelongToTheNearestOtherElement)
{
    auto file = provider("<mapping><attribute key='Case Insensitive Match' value='on'>"
                         "<attribute key='Default Variable Visibility' value='no'/></attribute>"
                         "<group><attribute key='Default Variable Visibility' value='yes'/>"
                         "<variable><attribute key='Name' value='p'/><note><attribute key='a' value='lost'/></note>"
                         "<attribute key='b' value='1'/></variable></group></mapping>");
    EXPECT_FALSE(file.getDefaultVariableVisibility()) << "an attribute in an attribute is one of its element";
    EXPECT_EQ(file.getSupportedAttributes("P"), (Names{"b"})) << "a variable needs no contents around it";
}

TEST_F(MappingFile, TextsAreKeptAsUtf8)
{
    const std::string text = "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xF0\xAF\xBF\xBF"; // 2, 3 and 4 bytes
    EXPECT_EQ(provider(mappingText({}, variableText({{"Name", text.c_str()}, {"a", text.c_str()}})))
                  .getAttributeValue(text, "a"),
              text);
    EXPECT_EQ(provider("<?xml version='1.0' encoding='ISO-8859-1'?><mapping><variable><attribute key='Name' value='p'/>"
                       "<attribute key='a' value='\xE9'/></variable></mapping>")
                  .getAttributeValue("p", "a"),
              "\xC3\xA9");
    EXPECT_EQ(provider("<mapping><variable><attribute key='Name' value='&lt;&amp;&#233;&#x1F600;'/>"
                       "<attribute key='a' value='1'/></variable></mapping>")
                  .getAttributeValue("<&\xC3\xA9\xF0\x9F\x98\x80", "a"),
              "1");
}

// ---- is it one? ------------------------------------------------------------------------

TEST_F(MappingFile, IsOneWithSourceAndTarget)
{
    EXPECT_TRUE(isMapping(mappingText({{"Source", "MERIDYN_QUORIX"}, {"Target", "MERIDYN_COMMON"}}, "")));
    EXPECT_EQ(_vocabularies, Vocabularies("MERIDYN_QUORIX", "MERIDYN_COMMON"));
    EXPECT_TRUE(isMapping("<mapping><attribute key='Target' value='T'/><attribute key='Source' value='S'/></mapping>"));
    EXPECT_EQ(_vocabularies, Vocabularies("S", "T"));
}

TEST_F(MappingFile, IsNoneOtherwise)
{
    const std::string header = attributesText(vocabularies);
    const std::string texts[] = {
        "",
        "no XML",
        "<mapping/>",
        "<other>" + header + "</other>",
        "<Mapping>" + header + "</Mapping>",
        "<mapping><contents>" + header + "</contents></mapping>",
        mappingText({{"Source", ""}, {"Target", "T"}}, ""),
        mappingText({{"Source", "S"}, {"Target", ""}}, ""),
        mappingText({{"Source", "S"}}, ""),
        mappingText({{"Target", "T"}}, ""),
        "<mapping Source='S' Target='T'/>",
    };
    for (const std::string& text : texts) {
        EXPECT_FALSE(isMapping(text)) << text;
        EXPECT_EQ(_vocabularies, Vocabularies("old source", "old target")) << text;
    }
}

TEST_F(MappingFile, DamagedOneIsNoneAndGivesAnEmptyProvider)
{
    const std::string good =
        "<mapping>" +
        attributesText({{"Source", "S"}, {"Target", "MERIDYN_GENERIC"}, {"Default Variable Visibility", "no"}}) +
        "<contents>" + variableText(temperature) + "</contents></mapping>";
    ASSERT_TRUE(isMapping(good));
    ASSERT_EQ(provider(good).getMappedKey("T"), "temperature");

    const std::string texts[] = {
        good + "text behind",
        good + "<mapping/>",
        good + "<",
        good + std::string(1, '\0'),
        "text before" + good,
        good.substr(0, good.size() - 1),
        good.substr(0, good.size() / 2),
        "<a>" + good,
        "<mapping><mapping>" + good,
        "<?xml version='1.0' encoding='nonsense'?>" + good,
        "<mapping>\xE9" + good.substr(9),
        "<mapping>&undefined;" + good.substr(9),
        "<mapping><attribute key='a' value='1' value='2'/>" + good.substr(9),
        "<mapping><a></b>" + good.substr(9),
        "<mapping>&#xD800;" + good.substr(9),
    };
    for (const std::string& text : texts) {
        EXPECT_FALSE(isMapping(text)) << text;
        EXPECT_EQ(_vocabularies, Vocabularies("old source", "old target")) << text;
        SCOPED_TRACE(text);
        expectEmptyWithDefaults(provider(text));
    }
}

TEST_F(MappingFile, EveryCutIsNone)
{
    const std::string good = mappingText(vocabularies, variableText(temperature));
    const std::size_t complete = good.size() - 1; // all but the last line break
    for (std::size_t size = 0; size < complete; ++size)
        EXPECT_FALSE(isMapping(good.substr(0, size))) << size;
    EXPECT_TRUE(isMapping(good.substr(0, complete)));
}

TEST_F(MappingFile, OnlyRegularFilesAreOpened)
{
    const std::string pipe = _folder / "pipe.xml";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string loop = _folder / "loop.xml";
    std::filesystem::create_symlink(loop, loop);
    const std::string good = _folder.write("good.xml", mappingText(vocabularies, ""));
    const std::string paths[] = {
        "",          _folder / "missing.xml", _folder.path(),   pipe, loop, "/dev/zero",
        good + "/x", std::string(5000, 'a'),  "file://" + good,
    };
    for (const std::string& path : paths) {
        EXPECT_FALSE(KelVariableAttributeFile::isMappingFile(path, _vocabularies)) << path;
        SCOPED_TRACE(path);
        expectEmptyWithDefaults(KelVariableAttributeFile(path));
    }
    const std::string link = _folder / "link.xml";
    std::filesystem::create_symlink(good, link);
    EXPECT_TRUE(KelVariableAttributeFile::isMappingFile(link, _vocabularies)) << "a link to a file is a file";
}

TEST_F(MappingFile, AnyFileNameWillDo)
{
    for (const std::string name : {"100%20 & <a>.xml", "\xC3\xA9.xml", "\xFF.xml", "no suffix", "a#b?c.xml"})
        EXPECT_TRUE(
            KelVariableAttributeFile::isMappingFile(_folder.write(name, mappingText(vocabularies, "")), _vocabularies))
            << name;
}

// ---- hostile input ---------------------------------------------------------------------

TEST_F(MappingFile, DocumentTypesOpenAndExpandNothing)
{
    const std::string header = attributesText(vocabularies);
    const std::string secret = _folder.write("secret.txt", "<attribute key='Source' value='stolen'/>");
    EXPECT_TRUE(isMapping("<!DOCTYPE mapping SYSTEM 'http://127.0.0.1:1/none.dtd'><mapping>" + header + "</mapping>"));
    EXPECT_TRUE(isMapping("<!DOCTYPE mapping [<!ELEMENT mapping ANY>]><mapping>" + header + "</mapping>"));
    EXPECT_FALSE(
        isMapping("<!DOCTYPE mapping [<!ENTITY e SYSTEM '" + secret + "'>]><mapping>" + header + "&e;</mapping>"));
    EXPECT_FALSE(isMapping("<!DOCTYPE mapping [<!ENTITY e 'v'>]><mapping>" + header +
                           "<attribute key='k' value='&e;'/></mapping>"));
}

TEST_F(MappingFile, EntityBombsAreNotLit)
{
    std::string general = "<!DOCTYPE mapping [<!ENTITY e0 'ha'>";
    std::string parameter = "<!DOCTYPE mapping [<!ENTITY % e0 '<!ENTITY x \"y\">'>";
    for (int n = 1; n < 60; ++n) {
        const std::string below = "e" + std::to_string(n - 1) + ";";
        general += "<!ENTITY e" + std::to_string(n) + " '&" + below + "&" + below + "'>";
        parameter += "<!ENTITY % e" + std::to_string(n) + " '&#37;" + below + "&#37;" + below + "'>";
    }
    EXPECT_FALSE(isMapping(general + "]><mapping><attribute key='a' value='&e59;'/></mapping>"));
    EXPECT_FALSE(isMapping(parameter + "%e59;]><mapping/>"));
}

TEST_F(MappingFile, DepthAndLengthDoNoHarm)
{
    const std::string header = attributesText(vocabularies);
    std::string deep = "<mapping>" + header;
    for (int n = 0; n < 100000; ++n)
        deep += "<x>";
    EXPECT_FALSE(isMapping(deep));
    for (int n = 0; n < 100000; ++n)
        deep += "</x>";
    EXPECT_TRUE(isMapping(deep + "</mapping>"));
    const std::string longValue(1000000, 'v');
    auto file = provider("<mapping><variable><attribute key='Name' value='p'/><attribute key='a' value='" + longValue +
                         "'/></variable></mapping>");
    EXPECT_EQ(file.getAttributeValue("p", "a").size(), longValue.size());
}

// ---- the complete example of docs/variable-mapping.md ----------------------------------

TEST_F(MappingFile, ExampleOfTheDocumentIsComplete)
{
    std::ifstream document(KEL_SOURCE_DIR "/docs/variable-mapping.md");
    const std::string text{std::istreambuf_iterator<char>(document), {}};
    const std::string fence = "```xml\n";
    const std::size_t begin = text.find(fence) + fence.size();
    const std::string example = text.substr(begin, text.find("```", begin) - begin);
    EXPECT_TRUE(isMapping(example)) << example;
    EXPECT_EQ(_vocabularies, Vocabularies("QUORIX", "MERIDYN_GENERIC"));
    auto file = provider(example);
    EXPECT_EQ(file.getMappedKey("temp"), "temperature");
    EXPECT_EQ(file.getDatasetName("TEMP"), "SV_T");
    EXPECT_EQ(file.getDatasetName("U-Mag"), "velocity magnitude");
    EXPECT_EQ(file.getSupportedAttributes("Temp"), (Names{"Common Name", "Dataset Name", "Long Name", "User Visible"}));
    EXPECT_FALSE(file.getDefaultVariableVisibility());
}
