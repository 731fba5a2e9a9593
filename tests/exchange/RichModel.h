#pragma once

#include "KelGeneratedProvider.h"
#include "KelMemoryConsumer.h"
#include "KelMemoryProvider.h"
#include "KelTransfer.h"

#include <functional>
#include <numeric>
#include <string>
#include <vector>

namespace meridyn {

/// A writer that, when a data class ends, adds everything that a generated mesh does not have.
class RichWriter : public KelMemoryConsumer {
public:
    using Change = std::function<void(RichWriter&)>;

    /// A change that is made behind the rest, to plant a difference.
    void setChange(KelDataClass dataClass, Change change) { _changes[dataClass] = std::move(change); }

    bool endWriting(KelDataClass dataClass) override
    {
        dataClass == KEL_CASE ? addToCase() : addToData();
        if (_changes[dataClass])
            _changes[dataClass](*this);
        return KelMemoryConsumer::endWriting(dataClass);
    }

    /// Values of one to the limits of a type.
    template <class T>
    static std::vector<T> ramp(std::size_t count)
    {
        std::vector<T> values(count);
        std::iota(values.begin(), values.end(), static_cast<T>(1));
        return values;
    }

    /// Calls `visit` with a value of each of the ten types.
    template <class Visit>
    static void forTypes(const Visit& visit)
    {
        visit(static_cast<unsigned char>(0), KEL_PLAIN_UNSIGNED_CHAR);
        visit(static_cast<char>(0), KEL_PLAIN_CHAR);
        visit(static_cast<short>(0), KEL_PLAIN_SHORT);
        visit(0U, KEL_PLAIN_UNSIGNED_INT);
        visit(0, KEL_PLAIN_INT);
        visit(0L, KEL_PLAIN_LONG);
        visit(unsigned64{0}, KEL_PLAIN_UNSIGNED64);
        visit(signed64{0}, KEL_PLAIN_SIGNED64);
        visit(0.0F, KEL_PLAIN_FLOAT);
        visit(0.0, KEL_PLAIN_DOUBLE);
    }

    void addSet(const std::string& name)
    {
        const std::vector<unsigned64> lengths = {2, 0, 3};
        startWritingSet(name, KEL_CELL_ZONE);
        setSizesAndMinMaxIdsForSet({2, 1}, {4, 6}, {5, 6});
        startWritingIdsForSet();
        setIdsForSetInRange(1, 3, ramp<unsigned64>(3).data(), 3);
        endWritingIdsForSet();
        forTypes([&](auto zero, KelPlainDataType type) {
            using T = decltype(zero);
            const std::string label = " of type " + std::to_string(type);
            startWritingDataOfVariableForSet("values" + label, {2, 1}, 2, type);
            setDataOfVariableForSetInRange(1, 3, ramp<T>(6).data(), 6);
            endWritingDataOfVariableForSet();
            startWritingSizeOfVariableForSet("list" + label, {2, 1}, KEL_PLAIN_UNSIGNED64);
            setSizeOfVariableForSetInRange(1, 3, lengths.data(), 3);
            endWritingSizeOfVariableForSet();
            startWritingVariableLengthedDataOfVariableForSet("list" + label, {2, 1}, type);
            setVariableLengthedDataOfVariableForSetInRange(1, 3, ramp<T>(5).data(), 5);
            endWritingVariableLengthedDataOfVariableForSet();
            writeOtherDataForSet("block" + label, ramp<T>(4).data(), 4);
        });
        writeStringDataForSet("text", "of the set");
        endWritingSet();
    }

    void addSetData(const std::string& name)
    {
        startWritingSetData(name, 3);
        startWritingIdsForSetData();
        setIdsForSetData(ramp<unsigned64>(3).data(), 3);
        endWritingIdsForSetData();
        forTypes([&](auto zero, KelPlainDataType type) {
            using T = decltype(zero);
            const std::string label = " of type " + std::to_string(type);
            const std::vector<short> lengths = {1, 0, 3};
            startWritingVariableForSetData("values" + label, 2, type);
            setVariableForSetData(ramp<T>(6).data(), 6);
            endWritingVariableForSetData();
            startWritingVariableLengthVariableForSetData("list" + label, type, KEL_PLAIN_SHORT);
            setVariableLengthVariableForSetData(ramp<T>(4).data(), 4, lengths.data(), 3);
            endWritingVariableLengthVariableForSetData();
            writeOtherDataForSetData("block" + label, ramp<T>(2).data(), 2);
        });
        writeStringDataForSetData("text", "of the set data");
        endWritingSetData();
    }

    void addTracks(double speed)
    {
        startWritingParticleTracks(2, 1, KEL_DEFAULT_TARGET, -1);
        startWritingPartiticleTrackGroup("group");
        startWritingChunkInPartiticleTrackGroup(4, 3);
        forTypes([&](auto zero, KelPlainDataType type) {
            setValuesOfParticleTrackVariable("type " + std::to_string(type), ramp<decltype(zero)>(3).data(), 3);
        });
        const std::vector<double> speeds(3, speed);
        setValuesOfParticleTrackVariable("speed", speeds.data(), 3);
        endWritingChunkInPartiticleTrackGroup();
        endWritingPartiticleTrackGroup();
        endWritingParticleTracks();
    }

