#include "Command.h"
#include "Json.h"
#include "KelLocationModel.h"
#include "Model.h"
#include "Numbers.h"

#include <algorithm>
#include <cstdint>
#include <memory>

namespace meridyn::tool {

namespace {

struct Options {
    std::string file, location;
    std::string format;
    MeshChoice mesh;
    int map = 0;
    bool explain = false;
    bool json = false;
};

/// What a location resolves to.
struct Answer {
    bool isFound = false;
    bool byZoneName = false;           ///< the model has no locations: names of zones were looked up instead
    std::vector<int> cellZones, sides; ///< behind locations
    std::vector<int> zones;            ///< behind names of zones
    std::vector<std::pair<std::string, std::vector<std::string>>> entries;
};

/// "cell zone 4 'fluid'": a location may name a zone of any category, or one that is not there.
std::string zoneText(const KelBase& base, std::int64_t zone)
{
    static const char* const kinds[] = {"node", "edge", "face", "cell"};
    for (const KelZoneCategory category : allCategories) {
        std::vector<int> ids;
        base.getZoneIds(category, ids);
        if (std::find(ids.begin(), ids.end(), zone) != ids.end())
            return std::string(kinds[category]) + " zone " + zoneLabel(base, static_cast<int>(zone));
    }
    return "zone " + std::to_string(zone) + ", which the mesh does not have";
}

/// The zone behind a side: |side| is the zone, a side from 1 up is the near one.
std::string sideText(const KelBase& base, int side)
{
    const std::int64_t zone = side < 0 ? -static_cast<std::int64_t>(side) : side;
    return zoneText(base, zone) + (side >= 1 ? ", near side" : ", far side");
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// The zones with the names that stand between commas.
void findByName(const KelBase& base, const std::string& names, Answer& answer)
{
    answer.byZoneName = true;
    for (std::size_t start = 0; start <= names.size();) {
        const std::size_t end = std::min(names.find(',', start), names.size());
        const std::string wanted = trimmed(names.substr(start, end - start));
        start = end + 1;
        std::vector<std::string> found;
        for (const KelZoneCategory category : allCategories) {
            std::vector<int> ids;
            base.getZoneIds(category, ids);
            for (const int zone : ids) {
                std::string name;
                base.getZoneStringInfo(zone, KEL_ZONE_STRING_0, name);
                if (name != wanted || wanted.empty())
                    continue;
                answer.zones.push_back(zone);
                found.push_back(zoneText(base, zone));
            }
        }
        answer.entries.emplace_back(wanted, found);
    }
    answer.isFound = !answer.zones.empty();
}

Answer answerOf(const Options& options, const KelProvider& reader)
{
    Answer answer;
    const KelLocationModel& locations = *reader.getLocationModel();
    std::vector<int> parts;
    locations.getParts(parts);
    if (parts.empty()) {
        findByName(reader, options.location, answer);
        return answer;
    }
    answer.isFound = locations.resolveLocation(options.location, 0, options.map, answer.cellZones, answer.sides);
    locations.explainLocation(options.location, answer.entries);
    return answer;
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
        terminal.print("{}\n", printable(zoneText(base, zone)));
    for (const int side : answer.sides)
        terminal.print("{}\n", printable(sideText(base, side)));
    for (const int zone : answer.zones)
        terminal.print("{}\n", printable(zoneText(base, zone)));
}

Json jsonAnswer(const Options& options, const Answer& answer)
{
    Json entries = Json::array();
    for (const auto& [entry, regions] : answer.entries)
        entries.push_back({{"entry", entry}, {"names", regions}});
    return {{"location", options.location},
            {"map", options.map},
            {"hasLocations", !answer.byZoneName},
            {"cellZones", answer.cellZones},
            {"faceZoneSides", answer.sides},
            {"zones", answer.zones},
            {"entries", entries}};
}

void runLocate(const Options& options, Session& session)
{
    Model model(options.file, options.format, options.mesh);
    model.openAll();
    const Answer answer = answerOf(options, model.reader());
    model.expectNoErrors();
    if (options.json)
        session.terminal.write(documentText(jsonAnswer(options, answer)));
    else
        printAnswer(session.terminal, model.reader(), options, answer);
    if (answer.isFound)
        return;
    session.exitCode = EXIT_NO;
    if (!options.json)
        session.terminal.complain(aboutFile(
            options.file, answer.byZoneName ? "has no locations, and no zone is called '" + options.location + "'"
                                            : "no zones lie behind '" + options.location + "'"));
}

} // namespace

void addLocateCommand(CLI::App& tool, Session& session)
{
    CLI::App* command =
        addCommand(tool, "locate", "Finds the zones behind a location",
                   {"kel locate cube.case.kel z-max", "kel locate --explain cube.case.kel 'box/x-*, y-min'",
                    "kel locate --json \"box:2x2x2\" box"});
    auto options = std::make_shared<Options>();
    command->add_option("FILE", options->file, "Model with the locations")->required();
    command
        ->add_option("LOCATION", options->location,
                     "Names of regions, with commas between them; of zones, in a model without locations")
        ->required();
    command->add_flag("--explain", options->explain, "Show which regions each entry names");
    command->add_option("--map", options->map, "Number of the mesh map; 0 unless given");
    addMeshOptions(*command, options->mesh);
    addInputOptions(*command, options->format);
    addJsonOption(*command, options->json);
    command->callback([options, &session] { runLocate(*options, session); });
}

} // namespace meridyn::tool
