#include <gtest/gtest.h>

#include <functional>
#include <tuple>

#include "filters/FilterMatcher.h"
#include "tests/support/Cases.h"
#include "tests/support/DateTexts.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

SuppressionFilter AnyFilter() {
    SuppressionFilter filter;
    filter.FilterName = "a filter";
    filter.EventID = AnyEventID;
    return filter;
}

AlarmRecord TypicalAlarm() {
    AlarmRecord alarm;
    alarm.DateTime = *ParseAlarmDate("6/15/2004 10:30:15 AM");
    alarm.Source = "Service Control Manager";
    alarm.TypeOfEvent = "Failure Audit";
    alarm.Category = "Logon/Logoff";
    alarm.EventID = 7036;
    alarm.AccountName = "CORP\\SMITH";
    alarm.Computer = "SRV1";
    return alarm;
}

std::string Filled(std::size_t size) {
    return std::string(size, 'x');
}

bool Matches(const SuppressionFilter& filter, const AlarmRecord& alarm) {
    return FilterMatcher({&filter, 1}).Matches(alarm);
}

using F = SuppressionFilter&;
using A = AlarmRecord&;

/// Checks cases.  Each one changes a filter without criteria (AnyFilter), the typical alarm, or both.
void ExpectMatches(const std::vector<std::tuple<const char*, std::function<void(F, A)>, bool>>& cases) {
    for (const auto& [name, change, expected] : cases) {
        SuppressionFilter filter = AnyFilter();
        AlarmRecord alarm = TypicalAlarm();
        change(filter, alarm);
        EXPECT_EQ(Matches(filter, alarm), expected) << name;
    }
}

