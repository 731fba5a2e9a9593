#include "KelCompare.h"

#include "CompareRun.h"
#include "exchange/transfer/TransferRun.h"

#include <new>
#include <stdexcept>

namespace meridyn {

KelCompare::KelCompare(KelProvider& first, KelProvider& second, const KelCompareOptions& options)
    : _first(first), _second(second), _options(options)
{}

bool KelCompare::compareClass(KelDataClass dataClass)
{
    for (KelProvider* model : {&_first, &_second})
        model->getErrors(false, true); // those of this run count
    if (!_first.startReading(dataClass)) {
        _problem = storedErrors(_first, "the first model could not be read");
        return false;
    }
    if (!_second.startReading(dataClass)) {
        _problem = storedErrors(_second, "the second model could not be read");
        _first.endReading(dataClass);
        return false;
    }
    try {
        CompareRun run(_first, _second, _options, _differences);
        if (dataClass == KEL_CASE) {
            compareZones(run);
            compareTopology(run);
            compareSets(run, KEL_CASE);
            compareLocations(run);
        } else
            compareSolution(run);
        compareSettings(run, dataClass);
    } catch (const std::bad_alloc&) {
        _problem = "not enough memory";
    } catch (const std::length_error&) { // a reader promised more values than there can be
        _problem = "not enough memory";
    }
    for (KelProvider* model : {&_first, &_second}) {
        if (_problem.empty() && model->hasError()) // what it gave is not all that is there
            _problem = storedErrors(*model, "");
        model->endReading(dataClass);
    }
    return _problem.empty();
}

bool KelCompare::run()
{
    _problem.clear();
    _differences.clear();
    return (!_options.compareCase || compareClass(KEL_CASE)) && (!_options.compareData || compareClass(KEL_DATA));
}

const std::vector<KelDifference>& KelCompare::differences() const
{
    return _differences;
}

std::string KelCompare::text() const
{
    std::string text;
    for (const KelDifference& difference : _differences) {
        text += difference.family + ": " + difference.item;
        if (difference.id != 0)
            text += ", id " + std::to_string(difference.id);
        text += ": " + (difference.first.empty() ? "nothing" : difference.first) + " against " +
                (difference.second.empty() ? "nothing" : difference.second) + "\n";
    }
    return text;
}

const std::string& KelCompare::problem() const
{
    return _problem;
}

} // namespace meridyn
