#include "solution/KelVariableMappingHandler.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

using namespace meridyn;

TEST(MappingDocument, IsTheSameFromMemory)
{
    const std::string text = "<mapping><attribute key='Source' value='S'/><variable><attribute key='Name' value='p'/>"
                             "<attribute key='a' value='1'/></variable></mapping>";
    const MappingDocument document = readMappingText(text);
    EXPECT_EQ(document.header, (Texts{{"Source", "S"}}));
    EXPECT_EQ(document.entries, (Texts{{"p#a", "1"}}));
    EXPECT_EQ(document.keys, (std::vector<std::string>{"p"}));
    EXPECT_TRUE(readMappingText(text.substr(0, text.size() - 1)).header.empty());
    EXPECT_TRUE(readMappingText("").header.empty());
}

TEST(MappingDocument, ZeroCharactersAreDamageButWideEncodingsAreNot)
{
    const std::string text = "<mapping><attribute key='Source' value='S'/></mapping>";
    for (const std::string& tail : {std::string(1, '\0'), std::string("\0garbage", 8), std::string(100000, '\0')})
        EXPECT_TRUE(readMappingText(text + tail).header.empty()) << tail.size();
    std::string bigEndian = "\xFE\xFF";
    std::string littleEndian = "\xFF\xFE";
    for (const char c : text) {
        bigEndian += {'\0', c};
        littleEndian += {c, '\0'};
    }
    for (const std::string& wide : {bigEndian, littleEndian})
        EXPECT_EQ(readMappingText(wide).header, (Texts{{"Source", "S"}}));
}

namespace {

std::string documentWithAttributes(int count)
{
    std::string text = "<mapping><attribute key='Source' value='S'/><other";
    for (int i = 0; i < count; ++i)
        text += " a" + std::to_string(i) + "=''";
    return text + "/></mapping>";
}

} // namespace

TEST(MappingDocument, AnElementOfVeryManyAttributesIsDamage)
{
    EXPECT_EQ(readMappingText(documentWithAttributes(1000)).header, (Texts{{"Source", "S"}}));
    EXPECT_TRUE(readMappingText(documentWithAttributes(10000)).header.empty());
}

TEST(MappingDocument, ManyElementsAreNot)
{
    std::string text = "<mapping><attribute key='Source' value='S'/>";
    for (int i = 0; i < 20000; ++i)
        text += "<other a='1' b='2'>text</other>";
    EXPECT_EQ(readMappingText(text + "</mapping>").header, (Texts{{"Source", "S"}}));
}

TEST(MappingDocument, ATextThatWouldTakeAllMemoryIsDamage)
{
    const std::string begin = "<mapping><attribute key='Source' value='S'/><other a='";
    EXPECT_EQ(readMappingText(begin + std::string(1 << 20, 'x') + "'/></mapping>").header, (Texts{{"Source", "S"}}));
    EXPECT_TRUE(readMappingText(begin + std::string(1 << 26, 'x') + "'/></mapping>").header.empty());
}

namespace {

/// The attributes of one element, for calls without a parser.
class Attributes : public xercesc::AttributeList {
public:
    explicit Attributes(std::vector<std::pair<std::u16string, std::u16string>> pairs) : _pairs(std::move(pairs)) {}
    XMLSize_t getLength() const override { return _pairs.size(); }
    const XMLCh* getName(XMLSize_t index) const override { return _pairs[index].first.c_str(); }
    const XMLCh* getType(XMLSize_t) const override { return u"CDATA"; }
    const XMLCh* getValue(XMLSize_t index) const override { return _pairs[index].second.c_str(); }
    const XMLCh* getType(const XMLCh*) const override { return nullptr; }
    const XMLCh* getValue(const XMLCh*) const override { return nullptr; }
    const XMLCh* getValue(const char*) const override { return nullptr; }

private:
    std::vector<std::pair<std::u16string, std::u16string>> _pairs;
};

} // namespace

TEST(MappingHandler, ToleratesEndsAndAttributesOutsideOfEverything)
{
    KelVariableMappingHandler handler;
    Attributes attribute({{u"key", u"Source"}, {u"value", u"S"}});
    handler.endElement(u"mapping");
    handler.startElement(u"attribute", attribute);
    handler.endElement(u"attribute");
    Attributes none({});
    handler.startElement(u"mapping", none);
    handler.endElement(u"mapping");
    EXPECT_TRUE(handler.document().header.empty());
}

TEST(MappingHandler, FatalErrorForgetsEverything)
{
    xercesc::XMLPlatformUtils::Initialize();
    {
        KelVariableMappingHandler handler;
        Attributes none({});
        Attributes attribute({{u"key", u"Source"}, {u"value", u"S"}});
        handler.startElement(u"mapping", none);
        handler.startElement(u"attribute", attribute);
        handler.endElement(u"attribute");
        handler.endElement(u"mapping");
        EXPECT_EQ(handler.document().header, (Texts{{"Source", "S"}}));

        handler.startElement(u"mapping", none);
        handler.startElement(u"attribute", attribute);
        handler.fatalError(xercesc::SAXParseException(u"", u"", u"", 1, 1));
        EXPECT_TRUE(handler.document().header.empty());
        handler.endElement(u"mapping");
        EXPECT_TRUE(handler.document().header.empty()) << "no scope is open any more";
    }
    xercesc::XMLPlatformUtils::Terminate();
}
