#include "Command.h"
#include "JsonWriter.h"
#include "KelLocationModel.h"
#include "Model.h"
#include "Numbers.h"

#include <cstdint>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file, location;
    std::string format;
    int map = 0;
    bool explain = false;
    bool json = false;
};

/// What a location resolves to.
struct Answer {
    std::vector<int> cellZones, sides;
    std::vector<std::pair<std::string, std::vector<std::string>>> entries;
};

/// The zone behind a side: |side| is the zone, a side from 1 up is the near one.
std::string sideText(const KelBase& base, int side)
{
    const std::int64_t zone = side < 0 ? -static_cast<std::int64_t>(side) : side;
    const std::string label = zone <= INT32_MAX ? zoneLabel(base, static_cast<int>(zone)) : std::to_string(zone);
    return label + (side >= 1 ? ", near side" : ", far side");
}

void printAnswer(Terminal& terminal, const KelBase& base, const Options& options, const Answer& answer)
{
    if (options.explain)
        for (const auto& [entry, regions] : answer.entries) {
            terminal.print("{}\n", terminal.styled(Style::Heading, printable(entry)));
            for (const std::string& region : regions)
                terminal.print("  is {}\n", printable(region));
            if (regions.empty())
                terminal.print("  {}\n", terminal.styled(Style::Bad, "names nothing"));
        }
    for (const int zone : answer.cellZones)
        terminal.print("cell zone {}\n", printable(zoneLabel(base, zone)));
    for (const int side : answer.sides)
        terminal.print("face zone {}\n", printable(sideText(base, side)));
}

std::string jsonText(const Options& options, const Answer& answer)
{
    JsonWriter json;
    json.beginObject().member("location", options.location).member("map", options.map);
    json.member("cellZones", answer.cellZones).member("faceZoneSides", answer.sides).key("entries").beginArray();
    for (const auto& [entry, regions] : answer.entries)
        json.beginObject().member("entry", entry).member("names", regions).endObject();
    json.endArray().endObject();
    return json.text();
}

void runLocate(const Options& options, Session& session)
{
    Model model(options.file, options.format);
    model.openAll();
    const KelLocationModel& locations = *model.reader().getLocationModel();
    Answer answer;
    const bool isFound = locations.resolveLocation(options.location, 0, options.map, answer.cellZones, answer.sides);
    locations.explainLocation(options.location, answer.entries);
    model.expectNoErrors();
    if (options.json)
        session.terminal.write(jsonText(options, answer));
    else
        printAnswer(session.terminal, model.reader(), options, answer);
    if (isFound)
        return;
    session.exitCode = EXIT_NO;
    if (!options.json)
        session.terminal.complain(aboutFile(options.file, "no zones lie behind '" + options.location + "'"));
}

} // namespace

void addLocateCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "locate", "Finds the zones behind a location",
                   {"kel locate cube.case.kel inlet", "kel locate --explain cube.case.kel 'fluid/*, wall'",
                    "kel locate --json \"box:2x2x2\" box"});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model with the locations")->required();
    command->add_option("LOCATION", options->location, "Names of regions, with commas between them")->required();
    command->add_flag("--explain", options->explain, "Show which regions each entry names");
    command->add_option("--map", options->map, "Number of the mesh map; 0 unless given");
    addInputFormatOption(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runLocate(*options, session); });
}

} // namespace meridyn::tool
