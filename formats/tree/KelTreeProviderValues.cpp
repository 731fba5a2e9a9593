#include "ProviderTree.h"
#include "TreeNames.h"

#include <algorithm>

namespace meridyn {

namespace {

template <class T>
void takeList(const KelTreeNode& node, std::vector<T>& list)
{
    list.resize(node.length());
    node.getList({list.data(), list.size()});
}

} // namespace

// ---- arrays by range

unsigned64 KelTreeProvider::give(KelArray array, unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    return array == KelArray::FaceCell1s ? _data->giveCell1s(first, last, values)
                                         : _data->nodeOf(array).get(first, last, values);
}

/// Boundary faces need no cell 1: it is 0 there. Faces without a cell 0 have no cells at all.
unsigned64 KelTreeProvider::Data::giveCell1s(unsigned64 first, unsigned64 last, const KelBuffer& values) const
{
    const unsigned64 stored = nodeOf(KelArray::FaceCell0s).get(first, last, values);
    if (stored == 0)
        return 0;
    values.visit([&](auto* cells) { std::fill(cells, cells + stored, 0); });
    for (const KelElementValues::Piece& piece : nodeOf(KelArray::FaceCell1s).values.pieces(first, first + stored - 1)) {
        const unsigned64 count = piece.last - piece.first + 1, position = piece.first - first;
        values.visit([&](auto* cells) {
            nodeOf(KelArray::FaceCell1s).values.get(piece.first, piece.last, {cells + position, count});
        });
    }
    return stored;
}

std::optional<signed64> KelTreeProvider::uniformValue(KelArray array, unsigned64 first, unsigned64 last) const
{
    return _data->nodeOf(array).values.uniformValue(first, last);
}

KelPlainDataType KelTreeProvider::storedType(KelArray array) const
{
    const auto pieces = _data->nodeOf(array).values.pieces();
    return pieces.empty() ? static_cast<KelPlainDataType>(-1) : pieces.front().values.type;
}

std::optional<std::vector<KelIdRange>> KelTreeProvider::elementsWithValues(KelArray array, unsigned64 firstId,
                                                                           unsigned64 lastId) const
{
    const KelTreeNode& node = _data->nodeOf(array);
    const KelTreeNode& lists = isOfLists(array) ? node.counts() : KelTreeNode::nothing;
    std::vector<KelIdRange> ranges;
    for (const KelElementValues::Piece& piece : (lists ? lists : node).values.pieces(firstId, lastId))
        if (!ranges.empty() && ranges.back().last + 1 == piece.first)
            ranges.back().last = piece.last;
        else
            ranges.push_back({piece.first, piece.last});
    return ranges;
}

// ---- what else a mesh has

unsigned64 KelTreeProvider::getLocalElemIdsInZone(int zoneId, unsigned64* ids, unsigned64 capacity) const
{
    return _data->tree(KEL_CASE)[tree::localIds][std::to_string(zoneId)].getList({ids, capacity});
}

void KelTreeProvider::startReadingInterfaceDataForFaces(std::vector<int>& zoneIds0, std::vector<int>& zoneIds1)
{
    takeList(_data->tree(KEL_CASE)[tree::interfaceZones[0]], zoneIds0);
    takeList(_data->tree(KEL_CASE)[tree::interfaceZones[1]], zoneIds1);
}

bool KelTreeProvider::getInterfaceDataSizesForFacesInZone(int zoneId, unsigned64& na, unsigned64& nb,
                                                          unsigned64& count0, unsigned64& count1) const
{
    const KelTreeNode& data = _data->tree(KEL_CASE)[tree::interfaces][std::to_string(zoneId)];
    unsigned64* const sizes[] = {&na, &nb, &count0, &count1};
    for (int n = 0; data && n < 4; ++n)
        *sizes[n] = data[std::to_string(n)].length();
    return bool(data);
}

unsigned64 KelTreeProvider::giveInterface(int zoneId, const KelInterfaceBuffers& values) const
{
    const KelTreeNode& data = _data->tree(KEL_CASE)[tree::interfaces][std::to_string(zoneId)];
    unsigned64 stored = 0;
    for (std::size_t n = 0; n < values.size(); ++n)
        stored += data[std::to_string(n)].getList(values[n]);
    return stored;
}

int KelTreeProvider::getPartitionCountOfCells() const
{
    return static_cast<int>(_data->tree(KEL_CASE)[tree::partitionCount].values.at(1).value_or(0));
}

// ---- case sections

void KelTreeProvider::startReadingCaseSectionCategories(KelZoneCategory category, std::vector<std::string>& names)
{
    _data->sections = &_data->tree(KEL_CASE)[tree::caseSections][std::to_string(category)];
    names = _data->sections->names();
}

KelPlainDataType KelTreeProvider::startReadingCaseSectionForCategory(const std::string& name, std::vector<int>& zoneIds)
{
    _data->section = &(*_data->sections)[name];
    if (*_data->section)
        zoneIds = _data->section->zoneIds;
    return _data->section->type;
}

bool KelTreeProvider::hasUniformCaseSectionDataCountForZone(int zoneId, unsigned64* count) const
{
    const std::vector<int>& zones = _data->section->zoneIds;
    if (std::find(zones.begin(), zones.end(), zoneId) == zones.end())
        return false;
    if (count != nullptr)
        *count = _data->section->size;
    return true;
}

unsigned64 KelTreeProvider::getCaseSectionDataForElementsInRange(unsigned64 firstId, unsigned64 lastId, void* values,
                                                                 unsigned64 capacity) const
{
    return give(KelArray::CaseSection, firstId, lastId, {values, capacity, _data->section->type});
}

void KelTreeProvider::endReadingCaseSectionForCategory()
{
    _data->section = &KelTreeNode::nothing;
}

// ---- values of variables and particles

unsigned64 KelTreeProvider::startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category,
                                                                         const std::string& variableName,
                                                                         std::vector<int>& zoneIds)
{
    _data->field = &_data->phase()[tree::fields][std::to_string(category)][variableName];
    zoneIds = _data->field->zoneIds;
    return startedVariable(category, variableName, _data->field->size);
}

