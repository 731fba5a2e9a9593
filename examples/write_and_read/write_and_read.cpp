// Writes a mesh and a solution to files, and reads them back. With another format only the two classes and the names of
// the files change.

#include "../trace/two_cubes.h"

#include "KelAttributes.h"
#include "KelHdf5Consumer.h"
#include "KelHdf5Provider.h"

#include <iostream>

using namespace meridyn;

static const std::string caseFile = "two_cubes.case.kel";
static const std::string dataFile = "two_cubes.data.kel";

static bool write()
{
    KelHdf5Consumer writer;
    writer.setApplicationName("write_and_read");
    declareTwoCubes(writer);
    if (!writer.startWriting(caseFile, KEL_CASE))
        return false;
    writeMesh(writer);
    if (!writer.endWriting(KEL_CASE) || !writer.startWriting(dataFile, KEL_DATA))
        return false;
    writeSolution(writer);
    return writer.endWriting(KEL_DATA);
}

static void printZones(const KelHdf5Provider& reader)
{
    std::vector<int> ids;
    reader.getZoneIds(KEL_FACE_ZONE, ids);
    for (const int id : ids) {
        std::string name;
        unsigned64 count = 0;
        short nodes = 0;
        reader.getZoneStringInfo(id, KEL_ZONE_STRING_0, name);
        reader.getZoneSizeInfo(id, KEL_ZONE_ELEMENT_COUNT, count);
        std::cout << "zone " << id << " '" << name << "': " << count << " faces";
        if (reader.hasUniformNodeCountForFacesInZone(id, &nodes))
            std::cout << " of " << nodes << " nodes";
        std::cout << '\n';
    }
}

static void printFace(const KelHdf5Provider& reader, unsigned64 id)
{
    unsigned64 nodes[16];
    const unsigned64 count = reader.getNodeIdsForFace(id, nodes, 16);
    std::cout << "face " << id << ": nodes";
    for (unsigned64 n = 0; n < count; ++n)
        std::cout << ' ' << nodes[n];
    std::cout << ", cells " << reader.getCell0ForFace(id) << " and " << reader.getCell1ForFace(id) << '\n';
}

static void printValues(KelHdf5Provider& reader, int variableId)
{
    std::string name;
    std::vector<int> zones;
    reader.getAttributeValueOfPhaseVariable(variableId, KelAttributes::datasetName, name);
    const unsigned64 size = reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, variableId, zones);
    for (const int zone : zones) {
        double values[16];
        const unsigned64 count = reader.getValuesOfPhaseVariableForElementsInZone(zone, values, 16);
        std::cout << "  " << name << " in zone " << zone << ", " << size << " per cell:";
        for (unsigned64 n = 0; n < count; ++n)
            std::cout << ' ' << values[n];
        std::cout << '\n';
    }
}

static bool read()
{
    KelHdf5Provider reader;
    if (!reader.startReading(caseFile, KEL_CASE))
        return false;
    printZones(reader);
    printFace(reader, 1);
    printFace(reader, 2);
    if (!reader.endReading(KEL_CASE) || !reader.startReading(dataFile, KEL_DATA))
        return false;

    for (const int timeLevel : reader.getTimeLevels()) {
        reader.startReadingTimeLevel(timeLevel);
        if (reader.getTimeLevel() != timeLevel) // a level that does not exist changes nothing, without a word
            return false;
        std::vector<short> phases;
        reader.getPhaseIds(phases);
        for (const short phase : phases) {
            std::string name;
            reader.KelBase::getPhaseName(phase, name);
            std::cout << "time level " << timeLevel << ", phase '" << name << "'\n";
            std::vector<int> variables;
            reader.startReadingPhase(phase);
            reader.getPhaseVariablesOfCategory(KEL_CELL_ZONE, variables);
            for (const int variable : variables)
                printValues(reader, variable);
        }
    }
    return reader.endReading(KEL_DATA);
}

int main()
{
    return write() && read() ? 0 : 1;
}
