#include "solution/MappingDocument.h"

#include <cstddef>
#include <cstdint>
#include <xercesc/util/PlatformUtils.hpp>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // The platform is counted: held here, it is not set up anew for every input.
    static const bool hasPlatform = (xercesc::XMLPlatformUtils::Initialize(), true);
    if (hasPlatform)
        meridyn::readMappingText(std::string(reinterpret_cast<const char*>(data), size));
    return 0;
}
