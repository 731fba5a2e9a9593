// Any bytes as the XML text of a tree: what reads at all is written and read back unchanged.
#include "arbor/TObject.h"

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using arbor::TObject;
    const std::string text(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<TObject> first(TObject::fromXMLString(text));
    if (first == nullptr)
        return 0;
    const std::string written = TObject::toXMLString(first.get());
    const std::unique_ptr<TObject> second(TObject::fromXMLString(written));
    if (second == nullptr || TObject::toXMLString(second.get()) != written)
        std::abort();
    return 0;
}
