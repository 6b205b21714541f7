#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "records/NetBiosFormat.h"
#include "records/SyslogFormat.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

TEST(DemoFeedTest, IsTheSameForTheSameSeed) {
    DemoFeed one(7);
    DemoFeed same(7);
    DemoFeed other(8);
    int differing = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = one.Next().Text;
        EXPECT_EQ(text, same.Next().Text);
        differing += text != other.Next().Text ? 1 : 0;
    }
    EXPECT_GT(differing, 990);
}

constexpr int Texts = 20'000;

/// What a feed of many texts had in it.
struct Seen {
    void Add(const DemoText& text, const AlarmRecord& read) {
        // Some are not as they should be, as an engine's are.
        const bool typeTold = text.Type == DemoType::Other ||
                              read.TypeOfEvent == DemoTypeNames[static_cast<std::size_t>(text.Type)];
        Whole += typeTold && !read.AlarmName.empty() && !read.LogType.empty() && !read.Source.empty() &&
                         read.EventID > 0 && !read.Computer.empty() &&
                         SplitAlarmDate(read.DateTime).Year == 2026
                     ? 1
                     : 0;
        ++Types[text.Type];
        Computers.insert(read.Computer);
        Characters.insert(text.Text.begin(), text.Text.end());
    }
    void CheckVariety() const {
        EXPECT_GT(Whole, Texts * 95 / 100);
        EXPECT_EQ(Types.size(), DemoTypeNames.size());
        for (const auto& [type, count] : Types)
            EXPECT_LE(count, Types.at(DemoType::Information));
        EXPECT_GT(Computers.size(), 50U);
        for (const char odd : std::string("\t\x07\x1B\x7F\x81\xA0\xFC\xFF<>&\"'%*"))
            EXPECT_TRUE(Characters.contains(odd)) << static_cast<int>(odd);
        EXPECT_FALSE(Characters.contains('\0'));
    }

    int Whole = 0;
    std::map<DemoType, int> Types;
    std::set<std::string> Computers;
    std::set<char> Characters;
};

TEST(DemoFeedTest, LooksLikeAnEnginesFeed) {
    DemoFeed feed(1);
    Seen seen;
    int typical = 0;
    int inParts = 0;
    for (int i = 0; i < Texts && !testing::Test::HasFailure(); ++i) {
        const DemoText next = feed.Next();
        AlarmRecord read;
        ParseCurrentAlarm(next.Text, read);
        seen.Add(next, read);
        typical += next.Text.size() >= 300 && next.Text.size() <= 390 ? 1 : 0;
        inParts += next.Text.size() > 390 ? 1 : 0;
    }
    seen.CheckVariety();
    EXPECT_GT(typical, Texts * 98 / 100);
    EXPECT_GT(inParts, 0);
    EXPECT_LT(inParts, Texts / 200);
}

TEST(DemoFeedTest, LooksLikeAnEnginesSyslog) {
    DemoFeed feed(1);
    DemoFeed same(1);
    Seen seen;
    int ofSeveralLines = 0;
    for (int i = 0; i < Texts && !testing::Test::HasFailure(); ++i) {
        const DemoText next = feed.NextSyslog();
        const std::string& text = next.Text;
        EXPECT_EQ(text, same.NextSyslog().Text);
        EXPECT_TRUE(text.size() >= 280 && text.size() < 1500) << text;
        EXPECT_TRUE(text.starts_with("<13") && IsAlarmNotification(text)) << text;
        AlarmRecord read;
        ParseSyslogText(text, false, AlarmDate(), read);
        seen.Add(next, read);
        ofSeveralLines += text.find("\r\n") != std::string::npos ? 1 : 0;
    }
    seen.CheckVariety();
    EXPECT_GT(ofSeveralLines, 0);
    EXPECT_LT(ofSeveralLines, Texts / 20);
}

}  // namespace
}  // namespace tallyhorn
