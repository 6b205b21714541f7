#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "filters/SuppressionFilter.h"

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

TEST(SuppressionFilter, KeepsEveryBitOfItsData) {
    for (const int step : {1, 7, 255}) {
        std::array<char, FilterDataSize> data;
        for (std::size_t i = 0; i < data.size(); ++i)
            data[i] = static_cast<char>(static_cast<unsigned char>(255U - i * static_cast<unsigned>(step)));
        const FilterSlot encoded = EncodeFilter(DecodeFilter(data));
        EXPECT_EQ(std::memcmp(encoded.data(), data.data(), data.size()), 0) << "step " << step;
    }
}

}  // namespace
}  // namespace tallyhorn
