#include "KelFormatConformance.h"
#include "KelFormatRegistry.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

// The memory format with one defect each: the suite must find every one of them.
namespace meridyn {
namespace {

using Id = unsigned64;

// ---- writers

struct DropsLastCell0 : KelMemoryConsumer {
    void setCell0sForFacesInRange(Id first, Id last, const Id* ids, Id count) override
    {
        std::vector<Id> changed(ids, ids + count);
        changed.back() = changed.front();
        KelMemoryConsumer::setCell0sForFacesInRange(first, last, changed.data(), count);
    }
};

struct IgnoresSecondRange : KelMemoryConsumer {
    void setNodeIdsForFacesInRange(Id first, Id last, const Id* ids, Id count) override
    {
        if (_calls++ != 1)
            KelMemoryConsumer::setNodeIdsForFacesInRange(first, last, ids, count);
    }
    int _calls = 0;
};

struct RoundsValues : KelMemoryConsumer {
    using KelMemoryConsumer::setValuesOfPhaseVariableForElementsInRange;
    void setValuesOfPhaseVariableForElementsInRange(Id first, Id last, const double* values, Id count) override
    {
        const std::vector<float> rounded(values, values + count);
        KelMemoryConsumer::setValuesOfPhaseVariableForElementsInRange(first, last, rounded.data(), count);
    }
};

struct CutsNames : KelMemoryConsumer {
    void writeStringDataForSet(const std::string& name, const std::string& text) override
    {
        KelMemoryConsumer::writeStringDataForSet(name.substr(0, 255), text);
    }
};

struct LosesFirstLogEntry : KelMemoryConsumer {
    void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass) override
    {
        entries.erase(entries.begin());
        KelMemoryConsumer::log(std::move(entries), dataClass);
    }
};

struct WritesAtOnce : KelMemoryConsumer {
    bool startWriting(KelDataClass dataClass) override
    {
        return KelMemoryConsumer::startWriting(dataClass) && KelMemoryConsumer::endWriting(dataClass) &&
               KelMemoryConsumer::startWriting(dataClass);
    }
};

struct EndsTwice : KelMemoryConsumer {
    bool endWriting(KelDataClass dataClass) override
    {
        KelMemoryConsumer::endWriting(dataClass);
        return true;
    }
};

struct RefusesCharacters : KelMemoryConsumer {
    using KelMemoryConsumer::setVariableForSetData;
    Id setVariableForSetData(const char*, Id) override { return 0; }
};

struct MixesLevels : KelMemoryConsumer {
    using KelMemoryConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& name,
                                                    std::vector<int>& zones, Id size) override
    {
        setTimeLevel(getTimeLevels().front());
        KelMemoryConsumer::startWritingPhaseVariableInZonesOfCategory(category, name, zones, size);
    }
};

// ---- readers

struct IgnoresRange : KelMemoryProvider {
    Id getCell1sForFacesInRange(Id first, Id last, Id* ids, Id capacity) const override
    {
        return KelMemoryProvider::getCell1sForFacesInRange(1, last - first + 1, ids, capacity);
    }
};

struct SwapsNodes : KelMemoryProvider {
    Id getNodeIdsForCellsInRange(Id first, Id last, Id* ids, Id capacity) const override
    {
        const Id count = KelMemoryProvider::getNodeIdsForCellsInRange(first, last, ids, capacity);
        if (count > 1)
            std::swap(ids[0], ids[1]);
        return count;
    }
};

struct OverrunsBuffer : KelMemoryProvider {
    Id getPartitionIdsForCellsInRange(Id first, Id last, int* ids, Id) const override
    {
        return KelMemoryProvider::getPartitionIdsForCellsInRange(first, last, ids, last - first + 1);
    }
};

struct GivesUnknownIds : KelMemoryProvider {
    Id getCell0sForFacesInRange(Id first, Id last, Id* ids, Id capacity) const override
    {
        const Id count = KelMemoryProvider::getCell0sForFacesInRange(first, last, ids, capacity);
        if (count > 0 || first == 0 || first != last)
            return count;
        ids[0] = 1;
        return 1;
    }
};

struct WrongType : KelMemoryProvider {
    KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, Id& size) override
    {
        const KelPlainDataType type = KelMemoryProvider::startReadingDataOfVariableForSet(name, size);
        return type == KEL_PLAIN_LONG ? KEL_PLAIN_SIGNED64 : type;
    }
};

struct WrongSingleElement : KelMemoryProvider {
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): what the bases of formats mend is wrong on purpose here
    short getFaceCountForCell(Id cell) const override { return KelProvider::getFaceCountForCell(cell); }
};

struct FalselyUniform : KelMemoryProvider {
    bool hasUniformNodeCountForEdgesInZone(int, short* count) const override
    {
        *count = 2;
        return true;
    }
};

struct StaysOpen : KelMemoryProvider {
    bool endReading(KelDataClass) override { return true; }
};

struct OpensAnything : KelMemoryProvider {
    bool startReading(KelDataClass dataClass) override
    {
        KelMemoryProvider::startReading(dataClass);
        return true;
    }
};

struct Row {
    const char* name;
    std::function<std::unique_ptr<KelFileConsumer>()> writer;
    std::function<std::unique_ptr<KelFileProvider>()> reader;
    const char* check; ///< one that must fail
};

void PrintTo(const Row& row, std::ostream* out)
{
    *out << row.name;
}

template <class T>
std::function<std::unique_ptr<KelFileConsumer>()> writer()
{
    return [] { return std::make_unique<T>(); };
}

template <class T>
std::function<std::unique_ptr<KelFileProvider>()> reader()
{
    return [] { return std::make_unique<T>(); };
}

