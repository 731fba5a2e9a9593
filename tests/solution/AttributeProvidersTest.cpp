#include "KelCompoundVariableAttributeProvider.h"
#include "KelVariableRecipe.h"
#include "KelVariableRecipeProvider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using Names = std::vector<std::string>;
using Compound = KelCompoundVariableAttributeProvider;

namespace {

/// Answers from tables; a key that is not in them gets the empty answer.
class Table : public KelVariableAttributeProvider {
public:
    std::map<std::string, std::string> mapped;
    std::map<std::string, std::string> variableNames;
    std::map<std::string, Names> supported;
    std::map<std::string, std::string> values; // by key, '.', attribute
    bool visible = true;
    std::string name;
    std::string* deleted = nullptr;

    ~Table() override
    {
        if (deleted != nullptr)
            *deleted += name;
    }
    bool getDefaultVariableVisibility() const override { return visible; }
    std::string getMappedKey(const std::string& key) override { return answer(mapped, key); }
    std::string getVariableName(const std::string& key) override { return answer(variableNames, key); }
    std::string getDatasetName(const std::string&) override { return "never asked"; }
    Names getSupportedAttributes(const std::string& key) const override { return answer(supported, key); }
    std::string getAttributeValue(const std::string& key, const std::string& attribute) override
    {
        return answer(values, key + "." + attribute);
    }

private:
    template <typename Value>
    static Value answer(const std::map<std::string, Value>& table, const std::string& key)
    {
        const auto found = table.find(key);
        return found != table.end() ? found->second : Value();
    }
};

/// Leaves all it may to the interface.
class Bare : public KelVariableAttributeProvider {
public:
    Names getSupportedAttributes(const std::string&) const override { return {}; }
    std::string getAttributeValue(const std::string&, const std::string&) override { return {}; }
};

} // namespace

TEST(AttributeProvider, Defaults)
{
    Bare bare;
    EXPECT_TRUE(bare.getDefaultVariableVisibility());
    EXPECT_EQ(bare.getMappedKey("k"), ""); // kept: not the key, unlike a mapping file
    EXPECT_EQ(bare.getDatasetName("k"), "k");
    EXPECT_EQ(bare.getVariableName("k"), "k");
}

TEST(CompoundProvider, OfNothingAnswersNothing)
{
    Compound compound(nullptr, nullptr);
    EXPECT_TRUE(compound.getDefaultVariableVisibility());
    EXPECT_EQ(compound.getMappedKey("k"), "");
    EXPECT_EQ(compound.getVariableName("k"), "");
    EXPECT_EQ(compound.getAttributeValue("k", "Long Name"), "");
    EXPECT_EQ(compound.getAttributeValue("k", "Parent Name"), "");
    EXPECT_TRUE(compound.getSupportedAttributes("k").empty());
    EXPECT_EQ(compound.getDatasetName("k"), "k");
}

TEST(CompoundProvider, VisibilityIsTheFirstsElseTheSeconds)
{
    const auto table = [](bool visible) {
        auto* made = new Table;
        made->visible = visible;
        return made;
    };
    EXPECT_FALSE(Compound(table(false), table(true)).getDefaultVariableVisibility());
    EXPECT_TRUE(Compound(table(true), table(false)).getDefaultVariableVisibility());
    EXPECT_FALSE(Compound(nullptr, table(false)).getDefaultVariableVisibility());
    EXPECT_FALSE(Compound(table(false), nullptr).getDefaultVariableVisibility());
}

TEST(CompoundProvider, MapsInTwoHops)
{
    auto* first = new Table;
    auto* second = new Table;
    first->mapped = {{"a", "b"}, {"x", "y"}};
    second->mapped = {{"b", "c"}, {"only second", "s"}};
    Compound both(first, second);
    EXPECT_EQ(both.getMappedKey("a"), "c");
    EXPECT_EQ(both.getMappedKey("only second"), "s") << "the key itself where the first has no mapping";
    EXPECT_EQ(both.getMappedKey("x"), ""); // kept: the second's empty answer wins
    EXPECT_EQ(both.getMappedKey("unknown"), "");

    auto* alone = new Table;
    alone->mapped = {{"a", "b"}};
    Compound firstOnly(alone, nullptr);
    EXPECT_EQ(firstOnly.getMappedKey("a"), "b");
    EXPECT_EQ(firstOnly.getMappedKey("unknown"), "");
}

TEST(CompoundProvider, VariableNameIsTheSecondsForTheMappedKey)
{
    auto* first = new Table;
    auto* second = new Table;
    first->mapped = {{"a", "b"}};
    first->variableNames = {{"a", "first a"}, {"n", "first n"}};
    second->variableNames = {{"b", "second b"}, {"a", "never asked"}};
    Compound compound(first, second);
    EXPECT_EQ(compound.getVariableName("a"), "second b");
    EXPECT_EQ(compound.getVariableName("n"), "first n");
    EXPECT_EQ(compound.getVariableName("unknown"), "") << "no further fall-back";
}

TEST(CompoundProvider, AttributesComeFromTheTargetSide)
{
    auto* first = new Table;
    auto* second = new Table;
    first->mapped = {{"a", "b"}};
    first->values = {{"a.Long Name", "y"}, {"a.Only First", "1"}};
    second->values = {{"b.Long Name", "x"}, {"b.Only Second", "2"}, {"a.Only First", "never asked"}};
    Compound compound(first, second);
    EXPECT_EQ(compound.getAttributeValue("a", "Long Name"), "x");
    EXPECT_EQ(compound.getAttributeValue("a", "Only First"), "1");
    EXPECT_EQ(compound.getAttributeValue("a", "Only Second"), "2");
    EXPECT_EQ(compound.getAttributeValue("a", "Neither"), "");
}

