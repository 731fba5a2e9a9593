#include "ConformanceCase.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <utility>

namespace meridyn::conformance {

constexpr std::size_t mostFailures = 12;

Case::Case(const KelFormat& testedFormat, std::string scratchFolder, std::string checkName)
    : format(testedFormat), _folder(std::move(scratchFolder)), _check(std::move(checkName))
{}

bool Case::expect(bool condition, const std::string& otherwise)
{
    if (!condition && _failures.size() < mostFailures)
        _failures.push_back(otherwise);
    return condition;
}

bool Case::same(const std::string& what, const std::string& expected, const std::string& found)
{
    return expect(expected == found, what + ": expected " + quoted(expected) + ", found " + quoted(found));
}

bool Case::same(const std::string& what, unsigned64 expected, unsigned64 found)
{
    return expect(expected == found,
                  what + ": expected " + std::to_string(expected) + ", found " + std::to_string(found));
}

bool Case::carries(KelFormatFamily family) const
{
    return (format.reads & format.writes & formatFamily(family)) != 0;
}

std::string Case::name(int number) const
{
    const std::string base = _check + "-" + std::to_string(number);
    return format.prefix + (std::filesystem::path(_folder) / base).string() +
           (format.suffixes.empty() ? "" : format.suffixes.front());
}

std::unique_ptr<KelFileConsumer> Case::writer(int number) const
{
    std::unique_ptr<KelFileConsumer> writer = format.makeWriter();
    const KelFormatFiles files = format.files(name(number), true);
    writer->setFile(files.caseFile, KEL_CASE);
    writer->setFile(files.dataFile, KEL_DATA);
    return writer;
}

std::unique_ptr<KelFileProvider> Case::reader(int number) const
{
    return readerOf(name(number));
}

std::unique_ptr<KelFileProvider> Case::readerOf(const std::string& name) const
{
    std::unique_ptr<KelFileProvider> reader = format.makeReader();
    const KelFormatFiles files = format.files(name, false);
    reader->setFile(files.caseFile, KEL_CASE);
    reader->setFile(files.dataFile, KEL_DATA);
    return reader;
}

static const char* textOfClass(KelDataClass dataClass)
{
    return dataClass == KEL_CASE ? "(KEL_CASE)" : "(KEL_DATA)";
}

bool Case::write(KelFileConsumer& writer, KelDataClass dataClass, const std::function<void()>& body)
{
    if (!expect(writer.startWriting(dataClass),
                std::string("startWriting") + textOfClass(dataClass) + " gives false" + errorsOf(writer)))
        return false;
    body();
    const bool done = writer.endWriting(dataClass);
    return expect(done, std::string("endWriting") + textOfClass(dataClass) + " gives false" + errorsOf(writer)) &&
           expect(!writer.hasError(), std::string("writing") + textOfClass(dataClass) + " reports" + errorsOf(writer));
}

bool Case::read(KelFileProvider& reader, KelDataClass dataClass, const std::function<void()>& body)
{
    if (!expect(reader.startReading(dataClass),
                std::string("startReading") + textOfClass(dataClass) + " gives false" + errorsOf(reader)))
        return false;
    body();
    return expect(reader.endReading(dataClass),
                  std::string("endReading") + textOfClass(dataClass) + " gives false" + errorsOf(reader)) &&
           expect(!reader.hasError(), std::string("reading") + textOfClass(dataClass) + " reports" + errorsOf(reader));
}

std::string Case::textOfReal(double value)
{
    std::array<char, 32> buffer{};
    return {buffer.data(), std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr};
}

std::string Case::quoted(const std::string& text)
{
    constexpr std::size_t most = 60;
    return "'" + (text.size() > most ? text.substr(0, most) + "..." : text) + "'";
}

std::string Case::difference(const std::vector<std::string>& expected, const std::vector<std::string>& found)
{
    if (expected.size() != found.size())
        return ": expected " + std::to_string(expected.size()) + " values, found " + std::to_string(found.size());
    std::size_t at = 0;
    while (at < expected.size() && expected[at] == found[at])
        ++at;
    return at < expected.size()
               ? ": value " + std::to_string(at + 1) + " expected " + expected[at] + ", found " + found[at]
               : ": differs in what the text does not show";
}

std::string errorsOf(KelBase& base)
{
    std::string text;
    for (const std::string& error : base.getErrors(false, false))
        text += ": " + error;
    return text;
}

} // namespace meridyn::conformance
