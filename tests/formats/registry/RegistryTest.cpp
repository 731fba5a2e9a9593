#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatPlugin.h"
#include "KelFormatRegistry.h"

#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

KelFormat formatOf(const std::string& name, const std::vector<std::string>& suffixes = {})
{
    KelFormat format;
    format.name = name;
    format.suffixes = suffixes;
    format.probe = [name](const std::string& path) { return path == "file of " + name; };
    format.files = [](const std::string& path, bool) { return KelFormatFiles{path, path}; };
    format.makeReader = [] { return std::make_unique<KelFileProvider>(); };
    format.makeWriter = [] { return std::make_unique<KelFileConsumer>(); };
    return format;
}

std::vector<std::string> namesOf(const KelFormatRegistry& registry)
{
    std::vector<std::string> names;
    for (const KelFormat& format : registry.formats())
        names.push_back(format.name);
    return names;
}

// ---- add and find

TEST(Registry, KeepsTheOrderOfAdding)
{
    KelFormatRegistry registry;
    EXPECT_TRUE(registry.formats().empty());
    EXPECT_TRUE(registry.add(formatOf("b")));
    EXPECT_TRUE(registry.add(formatOf("a")));
    EXPECT_THAT(namesOf(registry), ElementsAre("b", "a"));
    EXPECT_EQ(registry.find("a"), &registry.formats()[1]);
    EXPECT_EQ(registry.find("A"), nullptr);
    EXPECT_EQ(registry.find(""), nullptr);
}

TEST(Registry, WhatItHandsOutStaysValid)
{
    KelFormatRegistry registry;
    ASSERT_TRUE(registry.add(formatOf("first", {".1"})));
    const KelFormat* const first = registry.find("first");
    const std::vector<KelFormat>& list = registry.formats();
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(registry.add(formatOf("format " + std::to_string(i))));
    EXPECT_EQ(first->name, "first");
    EXPECT_EQ(list.size(), 1u) << "a list is that of the moment";
    EXPECT_EQ(registry.formats().size(), 101u);
}

TEST(Registry, MayBeMoved)
{
    KelFormatRegistry registry;
    ASSERT_TRUE(registry.add(formatOf("a")));
    const KelFormatRegistry moved = std::move(registry);
    EXPECT_THAT(namesOf(moved), ElementsAre("a"));
}

TEST(Registry, VersionOfPluginsBeginsWithThatOfTheLibrary)
{
    EXPECT_EQ(kelFormatPluginVersion / 100, KelVersion::getMajor());
}

TEST(Registry, RefusesWhatIsIncompleteOrTaken)
{
    const struct {
        const char* name;
        std::function<void(KelFormat&)> spoil;
        bool accepted;
    } rows[] = {
        {"as it is", [](KelFormat&) {}, true},
        {"no name", [](KelFormat& f) { f.name.clear(); }, false},
        {"a taken name", [](KelFormat& f) { f.name = "taken"; }, false},
        {"neither reader nor writer",
         [](KelFormat& f) {
             f.makeReader = nullptr;
             f.makeWriter = nullptr;
         },
         false},
        {"no files", [](KelFormat& f) { f.files = nullptr; }, false},
        {"a reader without probe", [](KelFormat& f) { f.probe = nullptr; }, false},
        {"only a reader", [](KelFormat& f) { f.makeWriter = nullptr; }, true},
        {"only a writer, without probe",
         [](KelFormat& f) {
             f.makeReader = nullptr;
             f.probe = nullptr;
         },
         true},
    };
    for (const auto& row : rows) {
        KelFormatRegistry registry;
        registry.add(formatOf("taken"));
        KelFormat format = formatOf("new");
        row.spoil(format);
        EXPECT_EQ(registry.add(format), row.accepted) << row.name;
        EXPECT_EQ(registry.formats().size(), row.accepted ? 2U : 1U) << row.name;
    }
}

TEST(Registry, ProbesInOrderAndOverWritersWithoutProbe)
{
    KelFormatRegistry registry;
    KelFormat writer = formatOf("writer"), greedy = formatOf("greedy");
    writer.makeReader = nullptr;
    writer.probe = nullptr;
    greedy.probe = [](const std::string& path) { return path.rfind("file", 0) == 0; };
    registry.add(writer);
    registry.add(formatOf("one"));
    registry.add(greedy);
    EXPECT_EQ(registry.probe("file of one")->name, "one");
    EXPECT_EQ(registry.probe("file of another")->name, "greedy");
    EXPECT_EQ(registry.probe("nothing"), nullptr);
}

