#pragma once

#include "KelSolutionModel.h"
#include "KelVariableAttributeProvider.h"
#include "KelVariableRecipe.h"
#include "KelVariableRecipeProvider.h"
#include "support/RecordingProvider.h"

#include <gtest/gtest.h>

#include <map>

namespace meridyn {

using Names = std::vector<std::string>;
using Ids = std::vector<int>;

/// Answers from a table of "key/attribute" and notes what it was asked for.
class TableOfAttributes : public KelVariableAttributeProvider {
public:
    std::map<std::string, std::string> values;
    Names supported;
    bool isVisible = true;
    mutable Names asked;

    bool getDefaultVariableVisibility() const override { return isVisible; }

    Names getSupportedAttributes(const std::string& key) const override
    {
        asked.push_back("attributes of " + key);
        return supported;
    }

    std::string getAttributeValue(const std::string& key, const std::string& attribute) override
    {
        asked.push_back(key + "/" + attribute);
        const auto found = values.find(key + "/" + attribute);
        return found == values.end() ? "" : found->second;
    }
};

/// Rewrites the value of "Long Name" and "User Visible", from what it was handed.
class Rewriter : public KelVariableRecipe {
public:
    std::string rewritten = "<value>";
    mutable const KelProvider* reader = nullptr;
    mutable Names asked;

    std::string getName() const override { return "rewrite"; }

    bool isApplicableTo(const std::string& attribute) const override
    {
        asked.push_back(attribute);
        return attribute == "Long Name" || attribute == "User Visible" || attribute == "Recipe";
    }

    void apply(std::string& value, const KelProvider* from, int variableId, const std::string& attribute) const override
    {
        reader = from;
        value = rewritten.empty() ? "" : value + "|" + std::to_string(variableId) + "|" + attribute;
    }
};

/// Phases "air" (1) and "water" (2); variables "p" (1) and "T" (2) of air, "p" (3) and "v" (4) of water. Air is active.
class ProviderSolution : public ::testing::Test {
protected:
    OpenProvider reader;
    TableOfAttributes table;
    Rewriter rewriter;
    KelVariableRecipeProvider recipes;
    std::string value = "left";
    Names names{"left"};
    int id = -7;

    void SetUp() override
    {
        KelSolutionModel& model = *reader.solutionModel();
        short phase = 0;
        int variable = 0;
        ASSERT_TRUE(model.createPhase("air", phase));
        ASSERT_TRUE(model.createPhase("water", phase));
        ASSERT_TRUE(model.createVariable(1, "p", variable));
        ASSERT_TRUE(model.createVariable(1, "T", variable));
        ASSERT_TRUE(model.createVariable(2, "p", variable));
        ASSERT_TRUE(model.createVariable(2, "v", variable));
        ASSERT_TRUE(reader.setActivePhase(short{1}));
        ASSERT_TRUE(recipes.addRecipe(&rewriter));
    }

    void store(int variable, const std::string& attribute, const std::string& text)
    {
        ASSERT_TRUE(reader.solutionModel()->addAttributeOfVariable(variable, attribute, text));
    }

    void install() { reader.setVariableAttributeProvider(&table, false); }
};

} // namespace meridyn
