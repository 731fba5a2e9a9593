#include "ConsumerData.h"

namespace meridyn {

using namespace hdf5;

// Every operation is one piece of work on the set (or set data, or tracks) that was started.
#define KEL_ON_SET(function, work) _data->attemptOnMesh(_data->setClass, function, [&](Data::Session&) { work; })
#define KEL_ON_DATA(function, work) _data->attemptOnMesh(KEL_DATA, function, [&](Data::Session&) { work; })

// The ten value types with their numbers.
#define KEL_FOR_EACH_PLAIN_TYPE(DEFINE)                                                                                \
    DEFINE(unsigned char, KEL_PLAIN_UNSIGNED_CHAR)                                                                     \
    DEFINE(char, KEL_PLAIN_CHAR)                                                                                       \
    DEFINE(short, KEL_PLAIN_SHORT)                                                                                     \
    DEFINE(unsigned int, KEL_PLAIN_UNSIGNED_INT)                                                                       \
    DEFINE(int, KEL_PLAIN_INT)                                                                                         \
    DEFINE(long, KEL_PLAIN_LONG)                                                                                       \
    DEFINE(unsigned64, KEL_PLAIN_UNSIGNED64)                                                                           \
    DEFINE(signed64, KEL_PLAIN_SIGNED64)                                                                               \
    DEFINE(float, KEL_PLAIN_FLOAT)                                                                                     \
    DEFINE(double, KEL_PLAIN_DOUBLE)

namespace {

template <class Object>
Object& started(const std::unique_ptr<Object>& object, const char* what)
{
    if (!object)
        throw FormatError(std::string("no ") + what + " was started");
    return *object;
}

} // namespace

// ---- sets ----

void KelHdf5Consumer::startWritingSet(const std::string& name, KelZoneCategory category)
{
    if (!_data->set)
        _data->setClass = _data->current;
    KEL_ON_SET("startWritingSet", {
        if (_data->set)
            _data->set->finish();
        _data->set.reset();
        _data->setClass = _data->current;
        const bool isCase = _data->current == KEL_CASE;
        const hid_t scope = isCase ? _data->sessions[KEL_CASE]->mesh.get() : _data->levelGroup();
        Hdf5File& file = *_data->sessions[_data->current]->file;
        _data->set = std::make_unique<SetWriter>(file, scope, name, category, _data->compression);
    });
}

void KelHdf5Consumer::setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& sizes,
                                                 const std::vector<unsigned64>& minIds,
                                                 const std::vector<unsigned64>& maxIds)
{
    KEL_ON_SET("setSizesAndMinMaxIdsForSet", started(_data->set, "set").setBlocks(sizes, minIds, maxIds));
}

void KelHdf5Consumer::setIdsForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, const unsigned64* ids,
                                          unsigned64 count)
{
    KEL_ON_SET("setIdsForSetInRange", started(_data->set, "set").setIds(firstPosition, lastPosition, ids, count));
}

void KelHdf5Consumer::startWritingSizeOfVariableForSet(const std::string& name, std::vector<unsigned64>,
                                                       KelPlainDataType type)
{
    KEL_ON_SET("startWritingSizeOfVariableForSet", started(_data->set, "set").startLengths(name, type));
}

#define KEL_DEFINE(T)                                                                                                  \
    void KelHdf5Consumer::setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition,            \
                                                         const T* lengths, unsigned64 count)                           \
    {                                                                                                                  \
        KEL_ON_SET("setSizeOfVariableForSetInRange",                                                                   \
                   started(_data->set, "set").setLengths(firstPosition, lastPosition, lengths, count));                \
    }                                                                                                                  \
    void KelHdf5Consumer::setSizeOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition, T length)  \
    {                                                                                                                  \
        KEL_ON_SET("setSizeOfVariableForSetInRange",                                                                   \
                   started(_data->set, "set").setUniformLength(firstPosition, lastPosition, length));                  \
    }
KEL_DEFINE(int)
KEL_DEFINE(short)
KEL_DEFINE(unsigned64)
#undef KEL_DEFINE

