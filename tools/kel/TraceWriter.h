#pragma once

#include "KelConsumer.h"
#include "KelValueTypes.h"

#include <climits>
#include <streambuf>
#include <string>
#include <vector>

namespace meridyn::tool {

/// Takes what the library prints and hands it on with everything escaped that could steer a terminal. Each of its lines
/// is flushed on its own, so a line break before the last character is part of a name.
class EscapingBuffer : public std::streambuf {
public:
    /// @param target  where the escaped text goes; null swallows it
    explicit EscapingBuffer(std::streambuf* target) : _target(target) {}
    ~EscapingBuffer() override { sync(); }

protected:
    int_type overflow(int_type c) override;
    std::streamsize xsputn(const char* text, std::streamsize count) override;
    int sync() override;

private:
    std::streambuf* _target;
    std::string _line;
};

/// The bare writer, which prints what it is given, as a target that a transfer can drive. It prints a line for what the
/// bare writer takes in silence as well: time levels, sets, set data, particle tracks, case sections, names in a log.
class TraceWriter : public KelConsumer {
public:
    TraceWriter() : KelConsumer("kel") {}

    // clang-format off
    bool startWriting(KelDataClass dataClass) override;
    bool endWriting(KelDataClass) override { return true; }
    void startWritingPhase(short phaseId) const override;
    void log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass dataClass) override;
    void startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds, KelPlainDataType type, unsigned64 size) override;

    using KelConsumer::startWritingPhaseVariableInZonesOfCategory;
    void startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId, std::vector<int>& zoneIds, unsigned64 size) override;

    void startWritingSet(const std::string& name, KelZoneCategory category) override;
    void setIdsForSetInRange(unsigned64 first, unsigned64 last, const unsigned64* ids, unsigned64 count) override;
    void startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, unsigned64 valuesPerMember, KelPlainDataType type) override;
    void startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64> sizes, KelPlainDataType type) override;
    void writeStringDataForSet(const std::string& name, const std::string& text) override;

    void startWritingSetData(const std::string& name, unsigned64 memberCount) override;
    unsigned64 setIdsForSetData(const unsigned64* ids, unsigned64 count) override;
    void startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember, KelPlainDataType type) override;
    void startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) override;
    void writeStringDataForSetData(const std::string& name, const std::string& text) override;

    bool startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) override;
    void startWritingPartiticleTrackGroup(const std::string& name) override;
    void startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount) override;

    using KelConsumer::setVariableForSetData;
    using KelConsumer::setVariableLengthVariableForSetData;
#define KEL_DEFINE(T) \
    void writeOtherDataForSet(const std::string& name, const T*, unsigned64 count) override { tellBlock("Set-block", name, count); } \
    void writeOtherDataForSetData(const std::string& name, const T*, unsigned64 count) override { tellBlock("Set-data-block", name, count); } \
    unsigned64 setVariableForSetData(const T*, unsigned64 count) override { return count; } \
    unsigned64 setVariableLengthVariableForSetData(const T*, unsigned64 count, const int*, unsigned64) override { return count; } \
    unsigned64 setVariableLengthVariableForSetData(const T*, unsigned64 count, const short*, unsigned64) override { return count; } \
    unsigned64 setVariableLengthVariableForSetData(const T*, unsigned64 count, const unsigned64*, unsigned64) override { return count; } \
    void setValuesOfParticleTrackVariable(int variableId, const T*, unsigned64 count) override { tellBlock("Track-variable", std::to_string(variableId), count); } \
    void setValuesOfParticleTrackVariable(const std::string& name, const T*, unsigned64 count) override { tellBlock("Track-variable", name, count); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    // clang-format on

private:
    void tell(const std::string& line) const;
    void tellBlock(const std::string& label, const std::string& name, unsigned64 count) const;
    void tellLevel() const;

    mutable int _toldLevel = INT_MIN; ///< the level of the last line about levels
};

} // namespace meridyn::tool
