#include <gtest/gtest.h>

#include <span>
#include <string>

#include "records/NetBiosFormat.h"
#include "tests/support/FileBytes.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

constexpr const char* LogonFailed = TALLYHORN_TEST_DATA "/netbios-logon-failed.txt";

AlarmRecord Before() {
    return {AlarmDate{1}, "name", "log", "source", "type", "category", 42, "ACCOUNT", "COMPUTER", "text"};
}

AlarmRecord Parsed(const std::string& text) {
    AlarmRecord alarm = Before();
    ParseCurrentAlarm(text, alarm);
    return alarm;
}

TEST(ParseCurrentAlarm, ReadsAWholeNotification) {
    EXPECT_EQ(Parsed(ReadBytes(LogonFailed)),
              (AlarmRecord{*MakeAlarmDate({2008, 8, 21, 14, 5, 9}), "Logon failed (network) twice",
                           "Security", "Microsoft:Auditing ", "Failure Audit", "", 529, "ACME\\M\xDCLLER",
                           "LON-DC-1", "Logon failure:\r\n\tReason: unknown user\r\n"}));
}

/// One line after the other is spoilt; only its own field stays as it was.
TEST(ParseCurrentAlarm, AFieldThatFailsKeepsItsValue) {
    const std::string good[] = {"Date: 8/21/2008 2:05:09 PM",
                                "",
                                "",
                                "Alarm (a)",
                                "",
                                "",
                                "L: l",
                                "S: s",
                                "T: t",
                                "C: c",
                                "E: 7",
                                "A: a",
                                "K: k",
                                "D: d"};
    const struct {
        std::size_t Line;
        std::string Text;
        void (*Keep)(AlarmRecord& to, const AlarmRecord& from);
    } cases[] = {
        {0, "Date: yesterday", [](auto& to, const auto& from) { to.DateTime = from.DateTime; }},
        {3, "no parentheses", [](auto& to, const auto& from) { to.AlarmName = from.AlarmName; }},
        {3, ")the wrong way round(", [](auto& to, const auto& from) { to.AlarmName = from.AlarmName; }},
        {3, "(never closed", [](auto& to, const auto& from) { to.AlarmName = from.AlarmName; }},
        {6, "no colon", [](auto& to, const auto& from) { to.LogType = from.LogType; }},
        {7, "", [](auto& to, const auto& from) { to.Source = from.Source; }},
        {8, "type", [](auto& to, const auto& from) { to.TypeOfEvent = from.TypeOfEvent; }},
        {9, "category", [](auto& to, const auto& from) { to.Category = from.Category; }},
        {10, "E: seven", [](auto& to, const auto& from) { to.EventID = from.EventID; }},
        {10, "E: 99999999999", [](auto& to, const auto& from) { to.EventID = from.EventID; }},
        {11, "account", [](auto& to, const auto& from) { to.AccountName = from.AccountName; }},
        {12, "computer", [](auto& to, const auto& from) { to.Computer = from.Computer; }},
        {13, "description", [](auto& to, const auto& from) { to.Description = from.Description; }},
    };
    const auto join = [](const auto& lines) {
        std::string text;
        for (const std::string& line : lines)
            text += (text.empty() ? "" : "\r\n") + line;
        return text;
    };
    const AlarmRecord whole = Parsed(join(good));
    EXPECT_EQ(whole.Description, "d");
    AlarmRecord cut = whole;
    for (std::size_t lines = std::size(good); lines-- > 0;) {
        for (const auto& each : cases) {
            if (each.Line == lines)
                each.Keep(cut, Before());
        }
        EXPECT_EQ(Parsed(join(std::span(good, lines))), cut) << "the first " << lines << " lines";
    }
    for (const auto& [line, text, keep] : cases) {
        std::vector<std::string> lines(std::begin(good), std::end(good));
        lines[line] = text;
        AlarmRecord expected = whole;
        keep(expected, Before());
        EXPECT_EQ(Parsed(join(lines)), expected) << text;
    }
}

TEST(ParseCurrentAlarm, CutsValuesByPositionAlone) {
    const std::string head = "Date: 8/21/2008\r\n\r\n\r\n((a)b))c\r\n\r\n\r\n";
    // The character after the colon goes with it, whatever it is; only CR LF together end a line.
    EXPECT_EQ(Parsed(head + "L:x\r\nS:\r\n:  \r\nC:: :\r\nE:\t12.5\r\nA: \xE9\0b\r\nK: k\rk\nk\r\nD: "s),
              (AlarmRecord{*MakeAlarmDate({2008, 8, 21}), "(a)b)", "", "", " ", " :", 12, "\xC9\0B"s,
                           "K\rK\nK", ""}));
}

TEST(ParseCurrentAlarm, ReadsTwentyCharactersOfDate) {
    EXPECT_EQ(Parsed("Date: 8/21/2008 14:05:09 and more").DateTime, AlarmDate{1});
    EXPECT_EQ(Parsed("Date: 08/21/2008 14:05:09 and more").DateTime, MakeAlarmDate({2008, 8, 21, 14, 5, 9}));
    EXPECT_EQ(Parsed("When: 12/21/2008 12:05:09 AM").DateTime, MakeAlarmDate({2008, 12, 21, 12, 5, 9}))
        << "the half of the day lies behind the twentieth character";
}

}  // namespace
}  // namespace tallyhorn