// ---- what a name stands for

namespace {

/// A format whose models are files of its suffix, named with it or without; the content is the format's name.
KelFormat suffixedFormat(const std::string& name)
{
    KelFormat format = formatOf(name, {"." + name});
    const auto fileOf = [name](const std::string& path) {
        const std::string suffix = "." + name;
        return path.size() > suffix.size() && path.substr(path.size() - suffix.size()) == suffix ? path : path + suffix;
    };
    format.files = [fileOf](const std::string& path, bool) {
        return KelFormatFiles{std::filesystem::exists(fileOf(path)) ? fileOf(path) : "", ""};
    };
    format.probe = [fileOf, name](const std::string& path) {
        std::string content;
        std::ifstream(fileOf(path)) >> content;
        return content == name;
    };
    return format;
}

/// A format whose models are folders with a file "mesh"; whatever lies in the folder leads to it.
KelFormat folderFormat()
{
    KelFormat format = formatOf("folder");
    const auto folderOf = [](std::filesystem::path path) {
        while (!path.empty() && !std::filesystem::exists(path / "mesh"))
            path = path.has_relative_path() ? path.parent_path() : "";
        return path.string();
    };
    format.files = [folderOf](const std::string& path, bool) { return KelFormatFiles{folderOf(path), ""}; };
    format.probe = [folderOf](const std::string& path) {
        return std::filesystem::exists(path) && !folderOf(path).empty();
    };
    return format;
}

std::vector<std::string> candidatesOf(const KelFormatRegistry& registry, const std::string& path)
{
    std::vector<std::string> names;
    for (const KelFormat* format : registry.candidates(path))
        names.push_back(format->name);
    return names;
}

} // namespace

class Names : public ::testing::Test {
protected:
    void SetUp() override
    {
        registry.add(suffixedFormat("one"));
        registry.add(suffixedFormat("two"));
        registry.add(folderFormat());
        KelFormat text = formatOf("text");
        text.prefix = "text:";
        registry.add(text);
        std::filesystem::create_directories(folder / "cavity/deep");
    }

    void write(const std::string& name, const std::string& content) const { std::ofstream(folder / name) << content; }

    const TemporaryFolder folder;
    KelFormatRegistry registry;
};

TEST_F(Names, OfAFolderMeanTheFolderThoughAFileSharesIt)
{
    write("cavity.one", "one");
    EXPECT_THAT(candidatesOf(registry, folder / "cavity"), ElementsAre("one")) << "a folder that is no model";
    write("cavity/mesh", "");
    EXPECT_THAT(candidatesOf(registry, folder / "cavity"), ElementsAre("folder"));
    EXPECT_THAT(candidatesOf(registry, folder / "cavity/"), ElementsAre("folder"));
    EXPECT_THAT(candidatesOf(registry, folder / "cavity/deep"), ElementsAre("folder"));
    EXPECT_THAT(candidatesOf(registry, folder / "cavity.one"), ElementsAre("one"));
}

TEST_F(Names, ThatCouldBeTwoThingsGiveBoth)
{
    write("cube.one", "one");
    EXPECT_THAT(candidatesOf(registry, folder / "cube"), ElementsAre("one"));
    write("cube.two", "two");
    EXPECT_THAT(candidatesOf(registry, folder / "cube"), ElementsAre("one", "two"));
    EXPECT_THAT(candidatesOf(registry, folder / "cube.two"), ElementsAre("two"));
    EXPECT_THAT(candidatesOf(registry, folder / "none"), ElementsAre());
}

TEST_F(Names, WithAPrefixAreNoFilesUnlessThereIsOne)
{
    EXPECT_THAT(candidatesOf(registry, "text:a"), ElementsAre("text"));
    KelFormatRegistry greedy;
    KelFormat text = formatOf("text");
    text.prefix = folder / "cu";
    greedy.add(text);
    greedy.add(suffixedFormat("one"));
    write("cube.one", "one");
    EXPECT_THAT(candidatesOf(greedy, folder / "cube"), ElementsAre("text"));
    EXPECT_THAT(candidatesOf(greedy, folder / "cube.one"), ElementsAre("one")) << "what is there comes first";
}

