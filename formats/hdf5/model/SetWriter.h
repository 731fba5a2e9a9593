#pragma once

#include "formats/hdf5/arrays/CompleteArray.h"
#include "formats/hdf5/file/SpillFile.h"
#include "KelArrays.h"

#include <map>
#include <optional>

namespace meridyn::hdf5 {

/// What sets and set data have in common: variables, blocks of other data, texts, in groups of their own.
///
///     ids                          ids of the members
///     variables/<name>             one row per member, attribute kel_type (KelPlainDataType)
///     lists/<name>/lengths         number of values per member, attribute kel_type (type in which they came)
///     lists/<name>/offsets         where the values of each member start (members + 1 values)
///     lists/<name>/values          values of all members one after the other, attribute kel_type
///     other/<name>                 a block of values, attribute kel_type
///     texts/<name>                 a text, as bytes
class MemberWriter {
public:
    MemberWriter(Hdf5File& file, Handle group, int compression);
    virtual ~MemberWriter();

    virtual void startVariable(const std::string& name, std::uint64_t columns, KelPlainDataType type) = 0;
    virtual void startLists(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) = 0;
    void writeOther(const std::string& name, const KelValues& values);
    void writeString(const std::string& name, const std::string& text);

    /// @throws FormatError when something is incomplete
    virtual void finish();

protected:
    struct List {
        std::unique_ptr<CompleteArray> lengths;
        std::optional<KelPlainDataType> type;
        std::unique_ptr<ArrayWriter> offsets;
        std::unique_ptr<CompleteArray> values; // rows are values
    };

    hid_t subgroup(const char* name);
    CompleteArray& ids();
    std::unique_ptr<CompleteArray> makeValues(hid_t group, const std::string& name, KelPlainDataType type,
                                              std::uint64_t rows, std::uint64_t columns);
    std::unique_ptr<CompleteArray> makeVariable(const std::string& name, KelPlainDataType type, std::uint64_t columns);
    List makeList(const std::string& name, KelPlainDataType lengthType);
    void openValues(List& list, const std::string& name, KelPlainDataType type);

    Hdf5File& _file;
    Handle _group;
    int _compression;
    std::uint64_t _members = 0;
    std::map<std::string, Handle> _subgroups;
    std::unique_ptr<CompleteArray> _ids;
    std::map<std::string, std::unique_ptr<CompleteArray>> _variables;
    std::map<std::string, List> _lists;
};

/// A set: sets/<name> with the attributes kel_category and kel_members, the table "blocks" (size, smallest, largest id)
/// and what MemberWriter has. Everything goes by position, in any order.
class SetWriter final : public MemberWriter {
public:
    SetWriter(Hdf5File& file, hid_t scope, const std::string& name, KelZoneCategory category, int compression);

    void setBlocks(const std::vector<unsigned64>& sizes, const std::vector<unsigned64>& minIds,
                   const std::vector<unsigned64>& maxIds);
    void startVariable(const std::string& name, std::uint64_t columns, KelPlainDataType type) override;
    void startLengths(const std::string& name, KelPlainDataType type);
    void startLists(const std::string& name, KelPlainDataType type, KelPlainDataType) override;

    /// Ids, or what was started: its values or lengths.
    void keep(KelArray array, std::uint64_t first, std::uint64_t last, const KelValues& values);
    void setUniformLength(std::uint64_t first, std::uint64_t last, std::int64_t length);

private:
    void setValues(std::uint64_t first, std::uint64_t last, const KelValues& values);
    void setLengths(std::uint64_t first, std::uint64_t last, const KelValues& lengths);
    void setListValues(std::uint64_t first, std::uint64_t last, const KelValues& values);
    List& currentList();
    std::uint64_t offsetOf(List& list, std::uint64_t row);

    std::string _listName;
    CompleteArray* _variable = nullptr;
};

/// Set data: set_data/<name> of a phase with the attribute kel_members and what MemberWriter has. Values come in the
/// order of the members.
class SetDataWriter final : public MemberWriter {
public:
    SetDataWriter(Hdf5File& file, hid_t scope, const std::string& name, std::uint64_t members, int compression);

    void startVariable(const std::string& name, std::uint64_t columns, KelPlainDataType type) override;
    void startLists(const std::string& name, KelPlainDataType type, KelPlainDataType lengthType) override;
    void endLists();

    void addIds(const KelValues& values);
    void addValues(const KelValues& values);
    void addLists(const KelValues& values, const KelValues& lengths);

    void finish() override;

private:
    void spill(const KelValues& values);

    std::uint64_t _idCount = 0;
    CompleteArray* _variable = nullptr;
    std::uint64_t _variableRows = 0;
    std::string _listName; // of the open list
    bool _hasList = false;
    std::uint64_t _listRows = 0;
    std::uint64_t _listValues = 0;
    Stored _listType = Stored::F64;
    KelPlainDataType _listPlainType = KEL_PLAIN_DOUBLE;
    std::unique_ptr<SpillFile> _spill;
};

} // namespace meridyn::hdf5
