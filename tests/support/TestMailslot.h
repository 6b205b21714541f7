#pragma once

#include <chrono>
#include <thread>

#include "platform/MailslotTransport.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// A mailslot of the system with a random name, in a temporary folder (Linux), so that tests that run at the
/// same time do not share it.
struct TestMailslot {
    TemporaryFolder Home;
    /// Does not exist yet, so that the transport creates it.
    std::string Folder = Home / "mailslots";
    std::string Name = Home.Path().filename().string();
    std::string Path = std::string(MailslotPrefix) + Name;
    std::unique_ptr<MailslotTransport> Transport = MakeMailslotTransport(Folder);
};

/// Calls `done` repeatedly for up to half a minute and returns whether it became true.  Datagrams take some
/// time from the sender to the queue.
template <typename Condition>
bool Eventually(Condition done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

}  // namespace tallyhorn
