#include <gtest/gtest.h>

#include "records/AnsiText.h"
#include "tests/support/Cases.h"

namespace tallyhorn {
namespace {

TEST(AnsiText, FoldsAccentedLettersAndNothingElse) {
    const std::string lower = "stra\337e \xE4\xF6\xFC\xE9 \x9A\x9C\x9E\xFF \xF7\xD7 [@`{";
    const std::string upper = "STRA\337E \xC4\xD6\xDC\xC9 \x8A\x8C\x8E\x9F \xF7\xD7 [@`{";
    EXPECT_EQ(UpperCase(lower), upper);
    for (std::size_t i = 0; i < upper.size(); ++i)
        EXPECT_EQ(ToLower(upper[i]), lower[i]) << i;
}

/// Puts every byte value at every position of texts of 0 to 17 bytes: eight bytes are folded at once.
TEST(AnsiText, FoldsTextsOfEveryLength) {
    std::string upper;
    for (std::size_t length = 0; length <= 17; ++length) {
        for (std::size_t i = 0; i < length * 256; ++i) {
            std::string name = std::string("azAZ[`{@\x7Fmnopqrst").substr(0, length);
            name[i / 256] = static_cast<char>(i % 256);
            std::string expected;
            for (const char character : name)
                expected += ToUpper(character);
            AssignUpperCase(upper, name);
            ASSERT_EQ(upper, expected) << name;
        }
    }
}

TEST(AnsiText, EveryByteSurvivesUnicode) {
    for (int byte = 0; byte < 256; ++byte) {
        const auto character = static_cast<char>(byte);
        EXPECT_EQ(AnsiFromUnicode(UnicodeFromAnsi(character)), character) << byte;
    }
    EXPECT_EQ(UnicodeFromAnsi('\x80'), 0x20AC);
    EXPECT_EQ(UnicodeFromAnsi('\x81'), 0x0081);
    EXPECT_EQ(AnsiFromUnicode(0x0080), std::nullopt);
    EXPECT_EQ(AnsiFromUnicode(0x1F600), std::nullopt);
}

TEST(AnsiText, ReadsValidUtf8Only) {
    EXPECT_EQ(AnsiFromUtf8("a\xC3\xA9\xC2\x81\xE2\x82\xAC\xE2\x84\xA2"), "a\xE9\x81\x80\x99");
    EXPECT_EQ(AnsiFromUtf8("a\xC3"), "a?") << "cut short";
    EXPECT_EQ(AnsiFromUtf8("\xC0\x80"), "??") << "overlong";
    EXPECT_EQ(AnsiFromUtf8("\xED\xA0\x80"), "???") << "surrogate";
    EXPECT_EQ(AnsiFromUtf8("\xF0\x9F\x98\x80!"), "?!") << "not in Windows-1252";
    EXPECT_EQ(AnsiFromUtf8("\xFF\xFE"), "??");
}

TEST(ReadInt32, ReadsANumberOrLeavesTheOldOne) {
    std::int32_t number = 0;
    for (const auto& [text, expected] : SplitPairs(
             "528=528|  -12 =-12|+7=7|2.5=2|3.5=4|-2.5=-2|-3.5=-4|2.50001=3|2.49999=2|.5=0|1.5000=2|5.=5|"
             "2147483647.4=2147483647|-2147483648.5=-2147483648|0000000000000000000000000012=12")) {
        EXPECT_TRUE(ReadInt32(text, number)) << text;
        EXPECT_EQ(std::to_string(number), expected) << text;
    }
    for (const std::string& text : SplitAtBars(
             "2147483648|2147483647.5|-2147483648.6|99999999999999999999999999|| |-|.|1 2|- 1|1e3|0x10|"
             "1.2.3|12a|1,000")) {
        EXPECT_FALSE(ReadInt32(text, number)) << text;
        EXPECT_EQ(number, 12) << text;
    }
}

}  // namespace
}  // namespace tallyhorn
