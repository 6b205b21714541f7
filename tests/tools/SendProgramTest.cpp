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

/// What a process came to.
struct Result {
    int Status = -1;
    std::string Output;
    std::string Errors;

    bool operator==(const Result&) const = default;
};

void PrintTo(const Result& result, std::ostream* out) {
    *out << result.Status << ": " << result.Output << result.Errors;
}

/// tallyhorn-send as a process of its own, and the system's mailslot and UDP port that it sends to.
class SendProgramTest : public testing::Test {
protected:
    /// No argument may hold a double quote, a dollar sign, a backquote or a percent sign: within double
    /// quotes all else means itself to every shell.
    Result Send(const Texts& arguments, const std::string& redirection = {}) const {
        const std::string out = testMailslot_.Home / "out";
        const std::string err = testMailslot_.Home / "err";
        // Starts with no quote: one system's shell removes a first and a last one.
        std::string command = "cd . && \"" TALLYHORN_SEND "\"";
        for (const std::string& argument : arguments)
            command += " \"" + argument + '"';
        command += redirection + " >\"" + out + "\" 2>\"" + err + '"';
        const int status = std::system(command.c_str());
        constexpr int MostOfAByte = 255;
        return {status > MostOfAByte ? status >> 8 : status, ReadText(out), ReadText(err)};
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
    // The longest that goes whole has no room for a NUL; only the first of a batch ends without one.
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
    EXPECT_EQ(SendBySyslog({"over the other family"}).Status, 0);
    EXPECT_EQ(ReadPort(1), Texts{"over the other family"});
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
                      "tallyhorn-send: the system did not take a datagram for " + target_ +
                          ": it is too long or there is no way\n"}));
    EXPECT_EQ(SendByMailslot({"--file", testMailslot_.Home / "missing"}).Status, 2);
    EXPECT_EQ(SendByMailslot({"--file", testMailslot_.Home.Path().string()}).Status, 2);
}

TEST_F(SendProgramTest, SaysWhatIsWrong) {
    EXPECT_EQ(SendByMailslot({"text"}),
              (Result{1, "", "tallyhorn-send: nobody listens at the mailslot " + testMailslot_.Name + "\n"}));
    receiver_.reset();
    const Result nobody = SendBySyslog({"text"});
    EXPECT_EQ(nobody.Status, 1);
    EXPECT_EQ(nobody.Errors, "tallyhorn-send: nobody listens at " + target_ + "\n");
    target_ = "no such host:514";
    EXPECT_EQ(SendBySyslog({"text"}),
              (Result{1, "", "tallyhorn-send: there is no way to no such host:514\n"}));
    const Result wrong = Send({"--demo", "--count", "many"});
    EXPECT_EQ(wrong.Status, 2);
    EXPECT_NE(wrong.Errors.find("--count needs a whole number from 1 to "), std::string::npos)
        << wrong.Errors;
    EXPECT_EQ(Send({"--help"}).Status, 0);
    EXPECT_TRUE(Send({"--version"}).Output.starts_with("tallyhorn-send "));
}

}  // namespace
}  // namespace tallyhorn
