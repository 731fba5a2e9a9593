#include "KelFileConsumer.h"
#include "KelFileProvider.h"
#include "KelSolutionModel.h"

#include <gtest/gtest.h>

namespace meridyn {
namespace {

using Calls = std::vector<std::string>;

/// A file writer that notes what the frame calls, in order.
class NotingConsumer : public KelFileConsumer {
public:
    using KelBase::getApplicationName;
    using KelBase::solutionModel;
    using KelFileConsumer::writeCommonSettings;

    bool openData(KelDataClass dataClass, const std::string& fileName) override
    {
        calls.push_back("open " + std::to_string(dataClass) + " " + fileName);
        return answer;
    }
    bool closeData(KelDataClass dataClass) override
    {
        calls.push_back("close " + std::to_string(dataClass));
        return answer;
    }
    void writeMeshAttributes() const override { calls.push_back("attributes"); }
    void writeSettingStrings(const std::vector<std::pair<std::string, std::string>>& pairs, KelDataClass dataClass,
                             const std::string& group) const override
    {
        std::string text = "settings " + std::to_string(dataClass) + " " + group + ":";
        for (const auto& [key, value] : pairs)
            text += " [" + key + "=" + value + "]";
        calls.push_back(text);
    }

    bool answer = true;
    mutable Calls calls;
};

class NotingProvider : public KelFileProvider {
public:
    using KelBase::solutionModel;

    bool openData(KelDataClass dataClass, const std::string& fileName) override
    {
        calls.push_back("open " + std::to_string(dataClass) + " " + fileName);
        return answer;
    }
    bool closeData(KelDataClass dataClass) override
    {
        calls.push_back("close " + std::to_string(dataClass));
        return answer;
    }

    bool answer = true;
    Calls calls;
};

std::string commonSettings(int dataClass, const std::string& solver, const std::string& application)
{
    return "settings " + std::to_string(dataClass) + " settings: [Solver=" + solver +
           "] [Version=25.1] [Origin=" + KelVersion::meridynApplicationVersion(application) + "]";
}

TEST(FileConsumer, WithoutAFileNameNothingIsCalled)
{
    NotingConsumer writer;
    EXPECT_FALSE(writer.startWriting(KEL_CASE));
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    writer.setFile("x.data", KEL_DATA);
    EXPECT_FALSE(writer.startWriting(KEL_CASE)) << "the name of another data class";
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_EQ(writer.calls, Calls{});
}

TEST(FileConsumer, AnEmptyNameIsNone)
{
    NotingConsumer writer;
    EXPECT_FALSE(writer.startWriting("", KEL_CASE));
    EXPECT_FALSE(writer.endWriting(KEL_CASE));
    EXPECT_EQ(writer.calls, Calls{});
}

TEST(FileConsumer, OpensAndClosesTheFileOfTheDataClass)
{
    NotingConsumer writer;
    EXPECT_TRUE(writer.startWriting("x.case", KEL_CASE));
    EXPECT_TRUE(writer.endWriting(KEL_CASE));
    EXPECT_TRUE(writer.startWriting(KEL_CASE)) << "the name stays";
    EXPECT_EQ(writer.calls, (Calls{"open 0 x.case", "attributes", commonSettings(0, "MERIDYN_GENERIC", "Unknown"),
                                   "close 0", "open 0 x.case"}));
}

/// A file frame with starts and file names of its own.
template <class Frame>
class WithOwnStart : public Frame {
public:
    Calls calls;

