#include "arbor/TPropertyType.h"
#include "arbor/TZone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace arbor;

using Node = std::unique_ptr<TObject>;

const std::string declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

Node makeNode(const std::string& type, const std::string& name)
{
    return Node(TObject::newObject(type, name, nullptr));
}

Node read(const std::string& text)
{
    return Node(TObject::fromXMLString(text));
}

template <class T>
T& add(TObject& owner, const std::string& type, const std::string& name)
{
    TProperty* made = TProperty::newProperty("TPropertyType<" + type + ">", name, nullptr, &owner);
    return dynamic_cast<TPropertyType<T>&>(*made).value();
}

template <class T>
const T* valueOf(const TObject& owner, const std::string& name)
{
    const auto* typed = dynamic_cast<const TPropertyType<T>*>(owner.property(name));
    return typed == nullptr ? nullptr : &typed->value();
}

TEST(Xml, WritesTheDocumentedForm)
{
    const Node root = makeNode("TObject", "solver");
    root->setSecondName("Solver & more");
    add<bool>(*root, "bool", "steady") = true;
    add<double>(*root, "double", "limit") = 0.5;
    root->property("limit")->setUnit("m");
    add<std::vector<int>>(*root, "std::vector<int> ", "sizes") = {1, 2};
    add<std::vector<std::string>>(*root, "std::vector<std::string> ", "words") = {"a,b", ""};
    add<std::vector<std::string>>(*root, "std::vector<std::string> ", "none");
    TObject* zone = TObject::newObject("TZone", "<z>", root.get());
    dynamic_cast<TZone&>(*zone).setKind(TZone::Face);
    add<std::string>(*TObject::newObject("TRegion", "r", zone), "std::string", "path") = "c:\\x\n\x01";
    EXPECT_EQ(TObject::toXMLString(root.get()),
              declaration + "<object arbor=\"1\" name=\"solver\" secondName=\"Solver &amp; more\">\n"
                            "  <property name=\"steady\" type=\"bool\" value=\"true\"/>\n"
                            "  <property name=\"limit\" type=\"double\" unit=\"m\" value=\"0.5\"/>\n"
                            "  <property name=\"sizes\" type=\"int[]\" value=\"1,2\"/>\n"
                            "  <property name=\"words\" type=\"string[]\">\n"
                            "    <item value=\"a,b\"/>\n"
                            "    <item value=\"\"/>\n"
                            "  </property>\n"
                            "  <property name=\"none\" type=\"string[]\"/>\n"
                            "  <zone name=\"&lt;z&gt;\" kind=\"face\">\n"
                            "    <region name=\"r\">\n"
                            "      <property name=\"path\" type=\"string\" value=\"c:\\\\x&#10;\\x01\"/>\n"
                            "    </region>\n"
                            "  </zone>\n"
                            "</object>\n");
    EXPECT_EQ(TObject::toXMLString(nullptr), "");
}

TEST(Xml, WritesAPartAsATreeOfItsOwn)
{
    const Node root = makeNode("TObject", "a");
    TObject* part = TObject::newObject("TDomain", "b", root.get());
    EXPECT_EQ(TObject::toXMLString(part), declaration + "<domain arbor=\"1\" name=\"b\"/>\n");
}

TEST(Xml, ReadsBackWhatItWrote)
{
    const Node root = makeNode("TDomain", "top");
    for (int i = 0; i < 20; ++i) {
        TObject* child = TObject::newObject(i % 2 == 0 ? "TZone" : "TRegion", "same", root.get());
        child->setSecondName("second " + std::to_string(i));
        add<int>(*child, "int", std::to_string(20 - i)) = i;
        add<std::vector<bool>>(*child, "std::vector<bool> ", "b") = {true, false};
        add<float>(*child, "float", "f") = 0.1F;
        add<std::vector<float>>(*child, "std::vector<float> ", "fs") = {0.1F, 1e-30F};
        child->property("f")->setSecondName("label");
        child->property("f")->setUnit("m/s");
    }
    const std::string text = TObject::toXMLString(root.get());
    const Node back = read(text);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(TObject::toXMLString(back.get()), text);
    EXPECT_EQ(TBase::className(back.get()), "TDomain");
    EXPECT_EQ(TBase::className(back->child(1)), "TRegion");
    EXPECT_EQ(back->child(7)->secondName(), "second 7");
    EXPECT_EQ(back->child(7)->property("f")->secondName(), "label");
    EXPECT_EQ(back->child(7)->property("f")->getUnit(), "m/s");
    EXPECT_EQ(back->child(7)->getPropertiesNames(), root->child(7)->getPropertiesNames());
    ASSERT_NE(valueOf<float>(*back->child(3), "f"), nullptr);
    EXPECT_EQ(*valueOf<float>(*back->child(3), "f"), 0.1F);
}

