#include "TraceWriter.h"

#include "KelSolutionModel.h"
#include "Model.h"
#include "Numbers.h"

#include <iostream>

namespace meridyn::tool {

// ---- escaping -----------------------------------------------------------------------------------------------------

EscapingBuffer::int_type EscapingBuffer::overflow(int_type c)
{
    if (!traits_type::eq_int_type(c, traits_type::eof()))
        _line += traits_type::to_char_type(c);
    return traits_type::not_eof(c);
}

std::streamsize EscapingBuffer::xsputn(const char* text, std::streamsize count)
{
    _line.append(text, static_cast<std::size_t>(count));
    return count;
}

int EscapingBuffer::sync()
{
    const bool endsLine = !_line.empty() && _line.back() == '\n';
    if (endsLine)
        _line.pop_back();
    const std::string shown = printable(_line) + (endsLine ? "\n" : "");
    _line.clear();
    if (_target == nullptr)
        return 0;
    const auto size = static_cast<std::streamsize>(shown.size());
    return _target->sputn(shown.data(), size) == size && _target->pubsync() == 0 ? 0 : -1;
}

// ---- writer -------------------------------------------------------------------------------------------------------

void TraceWriter::tell(const std::string& line) const
{
    std::cout << "  " << line << std::endl << std::endl;
}

void TraceWriter::tellBlock(const std::string& label, const std::string& name, unsigned64 count) const
{
    tell(label + " = " + name + " (" + std::to_string(count) + ")");
}

/// Selecting a time level is not virtual, so what belongs to a level says whether it is another one now.
void TraceWriter::tellLevel() const
{
    if (getTimeLevels().empty() || _toldLevel == getTimeLevel())
        return;
    _toldLevel = getTimeLevel();
    tell("Time-level = " + std::to_string(_toldLevel));
}

bool TraceWriter::startWriting(KelDataClass dataClass)
{
    std::cout << (dataClass == KEL_CASE ? "Case" : "Data") << std::endl << std::endl;
    return true;
}

void TraceWriter::startWritingPhase(short phaseId) const
{
    tellLevel();
    KelConsumer::startWritingPhase(phaseId);
    setActivePhase(phaseId);
}

void TraceWriter::log(std::vector<std::pair<std::string, std::string>> entries, KelDataClass)
{
    for (const auto& [title, text] : entries)
        tellBlock("Log", title, text.size());
}

void TraceWriter::startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds,
                                                         KelPlainDataType type, unsigned64 size)
{
    tellBlock("Case-section", name, size);
    KelConsumer::startWritingCaseSectionDataForCategory(name, zoneIds, type, size);
}

/// A name says more than an id; the bare writer prints either.
void TraceWriter::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, int variableId,
                                                             std::vector<int>& zoneIds, unsigned64 size)
{
    std::string name = std::to_string(variableId);
    solutionModel()->getUniqueNameOfVariable(variableId, name);
    KelConsumer::startWritingPhaseVariableInZonesOfCategory(category, name, zoneIds, size);
}

void TraceWriter::startWritingSet(const std::string& name, KelZoneCategory category)
{
    tellLevel();
    tell("Set = " + name + ", of " + categoryName(category));
}

void TraceWriter::setIdsForSetInRange(unsigned64 first, unsigned64 last, const unsigned64*, unsigned64)
{
    tell("Set-id: (" + std::to_string(first) + ", " + std::to_string(last) + ")");
}

void TraceWriter::startWritingDataOfVariableForSet(const std::string& name, std::vector<unsigned64>,
                                                   unsigned64 valuesPerMember, KelPlainDataType)
{
    tellBlock("Set-variable", name, valuesPerMember);
}

void TraceWriter::startWritingVariableLengthedDataOfVariableForSet(const std::string& name, std::vector<unsigned64>,
                                                                   KelPlainDataType)
{
    tell("Set-lists = " + name);
}

void TraceWriter::writeStringDataForSet(const std::string& name, const std::string& text)
{
    tellBlock("Set-text", name, text.size());
}

void TraceWriter::startWritingSetData(const std::string& name, unsigned64 memberCount)
{
    tellLevel();
    tellBlock("Set-data", name, memberCount);
}

unsigned64 TraceWriter::setIdsForSetData(const unsigned64*, unsigned64 count)
{
    tell("Set-data-ids (" + std::to_string(count) + ")");
    return count;
}

void TraceWriter::startWritingVariableForSetData(const std::string& name, unsigned64 valuesPerMember, KelPlainDataType)
{
    tellBlock("Set-data-variable", name, valuesPerMember);
}

void TraceWriter::startWritingVariableLengthVariableForSetData(const std::string& name, KelPlainDataType,
                                                               KelPlainDataType)
{
    tell("Set-data-lists = " + name);
}

void TraceWriter::writeStringDataForSetData(const std::string& name, const std::string& text)
{
    tellBlock("Set-data-text", name, text.size());
}

bool TraceWriter::startWritingParticleTracks(short phaseId, int, KelTargetCategory, int)
{
    tellLevel();
    tell("Tracks, Phase-id = " + std::to_string(phaseId));
    return true;
}

void TraceWriter::startWritingPartiticleTrackGroup(const std::string& name)
{
    tell("Track-group = " + name);
}

void TraceWriter::startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount)
{
    tellBlock("Track-chunk", std::to_string(chunkId), pointCount);
}

} // namespace meridyn::tool