const Row rows[] = {
    {"DropsLastCell0", writer<DropsLastCell0>(), nullptr, "mesh-by-range"},
    {"IgnoresSecondRange", writer<IgnoresSecondRange>(), nullptr, "mesh-in-pieces"},
    {"RoundsValues", writer<RoundsValues>(), nullptr, "special-values"},
    {"CutsNames", writer<CutsNames>(), nullptr, "sets-of-the-case"},
    {"LosesFirstLogEntry", writer<LosesFirstLogEntry>(), nullptr, "log"},
    {"WritesAtOnce", writer<WritesAtOnce>(), nullptr, "abandoned-writing"},
    {"EndsTwice", writer<EndsTwice>(), nullptr, "calls-while-nothing-is-written"},
    {"RefusesCharacters", writer<RefusesCharacters>(), nullptr, "set-data"},
    {"MixesLevels", writer<MixesLevels>(), nullptr, "time-levels"},
    {"IgnoresRange", nullptr, reader<IgnoresRange>(), "mesh-by-zone"},
    {"SwapsNodes", nullptr, reader<SwapsNodes>(), "forms-agree"},
    {"OverrunsBuffer", nullptr, reader<OverrunsBuffer>(), "small-buffers"},
    {"GivesUnknownIds", nullptr, reader<GivesUnknownIds>(), "ids-that-do-not-exist"},
    {"WrongType", nullptr, reader<WrongType>(), "sets-of-the-case"},
    {"WrongSingleElement", nullptr, reader<WrongSingleElement>(), "forms-agree"},
    {"FalselyUniform", nullptr, reader<FalselyUniform>(), "mesh-by-range"},
    {"StaysOpen", nullptr, reader<StaysOpen>(), "calls-while-nothing-is-read"},
    {"OpensAnything", nullptr, reader<OpensAnything>(), "recognition"},
};

class BrokenFormats : public ::testing::TestWithParam<Row> {
protected:
    KelFormat format = *KelFormatRegistry::instance().find("memory");
};

TEST_P(BrokenFormats, AreFound)
{
    const TemporaryFolder folder;
    if (GetParam().writer)
        format.makeWriter = GetParam().writer;
    if (GetParam().reader)
        format.makeReader = GetParam().reader;
    KelFormatConformance suite(format, folder.path());
    const KelConformanceResult result = suite.run(GetParam().check);
    EXPECT_FALSE(result.passed);
    EXPECT_NE(result.detail, "");
}

INSTANTIATE_TEST_SUITE_P(Conformance, BrokenFormats, ::testing::ValuesIn(rows),
                         [](const auto& row) { return row.param.name; });

TEST(Conformance, DeclaredLimitsAreNotAskedFor)
{
    KelFormat format = *KelFormatRegistry::instance().find("memory");
    const std::size_t all = KelFormatConformance(format, "").checks().size();
    format.writes &= ~formatFamily(KEL_FAMILY_PARTICLE_TRACKS);
    std::vector<std::string> checks = KelFormatConformance(format, "").checks();
    EXPECT_EQ(checks.size(), all - 1);
    EXPECT_EQ(std::count(checks.begin(), checks.end(), "particle-tracks"), 0);
    format.makeWriter = nullptr;
    EXPECT_EQ(KelFormatConformance(format, "").checks(), (std::vector<std::string>{"recognition"}));
    format.makeReader = nullptr;
    EXPECT_TRUE(KelFormatConformance(format, "").checks().empty());
}

TEST(Conformance, ReportsAsText)
{
    const TemporaryFolder folder;
    KelFormat format = *KelFormatRegistry::instance().find("memory");
    format.makeWriter = writer<LosesFirstLogEntry>();
    KelFormatConformance suite(format, folder.path());
    EXPECT_TRUE(suite.run("mesh-of-one-cell").passed);
    EXPECT_FALSE(suite.run("log").passed);
    EXPECT_EQ(suite.run("nonsense").detail, "there is no such check for the format 'memory'");
    EXPECT_EQ(suite.results().size(), 3U);
    const std::string text = suite.text();
    EXPECT_EQ(text.find("passed  mesh-of-one-cell\nFAILED  log\n        the log has "), 0U) << text;
    EXPECT_NE(text.find("\n1 passed, 2 failed\n"), std::string::npos) << text;
}

TEST(Conformance, RunsAllChecksAndTellsWhetherOneFailed)
{
    const TemporaryFolder folder;
    KelFormat format = *KelFormatRegistry::instance().find("memory");
    KelFormatConformance whole(format, folder.path());
    EXPECT_TRUE(whole.run()) << whole.text();
    EXPECT_EQ(whole.results().size(), whole.checks().size());
    format.makeWriter = writer<LosesFirstLogEntry>();
    KelFormatConformance broken(format, folder.path());
    EXPECT_FALSE(broken.run());
    EXPECT_EQ(broken.results().size(), broken.checks().size());
}

TEST(Conformance, PrintsNothing)
{
    const TemporaryFolder folder;
    KelFormatConformance suite(*KelFormatRegistry::instance().find("memory"), folder.path());
    ::testing::internal::CaptureStdout();
    suite.run("ids-that-do-not-exist"); // unknown zones make the frame print warnings
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(Conformance, AnExceptionIsAFailure)
{
    const TemporaryFolder folder;
    KelFormat format = *KelFormatRegistry::instance().find("memory");
    format.makeWriter = []() -> std::unique_ptr<KelFileConsumer> { throw std::runtime_error("no licence"); };
    KelFormatConformance suite(format, folder.path());
    EXPECT_EQ(suite.run("log").detail, "an exception: no licence");
}

} // namespace
} // namespace meridyn