TEST(CompoundProvider, StructuralAttributesComeFromTheSourceSide)
{
    for (const std::string attribute : {"Component Names", "Parent Name"}) {
        auto* first = new Table;
        auto* second = new Table;
        first->mapped = {{"a", "b"}, {"c", "d"}};
        first->values = {{"a." + attribute, "y"}};
        second->values = {{"b." + attribute, "x"}, {"d." + attribute, "z"}};
        Compound compound(first, second);
        EXPECT_EQ(compound.getAttributeValue("a", attribute), "y") << attribute;
        EXPECT_EQ(compound.getAttributeValue("c", attribute), "z") << attribute;
    }
    auto* first = new Table;
    auto* second = new Table;
    first->values = {{"a.parent name", "y"}};
    second->values = {{"a.parent name", "x"}};
    EXPECT_EQ(Compound(first, second).getAttributeValue("a", "parent name"), "x") << "only exactly these two";
}

TEST(CompoundProvider, SupportedAttributesAreASortedUnion)
{
    auto* first = new Table;
    auto* second = new Table;
    first->mapped = {{"k", "m"}};
    first->supported = {{"k", {"c", "a"}}, {"f", {"z", "y"}}};
    second->supported = {{"m", {"b", "a"}}, {"s", {"z", "y"}}};
    const Compound compound(first, second);
    EXPECT_EQ(compound.getSupportedAttributes("k"), (Names{"a", "b", "c"}));
    EXPECT_EQ(compound.getSupportedAttributes("f"), (Names{"y", "z"}));
    EXPECT_EQ(compound.getSupportedAttributes("s"), (Names{"y", "z"}));
    EXPECT_TRUE(compound.getSupportedAttributes("unknown").empty());
}

TEST(CompoundProvider, DatasetNameIsTheKeyWhateverThePartsSay)
{
    EXPECT_EQ(Compound(new Table, new Table).getDatasetName("k"), "k");
}

TEST(CompoundProvider, DeletesFirstThenSecondOnce)
{
    std::string deleted;
    const auto table = [&deleted](const std::string& name) {
        auto* made = new Table;
        made->name = name;
        made->deleted = &deleted;
        return made;
    };
    {
        const std::unique_ptr<KelVariableAttributeProvider> compound(
            new Compound(new Compound(table("1"), table("2")), table("3")));
    }
    EXPECT_EQ(deleted, "123");

    deleted.clear();
    {
        Compound one(table("1"), table("2"));
        {
            const Compound copy(one);
        }
        EXPECT_EQ(deleted, "") << "copies share the parts";
        Compound other(nullptr, table("3"));
        other = one;
        EXPECT_EQ(deleted, "3");
    }
    EXPECT_EQ(deleted, "312");
}

// ---- recipes ---------------------------------------------------------------------------

namespace {

class Recipe : public KelVariableRecipe {
public:
    explicit Recipe(const std::string& name, bool* alive = nullptr) : _name(name), _alive(alive) {}
    ~Recipe() override
    {
        if (_alive != nullptr)
            *_alive = false;
    }
    std::string getName() const override { return _name; }
    bool isApplicableTo(const std::string& attribute) const override { return attribute == "Long Name"; }
    void apply(std::string& value, const KelProvider*, int variableId, const std::string&) const override
    {
        value += " #" + std::to_string(variableId);
    }

private:
    std::string _name;
    bool* _alive;
};

} // namespace

TEST(RecipeProvider, FindsByExactName)
{
    Recipe one("one");
    Recipe two("two");
    KelVariableRecipeProvider provider;
    EXPECT_TRUE(provider.addRecipe(&one));
    EXPECT_TRUE(provider.addRecipe(&two));
    EXPECT_EQ(provider.getRecipe("one"), &one);
    EXPECT_EQ(provider.getRecipe("two"), &two);
    EXPECT_EQ(provider.getRecipe("One"), nullptr);
    EXPECT_EQ(provider.getRecipe("three"), nullptr);
    std::string value = "v";
    provider.getRecipe("one")->apply(value, nullptr, 7, "Long Name");
    EXPECT_EQ(value, "v #7");
}

TEST(RecipeProvider, NullIsRefused)
{
    KelVariableRecipeProvider provider;
    EXPECT_FALSE(provider.addRecipe(nullptr));
    EXPECT_EQ(provider.getRecipe(""), nullptr);
}

TEST(RecipeProvider, EmptyNameIsAcceptedButNeverFound)
{
    Recipe nameless("");
    KelVariableRecipeProvider provider;
    EXPECT_TRUE(provider.addRecipe(&nameless));
    EXPECT_EQ(provider.getRecipe(""), nullptr); // kept
}

TEST(RecipeProvider, OwnsNoRecipe)
{
    bool firstAlive = true;
    bool secondAlive = true;
    Recipe first("same", &firstAlive);
    Recipe second("same", &secondAlive);
    {
        KelVariableRecipeProvider provider;
        EXPECT_TRUE(provider.addRecipe(&first));
        const KelVariableRecipeProvider copy(provider);
        EXPECT_TRUE(provider.addRecipe(&second));
        EXPECT_EQ(provider.getRecipe("same"), &second);
        EXPECT_EQ(copy.getRecipe("same"), &first) << "a copy has its own map";
        KelVariableRecipeProvider assigned;
        assigned = provider;
        EXPECT_EQ(assigned.getRecipe("same"), &second);
    }
    EXPECT_TRUE(firstAlive);
    EXPECT_TRUE(secondAlive);
}
