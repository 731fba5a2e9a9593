#pragma once

#include "KelFileProvider.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// Reader of OpenFOAM cases: the folder of a case takes the place of the file name, for the case and for the data.
///
/// Reads constant/polyMesh and the polyMesh folders of times, and the fields in the folders of times; in text or binary
/// form (little-endian, both widths of labels and of scalars), plain or compressed with gzip. Nothing is written, and a
/// case that has been decomposed has to be put together first.
///
/// Meshes    Mesh id 1 is the oldest mesh (constant, as a rule); each time that has points or faces of its own in a
///           folder polyMesh adds one, in the order of the times. The target is the default one; there are no
///           partitions.
/// Ids       Points and faces keep their order: id = label + 1. Cells are put in the order of the zones.
/// Zones     Node zone 1 "nodes"; face zone 2 "interior"; from 3 on a face zone per patch; behind them a cell zone per
///           cellZone, and "cells" for cells that are in none. A cell in several belongs to the first. Zone string 1 is
///           the type of the patch. A zone without elements has no ids.
/// Faces     Normals point from cell 0, the owner, to cell 1, the neighbour; on boundaries out of the mesh.
/// Cells     Tetrahedra, pyramids, prisms and hexahedra are told by their faces and have node ids: base, its normal
///           into the cell, then the apex or the opposite nodes. All other cells are polyhedra, with 0 nodes. All have
///           faces.
/// Sets      faceZones and pointZones, which may overlap, are sets of the case; "flipMap" is a variable of a face
///           zone's set, 1 where the face counts as turned. Where cellZones overlap, they are sets as well.
/// Times     Time level n is the n-th time folder by value, from 0. The group "timeLevels" of the data settings has the
///           name of each folder by level.
/// Phases    One, "phase-1"; or, where fields are named like alpha.water or U.water, one per such ending, and the
///           mixture for fields without one.
/// Variables Scalar fields are variables of their name; other fields one per component, like "U-x" and "R-xy", with the
///           attribute "Parent Name". Fields of cells have their boundary values on the face zones of the patches.
/// Settings  Dictionaries in system and constant are settings of the case: the dictionary's name is the group, the path
///           in it the key. The same are settings of this object, through the parser KelPolyMeshProvider::parserName.
/// Reports   A file that cannot be read posts a KelError that names it, the line or byte, what was expected and what
///           was found; the call then gives false or 0. A range that holds an id outside the mesh gives nothing; a
///           buffer too small for a range gets the whole elements that fit.
/// Memory    The mesh is held in memory, and one field.
class KEL_API KelPolyMeshProvider : public KelFileProvider {
public:
    /// Nothing is open; the settings parser is registered.
    KelPolyMeshProvider();
    ~KelPolyMeshProvider() override;

    /// Name of the settings parser that this reader registers with itself: "OPENFOAM".
    static const char* parserName();

    /// Whether a path is the folder of a case with a mesh.
    static bool understands(const std::string& path);

    // clang-format off
    bool isReadingData() const override;
    std::vector<int>               availableMeshIds(KelDataClass dataClass) const override;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override;

    using KelProvider::availableTargets;
    using KelProvider::getCoordinatesForNodesInRange;
    using KelProvider::startReadingZonesOfCategoryWithPhaseVariable;

    unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, float*  xyz, unsigned64 capacity) const override;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 firstId, unsigned64 lastId, double* xyz, unsigned64 capacity) const override;

    bool       hasUniformNodeCountForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCount) const override;
    unsigned64 getNodeCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    unsigned64 getCell0sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const override;
    unsigned64 getCell1sForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* cellIds, unsigned64 capacity) const override;
    unsigned64 getShadowFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* shadowFaceIds, unsigned64 capacity) const override;

    bool       hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const override;
    unsigned64 getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types, unsigned64 capacity) const override;
    bool       hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const override;
    unsigned64 getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    bool       hasUniformFaceCountForCellsInZone(int zoneId, short* faceCount) const override;
    short      getFaceCountForCell(unsigned64 cellId) const override;
    unsigned64 getFaceCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* faceCounts, unsigned64 capacity) const override;
    unsigned64 getFaceIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* faceIds, unsigned64 capacity) const override;

    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds) override;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId, std::vector<int>& zoneIds) override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, float*  values, unsigned64 capacity) const override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, double* values, unsigned64 capacity) const override;

    bool getSetNames(std::vector<std::string>& names) const override;
    bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const override;
    bool getSetNames(KelZoneCategory category, std::vector<std::string>& names) const override;
    bool startReadingSet(const std::string& name) override;
    KelZoneCategory getCategoryOfSet() const override;
    void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const override;
    unsigned64 getIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* ids, unsigned64 capacity) const override;
    void getVariablesInSet(std::vector<std::string>& names) const override;
    KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember) override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned char* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, char* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, short* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned int* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, int* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, long* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, unsigned64* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, signed64* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, float* values, unsigned64 capacity) const override;
    unsigned64 getDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, double* values, unsigned64 capacity) const override;
    void endReadingDataOfVariableForSet() override;
    void endReadingSet() override;

    void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const override;
    void getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group, std::vector<std::string>& keys) const override;
    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text, const std::string& group) const override;
    KelSetting getSetting(const std::string& key, KelDataClass dataClass, const std::string& group) const override;
    // clang-format on

protected:
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    void setZoneAdjacency() override;
    void initLocationModel() const override;

private:
    struct Case;

    bool declareMesh();
    bool declareSolution();
    void readSettings();
    template <class T>
    unsigned64 readCoordinates(unsigned64 firstId, unsigned64 lastId, T* xyz, unsigned64 capacity) const;
    template <class T>
    unsigned64 readValues(unsigned64 firstId, unsigned64 lastId, T* values, unsigned64 capacity) const;
    template <class T>
    unsigned64 readSetData(unsigned64 firstPosition, unsigned64 lastPosition, T* values, unsigned64 capacity) const;

    std::unique_ptr<Case> _case;
    std::unique_ptr<Case> _closed; ///< what was open last, while nothing is
    bool _wasDeclared = false;
};

} // namespace meridyn
