// Builds a small topology, ties it to zones, and asks where things live: by name, by wildcard, by composite.
#include "KelLocationModel.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

using meridyn::KelLocationModel;

namespace {

/// A pump: a turning and a standing body that meet at a face, each bounded by a wall. Zones belong to mesh map 0.
void build(KelLocationModel& model)
{
    int pump = 0;
    model.createPart(3, "pump", pump);

    int rotor = 0;
    int housing = 0;
    model.createBody(pump, "rotor", rotor);
    model.createBody(pump, "housing", housing);
    model.setBodyZones(rotor, 0, {1});
    model.setBodyZones(housing, 0, {2, 3});

    int blades = 0;
    int shell = 0;
    int gap = 0;
    model.createFace(pump, "blade-wall", blades);
    model.createFace(pump, "shell-wall", shell);
    model.createFace(pump, "gap", gap);

    // One side of a face, as one body sees it: + face id for side 0, - face id for side 1.
    int use = 0;
    model.createFaceUse(rotor, blades, 0, use);
    model.setFaceUseZoneSides(use, 0, {10});
    model.createFaceUse(housing, shell, 0, use);
    model.setFaceUseZoneSides(use, 0, {11});
    model.createFaceUse(rotor, gap, 0, use);
    model.setFaceUseZoneSides(use, 0, {12}); // the near side of zone 12
    model.createFaceUse(housing, gap, 1, use);
    model.setFaceUseZoneSides(use, 0, {-12}); // its far side

    int walls = 0;
    model.createComposite(pump, "walls", walls);
    model.setCompositeComponents(walls, {}, {blades, shell}, {}, {});
}

void print(const char* title, const std::vector<int>& values)
{
    std::printf("  %s", title);
    for (const int value : values)
        std::printf(" %d", value);
    std::printf("\n");
}

void ask(const KelLocationModel& model, const std::string& location)
{
    std::printf("%s\n", location.c_str());
    std::vector<int> cellZones;
    std::vector<int> faceZoneSides;
    if (!model.resolveLocation(location, 0, 0, cellZones, faceZoneSides))
        std::printf("  covers nothing\n");
    if (!cellZones.empty())
        print("cell zones", cellZones);
    if (!faceZoneSides.empty())
        print("face zone sides", faceZoneSides);

    std::vector<std::pair<std::string, std::vector<std::string>>> entries;
    model.explainLocation(location, entries);
    for (const auto& [entry, names] : entries) {
        std::printf("  '%s' names", entry.c_str());
        for (const std::string& name : names)
            std::printf(" [%s]", name.c_str());
        std::printf("%s\n", names.empty() ? " nothing" : "");
    }
}

} // namespace

int main()
{
    KelLocationModel model;
    build(model);
    ask(model, "rotor");
    ask(model, "walls");
    ask(model, "pump/*-wall, gap");
    ask(model, "impeller");

    // A writer stores the model as a text, a reader rebuilds it.
    KelLocationModel copy;
    const bool same = copy.reset(model.state()) && copy.state() == model.state();
    std::printf("%s\n", same ? "the copy is equal" : "the copy differs");
    return same ? 0 : 1;
}
