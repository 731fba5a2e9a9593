#include "RunLengthArray.h"

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

RunLengthArrayWriter::RunLengthArrayWriter(Hdf5File& file, hid_t group, std::string name, Stored type,
                                           std::uint64_t rows, int missing, int compression)
    : _file(file),
      _group(group),
      _name(std::move(name)),
      _shape{type, rows, 1},
      _missing(missing),
      _compression(compression)
{}

RunLengthArrayWriter::~RunLengthArrayWriter() = default;

ArrayWriter& RunLengthArrayWriter::array()
{
    if (!_array)
        _array = ArrayWriter::create(_file, _group, "", _shape, _compression);
    return *_array;
}

// Afterwards no run crosses `row`: one that did has become two with the same value.
void RunLengthArrayWriter::split(std::uint64_t row)
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

// Invariant of _runs: they ascend, do not overlap, and two that touch have different values. So a new run is cut out of
// what lies there, whole runs in between go, and the neighbours are swallowed where they have the same value.
void RunLengthArrayWriter::assign(std::uint64_t begin, std::uint64_t end, std::optional<int> value)
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

void RunLengthArrayWriter::setUniform(std::uint64_t row, std::uint64_t count, int value)
{
    assign(row, row + count, value);
    _coverage.add(row, row + count);
}

template <class T>
void RunLengthArrayWriter::set(std::uint64_t row, std::uint64_t count, const T* values)
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

void RunLengthArrayWriter::storeRun(std::uint64_t begin, std::uint64_t end, int value)
{
    const std::vector<int> values(std::min(blockRows, end - begin), value);
    for (; begin < end; begin += values.size())
        array().write(begin, std::min<std::uint64_t>(values.size(), end - begin), sourceOf(values.data(), _shape.type));
}

// Bounds the memory: when values change often, only long runs stay in memory, and short ones become values of the
// array. Runs that touch and are now both in the array become one, so the invariant of assign() holds again.
void RunLengthArrayWriter::storeShortRuns()
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

std::optional<int> RunLengthArrayWriter::uniformValue(std::uint64_t row, std::uint64_t count) const
{
    const auto next = _runs.upper_bound(row);
    if (next == _runs.begin())
        return std::nullopt;
    const auto& [begin, run] = *std::prev(next);
    return run.end >= row + count && row >= begin ? run.value : std::nullopt;
}

// Pieces of rows come from the run that they lie in, or from the array; between runs nothing was written.
void RunLengthArrayWriter::read(std::uint64_t row, std::uint64_t count, int* values)
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

// What a zone was given may have become many runs or values of the array, all of them equal: the runs alone do not
// tell, so the values are looked at.
std::optional<int> RunLengthArrayWriter::commonValue(std::uint64_t begin, std::uint64_t end)
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

// One number when all rows have one value. Else the array must hold all values in the end, also those that so far are
// runs in memory, and those of rows that nobody gave: what is not written in a file without compression is whatever
// the disk had there.
void RunLengthArrayWriter::finish(const std::vector<Coverage::Interval>& zones)
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

void RunLengthArrayWriter::writeRunTable(const std::vector<Coverage::Interval>& zones)
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

std::unique_ptr<RunLengthArrayReader> RunLengthArrayReader::open(Hdf5File& file, hid_t group, const std::string& name,
                                                                 std::uint64_t rows)
{
    auto reader = std::make_unique<RunLengthArrayReader>();
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
    reader->readGiven(file, group, name);
    reader->readRuns(file, group, name);
    return reader;
}

// Stretches of rows, ascending and apart from each other, as they were written; anything else is damage.
void RunLengthArrayReader::readGiven(Hdf5File& file, hid_t group, const std::string& name)
{
    if (!hasLink(group, name + "_given")) {
        _coverage.add(0, _rows);
        return;
    }
    _coverage = readCoverage(file, group, name + "_given", _rows);
}

void RunLengthArrayReader::readRuns(Hdf5File& file, hid_t group, const std::string& name)
{
    if (!hasLink(group, name + "_runs"))
        return;
    const auto array = ArrayReader::open(file, group, name + "_runs");
    const auto table = array->readAll<std::int64_t>();
    for (std::size_t i = 0; i + 2 < table.size(); i += 3) { // in any order: those of zones, which may overlap
        const auto first = static_cast<std::uint64_t>(table[i]);
        const auto count = static_cast<std::uint64_t>(table[i + 1]);
        if (first > _rows || count == 0 || count > _rows - first)
            throw FormatError(array->label() + " has " + std::to_string(table[i + 1]) + " rows from row " +
                              std::to_string(table[i]) + " on, stretches of " + std::to_string(_rows) +
                              " rows expected");
        _runs[first] = {first + count, static_cast<int>(table[i + 2])};
    }
}

std::optional<int> RunLengthArrayReader::uniformValue(std::uint64_t row, std::uint64_t count) const
{
    const auto next = _runs.upper_bound(row);
    if (next == _runs.begin() || count == 0)
        return std::nullopt;
    const auto& [begin, run] = *std::prev(next);
    if (run.end < row + count)
        return std::nullopt;
    if (_array && !run.isChecked)
        checkRun(begin, run);
    return run.value;
}

// The table of runs only saves looking at the values, so they must be what it says. Looked at once for each run that
// somebody asks for.
void RunLengthArrayReader::checkRun(std::uint64_t begin, const Run& run) const
{
    std::vector<int> values(std::min(blockRows, run.end - begin));
    for (std::uint64_t row = begin; row < run.end; row += values.size()) {
        const std::uint64_t n = std::min<std::uint64_t>(values.size(), run.end - row);
        read(row, n, values.data());
        const auto end = values.begin() + static_cast<std::ptrdiff_t>(n);
        const auto odd = std::find_if(values.begin(), end, [&run](int value) { return value != run.value; });
        if (odd != end)
            throw FormatError(_array->label() + " holds " + std::to_string(*odd) + " in row " +
                              std::to_string(row + static_cast<std::uint64_t>(odd - values.begin())) + ", but " +
                              _array->label() + "_runs says " + std::to_string(run.value));
    }
    run.isChecked = true;
}

void RunLengthArrayReader::read(std::uint64_t row, std::uint64_t count, const KelBuffer& values) const
{
    if (_array)
        _array->read(row, count, values);
    else
        values.visit(
            [&]<class T>(T* first) { std::fill(first, first + count, static_cast<T>(_runs.begin()->second.value)); });
}

#define KEL_INSTANTIATE(T) template void RunLengthArrayWriter::set<T>(std::uint64_t, std::uint64_t, const T*);
KEL_INSTANTIATE(short)
KEL_INSTANTIATE(int)
#undef KEL_INSTANTIATE

} // namespace meridyn::hdf5
