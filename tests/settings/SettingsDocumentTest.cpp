#include "KelSetting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

// The example of docs/settings-xml.md is read, holds what it shows, and is written again as it stands there.

namespace {

using namespace meridyn;

std::string exampleOfTheDocument()
{
    std::ostringstream document;
    document << std::ifstream(KEL_SOURCE_DIR "/docs/settings-xml.md").rdbuf();
    const std::string text = document.str();
    const std::string fence = "```xml\n";
    const std::size_t begin = text.find(fence) + fence.size();
    return text.substr(begin, text.find("```", begin) - begin);
}

TEST(SettingsDocument, ExampleIsReadAndWrittenAsItStands)
{
    const std::string example = exampleOfTheDocument();
    ASSERT_NE(example.find("<kelSettingObject arbor=\"1\""), std::string::npos) << example;
    KelSetting setting = KelSetting::fromSettingString(example);
    ASSERT_TRUE(setting.isValid());
    EXPECT_EQ(setting.toSettingString(), example);
}

} // namespace
