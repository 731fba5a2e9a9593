// Every file and every entry of a case is handed over, or named in the ledger of the reader.
#include "ReadingHelpers.h"
#include "SmallCase.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

using namespace meridyn;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

/// Items as text: "place: text (reason)".
std::vector<std::string> itemsOf(const KelPolyMeshProvider& reader, KelDataClass dataClass)
{
    std::vector<std::string> texts;
    for (const KelSourceItem& item : reader.notHandedOver(dataClass))
        texts.push_back(item.place + ": " + item.text + " (" + notReadName(item.reason) + ")");
    return texts;
}

std::vector<std::string> itemsOf(const SmallCase& small, KelDataClass dataClass)
{
    KelPolyMeshProvider reader;
    EXPECT_TRUE(reader.startReading(small.path(), dataClass));
    return itemsOf(reader, dataClass);
}

std::string setting(const KelProvider& reader, KelDataClass dataClass, const std::string& group, const std::string& key)
{
    std::string text = "(none)";
    reader.getSettingString(dataClass, key, text, group);
    return text;
}

// ---- the proof: an independent walk --------------------------------------------------------------------------------

/// The entries of a file in text form, two levels deep: "key" and "key/key"; found by brackets alone.
class Entries {
public:
    explicit Entries(const std::string& path)
    {
        gzFile file = gzopen(path.c_str(), "rb"); // reads plain files as well
        char piece[4096];
        for (int got = gzread(file, piece, sizeof piece); got > 0; got = gzread(file, piece, sizeof piece))
            _text.append(piece, static_cast<std::size_t>(got));
        gzclose(file);
        isBinary = _text.find("format      binary") != std::string::npos;
        if (!isBinary)
            read();
    }

    std::string className() const
    {
        const std::size_t at = _text.find("class");
        const std::size_t from = at == std::string::npos ? at : _text.find_first_not_of(" \t", at + 5);
        return from == std::string::npos ? std::string() : _text.substr(from, _text.find(';', from) - from);
    }

    bool isBinary = false;
    std::set<std::string> keys;

private:
    std::string next()
    {
        for (;;) {
            while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])) != 0)
                ++_at;
            if (_text.compare(_at, 2, "//") == 0)
                _at = std::min(_text.find('\n', _at), _text.size());
            else if (_text.compare(_at, 2, "/*") == 0)
                _at = _text.find("*/", _at) + 2;
            else
                break;
        }
        const std::size_t from = _at;
        if (_at < _text.size() && std::string("{}();").find(_text[_at]) != std::string::npos)
            return _text.substr(_at++, 1);
        while (_at < _text.size() && std::isspace(static_cast<unsigned char>(_text[_at])) == 0 &&
               std::string("{}();").find(_text[_at]) == std::string::npos)
            ++_at;
        return _text.substr(from, _at - from);
    }

    void read()
    {
        std::vector<std::string> path;
        for (std::string token = next(); !token.empty(); token = next()) {
            if (token == "}") {
                path.pop_back();
                continue;
            }
            const std::string key = path.empty() ? token : path.back() + "/" + token;
            std::string behind = next();
            if (token[0] == '#') { // a directive and its argument
                keys.insert(key + " " + behind);
                continue;
            }
            if (behind == "{") {
                path.push_back(key);
                continue;
            }
            for (int depth = 0; !behind.empty() && (depth > 0 || behind != ";"); behind = next())
                depth += behind == "(" || behind == "{" ? 1 : behind == ")" || behind == "}" ? -1 : 0;
            if (key.rfind("FoamFile/", 0) != 0)
                keys.insert(key);
        }
    }

    std::string _text;
    std::size_t _at = 0;
};

/// What a case gives, as a client sees it.
struct Handed {
    explicit Handed(const std::string& path)
    {
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            EXPECT_TRUE(reader.startReading(path, dataClass));
            std::vector<std::string> groups, keys;
            reader.getSettingsGroups(dataClass, groups);
            for (const std::string& group : groups) {
                reader.getSettingsKeysOfGroup(dataClass, group, keys);
                for (const std::string& key : keys)
                    settings.insert(group + ": " + key);
            }
            for (const KelSourceItem& item : reader.notHandedOver(dataClass))
                named.insert(item.place);
        }
        std::vector<short> phases;
        reader.getPhaseIds(phases);
        for (const short phase : phases)
            for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE}) {
                std::vector<int> ids;
                reader.startReadingPhase(phase);
                reader.getPhaseVariablesOfCategory(category, ids);
                for (const int id : ids) {
                    std::string file;
                    reader.getAttributeValueOfPhaseVariable(id, "Long Name", file);
                    variables.insert(file);
                }
            }
    }

    bool isNamed(std::string place) const
    {
        for (;; place.resize(place.rfind('/'))) { // or a folder above it
            if (named.count(place) != 0)
                return true;
            if (place.find('/') == std::string::npos)
                return false;
        }
    }

    KelPolyMeshProvider reader;
    std::set<std::string> settings, named, variables;
};

