#include "MappingText.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Texts = std::vector<std::string>;

const char directoryVariable[] = "KEL_VARIABLE_CONFIG_DIR";
const char reportVariable[] = "KEL_REPORT_VARIABLE_CONFIGS";
const char rootVariable[] = "TVR_ROOT251";

std::string entryText(const std::string& source, const std::string& target, const std::string& path)
{
    return "Variable Config: \n  Source: " + source + "\n  Target: " + target + "\n  File:   " + path + "\n";
}

std::string warningText(const std::string& quotedDirectory, bool isFromVariable)
{
    return "It was not possible to read the variable configuration files.\n"
           "Check existance and permissions of directory '" +
           quotedDirectory + "'" +
           (isFromVariable ? " which is defined by the environment variable 'KEL_VARIABLE_CONFIG_DIR'\n" : "\n");
}

/// A mapping file's text: maps the key of each variable to the key and the mark behind it; the attribute "Seen"
/// carries the mark.
std::string mapping(const std::string& source, const std::string& target, const Texts& keys, const std::string& mark)
{
    std::string variables;
    for (const std::string& key : keys)
        variables += variableText({{"Name", key.c_str()}, {"Mapped", (key + mark).c_str()}, {"Seen", mark.c_str()}});
    return mappingText(
        {{"Source", source.c_str()}, {"Target", target.c_str()}, {"Attribute Name Of Mapped Key", "Mapped"}},
        variables);
}

class Discovery : public ::testing::Test {
protected:
    /// Environment of the process to come; all others of the three variables are unset.
    std::map<std::string, std::string> _environment;
    TemporaryFolder _folder;

    void useFolder() { _environment[directoryVariable] = _folder.path(); }

    /// What a process of its own prints.
    std::string probe(Texts commands) const
    {
        int ends[2];
        if (pipe(ends) != 0)
            return "no pipe";
        const pid_t child = fork();
        if (child == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
            execute(commands);
        }
        close(ends[1]);
        std::string output;
        char buffer[4096];
        for (ssize_t count = 0; (count = read(ends[0], buffer, sizeof buffer)) > 0;)
            output.append(buffer, static_cast<std::size_t>(count));
        close(ends[0]);
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "status " << status;
        return output;
    }

private:
    [[noreturn]] void execute(Texts& commands) const
    {
        for (const char* name : {directoryVariable, reportVariable, rootVariable})
            unsetenv(name);
        for (const auto& [name, value] : _environment)
            setenv(name.c_str(), value.c_str(), 1);
        std::string program = KEL_DISCOVERY_PROBE;
        std::vector<char*> arguments = {program.data()};
        for (std::string& command : commands)
            arguments.push_back(command.data());
        arguments.push_back(nullptr);
        execv(arguments[0], arguments.data());
        _exit(127);
    }
};

} // namespace

// ---- where the files are -----------------------------------------------------------------

TEST_F(Discovery, WithoutVariablesFindsNothing)
{
    _environment[reportVariable] = "1";
    EXPECT_EQ(probe({"warnings", "route=X>Y", "key=p", "target"}), "none\n[Y]\n");
}

TEST_F(Discovery, DirectoryThatIsMissingOrNoneIsPassedOverSilently)
{
    const std::string file = _folder.write("file.xml", mapping("X", "Y", {"p"}, "1"));
    for (const std::string& directory : {_folder / "missing", file, file + "/below", std::string()}) {
        _environment = {{directoryVariable, directory}, {reportVariable, "1"}, {rootVariable, _folder.path()}};
        EXPECT_EQ(probe({"warnings", "route=X>Y", "key=p"}), "none\n") << directory;
    }
}

TEST_F(Discovery, ReportsTheRegistryInOrder)
{
    useFolder();
    _environment[reportVariable] = ""; // set is set
    const std::string b = _folder.write("1.xml", mapping("B", "A", {}, ""));
    const std::string ab = _folder.write("2.xml", mapping("A", "B", {}, ""));
    const std::string aa = _folder.write("3", mapping("A", "A", {}, "")); // any suffix
    const std::string small = _folder.write("4.xml", mapping("a", "A", {}, ""));
    EXPECT_EQ(probe({"warnings", "another"}),
              entryText("A", "A", aa) + entryText("A", "B", ab) + entryText("B", "A", b) + entryText("a", "A", small));
}

