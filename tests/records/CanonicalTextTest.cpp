#include <gtest/gtest.h>

#include <string>

#include "records/AnsiText.h"
#include "records/CanonicalText.h"
#include "tests/support/Cases.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

const AlarmRecord Plain = {*MakeAlarmDate({2008, 8, 21, 14, 5, 9}),
                           "name",
                           "log",
                           "source",
                           "Warning",
                           "category",
                           42,
                           "ACCOUNT",
                           "COMPUTER",
                           "text\r\nmore"};

const std::string PlainText =
    "Date: 8/21/2008 2:05:09 PM\r\nAlarm Name: name\r\nLog Type: log\r\nSource: source\r\n"
    "Type Of Event: Warning\r\nCategory: category\r\nEventID: 42\r\nAccount: ACCOUNT\r\n"
    "Computer: COMPUTER\r\nDescription: \r\ntext\r\nmore";

/// Settles `alarm` and checks that reading the text, saving and loading it, and settling it again change
/// neither the record nor the text.
AlarmRecord ExpectSettled(AlarmRecord alarm, const std::string& note) {
    const std::string text = SettleMessage(alarm);
    EXPECT_EQ(StripNulls(text), text) << note << ": saving drops these";
    AlarmRecord read;
    EXPECT_TRUE(ReadMessageText(text, read)) << note;
    EXPECT_EQ(read, alarm) << note;
    EXPECT_EQ(SettleMessage(read), text) << note;
    EXPECT_EQ(read, alarm) << note;
    return alarm;
}

TEST(MessageText, IsWrittenAndReadBack) {
    EXPECT_EQ(BuildMessageText(Plain), PlainText);
    AlarmRecord empty;
    empty.EventID = INT32_MIN;
    for (const AlarmRecord& written : {Plain, empty}) {
        AlarmRecord read;
        ASSERT_TRUE(ReadMessageText(BuildMessageText(written), read));
        EXPECT_EQ(read, written);
    }
}

TEST(MessageText, IsRefusedWithOneLabelOrValueWrong) {
    for (const auto& [wanted, instead] : SplitPairs(
             "Date: =date: |Date: 8=Date: x8|PM=PM\n|PM=PM\r\nx|\r\nAlarm Name: =\nAlarm Name: |"
             "\r\nAlarm Name: =\r\nAlarm Name:|\r\nLog Type: = Log Type: |Source: =Sources: |"
             "Type Of Event: =Type of Event: |Category: =|42=042|42=+42|42=-0|42=|42=42 |42=4294967296|"
             "Account: =\r\nAccount: |Computer: =\r\n|Description: \r\n=Description: ")) {
        std::string text = PlainText;
        text.replace(text.find(wanted), wanted.size(), instead);
        AlarmRecord read = {AlarmDate{7}, "a", "b", "c", "d", "e", 1, "f", "g", "h"};
        const AlarmRecord before = read;
        EXPECT_FALSE(ReadMessageText(text, read)) << text;
        EXPECT_EQ(read, before) << text;
    }
    AlarmRecord read;
    for (std::size_t length = 0; length < PlainText.find("text"); ++length)
        EXPECT_FALSE(ReadMessageText(PlainText.substr(0, length), read)) << length;
}

TEST(MessageText, EndsTheCategoryAtTheFirstEventIDThatFits) {
    std::string text = PlainText;
    text.replace(text.find("category"), 8, "c\r\nEventID: 5\r\nEventID: -7\r\nAccount: A\r\nEventID: 8");
    AlarmRecord read;
    ASSERT_TRUE(ReadMessageText(text, read));
    EXPECT_EQ(read.Category, "c\r\nEventID: 5");
    EXPECT_EQ(read.EventID, -7);
    EXPECT_EQ(read.AccountName, "A\r\nEventID: 8\r\nEventID: 42\r\nAccount: ACCOUNT");
}

TEST(SettleMessage, GivesFieldsTheirStoredForm) {
    const struct {
        std::string AlarmRecord::*Field;
        std::string Before;
        std::string After;
    } cases[] = {
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
        AlarmRecord alarm = Plain;
        alarm.*field = before;
        EXPECT_EQ(ExpectSettled(alarm, before).*field, after);
    }
}

TEST(SettleMessage, KeepsTheTextShortEnoughForTheBackup) {
    const struct {
        std::size_t Description, Name, Computer;
    } cases[] = {{65'000, 65'000, 0}, {0, 60'000, 60'000}, {65'000, 65'000, 65'000}, {99'000, 1'000, 0}};
    for (const auto& [description, name, computer] : cases) {
        AlarmRecord alarm = Plain;
        alarm.Description = std::string(description, 'd');
        alarm.AlarmName = std::string(name, 'n');
        alarm.Computer = std::string(computer, 'C');
        EXPECT_EQ(BuildMessageText(ExpectSettled(alarm, "long")).size(), LongestMessageText);
    }
    AlarmRecord alarm = Plain;
    alarm.Description = "end" + std::string(LongestMessageText, ' ') + "beyond the limit";
    EXPECT_EQ(ExpectSettled(alarm, "blanks before the cut").Description, "end");
}

TEST(SettleMessage, CutsAFieldAtTheLabelsThatItHolds) {
    const std::string whole =
        "\r\nAlarm Name: a\r\nLog Type: b\r\nSource: c\r\nType Of Event: D E\r\nCategory: f\r\nEventID: 5\r\n"
        "Account: g\r\nComputer: h\r\nDescription: \r\ni";
    const std::string hostile[] = {
        "\r\nEventID: 5\r\nAccount: x",
        "\r\nEv\0entID: 5\r\nAcc\0ount: x"s,
        whole,
        "\r\nComputer: \r\nDescription: \r\n",
        "\r\n",
        "\r",
        "\n",
        "x\r\0"s,
        "\0"s,
        "Category: ",
        "\r\nCATEGORY: \r\ncategory: ",
        "  \r\n  ",
    };
    std::string AlarmRecord::*const fields[] = {&AlarmRecord::AlarmName, &AlarmRecord::LogType,
                                                &AlarmRecord::Source,    &AlarmRecord::TypeOfEvent,
                                                &AlarmRecord::Category,  &AlarmRecord::AccountName,
                                                &AlarmRecord::Computer,  &AlarmRecord::Description};
    for (const std::string& text : hostile) {
        AlarmRecord all = Plain;
        for (const auto field : fields) {
            AlarmRecord alarm = Plain;
            alarm.*field = text;
            ExpectSettled(alarm, text);
            all.*field = text;
        }
        ExpectSettled(all, text);
    }
    AlarmRecord alarm = Plain;
    alarm.Category = "c" + hostile[0];
    EXPECT_EQ(ExpectSettled(alarm, "two ids").EventID, 5) << "shown now as it will be after a restart";
}

}  // namespace
}  // namespace tallyhorn
