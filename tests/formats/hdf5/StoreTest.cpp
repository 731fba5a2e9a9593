// The parts of the files by themselves: arrays in ranges, compressed or not, and the tables of rows.
#include "formats/hdf5/arrays/ArrayStore.h"
#include "formats/hdf5/arrays/ChunkCodec.h"
#include "formats/hdf5/arrays/Coverage.h"
#include "formats/hdf5/arrays/ElementMap.h"
#include "formats/hdf5/arrays/ListTable.h"
#include "formats/hdf5/arrays/RunLengthArray.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"
#include "Hdf5TestSupport.h"

#include <gmock/gmock.h>
#include <numeric>
#include <random>

using namespace hdf5test;
using namespace meridyn::hdf5;

TEST(Coverage, IntervalsMergeAndLeaveGaps)
{
    Coverage coverage;
    coverage.add(10, 20);
    coverage.add(30, 40);
    coverage.add(20, 25);
    EXPECT_EQ(coverage.intervals(), (std::vector<Coverage::Interval>{{10, 25}, {30, 40}}));
    EXPECT_TRUE(coverage.covers(11, 25));
    EXPECT_FALSE(coverage.covers(24, 31));
    EXPECT_TRUE(coverage.touches(24, 31));
    EXPECT_FALSE(coverage.touches(25, 30));
    EXPECT_EQ(coverage.gaps(0, 50), (std::vector<Coverage::Interval>{{0, 10}, {25, 30}, {40, 50}}));
    EXPECT_EQ(coverage.gaps(12, 35), (std::vector<Coverage::Interval>{{25, 30}}));
    coverage.add(0, 100);
    EXPECT_TRUE(coverage.gaps(0, 100).empty());
}

TEST(ElementMap, RowsFollowEachOtherAcrossGapsOfIds)
{
    const ElementMap map({{21, 30}, {1, 5}, {6, 10}, {0, 3}, {9, 8}, {28, 32}});
    EXPECT_EQ(map.rowCount(), 22u);
    EXPECT_EQ(map.toTable(), (std::vector<std::uint64_t>{1, 10, 21, 32}));
    EXPECT_EQ(map.idOf(10), 21u);
    EXPECT_FALSE(map.contains(10, 21));
    EXPECT_TRUE(map.contains(2, 10));
    EXPECT_FALSE(map.contains(0, 0));
    EXPECT_FALSE(map.contains(5, 4));
    std::uint64_t row = 0;
    EXPECT_TRUE(map.forEachPiece(22, 25, [&row](std::uint64_t first, std::uint64_t, std::uint64_t) { row = first; }));
    EXPECT_EQ(row, 11u);
    EXPECT_THROW(ElementMap::fromTable({5, 4}), FormatError);
    EXPECT_THROW(ElementMap::fromTable({5, 8, 8, 9}), FormatError);
    EXPECT_THROW(ElementMap::fromTable({0, 8}), FormatError);
}

TEST(Names, AnyBytesSurvive)
{
    for (const std::string& name : {std::string(), std::string("."), std::string(".."), std::string("a/b%c\0d", 7),
                                    std::string("%41"), std::string("\xff\xfe")}) {
        const std::string encoded = encodeName(name);
        EXPECT_FALSE(encoded.empty());
        EXPECT_EQ(encoded.find('/'), std::string::npos);
        EXPECT_EQ(encoded.find('\0'), std::string::npos);
        EXPECT_EQ(decodeName(encoded), name);
    }
    EXPECT_EQ(decodeName(encodeAttributeName("kel_id")), "kel_id");
    EXPECT_NE(encodeAttributeName("kel_id"), "kel_id");
}

