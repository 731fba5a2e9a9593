#pragma once

#include "KelFileProvider.h"
#include "KelMeshKey.h"
#include "KelModelDescription.h"
#include "KelValueTypes.h"

#include <string>
#include <vector>

namespace meridyn {

/// Base of the readers of our formats: of the operations that come in several forms, one is left to the format, and
/// what the file says about mesh and solution is declared at one go.
///
/// Forms     by phase id, of the active phase, by the id of a variable: reach the form with the name.
/// Meshes    the lists of meshes, targets and partitions come from meshKeys, which a format overrides.
/// Overloads a format that overrides one overload repeats the others with `using KelFormatProvider::...`.
class KEL_API KelFormatProvider : public KelFileProvider {
public:
    /// No file is named and nothing is open.
    KelFormatProvider();
    ~KelFormatProvider() override;

    /// @name Settings, meshes and cells
    /// @{
    using KelFileProvider::availablePartitionIds;
    using KelFileProvider::availableTargets;
    void getSettingsKeys(KelDataClass dataClass, std::vector<std::string>& keys) const override;
    std::vector<int> availableMeshIds(KelDataClass dataClass) const override;
    std::vector<KelTargetCategory> availableTargets(int meshId, KelDataClass dataClass) const override;
    std::vector<int> availablePartitionIds(int meshId, KelDataClass dataClass) const override;
    short getFaceCountForCell(unsigned64 cellId) const override; ///< By getFaceCountsForCellsInRange.
    /// @}

    /// @name Values of a variable
    /// Nothing for a variable that the active phase does not have.
    /// @{
    using KelFileProvider::startReadingZonesOfCategoryWithPhaseVariable;
    unsigned64 startReadingZonesOfCategoryWithPhaseVariable(KelZoneCategory category, int variableId,
                                                            std::vector<int>& zoneIds) override;
    /// @}

    /// @name Particles: left are hasParticles(phaseName) and getVariablesOfInjection
    /// @{
    using KelFileProvider::hasParticles;
    bool hasParticles() const override;
    bool hasParticles(short phaseId) const override;
    bool startReadingParticles() override;
    bool startReadingParticles(const std::string& phaseName) override;
    bool startReadingParticles(short phaseId) override;
    void getInjectionNames(std::vector<std::string>& names) const override;
    /// @}

    /// @name Particle tracks: left are hasParticleTracks(phaseName) and the one with a mesh
    /// @{
    using KelFileProvider::getValuesOfParticleTrackVariable;
    using KelFileProvider::hasParticleTracks;
    bool hasParticleTracks() const override;
    bool hasParticleTracks(short phaseId) const override;
    bool hasParticleTracksInActivePhase() const override;
    std::vector<short> getPhasesWithParticleTracks(int meshId, KelTargetCategory target,
                                                   int partitionId) const override;
#define KEL_DEFINE(T)                                                                                                  \
    unsigned64 getValuesOfParticleTrackVariable(int variableId, T* values, unsigned64 capacity) const override         \
    {                                                                                                                  \
        const std::string name = variableName(variableId);                                                             \
        return name.empty() ? 0 : getValuesOfParticleTrackVariable(name, values, capacity);                            \
    }
    KEL_FOR_EACH_VALUE_TYPE(KEL_DEFINE)
#undef KEL_DEFINE
    /// @}

    /// @name Sets: left are those of a data class and of a category
    /// @{
    using KelFileProvider::getSetNames;
    bool getSetNames(std::vector<std::string>& names) const override;
    /// @}

protected:
    /// The meshes that the open file of a data class has, in their order; none here.
    virtual std::vector<KelMeshKey> meshKeys(KelDataClass dataClass) const;

    /// Declares sizes, units and zones. Nothing is left of the zones that were there before.
    void declareMesh(const KelMeshDescription& mesh);
    /// The zones alone.
    void declareZones(const std::vector<KelZoneDescription>& zones);

    /// Declares phases and variables in the place of those that were there, with the same ids unless the description
    /// was put together from several, and adds the time levels. Chooses the first level and the first phase where
    /// none of them is chosen.
    void declareSolution(const KelSolutionDescription& solution);

    /// Element ids of a zone, 0 and 0 for an unknown one.
    std::pair<unsigned64, unsigned64> rangeOfZone(int zoneId) const;

    /// The unique name of a variable, empty for an unknown one.
    std::string variableName(int variableId) const;

private:
    void declareVariablesAndPhases(const KelSolutionDescription& solution);
};

} // namespace meridyn
