#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <tuple>

#include "tests/support/Cases.h"
#include "tools/SendArguments.h"

namespace tallyhorn {
namespace {

using Words = std::vector<std::string>;

SendArguments Parse(const Words& words) {
    std::string error;
    const std::optional<SendArguments> arguments = ParseSendArguments(words, error);
    EXPECT_TRUE(arguments) << testing::PrintToString(words) << ": " << error;
    return arguments.value_or(SendArguments());
}

TEST(SendArgumentsTest, AcceptsEachModeWithItsOptions) {
    const SendArguments text = Parse({"--mailslot", "Other", "text"});
    EXPECT_EQ(text.Mode, SendMode::Text);
    EXPECT_EQ(text.Mailslot, "Other");
    EXPECT_EQ(text.Texts, Words{"text"});
    EXPECT_FALSE(text.Syslog);
    EXPECT_EQ(Parse({""}).Texts, Words{""});
    EXPECT_EQ(Parse({"--raw", "*1-0-1-a", "", "--", "--b"}).Texts, (Words{"*1-0-1-a", "", "--b"}));
    const SendArguments demo = Parse({"--count", "5", "--demo", "--seed", "18446744073709551615"});
    EXPECT_EQ(demo.Mode, SendMode::Demo);
    EXPECT_EQ(demo.Mailslot, "TallyhornEngine");
    EXPECT_EQ(demo.Count, 5U);
    EXPECT_EQ(demo.Rate, std::nullopt);
    EXPECT_EQ(demo.Seed, 18446744073709551615U);
    EXPECT_TRUE(Parse({"--number", "--demo", "--rate", "9", "--syslog", "a:1"}).Number);
}

TEST(SendArgumentsTest, AcceptsATargetForSyslog) {
    const std::tuple<const char*, const char*, std::int32_t> cases[] = {
        {"localhost:514", "localhost", 514},
        {"10.0.0.1:1", "10.0.0.1", 1},
        {"[::1]:65535", "::1", 65535},
        {"[fe80::1%eth0]:0514", "fe80::1%eth0", 514}};
    for (const auto& [given, host, port] : cases) {
        const SyslogTarget target = Parse({"--syslog", given, "text"}).Syslog.value_or(SyslogTarget());
        EXPECT_EQ(target.Host, host);
        EXPECT_EQ(target.Port, port);
        EXPECT_EQ(target.Given, given);
    }
}

TEST(SendArgumentsTest, RefusesEverythingElseWithAReason) {
    std::vector<Words> refused = {{},
                                  {"--file", ""},
                                  {"--mailslot", "", "text"},
                                  {"--demo", "--count", " 1"},
                                  {"--syslog", "host: 1", "text"}};
    for (const std::string& line : SplitAtBars(
             "two texts|--unknown|--file|--file f text|--demo text|--demo --raw x|--raw|--count 5 text|"
             "--demo --rate 0|--demo --rate 99999999999999999999|--demo --seed 18446744073709551616|"
             "--demo --seed|--demo --number|--syslog host:1 --number text|--syslog|--syslog host:1|"
             "--syslog host:1 --mailslot Other text|--mailslot-folder /tmp --syslog host:1 text|"
             "--demo --count 0|--demo --count -1|--demo --count +1|--demo --count 1x")) {
        std::istringstream words(line);
        refused.emplace_back(std::istream_iterator<std::string>(words), std::istream_iterator<std::string>());
    }
    for (const std::string& target : SplitAtBars("host|host:|:514|[]:514|::1:514|[::1]|[::1:514|host:0|"
                                                 "host:65536|host:99999999999999999999|host:+1"))
        refused.push_back({"--syslog", target, "text"});
    for (const Words& words : refused) {
        std::string error;
        EXPECT_FALSE(ParseSendArguments(words, error)) << testing::PrintToString(words);
        EXPECT_FALSE(error.empty()) << testing::PrintToString(words);
    }
}

}  // namespace
}  // namespace tallyhorn
