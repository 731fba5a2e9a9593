#include "SetSamples.h"

namespace meridyn::conformance {

namespace {

void writeSetIds(KelFileConsumer& writer)
{
    writer.setSizesAndMinMaxIdsForSet(blockSizes, {2, 0, 5}, {30, 0, 7});
    writer.startWritingIdsForSet();
    writer.setIdsForSetInRange(1, 3, memberIds.data(), 3);
    writer.setIdsForSetInRange(4, 7, memberIds.data() + 3, 4);
    writer.endWritingIdsForSet();
}

/// Lengths in one of the types and forms in which they may come.
void writeLengths(KelFileConsumer& writer, const std::string& name, KelPlainDataType type)
{
    writer.startWritingSizeOfVariableForSet(name, blockSizes, type);
    if (type == KEL_PLAIN_INT)
        writer.setSizeOfVariableForSetInRange(1, memberCount, narrowed<int>(lengths).data(), memberCount);
    else if (type == KEL_PLAIN_SHORT)
        writer.setSizeOfVariableForSetInRange(1, memberCount, narrowed<short>(lengths).data(), memberCount);
    else {
        writer.setSizeOfVariableForSetInRange(1, 3, lengths.data(), 3);
        writer.setSizeOfVariableForSetInRange(4, 4, lengths[3]); // the same for all of a range
        writer.setSizeOfVariableForSetInRange(5, 6, unsigned64{0});
        writer.setSizeOfVariableForSetInRange(7, 7, lengths.data() + 6, 1);
    }
    writer.endWritingSizeOfVariableForSet();
}

void writeSet(KelFileConsumer& writer, const std::string& name)
{
    writer.startWritingSet(name, KEL_CELL_ZONE);
    writeSetIds(writer);
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        const unsigned64 size = perMember(type);
        const std::vector<T> values = someValues<T>(memberCount * size, type);
        writer.startWritingDataOfVariableForSet("constant " + label, blockSizes, size, type);
        writer.setDataOfVariableForSetInRange(1, 2, values.data(), 2 * size);
        writer.setDataOfVariableForSetInRange(3, memberCount, values.data() + 2 * size, (memberCount - 2) * size);
        writer.endWritingDataOfVariableForSet();

        writeLengths(writer, "ragged " + label, lengthTypeOf(type));
        const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
        writer.startWritingVariableLengthedDataOfVariableForSet("ragged " + label, blockSizes, type);
        writer.setVariableLengthedDataOfVariableForSetInRange(1, 3, ragged.data(), 3);
        writer.setVariableLengthedDataOfVariableForSetInRange(4, memberCount, ragged.data() + 3, lengthSum - 3);
        writer.endWritingVariableLengthedDataOfVariableForSet();

        const std::vector<T> block = someValues<T>(5, type + 2);
        writer.writeOtherDataForSet("block " + label, block.data(), block.size());
    });
    writer.writeOtherDataForSet("block without values", static_cast<const int*>(nullptr), 0);
    for (const std::string& text : hostileNames())
        writer.writeStringDataForSet(text, text + "!");
    writer.endWritingSet();
}

void expectSetIds(Case& test, KelFileProvider& reader)
{
    std::vector<unsigned64> sizes, minIds, maxIds, ids(memberCount + 1);
    test.same("category of the set", std::vector<int>{KEL_CELL_ZONE}, {reader.getCategoryOfSet()});
    reader.getSizesAndMinMaxIdsForSet(sizes, minIds, maxIds);
    test.same("sizes of the blocks", blockSizes, sizes);
    test.same("smallest ids of the blocks", {2, 0, 5}, minIds);
    test.same("largest ids of the blocks", {30, 0, 7}, maxIds);
    reader.startReadingIdsForSet();
    ids.resize(reader.getIdsForSetInRange(1, memberCount, ids.data(), ids.size()));
    test.same("ids of the members", memberIds, ids);
    ids.assign(2, 0);
    ids.resize(reader.getIdsForSetInRange(4, 5, ids.data(), 2));
    test.same("ids of members 4 and 5", {30, 5}, ids);
    reader.endReadingIdsForSet();
}

