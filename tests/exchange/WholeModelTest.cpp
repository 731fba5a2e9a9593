// What a transfer used to leave behind without a word: each model here holds one thing of the kind.
#include "RichModel.h"

#include "KelCompare.h"
#include "KelMessage.h"
#include "KelMessageRegistrar.h"
#include "KelModelDescription.h"
#include "KelSolutionModel.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <limits>

namespace meridyn {
namespace {

/// A writer whose case and data are filled by functions.
class Writer : public KelMemoryConsumer {
public:
    using KelMemoryConsumer::setMeshContext;
    using KelMemoryConsumer::solutionModel;
    explicit Writer(const std::string& name)
    {
        KelMemoryStore::remove(name); // a class that is not written must not be there from before
        setBoth(*this, name);
    }

    void declare(KelZoneCategory category, int zone, unsigned64 last)
    {
        std::vector<int> zones;
        getZoneIds(category, zones);
        zones.push_back(zone);
        setZoneIds(category, zones);
        setZoneSizeInfo(zone, KEL_ZONE_FIRST_ID, 1);
        setZoneSizeInfo(zone, KEL_ZONE_LAST_ID, last);
    }

    template <class Fill>
    void write(KelDataClass dataClass, const Fill& fill)
    {
        ASSERT_TRUE(KelFileConsumer::startWriting(dataClass));
        fill();
        ASSERT_TRUE(endWriting(dataClass));
        ASSERT_FALSE(hasError()) << getErrors(false, true).front();
    }

