// The files that earlier versions have written stay readable: tests/data/hdf5/<version>.case.kel and .data.kel.
#include "Sample.h"

#include <hdf5.h>

using namespace hdf5test;

namespace {

std::vector<std::string> versions()
{
    std::vector<std::string> versions;
    for (const auto& entry : std::filesystem::directory_iterator(KEL_SOURCE_DIR "/tests/data/hdf5")) {
        const std::string name = entry.path().filename().string();
        const std::size_t end = name.find(".case.kel");
        if (end != std::string::npos)
            versions.push_back(name.substr(0, end));
    }
    return versions;
}

void expectSample(const std::string& caseFile, const std::string& dataFile, const std::vector<int>& levels = {10, 20})
{
    Reader reader;
    ASSERT_TRUE(reader.startReading(caseFile, KEL_CASE)) << reader.errors();
    ASSERT_TRUE(reader.startReading(dataFile, KEL_DATA)) << reader.errors();
    EXPECT_FALSE(reader.hasWarning());
    const TwoCells mesh;
    EXPECT_EQ(reader.getMeshId(), 4);
    std::vector<double> xyz(36);
    EXPECT_EQ(reader.getCoordinatesForNodesInZone(1, xyz.data(), 36), 36u);
    EXPECT_EQ(xyz, mesh.xyz);
    std::vector<unsigned64> ids(44);
    EXPECT_EQ(reader.getNodeIdsForFacesInRange(1, 11, ids.data(), 44), 44u);
    EXPECT_EQ(ids, mesh.faceNodes);
    EXPECT_EQ(reader.getShadowFaceIdForFace(3), 2u);
    EXPECT_EQ(reader.getChildFaceIdsForFace(6, ids.data(), 44), 1u);
    EXPECT_EQ(ids[0], 11u);
    EXPECT_EQ(reader.getPartitionIdForCell(1), 1);
    EXPECT_EQ(reader.getTypeForCell(2), KEL_CELL_HEXAHEDRON);
    EXPECT_EQ(reader.getLocalElemIdsInZone(21, ids.data(), 44), 2u);
    ASSERT_TRUE(reader.startReadingSet("probe/1"));
    EXPECT_EQ(reader.getIdsForSetInRange(1, 2, ids.data(), 2), 2u);
    EXPECT_EQ(ids[0], 2u);
    std::string text;
    reader.getSettingString(KEL_CASE, "key", text, "group");
    EXPECT_EQ(text, "text");
    reader.getZoneStringInfo(11, KEL_ZONE_STRING_1, text);
    EXPECT_EQ(text, "interior");
    EXPECT_EQ(reader.getTimeLevels(), levels);
    reader.startReadingTimeLevel(20);
    ASSERT_TRUE(reader.setActivePhase("gas"));
    std::vector<int> zones;
    double values[6] = {};
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "velocity", zones), 3u);
    EXPECT_EQ(reader.getValuesOfPhaseVariableForElementsInZone(21, values, 6), 6u);
    EXPECT_EQ(values[5], 6);
    unsigned64 members = 0;
    ASSERT_TRUE(reader.startReadingSetData("injection", members));
    std::vector<int> path;
    EXPECT_TRUE(reader.getDataOfVariableLengthVarForSetData("path", path));
    EXPECT_EQ(path, (std::vector<int>{5, 6, 7}));
    EXPECT_EQ(reader.errors(), "");
}

/// Changes the version text of a file in place; the new one has the same length.
void setVersion(const std::string& path, const std::string& version)
{
    const hid_t file = H5Fopen(path.c_str(), H5F_ACC_RDWR, H5P_DEFAULT);
    const hid_t attribute = H5Aopen(file, "format_version", H5P_DEFAULT);
    const hid_t type = H5Aget_type(attribute);
    ASSERT_EQ(H5Tget_size(type), version.size());
    H5Awrite(attribute, type, version.data());
    H5Tclose(type);
    H5Aclose(attribute);
    H5Fclose(file);
}

} // namespace

TEST(OldFiles, OfEveryVersionAreReadable)
{
    ASSERT_FALSE(versions().empty());
    for (const std::string& version : versions()) {
        SCOPED_TRACE(version);
        const std::string stem = KEL_SOURCE_DIR "/tests/data/hdf5/" + version;
        expectSample(stem + ".case.kel", stem + ".data.kel");
    }
}

TEST(OldFiles, CanBeAddedTo)
{
    for (const std::string& version : versions()) {
        const Folder folder;
        const std::string stem = KEL_SOURCE_DIR "/tests/data/hdf5/" + version;
        std::filesystem::copy_file(stem + ".data.kel", folder / "o.data.kel");
        Writer writer;
        TwoCells::declare(writer);
        writer.context(4, 0, -1);
        writer.setAppendOn(true);
        short phase = 0;
        writer.addPhaseName("gas", phase);
        ASSERT_TRUE(writer.startWriting(folder / "o.data.kel", KEL_DATA)) << writer.errors();
        writer.startWritingTimeLevel(30);
        ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
        expectSample(stem + ".case.kel", folder / "o.data.kel", {10, 20, 30});
    }
}

TEST(Versions, DecideWhatIsRead)
{
    const struct {
        const char* version;
        bool isRead;
        bool warns;
        bool isAddedTo;
    } cases[] = {{"24.9.9", true, false, true}, {"25.0.7", true, false, true},   {"25.1.9", true, false, true},
                 {"25.2.0", true, true, false}, {"26.0.0", false, false, false}, {"Unknow", true, false, true}};
    const Folder folder;
    std::string errors;
    ASSERT_TRUE(writeSample(folder / "v.case.kel", folder / "v.data.kel", errors)) << errors;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.version);
        setVersion(folder / "v.case.kel", row.version);
        Reader reader;
        EXPECT_EQ(reader.startReading(folder / "v.case.kel", KEL_CASE), row.isRead);
        EXPECT_EQ(reader.hasWarning(), row.warns);
        EXPECT_EQ(reader.hasError(), !row.isRead);
        reader.endReading(KEL_CASE); // or the file is locked
        Writer writer;
        writer.setAppendOn(true);
        EXPECT_EQ(writer.startWriting(folder / "v.case.kel", KEL_CASE), row.isAddedTo) << writer.errors();
    }
}
