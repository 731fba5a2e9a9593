#pragma once

#include "FoamError.h"
#include "KelBase.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"

#include <exception>
#include <string>

namespace meridyn::polymesh {

/// Runs a step of the reader; whatever goes wrong in it becomes a KelError, and the answer false.
template <class Act>
bool guarded(const KelBase& reader, const char* operation, const Act& act)
{
    try {
        return act();
    } catch (const FoamError& error) {
        reader.getMessageRegistrar()->registerMessage(KelError(error.what(), operation));
    } catch (const std::exception& error) { // no memory, or a folder that vanished
        reader.getMessageRegistrar()->registerMessage(
            KelError(std::string("the case cannot be read: ") + error.what(), operation));
    }
    return false;
}

} // namespace meridyn::polymesh
