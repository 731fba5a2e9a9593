#pragma once

#include "ByteSource.h"
#include "CaseFolder.h"
#include "CaseSettings.h"
#include "CellShapes.h"
#include "FieldCatalog.h"
#include "FieldFile.h"
#include "KelPolyMeshProvider.h"
#include "PolyMesh.h"

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace meridyn {

/// What the reader knows about the case that is open.
struct KelPolyMeshProvider::Case {
    explicit Case(const std::string& path) : folder(path) {}
    Case(const Case&) = delete; // its parts refer to its folder
    Case& operator=(const Case&) = delete;

    /// A set of the case: a zone that may overlap others.
    struct Set {
        std::string name;
        KelZoneCategory category;
        const polymesh::PolySelection* members;
    };

    polymesh::CaseFolder folder;
    std::size_t meshNumber = 0;
    std::unique_ptr<polymesh::PolyMesh> mesh;

    std::unique_ptr<polymesh::CellShapes> shapes;

    polymesh::FieldCatalog catalog;
    std::map<int, std::size_t> variables; ///< by variable id: the place of its field in the catalog

    // The field that was read last, and its time level.
    std::unique_ptr<polymesh::FieldFile> field;
    std::size_t fieldNumber = 0;
    int fieldLevel = -1;

    // The variable that is being read.
    bool isReadingVariable = false;
    KelZoneCategory category = KEL_CELL_ZONE;
    std::vector<std::pair<const polymesh::PolyPatch*, polymesh::FieldFile::OnPatch>>
        patches; ///< those with values, by face

    std::vector<Set> sets;
    const Set* set = nullptr;
    bool isReadingFlips = false;

    /// What its files say as settings; those of the data are looked for when somebody asks.
    polymesh::CaseSettings settings{folder};
    bool hasDataSettings = false;
    const polymesh::CaseSettings& settingsOf(KelDataClass dataClass);
    double secondsOf(std::size_t time) const; ///< the physical time of a level

    bool isOpen[2] = {false, false};

    static bool hasIds(unsigned64 first, unsigned64 last, unsigned64 count)
    {
        return first >= 1 && first <= last && last <= count;
    }

    KelMeshDescription describeMesh() const;
    void describeNeighbours(KelMeshDescription& description) const;
    void readMesh(std::size_t number);
    void makeSets();
    std::vector<unsigned64> idsOfSet() const; ///< of the open set, in its order

    /// @name Arrays, as give of the reader; what is asked for is there
    /// @{
    bool has(KelArray array, unsigned64 first, unsigned64 last) const;
    unsigned64 giveCoordinates(unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    unsigned64 giveFaces(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    unsigned64 giveShadows(unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    unsigned64 giveCells(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    unsigned64 giveValues(unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    unsigned64 giveSet(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    /// @}

    unsigned64 elementCount(KelZoneCategory of) const;
    std::uint64_t nodeCountOfFace(std::uint64_t face) const
    {
        return mesh->faceOffsets[face + 1] - mesh->faceOffsets[face];
    }
    short nodeCountOfCell(std::uint64_t cell) const { return polymesh::CellShapes::nodeCount(shapes->type(cell)); }

    bool readField(std::size_t number, int level);
    void findPatches();
    void findZones(std::vector<int>& zoneIds);

    /// @name Values of the variable that is being read; elements count from 0
    /// @{
    /// As many values as the field has components; null where there are none.
    const double* innerValues(std::uint64_t element) const;
    const double* cellValues(std::uint64_t cell) const;
    const double* faceValues(std::uint64_t face) const;
    const double* valuesOf(std::uint64_t element) const; ///< of the category that is being read
    /// @}
};

} // namespace meridyn
