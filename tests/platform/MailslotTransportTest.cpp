#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <future>
#include <vector>

#include "platform/MailslotTransport.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t Size = 401;

/// Wine sets this variable for every program that it runs.  Wine's mailslots differ from those of Windows and
/// Linux: a write blocks once about 170 texts are unread, a text that is too long is cut, and a mailslot
/// outlives its reader as long as a sender has it open.
const bool UnderWine = std::getenv("WINEHOMEDIR") != nullptr;

class MailslotTransportTest : public testing::Test {
protected:
    std::unique_ptr<MailslotServer> Create(const std::string& suffix = "", std::size_t size = Size) {
        return mailslot_.Transport->Create(mailslot_.Path + suffix, size);
    }
    std::unique_ptr<MailslotClient> Open(const std::string& suffix = "") {
        return mailslot_.Transport->Open(mailslot_.Path + suffix);
    }
    MailslotInfo Info() {
        MailslotInfo info;
        EXPECT_TRUE(server_->GetInfo(info));
        return info;
    }
    bool AwaitTexts(std::size_t count) {
        return Eventually([&] { return Info().Waiting == count; });
    }
    std::string ReadOne() {
        std::array<char, Size> buffer{};
        std::size_t read = 0;
        return server_->Read(buffer, read) ? std::string(buffer.data(), read) : "none";
    }

    TestMailslot mailslot_;
    std::unique_ptr<MailslotServer> server_ = Create();
    std::unique_ptr<MailslotClient> client_ = Open();
};

TEST_F(MailslotTransportTest, ANameHasOneServerAtATime) {
    for (const std::size_t size : {Size, Size, std::size_t{5}}) {
        ASSERT_NE(server_, nullptr) << "the name is free again";
        EXPECT_EQ(MakeMailslotTransport(mailslot_.Folder)->Create(mailslot_.Path, Size), nullptr);
        EXPECT_EQ(Info().Waiting, 0U) << "no text of the previous server is left";
        ASSERT_TRUE(client_->Write("the failed creation changed nothing"));
        EXPECT_TRUE(AwaitTexts(1));
        client_.reset();
        server_.reset();
        server_ = Create("", size);
        client_ = Open();
    }
    EXPECT_EQ(Info().MaximumSize, 5U);
    EXPECT_EQ(client_->Write("six by"), UnderWine);
    EXPECT_TRUE(client_->Write("five."));
    EXPECT_TRUE(server_->Handle() != -1 && client_->Handle() != -1);
    EXPECT_EQ(Open("2"), nullptr) << "nobody reads the name with a 2";
    EXPECT_NE(Create("2"), nullptr);
    server_.reset();
    EXPECT_EQ(client_->Write("late"), UnderWine);
    client_.reset();
    EXPECT_EQ(Open(), nullptr);
}

TEST_F(MailslotTransportTest, RefusesInvalidPathsAndSizes) {
    const std::string prefix(MailslotPrefix);
    for (const std::string& path :
         {std::string("name"), std::string(R"(\\.\pipe\a)"), prefix, prefix + ".", prefix + "..",
          prefix + ".x", prefix + "a/b", prefix + "a\\b", prefix + std::string("a\0b", 3)}) {
        EXPECT_EQ(mailslot_.Transport->Create(path, Size), nullptr) << path;
        EXPECT_EQ(mailslot_.Transport->Open(path), nullptr) << path;
    }
    EXPECT_EQ(Create(std::string(300, 'n')), nullptr);
    for (const std::size_t size : {std::size_t{0}, MailslotTransport::LargestSize + 1})
        EXPECT_EQ(Create("2", size), nullptr) << size;
}

TEST_F(MailslotTransportTest, TakesTextsUpToItsSizeAndNoneLonger) {
    for (const std::size_t size : {0U, 1U, 2U, 400U, 401U, 402U, 4000U}) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        const bool arrives = size <= Size || UnderWine;
        ASSERT_EQ(client_->Write(text), arrives) << size;
        ASSERT_TRUE(AwaitTexts(arrives ? 1 : 0)) << size;
        EXPECT_EQ(Info().NextSize, arrives ? std::min(size, Size) : 0);
        EXPECT_EQ(ReadOne(), arrives ? text.substr(0, Size) : "none");
    }
    ASSERT_TRUE(client_->Write("after"));
    ASSERT_TRUE(AwaitTexts(1));
    std::array<char, 4> tooShort{};
    std::size_t read = 0;
    EXPECT_FALSE(server_->Read(tooShort, read));
    EXPECT_EQ(ReadOne(), "after") << "a buffer that is too short leaves the text";
}

TEST_F(MailslotTransportTest, SendersDoNotWaitForAReader) {
    // Together, the texts contain every byte value.
    const auto text = [](std::size_t number) {
        return std::to_string(number) + std::string(340, static_cast<char>(number));
    };
    const std::size_t most = UnderWine ? 100 : 100'000;
    const std::future<void> sender = std::async(std::launch::async, [&] {
        for (std::size_t i = 0; i < most; ++i)
            EXPECT_TRUE(client_->Write(text(i)));
    });
    ASSERT_EQ(sender.wait_for(60s), std::future_status::ready) << "the sender waits for the reader";
    ASSERT_TRUE(AwaitTexts(most));
    for (std::size_t i = 0; i < most; ++i)
        ASSERT_EQ(ReadOne(), text(i));
}

TEST_F(MailslotTransportTest, ManySendersLoseNothingAndKeepTheirOrder) {
    constexpr std::size_t Senders = 4;
    const std::size_t texts = UnderWine ? 500 : 5000;
    std::vector<std::jthread> senders;
    for (std::size_t sender = 0; sender < Senders; ++sender) {
        senders.emplace_back([&, sender] {
            const std::unique_ptr<MailslotClient> client = Open();
            for (std::size_t i = 0; i < texts; ++i)
                client->Write(std::to_string(sender) + ' ' + std::to_string(i));
        });
    }
    std::array<std::size_t, Senders> next{};
    std::size_t read = 0;
    EXPECT_TRUE(Eventually([&] {
        for (std::size_t waiting = Info().Waiting; waiting > 0; --waiting, ++read) {
            const std::string text = ReadOne();
            const std::size_t sender = static_cast<std::size_t>(text.front() - '0') % Senders;
            EXPECT_EQ(text, std::to_string(sender) + ' ' + std::to_string(next[sender]++));
        }
        return read == Senders * texts;
    })) << read;
}

TEST_F(MailslotTransportTest, TheEndOfTheServerEndsBlockedWrites) {
    if (UnderWine)
        GTEST_SKIP() << "under Wine, blocked writes stay blocked";
    std::jthread sender([&] {
        while (client_->Write(std::string(Size, 'x')))
            continue;
    });
    std::this_thread::sleep_for(20ms);
    server_.reset();
    sender.join();  // the test hangs if the write does not return
    EXPECT_FALSE(client_->Write("gone"));
}

}  // namespace
}  // namespace tallyhorn
