#include "Attributes.h"
#include "DataWriter.h"
#include "ProviderData.h"

#include <algorithm>

namespace meridyn {

using namespace hdf5;

// ---- where things are ----

hdf5::Handle KelHdf5Provider::Data::levelGroup() const
{
    const Session* const target = session(KEL_DATA);
    const std::vector<int>& known = reader.getTimeLevels();
    const bool isKnown = std::find(known.begin(), known.end(), reader.getTimeLevel()) != known.end();
    const std::string name = levelName(isKnown ? std::optional<int>(reader.getTimeLevel()) : std::nullopt);
    return target != nullptr && levels.count(name) > 0 ? findGroup(target->mesh.get(), {"levels", name}) : Handle();
}

hdf5::Handle KelHdf5Provider::Data::phaseGroup(const std::string& phase) const
{
    const Catalogue::Phase* const entry = catalogue.find(phase);
    const Handle level = levelGroup();
    return entry != nullptr && level ? findGroup(level.get(), {"phases", entry->link}) : Handle();
}

hdf5::Handle KelHdf5Provider::Data::groupInPhase(const std::string& phase, const char* name) const
{
    const Handle group = phaseGroup(phase);
    return group ? findGroup(group.get(), {name}) : Handle();
}

std::string KelHdf5Provider::Data::activePhase() const
{
    std::string phase;
    reader.getActivePhase(phase);
    return phase;
}

const Catalogue::Variable* KelHdf5Provider::Data::variable(const std::string& phase, const std::string& name) const
{
    const Catalogue::Phase* const entry = catalogue.find(phase);
    return entry == nullptr ? nullptr : entry->find(name);
}

// ---- case sections ----

void KelHdf5Provider::startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names)
{
    names.clear();
    _data->sectionCategory = category;
    _data->askMesh("startReadingCaseSectionCategories", false, [&](const MeshReader& mesh) {
        if (const Handle group = findGroup(mesh.group(), {"case_sections", groupNameOf(category)}))
            for (const std::string& name : linkNames(group.get()))
                names.push_back(decodeName(name));
        return true;
    });
}

KelPlainDataType KelHdf5Provider::startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds)
{
    _data->section.reset();
    return _data->askMesh(
        "startReadingCaseSectionForCategory", static_cast<KelPlainDataType>(-1), [&](const MeshReader& mesh) {
            const Handle group =
                findGroup(mesh.group(), {"case_sections", groupNameOf(_data->sectionCategory), encodeName(name)});
            if (!group)
                return static_cast<KelPlainDataType>(-1);
            const auto type = readNumber(group.get(), "kel_type").value_or(-1);
            auto section = FieldReader::open(mesh.file(), group.get(), "values");
            if (!section || !isPlainType(static_cast<int>(type)))
                return static_cast<KelPlainDataType>(-1);
            if (storedTypeOfPlain(static_cast<KelPlainDataType>(type)) != section->type())
                throw FormatError(pathOf(group.get()) + "@kel_type is " + std::to_string(type) +
                                  ", not the type of its values");
            zoneIds = section->zones();
            _data->section = std::move(section);
            return static_cast<KelPlainDataType>(type);
        });
}

bool KelHdf5Provider::hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const
{
    if (!_data->section)
        return false;
    const std::vector<int> zones = _data->section->zones();
    if (std::find(zones.begin(), zones.end(), zoneId) == zones.end())
        return false;
    if (count != nullptr)
        *count = _data->section->columns();
    return true;
}

unsigned64 KelHdf5Provider::getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values,
                                                                 unsigned64 capacity) const
{
    if (!_data->section)
        return 0;
    return _data->askMesh("getCaseSectionDataForElementsInRange", unsigned64{0}, [&](const MeshReader&) {
        const FieldReader& section = *_data->section;
        const auto read = [&](auto* typed) { return section.read(firstId, lastId, typed, capacity); };
        switch (section.type()) {
        case Stored::U8:
            return read(static_cast<unsigned char*>(values));
        case Stored::I8:
            return read(static_cast<char*>(values));
        case Stored::I16:
            return read(static_cast<short*>(values));
        case Stored::U32:
            return read(static_cast<unsigned int*>(values));
        case Stored::I32:
            return read(static_cast<int*>(values));
        case Stored::I64:
            return read(static_cast<signed64*>(values));
        case Stored::U64:
            return read(static_cast<unsigned64*>(values));
        case Stored::F32:
            return read(static_cast<float*>(values));
        case Stored::F64:
            break;
        }
        return read(static_cast<double*>(values));
    });
}

