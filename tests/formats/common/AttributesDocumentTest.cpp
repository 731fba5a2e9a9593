// The names of attributes: each constant letter by letter, and the table of docs/attributes.md, which has them all.
#include "KelAttributes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>

using namespace meridyn;

namespace {

struct Attribute {
    const char* constant;
    const char* value;
    const char* letters;
};

const Attribute attributes[] = {
    {"datasetName", KelAttributes::datasetName, "Dataset Name"},
    {"longName", KelAttributes::longName, "Long Name"},
    {"commonName", KelAttributes::commonName, "Common Name"},
    {"userVisible", KelAttributes::userVisible, "User Visible"},
    {"recipe", KelAttributes::recipe, "Recipe"},
    {"units", KelAttributes::units, "Units"},
    {"componentNames", KelAttributes::componentNames, "Component Names"},
    {"parentName", KelAttributes::parentName, "Parent Name"},
    {"oriented", KelAttributes::oriented, "Oriented"},
};

std::string textOf(const char* file)
{
    std::ifstream stream(std::string(KEL_SOURCE_DIR) + "/" + file);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::size_t countOf(const std::string& text, const std::string& piece)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(piece); at != std::string::npos; at = text.find(piece, at + 1))
        ++count;
    return count;
}

TEST(AttributeNames, AreTheDocumentedLetters)
{
    const std::string document = textOf("docs/attributes.md");
    for (const Attribute& row : attributes) {
        EXPECT_STREQ(row.value, row.letters);
        EXPECT_EQ(countOf(document, std::string("\n| `") + row.letters + "` | `" + row.constant + "` | "), 1u)
            << row.constant;
    }
    EXPECT_EQ(countOf(document, "\n| `"), std::size(attributes)); // no row of a name that there is not
    EXPECT_STREQ(KelAttributes::yes, "True");
    EXPECT_STREQ(KelAttributes::no, "False");
}

TEST(AttributeNames, AreAllInTheTest)
{
    const std::string header = textOf("include/KelAttributes.h");
    EXPECT_EQ(countOf(header, "inline constexpr char "), std::size(attributes) + 2); // and yes and no
}

} // namespace
