#include <gtest/gtest.h>

#include <tuple>

#include "records/AnsiText.h"
#include "records/CanonicalText.h"
#include "tests/support/Cases.h"
#include "tests/support/SampleRecord.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

/// The text of SampleRecord().
const std::string SampleText =
    "Date: 1/1/1970 12:00:01 AM\r\nAlarm Name: name\r\nLog Type: log\r\nSource: source\r\n"
    "Type Of Event: type\r\nCategory: category\r\nEventID: 42\r\nAccount: ACCOUNT\r\n"
    "Computer: COMPUTER\r\nDescription: \r\ntext\r\nmore";

/// Settles `alarm` and checks that reading the text, saving and loading it, and settling it again change
/// neither the record nor the text.
AlarmRecord ExpectSettled(AlarmRecord alarm, const std::string& note) {
    const std::string text = SettleMessage(alarm);
    EXPECT_EQ(StripNulls(text), text) << note << ": saving would drop bytes";
    AlarmRecord read;
    EXPECT_TRUE(ReadMessageText(text, read)) << note;
    EXPECT_EQ(read, alarm) << note;
    EXPECT_EQ(SettleMessage(read), text) << note;
    EXPECT_EQ(read, alarm) << note;
    return alarm;
}

TEST(MessageText, IsWrittenInTheFormThatIsReadAndNoOtherIsRead) {
    EXPECT_EQ(BuildMessageText(SampleRecord()), SampleText);
    const AlarmRecord before = {AlarmDate{7}, "a", "b", "c", "d", "e", 1, "f", "g", "h"};
    for (const auto& [wanted, instead] : SplitPairs(
             "Date: =date: |Date: 1=Date: x1|AM=AM\n|AM=AM\r\nx|\r\nAlarm Name: =\nAlarm Name: |"
             "\r\nAlarm Name: =\r\nAlarm Name:|\r\nLog Type: = Log Type: |Source: =Sources: |"
             "Type Of Event: =Type of Event: |Category: =|42=042|42=+42|42=-0|42=|42=42 |42=4294967296|"
             "Account: =\r\nAccount: |Computer: =\r\n|Description: \r\n=Description: ")) {
        std::string text = SampleText;
        text.replace(text.find(wanted), wanted.size(), instead);
        AlarmRecord read = before;
        EXPECT_FALSE(ReadMessageText(text, read)) << text;
        EXPECT_EQ(read, before) << text;
    }
    AlarmRecord read;
    for (std::size_t length = 0; length < SampleText.find("text"); ++length)
        EXPECT_FALSE(ReadMessageText(SampleText.substr(0, length), read)) << length;
}

TEST(MessageText, EndsTheCategoryAtTheFirstEventIDThatFits) {
    std::string text = SampleText;
    text.replace(text.find("category"), 8, "c\r\nEventID: 5\r\nEventID: -7\r\nAccount: A\r\nEventID: 8");
    AlarmRecord read;
    ASSERT_TRUE(ReadMessageText(text, read));
    EXPECT_EQ(read.Category, "c\r\nEventID: 5");
    EXPECT_EQ(read.EventID, -7);
    EXPECT_EQ(read.AccountName, "A\r\nEventID: 8\r\nEventID: 42\r\nAccount: ACCOUNT");
}

TEST(SettleMessage, GivesFieldsTheirStoredForm) {
    const std::tuple<std::string AlarmRecord::*, std::string, std::string> cases[] = {
        {&AlarmRecord::TypeOfEvent, "FAILUREAUDIT", "Failure Audit"},
        {&AlarmRecord::TypeOfEvent, " ", "questionmark"},
        {&AlarmRecord::TypeOfEvent, "S u c c", "succ"},
        {&AlarmRecord::TypeOfEvent, "warn\0ing"s, "Warning"},
        {&AlarmRecord::Computer, " K\0 "s, " K "},
        {&AlarmRecord::Description, " a\0 \0  "s, " a"},
        {&AlarmRecord::Description, " \r\n x   ", " \r\n x"},
        {&AlarmRecord::Description, "   ", ""},
    };
    for (const auto& [field, before, after] : cases) {
        AlarmRecord alarm = SampleRecord();
        alarm.*field = before;
        EXPECT_EQ(ExpectSettled(alarm, before).*field, after);
    }
}

TEST(SettleMessage, KeepsTheTextShortEnoughForTheBackup) {
    const std::tuple<std::size_t, std::size_t, std::size_t> cases[] = {
        {65'000, 65'000, 0}, {0, 60'000, 60'000}, {65'000, 65'000, 65'000}, {99'000, 1'000, 0}};
    for (const auto& [description, name, computer] : cases) {
        AlarmRecord alarm = SampleRecord();
        alarm.Description = std::string(description, 'd');
        alarm.AlarmName = std::string(name, 'n');
        alarm.Computer = std::string(computer, 'C');
        EXPECT_EQ(BuildMessageText(ExpectSettled(alarm, "long")).size(), LongestMessageText);
    }
    AlarmRecord alarm = SampleRecord();
    alarm.Description = "end" + std::string(LongestMessageText, ' ') + "beyond the limit";
    EXPECT_EQ(ExpectSettled(alarm, "blanks before the cut").Description, "end");
}

TEST(SettleMessage, CutsAFieldAtTheLabelsThatItHolds) {
    const std::string whole =
        "\r\nAlarm Name: a\r\nLog Type: b\r\nSource: c\r\nType Of Event: D E\r\nCategory: f\r\nEventID: 5\r\n"
        "Account: g\r\nComputer: h\r\nDescription: \r\ni";
    const std::vector<std::string> hostile = SplitAtBars(
        "\r\nEventID: 5\r\nAccount: x|\r\nEv\0entID: 5\r\nAcc\0ount: x|\r\nComputer: \r\nDescription: \r\n|"
        "\r\n|\r|\n|x\r\0|\0|Category: |\r\nCATEGORY: \r\ncategory: |  \r\n  |"s +
        whole);
    using Record = AlarmRecord;
    std::string Record::*const fields[] = {&Record::AlarmName,   &Record::LogType,    &Record::Source,
                                           &Record::TypeOfEvent, &Record::Category,   &Record::AccountName,
                                           &Record::Computer,    &Record::Description};
    for (const std::string& text : hostile) {
        AlarmRecord all = SampleRecord();
        for (const auto field : fields) {
            AlarmRecord alarm = SampleRecord();
            alarm.*field = text;
            ExpectSettled(alarm, text);
            all.*field = text;
        }
        all.EventID = INT32_MIN;
        ExpectSettled(all, text);
    }
}

}  // namespace
}  // namespace tallyhorn