void KelHdf5Consumer::startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64>,
                                                       unsigned64 valuesPerMember, KelPlainDataType type)
{
    KEL_ON_SET("startWritingDataOfVariableForSet",
               started(_data->set, "set").startVariable(name, valuesPerMember, type));
}

void KelHdf5Consumer::endWritingDataOfVariableForSet()
{}

void KelHdf5Consumer::startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64>,
                                                                       KelPlainDataType type)
{
    KEL_ON_SET("startWritingVariableLengthedDataOfVariableForSet",
               started(_data->set, "set").startListValues(name, type));
}

#define KEL_DEFINE(T, TYPE)                                                                                            \
    void KelHdf5Consumer::setDataOfVariableForSetInRange(unsigned64 firstPosition, unsigned64 lastPosition,            \
                                                         const T* values, unsigned64 count)                            \
    {                                                                                                                  \
        KEL_ON_SET("setDataOfVariableForSetInRange",                                                                   \
                   started(_data->set, "set").setValues(firstPosition, lastPosition, values, count));                  \
    }                                                                                                                  \
    void KelHdf5Consumer::setVariableLengthedDataOfVariableForSetInRange(                                              \
        unsigned64 firstPosition, unsigned64 lastPosition, const T* values, unsigned64 count)                          \
    {                                                                                                                  \
        KEL_ON_SET("setVariableLengthedDataOfVariableForSetInRange",                                                   \
                   started(_data->set, "set").setListValues(firstPosition, lastPosition, values, count));              \
    }                                                                                                                  \
    void KelHdf5Consumer::writeOtherDataForSet(const std::string& name, const T* values, unsigned64 count)             \
    {                                                                                                                  \
        KEL_ON_SET("writeOtherDataForSet", started(_data->set, "set").writeOther(name, TYPE, values, count));          \
    }
KEL_FOR_EACH_PLAIN_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelHdf5Consumer::writeStringDataForSet(const std::string& name, const std::string& text)
{
    KEL_ON_SET("writeStringDataForSet", started(_data->set, "set").writeString(name, text));
}

void KelHdf5Consumer::endWritingSet()
{
    KEL_ON_SET("endWritingSet", {
        started(_data->set, "set").finish();
        _data->set.reset();
    });
}

// ---- set data ----

void KelHdf5Consumer::startWritingSetData(const std::string& name, unsigned64 memberCount)
{
    KEL_ON_DATA("startWritingSetData", {
        if (_data->setData)
            _data->setData->finish();
        Hdf5File& file = *_data->sessions[KEL_DATA]->file;
        const Handle scope = _data->phaseGroup();
        _data->setData = std::make_unique<SetDataWriter>(file, scope.get(), name, memberCount, _data->compression);
    });
}

unsigned64 KelHdf5Consumer::setIdsForSetData(const unsigned64* ids, unsigned64 count)
{
    return KEL_ON_DATA("setIdsForSetData", started(_data->setData, "set data").addIds(ids, count)) ? count : 0;
}

void KelHdf5Consumer::startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember,
                                                     KelPlainDataType type)
{
    KEL_ON_DATA("startWritingVariableForSetData",
                started(_data->setData, "set data").startVariable(name, valuesPerMember, type));
}

void KelHdf5Consumer::startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType type,
                                                                   KelPlainDataType lengthType)
{
    KEL_ON_DATA("startWritingVariableLengthVariableForSetData",
                started(_data->setData, "set data").startList(name, type, lengthType));
}

void KelHdf5Consumer::endWritingVariableLengthVariableForSetData()
{
    KEL_ON_DATA("endWritingVariableLengthVariableForSetData", started(_data->setData, "set data").endList());
}

#define KEL_DEFINE_LIST(T, L)                                                                                          \
    unsigned64 KelHdf5Consumer::setVariableLengthVariableForSetData(const T* values, unsigned64 count,                 \
                                                                    const L* lengths, unsigned64 lengthCount)          \
    {                                                                                                                  \
        const bool isTaken =                                                                                           \
            KEL_ON_DATA("setVariableLengthVariableForSetData",                                                         \
                        started(_data->setData, "set data").addList(values, count, lengths, lengthCount));             \
        return isTaken ? count : 0;                                                                                    \
    }
