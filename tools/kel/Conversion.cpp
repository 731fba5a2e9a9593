#include "Conversion.h"

#include "formats/common/OutputTarget.h"
#include "KelFileConsumer.h"
#include "KelFormatConsumer.h"
#include "KelFormatRegistry.h"
#include "KelModelDescription.h"
#include "KelTransfer.h"
#include "KelUtilities.h"
#include "Model.h"
#include "Progress.h"
#include "StagedFiles.h"
#include "TimeLevels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <limits>
#include <system_error>

namespace meridyn::tool {

namespace {

/// One conversion: both ends and how far it is.
class Conversion {
public:
    Conversion(const ConversionOptions& options, Terminal& terminal);
    ConversionResult run();

private:
    void planFiles();
    void planFile(KelDataClass dataClass, const std::string& file);
    void planPartner(KelDataClass dataClass, const std::string& file);
    void planMeshes();
    void planLevels();
    void planAppend();
    void dropLevels();
    void makeWriter();
    void copy(KelDataClass dataClass);
    void copyAll();
    void declareZones();
    void verify();
    bool isAskedFor(const KelLoss& loss) const;

    bool isCopied(KelDataClass dataClass) const
    {
        const bool isLeftOut =
            dataClass == KEL_CASE ? _options.dataOnly || !_options.fromLevel.empty() : _options.caseOnly;
        return _source.has(dataClass) && !isLeftOut;
    }

