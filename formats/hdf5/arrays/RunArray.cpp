#include "RunArray.h"

#include "formats/hdf5/file/Attributes.h"
#include "formats/hdf5/file/FormatError.h"
#include "formats/hdf5/file/Hdf5File.h"

#include <algorithm>
#include <limits>

namespace meridyn::hdf5 {

namespace {

constexpr std::size_t mostRuns = 16384;        // kept in memory while writing
constexpr std::uint64_t shortRun = 1024;       // rows; shorter ones go to the array when there are too many
constexpr std::uint64_t blockRows = 32 * 1024; // looked at in one piece

} // namespace

RunArrayWriter::RunArrayWriter(Hdf5File& file, hid_t group, std::string name, Stored type, std::uint64_t rows,
                               int missing, int compression)
    : _file(file),
      _group(group),
      _name(std::move(name)),
      _shape{type, rows, 1},
      _missing(missing),
      _compression(compression)
{}

RunArrayWriter::~RunArrayWriter() = default;

ArrayWriter& RunArrayWriter::array()
{
    if (!_array)
        _array = ArrayWriter::create(_file, _group, "", _shape, _compression);
    return *_array;
}

void RunArrayWriter::split(std::uint64_t row)
{
    auto next = _runs.upper_bound(row);
    if (next == _runs.begin())
        return;
    const auto before = std::prev(next);
    if (before->first == row || before->second.end <= row)
        return;
    _runs.emplace_hint(next, row, before->second);
    before->second.end = row;
}

void RunArrayWriter::assign(std::uint64_t begin, std::uint64_t end, std::optional<int> value)
{
    if (begin >= end)
        return;
    split(begin);
    split(end);
    auto next = _runs.erase(_runs.lower_bound(begin), _runs.lower_bound(end));
    if (next != _runs.begin()) {
        const auto before = std::prev(next);
        if (before->second.end == begin && before->second.value == value) {
            begin = before->first;
            next = _runs.erase(before);
        }
    }
    if (next != _runs.end() && next->first == end && next->second.value == value) {
        end = next->second.end;
        next = _runs.erase(next);
    }
    _runs.emplace_hint(next, begin, Run{end, value});
    if (_runs.size() > mostRuns)
        storeShortRuns();
}

void RunArrayWriter::setUniform(std::uint64_t row, std::uint64_t count, int value)
{
    assign(row, row + count, value);
    _coverage.add(row, row + count);
}

template <class T>
void RunArrayWriter::set(std::uint64_t row, std::uint64_t count, const T* values)
{
    if (count == 0)
        return;
    if (std::all_of(values, values + count, [values](T value) { return value == *values; })) {
        setUniform(row, count, static_cast<int>(*values));
        return;
    }
    array().write(row, count, sourceOf(values, _shape.type));
    assign(row, row + count, std::nullopt);
    _coverage.add(row, row + count);
}

void RunArrayWriter::storeRun(std::uint64_t begin, std::uint64_t end, int value)
{
    const std::vector<int> values(std::min(blockRows, end - begin), value);
    for (; begin < end; begin += values.size())
        array().write(begin, std::min<std::uint64_t>(values.size(), end - begin), sourceOf(values.data(), _shape.type));
}

void RunArrayWriter::storeShortRuns()
{
    const Runs runs = std::exchange(_runs, {});
    for (const auto& [begin, run] : runs) {
        const bool toArray = run.value && run.end - begin < shortRun;
        if (toArray)
            storeRun(begin, run.end, *run.value);
        const std::optional<int> value = toArray ? std::nullopt : run.value;
        if (!_runs.empty() && _runs.rbegin()->second.end == begin && _runs.rbegin()->second.value == value)
            _runs.rbegin()->second.end = run.end;
        else
            _runs.emplace_hint(_runs.end(), begin, Run{run.end, value});
    }
}

std::optional<int> RunArrayWriter::uniformValue(std::uint64_t row, std::uint64_t count) const
{
    const auto next = _runs.upper_bound(row);
    if (next == _runs.begin())
        return std::nullopt;
    const auto& [begin, run] = *std::prev(next);
    return run.end >= row + count && row >= begin ? run.value : std::nullopt;
}

void RunArrayWriter::read(std::uint64_t row, std::uint64_t count, int* values)
{
    std::fill(values, values + count, _missing);
    const std::uint64_t end = row + count;
    auto next = _runs.upper_bound(row);
    if (next != _runs.begin())
        --next;
    for (; next != _runs.end() && next->first < end; ++next) {
        const std::uint64_t from = std::max(row, next->first);
        const std::uint64_t to = std::min(end, next->second.end);
        if (from >= to)
            continue;
        int* const part = values + (from - row);
        if (next->second.value)
            std::fill(part, part + (to - from), *next->second.value);
        else
            array().read(from, to - from, targetOf(part, _shape.type));
    }
}

std::optional<int> RunArrayWriter::commonValue(std::uint64_t begin, std::uint64_t end)
{
    if (begin >= end || !_coverage.covers(begin, end))
        return std::nullopt;
    if (const auto value = uniformValue(begin, end - begin))
        return value;
    std::optional<int> common;
    std::vector<int> values(std::min(blockRows, end - begin));
    for (; begin < end; begin += values.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(values.size(), end - begin);
        read(begin, n, values.data());
        if (!common)
            common = values.front();
        if (std::any_of(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(n),
                        [&common](int value) { return value != *common; }))
            return std::nullopt;
    }
    return common;
}

void RunArrayWriter::finish(const std::vector<Coverage::Interval>& zones)
{
    if (_coverage.isEmpty())
        return;
    if (const auto value = uniformValue(0, _shape.rows)) {
        writeNumber(_group, _name, *value);
        return;
    }
    writeRunTable(zones);
    const auto gaps = _coverage.gaps(0, _shape.rows);
    if (!gaps.empty()) {
        std::vector<std::uint64_t> given;
        for (const auto& [begin, end] : _coverage.intervals())
            given.insert(given.end(), {begin, end - begin});
        writeArray(_file, _group, _name + "_given", given, 2);
        for (const auto& [begin, end] : gaps)
            storeRun(begin, end, _missing);
    }
    for (const auto& [begin, run] : _runs)
        if (run.value)
            storeRun(begin, run.end, *run.value);
    array().finish();
    array().link(_group, _name);
}

void RunArrayWriter::writeRunTable(const std::vector<Coverage::Interval>& zones)
{
    std::vector<std::int64_t> table;
    for (const auto& [begin, end] : zones) {
        const auto value = commonValue(begin, end);
        if (!value)
            continue;
        const auto first = static_cast<std::int64_t>(begin);
        if (!table.empty() && table[table.size() - 3] + table[table.size() - 2] == first && table.back() == *value)
            table[table.size() - 2] += static_cast<std::int64_t>(end - begin);
        else
            table.insert(table.end(), {first, static_cast<std::int64_t>(end - begin), *value});
    }
    if (!table.empty())
        writeArray(_file, _group, _name + "_runs", table, 3);
}

std::unique_ptr<RunArrayReader> RunArrayReader::open(Hdf5File& file, hid_t group, const std::string& name,
                                                     std::uint64_t rows)
{
    auto reader = std::make_unique<RunArrayReader>();
    reader->_rows = rows;
    if (const auto value = readNumber(group, name)) {
        reader->_runs[0] = {rows, static_cast<int>(*value)};
        reader->_coverage.add(0, rows);
        return reader;
    }
    if (!hasLink(group, name))
        return nullptr;
    reader->_array = ArrayReader::open(file, group, name);
    if (reader->_array->shape().valueCount() != rows)
        throw FormatError(arrayLabel(group, name) + " has " + std::to_string(reader->_array->shape().valueCount()) +
                          " values, " + std::to_string(rows) + " expected");
    const auto inside = [rows](std::uint64_t first, std::uint64_t count) {
        return first <= rows && count <= rows - first;
    };
    if (hasLink(group, name + "_given")) {
        const auto table = ArrayReader::open(file, group, name + "_given")->readAll<std::uint64_t>();
        for (std::size_t i = 0; i + 1 < table.size(); i += 2)
            if (inside(table[i], table[i + 1]))
                reader->_coverage.add(table[i], table[i] + table[i + 1]);
    } else {
        reader->_coverage.add(0, rows);
    }
    if (hasLink(group, name + "_runs")) {
        const auto table = ArrayReader::open(file, group, name + "_runs")->readAll<std::uint64_t>();
        for (std::size_t i = 0; i + 2 < table.size(); i += 3)
            if (inside(table[i], table[i + 1]))
                reader->_runs[table[i]] = {table[i] + table[i + 1], static_cast<int>(table[i + 2])};
    }
    return reader;
}

std::optional<int> RunArrayReader::uniformValue(std::uint64_t row, std::uint64_t count) const
{
    const auto next = _runs.upper_bound(row);
    if (next == _runs.begin() || count == 0)
        return std::nullopt;
    const auto& run = std::prev(next)->second;
    return run.end >= row + count ? std::optional<int>(run.value) : std::nullopt;
}

void RunArrayReader::read(std::uint64_t row, std::uint64_t count, const KelBuffer& values) const
{
    if (_array)
        _array->read(row, count, values);
    else
        values.visit(
            [&]<class T>(T* first) { std::fill(first, first + count, static_cast<T>(_runs.begin()->second.value)); });
}

#define KEL_INSTANTIATE(T) template void RunArrayWriter::set<T>(std::uint64_t, std::uint64_t, const T*);
KEL_INSTANTIATE(short)
KEL_INSTANTIATE(int)
#undef KEL_INSTANTIATE

} // namespace meridyn::hdf5
