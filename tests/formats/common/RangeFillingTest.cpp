#include "RangeFilling.h"

#include <gtest/gtest.h>

#include <vector>

namespace meridyn {
namespace {

TEST(RangeFilling, CountsWhatItHasStored)
{
    double room[3] = {-1, -1, -1};
    const auto square = [](unsigned64 id) { return id * id; };
    EXPECT_EQ(fillSingle(4, 5, {room, 3}, square), 2U);
    EXPECT_EQ(room[1], 25);
    EXPECT_EQ(fillSingle(1, 9, {room, 3}, square), 3U);
}

TEST(RangeFilling, StoresNothingInABufferOfNoType)
{
    double room[3] = {-1, -1, -1};
    const KelBuffer buffer(room, 3, static_cast<KelPlainDataType>(99));
    const std::vector<int> list = {1, 2};
    EXPECT_EQ(fillSingle(1, 3, buffer, [](unsigned64 id) { return id; }), 0U);
    EXPECT_EQ(fillLists(1, 1, buffer, [&](unsigned64) { return std::pair(list.begin(), list.end()); }), 0U);
    EXPECT_EQ(room[0], -1);
}

} // namespace
} // namespace meridyn