#define KEL_DEFINE(T, TYPE)                                                                                            \
    unsigned64 KelHdf5Consumer::setVariableForSetData(const T* values, unsigned64 count)                               \
    {                                                                                                                  \
        const bool isTaken =                                                                                           \
            KEL_ON_DATA("setVariableForSetData", started(_data->setData, "set data").addValues(values, count));        \
        return isTaken ? count : 0;                                                                                    \
    }                                                                                                                  \
    KEL_DEFINE_LIST(T, int)                                                                                            \
    KEL_DEFINE_LIST(T, short)                                                                                          \
    KEL_DEFINE_LIST(T, unsigned64)                                                                                     \
    void KelHdf5Consumer::writeOtherDataForSetData(const std::string& name, const T* values, unsigned64 count)         \
    {                                                                                                                  \
        KEL_ON_DATA("writeOtherDataForSetData",                                                                        \
                    started(_data->setData, "set data").writeOther(name, TYPE, values, count));                        \
    }
KEL_FOR_EACH_PLAIN_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
#undef KEL_DEFINE_LIST

void KelHdf5Consumer::writeStringDataForSetData(const std::string& name, const std::string& text)
{
    KEL_ON_DATA("writeStringDataForSetData", started(_data->setData, "set data").writeString(name, text));
}

void KelHdf5Consumer::endWritingSetData()
{
    KEL_ON_DATA("endWritingSetData", {
        started(_data->setData, "set data").finish();
        _data->setData.reset();
    });
}

// ---- particle tracks ----

bool KelHdf5Consumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    return KEL_ON_DATA("startWritingParticleTracks", {
        const Handle group = _data->phaseGroup(phaseId);
        _data->tracks = std::make_unique<TrackWriter>(*_data->sessions[KEL_DATA]->file, group.get(),
                                                      MeshKey{meshId, target, partitionId}, _data->compression);
    });
}

void KelHdf5Consumer::startWritingPartiticleTrackGroup(const std::string& name)
{
    KEL_ON_DATA("startWritingPartiticleTrackGroup", started(_data->tracks, "particle tracks").startGroup(name));
}

void KelHdf5Consumer::startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount)
{
    KEL_ON_DATA("startWritingChunkInPartiticleTrackGroup",
                started(_data->tracks, "particle tracks").startChunk(chunkId, pointCount));
}

#define KEL_DEFINE(T, TYPE)                                                                                            \
    void KelHdf5Consumer::setValuesOfParticleTrackVariable(int variableId, const T* values, unsigned64 count)          \
    {                                                                                                                  \
        KEL_ON_DATA("setValuesOfParticleTrackVariable", {                                                              \
            std::string name;                                                                                          \
            if (!solutionModel()->getUniqueNameOfVariable(variableId, name))                                           \
                throw FormatError("variable " + std::to_string(variableId) + " is unknown");                           \
            started(_data->tracks, "particle tracks").writeValues(name, TYPE, values, count);                          \
        });                                                                                                            \
    }                                                                                                                  \
    void KelHdf5Consumer::setValuesOfParticleTrackVariable(const std::string& variableName, const T* values,           \
                                                           unsigned64 count)                                           \
    {                                                                                                                  \
        KEL_ON_DATA("setValuesOfParticleTrackVariable",                                                                \
                    started(_data->tracks, "particle tracks").writeValues(variableName, TYPE, values, count));         \
    }
KEL_FOR_EACH_PLAIN_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelHdf5Consumer::endWritingChunkInPartiticleTrackGroup()
{
    if (_data->tracks)
        _data->tracks->endChunk();
}

void KelHdf5Consumer::endWritingPartiticleTrackGroup()
{
    if (_data->tracks)
        _data->tracks->endGroup();
}

void KelHdf5Consumer::endWritingParticleTracks()
{
    _data->tracks.reset();
}

} // namespace meridyn