bool KelTreeProvider::hasParticles(const std::string& phaseName) const
{
    return bool(_data->phase(phaseName)[tree::setData]);
}

void KelTreeProvider::getVariablesOfInjection(const std::string& injection, std::vector<std::string>& names) const
{
    const KelTreeNode& particles = _data->phase()[tree::setData][injection];
    names = particles[tree::nameOf(KelPart::Variables)].names();
    const std::vector<std::string> lists = particles[tree::nameOf(KelPart::Lists)].names();
    names.insert(names.end(), lists.begin(), lists.end());
}

// ---- particle tracks

bool KelTreeProvider::hasParticleTracks(const std::string& phaseName) const
{
    return bool(_data->phase(phaseName)[tree::tracks]);
}

bool KelTreeProvider::hasParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId) const
{
    return bool(_data->tracksOf(phaseId, meshId, target, partitionId));
}

std::optional<std::vector<KelMeshKey>> KelTreeProvider::meshesWithTracks(short phaseId) const
{
    std::vector<KelMeshKey> keys;
    for (const std::string& name : _data->phase(getPhaseName(phaseId))[tree::tracks].names())
        if (const std::optional<KelMeshKey> key = KelMeshKey::ofGroupName(name))
            keys.push_back(*key);
    return keys;
}

void KelTreeProvider::startReadingParticleTracks(short phaseId, int meshId, KelTargetCategory target, int partitionId)
{
    endReadingParticleTracks();
    _data->tracks = &_data->tracksOf(phaseId, meshId, target, partitionId);
}

void KelTreeProvider::getParticleTrackGroups(std::vector<std::string>& groups) const
{
    groups = _data->tracks->names();
}

void KelTreeProvider::startReadingParticleTrackGroup(const std::string& group)
{
    endReadingParticleTrackGroup();
    _data->trackGroup = &(*_data->tracks)[group];
}

void KelTreeProvider::getChunksInParticleTrackGroup(std::vector<int>& chunkIds) const
{
    chunkIds.clear();
    for (const std::string& name : _data->trackGroup->names())
        if (const std::optional<int> number = tree::parseNumber(name))
            chunkIds.push_back(*number);
        else
            _data->fail(getFile(KEL_DATA) + ": chunk '" + name + "' of the particle tracks in '" +
                        _data->trackGroup->name() + "': expected a number");
}

void KelTreeProvider::startReadingChunkInParticleTrackGroup(int chunkId)
{
    _data->open[KelCollection::TrackChunk] = &(*_data->trackGroup)[std::to_string(chunkId)];
}

unsigned64 KelTreeProvider::getPointCountOfParticleTrackChunk() const
{
    return _data->opened(KelCollection::TrackChunk).size;
}

void KelTreeProvider::endReadingChunkInParticleTrackGroup()
{
    _data->open.erase(KelCollection::TrackChunk);
}

void KelTreeProvider::endReadingParticleTrackGroup()
{
    endReadingChunkInParticleTrackGroup();
    _data->trackGroup = &KelTreeNode::nothing;
}

