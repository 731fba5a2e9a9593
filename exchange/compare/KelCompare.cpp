#include "KelCompare.h"

#include "CompareRun.h"
#include "formats/common/BaseAccess.h"

#include <new>
#include <stdexcept>

namespace meridyn {

std::string KelDifference::line() const
{
    const auto orNothing = [](const std::string& text) { return text.empty() ? std::string("nothing") : text; };
    const std::string name = formatFamilyName(family);
    return (name.empty() ? "" : name + ": ") + item + (level ? ", time level " + std::to_string(*level) : "") +
           (id != 0 ? ", id " + std::to_string(id) : "") + ": " + orNothing(first) + " against " + orNothing(second);
}

KelCompare::KelCompare(KelProvider& first, KelProvider& second, const KelCompareOptions& options)
    : _first(first), _second(second), _options(options)
{}

namespace {

bool contains(const std::vector<KelMeshKey>& keys, const KelMeshKey& key)
{
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

/// Chooses a mesh of an open data class; opening anew does on every reader.
bool choose(KelProvider& model, KelDataClass dataClass, const KelMeshKey& key)
{
    if (chosenMesh(model) == key)
        return true;
    model.endReading(dataClass);
    BaseAccess::setContext(model, key.meshId, static_cast<KelTargetCategory>(key.target), key.partitionId);
    if (dataClass == KEL_DATA && model.startReading(KEL_CASE)) // values belong to its zones
        model.endReading(KEL_CASE);
    else if (dataClass == KEL_DATA)
        model.getErrors(false, true); // data without a case are no mistake
    return model.startReading(dataClass) && chosenMesh(model) == key;
}

/// Values belong to zones, which some files of data do not hold: then the case is looked at.
void knowZones(KelProvider& model)
{
    if (!describeMesh(model).zones.empty())
        return;
    if (model.startReading(KEL_CASE))
        model.endReading(KEL_CASE);
    else
        model.getErrors(false, true);
}

} // namespace

/// Compares what belongs to a mesh, mesh by mesh. Meshes that only one model has are a difference; the first ones are
/// compared whatever they are, when each model has one only.
void KelCompare::compareMeshes(CompareRun& run, KelDataClass dataClass)
{
    std::vector<KelMeshKey> one = meshesOf(_first, dataClass), other = meshesOf(_second, dataClass);
    for (std::vector<KelMeshKey>* const keys : {&one, &other})
        if (!_options.meshes.empty())
            std::erase_if(*keys, [this](const KelMeshKey& key) { return !contains(_options.meshes, key); });
    for (const KelMeshKey& key : one)
        if (!contains(other, key))
            run.differ(KEL_FAMILY_MESHES, meshLabel(key), 0, "present", "");
    for (const KelMeshKey& key : other)
        if (!contains(one, key))
            run.differ(KEL_FAMILY_MESHES, meshLabel(key), 0, "", "present");
    const auto compare = [&](const KelMeshKey& inOne, const KelMeshKey& inOther) {
        if (!choose(_first, dataClass, inOne) || !choose(_second, dataClass, inOther)) {
            run.differ(KEL_FAMILY_MESHES, meshLabel(inOne), 0, "listed", "not readable in one of the two");
            return;
        }
        if (dataClass == KEL_DATA)
            for (KelProvider* const model : {&_first, &_second})
                knowZones(*model);
        run.firstMesh = describeMesh(_first);
        run.secondMesh = describeMesh(_second);
        const auto derivedOf = [](const KelProvider& model) {
            const KelSourceLedger* const ledger = ledgerOf(model);
            return ledger != nullptr ? ledger->derived() : KelDerived();
        };
        run.firstDerived = derivedOf(_first);
        run.secondDerived = derivedOf(_second);
        if (dataClass == KEL_CASE || !_options.compareCase) // otherwise the case has told
            compareMesh(run);
        if (dataClass == KEL_CASE) {
            compareArrays(run);
            compareElementData(run);
            compareSets(run, KEL_CASE);
            compareLocations(run, KEL_CASE); // some formats keep them with each mesh
        } else
            compareSolution(run);
    };
    if (one.size() == 1 && other.size() == 1)
        return compare(one.front(), other.front());
    for (const KelMeshKey& key : one)
        if (contains(other, key))
            compare(key, key);
}

void KelCompare::noteNotCompared(const KelProvider& model, const char* which, KelDataClass dataClass)
{
    const auto note = [this](const std::string& line) {
        if (std::find(_notCompared.begin(), _notCompared.end(), line) == _notCompared.end())
            _notCompared.push_back(line);
    };
    const std::string of = std::string(which) + " model: ";
    const KelSourceLedger* const ledger = ledgerOf(model);
    if (ledger == nullptr)
        return note(of + "its reader does not tell what it leaves out");
    for (const KelSourceItem& item : ledger->notHandedOver(dataClass))
        note(of + item.place + ": not read: " + notReadName(item.reason) +
             (item.text.empty() ? "" : " (" + item.text + ")"));
}

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
        compareMeshes(run, dataClass);
        if (dataClass == KEL_DATA)
            compareLocations(run, KEL_DATA);
        compareSettings(run, dataClass);
    } catch (const std::bad_alloc&) {
        _problem = "not enough memory";
    } catch (const std::length_error&) { // a reader promised more values than there can be
        _problem = "not enough memory";
    }
    noteNotCompared(_first, "first", dataClass);
    noteNotCompared(_second, "second", dataClass);
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
    _notCompared.clear();
    return (!_options.compareCase || compareClass(KEL_CASE)) && (!_options.compareData || compareClass(KEL_DATA));
}

const std::vector<KelDifference>& KelCompare::differences() const
{
    return _differences;
}

const std::vector<std::string>& KelCompare::notCompared() const
{
    return _notCompared;
}

std::string KelCompare::text() const
{
    std::string text;
    for (const KelDifference& difference : _differences)
        text += difference.line() + "\n";
    return text;
}

const std::string& KelCompare::problem() const
{
    return _problem;
}

} // namespace meridyn
