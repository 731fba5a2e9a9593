#include "RichModel.h"

#include "KelCompare.h"
#include "KelFormatRegistry.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace meridyn {
namespace {

std::string differences(KelProvider& one, KelProvider& other)
{
    KelCompare compare(one, other);
    return compare.run() ? compare.text() : compare.problem();
}

/// Copies a model into memory under a name; what was lost, or the problem.
std::string copied(KelProvider& source, const std::string& name,
                   const std::function<void(KelTransfer&)>& prepare = nullptr)
{
    KelMemoryConsumer target;
    setBoth(target, name);
    KelTransfer transfer(source, target);
    if (prepare)
        prepare(transfer);
    return transfer.copyCase() && transfer.copyData() ? transfer.losses().text() : transfer.problem();
}

// ---- everything arrives

class Lines : public ::testing::TestWithParam<std::string> {};

TEST_P(Lines, ArriveUnchanged)
{
    KelGeneratedProvider box;
    KelMemoryProvider copy;
    setBoth(box, GetParam());
    setBoth(copy, "memory:copy");
    EXPECT_EQ(copied(box, "memory:copy"), "");
    EXPECT_EQ(differences(box, copy), "");
}

INSTANTIATE_TEST_SUITE_P(Transfer, Lines,
                         ::testing::Values("box:1x1x1", "box:5x4x3 zones:3", "box:3x3x3 cells:tet fields:2",
                                           "box:2x3x4 cells:prism periodic levels:3 fields:1",
                                           "box:3x2x2 cells:pyramid partitions:2 phases:3 fields:2",
                                           "box:3x3x3 cells:poly", "box:4x3x4 hanging zones:2",
                                           "box:3x3x4 hanging periodic partitions:3 fields:3 phases:2 levels:2"));

TEST(Transfer, CarriesEveryFamily)
{
    makeRichModel("memory:rich");
    KelMemoryProvider rich, copy;
    setBoth(rich, "memory:rich");
    setBoth(copy, "memory:copy");
    EXPECT_EQ(copied(rich, "memory:copy"), "");
    EXPECT_EQ(differences(rich, copy), "");
}

TEST(Transfer, ChunkSizeChangesNothing)
{
    makeRichModel("memory:rich");
    KelMemoryProvider rich, copy;
    setBoth(rich, "memory:rich");
    setBoth(copy, "memory:copy");
    for (const unsigned64 chunk : {0, 1, 2, 3, 7, 1000000}) {
        EXPECT_EQ(copied(rich, "memory:copy", [chunk](KelTransfer& t) { t.setChunkSize(chunk); }), "") << chunk;
        EXPECT_EQ(differences(rich, copy), "") << chunk;
    }
}

TEST(Transfer, EveryFormatGivesBackWhatItWasGiven)
{
    makeRichModel("memory:rich");
    const TemporaryFolder folder;
    for (const KelFormat& format : KelFormatRegistry::instance().formats()) {
        if (!format.makeWriter || !format.makeReader)
            continue;
        const std::string name = format.prefix + (folder / ("rich-" + format.name));
        KelMemoryProvider rich;
        setBoth(rich, "memory:rich");
        const auto writer = format.makeWriter();
        const KelFormatFiles target = format.files(name, true);
        writer->setFile(target.caseFile, KEL_CASE);
        writer->setFile(target.dataFile, KEL_DATA);
        KelTransfer transfer(rich, *writer);
        transfer.setTargetFamilies(format.writes);
        ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << format.name << ": " << transfer.problem();
        const bool carriesAll = transfer.losses().empty();
        const auto reader = format.makeReader();
        const KelFormatFiles written = format.files(name, false);
        reader->setFile(written.caseFile, KEL_CASE);
        reader->setFile(written.dataFile, KEL_DATA);
        EXPECT_TRUE(transfer.verify(*reader)) << format.name << ": " << transfer.problem();
        if (carriesAll) {
            EXPECT_EQ(transfer.losses().text(), "") << format.name;
        }
    }
}

// ---- losses

struct Lost {
    KelFormatFamily family;
    const char* lines;
};

// clang-format off
const Lost lost[] = {
    {KEL_FAMILY_COORDINATES, "coordinates: zone 1 'nodes': not carried by the format\n"},
    {KEL_FAMILY_EDGES, "edges: zone 20: not carried by the format\n"},
    {KEL_FAMILY_SHADOW_FACES, "shadow faces: zone 3 'x-min': not carried by the format\nshadow faces: zone 4 'x-max': not carried by the format\n"},
    {KEL_FAMILY_INTERFACE_DATA, "interface data: zone 5 'y-min': not carried by the format\n"},
    {KEL_FAMILY_CHILD_FACES, "child faces: zone 9 'parents': not carried by the format\n"},
    {KEL_FAMILY_CELL_TYPES, "cell types: zone 10 'cells-1': not carried by the format\ncell types: zone 11 'cells-2': not carried by the format\n"},
    {KEL_FAMILY_CELL_NODES, "cell nodes: zone 10 'cells-1': not carried by the format\ncell nodes: zone 11 'cells-2': not carried by the format\n"},
    {KEL_FAMILY_CELL_FACES, "cell faces: zone 10 'cells-1': not carried by the format\ncell faces: zone 11 'cells-2': not carried by the format\n"},
    {KEL_FAMILY_CELL_PARTITIONS, "partitions: zone 10 'cells-1': not carried by the format\npartitions: zone 11 'cells-2': not carried by the format\n"},
    {KEL_FAMILY_CHILD_CELLS, "child cells: zone 10 'cells-1': not carried by the format\n"},
    {KEL_FAMILY_CASE_SECTIONS, "case sections: 'heat': not carried by the format\n"},
    {KEL_FAMILY_ZONE_ADJACENCY, "zone adjacency: face and cell zones: not carried by the format\n"},
    {KEL_FAMILY_LOCAL_IDS, "local ids: zone 10 'cells-1': not carried by the format\n"},
    {KEL_FAMILY_PHASES, "phases: 'phase-1': not carried by the format\nphases: 'phase-2': not carried by the format\n"},
    {KEL_FAMILY_ATTRIBUTES, "attributes: 'Material' of phase 'phase-1': not carried by the format\n"
                            "attributes: 'Dataset Name' of variable 'field-1' of phase 'phase-1': not carried by the format\n"
                            "attributes: 'Long Name' of variable 'field-1' of phase 'phase-1': not carried by the format\n"
                            "attributes: 'Units' of variable 'field-1' of phase 'phase-1': not carried by the format\n"
                            "attributes: 'Long Name' of variable 'field-2' of phase 'phase-1': not carried by the format\n"
                            "attributes: 'Long Name' of variable 'field-1' of phase 'phase-2': not carried by the format\n"
                            "attributes: 'Long Name' of variable 'field-2' of phase 'phase-2': not carried by the format\n"},
    {KEL_FAMILY_TIME_LEVELS, "time levels: time level 1: not carried by the format\ntime levels: time level 2: not carried by the format\n"},
    {KEL_FAMILY_SETS, "sets: 'set of the case': not carried by the format\nsets: 'set of the data', time level 3: not carried by the format\n"},
    {KEL_FAMILY_SET_DATA, "set data: 'injection' of phase 'phase-2', time level 3: not carried by the format\n"},
    {KEL_FAMILY_PARTICLE_TRACKS, "particle tracks: phase 'phase-2', mesh 1, time level 3: not carried by the format\n"},
    {KEL_FAMILY_SETTINGS, "settings: group 'group/one' of the case: not carried by the format\nsettings: group 'settings' of the case: not carried by the format\nsettings: group 'timeLevels' of the data: not carried by the format\nsettings: group 'group' of the data: not carried by the format\n"},
    {KEL_FAMILY_LOG, "log: 1 entry of the case: not carried by the format\nlog: 1 entry of the data: not carried by the format\n"},
    {KEL_FAMILY_LOCATIONS, "locations: 1 part: not carried by the format\n"},
};
// clang-format on

TEST(Transfer, LossesAreNamed)
{
    makeRichModel("memory:rich");
    for (const Lost& row : lost) {
        KelMemoryProvider rich;
        setBoth(rich, "memory:rich");
        const KelFormatFamilies others = allFormatFamilies & ~formatFamily(row.family);
        std::string text = copied(rich, "memory:copy", [others](KelTransfer& t) { t.setTargetFamilies(others); });
        EXPECT_EQ(text, row.lines) << formatFamilyName(row.family);
    }
}

TEST(Transfer, OnlyZonesWithPropertiesLoseThem)
{
    RichWriter plain;
    KelMemoryProvider source;
    setBoth(plain, "memory:plain");
    setBoth(source, "memory:plain");
    plain.setZoneIds(KEL_NODE_ZONE, {1});
    plain.setZoneIds(KEL_FACE_ZONE, {5});
    plain.setZoneIds(KEL_CELL_ZONE, {10, 11});
    ASSERT_TRUE(plain.KelFileConsumer::startWriting(KEL_CASE));
    plain.setZoneStringInfo(5, KEL_ZONE_STRING_0, "wall");
    plain.setCellZoneInfo(11, KEL_CELL_ZONE_INFO_1, 3);
    ASSERT_TRUE(plain.KelMemoryConsumer::endWriting(KEL_CASE));
    KelMemoryConsumer target;
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    transfer.setTargetFamilies(allFormatFamilies & ~formatFamily(KEL_FAMILY_ZONE_PROPERTIES));
    EXPECT_TRUE(transfer.copyCase()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "zone properties: zone 5 'wall': not carried by the format\n"
                                        "zone properties: zone 11: not carried by the format\n");
}

TEST(Transfer, WithoutTimeLevelsTheLastOneArrives)
{
    KelGeneratedProvider box;
    setBoth(box, "box:2x2x2 fields:1 levels:3");
    constexpr KelFormatFamilies others = allFormatFamilies & ~formatFamily(KEL_FAMILY_TIME_LEVELS);
    copied(box, "memory:copy", [](KelTransfer& t) { t.setTargetFamilies(others); });
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    EXPECT_EQ(copy.getTimeLevels(), std::vector<int>{3});
}

struct RefusesTracks : KelMemoryConsumer {
    bool startWritingParticleTracks(short, int, KelTargetCategory, int) override { return false; }
    using KelMemoryConsumer::setVariableForSetData;
    unsigned64 setVariableForSetData(const long*, unsigned64) override { return 0; }
};

TEST(Transfer, WhatTheWriterRefusesIsALoss)
{
    makeRichModel("memory:rich");
    KelMemoryProvider rich;
    RefusesTracks target;
    setBoth(rich, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(rich, target);
    EXPECT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(),
              "set data: 'values of type 5' of set data 'injection' of phase 'phase-2', time level 3: refused by the "
              "writer\n"
              "particle tracks: phase 'phase-2', mesh 1, time level 3: refused by the writer\n");
}

TEST(Transfer, VerifyFindsWhatTheTargetChanged)
{
    makeRichModel("memory:rich");
    makeRichModel("memory:other", nullptr, [](RichWriter& writer) { writer.addMixtureValue(3.5); });
    KelMemoryProvider rich, same, other, missing;
    KelMemoryConsumer target;
    setBoth(rich, "memory:rich");
    setBoth(same, "memory:copy");
    setBoth(other, "memory:other");
    setBoth(missing, "memory:missing");
    setBoth(target, "memory:copy");
    KelTransfer transfer(rich, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData());
    EXPECT_TRUE(transfer.verify(same));
    EXPECT_TRUE(transfer.losses().empty());
    EXPECT_FALSE(transfer.verify(missing));
    EXPECT_EQ(transfer.problem(), "memory:missing: there is no such file");
    EXPECT_TRUE(transfer.verify(other));
    EXPECT_EQ(transfer.problem(), "");
    ASSERT_FALSE(transfer.losses().empty());
    const KelLoss& loss = transfer.losses().losses()[0];
    EXPECT_EQ(loss.family, KEL_FAMILY_VARIABLES);
    EXPECT_EQ(loss.reason, KelLossReason::Changed);
    EXPECT_EQ(loss.zone, std::optional<int>(10));
    EXPECT_EQ(loss.levels, std::vector<int>{3});
    EXPECT_EQ(loss.line(), "variables: variable 'density' of phase '<Mixture>', zone 10 'cells-1', time level 3: "
                           "changed: 3.25 became 3.5");
}

// ---- time levels

TEST(Transfer, ChosenTimeLevelsOnly)
{
    KelGeneratedProvider box;
    KelMemoryProvider copy;
    KelMemoryConsumer target;
    setBoth(box, "box:2x2x2 fields:1 levels:4");
    setBoth(copy, "memory:copy");
    setBoth(target, "memory:copy");
    KelTransfer transfer(box, target);
    transfer.setTimeLevels({4, 2});
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    std::vector<int> levels = copy.getTimeLevels();
    std::sort(levels.begin(), levels.end());
    EXPECT_EQ(levels, (std::vector<int>{2, 4}));
    EXPECT_TRUE(copy.endReading(KEL_DATA));
    KelMemoryProvider readBack;
    setBoth(readBack, "memory:copy");
    EXPECT_TRUE(transfer.verify(readBack));
    EXPECT_EQ(transfer.losses().text(), ""); // levels 1 and 3 were not wanted
}

TEST(Transfer, AnUnknownTimeLevelIsAProblem)
{
    KelGeneratedProvider box;
    setBoth(box, "box:2x2x2 fields:1 levels:4");
    KelMemoryStore::remove("memory:copy");
    EXPECT_EQ(copied(box, "memory:copy",
                     [](KelTransfer& t) {
                         t.setTimeLevels({2, 5});
                     }),
              "the source has no time level 5");
    EXPECT_EQ(KelMemoryStore::find("memory:copy", KEL_DATA), nullptr);
    EXPECT_FALSE(box.isReadingData());
}

// ---- progress, problems, memory

/// Notes how its operations are called.
struct WatchedTarget : KelMemoryConsumer {
    bool endWriting(KelDataClass dataClass) override
    {
        ++ends;
        return KelMemoryConsumer::endWriting(dataClass);
    }
    void setNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override
    {
        largest = std::max(largest, count);
        KelMemoryConsumer::setNodeIdsForFacesInRange(first, last, ids, count);
    }
    using KelMemoryConsumer::setCoordinatesForNodesInRange;
    void setCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, const double* xyz, unsigned64 count) override
    {
        largest = std::max(largest, count);
        KelMemoryConsumer::setCoordinatesForNodesInRange(first, last, xyz, count);
    }
    void setTypesForCellsInRange(unsigned64 first, unsigned64 last, const KelCellType* types, unsigned64 count) override
    {
        largest = std::max(largest, count);
        KelMemoryConsumer::setTypesForCellsInRange(first, last, types, count);
    }
    int ends = 0;
    unsigned64 largest = 0;
};

