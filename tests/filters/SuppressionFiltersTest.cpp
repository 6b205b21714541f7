#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "filters/SuppressionFilters.h"
#include "records/AnsiText.h"
#include "tests/support/FileBytes.h"
#include "tests/support/FilterSlots.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

std::string Padded(std::string text, std::size_t size) {
    text.resize(size, ' ');
    return text;
}

TEST(SuppressionFilter, TakesTheBytesOfItsFileLayout) {
    SuppressionFilter filter;
    filter.FilterName = "7036_Caf\xE9";
    filter.UseDateRange = FilterTrue;
    filter.BeginDate = 1.0;     // 3FF0000000000000
    filter.EndDate = 38353.75;  // 40E2BA3800000000
    filter.EventTypes = FilterWarning | FilterSuccessAudit;
    filter.Source = "Service Control Manager";
    filter.Category = "None";
    filter.AccountName = "CORP\\SMITH";
    filter.Computer = "SRV1";
    filter.EventID = 7036;

    const std::string slot =
        Padded("7036_Caf\xE9", 50) + "\xFF\xFF"s + "\0\0\0\0\0\0\xF0\x3F"s + "\0\0\0\0\x38\xBA\xE2\x40"s +
        "\x12\0\0\0"s + Padded("Service Control Manager", 30) + Padded("None", 50) +
        Padded("CORP\\SMITH", 50) + Padded("SRV1", 30) + "\x7C\x1B\0\0"s + std::string(212, '\0');
    ASSERT_EQ(slot.size(), FilterSlotSize);

    const FilterSlot encoded = EncodeFilter(filter);
    EXPECT_EQ(std::string(encoded.data(), encoded.size()), slot);
    EXPECT_EQ(DecodeFilter(std::span<const char, FilterDataSize>(slot.data(), FilterDataSize)), filter);
}

AlarmRecord AlarmFrom(std::string_view source) {
    AlarmRecord alarm;
    alarm.Source = source;
    return alarm;
}

/// With the blank one at the start.
std::string TableNames(const SuppressionFilters& filters) {
    std::string names;
    for (const SuppressionFilter& filter : filters.Table())
        names += StripNulls(filter.FilterName.View()) + ".";
    return names;
}

class SuppressionFiltersTest : public testing::Test {
protected:
    void Start() {
        filters_.OpenFilterFile();
        filters_.LoadSuppressionFilters();
    }

    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "SavedFilters.dat";
    SuppressionFilters filters_{path_};
};

TEST_F(SuppressionFiltersTest, LoadsWhatTheBytesOfTheFileHold) {
    const std::string a = SlotOf(FilterOn("A", "a"));
    const std::string b = SlotOf(FilterOn("B", "b"));
    const std::string blank = SlotOf(SuppressionFilter());
    const std::string nulName = std::string(50, '\0') + a.substr(50);
    const struct {
        std::string Bytes;
        const char* Table;
        std::int32_t Slots;
    } cases[] = {
        {"", ".", 0},
        {a + blank + b, ".A.B.", 3},
        {nulName + std::string(896, '\0') + b, ".B.", 4},
        {a + b.substr(0, 236), ".A.B.", 2},
        {a + b.substr(0, 235), ".A.", 1},
        {a.substr(0, 235), ".", 0},
        {a + blank + blank, ".A.", 3},
    };
    for (const auto& [bytes, table, slots] : cases) {
        SCOPED_TRACE(testing::Message() << bytes.size() << " bytes");
        WriteBytes(path_, bytes);
        Start();
        EXPECT_EQ(TableNames(filters_), table);
        EXPECT_EQ(filters_.FilterCount, static_cast<std::int32_t>(filters_.Table().size()) - 1);
        EXPECT_EQ(filters_.CountRecords(), slots);
        EXPECT_EQ(filters_.ReadFilterRecord(slots), slots > 0);
        EXPECT_FALSE(filters_.ReadFilterRecord(slots + 1));
        filters_.CloseFilterFile();
    }
}

