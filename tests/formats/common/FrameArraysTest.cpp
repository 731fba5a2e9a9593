#include "formats/common/FrameArrays.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace meridyn {
namespace {

std::string contentOf(const std::string& file)
{
    std::ifstream in(std::string(KEL_SOURCE_DIR) + "/" + file);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

/// Names of the virtual operations between two lines of a header that begin with these texts.
std::set<std::string> operationsBetween(const std::string& header, const std::string& from, const std::string& to)
{
    const std::string text = contentOf(header);
    const std::size_t begin = text.find(from), end = text.find(to);
    EXPECT_NE(begin, std::string::npos) << header << " has no '" << from << "'";
    EXPECT_NE(end, std::string::npos) << header << " has no '" << to << "'";
    std::set<std::string> names;
    const std::string part = text.substr(begin, end - begin);
    static const std::regex operation(R"(virtual\s+\w+\s+(\w+)\s*\()");
    for (std::sregex_iterator at(part.begin(), part.end(), operation), none; at != none; ++at)
        names.insert((*at)[1]);
    return names;
}

/// Names of the operations of a frame that the rows take: "&C::name" and "writer.name".
std::set<std::string> operationsOfRows(const std::string& frame, const std::string& object)
{
    const std::string text = contentOf("formats/common/FrameArrays.cpp");
    std::set<std::string> names;
    const std::regex used("(?:&" + frame + "::|\\b" + object + "\\.)(\\w+)");
    for (std::sregex_iterator at(text.begin(), text.end(), used), none; at != none; ++at)
        names.insert((*at)[1]);
    return names;
}

std::string difference(const std::set<std::string>& all, const std::set<std::string>& some)
{
    std::string text;
    for (const std::string& name : all)
        if (some.count(name) == 0)
            text += name + "\n";
    return text;
}

// Interface data lie on pairs of zones and not on elements, and are no array of this table; nor are the brackets around
// all that belongs to the zones of a category.
const std::set<std::string> otherWriting = {"startWritingInterfaceDataForFaces", "setInterfaceDataForFacesInZone",
                                            "endWritingInterfaceDataForFaces", "startWritingZonesOfCategory",
                                            "endWritingZonesOfCategory"};
const std::set<std::string> otherReading = {"startReadingInterfaceDataForFaces", "getInterfaceDataSizesForFacesInZone",
                                            "getInterfaceDataForFacesInZone", "endReadingInterfaceDataForFaces"};

TEST(FrameArrays, HaveEveryOperationOfTheWriterOnElements)
{
    const std::set<std::string> ofFrame =
        operationsBetween("include/KelConsumer.h", "// ---- 2 nodes", "// ---- 6 case sections");
    EXPECT_GT(ofFrame.size(), 100u);
    std::set<std::string> taken = operationsOfRows("C", "w");
    taken.insert(otherWriting.begin(), otherWriting.end());
    taken.insert("setCell1sForFacesInZone"); // arrives at cell 0
    EXPECT_EQ(difference(ofFrame, taken), "") << "no row of formats/common/FrameArrays.cpp writes with these";
    EXPECT_EQ(difference(taken, ofFrame), "") << "rows name what the writer frame does not have";
}

TEST(FrameArrays, HaveEveryOperationOfTheReaderOnElements)
{
    const std::set<std::string> ofFrame =
        operationsBetween("include/KelProvider.h", "// ---- 3 nodes", "// ---- 7 case sections");
    EXPECT_GT(ofFrame.size(), 100u);
    std::set<std::string> taken = operationsOfRows("P", "r");
    taken.insert(otherReading.begin(), otherReading.end());
    EXPECT_EQ(difference(ofFrame, taken), "") << "no row of formats/common/FrameArrays.cpp reads with these";
    EXPECT_EQ(difference(taken, ofFrame), "") << "rows name what the reader frame does not have";
}

TEST(FrameArrays, AreOneRowForEachArrayOfTheMesh)
{
    std::vector<KelArray> rows;
    forFrameArrays([&](const auto& row) { rows.push_back(row.array); });
    std::vector<KelArray> expected;
    for (int n = 0; n < static_cast<int>(KelArray::CaseSection); ++n)
        if (const auto array = static_cast<KelArray>(n); !isOfCounts(array))
            expected.push_back(array);
    EXPECT_EQ(rows, expected) << "the rows are not in the order of KelArray, or one is missing";
}

struct RowCase {
    KelArray array;
    KelFormatFamily family;
    KelZoneCategory category;
    int idsOf;
    bool zeroIsNone;
    const char* name;
};

TEST(FrameArrays, SayWhatEachArrayIs)
{
    // clang-format off
    const RowCase expected[] = {
        {KelArray::Coordinates,    KEL_FAMILY_COORDINATES,     KEL_NODE_ZONE, -1, false, "coordinates"},
        {KelArray::EdgeNodes,      KEL_FAMILY_EDGES,           KEL_EDGE_ZONE, KEL_NODE_ZONE, false, "nodes of edges"},
        {KelArray::FaceNodes,      KEL_FAMILY_FACE_NODES,      KEL_FACE_ZONE, KEL_NODE_ZONE, false, "nodes of faces"},
        {KelArray::FaceCell0s,     KEL_FAMILY_FACE_CELLS,      KEL_FACE_ZONE, KEL_CELL_ZONE, false, "cell 0 of faces"},
        {KelArray::FaceCell1s,     KEL_FAMILY_FACE_CELLS,      KEL_FACE_ZONE, KEL_CELL_ZONE, true,  "cell 1 of faces"},
        {KelArray::FaceShadows,    KEL_FAMILY_SHADOW_FACES,    KEL_FACE_ZONE, KEL_FACE_ZONE, true,  "shadow faces"},
        {KelArray::FaceChildren,   KEL_FAMILY_CHILD_FACES,     KEL_FACE_ZONE, KEL_FACE_ZONE, true,  "child faces"},
        {KelArray::CellTypes,      KEL_FAMILY_CELL_TYPES,      KEL_CELL_ZONE, -1, false, "types of cells"},
        {KelArray::CellNodes,      KEL_FAMILY_CELL_NODES,      KEL_CELL_ZONE, KEL_NODE_ZONE, false, "nodes of cells"},
        {KelArray::CellFaces,      KEL_FAMILY_CELL_FACES,      KEL_CELL_ZONE, KEL_FACE_ZONE, false, "faces of cells"},
        {KelArray::CellPartitions, KEL_FAMILY_CELL_PARTITIONS, KEL_CELL_ZONE, -1, false, "partitions of cells"},
        {KelArray::CellChildren,   KEL_FAMILY_CHILD_CELLS,     KEL_CELL_ZONE, KEL_CELL_ZONE, true,  "child cells"},
    };
    // clang-format on
    const RowCase* at = expected;
    forFrameArrays([&](const auto& row) {
        ASSERT_NE(at, std::end(expected));
        EXPECT_EQ(row.array, at->array) << at->name;
        EXPECT_EQ(row.family, at->family) << at->name;
        EXPECT_EQ(row.category, at->category) << at->name;
        EXPECT_EQ(row.idsOf ? static_cast<int>(*row.idsOf) : -1, at->idsOf) << at->name;
        EXPECT_EQ(row.zeroIsNone, at->zeroIsNone) << at->name;
        EXPECT_STREQ(row.name(), at->name);
        ++at;
    });
    EXPECT_EQ(at, std::end(expected));
}

} // namespace
} // namespace meridyn
