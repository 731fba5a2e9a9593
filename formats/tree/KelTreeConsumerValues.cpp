#include "ConsumerTree.h"
#include "KelSolutionModel.h"
#include "TreeNames.h"
#include "TreeParts.h"

namespace meridyn {

using namespace tree;

namespace {

constexpr auto noType = static_cast<KelPlainDataType>(-1);

/// Values of reals are kept in the precision that the writer was told; all others as they come.
KelPlainDataType storedType(KelArray array, const KelValues& values, KelDataPrecisionType precision)
{
    const bool isReal = array == KelArray::Coordinates || array == KelArray::PhaseVariable;
    if (isReal && precision == KEL_PRECISION_SINGLE)
        return KEL_PLAIN_FLOAT;
    if (isReal && precision == KEL_PRECISION_DOUBLE)
        return KEL_PLAIN_DOUBLE;
    return values.type;
}

std::string rangeText(unsigned64 first, unsigned64 last)
{
    return std::to_string(first) + " to " + std::to_string(last);
}

/// The sum of numbers of any type; negative ones make it differ from every number of values.
double sumOf(const KelValues& numbers)
{
    double sum = 0;
    numbers.visit([&](auto* each) {
        for (unsigned64 n = 0; each && n < numbers.count; ++n)
            sum += static_cast<double>(each[n]);
    });
    return sum;
}

} // namespace

// ---- arrays by range

void KelTreeConsumer::keep(KelArray array, unsigned64 first, unsigned64 last, const KelValues& values)
{
    KelAnyValues copy = copyOf(values, storedType(array, values, getDataPrecision()));
    KelTreeNode* const node = _data->nodeOf(array);
    if (node == nullptr)
        return;
    const bool isKept =
        node->size > 0 ? node->values.put(first, last, std::move(copy), node->size)
                       : node->values.putRagged(first, last, std::move(copy), std::as_const(*node).counts().values);
    if (!isKept)
        _data->fail(node->name() + ", " + rangeText(first, last) +
                    ": no range of ids, or not the right number of values");
}

void KelTreeConsumer::keepUniform(KelArray array, unsigned64 first, unsigned64 last, signed64 value)
{
    KelTreeNode* const node = _data->nodeOf(array);
    if (node != nullptr && (value < 0 || !node->values.putUniform(first, last, copyOf({&value, 1}))))
        _data->fail(node->name() + ", " + rangeText(first, last) + ": no range of ids, or negative");
}

// ---- what else a mesh has

void KelTreeConsumer::setLocalElemIdsInZone(int zoneId, const unsigned64* values, unsigned64 count)
{
    keepList(openNode(_data->tree(KEL_CASE), {localIds, std::to_string(zoneId)}), {values, count});
}

void KelTreeConsumer::startWritingInterfaceDataForFaces(const std::vector<int>& zoneIds0,
                                                        const std::vector<int>& zoneIds1)
{
    keepList(openNode(_data->tree(KEL_CASE), {interfaceZones[0]}), {zoneIds0.data(), zoneIds0.size()});
    keepList(openNode(_data->tree(KEL_CASE), {interfaceZones[1]}), {zoneIds1.data(), zoneIds1.size()});
}

void KelTreeConsumer::keepInterface(int zoneId, const KelInterfaceValues& values)
{
    for (std::size_t n = 0; n < values.size(); ++n)
        keepList(openNode(_data->tree(KEL_CASE), {interfaces, std::to_string(zoneId), std::to_string(n)}), values[n]);
}

void KelTreeConsumer::startWritingPartitionIdsForCells(const std::vector<int>&, int count)
{
    keepList(openNode(_data->tree(KEL_CASE), {partitionCount}), {&count, 1});
}

// ---- case sections

void KelTreeConsumer::startWritingCaseSectionCategories(KelZoneCategory category, const std::vector<std::string>& names)
{
    _data->section = nullptr;
    _data->sections = openNode(_data->tree(KEL_CASE), {caseSections, std::to_string(category)});
    for (const std::string& name : names)
        openNode(_data->sections, {name});
}

void KelTreeConsumer::startWritingCaseSectionDataForCategory(const std::string& name, const std::vector<int>& zoneIds,
                                                             KelPlainDataType type, unsigned64 size)
{
    const bool isKnown =
        (type >= 0 && type <= KEL_PLAIN_DOUBLE && size > 0) || _data->fail("section '" + name + "': no values");
    _data->section = isKnown ? openField(_data->started(_data->sections), name, zoneIds, type, size) : nullptr;
}

void KelTreeConsumer::setCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, const void* values,
                                                           unsigned64 count)
{
    if (const KelTreeNode* const section = _data->started(_data->section))
        keep(KelArray::CaseSection, firstId, lastId, {values, count, section->type});
}

void KelTreeConsumer::endWritingCaseSectionDataForCategory()
{
    _data->section = nullptr;
}

// ---- values of variables

void KelTreeConsumer::startWritingPhaseVariableInZonesOfCategory(KelZoneCategory category, const std::string& name,
                                                                 std::vector<int>& zoneIds, unsigned64 size)
{
    short phaseId = 0;
    int id = 0;
    const bool isKnown =
        getActivePhase(phaseId) && solutionModel()->findVariableByUniqueName(phaseId, name, id) && size > 0;
    _data->field = nullptr;
    if (!isKnown && !_data->fail("variable '" + name + "': not declared, or no values"))
        return;
    addVariableOfCategory(id, category);
    _data->field = openField(openNode(_data->phase(), {fields, std::to_string(category)}), name, zoneIds, noType, size);
}