TEST(Transfer, StaysWithinTheChunk)
{
    KelGeneratedProvider box;
    WatchedTarget target;
    setBoth(box, "box:6x6x6 hanging");
    setBoth(target, "memory:copy");
    KelTransfer transfer(box, target);
    transfer.setChunkSize(50);
    ASSERT_TRUE(transfer.copyCase());
    EXPECT_LE(target.largest, 50U);
    EXPECT_GT(target.largest, 40U);
    target.largest = 0;
    transfer.setChunkSize(1); // one element at least
    ASSERT_TRUE(transfer.copyCase());
    EXPECT_EQ(target.largest, 4U);
}

TEST(Transfer, ProgressTellsAndCancels)
{
    KelGeneratedProvider box;
    WatchedTarget target;
    setBoth(box, "box:6x6x6 fields:1");
    setBoth(target, "memory:cancelled");
    KelTransfer transfer(box, target);
    std::vector<KelTransferProgress> told;
    transfer.setProgress([&told](const KelTransferProgress& progress) {
        told.push_back(progress);
        return progress.task != "cell 0 of faces";
    });
    EXPECT_FALSE(transfer.copyCase());
    EXPECT_TRUE(transfer.wasCancelled());
    EXPECT_EQ(transfer.problem(), "cancelled at cell 0 of faces");
    EXPECT_EQ(target.ends, 0);
    EXPECT_EQ(KelMemoryStore::find("memory:cancelled", KEL_CASE), nullptr);
    EXPECT_FALSE(box.isReadingData());
    ASSERT_GT(told.size(), 2U);
    EXPECT_EQ(told[0].task, "zones");
    EXPECT_EQ(told[1].task, "coordinates");
    EXPECT_EQ(told[1].elementsDone, 343U);
    EXPECT_EQ(told[1].elementsTotal, 343U);
    EXPECT_EQ(told[1].bytes, 343U * 24);
    for (std::size_t n = 1; n < told.size(); ++n) {
        EXPECT_GE(told[n].bytes, told[n - 1].bytes);
        EXPECT_LE(told[n].elementsDone, told[n].elementsTotal);
    }
    transfer.setProgress(nullptr);
    EXPECT_TRUE(transfer.copyCase());
    EXPECT_FALSE(transfer.wasCancelled());
    EXPECT_EQ(transfer.problem(), "");
}

