#include "KelFormatConsumer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

/// Notes what reaches the operations that a format overrides.
class NotingWriter : public KelFormatConsumer {
public:
    NotingWriter()
    {
        setZoneIds(KEL_CELL_ZONE, {7, 8});
        setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 1);
        setZoneSizeInfo(7, KEL_ZONE_LAST_ID, 4);
    }

    template <class Call>
    Lines notesOf(const Call& call)
    {
        _notes.clear();
        call();
        return _notes;
    }

    using KelFormatConsumer::isAppendOn;
    using KelFormatConsumer::isOverrideSettingsOn;
    using KelFormatConsumer::isWriteSettingsOn;

protected:
    bool openData(KelDataClass, const std::string&) override { return true; }
    bool closeData(KelDataClass) override { return true; }

    void announce(KelArray array, const std::vector<int>& zoneIds) override
    {
        note("announce", nameOf(array), zoneIds.size());
    }
    void keep(KelArray array, unsigned64 first, unsigned64 last, const KelValues& values) override
    {
        note("keep", nameOf(array), first, last, textOf(values));
    }
    void keepUniform(KelArray array, unsigned64 first, unsigned64 last, signed64 value) override
    {
        note("uniform", nameOf(array), first, last, value);
    }
    void keepInterface(int zoneId, const KelInterfaceValues& values) override
    {
        note("interface", zoneId, textOf(values[0]), textOf(values[1]), textOf(values[2]), textOf(values[3]));
    }
    void startVariable(KelCollection in, const std::string& name, unsigned64 valuesPerMember,
                       KelPlainDataType type) override
    {
        note("variable", int(in), name, valuesPerMember, type);
    }
    void startLists(KelCollection in, const std::string& name, KelPlainDataType type,
                    KelPlainDataType lengthType) override
    {
        note("lists", int(in), name, type, lengthType);
    }
    void startLengths(const std::string& name, KelPlainDataType type) override { note("lengths", name, type); }
    bool append(KelPart part, const KelValues& values) override
    {
        note("append", int(part), textOf(values));
        return values.count != 1; // one value is refused
    }
    bool appendLists(const KelValues& values, const KelValues& lengths) override
    {
        note("append lists", textOf(values), textOf(lengths));
        return values.count != 1;
    }
    void keepBlock(KelCollection in, const std::string& name, const KelValues& values) override
    {
        note("block", int(in), name, textOf(values));
    }
    void keepText(KelCollection in, const std::string& name, const std::string& text) override
    {
        note("text", int(in), name, text);
    }

private:
    static std::string textOf(const KelValues& values)
    {
        std::ostringstream text;
        text << "type" << values.type << ":";
        values.visit([&](auto* each) {
            for (unsigned64 n = 0; n < values.count; ++n)
                text << " " << +each[n];
        });
        return text.str();
    }
    template <class... Parts>
    void note(const Parts&... parts)
    {
        std::ostringstream line;
        const char* separator = "";
        ((line << separator << parts, separator = ", "), ...);
        _notes.push_back(line.str());
    }

    Lines _notes;
};

const unsigned64 ids[] = {11, 12};
const short counts[] = {3, 4};
const double reals[] = {0.5, 1.5, 2.5};

TEST(FormatConsumer, NodesAndEdgesComeByRange)
{
    NotingWriter writer;
    const float floats[] = {1, 2, 4};
    EXPECT_THAT(writer.notesOf([&] {
        writer.startWritingCoordinatesForNodes({1, 2});
        writer.setCoordinatesForNodesInRange(5, 5, reals, 3);
        writer.setCoordinatesForNodesInRange(6, 6, floats, 3);
        writer.setCoordinatesForNode(7, reals, 3);
        writer.startWritingNodesForEdges({1});
        writer.setNodeCountsForEdgesInRange(1, 2, counts, 2);
        writer.setUniformNodeCountForEdgesInRange(3, 9, 2);
        writer.setNodeIdsForEdgesInRange(1, 1, ids, 2);
    }),
                ElementsAre("announce, coordinates, 2", "keep, coordinates, 5, 5, type9: 0.5 1.5 2.5",
                            "keep, coordinates, 6, 6, type8: 1 2 4", "keep, coordinates, 7, 7, type9: 0.5 1.5 2.5",
                            "announce, nodes of edges, 1", "keep, node counts of edges, 1, 2, type2: 3 4",
                            "uniform, node counts of edges, 3, 9, 2", "keep, nodes of edges, 1, 1, type6: 11 12"));
}

