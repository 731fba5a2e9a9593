#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

// docs/reading-and-writing.md names what there is, and all there is.

namespace {

using Names = std::set<std::string>;

std::string textOf(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(KEL_SOURCE_DIR "/" + path).rdbuf();
    return text.str();
}

/// All that `pattern` captures line by line, outside of blocks of code.
void collect(const std::string& text, const std::regex& pattern, Names& names)
{
    std::istringstream lines(text);
    bool isCode = false;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("```", 0) == 0) {
            isCode = !isCode;
        }
        if (!isCode) {
            for (std::sregex_iterator match(line.begin(), line.end(), pattern), end; match != end; ++match) {
                names.insert((*match)[1]);
            }
        }
    }
}

/// The names in code font, "...Faces" for the markers of faces among them.
Names namesInGuide()
{
    Names names;
    collect(textOf("docs/reading-and-writing.md"), std::regex(R"(`((?:\.\.\.)?\w+)(?:\([^`]*\))?`)"), names);
    return names;
}

Names namesInHeaders(const std::regex& pattern, std::initializer_list<const char*> headers)
{
    Names names;
    for (const char* header : headers) {
        collect(textOf(std::string(header) + ".h"), pattern, names);
    }
    return names;
}

TEST(ReadingAndWritingGuide, NamesOnlyOperationsThatExist)
{
    const Names declared =
        namesInHeaders(std::regex(R"((\w+)\s*\()"),
                       {"include/KelBase", "include/KelConsumer", "include/KelProvider", "include/KelFileIO",
                        "include/KelFileConsumer", "include/KelFileProvider", "formats/hdf5/KelHdf5Consumer",
                        "formats/hdf5/KelHdf5Provider"}); // the guide names their limits
    ASSERT_GT(declared.size(), 400U);
    const std::regex operation("(?:get|set|has|start|end|add|write|is|available)[A-Z].*");
    for (const std::string& name : namesInGuide()) {
        if (name.rfind("...", 0) == 0) {
            EXPECT_EQ(
                declared.count("startWriting" + name.substr(3)) + declared.count("startReading" + name.substr(3)) > 0,
                true)
                << name;
        } else if (std::regex_match(name, operation)) {
            EXPECT_EQ(declared.count(name), 1U) << name;
        }
    }
}

/// Whether the guide has the operation itself, or what it is a form or a marker of.
bool isCovered(const Names& guide, const std::string& operation)
{
    const std::regex zone("InZone$");
    const std::regex marker("^(?:start|end)(?:Writing|Reading)");
    const std::regex element("^([gs]et\\w*?)(Id|Ids|Count|Cell0|Cell1|Coordinates|Type)For(Node|Edge|Face|Cell)$");
    std::string range = std::regex_replace(operation, element, "$1$2sFor$3sInRange");
    range = std::regex_replace(range, std::regex("ssFor"), "sFor"); // from Ids and Coordinates
    return guide.count(operation) != 0 || guide.count(std::regex_replace(operation, zone, "InRange")) != 0 ||
           guide.count(std::regex_replace(operation, marker, "...")) != 0 || guide.count(range) != 0;
}

TEST(ReadingAndWritingGuide, CoversEveryVirtualOperationOfTheFrames)
{
    const Names guide = namesInGuide();
    const Names operations = namesInHeaders(
        std::regex(R"(^\s*virtual [^(]*?(\w+)\s*\()"),
        {"include/KelConsumer", "include/KelProvider", "include/KelFileConsumer", "include/KelFileProvider"});
    ASSERT_GT(operations.size(), 400U);
    for (const std::string& operation : operations) {
        EXPECT_TRUE(isCovered(guide, operation)) << operation;
    }
}

} // namespace