TEST(Xml, ZoneKindsTravel)
{
    for (const TZone::Kind kind : {TZone::None, TZone::Cell, TZone::Face, TZone::Node}) {
        const Node zone = makeNode("TZone", "z");
        dynamic_cast<TZone&>(*zone).setKind(kind);
        const Node back = read(TObject::toXMLString(zone.get()));
        ASSERT_NE(back, nullptr);
        EXPECT_EQ(dynamic_cast<TZone&>(*back).kind(), kind);
    }
}

template <class Bits, class Real>
Bits bitsOf(const Real& value)
{
    Bits bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

template <class Real, class Bits>
void expectExactReals(const std::string& type, const std::vector<Bits>& samples)
{
    const Node root = makeNode("TObject", "r");
    auto& list = add<std::vector<Real>>(*root, "std::vector<" + type + "> ", "list");
    for (const Bits bits : samples) {
        Real value;
        std::memcpy(&value, &bits, sizeof value);
        list.push_back(value);
        std::memcpy(&add<Real>(*root, type, std::to_string(list.size())), &bits, sizeof value);
    }
    const Node back = read(TObject::toXMLString(root.get()));
    ASSERT_NE(back, nullptr);
    const auto* listBack = valueOf<std::vector<Real>>(*back, "list");
    ASSERT_NE(listBack, nullptr);
    ASSERT_EQ(listBack->size(), samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto* scalar = valueOf<Real>(*back, std::to_string(i + 1));
        ASSERT_NE(scalar, nullptr);
        EXPECT_EQ(bitsOf<Bits>((*listBack)[i]), samples[i]);
        EXPECT_EQ(bitsOf<Bits>(*scalar), samples[i]);
    }
}

TEST(Xml, RealsTravelBitForBit)
{
    std::mt19937_64 random(1);
    // zeros, ones, ends of the range, infinities, quiet and signalling nans of both signs
    std::vector<std::uint64_t> doubles = {
        0x0000000000000000, 0x8000000000000000, 0x3ff0000000000000, 0x0000000000000001, 0x000fffffffffffff,
        0x0010000000000000, 0x7fefffffffffffff, 0x7ff0000000000000, 0xfff0000000000000, 0x7ff8000000000000,
        0xfff8000000000000, 0x7ff0000000000001, 0xffffffffffffffff, 0x7ff8dead0000beef, 0x444b1ae4d6e2ef50};
    std::vector<std::uint32_t> floats = {0x00000000, 0x80000000, 0x3f800000, 0x00000001, 0x007fffff, 0x7f7fffff,
                                         0x7f800000, 0xff800000, 0x7fc00000, 0xffc00000, 0x7f800001, 0x7fc0beef};
    for (int i = 0; i < 2000; ++i) {
        doubles.push_back(random());
        floats.push_back(static_cast<std::uint32_t>(random()));
    }
    expectExactReals<double>("double", doubles);
    expectExactReals<float>("float", floats);
}

TEST(Xml, AnyBytesTravel)
{
    std::string all;
    for (int i = 0; i < 256; ++i)
        all += static_cast<char>(i);
    std::vector<std::string> samples = {"",
                                        " ",
                                        "  a  ",
                                        "\t\r\n\r\n",
                                        all,
                                        "\\",
                                        "\\x41",
                                        "\\\\",
                                        "&amp;",
                                        "]]>",
                                        "<!--",
                                        "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", // letters of two, three and four bytes
                                        "\xC0\x80",
                                        "\xED\xA0\x80",
                                        "\xEF\xBF\xBE",
                                        "\xEF\xBF\xBF",
                                        "\xF4\x90\x80\x80",
                                        "\xE2\x82",
                                        std::string(1, '\0'),
                                        std::string(100000, '\\'),
                                        "'\"",
                                        "\x7F\xC2\x85"};
    std::mt19937 random(2);
    for (int i = 0; i < 300; ++i) {
        std::string bytes(random() % 20, ' ');
        for (char& c : bytes)
            c = static_cast<char>(random());
        samples.push_back(bytes);
    }
    for (const std::string& sample : samples) {
        const Node root = makeNode("TObject", sample);
        root->setSecondName(sample);
        add<std::string>(*root, "std::string", sample) = sample;
        root->property(0)->setUnit(sample);
        add<std::vector<std::string>>(*root, "std::vector<std::string> ", sample + "x") = {sample, sample};
        TObject::newObject("TObject", sample, root.get());
        const std::string text = TObject::toXMLString(root.get());
        const Node back = read(text);
        ASSERT_NE(back, nullptr) << text;
        EXPECT_EQ(back->name(), sample);
        EXPECT_EQ(back->secondName(), sample);
        EXPECT_EQ(back->child(0)->name(), sample);
        EXPECT_EQ(back->property(0)->getUnit(), sample);
        ASSERT_NE(valueOf<std::string>(*back, sample), nullptr);
        EXPECT_EQ(*valueOf<std::string>(*back, sample), sample);
        ASSERT_NE(valueOf<std::vector<std::string>>(*back, sample + "x"), nullptr);
        EXPECT_EQ(*valueOf<std::vector<std::string>>(*back, sample + "x"), std::vector<std::string>(2, sample));

        pugi::xml_document document; // another reader sees XML, and the name where XML can carry it
        ASSERT_TRUE(document.load_buffer(text.data(), text.size(), pugi::parse_full)) << text;
        if (text.find('\\') == std::string::npos) {
            EXPECT_EQ(document.document_element().attribute("name").value(), sample);
        }
    }
}

const char* const goodTexts[] = {
    "<object arbor='1' name='a'/>",
    "\xEF\xBB\xBF<object arbor='1' name='a'/>",
    "<?xml version='1.0'?><object arbor='1' name='a'/>",
    "<?xml version=\"1.0\" encoding=\"utf-8\" standalone='yes' ?>\n<object arbor='1' name='a'></object >\n",
    " <!-- c --> <?do it?> <object name = 'a'\n\tarbor='1' > <!----> <?p?> </object> <!-- > - --> <?q ?> ",
    "<object arbor='1' name='&#97;'/>",
    "<object arbor='1' name='\\x61'/>",
    "<object arbor='1' name='a'><property type='int' value=' 1 ' name='p'></property><object name='c'/></object>",
    "<object arbor='1' name='a'><object name='c'/><property name='p' type='int' value='1'/></object>",
    "<object arbor='1' name='a'><property name='p' type='string[]'> <item value='' /> </property></object>",
};

TEST(Xml, ReadsWhatOtherWritersWouldWrite)
{
    for (const char* text : goodTexts) {
        const Node root = read(text);
        ASSERT_NE(root, nullptr) << text;
        EXPECT_EQ(root->name(), "a") << text;
    }
    EXPECT_EQ(read("<object arbor='1' name='a\r\nb\tc&#10;&#x20AC;&quot;&apos;'/>")->name(), "a b c\n\xE2\x82\xAC\"'");
}

#define IN_ROOT(content) "<object arbor='1' name='a'>" content "</object>"

const char* const badTexts[] = {
    "",
    " ",
    "x",
    "<",
    "<object",
    "<object>",
    "<object/>",
    "<object name='a'/>",
    "<object arbor='1'/>",
    "<object arbor='2' name='a'/>",
    "<object arbor='' name='a'/>",
    "<object arbor='1' name='a'>",
    "<object arbor='1' name='a'/><object arbor='1' name='b'/>",
    "<object arbor='1' name='a'/>x",
    "x<object arbor='1' name='a'/>",
    "<object arbor='1' name='a'/></object>",
    "</object>",
    "<unknown arbor='1' name='a'/>",
    "<TObject arbor='1' name='a'/>",
    "<Object arbor='1' name='a'/>",
    "<property arbor='1' name='a'/>",
    "<property name='a' type='int' value='1'/>",
    "<item value='a'/>",
    "<object arbor='1' name='a' name='b'/>",
    "<object arbor='1' name='a' other='b'/>",
    "<object arbor='1'name='a'/>",
    "<object arbor='1' name=a/>",
    "<object arbor='1' name='a/>",
    "<object arbor='1' name='<'/>",
    "<object arbor='1' name/>",
    "<object arbor='1' name='a' / >",
    "< object arbor='1' name='a'/>",
    "<object arbor='1' name='&bogus;'/>",
    "<object arbor='1' name='&'/>",
    "<object arbor='1' name='&#0;'/>",
    "<object arbor='1' name='&#xD800;'/>",
    "<object arbor='1' name='&#99999999999;'/>",
    "<object arbor='1' name='&#;'/>",
    "<object arbor='1' name='&#x;'/>",
    "<object arbor='1' name='\\q'/>",
    "<object arbor='1' name='\\'/>",
    "<object arbor='1' name='\\x4'/>",
    "<object arbor='1' name='\\xg0'/>",
    "<object arbor='1' name='\\x4g'/>",
    "<object arbor='1' name='\x01'/>",
    "<object arbor='1' name='\xFF'/>",
    "<object arbor='1' name='\xC0\x80'/>",
    "<object arbor='1' name='a'/><!-- \xFF -->",
    "<object arbor='1' name='a' kind='cell'/>",
    "<zone arbor='1' name='a' kind='edge'/>",
    "<zone arbor='1' name='a' kind=''/>",
    "<object arbor='1' name='a' value='1'/>",
    "<object arbor='1' name='a' unit='m'/>",
    "<!DOCTYPE object><object arbor='1' name='a'/>",
    "<!DOCTYPE object []><object arbor='1' name='a'/>",
    "<!-- a -- b --><object arbor='1' name='a'/>",
    "<!-- a",
    "<!--->",
    "<object arbor='1' name='a'/><!--",
    "<? ?><object arbor='1' name='a'/>",
    "<object arbor='1' name='a'/><?xml version='1.0'?>",
    " <?xml version='1.0'?><object arbor='1' name='a'/>",
    "<?xml?><object arbor='1' name='a'/>",
    "<?xml version='2.0'?><object arbor='1' name='a'/>",
    "<?xml version='1.0' encoding='UTF-16'?><object arbor='1' name='a'/>",
    "<?xml version='1.0'><object arbor='1' name='a'/>",
    IN_ROOT("text"),
    IN_ROOT("<![CDATA[ ]]>"),
    IN_ROOT("&#32;"),
    IN_ROOT("<item value='a'/>"),
    IN_ROOT("</object>"),
    IN_ROOT("<object>"),
    IN_ROOT("<object name='b' arbor='1'/>"),
    IN_ROOT("<object/>"),
    IN_ROOT("<object name='b'></zone>"),
    IN_ROOT("<property name='p' type='int'/>"),
    IN_ROOT("<property name='p' value='1'/>"),
    IN_ROOT("<property type='int' value='1'/>"),
    IN_ROOT("<property name='p' type='long' value='1'/>"),
    IN_ROOT("<property name='p' type='' value='1'/>"),
    IN_ROOT("<property name='p' type='int' value='x'/>"),
    IN_ROOT("<property name='p' type='int' value=''/>"),
    IN_ROOT("<property name='p' type='int' value='2147483648'/>"),
    IN_ROOT("<property name='p' type='int' value='1.5'/>"),
    IN_ROOT("<property name='p' type='double' value='1,5'/>"),
    IN_ROOT("<property name='p' type='double' value='1e999'/>"),
    IN_ROOT("<property name='p' type='double' value='nan(0x7ff0000000000000)'/>"),
    IN_ROOT("<property name='p' type='bool' value='yes'/>"),
    IN_ROOT("<property name='p' type='int[]' value='1,,2'/>"),
    IN_ROOT("<property name='p' type='int' value='1'/><property name='p' type='bool' value='1'/>"),
    IN_ROOT("<property name='p' type='int' value='1'><item value='1'/></property>"),
    IN_ROOT("<property name='p' type='int[]'><item value='1'/></property>"),
    IN_ROOT("<property name='p' type='string[]' value='1'/>"),
    IN_ROOT("<property name='p' type='string[]'><item/></property>"),
    IN_ROOT("<property name='p' type='string[]'><item value='a' name='b'/></property>"),
    IN_ROOT("<property name='p' type='string[]'><object name='a'/></property>"),
    IN_ROOT("<property name='p' type='string[]'><item value='a'><item value='b'/></item></property>"),
    IN_ROOT("<property name='p' type='int' value='1' kind='cell'/>"),
};

TEST(Xml, EverythingElseGivesNull)
{
    for (const char* text : badTexts)
        EXPECT_EQ(read(text), nullptr) << text;
    const std::string zeroByte(1, '\0');
    EXPECT_EQ(read("<object arbor='1' name='" + zeroByte + "'/>"), nullptr);
    EXPECT_EQ(read("<object arbor='1' name='a'/>" + zeroByte), nullptr);
}

TEST(Xml, EveryCutGivesNull)
{
    const Node root = makeNode("TObject", "solver");
    add<std::vector<std::string>>(*root, "std::vector<std::string> ", "words") = {"a", "b"};
    add<double>(*TObject::newObject("TZone", "z", root.get()), "double", "x") = 1.5;
    const std::string text = TObject::toXMLString(root.get());
    const std::size_t end = text.size() - 1; // the line break at the end is no part of the tree
    for (std::size_t size = 0; size < end; ++size)
        EXPECT_EQ(read(text.substr(0, size)), nullptr) << text.substr(0, size);
    EXPECT_NE(read(text.substr(0, end)), nullptr);
}

TEST(Xml, EntitiesOfADocumentTypeAreNeverExpanded)
{
    std::string bomb = "<!DOCTYPE b [<!ENTITY a0 'xxxxxxxxxx'>";
    for (int i = 1; i < 20; ++i) {
        bomb.append("<!ENTITY a").append(std::to_string(i)).append(" '");
        for (int k = 0; k < 4; ++k)
            bomb.append("&a").append(std::to_string(i - 1)).append(";");
        bomb += "'>";
    }
    EXPECT_EQ(read(bomb + "]><object arbor='1' name='&a19;'/>"), nullptr);
    EXPECT_EQ(read("<!DOCTYPE b [<!ENTITY f SYSTEM 'file:///etc/passwd'>]><object arbor='1' name='&f;'/>"), nullptr);
}

std::string nested(int depth, const std::string& content = "")
{
    std::string text = "<object arbor='1' name='a'>";
    for (int i = 1; i < depth; ++i)
        text += "<object name='a'>";
    text += content;
    for (int i = 0; i < depth; ++i)
        text += "</object>";
    return text;
}

TEST(Xml, DepthIsThatOfTrees)
{
    const Node deepest =
        read(nested(TObject::maxDepth, "<property name='p' type='string[]'><item value='x'/></property>"));
    ASSERT_NE(deepest, nullptr);
    const std::string text = TObject::toXMLString(deepest.get());
    const Node back = read(text);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(TObject::toXMLString(back.get()), text);
    EXPECT_EQ(read(nested(TObject::maxDepth + 1)), nullptr);
    EXPECT_EQ(read(nested(1000000)), nullptr);
}

TEST(Xml, LargeTreesReadAndMoreEntriesThanTheLimitDoNot)
{
    const auto many = [](std::size_t count) {
        std::string text = "<object arbor='1' name='a'><property name='p' type='string[]'>";
        for (std::size_t i = 2; i < count; ++i)
            text += "<item value=''/>";
        return text + "</property></object>";
    };
    EXPECT_NE(read(many(TObject::maxEntries)), nullptr);
    EXPECT_EQ(read(many(TObject::maxEntries + 1)), nullptr);
}

TEST(Xml, TextBeyondTheLimitGivesNull)
{
    std::string text = "<object arbor='1' name='a'/>";
    text.resize(TObject::maxTextSize + 1, ' ');
    EXPECT_EQ(read(text), nullptr);
}

TEST(Xml, ManySiblingsReadInTime)
{
    const Node root = makeNode("TObject", "r");
    for (int i = 0; i < 100000; ++i) {
        add<int>(*root, "int", std::to_string(i)) = i;
        TObject::newObject("TObject", "same", root.get());
    }
    const Node back = read(TObject::toXMLString(root.get()));
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(back->nProperty(), 100000);
    EXPECT_EQ(back->nChild(), 100000);
    EXPECT_EQ(back->property("77777")->toInt(), 77777);
}

} // namespace
