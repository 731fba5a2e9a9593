#pragma once

#include "formats/hdf5/arrays/ListTable.h"
#include "KelArrays.h"
#include "KelTypes.h"

#include <optional>

namespace meridyn::hdf5 {

/// A set, or set data, being read; see MemberWriter for what is where.
class MemberReader {
public:
    /// @param group  that of the set
    MemberReader(Hdf5File& file, Handle group);

    /// That of a name in a group of sets or of set data.
    /// @return null when there is none, or no group
    static std::unique_ptr<MemberReader> find(Hdf5File& file, const Handle& group, const std::string& name);

    std::uint64_t members() const { return _members; }
    KelZoneCategory category() const; ///< of a set
    void blocks(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                std::vector<unsigned64>& maxIds) const; ///< of a set

    /// Names in the order in which they were written, of any part that has names.
    std::vector<std::string> names(KelPart part) const;

    /// @return null when there is none; there is none of texts
    std::unique_ptr<ArrayReader> array(KelPart part, const std::string& name) const;

    /// Where the values of each member lie among those of a variable-length variable; null when there is none.
    std::unique_ptr<ListTable> listTable(const std::string& name) const;

    std::optional<std::string> text(const std::string& name) const;

private:
    Handle groupOf(KelPart part) const;
    std::unique_ptr<ArrayReader> ofMembers(std::unique_ptr<ArrayReader> array) const; ///< unless it has others
    std::unique_ptr<ArrayReader> listArray(const std::string& name, const char* what) const;

    Hdf5File& _file;
    Handle _group;
    std::uint64_t _members = 0;
};

/// Type in which an array's values came: its attribute kel_type.
KelPlainDataType kelTypeOf(const ArrayReader& array);

} // namespace meridyn::hdf5
