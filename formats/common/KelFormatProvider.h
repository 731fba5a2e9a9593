#pragma once

#include "KelArrays.h"
#include "KelFileProvider.h"
#include "KelMeshKey.h"
#include "KelMisuse.h"
#include "KelModelDescription.h"
#include "KelSourceLedger.h"
#include "KelValues.h"

#include <array>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace meridyn {

/// Base of the readers of our formats: leads the hundreds of forms of the frame to a few operations, and declares what
/// the file says about mesh and solution at one go.
///
/// Forms     what is read by range, in any value type, comes from give and uniformValue; what has a name in a set, set
///           data or a chunk of particle tracks from namesIn, describe, giveWhole and giveText. A format overrides
///           these. The forms by phase id, of the active phase, by the id of a variable reach the form with the name.
/// Meshes    the lists of meshes, targets and partitions come from meshKeys, which a format overrides.
/// Ledger    what a format does not hand over of its source it notes with noteNotRead; what it works out itself it
///           tells by overriding derived.
/// Misuse    when an answer is empty because of its caller, a KelInfo in the message store says why, once per kind
///           (KelMisuse) and object. It is no error: there may be callers who ask on purpose.
/// Overloads a format that overrides one overload repeats the others with `using KelFormatProvider::...`.
class KEL_API KelFormatProvider : public KelFileProvider, public KelSourceLedger {
public:
    /// No file is named and nothing is open.
    KelFormatProvider();
    ~KelFormatProvider() override;

    /// What noteNotRead was told since the data class was opened.
    std::vector<KelSourceItem> notHandedOver(KelDataClass dataClass) const override;
    /// As meshKeys has them.
    std::optional<std::vector<KelMeshKey>> meshesOf(KelDataClass dataClass) const override;
    /// Makes chosenLevel none.
    void chooseNoLevel(bool on) override;

    // clang-format off
    /// @name Opening and closing
    /// As KelFileProvider does; what is open is noted, and opening starts the ledger of the data class anew.
    /// @{
    using KelFileProvider::startReading;
    bool startReading(KelDataClass dataClass) override;
    bool endReading(KelDataClass dataClass) override;
    /// @}

    /// @name Settings and meshes
    /// @{
    using KelFileProvider::availablePartitionIds;
    using KelFileProvider::availableTargets;
    void getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const override;
    std::vector<int> availableMeshIds(KelDataClass dataClass) const override;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override;
    std::vector<int> availablePartitionIds(int meshId, KelDataClass dataClass) const override;
    /// @}

