#include "KelConsumer.h"
#include "KelSolutionModel.h"
#include "KelVariableAttributeProvider.h"

#include <gtest/gtest.h>

#include <map>

namespace meridyn {
namespace {

/// A writer whose protected operations are open and which notes the virtual calls that the frame makes.
class OpenConsumer : public KelConsumer {
public:
    using KelBase::addVariableOfCategory;
    using KelBase::getVariablesOfCategory;
    using KelBase::setActivePhase;
    using KelBase::solutionModel;
    using KelConsumer::addPhaseVariable;
    using KelConsumer::inheritVariableAttributes;
    using KelConsumer::setAttributeValueOfPhase;
    using KelConsumer::setAttributeValueOfPhaseVariable;
    using KelConsumer::setPhaseVariablesOfCategory;

    bool setAttributeValueOfPhase(short id, const std::string& attribute, const std::string& value) const override
    {
        calls.push_back("phase " + std::to_string(id) + " " + attribute + "=" + value);
        return KelConsumer::setAttributeValueOfPhase(id, attribute, value);
    }
    bool addPhaseName(const std::string& name, short& id) const override
    {
        calls.push_back("addPhaseName " + name);
        return name != refused && KelConsumer::addPhaseName(name, id);
    }
    bool addPhaseNames(const std::vector<std::string>& names, std::vector<short>& ids) const override
    {
        calls.push_back("addPhaseNames");
        return KelConsumer::addPhaseNames(names, ids);
    }
    bool addPhaseVariable(short phaseId, const std::string& name, int& id) const override
    {
        calls.push_back("addPhaseVariable " + std::to_string(phaseId) + " " + name);
        return name != refused && KelConsumer::addPhaseVariable(phaseId, name, id);
    }
    bool setAttributeValueOfPhaseVariable(short phaseId, const std::string& name, const std::string& attribute,
                                          const std::string& value) const override
    {
        calls.push_back("variable " + std::to_string(phaseId) + "/" + name + " " + attribute + "=" + value);
        return KelConsumer::setAttributeValueOfPhaseVariable(phaseId, name, attribute, value);
    }
    bool setAttributeValueOfPhaseVariable(int id, const std::string& attribute, const std::string& value) const override
    {
        calls.push_back("variable " + std::to_string(id) + " " + attribute + "=" + value);
        return KelConsumer::setAttributeValueOfPhaseVariable(id, attribute, value);
    }
    bool setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<std::string>& names,
                                     std::vector<int>& ids) const override
    {
        calls.push_back("setPhaseVariablesOfCategory by name");
        return KelConsumer::setPhaseVariablesOfCategory(category, names, ids);
    }
    bool setPhaseVariablesOfCategory(KelZoneCategory category, const std::vector<int>& ids) const override
    {
        calls.push_back("setPhaseVariablesOfCategory by id");
        return KelConsumer::setPhaseVariablesOfCategory(category, ids);
    }

    std::string attribute(int id, const std::string& name) const
    {
        std::string value = "(none)";
        solutionModel()->getAttributeOfVariable(id, name, value);
        return value;
    }
    std::string datasetName(int id) const
    {
        std::string name;
        solutionModel()->getDatasetNameOfVariable(id, name);
        return name;
    }
    std::vector<int> variablesOf(KelZoneCategory category) const
    {
        std::vector<int> ids;
        getVariablesOfCategory(category, ids);
        return ids;
    }

    mutable std::vector<std::string> calls;
    std::string refused = "refused";
};

/// Attributes "A" and, when asked for, "Long Name"; dataset names "D:<key>", except for the key "plain".
class Attributes : public KelVariableAttributeProvider {
public:
    explicit Attributes(bool hasLongName) : _hasLongName(hasLongName) {}

