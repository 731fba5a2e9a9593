#include "KelSourceLedger.h"

#include "KelFormatProvider.h"

#include <gtest/gtest.h>

#include <memory>

namespace meridyn {
namespace {

class Reader : public KelFormatProvider {
public:
    using KelFormatProvider::noteNotRead;
    using KelFormatProvider::warnOfSource;

protected:
    bool openData(KelDataClass dataClass, const std::string& file) override
    {
        noteNotRead(dataClass, {KEL_FAMILY_LOG, file, KelNotRead::NotOpened, ""});
        return true;
    }
};

std::string textOf(const std::vector<KelSourceItem>& items)
{
    std::string text;
    for (const KelSourceItem& item : items)
        text +=
            formatFamilyName(item.family) + "|" + item.place + "|" + notReadName(item.reason) + "|" + item.text + "\n";
    return text;
}

TEST(SourceLedger, IsFoundOnAReaderOfOurFormats)
{
    const std::unique_ptr<KelProvider> reader = std::make_unique<Reader>();
    const auto* ledger = dynamic_cast<const KelSourceLedger*>(reader.get());
    ASSERT_NE(ledger, nullptr);
    EXPECT_TRUE(ledger->notHandedOver(KEL_CASE).empty());
    EXPECT_EQ(ledger->storedType(KelArray::Coordinates), -1);
    EXPECT_FALSE(ledger->elementsWithValues(KelArray::FaceShadows, 1, 9).has_value());
    const KelDerived derived = ledger->derived();
    for (const bool size : derived.sizes)
        EXPECT_FALSE(size);
    EXPECT_FALSE(derived.adjacency);
    EXPECT_TRUE(derived.arrays.empty());
}

/// A reader whose data lie at two levels and at none.
class LevelReader : public Reader {
public:
    using KelFormatProvider::addTimeLevel;
    using KelFormatProvider::chosenLevel;
};

TEST(SourceLedger, ChoosesWhatLiesAtNoLevel)
{
    LevelReader reader;
    EXPECT_FALSE(reader.chosenLevel().has_value());
    reader.addTimeLevel(0);
    reader.addTimeLevel(7);
    reader.startReadingTimeLevel(7);
    EXPECT_EQ(reader.chosenLevel().value_or(-1), 7);
    reader.chooseNoLevel(true);
    EXPECT_FALSE(reader.chosenLevel().has_value());
    EXPECT_EQ(reader.getTimeLevel(), 7);
    reader.chooseNoLevel(false);
    EXPECT_EQ(reader.chosenLevel().value_or(-1), 7);
}

TEST(SourceLedger, NotesEachItemOnceAndByDataClass)
{
    Reader reader;
    const KelSourceItem item{KEL_FAMILY_VARIABLES, "0.5/T", KelNotRead::NotReadable, "expected '(', found ']'"};
    reader.noteNotRead(KEL_DATA, item);
    reader.noteNotRead(KEL_DATA, item);
    KelSourceItem other = item; // differs in one thing at a time
    other.family = KEL_FAMILY_SETS;
    reader.noteNotRead(KEL_DATA, other);
    other = item;
    other.place = "0.5/U";
    reader.noteNotRead(KEL_DATA, other);
    other = item;
    other.reason = KelNotRead::NotKnown;
    reader.noteNotRead(KEL_DATA, other);
    other = item;
    other.text = "";
    reader.noteNotRead(KEL_DATA, other);
    EXPECT_EQ(textOf(reader.notHandedOver(KEL_DATA)),
              "variables|0.5/T|cannot be read|expected '(', found ']'\n"
              "sets|0.5/T|cannot be read|expected '(', found ']'\n"
              "variables|0.5/U|cannot be read|expected '(', found ']'\n"
              "variables|0.5/T|not known to the reader|expected '(', found ']'\n"
              "variables|0.5/T|cannot be read|\n");
    EXPECT_EQ(textOf(reader.notHandedOver(KEL_CASE)), "");
    EXPECT_EQ(textOf(reader.notHandedOver(static_cast<KelDataClass>(7))), "");
}

TEST(SourceLedger, StartsAnewWhenItsClassIsOpened)
{
    Reader reader;
    reader.noteNotRead(KEL_CASE, {KEL_FAMILY_COUNT, "old", KelNotRead::NoPlace, ""});
    reader.noteNotRead(KEL_DATA, {KEL_FAMILY_COUNT, "data", KelNotRead::Outranked, ""});
    EXPECT_TRUE(reader.startReading("new", KEL_CASE));
    EXPECT_EQ(textOf(reader.notHandedOver(KEL_CASE)), "log|new|never opened|\n");
    EXPECT_EQ(textOf(reader.notHandedOver(KEL_DATA)), "|data|another one was read|\n");
}

TEST(SourceLedger, AWarningIsNotedAndPosted)
{
    Reader reader;
    reader.warnOfSource(KEL_DATA, {KEL_FAMILY_VARIABLES, "1/p", KelNotRead::Adjusted, "units in words"}, "openData");
    EXPECT_EQ(textOf(reader.notHandedOver(KEL_DATA)), "variables|1/p|not read as it stands|units in words\n");
    const std::vector<std::string> warnings = reader.getWarnings(false, false);
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_NE(warnings.front().find("1/p: units in words"), std::string::npos) << warnings.front();
}

TEST(SourceLedger, HasANameForEachReason)
{
    std::set<std::string> names;
    for (int reason = 0; reason <= static_cast<int>(KelNotRead::Adjusted); ++reason)
        names.insert(notReadName(static_cast<KelNotRead>(reason)));
    EXPECT_EQ(names.size(), 6u);
    EXPECT_EQ(names.count(""), 0u);
    EXPECT_EQ(notReadName(static_cast<KelNotRead>(6)), "");
    EXPECT_EQ(notReadName(static_cast<KelNotRead>(-1)), "");
}

} // namespace
} // namespace meridyn
