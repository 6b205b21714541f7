#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/Clock.h"
#include "platform/DatagramSockets.h"
#include "reception/cvbMailslot.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using Texts = std::vector<std::string>;

/// Runs tallyhorn-send as a process, and reads the mailslot and the UDP port that it sends to.
class SendProgramTest : public testing::Test {
protected:
    /// Returns the exit status, the output and the errors as "status|output|errors".  Arguments must not
    /// contain ", $, ` or %, which shells interpret inside double quotes.
    std::string Send(const Texts& arguments, const std::string& redirection = {}) const {
        const std::string out = testMailslot_.Home / "out";
        const std::string err = testMailslot_.Home / "err";
        // Begins with "cd . &&", because cmd.exe would otherwise remove the first and the last quote.
        std::string command = "cd . && \"" TALLYHORN_SEND "\"";
        for (const std::string& argument : arguments)
            command += " \"" + argument + '"';
        command += redirection + " >\"" + out + "\" 2>\"" + err + '"';
        const int status = std::system(command.c_str());
        // Linux returns a wait status, with the exit status in the second byte.
        return std::to_string(status > 255 ? status >> 8 : status) + "|" + ReadText(out) + "|" +
               ReadText(err);
    }
    std::string SendByMailslot(Texts arguments, const std::string& redirection = {}) const {
        arguments.insert(arguments.begin(),
                         {"--mailslot", testMailslot_.Name, "--mailslot-folder", testMailslot_.Folder});
        return Send(arguments, redirection);
    }
    std::string SendBySyslog(Texts arguments) const {
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
    const std::string end = " bytes to " + testMailslot_.Name + "\n|";
    // A text of 400 bytes is sent without a NUL; it is read correctly only if it is the first of a batch.
    EXPECT_EQ(SendByMailslot({std::string(400, 'y')}), "0|sent 1 text, 1 datagram, 400" + end);
    EXPECT_EQ(SendByMailslot({"--", "--help"}), "0|sent 1 text, 1 datagram, 7" + end);
    EXPECT_EQ(SendByMailslot({std::string(600, 'z')}), "0|sent 1 text, 3 datagrams, 624" + end);
    EXPECT_EQ(ReadMailslot(5), (Texts{std::string(400, 'y'), "--help"}));
    const std::string demo = SendByMailslot({"--demo", "--count", "50"});
    EXPECT_TRUE(demo.starts_with("0|sent 50 texts, ")) << demo;
    EXPECT_NE(demo.find("\n  Failure Audit: "), std::string::npos) << demo;
}

TEST_F(SendProgramTest, SendsTextsBySyslog) {
    EXPECT_EQ(SendBySyslog({"text"}), "0|sent 1 datagram, 4 bytes to " + target_ + "\n|");
    EXPECT_EQ(SendBySyslog({"--raw", "first", std::string(600, 'x'), "third"}),
              "0|sent 3 datagrams, 610 bytes to " + target_ + "\n|");
    EXPECT_EQ(ReadPort(4), (Texts{"text", "first", std::string(600, 'x'), "third"}));
    target_.replace(0, target_.find(':'), "[::1]");
    EXPECT_TRUE(SendBySyslog({"by IPv6"}).starts_with("0|"));
    EXPECT_EQ(ReadPort(1), Texts{"by IPv6"});
}

TEST_F(SendProgramTest, SendsTheBytesOfAFile) {
    ASSERT_TRUE(mailslot_.InitializeMailslot(testMailslot_.Name, true));
    const std::string file = testMailslot_.Home / "text";
    std::string bytes = "first line\r\nsecond\n\x1A";
    for (int byte = 1; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    WriteBytes(file, bytes);
    SendByMailslot({"--file", file});
    SendByMailslot({"--file", "-"}, " <\"" + file + '"');
    EXPECT_EQ(ReadMailslot(2), (Texts{bytes, bytes}));
    bytes.resize(DatagramSockets::LargestSize, '\0');
    WriteBytes(file, bytes);
    SendBySyslog({"--file", file});
    EXPECT_TRUE(ReadPort(1) == Texts{bytes});
    WriteBytes(file, std::string(65536, 'z'));
    EXPECT_EQ(SendBySyslog({"--file", file}),
              "1|sent 0 datagrams, 0 bytes to " + target_ +
                  "\n|tallyhorn-send: the system did not accept a datagram for " + target_ +
                  ": it is too long, or there is no route\n");
    for (const char* const name : {"missing", ""})
        EXPECT_TRUE(SendByMailslot({"--file", testMailslot_.Home / name}).starts_with("2||")) << name;
}

TEST_F(SendProgramTest, ReportsFailures) {
    EXPECT_EQ(SendByMailslot({"text"}),
              "1||tallyhorn-send: no program receives at the mailslot " + testMailslot_.Name + "\n");
    receiver_.reset();
    const std::string nobody = SendBySyslog({"text"});
    EXPECT_TRUE(nobody.starts_with("1|") &&
                nobody.ends_with("|tallyhorn-send: no program receives at " + target_ + "\n"))
        << nobody;
    target_ = "no such host:514";
    EXPECT_EQ(SendBySyslog({"text"}),
              "1||tallyhorn-send: cannot find the host or a route to it: no such host:514\n");
    const std::string wrong = Send({"--demo", "--count", "many"});
    EXPECT_TRUE(wrong.starts_with("2||")) << wrong;
    EXPECT_NE(wrong.find("--count needs a whole number from 1 to "), std::string::npos) << wrong;
    EXPECT_TRUE(Send({"--help"}).starts_with("0|"));
    EXPECT_TRUE(Send({"--version"}).starts_with("0|tallyhorn-send "));
}

}  // namespace
}  // namespace tallyhorn
