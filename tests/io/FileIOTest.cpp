#include "KelFileIO.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace meridyn {
namespace {

class OpenFileIO : public KelFileIO {
public:
    using KelFileIO::getDataClasses;
    using KelFileIO::getFile;
    using KelFileIO::setFileVersion;
};

struct Version {
    int major = 77;
    int minor = 77;
    int patch = 77;

    bool operator==(const Version& other) const
    {
        return major == other.major && minor == other.minor && patch == other.patch;
    }
};

std::ostream& operator<<(std::ostream& out, const Version& version)
{
    return out << version.major << ' ' << version.minor << ' ' << version.patch;
}

TEST(FileIO, KeepsANamePerDataClass)
{
    OpenFileIO files;
    EXPECT_EQ(files.getFile(KEL_CASE), "");
    EXPECT_TRUE(files.getDataClasses().empty());
    files.setFile("b.data", KEL_DATA);
    files.setFile("a.case", KEL_CASE);
    files.setFile("c.case", KEL_CASE);
    EXPECT_EQ(files.getFile(KEL_CASE), "c.case");
    EXPECT_EQ(files.getFile(KEL_DATA), "b.data");
    EXPECT_EQ(files.getDataClasses(), (std::vector<KelDataClass>{KEL_CASE, KEL_DATA}));
}

TEST(FileIO, AskingForANameDoesNotMakeOne)
{
    OpenFileIO files;
    files.getFile(KEL_DATA);
    EXPECT_TRUE(files.getDataClasses().empty());
    files.setFile("", KEL_DATA);
    EXPECT_EQ(files.getDataClasses(), std::vector<KelDataClass>{KEL_DATA}) << "an empty name is a name";
}

TEST(FileIO, AnyNumberIsADataClass)
{
    OpenFileIO files;
    files.setFile("x", KelDataClass(7));
    files.setFile("y", KelDataClass(-1));
    EXPECT_EQ(files.getDataClasses(), (std::vector<KelDataClass>{KelDataClass(-1), KelDataClass(7)}));
}

TEST(FileIO, VersionTextNeedsALeadingDigit)
{
    const struct {
        const char* stored;
        bool known;
    } rows[] = {{"22.1", true}, {"9", true},    {"0", true},   {"rev2", false},
                {"", false},    {" 22", false}, {"-1", false}, {"\xb2", false}};
    for (const auto& row : rows) {
        OpenFileIO files;
        files.setFileVersion(KEL_CASE, "17");
        files.setFileVersion(KEL_CASE, row.stored);
        std::string version = "old";
        EXPECT_EQ(files.getFileVersion(KEL_CASE, version), row.known) << row.stored;
        EXPECT_EQ(version, row.known ? row.stored : "Unknown");
    }
    std::string version;
    EXPECT_FALSE(OpenFileIO().getFileVersion(KEL_CASE, version));
    EXPECT_EQ(version, "Unknown");
}

TEST(FileIO, VersionNumbers)
{
    const struct {
        const char* stored;
        Version expected;
    } rows[] = {
        {"22.1", {22, 1, 0}},       {"17.2.1-beta", {17, 2, 1}},
        {"4", {4, 0, 0}},           {"4.1", {4, 1, 0}},
        {"4.1.2.3", {4, 1, 2}},     {"4rc.1x.2", {4, 1, 2}},
        {"007.010.08", {7, 10, 8}}, {"4. 5.\t6", {4, 5, 6}},
        {"4.-1.+2", {4, -1, 2}},    {"2147483647.2147483647.-2147483648", {2147483647, 2147483647, -2147483647 - 1}}};
    for (const auto& row : rows) {
        OpenFileIO files;
        files.setFileVersion(KEL_DATA, row.stored);
        Version version;
        EXPECT_TRUE(files.getFileVersion(KEL_DATA, version.major, version.minor, version.patch)) << row.stored;
        EXPECT_EQ(version, row.expected) << row.stored;
    }
}

TEST(FileIO, AnUnknownVersionIsMinusOneInAllParts)
{
    OpenFileIO files;
    files.setFileVersion(KEL_DATA, "rev2");
    for (const KelDataClass dataClass : {KEL_CASE, KEL_DATA}) {
        Version version;
        EXPECT_FALSE(files.getFileVersion(dataClass, version.major, version.minor, version.patch));
        EXPECT_EQ(version, (Version{-1, -1, -1}));
    }
}

/// What the numeric form throws, and the numbers it leaves.
template <class Exception>
std::string thrownBy(const char* stored, Version& version)
{
    OpenFileIO files;
    files.setFileVersion(KEL_DATA, stored);
    try {
        files.getFileVersion(KEL_DATA, version.major, version.minor, version.patch);
    } catch (const Exception& problem) {
        return problem.what();
    }
    return "nothing";
}

TEST(FileIO, APartWithoutANumberThrows)
{
    const struct {
        const char* stored;
        Version left;
    } rows[] = {{"4.", {4, 0, 0}},    {"4.x", {4, 0, 0}},   {"4..1", {4, 0, 0}}, {"4.1.", {4, 1, 0}},
                {"4.1.x", {4, 1, 0}}, {"4.+-1", {4, 0, 0}}, {"4.+", {4, 0, 0}},  {"4. ", {4, 0, 0}}};
    for (const auto& row : rows) {
        Version version;
        EXPECT_EQ(thrownBy<std::invalid_argument>(row.stored, version), "invalid stoi argument") << row.stored;
        EXPECT_EQ(version, row.left) << row.stored;
    }
}

TEST(FileIO, APartBeyondAnIntThrows)
{
    const struct {
        const char* stored;
        Version left;
    } rows[] = {{"2147483648", {-1, -1, -1}},
                {"99999999999999999999999", {-1, -1, -1}},
                {"4.2147483648", {4, 0, 0}},
                {"4.-2147483649", {4, 0, 0}},
                {"4.1.99999999999", {4, 1, 0}}};
    for (const auto& row : rows) {
        Version version;
        EXPECT_EQ(thrownBy<std::out_of_range>(row.stored, version), "stoi argument out of range") << row.stored;
        EXPECT_EQ(version, row.left) << row.stored;
    }
}

/// A format that answers the version itself.
class OwnVersion : public OpenFileIO {
public:
    using KelFileIO::getFileVersion;
    bool getFileVersion(KelDataClass, std::string& version) const override
    {
        version = "3.2.1";
        return true;
    }
};

TEST(FileIO, TheNumbersComeFromTheTextFormOfTheFormat)
{
    const OwnVersion files;
    Version version;
    EXPECT_TRUE(files.getFileVersion(KEL_CASE, version.major, version.minor, version.patch));
    EXPECT_EQ(version, (Version{3, 2, 1}));
}

TEST(FileIO, CopiesAreIndependent)
{
    OpenFileIO first;
    first.setFile("a", KEL_CASE);
    first.setFileVersion(KEL_CASE, "1");
    OpenFileIO copy(first);
    OpenFileIO assigned;
    assigned.setFile("z", KEL_DATA);
    assigned = first;
    first.setFile("b", KEL_CASE);
    first.setFileVersion(KEL_CASE, "2");
    std::string version;
    EXPECT_EQ(copy.getFile(KEL_CASE), "a");
    EXPECT_TRUE(copy.getFileVersion(KEL_CASE, version));
    EXPECT_EQ(version, "1");
    EXPECT_EQ(assigned.getFile(KEL_CASE), "a");
    EXPECT_EQ(assigned.getFile(KEL_DATA), "");
}

} // namespace
} // namespace meridyn
