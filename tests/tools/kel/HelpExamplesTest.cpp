// Every example in the help of a command and in the man page, run as it stands there.
#include "Tool.h"
#include "ToolRunner.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/wait.h>

using namespace meridyn::tool;

namespace {

/// The lines of a text below a heading, up to the next empty one.
std::vector<std::string> linesBelow(const std::string& heading, const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text.substr(std::min(text.find(heading), text.size())));
    std::string line;
    for (std::getline(in, line); std::getline(in, line) && !line.empty() && line != ".fi";)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> examples()
{
    std::vector<std::string> found;
    for (const std::string& command : commandNames())
        for (const std::string& line : linesBelow("Examples:\n", runKel({command, "--help"}).out))
            found.push_back(line.substr(line.find_first_not_of(' ')));
    std::ifstream in(KEL_SOURCE_DIR "/tools/kel/kel.1");
    std::string man((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    man.erase(std::remove(man.begin(), man.end(), '\\'), man.end());
    for (const std::string& line : linesBelow(".SH EXAMPLES\n", man))
        if (line != ".nf")
            found.push_back(line);
    return found;
}

/// A folder with everything that the examples take for granted.
class Workplace {
public:
    Workplace()
    {
        const std::string cavity = KEL_SOURCE_DIR "/tests/data/polymesh/cavity-ascii";
        for (const char* name : {"case", "other"}) {
            std::filesystem::copy(cavity, _folder / name, std::filesystem::copy_options::recursive);
            std::filesystem::remove((_folder / name) + "/truth.json"); // no part of a case
        }
        for (const char* name : {"cube", "a", "before", "after"})
            runKel({"convert", "box:3x3x3 fields:1", _folder / name + std::string(".case.kel")});
        for (const char* name : {"run", "run1", "run2"})
            runKel({"convert", "box:2x2x2 fields:1 levels:9", _folder / name + std::string(".case.kel")});
        runKel({"convert", _folder / "case", _folder / "cavity.case.kel"});
        std::filesystem::copy_file(KEL_TEST_PLUGINS "/kel_thin_format.so", _folder / "libmyformat.so");
    }

    /// Runs a line of shell, in a copy of the folder, so that no example sees what another one wrote.
    Ran shell(const std::string& line) const
    {
        const TemporaryFolder copy;
        std::filesystem::copy(_folder.path(), copy.path(), std::filesystem::copy_options::recursive);
        if (line.starts_with("kel convert") && line.find("--from-level") == std::string::npos)
            removeTarget(copy, line.substr(0, line.find('#')));
        const std::string tool = std::filesystem::path(KEL_TOOL).parent_path().string();
        const std::string command = "cd '" + copy.path().string() + "' && PATH=" + tool +
                                    ":$PATH KEL_FORMAT_PLUGIN_DIR= KEL_VARIABLE_CONFIG_DIR=" KEL_SOURCE_DIR
                                    "/examples/mapping; export PATH KEL_FORMAT_PLUGIN_DIR KEL_VARIABLE_CONFIG_DIR; " +
                                    line + "\n";
        Ran ran;
        std::FILE* out = popen(("( " + command + " ) 2>&1").c_str(), "r");
        char buffer[4096];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, out))
            ran.out.append(buffer, count);
        ran.code = WEXITSTATUS(pclose(out));
        return ran;
    }

private:
    /// What an example converts to is not there yet.
    static void removeTarget(const TemporaryFolder& folder, std::string line)
    {
        line.erase(line.find_last_not_of(' ') + 1);
        std::string target = line.substr(line.rfind(' ') + 1);
        for (const char* suffix : {".case.kel", ".data.kel"})
            if (const std::size_t at = target.rfind(suffix); at != std::string::npos)
                target.resize(at);
        for (const char* suffix : {".case.kel", ".data.kel"})
            std::filesystem::remove(folder / (target + suffix));
    }

    TemporaryFolder _folder;
};

} // namespace

TEST(HelpExamples, WorkAsTheyStand)
{
    const Workplace place;
    const std::vector<std::string> all = examples();
    EXPECT_GT(all.size(), 2 * commandNames().size()) << "about three for each command, and those of the man page";
    for (const std::string& example : all) {
        const Ran ran = place.shell(example);
        // Where the text says so, and for a plug-in that anybody may have written, the answer may be no.
        const bool mayBeNo =
            example.find("exit code 1") != std::string::npos || example.find("--plugin") != std::string::npos;
        EXPECT_TRUE(ran.code == 0 || (mayBeNo && ran.code == 1)) << example << "\n" << ran.out;
    }
}
