#include <gtest/gtest.h>

#include <tuple>

#include "filters/SuppressionFilters.h"
#include "tests/support/FileBytes.h"
#include "tests/support/FilterRecords.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using namespace std::string_literals;

std::string Padded(std::string text, std::size_t size) {
    text.resize(size, ' ');
    return text;
}

SuppressionFilter FilterWithAllFields() {
    SuppressionFilter filter;
    filter.FilterName = "7036_Caf\xE9";
    filter.UseDateRange = FilterTrue;
    filter.BeginDate = 1.0;     // the double 3FF0000000000000
    filter.EndDate = 38353.75;  // the double 40E2BA3800000000
    filter.EventTypes = FilterWarning | FilterSuccessAudit;
    filter.Source = "Service Control Manager";
    filter.Category = "None";
    filter.AccountName = "CORP\\SMITH";
    filter.Computer = "SRV1";
    filter.EventID = 7036;
    return filter;
}

TEST(SuppressionFilter, HasAFixedLayoutInTheFile) {
    const std::string record =
        Padded("7036_Caf\xE9", 50) + "\xFF\xFF"s + "\0\0\0\0\0\0\xF0\x3F"s + "\0\0\0\0\x38\xBA\xE2\x40"s +
        "\x12\0\0\0"s + Padded("Service Control Manager", 30) + Padded("None", 50) +
        Padded("CORP\\SMITH", 50) + Padded("SRV1", 30) + "\x7C\x1B\0\0"s + std::string(212, '\0');
    ASSERT_EQ(record.size(), 448U);
    EXPECT_EQ(RecordBytes(FilterWithAllFields()), record);
    EXPECT_EQ(DecodeFilter(std::span<const char, FilterDataSize>(record.data(), FilterDataSize)),
              FilterWithAllFields());
}

class SuppressionFiltersTest : public testing::Test {
protected:
    void Load() {
        filters_.OpenFilterFile();
        filters_.LoadSuppressionFilters();
    }
    bool Write(std::int32_t record, const SuppressionFilter& filter) {
        filters_.CurrentFilter = filter;
        return filters_.WriteFilterRecord(record);
    }

    const std::string a_ = RecordBytes(FilterOn("A", "a"));
    const std::string b_ = RecordBytes(FilterOn("B", "b"));
    const std::string blank_ = RecordBytes(SuppressionFilter());

    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "folder/SavedFilters.dat";
    SuppressionFilters filters_{path_};
};

TEST_F(SuppressionFiltersTest, LoadsTheRecordsThatHaveANameAndAllTheirData) {
    std::filesystem::create_directory(path_.parent_path());
    const std::string nulName = std::string(50, '\0') + a_.substr(50);
    const std::tuple<std::string, std::string, std::int32_t> cases[] = {
        {a_ + blank_ + b_, "ab", 3},       {nulName + std::string(896, '\0') + b_, "b", 4},
        {a_ + b_.substr(0, 236), "ab", 2}, {a_ + b_.substr(0, 235), "a", 1},
        {a_.substr(0, 235), "", 0},
    };
    for (const auto& [bytes, suppressed, records] : cases) {
        SCOPED_TRACE(testing::Message() << bytes.size() << " bytes");
        WriteBytes(path_, bytes);
        Load();
        EXPECT_EQ(SuppressedSources(filters_), suppressed);
        EXPECT_EQ(filters_.FilterCount, static_cast<std::int32_t>(suppressed.size()));
        EXPECT_EQ(filters_.CountRecords(), records);
        EXPECT_EQ(filters_.ReadFilterRecord(records), records > 0);
        const SuppressionFilter last = filters_.CurrentFilter;
        for (const std::int32_t missing : {0, -1, records + 1, INT32_MAX, INT32_MIN}) {
            EXPECT_FALSE(filters_.ReadFilterRecord(missing)) << missing;
            EXPECT_EQ(filters_.CurrentFilter, last) << missing;
        }
        EXPECT_FALSE(filters_.WriteFilterRecord(0));
        EXPECT_EQ(ReadBytes(path_), bytes);
        filters_.CloseFilterFile();
    }
}

TEST_F(SuppressionFiltersTest, ChangesTakeEffectWhenTheFileIsLoadedAgain) {
    std::filesystem::create_directory(path_.parent_path());
    Load();
    EXPECT_TRUE(std::filesystem::is_regular_file(path_)) << "a missing file is created";
    WriteBytes(path_, a_ + b_.substr(0, FilterDataSize));
    Load();
    EXPECT_TRUE(Write(3, FilterOn("C", "c")));
    EXPECT_EQ(SuppressedSources(filters_), "ab");
    Load();
    EXPECT_EQ(SuppressedSources(filters_), "abc");

    // A deleted filter leaves a record in the file that keeps nothing but the dates.
    filters_.CurrentFilter = FilterWithAllFields();
    filters_.ClearFilterRecord();
    EXPECT_TRUE(filters_.WriteFilterRecord(1));
    SuppressionFilter deleted;
    deleted.BeginDate = FilterWithAllFields().BeginDate;
    deleted.EndDate = FilterWithAllFields().EndDate;
    EXPECT_EQ(ReadBytes(path_), RecordBytes(deleted) + b_ + RecordBytes(FilterOn("C", "c")));
    EXPECT_TRUE(Write(1, FilterOn("D", "d")));
    Load();
    EXPECT_EQ(SuppressedSources(filters_), "bcd") << "the record can be used again";
}

TEST_F(SuppressionFiltersTest, HasNoFiltersUntilThereIsAFile) {
    for (const char* const state : {"no folder", "a folder in place of the file"}) {
        SCOPED_TRACE(state);
        Load();
        EXPECT_EQ(filters_.FilterCount, 0);
        EXPECT_EQ(filters_.CountRecords(), 0);
        EXPECT_FALSE(Write(1, FilterOn("A", "a")));
        EXPECT_FALSE(filters_.ReadFilterRecord(1));
        EXPECT_EQ(SuppressedSources(filters_), "");
        std::filesystem::create_directories(path_);
    }
    EXPECT_TRUE(std::filesystem::is_directory(path_));
    std::filesystem::remove(path_);
    Load();
    EXPECT_TRUE(Write(1, FilterOn("A", "a"))) << "a write succeeds once a file can be created";
    filters_.CloseFilterFile();
    std::filesystem::permissions(path_, std::filesystem::perms::owner_read);
    Load();
    EXPECT_EQ(SuppressedSources(filters_), "a") << "a file that may only be read is loaded";
    filters_.CloseFilterFile();
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all);
}

}  // namespace
}  // namespace tallyhorn
