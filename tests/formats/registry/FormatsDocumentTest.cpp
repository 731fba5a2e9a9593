#include "KelFormatRegistry.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

// docs/formats.md shows what the registry says.
namespace meridyn {
namespace {

std::string tableOfFamilies()
{
    const std::vector<KelFormat>& formats = KelFormatRegistry::instance().formats();
    std::string text = "| |", line = "|---|";
    for (const KelFormat& format : formats) {
        text += " " + format.name + " |";
        line += ":---:|";
    }
    text += "\n" + line + "\n";
    for (int family = 0; family < KEL_FAMILY_COUNT; ++family) {
        const auto has = [family](KelFormatFamilies families) {
            return (families & formatFamily(static_cast<KelFormatFamily>(family))) != 0;
        };
        text += "| " + formatFamilyName(static_cast<KelFormatFamily>(family)) + " |";
        for (const KelFormat& format : formats)
            text += std::string(" ") + (has(format.reads) ? "r" : "") + (has(format.writes) ? "w" : "") + " |";
        text += "\n";
    }
    return text;
}

TEST(FormatsDocument, ShowsTheTableOfTheRegistry)
{
    std::ostringstream document;
    document << std::ifstream(KEL_SOURCE_DIR "/docs/formats.md").rdbuf();
    const std::string text = document.str(), begin = "<!-- table of families -->\n", end = "<!-- end of table -->";
    const std::size_t from = text.find(begin), to = text.find(end);
    ASSERT_NE(from, std::string::npos);
    ASSERT_NE(to, std::string::npos);
    EXPECT_EQ(text.substr(from + begin.size(), to - from - begin.size()), tableOfFamilies());
    for (const KelFormat& format : KelFormatRegistry::instance().formats())
        EXPECT_NE(text.find("\n| `" + format.name + "` |"), std::string::npos) << format.name << " is not described";
}

} // namespace
} // namespace meridyn
