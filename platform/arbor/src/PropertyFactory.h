#pragma once

#include "arbor/TPropertyType.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace arbor {

/// The kinds of value: an element from Bool to Float, as a scalar, or as a vector when vectorBit is set.
enum class PropertyKind : int {
    Bool,
    Int,
    Double,
    String,
    Float,
    Unknown = -1
};

inline constexpr int vectorBit = 8;

/// What the library itself needs to know about kinds.
class PropertyFactory {
public:
    static PropertyKind element(PropertyKind kind);
    static bool isVector(PropertyKind kind);

    static const std::string& className(PropertyKind kind);
    static PropertyKind kindOfClass(const std::string& className);

    /// The word for a kind in XML: "bool", "int[]" and so on.
    static const std::string& xmlType(PropertyKind kind);
    static PropertyKind kindOfXmlType(std::string_view type);

    static PropertyKind kindOf(const TProperty* property) { return property->_kind; }

    /// The value of a property that is a vector of strings; null for every other kind.
    static const std::vector<std::string>* textList(const TProperty& property);
    static std::vector<std::string>* textList(TProperty& property);

    /// A property without owner, with the empty value.
    static std::unique_ptr<TProperty> make(PropertyKind kind, const std::string& name);

    /// Hands a property to its owner, which may be null; deletes it and gives null when the owner has one of its name.
    static TProperty* handOver(std::unique_ptr<TProperty> property, TObject* owner);
};

} // namespace arbor
