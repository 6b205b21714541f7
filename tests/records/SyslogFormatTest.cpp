#include <gtest/gtest.h>

#include <string>

#include "records/CanonicalText.h"
#include "records/SyslogFormat.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

const AlarmDate Now = *MakeAlarmDate({2024, 2, 29, 23, 59, 58});

AlarmRecord Before() {
    return {AlarmDate{1}, "name", "log", "source", "type", "category", 42, "ACCOUNT", "COMPUTER", "text"};
}

AlarmRecord Parsed(const std::string& text, bool dayFirst = false) {
    AlarmRecord alarm = Before();
    ParseSyslogText(text, dayFirst, Now, alarm);
    return alarm;
}

TEST(IsAlarmNotification, RequiresTheWordWithItsBlankAndAColon) {
    for (const char* const text : {"Event :", ":EEvent ", "EvenEvent 5: x"})
        EXPECT_TRUE(IsAlarmNotification(text)) << text;
    for (const char* const text : {"Event:", "event 5: x", "Event 5", "<13>sshd[1]: ok", "", "Events: none"})
        EXPECT_FALSE(IsAlarmNotification(text)) << text;
}

TEST(ParseSyslogText, ReadsAWholeNotification) {
    // The name ends at the first closing parenthesis and is not trimmed; commas belong to the description.
    EXPECT_EQ(
        Parsed("<131>Aug 21 mon: Event: )( Logon failed)):  Security Log, 08/21/2008 2:05:09 PM , Micro soft,"
               "FAILUREAUDIT, Logon/Logoff , 4625 , acme\\m\xFCller ,lon-dc-1, A, b:\r\n\tc,  "),
        (AlarmRecord{*MakeAlarmDate({2008, 8, 21, 14, 5, 9}), " Logon failed", "Security", "Micro soft",
                     "Failure Audit", "Logon/Logoff", 4625, "ACME\\M\xDCLLER", "LON-DC-1", "A, b:\r\n\tc,"}));
}

/// The text grows by one delimiter at a time: fields before the missing one are read, the others keep their
/// values.
TEST(ParseSyslogText, KeepsEveryFieldFromAMissingDelimiterOn) {
    const struct {
        const char* Piece;
        void (*Expect)(AlarmRecord&);
    } steps[] = {
        {"(a)", [](AlarmRecord& a) { a.AlarmName = "a"; }},
        {":l Log", [](AlarmRecord&) {}},
        {",1/2/2003 4:05:06", [](AlarmRecord& a) { a.LogType = "l"; }},
        {",s",
         [](AlarmRecord& a) {
             a.DateTime = *MakeAlarmDate({2003, 1, 2, 4, 5, 6});
         }},
        {",t", [](AlarmRecord& a) { a.Source = "s"; }},
        {",c", [](AlarmRecord& a) { a.TypeOfEvent = "t"; }},
        {",7", [](AlarmRecord& a) { a.Category = "c"; }},
        {",u", [](AlarmRecord& a) { a.EventID = 7; }},
        {",k", [](AlarmRecord& a) { a.AccountName = "U"; }},
        {",d", [](AlarmRecord& a) { a.Computer = "K", a.Description = "d"; }},
    };
    std::string text;
    AlarmRecord expected = Before();
    for (const auto& [piece, expect] : steps) {
        text += piece;
        expect(expected);
        EXPECT_EQ(Parsed(text), expected) << text;
    }
    text.replace(text.find('7'), 1, "seven");
    expected.EventID = 42;
    EXPECT_EQ(Parsed(text), expected) << "only the field that is no number keeps its value";
}

TEST(ParseSyslogText, CutsTheLogType) {
    const struct {
        const char* Field;
        const char* Expected;
    } cases[] = {{" Security Log", "Security"},
                 {"Security Log ", "Security L"},
                 {"Log", ""},
                 {"ab", "before"},
                 {"", "before"},
                 {"  DNS Server xyz", "DNS Server"}};
    for (const auto& [field, expected] : cases) {
        AlarmRecord alarm;
        alarm.LogType = "before";
        ParseSyslogText("(a):"s + field + ",", false, AlarmDate(), alarm);
        EXPECT_EQ(alarm.LogType, expected) << field;
    }
    EXPECT_EQ(Parsed("12:05 (a) b: c Log,").LogType, "c") << "the first colon after the name counts";
}

TEST(ParseSyslogText, GivesANotificationWithoutNameTheTimeOfArrival) {
    const std::string fields = ": System Log, 1/2/2003 4:05:06, s, Error, c, 7, u, k, d";
    for (const char* const head : {"no parentheses", ")(", "x ) y (", "(never closed", "()", "(   )", ""}) {
        const AlarmRecord alarm = Parsed(head + fields);
        const AlarmRecord expected = {Now, "???", "???", "s", "", "c", 7, "???", "???", "d"};
        EXPECT_EQ(alarm, expected) << head;
    }
    EXPECT_EQ(Parsed("(\t)" + fields).AlarmName, "\t") << "only blanks are trimmed";
    EXPECT_EQ(Parsed("").AlarmName, "???");
    EXPECT_EQ(Parsed("").Source, "source");
}

