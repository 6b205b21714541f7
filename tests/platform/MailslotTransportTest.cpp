#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
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
struct WineWays {
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
    std::size_t Waiting() {
        MailslotInfo info;
        return server_->GetInfo(info) ? info.Waiting : 0;
    }
    std::size_t NextSize() {
        MailslotInfo info;
        return server_->GetInfo(info) ? info.NextSize : 0;
    }
    std::optional<std::string> ReadOne() {
        std::array<char, Size> buffer{};
        std::size_t read = 0;
        if (!server_->Read(buffer, read))
            return std::nullopt;
        return std::string(buffer.data(), read);
    }

    const WineWays ways_{};
    TestMailslot mailslot_;
    std::unique_ptr<MailslotServer> server_ = mailslot_.Transport->Create(mailslot_.Path, Size);
    std::unique_ptr<MailslotClient> client_ = mailslot_.Transport->Open(mailslot_.Path);
};

TEST_F(MailslotTransportTest, ANameHasOneReaderAtATime) {
    ASSERT_NE(server_, nullptr);
    EXPECT_EQ(MakeMailslotTransport(mailslot_.Folder)->Create(mailslot_.Path, Size), nullptr);
    ASSERT_TRUE(client_->Write("the failed creation took nothing away"));
    EXPECT_TRUE(Eventually([&] { return Waiting() == 1; }));
    EXPECT_NE(mailslot_.Transport->Create(mailslot_.Path + "2", Size), nullptr);
    client_.reset();
    server_.reset();
    server_ = mailslot_.Transport->Create(mailslot_.Path, Size);
    ASSERT_NE(server_, nullptr);
    EXPECT_EQ(Waiting(), 0U);
}

TEST_F(MailslotTransportTest, WithoutAReaderNothingOpensOrIsWritten) {
    EXPECT_EQ(mailslot_.Transport->Open(mailslot_.Path + "2"), nullptr);
    EXPECT_NE(client_->Handle(), -1);
    EXPECT_NE(server_->Handle(), -1);
    server_.reset();
    EXPECT_EQ(client_->Write("too late"), ways_.OutlivesItsReader);
    client_.reset();
    EXPECT_EQ(mailslot_.Transport->Open(mailslot_.Path), nullptr);
}

TEST_F(MailslotTransportTest, RefusesWhatIsNoMailslotOfItsOwn) {
    const std::string prefix(MailslotPrefix);
    const std::array<std::string, 9> refused = {
        prefix,        prefix + ".",     prefix + "..",
        prefix + ".x", prefix + "a/b",   prefix + "a\\b",
        "name",        "\\\\.\\pipe\\a", prefix + std::string("a\0b", 3)};
    for (const std::string& path : refused) {
        EXPECT_EQ(mailslot_.Transport->Create(path, Size), nullptr) << path;
        EXPECT_EQ(mailslot_.Transport->Open(path), nullptr) << path;
    }
    EXPECT_EQ(mailslot_.Transport->Create(prefix + std::string(300, 'n'), Size), nullptr);
    EXPECT_EQ(mailslot_.Transport->Create(mailslot_.Path + "2", 0), nullptr);
    EXPECT_EQ(mailslot_.Transport->Create(mailslot_.Path + "2", MailslotTransport::LargestSize + 1), nullptr);
}

TEST_F(MailslotTransportTest, TakesTextsUpToItsSizeAndNoneLonger) {
    for (const std::size_t size : {0, 1, 2, 400, 401}) {
        const std::string text(size, static_cast<char>('a' + size % 26));
        ASSERT_TRUE(client_->Write(text)) << size;
        ASSERT_TRUE(Eventually([&] { return Waiting() == 1; })) << size;
        EXPECT_EQ(NextSize(), size);
        EXPECT_EQ(ReadOne(), text);
    }
    for (const std::size_t size : {402, 4000}) {
        EXPECT_EQ(client_->Write(std::string(size, 'x')), ways_.CutsLongTexts) << size;
        if (ways_.CutsLongTexts) {
            ASSERT_TRUE(Eventually([&] { return Waiting() == 1; }));
            EXPECT_EQ(ReadOne(), std::string(Size, 'x'));
        }
    }
    ASSERT_TRUE(client_->Write("after"));
    ASSERT_TRUE(Eventually([&] { return Waiting() > 0; }));
    std::array<char, 4> tooShort{};
    std::size_t read = 0;
    EXPECT_FALSE(server_->Read(tooShort, read));
    EXPECT_EQ(ReadOne(), "after") << "a buffer too short leaves the text";
    EXPECT_EQ(ReadOne(), std::nullopt);
}

TEST_F(MailslotTransportTest, TheReaderDropsWhatASenderShouldNotHaveSent) {
    // A sender that learnt the size of an earlier reader of the same name, in a folder of sockets.
    const std::filesystem::path sizeFile =
        std::filesystem::path(mailslot_.Folder) / (".mailslot-" + mailslot_.Name);
    if (!std::filesystem::exists(sizeFile))
        GTEST_SKIP() << "mailslots are no files on this system";
    std::ofstream(sizeFile) << 5000;
    client_ = mailslot_.Transport->Open(mailslot_.Path);
    EXPECT_TRUE(client_->Write(std::string(402, 'x')));
    EXPECT_TRUE(client_->Write("after"));
    ASSERT_TRUE(Eventually([&] { return Waiting() > 0; }));
    EXPECT_EQ(ReadOne(), "after");
}

