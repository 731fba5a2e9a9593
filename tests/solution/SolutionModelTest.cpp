#include "KelSolutionModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <type_traits>

using namespace meridyn;
using Names = std::vector<std::string>;

static_assert(!std::is_copy_constructible_v<KelSolutionModel> && !std::is_copy_assignable_v<KelSolutionModel>);
static_assert(!std::is_polymorphic_v<KelSolutionModel>);
static_assert(sizeof(KelSolutionModel) == sizeof(void*));

namespace {

std::vector<short> phasesOf(const KelSolutionModel& model)
{
    std::vector<short> ids = {77};
    model.getPhases(ids);
    return ids;
}

std::vector<int> variablesOf(const KelSolutionModel& model, short phase)
{
    std::vector<int> ids = {77};
    model.getVariables(phase, ids);
    return ids;
}

} // namespace

TEST(SolutionModel, StartsEmpty)
{
    const KelSolutionModel model;
    EXPECT_TRUE(phasesOf(model).empty());
    EXPECT_TRUE(variablesOf(model, -1).empty());
    EXPECT_FALSE(model.hasPhase(-1));
    EXPECT_FALSE(model.hasPhase(0));
    short id = 5;
    EXPECT_FALSE(model.findPhaseByUniqueName("<Mixture>", id));
    EXPECT_EQ(id, 5);
}

TEST(SolutionModel, PhaseNamesAreUnique)
{
    KelSolutionModel model;
    short id = 0;
    EXPECT_TRUE(model.createPhase("A", id));
    EXPECT_EQ(id, 1);
    id = 0;
    EXPECT_FALSE(model.createPhase("A", id));
    EXPECT_EQ(id, 1);
    EXPECT_TRUE(model.createPhase("a", id)) << "names are case-sensitive";
    EXPECT_TRUE(model.createPhase("A ", id)) << "and not trimmed";
    EXPECT_TRUE(model.createPhase("", id)) << "any text is a name";
    EXPECT_EQ(id, 4);
    EXPECT_EQ(phasesOf(model), (std::vector<short>{1, 2, 3, 4}));
    EXPECT_TRUE(model.findPhaseByUniqueName("A ", id));
    EXPECT_EQ(id, 3);
}

TEST(SolutionModel, UnknownPhaseLeavesOutParametersAlone)
{
    KelSolutionModel model;
    short id = 9;
    std::string text = "kept";
    EXPECT_FALSE(model.findPhaseByUniqueName("B", id));
    EXPECT_FALSE(model.getUniqueNameOfPhase(3, text));
    EXPECT_FALSE(model.getAttributeOfPhase(3, "x", text));
    EXPECT_EQ(id, 9);
    EXPECT_EQ(text, "kept");
}