const std::set<std::string> meshFiles = {"points",   "faces",     "owner",     "neighbour",
                                         "boundary", "cellZones", "faceZones", "pointZones"};

/// Holds one file of a case against what came out of it; the number of entries that were looked at.
std::size_t check(const Handed& handed, const std::filesystem::path& root, const std::filesystem::path& path)
{
    std::string place = path.lexically_relative(root).string();
    if (place.size() > 3 && place.substr(place.size() - 3) == ".gz")
        place.resize(place.size() - 3);
    if (handed.isNamed(place))
        return 1;
    const std::string name = place.substr(place.rfind('/') + 1);
    const bool isOfMesh = place.find("polyMesh/") != std::string::npos;
    if (isOfMesh) {
        EXPECT_EQ(meshFiles.count(name), 1u) << place;
        return 1;
    }
    const Entries entries(path.string());
    const bool isField = entries.className().find("Field") != std::string::npos;
    if (isField) {
        EXPECT_TRUE(handed.variables.count(name) == 1 || entries.className().find("uniform") == 0) << place;
    }
    for (const std::string& key : entries.keys) {
        if (isField && key == "internalField")
            continue;
        const bool isValue = key.size() > 6 && key.substr(key.size() - 6) == "/value"; // on a face zone
        EXPECT_TRUE(isValue || handed.settings.count(place + ": " + key) == 1 ||
                    handed.named.count(place + ": " + key) == 1)
            << place << ": " << key;
    }
    return entries.keys.size() + 1;
}

class Ledger : public ::testing::TestWithParam<const char*> {};

TEST_P(Ledger, EveryFileAndEveryEntryIsHandedOverOrNamed)
{
    const std::string path = std::string(KEL_SOURCE_DIR) + "/tests/data/polymesh/" + GetParam();
    const Handed handed(path);
    std::size_t files = 0, entries = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
        if (entry.is_regular_file()) {
            ++files;
            entries += check(handed, path, entry.path());
        }
    EXPECT_GT(files, 10u);
    EXPECT_GT(entries, files);
    EXPECT_TRUE(handed.isNamed("truth.json"));
}

INSTANTIATE_TEST_SUITE_P(Cases, Ledger,
                         ::testing::Values("bubble-column", "cavity-ascii", "cavity-ascii-gz", "cavity-binary",
                                           "dambreak", "duct-poly", "mixed-cells", "mixer-zones", "pipe-cyclic",
                                           "sphere-snappy"),
                         [](const auto& row) { return "Case" + std::to_string(row.index); });

/// A case with something of everything, looked at in the same way.
TEST(LedgerOfAll, EveryFileAndEveryEntryIsHandedOverOrNamed)
{
    const SmallCase small;
    const std::string uniform = SmallCase::field("volScalarField", "uniform 1",
                                                 "left { type fixedValue; value uniform 2; "
                                                 "note \"by hand\"; }");
    for (const char* name :
         {"0/p", "1/p", "processor0/0/p", "processor1/constant/polyMesh/points", "1/air/p",
          "1/lagrangian/cloud/positions", "postProcessing/probes/0/p", "constant/air/polyMesh/faces"})
        small.write(name, uniform);
    for (const char* name :
         {"system/controlDict", "constant/controlDict", "constant/air/physicalProperties", "system/air/fvSchemes",
          "1/uniform/time", "1/uniform/functionObjects/state", "system/settings"})
        small.write(name, SmallCase::head("dictionary") + "a 1; b { c 2; } a 3; #include \"more\"\n");
    small.write("constant/g",
                SmallCase::head("uniformDimensionedVectorField") + "dimensions [0 1 -2 0 0 0 0]; value (0 0 -9.81);");
    small.write("Allrun", "#!/bin/sh");
    small.write("1/notes", "a b c");
    small.write("constant/polyMesh/cellLevel", SmallCase::head("labelList") + "2(0 1)");
    small.write("constant/polyMesh/sets/some", SmallCase::head("cellSet") + "1(1)");
    small.write("constant/polyMesh/boundary.gz", "older");
    small.write("2/polyMesh/cellZones", SmallCase::head("regIOobject") + "0()");
    small.write("constant/triSurface/a.stl", "solid");
    const Handed handed(small.path());
    for (const auto& entry : std::filesystem::recursive_directory_iterator(small.path()))
        if (entry.is_regular_file() && entry.path().filename() != "some" && entry.path().extension() != ".gz")
            check(handed, small.path(), entry.path());
    EXPECT_THAT(handed.named,
                ElementsAre("1/air", "1/lagrangian/cloud", "1/notes",
                            "1/uniform/functionObjects/state: #include \"more\"", "1/uniform/functionObjects/state: a",
                            "1/uniform/time: #include \"more\"", "1/uniform/time: a", "2/polyMesh/cellZones", "Allrun",
                            "constant/air/physicalProperties: #include \"more\"", "constant/air/physicalProperties: a",
                            "constant/air/polyMesh", "constant/controlDict: #include \"more\"",
                            "constant/controlDict: a", "constant/polyMesh/boundary.gz", "constant/polyMesh/cellLevel",
                            "constant/triSurface/a.stl", "postProcessing", "processor0", "processor1",
                            "system/air/fvSchemes: #include \"more\"", "system/air/fvSchemes: a",
                            "system/controlDict: #include \"more\"", "system/controlDict: a",
                            "system/settings: #include \"more\"", "system/settings: a"));
    std::vector<std::string> sets;
    EXPECT_TRUE(handed.reader.getSetNames(sets));
    EXPECT_THAT(sets, ElementsAre("some"));
}