TEST(Codec, ShuffleAgreesWithItsDefinition)
{
    for (const std::size_t size : {1, 2, 4, 8})
        for (const std::size_t count : {0, 1, 15, 16, 17, 100}) {
            std::vector<unsigned char> bytes(size * count);
            std::iota(bytes.begin(), bytes.end(), static_cast<unsigned char>(1));
            std::vector<unsigned char> shuffled(bytes.size());
            shuffleBytes(bytes.data(), shuffled.data(), count, size);
            for (std::size_t i = 0; i < count; ++i)
                for (std::size_t b = 0; b < size; ++b)
                    ASSERT_EQ(shuffled[b * count + i], bytes[i * size + b]) << size << " " << count;
            std::vector<unsigned char> back(bytes.size());
            unshuffleBytes(shuffled.data(), back.data(), count, size);
            EXPECT_EQ(back, bytes);
        }
}

class Arrays : public ::testing::TestWithParam<int> {};

TEST_P(Arrays, AnyRangesInAnyOrderComeBack)
{
    const Folder folder;
    std::mt19937_64 random(7);
    for (const std::uint64_t columns : {1, 3}) {
        const std::uint64_t rows = 300000;
        std::vector<unsigned64> values(rows * columns);
        for (unsigned64& value : values)
            value = random() % 1000000;
        const auto file = Hdf5File::create(folder / "a.h5");
        const auto array = ArrayWriter::create(*file, file->id(), "a", {Stored::U32, rows, columns}, GetParam());
        std::vector<std::pair<std::uint64_t, std::uint64_t>> pieces;
        for (std::uint64_t at = 0; at < values.size();) {
            const std::uint64_t n = std::min<std::uint64_t>(1 + random() % 200000, values.size() - at);
            pieces.emplace_back(at, n);
            at += n;
        }
        std::shuffle(pieces.begin(), pieces.end(), random);
        for (const auto& [at, n] : pieces)
            array->write(at, n, sourceOf(values.data() + at, Stored::U32));
        std::vector<unsigned64> back(5);
        array->read(1000, 5, targetOf(back.data(), Stored::U32));
        EXPECT_EQ(back[4], values[1004]);
        EXPECT_THROW(array->write(values.size() - 1, 2, sourceOf(values.data(), Stored::U32)), FormatError);
        array->finish();
        file->commit();
        const auto reading = Hdf5File::openForReading(folder / "a.h5");
        const auto reader = ArrayReader::open(*reading, reading->id(), "a");
        EXPECT_EQ(reader->readAll<unsigned64>(), values);
        for (int i = 0; i < 50; ++i) {
            const std::uint64_t at = random() % values.size();
            const std::uint64_t n = std::min<std::uint64_t>(random() % 100, values.size() - at);
            std::vector<double> some(n);
            reader->read(at, n, some.data());
            for (std::uint64_t k = 0; k < n; ++k)
                ASSERT_EQ(some[k], static_cast<double>(values[at + k]));
        }
        EXPECT_THROW(reader->read(values.size(), 1, back.data()), FormatError);
    }
}

INSTANTIATE_TEST_SUITE_P(Plain, Arrays, ::testing::Values(0));
INSTANTIATE_TEST_SUITE_P(Compressed, Arrays, ::testing::Values(1, 9));

TEST(Arrays, NothingIsStoredAsNoneOfTheTenTypes)
{
    const Folder folder;
    const auto file = Hdf5File::create(folder / "a.h5");
    writeArray(*file, file->id(), "a", std::vector<int>{1, 2, 3});
    file->commit();
    const auto reading = Hdf5File::openForReading(folder / "a.h5");
    int back[] = {7, 8, 9};
    const auto tooLarge = static_cast<KelPlainDataType>(10);
    ArrayReader::open(*reading, reading->id(), "a")->read(0, 3, KelBuffer(static_cast<void*>(back), 3, tooLarge));
    EXPECT_THAT(back, ::testing::ElementsAre(7, 8, 9));
}

