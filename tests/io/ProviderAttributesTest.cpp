#include "ProviderSolution.h"

// Attributes of variables: where their values and names come from, and recipes.

namespace meridyn {
namespace {

class ProviderAttributes : public ProviderSolution {};

// ---- values of attributes of variables

TEST_F(ProviderAttributes, ProviderComesBeforeTheFile)
{
    store(1, "Long Name", "from the file");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "from the file");
    install();
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "from the file"); // the provider has no answer
    table.values["p/Long Name"] = "from the provider";
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "from the provider");
}

TEST_F(ProviderAttributes, MissingAttributeEmptiesTheValue)
{
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "");
    value = "left";
    install();
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "");
    store(1, "Long Name", ""); // stored, but empty: as good as missing
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
}

TEST_F(ProviderAttributes, ProviderIsNotAskedForAVariableWithoutAName)
{
    install();
    table.values["/Long Name"] = "of an empty key";
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(99, "Long Name", value));
    EXPECT_TRUE(table.asked.empty());
}

TEST_F(ProviderAttributes, VisibilityHasADefaultOnceThereIsAProvider)
{
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "");
    install();
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "True");
    table.isVisible = false;
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "False");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(99, "User Visible", value)); // of any variable
    EXPECT_EQ(value, "False");
    for (const char* other : {"user visible", "User Visible ", "Visible", ""}) {
        EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, other, value)) << other;
    }
    store(1, "User Visible", "maybe");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "maybe");
}

TEST_F(ProviderAttributes, VariableIsNamedWithItsPhase)
{
    store(1, "Long Name", "pressure of air");
    store(3, "Long Name", "pressure of water");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(short{2}, "p", "Long Name", value));
    EXPECT_EQ(value, "pressure of water");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable("water", "p", "Long Name", value));
    EXPECT_EQ(value, "pressure of water");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable("p", "Long Name", value));
    EXPECT_EQ(value, "pressure of air");
}

TEST_F(ProviderAttributes, ProviderAloneAnswersForAVariableThePhaseDoesNotHave)
{
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(short{1}, "v", "Long Name", value));
    install();
    table.values["v/Long Name"] = "velocity";
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(short{1}, "v", "Long Name", value));
    EXPECT_EQ(value, "velocity");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable("v", "Long Name", value));
    EXPECT_EQ(value, "velocity");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable("air", "v", "Long Name", value));
    EXPECT_EQ(value, "velocity");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(short{9}, "v", "Long Name", value)); // of no phase at all
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable("no phase", "v", "Long Name", value));
    EXPECT_EQ(value, "");
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(short{1}, "w", "Long Name", value));
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(short{1}, "w", "User Visible", value)); // no default here
}

TEST_F(ProviderAttributes, WithoutAnActivePhaseTheValueIsEmptied)
{
    OpenProvider fresh;
    value = "left";
    EXPECT_FALSE(fresh.getAttributeValueOfPhaseVariable("p", "Long Name", value));
    EXPECT_EQ(value, "");
}

// ---- names of attributes of variables

TEST_F(ProviderAttributes, NamesOfAttributesAreTheUnionOfFileAndProvider)
{
    store(1, "b", "1");
    store(1, "d", "1");
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(1, names));
    EXPECT_EQ(names, (Names{"b", "d"}));
    install();
    table.supported = {"d", "c", "a"};
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(1, names));
    EXPECT_EQ(names, (Names{"a", "b", "c", "d"}));
    EXPECT_EQ(table.asked, Names{"attributes of p"});
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable("T", names));
    EXPECT_EQ(names, (Names{"a", "c", "d"}));
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable("water", "p", names));
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(short{2}, "p", names));
    EXPECT_EQ(names, (Names{"a", "c", "d"}));
}

TEST_F(ProviderAttributes, VariableWithoutAttributesHasAnEmptyListAndSucceeds)
{
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(2, names));
    EXPECT_TRUE(names.empty());
    install();
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(2, names));
    EXPECT_TRUE(names.empty());
}

TEST_F(ProviderAttributes, NamesOfAnUnknownVariableComeFromTheProviderAlone)
{
    EXPECT_FALSE(reader.getAttributesOfPhaseVariable(99, names));
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(reader.getAttributesOfPhaseVariable(short{1}, "v", names));
    install();
    EXPECT_FALSE(reader.getAttributesOfPhaseVariable(99, names));
    table.supported = {"z", "a"};
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(99, names));
    EXPECT_EQ(names, (Names{"a", "z"}));
    table.asked.clear();
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(short{1}, "v", names));
    EXPECT_EQ(names, (Names{"z", "a"})); // as the provider gave them
    EXPECT_EQ(table.asked, Names{"attributes of v"});
    table.supported.clear();
    EXPECT_TRUE(reader.getAttributesOfPhaseVariable(short{1}, "v", names)); // true with nothing, too
    EXPECT_TRUE(names.empty());
    EXPECT_FALSE(reader.getAttributesOfPhaseVariable("no phase", "v", names));
}

