#include "ProviderSolution.h"

#include <limits>

// Time levels, phases and which variables there are.

namespace meridyn {
namespace {

constexpr int smallest = std::numeric_limits<int>::min();
static_assert(KEL_LATEST_TIME_LEVEL == smallest);

// ---- time levels

struct TimeLevelCase {
    int asked;
    int becomes;
};

TEST_F(ProviderSolution, StartReadingTimeLevelTakesKnownLevelsOnly)
{
    for (const int level : {4, 9, 2}) {
        reader.addTimeLevel(level);
    }
    reader.startReadingTimeLevel(4);
    EXPECT_EQ(reader.getTimeLevel(), 4);
    const TimeLevelCase cases[] = {{3, 4}, {-1, 4}, {smallest + 1, 4}, {std::numeric_limits<int>::max(), 4},
                                   {2, 2}, {0, 2},  {smallest, 9}};
    for (const TimeLevelCase& row : cases) {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        reader.startReadingTimeLevel(row.asked);
        EXPECT_EQ(reader.getTimeLevel(), row.becomes) << row.asked;
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    }
    EXPECT_EQ(reader.getTimeLevels(), (Ids{4, 9, 2})); // a reader never adds one
}

TEST_F(ProviderSolution, TimeLevel0IsALevelLikeOthers)
{
    reader.addTimeLevel(0);
    reader.addTimeLevel(3);
    reader.startReadingTimeLevel(3);
    reader.startReadingTimeLevel(0);
    EXPECT_EQ(reader.getTimeLevel(), 0);
}

TEST_F(ProviderSolution, LatestTimeLevelOfNoneChangesNothing)
{
    reader.startReadingTimeLevel(smallest);
    EXPECT_EQ(reader.getTimeLevel(), 0);
    EXPECT_TRUE(reader.getTimeLevels().empty());
}

// ---- phases

TEST_F(ProviderSolution, StartReadingPhaseMakesAKnownPhaseActive)
{
    short active = 0;
    EXPECT_TRUE(reader.startReadingPhase(2));
    EXPECT_TRUE(reader.getActivePhase(active));
    EXPECT_EQ(active, 2);
    EXPECT_FALSE(reader.startReadingPhase(3));
    EXPECT_TRUE(reader.getActivePhase(active));
    EXPECT_EQ(active, 2);
}

TEST_F(ProviderSolution, AttributesOfAPhaseComeByIdNameAndActivity)
{
    KelSolutionModel& model = *reader.solutionModel();
    model.addAttributeOfPhase(1, "Long Name", "Air");
    model.addAttributeOfPhase(1, "Colour", "none");
    model.addAttributeOfPhase(2, "Long Name", "Water");
    const Names ofAir{"Colour", "Long Name"}; // without "Dataset Name"
    EXPECT_TRUE(reader.getAttributesOfPhase(short{1}, names));
    EXPECT_EQ(names, ofAir);
    EXPECT_TRUE(reader.getAttributesOfPhase("water", names));
    EXPECT_EQ(names, Names{"Long Name"});
    EXPECT_TRUE(reader.getAttributesOfPhase(names));
    EXPECT_EQ(names, ofAir);

    EXPECT_TRUE(reader.getAttributeValueOfPhase(short{2}, "Long Name", value));
    EXPECT_EQ(value, "Water");
    EXPECT_TRUE(reader.getAttributeValueOfPhase("air", "Colour", value));
    EXPECT_EQ(value, "none");
    EXPECT_TRUE(reader.getAttributeValueOfPhase("Long Name", value));
    EXPECT_EQ(value, "Air");
    EXPECT_TRUE(reader.getAttributeValueOfPhase("Dataset Name", value));
    EXPECT_EQ(value, "air");
}

TEST_F(ProviderSolution, UnknownPhasesAndAttributesAreRefused)
{
    EXPECT_FALSE(reader.getAttributeValueOfPhase(short{3}, "Long Name", value));
    EXPECT_FALSE(reader.getAttributeValueOfPhase("Air", "Dataset Name", value)); // names are compared exactly
    EXPECT_FALSE(reader.getAttributeValueOfPhase("none such", value));
    EXPECT_EQ(value, "left");
    EXPECT_FALSE(reader.getAttributesOfPhase(short{3}, names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(reader.getAttributesOfPhase("Air", names));

    const OpenProvider empty; // active phase 0, which does not exist
    EXPECT_FALSE(empty.getAttributesOfPhase(names));
    EXPECT_FALSE(empty.getAttributeValueOfPhase("Long Name", value));
}

/// A format with phase attributes of its own: only the forms by id are overridden.
class OwnAttributes : public OpenProvider {
public:
    using KelProvider::getAttributesOfPhase;
    bool getAttributesOfPhase(short phaseId, Names& names) const override
    {
        names = {"own " + std::to_string(phaseId)};
        return true;
    }

    using KelProvider::getAttributeValueOfPhase;
    bool getAttributeValueOfPhase(short phaseId, const std::string& attribute, std::string& value) const override
    {
        value = attribute + " of " + std::to_string(phaseId);
        return true;
    }

    using KelProvider::getAttributesOfPhaseVariable;
    bool getAttributesOfPhaseVariable(int variableId, Names& names) const override
    {
        names = {"own " + std::to_string(variableId)};
        return true;
    }

    using KelProvider::getAttributeValueOfPhaseVariable;
    bool getAttributeValueOfPhaseVariable(int variableId, const std::string& attribute,
                                          std::string& value) const override
    {
        value = attribute + " of " + std::to_string(variableId);
        return true;
    }

    using KelProvider::getPhaseVariablesOfCategory;
    void getPhaseVariablesOfCategory(KelZoneCategory, Ids& ids) const override { ids = {1, 1}; }
};

TEST_F(ProviderSolution, OtherFormsReachTheFormByIdThroughTheVirtualTable)
{
    OwnAttributes own;
    short phase = 0;
    own.solutionModel()->createPhase("air", phase);
    own.solutionModel()->createVariable(phase, "p", id);
    own.setActivePhase(phase);

    EXPECT_TRUE(own.getAttributesOfPhase("air", names));
    EXPECT_EQ(names, Names{"own 1"});
    EXPECT_TRUE(own.getAttributesOfPhase(names));
    EXPECT_EQ(names, Names{"own 1"});
    EXPECT_TRUE(own.getAttributeValueOfPhase("air", "A", value));
    EXPECT_EQ(value, "A of 1");
    EXPECT_TRUE(own.getAttributeValueOfPhase("A", value));
    EXPECT_EQ(value, "A of 1");

    EXPECT_TRUE(own.getAttributesOfPhaseVariable(short{1}, "p", names));
    EXPECT_EQ(names, Names{"own 1"});
    EXPECT_TRUE(own.getAttributesOfPhaseVariable("air", "p", names));
    EXPECT_EQ(names, Names{"own 1"});
    EXPECT_TRUE(own.getAttributesOfPhaseVariable("p", names));
    EXPECT_EQ(names, Names{"own 1"});
    EXPECT_TRUE(own.getAttributeValueOfPhaseVariable(short{1}, "p", "A", value));
    EXPECT_EQ(value, "A of 1");
    EXPECT_TRUE(own.getAttributeValueOfPhaseVariable("air", "p", "A", value));
    EXPECT_EQ(value, "A of 1");
    EXPECT_TRUE(own.getAttributeValueOfPhaseVariable("p", "A", value));
    EXPECT_EQ(value, "A of 1");

    EXPECT_EQ(own.getPhaseVariableCountOfCategory(KEL_EDGE_ZONE), 2U);
    own.getPhaseVariablesOfCategory(KEL_EDGE_ZONE, names);
    EXPECT_EQ(names, (Names{"p", "p"}));
}

/// A format that overrides the forms by phase id and variable name.
class OwnByPhase : public OpenProvider {
public:
    using KelProvider::getAttributesOfPhaseVariable;
    bool getAttributesOfPhaseVariable(short phaseId, const std::string& variableName, Names& names) const override
    {
        names = {std::to_string(phaseId) + variableName};
        return true;
    }

    using KelProvider::getAttributeValueOfPhaseVariable;
    bool getAttributeValueOfPhaseVariable(short phaseId, const std::string& variableName, const std::string& attribute,
                                          std::string& value) const override
    {
        value = std::to_string(phaseId) + variableName + attribute;
        return true;
    }
};

TEST_F(ProviderSolution, FormsWithAPhaseNameOrNoneReachTheFormByPhaseId)
{
    OwnByPhase own;
    short phase = 0;
    own.solutionModel()->createPhase("air", phase);
    own.setActivePhase(phase);
    EXPECT_TRUE(own.getAttributesOfPhaseVariable("air", "p", names));
    EXPECT_EQ(names, Names{"1p"});
    EXPECT_TRUE(own.getAttributesOfPhaseVariable("T", names));
    EXPECT_EQ(names, Names{"1T"});
    EXPECT_TRUE(own.getAttributeValueOfPhaseVariable("air", "p", "A", value));
    EXPECT_EQ(value, "1pA");
    EXPECT_TRUE(own.getAttributeValueOfPhaseVariable("T", "A", value));
    EXPECT_EQ(value, "1TA");
}

// ---- ids of variables, variables of a category

TEST_F(ProviderSolution, VariableIdsAreFoundByPhaseNameActivePhaseAndPhaseId)
{
    EXPECT_TRUE(reader.getVariableId("water", "p", id));
    EXPECT_EQ(id, 3);
    EXPECT_TRUE(reader.getVariableId("p", id));
    EXPECT_EQ(id, 1);
    EXPECT_TRUE(reader.getVariableId(short{2}, "v", id));
    EXPECT_EQ(id, 4);

    id = -7;
    EXPECT_FALSE(reader.getVariableId("Water", "p", id));
    EXPECT_FALSE(reader.getVariableId("v", id));
    EXPECT_FALSE(reader.getVariableId(short{3}, "p", id));
    EXPECT_FALSE(OpenProvider().getVariableId("p", id));
    EXPECT_EQ(id, -7);
}

TEST_F(ProviderSolution, VariableOfAPhaseNumberThatWasNeverMadeIsFound)
{
    int made = 0;
    ASSERT_TRUE(reader.solutionModel()->createVariable(77, "x", made));
    EXPECT_TRUE(reader.getVariableId(short{77}, "x", id)); // the phase is taken as given
    EXPECT_EQ(id, made);
}

TEST_F(ProviderSolution, VariablesOfACategoryAreThoseOfTheActivePhase)
{
    for (const int variable : {4, 3, 2, 1, 99}) {
        reader.addVariableOfCategory(variable, KEL_CELL_ZONE);
    }
    reader.addVariableOfCategory(2, KEL_FACE_ZONE);
    Ids ids{8};
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, ids);
    EXPECT_EQ(ids, (Ids{1, 2}));
    EXPECT_EQ(reader.getPhaseVariableCountOfCategory(KEL_CELL_ZONE), 2U);
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, names);
    EXPECT_EQ(names, (Names{"p", "T"})); // in the order of the ids
    reader.getPhaseVariablesOfCategory(KEL_FACE_ZONE, ids);
    EXPECT_EQ(ids, Ids{2});
    reader.getPhaseVariablesOfCategory(KEL_NODE_ZONE, ids);
    EXPECT_TRUE(ids.empty());
    ids = {8};
    reader.getPhaseVariablesOfCategory(static_cast<KelZoneCategory>(4), ids);
    EXPECT_TRUE(ids.empty());

    reader.setActivePhase(short{2});
    reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, ids);
    EXPECT_EQ(ids, (Ids{3, 4}));
}

TEST_F(ProviderSolution, VariablesOfACategoryNeedAnActivePhase)
{
    OpenProvider empty;
    empty.addVariableOfCategory(1, KEL_CELL_ZONE);
    Ids ids{8};
    empty.getPhaseVariablesOfCategory(KEL_CELL_ZONE, ids);
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(empty.getPhaseVariableCountOfCategory(KEL_CELL_ZONE), 0U);
}

} // namespace
} // namespace meridyn