struct ShortOfCells : KelGeneratedProvider {
    unsigned64 getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids,
                                        unsigned64 room) const override
    {
        const unsigned64 found = KelGeneratedProvider::getCell0sForFacesInRange(first, last, ids, room);
        return first == last ? found : found - 1;
    }
};

struct NegativeCounts : KelGeneratedProvider {
    bool hasUniformNodeCountForFacesInRange(unsigned64, unsigned64, short*) const override { return false; }
    unsigned64 getNodeCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64) const override
    {
        std::fill(counts, counts + (last - first + 1), short{-3});
        return last - first + 1;
    }
};

struct ListsSetsOnly : KelGeneratedProvider {
    using KelGeneratedProvider::getSetNames;
    bool getSetNames(KelDataClass, std::vector<std::string>& names) const override
    {
        names = {"ghost"};
        return true;
    }
};

TEST(Transfer, AReaderThatBreaksItsWordIsAProblem)
{
    const auto problemOf = [](KelGeneratedProvider&& source) {
        WatchedTarget target;
        setBoth(source, "box:2x2x2");
        setBoth(target, "memory:broken");
        KelTransfer transfer(source, target);
        EXPECT_FALSE(transfer.copyCase());
        EXPECT_EQ(target.ends, 0);
        EXPECT_FALSE(source.isReadingData());
        return transfer.problem();
    };
    EXPECT_EQ(problemOf(ShortOfCells()),
              "cell 0 of faces of zone 2 'interior', ids 1 to 12: the reader gave 11 values, expected 12");
    EXPECT_EQ(problemOf(NegativeCounts()), "nodes of faces of zone 2 'interior': the reader gave a count of -3");
    EXPECT_EQ(problemOf(ListsSetsOnly()), "set 'ghost': the reader lists it but does not open it");
    EXPECT_EQ(KelMemoryStore::find("memory:broken", KEL_CASE), nullptr);
}