TEST_F(ProviderAttributes, StoredOnesAreThoseOfTheFileWhateverProviderThereIs)
{
    store(1, "b", "of the file");
    install();
    table.supported = {"a", "b"};
    EXPECT_TRUE(reader.getStoredAttributesOfPhaseVariable(1, names));
    EXPECT_EQ(names, Names{"b"});
    EXPECT_TRUE(reader.getStoredAttributeValueOfPhaseVariable(1, "b", value));
    EXPECT_EQ(value, "of the file");
    EXPECT_TRUE(reader.getStoredAttributeValueOfPhaseVariable(1, "Dataset Name", value));
    EXPECT_EQ(value, "p");
    EXPECT_FALSE(reader.getStoredAttributeValueOfPhaseVariable(1, "a", value));
    EXPECT_FALSE(reader.getStoredAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_FALSE(reader.getStoredAttributeValueOfPhaseVariable(99, "b", value));
    EXPECT_EQ(value, "p") << "left alone";
    EXPECT_FALSE(reader.getStoredAttributesOfPhaseVariable(99, names));
    EXPECT_TRUE(names.empty());
    EXPECT_TRUE(table.asked.empty());
}

// ---- recipes

TEST_F(ProviderAttributes, RecipeRewritesAValueOfFileAndProvider)
{
    store(1, "Recipe", "rewrite");
    store(1, "Long Name", "pressure");
    store(1, "Units", "Pa");
    reader.setVariableRecipeProvider(&recipes);
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "pressure|1|Long Name");
    EXPECT_EQ(rewriter.reader, &reader);
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Units", value));
    EXPECT_EQ(value, "Pa"); // not applicable
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Recipe", value));
    EXPECT_EQ(value, "rewrite");
    EXPECT_EQ(rewriter.asked, (Names{"Long Name", "Units"})); // never asked about "Recipe"

    install();
    table.values["p/Long Name"] = "p of the provider";
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable("p", "Long Name", value));
    EXPECT_EQ(value, "p of the provider|1|Long Name");

    reader.setVariableRecipeProvider(nullptr);
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "p of the provider");
}

TEST_F(ProviderAttributes, RecipeMayBeNamedByTheProvider)
{
    store(1, "Long Name", "pressure");
    install();
    table.values["p/Recipe"] = "rewrite";
    reader.setVariableRecipeProvider(&recipes);
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "pressure|1|Long Name");
}

/// A format that keeps the names of recipes in its own way.
class OwnRecipes : public OpenProvider {
public:
    using KelProvider::getAttributeValueOfPhaseVariable;
    bool getAttributeValueOfPhaseVariable(int variableId, const std::string& attribute,
                                          std::string& value) const override
    {
        if (attribute != "Recipe")
            return KelProvider::getAttributeValueOfPhaseVariable(variableId, attribute, value);
        value = "rewrite";
        return true;
    }
};

TEST_F(ProviderAttributes, RecipeNameIsAskedThroughTheVirtualTable)
{
    OwnRecipes own;
    own.setVariableRecipeProvider(&recipes);
    value = "given";
    own.applyVariableRecipe(5, "Long Name", value);
    EXPECT_EQ(value, "given|5|Long Name");
}

TEST_F(ProviderAttributes, RecipeThatEmptiesAValueMakesItMissing)
{
    store(1, "Recipe", "rewrite");
    store(1, "Long Name", "pressure");
    rewriter.rewritten.clear();
    reader.setVariableRecipeProvider(&recipes);
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_EQ(value, "");
}

TEST_F(ProviderAttributes, RecipeDoesNotSeeWhatIsMissingOrDefault)
{
    store(1, "Recipe", "rewrite");
    reader.setVariableRecipeProvider(&recipes);
    install();
    EXPECT_FALSE(reader.getAttributeValueOfPhaseVariable(1, "Long Name", value));
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "True");
    EXPECT_TRUE(rewriter.asked.empty());
    store(1, "User Visible", "True");
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(1, "User Visible", value));
    EXPECT_EQ(value, "True|1|User Visible");
}

TEST_F(ProviderAttributes, RecipeDoesNotSeeVariablesThePhaseDoesNotHave)
{
    install();
    table.values["v/Recipe"] = "rewrite";
    table.values["v/Long Name"] = "velocity";
    reader.setVariableRecipeProvider(&recipes);
    EXPECT_TRUE(reader.getAttributeValueOfPhaseVariable(short{1}, "v", "Long Name", value));
    EXPECT_EQ(value, "velocity");
}

TEST_F(ProviderAttributes, ApplyVariableRecipeNeedsARecipeOfThatName)
{
    reader.setVariableRecipeProvider(&recipes);
    value = "given";
    reader.applyVariableRecipe(1, "Long Name", value); // the variable names none
    EXPECT_EQ(value, "given");
    store(1, "Recipe", "unknown");
    reader.applyVariableRecipe(1, "Long Name", value);
    EXPECT_EQ(value, "given");
    store(1, "Recipe", "rewrite");
    reader.applyVariableRecipe(1, "Recipe", value);
    EXPECT_EQ(value, "given");
    reader.applyVariableRecipe(1, "Long Name", value);
    EXPECT_EQ(value, "given|1|Long Name");
}

} // namespace
} // namespace meridyn