    /// Values 10, 20, ... of a variable for the elements 1, 2, ... of a zone, where the level and phase are now.
    void writeValues(KelZoneCategory category, int variable, int zone, unsigned64 count, double factor = 10)
    {
        std::vector<int> zones = {zone};
        std::vector<double> values;
        for (unsigned64 n = 1; n <= count; ++n)
            values.push_back(factor * static_cast<double>(n));
        startWritingPhaseVariableInZonesOfCategory(category, variable, zones, 1);
        setValuesOfPhaseVariableForElementsInRange(1, count, values.data(), count);
        endWritingPhaseVariableInZonesOfCategory();
    }
};

/// Copies a model in memory; its losses, or the problem.
std::string copyOf(const std::string& name, const std::string& copy,
                   KelDataPrecisionType precision = KEL_PRECISION_AS_GIVEN,
                   const std::vector<KelDataClass>& classes = {KEL_CASE, KEL_DATA})
{
    KelMemoryProvider source;
    KelMemoryConsumer target;
    KelMemoryStore::remove(copy); // a class that is not copied must not be there from before
    setBoth(source, name);
    setBoth(target, copy);
    target.setDataPrecision(precision);
    KelTransfer transfer(source, target);
    for (const KelDataClass dataClass : classes)
        if (!(dataClass == KEL_CASE ? transfer.copyCase() : transfer.copyData()))
            return "problem: " + transfer.problem();
    return transfer.losses().text();
}

std::string differences(const std::string& one, const std::string& other, KelCompareOptions options = {})
{
    KelMemoryProvider first, second;
    setBoth(first, one);
    setBoth(second, other);
    KelCompare compare(first, second, options);
    if (!compare.run())
        return "problem: " + compare.problem();
    std::string text = compare.text();
    for (const std::string& line : compare.notCompared())
        text += "not compared: " + line + "\n";
    return text;
}

const KelCompareOptions caseOnly = [] {
    KelCompareOptions options;
    options.compareData = false;
    return options;
}();

// ---- arrays with gaps ---------------------------------------------------------------------------------------------

/// Ten faces, five cells; arrays for elements 3, 4 and 7 only, or for all.
void writeGaps(const std::string& name, const std::vector<unsigned64>& given)
{
    Writer writer(name);
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.declare(KEL_FACE_ZONE, 1, 10);
    writer.declare(KEL_CELL_ZONE, 2, 10);
    writer.write(KEL_CASE, [&] {
        for (const unsigned64 id : given) {
            const unsigned64 two[] = {id, id + 1};
            writer.setShadowFaceIdForFace(id, id);
            writer.setChildFaceCountForFace(id, 2);
            writer.setChildFaceIdsForFace(id, two, 2);
            writer.setTypeForCell(id, KEL_CELL_PRISM);
            writer.setNodeCountForCell(id, 1);
            writer.setNodeIdsForCell(id, two, 1);
            writer.setFaceCountForCell(id, 2);
            writer.setFaceIdsForCell(id, two, 2);
            writer.setPartitionIdForCell(id, 5);
            writer.setChildCellCountForCell(id, 1);
            writer.setChildCellIdsForCell(id, two, 1);
        }
    });
}

TEST(WholeModel, ArraysForAPartOfAZoneArrive)
{
    for (const std::vector<unsigned64>& given :
         {std::vector<unsigned64>{3, 4, 7}, {1, 2}, {10}, {5}, {1, 3, 5, 7, 9, 10}, {2, 3, 4, 5, 6, 7, 8, 9}}) {
        writeGaps("memory:gaps", given);
        EXPECT_EQ(copyOf("memory:gaps", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_CASE}), "");
        EXPECT_EQ(differences("memory:gaps", "memory:copy", caseOnly), "");
        KelMemoryProvider copy;
        setBoth(copy, "memory:copy");
        ASSERT_TRUE(copy.startReading(KEL_CASE));
        for (unsigned64 id = 1; id <= 10; ++id) {
            const bool isGiven = std::find(given.begin(), given.end(), id) != given.end();
            unsigned64 value = 0;
            int partition = 0;
            KelCellType type;
            EXPECT_EQ(copy.getShadowFaceIdsForFacesInRange(id, id, &value, 1), isGiven ? 1U : 0U) << id;
            EXPECT_EQ(copy.getNodeIdsForCellsInRange(id, id, &value, 1), isGiven ? 1U : 0U) << id;
            EXPECT_EQ(copy.getPartitionIdsForCellsInRange(id, id, &partition, 1), isGiven ? 1U : 0U) << id;
            EXPECT_EQ(copy.getTypesForCellsInRange(id, id, &type, 1), isGiven ? 1U : 0U) << id;
            EXPECT_EQ(copy.getChildCellIdsForCellsInRange(id, id, &value, 1), isGiven ? 1U : 0U) << id;
        }
    }
}

TEST(WholeModel, EachArrayForAPartOfAZoneIsCompared)
{
    writeGaps("memory:gaps", {3, 4, 7});
    writeGaps("memory:more", {3, 4, 7, 9});
    const std::string found = differences("memory:gaps", "memory:more", caseOnly);
    for (const char* item : {"shadow faces: shadow faces of zone 1, id 9: 0 against 9",
                             "child faces: number of child faces of zone 1, id 9: 0 against 2",
                             "cell types: types of cells of zone 2, id 9: nothing against present",
                             "cell nodes: number of nodes of cells of zone 2, id 9: nothing against present",
                             "cell faces: number of faces of cells of zone 2, id 9: nothing against present",
                             "partitions: partitions of cells of zone 2, id 9: nothing against present",
                             "child cells: number of child cells of zone 2, id 9: 0 against 1"})
        EXPECT_NE(found.find(std::string(item) + "\n"), std::string::npos) << item << " is not in\n" << found;
    EXPECT_EQ(std::count(found.begin(), found.end(), '\n'), 7) << found;
}

// ---- interfaces of zones without faces ----------------------------------------------------------------------------

TEST(WholeModel, InterfacesOfZonesWithoutFacesArrive)
{
    const double shares[] = {0.5};
    const unsigned64 ids[] = {1, 2};
    Writer writer("memory:interface");
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.setZoneIds(KEL_FACE_ZONE, {4});
    writer.setZoneIds(KEL_CELL_ZONE, {6});
    writer.write(KEL_CASE, [&] {
        writer.startWritingInterfaceDataForFaces({4, 6}, {99});
        for (const int zone : {4, 6, 99}) // no elements, no face zone, no zone at all
            writer.setInterfaceDataForFacesInZone(zone, shares, 1, shares, 1, ids, 2, ids, 1);
        writer.endWritingInterfaceDataForFaces();
    });
    EXPECT_EQ(copyOf("memory:interface", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_CASE}), "");
    EXPECT_EQ(differences("memory:interface", "memory:copy", caseOnly), "");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_CASE));
    for (const int zone : {4, 6, 99}) {
        unsigned64 sizes[4] = {};
        EXPECT_TRUE(copy.getInterfaceDataSizesForFacesInZone(zone, sizes[0], sizes[1], sizes[2], sizes[3])) << zone;
        EXPECT_EQ(sizes[2], 2U) << zone;
    }
}

