#include "Hdf5TestSupport.h"

#include <type_traits>

using namespace hdf5test;

namespace {

template <class T>
struct PlainType;
// clang-format off
template <> struct PlainType<unsigned char> { static constexpr auto value = KEL_PLAIN_UNSIGNED_CHAR; };
template <> struct PlainType<char>          { static constexpr auto value = KEL_PLAIN_CHAR; };
template <> struct PlainType<short>         { static constexpr auto value = KEL_PLAIN_SHORT; };
template <> struct PlainType<unsigned int>  { static constexpr auto value = KEL_PLAIN_UNSIGNED_INT; };
template <> struct PlainType<int>           { static constexpr auto value = KEL_PLAIN_INT; };
template <> struct PlainType<long>          { static constexpr auto value = KEL_PLAIN_LONG; };
template <> struct PlainType<unsigned64>    { static constexpr auto value = KEL_PLAIN_UNSIGNED64; };
template <> struct PlainType<signed64>      { static constexpr auto value = KEL_PLAIN_SIGNED64; };
template <> struct PlainType<float>         { static constexpr auto value = KEL_PLAIN_FLOAT; };
template <> struct PlainType<double>        { static constexpr auto value = KEL_PLAIN_DOUBLE; };
// clang-format on

/// Twelve values with the limits of the type among them.
template <class T>
std::vector<T> samples()
{
    std::vector<T> values;
    for (int i = 0; i < 10; ++i)
        values.push_back(static_cast<T>(i * 3));
    values.push_back(std::numeric_limits<T>::max());
    values.push_back(std::numeric_limits<T>::lowest());
    return values;
}

template <class T>
class AllTypes : public ::testing::Test {};
using ValueTypes =
    ::testing::Types<unsigned char, char, short, unsigned int, int, long, unsigned64, signed64, float, double>;
TYPED_TEST_SUITE(AllTypes, ValueTypes);

} // namespace