// ---- single items ---------------------------------------------------------------------------------------------------

struct ItemRow {
    const char* name;
    const char* file;
    std::string text;
    std::string item; ///< after the place, which begins with the file
};

void PrintTo(const ItemRow& one, std::ostream* out)
{
    *out << one.name;
}

const std::string dictionaryHead = SmallCase::head("dictionary");

// clang-format off
const ItemRow itemRows[] = {
    {"BigList",         "system/a", dictionaryHead + "table List<label> 1001{7}; n List<label> 1001(" + [] { std::string text; for (int n = 0; n < 1001; ++n) text += " 7"; return text; }() + ");",
                        ": n: a list of more than 1000 entries, or of more than a megabyte (no place in the frames)"},
    {"SecondOfOneName", "system/a", dictionaryHead + "b { c 1; } b { c 2; }", ": b/c: given once more further down, which counts (another one was read)"},
    {"Directive",       "system/a", dictionaryHead + "b { #include \"x\"\n }", ": b/#include \"x\": directives are not followed (not known to the reader)"},
    {"WholeDictionary", "system/a", dictionaryHead + "c { d 1; } b { $c; }", ": b/$c;: directives are not followed (not known to the reader)"},
    {"IncludeInFront",  "system/a", "#include \"x\"\n" + dictionaryHead + "b 1;", ": #include \"x\": directives are not followed (not known to the reader)"},
    {"NewerVersion",    "system/a", "FoamFile { version 3.0; format ascii; class dictionary; } b 1;", ": FoamFile/version: expected 2.0 at most, found 3.0; read as 2.0 (not known to the reader)"},
    {"NoHead",          "system/a", "b 1;", ": a file without a head FoamFile that names its class (not known to the reader)"},
    {"OtherClass",      "system/a", SmallCase::head("labelList") + "1(2)", ": a file of the class 'labelList' (not known to the reader)"},
};
// clang-format on

class LedgerItem : public ::testing::TestWithParam<ItemRow> {};

TEST_P(LedgerItem, IsNamed)
{
    const SmallCase small;
    const ItemRow& row = GetParam();
    small.write(row.file, row.text);
    EXPECT_THAT(itemsOf(small, KEL_CASE), ElementsAre(row.file + row.item));
}

INSTANTIATE_TEST_SUITE_P(Rows, LedgerItem, ::testing::ValuesIn(itemRows),
                         [](const auto& row) { return row.param.name; });

TEST(LedgerItems, OfASoundCaseThereAreNone)
{
    const SmallCase small;
    small.write("0/p", SmallCase::field("volScalarField", "uniform 1",
                                        "left { type fixedValue; value nonuniform List<scalar> 1(2); }"));
    EXPECT_THAT(itemsOf(small, KEL_CASE), IsEmpty());
    EXPECT_THAT(itemsOf(small, KEL_DATA), IsEmpty());
}

