#include "core/MessageStorage.h"
#include "support/Captured.h"
#include "support/OpenBase.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

namespace meridyn {

using Texts = std::vector<std::string>;

static const auto unknownType = static_cast<KelMessage::Type>(7);

static void post(KelBase& base, const KelMessage& message)
{
    base.getMessageRegistrar()->registerMessage(message);
}

/// A store that shows what derived stores see.
class OpenStorage : public MessageStorage {
public:
    using MessageStorage::_resetPending;
    using MessageStorage::count;
};

TEST(Message, KeepsItsFields)
{
    const KelMessage message(unknownType, "text\n", "operation");
    EXPECT_EQ(message.getType(), 7);
    EXPECT_EQ(message.getMessage(), "text\n");
    EXPECT_EQ(message.getFunction(), "operation");
}

TEST(Message, CopiesCarryAllFields)
{
    const KelMessage original(KelMessage::KEL_MESSAGE_INTERNAL, "text", "operation");
    const KelMessage copy(original);
    KelMessage assigned(KelMessage::KEL_MESSAGE_FATAL, "", "");
    assigned = original;
    for (const KelMessage* message : {&copy, static_cast<const KelMessage*>(&assigned)}) {
        EXPECT_EQ(message->getType(), KelMessage::KEL_MESSAGE_INTERNAL);
        EXPECT_EQ(message->getMessage(), "text");
        EXPECT_EQ(message->getFunction(), "operation");
    }
}

template <class Record>
static void expectSeverity(int type)
{
    static_assert(std::is_base_of_v<KelMessage, Record> && std::has_virtual_destructor_v<Record>);
    const Record record("text", "operation");
    EXPECT_EQ(record.getType(), type);
    EXPECT_EQ(record.getMessage(), "text");
    EXPECT_EQ(record.getFunction(), "operation");
    const Record copy(record);
    Record assigned("", "");
    assigned = record;
    for (const Record* message : {&copy, static_cast<const Record*>(&assigned)}) {
        EXPECT_EQ(message->getType(), type);
        EXPECT_EQ(message->getMessage(), "text");
        EXPECT_EQ(message->getFunction(), "operation");
    }
}

TEST(Message, SubclassesFixTheSeverity)
{
    expectSeverity<KelFatal>(0);
    expectSeverity<KelError>(1);
    expectSeverity<KelWarning>(2);
    expectSeverity<KelInfo>(3);
    expectSeverity<KelInternal>(4);
}

TEST(Messages, FreshStoreIsEmpty)
{
    OpenBase base;
    EXPECT_FALSE(base.hasError());
    EXPECT_FALSE(base.hasWarning());
    EXPECT_FALSE(base.hasInfo());
    EXPECT_EQ(base.getErrors(true, true), Texts());
    EXPECT_EQ(base.getWarnings(true, true), Texts());
    EXPECT_EQ(base.getInfos(true, true), Texts());
}

TEST(Messages, AreGivenPerSeverityOldestFirst)
{
    OpenBase base;
    post(base, KelError("e1", "f"));
    post(base, KelWarning("w1", "f"));
    post(base, KelInfo("i1", "f"));
    post(base, KelError("e2", "f"));
    EXPECT_TRUE(base.hasError());
    EXPECT_TRUE(base.hasWarning());
    EXPECT_TRUE(base.hasInfo());
    EXPECT_EQ(base.getErrors(false, false), (Texts{"e1", "e2"}));
    EXPECT_EQ(base.getWarnings(false, false), (Texts{"w1"}));
    EXPECT_EQ(base.getInfos(false, false), (Texts{"i1"}));
}

TEST(Messages, FormattingPutsTheSeverityInFrontAndNothingElse)
{
    OpenBase base;
    post(base, KelError("text", "function"));
    post(base, KelWarning("Invalid ZoneSizeType.", "setZoneSize"));
    post(base, KelInfo("", ""));
    EXPECT_EQ(base.getErrors(true, false), (Texts{"Error:\n\ttext"}));
    EXPECT_EQ(base.getWarnings(true, false), (Texts{"Warning:\n\tInvalid ZoneSizeType."}));
    EXPECT_EQ(base.getInfos(true, false), (Texts{"Info:\n\t"}));
}

TEST(Messages, CollectingTwiceGivesTheSameTwice)
{
    OpenBase base;
    post(base, KelWarning("a", "f"));
    post(base, KelWarning("b", "f"));
    EXPECT_EQ(base.getWarnings(true, false), (Texts{"Warning:\n\ta", "Warning:\n\tb"}));
    EXPECT_EQ(base.getWarnings(true, false), (Texts{"Warning:\n\ta", "Warning:\n\tb"}));
    EXPECT_TRUE(base.hasWarning());
}

TEST(Messages, NextOneOfACollectedSeveritySweepsOnlyThatSeverity)
{
    OpenBase base;
    post(base, KelError("e", "f"));
    post(base, KelInfo("i", "f"));
    post(base, KelWarning("w1", "f"));
    base.getWarnings(true, false);
    post(base, KelError("e2", "f")); // errors were not collected: nothing is swept
    post(base, KelWarning("w2", "f"));
    post(base, KelWarning("w3", "f")); // swept once only
    EXPECT_EQ(base.getWarnings(false, false), (Texts{"w2", "w3"}));
    EXPECT_EQ(base.getErrors(false, false), (Texts{"e", "e2"}));
    EXPECT_EQ(base.getInfos(false, false), (Texts{"i"}));
}

TEST(Messages, ErrorAfterCollectingErrorsIsTheOnlyOne)
{
    OpenBase base;
    post(base, KelError("old 1", "f"));
    post(base, KelError("old 2", "f"));
    base.getErrors(false, false);
    post(base, KelError("new", "f"));
    EXPECT_EQ(base.getErrors(false, false), (Texts{"new"}));
}

TEST(Messages, CollectingAnEmptyStoreMarksTheSeverityButLosesNothing)
{
    OpenBase base;
    EXPECT_EQ(base.getErrors(false, false), Texts());
    post(base, KelError("first", "f"));
    post(base, KelError("second", "f"));
    EXPECT_EQ(base.getErrors(false, false), (Texts{"first", "second"}));
}

TEST(Messages, ClearingEmptiesOneSeverityAtOnce)
{
    OpenBase base;
    post(base, KelInfo("i", "f"));
    post(base, KelError("e", "f"));
    EXPECT_EQ(base.getInfos(false, true), (Texts{"i"}));
    EXPECT_FALSE(base.hasInfo());
    EXPECT_TRUE(base.hasError());
    post(base, KelInfo("j", "f"));
    post(base, KelInfo("k", "f")); // clearing dropped the mark, too
    EXPECT_EQ(base.getInfos(false, false), (Texts{"j", "k"}));
}

TEST(Messages, OtherTypesAreKeptAndNotGiven)
{
    OpenBase base;
    post(base, KelMessage(unknownType, "odd", "f"));
    post(base, KelFatal("fatal", "f"));
    post(base, KelInternal("internal", "f"));
    EXPECT_FALSE(base.hasError() || base.hasWarning() || base.hasInfo());
    EXPECT_EQ(
        base.getErrors(true, true).size() + base.getWarnings(true, true).size() + base.getInfos(true, true).size(), 0u);
}

TEST(Messages, RegistrarIsTheSameForTheLifeOfTheObject)
{
    const OpenBase base;
    EXPECT_NE(base.getMessageRegistrar(), nullptr);
    EXPECT_EQ(base.getMessageRegistrar(), base.getMessageRegistrar());
}

/// A sink of a tool's own.
class Sink : public KelMessageRegistrar {
public:
    void registerMessage(const KelMessage& message) override { texts.push_back(message.getMessage()); }
    Texts texts;
};

TEST(Messages, SinksOfToolsCanBeCopied)
{
    Sink first;
    first.registerMessage(KelInfo("one", ""));
    Sink copy(first), assigned;
    assigned = copy;
    assigned.registerMessage(KelInfo("two", ""));
    EXPECT_EQ(first.texts, Texts{"one"});
    EXPECT_EQ(copy.texts, Texts{"one"});
    EXPECT_EQ(assigned.texts, (Texts{"one", "two"}));
}

TEST(Messages, AreKeptWithoutLimit)
{
    OpenBase base;
    const std::string longText(1 << 20, 'x');
    post(base, KelError(longText, "f"));
    for (int i = 0; i < 20000; ++i) {
        post(base, KelError("e", "f"));
    }
    const Texts errors = base.getErrors(false, false);
    ASSERT_EQ(errors.size(), 20001u);
    EXPECT_EQ(errors.front(), longText);
}

TEST(Messages, ReportingPrintsNothing)
{
    OpenBase base;
    EXPECT_EQ(printedBy([&] {
                  post(base, KelFatal("f", "f"));
                  base.getErrors(true, true);
              }),
              "");
}

TEST(MessageStore, FormatsEveryType)
{
    const struct {
        int type;
        const char* formatted;
    } rows[] = {{0, "Fatal:\n\tt"},   {1, "Error:\n\tt"},    {2, "Warning:\n\tt"},
                {3, "Info:\n\tt"},    {4, "Internal:\n\tt"}, {5, "Unknown:\n\tt"},
                {7, "Unknown:\n\tt"}, {-1, "Unknown:\n\tt"}, {2147483647, "Unknown:\n\tt"}};
    for (const auto& row : rows) {
        MessageStorage store;
        store.registerMessage(KelMessage(static_cast<KelMessage::Type>(row.type), "t", "f"));
        EXPECT_TRUE(store.hasMessages(row.type)) << row.type;
        EXPECT_EQ(store.collectMessages(row.type, true), (Texts{row.formatted})) << row.type;
    }
}

TEST(MessageStore, OddTypesAreSweptLikeTheOthers)
{
    OpenStorage store;
    for (const int type : {0, 4, 7}) {
        store.registerMessage(KelMessage(static_cast<KelMessage::Type>(type), "old", "f"));
        store.collectMessages(type, false);
        store.registerMessage(KelMessage(static_cast<KelMessage::Type>(type), "new", "f"));
        EXPECT_EQ(store.collectMessages(type, false), (Texts{"new"})) << type;
    }
    EXPECT_EQ(store.count(), 3u);
}

TEST(MessageStore, CountFollowsTheList)
{
    OpenStorage store;
    EXPECT_EQ(store.count(), 0u);
    store.registerMessage(KelError("a", "f"));
    store.registerMessage(KelWarning("b", "f"));
    store.registerMessage(KelError("c", "f"));
    EXPECT_EQ(store.count(), 3u);
    store.removeMessages(1);
    EXPECT_EQ(store.count(), 1u);
    store.removeMessages(1);
    EXPECT_EQ(store.count(), 1u);
}

TEST(MessageStore, PendingResetEmptiesEverythingOnce)
{
    OpenStorage store;
    store.registerMessage(KelError("e", "f"));
    store.registerMessage(KelInfo("i", "f"));
    store.collectMessages(1, false);
    store._resetPending = true;
    store.registerMessage(KelWarning("w", "f"));
    EXPECT_EQ(store.count(), 1u);
    EXPECT_FALSE(store._resetPending);
    EXPECT_FALSE(store.hasMessages(1));
    EXPECT_FALSE(store.hasMessages(3));
    store.registerMessage(KelError("a", "f"));
    store.registerMessage(KelError("b", "f")); // the marks are gone as well: nothing is swept
    EXPECT_EQ(store.collectMessages(1, false), (Texts{"a", "b"}));
    EXPECT_EQ(store.collectMessages(2, false), (Texts{"w"}));
}

TEST(MessageStore, PendingResetForgetsTheMarkOfTheRecordThatCarriesItOut)
{
    OpenStorage store;
    store.collectMessages(1, false);
    store._resetPending = true;
    store.registerMessage(KelError("a", "f"));
    store.registerMessage(KelError("b", "f")); // still marked, it would sweep the one before
    EXPECT_EQ(store.collectMessages(1, false), (Texts{"a", "b"}));
}

TEST(MessageStore, RemovingTheLastMarkTakesAPendingResetBack)
{
    OpenStorage store;
    store.registerMessage(KelError("e", "f"));
    store.collectMessages(1, false);
    EXPECT_TRUE(store.collectMessages(2, false).empty()); // nothing to collect, and marked all the same
    store._resetPending = true;
    store.removeMessages(1);
    EXPECT_TRUE(store._resetPending); // 2 is still marked
    store.removeMessages(2);
    EXPECT_FALSE(store._resetPending);
}

TEST(MessageStore, RemovingWithoutMarksTakesAPendingResetBack)
{
    OpenStorage store;
    store.registerMessage(KelInfo("i", "f"));
    store._resetPending = true;
    store.removeMessages(1);
    EXPECT_FALSE(store._resetPending);
    EXPECT_EQ(store.count(), 1u);
}

} // namespace meridyn
