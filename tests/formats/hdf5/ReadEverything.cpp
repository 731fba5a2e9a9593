#include "ReadEverything.h"

#include "KelHdf5Provider.h"
#include "KelSolutionModel.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace hdf5test {

using namespace meridyn;

namespace {

constexpr unsigned64 room = 64;      // values of each buffer
constexpr std::size_t mostNames = 8; // of one kind that are followed

using Names = std::vector<std::string>;

/// A reader whose protected operations are reached, with buffers for its answers.
class Explorer : public KelHdf5Provider {
public:
    void readMesh()
    {
        getCoordinatesForNodesInRange(1, 12, reals.data(), room);
        getNodeCountsForEdgesInRange(1, 2, counts.data(), room);
        getNodeIdsForEdgesInRange(1, 2, ids.data(), room);
        getNodeCountsForFacesInRange(1, 11, counts.data(), room);
        getNodeIdsForFacesInRange(1, 11, ids.data(), room);
        getCell0sForFacesInRange(1, 11, ids.data(), room);
        getCell1sForFacesInRange(1, 11, ids.data(), room);
        getShadowFaceIdsForFacesInRange(2, 3, ids.data(), room);
        getChildFaceCountsForFacesInRange(4, 6, counts.data(), room);
        getChildFaceIdsForFacesInRange(1, 11, ids.data(), room);
        getTypesForCellsInRange(1, 2, types.data(), room);
        getPartitionIdsForCellsInRange(1, 2, ints.data(), room);
        getPartitionCountOfCells();
        getLocalElemIdsInZone(21, ids.data(), room);
        readInterface();
        readCaseSections();
        getLocationModel();
    }

    void readInterface()
    {
        std::vector<int> zones0;
        std::vector<int> zones1;
        unsigned64 sizes[4] = {};
        startReadingInterfaceDataForFaces(zones0, zones1);
        getInterfaceDataSizesForFacesInZone(12, sizes[0], sizes[1], sizes[2], sizes[3]);
        getInterfaceDataForFacesInZone(12, reals.data(), room, reals.data(), room, ids.data(), room, ids.data(), room);
    }

    void readCaseSections()
    {
        Names names;
        std::vector<int> zones;
        startReadingCaseSectionCategories(KEL_CELL_ZONE, names);
        for (const std::string& name : few(names)) {
            startReadingCaseSectionForCategory(name, zones);
            getCaseSectionDataForElementsInRange(1, 2, reals.data(), room);
        }
        endReadingCaseSectionForCategory();
    }

    void readTexts(KelDataClass dataClass)
    {
        std::vector<std::pair<std::string, std::string>> log;
        Names groups;
        Names keys;
        std::string text;
        getLog(dataClass, log);
        getSettingsGroups(dataClass, groups);
        for (const std::string& group : few(groups)) {
            getSettingsKeysOfGroup(dataClass, group, keys);
            for (const std::string& key : few(keys))
                getSettingString(dataClass, key, text, group);
        }
        for (const int mesh : availableMeshIds(dataClass)) {
            availableTargets(mesh, dataClass);
            availablePartitionIds(mesh, dataClass);
        }
    }

    void readSets(KelDataClass dataClass)
    {
        Names names;
        getSetNames(dataClass, names);
        for (const std::string& name : few(names)) {
            std::vector<unsigned64> sizes;
            Names variables;
            if (!startReadingSet(name))
                continue;
            getCategoryOfSet();
            getSizesAndMinMaxIdsForSet(sizes, sizes, sizes);
            getIdsForSetInRange(1, 2, ids.data(), room);
            getVariablesInSet(variables);
            getOtherVariablesInSet(variables);
            getStringVariablesInSet(variables);
            endReadingSet();
        }
    }

    void readLevel()
    {
        std::vector<short> phases;
        getPhaseIds(phases);
        for (const short phase : phases) {
            setActivePhase(phase);
            std::vector<int> variables;
            solutionModel()->getVariables(phase, variables);
            for (std::size_t i = 0; i < std::min(mostNames, variables.size()); ++i) {
                std::vector<int> zones;
                startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variables[i], zones);
                getValuesOfPhaseVariableForElementsInRange(1, 2, reals.data(), room);
            }
            readSetData();
            readTracks(phase);
        }
    }

    void readSetData()
    {
        Names names;
        getSetDataNames(names);
        for (const std::string& name : few(names)) {
            unsigned64 members = 0;
            Names lists;
            std::vector<unsigned64> lengths;
            std::vector<double> values;
            if (!startReadingSetData(name, members))
                continue;
            getIdsForSetData(lengths);
            getVariableLengthVariablesInSetData(lists);
            for (const std::string& list : few(lists)) {
                getDataTypeOfDataForSetData(list);
                getSizeOfVariableLengthVarForSetData(list, lengths);
                getDataOfVariableLengthVarForSetData(list, values);
            }
            endReadingSetData();
        }
    }

    void readTracks(short phase)
    {
        Names groups;
        startReadingParticleTracks(phase, 4, KEL_DEFAULT_TARGET, -1);
        getParticleTrackGroups(groups);
        for (const std::string& group : few(groups)) {
            std::vector<int> chunks;
            Names variables;
            startReadingParticleTrackGroup(group);
            getChunksInParticleTrackGroup(chunks);
            startReadingChunkInParticleTrackGroup(chunks.empty() ? 0 : chunks.front());
            getPointCountOfParticleTrackChunk();
            getParticleTrackVariables(variables);
            for (const std::string& variable : few(variables)) {
                getDataTypeOfParticleTrackVariable(variable);
                getValuesOfParticleTrackVariable(variable, reals.data(), room);
            }
        }
        endReadingParticleTracks();
    }

private:
    static Names few(Names names)
    {
        names.resize(std::min(mostNames, names.size()));
        return names;
    }

    std::vector<double> reals = std::vector<double>(room);
    std::vector<unsigned64> ids = std::vector<unsigned64>(room);
    std::vector<short> counts = std::vector<short>(room);
    std::vector<int> ints = std::vector<int>(room);
    std::vector<KelCellType> types = std::vector<KelCellType>(room);
};

} // namespace

ReadResult readEverything(const std::string& path)
{
    Explorer reader;
    const bool isCase = reader.startReading(path, KEL_CASE);
    const bool isData = reader.startReading(path, KEL_DATA);
    if (isCase || isData) {
        reader.readMesh();
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            reader.readTexts(dataClass);
            reader.readSets(dataClass);
        }
        const std::vector<int> levels = reader.getTimeLevels();
        for (std::size_t i = 0; i < std::min<std::size_t>(levels.size(), 4); ++i) {
            reader.startReadingTimeLevel(levels[i]);
            reader.readLevel();
        }
    }
    ReadResult result{isCase || isData, {}};
    for (const std::string& error : reader.getErrors(false, true))
        result.errors += error + "\n";
    return result;
}

} // namespace hdf5test