TYPED_TEST(AllTypes, OfSetsComeBack)
{
    using T = TypeParam;
    const Folder folder;
    const std::vector<T> values = samples<T>();
    const KelPlainDataType type = PlainType<T>::value;
    Writer writer;
    ASSERT_TRUE(writer.startWriting(folder / "s.case.kel", KEL_CASE));
    writer.startWritingSet("set/1", KEL_FACE_ZONE);
    writer.setSizesAndMinMaxIdsForSet({2, 0, 2}, {5, 0, 1ULL << 40}, {9, 0, 1ULL << 41});
    const unsigned64 ids[] = {9, 5, 1ULL << 41, 1ULL << 40};
    writer.startWritingIdsForSet();
    writer.setIdsForSetInRange(3, 4, ids + 2, 2);
    writer.setIdsForSetInRange(1, 2, ids, 2);
    writer.endWritingIdsForSet();
    writer.startWritingDataOfVariableForSet("v", {2, 0, 2}, 3, type);
    writer.setDataOfVariableForSetInRange(2, 4, values.data() + 3, 9);
    writer.setDataOfVariableForSetInRange(1, 1, values.data(), 3);
    writer.endWritingDataOfVariableForSet();
    writer.startWritingSizeOfVariableForSet("l", {}, KEL_PLAIN_SHORT);
    const short lengths[] = {0, 7};
    writer.setSizeOfVariableForSetInRange(3, 4, lengths, 2);
    writer.setSizeOfVariableForSetInRange(1, 2, static_cast<short>(2));
    writer.endWritingSizeOfVariableForSet();
    writer.startWritingVariableLengthedDataOfVariableForSet("l", {}, type);
    writer.setVariableLengthedDataOfVariableForSetInRange(3, 4, values.data() + 4, 7);
    writer.setVariableLengthedDataOfVariableForSetInRange(1, 2, values.data(), 4);
    writer.endWritingVariableLengthedDataOfVariableForSet();
    writer.writeOtherDataForSet("other", values.data(), values.size());
    writer.writeOtherDataForSet("none", values.data(), 0);
    writer.writeStringDataForSet("text", std::string("a\0b", 3));
    writer.endWritingSet();
    ASSERT_TRUE(writer.endWriting(KEL_CASE)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "s.case.kel", KEL_CASE)) << reader.errors();
    std::vector<std::string> names;
    EXPECT_TRUE(reader.getSetNames(KEL_FACE_ZONE, names));
    EXPECT_EQ(names, std::vector<std::string>{"set/1"});
    EXPECT_FALSE(reader.getSetNames(KEL_CELL_ZONE, names));
    EXPECT_FALSE(reader.startReadingSet("set"));
    ASSERT_TRUE(reader.startReadingSet("set/1"));
    EXPECT_EQ(reader.getCategoryOfSet(), KEL_FACE_ZONE);
    std::vector<unsigned64> sizes;
    std::vector<unsigned64> smallest;
    std::vector<unsigned64> largest;
    reader.getSizesAndMinMaxIdsForSet(sizes, smallest, largest);
    EXPECT_EQ(sizes, (std::vector<unsigned64>{2, 0, 2}));
    EXPECT_EQ(largest, (std::vector<unsigned64>{9, 0, 1ULL << 41}));
    std::vector<unsigned64> back(4);
    EXPECT_EQ(reader.getIdsForSetInRange(1, 4, back.data(), 4), 4u);
    EXPECT_EQ(back, std::vector<unsigned64>(ids, ids + 4));
    unsigned64 perMember = 0;
    EXPECT_EQ(reader.startReadingDataOfVariableForSet("v", perMember), type);
    EXPECT_EQ(perMember, 3u);
    std::vector<T> read(12);
    EXPECT_EQ(reader.getDataOfVariableForSetInRange(1, 4, read.data(), 12), 12u);
    EXPECT_EQ(read, values);
    EXPECT_EQ(reader.getDataOfVariableForSetInRange(2, 4, read.data(), 8), 6u); // whole members
    EXPECT_EQ(reader.startReadingSizeOfVariableLengthedVarForSet("l"), KEL_PLAIN_SHORT);
    std::vector<int> found(4);
    EXPECT_EQ(reader.getSizeOfVariableForSetInRange(1, 4, found.data(), 4), 4u);
    EXPECT_EQ(found, (std::vector<int>{2, 2, 0, 7}));
    EXPECT_EQ(reader.startReadingVariableLengthedDataOfVariableForSet("l"), type);
    EXPECT_EQ(reader.getVariableLengthedDataOfVariableForSetInRange(2, 4, read.data(), 12), 9u);
    EXPECT_EQ(read[0], values[2]);
    EXPECT_EQ(reader.getDataTypeOfOtherDataForSet("other"), type);
    EXPECT_EQ(reader.getOtherDataForSet("other", static_cast<T*>(nullptr), 0), 12u);
    EXPECT_EQ(reader.getOtherDataForSet("other", read.data(), 12), 12u);
    EXPECT_EQ(read, values);
    std::vector<double> asDouble(12);
    EXPECT_EQ(reader.getOtherDataForSet("other", asDouble.data(), 12), 12u);
    EXPECT_EQ(asDouble[9], 27);
    std::string text;
    EXPECT_EQ(reader.getStringDataForSet("text", text), 3u);
    EXPECT_EQ(text, std::string("a\0b", 3));
    reader.getOtherVariablesInSet(names);
    EXPECT_EQ(names, (std::vector<std::string>{"other", "none"}));
    reader.endReadingSet();
    EXPECT_EQ(reader.getCategoryOfSet(), -1);
    EXPECT_EQ(reader.errors(), "");
}

