#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "filters/FilterMatcher.h"
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

bool Matches(const SuppressionFilter& filter, const AlarmRecord& alarm) {
    return FilterMatcher({&filter, 1}).Matches(alarm);
}

using F = SuppressionFilter&;
using A = AlarmRecord&;

struct MatchCase {
    const char* Name;
    std::function<void(F, A)> Change;
    bool Expected;
};

/// Each case changes a filter that tests nothing, or the typical alarm, or both.
void ExpectMatches(const std::vector<MatchCase>& cases) {
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
        {"equal", [](F f, A) { f.Source = "Service Control Manager"; }, true},
        {"case differs", [](F f, A) { f.Source = "sERVICE cONTROL mANAGER"; }, true},
        {"accented case differs", [](F f, A a) { f.Source = "caf\xE9 \xFF", a.Source = "CAF\xC9 \x9F"; },
         true},
        {"only a part of the text", [](F f, A) { f.Source = "Service Control"; }, false},
        {"the alarm's trailing blank counts", [](F f, A a) { f.Source = a.Source, a.Source += ' '; }, false},
        {"the alarm's NUL counts", [](F f, A a) { f.Source = "x", a.Source = "x\0"s; }, false},
        {"the filter's surrounding blanks do not count", [](F f, A a) { f.Source = "  x ", a.Source = "x"s; },
         true},
        {"the filter's NULs do not count", [](F f, A a) { f.Source = "\0a\0b\0 \0"s, a.Source = "AB"s; },
         true},
        {"only NULs and blanks: no test", [](F f, A) { f.Source = "\0 \0"s; }, false},
        {"no test of an empty alarm text", [](F, A a) { a.Source = ""s; }, false},
        {"a text that was cut to its field",
         [](F f, A a) { f.Source = std::string(31, 'x'), a.Source = std::string(31, 'X'); }, false},
        {"all 50 characters",
         [](F f, A a) { f.Category = std::string(50, 'x'), a.Category = std::string(50, 'X'); }, true},
        {"a text longer than any field",
         [](F f, A a) { f.Category = "x", a.Category = std::string(100'000, 'x'); }, false},
        {"category", [](F f, A) { f.Category = "LOGON/logoff"; }, true},
        {"account", [](F f, A) { f.AccountName = "corp\\smith"; }, true},
        {"computer", [](F f, A) { f.Computer = "srv1"; }, true},
        {"the text of another field", [](F f, A a) { f.Category = a.Source, f.Source = a.Source; }, false},
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
    struct Type {
        std::string Text;
        std::int32_t Bit;
    };
    const Type types[] = {{"Information", 1},
                          {"WARNING", 2},
                          {" e r r o r ", 4},
                          {"Failure Audit", 8},
                          {"success   audit", 16},
                          {"Informational", 0},
                          {"   ", 0},
                          {"Warning\t", 0},
                          {"Error\0"s, 0},
                          {std::string(9999, 'E'), 0}};
    for (const Type& type : types) {
        for (const std::int32_t mask : {1, 2, 4, 8, 16, 31, 32, 64 + 2, -1, INT32_MIN}) {
            SuppressionFilter byType = AnyFilter();
            byType.EventTypes = mask;
            SuppressionFilter bySource = byType;
            bySource.Source = "service control manager";
            AlarmRecord alarm = TypicalAlarm();
            alarm.TypeOfEvent = type.Text;
            const bool covered = (mask & type.Bit) != 0;
            EXPECT_EQ(Matches(byType, alarm), covered) << type.Text << ' ' << mask;
            EXPECT_EQ(Matches(bySource, alarm), covered || type.Bit == 0) << type.Text << ' ' << mask;
        }
    }
}

double Days(const char* date) {
    return DaysFromAlarmDate(*ParseAlarmDate(date));
}

TEST(FilterMatcher, TestsTheDateRange) {
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double Millisecond = 1.0 / 86'400'000;
    const double begin = Days("6/15/2004 10:30:15 AM");
    const double end = Days("6/17/2004");
    const struct {
        const char* Name;
        double Begin;
        double End;
        const char* Alarm;
        bool Expected;
    } cases[] = {
        {"inside", begin, end, "6/16/2004 1:00:00 PM", true},
        {"later on the day of the end", begin, end, "6/17/2004 1:00:00 PM", false},
        {"the begin is 0.2 s later", begin + 200 * Millisecond, end, "6/15/2004 10:30:15 AM", false},
        {"the begin is 0.2 s earlier", begin - 200 * Millisecond, end, "6/15/2004 10:30:15 AM", true},
        {"the end is 0.2 s earlier", begin - 1, begin - 200 * Millisecond, "6/15/2004 10:30:15 AM", false},
        {"the end is 0.2 s later", begin - 1, begin + 200 * Millisecond, "6/15/2004 10:30:15 AM", true},
        {"begin and end swapped", end, begin, "6/16/2004", false},
        {"before 1900, the fraction still counts forwards", -1.75, -1.25, "12/29/1899 6:00:00 AM", false},
        {"before 1900, the end", -1.25, -1.75, "12/29/1899 6:00:00 PM", true},
        {"before 1900, after the end", -1.25, -1.75, "12/29/1899 6:00:01 PM", false},
        {"the begin is NaN", NotANumber, end, "1/1/1900", true},
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

TEST(FilterMatcher, TriesEveryFilter) {
    std::vector<SuppressionFilter> filters(4, AnyFilter());
    filters[0].Source = "disk";
    filters[0].EventID = 7;
    filters[1].Source = "disk";
    filters[2].EventID = 9;
    const FilterMatcher matcher(filters);
    const struct {
        const char* Source;
        std::int32_t EventID;
        bool Expected;
    } cases[] = {{"Disk", 7, true}, {"Disk", 8, true}, {"Print", 7, false}, {"Print", 9, true}};
    for (const auto& [source, eventId, expected] : cases) {
        AlarmRecord alarm = TypicalAlarm();
        alarm.Source = source;
        alarm.EventID = eventId;
        EXPECT_EQ(matcher.Matches(alarm), expected) << source << ' ' << eventId;
    }
    EXPECT_FALSE(FilterMatcher().Matches(TypicalAlarm()));
}

}  // namespace
}  // namespace tallyhorn
