#pragma once

#include "KelFormatProvider.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// Reader of OpenFOAM cases: the folder of a case takes the place of the file name, for the case and for the data.
///
/// Reads constant/polyMesh and the polyMesh folders of times, the fields in the folders of times, and dictionaries; in
/// text or binary form (both orders of bytes, both widths of labels and of scalars), plain or compressed with gzip.
/// Nothing is written, and a case that has been decomposed has to be put together first. What is not read is named by
/// notHandedOver.
///
/// Meshes    Mesh id 1 is the oldest mesh (constant, as a rule); each time that has points or faces of its own in a
///           folder polyMesh adds one, in the order of the times. The target is the default one; there are no
///           partitions.
/// Ids       Points and faces keep their order: id = label + 1. Cells are put in the order of the zones; where that
///           changes their order, local ids are the labels of the case + 1.
/// Zones     Node zone 1 "nodes"; face zone 2 "interior"; from 3 on a face zone per patch; behind them a cell zone per
///           cellZone, and "cells" for cells that are in none. A cell in several belongs to the first. Zone string 1 is
///           the type of the patch. A zone without elements has no ids.
/// Faces     Normals point from cell 0, the owner, to cell 1, the neighbour; on boundaries out of the mesh.
/// Cells     Tetrahedra, pyramids, prisms and hexahedra are told by their faces and have node ids: base, its normal
///           into the cell, then the apex or the opposite nodes. All other cells are polyhedra, with 0 nodes. All have
///           faces.
/// Sets      faceZones and pointZones, which may overlap, are sets of the case; "flipMap" is a variable of a face
///           zone's set, 1 where the face counts as turned. Where cellZones overlap, they are sets as well; so are the
///           files in polyMesh/sets.
/// Times     Time level n is the n-th time folder by value, from 0. The group "timeLevels" of the data settings has the
///           physical time of each level: of uniform/time in the folder, else the number that the folder is named by.
/// Phases    One, "phase-1"; or, where fields are named like alpha.water or U.water, one per such ending, and the
///           mixture for fields without one.
/// Variables Each field is a variable of its name; vectors have 3 values per element, tensors 6 or 9, and the attribute
///           "Component Names". Fields of cells have their boundary values on the face zones of the patches.
/// Settings  A file is a group by its path in the case, an entry a key by its path in the file: dictionaries, and
///           entries of patches, are settings of the case, boundary conditions and dictionaries of times settings of
///           the data.
///           Dictionaries of the case are settings of this object as well, through KelPolyMeshProvider::parserName.
/// Reports   A file that cannot be read posts a KelError that names it, the line or byte, what was expected and what
///           was found; the call then gives false or 0. A range that holds an id outside the mesh gives nothing; a
///           buffer too small for a range gets the whole elements that fit.
/// Memory    The mesh is held in memory, and one field.
class KEL_API KelPolyMeshProvider : public KelFormatProvider {
public:
    /// Nothing is open; the settings parser is registered.
    KelPolyMeshProvider();
    ~KelPolyMeshProvider() override;

    /// Name of the settings parser that this reader registers with itself: "OPENFOAM".
    static const char* parserName();

    /// Whether a path is the folder of a case with a mesh.
    static bool understands(const std::string& path);

    /// Every file of the case that is not opened, and every entry that is not handed over. Goes through all files of
    /// the case, passing over their lists of numbers.
    std::vector<KelSourceItem> notHandedOver(KelDataClass dataClass) const override;

    // clang-format off
    bool isReadingData() const override;

    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds) override;

    using KelFormatProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const override;
    bool getSetNames(KelZoneCategory category, std::vector<std::string>& names) const override;
    bool startReadingSet(const std::string& name) override;
    KelZoneCategory getCategoryOfSet() const override;
    void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const override;
    KelPlainDataType startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember) override;
    void endReadingDataOfVariableForSet() override;
    void endReadingSet() override;

    void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const override;
    void getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group, std::vector<std::string>& keys) const override;
    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text, const std::string& group) const override;
    KelSetting getSetting(const std::string& key, KelDataClass dataClass, const std::string& group) const override;
    unsigned64 getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const override;
    // clang-format on

protected:
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;
    void initLocationModel() const override;

    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;
    unsigned64 give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const override;
    std::optional<signed64> uniformValue(KelArray array, unsigned64 first, unsigned64 last) const override;
    std::vector<std::string> namesIn(KelCollection in, KelPart part) const override;

private:
    struct Case;

    bool declareOpenMesh();
    bool declareSolution();
    bool readField(std::size_t number);
    void readSettings();

    std::unique_ptr<Case> _case;
    std::unique_ptr<Case> _closed; ///< what was open last, while nothing is
    bool _wasDeclared = false;
};

} // namespace meridyn