TYPED_TEST(AllTypes, OfSetDataAndTracksComeBack)
{
    using T = TypeParam;
    const Folder folder;
    const std::vector<T> values = samples<T>();
    const KelPlainDataType type = PlainType<T>::value;
    Writer writer;
    short phase = 0;
    int variable = 0;
    writer.addPhaseName("fuel", phase);
    writer.addPhaseVariable(phase, "diameter", variable);
    ASSERT_TRUE(writer.startWriting(folder / "d.data.kel", KEL_DATA));
    writer.startWritingTimeLevel(3);
    writer.startWritingPhase(phase);
    writer.startWritingSetData("injection-0", 3);
    const unsigned64 ids[] = {100, 1ULL << 50, 3};
    EXPECT_EQ(writer.setIdsForSetData(ids, 2), 2u);
    EXPECT_EQ(writer.setIdsForSetData(ids + 2, 1), 1u);
    writer.startWritingVariableForSetData("mass", 4, type);
    EXPECT_EQ(writer.setVariableForSetData(values.data(), 8), 8u);
    EXPECT_EQ(writer.setVariableForSetData(values.data() + 8, 4), 4u);
    writer.endWritingVariableForSetData();
    writer.startWritingVariableLengthVariableForSetData("path", type, KEL_PLAIN_INT);
    const int lengths[] = {5, 0};
    const unsigned64 last[] = {7};
    EXPECT_EQ(writer.setVariableLengthVariableForSetData(values.data(), 5, lengths, 2), 5u);
    EXPECT_EQ(writer.setVariableLengthVariableForSetData(values.data() + 5, 7, last, 1), 7u);
    writer.endWritingVariableLengthVariableForSetData();
    writer.writeOtherDataForSetData("other", values.data(), 12);
    writer.writeStringDataForSetData("name", "nozzle");
    writer.endWritingSetData();
    ASSERT_TRUE(writer.startWritingParticleTracks(phase, 4, KEL_PARTITIONED_POST, -1));
    writer.startWritingPartiticleTrackGroup("group");
    writer.startWritingChunkInPartiticleTrackGroup(-7, 6);
    writer.setValuesOfParticleTrackVariable("x", values.data(), 12);
    writer.setValuesOfParticleTrackVariable(variable, values.data(), 6);
    writer.endWritingChunkInPartiticleTrackGroup();
    writer.startWritingChunkInPartiticleTrackGroup(2, 0);
    writer.setValuesOfParticleTrackVariable("x", values.data(), 0);
    writer.endWritingChunkInPartiticleTrackGroup();
    writer.endWritingPartiticleTrackGroup();
    writer.endWritingParticleTracks();
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();

    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "d.data.kel", KEL_DATA)) << reader.errors();
    EXPECT_TRUE(reader.hasParticles(phase));
    EXPECT_TRUE(reader.startReadingParticles("fuel"));
    std::vector<std::string> names;
    reader.getInjectionNames(names);
    EXPECT_EQ(names, std::vector<std::string>{"injection-0"});
    reader.getVariablesOfInjection("injection-0", names);
    EXPECT_EQ(names, (std::vector<std::string>{"mass", "path"}));
    unsigned64 members = 0;
    ASSERT_TRUE(reader.startReadingSetData("injection-0", members));
    EXPECT_EQ(members, 3u);
    std::vector<unsigned64> back;
    EXPECT_TRUE(reader.getIdsForSetData(back));
    EXPECT_EQ(back, std::vector<unsigned64>(ids, ids + 3));
    std::vector<T> read;
    unsigned64 perMember = 0;
    EXPECT_TRUE(reader.getDataOfConstantLengthVarForSetData("mass", read, perMember));
    EXPECT_EQ(perMember, 4u);
    EXPECT_EQ(read, values);
    EXPECT_TRUE(reader.getDataOfVariableLengthVarForSetData("path", read));
    EXPECT_EQ(read, values);
    EXPECT_EQ(reader.getDataTypeOfDataForSetData("path"), type);
    EXPECT_EQ(reader.getDataTypeOfSizeForSetData("path"), KEL_PLAIN_INT);
    std::vector<short> found;
    EXPECT_TRUE(reader.getSizeOfVariableLengthVarForSetData("path", found));
    EXPECT_EQ(found, (std::vector<short>{5, 0, 7}));
    EXPECT_TRUE(reader.getOtherDataForSetData("other", read));
    EXPECT_EQ(read, values);
    std::string text;
    EXPECT_EQ(reader.getStringDataForSetData("name", text), 6u);

    EXPECT_TRUE(reader.hasParticleTracks());
    EXPECT_TRUE(reader.hasParticleTracksInActivePhase());
    EXPECT_FALSE(reader.hasParticleTracks(phase, 4, KEL_DEFAULT_TARGET, -1));
    EXPECT_EQ(reader.getPhasesWithParticleTracks(4, KEL_PARTITIONED_POST, -1), std::vector<short>{phase});
    reader.startReadingParticleTracks(phase, 4, KEL_PARTITIONED_POST, -1);
    reader.getParticleTrackGroups(names);
    EXPECT_EQ(names, std::vector<std::string>{"group"});
    reader.startReadingParticleTrackGroup("group");
    std::vector<int> chunks;
    reader.getChunksInParticleTrackGroup(chunks);
    EXPECT_EQ(chunks, (std::vector<int>{-7, 2}));
    reader.startReadingChunkInParticleTrackGroup(-7);
    EXPECT_EQ(reader.getPointCountOfParticleTrackChunk(), 6u);
    reader.getParticleTrackVariables(names);
    EXPECT_EQ(names, (std::vector<std::string>{"diameter", "x"}));
    EXPECT_EQ(reader.getDataTypeOfParticleTrackVariable("x"), type);
    EXPECT_EQ(reader.getValueCountOfParticleTrackVariable("x"), 12u);
    read.assign(12, T());
    EXPECT_EQ(reader.getValuesOfParticleTrackVariable("x", read.data(), 12), 12u);
    EXPECT_EQ(read, values);
    EXPECT_EQ(reader.getValuesOfParticleTrackVariable(variable, read.data(), 12), 6u);
    reader.endReadingChunkInParticleTrackGroup();
    EXPECT_EQ(reader.getPointCountOfParticleTrackChunk(), 0u);
    EXPECT_EQ(reader.errors(), "");
}

