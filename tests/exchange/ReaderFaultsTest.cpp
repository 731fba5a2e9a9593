// Readers that do not keep their word: a transfer stops at what is cut short, and reports what has no type or values.
#include "KelCompare.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "RichModel.h"

#include <gtest/gtest.h>

namespace meridyn {
namespace {

using Id = unsigned64;

Id oneLess(Id count)
{
    return count > 0 ? count - 1 : 0;
}

// ---- cut short ----------------------------------------------------------------------------------------------------

struct CutsSetIds : KelMemoryProvider {
    Id getIdsForSetInRange(Id first, Id last, Id* ids, Id room) const override
    {
        const Id found = KelMemoryProvider::getIdsForSetInRange(first, last, ids, room);
        return first == last ? found : oneLess(found);
    }
};

struct CutsSetValues : KelMemoryProvider {
    using KelMemoryProvider::getDataOfVariableForSetInRange;
    Id getDataOfVariableForSetInRange(Id first, Id last, double* values, Id room) const override
    {
        return oneLess(KelMemoryProvider::getDataOfVariableForSetInRange(first, last, values, room));
    }
};

struct CutsSetLengths : KelMemoryProvider {
    using KelMemoryProvider::getSizeOfVariableForSetInRange;
    Id getSizeOfVariableForSetInRange(Id first, Id last, Id* lengths, Id room) const override
    {
        return oneLess(KelMemoryProvider::getSizeOfVariableForSetInRange(first, last, lengths, room));
    }
};

struct CutsSetLists : KelMemoryProvider {
    using KelMemoryProvider::getVariableLengthedDataOfVariableForSetInRange;
    Id getVariableLengthedDataOfVariableForSetInRange(Id first, Id last, double* values, Id room) const override
    {
        return oneLess(KelMemoryProvider::getVariableLengthedDataOfVariableForSetInRange(first, last, values, room));
    }
};

struct CutsSetBlocks : KelMemoryProvider {
    using KelMemoryProvider::getOtherDataForSet;
    Id getOtherDataForSet(const std::string& name, double* values, Id room) const override
    {
        const Id found = KelMemoryProvider::getOtherDataForSet(name, values, room);
        return values == nullptr ? found : oneLess(found);
    }
};

struct CutsTracks : KelMemoryProvider {
    using KelMemoryProvider::getValuesOfParticleTrackVariable;
    Id getValuesOfParticleTrackVariable(const std::string& name, double* values, Id room) const override
    {
        const Id found = KelMemoryProvider::getValuesOfParticleTrackVariable(name, values, room);
        return name == "speed" ? oneLess(found) : found;
    }
};

struct CutsLocalIds : KelMemoryProvider {
    Id getLocalElemIdsInZone(int zone, Id* ids, Id room) const override
    {
        const Id found = KelMemoryProvider::getLocalElemIdsInZone(zone, ids, room);
        return room == 1 ? found : oneLess(found);
    }
};

struct CutsSections : KelMemoryProvider {
    Id getCaseSectionDataForElementsInRange(Id first, Id last, void* values, Id room) const override
    {
        return oneLess(KelMemoryProvider::getCaseSectionDataForElementsInRange(first, last, values, room));
    }
};

struct CutsValues : KelMemoryProvider {
    using KelMemoryProvider::getValuesOfPhaseVariableForElementsInRange;
    Id getValuesOfPhaseVariableForElementsInRange(Id first, Id last, double* values, Id room) const override
    {
        return oneLess(KelMemoryProvider::getValuesOfPhaseVariableForElementsInRange(first, last, values, room));
    }
};

struct CutsInterfaces : KelMemoryProvider {
    using KelMemoryProvider::getInterfaceDataForFacesInZone;
    Id getInterfaceDataForFacesInZone(int zone, double* a, Id na, double* b, Id nb, Id* ids0, Id n0, Id* ids1,
                                      Id n1) const override
    {
        return oneLess(KelMemoryProvider::getInterfaceDataForFacesInZone(zone, a, na, b, nb, ids0, n0, ids1, n1));
    }
};

struct CutsTypes : KelMemoryProvider {
    Id getTypesForCellsInRange(Id first, Id last, KelCellType* types, Id room) const override
    {
        const Id found = KelMemoryProvider::getTypesForCellsInRange(first, last, types, room);
        return first == last ? found : oneLess(found);
    }
};

struct CutsNodeIds : KelMemoryProvider {
    Id getNodeIdsForFacesInRange(Id first, Id last, Id* ids, Id room) const override
    {
        return oneLess(KelMemoryProvider::getNodeIdsForFacesInRange(first, last, ids, room));
    }
};

struct CutsFaceCounts : KelMemoryProvider {
    Id getFaceCountsForCellsInRange(Id first, Id last, short* counts, Id room) const override
    {
        const Id found = KelMemoryProvider::getFaceCountsForCellsInRange(first, last, counts, room);
        return first == last ? found : oneLess(found);
    }
};

struct HidesSetData : KelMemoryProvider {
    bool startReadingSetData(const std::string&, Id&) override { return false; }
};

struct Fault {
    const char* name;
    std::unique_ptr<KelMemoryProvider> (*make)();
    const char* problem;
};

void PrintTo(const Fault& row, std::ostream* out)
{
    *out << row.name;
}

template <class Reader>
std::unique_ptr<KelMemoryProvider> make()
{
    return std::make_unique<Reader>();
}

// clang-format off
const Fault faults[] = {
    {"SetIds", make<CutsSetIds>, "ids of set 'set of the case': the reader gave 2 values, expected 3"},
    {"SetValues", make<CutsSetValues>, "'values of type 9' of set 'set of the case': the reader gave 5 values, expected 6"},
    {"SetLengths", make<CutsSetLengths>, "lengths of 'list of type 0' of set 'set of the case': the reader gave 2 values, expected 3"},
    {"SetLists", make<CutsSetLists>, "'list of type 9' of set 'set of the case': the reader gave 4 values, expected 5"},
    {"SetBlocks", make<CutsSetBlocks>, "'block of type 9' of set 'set of the case': the reader gave 3 values, expected 4"},
    {"SetDataThatDoNotOpen", make<HidesSetData>, "set data 'injection': the reader lists them but does not open them"},
    {"Tracks", make<CutsTracks>, "particle track variable 'speed': the reader gave 2 values, expected 3"},
    {"LocalIds", make<CutsLocalIds>, "local ids of zone 10 'cells-1', ids 1 to 12: the reader gave 11 values, expected 12"},
    {"Sections", make<CutsSections>, "case section 'heat' of zone 11 'cells-2', ids 13 to 24: the reader gave 23 values, expected 24"},
    {"Values", make<CutsValues>, "variable 'field-1' of phase 'phase-1' of zone 10 'cells-1', ids 1 to 12: the reader gave 11 values, expected 12"},
    {"Interfaces", make<CutsInterfaces>, "interface data of zone 5 'y-min': the reader gave 7 values, expected 8"},
    {"Types", make<CutsTypes>, "types of cells of zone 10 'cells-1', ids 1 to 12: the reader gave 11 values, expected 12"},
    {"NodeIds", make<CutsNodeIds>, "nodes of faces of zone 2 'interior', ids 1 to 64: the reader gave 255 values, expected 256"},
    {"FaceCounts", make<CutsFaceCounts>, "faces of cells of zone 10 'cells-1', ids 1 to 12: the reader gave 11 values, expected 12"},
};
// clang-format on

class ReaderFaults : public ::testing::TestWithParam<Fault> {};

TEST_P(ReaderFaults, StopATransferAndLeaveNoTarget)
{
    makeRichModel("memory:rich");
    KelMemoryStore::remove("memory:cut");
    const auto source = GetParam().make();
    KelMemoryConsumer target;
    setBoth(*source, "memory:rich");
    setBoth(target, "memory:cut");
    KelTransfer transfer(*source, target);
    EXPECT_FALSE(transfer.copyCase() && transfer.copyData());
    EXPECT_EQ(transfer.problem(), GetParam().problem);
    EXPECT_FALSE(transfer.wasCancelled());
    EXPECT_EQ(KelMemoryStore::find("memory:cut", KEL_DATA), nullptr);
    EXPECT_FALSE(source->isReadingData());
}

INSTANTIATE_TEST_SUITE_P(Transfer, ReaderFaults, ::testing::ValuesIn(faults),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- errors that are stored only ----------------------------------------------------------------------------------

/// Stores an error where it gives nothing, as readers of damaged files do.
struct Stumbles : KelMemoryProvider {
    Id getCell0sForFacesInRange(Id, Id, Id*, Id) const override
    {
        getMessageRegistrar()->registerMessage(KelError("cell0 is damaged", "getCell0sForFacesInRange"));
        return 0;
    }
};

TEST(StoredErrors, StopATransferAndAComparison)
{
    makeRichModel("memory:rich");
    KelMemoryStore::remove("memory:cut");
    Stumbles source;
    KelMemoryProvider rich;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(rich, "memory:rich");
    setBoth(target, "memory:cut");
    KelTransfer transfer(source, target);
    EXPECT_FALSE(transfer.copyCase());
    EXPECT_EQ(transfer.problem().substr(0, 16), "cell0 is damaged");
    EXPECT_EQ(KelMemoryStore::find("memory:cut", KEL_CASE), nullptr);
    EXPECT_FALSE(source.isReadingData());
    for (const bool isFirst : {true, false}) {
        KelCompare compare(isFirst ? source : rich, isFirst ? rich : source);
        EXPECT_FALSE(compare.run());
        EXPECT_EQ(compare.problem().substr(0, 16), "cell0 is damaged");
        EXPECT_FALSE(source.isReadingData() || rich.isReadingData());
    }
}

TEST(StoredErrors, FromBeforeDoNotCount)
{
    makeRichModel("memory:rich");
    KelMemoryProvider source, copy;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(copy, "memory:copy");
    setBoth(target, "memory:copy");
    source.getMessageRegistrar()->registerMessage(KelError("long ago", "before"));
    KelTransfer transfer(source, target);
    EXPECT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    source.getMessageRegistrar()->registerMessage(KelError("long ago", "before"));
    EXPECT_TRUE(transfer.verify(copy)) << transfer.problem();
}

// ---- without type or values ---------------------------------------------------------------------------------------

constexpr auto noType = static_cast<KelPlainDataType>(-1);

struct GivesNoTypes : KelMemoryProvider {
    KelPlainDataType startReadingDataOfVariableForSet(const std::string&, Id&) override { return noType; }
    KelPlainDataType startReadingVariableLengthedDataOfVariableForSet(const std::string&) override { return noType; }
    KelPlainDataType getDataTypeOfOtherDataForSet(const std::string&) const override { return noType; }
    KelPlainDataType getDataTypeOfDataForSetData(const std::string&) const override { return noType; }
    KelPlainDataType getDataTypeOfParticleTrackVariable(const std::string&) const override { return noType; }
};

TEST(Losses, HoldEverythingWithoutAType)
{
    makeRichModel("memory:rich");
    GivesNoTypes source;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    std::vector<std::string> expected;
    const auto expectAll = [&expected](const std::string& family, const std::string& what, const std::string& of) {
        for (int type = 0; type < 10; ++type)
            expected.push_back(family + ": '" + what + "type " + std::to_string(type) + "'" + of);
    };
    for (const char* set : {" of set 'set of the case'", " of set 'set of the data'"})
        for (const char* what : {"values of ", "list of ", "block of "})
            expectAll("sets", what, set);
    for (const char* what : {"values of ", "list of ", "block of "})
        expectAll("set data", what, " of set data 'injection' of phase 'phase-2'");
    const std::string chunk = " of chunk 4 of group 'group' of phase 'phase-2', mesh 1";
    for (int type = 0; type < 10; ++type)
        expected.push_back("particle tracks: variable 'type " + std::to_string(type) + "'" + chunk);
    expected.push_back("particle tracks: variable 'speed'" + chunk);
    std::vector<std::string> found;
    for (const KelLoss& loss : transfer.losses().losses()) {
        EXPECT_EQ(loss.reason, KelLossReason::NotGiven) << loss.item;
        EXPECT_EQ(loss.text, "the reader gives no type") << loss.item;
        found.push_back(formatFamilyName(loss.family) + ": " + loss.item);
    }
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected);
}

struct GivesNoValues : KelMemoryProvider {
    using KelMemoryProvider::getDataOfConstantLengthVarForSetData;
    using KelMemoryProvider::getDataOfVariableLengthVarForSetData;
    using KelMemoryProvider::getOtherDataForSetData;
    bool getDataOfConstantLengthVarForSetData(const std::string&, std::vector<double>&, Id&) const override
    {
        return false;
    }
    bool getDataOfVariableLengthVarForSetData(const std::string&, std::vector<double>&) const override { return false; }
    bool getOtherDataForSetData(const std::string&, std::vector<double>&) const override { return false; }
};

TEST(Losses, HoldSetDataWithoutValues)
{
    makeRichModel("memory:rich");
    GivesNoValues source;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "set data: 'values of type 9' of set data 'injection' of phase 'phase-2', time "
                                        "level 3: the reader gives no values\n"
                                        "set data: 'list of type 9' of set data 'injection' of phase 'phase-2', time "
                                        "level 3: the reader gives no values\n"
                                        "set data: 'block of type 9' of set data 'injection' of phase 'phase-2', time "
                                        "level 3: the reader gives no values\n");
}

} // namespace
} // namespace meridyn
