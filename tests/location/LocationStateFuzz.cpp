// Any text given to reset: refused without effect, or accepted as the state that it is.
#include "KelLocationModel.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

/// The text with a last line that fits, or else the checksum would stop nearly every input at the door.
std::string sealed(const std::string& text)
{
    const std::string records = text.substr(0, text.rfind('\n') + 1);
    unsigned long long hash = 14695981039346656037ULL;
    for (const char byte : records)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211ULL;
    char line[32];
    std::snprintf(line, sizeof line, "end %016llX", hash);
    return records + line;
}

void tryState(const std::string& state)
{
    meridyn::KelLocationModel model;
    int part = 0;
    model.createPart(3, "before", part);
    const std::string before = model.state();
    const bool accepted = model.reset(state);
    if (model.state() != (accepted ? state : before))
        std::abort();
    std::vector<int> cells;
    std::vector<int> sides;
    model.resolveLocation("*", 0, 0, cells, sides);
    model.createPart(3, "after", part);
    model.clearTopology();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    tryState(text);
    tryState(sealed(text));
    return 0;
}