    std::string getDatasetName(const std::string& key) override { return key == "plain" ? "" : "D:" + key; }
    std::vector<std::string> getSupportedAttributes(const std::string&) const override
    {
        return _hasLongName ? std::vector<std::string>{"Z", "Long Name", "A"}
                            : std::vector<std::string>{"Z", "long name"};
    }
    std::string getAttributeValue(const std::string& key, const std::string& attribute) override
    {
        return attribute + " of " + key;
    }

private:
    bool _hasLongName;
};

using Calls = std::vector<std::string>;
using Ids = std::vector<int>;
using PhaseIds = std::vector<short>;

// ---- phases ------------------------------------------------------------------------------------------------------

TEST(ConsumerPhases, ANewPhaseGetsItsNameAsLongName)
{
    OpenConsumer writer;
    short id = 0;
    EXPECT_TRUE(writer.addPhaseName("air", id));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(writer.calls, (Calls{"addPhaseName air", "phase 1 Long Name=air"}));
}

TEST(ConsumerPhases, AKnownPhaseIsLeftAlone)
{
    OpenConsumer writer;
    short id = 0;
    writer.addPhaseName("air", id);
    writer.setAttributeValueOfPhase(short(1), "Long Name", "Air at rest");
    writer.calls.clear();
    id = 77;
    EXPECT_TRUE(writer.addPhaseName("air", id));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(writer.calls, Calls{"addPhaseName air"});
    std::string longName;
    EXPECT_TRUE(writer.solutionModel()->getAttributeOfPhase(1, "Long Name", longName));
    EXPECT_EQ(longName, "Air at rest");
}

TEST(ConsumerPhases, NamesGiveIdsInTheirOrder)
{
    OpenConsumer writer;
    PhaseIds ids = {9, 9};
    EXPECT_TRUE(writer.addPhaseNames({"oil", "air", "oil"}, ids));
    EXPECT_EQ(ids, (PhaseIds{1, 2, 1}));
    EXPECT_TRUE(writer.addPhaseNames({}, ids));
    EXPECT_TRUE(ids.empty());
}

TEST(ConsumerPhases, TheFirstFailureKeepsWhatWasGathered)
{
    OpenConsumer writer;
    PhaseIds ids;
    EXPECT_FALSE(writer.addPhaseNames({"oil", "refused", "air"}, ids));
    EXPECT_EQ(ids, PhaseIds{1});
    short id = 0;
    EXPECT_FALSE(writer.solutionModel()->findPhaseByUniqueName("air", id));
}

TEST(ConsumerPhases, WhenTheIdsHaveRunOutNoPhaseIsMade)
{
    OpenConsumer writer;
    short id = 0;
    for (int n = 1; n <= 32767; ++n)
        ASSERT_TRUE(writer.solutionModel()->createPhase(std::to_string(n), id));
    EXPECT_FALSE(writer.addPhaseName("one more", id));
    EXPECT_EQ(writer.calls, Calls{"addPhaseName one more"}); // and no long name for a phase that is not there
    EXPECT_TRUE(writer.addPhaseName("32767", id));
    EXPECT_EQ(id, 32767);
}

TEST(ConsumerPhases, SettingNamesStartsAfresh)
{
    OpenConsumer writer;
    PhaseIds ids;
    writer.addPhaseNames({"a", "b"}, ids);
    writer.addVariableOfCategory(4, KEL_CELL_ZONE);
    writer.calls.clear();
    EXPECT_TRUE(writer.setPhaseNames({"c"}, ids));
    EXPECT_EQ(writer.calls.front(), "addPhaseNames");
    EXPECT_EQ(ids, PhaseIds{1});
    EXPECT_EQ(writer.getPhaseName(1), "c");
    EXPECT_FALSE(writer.solutionModel()->hasPhase(2));
    EXPECT_TRUE(writer.variablesOf(KEL_CELL_ZONE).empty());
    EXPECT_FALSE(writer.setPhaseNames({"refused"}, ids));
}

TEST(ConsumerPhases, AttributesOfThePhaseByEachKey)
{
    OpenConsumer writer;
    EXPECT_FALSE(writer.setAttributeValueOfPhase("A", "v")) << "no active phase";
    PhaseIds ids;
    writer.addPhaseNames({"air", "oil"}, ids);
    writer.calls.clear();
    EXPECT_FALSE(writer.setAttributeValueOfPhase("A", "v")) << "still none";
    EXPECT_TRUE(writer.setActivePhase(short(2)));
    EXPECT_TRUE(writer.setAttributeValueOfPhase("A", "active"));
    EXPECT_EQ(writer.calls, Calls{}) << "goes to the model directly";
    EXPECT_TRUE(writer.setAttributeValueOfPhase("air", "A", "named"));
    EXPECT_EQ(writer.calls, Calls{"phase 1 A=named"}) << "goes through the form by id";
    EXPECT_FALSE(writer.setAttributeValueOfPhase("nobody", "A", "v"));
    EXPECT_FALSE(writer.setAttributeValueOfPhase(short(3), "A", "v"));
    std::string value;
    EXPECT_TRUE(writer.solutionModel()->getAttributeOfPhase(2, "A", value));
    EXPECT_EQ(value, "active");
    EXPECT_TRUE(writer.solutionModel()->getAttributeOfPhase(1, "A", value));
    EXPECT_EQ(value, "named");
}

TEST(ConsumerPhases, TheBareWriterDoesNotMakeAPhaseActive)
{
    OpenConsumer writer;
    short id = 0;
    writer.addPhaseName("air", id);
    ::testing::internal::CaptureStdout();
    writer.startWritingPhase(id);
    writer.endWritingPhase();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "  Phase-id = 1\n\n");
    int variable = 0;
    EXPECT_FALSE(writer.addPhaseVariable("p", variable));
}

