#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelFormatConformance.h"
#include "KelFormatRegistry.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace meridyn {
namespace {

struct Row {
    std::string format;
    std::string check;
};

std::ostream& operator<<(std::ostream& out, const Row& row)
{
    return out << row.format << " " << row.check;
}

/// The suite for a format, with the models below samples/<format>.
std::unique_ptr<KelFormatConformance> suiteFor(const KelFormat& format, const std::string& folder)
{
    auto suite = std::make_unique<KelFormatConformance>(format, folder);
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(KEL_TEST_DIR "/samples/" + format.name, none))
        suite->addSample(entry.path().string());
    return suite;
}

/// Every check of every registered format: a new format is tested by being registered.
std::vector<Row> allRows()
{
    std::vector<Row> rows;
    for (const KelFormat& format : KelFormatRegistry::instance().formats())
        for (const std::string& check : suiteFor(format, "")->checks())
            rows.push_back({format.name, check});
    return rows;
}

class RegisteredFormats : public ::testing::TestWithParam<Row> {};

TEST_P(RegisteredFormats, Conforms)
{
    const TemporaryFolder folder;
    const auto suite = suiteFor(*KelFormatRegistry::instance().find(GetParam().format), folder.path());
    const KelConformanceResult result = suite->run(GetParam().check);
    EXPECT_TRUE(result.passed) << result.detail;
}

INSTANTIATE_TEST_SUITE_P(Registry, RegisteredFormats, ::testing::ValuesIn(allRows()), [](const auto& row) {
    std::string name = row.param.format + "_" + row.param.check;
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return !std::isalnum(c); }, '_');
    return name;
});

TEST(RegisteredFormats, HaveChecks)
{
    for (const KelFormat& format : KelFormatRegistry::instance().formats())
        EXPECT_GT(suiteFor(format, "")->checks().size(), 7U) << format.name;
}

} // namespace
} // namespace meridyn
