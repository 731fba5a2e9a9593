// Two threads, each with objects of its own, share nothing but what the process does once, which is guarded.
#include "KelCompare.h"
#include "KelGeneratedProvider.h"
#include "KelLocationModel.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"
#include "KelTransfer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace meridyn {
namespace {

constexpr int rounds = 5;

/// Runs the work in two threads at once, told apart by a number, 1 or 2.
void runTwice(const std::function<void(int)>& work)
{
    std::atomic<int> arrived{0};
    std::vector<std::thread> threads;
    for (int number = 1; number <= 2; ++number) {
        threads.emplace_back([&, number] {
            for (++arrived; arrived < 2;) // neither is through before the other begins
                std::this_thread::yield();
            for (int round = 0; round < rounds; ++round)
                work(number);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

void setFiles(KelFileIO& files, const std::string& name)
{
    files.setFile(name, KEL_CASE);
    files.setFile(name, KEL_DATA);
}

TEST(TwoThreads, WriteReadAndCompareDifferentMeshes)
{
    const std::string boxes[] = {"", "box:3x2x4 fields:2 levels:2", "box:2x2x3 cells:poly fields:1"};
    runTwice([&boxes](int number) {
        const std::string file = "memory:thread-" + std::to_string(number);
        KelGeneratedProvider source, again;
        KelMemoryConsumer writer;
        KelMemoryProvider reader;
        setFiles(source, boxes[number]);
        setFiles(again, boxes[number]);
        setFiles(writer, file);
        setFiles(reader, file);
        KelTransfer transfer(source, writer);
        EXPECT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
        EXPECT_EQ(transfer.losses().text(), "");

        KelCompare compare(again, reader);
        EXPECT_TRUE(compare.run()) << compare.problem();
        EXPECT_EQ(compare.text(), "");
        EXPECT_TRUE(compare.isComplete());
        EXPECT_TRUE(KelMemoryStore::remove(file));
    });
}

/// A writer whose messages and registration can be reached.
class Writer : public KelMemoryConsumer {
public:
    using KelBase::getMessageRegistrar;
};

TEST(TwoThreads, KeepZonesAndMessagesApart)
{
    runTwice([](int number) {
        Writer writer;
        const int zone = 10 * number;
        writer.setZoneIds(KEL_CELL_ZONE, {zone, zone + 1});
        writer.setZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, 1);
        writer.setZoneSizeInfo(zone, KEL_ZONE_LAST_ID, 100 * unsigned64(number));
        for (int i = 0; i < number; ++i)
            writer.setZoneSizeInfo(zone, KelZoneSizeType(99), 0); // posts a warning

        unsigned64 count = 0;
        writer.getZoneSizeInfo(zone, KEL_ZONE_ELEMENT_COUNT, count);
        EXPECT_EQ(count, 100 * unsigned64(number));
        std::vector<int> zones;
        writer.getZoneIds(KEL_CELL_ZONE, zones);
        EXPECT_EQ(zones, (std::vector<int>{zone, zone + 1}));
        EXPECT_EQ(writer.getWarnings(false, true).size(), std::size_t(number));
    });
}

TEST(TwoThreads, KeepSettingsTreesApart)
{
    runTwice([](int number) {
        const KelSetting root = KelSetting::get("root");
        for (int i = 0; i < 20; ++i) {
            const std::string path = "group" + std::to_string(i) + "/value";
            root.getAttributeInt(path, true) = 100 * number + i;
            root.getAttributeStringVector("texts", true) = std::vector<std::string>(i, std::to_string(number));
        }
        const KelSetting copy = KelSetting::fromSettingString(root.toSettingString());
        ASSERT_TRUE(copy.isValid());
        EXPECT_EQ(copy.groupCount(), 20);
        EXPECT_EQ(copy.group(19).attribute("value").toInt(), 100 * number + 19);
        EXPECT_EQ(copy.attribute("texts").toStringVector(), std::vector<std::string>(19, std::to_string(number)));
    });
}

TEST(TwoThreads, KeepLocationModelsApart)
{
    runTwice([](int number) {
        KelLocationModel model;
        int part = 0, body = 0;
        model.createPart(3, "part", part);
        for (int i = 0; i < 10 * number; ++i)
            EXPECT_TRUE(model.createBody(part, "body" + std::to_string(i), body));
        KelLocationModel copy;
        EXPECT_TRUE(copy.reset(model.state()));
        EXPECT_TRUE(copy.findBody(part, "body9", body));
        EXPECT_EQ(copy.findBody(part, "body19", body), number == 2);
    });
}

} // namespace
} // namespace meridyn