TEST(WholeModel, ListsOfCoupledZonesArriveWithoutData)
{
    const auto write = [](const std::string& name, const std::vector<int>& side1) {
        Writer writer(name);
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        writer.write(KEL_CASE, [&] {
            writer.startWritingInterfaceDataForFaces({4}, side1);
            writer.endWritingInterfaceDataForFaces();
        });
    };
    write("memory:lists", {5, 6});
    write("memory:others", {6, 5});
    EXPECT_EQ(copyOf("memory:lists", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_CASE}), "");
    EXPECT_EQ(differences("memory:lists", "memory:copy", caseOnly), "");
    EXPECT_EQ(differences("memory:lists", "memory:others", caseOnly),
              "interface data: coupled zones on side 1: 5 6 against 6 5\n");
}

// ---- coordinates --------------------------------------------------------------------------------------------------

TEST(WholeModel, CoordinatesOfManyDimensionsArrive)
{
    Writer writer("memory:17");
    writer.setMeshSize(KEL_MESH_DIMENSION, 17);
    writer.declare(KEL_NODE_ZONE, 1, 3);
    writer.write(KEL_CASE, [&] {
        const std::vector<double> xyz = RichWriter::ramp<double>(3 * 17);
        writer.setCoordinatesForNodesInRange(1, 3, xyz.data(), xyz.size());
    });
    EXPECT_EQ(copyOf("memory:17", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_CASE}), "");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_CASE));
    std::vector<double> xyz(17);
    EXPECT_EQ(copy.getCoordinatesForNode(3, xyz.data(), 17), 17U);
    EXPECT_EQ(xyz.back(), 51);
}

TEST(WholeModel, OverflowUnderSinglePrecisionIsALoss)
{
    Writer writer("memory:large");
    writer.setMeshSize(KEL_MESH_DIMENSION, 1);
    writer.declare(KEL_NODE_ZONE, 1, 3);
    const double infinity = std::numeric_limits<double>::infinity();
    writer.write(KEL_CASE, [&] {
        const double xyz[] = {FLT_MAX, -infinity, 1e39};
        writer.setCoordinatesForNodesInRange(1, 3, xyz, 3);
    });
    writer.write(KEL_DATA, [&] {
        std::vector<short> phases;
        int id = 0;
        writer.setPhaseNames({"air"}, phases);
        writer.addPhaseVariable(phases[0], "p", id);
        writer.startWritingPhase(phases[0]);
        writer.writeValues(KEL_NODE_ZONE, id, 1, 3, 1e38); // 1e38, 2e38, 3e38
        writer.addPhaseVariable(phases[0], "q", id);
        writer.writeValues(KEL_NODE_ZONE, id, 1, 3, -2e38); // the second overflows
        writer.endWritingPhase();
    });
    EXPECT_EQ(copyOf("memory:large", "memory:copy"), "");
    EXPECT_EQ(copyOf("memory:large", "memory:copy", KEL_PRECISION_DOUBLE), "");
    EXPECT_EQ(copyOf("memory:large", "memory:copy", KEL_PRECISION_SINGLE),
              "coordinates: zone 1: changed: values beyond the range of single precision became infinite\n"
              "variables: 'q' of phase 'air', zone 1: changed: values beyond the range of single precision became "
              "infinite\n");
}

// ---- phases and variables -----------------------------------------------------------------------------------------

TEST(WholeModel, VariablesWithoutDeclaredCategoriesKeepTheirValues)
{
    /// A reader that does not say on which zones its variables live.
    struct Undeclared : KelMemoryProvider {
        bool startReading(KelDataClass dataClass) override
        {
            const bool isOpen = KelMemoryProvider::startReading(dataClass);
            clearVariablesOfCategories();
            return isOpen;
        }
    };
    makeRichModel("memory:rich");
    Undeclared source;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "");
    EXPECT_EQ(differences("memory:rich", "memory:copy"), "");
}

