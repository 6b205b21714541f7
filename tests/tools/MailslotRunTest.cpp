#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/FakeClock.h"
#include "tests/support/FakeMailslots.h"
#include "tools/MailslotRun.h"

namespace tallyhorn {
namespace {

using Outcome = SendRun::Outcome;
using Texts = std::vector<std::string>;

class MailslotRunTest : public testing::Test {
protected:
    FakeMailslots::Mailslot& Mailslot() { return mailslots_.ByName[arguments_.Mailslot]; }

    SendArguments arguments_;
    FakeMailslots mailslots_;
    FakeClock clock_;
    std::unique_ptr<MailslotServer> server_ =
        mailslots_.Create(std::string(MailslotPrefix) + arguments_.Mailslot, cvbMailslot::MaximumMessageSize);
};

TEST_F(MailslotRunTest, SendsRawDatagramsUntilOneIsNotAccepted) {
    arguments_.Mode = SendMode::Raw;
    MailslotRun run(arguments_, mailslots_, clock_);
    EXPECT_EQ(run.Send({"*1-0-1-a", std::string(600, 'x'), "c"}), Outcome::NotTaken);
    EXPECT_EQ(Mailslot().Waiting, std::deque<std::string>{std::string("*1-0-1-a\0", 9)});
    EXPECT_EQ(run.Counts().Texts, 1U);
    EXPECT_EQ(run.Counts().Datagrams, 1U);
    EXPECT_EQ(run.Counts().Bytes, 9U);
}

TEST_F(MailslotRunTest, CountsTheAcceptedTextsOfADemoByType) {
    arguments_.Mode = SendMode::Demo;
    arguments_.Count = 200;
    arguments_.Seed = 5;
    for (const bool fails : {false, true}) {
        if (fails)
            Mailslot().WritesBeforeFailure = 50;
        MailslotRun run(arguments_, mailslots_, clock_);
        EXPECT_EQ(run.SendDemo(), fails ? Outcome::NotTaken : Outcome::Sent);
        const std::uint64_t texts = run.Counts().Texts.value_or(0);
        EXPECT_TRUE(fails ? texts > 0 && texts <= 50 : texts == 200) << texts;
        DemoFeed feed(5);
        DemoTypeCounts types{};
        for (std::uint64_t i = 0; i < texts; ++i)
            ++types[static_cast<std::size_t>(feed.Next().Type)];
        EXPECT_EQ(run.Counts().ByType, types);
    }
}

}  // namespace
}  // namespace tallyhorn
