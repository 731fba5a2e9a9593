#pragma once

#include "KelConsumer.h"

namespace meridyn {

/// The one place where a transfer reaches what KelConsumer keeps for formats, as BaseAccess does for KelBase.
class ConsumerAccess : public KelConsumer {
public:
    static KelDataPrecisionType precision(const KelConsumer& writer)
    {
        return (writer.*&ConsumerAccess::getDataPrecision)();
    }

    /// Whether new variables get the attributes that a mapping file gives them.
    static bool inheritsAttributes(const KelConsumer& writer)
    {
        constexpr bool (KelConsumer::*get)() const = &ConsumerAccess::inheritVariableAttributes;
        return (writer.*get)();
    }
};

} // namespace meridyn