TEST(FormatConsumer, FacesComeByRange)
{
    NotingWriter writer;
    EXPECT_THAT(writer.notesOf([&] {
        writer.startWritingNodesForFaces({1});
        writer.setNodeCountsForFacesInRange(1, 2, counts, 2);
        writer.setUniformNodeCountForFacesInRange(3, 9, 4);
        writer.setNodeIdsForFacesInRange(1, 1, ids, 2);
        writer.startWritingCell0sForFaces({1, 2, 3});
        writer.setCell0sForFacesInRange(1, 2, ids, 2);
        writer.startWritingCell1sForFaces({1});
        writer.setCell1sForFacesInRange(1, 2, ids, 2);
        writer.startWritingShadowFaceIdsForFaces({});
        writer.setShadowFaceIdsForFacesInRange(1, 2, ids, 2);
        writer.setChildFaceCountsForFacesInRange(1, 2, counts, 2);
        writer.setUniformChildFaceCountForFacesInRange(3, 9, 0);
        writer.setChildFaceIdsForFacesInRange(1, 1, ids, 2);
        writer.setInterfaceDataForFacesInZone(4, reals, 3, reals, 1, ids, 2, ids, 1);
    }),
                ElementsAre("announce, nodes of faces, 1", "keep, node counts of faces, 1, 2, type2: 3 4",
                            "uniform, node counts of faces, 3, 9, 4", "keep, nodes of faces, 1, 1, type6: 11 12",
                            "announce, cell 0 of faces, 3", "keep, cell 0 of faces, 1, 2, type6: 11 12",
                            "keep, cell 1 of faces, 1, 2, type6: 11 12", "announce, shadow faces, 0",
                            "keep, shadow faces, 1, 2, type6: 11 12", "keep, counts of child faces, 1, 2, type2: 3 4",
                            "uniform, counts of child faces, 3, 9, 0", "keep, child faces, 1, 1, type6: 11 12",
                            "interface, 4, type9: 0.5 1.5 2.5, type9: 0.5, type6: 11 12, type6: 11"));
}

TEST(FormatConsumer, CellsComeByRange)
{
    NotingWriter writer;
    const int partitions[] = {0, 2};
    const KelCellType types[] = {KEL_CELL_TETRAHEDRON, KEL_CELL_HEXAHEDRON};
    const std::string both = std::to_string(types[0]) + " " + std::to_string(types[1]);
    EXPECT_THAT(writer.notesOf([&] {
        writer.setTypesForCellsInRange(1, 2, types, 2);
        writer.startWritingNodesForCells({1});
        writer.setNodeCountsForCellsInRange(1, 2, counts, 2);
        writer.setUniformNodeCountForCellsInRange(3, 9, 8);
        writer.setNodeIdsForCellsInRange(1, 1, ids, 2);
        writer.startWritingFacesForCells({1});
        writer.setFaceCountsForCellsInRange(1, 2, counts, 2);
        writer.setUniformFaceCountForCellsInRange(3, 9, 6);
        writer.setFaceIdsForCellsInRange(1, 1, ids, 2);
        writer.startWritingPartitionIdsForCells({1}, 3);
        writer.setPartitionIdsForCellsInRange(1, 2, partitions, 2);
        writer.setChildCellCountsForCellsInRange(1, 2, counts, 2);
        writer.setUniformChildCellCountForCellsInRange(3, 9, 1);
        writer.setChildCellIdsForCellsInRange(1, 1, ids, 2);
    }),
                ElementsAre("keep, types of cells, 1, 2, type4: " + both, "announce, nodes of cells, 1",
                            "keep, node counts of cells, 1, 2, type2: 3 4", "uniform, node counts of cells, 3, 9, 8",
                            "keep, nodes of cells, 1, 1, type6: 11 12", "announce, faces of cells, 1",
                            "keep, face counts of cells, 1, 2, type2: 3 4", "uniform, face counts of cells, 3, 9, 6",
                            "keep, faces of cells, 1, 1, type6: 11 12", "announce, partitions of cells, 1",
                            "keep, partitions of cells, 1, 2, type4: 0 2",
                            "keep, counts of child cells, 1, 2, type2: 3 4", "uniform, counts of child cells, 3, 9, 1",
                            "keep, child cells, 1, 1, type6: 11 12"));
}

TEST(FormatConsumer, TypesOfTheMarkerStandForTheWholeZone)
{
    NotingWriter writer;
    const auto none = static_cast<KelCellType>(-1);
    EXPECT_THAT(
        writer.notesOf([&] {
            writer.startWritingTypesForCells({7, 8, 99, 7}, {KEL_CELL_PRISM, KEL_CELL_PRISM, KEL_CELL_PRISM, none});
        }),
        ElementsAre("announce, types of cells, 4", "uniform, types of cells, 1, 4, " + std::to_string(KEL_CELL_PRISM)))
        << "8 is empty, 99 unknown, and the last has no type of its own";
    EXPECT_THAT(writer.notesOf([&] {
        writer.startWritingTypesForCells({7, 8}, {});
    }),
                ElementsAre("announce, types of cells, 2"));
}

