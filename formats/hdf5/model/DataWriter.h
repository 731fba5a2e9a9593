#pragma once

#include "Catalogue.h"
#include "formats/hdf5/arrays/FieldArray.h"
#include "MeshLayout.h"

#include <map>
#include <memory>
#include <optional>

namespace meridyn::hdf5 {

/// "12", or "none" for values without a time level.
std::string levelName(std::optional<int> timeLevel);

/// The time level that a name stands for, none for "none" and for what is no number.
std::optional<int> parseLevelName(const std::string& name);

/// Drops the time levels from one on, of all meshes of a data file, with the times that the settings keep for them.
void dropLevelsFrom(Hdf5File& file, int level);

/// Writes the time levels of one mesh in a data file.
class DataWriter {
public:
    DataWriter(Hdf5File& file, hid_t meshGroup, int compression);
    ~DataWriter();

    Catalogue& catalogue() { return _catalogue; }
    hid_t meshGroup() const { return _group.get(); }

    /// Group of a time level, none for values without one. Going to another level completes the fields of the last one.
    hid_t level(std::optional<int> timeLevel);

    /// Group of a phase in a time level.
    Handle phaseGroup(std::optional<int> timeLevel, const std::string& phaseLink);

    /// The field of a variable in a time level, made when it is not there yet.
    FieldWriter& field(std::optional<int> timeLevel, const std::string& phaseLink, KelZoneCategory category,
                       const std::string& variableLink, std::optional<Stored> type, std::uint64_t columns);

    bool hasLevel() const { return static_cast<bool>(_level); }
    bool isAt(std::optional<int> timeLevel) const { return _level && levelName(timeLevel) == _levelName; }

    /// Leaves the level where it is now, complete or not, if it is one of those that are dropped.
    void abandonLevelFrom(int firstDropped);

    /// @throws FormatError when a field lacks values
    void finish();

private:
    void finishFields();

    Hdf5File& _file;
    Handle _group;
    int _compression;
    Catalogue _catalogue;
    std::string _levelName;
    Handle _level;
    std::map<std::string, std::unique_ptr<FieldWriter>> _fields; // of the level, by path
};

} // namespace meridyn::hdf5
