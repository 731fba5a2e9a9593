// Cases copied to another format, and held against the reader again: what the frames say about reading in pieces.
#include "KelCompare.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"
#include "KelMemoryStore.h"
#include "KelPolyMeshProvider.h"
#include "KelTransfer.h"

#include <gtest/gtest.h>

#include <sstream>

using namespace meridyn;

namespace {

class PolyMeshTransfer : public ::testing::TestWithParam<std::string> {};

TEST_P(PolyMeshTransfer, LosesNothing)
{
    const std::string from = std::string(KEL_SOURCE_DIR) + "/tests/data/polymesh/" + GetParam();
    const std::string to = std::string("memory:") + GetParam();
    KelPolyMeshProvider source, again;
    KelMemoryConsumer writer;
    KelMemoryProvider reader;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        source.setFile(from, dataClass);
        again.setFile(from, dataClass);
        writer.setFile(to, dataClass);
        reader.setFile(to, dataClass);
    }
    KelTransfer transfer(source, writer);
    transfer.setChunkSize(1001);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    std::istringstream losses(transfer.losses().text());
    for (std::string line; std::getline(losses, line);) // of what is read nothing; what is not read is named
        EXPECT_NE(line.find("not read: "), std::string::npos) << line;
    KelCompare compare(again, reader);
    ASSERT_TRUE(compare.run()) << compare.problem();
    EXPECT_EQ(compare.text(), "");
    KelMemoryStore::remove(to);
}

INSTANTIATE_TEST_SUITE_P(Cases, PolyMeshTransfer,
                         ::testing::Values("bubble-column", "mixed-cells", "mixer-zones", "sphere-snappy"),
                         [](const auto& row) { return "Case" + std::to_string(row.index); });

} // namespace
