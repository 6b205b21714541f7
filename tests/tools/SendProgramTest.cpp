#include <gtest/gtest.h>

#include <future>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "reception/cvbMailslot.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TestMailslot.h"
#include "tests/tools/RunSend.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

/// tallyhorn-send as a process of its own, and the system's mailslot that it sends to.
class SendProgramTest : public testing::Test {
protected:
    Outcome Send(const Texts& arguments, const std::string& redirection = {}) const {
        Texts all{"--mailslot", slot_.Name, "--mailslot-folder", slot_.Folder};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunSend(slot_.Home, all, redirection);
    }
    Texts ReadAll(std::int16_t count) {
        EXPECT_TRUE(Eventually([&] { return mailslot_.CheckForMessages() >= count; }));
        Texts messages;
        mailslot_.ReadMessages(messages);
        messages.erase(messages.begin());
        return messages;
    }

    TestMailslot slot_;
    SystemClock clock_;
    cvbMailslot mailslot_{*slot_.Transport, clock_};
};

TEST_F(SendProgramTest, SendsWholeTexts) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(slot_.Name, true));
    const Outcome one = Send({"a text of 22 bytes: ok"});
    EXPECT_EQ(one.Status, 0) << one.Errors;
    EXPECT_EQ(one.Output, "sent 1 text, 1 datagram, 23 bytes to " + slot_.Name + "\n");
    EXPECT_EQ(Send({"--", "--help"}).Status, 0);
    EXPECT_EQ(Send({std::string(399, 'x')}).Output,
              "sent 1 text, 1 datagram, 400 bytes to " + slot_.Name + "\n");
    EXPECT_EQ(ReadAll(3), (Texts{"a text of 22 bytes: ok", "--help", std::string(399, 'x')}));
    EXPECT_EQ(Send({std::string(400, 'y')}).Output,
              "sent 1 text, 1 datagram, 400 bytes to " + slot_.Name + "\n");
    EXPECT_EQ(Send({std::string(600, 'z')}).Output,
              "sent 1 text, 3 datagrams, 624 bytes to " + slot_.Name + "\n");
    EXPECT_EQ(ReadAll(4), Texts{std::string(400, 'y')});
}

TEST_F(SendProgramTest, SendsTheBytesOfAFile) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(slot_.Name, true));
    std::string bytes = "first line\r\nsecond\n\x1A";
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    WriteBytes(slot_.Home / "text", bytes);
    EXPECT_EQ(Send({"--file", slot_.Home / "text"}).Status, 0);
    EXPECT_EQ(Send({"--file", "-"}, " <\"" + (slot_.Home / "text") + '"').Status, 0);
    EXPECT_EQ(ReadAll(2), (Texts{bytes, bytes}));
    EXPECT_EQ(Send({"--file", slot_.Home / "missing"}).Status, 2);
    EXPECT_EQ(Send({"--file", slot_.Home.Path().string()}).Status, 2);
}

TEST_F(SendProgramTest, SaysWhatIsWrong) {
    const Outcome nobody = Send({"text"});
    EXPECT_EQ(nobody.Status, 1);
    EXPECT_EQ(nobody.Errors, "tallyhorn-send: nobody listens at the mailslot " + slot_.Name + "\n");
    EXPECT_EQ(nobody.Output, "");
    EXPECT_EQ(Send({"--raw", "text"}).Status, 1);
    const Outcome wrong = Send({"--demo", "--count", "many"});
    EXPECT_EQ(wrong.Status, 2);
    EXPECT_NE(wrong.Errors.find("--count needs a whole number from 1 to "), std::string::npos)
        << wrong.Errors;
    ASSERT_TRUE(mailslot_.InitializeMailslot(slot_.Name, true));
    EXPECT_EQ(Send({"--help"}).Status, 0);
    EXPECT_EQ(Send({"--version"}).Output.rfind("tallyhorn-send ", 0), 0U);
}

TEST_F(SendProgramTest, SendsADemoAndCountsIt) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(slot_.Name, true));
    std::future<Outcome> sending = std::async(std::launch::async, [&] {
        return Send({"--demo", "--count", "600", "--rate", "3000"});
    });
    std::size_t received = 0;
    Texts messages;
    while (sending.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready)
        received += static_cast<std::size_t>(mailslot_.ReadMessages(messages));
    const Outcome outcome = sending.get();
    EXPECT_EQ(outcome.Status, 0) << outcome.Errors;
    EXPECT_EQ(outcome.Output.rfind("sent 600 texts, ", 0), 0U) << outcome.Output;
    EXPECT_NE(outcome.Output.find("\n  Failure Audit: "), std::string::npos);
    // The long ones are lost or not, depending on what the reads meet.
    EXPECT_TRUE(Eventually([&] {
        received += static_cast<std::size_t>(mailslot_.ReadMessages(messages));
        return received >= 580;
    })) << received;
    EXPECT_LE(received, 600U);
}

}  // namespace
}  // namespace tallyhorn
