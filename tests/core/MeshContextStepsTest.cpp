#include "KelSolutionModel.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <vector>

namespace meridyn {

/// Where an object stands before a call, and how its updateData answers.
struct Situation {
    int target;
    int partitionId;
    bool hasMesh;
    bool hasPhase;
    bool caseLoads;
    bool dataLoads;
};

struct Arguments {
    int meshId;
    int target;
    int partitionId;
    int method;
};

/// What a call leaves behind.
struct Outcome {
    int meshId;
    int target;
    int partitionId;
    bool hasMesh;
    std::vector<KelDataClass> updates;
    bool answer;

    bool operator==(const Outcome& other) const
    {
        return meshId == other.meshId && target == other.target && partitionId == other.partitionId &&
               hasMesh == other.hasMesh && updates == other.updates && answer == other.answer;
    }
};

static constexpr int storedMeshId = 4;

/// The rules once more, in their plainest form.
static Outcome expectedOutcome(const Situation& before, const Arguments& call)
{
    Outcome after{storedMeshId, before.target, before.partitionId, before.hasMesh, {}, true};
    const bool newMesh = call.meshId >= 1 && call.meshId != storedMeshId;
    const bool newTarget = call.target != -1 && call.target != before.target;
    const bool newPartition = call.partitionId >= 0 && call.partitionId != before.partitionId;
    if (newMesh) {
        after.meshId = call.meshId;
    }
    if (newTarget) {
        after.target = call.target;
    }
    if (newMesh || newTarget || newPartition) {
        after.hasMesh = false;
    }
    if (newPartition && call.target == 2) {
        after.partitionId = call.partitionId;
    }
    if (!after.hasMesh && (call.method == 1 || call.method == 3)) {
        after.updates.push_back(KEL_CASE);
        after.answer = before.caseLoads;
    }
    if (after.answer && !before.hasPhase && (call.method == 2 || call.method == 3)) {
        after.updates.push_back(KEL_DATA);
        after.answer = before.dataLoads;
    }
    return after;
}

static void bringInto(OpenBase& base, const Situation& before)
{
    base.setMeshContext(storedMeshId, KEL_PARTITIONED_POST, before.partitionId, KelBase::KEL_UPDATE_NONE);
    base.setMeshContext(-1, static_cast<KelTargetCategory>(before.target), -1, KelBase::KEL_UPDATE_NONE);
    base.setMeshSize(before.hasMesh ? 3 : 0, 10, 20, 30, 40);
    if (before.hasPhase) {
        short phase = 0;
        base.solutionModel()->createPhase("gas", phase);
    }
    base.onUpdate = [before](KelDataClass dataClass) {
        return dataClass == KEL_CASE ? before.caseLoads : before.dataLoads;
    };
}

static Outcome outcomeOf(const Situation& before, const Arguments& call)
{
    OpenBase base;
    bringInto(base, before);
    const bool answer = base.setMeshContext(call.meshId, static_cast<KelTargetCategory>(call.target), call.partitionId,
                                            static_cast<KelBase::UpdateMethod>(call.method));
    unsigned64 dimension = 0;
    base.getMeshSize(KEL_MESH_DIMENSION, dimension);
    return {base.getMeshId(), base.getTarget(), base.getPartitionId(), dimension != 0, base.updates, answer};
}

static void expectSteps(const Situation& before, const Arguments& call)
{
    EXPECT_TRUE(outcomeOf(before, call) == expectedOutcome(before, call))
        << "target " << before.target << ", partition " << before.partitionId << ", mesh " << before.hasMesh
        << ", phase " << before.hasPhase << ", loads " << before.caseLoads << before.dataLoads << ": setMeshContext("
        << call.meshId << ", " << call.target << ", " << call.partitionId << ", " << call.method << ")";
}

static void expectStepsOfAllCalls(const Situation& before)
{
    for (const int meshId : {INT_MIN, 0, 1, storedMeshId}) {
        for (const int target : {-1, 0, 2, 3}) {
            for (const int partitionId : {-1, 0, 7}) {
                for (const int method : {0, 1, 2, 3}) {
                    expectSteps(before, {meshId, target, partitionId, method});
                }
            }
        }
    }
}

TEST(MeshContextSteps, HoldForEveryCombination)
{
    EXPECT_EQ(printedBy([] {
                  for (const int target : {0, 2}) {
                      for (const int partitionId : {-1, 7}) {
                          for (int bits = 0; bits < 16; ++bits) {
                              expectStepsOfAllCalls({target, partitionId, (bits & 1) != 0, (bits & 2) != 0,
                                                     (bits & 4) != 0, (bits & 8) != 0});
                          }
                      }
                  }
              }),
              ""); // the partition is only ever stored under partitioned post
}

} // namespace meridyn
