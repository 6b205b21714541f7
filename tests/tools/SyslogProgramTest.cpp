#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/DatagramSockets.h"
#include "tests/fakes/TestMailslot.h"
#include "tests/tools/RunSend.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

/// tallyhorn-send as a process of its own, and the system's UDP port that it sends to.
class SyslogProgramTest : public testing::Test {
protected:
    Outcome Send(const Texts& arguments) const {
        Texts all{"--syslog", target_};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return RunSend(home_, all);
    }
    Texts Take(std::size_t count) {
        Texts texts;
        EXPECT_TRUE(Eventually([&] {
            while (const std::optional<std::string_view> text = receiver_->Next())
                texts.emplace_back(*text);
            return texts.size() >= count;
        })) << texts.size();
        return texts;
    }

    TemporaryFolder home_;
    std::unique_ptr<DatagramReceiver> receiver_ = MakeDatagramSockets()->Listen(0, [] {});
    std::string target_ = "127.0.0.1:" + std::to_string(receiver_->Port());
};

TEST_F(SyslogProgramTest, SendsEachTextAsItIs) {
    const Outcome one = Send({"a text of 22 bytes: ok"});
    EXPECT_EQ(one.Status, 0) << one.Errors;
    EXPECT_EQ(one.Output, "sent 1 datagram, 22 bytes to " + target_ + "\n");
    EXPECT_EQ(one.Errors, "");
    const Outcome raw = Send({"--raw", "first", std::string(600, 'x'), "third"});
    EXPECT_EQ(raw.Output, "sent 3 datagrams, 610 bytes to " + target_ + "\n");
    EXPECT_EQ(Take(4), (Texts{"a text of 22 bytes: ok", "first", std::string(600, 'x'), "third"}));
    target_ = "[::1]:" + std::to_string(receiver_->Port());
    EXPECT_EQ(Send({"over the other family"}).Status, 0);
    target_ = "localhost:" + std::to_string(receiver_->Port());
    EXPECT_EQ(Send({"by name"}).Status, 0);
    EXPECT_EQ(Take(2), (Texts{"over the other family", "by name"}));
}

TEST_F(SyslogProgramTest, SendsTheBytesOfAFile) {
    std::string bytes = "first line\r\nsecond\n\x1A";
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    bytes.resize(DatagramSockets::LargestSize, 'z');
    WriteBytes(home_ / "text", bytes);
    EXPECT_EQ(Send({"--file", home_ / "text"}).Status, 0);
    EXPECT_TRUE(Take(1) == Texts{bytes});
    WriteBytes(home_ / "text", std::string(65536, 'z'));
    const Outcome tooLong = Send({"--file", home_ / "text"});
    EXPECT_EQ(tooLong.Status, 1);
    EXPECT_EQ(tooLong.Errors, "tallyhorn-send: the system did not take a datagram for " + target_ +
                                  ": it is too long or there is no way\n");
    EXPECT_EQ(tooLong.Output, "sent 0 datagrams, 0 bytes to " + target_ + "\n");
}

TEST_F(SyslogProgramTest, SaysWhatIsWrong) {
    receiver_.reset();
    const Outcome nobody = Send({"text"});
    EXPECT_EQ(nobody.Status, 1);
    EXPECT_EQ(nobody.Errors, "tallyhorn-send: nobody listens at " + target_ + "\n");
    target_ = "no such host:514";
    const Outcome unknown = Send({"text"});
    EXPECT_EQ(unknown.Status, 1);
    EXPECT_EQ(unknown.Errors, "tallyhorn-send: there is no way to no such host:514\n");
    EXPECT_EQ(unknown.Output, "");
    target_ = "host";
    EXPECT_EQ(Send({"text"}).Status, 2);
}

}  // namespace
}  // namespace tallyhorn
