#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "platform/MailslotTransport.h"
#include "platform/linux/MailslotFolder.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TestMailslot.h"

namespace tallyhorn {
namespace {

namespace fs = std::filesystem;

/// Tests the files of a mailslot: a socket and a lock file in a folder.
class MailslotFolderTest : public testing::Test {
protected:
    std::string AwaitText() {
        std::array<char, 401> buffer{};
        std::size_t read = 0;
        EXPECT_TRUE(Eventually([&] { return server_->Read(buffer, read); }));
        return {buffer.data(), read};
    }

    TestMailslot mailslot_;
    const fs::path folder_ = mailslot_.Folder;
    const fs::path socket_ = folder_ / mailslot_.Name;
    MailslotTransport& transport_ = *mailslot_.Transport;
    std::unique_ptr<MailslotServer> server_ = transport_.Create(mailslot_.Path, 401);
};

TEST_F(MailslotFolderTest, IsForItsOwnerAlone) {
    EXPECT_EQ(fs::status(folder_).permissions(), fs::perms{0700});
    EXPECT_EQ(fs::status(socket_).permissions(), fs::perms{0600});
    fs::permissions(folder_, fs::perms{0710});
    EXPECT_EQ(transport_.Create(mailslot_.Path + "2", 401), nullptr);
    EXPECT_EQ(transport_.Open(mailslot_.Path), nullptr);
    fs::permissions(folder_, fs::perms::owner_all);
    fs::create_directory_symlink(folder_, mailslot_.Home / "link");
    for (const char* const other : {"link", "none/below"})
        EXPECT_EQ(MakeMailslotTransport(mailslot_.Home / other)->Create(mailslot_.Path + "2", 401), nullptr)
            << other;
}

TEST_F(MailslotFolderTest, ASocketLeftByACrashIsReplacedButNoOtherFile) {
    // The server removes its socket but not this second link, which remains as after a crash.
    const std::string stale = mailslot_.Path + "-stale";
    fs::create_hard_link(socket_, folder_ / (mailslot_.Name + "-stale"));
    server_.reset();
    EXPECT_FALSE(fs::exists(socket_));
    EXPECT_EQ(transport_.Open(stale), nullptr);
    server_ = transport_.Create(stale, 401);
    ASSERT_TRUE(transport_.Open(stale)->Write("here"));
    EXPECT_EQ(AwaitText(), "here");
    WriteBytes(socket_, "precious");
    EXPECT_EQ(transport_.Create(mailslot_.Path, 401), nullptr);
    EXPECT_EQ(ReadBytes(socket_), "precious");
}

TEST_F(MailslotFolderTest, TheServerDropsTextsOverItsMaximum) {
    // Makes the client read another maximum, as if it had connected to an earlier server.
    WriteBytes(folder_ / (".mailslot-" + mailslot_.Name), "5000");
    const std::unique_ptr<MailslotClient> client = transport_.Open(mailslot_.Path);
    EXPECT_TRUE(client->Write(std::string(402, 'x')));
    EXPECT_TRUE(client->Write("after"));
    EXPECT_EQ(AwaitText(), "after");
}

TEST(UserMailslotFolderTest, IsBelowTheRuntimeFolderIfThereIsOne) {
    setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
    EXPECT_EQ(UserMailslotFolder(), "/run/user/7/mailslot");
    setenv("XDG_RUNTIME_DIR", "", 1);
    EXPECT_EQ(UserMailslotFolder(), "/tmp/mailslot-" + std::to_string(getuid()));
    unsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(UserMailslotFolder(), "/tmp/mailslot-" + std::to_string(getuid()));
}

}  // namespace
}  // namespace tallyhorn
