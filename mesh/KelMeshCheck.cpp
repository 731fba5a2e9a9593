#include "KelMeshCheck.h"

#include "mesh/MeshRun.h"
#include "mesh/Stopped.h"

#include <utility>

namespace meridyn {

KelMeshCheck::KelMeshCheck(KelProvider& reader, KelMeshCheckOptions options)
    : _reader(reader), _options(std::move(options))
{}

bool KelMeshCheck::run()
{
    _report = KelMeshReport();
    _problem.clear();
    _cancelled = false;
    try {
        mesh::runChecks(_reader, _options, _report);
    } catch (const mesh::Stopped& stopped) {
        _problem = stopped.problem;
        _cancelled = stopped.cancelled;
    }
    return _problem.empty();
}

const KelMeshReport& KelMeshCheck::report() const
{
    return _report;
}

const std::string& KelMeshCheck::problem() const
{
    return _problem;
}

bool KelMeshCheck::wasCancelled() const
{
    return _cancelled;
}

} // namespace meridyn