    void setFile(const std::string& fileName, KelDataClass dataClass) override
    {
        calls.push_back("name " + fileName + " " + std::to_string(dataClass));
    }

protected:
    bool start(KelDataClass dataClass)
    {
        calls.push_back("start " + std::to_string(dataClass));
        return true;
    }
};

class OwnWriter : public WithOwnStart<KelFileConsumer> {
public:
    using KelFileConsumer::startWriting;
    bool startWriting(KelDataClass dataClass) override { return start(dataClass); }
};

class OwnReader : public WithOwnStart<KelFileProvider> {
public:
    using KelFileProvider::startReading;
    bool startReading(KelDataClass dataClass) override { return start(dataClass); }
};

TEST(FileConsumer, TheNamedStartGoesThroughTheVirtualTable)
{
    OwnWriter writer;
    EXPECT_TRUE(writer.startWriting("x.data", KEL_DATA));
    EXPECT_EQ(writer.calls, (Calls{"name x.data 1", "start 1"}));
}

TEST(FileProvider, TheNamedStartGoesThroughTheVirtualTable)
{
    OwnReader reader;
    EXPECT_TRUE(reader.startReading("x.data", KEL_DATA));
    EXPECT_EQ(reader.calls, (Calls{"name x.data 1", "start 1"}));
}

TEST(FileConsumer, TheAnswersAreThoseOfTheFormat)
{
    NotingConsumer writer;
    writer.answer = false;
    EXPECT_FALSE(writer.startWriting("x.data", KEL_DATA));
    EXPECT_FALSE(writer.endWriting(KEL_DATA)) << "closes although nothing was opened";
    EXPECT_EQ(writer.calls.back(), "close 1");
    EXPECT_EQ(writer.calls.size(), 4U);
}

TEST(FileConsumer, CommonSettingsNameSolverAndApplication)
{
    NotingConsumer writer;
    EXPECT_EQ(writer.getApplicationName(), "Unknown");
    writer.setApplicationName("My Solver");
    writer.setSolverType("OTHER");
    writer.writeCommonSettings(KEL_DATA);
    writer.writeGenericSettings(KEL_CASE, "a", "b");
    EXPECT_EQ(writer.calls, (Calls{commonSettings(1, "OTHER", "My Solver"), "settings 0 settings: [a=b]"}));
}

TEST(FileConsumer, TheBareOnePrintsAndAnswersNo)
{
    KelFileConsumer bare;
    ::testing::internal::CaptureStdout();
    EXPECT_FALSE(bare.startWriting("x.case", KEL_CASE));
    EXPECT_FALSE(bare.endWriting(KEL_CASE));
    bare.writeGenericSettings(KEL_CASE, "a", "b");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "  3 key-value pairs.\n  1 key-value pairs.\n");
}

TEST(FileConsumer, SwitchesDoNothing)
{
    KelFileConsumer bare;
    ::testing::internal::CaptureStdout();
    bare.setAppendOn(true);
    bare.setCombineContinuousZones(true);
    bare.setOverrideSettingsOn(true);
    bare.setWriteSettingsOn(false);
    EXPECT_FALSE(bare.isWritingData());
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
}

TEST(FileConsumer, DatasetNames)
{
    NotingConsumer writer;
    short phase = 0;
    int variable = 0;
    writer.addPhaseName("air", phase);
    writer.addPhaseVariable(phase, "p", variable);
    EXPECT_FALSE(writer.setDatasetNameOfPhase(9, "x"));
    EXPECT_FALSE(writer.setDatasetNameOfVariable(9, "x"));
    EXPECT_FALSE(writer.setDatasetNameOfPhase(phase, ""));
    EXPECT_TRUE(writer.setDatasetNameOfPhase(phase, "phase-1"));
    EXPECT_TRUE(writer.setDatasetNameOfVariable(variable, "SV_P"));
    std::string name;
    writer.solutionModel()->getDatasetNameOfPhase(phase, name);
    EXPECT_EQ(name, "phase-1");
    writer.solutionModel()->getDatasetNameOfVariable(variable, name);
    EXPECT_EQ(name, "SV_P");
}

TEST(FileConsumer, HasOneBase)
{
    KelFileConsumer writer;
    const KelBase& asBase = writer;
    writer.setMeshSize(KEL_MESH_DIMENSION, 2);
    unsigned64 dimension = 0;
    asBase.getMeshSize(KEL_MESH_DIMENSION, dimension);
    EXPECT_EQ(dimension, 2U);
    EXPECT_NE(dynamic_cast<KelFileIO*>(static_cast<KelBase*>(&writer)), nullptr);
}

TEST(FileProvider, WithoutAFileNameNothingIsCalled)
{
    NotingProvider reader;
    EXPECT_FALSE(reader.startReading(KEL_CASE));
    EXPECT_FALSE(reader.endReading(KEL_CASE));
    EXPECT_FALSE(reader.startReading("", KEL_CASE));
    EXPECT_EQ(reader.calls, Calls{});
}

TEST(FileProvider, OpensAndClosesTheFileOfTheDataClass)
{
    NotingProvider reader;
    EXPECT_TRUE(reader.startReading("x.case", KEL_CASE));
    EXPECT_TRUE(reader.endReading(KEL_CASE));
    reader.answer = false;
    EXPECT_FALSE(reader.startReading(KEL_CASE));
    EXPECT_FALSE(reader.endReading(KEL_CASE)) << "closes although nothing was opened";
    EXPECT_EQ(reader.calls, (Calls{"open 0 x.case", "close 0", "open 0 x.case", "close 0"}));
}

TEST(FileProvider, TheBareOneAnswersNo)
{
    KelFileProvider bare;
    EXPECT_FALSE(bare.startReading("x.case", KEL_CASE));
    EXPECT_FALSE(bare.endReading(KEL_CASE));
}

TEST(FileProvider, DatasetNames)
{
    NotingProvider reader;
    short phase = 0;
    int variable = 0;
    reader.solutionModel()->createPhase("air", phase);
    reader.solutionModel()->createVariable(phase, "p", variable);
    std::string name = "old";
    EXPECT_FALSE(reader.getDatasetNameOfPhase(9, name));
    EXPECT_EQ(name, "old") << "an unknown phase is not asked for";
    EXPECT_TRUE(reader.getDatasetNameOfPhase(phase, name));
    EXPECT_EQ(name, "air");
    EXPECT_TRUE(reader.getDatasetNameOfVariable(variable, name));
    EXPECT_EQ(name, "p");
    EXPECT_FALSE(reader.getDatasetNameOfVariable(9, name));
}

} // namespace
} // namespace meridyn