TEST(Registry, TheLongestSuffixOrPrefixWrites)
{
    KelFormatRegistry registry;
    KelFormat reader = formatOf("reader", {".deep.case.kel"}), stored = formatOf("stored");
    reader.makeWriter = nullptr;
    stored.prefix = "store:";
    registry.add(reader);
    registry.add(formatOf("short", {".kel", ""}));
    registry.add(formatOf("long", {".data.kel", ".case.kel"}));
    registry.add(formatOf("late", {".kel"}));
    registry.add(stored);
    const struct {
        const char* path;
        const char* format;
    } rows[] = {
        {"a.kel", "short"},
        {"a.case.kel", "long"},
        {"a.deep.case.kel", "long"},
        {".kel", "short"},
        {"store:", "stored"},
        {"store:a.kel", "stored"},
        {"store:a.case.kel", "long"},
        {"a.KEL", nullptr},
        {"kel", nullptr},
        {"", nullptr},
        {"a.kel/b", nullptr},
        {"xstore:a", nullptr},
    };
    for (const auto& row : rows) {
        const KelFormat* found = registry.forWriting(row.path);
        EXPECT_EQ(found != nullptr ? found->name : "none", row.format != nullptr ? row.format : "none") << row.path;
    }
}

TEST(Registry, OfTheProcessHoldsOurFormats)
{
    const KelFormatRegistry& registry = KelFormatRegistry::instance();
    EXPECT_EQ(&registry, &KelFormatRegistry::instance());
    EXPECT_THAT(namesOf(registry), ElementsAre("generated", "hdf5", "memory", "polymesh"));
    EXPECT_TRUE(registry.pluginProblems().empty());
    EXPECT_EQ(registry.probe("box:2x2x2")->name, "generated");
    EXPECT_EQ(registry.probe("no such thing"), nullptr);
    EXPECT_EQ(registry.forWriting("memory:a")->name, "memory");
    EXPECT_EQ(registry.forWriting("box:2x2x2"), nullptr);
}

TEST(Registry, FormatsAreWhatTheySay)
{
    for (const KelFormat& format : KelFormatRegistry::instance().formats()) {
        EXPECT_EQ(format.reads != 0, static_cast<bool>(format.makeReader)) << format.name;
        EXPECT_EQ(format.writes != 0, static_cast<bool>(format.makeWriter)) << format.name;
        EXPECT_EQ((format.reads | format.writes) & ~allFormatFamilies, 0U) << format.name;
        EXPECT_NE(format.description, "") << format.name;
        EXPECT_EQ(format.description.find('\n'), std::string::npos) << format.name;
        for (const std::string& sample : format.samples)
            EXPECT_TRUE(format.probe(sample)) << format.name << ": " << sample;
    }
}

TEST(FormatFamilies, HaveNamesOfTheirOwn)
{
    std::vector<std::string> names;
    for (int family = 0; family < KEL_FAMILY_COUNT; ++family)
        names.push_back(formatFamilyName(static_cast<KelFormatFamily>(family)));
    EXPECT_EQ(names.front(), "coordinates");
    EXPECT_EQ(names.back(), "solver type");
    std::sort(names.begin(), names.end());
    EXPECT_EQ(std::adjacent_find(names.begin(), names.end()), names.end());
    EXPECT_EQ(formatFamilyName(KEL_FAMILY_COUNT), "");
    EXPECT_EQ(formatFamilyName(static_cast<KelFormatFamily>(-1)), "");
    EXPECT_EQ(allFormatFamilies, (unsigned64{1} << KEL_FAMILY_COUNT) - 1);
    EXPECT_EQ(formatFamily(KEL_FAMILY_EDGES), 2U);
}

// ---- plug-ins

const std::string plugins = KEL_PLUGINS;

