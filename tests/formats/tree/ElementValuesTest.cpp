#include "KelElementValues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace meridyn {
namespace {

constexpr unsigned64 largest = std::numeric_limits<unsigned64>::max();

std::vector<int> valuesOf(const KelElementValues& array, unsigned64 first, unsigned64 last, unsigned64 capacity = 64)
{
    std::vector<int> values(capacity);
    values.resize(array.get(first, last, {values.data(), capacity}));
    return values;
}

using Ints = std::vector<int>;

TEST(ElementValues, RangesComeInAnyOrderAndJoin)
{
    KelElementValues array;
    EXPECT_TRUE(array.put(5, 6, Ints{50, 60}));
    EXPECT_TRUE(array.put(1, 2, Ints{10, 20}));
    EXPECT_TRUE(array.put(3, 4, Ints{30, 40}));
    EXPECT_EQ(valuesOf(array, 1, 6), (Ints{10, 20, 30, 40, 50, 60}));
    EXPECT_EQ(valuesOf(array, 2, 5), (Ints{20, 30, 40, 50}));
    EXPECT_EQ(array.lastId(), 6U);
}

TEST(ElementValues, AMissingIdMakesTheRangeEmpty)
{
    KelElementValues array;
    array.put(1, 2, Ints{1, 2});
    array.put(4, 4, Ints{4});
    EXPECT_EQ(valuesOf(array, 1, 4), Ints{});
    EXPECT_EQ(valuesOf(array, 0, 1), Ints{});
    EXPECT_EQ(valuesOf(array, 4, 5), Ints{});
    EXPECT_EQ(valuesOf(array, 2, 1), Ints{});
    EXPECT_EQ(valuesOf(KelElementValues(), 1, largest), Ints{});
}

TEST(ElementValues, ASmallBufferGetsWholeElements)
{
    KelElementValues array;
    array.put(1, 3, Ints{1, 2, 3, 4, 5, 6});
    EXPECT_EQ(valuesOf(array, 1, 3, 5), (Ints{1, 2, 3, 4}));
    EXPECT_EQ(valuesOf(array, 1, 3, 1), Ints{});
    EXPECT_EQ(valuesOf(array, 1, 3, 0), Ints{});
}

TEST(ElementValues, LaterValuesReplaceEarlierOnes)
{
    KelElementValues array;
    array.put(1, 6, Ints{1, 2, 3, 4, 5, 6});
    array.put(3, 4, Ints{30, 40}); // within a run
    EXPECT_EQ(valuesOf(array, 1, 6), (Ints{1, 2, 30, 40, 5, 6}));
    array.put(6, 8, Ints{60, 70, 80}); // over its end
    EXPECT_EQ(valuesOf(array, 1, 8), (Ints{1, 2, 30, 40, 5, 60, 70, 80}));
    array.put(2, 7, Ints{-2, -3, -4, -5, -6, -7}); // over two runs
    EXPECT_EQ(valuesOf(array, 1, 8), (Ints{1, -2, -3, -4, -5, -6, -7, 80}));
    array.put(3, 3, std::vector<double>{2.5}); // of another type
    EXPECT_EQ(valuesOf(array, 1, 8), (Ints{1, -2, 2, -4, -5, -6, -7, 80}));
}

TEST(ElementValues, RaggedValuesFollowTheirCounts)
{
    KelElementValues counts, array;
    counts.put(1, 4, Ints{2, 0, 3, 1});
    EXPECT_TRUE(array.putRagged(1, 4, Ints{1, 2, 3, 4, 5, 6}, counts));
    EXPECT_EQ(valuesOf(array, 3, 3), (Ints{3, 4, 5}));
    EXPECT_EQ(valuesOf(array, 2, 2), Ints{});
    EXPECT_EQ(valuesOf(array, 1, 4, 5), (Ints{1, 2, 3, 4, 5})) << "the last element does not fit";
    EXPECT_EQ(valuesOf(array, 1, 4, 4), (Ints{1, 2})) << "nor does the third";
    EXPECT_TRUE(array.putRagged(3, 3, Ints{30, 40, 50}, counts));
    EXPECT_EQ(valuesOf(array, 1, 4), (Ints{1, 2, 30, 40, 50, 6})) << "cut in the middle";
    EXPECT_FALSE(array.putRagged(3, 4, Ints{1, 2, 3}, counts));
    EXPECT_FALSE(array.putRagged(4, 5, Ints{1}, counts)) << "no count for 5";
    EXPECT_EQ(valuesOf(array, 1, 4), (Ints{1, 2, 30, 40, 50, 6})) << "a refused call changes nothing";
}

TEST(ElementValues, WithoutCountsAllElementsHaveTheSameNumber)
{
    const KelElementValues none;
    KelElementValues array;
    EXPECT_TRUE(array.putRagged(1, 2, Ints{1, 2, 3, 4}, none));
    EXPECT_EQ(valuesOf(array, 2, 2), (Ints{3, 4}));
    EXPECT_FALSE(array.putRagged(3, 4, Ints{1, 2, 3}, none));
}

TEST(ElementValues, NegativeAndImpossibleCountsAreRefused)
{
    KelElementValues counts, array;
    counts.put(1, 3, Ints{-1, 3, 4});
    EXPECT_FALSE(array.putRagged(1, 2, Ints{1, 2}, counts));
    EXPECT_FALSE(array.putRagged(3, 3, Ints{1, 2, 3}, counts));
    counts.putUniform(1, largest, Ints{2});
    EXPECT_FALSE(array.putRagged(1, largest, Ints{1, 2}, counts));
    EXPECT_EQ(array.lastId(), 0U);
}

TEST(ElementValues, UniformValuesStandForAnyRange)
{
    KelElementValues array;
    EXPECT_TRUE(array.putUniform(1, largest, Ints{4}));
    EXPECT_EQ(valuesOf(array, largest - 1, largest), (Ints{4, 4}));
    EXPECT_EQ(array.uniformValue(1, largest), 4);
    EXPECT_TRUE(array.put(7, 7, Ints{5}));
    EXPECT_EQ(array.uniformValue(1, 6), 4);
    EXPECT_EQ(array.uniformValue(8, largest), 4);
    EXPECT_EQ(array.uniformValue(1, 7), std::nullopt);
    EXPECT_EQ(valuesOf(array, 6, 8), (Ints{4, 5, 4}));
}

TEST(ElementValues, UniformValueNeedsEveryIdAndOneValueEach)
{
    KelElementValues array;
    array.put(1, 3, Ints{2, 2, 2});
    array.put(5, 5, Ints{2});
    EXPECT_EQ(array.uniformValue(1, 3), 2);
    EXPECT_EQ(array.uniformValue(1, 5), std::nullopt);
    array.put(4, 4, Ints{2, 2});
    EXPECT_EQ(array.uniformValue(4, 4), std::nullopt);
    EXPECT_EQ(array.uniformValue(0, 0), std::nullopt);
}

TEST(ElementValues, RangesThatAreNoneAreRefused)
{
    KelElementValues array;
    EXPECT_FALSE(array.put(0, 0, Ints{1}));
    EXPECT_FALSE(array.put(3, 2, Ints{1}));
    EXPECT_FALSE(array.put(1, 2, Ints{1, 2, 3}));
    EXPECT_FALSE(array.put(1, 2, Ints{}));
    EXPECT_FALSE(array.put(1, 2, Ints{1, 2, 3, 4}, 1));
    EXPECT_FALSE(array.putUniform(0, 5, Ints{1}));
    EXPECT_FALSE(array.put(1, largest, Ints{1}));
    EXPECT_EQ(array.lastId(), 0U);
}

TEST(ElementValues, MissingIdsWithACountOf0HaveNothing)
{
    KelElementValues counts, array;
    counts.put(1, 4, Ints{0, 1, 0, 0});
    array.put(2, 2, Ints{7});
    std::vector<int> values(8, -1);
    EXPECT_EQ(array.get(1, 4, {values.data(), 8}, counts), 1U);
    EXPECT_EQ(values[0], 7);
    EXPECT_EQ(array.get(1, 5, {values.data(), 8}, counts), 0U) << "5 has no count";
    EXPECT_EQ(array.get(1, 4, {values.data(), 8}), 0U);
}

TEST(ElementValues, ValuesAreConvertedWithinTheirRange)
{
    EXPECT_EQ(convertedValue<int>(2.9), 2);
    EXPECT_EQ(convertedValue<int>(1e30), 2147483647);
    EXPECT_EQ(convertedValue<int>(-1e30F), -2147483647 - 1);
    EXPECT_EQ(convertedValue<unsigned char>(-5.0), 0);
    EXPECT_EQ(convertedValue<signed64>(std::nan("")), 0);
    EXPECT_EQ(convertedValue<unsigned64>(1e30), largest);
    EXPECT_EQ(convertedValue<double>(0.5F), 0.5);
    EXPECT_TRUE(std::isnan(convertedValue<float>(std::nan(""))));
}

TEST(ElementValues, SingleElementsShareAnArray)
{
    constexpr int count = 20000;
    KelElementValues inOrder, backwards, scattered;
    for (int n = 0; n < count; ++n) {
        const auto id = static_cast<unsigned64>(n + 1);
        const auto other = static_cast<unsigned64>(1 + static_cast<signed64>(n) * 7919 % count); // 7919 is prime
        inOrder.put(id, id, Ints{n});
        backwards.put(count + 1 - id, count + 1 - id, Ints{count - 1 - n});
        scattered.put(other, other, Ints{static_cast<int>(other) - 1});
    }
    EXPECT_EQ(inOrder.pieces().size(), 1U);
    EXPECT_LT(backwards.pieces().size(), count / 4U);
    EXPECT_LT(scattered.pieces().size(), count / 4U);
    Ints expected(count);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(valuesOf(inOrder, 1, count, count), expected);
    EXPECT_EQ(valuesOf(backwards, 1, count, count), expected);
    EXPECT_EQ(valuesOf(scattered, 1, count, count), expected);
}

TEST(ElementValues, SingleListsShareAnArray)
{
    KelElementValues counts, array;
    Ints expected;
    for (unsigned64 id = 1; id <= 1000; ++id) {
        const int length = static_cast<int>(id % 4);
        counts.put(id, id, Ints{length});
        const Ints list(static_cast<std::size_t>(length), static_cast<int>(id));
        ASSERT_TRUE(array.putRagged(id, id, list, counts));
        expected.insert(expected.end(), list.begin(), list.end());
    }
    EXPECT_EQ(counts.pieces().size(), 1U);
    EXPECT_EQ(valuesOf(array, 1, 1000, 4000), expected);
    EXPECT_EQ(valuesOf(array, 998, 999), (Ints{998, 998, 999, 999, 999}));
    EXPECT_EQ(array.pieces().size(), 750U) << "each of another length than the one before; a quarter is empty";
    array.putRagged(500, 502, Ints{1, 2, 2, 2}, KelElementValues());
    EXPECT_EQ(valuesOf(array, 499, 503), (Ints{499, 499, 499, 501, 502, 502, 503, 503, 503})) << "as it was";
    EXPECT_TRUE(array.putRagged(501, 502, Ints{-1, -2, -3}, counts));
    EXPECT_EQ(valuesOf(array, 499, 503), (Ints{499, 499, 499, -1, -2, -3, 503, 503, 503}));
}

TEST(ElementValues, ACopyDoesNotChangeWithItsOriginal)
{
    KelElementValues array;
    array.put(1, 3, Ints{1, 2, 3});
    const KelElementValues copy = array;
    array.put(2, 2, Ints{20});
    array.put(4, 4, Ints{4});
    EXPECT_EQ(valuesOf(copy, 1, 3), (Ints{1, 2, 3}));
    EXPECT_EQ(valuesOf(copy, 1, 4), Ints{});
    EXPECT_EQ(valuesOf(array, 1, 4), (Ints{1, 20, 3, 4}));
}

TEST(ElementValues, ABufferOfNoTypeGetsNothing)
{
    KelElementValues array;
    array.put(1, 3, Ints{1, 2, 3});
    int room[3] = {-1, -1, -1};
    EXPECT_EQ(array.get(1, 3, {room, 3, static_cast<KelPlainDataType>(99)}), 0U);
    EXPECT_EQ(room[0], -1);
}

TEST(ElementValues, PiecesOfARangeAreCutAtItsEnds)
{
    KelElementValues array;
    array.put(1, 4, Ints{1, 2, 3, 4});
    array.putUniform(6, 9, Ints{5});
    const auto pieces = array.pieces(3, 7);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].first, 3U);
    EXPECT_EQ(pieces[0].last, 4U);
    EXPECT_EQ(*static_cast<const int*>(pieces[0].values.data), 3);
    EXPECT_EQ(pieces[0].values.count, 2U);
    EXPECT_EQ(pieces[1].first, 6U);
    EXPECT_EQ(pieces[1].last, 7U);
    EXPECT_TRUE(array.pieces(5, 5).empty());
}