TEST_F(Discovery, ReportsOnlyWhenAsked)
{
    useFolder();
    _folder.write("1.xml", mapping("A", "B", {"p"}, "1"));
    EXPECT_EQ(probe({"warnings"}), "");
}

TEST_F(Discovery, LooksBelowTheInstallationRoot)
{
    const std::string below = "commonfiles/fluids/config/variables";
    std::filesystem::create_directories(_folder / below);
    const std::string file = _folder.write(below + "/x.xml", mapping("X", "Y", {}, ""));
    _folder.write("not-here.xml", mapping("Z", "Y", {}, ""));
    _environment = {{rootVariable, _folder.path()}, {reportVariable, "1"}};
    EXPECT_EQ(probe({"warnings"}), entryText("X", "Y", file));
    _environment[rootVariable] += "/";
    EXPECT_EQ(probe({"warnings"}), entryText("X", "Y", file)) << "no doubled separators";
    _environment[directoryVariable] = _folder.path();
    EXPECT_EQ(probe({"warnings"}), entryText("Z", "Y", _folder / "not-here.xml"))
        << "the directory goes before the root";
}

TEST_F(Discovery, DirectoryThatIsSetToNothingIsSet)
{
    const std::string below = "commonfiles/fluids/config/variables";
    std::filesystem::create_directories(_folder / below);
    _folder.write(below + "/x.xml", mapping("X", "Y", {}, ""));
    _environment = {{directoryVariable, ""}, {rootVariable, _folder.path()}, {reportVariable, "1"}};
    EXPECT_EQ(probe({"warnings"}), "") << "the root is not asked";
}

TEST_F(Discovery, PassesOverWhatIsNoMappingFile)
{
    useFolder();
    _environment[reportVariable] = "1";
    const std::string good = _folder.write("good.xml", mapping("X", "Y", {}, ""));
    const std::string text = mapping("A", "B", {}, "");
    _folder.write("damaged.xml", text + "x");
    _folder.write("cut.xml", text.substr(0, text.size() - 5));
    _folder.write("empty.xml", "");
    std::filesystem::create_directories(_folder / "folder.xml");
    _folder.write("folder.xml/deeper.xml", text);
    ASSERT_EQ(mkfifo((_folder / "pipe.xml").c_str(), 0600), 0);
    std::filesystem::create_symlink(_folder / "pipe.xml", _folder / "to-pipe.xml");
    std::filesystem::create_symlink(_folder / "loop.xml", _folder / "loop.xml");
    std::filesystem::create_symlink(_folder / "gone.xml", _folder / "dangling.xml");
    EXPECT_EQ(probe({"warnings"}), entryText("X", "Y", good));
}

TEST_F(Discovery, OneOfTwoFilesForTheSamePairWins)
{
    useFolder();
    _environment[reportVariable] = "1";
    const std::string one = _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    const std::string two = _folder.write("2.xml", mapping("X", "Y", {"p"}, "2"));
    std::string last; // in the order of the file system
    for (const auto& entry : std::filesystem::directory_iterator(_folder.path()))
        last = entry.path().string();
    EXPECT_EQ(probe({"route=X>Y", "key=p"}), entryText("X", "Y", last) + (last == one ? "p1\n" : "p2\n"));
    EXPECT_THAT(last, ::testing::AnyOf(one, two));
}

TEST_F(Discovery, ScansOncePerProcess)
{
    useFolder();
    _environment[directoryVariable] = _folder / "loop";
    _environment[reportVariable] = "1";
    std::filesystem::create_symlink(_folder / "loop", _folder / "loop");
    EXPECT_EQ(probe({"another", "warnings"}), "") << "the warning went to the first object, and is not repeated";
}

TEST_F(Discovery, IsNotRepeatedWhenTheEnvironmentChanges)
{
    _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    const std::string setDirectory = "set=" + std::string(directoryVariable) + ">" + _folder.path().string();
    const std::string setReport = "set=" + std::string(reportVariable) + ">1";
    EXPECT_EQ(probe({setDirectory, setReport, "environment", "another", "route=X>Y", "key=p"}), "none\n")
        << "the first object found no variable, and that was the one time";
}