TEST(WholeModel, AttributesAreThoseOfTheFile)
{
    Writer writer("memory:attributes");
    writer.write(KEL_DATA, [&] {
        std::vector<short> phases;
        int id = 0;
        writer.setPhaseNames({"air"}, phases);
        writer.solutionModel()->removeAttributeOfPhase(phases[0], "Long Name");
        writer.setAttributeValueOfPhase(phases[0], "Empty", "");
        writer.addPhaseVariable(short{-1}, "T", id); // the mixture
        writer.setAttributeValueOfPhaseVariable(id, "Units", "");
        writer.setAttributeValueOfPhase(short{-1}, "Material", "all of it");
    });
    EXPECT_EQ(copyOf("memory:attributes", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_DATA}), "");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    const KelSolutionDescription solution = describeSolution(copy);
    ASSERT_EQ(solution.phases.size(), 2U);
    EXPECT_EQ(solution.phases[0].id, -1);
    EXPECT_EQ(solution.phases[0].attributes.at("Material"), "all of it");
    EXPECT_EQ(solution.phases[1].attributes.count("Long Name"), 0U);
    EXPECT_EQ(solution.phases[1].attributes.at("Empty"), "");
    ASSERT_EQ(solution.variables.size(), 1U);
    EXPECT_EQ(solution.variables[0].attributes.at("Units"), "");
}

TEST(WholeModel, PhasesAndVariablesKeepTheirIds)
{
    Writer writer("memory:ids");
    writer.write(KEL_DATA, [&] {
        std::vector<short> phases;
        int id = 0;
        writer.addPhaseVariable(short{-1}, "first", id); // before any phase, which makes the next one phase 0
        writer.addPhaseNames({"water", "air"}, phases);
        writer.addPhaseVariable(phases[1], "second", id);
        writer.addPhaseVariable(phases[0], "third", id);
        writer.addPhaseVariable(short{-1}, "fourth", id);
    });
    EXPECT_EQ(copyOf("memory:ids", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_DATA}), "");
    KelMemoryProvider source, copy;
    setBoth(source, "memory:ids");
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(source.startReading(KEL_DATA) && copy.startReading(KEL_DATA));
    const auto idsOf = [](const KelBase& model) {
        std::map<std::string, int> ids;
        const KelSolutionDescription solution = describeSolution(model);
        for (const KelPhaseDescription& phase : solution.phases)
            ids["phase " + phase.uniqueName] = phase.id;
        for (const KelVariableDescription& variable : solution.variables)
            ids[variable.uniqueName] = variable.id;
        return ids;
    };
    EXPECT_EQ(idsOf(copy), idsOf(source));
    EXPECT_EQ(idsOf(copy).at("phase water"), 0);
}

// ---- time levels --------------------------------------------------------------------------------------------------

TEST(WholeModel, EmptyLevelsAndWhatLiesAtNoneArrive)
{
    const auto write = [](const std::string& name, double factor, bool isEmptyThere = true) {
        Writer writer(name);
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        writer.declare(KEL_CELL_ZONE, 2, 4);
        writer.write(KEL_DATA, [&] {
            std::vector<short> phases;
            int id = 0;
            writer.setPhaseNames({"air"}, phases);
            writer.addPhaseVariable(phases[0], "p", id);
            writer.startWritingPhase(phases[0]);
            writer.writeValues(KEL_CELL_ZONE, id, 2, 4, factor); // at no level
            writer.startWritingSet("at none", KEL_CELL_ZONE);
            writer.endWritingSet();
            writer.startWritingTimeLevel(0);
            writer.writeValues(KEL_CELL_ZONE, id, 2, 4, 7);
            if (isEmptyThere)
                writer.startWritingTimeLevel(5);
            writer.startWritingTimeLevel(6);
            writer.writeValues(KEL_CELL_ZONE, id, 2, 4, 8);
            writer.endWritingPhase();
        });
    };
    write("memory:levels", 3);
    write("memory:other", 4);
    write("memory:fewer", 3, false);
    EXPECT_EQ(copyOf("memory:levels", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_DATA}), "");
    KelCompareOptions dataOnly;
    dataOnly.compareCase = false;
    EXPECT_EQ(differences("memory:levels", "memory:copy", dataOnly), "");
    EXPECT_EQ(differences("memory:levels", "memory:fewer", dataOnly),
              "time levels: data, time level 5: present against nothing\n");
    const std::string item = "variables: variable 'p' of phase 'air', zone 2";
    EXPECT_EQ(differences("memory:levels", "memory:other", dataOnly),
              item + ", id 1: 3 against 4\n" + item + ", id 2: 6 against 8\n" + item + ", id 3: 9 against 12\n" + item +
                  ", id 4: 12 against 16\n");
}