TEST(SolutionModel, VariableWithoutPhaseMakesTheMixture)
{
    KelSolutionModel model;
    int variable = 0;
    EXPECT_TRUE(model.createVariable("p", variable));
    EXPECT_EQ(variable, 1);
    EXPECT_EQ(phasesOf(model), (std::vector<short>{-1}));
    EXPECT_TRUE(model.hasPhase(-1));
    std::string name;
    EXPECT_TRUE(model.getUniqueNameOfPhase(-1, name));
    EXPECT_EQ(name, "<Mixture>");
    short phase = 7;
    EXPECT_TRUE(model.findPhaseByUniqueName("<Mixture>", phase));
    EXPECT_EQ(phase, -1);

    // The mixture has no attributes of its own, not even a dataset name ...
    Names names = {"stale"};
    EXPECT_FALSE(model.getAttributeNamesOfPhase(-1, names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(model.getDatasetNameOfPhase(-1, name));
    EXPECT_EQ(name, "");
    // ... until it is given one.
    EXPECT_TRUE(model.addAttributeOfPhase(-1, "x", "1"));
    EXPECT_TRUE(model.getAttributeNamesOfPhase(-1, names));
    EXPECT_EQ(names, (Names{"x"}));
}

TEST(SolutionModel, PhaseAfterTheMixtureAloneIsZero)
{
    KelSolutionModel model;
    int variable = 0;
    model.createVariable("p", variable);
    short phase = 5;
    EXPECT_TRUE(model.createPhase("A", phase));
    EXPECT_EQ(phase, 0);
    EXPECT_TRUE(model.createPhase("B", phase));
    EXPECT_EQ(phase, 1);
    EXPECT_EQ(phasesOf(model), (std::vector<short>{-1, 0, 1}));
}

TEST(SolutionModel, OfTwoPhasesCalledMixtureTheSmallerIdIsFound)
{
    KelSolutionModel model;
    short phase = 0;
    EXPECT_TRUE(model.createPhase("<Mixture>", phase));
    EXPECT_EQ(phase, 1);
    int variable = 0;
    model.createVariable(-1, "p", variable);
    EXPECT_EQ(phasesOf(model), (std::vector<short>{-1, 1}));
    EXPECT_TRUE(model.findPhaseByUniqueName("<Mixture>", phase));
    EXPECT_EQ(phase, -1);
    phase = 0;
    EXPECT_FALSE(model.createPhase("<Mixture>", phase));
    EXPECT_EQ(phase, -1);
}

TEST(SolutionModel, VariableNamesAreUniqueWithinAPhase)
{
    KelSolutionModel model;
    int first = 0;
    int second = 0;
    EXPECT_TRUE(model.createVariable(1, "T", first));
    EXPECT_TRUE(model.createVariable(2, "T", second));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2) << "one sequence over all phases";
    int again = 0;
    EXPECT_FALSE(model.createVariable(2, "T", again));
    EXPECT_EQ(again, 2);
    EXPECT_EQ(variablesOf(model, 1), (std::vector<int>{1}));
    EXPECT_EQ(variablesOf(model, 2), (std::vector<int>{2}));
    int found = 0;
    EXPECT_TRUE(model.findVariableByUniqueName(2, "T", found));
    EXPECT_EQ(found, 2);
    EXPECT_FALSE(model.findVariableByUniqueName(3, "T", found));
    EXPECT_FALSE(model.findVariableByUniqueName("T", found)) << "not a variable of the mixture";
    EXPECT_EQ(found, 2);
}

TEST(SolutionModel, VariablesMayBelongToPhasesNeverCreated)
{
    KelSolutionModel model;
    int variable = 0;
    EXPECT_TRUE(model.createVariable(42, "T", variable));
    EXPECT_TRUE(model.createVariable(-7, "T", variable));
    EXPECT_FALSE(model.hasPhase(42));
    EXPECT_TRUE(phasesOf(model).empty());
    EXPECT_EQ(variablesOf(model, 42), (std::vector<int>{1}));
    EXPECT_EQ(variablesOf(model, -7), (std::vector<int>{2}));
}

TEST(SolutionModel, MixtureIsStoredBeforeTheVariableIsLookedUp)
{
    KelSolutionModel model;
    int variable = 0;
    model.createVariable("p", variable);
    EXPECT_FALSE(model.createVariable(-1, "p", variable));
    EXPECT_EQ(variable, 1);
    EXPECT_EQ(variablesOf(model, -1), (std::vector<int>{1}));
}

TEST(SolutionModel, ShortFormsMeanTheMixture)
{
    KelSolutionModel model;
    int ofMixture = 0;
    int ofPhase = 0;
    model.createVariable(-1, "p", ofMixture);
    model.createVariable(2, "p", ofPhase);
    EXPECT_TRUE(model.hasVariable(ofMixture));
    EXPECT_FALSE(model.hasVariable(ofPhase)); // kept: not "in any phase"
    EXPECT_TRUE(model.hasVariable(2, ofPhase));
    EXPECT_FALSE(model.hasVariable(2, ofMixture));
    EXPECT_FALSE(model.hasVariable(3, ofPhase));
    std::vector<int> ids = {77};
    model.getVariables(ids);
    EXPECT_EQ(ids, (std::vector<int>{ofMixture}));
    int found = 0;
    EXPECT_TRUE(model.findVariableByUniqueName("p", found));
    EXPECT_EQ(found, ofMixture);
    std::string name;
    EXPECT_TRUE(model.getUniqueNameOfVariable(ofPhase, name)) << "names are given for any phase";
    EXPECT_EQ(name, "p");
    EXPECT_FALSE(model.getUniqueNameOfVariable(99, name));
    EXPECT_EQ(name, "p");
}

TEST(SolutionModel, ListsOfAnUnknownPhaseAreEmpty)
{
    KelSolutionModel model;
    EXPECT_TRUE(variablesOf(model, 3).empty());
}

// The 32,767 phase ids run out; the next number is negative and nothing is stored.
TEST(SolutionModel, PhaseIdsOverflow)
{
    KelSolutionModel model;
    short id = 0;
    for (int n = 1; n <= 32767; ++n)
        ASSERT_TRUE(model.createPhase("phase " + std::to_string(n), id)) << n;
    EXPECT_EQ(id, 32767);
    EXPECT_FALSE(model.createPhase("one more", id));
    EXPECT_EQ(id, -32768);
    EXPECT_FALSE(model.hasPhase(-32768));
    EXPECT_FALSE(model.findPhaseByUniqueName("one more", id));
    EXPECT_EQ(phasesOf(model).size(), 32767u);
    EXPECT_FALSE(model.createPhase("phase 5", id)) << "a known name is still found";
    EXPECT_EQ(id, 5);
}

/// The operations of phases and variables are alike: each test below runs for both.
struct OfPhase {
    KelSolutionModel model;
    static constexpr int known = 1;
    OfPhase()
    {
        short id = 0;
        model.createPhase("u", id);
    }
    bool add(int id, const std::string& name, const std::string& value)
    {
        return model.addAttributeOfPhase(short(id), name, value);
    }
    bool get(int id, const std::string& name, std::string& value) const
    {
        return model.getAttributeOfPhase(short(id), name, value);
    }
    bool remove(int id, const std::string& name) { return model.removeAttributeOfPhase(short(id), name); }
    bool names(int id, Names& names) const { return model.getAttributeNamesOfPhase(short(id), names); }
    bool setDatasetName(int id, const std::string& name) { return model.setDatasetNameOfPhase(short(id), name); }
    bool datasetName(int id, std::string& name) const { return model.getDatasetNameOfPhase(short(id), name); }
};

struct OfVariable {
    KelSolutionModel model;
    static constexpr int known = 1;
    OfVariable()
    {
        int id = 0;
        model.createVariable(3, "u", id);
    }
    bool add(int id, const std::string& name, const std::string& value)
    {
        return model.addAttributeOfVariable(id, name, value);
    }
    bool get(int id, const std::string& name, std::string& value) const
    {
        return model.getAttributeOfVariable(id, name, value);
    }
    bool remove(int id, const std::string& name) { return model.removeAttributeOfVariable(id, name); }
    bool names(int id, Names& names) const { return model.getAttributeNamesOfVariable(id, names); }
    bool setDatasetName(int id, const std::string& name) { return model.setDatasetNameOfVariable(id, name); }
    bool datasetName(int id, std::string& name) const { return model.getDatasetNameOfVariable(id, name); }
};

template <typename Subject>
class SolutionAttributes : public ::testing::Test {
protected:
    Subject _subject;
};

using Subjects = ::testing::Types<OfPhase, OfVariable>;
TYPED_TEST_SUITE(SolutionAttributes, Subjects);

TYPED_TEST(SolutionAttributes, CreationGivesTheDatasetNameAndHidesIt)
{
    auto& s = this->_subject;
    Names names = {"stale"};
    EXPECT_TRUE(s.names(s.known, names));
    EXPECT_TRUE(names.empty());
    std::string text;
    EXPECT_TRUE(s.datasetName(s.known, text));
    EXPECT_EQ(text, "u");
}

TYPED_TEST(SolutionAttributes, EmptyDatasetNameIsRefused)
{
    auto& s = this->_subject;
    EXPECT_FALSE(s.setDatasetName(s.known, ""));
    std::string text;
    EXPECT_TRUE(s.datasetName(s.known, text));
    EXPECT_EQ(text, "u");
    EXPECT_TRUE(s.setDatasetName(s.known, "SV_U"));
    EXPECT_TRUE(s.datasetName(s.known, text));
    EXPECT_EQ(text, "SV_U");
}

TYPED_TEST(SolutionAttributes, DatasetNameIsAnAttributeLikeOthers)
{
    auto& s = this->_subject;
    std::string text;
    EXPECT_TRUE(s.get(s.known, "Dataset Name", text));
    EXPECT_EQ(text, "u");
    EXPECT_TRUE(s.add(s.known, "Dataset Name", "")); // kept: this way it can be emptied
    EXPECT_TRUE(s.datasetName(s.known, text));
    EXPECT_EQ(text, "");
    EXPECT_TRUE(s.add(s.known, "Dataset Name", "other"));
    EXPECT_TRUE(s.remove(s.known, "Dataset Name"));
    text = "stale";
    EXPECT_FALSE(s.datasetName(s.known, text));
    EXPECT_EQ(text, "");
    EXPECT_FALSE(s.remove(s.known, "Dataset Name"));
    Names names;
    EXPECT_TRUE(s.names(s.known, names)) << "still has its place for attributes";
}

TYPED_TEST(SolutionAttributes, AreSetReplacedListedAndRemoved)
{
    auto& s = this->_subject;
    EXPECT_TRUE(s.add(s.known, "b", "1"));
    EXPECT_TRUE(s.add(s.known, "a", "2"));
    EXPECT_TRUE(s.add(s.known, "Z", "3"));
    EXPECT_TRUE(s.add(s.known, "", "empty"));
    EXPECT_TRUE(s.add(s.known, "dataset name", "another one"));
    EXPECT_TRUE(s.add(s.known, "b", "4"));
    std::string text;
    EXPECT_TRUE(s.get(s.known, "b", text));
    EXPECT_EQ(text, "4");
    EXPECT_TRUE(s.get(s.known, "", text));
    EXPECT_EQ(text, "empty");
    Names names = {"stale"};
    EXPECT_TRUE(s.names(s.known, names));
    EXPECT_EQ(names, (Names{"", "Z", "a", "b", "dataset name"}));
    EXPECT_TRUE(s.remove(s.known, "b"));
    EXPECT_FALSE(s.remove(s.known, "b"));
    text = "kept";
    EXPECT_FALSE(s.get(s.known, "b", text));
    EXPECT_EQ(text, "kept");
}

TYPED_TEST(SolutionAttributes, UnknownIdIsRefused)
{
    auto& s = this->_subject;
    for (const int id : {-1, 0, 2}) {
        EXPECT_FALSE(s.add(id, "a", "1")) << id;
        EXPECT_FALSE(s.remove(id, "a")) << id;
        EXPECT_FALSE(s.setDatasetName(id, "x")) << id;
        std::string text = "stale";
        EXPECT_FALSE(s.get(id, "a", text)) << id;
        EXPECT_EQ(text, "stale");
        EXPECT_FALSE(s.datasetName(id, text)) << id;
        EXPECT_EQ(text, "");
        Names names = {"stale"};
        EXPECT_FALSE(s.names(id, names)) << id;
        EXPECT_TRUE(names.empty());
    }
}

TEST(SolutionModel, AttributesOfPhasesAndVariablesAreApart)
{
    KelSolutionModel model;
    short phase = 0;
    int variable = 0;
    model.createPhase("A", phase);
    model.createVariable(phase, "T", variable);
    ASSERT_EQ(phase, variable);
    EXPECT_TRUE(model.addAttributeOfVariable(variable, "unit", "K"));
    std::string text;
    EXPECT_FALSE(model.getAttributeOfPhase(phase, "unit", text));
}

TEST(SolutionModel, ClearForgetsEverything)
{
    KelSolutionModel model;
    short phase = 0;
    int variable = 0;
    model.createPhase("A", phase);
    model.createVariable(phase, "T", variable);
    model.createVariable("T", variable);
    model.clearModel();
    EXPECT_TRUE(phasesOf(model).empty());
    EXPECT_TRUE(variablesOf(model, phase).empty());
    std::string text;
    EXPECT_FALSE(model.getUniqueNameOfVariable(1, text));
    EXPECT_FALSE(model.getAttributeOfPhase(1, "Dataset Name", text));
    EXPECT_FALSE(model.findVariableByUniqueName(1, "T", variable));
    EXPECT_FALSE(model.findPhaseByUniqueName("A", phase));
    EXPECT_TRUE(model.createPhase("B", phase));
    EXPECT_TRUE(model.createVariable(phase, "p", variable));
    EXPECT_EQ(phase, 1);
    EXPECT_EQ(variable, 1);
}

TEST(SolutionModel, ManyVariablesAreFoundByName)
{
    KelSolutionModel model;
    int id = 0;
    for (int n = 1; n <= 100000; ++n)
        model.createVariable(short(n % 3), "variable " + std::to_string(n), id);
    EXPECT_EQ(id, 100000);
    EXPECT_TRUE(model.findVariableByUniqueName(short(77777 % 3), "variable 77777", id));
    EXPECT_EQ(id, 77777);
    EXPECT_EQ(variablesOf(model, 0).size(), 33333u);
}
