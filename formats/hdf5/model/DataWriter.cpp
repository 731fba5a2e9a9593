#include "DataWriter.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include "TextStore.h"

#include <charconv>

namespace meridyn::hdf5 {

namespace {

// The group of the data settings that has the physical time of each level.
const char timesGroup[] = "timeLevels";

} // namespace

std::string levelName(std::optional<int> timeLevel)
{
    return timeLevel ? std::to_string(*timeLevel) : "none";
}

std::optional<int> parseLevelName(const std::string& name)
{
    int level = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), level);
    return error == std::errc() && end == name.data() + name.size() ? std::optional<int>(level) : std::nullopt;
}

void dropLevelsFrom(Hdf5File& file, int level)
{
    const auto isDropped = [level](const std::string& name) {
        const std::optional<int> number = parseLevelName(name);
        return number && *number >= level;
    };
    const Handle meshes = findGroup(file.id(), {"meshes"});
    for (const std::string& mesh : meshes ? linkNames(meshes.get()) : std::vector<std::string>())
        if (const Handle levels = findGroup(meshes.get(), {mesh, "levels"}))
            for (const std::string& name : linkNames(levels.get()))
                if (isDropped(name))
                    file.removeAtCommit(levels.get(), name);
    for (const std::string& key : settingsKeys(file.id(), timesGroup))
        if (isDropped(key))
            removeSetting(file.id(), timesGroup, key);
}

DataWriter::DataWriter(Hdf5File& file, hid_t meshGroup, int compression)
    : _file(file), _compression(compression), _catalogue(Catalogue::load(meshGroup))
{
    H5Iinc_ref(meshGroup);
    _group = Handle(meshGroup);
}

DataWriter::~DataWriter() = default;

hid_t DataWriter::level(std::optional<int> timeLevel)
{
    const std::string name = levelName(timeLevel);
    if (_level && name == _levelName)
        return _level.get();
    finishFields();
    const Handle levels = openOrCreateGroup(_group.get(), "levels");
    _level = openOrCreateGroup(levels.get(), name);
    _levelName = name;
    return _level.get();
}

Handle DataWriter::phaseGroup(std::optional<int> timeLevel, const std::string& phaseLink)
{
    const Handle phases = openOrCreateGroup(level(timeLevel), "phases");
    return openOrCreateGroup(phases.get(), phaseLink);
}

FieldWriter& DataWriter::field(std::optional<int> timeLevel, const std::string& phaseLink, KelZoneCategory category,
                               const std::string& variableLink, std::optional<Stored> type, std::uint64_t columns)
{
    level(timeLevel);
    std::unique_ptr<FieldWriter>& field = _fields[phaseLink + "/" + groupNameOf(category) + "/" + variableLink];
    if (!field) {
        const Handle phase = phaseGroup(timeLevel, phaseLink);
        const Handle group = openOrCreateGroup(phase.get(), groupNameOf(category));
        field = std::make_unique<FieldWriter>(_file, group.get(), variableLink, type, columns, _compression);
    }
    if (field->columns() != columns)
        throw FormatError(_levelName + "/" + phaseLink + "/" + variableLink + " has " +
                          std::to_string(field->columns()) + " values per element, now " + std::to_string(columns));
    return *field;
}

void DataWriter::finishFields()
{
    for (const auto& [path, field] : _fields)
        field->finish();
    _fields.clear();
}

void DataWriter::abandonLevelFrom(int firstDropped)
{
    const std::optional<int> level = parseLevelName(_levelName);
    if (!level || *level < firstDropped)
        return;
    _fields.clear();
    _level = Handle();
    _levelName.clear();
}

void DataWriter::finish()
{
    finishFields();
    _catalogue.store(_group.get());
}

} // namespace meridyn::hdf5
