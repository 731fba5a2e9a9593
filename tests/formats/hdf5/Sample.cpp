#include "Sample.h"

#include "KelLocationModel.h"

namespace hdf5test {

namespace {

bool writeSampleCase(Writer& writer, const std::string& path)
{
    const TwoCells mesh;
    writer.context(4, 0, -1);
    TwoCells::declare(writer);
    writer.setMeshSize(KEL_MESH_SIZE_2, 2);
    writer.setZoneStringInfo(1, KEL_ZONE_STRING_0, "nodes");
    writer.setZoneStringInfo(11, KEL_ZONE_STRING_0, "between \xc3\xa9");
    writer.setZoneStringInfo(11, KEL_ZONE_STRING_1, "interior");
    writer.setZoneStringInfo(21, KEL_ZONE_STRING_0, "fluid");
    writer.setFaceZoneType(12, KEL_FACE_ZONE_TYPE_WALL);
    writer.setAllFaceZoneFlags(12, 5);
    writer.setFaceCellZone0Ids({{11, {21}}, {12, {21}}});
    writer.setFaceCellZone1Ids({{11, {21}}});
    KelLocationModel model;
    int part = 0;
    model.createPart(3, "pump", part);
    if (!writer.startWriting(path, KEL_CASE))
        return false;
    mesh.writeArrays(writer);
    const unsigned64 edgeNodes[] = {1, 2, 2, 3};
    writer.setUniformNodeCountForEdgesInRange(1, 2, 2);
    writer.setNodeIdsForEdgesInRange(1, 2, edgeNodes, 4);
    const unsigned64 shadows[] = {3, 2};
    writer.setShadowFaceIdsForFacesInRange(2, 3, shadows, 2);
    const short childCounts[] = {2, 0, 1};
    const unsigned64 children[] = {9, 10, 11};
    writer.setChildFaceCountsForFacesInRange(4, 6, childCounts, 3);
    writer.setChildFaceIdsForFacesInRange(4, 6, children, 3);
    const int partitions[] = {1, 0};
    writer.startWritingPartitionIdsForCells({21}, 2);
    writer.setPartitionIdsForCellsInZone(21, partitions, 2);
    const double share[] = {0.25, 0.75};
    const unsigned64 pairs[] = {2, 3};
    writer.startWritingInterfaceDataForFaces({11}, {12});
    writer.setInterfaceDataForFacesInZone(12, share, 2, share, 2, pairs, 2, pairs, 2);
    const unsigned64 local[] = {101, 102};
    writer.setLocalElemIdsInZone(21, local, 2);
    const float rough[] = {0.5f, 1.5f};
    writer.startWritingCaseSectionCategories(KEL_CELL_ZONE, {"rough"});
    writer.startWritingCaseSectionDataForCategory("rough", {21}, KEL_PLAIN_FLOAT, 1);
    writer.setCaseSectionDataForElementsInZone(21, rough, 2);
    writer.startWritingSet("probe/1", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({2}, {1}, {2});
    const unsigned64 members[] = {2, 1};
    writer.setIdsForSetInRange(1, 2, members, 2);
    writer.endWritingSet();
    writer.setLocationModel(&model);
    writer.log({{"made", "by the tests"}}, KEL_CASE);
    writer.writeSettingStrings({{"key", "text"}}, KEL_CASE, "group");
    return writer.endWriting(KEL_CASE);
}

bool writeSampleData(Writer& writer, const std::string& path)
{
    short gas = 0;
    int pressure = 0;
    int velocity = 0;
    int mixed = 0;
    writer.addPhaseName("gas", gas);
    writer.addPhaseVariable(gas, "pressure", pressure);
    writer.addPhaseVariable(gas, "velocity", velocity);
    writer.addPhaseVariable(-1, "T", mixed);
    writer.setAttributeValueOfPhaseVariable(pressure, "Units", "Pa");
    if (!writer.startWriting(path, KEL_DATA))
        return false;
    for (const int level : {10, 20}) {
        writer.startWritingTimeLevel(level);
        writer.startWritingPhase(gas);
        std::vector<int> zones{21};
        const double p[] = {level + 0.5, level + 1.5};
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, pressure, zones, 1);
        writer.setValuesOfPhaseVariableForElementsInZone(21, p, 2);
        const float v[] = {1, 2, 3, 4, 5, 6};
        writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, velocity, zones, 3);
        writer.setValuesOfPhaseVariableForElementsInZone(21, v, 6);
        writer.endWritingPhaseVariableInZonesOfCategory();
    }
    const unsigned64 ids[] = {7, 8, 9};
    writer.startWritingSetData("injection", 3);
    writer.setIdsForSetData(ids, 3);
    const int counts[] = {1, 0, 2};
    const short values[] = {5, 6, 7};
    writer.startWritingVariableLengthVariableForSetData("path", KEL_PLAIN_SHORT, KEL_PLAIN_INT);
    writer.setVariableLengthVariableForSetData(values, 3, counts, 3);
    writer.endWritingSetData();
    writer.startWritingParticleTracks(gas, 4, KEL_DEFAULT_TARGET, -1);
    writer.startWritingPartiticleTrackGroup("group");
    writer.startWritingChunkInPartiticleTrackGroup(0, 2);
    const double x[] = {0, 1, 2, 3};
    writer.setValuesOfParticleTrackVariable("position", x, 4);
    writer.endWritingParticleTracks();
    return writer.endWriting(KEL_DATA);
}

} // namespace

bool writeSample(const std::string& caseFile, const std::string& dataFile, std::string& errors, int compression)
{
    Writer writer;
    writer.setCompression(compression);
    writer.setApplicationName("Sample");
    const bool done = writeSampleCase(writer, caseFile) && writeSampleData(writer, dataFile);
    errors = writer.errors();
    return done;
}

} // namespace hdf5test