TEST(Arrays, ConversionKeepsToTheLimits)
{
    const double wild[] = {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), 3.9, -0.0};
    int ints[5];
    sourceOf(wild, Stored::I32).convert(wild, ints, 5);
    EXPECT_EQ(std::vector<int>(ints, ints + 5), (std::vector<int>{INT_MAX, INT_MIN, 0, 3, 0}));
    std::uint64_t wide[5];
    sourceOf(wild, Stored::U64).convert(wild, wide, 2);
    EXPECT_EQ(wide[0], UINT64_MAX);
    EXPECT_EQ(wide[1], 0u);
}

// Rows in several blocks: what fits is found in one pass, and what is not read is not looked at.
TEST(ListTable, GivesTheWholeRowsThatFit)
{
    const Folder folder;
    constexpr std::uint64_t rows = 100000;
    std::vector<std::uint64_t> offsets(rows + 1);
    std::vector<std::uint64_t> lengths(rows, 2);
    for (std::uint64_t row = 0; row <= rows; ++row)
        offsets[row] = 2 * row;
    {
        const auto file = Hdf5File::create(folder / "l.h5");
        writeArray(*file, file->id(), "offsets", offsets);
        file->commit();
    }
    lengths[60000] = 3;
    const auto file = Hdf5File::openForReading(folder / "l.h5");
    std::uint64_t looked = 0;
    const auto read = [&](std::uint64_t row, std::uint64_t count, std::uint64_t* to) {
        std::copy_n(lengths.begin() + static_cast<std::ptrdiff_t>(row), count, to);
        looked += count;
    };
    const ListTable table(ArrayReader::open(*file, file->id(), "offsets"), read, rows, 2 * rows);
    const auto found = [&table](std::uint64_t row, std::uint64_t count, std::uint64_t capacity) {
        const ListTable::Stretch stretch = table.find(row, count, capacity);
        return std::make_pair(stretch.first, stretch.count);
    };
    using Pair = std::pair<std::uint64_t, std::uint64_t>;
    EXPECT_EQ(found(5, 1, 2), Pair(10, 2));
    EXPECT_EQ(found(5, 1, 1), Pair(10, 0));
    EXPECT_EQ(found(5, 50000, 200000), Pair(10, 100000));
    EXPECT_EQ(found(5, 50000, 80001), Pair(10, 80000));
    looked = 0;
    EXPECT_EQ(found(0, rows, 7), Pair(0, 6));
    EXPECT_LE(looked, 33000U);
    try {
        table.find(0, rows, UINT64_MAX);
        FAIL() << "row 60000 has another length";
    } catch (const FormatError& error) {
        EXPECT_STREQ(error.what(), "/offsets lets row 60000 go from 120000 to 120002 of 200000 values, but its length "
                                   "is 3");
    }
    EXPECT_THROW(ListTable(ArrayReader::open(*file, file->id(), "offsets"), read, rows, 2 * rows + 1), FormatError);
    EXPECT_THROW(ListTable(ArrayReader::open(*file, file->id(), "offsets"), read, rows - 1, 2 * rows), FormatError);
}