template <class T>
void expectSetVariables(Case& test, KelFileProvider& reader, KelPlainDataType type, const std::string& label)
{
    const unsigned64 size = perMember(type);
    unsigned64 foundSize = 0;
    sameType(test, "constant " + label, type, reader.startReadingDataOfVariableForSet("constant " + label, foundSize));
    test.same("values per member of " + label, size, foundSize);
    std::vector<T> found(memberCount * size + 1);
    found.resize(reader.getDataOfVariableForSetInRange(1, memberCount, found.data(), found.size()));
    test.same("constant " + label, someValues<T>(memberCount * size, type), found);
    std::vector<double> converted(size);
    converted.resize(reader.getDataOfVariableForSetInRange(2, 2, converted.data(), size));
    const std::vector<T> all = someValues<T>(memberCount * size, type);
    test.same("constant " + label + ", member 2 as double",
              std::vector<double>(all.begin() + static_cast<std::ptrdiff_t>(size),
                                  all.begin() + static_cast<std::ptrdiff_t>(2 * size)),
              converted);
    reader.endReadingDataOfVariableForSet();

    sameType(test, "lengths of " + label, lengthTypeOf(type),
             reader.startReadingSizeOfVariableLengthedVarForSet("ragged " + label));
    std::vector<unsigned64> foundLengths(memberCount);
    foundLengths.resize(reader.getSizeOfVariableForSetInRange(1, memberCount, foundLengths.data(), memberCount));
    test.same("lengths of " + label, lengths, foundLengths);
    reader.endReadingSizeOfVariableLengthedVarForSet();
    sameType(test, "ragged " + label, type, reader.startReadingVariableLengthedDataOfVariableForSet("ragged " + label));
    const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
    found.assign(lengthSum + 1, T());
    found.resize(reader.getVariableLengthedDataOfVariableForSetInRange(1, memberCount, found.data(), found.size()));
    test.same("ragged " + label, ragged, found);
    found.assign(4, T());
    found.resize(reader.getVariableLengthedDataOfVariableForSetInRange(3, 4, found.data(), 4));
    test.same("ragged " + label + ", members 3 and 4", std::vector<T>(ragged.begin() + 2, ragged.begin() + 6), found);
    reader.endReadingVariableLengthedDataOfVariableForSet();

    sameType(test, "block " + label, type, reader.getDataTypeOfOtherDataForSet("block " + label));
    test.same("number of values of block " + label, 5,
              reader.getOtherDataForSet("block " + label, static_cast<T*>(nullptr), 0));
    found.assign(6, T());
    found.resize(reader.getOtherDataForSet("block " + label, found.data(), found.size()));
    test.same("block " + label, someValues<T>(5, type + 2), found);
}

void expectSet(Case& test, KelFileProvider& reader, const std::string& name)
{
    if (!test.expect(reader.startReadingSet(name), "set '" + name + "' cannot be opened"))
        return;
    expectSetIds(test, reader);
    Names constant, ragged, blocks, texts, expected, expectedRagged, expectedBlocks;
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        expected.push_back("constant " + label);
        expectedRagged.push_back("ragged " + label);
        expectedBlocks.push_back("block " + label);
        expectSetVariables<std::remove_pointer_t<decltype(null)>>(test, reader, type, label);
    });
    expectedBlocks.emplace_back("block without values");
    reader.getVariablesInSet(constant);
    reader.getVariableLengthedVariablesInSet(ragged);
    reader.getOtherVariablesInSet(blocks);
    reader.getStringVariablesInSet(texts);
    test.same("variables of the set", expected, constant);
    test.same("variables with lengths of the set", expectedRagged, ragged);
    test.same("blocks of the set", expectedBlocks, blocks);
    test.same("texts of the set", hostileNames(), texts);
    for (const std::string& key : hostileNames()) {
        std::string text;
        test.same("length of text " + Case::quoted(key), key.size() + 1, reader.getStringDataForSet(key, text));
        test.same("text " + Case::quoted(key), key + "!", text);
    }
    unsigned64 size = 0;
    test.expect(reader.startReadingDataOfVariableForSet("no such variable", size) == -1,
                "a variable that is not there has a type");
    reader.endReadingSet();
    test.expect(!reader.startReadingSet("no such set"), "a set that is not there is opened");
}

void setsOfTheCase(Case& test)
{
    const auto write = [](KelFileConsumer& writer) {
        writeSet(writer, "set \"one\"/#1");
        writer.startWritingSet("empty", KEL_NODE_ZONE);
        writer.setSizesAndMinMaxIdsForSet({}, {}, {});
        writer.endWritingSet();
    };
    roundTrip(test, smallMesh(), write, nullptr, [&](KelFileProvider& reader) {
        Names names, ofNodes;
        test.expect(reader.getSetNames(KEL_CASE, names), "there are no sets");
        test.same("names of sets", Names{"set \"one\"/#1", "empty"}, names);
        reader.getSetNames(KEL_NODE_ZONE, ofNodes);
        test.same("names of sets of nodes", Names{"empty"}, ofNodes);
        expectSet(test, reader, "set \"one\"/#1");
    });
}

/// The same name at two levels; each level gives its own.
void setsOfTheData(Case& test)
{
    const auto write = [](KelFileConsumer& writer) {
        std::vector<short> phases;
        writer.setPhaseNames({"water"}, phases);
        for (const int level : {1, 2}) {
            writer.startWritingTimeLevel(level);
            if (level == 1)
                writeSet(writer, "drops");
            writer.startWritingSet("level " + std::to_string(level), KEL_FACE_ZONE);
            writer.setSizesAndMinMaxIdsForSet({1}, {4}, {4});
            writer.startWritingIdsForSet();
            const unsigned64 id = 4;
            writer.setIdsForSetInRange(1, 1, &id, 1);
            writer.endWritingIdsForSet();
            writer.endWritingSet();
        }
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        for (const int level : {2, 1}) {
            Names names, expected = {"drops", "level 1"};
            reader.startReadingTimeLevel(level);
            reader.getSetNames(KEL_DATA, names);
            test.same("names of sets at level " + std::to_string(level), level == 1 ? expected : Names{"level 2"},
                      names);
        }
        expectSet(test, reader, "drops");
    });
}

} // namespace

void addSetChecks(Checks& checks)
{
    checks.push_back({"sets-of-the-case", families({KEL_FAMILY_SETS}), setsOfTheCase});
    checks.push_back(
        {"sets-of-the-data", families({KEL_FAMILY_SETS, KEL_FAMILY_TIME_LEVELS, KEL_FAMILY_PHASES}), setsOfTheData});
}

} // namespace meridyn::conformance
