// What happens once in a process is begun by two threads at the same moment, in fresh processes. A run of the suite
// tries a sample; KEL_COLD_STARTS=200 tries as many as that.
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/wait.h>

namespace {

constexpr int sample = 20;

/// A mapping file that leads from one vocabulary to another: long enough for two threads to meet in it.
std::string mappingText(const std::string& source, const std::string& target)
{
    const auto attribute = [](const std::string& key, const std::string& value) {
        return "<attribute key=\"" + key + "\" value=\"" + value + "\"/>\n";
    };
    std::string text = "<mapping>\n" + attribute("Source", source) + attribute("Target", target) +
                       attribute("Attribute Name Of Mapped Key", "Mapped") + "<contents>\n";
    for (int i = 0; i < 50; ++i) {
        const std::string key = "key " + std::to_string(i);
        text += "<variable>\n" + attribute("Name", key) + attribute("Mapped", key + " mapped") + "</variable>\n";
    }
    return text + "</contents>\n</mapping>\n";
}

struct Outcome {
    int status = -1;
    std::string output; ///< standard output and standard error
};

Outcome start(const TemporaryFolder& folder, int first)
{
    const std::string command = "KEL_VARIABLE_CONFIG_DIR='" + folder / "maps" + "' '" KEL_COLD_START "' '" +
                                folder.path().string() + "' " + std::to_string(first) + " 2>&1";
    Outcome outcome;
    FILE* const process = popen(command.c_str(), "r");
    if (process == nullptr)
        return outcome;
    std::array<char, 4096> buffer;
    while (const std::size_t count = fread(buffer.data(), 1, buffer.size(), process))
        outcome.output.append(buffer.data(), count);
    outcome.status = pclose(process);
    return outcome;
}

std::size_t countOf(const std::string& text, const std::string& part)
{
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST(ColdStarts, TwoThreadsBeginAtOnce)
{
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "maps");
    folder.write("maps/map0.xml", mappingText("COLD", "WARM"));
    folder.write("maps/map1.xml", mappingText("WARM", "COLD"));
    folder.write("maps/map2.xml", mappingText("COLD", "MERIDYN_GENERIC"));

    const char* const wanted = std::getenv("KEL_COLD_STARTS");
    const int runs = wanted != nullptr ? std::atoi(wanted) : sample;
    ASSERT_GT(runs, 0);
    for (int run = 0; run < runs; ++run) {
        const Outcome outcome = start(folder, run);
        ASSERT_TRUE(WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0)
            << "run " << run << ", status " << outcome.status << "\n"
            << outcome.output;
        ASSERT_EQ(countOf(outcome.output, "Welcome to"), 1u) << "run " << run << "\n" << outcome.output;
        ASSERT_EQ(countOf(outcome.output, "can produce abridged version"), 2u) << "run " << run;
    }
}

} // namespace