TEST(WholeModel, TracksOfEveryContextArrive)
{
    const auto write = [](const std::string& name, double value) {
        Writer writer(name);
        writer.write(KEL_DATA, [&] {
            std::vector<short> phases;
            writer.setPhaseNames({"air"}, phases);
            const auto add = [&](int mesh, int target, int partition, double speed) {
                writer.startWritingParticleTracks(phases[0], mesh, static_cast<KelTargetCategory>(target), partition);
                writer.startWritingPartiticleTrackGroup("group");
                writer.startWritingChunkInPartiticleTrackGroup(1, 1);
                writer.setValuesOfParticleTrackVariable("speed", &speed, 1);
                writer.endWritingChunkInPartiticleTrackGroup();
                writer.endWritingPartiticleTrackGroup();
                writer.endWritingParticleTracks();
            };
            add(-1, -1, -1, 1);
            add(7, KEL_PARTITIONED_POST, 3, 2); // a mesh that the file does not have
            add(1, KEL_DEFAULT_TARGET, -1, value);
        });
    };
    write("memory:tracks", 3);
    write("memory:other", 4);
    EXPECT_EQ(copyOf("memory:tracks", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_DATA}), "");
    KelCompareOptions dataOnly;
    dataOnly.compareCase = false;
    EXPECT_EQ(differences("memory:tracks", "memory:copy", dataOnly), "");
    EXPECT_EQ(differences("memory:tracks", "memory:other", dataOnly),
              "particle tracks: 'speed' of chunk 1 of track group 'group' of phase 'air', mesh 1, id 1: 3 against 4\n");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_DATA));
    EXPECT_TRUE(copy.hasParticleTracks(1, 7, KEL_PARTITIONED_POST, 3));
    EXPECT_TRUE(copy.hasParticleTracks(1, -1, static_cast<KelTargetCategory>(-1), -1));
}

// ---- several meshes -----------------------------------------------------------------------------------------------

struct MeshCase {
    int meshId;
    KelTargetCategory target;
    int partition;
};
const MeshCase meshCases[] = {{2, KEL_DEFAULT_TARGET, -1},
                              {2, KEL_SOLVER, -1},
                              {2, KEL_PARTITIONED_POST, 0},
                              {2, KEL_PARTITIONED_POST, 4},
                              {9, KEL_POST, -1}};

/// A model of five meshes, of 2, 3, 4, 5 and 6 cells, the cells of each in a partition of its own, with data.
void writeMeshes(const std::string& name, std::size_t count, double factor = 1)
{
    Writer writer(name);
    const auto choose = [&](std::size_t n) {
        const MeshCase& mesh = meshCases[n];
        writer.setMeshContext(mesh.meshId, mesh.target, mesh.partition, KelBase::KEL_UPDATE_NONE);
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        writer.declare(KEL_CELL_ZONE, 1, n + 2);
    };
    writer.write(KEL_CASE, [&] {
        for (std::size_t n = 0; n < count; ++n) {
            choose(n);
            const std::vector<int> partitions(n + 2, static_cast<int>(n));
            writer.startWritingPartitionIdsForCells({1}, 10 + static_cast<int>(n));
            writer.setPartitionIdsForCellsInZone(1, partitions.data(), partitions.size());
            writer.writeMeshSize();
        }
    });
    writer.write(KEL_DATA, [&] {
        for (std::size_t n = 0; n < count; ++n) {
            choose(n);
            std::vector<short> phases;
            int id = 0;
            writer.setPhaseNames({"air"}, phases);
            writer.addPhaseVariable(phases[0], "p", id);
            writer.startWritingPhase(phases[0]);
            writer.writeValues(KEL_CELL_ZONE, id, 1, n + 2, n + 1 == count ? factor : 1);
            writer.endWritingPhase();
            writer.writeMeshSize();
        }
    });
}

TEST(WholeModel, EveryMeshTargetAndPartitionArrives)
{
    writeMeshes("memory:meshes", 5);
    EXPECT_EQ(copyOf("memory:meshes", "memory:copy"), "");
    EXPECT_EQ(differences("memory:meshes", "memory:copy"), "");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    ASSERT_TRUE(copy.startReading(KEL_CASE));
    EXPECT_EQ(copy.availableMeshIds(KEL_CASE), (std::vector<int>{2, 9}));
    EXPECT_EQ(copy.availablePartitionIds(2, KEL_CASE), (std::vector<int>{0, 4}));
}

