#include "LevelFile.h"

#include <sys/wait.h>

namespace hdf5test {

bool addLevel(Writer& writer, const std::string& path, int level, bool appends)
{
    TwoCells::declare(writer);
    writer.setAppendOn(appends);
    short phase = 0;
    int id = 0;
    writer.addPhaseName("gas", phase);
    writer.addPhaseVariable(phase, "p", id);
    writer.startWritingPhase(phase);
    if (!writer.startWriting(path, KEL_DATA))
        return false;
    writer.startWritingTimeLevel(level);
    std::vector<int> zones{21};
    const double values[] = {level + 0.25, level + 0.5};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, id, zones, 1);
    writer.setValuesOfPhaseVariableForElementsInRange(1, 2, values, 2);
    writer.startWritingSet("s", KEL_CELL_ZONE);
    writer.setSizesAndMinMaxIdsForSet({1}, {1}, {1});
    const unsigned64 member = 1;
    writer.setIdsForSetInRange(1, 1, &member, 1);
    writer.endWritingSet();
    return writer.endWriting(KEL_DATA);
}

std::vector<int> readableLevels(const std::string& path)
{
    Reader reader;
    if (!reader.startReading(path, KEL_DATA))
        return {};
    std::vector<int> readable;
    const std::vector<int> levels = reader.getTimeLevels();
    for (const int level : levels) {
        reader.startReadingTimeLevel(level);
        std::vector<int> zones;
        double values[2] = {};
        reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, "p", zones);
        if (reader.getValuesOfPhaseVariableForElementsInRange(1, 2, values, 2) == 2 && values[0] == level + 0.25 &&
            values[1] == level + 0.5)
            readable.push_back(level);
    }
    EXPECT_EQ(reader.errors(), "");
    EXPECT_EQ(readable, levels);
    return readable;
}

bool inChild(const std::function<int()>& work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const int result = work();
        ::_exit(result);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace hdf5test
