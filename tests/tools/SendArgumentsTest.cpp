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
    EXPECT_EQ(ParseSendArguments(Words{""}, error)->Texts, Words{""});
}

TEST(SendArgumentsTest, TakesATargetForSyslog) {
    const struct {
        const char* Given;
        const char* Host;
        std::int32_t Port;
    } cases[] = {{"localhost:514", "localhost", 514},
                 {"10.0.0.1:1", "10.0.0.1", 1},
                 {"[::1]:65535", "::1", 65535},
                 {"[fe80::1%eth0]:9", "fe80::1%eth0", 9},
                 {"[127.0.0.1]:0514", "127.0.0.1", 514}};
    std::string error;
    for (const auto& [given, host, port] : cases) {
        const auto arguments = ParseSendArguments(Words{"--syslog", given, "text"}, error);
        ASSERT_TRUE(arguments && arguments->Syslog) << given << ": " << error;
        EXPECT_EQ(arguments->Syslog->Host, host);
        EXPECT_EQ(arguments->Syslog->Port, port);
        EXPECT_EQ(arguments->Syslog->Given, given);
    }
    const auto demo =
        ParseSendArguments(Words{"--number", "--demo", "--rate", "9", "--syslog", "a:1"}, error);
    ASSERT_TRUE(demo) << error;
    EXPECT_TRUE(demo->Number);
    EXPECT_EQ(demo->Mode, SendMode::Demo);
    EXPECT_FALSE(ParseSendArguments(Words{"text"}, error)->Syslog);
}

TEST(SendArgumentsTest, RefusesTheRestWithALine) {
    std::vector<Words> refused = {
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
        {"--demo", "--rate", "0"},
        {"--demo", "--rate", "99999999999999999999"},
        {"--demo", "--seed", "18446744073709551616"},
        {"--demo", "--seed"},
        {"--demo", "--number"},
        {"--syslog", "host:1", "--number", "text"},
        {"--syslog", "host:1", "--mailslot", "Other", "text"},
        {"--mailslot-folder", "/tmp", "--syslog", "host:1", "text"},
        {"--syslog", "host:1"},
        {"--syslog"},
    };
    for (const char* const count : {"0", "-1", "+1", " 1", "1x", "1e3"})
        refused.push_back({"--demo", "--count", count});
    for (const char* const target :
         {"host", "host:", ":514", "[]:514", "::1:514", "[::1]", "[::1:514", "host:0", "host:65536",
          "host:99999999999999999999", "host:+1", "host:-1", "host: 1"})
        refused.push_back({"--syslog", target, "text"});
    for (const Words& words : refused) {
        std::string error;
        EXPECT_FALSE(ParseSendArguments(words, error)) << testing::PrintToString(words);
        EXPECT_FALSE(error.empty()) << testing::PrintToString(words);
    }
}

}  // namespace
}  // namespace tallyhorn