TEST(WholeModel, ADifferenceInAnotherMeshIsFound)
{
    writeMeshes("memory:meshes", 5);
    writeMeshes("memory:other", 5, 3);
    writeMeshes("memory:fewer", 4);
    const std::string found = differences("memory:meshes", "memory:other");
    EXPECT_EQ(found.substr(0, found.find('\n')), "variables: variable 'p' of phase 'air', zone 1, id 1: 1 against 3");
    const std::string missing = differences("memory:meshes", "memory:fewer");
    EXPECT_EQ(missing, "several meshes: mesh 9, target 3: present against nothing\n"
                       "several meshes: mesh 9, target 3: present against nothing\n");
}

TEST(WholeModel, ATargetOfOneMeshLosesTheOthers)
{
    writeMeshes("memory:meshes", 3);
    KelMemoryProvider source;
    KelMemoryConsumer target;
    setBoth(source, "memory:meshes");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    transfer.setTargetFamilies(allFormatFamilies & ~formatFamily(KEL_FAMILY_MESHES));
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "several meshes: mesh 2, target 1: not carried by the format\n"
                                        "several meshes: mesh 2, target 2, partition 0: not carried by the format\n");
}

TEST(WholeModel, ChosenMeshesOnly)
{
    writeMeshes("memory:meshes", 5);
    KelMemoryProvider source;
    KelMemoryConsumer target;
    setBoth(source, "memory:meshes");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    transfer.setMeshes({{2, KEL_SOLVER, -1}, {2, KEL_PARTITIONED_POST, 4}});
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "");
    EXPECT_EQ(differences("memory:meshes", "memory:copy",
                          [] {
                              KelCompareOptions options;
                              options.meshes = {{2, KEL_SOLVER, -1}, {2, KEL_PARTITIONED_POST, 4}};
                              return options;
                          }()),
              "");
    transfer.setMeshes({{3, 0, -1}});
    EXPECT_FALSE(transfer.copyCase());
    EXPECT_EQ(transfer.problem(), "the source has no mesh 3");
    EXPECT_EQ(transfer.problemKind(), KelTransferProblem::BadRequest);
}

TEST(WholeModel, NumberOfPartitionsAndSolverArrive)
{
    const auto write = [](const std::string& name, int partitions, const char* solver) {
        Writer writer(name);
        writer.setSolverType(solver);
        writer.setMeshSize(KEL_MESH_DIMENSION, 3);
        writer.declare(KEL_CELL_ZONE, 1, 2);
        writer.write(KEL_CASE, [&] { writer.startWritingPartitionIdsForCells({}, partitions); });
    };
    write("memory:one", 4, "A");
    write("memory:other", 5, "B");
    EXPECT_EQ(copyOf("memory:one", "memory:copy", KEL_PRECISION_AS_GIVEN, {KEL_CASE}), "");
    EXPECT_EQ(differences("memory:one", "memory:copy", caseOnly), "");
    EXPECT_EQ(differences("memory:one", "memory:other", caseOnly), "solver type: solver type: A against B\n"
                                                                   "partitions: number of partitions: 4 against 5\n");
}

// ---- data alone ---------------------------------------------------------------------------------------------------

TEST(WholeModel, DataOfDifferentMeshesDiffer)
{
    KelGeneratedProvider small, large;
    setBoth(small, "box:2x2x2 fields:1");
    setBoth(large, "box:5x5x5 fields:1");
    KelCompareOptions dataOnly;
    dataOnly.compareCase = false;
    KelCompare compare(small, large, dataOnly);
    ASSERT_TRUE(compare.run()) << compare.problem();
    EXPECT_FALSE(compare.differences().empty());
}

