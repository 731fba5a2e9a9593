#include "KelBase.h"

#include "core/DataInterface.h"
#include "KelLocationModel.h"
#include "KelVariableAttributeProvider.h"

#include <stdexcept>

// Life cycle, names of applications and variables, versions and models.

namespace meridyn {

const std::string KelBase::_defaultSettingsPath = "settings";

KelBase::KelBase()
    : _data(std::make_unique<DataInterface>(-1)),
      _solverType("MERIDYN_GENERIC"),
      _locationModel(std::make_unique<KelLocationModel>())
{
    initializeVariableMappingConfigurations();
}

KelBase::~KelBase()
{
    if (_ownsVariableAttributeProvider) {
        delete _variableAttributeProvider;
    }
}

void KelBase::setDebugOn(bool)
{}

void KelBase::setReadNCIOn(bool)
{}

void KelBase::setZoneAdjacency()
{}

void KelBase::initLocationModel() const
{}

bool KelBase::updateData(KelDataClass)
{
    return false;
}

// ---- applications and variable names ---------------------------------------------

void KelBase::setSolverType(std::string solverType)
{
    if (solverType == _solverType) {
        return;
    }
    initializeVariableAttributeProvider(solverType, _variableMappingSource);
    _solverType = solverType; // afterwards: the provider is chosen by comparing with the type it was made for
}

std::string KelBase::getSolverType() const
{
    return _solverType;
}

void KelBase::setApplicationName(const std::string& name)
{
    _applicationName = name;
}

std::string KelBase::getApplicationName() const
{
    return _applicationName;
}

void KelBase::setVariableAttributeProvider(const KelVariableAttributeProvider* provider, bool owns)
{
    const KelVariableAttributeProvider* const replaced = _variableAttributeProvider;
    const bool leaveReplacedAlone = replaced != provider && !_ownsVariableAttributeProvider;
    _variableAttributeProvider = provider;
    if (!leaveReplacedAlone) {
        delete replaced; // kept: installing the installed provider again destroys it, owned or not
    }
    _ownsVariableAttributeProvider = owns;
}

const KelVariableAttributeProvider* KelBase::variableAttributeProvider() const
{
    return _variableAttributeProvider;
}

KelVariableAttributeProvider* KelBase::attributeProvider() const
{
    // Some questions to a provider are not const, since a provider may look its answers up on demand.
    return const_cast<KelVariableAttributeProvider*>(_variableAttributeProvider);
}

const std::string& KelBase::variableMappingSource() const
{
    return _variableMappingSource;
}

void KelBase::setVariableMappingSource(const std::string& vocabulary)
{
    _variableMappingSource = vocabulary;
}

// ---- versions --------------------------------------------------------------------

/// Reads the integer at the beginning of a text; false when there is none or when it is beyond an int.
static bool readLeadingInt(const std::string& text, int& value)
{
    try {
        value = std::stoi(text);
        return true;
    } catch (const std::invalid_argument&) {
        return false;
    } catch (const std::out_of_range&) {
        return false;
    }
}

KelReadable KelBase::isSupported(const std::string& version) const
{
    if (version.empty() || version == "Unknown") {
        return KEL_READABLE_UNKNOWN;
    }
    int major = 0;
    if (!readLeadingInt(version, major)) {
        return KEL_READABLE;
    }
    int minor = 0;
    const std::string::size_type point = version.find('.');
    if (point != std::string::npos && !readLeadingInt(version.substr(point + 1), minor)) {
        minor = 0;
    }
    const int ourMajor = static_cast<int>(getMajor());
    const int ourMinor = static_cast<int>(getMinor());
    if (major > ourMajor) {
        return KEL_NOT_READABLE_NEWER_MAJOR;
    }
    return major == ourMajor && minor > ourMinor ? KEL_READABLE_NEWER_MINOR : KEL_READABLE;
}

// ---- models ----------------------------------------------------------------------

KelSolutionModel* KelBase::solutionModel() const
{
    return _data->solutionModel.get();
}

KelLocationModel* KelBase::locationModel() const
{
    return _locationModel.get();
}

const KelLocationModel* KelBase::getLocationModel() const
{
    if (!_locationModelReady) {
        _locationModelReady = true;
        initLocationModel();
    }
    return _locationModel.get();
}

} // namespace meridyn