    /// @name Arrays by range: come from give, uniform counts from uniformValue, interface data from giveInterface
    /// @{
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, double* xyz, unsigned64 capacity) const override { return answer(KelArray::Coordinates, first, last, {xyz, capacity}); }
    unsigned64 getCoordinatesForNodesInRange(unsigned64 first, unsigned64 last, float* xyz, unsigned64 capacity) const override { return answer(KelArray::Coordinates, first, last, {xyz, capacity}); }
    unsigned64 getNodeIdsForEdgesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::EdgeNodes, first, last, {ids, capacity}); }
    unsigned64 getNodeCountsForEdgesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::EdgeNodeCounts, first, last, {counts, capacity}); }
    bool hasUniformNodeCountForEdgesInRange(unsigned64 first, unsigned64 last, short* count) const override { return isUniform(KelArray::EdgeNodeCounts, {first, last}, count); }
    unsigned64 getNodeIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::FaceNodes, first, last, {ids, capacity}); }
    unsigned64 getNodeCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::FaceNodeCounts, first, last, {counts, capacity}); }
    bool hasUniformNodeCountForFacesInRange(unsigned64 first, unsigned64 last, short* count) const override { return isUniform(KelArray::FaceNodeCounts, {first, last}, count); }
    unsigned64 getCell0sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::FaceCell0s, first, last, {ids, capacity}); }
    unsigned64 getCell1sForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::FaceCell1s, first, last, {ids, capacity}); }
    unsigned64 getShadowFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::FaceShadows, first, last, {ids, capacity}); }
    unsigned64 getInterfaceDataForFacesInZone(int zoneId, float* a, unsigned64 na, float* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const override { return giveInterface(zoneId, {{{a, na}, {b, nb}, {ids0, count0}, {ids1, count1}}}); }
    unsigned64 getInterfaceDataForFacesInZone(int zoneId, double* a, unsigned64 na, double* b, unsigned64 nb, unsigned64* ids0, unsigned64 count0, unsigned64* ids1, unsigned64 count1) const override { return giveInterface(zoneId, {{{a, na}, {b, nb}, {ids0, count0}, {ids1, count1}}}); }
    unsigned64 getChildFaceIdsForFacesInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::FaceChildren, first, last, {ids, capacity}); }
    unsigned64 getChildFaceCountsForFacesInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::FaceChildCounts, first, last, {counts, capacity}); }
    unsigned64 getTypesForCellsInRange(unsigned64 first, unsigned64 last, KelCellType* types, unsigned64 capacity) const override { return answer(KelArray::CellTypes, first, last, {types, capacity, KEL_PLAIN_INT}); }
    bool hasUniformTypeForCellsInZone(int zoneId, KelCellType* type) const override { return isUniform(KelArray::CellTypes, rangeOfCellZone(zoneId), type); }
    unsigned64 getNodeIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::CellNodes, first, last, {ids, capacity}); }
    unsigned64 getNodeCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::CellNodeCounts, first, last, {counts, capacity}); }
    bool hasUniformNodeCountForCellsInZone(int zoneId, short* count) const override { return isUniform(KelArray::CellNodeCounts, rangeOfCellZone(zoneId), count); }
    unsigned64 getFaceIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::CellFaces, first, last, {ids, capacity}); }
    unsigned64 getFaceCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::CellFaceCounts, first, last, {counts, capacity}); }
    bool hasUniformFaceCountForCellsInZone(int zoneId, short* count) const override { return isUniform(KelArray::CellFaceCounts, rangeOfCellZone(zoneId), count); }
    short getFaceCountForCell(unsigned64 cellId) const override; ///< By getFaceCountsForCellsInRange.
    unsigned64 getPartitionIdsForCellsInRange(unsigned64 first, unsigned64 last, int* ids, unsigned64 capacity) const override { return answer(KelArray::CellPartitions, first, last, {ids, capacity}); }
    unsigned64 getChildCellIdsForCellsInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::CellChildren, first, last, {ids, capacity}); }
    unsigned64 getChildCellCountsForCellsInRange(unsigned64 first, unsigned64 last, short* counts, unsigned64 capacity) const override { return answer(KelArray::CellChildCounts, first, last, {counts, capacity}); }
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 first, unsigned64 last, float* values, unsigned64 capacity) const override { return answer(KelArray::PhaseVariable, first, last, {values, capacity}); }
    unsigned64 getValuesOfPhaseVariableForElementsInRange(unsigned64 first, unsigned64 last, double* values, unsigned64 capacity) const override { return answer(KelArray::PhaseVariable, first, last, {values, capacity}); }
    unsigned64 getIdsForSetInRange(unsigned64 first, unsigned64 last, unsigned64* ids, unsigned64 capacity) const override { return answer(KelArray::SetIds, first, last, {ids, capacity}); }
    /// @}

    /// @name Values of a variable
    /// Nothing for a variable that the active phase does not have.
    /// @{
    using KelFileProvider::startReadingZonesOfCategoryWithPhaseVariable;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId, std::vector<int>& zoneIds) override;
    /// @}

    /// @name Particles: left are hasParticles(phaseName) and getVariablesOfInjection
    /// @{
    using KelFileProvider::hasParticles;
    bool hasParticles() const override;
    bool hasParticles(const std::string& phaseName) const override; ///< False here. The frame's own would ask the one above.
    bool hasParticles(short phaseId) const override;
    bool startReadingParticles() override;
    bool startReadingParticles(const std::string& phaseName) override;
    bool startReadingParticles(short phaseId) override;
    void getInjectionNames(std::vector<std::string>& names) const override;
    /// @}

    /// @name Particle tracks: left are hasParticleTracks(phaseName), the one with a mesh, and the markers
    /// @{
    using KelFileProvider::hasParticleTracks;
    bool hasParticleTracks() const override;
    bool hasParticleTracks(short phaseId) const override;
    bool hasParticleTracksInActivePhase() const override;
    std::vector<short> getPhasesWithParticleTracks(int meshId, KelTargetCategory target, int partitionId) const override;
    void getParticleTrackVariables(std::vector<std::string>& names) const override; ///< Ascending.
    KelPlainDataType getDataTypeOfParticleTrackVariable(const std::string& name) const override { return typeOf(KelCollection::TrackChunk, KelPart::Variables, name); }
    unsigned64 getValueCountOfParticleTrackVariable(const std::string& name) const override { return countOf(KelCollection::TrackChunk, KelPart::Variables, name); }
    /// @}

    /// @name Sets: left are getSetNames of a data class and of a category, and the markers
    /// @{
    using KelFileProvider::getSetNames;
    bool getSetNames(std::vector<std::string>& names) const override;
    void getVariablesInSet(std::vector<std::string>& names) const override { names = namesIn(KelCollection::Set, KelPart::Variables); }
    void getVariableLengthedVariablesInSet(std::vector<std::string>& names) const override { names = namesIn(KelCollection::Set, KelPart::Lists); }
    void getOtherVariablesInSet(std::vector<std::string>& names) const override { names = namesIn(KelCollection::Set, KelPart::Others); }
    void getStringVariablesInSet(std::vector<std::string>& names) const override { names = namesIn(KelCollection::Set, KelPart::Texts); }
    KelPlainDataType getDataTypeOfOtherDataForSet(const std::string& name) const override { return typeOf(KelCollection::Set, KelPart::Others, name); }
    unsigned64 getStringDataForSet(const std::string& name, std::string& text) const override { return giveText(KelCollection::Set, name, text); }
    /// @}

    /// @name Set data: left are the names and the markers
    /// @{
    bool getIdsForSetData(std::vector<unsigned64>& ids) const override { return giveList(KelCollection::SetData, KelPart::Ids, {}, ids); }
    void getConstantLengthVariablesInSetData(std::vector<std::string>& names) const override { names = namesIn(KelCollection::SetData, KelPart::Variables); }
    void getVariableLengthVariablesInSetData(std::vector<std::string>& names) const override { names = namesIn(KelCollection::SetData, KelPart::Lists); }
    void getOtherVariablesInSetData(std::vector<std::string>& names) const override { names = namesIn(KelCollection::SetData, KelPart::Others); }
    void getStringVariablesInSetData(std::vector<std::string>& names) const override { names = namesIn(KelCollection::SetData, KelPart::Texts); }
    KelPlainDataType getDataTypeOfDataForSetData(const std::string& name) const override;
    KelPlainDataType getDataTypeOfSizeForSetData(const std::string& name) const override { return typeOf(KelCollection::SetData, KelPart::Lengths, name); }
    unsigned64 getStringDataForSetData(const std::string& name, std::string& text) const override { return giveText(KelCollection::SetData, name, text); }
    /// @}

    /// @name In each type: values of sets, set data and particle tracks
    /// @{
