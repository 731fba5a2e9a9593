// Writers that refuse what they are given, and models that no memory holds.
#include "RichModel.h"

#include "KelCompare.h"

#include <gtest/gtest.h>
#include <new>

namespace meridyn {
namespace {

struct RefusesPhases : KelMemoryConsumer {
    bool setPhaseNames(const std::vector<std::string>&, std::vector<short>&) const override { return false; }
};

struct RefusesOneVariable : KelMemoryConsumer {
    using KelMemoryConsumer::addPhaseVariable;
    bool addPhaseVariable(short phase, const std::string& name, int& id) const override
    {
        return name != "field-2" && KelMemoryConsumer::addPhaseVariable(phase, name, id);
    }
};

struct RefusesAttributes : KelMemoryConsumer {
    using KelMemoryConsumer::setAttributeValueOfPhase;
    using KelMemoryConsumer::setAttributeValueOfPhaseVariable;
    bool setAttributeValueOfPhase(short phase, const std::string& name, const std::string& value) const override
    {
        return name != "Material" && KelMemoryConsumer::setAttributeValueOfPhase(phase, name, value);
    }
    bool setAttributeValueOfPhaseVariable(int variable, const std::string& name,
                                          const std::string& value) const override
    {
        return name != "Units" && KelMemoryConsumer::setAttributeValueOfPhaseVariable(variable, name, value);
    }
};

struct CannotEnd : KelMemoryConsumer {
    bool endWriting(KelDataClass) override { return false; }
};

/// Copies the rich model; the losses, or the problem.
std::string copiedTo(KelMemoryConsumer& target)
{
    makeRichModel("memory:rich");
    KelMemoryProvider rich;
    setBoth(rich, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(rich, target);
    return transfer.copyCase() && transfer.copyData() ? transfer.losses().text() : transfer.problem();
}

TEST(WriterRefusals, OfThePhasesStopTheTransfer)
{
    RefusesPhases target;
    EXPECT_EQ(copiedTo(target), "the writer refused the phases");
}

TEST(WriterRefusals, OfAVariableLoseItAndNoOther)
{
    RefusesOneVariable target;
    EXPECT_EQ(copiedTo(target), "variables: 'field-2' of phase 'phase-1': refused by the writer\n"
                                "variables: 'field-2' of phase 'phase-2': refused by the writer\n");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    std::vector<int> zones;
    copy.startReadingPhase(1);
    EXPECT_EQ(copy.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "field-1", zones), 1U);
    EXPECT_EQ(copy.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "field-2", zones), 0U);
}

TEST(WriterRefusals, OfAttributesLoseThem)
{
    RefusesAttributes target;
    EXPECT_EQ(copiedTo(target),
              "attributes: 'Material' of phase 'phase-1': refused by the writer\n"
              "attributes: 'Units' of variable 'field-1' of phase 'phase-1': refused by the writer\n");
}

TEST(WriterRefusals, AtTheEndAreAProblem)
{
    CannotEnd target;
    EXPECT_EQ(copiedTo(target), "the writer could not complete the target");
}

// ---- memory -------------------------------------------------------------------------------------------------------

/// Says that the interface of a zone has more values than a vector can hold.
struct ClaimsMuch : KelMemoryProvider {
    bool getInterfaceDataSizesForFacesInZone(int zone, unsigned64& na, unsigned64& nb, unsigned64& count0,
                                             unsigned64& count1) const override
    {
        const bool known = KelMemoryProvider::getInterfaceDataSizesForFacesInZone(zone, na, nb, count0, count1);
        na = 1ULL << 61;
        return known;
    }
};

/// Has no memory left for the interface of a zone.
struct RunsOut : KelMemoryProvider {
    bool getInterfaceDataSizesForFacesInZone(int, unsigned64&, unsigned64&, unsigned64&, unsigned64&) const override
    {
        throw std::bad_alloc();
    }
};

template <class Source>
class Memory : public ::testing::Test {};

using HungryReaders = ::testing::Types<ClaimsMuch, RunsOut>;
TYPED_TEST_SUITE(Memory, HungryReaders);

TYPED_TEST(Memory, ThatThereIsNotIsAProblem)
{
    makeRichModel("memory:rich");
    TypeParam source;
    KelMemoryProvider rich;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(rich, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    EXPECT_FALSE(transfer.copyCase());
    EXPECT_EQ(transfer.problem(), "not enough memory");
    EXPECT_FALSE(source.isReadingData());
    KelCompare compare(rich, source);
    EXPECT_FALSE(compare.run());
    EXPECT_EQ(compare.problem(), "not enough memory");
    EXPECT_FALSE(source.isReadingData() || rich.isReadingData());
}

// ---- lengths ------------------------------------------------------------------------------------------------------

std::string nameOf(KelPlainDataType lengthType)
{
    return "lengths of type " + std::to_string(lengthType);
}

/// Adds a variable of differing length to the open set, with lengths of a type.
template <class Length>
void addToSet(RichWriter& writer, KelPlainDataType type)
{
    const Length lengths[] = {1, 2};
    writer.startWritingSizeOfVariableForSet(nameOf(type), {2}, type);
    writer.setSizeOfVariableForSetInRange(1, 2, lengths, 2);
    writer.endWritingSizeOfVariableForSet();
    writer.startWritingVariableLengthedDataOfVariableForSet(nameOf(type), {2}, KEL_PLAIN_FLOAT);
    writer.setVariableLengthedDataOfVariableForSetInRange(1, 2, RichWriter::ramp<float>(3).data(), 3);
    writer.endWritingVariableLengthedDataOfVariableForSet();
}

/// The same for the open set data.
template <class Length>
void addToSetData(RichWriter& writer, KelPlainDataType type)
{
    const Length lengths[] = {1, 2};
    writer.startWritingVariableLengthVariableForSetData(nameOf(type), KEL_PLAIN_FLOAT, type);
    writer.setVariableLengthVariableForSetData(RichWriter::ramp<float>(3).data(), 3, lengths, 2);
    writer.endWritingVariableLengthVariableForSetData();
}

TEST(Lengths, KeepTheirType)
{
    makeRichModel("memory:rich", nullptr, [](RichWriter& writer) {
        writer.startWritingPhase(1);
        writer.startWritingSet("lists", KEL_CELL_ZONE);
        writer.setSizesAndMinMaxIdsForSet({2}, {1}, {2}); // and no ids
        addToSet<short>(writer, KEL_PLAIN_SHORT);
        addToSet<int>(writer, KEL_PLAIN_INT);
        addToSet<unsigned64>(writer, KEL_PLAIN_UNSIGNED64);
        writer.endWritingSet();
        writer.startWritingSetData("lists", 2);
        addToSetData<short>(writer, KEL_PLAIN_SHORT);
        addToSetData<int>(writer, KEL_PLAIN_INT);
        addToSetData<unsigned64>(writer, KEL_PLAIN_UNSIGNED64);
        writer.endWritingSetData();
    });
    KelMemoryProvider rich, copy;
    KelMemoryConsumer target;
    setBoth(rich, "memory:rich");
    setBoth(target, "memory:copy");
    setBoth(copy, "memory:copy");
    KelTransfer transfer(rich, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    copy.startReadingTimeLevel(3);
    copy.startReadingPhase(1);
    unsigned64 members = 0;
    ASSERT_TRUE(copy.startReadingSet("lists"));
    ASSERT_TRUE(copy.startReadingSetData("lists", members));
    for (const KelPlainDataType type : {KEL_PLAIN_SHORT, KEL_PLAIN_INT, KEL_PLAIN_UNSIGNED64}) {
        const std::string name = nameOf(type);
        EXPECT_EQ(copy.startReadingSizeOfVariableLengthedVarForSet(name), type);
        std::vector<unsigned64> lengths(2);
        EXPECT_EQ(copy.getSizeOfVariableForSetInRange(1, 2, lengths.data(), 2), 2U);
        EXPECT_EQ(lengths, (std::vector<unsigned64>{1, 2}));
        EXPECT_EQ(copy.getDataTypeOfSizeForSetData(name), type);
        EXPECT_TRUE(copy.getSizeOfVariableLengthVarForSetData(name, lengths));
        EXPECT_EQ(lengths, (std::vector<unsigned64>{1, 2}));
    }
    EXPECT_TRUE(copy.endReading(KEL_DATA));
    KelCompare compare(rich, copy);
    EXPECT_TRUE(compare.run()) << compare.problem();
    EXPECT_EQ(compare.text(), "");
}

} // namespace
} // namespace meridyn
