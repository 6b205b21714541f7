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
    const std::vector<std::string> good =
        SplitAtBars("Date: 8/21/2008 2:05:09 PM|||Alarm (a)|||L: l|S: s|T: t|C: c|E: 7|A: a|K: k|D: d");
    const AlarmRecord whole = {
        *MakeAlarmDate({2008, 8, 21, 14, 5, 9}), "a", "l", "s", "t", "c", 7, "A", "K", "d"};
    const auto keep = [before = SampleRecord()](std::size_t line, AlarmRecord& record) {
        using Record = AlarmRecord;
        std::string Record::*const fields[] = {
            &Record::AlarmName,   nullptr,           nullptr, &Record::LogType,     &Record::Source,
            &Record::TypeOfEvent, &Record::Category, nullptr, &Record::AccountName, &Record::Computer,
            &Record::Description};
        if (line == 0)
            record.DateTime = before.DateTime;
        else if (line == 10)
            record.EventID = before.EventID;
        else if (line >= 3 && fields[line - 3] != nullptr)
            record.*fields[line - 3] = before.*fields[line - 3];
    };
    const auto join = [](const std::vector<std::string>& lines, std::size_t count) {
        std::string text;
        for (std::size_t i = 0; i < count; ++i)
            text += (i == 0 ? "" : "\r\n") + lines[i];
        return text;
    };
    AlarmRecord cut = whole;
    for (std::size_t lines = good.size(); lines-- > 0;) {
        keep(lines, cut);
        EXPECT_EQ(Parsed(join(good, lines)), cut) << "the first " << lines << " lines";
    }
    for (const auto& [number, text] : SplitPairs(
             "0=Date: yesterday|3=no parentheses|3=)in the wrong order(|3=(never closed|6=no colon|7=|8=type|"
             "9=category|10=E: seven|10=E: 99999999999|11=account|12=computer|13=description")) {
        const std::size_t line = std::stoul(number);
        std::vector<std::string> lines = good;
        lines[line] = text;
        AlarmRecord expected = whole;
        keep(line, expected);
        EXPECT_EQ(Parsed(join(lines, lines.size())), expected) << text;
    }
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
