#include "core/MeshContext.h"
#include "KelSolutionModel.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>
#include <vector>

namespace meridyn {

using Updates = std::vector<KelDataClass>;
using Method = KelBase::UpdateMethod;

static constexpr auto keepTarget = static_cast<KelTargetCategory>(-1);

static unsigned64 sizeOf(const KelBase& base, int type)
{
    unsigned64 size = 99;
    base.getMeshSize(static_cast<KelMeshSizeType>(type), size);
    return size;
}

/// Sizes, units and a zone with a range: what a change of the context drops.
static void loadMesh(OpenBase& base)
{
    base.setMeshSize(3, 10, 20, 30, 40);
    base.setMeshUnits("mm");
    base.setZoneIds(KEL_CELL_ZONE, {7});
    base.setZoneSizeInfo(7, KEL_ZONE_FIRST_ID, 1);
}

static bool hasMesh(const OpenBase& base)
{
    std::string units;
    base.getMeshUnits(units);
    const bool hasSizes = sizeOf(base, 0) == 3 && sizeOf(base, 4) == 40 && units == "mm";
    const bool hasZone = base.getZoneCategory(7) == KEL_CELL_ZONE && base.getNumZones(KEL_CELL_ZONE) == 1;
    EXPECT_EQ(hasSizes, hasZone) << "dropped in part";
    if (!hasSizes) {
        EXPECT_EQ(sizeOf(base, 0) + sizeOf(base, 1) + sizeOf(base, 2) + sizeOf(base, 3) + sizeOf(base, 4), 0u);
        EXPECT_EQ(units, "");
        for (const int category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
            EXPECT_EQ(base.getNumZones(KelZoneCategory(category)), 0) << category;
    }
    return hasSizes;
}

static void expectContext(const OpenBase& base, int meshId, int target, int partitionId)
{
    EXPECT_EQ(base.getMeshId(), meshId);
    EXPECT_EQ(base.getTarget(), target);
    EXPECT_EQ(base.getPartitionId(), partitionId);
}

TEST(MeshContextOfBase, StartsWithoutAMesh)
{
    OpenBase base;
    expectContext(base, -1, 0, -1);
    EXPECT_EQ(base.getTimeLevel(), 0);
    EXPECT_TRUE(base.getTimeLevels().empty());
    for (int type = 0; type < 5; ++type) {
        EXPECT_EQ(sizeOf(base, type), 0u);
    }
}

TEST(MeshContextOfBase, DroppingTheMeshKeepsTheContext)
{
    OpenBase base;
    base.setMeshContext(4, KEL_PARTITIONED_POST, 2, KelBase::KEL_UPDATE_NONE);
    loadMesh(base);
    base.setZoneIds(KEL_CELL_ZONE, {}); // 7 is no zone any more, but still a cell zone's id
    base.dropMesh();
    EXPECT_FALSE(hasMesh(base));
    EXPECT_EQ(base.getZoneCategory(7), -1);
    expectContext(base, 4, KEL_PARTITIONED_POST, 2);
}

TEST(MeshContextOfBase, MeshIdBelow1ChangesNothing)
{
    for (const int id : {0, -5, INT_MIN}) {
        OpenBase base;
        loadMesh(base);
        short phase = 0;
        base.solutionModel()->createPhase("gas", phase);
        EXPECT_TRUE(base.setMeshId(id));
        expectContext(base, -1, 0, -1);
        EXPECT_TRUE(hasMesh(base));
        EXPECT_EQ(base.updates, Updates());
    }
}

TEST(MeshContextOfBase, NewMeshIdDropsTheMeshAndLoadsCaseThenData)
{
    OpenBase base;
    loadMesh(base);
    base.onUpdate = [](KelDataClass) { return true; };
    EXPECT_EQ(printedBy([&] { EXPECT_TRUE(base.setMeshId(4)); }), "");
    expectContext(base, 4, 0, -1);
    EXPECT_FALSE(hasMesh(base));
    EXPECT_EQ(base.updates, (Updates{KEL_CASE, KEL_DATA}));
    base.updates.clear();
    loadMesh(base);
    EXPECT_TRUE(base.setMeshId(4)); // the same again: nothing dropped, and data still asked for
    EXPECT_TRUE(hasMesh(base));
    EXPECT_EQ(base.updates, (Updates{KEL_DATA}));
}

TEST(MeshContextOfBase, EachSetterLoadsCaseAndData)
{
    bool (*const setters[])(OpenBase&) = {[](OpenBase& base) { return base.setMeshId(4); },
                                          [](OpenBase& base) { return base.setTarget(KEL_PARTITIONED_POST); },
                                          [](OpenBase& base) { return base.setPartitionId(1); }};
    for (const auto& set : setters) {
        OpenBase base;
        EXPECT_FALSE(set(base)); // the case does not load
        EXPECT_EQ(base.updates, (Updates{KEL_CASE}));
        base.onUpdate = [](KelDataClass) { return true; };
        base.updates.clear();
        EXPECT_TRUE(set(base));
        EXPECT_EQ(base.updates, (Updates{KEL_CASE, KEL_DATA}));
    }
}

TEST(MeshContextOfBase, DefaultUpdateGivesFalse)
{
    KelBase base;
    EXPECT_FALSE(base.setMeshId(4));
    EXPECT_EQ(base.getMeshId(), 4); // the change stays
}

TEST(MeshContextOfBase, FailedCaseReturnsBeforeData)
{
    OpenBase base;
    base.onUpdate = [](KelDataClass dataClass) { return dataClass == KEL_DATA; };
    EXPECT_FALSE(base.setMeshId(4));
    EXPECT_EQ(base.updates, (Updates{KEL_CASE}));
}

TEST(MeshContextOfBase, FailedDataFails)
{
    OpenBase base;
    base.onUpdate = [](KelDataClass dataClass) { return dataClass == KEL_CASE; };
    EXPECT_FALSE(base.setMeshId(4));
    EXPECT_EQ(base.updates, (Updates{KEL_CASE, KEL_DATA}));
}

TEST(MeshContextOfBase, MethodSaysWhatIsLoaded)
{
    const struct {
        int method;
        Updates updates;
    } rows[] = {{0, {}}, {1, {KEL_CASE}}, {2, {KEL_DATA}}, {3, {KEL_CASE, KEL_DATA}}, {4, {}}, {7, {}}, {-1, {}}};
    for (const auto& row : rows) {
        OpenBase base;
        base.onUpdate = [](KelDataClass) { return true; };
        EXPECT_TRUE(base.setMeshContext(4, keepTarget, -1, static_cast<Method>(row.method))) << row.method;
        EXPECT_EQ(base.updates, row.updates) << row.method;
        EXPECT_EQ(base.getMeshId(), 4);
    }
}

TEST(MeshContextOfBase, LoadedMeshAndKnownPhaseAreNotLoadedAgain)
{
    OpenBase base;
    base.onUpdate = [](KelDataClass) { return false; };
    loadMesh(base);
    short phase = 0;
    base.solutionModel()->createPhase("gas", phase);
    EXPECT_TRUE(base.setMeshContext(-1, keepTarget, -1, KelBase::KEL_UPDATE_CASE_AND_DATA));
    EXPECT_EQ(base.updates, Updates());
    EXPECT_FALSE(base.setMeshId(5)); // the mesh is gone, the phase is not
    EXPECT_EQ(base.updates, (Updates{KEL_CASE}));
}

TEST(MeshContextOfBase, CaseMayDefineThePhases)
{
    OpenBase base;
    base.onUpdate = [&base](KelDataClass) {
        short phase = 0;
        return base.solutionModel()->createPhase("gas", phase);
    };
    EXPECT_TRUE(base.setMeshId(5));
    EXPECT_EQ(base.updates, (Updates{KEL_CASE}));
}

TEST(MeshContextOfBase, AnyTargetButMinus1IsTaken)
{
    OpenBase base;
    base.onUpdate = [](KelDataClass) { return true; };
    for (const int target : {2, 0, 1, 77, -2, INT_MIN}) {
        loadMesh(base);
        EXPECT_TRUE(base.setTarget(static_cast<KelTargetCategory>(target)));
        expectContext(base, -1, target, -1);
        EXPECT_FALSE(hasMesh(base)) << target;
    }
    loadMesh(base);
    EXPECT_TRUE(base.setTarget(keepTarget));
    expectContext(base, -1, INT_MIN, -1);
    EXPECT_TRUE(hasMesh(base));
}

TEST(MeshContextOfBase, PartitionCountsUnderPartitionedPostOnly)
{
    OpenBase base;
    base.onUpdate = [](KelDataClass) { return true; };
    EXPECT_EQ(printedBy([&] {
                  loadMesh(base);
                  base.setPartitionId(3);
                  expectContext(base, -1, 0, -1);
                  EXPECT_FALSE(hasMesh(base)); // kept: it counts as a change all the same
                  base.setTarget(KEL_PARTITIONED_POST);
                  expectContext(base, -1, 2, -1);
                  loadMesh(base);
                  base.setPartitionId(3);
                  expectContext(base, -1, 2, 3);
                  EXPECT_FALSE(hasMesh(base));
                  loadMesh(base);
                  base.setPartitionId(3);
                  base.setPartitionId(-1);
                  base.setPartitionId(INT_MIN);
                  expectContext(base, -1, 2, 3);
                  EXPECT_TRUE(hasMesh(base));
                  base.setPartitionId(0);
                  expectContext(base, -1, 2, 0);
                  base.setMeshId(6);
                  expectContext(base, 6, 2, 0);
                  base.setTarget(KEL_SOLVER); // the partition stays, without meaning
                  expectContext(base, 6, 1, 0);
              }),
              "");
}

TEST(MeshContextOfBase, PartitionAsksTheTargetThatIsHandedIn)
{
    OpenBase base;
    base.setTarget(KEL_PARTITIONED_POST);
    loadMesh(base);
    base.setMeshContext(-1, keepTarget, 5, KelBase::KEL_UPDATE_NONE);
    expectContext(base, -1, 2, -1); // kept: -1 is not partitioned post, though it keeps that target
    EXPECT_FALSE(hasMesh(base));
    base.setMeshContext(8, KEL_PARTITIONED_POST, 5, KelBase::KEL_UPDATE_NONE);
    expectContext(base, 8, 2, 5);
}

TEST(MeshContextOfBase, ChangeLeavesTheSolutionAlone)
{
    OpenBase base;
    short phase = 0;
    base.solutionModel()->createPhase("gas", phase);
    base.setActivePhase(phase);
    base.addTimeLevel(5);
    base.setTimeLevel(5);
    base.addVariableOfCategory(3, KEL_CELL_ZONE);
    base.setMeshContext(4, keepTarget, -1, KelBase::KEL_UPDATE_NONE);
    short active = 0;
    EXPECT_TRUE(base.getActivePhase(active));
    EXPECT_EQ(active, phase);
    EXPECT_EQ(base.getTimeLevel(), 5);
    EXPECT_EQ(base.getTimeLevels(), (std::vector<int>{5}));
    std::vector<int> variables;
    base.getVariablesOfCategory(KEL_CELL_ZONE, variables);
    EXPECT_EQ(variables, (std::vector<int>{3}));
}

TEST(MeshContextOfBase, ZonesWorkAfterAChange)
{
    OpenBase base;
    loadMesh(base);
    base.setMeshContext(4, keepTarget, -1, KelBase::KEL_UPDATE_NONE);
    base.setZoneIds(KEL_FACE_ZONE, {7}); // its old category is forgotten
    EXPECT_EQ(base.getZoneCategory(7), KEL_FACE_ZONE);
    base.setZoneSizeInfo(7, KEL_ZONE_ELEMENT_COUNT, 1); // fresh tables report to the same store
    EXPECT_TRUE(base.hasWarning());
}

TEST(MeshContext, PartitionUnderAnotherTargetIsReportedAndStored)
{
    MeshContext context(-1);
    const std::string line = "setPartitionId() should only be called when the target is 'KEL_PARTITIONED_POST'\n";
    EXPECT_EQ(printedBy([&] { context.setPartitionId(3); }), line);
    EXPECT_EQ(context.partitionId(), 3);
    context.setTarget(KEL_PARTITIONED_POST);
    EXPECT_EQ(printedBy([&] { context.setPartitionId(4); }), "");
    EXPECT_EQ(context.partitionId(), 4);
}

// ---- mesh sizes ------------------------------------------------------------------

TEST(MeshSizes, AreKeptInTheirSlots)
{
    OpenBase base;
    base.setMeshSize(2, UINT64_MAX, 3, 4, 5);
    EXPECT_EQ(sizeOf(base, 0), 2u);
    EXPECT_EQ(sizeOf(base, 1), UINT64_MAX);
    EXPECT_EQ(sizeOf(base, 4), 5u);
    base.setMeshSize(KEL_MESH_SIZE_2, UINT64_C(5000000000));
    EXPECT_EQ(sizeOf(base, 2), UINT64_C(5000000000));
    EXPECT_EQ(sizeOf(base, 3), 4u);
}

TEST(MeshSizes, BadTypeIsReported)
{
    OpenBase base;
    base.setMeshSize(1, 2, 3, 4, 5);
    for (const int bad : {-1, 5, INT_MAX, INT_MIN}) {
        const auto type = static_cast<KelMeshSizeType>(bad);
        unsigned64 size = 9;
        EXPECT_EQ(printedBy([&] { base.setMeshSize(type, 9); }),
                  "Warning: KelBase::setMeshSize: Invalid MeshSizeType.\n");
        EXPECT_EQ(printedBy([&] { base.getMeshSize(type, size); }),
                  "Warning: KelBase::getMeshSize: Invalid MeshSizeType.\n");
        EXPECT_EQ(size, 0u);
    }
    for (int type = 0; type < 5; ++type) {
        EXPECT_EQ(sizeOf(base, type), static_cast<unsigned64>(type) + 1);
    }
    EXPECT_FALSE(base.hasWarning());
}

TEST(MeshSizes, UnitsAreAnyText)
{
    OpenBase base;
    std::string units = "before";
    base.getMeshUnits(units);
    EXPECT_EQ(units, "");
    base.setMeshUnits("m\n");
    base.getMeshUnits(units);
    EXPECT_EQ(units, "m\n");
}

// ---- time levels and phases ------------------------------------------------------

TEST(TimeLevels, AreKeptOnceInTheOrderOfAdding)
{
    const OpenBase base;
    for (const int level : {5, 5, -1, INT_MIN, 9, 0, INT_MAX, 2, 9}) {
        base.addTimeLevel(level);
    }
    EXPECT_EQ(base.getTimeLevels(), (std::vector<int>{5, 9, 0, INT_MAX, 2}));
    EXPECT_EQ(base.getTimeLevel(), 0); // adding does not choose
}

TEST(TimeLevels, OnlyKnownOnesCanBeChosen)
{
    OpenBase base;
    EXPECT_FALSE(base.setTimeLevel(0));
    base.addTimeLevel(5);
    EXPECT_FALSE(base.setTimeLevel(6));
    EXPECT_FALSE(base.setTimeLevel(-1));
    EXPECT_EQ(base.getTimeLevel(), 0);
    EXPECT_TRUE(base.setTimeLevel(5));
    EXPECT_FALSE(base.setTimeLevel(6));
    EXPECT_EQ(base.getTimeLevel(), 5);
}

TEST(TimeLevels, SmallestIntChoosesTheLargest)
{
    OpenBase base;
    EXPECT_FALSE(base.setTimeLevel(INT_MIN));
    EXPECT_EQ(base.getTimeLevel(), 0);
    for (const int level : {5, 30, 7}) {
        base.addTimeLevel(level);
    }
    EXPECT_TRUE(base.setTimeLevel(INT_MIN));
    EXPECT_EQ(base.getTimeLevel(), 30);
}

class Phases : public ::testing::Test {
protected:
    Phases()
    {
        base.solutionModel()->createPhase("gas", gas);
        base.solutionModel()->createPhase("liquid", liquid);
    }

    OpenBase base;
    short gas = 0;
    short liquid = 0;
};

TEST(PhasesOfAFreshObject, AreUnknown)
{
    OpenBase base;
    short id = 7;
    std::string name = "before";
    EXPECT_FALSE(base.setActivePhase(static_cast<short>(0)));
    EXPECT_FALSE(base.setActivePhase(std::string()));
    EXPECT_FALSE(base.getActivePhase(id));
    EXPECT_EQ(id, 0);
    EXPECT_FALSE(base.getActivePhase(name));
    EXPECT_EQ(name, "");
    std::vector<short> ids{3};
    base.getPhaseIds(ids);
    EXPECT_TRUE(ids.empty());
}

TEST_F(Phases, AreSetByIdAndByName)
{
    short id = 0;
    std::string name;
    EXPECT_TRUE(base.setActivePhase(liquid));
    EXPECT_TRUE(base.getActivePhase(id));
    EXPECT_EQ(id, liquid);
    EXPECT_TRUE(base.setActivePhase(std::string("gas")));
    EXPECT_TRUE(base.getActivePhase(name));
    EXPECT_EQ(name, "gas");
    EXPECT_FALSE(base.setActivePhase(static_cast<short>(99)));
    EXPECT_FALSE(base.setActivePhase(std::string("Gas")));
    EXPECT_TRUE(base.getActivePhase(id)); // still the one before
    EXPECT_EQ(id, gas);
}

TEST_F(Phases, ActiveOneMayVanish)
{
    base.setActivePhase(liquid);
    base.solutionModel()->clearModel();
    short id = 9;
    std::string name = "before";
    EXPECT_FALSE(base.getActivePhase(id));
    EXPECT_EQ(id, 0);
    EXPECT_FALSE(base.getActivePhase(name));
    EXPECT_EQ(name, "");
}

TEST_F(Phases, MixtureIsAPhase)
{
    EXPECT_FALSE(base.setActivePhase(static_cast<short>(-1)));
    int variable = 0;
    base.solutionModel()->createVariable("p", variable);
    EXPECT_TRUE(base.setActivePhase(static_cast<short>(-1)));
    std::vector<short> ids;
    base.getPhaseIds(ids);
    EXPECT_EQ(ids, (std::vector<short>{-1, gas, liquid}));
    EXPECT_EQ(base.getPhaseName(-1), "<Mixture>");
    EXPECT_EQ(base.getGroupNameForPhase(-1), "<Mixture>"); // it has no dataset name
}

TEST_F(Phases, HaveNames)
{
    std::string name = "before";
    EXPECT_TRUE(base.getPhaseName(gas, name));
    EXPECT_EQ(name, "gas");
    EXPECT_EQ(base.getPhaseName(liquid), "liquid");
    EXPECT_FALSE(base.getPhaseName(99, name));
    EXPECT_EQ(name, "");
    EXPECT_EQ(base.getPhaseName(99), "");
}

TEST_F(Phases, GroupIsTheDatasetNameOrElseTheUniqueName)
{
    EXPECT_EQ(base.getGroupNameForPhase(gas), "gas");
    base.solutionModel()->setDatasetNameOfPhase(gas, "phase-1");
    EXPECT_EQ(base.getGroupNameForPhase(gas), "phase-1");
    base.solutionModel()->addAttributeOfPhase(gas, "Dataset Name", "");
    EXPECT_EQ(base.getGroupNameForPhase(gas), "gas");
    base.solutionModel()->removeAttributeOfPhase(gas, "Dataset Name");
    EXPECT_EQ(base.getGroupNameForPhase(gas), "gas");
    EXPECT_EQ(base.getGroupNameForPhase(99), "");
}

// ---- versions --------------------------------------------------------------------

TEST(Versions, OfFilesAreComparedWithTheLibrarys)
{
    const OpenBase base; // the library's is 25.1
    const struct {
        const char* version;
        int readable;
    } rows[] = {{"", -1},
                {"Unknown", -1},
                {"25.1", 0},
                {"25.0", 0},
                {"25", 0},
                {"24.9", 0},
                {"1.9", 0},
                {"25.2", 1},
                {"25.10", 1},
                {"26", 2},
                {"26.0", 2},
                {"25.1.7", 0},
                {"25.2.0", 1},
                {"25.1 beta", 0},
                {"26rc1", 2},
                {"25-2", 0},
                {"unknown", 0},
                {"Unknown ", 0},
                {"v26.0", 0},
                {".5", 0},
                {"25.", 0},
                {"25.x", 0},
                {"25..9", 0},
                {"99999999999", 0},
                {"99999999999.9", 0},
                {"2147483647", 2},
                {"2147483648", 0},
                {"25.2147483647", 1},
                {"25.2147483648", 0},
                {"-3.0", 0},
                {"26.x", 2},
                {"26.99999999999", 2},
                {"25.-1", 0},
                {" ", 0},
                {"0.0", 0},
                {"25 .2", 1}};
    for (const auto& row : rows) {
        EXPECT_EQ(base.isSupported(row.version), row.readable) << '"' << row.version << '"';
    }
}

// ---- variables by category -------------------------------------------------------

TEST(VariablesOfCategory, AreAscendingSets)
{
    const OpenBase base;
    for (const int id : {5, 2, 5, -1}) {
        base.addVariableOfCategory(id, KEL_FACE_ZONE);
    }
    base.addVariableOfCategory(9, KEL_CELL_ZONE);
    std::vector<int> ids{77};
    base.getVariablesOfCategory(KEL_FACE_ZONE, ids);
    EXPECT_EQ(ids, (std::vector<int>{-1, 2, 5}));
    base.getVariablesOfCategory(KEL_CELL_ZONE, ids);
    EXPECT_EQ(ids, (std::vector<int>{9}));
    base.getVariablesOfCategory(KEL_NODE_ZONE, ids);
    EXPECT_TRUE(ids.empty());
    base.clearVariablesOfCategories();
    base.getVariablesOfCategory(KEL_FACE_ZONE, ids);
    EXPECT_TRUE(ids.empty());
}

TEST(VariablesOfCategory, BadCategoryHasNone)
{
    OpenBase base;
    for (const int bad : {-1, 4, INT_MAX, INT_MIN}) {
        const auto category = static_cast<KelZoneCategory>(bad);
        std::vector<int> ids{77};
        EXPECT_EQ(printedBy([&] {
                      base.addVariableOfCategory(1, category);
                      base.getVariablesOfCategory(category, ids);
                  }),
                  "");
        EXPECT_TRUE(ids.empty());
    }
    EXPECT_FALSE(base.hasWarning());
}

} // namespace meridyn
