#include "Checks.h"

#include <limits>

namespace meridyn::conformance {

namespace {

/// Everything that a client might call while nothing is open; none of it may crash.
void callEverything(KelFileConsumer& writer, const Mesh& mesh)
{
    writeArrays(writer, mesh, allFormatFamilies, Form::Range);
    writeArrays(writer, mesh, allFormatFamilies, Form::Zone);
    const double value = 1;
    const unsigned64 id = 1;
    Ids zones = {10};
    writer.setCoordinatesForNodesInZone(-99, &value, 1); // no such zone
    writer.setLocalElemIdsInZone(10, &id, 1);
    writer.setCaseSectionDataForElementsInRange(1, 1, &value, 1);
    writer.endWritingCaseSectionDataForCategory();
    writer.setValuesOfPhaseVariableForElementsInRange(1, 1, &value, 1);
    writer.startWritingPhaseVariableInZonesOfCategory(KEL_CELL_ZONE, "nothing", zones, 1);
    writer.setValuesOfPhaseVariableForElementsInZone(10, &value, 1);
    writer.endWritingPhaseVariableInZonesOfCategory();
    writer.setIdsForSetInRange(1, 1, &id, 1);
    writer.setDataOfVariableForSetInRange(1, 1, &value, 1);
    writer.endWritingSet();
    writer.setIdsForSetData(&id, 1);
    writer.setVariableForSetData(&value, 1);
    writer.endWritingSetData();
    writer.setValuesOfParticleTrackVariable("nothing", &value, 1);
    writer.endWritingParticleTracks();
    writer.log({{"too", "early"}}, KEL_CASE);
    writer.writeSettingStrings({{"too", "early"}}, KEL_CASE, "settings");
}

void writingTooEarly(Case& test)
{
    const Mesh mesh = smallMesh();
    const auto writer = test.writer();
    test.expect(!writer->endWriting(KEL_CASE), "endWriting(KEL_CASE) without startWriting gives true");
    test.expect(!writer->endWriting(KEL_DATA), "endWriting(KEL_DATA) without startWriting gives true");
    test.expect(!test.format.makeWriter()->startWriting(KEL_CASE), "startWriting without a file name gives true");
    declareMesh(*writer, mesh);
    callEverything(*writer, mesh);
    test.expect(!writer->isWritingData(), "isWritingData() before startWriting gives true");
    writer->getErrors(false, true);
    test.write(*writer, KEL_CASE, [&] {
        test.expect(writer->isWritingData(), "isWritingData() after startWriting gives false");
        writeArrays(*writer, mesh, test.format.writes, Form::Range);
    });
    test.expect(!writer->isWritingData(), "isWritingData() after endWriting gives true");
    test.expect(!writer->endWriting(KEL_CASE), "a second endWriting(KEL_CASE) gives true");
    callEverything(*writer, mesh);
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
}

/// Wrong lists: the wrong number of values, ranges that are none, null. A writer may pass over them, and then what it
/// is given behind them stands; or it gives the file up, with a KelError and false.
void wrongArguments(Case& test)
{
    const Mesh mesh = smallMesh();
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    if (!test.expect(writer->startWriting(KEL_CASE), "startWriting gives false" + errorsOf(*writer)))
        return;
    constexpr unsigned64 far = std::numeric_limits<unsigned64>::max();
    const unsigned64 id = 1;
    const double value = 1;
    const short count = 4;
    writer->startWritingNodes({1});
    writer->setCoordinatesForNodesInRange(1, 2, &value, 1);
    writer->setCoordinatesForNodesInRange(5, 4, &value, 1);
    writer->setCoordinatesForNodesInRange(0, far, &value, 1);
    writer->setCoordinatesForNodesInRange(1, 1, static_cast<const double*>(nullptr), 0);
    writer->setNodeIdsForFacesInRange(1, 1, &id, 1); // before the counts
    writer->setNodeCountsForFacesInRange(far - 1, far, &count, 1);
    writer->setCell0sForFacesInRange(0, 0, &id, 1);
    writer->setCell0sForFacesInRange(far, 1, &id, 1);
    writer->endWritingNodes();
    writeArrays(*writer, mesh, test.format.writes, Form::Range);
    const bool done = writer->endWriting(KEL_CASE);
    const auto reader = test.reader();
    if (!done) {
        test.expect(writer->hasError(), "the writer gives the file up without a KelError");
        test.expect(!reader->startReading(KEL_CASE), "the writer gives the file up, but a reader opens it");
    } else
        test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, mesh); });
}

void abandonedWriting(Case& test)
{
    const Mesh first = smallMesh(), second = boxMesh("box:2x2x2 cells:tet");
    {
        const auto writer = test.writer();
        declareMesh(*writer, first);
        if (writer->startWriting(KEL_CASE))
            writeArrays(*writer, first, test.format.writes, Form::Range);
    }
    test.expect(!test.reader()->startReading(KEL_CASE), "what was never ended can be read");
    if (!writeCase(test, first))
        return;
    {
        const auto writer = test.writer();
        declareMesh(*writer, second);
        if (writer->startWriting(KEL_CASE))
            writeArrays(*writer, second, test.format.writes, Form::Range);
    }
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, first); });
}

void writingTwice(Case& test)
{
    const Mesh first = smallMesh(), second = boxMesh("box:2x2x2 cells:tet");
    if (!writeCase(test, first) || !writeCase(test, second))
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, second); });
}

void oneWriterForTwoModels(Case& test)
{
    const Mesh first = smallMesh(), second = boxMesh("box:2x2x2 cells:tet");
    const auto writer = test.writer(0);
    declareMesh(*writer, first);
    bool done = test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, first, test.format.writes, Form::Range); });
    const KelFormatFiles files = test.format.files(test.name(1), true);
    writer->setFile(files.caseFile, KEL_CASE);
    for (const KelZoneCategory category : {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE})
        writer->setZoneIds(category, {});
    declareMesh(*writer, second);
    done =
        done && test.write(*writer, KEL_CASE, [&] { writeArrays(*writer, second, test.format.writes, Form::Range); });
    if (!done)
        return;
    for (const int number : {0, 1}) {
        const auto reader = test.reader(number);
        test.read(*reader, KEL_CASE, [&] { expectMesh(test, *reader, number == 0 ? first : second); });
    }
}

} // namespace

void addOrderChecks(Checks& checks)
{
    const KelFormatFamilies anyMesh = families({KEL_FAMILY_COORDINATES});
    checks.push_back({"calls-while-nothing-is-written", anyMesh, writingTooEarly});
    checks.push_back({"wrong-arguments", anyMesh, wrongArguments});
    checks.push_back({"abandoned-writing", anyMesh, abandonedWriting});
    checks.push_back({"writing-in-the-place-of-another", anyMesh, writingTwice});
    checks.push_back({"one-writer-for-two-models", anyMesh, oneWriterForTwoModels});
}

} // namespace meridyn::conformance
