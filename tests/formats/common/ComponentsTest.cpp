// Vectors and tensors as one variable, and as one per component.
#include "KelComponents.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace meridyn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace {

using Names = std::vector<std::string>;

TEST(Components, LabelsOfEachKind)
{
    EXPECT_THAT(componentLabels(0), IsEmpty());
    EXPECT_THAT(componentLabels(1), IsEmpty());
    EXPECT_THAT(componentLabels(2), ElementsAre("1", "2"));
    EXPECT_THAT(componentLabels(3), ElementsAre("x", "y", "z"));
    EXPECT_THAT(componentLabels(6), ElementsAre("xx", "xy", "xz", "yy", "yz", "zz"));
    EXPECT_THAT(componentLabels(9), ElementsAre("xx", "xy", "xz", "yx", "yy", "yz", "zx", "zy", "zz"));
}

TEST(Components, NamesAreThoseOfTheAttributeOrMadeOfTheVariables)
{
    EXPECT_THAT(componentNames("p", 1), ElementsAre("p"));
    EXPECT_THAT(componentNames("U", 3), ElementsAre("U-x", "U-y", "U-z"));
    EXPECT_THAT(componentNames("U", 3, "u,v,w"), ElementsAre("u", "v", "w"));
    EXPECT_THAT(componentNames("U", 3, "u,v"), ElementsAre("U-x", "U-y", "U-z"));
    EXPECT_THAT(componentNames("U", 3, ""), ElementsAre("U-x", "U-y", "U-z"));
    EXPECT_THAT(componentNames("S", 1, "S-ii"), ElementsAre("S-ii"));
}

TEST(Components, NamesComeBackFromTheirText)
{
    EXPECT_EQ(joinComponentNames({"u", "v", "w"}), "u,v,w");
    EXPECT_EQ(joinComponentNames({"div(phi,U)-x", "a\\b"}), "div(phi\\,U)-x,a\\\\b");
    EXPECT_EQ(joinComponentNames({}), "");
    EXPECT_THAT(splitComponentNames(""), IsEmpty());
    EXPECT_THAT(splitComponentNames(","), ElementsAre("", ""));
    EXPECT_THAT(splitComponentNames("a\\"), ElementsAre("a\\"));
    for (const Names& names : {Names{"u", "v"}, Names{"div(phi,U)-x", "a\\b", "\\,", ""}, Names{"one"}})
        EXPECT_EQ(splitComponentNames(joinComponentNames(names)), names);
}

/// The groups as text: "U(1 0 2)", a variable alone as "p(0)".
std::string grouped(const Names& names)
{
    std::string text;
    for (const KelComponentGroup& group : groupComponents(names)) {
        text += (text.empty() ? "" : " ") + group.name + "(";
        for (std::size_t n = 0; n < group.members.size(); ++n)
            text += (n == 0 ? "" : " ") + std::to_string(group.members[n]);
        text += ")";
    }
    return text;
}

TEST(Components, AreFoundByTheirEndings)
{
    EXPECT_EQ(grouped({}), "");
    EXPECT_EQ(grouped({"p", "U-y", "U-x", "T", "U-z"}), "p(0) U(2 1 4) T(3)");
    EXPECT_EQ(grouped({"VelocityX", "VelocityY", "VelocityZ"}), "Velocity(0 1 2)");
    EXPECT_EQ(grouped({"u_x", "u_y", "u_z", "v.X", "v.Y", "v.Z", "w:x", "w:y", "w:z"}), "u(0 1 2) v(3 4 5) w(6 7 8)");
    EXPECT_EQ(grouped({"R-xx", "R-xy", "R-xz", "R-yy", "R-yz", "R-zz"}), "R(0 1 2 3 4 5)");
    EXPECT_EQ(grouped({"G-xx", "G-xy", "G-xz", "G-yx", "G-yy", "G-yz", "G-zx", "G-zy", "G-zz"}),
              "G(0 1 2 3 4 5 6 7 8)");
    EXPECT_EQ(grouped({"SXX", "SXY", "SXZ", "SYY", "SYZ", "SZZ", "SX", "SY", "SZ"}), // a name is used once
              "S(0 1 2 3 4 5) SX(6) SY(7) SZ(8)");
}

TEST(Components, ThatAreIncompleteOrNoneStayAlone)
{
    EXPECT_EQ(grouped({"U-x", "U-z"}), "U-x(0) U-z(1)");
    EXPECT_EQ(grouped({"U-x", "U_y", "U-z"}), "U-x(0) U_y(1) U-z(2)");
    EXPECT_EQ(grouped({"U-x", "U-Y", "U-z"}), "U-x(0) U-Y(1) U-z(2)");
    EXPECT_EQ(grouped({"box", "boy", "boz"}), "box(0) boy(1) boz(2)"); // words
    EXPECT_EQ(grouped({"x", "y", "z"}), "x(0) y(1) z(2)");             // nothing in common
    EXPECT_EQ(grouped({"-x", "-y", "-z"}), "-x(0) -y(1) -z(2)");
    EXPECT_EQ(grouped({"U-x", "U-y", "U-z", "U"}), "U-x(0) U-y(1) U-z(2) U(3)"); // the name is taken
}

TEST(Components, ValuesAreJoinedElementByElementAndSplitAgain)
{
    const double x[] = {1, 2}, y[] = {3, 4}, z[] = {5, 6};
    double joined[6] = {}, taken[2] = {};
    joinComponents<double>({x, y, z}, 2, joined);
    EXPECT_THAT(joined, ElementsAre(1, 3, 5, 2, 4, 6));
    splitComponent(joined, 2, 3, 1, taken);
    EXPECT_THAT(taken, ElementsAre(3, 4));
}

} // namespace
