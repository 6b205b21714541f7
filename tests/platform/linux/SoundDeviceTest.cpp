#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

#include "platform/SoundDevice.h"
#include "tests/fakes/FileBytes.h"
#include "tests/fakes/TemporaryFolder.h"

namespace tallyhorn {
namespace {

using Mode = SoundDevice::Mode;

/// Eight milliseconds of silence.
std::string ShortWave() {
    using namespace std::string_literals;
    return "RIFF\0\0\0\0WAVEfmt \x10\0\0\0\1\0\1\0\x40\x1F\0\0\x40\x1F\0\0\1\0\x08\0data\x40\0\0\0"s +
           std::string(64, '\x80');
}

/// A sound server that hangs keeps its clients for half a minute.
TEST(SoundDeviceTest, ServersThatHangOrAreNotThereHoldNobodyUp) {
    const TemporaryFolder folder;
    WriteBytes(folder / "sound.wav", ShortWave());
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string deaf = folder / "deaf";
    std::memcpy(address.sun_path, deaf.c_str(), deaf.size());
    const int listening = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(listen(listening, 8), 0);
    const auto begin = std::chrono::steady_clock::now();
    for (const std::string& server : {deaf, std::string(folder / "nobody")}) {
        setenv("PULSE_SERVER", ("unix:" + server).c_str(), 1);
        const auto device = MakeSoundDevice();
        EXPECT_EQ(device->CurrentMode(), Mode::NotOpen);
        EXPECT_FALSE(device->Play());
        for (const char* const file : {"none.wav", "", "sound.wav", "sound.wav"}) {
            device->SetFileName(folder / file);
            EXPECT_TRUE(device->Close() && device->Open());
            EXPECT_EQ(device->CurrentMode(), Mode::Stopped);
            EXPECT_TRUE(device->Prev() && device->Play());
        }
        pollfd asked{listening, POLLIN, 0};
        EXPECT_EQ(poll(&asked, 1, 5000), 1) << "nobody has asked the server";
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    close(listening);
    unsetenv("PULSE_SERVER");
}

}  // namespace
}  // namespace tallyhorn
