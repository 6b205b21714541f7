#include <gtest/gtest.h>

#include <set>

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

/// For both channels: a seed determines the feed, and at least 95 % of the texts can be parsed.
TEST(DemoFeedTest, IsReproducibleAndCanBeParsed) {
    for (const bool bySyslog : {false, true}) {
        DemoFeed feeds[] = {DemoFeed(1), DemoFeed(1), DemoFeed(2)};
        int differing = 0;
        int whole = 0;
        std::set<DemoType> types;
        for (int i = 0; i < Texts && !HasFailure(); ++i) {
            const auto next = [bySyslog](DemoFeed& from) {
                return bySyslog ? from.NextSyslog() : from.Next();
            };
            const auto [text, type] = next(feeds[0]);
            EXPECT_EQ(text, next(feeds[1]).Text);
            differing += text != next(feeds[2]).Text ? 1 : 0;
            AlarmRecord read;
            if (bySyslog)
                ParseSyslogText(text, false, AlarmDate(), read);
            else
                ParseCurrentAlarm(text, read);
            EXPECT_EQ(bySyslog, text.starts_with("<13") && IsAlarmNotification(text)) << text;
            EXPECT_EQ(text.find('\0'), std::string::npos);
            whole += IsWhole(read, type) ? 1 : 0;
            types.insert(type);
        }
        EXPECT_GT(differing, Texts * 99 / 100);
        EXPECT_GT(whole, Texts * 95 / 100);
        EXPECT_EQ(types.size(), DemoTypeNames.size());
    }
}

}  // namespace
}  // namespace tallyhorn
