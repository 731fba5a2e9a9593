// A solver that writes a mesh once and a time level after each step, stops, and goes on from its last time level.
//
// It computes how heat spreads through a bar whose left end is hot. Run it again in the same folder and it goes on.

#include "bar.h"

#include "KelAttributes.h"
#include "KelTimes.h"

#include <algorithm>
#include <iostream>
#include <vector>

using namespace meridyn;

namespace {

const std::string caseFile = "bar.case.kel";
const std::string dataFile = "bar.data.kel";
const double stepSize = 0.25; // seconds

struct State {
    int level = 0;        // number of the last step
    double seconds = 0.0; // its physical time
    std::vector<double> temperature = std::vector<double>(cellCount, 300.0);
};

bool report(KelBase& object)
{
    for (const std::string& error : object.getErrors(false, false))
        std::cerr << error << '\n';
    return false;
}

/// The state at the last time level of the file. False if the file cannot be read.
bool restart(State& state)
{
    KelHdf5Provider reader;
    if (!reader.startReading(caseFile, KEL_CASE) || !reader.startReading(dataFile, KEL_DATA))
        return report(reader);
    const std::vector<int> levels = reader.getTimeLevels();
    if (levels.empty())
        return false;
    const int last = *std::max_element(levels.begin(), levels.end());

    reader.startReadingTimeLevel(last);
    if (reader.getTimeLevel() != last) // startReadingTimeLevel says nothing when a level does not exist
        return false;

    int temperature = 0;
    std::vector<int> zones;
    if (!reader.startReadingPhase(-1) || !reader.getVariableId(-1, "temperature", temperature))
        return false;
    reader.startReadingZonesOfCategoryWithPhaseVariable(KEL_CELL_ZONE, temperature, zones);
    double* const values = state.temperature.data();
    if (reader.getValuesOfPhaseVariableForElementsInZone(cellZone, values, cellCount) != cellCount)
        return false;
    state.level = last;
    if (!KelTimes::get(reader, last, state.seconds))
        return false;
    return reader.endReading(KEL_DATA) && reader.endReading(KEL_CASE);
}

/// Adds one time level to the data file, which is complete again when this returns.
bool writeLevel(KelHdf5Consumer& writer, const State& state)
{
    if (!writer.startWriting(dataFile, KEL_DATA))
        return report(writer);
    writer.startWritingTimeLevel(state.level);
    writer.startWritingPhase(-1); // a flow without phases: the mixture
    std::vector<int> zones = {cellZone};
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "temperature", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInZone(cellZone, state.temperature.data(), cellCount);
    KelTimes::set(writer, state.level, state.seconds);
    return writer.endWriting(KEL_DATA) || report(writer);
}

void step(State& state)
{
    const std::vector<double> old = state.temperature;
    for (std::size_t cell = 0; cell < cellCount; ++cell) {
        const double left = cell == 0 ? 400.0 : old[cell - 1];
        const double right = cell + 1 == cellCount ? old[cell] : old[cell + 1];
        state.temperature[cell] = old[cell] + 0.25 * (left - 2.0 * old[cell] + right);
    }
    ++state.level;
    state.seconds += stepSize;
}

/// Computes and writes steps, beginning behind what the files have.
bool run(int steps)
{
    State state;
    KelHdf5Consumer writer;
    writer.setApplicationName("bar");
    declareBar(writer);
    if (exists(dataFile)) {
        if (!restart(state))
            return false;
        std::cout << "goes on from level " << state.level << ", " << state.seconds << " s\n";
    } else if (!writeBar(writer, caseFile)) {
        return report(writer);
    }

    writer.setAppendOn(true); // from here on the data file is added to; the first step makes it
    int temperature = 0;
    writer.addPhaseVariable(-1, "temperature", temperature);
    writer.setAttributeValueOfPhaseVariable(temperature, KelAttributes::units, "K");
    for (int n = 0; n < steps; ++n) {
        step(state);
        if (!writeLevel(writer, state))
            return false;
        std::cout << "level " << state.level << ", " << state.seconds << " s: " << state.temperature.front()
                  << " K at the left, " << state.temperature.back() << " K at the right\n";
    }
    return true;
}

} // namespace

int main()
{
    return run(3) && run(2) ? 0 : 1; // the second run is a restart
}