// ---- reading a file once ----------------------------------------------------------------

namespace {

/// Counts how often a file is opened while this lives.
class Openings {
public:
    explicit Openings(const std::string& path) : _queue(inotify_init1(IN_NONBLOCK))
    {
        inotify_add_watch(_queue, path.c_str(), IN_OPEN | IN_DONT_FOLLOW);
    }
    ~Openings() { close(_queue); }
    Openings(const Openings&) = delete;
    Openings& operator=(const Openings&) = delete;

    std::size_t count() const
    {
        std::size_t count = 0;
        alignas(inotify_event) char events[1024];
        for (ssize_t size = 0; (size = read(_queue, events, sizeof events)) > 0;)
            count += static_cast<std::size_t>(size) / sizeof(inotify_event); // of a file they bear no name
        return count;
    }

private:
    int _queue;
};

/// Waits until a change of a file just written has another time than the writing.
void waitForTheNextTick()
{
    usleep(50000);
}

} // namespace

TEST_F(Discovery, ReadsAFileOnce)
{
    useFolder();
    const std::string file = _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    waitForTheNextTick();
    const Openings openings(file);
    EXPECT_EQ(probe({"route=X>Y", "key=p", "another", "route=X>Y", "key=p"}), "p1\np1\n");
    EXPECT_EQ(openings.count(), 1u);
}

TEST_F(Discovery, ReadsAFileAgainThatHasChanged)
{
    useFolder();
    const std::string file = _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    const std::string changed = _folder.write("changed", mapping("X", "Y", {"p"}, "2")); // of the same size
    waitForTheNextTick();
    EXPECT_EQ(probe({"route=X>Y", "key=p", "rename=" + changed + ">" + file, "another", "route=X>Y", "key=p"}),
              "p1\np2\n");
}

// ---- the list of files -------------------------------------------------------------------

TEST_F(Discovery, ListsTheFilesThatAreUsedWithTheirKeys)
{
    useFolder();
    const std::string xy = _folder.write("1.xml", mapping("X", "Y", {"q", "p", "q"}, "1"));
    const std::string ab = _folder.write("2.xml", mapping("A", "B", {}, "1"));
    _folder.write("3.xml", "no mapping");
    EXPECT_EQ(probe({"list"}), "A>B Mapped used:  " + ab + "\nX>Y Mapped used: q p q " + xy + "\n");
    EXPECT_EQ(probe({"remove=" + xy, "list"}),
              "A>B Mapped used:  " + ab + "\nX>Y  used:  " + xy + " is no mapping file: it is no regular file\n");
}

TEST_F(Discovery, ListNeedsNoObjectAndLeavesItsWarningToTheFirst)
{
    _environment[directoryVariable] = _folder / "loop";
    std::filesystem::create_symlink(_folder / "loop", _folder / "loop");
    EXPECT_EQ(probe({"none", "list", "another", "warnings", "another", "warnings"}),
              warningText("\"" + _folder / "loop" + "\"", true));
}

// ---- trouble with the file system --------------------------------------------------------

TEST_F(Discovery, WarnsOfADirectoryThatCannotBeExamined)
{
    const std::string loop = _folder / "a \"quoted\" & looping\\name";
    std::filesystem::create_symlink(loop, loop);
    const std::string quoted = "\"" + _folder.path().string() + "/a &\"quoted&\" && looping\\name\"";
    _environment = {{directoryVariable, loop}, {reportVariable, "1"}};
    EXPECT_EQ(probe({"warnings"}), warningText(quoted, true));

    const std::string tooLong(300, 'a');
    _environment = {{directoryVariable, _folder / tooLong}};
    EXPECT_EQ(probe({"warnings"}), warningText("\"" + _folder / tooLong + "\"", true));
}

TEST_F(Discovery, WarningNamesTheVariableOnlyWhenItWasSet)
{
    std::filesystem::create_symlink(_folder / "commonfiles", _folder / "commonfiles");
    _environment = {{rootVariable, _folder.path()}};
    EXPECT_EQ(probe({"warnings"}), warningText("\"" + _folder / "commonfiles/fluids/config/variables" + "\"", false));
}

// ---- ways from source to target ----------------------------------------------------------

