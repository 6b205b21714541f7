#include <gtest/gtest.h>

#include "records/DateDisplay.h"
#include "tests/support/Cases.h"
#include "tests/support/DateTexts.h"

namespace tallyhorn {
namespace {

AlarmDate At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
    return MakeAlarmDate({year, month, day, hour, minute, second}).value();
}

/// In each pair, the first text is read as a date, and FormatGeneralDate writes this date as the second.
TEST(AlarmDate, IsReadInTheFormsOfUsEnglish) {
    for (const auto& [text, expected] :
         SplitPairs("08/21/2008 14:05:09=8/21/2008 2:05:09 PM|21/8/2008=8/21/2008|13-1-08=1/13/2008|"
                    "1.2.29=1/2/2029|1.2.30=1/2/1930|2/3/99 7:08=2/3/1999 7:08:00 AM|2008/8/2=8/2/2008|"
                    "2008-08-21 00:00:01=8/21/2008 12:00:01 AM|  8/21/2008   12:00:00AM  =8/21/2008|"
                    "8/21/2008 12:00 pm=8/21/2008 12:00:00 PM|2/29/2000=2/29/2000|1/1/0100=1/1/0100|"
                    "12/31/9999 23:59:59=12/31/9999 11:59:59 PM|8/21/2008\r\n7:00=8/21/2008|"
                    "8/21/2008 2:05:09 P=8/21/2008 2:05:09 PM|8/21/2008 12:05 a =8/21/2008 12:05:00 AM"))
        EXPECT_EQ(FormatGeneralDate(ParseAlarmDate(text).value()), expected) << text;
}

TEST(AlarmDate, IsNotReadFromAnyOtherText) {
    for (const std::string& text : SplitAtBars(
             "| |8|8/21|8/21/|12:30|8/21/208|0/1/2008|1/0/2008|1/1/0099|Thursday|8/21-2008|2/29/1900|"
             "4/31/2008|200-01-01|8/21/20081|13/13/2008|8/21/2008x|2008-13-01|-8/21/2008|\r\n8/21/2008|"
             "99999999999/1/2008|8/21/2008 7|8/21/2008 7:5|8/21/2008 7:60|8/21/2008 24:00|8/21/2008 7:05 x|"
             "8/21/2008 7:05:60|8/21/2008 0:30 AM|8/21/2008 13:00 PM|8/21/2008 2:05:09P|"
             "8/21/2008 2:05:09 P M|8/21/2008 13:05 P"))
        EXPECT_EQ(ParseAlarmDate(text), std::nullopt) << text;
}

TEST(AlarmDate, RoundTripsThroughItsPartsItsTextAndItsDays) {
    // The step shares no factor with the lengths of days, months and years, so that the times of day vary.
    for (AlarmDate date = At(100, 1, 1); date.Seconds <= At(9999, 12, 31).Seconds;
         date.Seconds += 7'654'321) {
        ASSERT_EQ(MakeAlarmDate(SplitAlarmDate(date)), date);
        ASSERT_EQ(ParseAlarmDate(FormatGeneralDate(date)), date) << FormatGeneralDate(date);
        ASSERT_EQ(MillisecondsFromDays(DaysFromAlarmDate(date)), date.Seconds * 1000);
    }
}

TEST(AlarmDate, CountsDaysFromTheEndOf1899) {
    EXPECT_EQ(DaysFromAlarmDate(AlarmDate{}), 0.0);
    EXPECT_EQ(DaysFromAlarmDate(At(1900, 1, 1, 12)), 2.5);
    EXPECT_EQ(DaysFromAlarmDate(At(1899, 12, 29, 6)), -1.25);
    EXPECT_EQ(MillisecondsFromDays(0.0 / 0.0), std::nullopt);
    EXPECT_EQ(MillisecondsFromDays(1e300), INT64_MAX);
    EXPECT_EQ(MillisecondsFromDays(-1e300), INT64_MIN);
}

TEST(DateDisplay, FollowsOrderAndSeparator) {
    const AlarmDate date = At(2008, 8, 21, 14, 5, 9);
    // The third character counts as the separator, and each occurrence of it is replaced.
    for (const auto& [separator, text] :
         SplitPairs("/=08/21/2008 2:05:09 PM|:=08:21:2008 2:05:09 PM|--=08----21----2008 2:05:09 PM| =08 21 "
                    "2008 2:05:09 PM"))
        EXPECT_EQ(FormatAlarmDate(date, DateStyle{false, separator}.Pattern(), separator), text);
    EXPECT_EQ(FormatAlarmDate(date, DateStyle{true, "-"}.Pattern(), "-"), "21-08-2008 2:05:09 PM");
    // If the third character is a digit, the second one counts as the separator.
    for (const auto& [pattern, text] : SplitPairs("dd/MM/yyyy=21.08.2008|h/dd=2.21|h=2"))
        EXPECT_EQ(FormatAlarmDate(date, pattern, "."), text);
    EXPECT_EQ(FormatAlarmDate(At(2008, 8, 1, 0, 1, 2), "MM/dd h:nn:ss AM/PM", "/"), "08/01 12:01:02 AM");
    for (const auto& [setting, separator] : SplitPairs("  =/| -= -"))
        EXPECT_EQ(DateSeparator(setting), separator);
}

TEST(DateDisplay, OrdersDatesAsTheirTextsOrder) {
    for (const bool dayFirst : {false, true}) {
        const DateStyle style{dayFirst, "/"};
        // The first 100 dates are an hour apart, so that "10:" is compared with "1:"; the others are a month
        // apart.
        AlarmDate before = At(2008, 2, 11, 9, 59, 59);
        for (int i = 0; i < 400; ++i) {
            const AlarmDate date{before.Seconds + (i < 100 ? 3'607 : 2'801'113)};
            const std::string text = FormatAlarmDate(date, style.Pattern(), "/");
            const AlarmDate halfADayLater{date.Seconds + 43'200};
            for (const AlarmDate other :
                 {before, At(2008, 2, 11, 1), At(2008, 11, 2, 22, 1, 1), halfADayLater}) {
                const std::string otherText = FormatAlarmDate(other, style.Pattern(), "/");
                ASSERT_EQ(DateTextOrder(date, dayFirst) <=> DateTextOrder(other, dayFirst),
                          text <=> otherText)
                    << text << " and " << otherText;
            }
            before = date;
        }
    }
}

TEST(DateDisplay, SortKeyCountsMinutesWithSecondsAsTheirFraction) {
    EXPECT_EQ(FormatSortKey(At(1970, 1, 1, 0, 1, 30)), "000000001.5000");
    EXPECT_EQ(FormatSortKey(At(1969, 12, 31, 23, 59, 30)), "-000000000.5000");
    EXPECT_EQ(FormatSortKey(At(2008, 8, 21, 14, 5, 9)), "020322125.1500");
    EXPECT_DOUBLE_EQ(AlarmSortKey(At(100, 1, 1)), -983'524'320.0);
    EXPECT_LT(AlarmSortKey(At(9999, 12, 31, 23, 59, 58)), AlarmSortKey(At(9999, 12, 31, 23, 59, 59)));
}

}  // namespace
}  // namespace tallyhorn
