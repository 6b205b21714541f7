#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <tuple>

#include "filters/FilterFields.h"

namespace tallyhorn {
namespace {

AlarmDate Date(const CivilDateTime& parts) {
    return MakeAlarmDate(parts).value();
}

TEST(FilterFieldsTest, StoresTextsAsTypedAndShowsThemTrimmed) {
    FilterFields fields;
    fields.FilterName = " my filter ";
    fields.Source = std::string(31, 's');
    fields.Category = std::string("\0<b>c</b>\0", 10);
    fields.AccountName = std::string("a\0b\tc", 5);
    fields.Computer = std::string(60'000, '\xff');
    fields.EventTypes = FilterWarning | FilterSuccessAudit;
    SuppressionFilter record;
    ASSERT_TRUE(StoreFieldsInRecord(fields, record));
    EXPECT_EQ(record.FilterName.View(), " my filter " + std::string(39, ' '));
    EXPECT_EQ(record.AccountName.View(), std::string("a\0b\tc", 5) + std::string(45, ' '));
    EXPECT_EQ(record.EventTypes, 18);
    const FilterFields shown = ShowRecord(record);
    EXPECT_EQ(shown.FilterName + "|" + shown.Source + "|" + shown.Category + "|" + shown.AccountName + "|" +
                  shown.Computer + "|" + shown.EventID,
              "my filter|" + std::string(30, 's') + "|<b>c</b>|ab\tc|" + std::string(30, '\xff') + "|");
}

TEST(FilterFieldsTest, StoresEventIdsOrRefusesThem) {
    const std::tuple<const char*, bool, std::int32_t, const char*> cases[] = {
        {"   ", true, -1, "-1"},
        {"0", true, 0, "0"},
        {" 7036 ", true, 7036, " 7036 "},
        {"-2147483648", true, std::numeric_limits<std::int32_t>::min(), "-2147483648"},
        {"2147483648", false, 5, "2147483648"},
        {"7x", false, 5, "7x"},
    };
    for (const auto& [typed, stored, eventId, left] : cases) {
        SCOPED_TRACE(typed);
        SuppressionFilter record;
        record.FilterName = "before";
        record.EventID = 5;
        FilterFields fields;
        fields.FilterName = "after";
        fields.EventID = typed;
        EXPECT_EQ(StoreFieldsInRecord(fields, record), stored);
        EXPECT_EQ(record.EventID, eventId);
        EXPECT_EQ(fields.EventID, left);
        EXPECT_EQ(record.FilterName, FixedText<50>(stored ? "after" : "before"));
    }
}

TEST(FilterFieldsTest, StoresDatesOnlyWithADateRange) {
    FilterFields fields;
    fields.BeginDate = Date({2026, 11, 22, 18, 0, 0});
    fields.EndDate = Date({2026, 11, 23, 6, 0, 1});
    SuppressionFilter record;
    record.UseDateRange = FilterTrue;
    record.BeginDate = 1.5;
    record.EndDate = 2.5;
    const auto stored = [&] {
        EXPECT_TRUE(StoreFieldsInRecord(fields, record));
        return std::tuple(record.UseDateRange, record.BeginDate, record.EndDate);
    };
    EXPECT_EQ(stored(), std::tuple(FilterFalse, 1.5, 2.5));
    fields.UseDateRange = true;
    EXPECT_EQ(stored(), std::tuple(-1, 46348.75, 46349 + (6 * 3600 + 1) / 86400.0));
    fields.EventID.clear();  // the event ID -1 is shown as an empty text
    EXPECT_EQ(ShowRecord(record), fields);
}

TEST(FilterFieldsTest, LimitsTheDatesOfAFileToThoseThatCanBeTyped) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    const std::tuple<double, AlarmDate, AlarmDate> cases[] = {
        {0, Date({1899, 12, 30}), Date({1899, 12, 30})},
        {46348.75 + 0.4 / 86400, Date({2026, 11, 22, 18, 0, 1}), Date({2026, 11, 22, 18, 0, 0})},
        {-1.25, Date({1899, 12, 29, 6, 0, 0}), Date({1899, 12, 29, 6, 0, 0})},
        {1e300, Date({9999, 12, 31, 23, 59, 59}), LastTypedDate},
        {-Infinity, Date({100, 1, 1}), FirstTypedDate},
        // A begin or an end that is NaN excludes no date.
        {std::nan(""), FirstTypedDate, LastTypedDate},
    };
    for (const auto& [days, asBegin, asEnd] : cases) {
        SCOPED_TRACE(days);
        SuppressionFilter record;
        record.UseDateRange = FilterTrue;
        record.EventID = AnyEventID;
        record.BeginDate = record.EndDate = days;
        const FilterRecord before = EncodeFilter(record);
        FilterFields fields = ShowRecord(record);
        EXPECT_TRUE(fields.UseDateRange);
        EXPECT_EQ(fields.BeginDate, asBegin);
        EXPECT_EQ(fields.EndDate, asEnd);
        ASSERT_TRUE(StoreFieldsInRecord(fields, record));
        EXPECT_EQ(EncodeFilter(record), before) << "saving what is shown changes nothing";
    }
}

TEST(FilterFieldsTest, ProposesAFilterForANotification) {
    const std::tuple<std::int32_t, std::string, const char*, std::string, std::int32_t> cases[] = {
        {7036, "Service Control Manager", "Information", "7036_Service Control Manage", FilterInformation},
        {0, "Disk", "WARNING", "0_Disk", FilterWarning},
        {-5, "", "err", "-5_", FilterError},
        {-1'073'741'819, "Microsoft-Windows-Security-Auditing", "", "-1073741819_Microsoft-Windows-", 0},
        {1, "a\nb", "Failure Audit", "1_a\nb", FilterFailureAudit},
        {1, std::string(60'000, 'x'), "SUCCESSAUDIT", "1_" + std::string(22, 'x'), FilterSuccessAudit},
        {1, "x", " Error", "1_x", 0},
    };
    for (const auto& [eventId, source, type, name, eventTypes] : cases) {
        AlarmRecord alarm;
        alarm.EventID = eventId;
        alarm.Source = source;
        alarm.TypeOfEvent = type;
        alarm.Category = alarm.AccountName = alarm.Computer = "not proposed";
        FilterFields expected;
        expected.FilterName = name;
        expected.Source = source;
        expected.EventID = std::to_string(eventId);
        expected.EventTypes = eventTypes;
        EXPECT_EQ(ProposeFilter(alarm), expected) << name << " " << type;
    }
}

}  // namespace
}  // namespace tallyhorn