void KelHdf5Provider::endReadingCaseSectionForCategory()
{
    _data->section.reset();
}

// ---- values of variables ----

unsigned64 KelHdf5Provider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                         const std::string& variableName,
                                                                         std::vector<int>& zoneIds)
{
    zoneIds.clear();
    _data->values.reset();
    return _data->ask(KEL_DATA, "startReadingZonesOfCategoryWithPhaseVariable", unsigned64{0},
                      [&](Data::Session& data) {
                          const std::string phase = _data->activePhase();
                          const Catalogue::Variable* const variable = _data->variable(phase, variableName);
                          if (variable == nullptr || !isCategory(category))
                              return unsigned64{0};
                          const Handle group = _data->groupInPhase(phase, groupNameOf(category));
                          if (!group)
                              return unsigned64{0};
                          _data->values = FieldReader::open(*data.file, group.get(), variable->link);
                          if (!_data->values)
                              return unsigned64{0};
                          zoneIds = _data->values->zones();
                          return _data->values->columns();
                      });
}

unsigned64 KelHdf5Provider::getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                       float* values, unsigned64 capacity) const
{
    if (!_data->values)
        return 0;
    return _data->ask(KEL_DATA, "getValuesOfPhaseVariableForElementsInRange", unsigned64{0},
                      [&](Data::Session&) { return _data->values->read(firstId, lastId, values, capacity); });
}

unsigned64 KelHdf5Provider::getValuesOfPhaseVariableForElementsInRange(unsigned64 firstId, unsigned64 lastId,
                                                                       double* values, unsigned64 capacity) const
{
    if (!_data->values)
        return 0;
    return _data->ask(KEL_DATA, "getValuesOfPhaseVariableForElementsInRange", unsigned64{0},
                      [&](Data::Session&) { return _data->values->read(firstId, lastId, values, capacity); });
}

// ---- particles: the set data of a phase ----

bool KelHdf5Provider::hasParticles(const std::string& phaseName) const
{
    return _data->ask(KEL_DATA, "hasParticles", false, [&](Data::Session&) {
        const Handle group = _data->groupInPhase(phaseName, "set_data");
        return group && !linkNames(group.get()).empty();
    });
}

void KelHdf5Provider::getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const
{
    names = _data->ask(KEL_DATA, "getVariablesOfInjection", std::vector<std::string>(), [&](Data::Session& data) {
        const Handle group = _data->groupInPhase(_data->activePhase(), "set_data");
        if (!group || !hasLink(group.get(), encodeName(injection)))
            return std::vector<std::string>();
        const MemberReader members(*data.file, openGroup(group.get(), encodeName(injection)));
        std::vector<std::string> found = members.names("variables");
        const std::vector<std::string> lists = members.names("lists");
        found.insert(found.end(), lists.begin(), lists.end());
        return found;
    });
}

// ---- particle tracks ----

namespace {

bool hasTracks(const Handle& tracks)
{
    return tracks && !linkNames(tracks.get()).empty();
}

std::string trackKey(int meshId, int target, int partitionId)
{
    return MeshKey{meshId, target, partitionId}.groupName();
}

} // namespace

bool KelHdf5Provider::hasParticleTracks(const std::string& phaseName) const
{
    return _data->ask(KEL_DATA, "hasParticleTracks", false,
                      [&](Data::Session&) { return hasTracks(_data->groupInPhase(phaseName, "tracks")); });
}

bool KelHdf5Provider::hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const
{
    std::string name;
    if (!getPhaseName(phaseId, name))
        return false;
    return _data->ask(KEL_DATA, "hasParticleTracks", false, [&](Data::Session&) {
        const Handle group = _data->groupInPhase(name, "tracks");
        return group && hasLink(group.get(), trackKey(meshId, target, partitionId));
    });
}

void KelHdf5Provider::startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endReadingParticleTracks();
    std::string name;
    if (!getPhaseName(phaseId, name))
        return;
    _data->ask(KEL_DATA, "startReadingParticleTracks", false, [&](Data::Session&) {
        if (const Handle group = _data->groupInPhase(name, "tracks"))
            _data->tracks = findGroup(group.get(), {trackKey(meshId, target, partitionId)});
        return true;
    });
}

void KelHdf5Provider::getParticleTrackGroups(std::vector<std::string>& groups) const
{
    groups.clear();
    _data->ask(KEL_DATA, "getParticleTrackGroups", false, [&](Data::Session&) {
        if (_data->tracks)
            for (const std::string& name : linkNames(_data->tracks.get()))
                groups.push_back(decodeName(name));
        return true;
    });
}