void KelTreeProvider::endReadingParticleTracks()
{
    endReadingParticleTrackGroup();
    _data->tracks = &KelTreeNode::nothing;
}

// ---- sets

bool KelTreeProvider::getSetNames(KelDataClass dataClass, std::vector<std::string>& names) const
{
    names = _data->tree(dataClass)[tree::sets].names();
    return !names.empty();
}

bool KelTreeProvider::getSetNames(KelZoneCategory category, std::vector<std::string>& names) const
{
    names.clear();
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA})
        for (const KelTreeNode& set : _data->tree(dataClass)[tree::sets].children())
            if (set.category == category)
                names.push_back(set.name());
    return !names.empty();
}

bool KelTreeProvider::startReadingSet(const std::string& name)
{
    endReadingSet();
    const KelDataClass other = _data->current == KEL_CASE ? KEL_DATA : KEL_CASE;
    for (const KelDataClass dataClass : {_data->current, other})
        if (const KelTreeNode& set = _data->tree(dataClass)[tree::sets][name]) {
            _data->open[KelCollection::Set] = &set;
            return true;
        }
    return false;
}

KelZoneCategory KelTreeProvider::getCategoryOfSet() const
{
    return _data->opened(KelCollection::Set).category;
}

void KelTreeProvider::getSizesAndMinMaxIdsForSet(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                                                 std::vector<unsigned64>& maxIds) const
{
    const KelTreeNode& set = _data->opened(KelCollection::Set);
    takeList(set[tree::sizes], sizes);
    takeList(set[tree::minIds], minIds);
    takeList(set[tree::maxIds], maxIds);
}

KelPlainDataType KelTreeProvider::startReadingSizeOfVariableLengthedVarForSet(const std::string& name)
{
    _data->variable = &_data->part(KelCollection::Set, KelPart::Lists, name);
    return _data->variable->counts().type;
}

void KelTreeProvider::endReadingSizeOfVariableLengthedVarForSet()
{
    _data->variable = &KelTreeNode::nothing;
}

KelPlainDataType KelTreeProvider::startReadingDataOfVariableForSet(const std::string& name, unsigned64& valuesPerMember)
{
    _data->variable = &_data->part(KelCollection::Set, KelPart::Variables, name);
    if (*_data->variable)
        valuesPerMember = _data->variable->size;
    return _data->variable->type;
}

void KelTreeProvider::endReadingDataOfVariableForSet()
{
    _data->variable = &KelTreeNode::nothing;
}

KelPlainDataType KelTreeProvider::startReadingVariableLengthedDataOfVariableForSet(const std::string& name)
{
    _data->variable = &_data->part(KelCollection::Set, KelPart::Lists, name);
    return _data->variable->type;
}

void KelTreeProvider::endReadingVariableLengthedDataOfVariableForSet()
{
    _data->variable = &KelTreeNode::nothing;
}

void KelTreeProvider::endReadingSet()
{
    _data->open.erase(KelCollection::Set);
    _data->variable = &KelTreeNode::nothing;
}

// ---- set data

void KelTreeProvider::getSetDataNames(std::vector<std::string>& names) const
{
    names = _data->phase()[tree::setData].names();
}

bool KelTreeProvider::startReadingSetData(const std::string& name, unsigned64& memberCount)
{
    const KelTreeNode& found = _data->phase()[tree::setData][name];
    _data->open[KelCollection::SetData] = &found;
    if (found)
        memberCount = found.size;
    return bool(found);
}

void KelTreeProvider::endReadingSetData()
{
    _data->open.erase(KelCollection::SetData);
}

// ---- names, arrays and texts of a collection

std::vector<std::string> KelTreeProvider::namesIn(KelCollection in, KelPart part) const
{
    return _data->opened(in)[tree::nameOf(part)].names();
}

std::optional<KelFormatProvider::KelArrayInfo> KelTreeProvider::describe(KelCollection in, KelPart part,
                                                                         const std::string& name) const
{
    const KelTreeNode& node = _data->part(in, part, name);
    return node ? std::optional<KelArrayInfo>({node.type, node.size, node.length()}) : std::nullopt;
}

bool KelTreeProvider::giveWhole(KelCollection in, KelPart part, const std::string& name, const KelRoom& room) const
{
    const KelTreeNode& node = _data->part(in, part, name);
    if (node)
        node.getList(room(node.length()));
    return bool(node);
}

unsigned64 KelTreeProvider::giveText(KelCollection in, const std::string& name, std::string& text) const
{
    const KelTreeNode& node = _data->part(in, KelPart::Texts, name);
    if (node)
        text = node.text;
    return node.text.size();
}

} // namespace meridyn
