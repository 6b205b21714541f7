#include <gtest/gtest.h>

#include <tuple>

#include "records/SyslogFormat.h"
#include "tests/support/Cases.h"
#include "tests/support/DateTexts.h"
#include "tests/support/SampleRecord.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

const AlarmDate Now = *MakeAlarmDate({2024, 2, 29, 23, 59, 58});

AlarmRecord Parsed(const std::string& text) {
    AlarmRecord alarm = SampleRecord();
    ParseSyslogText(text, false, Now, alarm);
    return alarm;
}

TEST(IsAlarmNotification, RequiresTheWordWithItsBlankAndAColon) {
    for (const char* const text : {"Event :", ":EEvent ", "EvenEvent 5: x"})
        EXPECT_TRUE(IsAlarmNotification(text)) << text;
    for (const char* const text : {"Event:", "event 5: x", "Event 5", "<13>sshd[1]: ok", "", "Events: none"})
        EXPECT_FALSE(IsAlarmNotification(text)) << text;
}

TEST(ParseSyslogText, ReadsAWholeNotification) {
    // The name ends at the first closing parenthesis and is not trimmed; a description may have commas.
    EXPECT_EQ(
        Parsed("<131>Aug 21 mon: Event: )( Logon failed)):  Security Log, 08/21/2008 2:05:09 PM , Micro soft,"
               "FAILUREAUDIT, Logon/Logoff , 4625 , acme\\m\xFCller ,lon-dc-1, A, b:\r\n\tc,  "),
        (AlarmRecord{*MakeAlarmDate({2008, 8, 21, 14, 5, 9}), " Logon failed", "Security", "Micro soft",
                     "Failure Audit", "Logon/Logoff", 4625, "ACME\\M\xDCLLER", "LON-DC-1", "A, b:\r\n\tc,"}));
}

/// The text grows by one delimiter at a time.  The fields before the first missing delimiter are read, the
/// others keep their values.
TEST(ParseSyslogText, KeepsEveryFieldFromAMissingDelimiterOn) {
    const std::tuple<const char*, void (*)(AlarmRecord&)> steps[] = {
        {"(a)", [](AlarmRecord& a) { a.AlarmName = "a"; }},
        {":l Log", [](AlarmRecord&) {}},
        {",2/29/2024 23:59:58", [](AlarmRecord& a) { a.LogType = "l"; }},
        {",s", [](AlarmRecord& a) { a.DateTime = Now; }},
        {",t", [](AlarmRecord& a) { a.Source = "s"; }},
        {",c", [](AlarmRecord& a) { a.TypeOfEvent = "t"; }},
        {",7", [](AlarmRecord& a) { a.Category = "c"; }},
        {",u", [](AlarmRecord& a) { a.EventID = 7; }},
        {",k", [](AlarmRecord& a) { a.AccountName = "U"; }},
        {",d", [](AlarmRecord& a) { a.Computer = "K", a.Description = "d"; }},
    };
    std::string text;
    AlarmRecord expected = SampleRecord();
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
    for (const auto& [field, expected] :
         SplitPairs(" Security Log=Security|Security Log =Security L|Log=|ab=log|=log|"
                    "  DNS Server xyz=DNS Server")) {
        EXPECT_EQ(Parsed("(a):" + field + ",").LogType, expected) << field;
    }
    EXPECT_EQ(Parsed("12:05 (a) b: c Log,").LogType, "c") << "the first colon after the name counts";
}

TEST(ParseSyslogText, GivesTestMessagesAndNamelessOnesTheTimeOfArrival) {
    const std::string fields = ": System Log, 1/2/2003 4:05:06, s, Error, c, 7, u, k, ";
    const AlarmRecord nameless = {Now, "???", "???", "s", "", "c", 7, "???", "???", "d"};
    for (const char* const head : {"no parentheses", ")(", "x ) y (", "(never closed", "()", "(   )", ""})
        EXPECT_EQ(Parsed(head + fields + "d"), nameless) << head;
    AlarmRecord test = nameless;
    test.AlarmName = "Test Notification", test.Description = "a Test Message";
    EXPECT_EQ(Parsed("(a)" + fields + "a Test Message"), test);
    for (const auto& [text, name] :
         SplitPairs("=???|(\t)=\t|TTest Message=Test Notification|(test message)=test message|"
                    "(Test  Message)=Test  Message")) {
        EXPECT_EQ(Parsed(text).AlarmName, name) << text;
        EXPECT_EQ(Parsed(text).Source, "source") << text;
    }
}

