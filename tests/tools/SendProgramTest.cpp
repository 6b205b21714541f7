#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clock.h"
#include "platform/DatagramSockets.h"
#include "reception/cvbMailslot.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

/// The result of a process.
struct Result {
    int Status = -1;
    std::string Output;
    std::string Errors;

    bool operator==(const Result&) const = default;
};

void PrintTo(const Result& result, std::ostream* out) {
    *out << result.Status << ": " << result.Output << result.Errors;
}

/// Runs tallyhorn-send as a process, and reads the mailslot and the UDP port that it sends to.
class SendProgramTest : public testing::Test {
protected:
    /// Arguments must not contain ", $, ` or %, which shells interpret inside double quotes.
    Result Send(const Texts& arguments, const std::string& redirection = {}) const {
        const std::string out = testMailslot_.Home / "out";
        const std::string err = testMailslot_.Home / "err";
        // "cd . &&" because cmd.exe removes a quote at the begin of a command and one at its end.
        std::string command = "cd . && \"" TALLYHORN_SEND "\"";
        for (const std::string& argument : arguments)
            command += " \"" + argument + '"';
        command += redirection + " >\"" + out + "\" 2>\"" + err + '"';
        const int status = std::system(command.c_str());
        // Linux returns a wait status, with the exit status in the second byte.
        constexpr int LargestExitStatus = 255;
        return {status > LargestExitStatus ? status >> 8 : status, ReadText(out), ReadText(err)};
    }
    Result SendByMailslot(Texts arguments, const std::string& redirection = {}) const {
        arguments.insert(arguments.begin(),
                         {"--mailslot", testMailslot_.Name, "--mailslot-folder", testMailslot_.Folder});
        return Send(arguments, redirection);
    }
    Result SendBySyslog(Texts arguments) const {
        arguments.insert(arguments.begin(), {"--syslog", target_});
        return Send(arguments);
    }
    Texts ReadMailslot(std::int16_t count) {
        EXPECT_TRUE(Eventually([&] { return mailslot_.CheckForMessages() >= count; }));
        Texts messages;
        mailslot_.ReadMessages(messages);
        messages.erase(messages.begin());
        return messages;
    }
    Texts ReadPort(std::size_t count) {
        Texts texts;
        EXPECT_TRUE(Eventually([&] {
            while (const std::optional<std::string_view> text = receiver_->Next())
                texts.emplace_back(*text);
            return texts.size() >= count;
        })) << texts.size();
        return texts;
    }

    TestMailslot testMailslot_;
    SystemClock clock_;
    cvbMailslot mailslot_{*testMailslot_.Transport, clock_};
    std::unique_ptr<DatagramReceiver> receiver_ = MakeDatagramSockets()->Listen(0, [] {});
    std::string target_ = "127.0.0.1:" + std::to_string(receiver_->Port());
};

TEST_F(SendProgramTest, SendsTextsByMailslot) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(testMailslot_.Name, true));
    // A text of 400 bytes is sent without a NUL; it is read correctly only as the first of a batch.
    EXPECT_EQ(SendByMailslot({std::string(400, 'y')}).Status, 0);
    EXPECT_EQ(SendByMailslot({"a text of 22 bytes: ok"}),
              (Result{0, "sent 1 text, 1 datagram, 23 bytes to " + testMailslot_.Name + "\n", ""}));
    EXPECT_EQ(SendByMailslot({"--", "--help"}).Status, 0);
    EXPECT_EQ(SendByMailslot({std::string(600, 'z')}).Output,
              "sent 1 text, 3 datagrams, 624 bytes to " + testMailslot_.Name + "\n");
    EXPECT_EQ(ReadMailslot(6), (Texts{std::string(400, 'y'), "a text of 22 bytes: ok", "--help"}));
    const std::string demo = SendByMailslot({"--demo", "--count", "50"}).Output;
    EXPECT_TRUE(demo.starts_with("sent 50 texts, ")) << demo;
    EXPECT_NE(demo.find("\n  Failure Audit: "), std::string::npos) << demo;
}

TEST_F(SendProgramTest, SendsTextsBySyslog) {
    EXPECT_EQ(SendBySyslog({"a text of 22 bytes: ok"}),
              (Result{0, "sent 1 datagram, 22 bytes to " + target_ + "\n", ""}));
    EXPECT_EQ(SendBySyslog({"--raw", "first", std::string(600, 'x'), "third"}).Output,
              "sent 3 datagrams, 610 bytes to " + target_ + "\n");
    EXPECT_EQ(ReadPort(4), (Texts{"a text of 22 bytes: ok", "first", std::string(600, 'x'), "third"}));
    target_.replace(0, target_.find(':'), "[::1]");
    EXPECT_EQ(SendBySyslog({"by IPv6"}).Status, 0);
    EXPECT_EQ(ReadPort(1), Texts{"by IPv6"});
}

TEST_F(SendProgramTest, SendsTheBytesOfAFile) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(testMailslot_.Name, true));
    const std::string file = testMailslot_.Home / "text";
    std::string bytes = "first line\r\nsecond\n\x1A";
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    WriteBytes(file, bytes);
    EXPECT_EQ(SendByMailslot({"--file", file}).Status, 0);
    EXPECT_EQ(SendByMailslot({"--file", "-"}, " <\"" + file + '"').Status, 0);
    EXPECT_EQ(ReadMailslot(2), (Texts{bytes, bytes}));
    bytes.resize(DatagramSockets::LargestSize, '\0');
    WriteBytes(file, bytes);
    EXPECT_EQ(SendBySyslog({"--file", file}).Status, 0);
    EXPECT_TRUE(ReadPort(1) == Texts{bytes});
    WriteBytes(file, std::string(65536, 'z'));
    EXPECT_EQ(SendBySyslog({"--file", file}),
              (Result{1, "sent 0 datagrams, 0 bytes to " + target_ + "\n",
                      "tallyhorn-send: the system did not accept a datagram for " + target_ +
                          ": it is too long, or there is no route\n"}));
    EXPECT_EQ(SendByMailslot({"--file", testMailslot_.Home / "missing"}).Status, 2);
    EXPECT_EQ(SendByMailslot({"--file", testMailslot_.Home.Path().string()}).Status, 2);
}

TEST_F(SendProgramTest, ReportsFailures) {
    EXPECT_EQ(SendByMailslot({"text"}),
              (Result{1, "", "tallyhorn-send: nobody listens at the mailslot " + testMailslot_.Name + "\n"}));
    receiver_.reset();
    const Result nobody = SendBySyslog({"text"});
    EXPECT_EQ(nobody.Status, 1);
    EXPECT_EQ(nobody.Errors, "tallyhorn-send: nobody listens at " + target_ + "\n");
    target_ = "no such host:514";
    EXPECT_EQ(SendBySyslog({"text"}),
              (Result{1, "", "tallyhorn-send: cannot find the host or a route to it: no such host:514\n"}));
    const Result wrong = Send({"--demo", "--count", "many"});
    EXPECT_EQ(wrong.Status, 2);
    EXPECT_NE(wrong.Errors.find("--count needs a whole number from 1 to "), std::string::npos)
        << wrong.Errors;
    EXPECT_EQ(Send({"--help"}).Status, 0);
    EXPECT_TRUE(Send({"--version"}).Output.starts_with("tallyhorn-send "));
}

}  // namespace
}  // namespace tallyhorn
