#pragma once

#include "ArrayStore.h"
#include "KelTypes.h"

#include <optional>

namespace meridyn::hdf5 {

/// A set, or set data, being read; see MemberWriter for what is where.
class MemberReader {
public:
    /// @param group  that of the set
    MemberReader(Hdf5File& file, Handle group);

    std::uint64_t members() const { return _members; }
    KelZoneCategory category() const; ///< of a set
    void blocks(std::vector<unsigned64>& sizes, std::vector<unsigned64>& minIds,
                std::vector<unsigned64>& maxIds) const; ///< of a set

    /// Names in the order in which they were written; `kind` is one of the groups.
    std::vector<std::string> names(const char* kind) const;
    bool has(const char* kind, const std::string& name) const;

    /// @return null when there is none
    std::unique_ptr<ArrayReader> ids() const;
    std::unique_ptr<ArrayReader> variable(const std::string& name) const;
    std::unique_ptr<ArrayReader> lengths(const std::string& name) const;
    std::unique_ptr<ArrayReader> offsets(const std::string& name) const;
    std::unique_ptr<ArrayReader> listValues(const std::string& name) const;
    std::unique_ptr<ArrayReader> other(const std::string& name) const;
    std::optional<std::string> text(const std::string& name) const;

private:
    std::unique_ptr<ArrayReader> array(const char* kind, const std::string& name) const;
    std::unique_ptr<ArrayReader> listArray(const std::string& name, const char* part) const;

    Hdf5File& _file;
    Handle _group;
    std::uint64_t _members = 0;
};

/// Type in which an array's values came: its attribute kel_type.
KelPlainDataType plainTypeOf(const ArrayReader& array);

} // namespace meridyn::hdf5
