#include <gtest/gtest.h>

#include "records/DateDisplay.h"
#include "records/NetBiosFormat.h"
#include "tests/support/Cases.h"
#include "tests/support/DateTexts.h"
#include "tests/support/FileBytes.h"
#include "tests/support/SampleRecord.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

AlarmRecord Parsed(const std::string& text) {
    AlarmRecord alarm = SampleRecord();
    ParseCurrentAlarm(text, alarm);
    return alarm;
}

TEST(ParseCurrentAlarm, ReadsAWholeNotification) {
    EXPECT_EQ(Parsed(ReadBytes(TALLYHORN_TEST_DATA "/netbios-logon-failed.txt")),
              (AlarmRecord{*MakeAlarmDate({2008, 8, 21, 14, 5, 9}), "Logon failed (network) twice",
                           "Security", "Microsoft:Auditing ", "Failure Audit", "", 529, "ACME\\M\xDCLLER",
                           "LON-DC-1", "Logon failure:\r\n\tReason: unknown user\r\n"}));
}

/// If a line is missing or invalid, only its own field keeps its earlier value.
TEST(ParseCurrentAlarm, AFieldThatFailsKeepsItsValue) {
    struct Line {
        const char* Before;
        const char* Good;
        void (*Read)(AlarmRecord&);
        const char* Bad;  ///< texts in place of Good
    };
    const Line lines[] = {
        {"", "Date: 1/1/1970", [](AlarmRecord& a) { a.DateTime = AlarmDate{0}; }, "Date: yesterday"},
        {"\r\n\r\n\r\n", "Alarm (a)", [](AlarmRecord& a) { a.AlarmName = "a"; },
         "no parentheses|)in the wrong order(|(never closed"},
        {"\r\n\r\n\r\n", "L: l", [](AlarmRecord& a) { a.LogType = "l"; }, "no colon"},
        {"\r\n", "S: s", [](AlarmRecord& a) { a.Source = "s"; }, ""},
        {"\r\n", "T: t", [](AlarmRecord& a) { a.TypeOfEvent = "t"; }, "type"},
        {"\r\n", "C: c", [](AlarmRecord& a) { a.Category = "c"; }, "category"},
        {"\r\n", "E: 7", [](AlarmRecord& a) { a.EventID = 7; }, "E: seven|E: 99999999999"},
        {"\r\n", "A: a", [](AlarmRecord& a) { a.AccountName = "A"; }, "account"},
        {"\r\n", "K: k", [](AlarmRecord& a) { a.Computer = "K"; }, "computer"},
        {"\r\n", "D: d", [](AlarmRecord& a) { a.Description = "d"; }, "description"},
    };
    std::string whole;
    AlarmRecord first = SampleRecord();
    for (const Line& line : lines) {
        EXPECT_EQ(Parsed(whole), first) << whole;
        whole.append(line.Before).append(line.Good);
        line.Read(first);
        for (const std::string& bad : SplitAtBars(line.Bad)) {
            std::string text;
            AlarmRecord expected = SampleRecord();
            for (const Line& other : lines) {
                text.append(other.Before).append(&other == &line ? bad : other.Good);
                if (&other != &line)
                    other.Read(expected);
            }
            EXPECT_EQ(Parsed(text), expected) << text;
        }
    }
    EXPECT_EQ(Parsed(whole), first);
}

TEST(ParseCurrentAlarm, FindsValuesByPositionAlone) {
    const std::string head = "Date: 8/21/2008\r\n\r\n\r\n((a)b))c\r\n\r\n\r\n";
    // The character after the colon is skipped, whatever it is.  Only CR LF together end a line.
    EXPECT_EQ(Parsed(head + "L:x\r\nS:\r\n:  \r\nC:: :\r\nE:\t12.5\r\nA: \xE9\0b\r\nK: k\rk\nk\r\nD: "s),
              (AlarmRecord{*MakeAlarmDate({2008, 8, 21}), "(a)b)", "", "", " ", " :", 12, "\xC9\0B"s,
                           "K\rK\nK", ""}));
}

/// Some of these dates have 21 or 22 characters.  A sender may send a whole date or only its first 20.
TEST(ParseCurrentAlarm, ReadsEveryMonthAndHourWholeOrCutAtTwentyCharacters) {
    for (int moment = 0; moment < 12 * 2 * 24; ++moment) {
        const CivilDateTime parts{2008, moment / 48 + 1, moment / 24 % 2 == 0 ? 1 : 21, moment % 24, 5, 9};
        const AlarmDate date = MakeAlarmDate(parts).value();
        for (const std::string& text :
             {FormatGeneralDate(date), FormatAlarmDate(date, "MM/dd/yyyy h:nn:ss AM/PM", "/")}) {
            EXPECT_EQ(Parsed("Date: " + text + "\r\n").DateTime, date) << text;
            const std::string cut = text.substr(0, 20);
            CivilDateTime seen = parts;
            if (cut.find_first_of("AP") == std::string::npos)
                seen.Hour = HourOfTwelve(seen.Hour);
            EXPECT_EQ(Parsed("Date: " + cut).DateTime, MakeAlarmDate(seen)) << cut;
        }
    }
    for (const auto& [line, read] : SplitPairs(
             "08/21/2008 14:05:09 and more=8/21/2008 2:05:09 PM|12/21/2008 10:05:09 PM or so=12/21/2008 "
             "10:05:09 AM|12/21/2008 10:05:09 p=12/21/2008 10:05:09 PM|12/21/2008  10:05:09 PM "
             "=12/21/2008 10:05:09 PM|12/21/2008 14:05:09 PM=12/21/2008 2:05:09 PM"))
        EXPECT_EQ(FormatGeneralDate(Parsed("Date: " + line).DateTime), read) << line;
    EXPECT_EQ(Parsed("Date: 8/21/2008 14:05:09 and more").DateTime, AlarmDate{1});
}

}  // namespace
}  // namespace tallyhorn
