#pragma once

#include "KelPolyMeshProvider.h"

#include <array>
#include <cmath>
#include <set>
#include <string>
#include <vector>

/// A mesh as a client gets it from the reader, and its geometry by face triangles and cell pyramids.
struct MeshGeometry {
    using Point = std::array<double, 3>;

    struct Zone {
        int id;
        std::string name, kind;
        meridyn::unsigned64 first, last, count;
    };

    std::vector<double> xyz;
    std::vector<short> nodeCounts;
    std::vector<meridyn::unsigned64> nodeIds, cell0s, cell1s, offsets;
    std::vector<meridyn::KelCellType> types;
    std::vector<short> faceCounts;
    std::vector<Point> areas, faceCentres, cellCentres;
    std::vector<double> volumes;

    static Zone zone(const meridyn::KelProvider& reader, int id)
    {
        using namespace meridyn;
        Zone zone{id, {}, {}, 0, 0, 0};
        reader.getZoneStringInfo(id, KEL_ZONE_STRING_0, zone.name);
        reader.getZoneStringInfo(id, KEL_ZONE_STRING_1, zone.kind);
        reader.getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, zone.first);
        reader.getZoneSizeInfo(id, KEL_ZONE_LAST_ID, zone.last);
        reader.getZoneSizeInfo(id, KEL_ZONE_ELEMENT_COUNT, zone.count);
        return zone;
    }

    static std::vector<Zone> zones(const meridyn::KelProvider& reader, meridyn::KelZoneCategory category)
    {
        std::vector<int> ids;
        reader.getZoneIds(category, ids);
        std::vector<Zone> all;
        for (const int id : ids)
            all.push_back(zone(reader, id));
        return all;
    }

    static Point minus(const Point& a, const Point& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
    static double dot(const Point& a, const Point& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
    static double length(const Point& a) { return std::sqrt(dot(a, a)); }
    static Point cross(const Point& a, const Point& b)
    {
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }
    static void add(Point& sum, const Point& a, double factor = 1)
    {
        for (std::size_t d = 0; d < 3; ++d)
            sum[d] += factor * a[d];
    }

    Point node(meridyn::unsigned64 id) const { return {xyz[3 * id - 3], xyz[3 * id - 2], xyz[3 * id - 1]}; }

    std::set<meridyn::unsigned64> nodesOfFaces(meridyn::unsigned64 first, meridyn::unsigned64 last) const
    {
        return {nodeIds.begin() + static_cast<std::ptrdiff_t>(offsets[first - 1]),
                nodeIds.begin() + static_cast<std::ptrdiff_t>(offsets[last])};
    }

    explicit MeshGeometry(const meridyn::KelProvider& reader)
    {
        using namespace meridyn;
        unsigned64 points = 0, faces = 0, cells = 0;
        reader.getMeshSize(KEL_MESH_SIZE_1, points);
        reader.getMeshSize(KEL_MESH_SIZE_3, faces);
        reader.getMeshSize(KEL_MESH_SIZE_4, cells);
        xyz.resize(3 * points);
        nodeCounts.resize(faces);
        cell0s.resize(faces);
        cell1s.resize(faces);
        types.resize(cells);
        faceCounts.resize(cells);
        reader.getCoordinatesForNodesInRange(1, points, xyz.data(), xyz.size());
        reader.getNodeCountsForFacesInRange(1, faces, nodeCounts.data(), faces);
        reader.getCell0sForFacesInRange(1, faces, cell0s.data(), faces);
        reader.getCell1sForFacesInRange(1, faces, cell1s.data(), faces);
        reader.getTypesForCellsInRange(1, cells, types.data(), cells);
        reader.getFaceCountsForCellsInRange(1, cells, faceCounts.data(), cells);
        offsets.push_back(0);
        for (const short count : nodeCounts)
            offsets.push_back(offsets.back() + static_cast<unsigned64>(count));
        nodeIds.resize(offsets.back());
        reader.getNodeIdsForFacesInRange(1, faces, nodeIds.data(), nodeIds.size());
        for (unsigned64 face = 0; face < faces; ++face)
            addFace(face);
        makeCells(cells);
    }

private:
    void addFace(std::size_t face)
    {
        const auto count = static_cast<std::size_t>(nodeCounts[face]);
        std::vector<Point> p;
        Point middle{}, area{}, centre{};
        for (std::size_t n = 0; n < count; ++n) {
            p.push_back(node(nodeIds[offsets[face] + n]));
            add(middle, p.back(), 1.0 / static_cast<double>(count));
        }
        double sum = 0;
        for (std::size_t n = 0; n < count; ++n) {
            const Point &a = p[n], &b = p[(n + 1) % count];
            const Point normal = cross(minus(b, a), minus(middle, a));
            const double size = length(normal);
            add(area, normal, 0.5);
            for (const Point& corner : {a, b, middle})
                add(centre, corner, size / 3);
            sum += size;
        }
        areas.push_back(area);
        faceCentres.push_back({centre[0] / sum, centre[1] / sum, centre[2] / sum});
    }

    void makeCells(std::size_t cells)
    {
        std::vector<Point> middles(cells);
        std::vector<double> counts(cells);
        cellCentres.resize(cells);
        volumes.resize(cells);
        const auto forSides = [this](const auto& act) {
            for (std::size_t face = 0; face < cell0s.size(); ++face) {
                act(face, cell0s[face] - 1, 1.0);
                if (cell1s[face] != 0)
                    act(face, cell1s[face] - 1, -1.0);
            }
        };
        forSides([&](std::size_t face, std::size_t cell, double) {
            add(middles[cell], faceCentres[face]);
            ++counts[cell];
        });
        for (std::size_t cell = 0; cell < cells; ++cell)
            for (double& x : middles[cell])
                x /= counts[cell];
        forSides([&](std::size_t face, std::size_t cell, double sign) {
            const double volume = sign * dot(areas[face], minus(faceCentres[face], middles[cell])) / 3;
            volumes[cell] += volume;
            add(cellCentres[cell], faceCentres[face], 0.75 * volume);
            add(cellCentres[cell], middles[cell], 0.25 * volume);
        });
        for (std::size_t cell = 0; cell < cells; ++cell)
            for (double& x : cellCentres[cell])
                x /= volumes[cell];
    }
};
