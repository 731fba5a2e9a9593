// Arrays that a client gives for a part of a zone: the file keeps which elements have values, and a 0 that was given is
// told from one that was not.
#include "Hdf5TestSupport.h"

#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"

using namespace hdf5test;

namespace {

struct Hdf5Files {
    const Folder folder;
    std::string name = folder / "p.case.kel";
    KelHdf5Consumer writer;
    KelHdf5Provider reader;
};

struct MemoryFiles {
    std::string name = "memory:parts";
    KelMemoryConsumer writer;
    KelMemoryProvider reader;
};

/// Faces 1 to 6 (zone 3) and cells 1 to 6 (zone 4).
template <class Files>
class Parts : public ::testing::Test {
protected:
    Files files;

    void SetUp() override
    {
        KelFormatConsumer& writer = files.writer;
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        const std::pair<KelZoneCategory, int> zones[] = {{KEL_NODE_ZONE, 1}, {KEL_FACE_ZONE, 3}, {KEL_CELL_ZONE, 4}};
        for (const auto& [category, id] : zones) {
            writer.setZoneIds(category, {id});
            writer.setZoneSizeInfo(id, KEL_ZONE_FIRST_ID, 1);
            writer.setZoneSizeInfo(id, KEL_ZONE_LAST_ID, 6);
        }
        ASSERT_TRUE(writer.startWriting(files.name, KEL_CASE));
    }

    void reopen()
    {
        ASSERT_TRUE(files.writer.endWriting(KEL_CASE));
        ASSERT_TRUE(files.reader.startReading(files.name, KEL_CASE));
        EXPECT_FALSE(files.writer.hasError());
    }

    /// What a getter of the reader gives for a range.
    template <class T, class Getter>
    std::vector<T> read(Getter getter, unsigned64 first, unsigned64 last)
    {
        std::vector<T> values(16);
        const KelProvider& reader = files.reader;
        values.resize((reader.*getter)(first, last, values.data(), values.size()));
        return values;
    }
};

using Formats = ::testing::Types<Hdf5Files, MemoryFiles>;
struct FormatNames {
    template <class Files>
    static std::string GetName(int)
    {
        return std::is_same_v<Files, Hdf5Files> ? "Hdf5" : "Memory";
    }
};
TYPED_TEST_SUITE(Parts, Formats, FormatNames);

using Ids = std::vector<unsigned64>;
using Ints = std::vector<int>;
using Shorts = std::vector<short>;
using Types = std::vector<KelCellType>;

} // namespace

TYPED_TEST(Parts, OfShadowFacesComeBack)
{
    const unsigned64 shadows[] = {5, 0};
    this->files.writer.setShadowFaceIdsForFacesInRange(3, 4, shadows, 2);
    this->reopen();
    const auto get = &KelProvider::getShadowFaceIdsForFacesInRange;
    EXPECT_EQ((this->template read<unsigned64>(get, 3, 4)), (Ids{5, 0}));
    EXPECT_EQ((this->template read<unsigned64>(get, 4, 4)), Ids{0}) << "given";
    EXPECT_EQ((this->template read<unsigned64>(get, 5, 5)), Ids{}) << "not given";
    EXPECT_EQ((this->template read<unsigned64>(get, 1, 6)), Ids{});
}

TYPED_TEST(Parts, OfTypesAndPartitionsComeBack)
{
    this->files.writer.setTypeForCell(2, KEL_CELL_POLYHEDRON); // whose number is 0
    this->files.writer.setTypeForCell(4, KEL_CELL_TETRAHEDRON);
    const int partition = 0;
    this->files.writer.startWritingPartitionIdsForCells({}, 3);
    this->files.writer.setPartitionIdsForCellsInRange(3, 3, &partition, 1);
    this->reopen();
    const auto types = &KelProvider::getTypesForCellsInRange;
    EXPECT_EQ((this->template read<KelCellType>(types, 2, 2)), Types{KEL_CELL_POLYHEDRON});
    EXPECT_EQ((this->template read<KelCellType>(types, 4, 4)), Types{KEL_CELL_TETRAHEDRON});
    EXPECT_EQ((this->template read<KelCellType>(types, 3, 3)), Types{});
    EXPECT_EQ((this->template read<KelCellType>(types, 2, 4)), Types{});
    const auto partitions = &KelProvider::getPartitionIdsForCellsInRange;
    EXPECT_EQ((this->template read<int>(partitions, 3, 3)), Ints{0});
    EXPECT_EQ((this->template read<int>(partitions, 2, 2)), Ints{});
    EXPECT_EQ(this->files.reader.getPartitionCountOfCells(), 3);
}

TYPED_TEST(Parts, OfListsComeBack)
{
    auto& writer = this->files.writer;
    const short counts[] = {2, 0, 1};
    const unsigned64 ids[] = {6, 5, 4};
    writer.setNodeCountsForCellsInRange(2, 4, counts, 3);
    writer.setNodeIdsForCellsInRange(2, 4, ids, 3);
    writer.setFaceCountsForCellsInRange(4, 6, counts, 3);
    writer.setFaceIdsForCellsInRange(4, 6, ids, 3);
    writer.setChildCellCountsForCellsInRange(1, 3, counts, 3);
    writer.setChildCellIdsForCellsInRange(1, 3, ids, 3);
    writer.setChildFaceCountsForFacesInRange(3, 5, counts, 3);
    writer.setChildFaceIdsForFacesInRange(3, 5, ids, 3);
    this->reopen();
    const struct {
        unsigned64 (KelProvider::*getCounts)(unsigned64, unsigned64, short*, unsigned64) const;
        unsigned64 (KelProvider::*getIds)(unsigned64, unsigned64, unsigned64*, unsigned64) const;
        unsigned64 first;
    } lists[] = {
        {&KelProvider::getNodeCountsForCellsInRange, &KelProvider::getNodeIdsForCellsInRange, 2},
        {&KelProvider::getFaceCountsForCellsInRange, &KelProvider::getFaceIdsForCellsInRange, 4},
        {&KelProvider::getChildCellCountsForCellsInRange, &KelProvider::getChildCellIdsForCellsInRange, 1},
        {&KelProvider::getChildFaceCountsForFacesInRange, &KelProvider::getChildFaceIdsForFacesInRange, 3},
    };
    for (const auto& list : lists) {
        SCOPED_TRACE(&list - lists);
        const unsigned64 first = list.first, last = first + 2;
        EXPECT_EQ((this->template read<short>(list.getCounts, first, last)), (Shorts{2, 0, 1}));
        EXPECT_EQ((this->template read<unsigned64>(list.getIds, first, last)), (Ids{6, 5, 4}));
        EXPECT_EQ((this->template read<short>(list.getCounts, first + 1, first + 1)), Shorts{0}) << "given";
        EXPECT_EQ((this->template read<unsigned64>(list.getIds, last, last)), Ids{4});
        EXPECT_EQ((this->template read<short>(list.getCounts, 1, 6)), Shorts{});
        EXPECT_EQ((this->template read<unsigned64>(list.getIds, 1, 6)), Ids{});
        const unsigned64 outside = first > 1 ? first - 1 : last + 1;
        EXPECT_EQ((this->template read<short>(list.getCounts, outside, outside)), Shorts{}) << "not given";
    }
}
