#pragma once

#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace meridyn {

/// A writer and a reader of one name, which no other test uses.
class MemoryFiles : public ::testing::Test {
protected:
    MemoryFiles() : name(std::string("memory:") + ::testing::UnitTest::GetInstance()->current_test_info()->name()) {}
    ~MemoryFiles() override { KelMemoryStore::remove(name); }

    /// One zone per category: nodes 1 to 4 (1), edges 1 to 3 (2), faces 1 to 4 (3) and 5 to 6 (4), cells 1 to 3 (5).
    void startCase()
    {
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        declare(KEL_NODE_ZONE, {{1, 1, 4}});
        declare(KEL_EDGE_ZONE, {{2, 1, 3}});
        declare(KEL_FACE_ZONE, {{3, 1, 4}, {4, 5, 6}});
        declare(KEL_CELL_ZONE, {{5, 1, 3}});
        ASSERT_TRUE(writer.startWriting(name, KEL_CASE));
    }

    void startData()
    {
        ASSERT_TRUE(writer.startWriting(name, KEL_DATA));
        std::vector<short> phases;
        ASSERT_TRUE(writer.setPhaseNames({"air", "oil"}, phases));
        writer.startWritingPhase(1);
    }

    /// Ends what was written and opens the reader.
    void reopen(KelDataClass dataClass)
    {
        ASSERT_TRUE(writer.endWriting(dataClass));
        ASSERT_TRUE(reader.startReading(name, dataClass));
        EXPECT_EQ(writer.getErrors(false, true), std::vector<std::string>());
    }

    struct Zone {
        int id;
        unsigned64 first, last;
    };
    void declare(KelZoneCategory category, const std::vector<Zone>& zones)
    {
        std::vector<int> ids;
        for (const Zone& zone : zones)
            ids.push_back(zone.id);
        writer.setZoneIds(category, ids);
        for (const Zone& zone : zones) {
            writer.setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
            writer.setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        }
    }

    /// What a range getter of the reader stores.
    template <class T, class Getter>
    std::vector<T> read(Getter getter, unsigned64 first, unsigned64 last, unsigned64 capacity = 64) const
    {
        std::vector<T> values(capacity);
        values.resize((reader.*getter)(first, last, values.data(), capacity));
        return values;
    }

    using Ids = std::vector<unsigned64>;
    using Shorts = std::vector<short>;
    using Texts = std::vector<std::string>;

    std::string name;
    KelMemoryConsumer writer;
    KelMemoryProvider reader;
};

} // namespace meridyn