TEST(WholeModel, DataAloneTakeTheWholeMeshDescriptionAlong)
{
    Writer writer("memory:context");
    writer.setMeshContext(3, KEL_PARTITIONED_POST, 2, KelBase::KEL_UPDATE_NONE);
    writer.setMeshSize(KEL_MESH_DIMENSION, 3);
    writer.declare(KEL_FACE_ZONE, 1, 2);
    writer.setFaceZoneType(1, KEL_FACE_ZONE_TYPE_WALL);
    writer.write(KEL_CASE, [] {});
    writer.write(KEL_DATA, [&] {
        std::vector<short> phases;
        int id = 0;
        writer.setPhaseNames({"air"}, phases);
        writer.addPhaseVariable(phases[0], "p", id);
        writer.startWritingPhase(phases[0]);
        writer.writeValues(KEL_FACE_ZONE, id, 1, 2);
    });
    KelMemoryProvider source;
    KelMemoryConsumer target;
    setBoth(source, "memory:context");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "");
    EXPECT_EQ(target.getMeshId(), 3);
    EXPECT_EQ(target.getTarget(), KEL_PARTITIONED_POST);
    EXPECT_EQ(target.getPartitionId(), 2);
    KelFaceZoneType type;
    target.getFaceZoneType(1, type);
    EXPECT_EQ(type, KEL_FACE_ZONE_TYPE_WALL);
}

// ---- ledgers ------------------------------------------------------------------------------------------------------

struct Forgetful : KelMemoryProvider {
    bool startReading(KelDataClass dataClass) override
    {
        const bool isOpen = KelMemoryProvider::startReading(dataClass);
        if (dataClass == KEL_DATA)
            noteNotRead(KEL_DATA, {KEL_FAMILY_VARIABLES, "1/T", KelNotRead::NotReadable, "expected ')'"});
        else
            noteNotRead(KEL_CASE, {KEL_FAMILY_COUNT, "old/notes", KelNotRead::NotOpened, ""});
        return isOpen;
    }
};

TEST(Ledger, WhatWasNotReadIsALossAndNotCompared)
{
    makeRichModel("memory:rich");
    Forgetful source;
    KelMemoryConsumer target;
    setBoth(source, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase() && transfer.copyData()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "old/notes: not read: never opened\n"
                                        "variables: 1/T: not read: cannot be read (expected ')')\n");
    KelMemoryProvider copy;
    setBoth(copy, "memory:copy");
    KelCompare compare(source, copy);
    ASSERT_TRUE(compare.run()) << compare.problem();
    EXPECT_EQ(compare.text(), "");
    EXPECT_FALSE(compare.isComplete());
    EXPECT_EQ(compare.notCompared(),
              (std::vector<std::string>{"first model: old/notes: not read: never opened",
                                        "first model: 1/T: not read: cannot be read (expected ')')"}));
}

/// A reader that stands on the frame alone.
struct Bare : KelFileProvider {
    bool openData(KelDataClass, const std::string&) override { return true; }
    bool closeData(KelDataClass) override { return true; }
};

TEST(Ledger, AReaderWithoutOneIsSaidToBe)
{
    Bare bare, other;
    KelMemoryConsumer target;
    setBoth(bare, "anything");
    setBoth(other, "anything");
    setBoth(target, "memory:copy");
    KelTransfer transfer(bare, target);
    ASSERT_TRUE(transfer.copyCase()) << transfer.problem();
    EXPECT_EQ(transfer.losses().text(), "the source: its reader does not tell what it leaves out\n");
    KelCompare compare(bare, other, caseOnly);
    ASSERT_TRUE(compare.run());
    EXPECT_TRUE(compare.differences().empty());
    EXPECT_EQ(compare.notCompared(),
              (std::vector<std::string>{"first model: its reader does not tell what it leaves out",
                                        "second model: its reader does not tell what it leaves out"}));
}

TEST(Ledger, ErrorsOfTheWriterAreLossesWhereTheyHappen)
{
    struct Complains : KelMemoryConsumer {
        void setShadowFaceIdsForFacesInRange(unsigned64, unsigned64, const unsigned64*, unsigned64) override
        {
            getMessageRegistrar()->registerMessage(KelError("has no room for shadow faces", "set"));
        }
    };
    makeRichModel("memory:rich");
    KelMemoryProvider source;
    Complains target;
    setBoth(source, "memory:rich");
    setBoth(target, "memory:copy");
    KelTransfer transfer(source, target);
    ASSERT_TRUE(transfer.copyCase()) << transfer.problem();
    ASSERT_EQ(transfer.losses().losses().size(), 1U) << transfer.losses().text();
    const KelLoss& loss = transfer.losses().losses().front();
    EXPECT_EQ(loss.family, KEL_FAMILY_SHADOW_FACES);
    EXPECT_EQ(loss.reason, KelLossReason::Refused);
    EXPECT_NE(loss.text.find("has no room for shadow faces"), std::string::npos) << loss.text;
}

} // namespace
} // namespace meridyn
