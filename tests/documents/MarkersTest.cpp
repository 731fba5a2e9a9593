// The table of markers in docs/reading-and-writing.md: each marker is left out while a model with everything is
// written, and is needed if a format then refuses something or the model comes back otherwise than it was.

#include "documents/OmittingWriter.h"
#include "exchange/RichModel.h"
#include "support/TemporaryFolder.h"

#include "KelCompare.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

namespace meridyn {
namespace {

using Markers = std::set<std::string>;

/// The names in code font in the rows of the table whose second column is `verdict`.
Markers markersInTable(const std::string& verdict)
{
    std::ifstream file(std::string(KEL_SOURCE_DIR) + "/docs/reading-and-writing.md");
    Markers markers;
    bool isInTable = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("<!-- "))
            isInTable = line == "<!-- table of markers -->";
        std::smatch row;
        if (!isInTable || !std::regex_match(line, row, std::regex(R"(\| (.*) \| (.*) \| (.*) \|)")) ||
            row[2] != verdict)
            continue;
        const std::string names = row[1];
        const std::regex name("`(\\w+)`");
        for (std::sregex_iterator found(names.begin(), names.end(), name), end; found != end; ++found)
            EXPECT_TRUE(markers.insert((*found)[1]).second) << (*found)[1] << " stands there twice";
    }
    return markers;
}

/// Adds a section of faces: only a marker says that its elements are no cells.
void addSectionOfFaces(RichWriter& writer)
{
    unsigned64 faces = 0;
    writer.getZoneSizeInfo(5, KEL_ZONE_ELEMENT_COUNT, faces);
    const std::vector<float> values(faces, 0.5F);
    writer.startWritingCaseSectionCategories(KEL_FACE_ZONE, {"roughness"});
    writer.startWritingCaseSectionDataForCategory("roughness", {5}, KEL_PLAIN_FLOAT, 1);
    writer.setCaseSectionDataForElementsInZone(5, values.data(), faces);
    writer.endWritingCaseSectionDataForCategory();
    writer.endWritingCaseSectionCategories();
}

/// Markers of a format: writes the same model again and again, with one kind of marker left out.
template <class Writer, class Reader>
class MarkersOf {
public:
    explicit MarkersOf(std::string name) : _name(std::move(name)) {}

    /// All that a transfer of the model calls.
    Markers all() const
    {
        OmittingWriter<Writer> writer("");
        EXPECT_TRUE(arrives(writer));
        Markers markers;
        for (const auto& [marker, count] : writer.calls())
            markers.insert(marker);
        return markers;
    }

    /// Those without which the model does not arrive as it was.
    Markers needed(const Markers& markers) const
    {
        Markers found;
        for (const std::string& marker : markers) {
            OmittingWriter<Writer> writer(marker);
            if (!arrives(writer))
                found.insert(marker);
        }
        return found;
    }

private:
    bool arrives(OmittingWriter<Writer>& writer) const
    {
        KelMemoryProvider source;
        Reader reader;
        setBoth(source, "memory:rich");
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            const std::string file = _name + (dataClass == KEL_CASE ? ".case.kel" : ".data.kel");
            writer.setFile(file, dataClass);
            reader.setFile(file, dataClass);
        }
        KelTransfer transfer(source, writer);
        if (!transfer.copyCase() || !transfer.copyData() || writer.hasError() || !transfer.losses().text().empty())
            return false;
        KelCompare compare(source, reader);
        return compare.run() && compare.differences().empty();
    }

    std::string _name;
};

TEST(Markers, AreNeededAsTheTableSays)
{
    const TemporaryFolder folder;
    makeRichModel("memory:rich", addSectionOfFaces);
    const MarkersOf<KelHdf5Consumer, KelHdf5Provider> hdf5(folder / "model");
    const MarkersOf<KelMemoryConsumer, KelMemoryProvider> memory("memory:copy");
    const Markers all = hdf5.all();
    EXPECT_EQ(all, memory.all());
    EXPECT_GT(all.size(), 85U);

    Markers needed = hdf5.needed(all);
    needed.merge(memory.needed(all));
    Markers stated = markersInTable("yes");
    EXPECT_EQ(stated.erase("startWritingTimeLevel"), 1U); // is not virtual, so it has a test of its own
    EXPECT_EQ(needed, stated);
}