#define KEL_DEFINE(L) \
    unsigned64 getSizeOfVariableForSetInRange(unsigned64 first, unsigned64 last, L* lengths, unsigned64 capacity) const override { return answer(KelArray::SetListLengths, first, last, {lengths, capacity}); } \
    bool getSizeOfVariableLengthVarForSetData(const std::string& name, std::vector<L>& lengths) const override { return giveList(KelCollection::SetData, KelPart::Lengths, name, lengths); }
    KEL_DEFINE(int)
    KEL_DEFINE(short)
    KEL_DEFINE(unsigned64)
#undef KEL_DEFINE
#define KEL_DEFINE(T) \
    unsigned64 getDataOfVariableForSetInRange(unsigned64 first, unsigned64 last, T* values, unsigned64 capacity) const override { return answer(KelArray::SetVariable, first, last, {values, capacity}); } \
    unsigned64 getVariableLengthedDataOfVariableForSetInRange(unsigned64 first, unsigned64 last, T* values, unsigned64 capacity) const override { return answer(KelArray::SetLists, first, last, {values, capacity}); } \
    unsigned64 getOtherDataForSet(const std::string& name, T* values, unsigned64 capacity) const override { return values == nullptr ? countOf(KelCollection::Set, KelPart::Others, name) : giveUpTo(KelCollection::Set, KelPart::Others, name, {values, capacity}); } \
    bool getDataOfConstantLengthVarForSetData(const std::string& name, std::vector<T>& values, unsigned64& valuesPerMember) const override { return getSize(KelCollection::SetData, name, valuesPerMember) && giveList(KelCollection::SetData, KelPart::Variables, name, values); } \
    bool getDataOfVariableLengthVarForSetData(const std::string& name, std::vector<T>& values) const override { return giveList(KelCollection::SetData, KelPart::Lists, name, values); } \
    bool getOtherDataForSetData(const std::string& name, std::vector<T>& values) const override { return giveList(KelCollection::SetData, KelPart::Others, name, values); } \
    unsigned64 getValuesOfParticleTrackVariable(int variableId, T* values, unsigned64 capacity) const override { return getValuesOfParticleTrackVariable(variableName(variableId), values, capacity); } \
    unsigned64 getValuesOfParticleTrackVariable(const std::string& name, T* values, unsigned64 capacity) const override { return giveUpTo(KelCollection::TrackChunk, KelPart::Variables, name, {values, capacity}); }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    /// @}
    // clang-format on

