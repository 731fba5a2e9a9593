#include "KelLocationModel.h"
#include "KelSolutionModel.h"
#include "KelVariableAttributeProvider.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

namespace meridyn {

/// Counts its destructions.
class CountedProvider : public KelVariableAttributeProvider {
public:
    explicit CountedProvider(int& destructions) : _destructions(&destructions) {}
    ~CountedProvider() override { ++*_destructions; }

    std::vector<std::string> getSupportedAttributes(const std::string&) const override { return {}; }
    std::string getAttributeValue(const std::string& key, const std::string&) override { return key; }

private:
    int* _destructions;
};

static_assert(!std::is_copy_constructible_v<KelBase> && !std::is_copy_assignable_v<KelBase>);
static_assert(std::is_base_of_v<KelVersion, KelBase> && std::has_virtual_destructor_v<KelBase>);

TEST(Life, BeginsAndEndsQuietly)
{
    EXPECT_EQ(printedBy([] {
                  KelBase base;
                  base.setDebugOn(true);
                  base.setReadNCIOn(true);
                  EXPECT_FALSE(base.hasError() || base.hasInfo());
              }),
              "");
}

TEST(Life, HasItsNamesAndModels)
{
    OpenBase base;
    EXPECT_EQ(base.getSolverType(), "MERIDYN_GENERIC");
    EXPECT_EQ(base.getApplicationName(), "");
    EXPECT_EQ(base.variableMappingSource(), "");
    EXPECT_EQ(base.variableAttributeProvider(), nullptr);
    EXPECT_NE(base.solutionModel(), nullptr);
    EXPECT_NE(base.locationModel(), nullptr);
    base.setApplicationName("solver");
    EXPECT_EQ(base.getApplicationName(), "solver");
    base.setVariableMappingSource("common");
    EXPECT_EQ(base.variableMappingSource(), "common");
}

TEST(Life, LocationModelIsFilledOnceAndOnlyWhenItIsAskedFor)
{
    OpenBase base;
    KelLocationModel* const model = base.locationModel();
    EXPECT_EQ(base.locationRuns, 0);
    EXPECT_EQ(base.getLocationModel(), model);
    EXPECT_EQ(base.getLocationModel(), model);
    EXPECT_EQ(base.locationRuns, 1);
    static_assert(std::is_same_v<decltype(base.getLocationModel()), const KelLocationModel*>);
}

TEST(Life, LocationHookMayAskForTheModel)
{
    class Asking : public KelBase {
    public:
        mutable int runs = 0;

    protected:
        void initLocationModel() const override
        {
            if (++runs == 1) {
                EXPECT_NE(getLocationModel(), nullptr);
            }
        }
    } base;
    base.getLocationModel();
    EXPECT_EQ(base.runs, 1); // it counts as done before it runs
}

TEST(SolverType, NewOneReplacesTheOldOne)
{
    OpenBase base;
    base.setSolverType("SOLVER_A");
    EXPECT_EQ(base.getSolverType(), "SOLVER_A");
    base.setSolverType("");
    EXPECT_EQ(base.getSolverType(), "");
}

TEST(SolverType, CurrentOneDoesNotChooseAProvider)
{
    OpenBase base;
    base.setSolverType("MERIDYN_GENERIC");
    EXPECT_EQ(base.variableMappingSource(), ""); // choosing would have set it
    base.setSolverType("SOLVER_A");
    EXPECT_EQ(base.variableMappingSource(), "SOLVER_A");
    base.setVariableMappingSource("");
    base.setSolverType("SOLVER_A");
    EXPECT_EQ(base.variableMappingSource(), "");
}

TEST(SolverType, TargetOfTheMappingStays)
{
    OpenBase base;
    base.setVariableMappingSource("TARGET");
    base.setSolverType("SOLVER_A");
    EXPECT_EQ(base.variableMappingSource(), "TARGET");
}

class AttributeProvider : public ::testing::Test {
protected:
    int first = 0; ///< destructions
    int second = 0;
};

TEST_F(AttributeProvider, OwnedOneEndsWithTheObject)
{
    {
        OpenBase base;
        const auto* const provider = new CountedProvider(first);
        base.setVariableAttributeProvider(provider, true);
        EXPECT_EQ(base.variableAttributeProvider(), provider);
        EXPECT_EQ(base.attributeProvider(), provider);
        EXPECT_EQ(base.attributeProvider()->getAttributeValue("key", ""), "key");
        EXPECT_EQ(first, 0);
    }
    EXPECT_EQ(first, 1);
}

TEST_F(AttributeProvider, OneThatIsNotOwnedOutlivesTheObject)
{
    const CountedProvider provider(first);
    {
        OpenBase base;
        base.setVariableAttributeProvider(&provider, false);
    }
    EXPECT_EQ(first, 0);
}

TEST_F(AttributeProvider, ReplacedOneIsDestroyedIfItWasOwned)
{
    OpenBase base;
    const CountedProvider other(second);
    base.setVariableAttributeProvider(new CountedProvider(first), true);
    base.setVariableAttributeProvider(&other, false);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(base.variableAttributeProvider(), &other);
    base.setVariableAttributeProvider(nullptr, true);
    EXPECT_EQ(second, 0); // left alone
    EXPECT_EQ(base.variableAttributeProvider(), nullptr);
}

TEST_F(AttributeProvider, OwnershipIsThatOfTheLastCall)
{
    {
        OpenBase base;
        const CountedProvider other(second);
        base.setVariableAttributeProvider(&other, false);
        base.setVariableAttributeProvider(new CountedProvider(first), true);
        EXPECT_EQ(second, 0);
    }
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1); // by the end of its own scope, once
}

TEST_F(AttributeProvider, NoneCanBeInstalled)
{
    OpenBase base;
    base.setVariableAttributeProvider(nullptr, true);
    base.setVariableAttributeProvider(nullptr, false);
    base.setVariableAttributeProvider(new CountedProvider(first), true);
    base.setVariableAttributeProvider(nullptr, false);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(base.variableAttributeProvider(), nullptr);
}

TEST_F(AttributeProvider, InstallingTheInstalledOneDestroysItAndLeavesItInstalled)
{
    for (const bool owned : {false, true}) {
        first = 0;
        OpenBase base;
        const KelVariableAttributeProvider* const provider = new CountedProvider(first);
        base.setVariableAttributeProvider(provider, owned);
        base.setVariableAttributeProvider(provider, false); // kept
        EXPECT_EQ(first, 1) << owned;
        EXPECT_EQ(base.variableAttributeProvider(), provider);
        base.setVariableAttributeProvider(nullptr, false); // not owned: not destroyed again
        EXPECT_EQ(first, 1) << owned;
    }
}

} // namespace meridyn