TEST(LedgerItems, ADictionaryThatIsDamagedIsNamedAndReported)
{
    const SmallCase small;
    small.write("system/a", dictionaryHead + "b { c 1;");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    const std::string problem = "line 2: expected the name of an entry, found the end of the file";
    EXPECT_THAT(itemsOf(reader, KEL_CASE), ElementsAre("system/a: " + problem + " (cannot be read)"));
    EXPECT_THAT(reader.getWarnings(false, true),
                ElementsAre("settings left out: " + small.file("system/a") + ": " + problem));
}

TEST(LedgerItems, ValuesThatNoPatchTakesAreNamed)
{
    const SmallCase small;
    std::string text;
    for (int n = 0; n < 1001; ++n)
        text += " 7";
    small.write("0/p", SmallCase::field("volScalarField", "uniform 1",
                                        "other { type fixedValue; value nonuniform List<scalar> 1001(" + text +
                                            "); }"
                                            "left { type fixedGradient; gradient nonuniform List<scalar> 1(5); }"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(itemsOf(reader, KEL_DATA),
                ElementsAre("0/p: boundaryField/other/value: a list of more than 1000 entries, or of more "
                            "than a megabyte (no place in the frames)"));
    EXPECT_EQ(setting(reader, KEL_DATA, "0/p", "boundaryField/left/gradient"), "nonuniform List<scalar> 1 (5)");
}

TEST(LedgerItems, AFieldThatIsDamagedAtOneTimeIsReadAtTheOthers)
{
    const SmallCase small;
    small.write("0/p", SmallCase::field("volScalarField", "uniform 1"));
    small.write("1/p", SmallCase::field("volScalarField", "uniform 2"));
    small.write("2/p", "FoamFile { class volScalarField");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    const std::string problem = "line 1: expected ';' after 'class', found the end of the file";
    EXPECT_THAT(reader.getWarnings(false, true),
                ElementsAre("not taken as a field: " + small.file("2/p") + ": " + problem));
    EXPECT_THAT(itemsOf(reader, KEL_DATA), ElementsAre("2/p: " + problem + " (cannot be read)"));
    for (const int level : {0, 1}) {
        reader.startReadingTimeLevel(level);
        EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), ElementsAre(level + 1, level + 1));
    }
    reader.startReadingTimeLevel(2);
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), IsEmpty());
    EXPECT_THAT(reader.getErrors(false, true), ElementsAre(small.file("2/p") + ": " + problem));
}

TEST(LedgerItems, AFieldThatIsDamagedAtAllTimesIsNamed)
{
    const SmallCase small;
    small.write("0/p", SmallCase::head("volScalarField") + "dimensions [0 1 (2)]; internalField uniform 1;");
    EXPECT_THAT(
        itemsOf(small, KEL_DATA),
        ElementsAre("0/p: line 2: expected five to seven exponents, or units, and ']', found '(' (cannot be read)"));
}

TEST(LedgerItems, ValuesThatCannotBeReadAreNamedOnceTheyWereAskedFor)
{
    const SmallCase small;
    small.write("0/p", SmallCase::field("volScalarField", "nonuniform List<scalar> 3(1 2 3)"));
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_DATA));
    EXPECT_THAT(itemsOf(reader, KEL_DATA), IsEmpty());
    EXPECT_THAT(valuesOf(reader, KEL_CELL_ZONE, "p"), IsEmpty());
    EXPECT_THAT(itemsOf(reader, KEL_DATA),
                ElementsAre("0/p: line 3: expected at most 2 entries in the list of field values, found "
                            "a count of 3 (cannot be read)"));
}

TEST(LedgerItems, ASetThatDoesNotFitIsNamedAndTheOthersAreRead)
{
    const SmallCase small;
    small.write("constant/polyMesh/sets/good", SmallCase::head("faceSet") + "2\n(\n3\n0\n)\n");
    small.write("constant/polyMesh/sets/bad", SmallCase::head("cellSet") + "1(2)");
    KelPolyMeshProvider reader;
    ASSERT_TRUE(reader.startReading(small.path(), KEL_CASE));
    std::vector<std::string> names;
    reader.getSetNames(KEL_FACE_ZONE, names);
    EXPECT_THAT(names, ElementsAre("good"));
    const std::string problem =
        "line 2: entry 0 of the list of members of a set is out of range: expected 0 to 1, found 2";
    EXPECT_THAT(itemsOf(reader, KEL_CASE), ElementsAre("constant/polyMesh/sets/bad: " + problem + " (cannot be read)"));
    EXPECT_THAT(reader.getWarnings(false, true),
                ElementsAre("set left out: " + small.file("constant/polyMesh/sets/bad") + ": " + problem));
}

} // namespace
