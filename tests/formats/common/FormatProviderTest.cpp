#include "KelFormatProvider.h"

#include "KelSolutionModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace meridyn {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Names = std::vector<std::string>;

/// A reader that overrides what it must.
class BareReader : public KelFormatProvider {
public:
    using KelFormatProvider::solutionModel;

protected:
    bool openData(KelDataClass, const std::string&) override { return true; }
    bool closeData(KelDataClass) override { return true; }
};

/// Gives for each id ten times the number of the array, plus the id; has one array of each kind under "v".
class CountingReader : public BareReader {
public:
    CountingReader()
    {
        setZoneIds(KEL_FACE_ZONE, {3});
        setZoneIds(KEL_CELL_ZONE, {7});
        for (const int zone : {3, 7}) {
            setZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, 1);
            setZoneSizeInfo(zone, KEL_ZONE_LAST_ID, 2);
        }
    }

    bool isDamaged = false;

protected:
    static signed64 valueOf(KelArray array, unsigned64 id)
    {
        return 2 * static_cast<signed64>(array) + static_cast<signed64>(id);
    }
    unsigned64 give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const override
    {
        const unsigned64 count = std::min(last - first + 1, values.capacity);
        values.visit([&](auto* to) {
            for (unsigned64 n = 0; n < count; ++n)
                to[n] = static_cast<std::remove_pointer_t<decltype(to)>>(valueOf(array, first + n));
        });
        return count;
    }
    std::optional<signed64> uniformValue(KelArray array, unsigned64 first, unsigned64 last) const override
    {
        return last == 2 ? std::optional(valueOf(array, first)) : std::nullopt;
    }
    unsigned64 giveInterface(int zoneId, const KelInterfaceBuffers& values) const override
    {
        unsigned64 stored = 0;
        for (const KelBuffer& buffer : values)
            stored +=
                buffer.visit([&](auto* to) { *to = convertedValue<std::remove_pointer_t<decltype(to)>>(zoneId + 1); })
                    ? 1
                    : 0;
        return stored;
    }
    Names namesIn(KelCollection in, KelPart part) const override
    {
        const std::string place = std::to_string(int(in)) + std::to_string(int(part));
        return {"z" + place, "a" + place};
    }
    std::optional<KelArrayInfo> describe(KelCollection in, KelPart part, const std::string& name) const override
    {
        if (name != "v" && part != KelPart::Ids)
            return std::nullopt;
        return KelArrayInfo{static_cast<KelPlainDataType>(3 * int(in) + int(part)), 4, 3};
    }
    bool giveWhole(KelCollection in, KelPart part, const std::string& name, const KelRoom& room) const override
    {
        if (!describe(in, part, name))
            return false;
        const KelBuffer buffer = room(3);
        buffer.visit([&](auto* to) {
            for (unsigned64 n = 0; n < std::min<unsigned64>(3, buffer.capacity); ++n)
                to[n] = convertedValue<std::remove_pointer_t<decltype(to)>>(10 * int(part) + int(in) + int(n));
        });
        return !isDamaged;
    }
    unsigned64 giveText(KelCollection in, const std::string& name, std::string& text) const override
    {
        if (name != "v")
            return 0;
        text = "text of " + std::to_string(int(in));
        return text.size();
    }
};

template <class T, class Call>
std::vector<T> two(const Call& call)
{
    std::vector<T> values(2);
    values.resize(call(values.data(), 2));
    return values;
}

/// What CountingReader gives for ids 1 and 2.
template <class T = unsigned64>
std::vector<T> expected(KelArray array)
{
    return {static_cast<T>(2 * int(array) + 1), static_cast<T>(2 * int(array) + 2)};
}

#define KEL_EXPECT_RANGE(operation, T, array)                                                                          \
    EXPECT_EQ(two<T>([&](T* to, unsigned64 room) { return reader.operation(1, 2, to, room); }),                        \
              expected<T>(KelArray::array))                                                                            \
        << #operation