    void addMixtureValue(double value)
    {
        int id = 0;
        addPhaseVariable(short{-1}, "density", id);
        startWritingPhase(-1);
        std::vector<int> zones = {10};
        setPhaseVariablesOfCategory(KEL_CELL_ZONE, std::vector<int>{id});
        startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
        const std::vector<double> values(12, value);
        setValuesOfPhaseVariableForElementsInRange(1, 12, values.data(), 12);
        endWritingPhaseVariableInZonesOfCategory();
        endWritingPhase();
    }

    void addSection(float value)
    {
        startWritingCaseSectionCategories(KEL_CELL_ZONE, {"heat"});
        startWritingCaseSectionDataForCategory("heat", {11}, KEL_PLAIN_FLOAT, 2);
        const std::vector<float> values(24, value);
        setCaseSectionDataForElementsInRange(13, 24, values.data(), 24);
        endWritingCaseSectionDataForCategory();
        endWritingCaseSectionCategories();
    }

private:
    void addToCase()
    {
        setZoneIds(KEL_EDGE_ZONE, {20});
        setZoneSizeInfo(20, KEL_ZONE_FIRST_ID, 1);
        setZoneSizeInfo(20, KEL_ZONE_LAST_ID, 2);
        setEdgeZoneInfo(20, KEL_EDGE_ZONE_INFO_1, 4);
        setMeshSize(KEL_MESH_SIZE_2, 2);
        const std::vector<short> edgeCounts = {2, 3};
        setNodeCountsForEdgesInRange(1, 2, edgeCounts.data(), 2);
        setNodeIdsForEdgesInRange(1, 2, ramp<unsigned64>(5).data(), 5);
        setFaceZoneInfo(5, KEL_FACE_ZONE_INFO_3, 33);
        setAllFaceZoneFlags(5, 5);
        setCellZoneInfo(11, KEL_CELL_ZONE_INFO_0, -1);
        setNodeZoneInfo(1, KEL_NODE_ZONE_INFO_0, 9);
        setZoneStringInfo(5, KEL_ZONE_STRING_1, "wall of glass");
        setZoneSizeInfo(5, KEL_ZONE_EXTRA_SIZE, 99);
        const std::vector<double> shares = {0.25, 1};
        startWritingInterfaceDataForFaces({5}, {6});
        setInterfaceDataForFacesInZone(5, shares.data(), 2, shares.data(), 1, ramp<unsigned64>(2).data(), 2,
                                       ramp<unsigned64>(3).data(), 3);
        endWritingInterfaceDataForFaces();
        for (unsigned64 cell = 1; cell <= 24; ++cell) {
            const std::vector<unsigned64> faces = {cell, cell + 1};
            setFaceCountForCell(cell, cell % 2 == 0 ? short{2} : short{1});
            setFaceIdsForCell(cell, faces.data(), cell % 2 == 0 ? 2 : 1);
            setChildCellCountForCell(cell, cell == 3 ? short{2} : short{0});
            setChildCellIdsForCell(cell, faces.data(), cell == 3 ? 2 : 0);
        }
        setLocalElemIdsInZone(10, ramp<unsigned64>(12).data(), 12);
        addSection(1.5F);
        addSet("set of the case");
        writeSettingStrings({{"a", "1"}, {"b", ""}}, KEL_CASE, "group/one");
        writeGenericSettings(KEL_CASE, "Tool", "test");
        log({{"made", "for a test"}}, KEL_CASE);
    }

    void addToData()
    {
        setAttributeValueOfPhase(short{1}, "Material", "steam");
        setAttributeValueOfPhaseVariable(1, "Units", "Pa");
        setDatasetNameOfVariable(1, "SV_P");
        setAttributeValueOfPhaseVariable(1, "Dataset Name", "SV_P");
        addMixtureValue(3.25);
        startWritingPhase(2);
        addSetData("injection");
        addTracks(1.25);
        addSet("set of the data");
        writeSettingStrings({{"c", "<x/>"}}, KEL_DATA, "group");
        log({{"solved", "twice"}}, KEL_DATA);
    }

    Change _changes[2];
};

/// 24 cells, the first 12 of them in zone 10.
inline const char* const richLine = "box:3x2x4 zones:2 partitions:3 periodic hanging fields:2 phases:2 levels:3";

/// Names case and data of a model alike.
template <class Object>
void setBoth(Object& object, const std::string& name)
{
    object.setFile(name, KEL_CASE);
    object.setFile(name, KEL_DATA);
}

/// Makes a rich model of that name in memory, with changes if any.
inline void makeRichModel(const std::string& name, const RichWriter::Change& inCase = nullptr,
                          const RichWriter::Change& inData = nullptr)
{
    KelGeneratedProvider box;
    RichWriter writer;
    setBoth(box, richLine);
    setBoth(writer, name);
    writer.setChange(KEL_CASE, inCase);
    writer.setChange(KEL_DATA, inData);
    KelTransfer transfer(box, writer);
    if (!transfer.copyCase() || !transfer.copyData() || writer.hasError())
        throw std::runtime_error(transfer.problem() + (writer.hasError() ? writer.getErrors(false, true).front() : ""));
}

} // namespace meridyn
