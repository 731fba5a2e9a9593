// A complete format in one file: the nodes of a mesh as text, one line each.
//
//     kel-points 1
//     <dimension> <number of node zones>
//     <zone id> <first node id> <last node id>      for each zone
//     <x> <y> <z>                                   for each node, from id 1
//
// Built as a shared object, it is found in a folder of KEL_FORMAT_PLUGIN_DIR, or loaded with
// KelFormatRegistry::loadPlugin. "kel conform points" then tests it.
#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatPlugin.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace meridyn;

namespace {

const std::string firstLine = "kel-points 1";

/// What a file holds.
struct Points {
    struct Zone {
        int id = 0;
        unsigned64 first = 0, last = 0;
    };
    unsigned64 dimension = 0;
    std::vector<Zone> zones;
    std::vector<double> coordinates; ///< of node 1, of node 2, ...

    unsigned64 count() const { return dimension == 0 ? 0 : coordinates.size() / dimension; }
};

void report(const KelBase& owner, const std::string& text)
{
    owner.getMessageRegistrar()->registerMessage(KelError(text, "points format"));
}

// ---- writer -------------------------------------------------------------------------------------------------------

class PointsWriter : public KelFileConsumer {
public:
    bool isWritingData() override { return _isOpen; }

    // Both forms of the name are overridden; with only one, a using line would have to name the other.
    void setCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, const double* xyz, unsigned64 count) override
    {
        keep(first, last, xyz, count);
    }
    void setCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, const float* xyz, unsigned64 count) override
    {
        keep(first, last, xyz, count);
    }

    // The frame prints what a format does not override; these are called at endWriting.
    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>&, KelDataClass,
                             const std::string&) const override
    {}

protected:
    bool openData(KelDataClass dataClass, const std::string&) override
    {
        if (dataClass != KEL_CASE) // there is no place for a solution
            return false;
        _points = Points();
        _isOpen = true;
        return true;
    }

    /// Writes the file under another name first: a reader sees the old one or the new one, never half of it.
    bool closeData(KelDataClass dataClass) override
    {
        if (dataClass != KEL_CASE || !_isOpen)
            return false;
        _isOpen = false;
        getMeshSize(KEL_MESH_DIMENSION, _points.dimension);
        const std::string name = getFile(KEL_CASE), temporary = name + ".tmp";
        std::ofstream out(temporary, std::ios::binary);
        out << text();
        out.close();
        if (!out || std::rename(temporary.c_str(), name.c_str()) != 0) {
            report(*this, name + ": could not be written");
            std::remove(temporary.c_str());
            return false;
        }
        return true;
    }

private:
    template <class T>
    void keep(unsigned64 first, unsigned64 last, const T* xyz, unsigned64 count)
    {
        unsigned64 dimension = 0, nodes = 0;
        getMeshSize(KEL_MESH_DIMENSION, dimension);
        getMeshSize(KEL_MESH_SIZE_1, nodes);
        if (!_isOpen || xyz == nullptr || first == 0 || first > last || last > nodes ||
            count != (last - first + 1) * dimension) {
            report(*this, getFile(KEL_CASE) + ": coordinates of nodes " + std::to_string(first) + " to " +
                              std::to_string(last) + ": not open, no such nodes, or not " + std::to_string(dimension) +
                              " values each");
            return;
        }
        if (_points.coordinates.size() < last * dimension)
            _points.coordinates.resize(last * dimension);
        std::copy(xyz, xyz + count, _points.coordinates.begin() + static_cast<std::ptrdiff_t>((first - 1) * dimension));
    }

    std::string text() const
    {
        std::vector<int> ids;
        getZoneIds(KEL_NODE_ZONE, ids);
        std::string all =
            firstLine + "\n" + std::to_string(_points.dimension) + " " + std::to_string(ids.size()) + "\n";
        for (const int id : ids) {
            unsigned64 first = 0, last = 0;
            getZoneSizeInfo(id, KEL_ZONE_FIRST_ID, first);
            getZoneSizeInfo(id, KEL_ZONE_LAST_ID, last);
            all += std::to_string(id) + " " + std::to_string(first) + " " + std::to_string(last) + "\n";
        }
        for (std::size_t n = 0; n < _points.coordinates.size(); ++n) {
            std::array<char, 32> number{}; // to_chars: the shortest text that reads back the same, in every locale
            const auto end = std::to_chars(number.begin(), number.end(), _points.coordinates[n]).ptr;
            all.append(number.begin(), end);
            all += (n + 1) % _points.dimension == 0 ? '\n' : ' ';
        }
        return all;
    }

    Points _points;
    bool _isOpen = false;
};

// ---- reader -------------------------------------------------------------------------------------------------------

/// Takes the next number of a text; false when there is none.
template <class T>
bool take(std::istream& in, T& value)
{
    std::string word;
    in >> word;
    const auto result = std::from_chars(word.data(), word.data() + word.size(), value);
    return !word.empty() && result.ec == std::errc() && result.ptr == word.data() + word.size();
}