TEST(FormatProvider, ArraysAreGivenByRange)
{
    const CountingReader reader;
    KEL_EXPECT_RANGE(getCoordinatesForNodesInRange, double, Coordinates);
    KEL_EXPECT_RANGE(getCoordinatesForNodesInRange, float, Coordinates);
    KEL_EXPECT_RANGE(getNodeIdsForEdgesInRange, unsigned64, EdgeNodes);
    KEL_EXPECT_RANGE(getNodeCountsForEdgesInRange, short, EdgeNodeCounts);
    KEL_EXPECT_RANGE(getNodeIdsForFacesInRange, unsigned64, FaceNodes);
    KEL_EXPECT_RANGE(getNodeCountsForFacesInRange, short, FaceNodeCounts);
    KEL_EXPECT_RANGE(getCell0sForFacesInRange, unsigned64, FaceCell0s);
    KEL_EXPECT_RANGE(getCell1sForFacesInRange, unsigned64, FaceCell1s);
    KEL_EXPECT_RANGE(getShadowFaceIdsForFacesInRange, unsigned64, FaceShadows);
    KEL_EXPECT_RANGE(getChildFaceIdsForFacesInRange, unsigned64, FaceChildren);
    KEL_EXPECT_RANGE(getChildFaceCountsForFacesInRange, short, FaceChildCounts);
    KEL_EXPECT_RANGE(getTypesForCellsInRange, KelCellType, CellTypes);
    KEL_EXPECT_RANGE(getNodeIdsForCellsInRange, unsigned64, CellNodes);
    KEL_EXPECT_RANGE(getNodeCountsForCellsInRange, short, CellNodeCounts);
    KEL_EXPECT_RANGE(getFaceIdsForCellsInRange, unsigned64, CellFaces);
    KEL_EXPECT_RANGE(getFaceCountsForCellsInRange, short, CellFaceCounts);
    KEL_EXPECT_RANGE(getPartitionIdsForCellsInRange, int, CellPartitions);
    KEL_EXPECT_RANGE(getChildCellIdsForCellsInRange, unsigned64, CellChildren);
    KEL_EXPECT_RANGE(getChildCellCountsForCellsInRange, short, CellChildCounts);
    KEL_EXPECT_RANGE(getValuesOfPhaseVariableForElementsInRange, float, PhaseVariable);
    KEL_EXPECT_RANGE(getValuesOfPhaseVariableForElementsInRange, double, PhaseVariable);
    KEL_EXPECT_RANGE(getIdsForSetInRange, unsigned64, SetIds);
    KEL_EXPECT_RANGE(getSizeOfVariableForSetInRange, int, SetListLengths);
    KEL_EXPECT_RANGE(getSizeOfVariableForSetInRange, short, SetListLengths);
    KEL_EXPECT_RANGE(getSizeOfVariableForSetInRange, unsigned64, SetListLengths);
    EXPECT_EQ(reader.getFaceCountForCell(1), expected<short>(KelArray::CellFaceCounts)[0]);
    EXPECT_EQ(reader.getNodeCountForFace(2), expected<short>(KelArray::FaceNodeCounts)[1]);
}

TEST(FormatProvider, UniformValuesAreThoseOfTheRangeOrOfTheCellZone)
{
    const CountingReader reader;
    short count = -1;
    EXPECT_TRUE(reader.hasUniformNodeCountForEdgesInRange(1, 2, &count));
    EXPECT_EQ(count, expected<short>(KelArray::EdgeNodeCounts)[0]);
    EXPECT_TRUE(reader.hasUniformNodeCountForFacesInZone(3, &count));
    EXPECT_EQ(count, expected<short>(KelArray::FaceNodeCounts)[0]);
    EXPECT_TRUE(reader.hasUniformNodeCountForCellsInZone(7, &count));
    EXPECT_EQ(count, expected<short>(KelArray::CellNodeCounts)[0]);
    EXPECT_TRUE(reader.hasUniformFaceCountForCellsInZone(7, &count));
    EXPECT_EQ(count, expected<short>(KelArray::CellFaceCounts)[0]);
    KelCellType type = KEL_CELL_TETRAHEDRON;
    EXPECT_TRUE(reader.hasUniformTypeForCellsInZone(7, &type));
    EXPECT_EQ(static_cast<int>(type), expected<int>(KelArray::CellTypes)[0]);
    EXPECT_TRUE(reader.hasUniformTypeForCellsInZone(7, nullptr)) << "nobody has to want the value";

    count = -1;
    EXPECT_FALSE(reader.hasUniformNodeCountForEdgesInRange(1, 3, &count));
    EXPECT_FALSE(reader.hasUniformNodeCountForCellsInZone(3, &count)) << "a zone of faces has no cells";
    EXPECT_FALSE(reader.hasUniformNodeCountForCellsInZone(99, &count));
    EXPECT_EQ(count, -1);
}

