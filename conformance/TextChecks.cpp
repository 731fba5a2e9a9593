#include "Checks.h"

#include "KelLocationModel.h"
#include "KelSetting.h"
#include "KelSettingAttribute.h"

namespace meridyn::conformance {

using Pairs = std::vector<std::pair<std::string, std::string>>;

const std::vector<std::string>& hostileNames()
{
    static const std::vector<std::string> names = {"plain",
                                                   "with blanks ",
                                                   " leading",
                                                   "a/b",
                                                   "a//b/",
                                                   "/",
                                                   ".",
                                                   "..",
                                                   "#1",
                                                   "key=value",
                                                   "'single'",
                                                   "\"double\"",
                                                   "back\\slash",
                                                   "new\nline",
                                                   "tab\tbed",
                                                   "{a;b}",
                                                   "<tag>&amp;",
                                                   "*?[x]",
                                                   "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x8C\x8A",
                                                   "-dash",
                                                   "100%d%s",
                                                   std::string(300, 'x')};
    return names;
}

void roundTrip(Case& test, const Mesh& mesh, const Writing& inCase, const Writing& inData, const Reading& read)
{
    const auto writer = test.writer();
    declareMesh(*writer, mesh);
    const bool done = test.write(*writer, KEL_CASE, [&] {
        writeArrays(*writer, mesh, test.format.writes, Form::Range);
        if (inCase)
            inCase(*writer);
    }) && (!inData || test.write(*writer, KEL_DATA, [&] { inData(*writer); }));
    if (!done)
        return;
    const auto reader = test.reader();
    test.read(*reader, KEL_CASE, [&] {
        if (inData)
            test.read(*reader, KEL_DATA, [&] { read(*reader); });
        else
            read(*reader);
    });
}

namespace {

Pairs hostilePairs(const std::string& group)
{
    Pairs pairs;
    const auto textOf = [&group](const std::string& name) { return "text of " + name + " in " + group; };
    for (const std::string& name : hostileNames())
        pairs.emplace_back(name, textOf(name));
    pairs.emplace_back("empty", "");
    return pairs;
}

void expectSettings(Case& test, const KelFileProvider& reader, KelDataClass dataClass, const std::string& group)
{
    std::vector<std::string> keys, expected;
    for (const auto& [key, text] : hostilePairs(group)) {
        std::string found = "left alone";
        expected.push_back(key);
        reader.getSettingString(dataClass, key, found, group);
        test.same("setting " + Case::quoted(key) + " of group " + Case::quoted(group), text, found);
    }
    reader.getSettingsKeysOfGroup(dataClass, group, keys);
    test.same("keys of group " + Case::quoted(group), expected, keys);
    std::string untouched = "left alone";
    reader.getSettingString(dataClass, "no such key", untouched, group);
    test.same("a setting that is not there", "left alone", untouched);
}

void settings(Case& test)
{
    const std::vector<std::string> groups = {"solver", "a/b", "group with 'quotes'", "\xC3\xA4"};
    const auto write = [&](KelDataClass dataClass) {
        return [&groups, dataClass](KelFileConsumer& writer) {
            for (const std::string& group : groups)
                writer.writeSettingStrings(hostilePairs(group), dataClass, group);
            writer.writeGenericSettings(dataClass, "Tool", "conformance");
        };
    };
    roundTrip(test, smallMesh(), write(KEL_CASE), write(KEL_DATA), [&](KelFileProvider& reader) {
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            for (const std::string& group : groups)
                expectSettings(test, reader, dataClass, group);
            std::vector<std::string> found, keys;
            reader.getSettingsGroups(dataClass, found);
            for (const std::string& group : groups)
                test.expect(std::find(found.begin(), found.end(), group) != found.end(),
                            "group " + Case::quoted(group) + " is not listed");
            reader.getSettingsKeys(dataClass, keys);
            for (const char* key : {"Tool", "Solver", "Version", "Origin"})
                test.expect(std::find(keys.begin(), keys.end(), key) != keys.end(),
                            std::string("'") + key + "' is not among the keys of the default group");
            std::string text;
            reader.getSettingString(dataClass, "Solver", text, "settings");
            test.same("the setting 'Solver'", "MERIDYN_GENERIC", text);
        }
    });
}

KelSetting sampleSetting()
{
    KelSetting setting = KelSetting::get("Common");
    setting.getAttributeString("name", true);
    setting.getAttributeDouble("mesh/size", true);
    setting.getAttributeStringVector("mesh/<parts> & 'more'", true);
    return setting;
}

void settingTrees(Case& test)
{
    const auto write = [](KelFileConsumer& writer) {
        KelSetting setting = sampleSetting();
        writer.writeSetting(setting, "Common", KEL_CASE, "settings");
    };
    roundTrip(test, smallMesh(), write, nullptr, [&](KelFileProvider& reader) {
        const KelSetting found = reader.getSetting("Common", KEL_CASE, "settings");
        if (test.expect(static_cast<bool>(found), "the settings tree is not there"))
            test.same("the settings tree", sampleSetting().toSettingString(), found.toSettingString());
        test.expect(!reader.getSetting("No such tree", KEL_CASE, "settings"),
                    "there is a settings tree that was not written");
    });
}

void logs(Case& test)
{
    Pairs first = {{"start", "at noon"}, {"start", "again"}, {"", ""}}, all = first;
    for (const std::string& name : hostileNames())
        all.emplace_back(name, name + name);
    const auto write = [&](KelDataClass dataClass) {
        return [&, dataClass](KelFileConsumer& writer) {
            writer.log(first, dataClass);
            writer.log({all.begin() + static_cast<std::ptrdiff_t>(first.size()), all.end()}, dataClass);
        };
    };
    roundTrip(test, smallMesh(), write(KEL_CASE), write(KEL_DATA), [&](KelFileProvider& reader) {
        for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
            Pairs found = {{"replaced", ""}};
            reader.getLog(dataClass, found);
            test.expect(found == all, "the log has " + std::to_string(found.size()) + " entries, expected " +
                                          std::to_string(all.size()) + ", or others");
        }
    });
}

void locations(Case& test)
{
    KelLocationModel model;
    int part = 0, other = 0, body = 0, face = 0, use = 0, composite = 0;
    model.createPart(3, "gone", other);
    model.createPart(3, "machine \"A\"/1", part);
    model.deletePart(other); // ids are not given again
    model.createBody(part, "core\nbody", body);
    model.setBodyZones(body, 0, {10, 11});
    model.setBodyZones(body, 7, {-3});
    model.createFace(part, "rim", face);
    model.setFaceZones(face, 0, {3, 4});
    model.createFaceUse(body, face, 1, use);
    model.setFaceUseZoneSides(use, 0, {-3, 4});
    model.createComposite(part, "\xC3\xA4", composite);
    const auto write = [&](KelFileConsumer& writer) { writer.setLocationModel(&model); };
    roundTrip(test, smallMesh(), write, nullptr, [&](KelFileProvider& reader) {
        test.same("state of the location model", model.state(), reader.getLocationModel()->state());
    });
}

} // namespace

void addTextChecks(Checks& checks)
{
    checks.push_back({"settings", families({KEL_FAMILY_SETTINGS}), settings});
    checks.push_back({"settings-trees", families({KEL_FAMILY_SETTINGS}), settingTrees});
    checks.push_back({"log", families({KEL_FAMILY_LOG}), logs});
    checks.push_back({"locations", families({KEL_FAMILY_LOCATIONS}), locations});
}

} // namespace meridyn::conformance
