#include "MemoryFiles.h"

#include "KelCompare.h"
#include "KelGeneratedProvider.h"
#include "KelTransfer.h"

namespace meridyn {
namespace {

class MemoryTransfer : public MemoryFiles, public ::testing::WithParamInterface<std::string> {};

TEST_P(MemoryTransfer, LosesNothingAndPrintsNothing)
{
    const std::string to = "memory:transfer";
    KelGeneratedProvider source, again;
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        source.setFile(GetParam(), dataClass);
        again.setFile(GetParam(), dataClass);
        writer.setFile(to, dataClass);
        reader.setFile(to, dataClass);
    }
    ::testing::internal::CaptureStdout();
    KelTransfer transfer(source, writer);
    transfer.setChunkSize(7);
    const bool isCopied = transfer.copyCase() && transfer.copyData();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    ASSERT_TRUE(isCopied) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "");

    KelCompare compare(again, reader);
    ASSERT_TRUE(compare.run()) << compare.problem();
    EXPECT_EQ(compare.text(), "");
    EXPECT_TRUE(compare.isComplete());
    KelMemoryStore::remove(to);
}

INSTANTIATE_TEST_SUITE_P(Boxes, MemoryTransfer,
                         ::testing::Values("box:3x2x4 fields:2 levels:3 phases:2 partitions:2",
                                           "box:2x2x2 cells:poly periodic zones:2", "box:2x2x4 hanging fields:1",
                                           "box:2x1x2 cells:pyramid fields:1"),
                         [](const auto& row) { return "Box" + std::to_string(row.index); });

} // namespace
} // namespace meridyn