template <class T>
class FormatConsumerTypes : public ::testing::Test {};
using ValueTypes =
    ::testing::Types<unsigned char, char, short, unsigned int, int, long, unsigned64, signed64, float, double>;
TYPED_TEST_SUITE(FormatConsumerTypes, ValueTypes);

TYPED_TEST(FormatConsumerTypes, SetsSetDataAndTracksComeInEachType)
{
    NotingWriter writer;
    int variable = 0;
    short phase = 0;
    writer.addPhaseName("air", phase);
    writer.startWritingPhase(phase);
    writer.addPhaseVariable("age", variable);
    const TypeParam values[] = {TypeParam(65), TypeParam(66)};
    const int ints[] = {2};
    const short shorts[] = {2};
    const unsigned64 longs[] = {2};
    const std::string both = "type" + std::to_string(plainTypeOf<TypeParam>()) + ": 65 66";
    EXPECT_THAT(writer.notesOf([&] {
        writer.setDataOfVariableForSetInRange(3, 4, values, 2);
        writer.setVariableLengthedDataOfVariableForSetInRange(3, 3, values, 2);
        writer.writeOtherDataForSet("o", values, 2);
        EXPECT_EQ(writer.setVariableForSetData(values, 2), 2U);
        EXPECT_EQ(writer.setVariableForSetData(values, 1), 0U) << "what is not taken";
        EXPECT_EQ(writer.setVariableLengthVariableForSetData(values, 2, ints, 1), 2U);
        EXPECT_EQ(writer.setVariableLengthVariableForSetData(values, 2, shorts, 1), 2U);
        EXPECT_EQ(writer.setVariableLengthVariableForSetData(values, 1, longs, 1), 0U);
        writer.writeOtherDataForSetData("o", values, 2);
        writer.setValuesOfParticleTrackVariable("age", values, 2);
        writer.setValuesOfParticleTrackVariable(variable, values, 2);
        writer.setValuesOfParticleTrackVariable(variable + 1, values, 2);
    }),
                ElementsAre("keep, variable of the set, 3, 4, " + both,
                            "keep, variable-length variable of the set, 3, 3, " + both, "block, 0, o, " + both,
                            "append, 1, " + both, "append, 1, " + both.substr(0, both.size() - 3),
                            "append lists, " + both + ", type4: 2", "append lists, " + both + ", type2: 2",
                            "append lists, " + both.substr(0, both.size() - 3) + ", type6: 2", "block, 1, o, " + both,
                            "block, 2, age, " + both, "block, 2, age, " + both, "block, 2, , " + both));
}

TEST(FormatConsumer, MarkersAndLengthsOfSetsAndSetData)
{
    NotingWriter writer;
    const int ints[] = {1, 2};
    EXPECT_THAT(writer.notesOf([&] {
        writer.setIdsForSetInRange(1, 2, ids, 2);
        writer.startWritingSizeOfVariableForSet("v", {2}, KEL_PLAIN_SHORT);
        writer.setSizeOfVariableForSetInRange(1, 2, counts, 2);
        writer.setSizeOfVariableForSetInRange(1, 2, ints, 2);
        writer.setSizeOfVariableForSetInRange(1, 2, ids, 2);
        writer.setSizeOfVariableForSetInRange(1, 2, short(5));
        writer.setSizeOfVariableForSetInRange(1, 2, int(6));
        writer.setSizeOfVariableForSetInRange(1, 2, unsigned64(7));
        writer.startWritingVariableLengthedDataOfVariableForSet("v", {}, KEL_PLAIN_FLOAT);
        writer.startWritingDataOfVariableForSet("w", {}, 3, KEL_PLAIN_CHAR);
        writer.writeStringDataForSet("t", "text");
        EXPECT_EQ(writer.setIdsForSetData(ids, 2), 2U);
        writer.startWritingVariableForSetData("x", 4, KEL_PLAIN_LONG);
        writer.startWritingVariableLengthVariableForSetData("y", KEL_PLAIN_INT, KEL_PLAIN_UNSIGNED64);
        writer.writeStringDataForSetData("u", "more");
    }),
                ElementsAre("keep, ids of the set, 1, 2, type6: 11 12", "lengths, v, 2",
                            "keep, lengths of the set, 1, 2, type2: 3 4", "keep, lengths of the set, 1, 2, type4: 1 2",
                            "keep, lengths of the set, 1, 2, type6: 11 12", "uniform, lengths of the set, 1, 2, 5",
                            "uniform, lengths of the set, 1, 2, 6", "uniform, lengths of the set, 1, 2, 7",
                            "lists, 0, v, 8, -1", "variable, 0, w, 3, 1", "text, 0, t, text", "append, 0, type6: 11 12",
                            "variable, 1, x, 4, 5", "lists, 1, y, 4, 6", "text, 1, u, more"));
}

