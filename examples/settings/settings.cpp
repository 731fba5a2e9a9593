// Builds the settings of a solver, prints them, writes them as XML, reads that back and changes a value.
#include "KelSetting.h"

#include <iostream>
#include <string>
#include <vector>

using meridyn::KelSetting;
using meridyn::KelSettingAttribute;

namespace {

KelSetting makeSettings()
{
    KelSetting solver = KelSetting::get("solver"); // a root: this handle owns the tree
    solver.getAttributeBool("steady", true) = true;
    solver.getAttributeInt("iterations", true) = 250;
    solver.getAttributeString("scheme", true) = "coupled";

    // Groups on the way are made as they are needed.
    solver.getAttributeDouble("models/turbulence/intensity", true) = 0.05;
    solver.getAttributeStringVector("models/turbulence/walls", true) = std::vector<std::string>{"blade", "hub"};

    // A handle over a group belongs to the tree and owns nothing.
    const KelSetting energy = solver.getGroup("models/energy", true);
    energy.getAttributeDoubleVector("limits", true) = std::vector<double>{1.0, 5000.0};
    return solver; // the ownership moves out
}

void changeIntensity(const KelSetting& solver, double intensity)
{
    const KelSetting turbulence = solver.group("models").group("turbulence");
    KelSettingAttribute value = turbulence.attribute("intensity");
    std::cout << "intensity was " << value.toDouble() << ", is ";
    value = intensity;
    std::cout << value.toString() << '\n';

    // A value keeps its type: what does not fit goes nowhere.
    value = "high";
    std::cout << "after assigning a text it is " << value.toString() << '\n';
}

} // namespace

int main()
{
    const KelSetting solver = makeSettings();
    std::cout << solver.dump(true, false) << '\n';

    const std::string xml = solver.toSettingString();
    std::cout << xml << '\n';

    const KelSetting copy = KelSetting::fromSettingString(xml); // a tree of its own
    if (!copy) {
        std::cerr << "the settings do not read back\n";
        return 1;
    }
    changeIntensity(copy, 0.1);
    std::cout << "the first tree still has "
              << solver.group("models").group("turbulence").attribute("intensity").toString() << '\n';

    const KelSetting damaged = KelSetting::fromSettingString(xml.substr(0, xml.size() / 2));
    std::cout << "half of the text reads as " << (damaged ? "a tree" : "an invalid setting") << '\n';
    return 0;
}