TEST(FormatProvider, InterfaceDataFillFourBuffers)
{
    const CountingReader reader;
    float a = 0, b = 0;
    double c = 0, d = 0;
    unsigned64 ids0 = 0, ids1 = 0;
    EXPECT_EQ(reader.getInterfaceDataForFacesInZone(3, &a, 1, &b, 1, &ids0, 1, &ids1, 1), 4U);
    EXPECT_EQ(reader.getInterfaceDataForFacesInZone(4, &c, 1, &d, 1, &ids0, 1, &ids1, 1), 4U);
    EXPECT_EQ(a + b, 8);
    EXPECT_EQ(c + d, 10);
    EXPECT_EQ(ids0 + ids1, 10U);
}

template <class T>
class FormatProviderTypes : public ::testing::Test {};
using ValueTypes =
    ::testing::Types<unsigned char, char, short, unsigned int, int, long, unsigned64, signed64, float, double>;
TYPED_TEST_SUITE(FormatProviderTypes, ValueTypes);

TYPED_TEST(FormatProviderTypes, NamedArraysAreGivenInEachType)
{
    using T = TypeParam;
    const CountingReader reader;
    KEL_EXPECT_RANGE(getDataOfVariableForSetInRange, T, SetVariable);
    KEL_EXPECT_RANGE(getVariableLengthedDataOfVariableForSetInRange, T, SetLists);
    const auto allOf = [](int part, int in) {
        return std::vector<T>{T(10 * part + in), T(10 * part + in + 1), T(10 * part + in + 2)};
    };
    unsigned64 size = 0;
    std::vector<T> values;
    EXPECT_TRUE(reader.getDataOfConstantLengthVarForSetData("v", values, size));
    EXPECT_EQ(values, allOf(1, 1));
    EXPECT_EQ(size, 4U);
    EXPECT_TRUE(reader.getDataOfVariableLengthVarForSetData("v", values));
    EXPECT_EQ(values, allOf(2, 1));
    EXPECT_TRUE(reader.getOtherDataForSetData("v", values));
    EXPECT_EQ(values, allOf(4, 1));
    T room[3] = {T(9), T(9), T(9)};
    EXPECT_EQ(reader.getOtherDataForSet("v", room, 2), 2U) << "as many as fit";
    EXPECT_EQ(room[1], T(41));
    EXPECT_EQ(room[2], T(9));
    EXPECT_EQ(reader.getOtherDataForSet("v", static_cast<T*>(nullptr), 0), 3U) << "how many there are";
    EXPECT_EQ(reader.getOtherDataForSet("w", room, 3), 0U);
    EXPECT_EQ(reader.getValuesOfParticleTrackVariable("v", room, 3), 3U);
    EXPECT_EQ(room[0], T(12));
    EXPECT_EQ(reader.getValuesOfParticleTrackVariable(5, room, 3), 0U) << "no such variable";
}