TEST_F(SuppressionFiltersTest, WritesSlotsInPlaceAndAfterTheLast) {
    Start();
    EXPECT_TRUE(std::filesystem::is_regular_file(path_)) << "a missing file is made";
    WriteBytes(path_, SlotOf(FilterOn("A", "a")) + SlotOf(FilterOn("B", "b")).substr(0, 236));
    Start();
    filters_.CurrentFilter = FilterOn("C", "c");
    EXPECT_TRUE(filters_.WriteFilterRecord(3));
    filters_.CurrentFilter = FilterOn("D", "d");
    EXPECT_TRUE(filters_.WriteFilterRecord(1));
    EXPECT_EQ(ReadBytes(path_),
              SlotOf(FilterOn("D", "d")) + SlotOf(FilterOn("B", "b")) + SlotOf(FilterOn("C", "c")));

    EXPECT_TRUE(filters_.IsSuppressed(AlarmFrom("a"))) << "the table is the loaded one until the next load";
    EXPECT_FALSE(filters_.IsSuppressed(AlarmFrom("d")));
    Start();
    EXPECT_FALSE(filters_.IsSuppressed(AlarmFrom("a")));
    EXPECT_TRUE(filters_.IsSuppressed(AlarmFrom("d")));
}

TEST_F(SuppressionFiltersTest, FreesASlotButKeepsItsPlaceAndDates) {
    SuppressionFilter dated = FilterOn("A", "a");
    dated.UseDateRange = FilterTrue;
    dated.BeginDate = 2.5;
    dated.EndDate = 3.5;
    dated.EventTypes = FilterError;
    dated.Category = dated.AccountName = "x";
    dated.Computer = "x";
    WriteBytes(path_, SlotOf(dated) + SlotOf(FilterOn("B", "b")));
    Start();
    ASSERT_TRUE(filters_.ReadFilterRecord(1));
    filters_.ClearFilterRecord();
    EXPECT_TRUE(filters_.WriteFilterRecord(1));

    SuppressionFilter blank;
    blank.BeginDate = 2.5;
    blank.EndDate = 3.5;
    EXPECT_EQ(ReadBytes(path_), SlotOf(blank) + SlotOf(FilterOn("B", "b")));
}

TEST_F(SuppressionFiltersTest, LeavesTheCurrentFilterWhereNoRecordIs) {
    WriteBytes(path_, SlotOf(FilterOn("A", "a")));
    Start();
    for (const std::int32_t record : {0, -1, 2, INT32_MAX, INT32_MIN}) {
        EXPECT_FALSE(filters_.ReadFilterRecord(record)) << record;
        EXPECT_EQ(filters_.CurrentFilter, FilterOn("A", "a")) << record;
    }
    EXPECT_FALSE(filters_.WriteFilterRecord(0));
    EXPECT_TRUE(filters_.ReadFilterRecord(1));
    EXPECT_EQ(ReadBytes(path_), SlotOf(FilterOn("A", "a")));
}

TEST_F(SuppressionFiltersTest, StaysEmptyWhereNoFileCanBe) {
    std::filesystem::create_directory(path_);
    SuppressionFilters noFolder(folder_ / "missing/SavedFilters.dat");
    for (SuppressionFilters* filters : {&filters_, &noFolder}) {
        filters->OpenFilterFile();
        filters->LoadSuppressionFilters();
        EXPECT_EQ(filters->FilterCount, 0);
        EXPECT_EQ(filters->Table().size(), 1U);
        EXPECT_FALSE(filters->WriteFilterRecord(1));
        EXPECT_FALSE(filters->ReadFilterRecord(1));
        EXPECT_EQ(filters->CountRecords(), 0);
        EXPECT_FALSE(filters->IsSuppressed(AlarmRecord()));
    }
    EXPECT_TRUE(std::filesystem::is_directory(path_));
}

TEST_F(SuppressionFiltersTest, ReadsAFileThatItMayNotWrite) {
    WriteBytes(path_, SlotOf(FilterOn("A", "a")));
    std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
    Start();
    EXPECT_TRUE(filters_.IsSuppressed(AlarmFrom("a")));
    filters_.CloseFilterFile();
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace tallyhorn
