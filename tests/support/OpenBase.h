#pragma once

#include "KelBase.h"

#include <functional>
#include <vector>

namespace meridyn {

/// A KelBase whose protected operations are open, and which notes how its hooks are called.
class OpenBase : public KelBase {
public:
    using KelBase::addTimeLevel;
    using KelBase::addVariableOfCategory;
    using KelBase::attributeProvider;
    using KelBase::clearVariablesOfCategories;
    using KelBase::dropMesh;
    using KelBase::getActivePhase;
    using KelBase::getApplicationName;
    using KelBase::getGroupNameForPhase;
    using KelBase::getSortedMinIdZoneId;
    using KelBase::getVariablesOfCategory;
    using KelBase::getZoneCategory;
    using KelBase::isSupported;
    using KelBase::locationModel;
    using KelBase::lookupSetting;
    using KelBase::setActivePhase;
    using KelBase::setCellFaceZoneIds;
    using KelBase::setFaceCellZone0Ids;
    using KelBase::setFaceCellZone1Ids;
    using KelBase::setMeshContext;
    using KelBase::setMeshSize;
    using KelBase::setTimeLevel;
    using KelBase::settingsObject;
    using KelBase::setVariableMappingSource;
    using KelBase::setZoneCategory;
    using KelBase::solutionModel;
    using KelBase::variableAttributeProvider;
    using KelBase::variableMappingSource;

    /// What updateData was asked for, in order, and what it answers (false when left empty).
    std::vector<KelDataClass> updates;
    std::function<bool(KelDataClass)> onUpdate;

    /// How often the adjacency hook ran, and what it does.
    int adjacencyRuns = 0;
    std::function<void(OpenBase&)> onAdjacency;

    /// How often the location hook ran.
    mutable int locationRuns = 0;

protected:
    void setZoneAdjacency() override
    {
        ++adjacencyRuns;
        if (onAdjacency) {
            onAdjacency(*this);
        }
    }

    void initLocationModel() const override { ++locationRuns; }

    bool updateData(KelDataClass dataClass) override
    {
        updates.push_back(dataClass);
        return onUpdate ? onUpdate(dataClass) : false;
    }
};

} // namespace meridyn
