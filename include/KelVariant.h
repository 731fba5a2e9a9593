#pragma once

#include "KelExport.h"

#include <memory>
#include <string>
#include <vector>

namespace meridyn {

/// A read-only view of one entry of a settings tree: a value or a node. KelProvider::getSettings() hands it out.
///
/// It does not own the entry and must not outlive it. An invalid variant, one without entry, gives zeros and empty
/// texts and lists. Nothing here throws but reading a number from an empty vector.
class KEL_API KelVariant {
public:
    /// An invalid variant.
    KelVariant();

    /// @param entry  an `arbor::TBase*` or a pointer to one of its classes; null makes an invalid variant
    explicit KelVariant(const void* entry);

    /// A view of the same entry.
    KelVariant(const KelVariant& other);

    /// Becomes a view of the other's entry.
    KelVariant& operator=(const KelVariant& other);

    ~KelVariant();

    /// Whether there is an entry.
    bool isValid() const;

    /// @name As a number
    /// Of a node the number of its content names (arbor::TObject::getContentNames). Of a scalar value its text, of a
    /// vector the text of its first element, read as the type: "true" and "false" are 1 and 0; otherwise the number
    /// that the text begins with, what follows it does not count, and a text that begins with none is 0. An int cuts
    /// "2.5" to 2, and stops at the ends of its range; a bool is whether that cut number differs from 0.
    ///
    /// @throws std::out_of_range "invalid vector subscript" for an empty vector
    /// @{
    int asInt() const;
    double asDouble() const;
    float asFloat() const;
    bool asBool() const;
    /// @}

    /// The text of a value, with a blank and the unit behind it when it has one; of a node its content names with a
    /// comma between them.
    std::string asString() const;

    /// asString
    operator std::string() const;

    /// asString() cut at every comma. Empty pieces and blanks stay, and the unit is part of the last piece; an empty
    /// text gives no piece.
    std::vector<std::string> asStringVector() const;

    /// The texts of the elements of a value, of a scalar its one text, without unit; of a node its content names.
    operator std::vector<std::string>() const;

    /// The unit of a value; empty for a node.
    std::string unit() const;

    /// @name Zones
    /// What a zone node stands for. Of a zone of the asked kind its own entry "cellZones/<name>", "faceZones/<name>" or
    /// "nodeZones/<name>"; of another zone the texts of its property "cellZones", "faceZones" or "nodeZones", which is
    /// a string or a vector. Empty for everything else.
    /// @{
    std::vector<std::string> cellZones() const;
    std::vector<std::string> faceZones() const;
    std::vector<std::string> nodeZones() const;
    /// @}

    /// What bounds a cell zone: the texts of its property "bounds". Empty for everything else.
    std::vector<std::string> bounds() const;

    /// Where the node lies. Of a cell zone its faceZones() and then its own entry; of a face zone its cellZones() and
    /// then its own entry; of a node zone its own entry; of a domain the texts of its property "location". Empty for
    /// everything else.
    std::vector<std::string> location() const;

private:
    struct Record;
    const void* entry() const;

    std::unique_ptr<Record> _record;
};

} // namespace meridyn
