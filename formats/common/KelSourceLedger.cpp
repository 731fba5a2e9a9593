#include "KelSourceLedger.h"

namespace meridyn {

std::string notReadName(KelNotRead reason)
{
    static const char* const names[] = {"never opened",   "not known to the reader", "no place in the frames",
                                        "cannot be read", "another one was read",    "not read as it stands"};
    const int number = static_cast<int>(reason);
    return number >= 0 && number < static_cast<int>(sizeof(names) / sizeof(*names)) ? names[number] : "";
}

KelSourceLedger::~KelSourceLedger() = default;

KelDerived KelSourceLedger::derived() const
{
    return {};
}

KelPlainDataType KelSourceLedger::storedType(KelArray) const
{
    return static_cast<KelPlainDataType>(-1);
}

std::optional<std::vector<KelMeshKey>> KelSourceLedger::meshesOf(KelDataClass) const
{
    return std::nullopt;
}

std::optional<std::vector<KelMeshKey>> KelSourceLedger::meshesWithTracks(short) const
{
    return std::nullopt;
}

std::optional<std::string> KelSourceLedger::locationState(KelDataClass) const
{
    return std::nullopt;
}

bool KelSourceLedger::hasDataAtNoLevel() const
{
    return false;
}

void KelSourceLedger::chooseNoLevel(bool)
{}

std::optional<std::vector<KelIdRange>> KelSourceLedger::elementsWithValues(KelArray, unsigned64, unsigned64) const
{
    return std::nullopt;
}

} // namespace meridyn
