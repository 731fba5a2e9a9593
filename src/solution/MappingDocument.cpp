#include "solution/MappingDocument.h"

#include "solution/KelVariableMappingHandler.h"
#include "solution/ParserMemory.h"

#include <algorithm>
#include <boost/filesystem/operations.hpp>
#include <fstream>
#include <mutex>
#include <sstream>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace meridyn {
namespace {

/// The XML platform, for the time of one parse. The XML library counts its users, so a host program may use it as well,
/// but counts without a lock: one of ours keeps parses of different threads apart where they begin and end.
class XmlPlatform {
public:
    XmlPlatform()
    {
        const std::lock_guard lock(mutex());
        xercesc::XMLPlatformUtils::Initialize();
    }
    ~XmlPlatform()
    {
        const std::lock_guard lock(mutex());
        xercesc::XMLPlatformUtils::Terminate();
    }
    XmlPlatform(const XmlPlatform&) = delete;
    XmlPlatform& operator=(const XmlPlatform&) = delete;

private:
    static std::mutex& mutex()
    {
        static std::mutex one;
        return one;
    }
};

/// What is read from a stream, and whether it is whole: the parser takes a zero character for the end of its input,
/// so that damage behind one would stay unseen. Encodings wider than a byte show by their first two bytes.
class WatchedInput {
public:
    explicit WatchedInput(std::istream& stream) : _stream(stream) {}

    XMLSize_t read(XMLByte* buffer, XMLSize_t capacity)
    {
        _stream.read(reinterpret_cast<char*>(buffer), static_cast<std::streamsize>(capacity));
        const auto count = static_cast<XMLSize_t>(_stream.gcount());
        if (_position == 0 && count >= 2)
            _isWide = buffer[0] == 0 || buffer[1] == 0 || buffer[0] >= 0xFE;
        _hasZero = _hasZero || (!_isWide && std::find(buffer, buffer + count, XMLByte(0)) != buffer + count);
        _position += count;
        return count;
    }

    XMLFilePos position() const { return _position; }
    bool isDamaged() const { return _hasZero; }

private:
    std::istream& _stream;
    XMLFilePos _position = 0;
    bool _isWide = false;
    bool _hasZero = false;
};

class InputStream : public xercesc::BinInputStream {
public:
    explicit InputStream(WatchedInput& input) : _input(input) {}

    XMLFilePos curPos() const override { return _input.position(); }
    const XMLCh* getContentType() const override { return nullptr; }
    XMLSize_t readBytes(XMLByte* buffer, XMLSize_t capacity) override { return _input.read(buffer, capacity); }

private:
    WatchedInput& _input;
};

/// A stream opened by us. The XML library's own file source would take a name through the locale's code page, and one
/// like "http://..." for an address.
class InputStreamSource : public xercesc::InputSource {
public:
    explicit InputStreamSource(WatchedInput& input) : _input(input) {}

    xercesc::BinInputStream* makeStream() const override { return new InputStream(_input); }

private:
    WatchedInput& _input;
};

/// Well-formedness only, with the scanner that passes over a document type declaration: nothing outside the source is
/// opened, and no entity but the five of XML itself is expanded.
void configure(xercesc::SAXParser& parser)
{
    parser.setValidationScheme(xercesc::SAXParser::Val_Never);
    parser.useScanner(xercesc::XMLUni::fgWFXMLScanner);
    parser.setLoadSchema(false);
    parser.setLoadExternalDTD(false);
    parser.setDoSchema(false);
    parser.setSkipDTDValidation(true);
    parser.setDisableDefaultEntityResolution(true);
}

/// Notes what is wrong first, and where; the parser goes on as it does without it.
class FirstProblem : public xercesc::HandlerBase {
public:
    void error(const xercesc::SAXParseException& problem) override { note(problem); }
    void fatalError(const xercesc::SAXParseException& problem) override { note(problem); }
    void warning(const xercesc::SAXParseException&) override {}

    const std::string& text() const { return _text; }

private:
    void note(const xercesc::SAXParseException& problem)
    {
        if (!_text.empty())
            return;
        for (const XMLCh* c = problem.getMessage(); c != nullptr && *c != 0; ++c)
            _text += *c < 0x80 ? static_cast<char>(*c) : '?';
        _text += " at line " + std::to_string(problem.getLineNumber()) + ", column " +
                 std::to_string(problem.getColumnNumber());
    }

    std::string _text;
};

constexpr const char* unreadable = "it cannot be read";

/// Whether the stream holds a well-formed document, the whole of it. The platform is there.
///
/// @param problem  what is wrong otherwise
bool parse(std::istream& stream, KelVariableMappingHandler& handler, std::string& problem)
{
    try {
        WatchedInput input(stream);
        ParserMemory memory;
        FirstProblem first;
        xercesc::SAXParser parser(nullptr, &memory);
        configure(parser);
        parser.setDocumentHandler(&handler);
        parser.setErrorHandler(&first);
        const InputStreamSource source(input);
        xercesc::XMLPScanToken token;
        for (bool goesOn = parser.parseFirst(source, token); goesOn; goesOn = parser.parseNext(token))
            memory.beginStep();
        problem = input.isDamaged() ? "it holds zero characters" : first.text();
        if (problem.empty() && parser.getErrorCount() != 0)
            problem = unreadable;
        return problem.empty();
    } catch (...) { // beyond the bounds of memory, or broken in its encoding
        problem = unreadable;
        return false;
    }
}

MappingDocument withProblem(std::string problem)
{
    MappingDocument document;
    document.problem = std::move(problem);
    return document;
}

MappingDocument read(std::istream& stream)
{
    std::string problem = unreadable;
    try {
        const XmlPlatform platform;
        KelVariableMappingHandler handler;
        if (parse(stream, handler, problem))
            return std::move(handler.document());
    } catch (...) { // no platform, no memory
    }
    return withProblem(problem);
}

} // namespace

Texts::iterator moveEntry(Texts::node_type entry, Texts& map, Texts::iterator hint)
{
    const auto place = map.insert(hint, std::move(entry));
    if (!entry.empty()) // NOLINT(bugprone-use-after-move): left here when the key is taken
        place->second = std::move(entry.mapped());
    return place;
}

MappingDocument readMappingFile(const std::string& path)
{
    boost::system::error_code problem;
    if (!boost::filesystem::is_regular_file(boost::filesystem::path(path), problem))
        return withProblem("it is no regular file"); // unopened: a pipe would keep us waiting
    std::ifstream file(path, std::ios::binary);
    return read(file);
}

MappingDocument readMappingText(const std::string& text)
{
    std::istringstream stream(text);
    return read(stream);
}

} // namespace meridyn
