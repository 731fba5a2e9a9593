// Any text as a location, on a model with names of every kind; as a name, the text must find its way back.
#include "KelLocationModel.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace {

using meridyn::KelLocationModel;

void fill(KelLocationModel& model)
{
    int part = 0;
    int body = 0;
    int face = 0;
    int id = 0;
    for (const char* partName : {"fluid", "a/b", "\xC3\xBC"}) {
        model.createPart(3, partName, part);
        for (const char* name : {"core", "ring", "a,b", "\"", "* ?", "aaaaaaaaaaaaaaaaaaaaaaaaab"}) {
            model.createBody(part, name, body);
            model.setBodyZones(body, 0, {body});
            model.createFace(part, name, face);
            model.createFaceUse(body, face, 1, id);
            model.setFaceUseZoneSides(id, 0, {id});
            model.createComposite(part, name, id);
            model.setCompositeComponents(id, {body}, {face}, {}, {});
        }
    }
}

std::string quoted(const std::string& name)
{
    std::string text = "\"";
    for (const char byte : name)
        text.append(byte == '"' ? 2 : 1, byte);
    return text + '"';
}

void tryName(KelLocationModel& model, const std::string& name)
{
    int part = 0;
    int body = 0;
    std::vector<int> cells;
    std::vector<int> sides;
    model.createPart(3, "one of its own", part);
    model.createBody(part, name, body);
    model.setBodyZones(body, 0, {4711});
    const bool found = model.resolveLocation("one of its own/" + quoted(name), 0, 0, cells, sides);
    if (found == name.empty() || (found && cells != std::vector<int>{4711}))
        std::abort();
    model.deletePart(part);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static KelLocationModel model;
    static const bool filled = (fill(model), true);
    const std::string text(reinterpret_cast<const char*>(data), filled && size < 4096 ? size : 0);
    std::vector<int> cells;
    std::vector<int> sides;
    const bool found = model.resolveLocation(text, 0, 0, cells, sides);
    if (found != !(cells.empty() && sides.empty()))
        std::abort();
    std::vector<std::pair<std::string, std::vector<std::string>>> entries;
    model.explainLocation(text, entries);
    tryName(model, text);
    return 0;
}
