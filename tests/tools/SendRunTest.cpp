#include <gtest/gtest.h>

#include <tuple>

#include "tests/support/FakeClock.h"
#include "tests/support/FakeDatagrams.h"
#include "tests/support/FakeMailslots.h"
#include "tools/MailslotRun.h"
#include "tools/SyslogRun.h"

namespace tallyhorn {
namespace {

using Outcome = SendRun::Outcome;

class SendRunTest : public testing::Test {
protected:
    SendRunTest() { arguments_.Seed = 5; }

    FakeMailslots::Mailslot& Mailslot() { return mailslots_.ByName[arguments_.Mailslot]; }
    /// Returns how many of the first `count` texts of the feed have each type.
    static DemoTypeCounts Types(std::uint64_t count) {
        DemoFeed feed(5);
        DemoTypeCounts types{};
        for (std::uint64_t i = 0; i < count; ++i)
            ++types[static_cast<std::size_t>(feed.Next().Type)];
        return types;
    }

    static constexpr std::uint16_t Port = 514;
    SendArguments arguments_;
    FakeMailslots mailslots_;
    FakeClock clock_;
    std::unique_ptr<MailslotServer> server_ =
        mailslots_.Create(std::string(MailslotPrefix) + arguments_.Mailslot, cvbMailslot::MaximumMessageSize);
    FakeDatagrams datagrams_;
    std::unique_ptr<DatagramReceiver> receiver_ = datagrams_.Listen(Port, [] {});
    std::unique_ptr<DatagramSender> sender_ = datagrams_.Open("host", Port);
};

TEST_F(SendRunTest, SendsRawDatagramsToAMailslotUntilOneIsNotAccepted) {
    arguments_.Mode = SendMode::Raw;
    MailslotRun run(arguments_, mailslots_, clock_);
    EXPECT_EQ(run.Send({"*1-0-1-a", std::string(600, 'x'), "c"}), Outcome::NotTaken);
    EXPECT_EQ(Mailslot().Waiting, std::deque<std::string>{std::string("*1-0-1-a\0", 9)});
    EXPECT_EQ(std::tuple(run.Counts().Texts, run.Counts().Datagrams, run.Counts().Bytes),
              std::tuple(1U, 1U, 9U));
}

TEST_F(SendRunTest, CountsTheAcceptedTextsOfAMailslotDemoByType) {
    arguments_.Count = 200;
    for (const bool fails : {false, true}) {
        if (fails)
            Mailslot().WritesBeforeFailure = 50;
        MailslotRun run(arguments_, mailslots_, clock_);
        EXPECT_EQ(run.SendDemo(), fails ? Outcome::NotTaken : Outcome::Sent);
        const std::uint64_t texts = run.Counts().Texts.value_or(0);
        EXPECT_TRUE(fails ? texts > 0 && texts <= 50 : texts == 200) << texts;
        EXPECT_EQ(run.Counts().ByType, Types(texts));
    }
}

TEST_F(SendRunTest, CountsAndNumbersASyslogDemoAtItsRate) {
    arguments_.Count = 300;
    arguments_.Rate = 3000;
    arguments_.Number = true;
    SyslogRun run(arguments_, *sender_);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run.SendDemo(), Outcome::Sent);
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(95));
    const std::deque<std::string>& waiting = datagrams_.Bound[Port].Waiting;
    ASSERT_EQ(waiting.size(), 300U);
    EXPECT_EQ(run.Counts().Datagrams, 300U);
    DemoFeed feed(5);
    std::uint64_t bytes = 0;
    DemoTypeCounts types{};
    for (std::size_t i = 0; i < waiting.size(); ++i) {
        const DemoText expected = feed.NextSyslog();
        ASSERT_EQ(waiting[i], expected.Text + " #" + std::to_string(1'000'001 + i).substr(1));
        bytes += waiting[i].size();
        ++types[static_cast<std::size_t>(expected.Type)];
    }
    EXPECT_EQ(run.Counts().Bytes, bytes);
    EXPECT_EQ(run.Counts().ByType, types);
    arguments_.Count.reset();
    receiver_.reset();
    EXPECT_EQ(SyslogRun(arguments_, *sender_).SendDemo(), Outcome::Refused) << "ends an endless demo";
}

}  // namespace
}  // namespace tallyhorn
