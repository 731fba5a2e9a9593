#pragma once

#include "KelFileProvider.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

class BoxMesh;

/// Reader of meshes and fields that exist only as one line of text, which takes the place of the file name.
///
/// The line is `box:<nx>x<ny>x<nz>` followed by options in any order, separated by blanks:
///
///     size:<lx>x<ly>x<lz>   lengths of the box in m (default 1x1x1)
///     cells:<shape>         hex (default), tet, prism, pyramid, or poly: how each block is divided
///     zones:<n>             cell zones, as slabs along z (default 1)
///     periodic              x-min and x-max are a periodic pair with shadow faces
///     hanging               the faces of the middle layer in z are split in four (hexahedra only); their parents are
///                           kept in a zone of their own, with their child faces
///     partitions:<n>        partition ids for the cells, as slabs along x
///     phases:<n>            phases "phase-1" to "phase-<n>" (default 1)
///     fields:<n>            variables "field-1" to "field-<n>" of each phase, on the cells (default 0)
///     levels:<n>            time levels 1 to n (default 1)
///
/// The same line always gives the same numbers. Elements are computed on demand, one by one: memory does not grow with
/// the mesh, and any range costs what it holds. The mesh id is 1, the target the default one. Up to 2^44 blocks.
///
/// Zones: nodes 1; interior faces 2; boundaries x-min 3, x-max 4, y-min 5, y-max 6, z-min 7, z-max 8; parent faces 9;
/// cells from 10. Boundary faces point out of the box. Cells of polyhedral type have no node ids.
/// Reports: a text that cannot be read posts a KelError that names the word at fault; opening it then gives false.
/// Arrays of the mesh are there while the case is open, values while the data is.
/// A range that holds an id outside the mesh gives nothing; a buffer too small for a range gets the whole elements that
/// fit.
class KEL_API KelGeneratedProvider : public KelFileProvider {
public:
    /// Nothing is open.
    KelGeneratedProvider();
    ~KelGeneratedProvider() override;

    /// Whether a text is a line that this reader understands.
    static bool understands(const std::string& text);

    // clang-format off
    bool isReadingData() const override;
    std::vector<int>               availableMeshIds(KelDataClass dataClass) const override;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override;

    /// The targets of the one mesh.
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
    unsigned64 getChildFaceCountsForFacesInRange(unsigned64 firstId, unsigned64 lastId, short* childCounts, unsigned64 capacity) const override;
    unsigned64 getChildFaceIdsForFacesInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* childIds, unsigned64 capacity) const override;

    bool       hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const override;
    unsigned64 getTypesForCellsInRange(unsigned64 firstId, unsigned64 lastId, KelCellType* types, unsigned64 capacity) const override;
    bool       hasUniformNodeCountForCellsInZone(int zoneId, short* nodeCount) const override;
    unsigned64 getNodeCountsForCellsInRange(unsigned64 firstId, unsigned64 lastId, short* nodeCounts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, unsigned64* nodeIds, unsigned64 capacity) const override;
    unsigned64 getPartitionIdsForCellsInRange(unsigned64 firstId, unsigned64 lastId, int* partitionIds, unsigned64 capacity) const override;
    int        getPartitionCountOfCells() const override;

    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName, std::vector<int>& zoneIds) override;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId, std::vector<int>& zoneIds) override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, float*  values, unsigned64 capacity) const override;
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId, double* values, unsigned64 capacity) const override;
    // clang-format on

protected:
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;

private:
    bool declareMesh();
    bool declareSolution();
    void declareAdjacency();
    void declareLocations();
    bool isOpen(KelDataClass dataClass) const;
    bool hasCells(unsigned64 firstId, unsigned64 lastId, KelDataClass dataClass) const;
    bool hasFaces(unsigned64 firstId, unsigned64 lastId) const;
    double fieldValue(unsigned64 cellId) const;
    template <class T>
    unsigned64 readCoordinates(unsigned64 firstId, unsigned64 lastId, T* xyz, unsigned64 capacity) const;
    template <class T>
    unsigned64 readValues(unsigned64 firstId, unsigned64 lastId, T* values, unsigned64 capacity) const;

    std::unique_ptr<BoxMesh> _mesh;
    bool _open[2] = {false, false};
    int _field = 0; ///< the variable being read, 0 for none
};

} // namespace meridyn
