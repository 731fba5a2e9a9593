#include "KelConsumer.h"
#include "ValueTypes.h"

#include <string>
#include <vector>

namespace meridyn {

void KelConsumer::startWritingSet(const std::string&, KelZoneCategory)
{}

void KelConsumer::setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>&, const std::vector<unsigned64>&,
                                             const std::vector<unsigned64>&)
{}

void KelConsumer::startWritingIdsForSet()
{}

void KelConsumer::setIdsForSetInRange(unsigned64, unsigned64, const unsigned64*, unsigned64)
{}

void KelConsumer::endWritingIdsForSet()
{}

void KelConsumer::startWritingSizeOfVariableForSet(const std::string&, std::vector<unsigned64>, KelPlainDataType)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, const int*, unsigned64)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, const short*, unsigned64)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, const unsigned64*, unsigned64)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, int)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, short)
{}

void KelConsumer::setSizeOfVariableForSetInRange(unsigned64, unsigned64, unsigned64)
{}

void KelConsumer::endWritingSizeOfVariableForSet()
{}

void KelConsumer::startWritingDataOfVariableForSet(const std::string&, std::vector<unsigned64>, unsigned64,
                                                   KelPlainDataType)
{}

#define KEL_DEFINE(T)                                                                                                  \
    void KelConsumer::setDataOfVariableForSetInRange(unsigned64, unsigned64, const T*, unsigned64)                     \
    {}
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::endWritingDataOfVariableForSet()
{}

void KelConsumer::startWritingVariableLengthedDataOfVariableForSet(const std::string&, std::vector<unsigned64>,
                                                                   KelPlainDataType)
{}

#define KEL_DEFINE(T)                                                                                                  \
    void KelConsumer::setVariableLengthedDataOfVariableForSetInRange(unsigned64, unsigned64, const T*, unsigned64)     \
    {}
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::endWritingVariableLengthedDataOfVariableForSet()
{}

#define KEL_DEFINE(T)                                                                                                  \
    void KelConsumer::writeOtherDataForSet(const std::string&, const T*, unsigned64)                                   \
    {}
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::writeStringDataForSet(const std::string&, const std::string&)
{}

void KelConsumer::endWritingSet()
{}

void KelConsumer::startWritingSetData(const std::string&, unsigned64)
{}

void KelConsumer::startWritingIdsForSetData()
{}

unsigned64 KelConsumer::setIdsForSetData(const unsigned64*, unsigned64)
{
    return 0;
}

void KelConsumer::endWritingIdsForSetData()
{}

void KelConsumer::startWritingVariableForSetData(const std::string&, unsigned64, KelPlainDataType)
{}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelConsumer::setVariableForSetData(const T*, unsigned64)                                                \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::endWritingVariableForSetData()
{}

void KelConsumer::startWritingVariableLengthVariableForSetData(const std::string&, KelPlainDataType, KelPlainDataType)
{}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelConsumer::setVariableLengthVariableForSetData(const T*, unsigned64, const int*, unsigned64)          \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }                                                                                                                  \
    unsigned64 KelConsumer::setVariableLengthVariableForSetData(const T*, unsigned64, const short*, unsigned64)        \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }                                                                                                                  \
    unsigned64 KelConsumer::setVariableLengthVariableForSetData(const T*, unsigned64, const unsigned64*, unsigned64)   \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::endWritingVariableLengthVariableForSetData()
{}

#define KEL_DEFINE(T)                                                                                                  \
    void KelConsumer::writeOtherDataForSetData(const std::string&, const T*, unsigned64)                               \
    {}
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::writeStringDataForSetData(const std::string&, const std::string&)
{}

void KelConsumer::endWritingSetData()
{}

bool KelConsumer::startWritingParticleTracks(short, int, KelTargetCategory, int)
{
    return false;
}

void KelConsumer::startWritingPartiticleTrackGroup(const std::string&)
{}

void KelConsumer::startWritingChunkInPartiticleTrackGroup(int, unsigned64)
{}

#define KEL_DEFINE(T)                                                                                                  \
    void KelConsumer::setValuesOfParticleTrackVariable(int, const T*, unsigned64)                                      \
    {}                                                                                                                 \
    void KelConsumer::setValuesOfParticleTrackVariable(const std::string&, const T*, unsigned64)                       \
    {}
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelConsumer::endWritingChunkInPartiticleTrackGroup()
{}

void KelConsumer::endWritingPartiticleTrackGroup()
{}

void KelConsumer::endWritingParticleTracks()
{}

} // namespace meridyn
