#include "KelTree.h"

#include <gtest/gtest.h>

#include <chrono>

namespace meridyn {
namespace {

using Texts = std::vector<std::string>;

TEST(TreeNode, ChildrenHaveTheOrderInWhichTheyCame)
{
    KelTreeNode root;
    root["b"].text = "1";
    root["a"].text = "2";
    root["b"].text += "3";
    EXPECT_EQ(root.names(), (Texts{"b", "a"}));
    EXPECT_EQ(root["b"].text, "13");
    EXPECT_EQ(root["b"].name(), "b");
    const KelTreeNode& view = root;
    EXPECT_TRUE(view["a"]);
    EXPECT_FALSE(view["c"]) << "looking for a child does not make one";
    EXPECT_FALSE(view["c"]["d"]);
    EXPECT_EQ(root.children().size(), 2U);
}

TEST(TreeNode, ACopyHasChildrenOfItsOwn)
{
    KelTreeNode root;
    const std::string longName(100, 'x');
    root["a"][longName].size = 7;
    KelTreeNode copy = root;
    root.removeChildren([](const KelTreeNode&) { return true; });
    EXPECT_EQ(std::as_const(copy)["a"][longName].size, 7U);
    copy["a"][longName].size = 8;
    KelTreeNode moved = std::move(copy);
    EXPECT_EQ(std::as_const(moved)["a"][longName].size, 8U);
}

TEST(TreeNode, KeepsItsNameWhateverIsAssigned)
{
    KelTreeNode root, other;
    const std::string longName(100, 'x');
    other["child"].text = "text";
    root[longName] = other;
    EXPECT_EQ(std::as_const(root)[longName]["child"].text, "text");
    root[longName].size = 5;
    root[longName].clear();
    EXPECT_EQ(std::as_const(root)[longName].size, 0U);
    EXPECT_EQ(root.names(), Texts{longName});
    EXPECT_TRUE(std::as_const(root)[longName].children().empty());
}

TEST(TreeNode, RemovesSomeChildren)
{
    KelTreeNode root;
    for (const char* const name : {"a1", "b", "a2", "c"})
        root[name];
    root.removeChildren([](const KelTreeNode& child) { return child.name()[0] == 'a'; });
    EXPECT_EQ(root.names(), (Texts{"b", "c"}));
    EXPECT_FALSE(std::as_const(root)["a1"]);
    root["a1"];
    EXPECT_EQ(root.names(), (Texts{"b", "c", "a1"}));
}

TEST(TreeNode, ManyChildrenAreFoundWithoutLookingAtAll)
{
    constexpr int count = 100000; // whose square is ten thousand million
    const auto start = std::chrono::steady_clock::now();
    KelTreeNode root;
    for (int n = 0; n < count; ++n)
        root["child " + std::to_string(n)].size = static_cast<unsigned64>(n);
    for (int n = count; n-- > 0;)
        ASSERT_EQ(std::as_const(root)["child " + std::to_string(n)].size, static_cast<unsigned64>(n));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

} // namespace
} // namespace meridyn