TEST(Plugin, IsLoadedOnceAndWorks)
{
    KelFormatRegistry registry;
    std::string problem = "untouched";
    ASSERT_TRUE(registry.loadPlugin(plugins + "/plugin_good.so", problem)) << problem;
    EXPECT_EQ(problem, "untouched");
    const KelFormat* points = registry.find("points");
    ASSERT_NE(points, nullptr);
    EXPECT_NE(points->makeReader(), nullptr);
    EXPECT_EQ(registry.forWriting("x.points"), points);
    EXPECT_FALSE(registry.loadPlugin(plugins + "/plugin_good.so", problem));
    EXPECT_EQ(problem, plugins + "/plugin_good.so: its format 'points' has the name of one that is there already");
    EXPECT_EQ(registry.formats().size(), 1U);
    EXPECT_NE(registry.find("points")->makeWriter(), nullptr); // still loaded
}

TEST(Plugin, BadOnesAreRefusedWithTheReason)
{
    const TemporaryFolder folder;
    const std::string text = folder.write("text.so", "not a shared object"), missing = folder / "missing.so";
    const struct {
        std::string path;
        std::string problem; ///< behind the path; the loader's own words may follow
    } rows[] = {
        {plugins + "/plugin_version.so", ": made for plug-in version 2400, expected 2502"},
        {plugins + "/plugin_symbol.so", ": no format plug-in: it exports no kelFormatPlugin"},
        {plugins + "/plugin_nothing.so", ": its kelFormatPlugin gives nothing"},
        {plugins + "/plugin_incomplete.so", ": its format 'useless' has neither a reader nor a writer"},
        {plugins + "/plugin_throws.so", ": its kelFormatPlugin fails: an exception, no licence"},
        {plugins + "/plugin_throws_number.so", ": its kelFormatPlugin fails: something was thrown"},
        {text, ": not loaded: "},
        {missing, ": not loaded: "},
        {folder.path(), ": not loaded: "},
        {"libc.so.6", ": not loaded: "}, // a bare name is no name of a system library
        {"", ": not loaded: "},
    };
    for (const auto& row : rows) {
        KelFormatRegistry registry;
        std::string problem;
        EXPECT_FALSE(registry.loadPlugin(row.path, problem)) << row.path;
        EXPECT_THAT(problem, StartsWith(row.path + row.problem));
        EXPECT_TRUE(registry.formats().empty()) << row.path;
    }
}

/// What the probe prints with this value of KEL_FORMAT_PLUGIN_DIR.
std::string printedWith(const std::string& folders)
{
    const std::string command = "KEL_FORMAT_PLUGIN_DIR='" + folders + "' " KEL_REGISTRY_PROBE;
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    for (int c = fgetc(pipe); c != EOF; c = fgetc(pipe))
        text += static_cast<char>(c);
    EXPECT_EQ(pclose(pipe), 0);
    return text;
}

const std::string ours = "generated\nhdf5\nmemory\npolymesh\n";

TEST(PluginFolders, AreSearchedOnFirstUse)
{
    const TemporaryFolder folder, other;
    std::filesystem::copy(plugins + "/plugin_good.so", folder / "b.so");
    std::filesystem::copy(plugins + "/plugin_version.so", folder / "a.so");
    std::filesystem::copy(plugins + "/plugin_good.so", folder / "ignored.so.old");
    std::filesystem::create_directory(folder / "folder.so");
    EXPECT_EQ(printedWith(folder.path()),
              ours + "points\nproblem: " + (folder / "a.so") + ": made for plug-in version 2400, expected 2502\n");
    std::filesystem::copy(plugins + "/plugin_good.so", other / "again.so");
    EXPECT_THAT(printedWith("::" + other.path().string() + ":" + folder.path().string()),
                StartsWith(ours + "points\nproblem: " + (folder / "a.so")));
    EXPECT_THAT(printedWith(other.path().string() + ":" + folder.path().string()),
                HasSubstr((folder / "b.so") + ": its format 'points' has the name of one that is there already\n"));
}

TEST(PluginFolders, ThatAreNotThereAreReported)
{
    const TemporaryFolder folder;
    EXPECT_EQ(printedWith(""), ours);
    EXPECT_EQ(printedWith(folder.path()), ours);
    EXPECT_THAT(printedWith(folder / "missing"), StartsWith(ours + "problem: " + (folder / "missing") + ": "));
}

} // namespace
} // namespace meridyn