void KelTreeConsumer::endWritingPhaseVariableInZonesOfCategory()
{
    _data->field = nullptr;
}

// ---- sets and set data

void KelTreeConsumer::startWritingSet(const std::string& name, KelZoneCategory category)
{
    endWritingSet();
    KelTreeNode* const set = renew(openNode(_data->tree(_data->current), {sets, name}));
    _data->open[KelCollection::Set] = set;
    if (set != nullptr)
        set->category = category;
}

void KelTreeConsumer::setSizesAndMinMaxIdsForSet(const std::vector<unsigned64>& blockSizes,
                                                 const std::vector<unsigned64>& smallest,
                                                 const std::vector<unsigned64>& largest)
{
    KelTreeNode* const set = _data->started(_data->open[KelCollection::Set]);
    keepList(openNode(set, {sizes}), {blockSizes.data(), blockSizes.size()});
    keepList(openNode(set, {minIds}), {smallest.data(), smallest.size()});
    keepList(openNode(set, {maxIds}), {largest.data(), largest.size()});
}

void KelTreeConsumer::endWritingSet()
{
    _data->close(KelCollection::Set);
}

void KelTreeConsumer::startWritingSetData(const std::string& name, unsigned64 memberCount)
{
    endWritingSetData();
    _data->open[KelCollection::SetData] = renew(openNode(_data->phase(), {setData, name}), memberCount);
}

void KelTreeConsumer::endWritingSetData()
{
    _data->close(KelCollection::SetData);
}

void KelTreeConsumer::startVariable(KelCollection in, const std::string& name, unsigned64 valuesPerMember,
                                    KelPlainDataType type)
{
    KelTreeNode* const variable =
        openNode(_data->started(_data->open[in]), {nameOf(KelPart::Variables), name}, valuesPerMember);
    _data->variable[in] = variable;
    if (variable != nullptr)
        variable->type = type;
}

void KelTreeConsumer::startLists(KelCollection in, const std::string& name, KelPlainDataType type,
                                 KelPlainDataType lengthType)
{
    KelTreeNode* const lists = openNode(_data->started(_data->open[in]), {nameOf(KelPart::Lists), name});
    _data->variable[in] = lists;
    if (lists != nullptr && type != noType)
        lists->type = type;
    if (lists != nullptr && lengthType != noType)
        lists->counts().type = lengthType;
}

void KelTreeConsumer::startLengths(const std::string& name, KelPlainDataType type)
{
    startLists(KelCollection::Set, name, noType, type);
}

bool KelTreeConsumer::append(KelPart part, const KelValues& values)
{
    KelTreeNode* const node = part == KelPart::Ids
                                  ? openNode(_data->started(_data->open[KelCollection::SetData]), {ids})
                                  : _data->started(_data->variable[KelCollection::SetData]);
    return node != nullptr && node->values.append(copyOf(values));
}

bool KelTreeConsumer::appendLists(const KelValues& values, const KelValues& lengths)
{
    const bool fits = sumOf(lengths) == static_cast<double>(values.count) ||
                      _data->fail("lengths that do not go with the number of values");
    KelTreeNode* const node = fits ? _data->started(_data->variable[KelCollection::SetData]) : nullptr;
    return node != nullptr && node->values.append(copyOf(values)) && node->counts().values.append(copyOf(lengths));
}

void KelTreeConsumer::keepBlock(KelCollection in, const std::string& name, const KelValues& values)
{
    KelTreeNode* const node = _data->started(_data->open[in]);
    const bool isOfChunk = in == KelCollection::TrackChunk;
    if (node != nullptr && isOfChunk &&
        (name.empty() || (node->size > 0 ? values.count % node->size : values.count) != 0))
        _data->fail("variable '" + name + "' of particle tracks: no name, or not the same for each point");
    else
        keepList(openNode(node, {nameOf(isOfChunk ? KelPart::Variables : KelPart::Others), name}), values);
}

void KelTreeConsumer::keepText(KelCollection in, const std::string& name, const std::string& text)
{
    if (KelTreeNode* const node = openNode(_data->started(_data->open[in]), {nameOf(KelPart::Texts), name}))
        node->text = text;
}

// ---- particle tracks

bool KelTreeConsumer::startWritingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endWritingParticleTracks();
    const std::string name = getPhaseName(phaseId);
    if (name.empty())
        return _data->fail("particle tracks of an unknown phase");
    _data->tracks =
        openNode(_data->tree(KEL_DATA), {phases, name, tracks, KelMeshKey{meshId, target, partitionId}.groupName()});
    return _data->tracks != nullptr;
}

void KelTreeConsumer::startWritingPartiticleTrackGroup(const std::string& name)
{
    endWritingChunkInPartiticleTrackGroup();
    _data->trackGroup = openNode(_data->started(_data->tracks), {name});
}

void KelTreeConsumer::startWritingChunkInPartiticleTrackGroup(int chunkId, unsigned64 pointCount)
{
    _data->open[KelCollection::TrackChunk] =
        renew(openNode(_data->started(_data->trackGroup), {std::to_string(chunkId)}), pointCount);
}

void KelTreeConsumer::endWritingChunkInPartiticleTrackGroup()
{
    _data->close(KelCollection::TrackChunk);
}

void KelTreeConsumer::endWritingPartiticleTrackGroup()
{
    endWritingChunkInPartiticleTrackGroup();
    _data->trackGroup = nullptr;
}

void KelTreeConsumer::endWritingParticleTracks()
{
    endWritingPartiticleTrackGroup();
    _data->tracks = nullptr;
}

} // namespace meridyn