TEST(Transfer, ProblemsAtTheEndsAreTheOwnersWords)
{
    KelGeneratedProvider box, bad;
    KelMemoryConsumer target;
    KelConsumer bare;
    setBoth(box, "box:2x2x2");
    setBoth(bad, "box:2x2");
    setBoth(target, "memory:copy");
    KelTransfer unreadable(bad, target);
    EXPECT_FALSE(unreadable.copyCase());
    EXPECT_NE(unreadable.problem().find("box:2x2: expected"), std::string::npos) << unreadable.problem();
    KelTransfer unwritable(box, bare);
    EXPECT_FALSE(unwritable.copyCase());
    EXPECT_EQ(unwritable.problem(), "the writer could not open the target");
    EXPECT_FALSE(box.isReadingData());
}

KelLoss lossOf(KelFormatFamily family, const std::string& item, const std::string& text, std::vector<int> levels = {})
{
    KelLoss loss;
    loss.family = family;
    loss.item = item;
    loss.text = text;
    loss.levels = std::move(levels);
    return loss;
}

TEST(LossReport, OneLinePerLoss)
{
    KelLossReport report;
    EXPECT_TRUE(report.empty());
    EXPECT_EQ(report.text(), "");
    report.add(lossOf(KEL_FAMILY_SHADOW_FACES, "zone 7 'wall'", "not carried by the format"));
    report.add(lossOf(KEL_FAMILY_LOG, "2 entries", "refused by the writer"));
    report.add(lossOf(KEL_FAMILY_COUNT, "the source", "its reader does not tell what it leaves out"));
    EXPECT_FALSE(report.empty());
    EXPECT_EQ(report.losses().size(), 3U);
    EXPECT_EQ(report.text(), "shadow faces: zone 7 'wall': not carried by the format\n"
                             "log: 2 entries: refused by the writer\n"
                             "the source: its reader does not tell what it leaves out\n");
}

TEST(LossReport, OneLossAtSeveralTimeLevelsIsOne)
{
    KelLossReport report;
    for (const int level : {3, 1, 3})
        report.add(lossOf(KEL_FAMILY_SETS, "'probe'", "refused", {level}));
    report.add(lossOf(KEL_FAMILY_SETS, "'other'", "refused", {1}));
    EXPECT_EQ(report.text(), "sets: 'probe', time levels 3 and 1: refused\nsets: 'other', time level 1: refused\n");
    report.add(lossOf(KEL_FAMILY_SETS, "'probe'", "refused", {9}));
    EXPECT_EQ(report.losses()[0].when(), "time levels 3, 1 and 9");
    for (const int level : {20, 40})
        report.add(lossOf(KEL_FAMILY_SETS, "'probe'", "refused", {level}));
    EXPECT_EQ(report.losses()[0].when(), "5 time levels from 1 to 40");
}

} // namespace
} // namespace meridyn
