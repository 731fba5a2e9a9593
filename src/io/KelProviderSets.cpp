#include "KelProvider.h"

#include "io/ValueTypes.h"

// Particles, particle tracks, sets and set data: a format that has them overrides these.

namespace meridyn {

namespace {

constexpr auto noType = static_cast<KelPlainDataType>(-1);
constexpr auto noCategory = static_cast<KelZoneCategory>(-1);

} // namespace

// ---- particles and particle tracks

bool KelProvider::hasParticles() const
{
    return false;
}

bool KelProvider::hasParticles(const std::string&) const
{
    return hasParticles();
}

bool KelProvider::hasParticles(short) const
{
    return hasParticles();
}

bool KelProvider::startReadingParticles()
{
    return false;
}

bool KelProvider::startReadingParticles(const std::string&)
{
    return startReadingParticles();
}

bool KelProvider::startReadingParticles(short)
{
    return startReadingParticles();
}

void KelProvider::getInjectionNames(std::vector<std::string>&) const
{}

void KelProvider::getVariablesOfInjection(const std::string&, std::vector<std::string>&) const
{}

void KelProvider::endReadingParticles()
{}

bool KelProvider::hasParticleTracks() const
{
    return false;
}

bool KelProvider::hasParticleTracks(const std::string&) const
{
    return false;
}

bool KelProvider::hasParticleTracks(short) const
{
    return false;
}

bool KelProvider::hasParticleTracks(short, int, KelTargetCategory, int) const
{
    return false;
}

bool KelProvider::hasParticleTracksInActivePhase() const
{
    return false;
}

std::vector<short> KelProvider::getPhasesWithParticleTracks(int, KelTargetCategory, int) const
{
    return {};
}

void KelProvider::startReadingParticleTracks(short, int, KelTargetCategory, int)
{}

void KelProvider::getParticleTrackGroups(std::vector<std::string>&) const
{}

void KelProvider::startReadingParticleTrackGroup(const std::string&)
{}

void KelProvider::getChunksInParticleTrackGroup(std::vector<int>&) const
{}

void KelProvider::startReadingChunkInParticleTrackGroup(int)
{}

unsigned64 KelProvider::getPointCountOfParticleTrackChunk() const
{
    return 0;
}

void KelProvider::getParticleTrackVariables(std::vector<std::string>&) const
{}

KelPlainDataType KelProvider::getDataTypeOfParticleTrackVariable(const std::string&) const
{
    return noType;
}

unsigned64 KelProvider::getValueCountOfParticleTrackVariable(const std::string&) const
{
    return 0;
}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelProvider::getValuesOfParticleTrackVariable(int, T*, unsigned64) const                                \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelProvider::getValuesOfParticleTrackVariable(const std::string&, T*, unsigned64) const                 \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelProvider::endReadingChunkInParticleTrackGroup()
{}

void KelProvider::endReadingParticleTrackGroup()
{}

void KelProvider::endReadingParticleTracks()
{}

// ---- sets and set data

bool KelProvider::getSetNames(std::vector<std::string>&) const
{
    return false;
}

bool KelProvider::getSetNames(KelDataClass, std::vector<std::string>&) const
{
    return false;
}

bool KelProvider::getSetNames(KelZoneCategory, std::vector<std::string>&) const
{
    return false;
}

bool KelProvider::startReadingSet(const std::string&)
{
    return false;
}

KelZoneCategory KelProvider::getCategoryOfSet() const
{
    return noCategory;
}

void KelProvider::getSizesAndMinMaxIdsForSet(std::vector<unsigned64>&, std::vector<unsigned64>&,
                                             std::vector<unsigned64>&) const
{}

void KelProvider::startReadingIdsForSet()
{}

unsigned64 KelProvider::getIdsForSetInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

void KelProvider::endReadingIdsForSet()
{}

void KelProvider::getVariablesInSet(std::vector<std::string>&) const
{}

void KelProvider::getVariableLengthedVariablesInSet(std::vector<std::string>&) const
{}

void KelProvider::getOtherVariablesInSet(std::vector<std::string>&) const
{}

void KelProvider::getStringVariablesInSet(std::vector<std::string>&) const
{}

KelPlainDataType KelProvider::startReadingSizeOfVariableLengthedVarForSet(const std::string&)
{
    return noType;
}

unsigned64 KelProvider::getSizeOfVariableForSetInRange(unsigned64, unsigned64, int*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getSizeOfVariableForSetInRange(unsigned64, unsigned64, short*, unsigned64) const
{
    return 0;
}

unsigned64 KelProvider::getSizeOfVariableForSetInRange(unsigned64, unsigned64, unsigned64*, unsigned64) const
{
    return 0;
}

void KelProvider::endReadingSizeOfVariableLengthedVarForSet()
{}

KelPlainDataType KelProvider::startReadingDataOfVariableForSet(const std::string&, unsigned64&)
{
    return noType;
}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelProvider::getDataOfVariableForSetInRange(unsigned64, unsigned64, T*, unsigned64) const               \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelProvider::endReadingDataOfVariableForSet()
{}

KelPlainDataType KelProvider::startReadingVariableLengthedDataOfVariableForSet(const std::string&)
{
    return noType;
}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelProvider::getVariableLengthedDataOfVariableForSetInRange(unsigned64, unsigned64, T*, unsigned64)     \
        const                                                                                                          \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

void KelProvider::endReadingVariableLengthedDataOfVariableForSet()
{}

KelPlainDataType KelProvider::getDataTypeOfOtherDataForSet(const std::string&) const
{
    return noType;
}

#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 KelProvider::getOtherDataForSet(const std::string&, T*, unsigned64) const                               \
    {                                                                                                                  \
        return 0;                                                                                                      \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

unsigned64 KelProvider::getStringDataForSet(const std::string&, std::string&) const
{
    return 0;
}

void KelProvider::endReadingSet()
{}

void KelProvider::getSetDataNames(std::vector<std::string>&) const
{}

bool KelProvider::startReadingSetData(const std::string&, unsigned64&)
{
    return false;
}

bool KelProvider::getIdsForSetData(std::vector<unsigned64>&) const
{
    return false;
}

void KelProvider::getConstantLengthVariablesInSetData(std::vector<std::string>&) const
{}

void KelProvider::getVariableLengthVariablesInSetData(std::vector<std::string>&) const
{}

void KelProvider::getOtherVariablesInSetData(std::vector<std::string>&) const
{}

void KelProvider::getStringVariablesInSetData(std::vector<std::string>&) const
{}

KelPlainDataType KelProvider::getDataTypeOfDataForSetData(const std::string&) const
{
    return noType;
}

KelPlainDataType KelProvider::getDataTypeOfSizeForSetData(const std::string&) const
{
    return noType;
}

#define KEL_DEFINE(T)                                                                                                  \
    bool KelProvider::getDataOfConstantLengthVarForSetData(const std::string&, std::vector<T>&, unsigned64&) const     \
    {                                                                                                                  \
        return false;                                                                                                  \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

#define KEL_DEFINE(T)                                                                                                  \
    bool KelProvider::getDataOfVariableLengthVarForSetData(const std::string&, std::vector<T>&) const                  \
    {                                                                                                                  \
        return false;                                                                                                  \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

bool KelProvider::getSizeOfVariableLengthVarForSetData(const std::string&, std::vector<int>&) const
{
    return false;
}

bool KelProvider::getSizeOfVariableLengthVarForSetData(const std::string&, std::vector<short>&) const
{
    return false;
}

bool KelProvider::getSizeOfVariableLengthVarForSetData(const std::string&, std::vector<unsigned64>&) const
{
    return false;
}

#define KEL_DEFINE(T)                                                                                                  \
    bool KelProvider::getOtherDataForSetData(const std::string&, std::vector<T>&) const                                \
    {                                                                                                                  \
        return false;                                                                                                  \
    }
KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE

unsigned64 KelProvider::getStringDataForSetData(const std::string&, std::string&) const
{
    return 0;
}

void KelProvider::endReadingSetData()
{}

} // namespace meridyn