TEST(ConsumerPhases, NoTextAttributesAreTaken)
{
    OpenConsumer writer;
    EXPECT_FALSE(writer.addStringAttribute("s", "g", "n", "v"));
}

// ---- variables ---------------------------------------------------------------------------------------------------

class ConsumerVariables : public ::testing::Test {
protected:
    ConsumerVariables()
    {
        short phase = 0;
        writer.addPhaseName("air", phase);
        writer.addPhaseName("oil", phase);
        writer.calls.clear();
    }

    OpenConsumer writer;
    int id = 0;
};

TEST_F(ConsumerVariables, ANewVariableHasItsNameAsDatasetNameAndNoAttributes)
{
    EXPECT_TRUE(writer.addPhaseVariable(short(1), "p", id));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(writer.datasetName(id), "p");
    EXPECT_EQ(writer.attribute(id, "Long Name"), "(none)");
    EXPECT_EQ(writer.calls, Calls{"addPhaseVariable 1 p"});
}

TEST_F(ConsumerVariables, TheProviderNamesTheDataset)
{
    Attributes provider(true);
    writer.setVariableAttributeProvider(&provider, false);
    writer.addPhaseVariable(short(1), "p", id);
    EXPECT_EQ(writer.datasetName(id), "D:p");
    EXPECT_EQ(writer.attribute(id, "A"), "(none)") << "attributes only when they are asked for";
    writer.addPhaseVariable(short(1), "plain", id);
    EXPECT_EQ(writer.datasetName(id), "plain");
    writer.setVariableAttributeProvider(nullptr, false);
}

TEST_F(ConsumerVariables, InheritedAttributesComeInTheProvidersOrder)
{
    Attributes provider(true);
    writer.setVariableAttributeProvider(&provider, false);
    writer.inheritVariableAttributes(true);
    writer.addPhaseVariable(short(1), "p", id);
    EXPECT_EQ(writer.calls, (Calls{"addPhaseVariable 1 p", "variable 1 Z=Z of p", "variable 1 Long Name=Long Name of p",
                                   "variable 1 A=A of p"}));
    writer.setVariableAttributeProvider(nullptr, false);
}

TEST_F(ConsumerVariables, LongNameIsAddedUnlessTheProviderHasExactlyThat)
{
    Attributes provider(false);
    writer.setVariableAttributeProvider(&provider, false);
    writer.inheritVariableAttributes(true);
    writer.addPhaseVariable(short(1), "p", id);
    EXPECT_EQ(writer.calls, (Calls{"addPhaseVariable 1 p", "variable 1 Z=Z of p", "variable 1 long name=long name of p",
                                   "variable 1 Long Name=p"}));
    writer.setVariableAttributeProvider(nullptr, false);
    writer.calls.clear();
    writer.addPhaseVariable(short(1), "q", id);
    EXPECT_EQ(writer.calls, (Calls{"addPhaseVariable 1 q", "variable 2 Long Name=q"})) << "without a provider too";
}

TEST_F(ConsumerVariables, AKnownVariableIsLeftAlone)
{
    writer.addPhaseVariable(short(1), "p", id);
    writer.solutionModel()->setDatasetNameOfVariable(id, "mine");
    Attributes provider(true);
    writer.setVariableAttributeProvider(&provider, false);
    writer.inheritVariableAttributes(true);
    writer.calls.clear();
    id = 0;
    EXPECT_TRUE(writer.addPhaseVariable(short(1), "p", id));
    EXPECT_EQ(id, 1);
    EXPECT_EQ(writer.datasetName(1), "mine");
    EXPECT_EQ(writer.calls, Calls{"addPhaseVariable 1 p"});
    writer.setVariableAttributeProvider(nullptr, false);
}

TEST_F(ConsumerVariables, TheFormsWithoutAnIdFindThePhase)
{
    EXPECT_FALSE(writer.addPhaseVariable("p", id)) << "no active phase";
    EXPECT_FALSE(writer.addPhaseVariable("nobody", "p", id));
    EXPECT_EQ(writer.calls, Calls{});
    EXPECT_TRUE(writer.addPhaseVariable("oil", "p", id));
    writer.setActivePhase(short(1));
    EXPECT_TRUE(writer.addPhaseVariable("p", id));
    EXPECT_EQ(id, 2) << "the same name in another phase is another variable";
    EXPECT_EQ(writer.calls, (Calls{"addPhaseVariable 2 p", "addPhaseVariable 1 p"}));
}