protected:
    /// The four buffers of interface data: two of shares, two of face ids, see getInterfaceDataForFacesInZone.
    using KelInterfaceBuffers = std::array<KelBuffer, 4>;

    /// What an array with a name is like.
    struct KelArrayInfo {
        KelPlainDataType type; ///< of its values, as they were handed over
        unsigned64 size;       ///< values per member; 0 where it has no meaning
        unsigned64 valueCount; ///< in all
    };

    /// @name What a format overrides; nothing here
    /// @{
    /// Stores the values of an array for a range of ids or positions, as many whole elements as fit: how many values.
    virtual unsigned64 give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    /// The count, or cell type, that all elements of a range have.
    virtual std::optional<signed64> uniformValue(KelArray array, unsigned64 first, unsigned64 last) const;
    /// Stores interface data of a zone, as much as fits: how many values.
    virtual unsigned64 giveInterface(int zoneId, const KelInterfaceBuffers& values) const;

    /// The names in what was started, in the order in which they were written.
    virtual std::vector<std::string> namesIn(KelCollection in, KelPart part) const;
    /// What an array is like, none where there is none.
    virtual std::optional<KelArrayInfo> describe(KelCollection in, KelPart part, const std::string& name) const;
    /// Asks once for room for all values of an array and stores as many as there is room for. False without the array.
    virtual bool giveWhole(KelCollection in, KelPart part, const std::string& name, const KelRoom& room) const;
    /// Gives a text: its length. 0, and `text` as it was, without the text.
    virtual unsigned64 giveText(KelCollection in, const std::string& name, std::string& text) const;
    /// @}

    /// The meshes that the open file of a data class has, in their order; none here.
    virtual std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const;

    /// The time level whose data are asked for; none when the chosen one is not known, or after chooseNoLevel.
    std::optional<int> chosenLevel() const;

    /// Notes that something of the source is not handed over; each item once. May be called while reading.
    void noteNotRead(KelDataClass dataClass, const KelSourceItem& item) const;
    /// The same for something that users should also hear of at once: posts a KelWarning "<place>: <text>".
    void warnOfSource(KelDataClass dataClass, const KelSourceItem& item, const std::string& operation) const;

    /// Declares sizes, units and zones. Nothing is left of the zones that were there before.
    void declareMesh(const KelMeshDescription& mesh);
    /// The zones alone.
    void declareZones(const std::vector<KelZoneDescription>& zones);

    /// Declares phases and variables in the place of those that were there, with the same ids unless the description
    /// was put together from several, and adds the time levels. Chooses the first level and the first phase where
    /// none of them is chosen.
    void declareSolution(const KelSolutionDescription& solution);

    /// Notes that a variable of the active phase was started, or could not be; a format ends the operation that starts
    /// one by name with it.
    ///
    /// @param size  its values per element, 0 when there is nothing to read
    /// @return size
    unsigned64 startedVariable(KelZoneCategory category, const std::string& variableName, unsigned64 size);

    /// Element ids of a zone, 0 and 0 for an unknown one.
    std::pair<unsigned64, unsigned64> rangeOfZone(int zoneId) const;

    /// The unique name of a variable, empty for an unknown one.
    std::string variableName(int variableId) const;