namespace {

struct RouteCase {
    const char* name;
    Texts files;        // "source>target:mark"
    std::string route;  // "source>target"
    std::string mapped; // of the key "p"
    std::string seen;   // attribute "Seen" of the key "p"
};

void PrintTo(const RouteCase& row, std::ostream* out)
{
    *out << row.name;
}

// Marks: s own, d direct, g to generic, c generic to common, t to the target, G generic to target.
const char own[] = "X>X:s";
const char direct[] = "X>Y:d";
const char toGeneric[] = "X>MERIDYN_GENERIC:g";
const char genericToCommon[] = "MERIDYN_GENERIC>MERIDYN_COMMON:c";
const char commonToTarget[] = "MERIDYN_COMMON>Y:t";
const char genericToTarget[] = "MERIDYN_GENERIC>Y:G";

// clang-format off
const RouteCase routeCases[] = {
    {"OwnAlone",             {own},                                                             "X>X", "ps",    "s"},
    {"OwnForAnEmptyTarget",  {own, direct},                                                     "X>",  "ps",    "s"},
    {"Direct",               {direct},                                                          "X>Y", "pd",    "d"},
    {"OwnThenDirect",        {own, direct},                                                     "X>Y", "psd",   "d"},
    {"DirectBeforeGeneric",  {direct, toGeneric, genericToCommon, commonToTarget},              "X>Y", "pd",    "d"},
    {"ThreeHops",            {toGeneric, genericToCommon, commonToTarget},                      "X>Y", "pgct",  "t"},
    {"ThreeHopsBeforeTwo",   {toGeneric, genericToCommon, commonToTarget, genericToTarget},     "X>Y", "pgct",  "t"},
    {"OwnThenThreeHops",     {own, toGeneric, genericToCommon, commonToTarget},                 "X>Y", "psgct", "t"},
    {"TwoHops",              {toGeneric, genericToTarget},                                      "X>Y", "pgG",   "G"},
    {"TwoHopsWithoutCommon", {toGeneric, genericToCommon, genericToTarget},                     "X>Y", "pgG",   "G"},
    {"TwoHopsFromCommon",    {toGeneric, commonToTarget, genericToTarget},                      "X>Y", "pgG",   "G"},
    {"OwnThenTwoHops",       {own, toGeneric, genericToTarget},                                 "X>Y", "psgG",  "G"},
    {"GenericOnly",          {toGeneric, genericToCommon},                                      "X>Y", "pg",    "g"},
    {"OwnThenGeneric",       {own, toGeneric, commonToTarget},                                  "X>Y", "psg",   "g"},
    {"OwnWithoutRoute",      {own, genericToTarget},                                            "X>Y", "ps",    "s"},
    {"SameWithoutOwn",       {toGeneric, "MERIDYN_GENERIC>X:b"},                                "X>X", "pgb",   "b"},
};
// clang-format on

/// Every key that a chain can come to.
const Texts chainKeys = {"p", "ps", "pg", "psg", "pgc", "psgc"};

class Route : public Discovery, public ::testing::WithParamInterface<RouteCase> {};

} // namespace

TEST_P(Route, LeadsThroughTheFiles)
{
    useFolder();
    for (const std::string& file : GetParam().files) {
        const std::size_t greater = file.find('>');
        const std::size_t colon = file.find(':');
        _folder.write(file, mapping(file.substr(0, greater), file.substr(greater + 1, colon - greater - 1), chainKeys,
                                    file.substr(colon + 1)));
    }
    EXPECT_EQ(probe({"route=" + GetParam().route, "key=p", "value=p>Seen"}),
              GetParam().mapped + "\n[" + GetParam().seen + "]\n");
}

INSTANTIATE_TEST_SUITE_P(Discovery, Route, ::testing::ValuesIn(routeCases),
                         [](const auto& row) { return row.param.name; });

TEST_F(Discovery, NoRouteKeepsTheProviderAndTakesTheTarget)
{
    useFolder();
    _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    EXPECT_EQ(probe({"route=A>B", "key=p", "target"}), "none\n[B]\n");
    EXPECT_EQ(probe({"route=X>Y", "route=X>Z", "key=p", "target"}), "p1\n[Z]\n");
    EXPECT_EQ(probe({"own", "route=Y>X", "key=p", "target", "route=X>", "target"}), "own\n[X]\n[X]\n");
}

