#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "records/NetBiosFormat.h"
#include "records/SyslogFormat.h"
#include "tools/DemoFeed.h"

namespace tallyhorn {
namespace {

constexpr int Texts = 10'000;

bool IsWhole(const AlarmRecord& alarm, DemoType type) {
    const bool hasType =
        type == DemoType::Other || alarm.TypeOfEvent == DemoTypeNames[static_cast<std::size_t>(type)];
    return hasType && !alarm.AlarmName.empty() && !alarm.LogType.empty() && !alarm.Source.empty() &&
           alarm.EventID > 0 && !alarm.Computer.empty() && SplitAlarmDate(alarm.DateTime).Year == 2026;
}

/// For both channels: a seed determines the feed, at least 95 % of the texts can be parsed, and odd
/// characters occur.
TEST(DemoFeedTest, IsReproducibleAndLifelike) {
    for (const bool bySyslog : {false, true}) {
        DemoFeed feed(1);
        DemoFeed same(1);
        DemoFeed other(2);
        int differing = 0;
        int whole = 0;
        std::map<DemoType, int> types;
        std::set<char> characters;
        for (int i = 0; i < Texts && !HasFailure(); ++i) {
            const auto next = [bySyslog](DemoFeed& from) {
                return bySyslog ? from.NextSyslog() : from.Next();
            };
            const auto [text, type] = next(feed);
            EXPECT_EQ(text, next(same).Text);
            differing += text != next(other).Text ? 1 : 0;
            AlarmRecord read;
            if (bySyslog)
                ParseSyslogText(text, false, AlarmDate(), read);
            else
                ParseCurrentAlarm(text, read);
            EXPECT_EQ(bySyslog, text.starts_with("<13") && IsAlarmNotification(text)) << text;
            EXPECT_TRUE(text.size() >= 280 && text.size() < 1500) << text;
            whole += IsWhole(read, type) ? 1 : 0;
            ++types[type];
            characters.insert(text.begin(), text.end());
        }
        EXPECT_GT(differing, Texts * 99 / 100);
        EXPECT_GT(whole, Texts * 95 / 100);
        EXPECT_EQ(types.size(), DemoTypeNames.size());
        for (const char odd : std::string("\t\x07\x1B\x7F\x81\xA0\xFC\xFF<>&\"'%*"))
            EXPECT_TRUE(characters.contains(odd)) << static_cast<int>(odd);
        EXPECT_FALSE(characters.contains('\0'));
    }
}

}  // namespace
}  // namespace tallyhorn
