#pragma once

#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"
#include "KelSolutionModel.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <list>
#include <map>
#include <string>
#include <unistd.h>
#include <vector>

namespace hdf5test {

using namespace meridyn;

using Folder = TemporaryFolder;

/// A writer whose protected operations the tests reach.
class Writer : public KelHdf5Consumer {
public:
    using KelBase::addVariableOfCategory;
    using KelBase::setCellFaceZoneIds;
    using KelBase::setFaceCellZone0Ids;
    using KelBase::setFaceCellZone1Ids;
    using KelBase::setMeshContext;
    using KelBase::solutionModel;
    using KelConsumer::getLastLogIndex;

    void zone(KelZoneCategory, int id, unsigned64 first, unsigned64 last)
    {
        setZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
        setZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
    }
    void context(int meshId, int target, int partitionId)
    {
        setMeshContext(meshId, static_cast<KelTargetCategory>(target), partitionId, KEL_UPDATE_NONE);
    }
    std::string errors()
    {
        std::string all;
        for (const std::string& error : getErrors(false, true))
            all += error + "\n";
        return all;
    }
};

class Reader : public KelHdf5Provider {
public:
    using KelBase::getVariablesOfCategory;
    using KelBase::setActivePhase;
    using KelBase::setMeshContext;
    using KelBase::solutionModel;

    std::string errors()
    {
        std::string all;
        for (const std::string& error : getErrors(false, true))
            all += error + "\n";
        return all;
    }
};

using Bytes = std::vector<char>;

inline Bytes bytesOf(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void writeBytes(const std::string& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

/// Two hexahedra side by side in x: 12 nodes, 11 faces, 2 cells; node zone 1, face zones 11 (interior, face 1) and 12
/// (walls, faces 2 to 11), cell zone 21.
struct TwoCells {
    std::vector<double> xyz;
    std::vector<unsigned64> faceNodes;
    std::vector<unsigned64> cell0;
    std::vector<unsigned64> cell1{2};

    TwoCells()
    {
        for (int z = 0; z < 2; ++z)
            for (int y = 0; y < 2; ++y)
                for (int x = 0; x < 3; ++x)
                    xyz.insert(xyz.end(), {1.0 * x, 1.0 * y, 0.1 * z});
        faceNodes = {2, 5, 11, 8,                                             // between the cells
                     1, 7, 10, 4, 3, 6, 12, 9,                                // x ends
                     1, 2, 8,  7, 2, 3, 9,  8, 4, 10, 11, 5,  5, 11, 12, 6,   // y ends
                     1, 4, 5,  2, 2, 5, 6,  3, 7, 8,  11, 10, 8, 9,  12, 11}; // z ends
        cell0 = {1, 1, 2, 1, 2, 1, 2, 1, 2, 1, 2};
    }

    static void declare(Writer& writer)
    {
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        writer.setMeshSize(KEL_MESH_SIZE_1, 12);
        writer.setMeshSize(KEL_MESH_SIZE_3, 11);
        writer.setMeshSize(KEL_MESH_SIZE_4, 2);
        writer.setMeshUnits("m");
        writer.setZoneIds(KEL_NODE_ZONE, {1});
        writer.setZoneIds(KEL_FACE_ZONE, {11, 12});
        writer.setZoneIds(KEL_CELL_ZONE, {21});
        writer.zone(KEL_NODE_ZONE, 1, 1, 12);
        writer.zone(KEL_FACE_ZONE, 11, 1, 1);
        writer.zone(KEL_FACE_ZONE, 12, 2, 11);
        writer.zone(KEL_CELL_ZONE, 21, 1, 2);
    }

    void writeArrays(Writer& writer) const
    {
        writer.startWritingCoordinatesForNodes({1});
        writer.setCoordinatesForNodesInZone(1, xyz.data(), xyz.size());
        writer.startWritingNodesForFaces({11, 12});
        writer.setUniformNodeCountForFacesInZone(11, 4);
        writer.setUniformNodeCountForFacesInZone(12, 4);
        writer.setNodeIdsForFacesInZone(11, faceNodes.data(), 4);
        writer.setNodeIdsForFacesInZone(12, faceNodes.data() + 4, 40);
        writer.startWritingCell0sForFaces({11, 12});
        writer.setCell0sForFacesInRange(1, 11, cell0.data(), 11);
        writer.startWritingCell1sForFaces({11});
        writer.setCell1sForFacesInRange(1, 1, cell1.data(), 1);
        writer.startWritingTypesForCells({21}, {KEL_CELL_HEXAHEDRON});
    }

    bool write(Writer& writer, const std::string& path) const
    {
        declare(writer);
        if (!writer.startWriting(path, KEL_CASE))
            return false;
        writeArrays(writer);
        return writer.endWriting(KEL_CASE);
    }
};

} // namespace hdf5test