void KelHdf5Provider::startReadingParticleTrackGroup(const std::string& group)
{
    endReadingParticleTrackGroup();
    _data->ask(KEL_DATA, "startReadingParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->tracks)
            _data->trackGroup = findGroup(_data->tracks.get(), {encodeName(group)});
        return true;
    });
}

void KelHdf5Provider::getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const
{
    chunkIds.clear();
    _data->ask(KEL_DATA, "getChunksInParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->trackGroup)
            for (const std::string& name : linkNames(_data->trackGroup.get()))
                chunkIds.push_back(static_cast<int>(std::strtol(name.c_str(), nullptr, 10)));
        return true;
    });
}

void KelHdf5Provider::startReadingChunkInParticleTrackGroup(int chunkId)
{
    endReadingChunkInParticleTrackGroup();
    _data->ask(KEL_DATA, "startReadingChunkInParticleTrackGroup", false, [&](Data::Session&) {
        if (_data->trackGroup)
            _data->chunk = findGroup(_data->trackGroup.get(), {std::to_string(chunkId)});
        return true;
    });
}

unsigned64 KelHdf5Provider::getPointCountOfParticleTrackChunk() const
{
    return _data->ask(KEL_DATA, "getPointCountOfParticleTrackChunk", unsigned64{0}, [&](Data::Session&) {
        const std::int64_t points = _data->chunk ? readNumber(_data->chunk.get(), "kel_points").value_or(0) : 0;
        return points < 0 ? unsigned64{0} : static_cast<unsigned64>(points);
    });
}

void KelHdf5Provider::getParticleTrackVariables(std::vector<std::string>& names) const
{
    names.clear();
    _data->ask(KEL_DATA, "getParticleTrackVariables", false, [&](Data::Session&) {
        if (_data->chunk)
            for (const std::string& name : linkNames(_data->chunk.get()))
                names.push_back(decodeName(name));
        return true;
    });
    std::sort(names.begin(), names.end());
}

namespace {

std::unique_ptr<ArrayReader> trackArray(Hdf5File& file, const Handle& chunk, const std::string& name)
{
    const std::string link = encodeName(name);
    return chunk && hasLink(chunk.get(), link) ? ArrayReader::open(file, chunk.get(), link) : nullptr;
}

} // namespace

KelPlainDataType KelHdf5Provider::getDataTypeOfParticleTrackVariable(const std::string& variableName) const
{
    constexpr auto none = static_cast<KelPlainDataType>(-1);
    return _data->ask(KEL_DATA, "getDataTypeOfParticleTrackVariable", none, [&](Data::Session& data) {
        const auto array = trackArray(*data.file, _data->chunk, variableName);
        return array ? plainTypeOf(*array) : none;
    });
}

unsigned64 KelHdf5Provider::getValueCountOfParticleTrackVariable(const std::string& variableName) const
{
    return _data->ask(KEL_DATA, "getValueCountOfParticleTrackVariable", unsigned64{0}, [&](Data::Session& data) {
        const auto array = trackArray(*data.file, _data->chunk, variableName);
        return array ? array->shape().valueCount() : unsigned64{0};
    });
}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelHdf5Provider::getValuesOfParticleTrackVariable(const std::string& variableName, T* values,           \
                                                                 unsigned64 capacity) const                            \
    {                                                                                                                  \
        return _data->ask(KEL_DATA, "getValuesOfParticleTrackVariable", unsigned64{0}, [&](Data::Session& data) {      \
            const auto array = trackArray(*data.file, _data->chunk, variableName);                                     \
            if (!array)                                                                                                \
                return unsigned64{0};                                                                                  \
            const unsigned64 n = std::min(capacity, array->shape().valueCount());                                      \
            array->read(0, n, values);                                                                                 \
            return n;                                                                                                  \
        });                                                                                                            \
    }
KEL_DEFINE(unsigned char)
KEL_DEFINE(char)
KEL_DEFINE(short)
KEL_DEFINE(unsigned int)
KEL_DEFINE(int)
KEL_DEFINE(long)
KEL_DEFINE(unsigned64)
KEL_DEFINE(signed64)
KEL_DEFINE(float)
KEL_DEFINE(double)
#undef KEL_DEFINE

void KelHdf5Provider::endReadingChunkInParticleTrackGroup()
{
    _data->chunk = Handle();
}

void KelHdf5Provider::endReadingParticleTrackGroup()
{
    _data->chunk = Handle();
    _data->trackGroup = Handle();
}

void KelHdf5Provider::endReadingParticleTracks()
{
    endReadingParticleTrackGroup();
    _data->tracks = Handle();
}

} // namespace meridyn