    const ConversionOptions& _options;
    Terminal& _terminal;
    Model _source;
    KelFormat _format;
    KelFormatFiles _files;
    std::vector<int> _levels;        ///< chosen; empty for all
    std::vector<KelMeshKey> _meshes; ///< chosen; empty for all
    int _fromLevel = -1;             ///< of the appending; -1 where a new model is written
    StagedFiles _staged;
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

// ---- before anything is written

/// Whether a file may be written, when its data class is copied at all.
void Conversion::planFile(KelDataClass dataClass, const std::string& file)
{
    if (!isCopied(dataClass))
        return;
    if (file.empty())
        throw Failure(aboutFile(_options.target, "the format '" + _format.name + "' has no file for the " +
                                                     (dataClass == KEL_CASE ? "case" : "data")));
    std::error_code error;
    for (const KelDataClass read : {KEL_CASE, KEL_DATA})
        if (_source.has(read) && std::filesystem::equivalent(_source.file(read), file, error))
            throw Failure(aboutFile(file, "is read and cannot be written at the same time"));
    if (const std::string problem = outputProblem(file); !problem.empty())
        throw Failure(aboutFile(file, problem));
    if (!_options.force && _options.fromLevel.empty() && std::filesystem::exists(file, error))
        throw Failure(aboutFile(file, "exists already; --force replaces it"));
    _result.files.push_back(file);
}

/// A file that is not written, but belongs to a model of the target's name: with what is written it would be a model of
/// two halves that have nothing to do with each other. Who asks for one half only means to have it beside the other.
void Conversion::planPartner(KelDataClass dataClass, const std::string& file)
{
    std::error_code error;
    if (isCopied(dataClass) || _options.caseOnly || _options.dataOnly || !_options.fromLevel.empty() || file.empty() ||
        !std::filesystem::is_regular_file(file, error))
        return;
    const std::string half = dataClass == KEL_CASE ? "case" : "data";
    for (const KelDataClass read : {KEL_CASE, KEL_DATA})
        if (_source.has(read) && std::filesystem::equivalent(_source.file(read), file, error))
            throw Failure(aboutFile(file, "is read and cannot be replaced at the same time"));
    if (!_options.force)
        throw Failure(aboutFile(file, "exists already, and would become the " + half +
                                          " of the new model, which has none; --force removes it"));
    _result.removed.push_back(file);
}

void Conversion::planFiles()
{
    if (!_format.prefix.empty() && _options.target.starts_with(_format.prefix))
        throw Failure(_options.target + ": a model in memory ends with the process; name a file");
    _files = _format.files ? _format.files(_options.target, true) : KelFormatFiles{_options.target, ""};
    planFile(KEL_CASE, _files.caseFile);
    planFile(KEL_DATA, _files.dataFile);
    if (_result.files.empty())
        throw Failure(aboutFile(_options.source, _options.dataOnly ? "has no data" : "has no case"));
    planPartner(KEL_CASE, _files.caseFile);
    planPartner(KEL_DATA, _files.dataFile);
}

/// Says which meshes are copied: all that the options fit.
void Conversion::planMeshes()
{
    if (!_options.mesh.isGiven())
        return;
    const KelDataClass dataClass = isCopied(KEL_CASE) ? KEL_CASE : KEL_DATA;
    _source.open(dataClass);
    for (const MeshName& mesh : _source.chosenMeshes(dataClass))
        _meshes.push_back({mesh.mesh, mesh.target, mesh.partition});
    _source.close();
}

/// Says which levels are copied; the data has to be looked at for what there is.
void Conversion::planLevels()
{
    if (_options.timeLevels.empty())
        return;
    if (!isCopied(KEL_DATA))
        throw Failure(aboutFile(_options.source, "--time: there are no data to be copied"));
    _source.open(KEL_DATA);
    const std::vector<TimeLevel> known = timeLevelsOf(_source.reader());
    _source.close();
    try {
        _levels = chosenLevels(_options.timeLevels, known);
    } catch (const BadLevels&) {
        throw;
    } catch (const Failure& failure) {
        throw Failure(aboutFile(_source.file(KEL_DATA), failure.what()));
    }
}

/// A zone as far as two models must agree on it when values of one are added to the other.
static std::vector<std::array<unsigned64, 4>> zonesOf(const KelBase& base)
{
    std::vector<std::array<unsigned64, 4>> zones;
    for (const KelZoneDescription& zone : describeMesh(base).zones)
        zones.push_back(
            {static_cast<unsigned64>(zone.id), static_cast<unsigned64>(zone.category), zone.first, zone.last});
    std::sort(zones.begin(), zones.end());
    return zones;
}

/// Looks at what --from-level needs: a number, levels of the source from it on, and a target with the same zones.
void Conversion::planAppend()
{
    if (_options.fromLevel.empty())
        return;
    const char* const end = _options.fromLevel.data() + _options.fromLevel.size();
    const auto [at, error] = std::from_chars(_options.fromLevel.data(), end, _fromLevel);
    if (error != std::errc() || at != end || _fromLevel < 0)
        throw Failure("--from-level: expected the number of a time level, found '" + _options.fromLevel + "'");
    if (!_source.has(KEL_DATA))
        throw Failure(aboutFile(_options.source, "has no data"));
    Model target(_options.target, _options.targetFormat);
    target.open(KEL_DATA);
    for (const int level : target.reader().getTimeLevels())
        if (level >= _fromLevel)
            _result.dropped.push_back(level);
    const auto zones = zonesOf(target.reader());
    target.close();
    _source.open(KEL_DATA);
    const std::vector<TimeLevel> known = timeLevelsOf(_source.reader());
    const bool isSame = zonesOf(_source.reader()) == zones;
    _source.close();
    for (const TimeLevel& level : known)
        if (level.level >= _fromLevel)
            _levels.push_back(level.level);
    if (_levels.empty())
        throw Failure(aboutFile(_source.file(KEL_DATA), "has no time level from " + _options.fromLevel +
                                                            " on; those that it has: " + levelsText(known)));
    if (!isSame)
        throw Failure(aboutFile(_files.dataFile, "has other zones than " + _source.file(KEL_DATA)));
    if (dynamic_cast<KelFormatConsumer*>(_format.makeWriter().get()) == nullptr)
        throw Failure("the format '" + _format.name + "' cannot drop time levels");
}

// ---- writing

/// Makes a copy of the target's data without the levels that are written anew.
void Conversion::dropLevels()
{
    const std::string place = _staged.place(_files.dataFile);
    std::filesystem::copy_file(linkedFile(_files.dataFile), place);
    _source.open(KEL_DATA);
    declareZones();
    _source.close();
    _writer->setAppendOn(true);
    auto& writer = dynamic_cast<KelFormatConsumer&>(*_writer);
    if (!writer.startWriting(KEL_DATA) || !writer.dropTimeLevelsFrom(_fromLevel) || !writer.endWriting(KEL_DATA))
        throw Failure(
            aboutFile(_options.target, _staged.named(errorsOf(writer, "its time levels could not be dropped"))));
}

void Conversion::makeWriter()
{
    _writer = _format.makeWriter();
    if (!_writer)
        throw Failure("the format '" + _format.name + "' cannot be written");
    if (isCopied(KEL_CASE))
        _writer->setFile(_staged.place(_files.caseFile), KEL_CASE);
    if (isCopied(KEL_DATA))
        _writer->setFile(_staged.place(_files.dataFile), KEL_DATA);
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
    throw Failure(aboutFile(isWriters ? _options.target : _options.source, _staged.named(_transfer->problem())));
}

/// Tells the writer the mesh of the values that are added: which one, its zones with all that
/// is known of them, and the solver that its names come from.
void Conversion::declareZones()
{
    const KelBase& from = _source.reader();
    _writer->setMeshId(from.getMeshId());
    _writer->setTarget(from.getTarget());
    _writer->setPartitionId(from.getPartitionId());
    _writer->setSolverType(from.getSolverType());
    declareMesh(*_writer, describeMesh(from));
}

/// Reads the new files back, before they have their names. Single precision is always looked at for what does not fit.
void Conversion::verify()
{
    Model target(_format, _options.target,
                 {isCopied(KEL_CASE) ? _staged.place(_files.caseFile) : "",
                  isCopied(KEL_DATA) ? _staged.place(_files.dataFile) : ""});
    KelCompareOptions compare;
    compare.compareCase = isCopied(KEL_CASE);
    compare.compareData = isCopied(KEL_DATA);
    compare.meshes = _meshes;
    if (!_options.verify) { // rounding to single precision is what was asked for, infinity for a large number is not
        compare.relativeTolerance = std::numeric_limits<float>::epsilon();
        compare.absoluteTolerance = std::numeric_limits<float>::min();
    }
    if (!_transfer->verify(target.reader(), compare))
        throw Failure(aboutFile(_options.target, _staged.named(_transfer->problem())));
}

/// Whether a loss is only that single precision is stored, which was asked for; with --verify all is told.
bool Conversion::isAskedFor(const KelLoss& loss) const
{
    return !_options.verify && _options.precision == KEL_PRECISION_SINGLE && loss.reason == KelLossReason::Changed &&
           loss.item.starts_with("type of ");
}

void Conversion::copyAll()
{
    _transfer = std::make_unique<KelTransfer>(_source.reader(), *_writer);
    _transfer->setTargetFamilies(_format.writes);
    if (!_levels.empty())
        _transfer->setTimeLevels(_levels);
    if (!_meshes.empty())
        _transfer->setMeshes(_meshes);
    if (isCopied(KEL_CASE))
        copy(KEL_CASE);
    if (!isCopied(KEL_DATA))
        return;
    if (!isCopied(KEL_CASE) && _source.has(KEL_CASE))
        _source.open(KEL_CASE); // values belong to its zones
    copy(KEL_DATA);
    _source.close();
}

ConversionResult Conversion::run()
{
    const auto start = std::chrono::steady_clock::now();
    planFiles();
    planMeshes();
    planLevels();
    planAppend();
    makeWriter();
    if (_fromLevel >= 0)
        dropLevels();
    copyAll();
    if (_options.verify || _options.precision == KEL_PRECISION_SINGLE)
        verify();
    _writer.reset(); // nothing of the files is held any more
    _staged.commit(_result.removed);
    for (const KelLoss& loss : _transfer->losses().losses())
        if (!isAskedFor(loss)) {
            _result.losses.push_back(loss);
            _result.losses.back().text = _staged.named(loss.text);
        }
    _result.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    return _result;
}

} // namespace

ConversionResult convert(const ConversionOptions& options, Terminal& terminal)
{
    return Conversion(options, terminal).run();
}

} // namespace meridyn::tool