TEST(ParseSyslogText, RecognisesATestMessageAnywhere) {
    const AlarmRecord expected = {Now, "Test Notification", "???", "s", "", "c", 7, "???", "???", ""};
    AlarmRecord alarm = Parsed("(a): l Log, 1/2/2003 4:05:06, s, Error, c, 7, u, k, Test Message");
    EXPECT_EQ(alarm.Description, "Test Message");
    alarm.Description.clear();
    EXPECT_EQ(alarm, expected);
    EXPECT_EQ(Parsed("TTest Message").AlarmName, "Test Notification") << "although the name is missing";
    EXPECT_EQ(Parsed("(test message)").AlarmName, "test message");
    EXPECT_EQ(Parsed("(Test  Message)").AlarmName, "Test  Message");
}

TEST(ParseSyslogText, ReadsDates) {
    const auto at = [](int hour, int minute, int second) {
        return MakeAlarmDate({2008, 8, 21, hour, minute, second}).value();
    };
    const auto parsed = [](const std::string& text, bool dayFirst) {
        return Parsed("(a): b Log,  " + text + " ,s,", dayFirst);
    };
    const struct {
        const char* Text;
        bool DayFirst;
        AlarmDate Expected;
    } cases[] = {
        {"08/21/2008 12:05:09 AM", false, at(0, 5, 9)},
        {"08/21/2008 12:05:09 PM", false, at(12, 5, 9)},
        {"08/21/2008 2:05:09 pm", false, at(14, 5, 9)},
        {"08/21/2008 11:05:09 am", false, at(11, 5, 9)},
        {"08/21/2008 14:05:09", false, at(14, 5, 9)},
        {"08/21/2008 0:0:0", false, at(0, 0, 0)},
        {"21/08/2008 14:05:09", true, at(14, 5, 9)},
        {"21.8.2008 2:05:09 PM", true, at(14, 5, 9)},
        {"8-21-08 14:05:09", false, at(14, 5, 9)},
        {"8x21x2008x14x5x9", false, at(14, 5, 9)},
        {"8/21/29 1:2:3", false, MakeAlarmDate({2029, 8, 21, 1, 2, 3}).value()},
        {"8/21/30 1:2:3", false, MakeAlarmDate({1930, 8, 21, 1, 2, 3}).value()},
        // The third character is a separator throughout the date, even if it is a digit: here it is 9.
        {"0192192008 14:05:06", false, MakeAlarmDate({2008, 1, 21, 14, 5, 6}).value()},
        // A seventh part other than PM means the morning, but only if no eighth part follows.
        {"08/21/2008 12:05:09 x", false, at(0, 5, 9)},
        {"08/21/2008 13:05:09 AM", false, at(13, 5, 9)},
        {"08/21/2008 12:05:09:", false, at(0, 5, 9)},
        {"08/21/2008 12:05:09 PM x", false, at(12, 5, 9)},
        {"08/21/2008 2:05:09 x PM", false, at(2, 5, 9)},
    };
    for (const auto& [text, dayFirst, expected] : cases)
        EXPECT_EQ(parsed(text, dayFirst).DateTime, expected) << text;

    for (const char* const text : {"08/21/2008 13:05:09 PM",
                                   "08/21/2008 24:05:09",
                                   "08/21/2008 14:60:09",
                                   "08/21/2008 14:05:60",
                                   "08/21/2008 14:05",
                                   "08/21/2008 14:05:",
                                   "08/21/2008  14:05:09",
                                   "21/08/2008 14:05:09",
                                   "2/29/2007 14:05:09",
                                   "8/0/2008 14:05:09",
                                   "8/21/8 14:05:09",
                                   "8/21/99999 14:05:09",
                                   "8/21/4294969304 14:05:09",
                                   "4294967304/21/2008 14:05:09",
                                   "8/21/2008 18446744073709551630:05:09",
                                   "-8/21/2008 14:05:09",
                                   "8/+21/2008 14:05:09",
                                   "8/21/2008 14:05:0x9",
                                   "8/21/2008\t14:05:09",
                                   "2008-08-21 14:05:09",
                                   "1",
                                   "11",
                                   ""}) {
        EXPECT_EQ(parsed(text, false).DateTime, Before().DateTime) << text;
        EXPECT_EQ(parsed(text, false).Source, "s") << text;
    }
    EXPECT_EQ(parsed("08/21/2008 14:05:09", true).DateTime, Before().DateTime);
    EXPECT_EQ(parsed("8/21/2008 14:05:09\0"s, false).DateTime, Before().DateTime);
}

TEST(ReadStoredText, GivesTheRecordThatWasStored) {
    AlarmRecord stored = Parsed("(a): l Log, 1/2/2003 4:05:06, s, Error, c, 7, u, k, a Test Message: (x), y");
    stored.DateTime = *MakeAlarmDate({2003, 1, 2, 4, 5, 6});
    const std::string text = SettleMessage(stored);
    AlarmRecord read = Before();
    ReadStoredText(text, true, Now, read);
    EXPECT_EQ(read, stored) << "a test notification keeps its date too";

    const std::string datagram = "(a): l Log, 1/2/2003 4:05:06, s, Error, c, 7, u, k, d";
    ReadStoredText(datagram, true, Now, read);
    EXPECT_EQ(read, Parsed(datagram, true));
}

}  // namespace
}  // namespace tallyhorn
