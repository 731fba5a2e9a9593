#pragma once

#include "KelFormatProvider.h"

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
///     levels:<n>            time levels 1 to n (default 1); from two on, level n lies at n/10 seconds
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
class KEL_API KelGeneratedProvider : public KelFormatProvider {
public:
    /// Nothing is open.
    KelGeneratedProvider();
    ~KelGeneratedProvider() override;

    /// Whether a text is a line that this reader understands.
    static bool understands(const std::string& text);

    bool isReadingData() const override;
    int getPartitionCountOfCells() const override;

    /// @name Settings: the times of several levels, in the data; see KelTimes
    /// @{
    void getSettingsGroups(KelDataClass dataClass, std::vector<std::string>& groups) const override;
    void getSettingsKeysOfGroup(KelDataClass dataClass, const std::string& group,
                                std::vector<std::string>& keys) const override;
    void getSettingString(KelDataClass dataClass, const std::string& key, std::string& text,
                          const std::string& group) const override;
    /// @}

    using KelFormatProvider::startReadingZonesOfCategoryWithPhaseVariable;
    /// Variables live on the cells, one value each.
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, const std::string& variableName,
                                                            std::vector<int>& zoneIds) override;

protected:
    bool openData(KelDataClass dataClass, const std::string& fileName) override;
    bool closeData(KelDataClass dataClass) override;
    bool updateData(KelDataClass dataClass) override;

    std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const override;
    unsigned64 give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const override;
    std::optional<signed64> uniformValue(KelArray array, unsigned64 first, unsigned64 last) const override;

private:
    bool declareMesh();
    bool declareSolution();
    void declareAdjacency();
    void declareLocations();
    bool isOpen(KelDataClass dataClass) const;
    bool hasTimes(KelDataClass dataClass) const;
    bool has(KelArray array, unsigned64 first, unsigned64 last) const;
    double fieldValue(unsigned64 cellId) const;

    std::unique_ptr<BoxMesh> _mesh;
    bool _open[2] = {false, false};
    int _field = 0; ///< the variable being read, 0 for none
};

} // namespace meridyn
