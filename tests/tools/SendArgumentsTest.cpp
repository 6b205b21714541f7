#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/SendArguments.h"

namespace tallyhorn {
namespace {

using Words = std::vector<std::string>;

TEST(SendArgumentsTest, TakesWhatTheHelpTells) {
    std::string error;
    const auto text = ParseSendArguments(Words{"--mailslot", "Other", "text"}, error);
    ASSERT_TRUE(text) << error;
    EXPECT_EQ(text->Mode, SendMode::Text);
    EXPECT_EQ(text->Mailslot, "Other");
    EXPECT_EQ(text->Texts, Words{"text"});
    const auto demo =
        ParseSendArguments(Words{"--count", "5", "--demo", "--seed", "18446744073709551615"}, error);
    ASSERT_TRUE(demo) << error;
    EXPECT_EQ(demo->Mode, SendMode::Demo);
    EXPECT_EQ(demo->Mailslot, "TallyhornEngine");
    EXPECT_EQ(demo->Count, 5U);
    EXPECT_EQ(demo->Rate, std::nullopt);
    EXPECT_EQ(demo->Seed, 18446744073709551615U);
    const auto raw = ParseSendArguments(Words{"--raw", "*1-0-1-a", "", "--", "--b"}, error);
    ASSERT_TRUE(raw) << error;
    EXPECT_EQ(raw->Texts, (Words{"*1-0-1-a", "", "--b"}));
    EXPECT_EQ(ParseSendArguments(Words{"--file", "-"}, error)->File, "-");
    EXPECT_EQ(ParseSendArguments(Words{""}, error)->Texts, Words{""});
}

TEST(SendArgumentsTest, RefusesTheRestWithALine) {
    const std::vector<Words> refused = {
        {},
        {"two", "texts"},
        {"--unknown"},
        {"--file"},
        {"--file", ""},
        {"--mailslot", "", "text"},
        {"--file", "f", "text"},
        {"--demo", "text"},
        {"--demo", "--raw", "x"},
        {"--raw"},
        {"--count", "5", "text"},
        {"--demo", "--count", "0"},
        {"--demo", "--count", "-1"},
        {"--demo", "--count", "+1"},
        {"--demo", "--count", " 1"},
        {"--demo", "--count", "1x"},
        {"--demo", "--count", "1e3"},
        {"--demo", "--rate", "0"},
        {"--demo", "--rate", "99999999999999999999"},
        {"--demo", "--seed", "18446744073709551616"},
        {"--demo", "--seed"},
    };
    for (const Words& words : refused) {
        std::string error;
        EXPECT_FALSE(ParseSendArguments(words, error)) << testing::PrintToString(words);
        EXPECT_FALSE(error.empty()) << testing::PrintToString(words);
    }
}

}  // namespace
}  // namespace tallyhorn