TEST_F(ConsumerVariables, AttributesOfAVariableByEachKey)
{
    writer.addPhaseVariable(short(2), "p", id);
    writer.calls.clear();
    EXPECT_FALSE(writer.setAttributeValueOfPhaseVariable("p", "A", "v")) << "no active phase";
    EXPECT_FALSE(writer.setAttributeValueOfPhaseVariable(short(1), "p", "A", "v")) << "not of this phase";
    EXPECT_FALSE(writer.setAttributeValueOfPhaseVariable(7, "A", "v"));
    writer.calls.clear();
    EXPECT_TRUE(writer.setAttributeValueOfPhaseVariable(short(2), "p", "A", "1"));
    writer.setActivePhase(short(2));
    EXPECT_TRUE(writer.setAttributeValueOfPhaseVariable("p", "B", "2"));
    EXPECT_EQ(writer.calls, (Calls{"variable 2/p A=1", "variable 1 A=1", "variable 2/p B=2", "variable 1 B=2"}));
    EXPECT_EQ(writer.attribute(1, "A") + writer.attribute(1, "B"), "12");
}

// ---- variables by category ---------------------------------------------------------------------------------------

TEST_F(ConsumerVariables, IdsAreCheckedBeforeAnyIsNoted)
{
    writer.addPhaseVariable(short(1), "p", id);
    writer.addPhaseVariable(short(2), "q", id);
    EXPECT_FALSE(writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, Ids{1})) << "no active phase";
    writer.setActivePhase(short(1));
    EXPECT_FALSE(writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, Ids{1, 2})) << "2 is of another phase";
    EXPECT_EQ(writer.variablesOf(KEL_CELL_ZONE), Ids{});
    EXPECT_TRUE(writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, Ids{}));
    EXPECT_TRUE(writer.setPhaseVariablesOfCategory(KEL_CELL_ZONE, Ids{1, 1}));
    EXPECT_EQ(writer.variablesOf(KEL_CELL_ZONE), Ids{1});
    EXPECT_EQ(writer.variablesOf(KEL_FACE_ZONE), Ids{});
}

TEST_F(ConsumerVariables, NamesAreAddedWhereTheyAreNew)
{
    writer.addPhaseVariable(short(1), "old", id);
    Ids ids;
    EXPECT_FALSE(writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, Calls{"p"}, ids)) << "no active phase";
    writer.setActivePhase(short(1));
    writer.calls.clear();
    ids = {1};
    EXPECT_TRUE(writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, Calls{"new", "old"}, ids));
    EXPECT_EQ(ids, (Ids{1, 2, 1})) << "appended";
    EXPECT_EQ(writer.calls, (Calls{"setPhaseVariablesOfCategory by name", "addPhaseVariable 1 new",
                                   "setPhaseVariablesOfCategory by id"}));
    EXPECT_EQ(writer.datasetName(2), "new");
    EXPECT_EQ(writer.variablesOf(KEL_FACE_ZONE), (Ids{1, 2}));
}

TEST_F(ConsumerVariables, AFailureAmongTheNamesNotesNothing)
{
    writer.setActivePhase(short(1));
    Ids ids;
    EXPECT_FALSE(writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, Calls{"p", "refused", "q"}, ids));
    EXPECT_EQ(ids, Ids{1});
    EXPECT_EQ(writer.variablesOf(KEL_FACE_ZONE), Ids{});
    EXPECT_FALSE(writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, Calls{"refused"}));
}

TEST_F(ConsumerVariables, TheAnswerOfTheIdFormIsNotHandedOn)
{
    writer.setActivePhase(short(1));
    Ids ids = {99}; // no variable, so the form by id refuses the list
    EXPECT_TRUE(writer.setPhaseVariablesOfCategory(KEL_FACE_ZONE, Calls{"p"}, ids)); // kept
    EXPECT_EQ(writer.variablesOf(KEL_FACE_ZONE), Ids{});
}

TEST_F(ConsumerVariables, TheFormWithoutIdsIsTheOneWithThem)
{
    writer.setActivePhase(short(1));
    EXPECT_TRUE(writer.setPhaseVariablesOfCategory(KEL_NODE_ZONE, Calls{"p"}));
    EXPECT_EQ(writer.calls.front(), "setPhaseVariablesOfCategory by name");
    EXPECT_EQ(writer.variablesOf(KEL_NODE_ZONE), Ids{1});
}

} // namespace
} // namespace meridyn
