#include "KelFormatConformance.h"

#include "Checks.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>
#include <utility>

namespace meridyn {

namespace {

using conformance::Check;
using conformance::Checks;

const Checks& allChecks()
{
    static const Checks checks = [] {
        Checks made;
        conformance::addReadingChecks(made);
        conformance::addMeshChecks(made);
        conformance::addZoneChecks(made);
        conformance::addSolutionChecks(made);
        conformance::addSetChecks(made);
        conformance::addSetDataChecks(made);
        conformance::addTrackChecks(made);
        conformance::addTextChecks(made);
        conformance::addOrderChecks(made);
        return made;
    }();
    return checks;
}

bool applies(const Check& check, const KelFormat& format)
{
    if (!format.makeReader)
        return false;
    if (check.kind == Check::Kind::Recognition)
        return true;
    if (check.kind == Check::Kind::Reading)
        return format.makeWriter || !format.samples.empty();
    return format.makeWriter && (check.needs & format.reads & format.writes) == check.needs;
}

/// Keeps standard output to itself for as long as it lives.
class SilentOutput {
public:
    SilentOutput() : _output(std::cout.rdbuf(_sink.rdbuf())) {}
    ~SilentOutput() { std::cout.rdbuf(_output); }
    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

private:
    std::ostringstream _sink;
    std::streambuf* _output;
};

std::string joined(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

} // namespace

KelFormatConformance::KelFormatConformance(KelFormat format, std::string scratchFolder)
    : _format(std::move(format)), _folder(std::move(scratchFolder))
{}

KelFormatConformance::~KelFormatConformance() = default;

void KelFormatConformance::addSample(const std::string& name)
{
    _format.samples.push_back(name);
}

std::vector<std::string> KelFormatConformance::checks() const
{
    std::vector<std::string> names;
    for (const Check& check : allChecks())
        if (applies(check, _format))
            names.push_back(check.name);
    return names;
}

bool KelFormatConformance::run()
{
    bool passed = true;
    for (const std::string& check : checks())
        passed = run(check).passed && passed;
    return passed;
}

KelConformanceResult KelFormatConformance::run(const std::string& check)
{
    const auto found = std::find_if(allChecks().begin(), allChecks().end(), [&](const Check& candidate) {
        return candidate.name == check && applies(candidate, _format);
    });
    KelConformanceResult result{check, true, ""};
    if (found == allChecks().end())
        result.detail = "there is no such check for the format '" + _format.name + "'";
    else
        try {
            const SilentOutput silent;
            conformance::Case test(_format, _folder, check);
            found->run(test);
            result.detail = joined(test.failures());
        } catch (const std::exception& exception) {
            result.detail = std::string("an exception: ") + exception.what();
        }
    result.passed = result.detail.empty();
    _results.push_back(result);
    return result;
}

const std::vector<KelConformanceResult>& KelFormatConformance::results() const
{
    return _results;
}

std::string KelFormatConformance::text() const
{
    std::string text;
    std::size_t passed = 0;
    for (const KelConformanceResult& result : _results) {
        passed += result.passed ? 1 : 0;
        text += (result.passed ? "passed  " : "FAILED  ") + result.name + "\n";
        std::istringstream lines(result.detail);
        for (std::string line; std::getline(lines, line);)
            text += "        " + line + "\n";
    }
    return text + std::to_string(passed) + " passed, " + std::to_string(_results.size() - passed) + " failed\n";
}

} // namespace meridyn