TEST(ElementValues, PiecesMakeTheSameAgain)
{
    KelElementValues counts, array, again;
    const short three = 3;
    counts.put(1, 4, Ints{2, 0, 1, 3});
    array.putRagged(1, 4, std::vector<double>{1, 2, 3, 4, 5, 6}, counts);
    array.putUniform(10, largest, copyOf({&three, 1}));
    array.put(11, 12, Ints{7, 8});
    for (const KelElementValues::Piece& piece : array.pieces()) {
        if (piece.isUniform)
            again.putUniform(piece.first, piece.last, copyOf(piece.values));
        else
            again.put(piece.first, piece.last, copyOf(piece.values), piece.width);
    }
    const std::vector<KelElementValues::Piece> pieces = array.pieces();
    ASSERT_EQ(pieces.size(), 6U) << "1, 3, 4, 10, 11 to 12, and those behind; 2 has no values";
    EXPECT_EQ(pieces[0].values.type, KEL_PLAIN_DOUBLE);
    EXPECT_EQ(pieces[2].width, 3U);
    EXPECT_EQ(pieces[2].values.count, 3U);
    EXPECT_EQ(pieces[4].width, 1U);
    EXPECT_EQ(pieces[4].values.count, 2U);
    EXPECT_TRUE(pieces[5].isUniform);
    EXPECT_EQ(pieces[5].first, 13U);
    EXPECT_EQ(pieces[5].last, largest);
    EXPECT_EQ(pieces[5].values.count, 1U);
    for (const unsigned64 id : {1ULL, 3ULL, 4ULL, 10ULL, 11ULL, 12ULL, 13ULL, 1ULL << 40})
        EXPECT_EQ(valuesOf(again, id, id), valuesOf(array, id, id)) << id;
}

} // namespace
} // namespace meridyn