const int cells = 3;

/// A mesh of one cell.
void declareZones(KelConsumer& writer)
{
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setZoneIds(KEL_CELL_ZONE, {cells});
    writer.setZoneSizeInfo(cells, KEL_ZONE_FIRST_ID, 1);
    writer.setZoneSizeInfo(cells, KEL_ZONE_LAST_ID, 1);
}

template <class Formats>
class MarkersThatSayMore : public ::testing::Test {
protected:
    void open(KelDataClass dataClass)
    {
        writer.setFile(file, dataClass);
        reader.setFile(file, dataClass);
        declareZones(writer);
        ASSERT_TRUE(writer.startWriting(dataClass));
    }

    void reopen(KelDataClass dataClass)
    {
        ASSERT_TRUE(writer.endWriting(dataClass));
        ASSERT_TRUE(reader.startReading(dataClass));
    }

    const TemporaryFolder folder;
    const std::string file = folder / "model";
    typename Formats::Writer writer;
    typename Formats::Reader reader;
};

struct Hdf5 {
    using Writer = KelHdf5Consumer;
    using Reader = KelHdf5Provider;
};
struct Memory {
    using Writer = KelMemoryConsumer;
    using Reader = KelMemoryProvider;
};
using WritingFormats = ::testing::Types<Hdf5, Memory>;

class NamesOfFormats {
public:
    template <class Formats>
    static std::string GetName(int)
    {
        return std::is_same_v<Formats, Hdf5> ? "Hdf5" : "Memory";
    }
};
TYPED_TEST_SUITE(MarkersThatSayMore, WritingFormats, NamesOfFormats);

TYPED_TEST(MarkersThatSayMore, StandInTheTable)
{
    EXPECT_EQ(markersInTable("for its arguments"), Markers{"startWritingTypesForCells"});
}

TYPED_TEST(MarkersThatSayMore, TypesOfCells)
{
    this->open(KEL_CASE);
    this->writer.startWritingTypesForCells({cells}, {KEL_CELL_HEXAHEDRON});
    this->reopen(KEL_CASE);
    EXPECT_EQ(this->reader.getTypeForCell(1), KEL_CELL_HEXAHEDRON);
}

TYPED_TEST(MarkersThatSayMore, NumberOfPartitions)
{
    this->open(KEL_CASE);
    this->writer.startWritingPartitionIdsForCells({cells}, 7);
    this->writer.setPartitionIdForCell(1, 2);
    this->reopen(KEL_CASE);
    EXPECT_EQ(this->reader.getPartitionCountOfCells(), 7);
}

template <class Writer>
void writePressure(Writer& writer)
{
    int pressure = 0;
    std::vector<int> zones = {cells};
    const double value = 2.5;
    writer.addPhaseVariable(-1, "pressure", pressure);
    writer.startWritingPhase(-1);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, pressure, zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1);
}

TYPED_TEST(MarkersThatSayMore, TimeLevelOfValues)
{
    this->open(KEL_DATA);
    this->writer.startWritingTimeLevel(4);
    writePressure(this->writer);
    this->reopen(KEL_DATA);
    EXPECT_EQ(this->reader.getTimeLevels(), std::vector<int>{4});
}

TYPED_TEST(MarkersThatSayMore, NoTimeLevelWithoutItsMarker)
{
    this->open(KEL_DATA);
    writePressure(this->writer);
    this->reopen(KEL_DATA);
    EXPECT_TRUE(this->reader.getTimeLevels().empty());
}

} // namespace
} // namespace meridyn