TEST(FormatProvider, NamedThingsOfSetsSetDataAndTracks)
{
    const CountingReader reader;
    Names names;
    reader.getVariablesInSet(names);
    EXPECT_THAT(names, ElementsAre("z01", "a01"));
    reader.getVariableLengthedVariablesInSet(names);
    EXPECT_THAT(names, ElementsAre("z02", "a02"));
    reader.getOtherVariablesInSet(names);
    EXPECT_THAT(names, ElementsAre("z04", "a04"));
    reader.getStringVariablesInSet(names);
    EXPECT_THAT(names, ElementsAre("z05", "a05"));
    reader.getConstantLengthVariablesInSetData(names);
    EXPECT_THAT(names, ElementsAre("z11", "a11"));
    reader.getVariableLengthVariablesInSetData(names);
    EXPECT_THAT(names, ElementsAre("z12", "a12"));
    reader.getOtherVariablesInSetData(names);
    EXPECT_THAT(names, ElementsAre("z14", "a14"));
    reader.getStringVariablesInSetData(names);
    EXPECT_THAT(names, ElementsAre("z15", "a15"));
    reader.getParticleTrackVariables(names);
    EXPECT_THAT(names, ElementsAre("a21", "z21")) << "those of a chunk come sorted";

    EXPECT_EQ(reader.getDataTypeOfOtherDataForSet("v"), 4);
    EXPECT_EQ(reader.getDataTypeOfOtherDataForSet("w"), -1);
    EXPECT_EQ(reader.getDataTypeOfDataForSetData("v"), 4) << "variables come before lists and other data";
    EXPECT_EQ(reader.getDataTypeOfDataForSetData("w"), -1);
    EXPECT_EQ(reader.getDataTypeOfSizeForSetData("v"), 6);
    EXPECT_EQ(reader.getDataTypeOfParticleTrackVariable("v"), 7);
    EXPECT_EQ(reader.getValueCountOfParticleTrackVariable("v"), 3U);
    EXPECT_EQ(reader.getValueCountOfParticleTrackVariable("w"), 0U);

    std::string text = "as it was";
    EXPECT_EQ(reader.getStringDataForSet("w", text), 0U);
    EXPECT_EQ(text, "as it was");
    EXPECT_EQ(reader.getStringDataForSet("v", text), 9U);
    EXPECT_EQ(text, "text of 0");
    EXPECT_EQ(reader.getStringDataForSetData("v", text), 9U);
    EXPECT_EQ(text, "text of 1");

    std::vector<unsigned64> ids;
    std::vector<int> ints;
    std::vector<short> shorts;
    EXPECT_TRUE(reader.getIdsForSetData(ids));
    EXPECT_THAT(ids, ElementsAre(1, 2, 3));
    EXPECT_TRUE(reader.getSizeOfVariableLengthVarForSetData("v", ids));
    EXPECT_TRUE(reader.getSizeOfVariableLengthVarForSetData("v", ints));
    EXPECT_TRUE(reader.getSizeOfVariableLengthVarForSetData("v", shorts));
    EXPECT_THAT(ids, ElementsAre(31, 32, 33));
    EXPECT_THAT(ints, ElementsAre(31, 32, 33));
    EXPECT_THAT(shorts, ElementsAre(31, 32, 33));
}

TEST(FormatProvider, WhatGoesWrongHalfWayLeavesTheListAsItWas)
{
    CountingReader reader;
    reader.isDamaged = true;
    std::vector<int> values = {1, 2};
    int room[3] = {};
    EXPECT_FALSE(reader.getOtherDataForSetData("v", values));
    EXPECT_THAT(values, ElementsAre(1, 2));
    EXPECT_EQ(reader.getOtherDataForSet("v", room, 3), 0U);
}

TEST(FormatProvider, ABareReaderHasNothing)
{
    BareReader reader;
    short phase = 0;
    reader.solutionModel()->createPhase("air", phase);
    reader.startReadingPhase(phase);
    Names names = {"left over"};
    std::vector<int> list;
    double value = 0;
    unsigned64 size = 0;
    EXPECT_FALSE(reader.hasParticles());
    EXPECT_FALSE(reader.hasParticles("air"));
    EXPECT_FALSE(reader.hasParticles(phase));
    EXPECT_FALSE(reader.startReadingParticles());
    EXPECT_FALSE(reader.startReadingParticles("air"));
    EXPECT_FALSE(reader.startReadingParticles(phase));
    EXPECT_FALSE(reader.hasParticleTracks());
    EXPECT_FALSE(reader.hasParticleTracks("air"));
    EXPECT_FALSE(reader.hasParticleTracks(phase));
    EXPECT_FALSE(reader.hasParticleTracksInActivePhase());
    EXPECT_THAT(reader.getPhasesWithParticleTracks(1, KEL_SOLVER, -1), IsEmpty());
    EXPECT_EQ(reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, 1, list), 0U);
    EXPECT_EQ(reader.getCoordinatesForNode(1, &value, 1), 0U);
    EXPECT_EQ(reader.getFaceCountForCell(1), 0);
    EXPECT_FALSE(reader.getSetNames(names));
    reader.getVariablesInSet(names);
    EXPECT_THAT(names, IsEmpty());
    EXPECT_EQ(reader.getDataTypeOfDataForSetData("v"), -1);
    EXPECT_FALSE(reader.getDataOfConstantLengthVarForSetData("v", list, size));
    EXPECT_THAT(reader.availableMeshIds(KEL_CASE), IsEmpty());
}

} // namespace
} // namespace meridyn