// Runs save looking at the values, so they are held against them before they are believed.
TEST(RunLengthArray, RunsThatTheValuesContradictAreRefused)
{
    const struct {
        std::vector<std::int64_t> runs;
        const char* words; ///< of the error; null: none
    } rows[] = {
        {{0, 4, 7}, nullptr},
        {{0, 5, 7}, "/a holds 1 in row 4, but /a_runs says 7"},
        {{0, 4, 8}, "/a holds 7 in row 0, but /a_runs says 8"},
        {{3, 3, 7}, nullptr}, // is not asked for
        {{0, 0, 7}, "/a_runs has 0 rows from row 0 on, stretches of 6 rows expected"},
        {{4, 3, 7}, "/a_runs has 3 rows from row 4 on, stretches of 6 rows expected"},
        {{-1, 3, 7}, "/a_runs has 3 rows from row -1 on, stretches of 6 rows expected"},
    };
    for (const auto& row : rows) {
        const Folder folder;
        {
            const auto file = Hdf5File::create(folder / "r.h5");
            writeArray(*file, file->id(), "a", std::vector<int>{7, 7, 7, 7, 1, 2});
            writeArray(*file, file->id(), "a_runs", row.runs, 3);
            file->commit();
        }
        const auto file = Hdf5File::openForReading(folder / "r.h5");
        std::string error;
        try {
            const auto reader = RunLengthArrayReader::open(*file, file->id(), "a", 6);
            const std::optional<int> expected = row.runs[0] == 0 ? std::optional<int>(7) : std::nullopt;
            EXPECT_EQ(reader->uniformValue(0, 4), expected);
            EXPECT_EQ(reader->uniformValue(0, 4), expected); // again
        } catch (const FormatError& found) {
            error = found.what();
        }
        EXPECT_EQ(error, row.words == nullptr ? "" : row.words);
    }
}

TEST(RunLengthArray, UniformStretchesAndGapsComeBack)
{
    const Folder folder;
    const auto file = Hdf5File::create(folder / "r.h5");
    RunLengthArrayWriter one(*file, file->id(), "one", Stored::I16, 100, 0, 0);
    one.setUniform(50, 50, 4);
    const std::vector<short> fours(50, 4);
    one.set(0, 50, fours.data());
    one.finish({{0, 100}});
    RunLengthArrayWriter mixed(*file, file->id(), "mixed", Stored::I16, 100, -1, 0);
    const short different[] = {1, 2, 3, 3, 3};
    mixed.setUniform(0, 20, 7);
    mixed.set(18, 5, different);
    mixed.setUniform(40, 10, 9);
    mixed.setUniform(20, 1, 5); // on top of the array
    mixed.finish({{0, 18}, {18, 23}, {20, 23}, {40, 50}, {45, 55}});
    // more runs than are kept in memory
    const std::uint64_t many = 100000;
    RunLengthArrayWriter alternating(*file, file->id(), "alternating", Stored::I32, many, 0, 0);
    for (std::uint64_t row = 0; row < many; ++row) {
        const int value = row % 2 == 0 ? 1 : 200000;
        alternating.set(row, 1, &value);
    }
    alternating.finish({});
    file->commit();

    const auto reading = Hdf5File::openForReading(folder / "r.h5");
    EXPECT_FALSE(hasLink(reading->id(), "one")); // one number, no array
    const auto oneBack = RunLengthArrayReader::open(*reading, reading->id(), "one", 100);
    EXPECT_EQ(oneBack->uniformValue(3, 97), 4);
    const auto back = RunLengthArrayReader::open(*reading, reading->id(), "mixed", 100);
    std::vector<int> values(100);
    back->read(0, 100, values.data());
    std::vector<int> expected(100, -1);
    std::fill(expected.begin(), expected.begin() + 18, 7);
    const int part[] = {1, 2, 5, 3, 3};
    std::copy(part, part + 5, expected.begin() + 18);
    std::fill(expected.begin() + 40, expected.begin() + 50, 9);
    EXPECT_EQ(values, expected);
    EXPECT_EQ(back->uniformValue(2, 16), 7);
    EXPECT_EQ(back->uniformValue(40, 10), 9);
    EXPECT_EQ(back->uniformValue(18, 5), std::nullopt);
    EXPECT_TRUE(back->covers(18, 5));
    EXPECT_FALSE(back->covers(22, 2));
    const auto alternatingBack = RunLengthArrayReader::open(*reading, reading->id(), "alternating", many);
    std::vector<int> all(many);
    alternatingBack->read(0, many, all.data());
    EXPECT_EQ(all[1], 200000);
    EXPECT_EQ(all[many - 2], 1);
    EXPECT_EQ(RunLengthArrayReader::open(*reading, reading->id(), "none", 100), nullptr);
}
