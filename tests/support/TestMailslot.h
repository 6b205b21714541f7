#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "platform/MailslotTransport.h"
#include "tests/support/TemporaryFolder.h"

namespace tallyhorn {

/// The system's mailslots where no other test and no user meets them: a folder of its own, and a name of its
/// own where there is no folder.
struct TestMailslot {
    TemporaryFolder Home;
    /// Not there yet, so that the transport makes it.
    std::string Folder = Home / "mailslots";
    std::string Name = Home.Path().filename().string();
    std::string Path = std::string(MailslotPrefix) + Name;
    std::unique_ptr<MailslotTransport> Transport = MakeMailslotTransport(Folder);
};

/// Repeats `done` for up to half a minute: datagrams take their time from a sender to the queue.
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
