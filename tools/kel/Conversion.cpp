#include "Conversion.h"

#include "KelFileConsumer.h"
#include "KelFormatRegistry.h"
#include "KelTransfer.h"
#include "KelUtilities.h"
#include "Model.h"
#include "Progress.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <set>
#include <system_error>

namespace meridyn::tool {

// ---- time levels --------------------------------------------------------------------------------------------------

static int levelOf(const std::string& text, const std::string& whole)
{
    int level = 0;
    const char* end = text.data() + text.size();
    const auto [at, error] = std::from_chars(text.data(), end, level);
    if (text.empty() || error != std::errc() || at != end || level < 0)
        throw Failure("'" + whole + "' is no list of time levels; an example is 1,5-8,last");
    return level;
}

std::vector<int> chosenLevels(const std::string& text, const std::vector<int>& known)
{
    std::set<int> levels;
    std::vector<std::string> entries;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(',', start), text.size());
        entries.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    for (const std::string& entry : entries) {
        const std::size_t dash = entry.find('-');
        if (entry == "last") {
            if (!known.empty())
                levels.insert(*std::max_element(known.begin(), known.end()));
        } else if (dash == std::string::npos) {
            levels.insert(levelOf(entry, text));
        } else {
            const int first = levelOf(entry.substr(0, dash), text), last = levelOf(entry.substr(dash + 1), text);
            for (const int level : known)
                if (level >= first && level <= last)
                    levels.insert(level);
        }
    }
    return {levels.begin(), levels.end()};
}

// ---- conversion ---------------------------------------------------------------------------------------------------

namespace {

/// One conversion: both ends and how far it is.
class Conversion {
public:
    Conversion(const ConversionOptions& options, Terminal& terminal);
    ConversionResult run();

private:
    void makeWriter();
    void nameTarget(KelDataClass dataClass, const std::string& file);
    void copy(KelDataClass dataClass);
    void chooseLevels();
    void verify();

    const ConversionOptions& _options;
    Terminal& _terminal;
    Model _source;
    KelFormat _format;
    KelFormatFiles _files;
    std::unique_ptr<KelFileConsumer> _writer;
    std::unique_ptr<KelTransfer> _transfer;
    ConversionResult _result;
};

KelFormat targetFormat(const ConversionOptions& options)
{
    const KelFormatRegistry& registry = KelFormatRegistry::instance();
    const KelFormat* format =
        options.targetFormat.empty() ? registry.forWriting(options.target) : registry.find(options.targetFormat);
    if (format != nullptr && format->makeWriter)
        return *format;
    if (format != nullptr)
        throw Failure("the format '" + format->name + "' cannot be written");
    throw Failure(options.targetFormat.empty()
                      ? options.target + ": no format writes this suffix; name one with --to (see 'kel formats')"
                      : "no format is called '" + options.targetFormat + "'; see 'kel formats'");
}

Conversion::Conversion(const ConversionOptions& options, Terminal& terminal)
    : _options(options),
      _terminal(terminal),
      _source(options.source, options.sourceFormat),
      _format(targetFormat(options))
{}

void Conversion::nameTarget(KelDataClass dataClass, const std::string& file)
{
    const bool isLeftOut = dataClass == KEL_CASE ? _options.dataOnly : _options.caseOnly;
    if (isLeftOut || !_source.has(dataClass))
        return;
    if (file.empty())
        throw Failure(aboutFile(_options.target, "the format '" + _format.name + "' has no file for the " +
                                                     (dataClass == KEL_CASE ? "case" : "data")));
    std::error_code error;
    for (const KelDataClass read : {KEL_CASE, KEL_DATA})
        if (_source.has(read) && std::filesystem::equivalent(_source.file(read), file, error))
            throw Failure(aboutFile(file, "is read and cannot be written at the same time"));
    if (!_options.force && std::filesystem::exists(file, error))
        throw Failure(aboutFile(file, "exists already; --force replaces it"));
    _writer->setFile(file, dataClass);
    _result.files.push_back(file);
}

void Conversion::makeWriter()
{
    _writer = _format.makeWriter();
    if (!_writer)
        throw Failure("the format '" + _format.name + "' cannot be written");
    _files = _format.files ? _format.files(_options.target, true) : KelFormatFiles{_options.target, ""};
    nameTarget(KEL_CASE, _files.caseFile);
    nameTarget(KEL_DATA, _files.dataFile);
    _writer->setApplicationName("kel");
    _writer->setCompression(_options.compression);
    _writer->setDataPrecision(_options.precision);
    _result.format = _format.name;
}

void Conversion::copy(KelDataClass dataClass)
{
    Progress progress(_terminal);
    bool isFirst = true;
    unsigned64 bytes = 0;
    _transfer->setProgress([&](const KelTransferProgress& state) {
        if (isFirst && _terminal.showsProgress())
            progress.setTotal(estimateBytes(_source.reader(), dataClass, _source.reader().getTimeLevels().size()));
        isFirst = false;
        bytes = state.bytes;
        return progress(state);
    });
    const bool isDone = dataClass == KEL_CASE ? _transfer->copyCase() : _transfer->copyData();
    _transfer->setProgress(nullptr);
    progress.finish();
    _result.bytes += bytes;
    if (isDone)
        return;
    if (_transfer->wasCancelled())
        throw Interrupted(aboutFile(_options.target, "interrupted; nothing unfinished is left behind"));
    const bool isWriters = _transfer->problemKind() == KelTransferProblem::TargetUnwritable;
    throw Failure(aboutFile(isWriters ? _options.target : _options.source, _transfer->problem()));
}

/// Says which levels are copied; the data has to be looked at for what there is.
void Conversion::chooseLevels()
{
    if (_options.timeLevels.empty())
        return;
    _source.open(KEL_DATA);
    const std::vector<int> known = _source.reader().getTimeLevels();
    _source.close();
    const std::vector<int> levels = chosenLevels(_options.timeLevels, known);
    if (levels.empty())
        throw Failure(aboutFile(_source.file(KEL_DATA), "has no time level of " + _options.timeLevels));
    _transfer->setTimeLevels(levels);
}

void Conversion::verify()
{
    Model target(_options.target, _format.name);
    KelCompareOptions compare;
    compare.compareCase = _source.has(KEL_CASE) && target.has(KEL_CASE) && !_options.dataOnly;
    compare.compareData = _source.has(KEL_DATA) && target.has(KEL_DATA) && !_options.caseOnly;
    if (!_transfer->verify(target.reader(), compare))
        throw Failure(aboutFile(_options.target, _transfer->problem()));
}

ConversionResult Conversion::run()
{
    const auto start = std::chrono::steady_clock::now();
    makeWriter();
    if (_result.files.empty())
        throw Failure(aboutFile(_options.source, _options.dataOnly ? "has no data" : "has no case"));
    _transfer = std::make_unique<KelTransfer>(_source.reader(), *_writer);
    _transfer->setTargetFamilies(_format.writes);
    if (!_options.dataOnly && _source.has(KEL_CASE))
        copy(KEL_CASE);
    if (!_options.caseOnly && _source.has(KEL_DATA)) {
        chooseLevels();
        if (_options.dataOnly && _source.has(KEL_CASE))
            _source.open(KEL_CASE); // values belong to its zones
        copy(KEL_DATA);
        _source.close();
    }
    if (_options.verify)
        verify();
    _result.losses = _transfer->losses().losses();
    _result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return _result;
}

} // namespace

ConversionResult convert(const ConversionOptions& options, Terminal& terminal)
{
    return Conversion(options, terminal).run();
}

} // namespace meridyn::tool
