#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/MailslotTransport.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t Size = 401;

/// How Wine's mailslots differ from those of Windows and Linux.
struct WineDifferences {
    /// Wine sets this variable for every Windows program that it runs; Windows itself does not know it.
    bool UnderWine = std::getenv("WINEHOMEDIR") != nullptr;
    /// Under Wine a write blocks once about 170 texts are unread.
    std::size_t MostUnread = UnderWine ? 100 : 100'000;
    /// Under Wine a text longer than the mailslot's maximum is cut to it, and the write succeeds.
    bool CutsLongTexts = UnderWine;
    /// Under Wine a mailslot outlives its reader as long as a sender has it open, and blocked senders stay
    /// blocked.
    bool OutlivesItsReader = UnderWine;
};

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
    std::optional<std::string> ReadOne() {
        std::array<char, Size> buffer{};
        std::size_t read = 0;
        if (!server_->Read(buffer, read))
            return std::nullopt;
        return std::string(buffer.data(), read);
    }

    const WineDifferences wine_{};
    TestMailslot mailslot_;
    std::unique_ptr<MailslotServer> server_ = Create();
    std::unique_ptr<MailslotClient> client_ = Open();
};

TEST_F(MailslotTransportTest, ANameHasOneServerAtATime) {
    for (const std::size_t size : {Size, Size, std::size_t{5}}) {
        ASSERT_NE(server_, nullptr) << "the name is free again";
        EXPECT_EQ(MakeMailslotTransport(mailslot_.Folder)->Create(mailslot_.Path, Size), nullptr);
        EXPECT_EQ(Info().Waiting, 0U) << "nothing is left of the server before";
        ASSERT_TRUE(client_->Write("the failed creation changed nothing"));
        EXPECT_TRUE(AwaitTexts(1));
        client_.reset();
        server_.reset();
        server_ = Create("", size);
        client_ = Open();
    }
    EXPECT_EQ(Info().MaximumSize, 5U);
    EXPECT_EQ(client_->Write("six by"), wine_.CutsLongTexts);
    EXPECT_TRUE(client_->Write("five."));
    EXPECT_NE(Create("2"), nullptr) << "another name";
}

TEST_F(MailslotTransportTest, WithoutAServerNothingOpensOrIsWritten) {
    EXPECT_EQ(Open("2"), nullptr);
    EXPECT_NE(client_->Handle(), -1);
    EXPECT_NE(server_->Handle(), -1);
    server_.reset();
    EXPECT_EQ(client_->Write("too late"), wine_.OutlivesItsReader);
    client_.reset();
    EXPECT_EQ(Open(), nullptr);
}

TEST_F(MailslotTransportTest, RefusesInvalidPathsAndSizes) {
    const std::string prefix(MailslotPrefix);
    for (const std::string& path :
         {prefix, prefix + ".", prefix + "..", prefix + ".x", prefix + "a/b", prefix + "a\\b",
          std::string("name"), std::string("\\\\.\\pipe\\a"), prefix + std::string("a\0b", 3)}) {
        EXPECT_EQ(mailslot_.Transport->Create(path, Size), nullptr) << path;
        EXPECT_EQ(mailslot_.Transport->Open(path), nullptr) << path;
    }
    EXPECT_EQ(Create(std::string(300, 'n')), nullptr);
    for (const std::size_t size : {std::size_t{0}, MailslotTransport::LargestSize + 1})
        EXPECT_EQ(Create("2", size), nullptr) << size;
}

TEST_F(MailslotTransportTest, TakesTextsUpToItsSizeAndNoneLonger) {
    for (const std::size_t size : {0, 1, 2, 400, 401, 402, 4000}) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        const bool arrives = size <= Size || wine_.CutsLongTexts;
        ASSERT_EQ(client_->Write(text), arrives) << size;
        ASSERT_TRUE(AwaitTexts(arrives ? 1 : 0)) << size;
        EXPECT_EQ(Info().NextSize, arrives ? std::min(size, Size) : 0);
        EXPECT_EQ(ReadOne(), arrives ? std::optional(text.substr(0, Size)) : std::nullopt);
    }
    ASSERT_TRUE(client_->Write("after"));
    ASSERT_TRUE(AwaitTexts(1));
    std::array<char, 4> tooShort{};
    std::size_t read = 0;
    EXPECT_FALSE(server_->Read(tooShort, read));
    EXPECT_EQ(ReadOne(), "after") << "a buffer that is too short leaves the text";
}

TEST_F(MailslotTransportTest, SendersDoNotWaitForAReader) {
    // Contains every byte value at every position.
    const auto text = [](std::size_t number) {
        std::string bytes = std::to_string(number);
        while (bytes.size() < 350)
            bytes += static_cast<char>(number + bytes.size());
        return bytes;
    };
    std::future<bool> sender = std::async(std::launch::async, [&] {
        bool all = true;
        for (std::size_t i = 0; i < wine_.MostUnread; ++i)
            all = client_->Write(text(i)) && all;
        return all;
    });
    const bool ended = sender.wait_for(60s) == std::future_status::ready;
    EXPECT_TRUE(ended) << "the sender waits for the reader";
    ASSERT_TRUE(ended && AwaitTexts(wine_.MostUnread));
    EXPECT_TRUE(sender.get());
    for (std::size_t i = 0; i < wine_.MostUnread; ++i)
        ASSERT_EQ(ReadOne(), text(i));
    EXPECT_EQ(Info().Waiting, 0U);
}

TEST_F(MailslotTransportTest, ManySendersLoseNothingAndKeepTheirOrder) {
    constexpr std::size_t Senders = 4;
    const std::size_t texts = wine_.UnderWine ? 500 : 5000;
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
    const auto readAll = [&] {
        for (std::size_t waiting = Info().Waiting; waiting > 0; --waiting, ++read) {
            const std::string text = ReadOne().value_or("none");
            const std::size_t sender = static_cast<std::size_t>(text.front() - '0') % Senders;
            EXPECT_EQ(text, std::to_string(sender) + ' ' + std::to_string(next[sender]++));
        }
        return read == Senders * texts;
    };
    EXPECT_TRUE(Eventually(readAll)) << read;
}

TEST_F(MailslotTransportTest, TheEndOfTheServerEndsBlockedWrites) {
    if (wine_.OutlivesItsReader)
        GTEST_SKIP() << "they stay blocked under Wine";
    std::jthread sender([&] {
        while (client_->Write(std::string(Size, 'x'))) {
        }
    });
    std::this_thread::sleep_for(20ms);
    server_.reset();
    sender.join();  // hangs if the write does not return
    EXPECT_FALSE(client_->Write("gone"));
}

}  // namespace
}  // namespace tallyhorn