TEST_F(Discovery, SamePairWithAProviderIsLeftAlone)
{
    useFolder();
    _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    _folder.write("2.xml", mapping("MERIDYN_GENERIC", "Y", {"p"}, "2"));
    // The solver type, not the last source, is what the source is compared with.
    EXPECT_EQ(probe({"route=MERIDYN_GENERIC>Y", "own", "route=MERIDYN_GENERIC>Y", "key=p"}), "own\n");
    EXPECT_EQ(probe({"route=X>Y", "own", "route=X>Y", "key=p"}), "p1\n");
    EXPECT_EQ(probe({"route=X>Y", "own", "solver=X", "key=p", "own", "route=X>Y", "key=p"}), "p1\nown\n");
}

TEST_F(Discovery, SamePairWithoutAProviderChoosesAgain)
{
    useFolder();
    _folder.write("1.xml", mapping("X", "X", {"p"}, "1"));
    EXPECT_EQ(probe({"solver=X", "drop", "key=p", "route=X>X", "key=p"}), "none\np1\n");
}

TEST_F(Discovery, OneFileThatIsNotTheSourcesOwnIsALinkOfAChain)
{
    useFolder();
    const std::string variable = variableText({{"Name", "p"}, {"Dataset Name", "SV_P"}});
    _folder.write("own.xml", mappingText({{"Source", "X"}, {"Target", "X"}}, variable));
    _folder.write("direct.xml", mappingText({{"Source", "Z"}, {"Target", "Y"}}, variable));
    _folder.write("generic.xml", mappingText({{"Source", "W"}, {"Target", "MERIDYN_GENERIC"}}, variable));
    const Texts ask = {"dataset=p", "value=p>Dataset Name"};
    EXPECT_EQ(probe({"route=X>Y", ask[0], ask[1]}), "[SV_P]\n[SV_P]\n");
    EXPECT_EQ(probe({"route=Z>Y", ask[0], ask[1]}), "[p]\n[SV_P]\n"); // kept: a chain gives the key as dataset name
    EXPECT_EQ(probe({"route=W>Y", ask[0], ask[1]}), "[p]\n[SV_P]\n");
}

TEST_F(Discovery, VisibilityIsThatOfTheFirstFileOfAChain)
{
    useFolder();
    const auto file = [](const char* source, const char* target, const char* visibility) {
        return mappingText({{"Source", source}, {"Target", target}, {"Default Variable Visibility", visibility}}, "");
    };
    _folder.write("1.xml", file("X", "X", "no"));
    _folder.write("2.xml", file("X", "MERIDYN_GENERIC", "yes"));
    _folder.write("3.xml", file("MERIDYN_GENERIC", "Y", "yes"));
    _folder.write("4.xml", file("Z", "MERIDYN_GENERIC", "yes"));
    _folder.write("5.xml", file("MERIDYN_GENERIC", "N", "no"));
    EXPECT_EQ(probe({"route=X>Y", "visible"}), "0\n");
    EXPECT_EQ(probe({"route=Z>N", "visible"}), "1\n");
}

TEST_F(Discovery, SolverTypeChoosesAgainWithTheTargetKept)
{
    useFolder();
    _folder.write("1.xml", mapping("X", "Y", {"p"}, "1"));
    _folder.write("2.xml", mapping("Z", "Y", {"p3"}, "2"));
    _folder.write("3.xml", mapping("Z", "Z", {"p"}, "3"));
    EXPECT_EQ(probe({"solver=Z", "key=p", "target"}), "p3\n[Z]\n") << "no target yet: the solver's own names";
    EXPECT_EQ(probe({"route=X>Y", "key=p", "solver=Z", "key=p", "target"}), "p1\np32\n[Y]\n");
}

TEST_F(Discovery, FileThatIsGoneByThenGivesAnEmptyLink)
{
    useFolder();
    _folder.write("1.xml", mapping("X", "X", {"p"}, "1"));
    const std::string file = _folder.write("2.xml", mapping("X", "Y", {"p1"}, "2"));
    EXPECT_EQ(probe({"route=X>Y", "key=p"}), "p12\n");
    EXPECT_EQ(probe({"remove=" + file, "route=X>Y", "key=p"}), "p1\n");
}