TEST(Sets, IncompleteOnesAreReported)
{
    const struct {
        const char* name;
        void (*fill)(Writer&);
        const char* words;
    } cases[] = {
        {"ids",
         [](Writer& w) {
             const unsigned64 id = 1;
             w.setIdsForSetInRange(2, 2, &id, 1);
         },
         "lacks the values of the positions 1 to 1"},
        {"position",
         [](Writer& w) {
             const unsigned64 ids[] = {1, 2, 3};
             w.setIdsForSetInRange(1, 3, ids, 3);
         },
         "has 2 rows, the positions 1 to 3 are not among them"},
        {"values before lengths",
         [](Writer& w) { w.startWritingVariableLengthedDataOfVariableForSet("v", {}, KEL_PLAIN_INT); },
         "before their lengths"},
        {"type", [](Writer& w) { w.startWritingDataOfVariableForSet("v", {}, 1, static_cast<KelPlainDataType>(10)); },
         "'v' has the value type 10, 0 to 9 expected"},
    };
    for (const auto& row : cases) {
        const Folder folder;
        Writer writer;
        ASSERT_TRUE(writer.startWriting(folder / "i.case.kel", KEL_CASE));
        writer.startWritingSet("set", KEL_CELL_ZONE);
        writer.setSizesAndMinMaxIdsForSet({2}, {1}, {2});
        row.fill(writer);
        writer.endWritingSet();
        EXPECT_FALSE(writer.endWriting(KEL_CASE)) << row.name;
        const std::string errors = writer.errors();
        EXPECT_NE(errors.find(row.words), std::string::npos) << row.name << ": " << errors;
        EXPECT_NE(errors.find(folder / "i.case.kel"), std::string::npos) << row.name << ": " << errors;
        EXPECT_TRUE(folder.names().empty()) << row.name;
    }
}

TEST(Sets, OfDataBelongToTheirTimeLevel)
{
    const Folder folder;
    Writer writer;
    ASSERT_TRUE(writer.startWriting(folder / "l.data.kel", KEL_DATA));
    for (const int level : {1, 2}) {
        writer.startWritingTimeLevel(level);
        writer.startWritingSet("set" + std::to_string(level), KEL_CELL_ZONE);
        writer.setSizesAndMinMaxIdsForSet({}, {}, {});
        writer.endWritingSet();
    }
    ASSERT_TRUE(writer.endWriting(KEL_DATA)) << writer.errors();
    Reader reader;
    ASSERT_TRUE(reader.startReading(folder / "l.data.kel", KEL_DATA));
    std::vector<std::string> names;
    for (const int level : {2, 1}) {
        reader.startReadingTimeLevel(level);
        EXPECT_TRUE(reader.getSetNames(names));
        EXPECT_EQ(names, std::vector<std::string>{"set" + std::to_string(level)});
    }
}
