#pragma once

#include "KelLocationModel.h"
#include "KelProvider.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// A reader of a small mesh that lies open, so that a test can change one thing in it.
///
/// Elements are kept by id, so that index 0 of each list is not used. Zones are kept apart from the elements: what is
/// declared is what the test says, whether the elements are there or not.
class TestMesh : public KelProvider {
public:
    struct Zone {
        int id;
        KelZoneCategory category;
        unsigned64 first, last;
        int kind = -1;
    };
    struct Face {
        std::vector<unsigned64> nodes;
        unsigned64 cell0 = 0, cell1 = 0, shadow = 0;
        std::vector<unsigned64> children;
    };
    struct Cell {
        int type = -1; ///< written only while hasTypes
        std::vector<unsigned64> nodes, faces, children;
        int partition = 0;
    };
    struct Set {
        KelZoneCategory category;
        std::vector<unsigned64> ids;
    };

    unsigned64 dimension = 3;
    std::vector<std::vector<double>> nodes{{}};
    std::vector<std::vector<unsigned64>> edges{{}};
    std::vector<Face> faces{{}};
    std::vector<Cell> cells{{}};
    std::vector<Zone> zones;
    std::map<std::string, Set> sets;
    std::vector<unsigned64> sizes; ///< stated sizes of nodes, edges, faces, cells; empty for none
    int partitions = 0;
    bool hasTypes = true, hasFaceCells = true, hasFaceLists = false, hasPartitions = false;

    /// A generated mesh with all that it has.
    static TestMesh box(const std::string& text);

    /// A flat mesh of nx by ny unit squares.
    static TestMesh plane(unsigned64 nx, unsigned64 ny);

    TestMesh() = default;
    TestMesh(const TestMesh& other);

    /// Declares zones and sizes; called once, after all changes.
    void open();

    /// The zone of an id.
    Zone& zone(int id);

    /// @name Changes that tests share
    /// @{
    void merge(const std::vector<unsigned64>& group); ///< makes one polyhedron of some cells
    void dropFaces();                                 ///< leaves cells by their nodes only
    void listFaces();                                 ///< gives each cell the list of its faces
    void move(unsigned64 node, double x, double y, double z = 0.0);
    unsigned64 copyNode(unsigned64 node);           ///< a node in the same place
    unsigned64 addFace(const Face& face, int zone); ///< behind all others, whose zone is the last of the faces
    void removeFace(unsigned64 face);               ///< the last of its zone takes its id; ids behind move up
    void split(unsigned64 face, int zone, bool withNewNodes);              ///< an inner face becomes two outer ones
    void shift(KelZoneCategory category, unsigned64 by);                   ///< ids begin later
    TestMesh& append(const TestMesh& other, double x, double y, double z); ///< a second body, moved
    /// @}

    // clang-format off
    using KelProvider::getCoordinatesForNodesInRange;
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xyz, unsigned64 capacity) const override;
    unsigned64 getNodeCountsForEdgesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForEdgesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getNodeCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getCell1sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getShadowFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getChildFaceCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getChildFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getTypesForCellsInRange(unsigned64 first, unsigned64 last, KelCellType* types, unsigned64 capacity) const override;
    unsigned64 getNodeCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getNodeIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getFaceCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getFaceIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    unsigned64 getPartitionIdsForCellsInRange(unsigned64 first, unsigned64 last, int* ids, unsigned64 capacity) const override;
    int getPartitionCountOfCells() const override { return partitions; }
    unsigned64 getChildCellCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override;
    unsigned64 getChildCellIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    using KelProvider::getSetNames;
    bool getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const override;
    bool startReadingSet(const std::string& name) override;
    KelZoneCategory getCategoryOfSet() const override { return _open->category; }
    void getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizesOf, std::vector<unsigned64>& minIds, std::vector<unsigned64>& maxIds) const override;
    unsigned64 getIdsForSetInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override;
    // clang-format on

private:
    const Set* _open = nullptr;
};

} // namespace meridyn
