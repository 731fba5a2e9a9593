#include "SetSamples.h"

namespace meridyn::conformance {

namespace {

template <class T, class Length>
void writeRaggedSetData(KelFileConsumer& writer, Case& test, const std::string& label, const std::vector<T>& values)
{
    const std::vector<Length> own = narrowed<Length>(lengths);
    test.same("values taken of ragged " + label, 3,
              writer.setVariableLengthVariableForSetData(values.data(), 3, own.data(), 3));
    test.same(
        "values taken of ragged " + label, lengthSum - 3,
        writer.setVariableLengthVariableForSetData(values.data() + 3, lengthSum - 3, own.data() + 3, memberCount - 3));
}

void writeSetData(KelFileConsumer& writer, Case& test, const std::string& name)
{
    writer.startWritingSetData(name, memberCount);
    writer.startWritingIdsForSetData();
    test.same("ids taken", 4, writer.setIdsForSetData(memberIds.data(), 4));
    test.same("ids taken", 3, writer.setIdsForSetData(memberIds.data() + 4, 3));
    writer.endWritingIdsForSetData();
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        const unsigned64 size = perMember(type);
        const std::vector<T> values = someValues<T>(memberCount * size, type);
        writer.startWritingVariableForSetData("constant " + label, size, type);
        test.same("values taken of " + label, size, writer.setVariableForSetData(values.data(), size));
        test.same("values taken of " + label, (memberCount - 1) * size,
                  writer.setVariableForSetData(values.data() + size, (memberCount - 1) * size));
        writer.endWritingVariableForSetData();

        const std::vector<T> ragged = someValues<T>(lengthSum, type + 1);
        writer.startWritingVariableLengthVariableForSetData("ragged " + label, type, lengthTypeOf(type));
        if (lengthTypeOf(type) == KEL_PLAIN_INT)
            writeRaggedSetData<T, int>(writer, test, label, ragged);
        else if (lengthTypeOf(type) == KEL_PLAIN_SHORT)
            writeRaggedSetData<T, short>(writer, test, label, ragged);
        else
            writeRaggedSetData<T, unsigned64>(writer, test, label, ragged);
        writer.endWritingVariableLengthVariableForSetData();

        const std::vector<T> block = someValues<T>(5, type + 2);
        writer.writeOtherDataForSetData("block " + label, block.data(), block.size());
    });
    writer.writeStringDataForSetData("text", "of the set data");
    writer.endWritingSetData();
}

void expectSetData(Case& test, KelFileProvider& reader, const std::string& name)
{
    unsigned64 members = 0;
    if (!test.expect(reader.startReadingSetData(name, members), "set data '" + name + "' cannot be opened"))
        return;
    test.same("members", memberCount, members);
    std::vector<unsigned64> ids = {1};
    test.expect(reader.getIdsForSetData(ids), "there are no ids");
    test.same("ids of the members", memberIds, ids);
    Names constant, ragged, blocks, texts, expected, expectedRagged, expectedBlocks;
    forTypes([&](auto* null, KelPlainDataType type, const std::string& label) {
        using T = std::remove_pointer_t<decltype(null)>;
        expected.push_back("constant " + label);
        expectedRagged.push_back("ragged " + label);
        expectedBlocks.push_back("block " + label);
        std::vector<T> values(1);
        unsigned64 size = 0;
        sameType(test, "constant " + label, type, reader.getDataTypeOfDataForSetData("constant " + label));
        test.expect(reader.getDataOfConstantLengthVarForSetData("constant " + label, values, size),
                    "constant " + label + " is not there");
        test.same("values per member of " + label, perMember(type), size);
        test.same("constant " + label, someValues<T>(memberCount * perMember(type), type), values);
        sameType(test, "ragged " + label, type, reader.getDataTypeOfDataForSetData("ragged " + label));
        sameType(test, "lengths of " + label, lengthTypeOf(type),
                 reader.getDataTypeOfSizeForSetData("ragged " + label));
        std::vector<unsigned64> foundLengths;
        test.expect(reader.getSizeOfVariableLengthVarForSetData("ragged " + label, foundLengths),
                    "lengths of " + label + " are not there");
        test.same("lengths of " + label, lengths, foundLengths);
        test.expect(reader.getDataOfVariableLengthVarForSetData("ragged " + label, values),
                    "ragged " + label + " is not there");
        test.same("ragged " + label, someValues<T>(lengthSum, type + 1), values);
        sameType(test, "block " + label, type, reader.getDataTypeOfDataForSetData("block " + label));
        test.expect(reader.getOtherDataForSetData("block " + label, values), "block " + label + " is not there");
        test.same("block " + label, someValues<T>(5, type + 2), values);
    });
    reader.getConstantLengthVariablesInSetData(constant);
    reader.getVariableLengthVariablesInSetData(ragged);
    reader.getOtherVariablesInSetData(blocks);
    reader.getStringVariablesInSetData(texts);
    test.same("variables of the set data", expected, constant);
    test.same("variables with lengths of the set data", expectedRagged, ragged);
    test.same("blocks of the set data", expectedBlocks, blocks);
    test.same("texts of the set data", Names{"text"}, texts);
    std::string text;
    test.same("length of the text", 15, reader.getStringDataForSetData("text", text));
    test.same("text of the set data", "of the set data", text);
    reader.endReadingSetData();
    test.expect(!reader.startReadingSetData("no such set", members), "set data that is not there is opened");
}

void setData(Case& test)
{
    const auto write = [&](KelFileConsumer& writer) {
        std::vector<short> phases;
        writer.setPhaseNames({"water", "coal"}, phases);
        writer.startWritingTimeLevel(1);
        writer.startWritingPhase(phases[1]);
        writeSetData(writer, test, "injection \xC3\xA4/1");
        writeSetData(writer, test, "another");
        writer.endWritingPhase();
    };
    roundTrip(test, smallMesh(), nullptr, write, [&](KelFileProvider& reader) {
        Names names;
        reader.startReadingTimeLevel(1);
        reader.startReadingPhase(1);
        reader.getSetDataNames(names);
        test.same("set data of a phase without", Names{}, names);
        reader.startReadingPhase(2);
        reader.getSetDataNames(names);
        test.same("names of set data", Names{"injection \xC3\xA4/1", "another"}, names);
        test.expect(reader.hasParticles(), "set data are no particles");
        names.clear();
        reader.getInjectionNames(names);
        test.same("names of injections", Names{"injection \xC3\xA4/1", "another"}, names);
        expectSetData(test, reader, "injection \xC3\xA4/1");
    });
}

} // namespace

void addSetDataChecks(Checks& checks)
{
    checks.push_back({"set-data", families({KEL_FAMILY_SET_DATA, KEL_FAMILY_PHASES}), setData});
}

} // namespace meridyn::conformance