TEST(FormatConsumer, VariablesComeByRangeAndByName)
{
    NotingWriter writer;
    const float floats[] = {1, 2};
    EXPECT_THAT(writer.notesOf([&] {
        writer.setValuesOfPhaseVariableForElementsInRange(1, 3, reals, 3);
        writer.setValuesOfPhaseVariableForElementsInZone(7, floats, 2);
    }),
                ElementsAre("keep, variable, 1, 3, type9: 0.5 1.5 2.5", "keep, variable, 1, 4, type8: 1 2"));
}

TEST(FormatConsumer, MarkersSayNothing)
{
    NotingWriter writer;
    ::testing::internal::CaptureStdout();
    writer.startWritingNodes({1});
    writer.startWritingCoordinatesForNodes({1});
    writer.startWritingEdges({1});
    writer.startWritingNodesForEdges({1});
    writer.endWritingNodeIdsForEdges();
    writer.startWritingFaces({1});
    writer.startWritingNodesForFaces({1});
    writer.endWritingNodeIdsForFaces();
    writer.startWritingCell0sForFaces({1});
    writer.startWritingCell1sForFaces({1});
    writer.startWritingShadowFaceIdsForFaces({1});
    writer.startWritingInterfaceDataForFaces({1}, {2});
    writer.endWritingInterfaceDataForFaces();
    writer.startWritingChildFacesForFaces({1});
    writer.startWritingChildFaceCountsForFaces();
    writer.endWritingChildFaceCountsForFaces();
    writer.startWritingChildFaceIdsForFaces();
    writer.startWritingCells({1});
    writer.startWritingTypesForCells({7}, {KEL_CELL_PRISM});
    writer.startWritingNodesForCells({1});
    writer.startWritingNodeCountsForCells();
    writer.startWritingFacesForCells({1});
    writer.startWritingPartitionIdsForCells({1}, 2);
    writer.endWritingPartitionIdsForCells();
    writer.startWritingChildCellsForCells({1});
    writer.startWritingChildCellCountsForCells();
    writer.endWritingChildCellCountsForCells();
    writer.startWritingChildCellIdsForCells();
    writer.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"a"});
    writer.startWritingPhase(1);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(FormatConsumer, SwitchesHaveTheirDefaults)
{
    NotingWriter writer;
    EXPECT_FALSE(writer.isAppendOn());
    EXPECT_TRUE(writer.isOverrideSettingsOn());
    EXPECT_TRUE(writer.isWriteSettingsOn());
    writer.setAppendOn(true);
    writer.setOverrideSettingsOn(false);
    writer.setWriteSettingsOn(false);
    EXPECT_TRUE(writer.isAppendOn());
    EXPECT_FALSE(writer.isOverrideSettingsOn());
    EXPECT_FALSE(writer.isWriteSettingsOn());
}

TEST(Arrays, CountsStandBehindWhatTheyCount)
{
    EXPECT_EQ(listsOf(KelArray::EdgeNodeCounts), KelArray::EdgeNodes);
    EXPECT_EQ(listsOf(KelArray::FaceNodeCounts), KelArray::FaceNodes);
    EXPECT_EQ(listsOf(KelArray::FaceChildCounts), KelArray::FaceChildren);
    EXPECT_EQ(listsOf(KelArray::CellNodeCounts), KelArray::CellNodes);
    EXPECT_EQ(listsOf(KelArray::CellFaceCounts), KelArray::CellFaces);
    EXPECT_EQ(listsOf(KelArray::CellChildCounts), KelArray::CellChildren);
    EXPECT_EQ(listsOf(KelArray::SetListLengths), KelArray::SetLists);
    int lists = 0, ofCounts = 0;
    for (int n = 0; n <= static_cast<int>(KelArray::SetListLengths); ++n) {
        lists += isOfLists(static_cast<KelArray>(n)) ? 1 : 0;
        ofCounts += isOfCounts(static_cast<KelArray>(n)) ? 1 : 0;
    }
    EXPECT_EQ(lists, 7);
    EXPECT_EQ(ofCounts, 7);
}

} // namespace
} // namespace meridyn
