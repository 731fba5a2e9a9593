// A model with everything goes through pairs of formats, and a program that knows only the document of the file format
// holds the files against each other: nothing may be missing that the loss report does not name.
#include "RichModel.h"

#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>

namespace meridyn {
namespace {

const std::vector<std::string> hostileNames = {"a/b",         "%",        "#~1",
                                               ".",           "..",       " ",
                                               "line\nbreak", "quote'\"", "\xff\xfe no UTF-8",
                                               "caf\xc3\xa9", "kel_id",   std::string(300, 'x')};

/// Adds hostile names and extreme values wherever a name or a value can stand.
void addHostileCase(RichWriter& writer)
{
    const double least = std::numeric_limits<double>::denorm_min(), infinity = std::numeric_limits<double>::infinity();
    const double xyz[] = {-0.0, std::nan(""), least};
    writer.setCoordinatesForNode(1, xyz, 3);
    const double more[] = {infinity, -infinity, std::numeric_limits<double>::max()};
    writer.setCoordinatesForNode(2, more, 3);
    writer.setZoneStringInfo(7, KEL_ZONE_STRING_0, std::string("nul\0 in it", 10));
    writer.setFaceZoneInfo(7, KEL_FACE_ZONE_INFO_1, std::numeric_limits<int>::min());
    writer.setZoneSizeInfo(7, KEL_ZONE_EXTRA_SIZE, std::numeric_limits<std::int64_t>::max());
    for (const std::string& name : hostileNames) {
        writer.addSet(name);
        writer.writeSettingStrings({{name, name}}, KEL_CASE, name);
        writer.log({{name, name}}, KEL_CASE);
    }
}

void addHostileData(RichWriter& writer)
{
    for (const std::string& name : hostileNames) {
        int id = 0;
        writer.addPhaseVariable(short{2}, name, id);
        writer.setAttributeValueOfPhaseVariable(id, name, name);
        writer.setAttributeValueOfPhase(short{2}, name, name);
        writer.startWritingPhase(2);
        writer.addSetData(name);
        writer.endWritingPhase();
        writer.addSet(name);
        writer.writeSettingStrings({{name, name}}, KEL_DATA, name);
    }
}

template <class Writer>
std::string copied(KelFileProvider& source, Writer& target, KelTransfer* = nullptr)
{
    KelTransfer transfer(source, target);
    return transfer.copyCase() && transfer.copyData() ? transfer.losses().text() : "problem: " + transfer.problem();
}

/// What the independent program finds.
std::string differences(const std::string& one, const std::string& other)
{
    std::string text;
    const std::string command =
        std::string(KEL_PYTHON_PROGRAM) + " " + KEL_TEST_DIR + "/same_items.py '" + one + "' '" + other + "' 2>&1";
    FILE* const output = popen(command.c_str(), "r");
    char buffer[4096];
    for (std::size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, output)) > 0;)
        text.append(buffer, count);
    const int status = pclose(output);
    return text == "\n" && status == 0 ? "" : text + "exit status " + std::to_string(status);
}

class Accounting : public ::testing::Test {
protected:
    void SetUp() override
    {
        makeRichModel("memory:all", addHostileCase, addHostileData);
        KelMemoryProvider memory;
        KelHdf5Consumer file;
        setBoth(memory, "memory:all");
        name(file, "a");
        ASSERT_EQ(copied(memory, file), "");
    }

    template <class Object>
    void name(Object& object, const std::string& stem) const
    {
        object.setFile(path(stem, "case"), KEL_CASE);
        object.setFile(path(stem, "data"), KEL_DATA);
    }

    std::string path(const std::string& stem, const std::string& kind) const
    {
        return _folder / (stem + "." + kind + ".kel");
    }

private:
    const TemporaryFolder _folder;
};

TEST_F(Accounting, FromFileToFileNothingIsMissing)
{
    KelHdf5Provider source;
    KelHdf5Consumer target;
    name(source, "a");
    name(target, "b");
    EXPECT_EQ(copied(source, target), "");
    for (const char* kind : {"case", "data"})
        EXPECT_EQ(differences(path("a", kind), path("b", kind)), "") << kind;
}

TEST_F(Accounting, ThroughMemoryNothingIsMissing)
{
    KelHdf5Provider source;
    KelMemoryConsumer memory;
    name(source, "a");
    setBoth(memory, "memory:between");
    EXPECT_EQ(copied(source, memory), "");
    KelMemoryProvider between;
    KelHdf5Consumer target;
    setBoth(between, "memory:between");
    name(target, "b");
    EXPECT_EQ(copied(between, target), "");
    for (const char* kind : {"case", "data"})
        EXPECT_EQ(differences(path("a", kind), path("b", kind)), "") << kind;
}

} // namespace
} // namespace meridyn
