#include "KelMappingFiles.h"

#include "MappingText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace meridyn {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

TEST(MappingFiles, ReadTellsWhatAFileHolds)
{
    const TemporaryFolder folder;
    const std::string path = folder.write(
        "a.xml",
        mappingText({{"Source", "X"}, {"Target", "MERIDYN_GENERIC"}},
                    variableText({{"Name", "q"}, {"Common Name", "Q"}}) + variableText({{"Common Name", "nameless"}}) +
                        variableText({{"Name", "p#rest"}, {"a", "1"}}) + variableText({{"Name", "q"}, {"b", "2"}})));
    const KelMappingFile file = KelMappingFiles::read(path);
    EXPECT_EQ(file.path, path);
    EXPECT_EQ(file.source, "X");
    EXPECT_EQ(file.target, "MERIDYN_GENERIC");
    EXPECT_EQ(file.mappedKeyAttribute, "Common Name");
    EXPECT_THAT(file.keys, ElementsAre("q", "p", "q"));
    EXPECT_FALSE(file.isUsed);
    EXPECT_EQ(file.problem, "");
}

TEST(MappingFiles, ReadTellsWhatIsWrong)
{
    const TemporaryFolder folder;
    const auto problem = [&folder](const std::string& text) {
        return KelMappingFiles::read(folder.write("a.xml", text)).problem;
    };
    EXPECT_EQ(problem(mappingText({{"Source", "X"}, {"Target", "Y"}}, "")), "");
    EXPECT_EQ(problem(mappingText({{"Target", "Y"}}, "")), "is not used: its header has no 'Source'");
    EXPECT_EQ(problem(mappingText({{"Source", "X"}, {"Target", ""}}, "")), "is not used: its header has no 'Target'");
    EXPECT_EQ(problem("<settings/>"), "is no mapping file: its root element is 'settings', 'mapping' expected");
    const std::string whole = mappingText({{"Source", "X"}, {"Target", "Y"}}, "");
    EXPECT_THAT(problem("<mapping>\n<x></y>\n</mapping>"),
                AllOf(StartsWith("is no mapping file: "), HasSubstr(" at line 2, column ")));
    EXPECT_THAT(problem(whole.substr(0, whole.size() - 5)), StartsWith("is no mapping file: "));
    EXPECT_THAT(problem(""), StartsWith("is no mapping file: "));
    EXPECT_EQ(problem(whole + std::string(1, '\0')), "is no mapping file: it holds zero characters");
    for (const std::string& path : {folder / "missing", folder.path().string(), std::string()})
        EXPECT_EQ(KelMappingFiles::read(path).problem, "is no mapping file: it is no regular file") << path;
}

TEST(MappingFiles, OfAFolderAreAllThatLieInIt)
{
    const TemporaryFolder folder;
    const std::string bad = folder.write("bad.xml", "<mapping>");
    folder.write("1.xml", mappingText({{"Source", "X"}, {"Target", "Y"}}, ""));
    folder.write("2.xml", mappingText({{"Source", "X"}, {"Target", "Y"}}, ""));
    const std::string ab = folder.write("3.xml", mappingText({{"Source", "A"}, {"Target", "B"}}, ""));
    std::filesystem::create_directory(folder / "below");
    std::string last; // in the order of the file system
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (entry.path().stem() == "1" || entry.path().stem() == "2")
            last = entry.path().string();

    std::string problem = "untouched";
    const std::vector<KelMappingFile> files = KelMappingFiles::inFolder(folder.path().string(), problem);
    EXPECT_EQ(problem, "untouched");
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(files[0].path, bad);
    EXPECT_THAT(files[0].problem, StartsWith("is no mapping file: "));
    EXPECT_FALSE(files[0].isUsed);
    EXPECT_EQ(files[1].path, ab);
    EXPECT_TRUE(files[1].isUsed);
    EXPECT_EQ(files[2].path, folder / "1.xml");
    EXPECT_EQ(files[2].isUsed, files[2].path == last);
    EXPECT_EQ(files[3].path, folder / "2.xml");
    EXPECT_EQ(files[3].isUsed, files[3].path == last);
}

TEST(MappingFiles, FolderThatCannotBeReadHasAProblem)
{
    const TemporaryFolder folder;
    std::string problem;
    EXPECT_THAT(KelMappingFiles::inFolder(folder / "missing", problem), IsEmpty());
    EXPECT_EQ(problem, folder / "missing" + ": No such file or directory");
}

TEST(MappingFiles, FolderIsThatOfTheEnvironment)
{
    unsetenv("TVR_ROOT251");
    setenv("KEL_VARIABLE_CONFIG_DIR", "/some/where", 1);
    EXPECT_EQ(KelMappingFiles::folder(), "/some/where");
    unsetenv("KEL_VARIABLE_CONFIG_DIR");
    EXPECT_EQ(KelMappingFiles::folder(), "");
    setenv("TVR_ROOT251", "/root", 1);
    EXPECT_EQ(KelMappingFiles::folder(), "/root/commonfiles/fluids/config/variables");
    unsetenv("TVR_ROOT251");
}

} // namespace
} // namespace meridyn
