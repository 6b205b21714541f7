#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <numeric>
#include <string>
#include <vector>

#include "tests/support/FakeDatagrams.h"
#include "tools/SyslogRun.h"

namespace tallyhorn {
namespace {

class SyslogRunTest : public testing::Test {
protected:
    std::deque<std::string>& Waiting() { return datagrams_.Bound[Port].Waiting; }

    static constexpr std::uint16_t Port = 514;
    FakeDatagrams datagrams_;
    std::unique_ptr<DatagramReceiver> receiver_ = datagrams_.Listen(Port, [] {});
    std::unique_ptr<DatagramSender> sender_ = datagrams_.Open("host", Port);
    SendArguments arguments_;
};

TEST_F(SyslogRunTest, CountsAndNumbersADemoAtItsRate) {
    arguments_.Count = 300;
    arguments_.Seed = 5;
    arguments_.Rate = 3000;
    arguments_.Number = true;
    SyslogRun run(arguments_, *sender_);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run.SendDemo(), SyslogRun::Outcome::Sent);
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(95));
    ASSERT_EQ(Waiting().size(), 300U);
    EXPECT_EQ(run.Counts().Datagrams, 300U);
    DemoFeed feed(5);
    std::uint64_t bytes = 0;
    DemoTypeCounts types{};
    for (std::size_t i = 0; i < Waiting().size(); ++i) {
        const DemoText expected = feed.NextSyslog();
        const std::string number = std::to_string(1'000'001 + i).substr(1);
        ASSERT_EQ(Waiting()[i], expected.Text + " #" + number);
        bytes += Waiting()[i].size();
        ++types[static_cast<std::size_t>(expected.Type)];
    }
    EXPECT_EQ(run.Counts().Bytes, bytes);
    EXPECT_EQ(run.Counts().ByType, types);
}

TEST_F(SyslogRunTest, AnEndlessDemoEndsWhenNobodyListens) {
    receiver_.reset();
    SyslogRun run(arguments_, *sender_);
    EXPECT_EQ(run.SendDemo(), SyslogRun::Outcome::Refused);
}

}  // namespace
}  // namespace tallyhorn