TEST_F(MailslotTransportTest, WhileNobodyReadsSendersGoOnAndNothingIsLost) {
    // Every byte comes along, at every place.
    const auto text = [](std::size_t number) {
        std::string bytes = std::to_string(number);
        while (bytes.size() < 350)
            bytes += static_cast<char>(number + bytes.size());
        return bytes;
    };
    std::future<bool> sender = std::async(std::launch::async, [&] {
        bool all = true;
        for (std::size_t i = 0; i < ways_.MostUnread; ++i)
            all = client_->Write(text(i)) && all;
        return all;
    });
    const bool ended = sender.wait_for(60s) == std::future_status::ready;
    EXPECT_TRUE(ended) << "the sender waits for the reader";
    ASSERT_TRUE(ended && Eventually([&] { return Waiting() == ways_.MostUnread; }));
    EXPECT_TRUE(sender.get());
    for (std::size_t i = 0; i < ways_.MostUnread; ++i)
        ASSERT_EQ(ReadOne(), text(i));
    EXPECT_EQ(Waiting(), 0U);
}

TEST_F(MailslotTransportTest, ManySendersAtOnceLoseNothingAndKeepTheirOwnOrder) {
    constexpr std::size_t Senders = 4;
    const std::size_t texts = ways_.UnderWine ? 500 : 5000;
    std::vector<std::jthread> senders;
    for (std::size_t sender = 0; sender < Senders; ++sender) {
        senders.emplace_back([&, sender] {
            const std::unique_ptr<MailslotClient> client = mailslot_.Transport->Open(mailslot_.Path);
            for (std::size_t i = 0; i < texts; ++i)
                client->Write(std::to_string(sender) + ' ' + std::to_string(i));
        });
    }
    std::array<std::size_t, Senders> next{};
    std::size_t read = 0;
    const auto readAll = [&] {
        for (std::size_t waiting = Waiting(); waiting > 0; --waiting, ++read) {
            const std::string text = ReadOne().value_or("none");
            const std::size_t sender = static_cast<std::size_t>(text.front() - '0') % Senders;
            EXPECT_EQ(text, std::to_string(sender) + ' ' + std::to_string(next[sender]++));
        }
        return read == Senders * texts;
    };
    EXPECT_TRUE(Eventually(readAll)) << read;
}

TEST_F(MailslotTransportTest, AReaderThatEndsWakesItsSenders) {
    if (ways_.OutlivesItsReader)
        GTEST_SKIP() << "Wine leaves them blocked";
    std::jthread sender([&] {
        while (client_->Write(std::string(Size, 'x'))) {
        }
    });
    std::this_thread::sleep_for(20ms);
    server_.reset();
    // The jthread's end is the test: a sender left waiting would hang here.
    sender.join();
    EXPECT_FALSE(client_->Write("gone"));
}

/// What only a system that keeps mailslots in a folder can get wrong.
class MailslotFolderTest : public MailslotTransportTest {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(socket_))
            GTEST_SKIP() << "mailslots are no files on this system";
    }
    const std::filesystem::path folder_ = mailslot_.Folder;
    const std::filesystem::path socket_ = folder_ / mailslot_.Name;
};

TEST_F(MailslotFolderTest, IsForItsOwnerAlone) {
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(folder_).permissions(), perms::owner_all);
    EXPECT_EQ(std::filesystem::status(socket_).permissions(), perms::owner_read | perms::owner_write);
    std::filesystem::permissions(folder_, perms::owner_all | perms::group_exec);
    EXPECT_EQ(mailslot_.Transport->Create(mailslot_.Path + "2", Size), nullptr);
    EXPECT_EQ(mailslot_.Transport->Open(mailslot_.Path), nullptr);
    std::filesystem::permissions(folder_, perms::owner_all);
    std::filesystem::create_directory_symlink(folder_, mailslot_.Home / "link");
    EXPECT_EQ(MakeMailslotTransport(mailslot_.Home / "link")->Create(mailslot_.Path + "2", Size), nullptr);
    EXPECT_EQ(MakeMailslotTransport(mailslot_.Home / "none/below")->Create(mailslot_.Path, Size), nullptr);
}

TEST_F(MailslotFolderTest, ASocketLeftByACrashIsReplacedAndAForeignFileIsNot) {
    // A second name for the socket outlives the reader, as the first one would outlive a crash.
    const std::string stale = mailslot_.Path + "-stale";
    std::filesystem::create_hard_link(socket_, folder_ / (mailslot_.Name + "-stale"));
    server_.reset();
    EXPECT_FALSE(std::filesystem::exists(socket_));
    EXPECT_EQ(mailslot_.Transport->Open(stale), nullptr);
    server_ = mailslot_.Transport->Create(stale, Size);
    ASSERT_NE(server_, nullptr);
    ASSERT_TRUE(mailslot_.Transport->Open(stale)->Write("here"));
    ASSERT_TRUE(Eventually([&] { return Waiting() == 1; }));

    std::ofstream(socket_) << "precious";
    EXPECT_EQ(mailslot_.Transport->Create(mailslot_.Path, Size), nullptr);
    EXPECT_TRUE(std::filesystem::is_regular_file(socket_));
}

}  // namespace
}  // namespace tallyhorn