TEST(FilterMatcher, ComparesTextsAndEventIDs) {
    ExpectMatches({
        {"no test in force", [](F, A) {}, false},
        {"case differs", [](F f, A a) { f.Source = "caf\xE9 \xFF", a.Source = "CAF\xC9 \x9F"; }, true},
        {"only a part of the text", [](F f, A) { f.Source = "Service Control"; }, false},
        {"the alarm's trailing blank counts", [](F f, A a) { f.Source = a.Source, a.Source += ' '; }, false},
        {"the alarm's NUL counts", [](F f, A a) { f.Source = "x", a.Source = "x\0"s; }, false},
        {"the filter's blanks and NULs do not count",
         [](F f, A a) { f.Source = "\0 a\0b\0 \0"s, a.Source = "AB"s; }, true},
        {"only NULs and blanks: no test", [](F f, A) { f.Source = "\0 \0"s; }, false},
        {"a source that fills its field accepts longer ones",
         [](F f, A a) { f.Source = a.Source = "Microsoft-Windows-Security-Auditing"; }, true},
        {"but no shorter one", [](F f, A a) { f.Source = Filled(30), a.Source = Filled(29); }, false},
        {"a text one short of its field accepts no longer one",
         [](F f, A a) { f.Source = Filled(29), a.Source = Filled(30); }, false},
        {"nor does one whose last character is a blank",
         [](F f, A a) { f.Source = Filled(29) + ' ' + Filled(9), a.Source = Filled(29) + ' ' + Filled(9); },
         false},
        {"a category fills 50", [](F f, A a) { f.Category = Filled(50), a.Category = Filled(51); }, true},
        {"category of 30", [](F f, A a) { f.Category = Filled(30), a.Category = Filled(31); }, false},
        {"an account fills 50", [](F f, A a) { f.AccountName = Filled(50), a.AccountName = Filled(51); },
         true},
        {"a computer fills 30", [](F f, A a) { f.Computer = Filled(30), a.Computer = Filled(31); }, true},
        {"event id 0 is a test that fails", [](F f, A) { f.EventID = 0; }, false},
        {"event id 0 is a test that passes", [](F f, A a) { f.EventID = a.EventID = 0; }, true},
        {"event id -1 is no test, even of -1", [](F f, A a) { f.EventID = a.EventID = -1; }, false},
        {"a negative event id", [](F f, A a) { f.EventID = a.EventID = -1'073'740'823; }, true},
    });
}

TEST(FilterMatcher, NeedsEveryTestInForce) {
    const auto all = [](F f, A a) {
        f.Source = a.Source, f.Category = a.Category, f.AccountName = a.AccountName;
        f.Computer = a.Computer, f.EventID = a.EventID, f.EventTypes = FilterFailureAudit;
        f.UseDateRange = FilterTrue, f.BeginDate = f.EndDate = DaysFromAlarmDate(a.DateTime);
    };
    ExpectMatches({
        {"all pass", all, true},
        {"source fails", [&](F f, A a) { all(f, a), a.Source = "x"s; }, false},
        {"category fails", [&](F f, A a) { all(f, a), a.Category = "x"s; }, false},
        {"account fails", [&](F f, A a) { all(f, a), a.AccountName = "x"s; }, false},
        {"computer fails", [&](F f, A a) { all(f, a), a.Computer = "x"s; }, false},
        {"event id fails", [&](F f, A a) { all(f, a), a.EventID = 1; }, false},
        {"type fails", [&](F f, A a) { all(f, a), a.TypeOfEvent = "Error"; }, false},
        {"type is unrecognised", [&](F f, A a) { all(f, a), a.TypeOfEvent = "Audit"; }, true},
        {"date fails", [&](F f, A a) { all(f, a), a.DateTime.Seconds += 1; }, false},
    });
}

TEST(FilterMatcher, TestsTheType) {
    // The texts of the five types, in the order of their bits, and four texts that denote no type.
    std::vector<std::string> types =
        SplitAtBars("Information|WARNING| e r r o r |Failure Audit|success   audit|   |Warning\t|Error\0"s);
    types.emplace_back(9999, 'E');
    for (std::size_t i = 0; i < types.size(); ++i) {
        for (const std::int32_t mask : {1, 2, 4, 8, 16, 31, 32, 64 + 2, -1, INT32_MIN}) {
            SuppressionFilter byType = AnyFilter();
            byType.EventTypes = mask;
            SuppressionFilter bySource = byType;
            bySource.Source = "service control manager";
            AlarmRecord alarm = TypicalAlarm();
            alarm.TypeOfEvent = types[i];
            const bool covered = i < 5 && (mask & (1 << i)) != 0;
            EXPECT_EQ(Matches(byType, alarm), covered) << types[i] << ' ' << mask;
            EXPECT_EQ(Matches(bySource, alarm), covered || i >= 5) << types[i] << ' ' << mask;
        }
    }
}

TEST(FilterMatcher, TestsTheDateRange) {
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const double begin = DaysFromAlarmDate(*ParseAlarmDate("6/15/2004 10:30:15 AM"));
    const double end = DaysFromAlarmDate(*ParseAlarmDate("6/17/2004"));
    const std::tuple<const char*, double, double, const char*, bool> cases[] = {
        {"inside", begin, end, "6/16/2004 1:00:00 PM", true},
        {"later on the day of the end", begin, end, "6/17/2004 1:00:00 PM", false},
        {"before 1900, the fraction still counts forwards", -1.75, -1.25, "12/29/1899 6:00:00 AM", false},
        {"the begin is NaN, after the end", NotANumber, end, "1/1/2005", false},
        {"the end is NaN", begin, NotANumber, "1/1/9999", true},
        {"endless", -1e300, Infinity, "1/1/0100", true},
        {"endless, but swapped", Infinity, -Infinity, "1/1/2000", false},
    };
    for (const auto& [name, begins, ends, date, expected] : cases) {
        SuppressionFilter filter = AnyFilter();
        filter.BeginDate = begins;
        filter.EndDate = ends;
        AlarmRecord alarm = TypicalAlarm();
        alarm.DateTime = *ParseAlarmDate(date);
        for (const std::int16_t use : {FilterTrue, std::int16_t{1}, FilterFalse}) {
            filter.UseDateRange = use;
            EXPECT_EQ(Matches(filter, alarm), expected && use != FilterFalse) << name << ' ' << use;
        }
    }
}

}  // namespace
}  // namespace tallyhorn
