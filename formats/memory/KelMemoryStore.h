#pragma once

#include "KelExport.h"
#include "KelMemoryArray.h"

#include <list>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace meridyn {

/// Named things in the order in which they came.
template <class T>
struct KelMemoryList {
    std::vector<std::string> names;
    std::map<std::string, T> things;

    /// The thing of a name, made behind the others if missing.
    T& operator[](const std::string& name)
    {
        if (things.count(name) == 0)
            names.push_back(name);
        return things[name];
    }
    /// The thing of a name, or null.
    const T* find(const std::string& name) const
    {
        const auto found = things.find(name);
        return found != things.end() ? &found->second : nullptr;
    }
};

/// What KelBase knows about a zone.
struct KelMemoryZone {
    int id = 0;
    KelZoneCategory category = KEL_NODE_ZONE;
    unsigned64 sizes[3] = {0, 0, 0}; ///< first id, last id, extra size
    std::string texts[2];
    std::vector<int> numbers; ///< in the order of the category's KelXZoneInfoType
    int flags = 0;
    std::list<int> side0, side1, around; ///< adjacent zones
};

/// Interface data of a zone, side 0 and side 1.
struct KelMemoryInterface {
    KelMemoryValues shares0, shares1, faces0, faces1;
};

struct KelMemorySection {
    std::vector<int> zoneIds;
    KelPlainDataType type = KelPlainDataType(-1);
    unsigned64 size = 0; ///< values per element
    KelMemoryArray values;
};

struct KelMemoryPhase {
    short id = 0;
    std::string name;
    std::map<std::string, std::string> attributes;
};

struct KelMemoryVariable {
    int id = 0;
    short phaseId = 0;
    std::string name;
    std::map<std::string, std::string> attributes;
    std::vector<KelZoneCategory> categories;
};

/// Values of a variable on the zones of a category.
struct KelMemoryField {
    std::vector<int> zoneIds;
    unsigned64 size = 0; ///< values per element
    KelMemoryArray values;
};

struct KelMemorySetVariable {
    KelPlainDataType type = KelPlainDataType(-1);
    KelPlainDataType lengthType = KelPlainDataType(-1);
    unsigned64 valuesPerMember = 0;
    KelMemoryArray lengths, values;
};

/// A set, by position, or a set-data block: then one value after the other.
struct KelMemorySet {
    KelZoneCategory category = KelZoneCategory(-1);
    unsigned64 memberCount = 0;
    std::vector<unsigned64> sizes, minIds, maxIds;
    KelMemoryArray ids;
    KelMemoryList<KelMemorySetVariable> constant, variableLength;
    KelMemoryList<KelMemoryValues> others;
    KelMemoryList<std::string> texts;
};

struct KelMemoryTrackChunk {
    unsigned64 pointCount = 0;
    std::map<std::string, KelMemoryValues> variables;
};

struct KelMemoryTrackGroup {
    std::vector<int> chunkIds;
    std::map<int, KelMemoryTrackChunk> chunks;
};

using KelMemoryFieldKey = std::tuple<std::string, KelZoneCategory, std::string>; ///< phase, category, variable
using KelMemoryTrackKey = std::tuple<std::string, int, KelTargetCategory, int>;  ///< phase, mesh, target, partition
using KelMemoryContext = std::tuple<int, KelTargetCategory, int>;                ///< mesh, target, partition
using KelMemoryPairs = std::vector<std::pair<std::string, std::string>>;

/// What belongs to a time level. A case has one level, of number 0.
struct KelMemoryLevel {
    std::map<KelMemoryFieldKey, KelMemoryField> fields;
    KelMemoryList<KelMemorySet> sets;
    std::map<std::string, KelMemoryList<KelMemorySet>> setData; ///< by phase
    std::map<KelMemoryTrackKey, KelMemoryList<KelMemoryTrackGroup>> tracks;
};

/// A mesh and its solution, for one target and partition.
struct KelMemoryModel {
    unsigned64 sizes[5] = {0, 0, 0, 0, 0};
    std::string units, locations;
    std::vector<KelMemoryZone> zones;
    std::map<std::string, KelMemoryArray> arrays; ///< topology, by what it is: "face node ids"
    int partitionCount = 0;
    std::map<int, std::vector<unsigned64>> localIds; ///< by zone
    std::vector<int> interfaceZones[2];
    std::map<int, KelMemoryInterface> interfaces; ///< by zone
    KelMemoryList<KelMemorySection> sections[4];  ///< by category

    std::vector<int> timeLevels;
    std::vector<KelMemoryPhase> phases;
    std::vector<KelMemoryVariable> variables;
    std::map<int, KelMemoryLevel> levels;
};

/// What a file holds for one data class.
struct KelMemoryFile {
    KelMemoryList<KelMemoryList<std::string>> settings; ///< by group
    KelMemoryPairs log;
    std::map<KelMemoryContext, KelMemoryModel> models;
};

/// The files of this process, by name ("memory:" and anything) and data class. A file never changes once it is there:
/// a reader keeps what it opened although a writer puts another in its place. May be used from several threads.
class KEL_API KelMemoryStore {
public:
    using File = std::shared_ptr<const KelMemoryFile>;

    /// The file of that name and data class, or null.
    static File find(const std::string& name, KelDataClass dataClass);

    /// Puts a file in the place of an earlier one.
    static void publish(const std::string& name, KelDataClass dataClass, File file);

    /// Drops the files of that name, of both data classes; false when there are none.
    static bool remove(const std::string& name);
};

/// What a map has under a key, or null.
template <class Map>
const typename Map::mapped_type* findIn(const Map& map, const typename Map::key_type& key)
{
    const auto found = map.find(key);
    return found != map.end() ? &found->second : nullptr;
}

/// Calls `visit` with an empty list of the type's values; false for none of the ten types.
template <class Visit>
bool visitEmptyValues(KelPlainDataType type, const Visit& visit)
{
    static const KelMemoryValues empty[] = {std::vector<unsigned char>(), std::vector<char>(),     std::vector<short>(),
                                            std::vector<unsigned int>(),  std::vector<int>(),      std::vector<long>(),
                                            std::vector<unsigned64>(),    std::vector<signed64>(), std::vector<float>(),
                                            std::vector<double>()};
    if (type < 0 || type > KEL_PLAIN_DOUBLE)
        return false;
    std::visit([&visit](auto list) { visit(std::move(list)); }, empty[type]);
    return true;
}

} // namespace meridyn