/// Reads a file as a whole. False, with the reason, for anything that is not exactly one.
bool readPoints(const std::string& name, Points& points, std::string& problem)
{
    std::ifstream in(name, std::ios::binary);
    std::string line;
    unsigned64 zoneCount = 0;
    problem = name + ": no file of points: expected '" + firstLine + "', a dimension from 1 to 3 and a number of zones";
    if (!std::getline(in, line) || line != firstLine || !take(in, points.dimension) || points.dimension < 1 ||
        points.dimension > 3 || !take(in, zoneCount))
        return false;
    unsigned64 nodes = 0;
    for (unsigned64 n = 0; n < zoneCount; ++n) { // memory grows with what is there, not with what is promised
        Points::Zone zone;
        problem = name + ": zone " + std::to_string(n + 1) + " of " + std::to_string(zoneCount) +
                  ": expected an id and its first and last node";
        if (!take(in, zone.id) || !take(in, zone.first) || !take(in, zone.last) || zone.last < zone.first)
            return false;
        nodes = std::max(nodes, zone.last);
        points.zones.push_back(zone);
    }
    for (double value = 0; take(in, value);)
        points.coordinates.push_back(value);
    problem = name + ": has " + std::to_string(points.coordinates.size()) + " coordinates, expected " +
              std::to_string(points.dimension) + " for each of " + std::to_string(nodes) + " nodes";
    return in.eof() && points.coordinates.size() % points.dimension == 0 && points.count() == nodes;
}

class PointsReader : public KelFileProvider {
public:
    bool isReadingData() const override { return _points != nullptr; }

    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xyz,
                                             unsigned64 capacity) const override
    {
        return give(first, last, xyz, capacity);
    }
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, float* xyz,
                                             unsigned64 capacity) const override
    {
        return give(first, last, xyz, capacity);
    }

protected:
    bool openData(KelDataClass dataClass, const std::string& fileName) override
    {
        auto points = std::make_unique<Points>();
        std::string problem = fileName + ": has no solution, only points";
        if (dataClass != KEL_CASE || !readPoints(fileName, *points, problem)) {
            report(*this, problem);
            return false;
        }
        _points = std::move(points);
        setMeshSize(_points->dimension, _points->count(), 0, 0, 0);
        std::vector<int> ids;
        for (const Points::Zone& zone : _points->zones)
            ids.push_back(zone.id);
        setZoneIds(KEL_NODE_ZONE, ids);
        for (const Points::Zone& zone : _points->zones) {
            setZoneSizeInfo(zone.id, KEL_ZONE_FIRST_ID, zone.first);
            setZoneSizeInfo(zone.id, KEL_ZONE_LAST_ID, zone.last);
        }
        return true;
    }

    bool closeData(KelDataClass dataClass) override
    {
        const bool wasOpen = dataClass == KEL_CASE && _points != nullptr;
        if (wasOpen)
            _points = nullptr;
        return wasOpen;
    }

private:
    /// As many whole nodes as there is room for; nothing where a node is not there.
    template <class T>
    unsigned64 give(unsigned64 first, unsigned64 last, T* xyz, unsigned64 capacity) const
    {
        if (!_points || first == 0 || first > last || last > _points->count())
            return 0;
        const unsigned64 count = std::min(last - first + 1, capacity / _points->dimension) * _points->dimension;
        const auto from = _points->coordinates.begin() + static_cast<std::ptrdiff_t>((first - 1) * _points->dimension);
        std::transform(from, from + static_cast<std::ptrdiff_t>(count), xyz,
                       [](double value) { return static_cast<T>(value); });
        return count;
    }

    std::unique_ptr<Points> _points; ///< null while nothing is open
};

// ---- the format as data -------------------------------------------------------------------------------------------

bool isPointsFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::string line(firstLine.size() + 1, '\0'); // a folder opens, but gives nothing
    return in.read(line.data(), static_cast<std::streamsize>(line.size())) && line == firstLine + "\n";
}

KelFormat pointsFormat()
{
    KelFormat format;
    format.name = "points";
    format.description = "Nodes of a mesh as text, one line each";
    format.suffixes = {".points"};
    format.reads = formatFamily(KEL_FAMILY_COORDINATES);
    format.writes = formatFamily(KEL_FAMILY_COORDINATES);
    format.probe = isPointsFile;
    format.files = [](const std::string& path, bool) { return KelFormatFiles{path, ""}; }; // no data file
    format.makeReader = [] { return std::make_unique<PointsReader>(); };
    format.makeWriter = [] { return std::make_unique<PointsWriter>(); };
    return format;
}

} // namespace

const KelFormatPlugin* kelFormatPlugin()
{
    static const KelFormatPlugin plugin{kelFormatPluginVersion, pointsFormat()};
    return &plugin;
}