private:
    /// What a caller is told about misuse, and what is needed to know it.
    struct Help {
        unsigned int told = 0;                                               ///< bit n for kind n
        bool isOpen[2] = {false, false};                                     ///< by data class
        KelZoneCategory variableCategory = static_cast<KelZoneCategory>(-1); ///< of the variable started; -1 for none
        std::array<unsigned64, 4> lastIds{}; ///< by category, as they were last looked up
    };

    unsigned64 answer(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const;
    void explain(KelArray array, unsigned64 first, unsigned64 last) const;
    void explainMembers(KelArray array) const;
    void explainElements(KelArray array, KelZoneCategory category, unsigned64 first, unsigned64 last) const;
    void explainVariable(const std::string& variableName) const;
    bool wasTold(KelMisuse kind) const;
    void tell(KelMisuse kind, const std::string& text) const;
    unsigned64 lastIdOf(KelZoneCategory category) const;

    mutable Help _help;

    template <class T>
    bool isUniform(KelArray array, std::pair<unsigned64, unsigned64> range, T* value) const
    {
        const std::optional<signed64> found = uniformValue(array, range.first, range.second);
        if (found && value != nullptr)
            *value = static_cast<T>(*found);
        return found.has_value();
    }

    template <class T>
    bool giveList(KelCollection in, KelPart part, const std::string& name, std::vector<T>& values) const
    {
        std::vector<T> found; // what goes wrong half-way leaves the caller's list as it was
        const bool isThere = giveWhole(in, part, name, [&found](unsigned64 count) {
            found.resize(count);
            return KelBuffer(found.data(), count);
        });
        if (isThere)
            values = std::move(found);
        return isThere;
    }

    unsigned64 notStartedVariable(int variableId) const;
    std::pair<unsigned64, unsigned64> rangeOfCellZone(int zoneId) const;
    KelPlainDataType typeOf(KelCollection in, KelPart part, const std::string& name) const;
    unsigned64 countOf(KelCollection in, KelPart part, const std::string& name) const;
    bool getSize(KelCollection in, const std::string& name, unsigned64& size) const;
    unsigned64 giveUpTo(KelCollection in, KelPart part, const std::string& name, const KelBuffer& values) const;

    void declareVariablesAndPhases(const KelSolutionDescription& solution);

    /// What was noted of a data class: in order, and by content, since a source may hold very many such things.
    struct NotRead {
        std::vector<KelSourceItem> items;
        std::set<std::tuple<int, std::string, int, std::string>> known;
    };
    mutable std::array<NotRead, 2> _notRead; ///< by data class
    bool _isAtNoLevel = false;
};

} // namespace meridyn