TEST(ParseSyslogText, ReadsDates) {
    const auto parsed = [](const std::string& text, bool dayFirst) {
        AlarmRecord alarm = SampleRecord();
        // A text that is not in the stored form is read as a datagram.
        ReadStoredText("(a): b Log,  " + text + " ,s,", dayFirst, Now, alarm);
        return alarm;
    };
    // If the third character is a digit, it separates all numbers, like the 9 in 0192192008.  Behind the
    // seconds, PM means the afternoon and any other word the morning; two words are ignored.
    for (const auto& [text, expected] : SplitPairs(
             "08/21/2008 12:05:09 AM=8/21/2008 12:05:09 AM|08/21/2008 12:05:09 PM=8/21/2008 12:05:09 PM|"
             "08/21/2008 2:05:09 pm=8/21/2008 2:05:09 PM|08/21/2008 11:05:09 am=8/21/2008 11:05:09 AM|"
             "08/21/2008 14:05:09=8/21/2008 2:05:09 PM|08/21/2008 0:0:0=8/21/2008|"
             "21/08/2008 14:05:09=8/21/2008 2:05:09 PM|21.8.2008 2:05:09 PM=8/21/2008 2:05:09 PM|"
             "8-21-08 14:05:09=8/21/2008 2:05:09 PM|8x21x2008x14x5x9=8/21/2008 2:05:09 PM|"
             "8/21/29 1:2:3=8/21/2029 1:02:03 AM|8/21/30 1:2:3=8/21/1930 1:02:03 AM|"
             "0192192008 14:05:06=1/21/2008 2:05:06 PM|"
             "08/21/2008 12:05:09 x=8/21/2008 12:05:09 AM|08/21/2008 13:05:09 AM=8/21/2008 1:05:09 PM|"
             "08/21/2008 12:05:09:=8/21/2008 12:05:09 AM|08/21/2008 12:05:09 PM x=8/21/2008 12:05:09 PM|"
             "08/21/2008 2:05:09 x PM=8/21/2008 2:05:09 AM|"
             // A part of the time that is missing or out of range counts as 0.
             "08/21/2008=8/21/2008|08/21/2008 14=8/21/2008 2:00:00 PM|08/21/2008 14:05=8/21/2008 2:05:00 PM|"
             "08/21/2008 14:05:=8/21/2008 2:05:00 PM|08/21/2008 14:05:0x9=8/21/2008 2:05:00 PM|"
             "08/21/2008 24:05:09=8/21/2008 12:05:09 AM|08/21/2008 14:60:09=8/21/2008 2:00:09 PM|"
             "08/21/2008 14:05:60=8/21/2008 2:05:00 PM|08/21/2008 13:05:09 PM=8/21/2008 12:05:09 AM|"
             "8/21/2008 18446744073709551630:05:09=8/21/2008 12:05:09 AM|"
             "08/21/2008  14:05:09=8/21/2008 12:14:05 AM|"
             // These dates begin with the year, so that the setting for day and month does not matter.
             "2008-08-21 14:05:09=8/21/2008 2:05:09 PM|2008-08-21T14:05:09Z=8/21/2008 2:05:09 PM|"
             "2008/8/21 2:05:09 pm=8/21/2008 2:05:09 PM|2008.08.21=8/21/2008|"
             "2008-08-21t12:05:09.25+02:00=8/21/2008 12:05:09 PM|2008-08-21 12:05:09 AM=8/21/2008 12:05:09 "
             "AM"))
        EXPECT_EQ(FormatGeneralDate(parsed(text, text.starts_with("2")).DateTime), expected) << text;
    for (const std::string& text :
         SplitAtBars("1|11||21/08/2008 14:05:09|2/29/2007 14:05:09|8/0/2008 14:05:09|8/21/8 14:05:09|8/21|"
                     "8/21/99999 14:05:09|8/21/4294969304 14:05:09|4294967304/21/2008 14:05:09|"
                     "-8/21/2008 14:05:09|8/+21/2008 14:05:09|8/21/2008\t14:05:09|2008-21-08 14:05:09|"
                     "2008-08 14:05:09|20080821 14:05:09|8/21/2008T14:05:09")) {
        EXPECT_EQ(parsed(text, false).DateTime, AlarmDate{1}) << text;
        EXPECT_EQ(parsed(text, false).Source, "s") << text;
    }
    EXPECT_EQ(parsed("08/21/2008 14:05:09", true).DateTime, AlarmDate{1});
}

}  // namespace
}  // namespace tallyhorn
