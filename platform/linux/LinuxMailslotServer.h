#pragma once

#include <cstddef>
#include <string>
#include <thread>

#include "platform/DatagramQueue.h"
#include "platform/MailslotTransport.h"
#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// Owns a mailslot's socket, the file of that socket, and a pump thread that moves datagrams from the socket
/// into the queue, so that senders do not wait for the console.
class LinuxMailslotServer final : public MailslotServer {
public:
    /// `socket` is bound to `socketPath`; `lock` reserves the name.
    LinuxMailslotServer(FileDescriptor lock, FileDescriptor socket, std::string socketPath,
                        std::size_t maximumSize);
    ~LinuxMailslotServer() override;
    LinuxMailslotServer(const LinuxMailslotServer&) = delete;
    LinuxMailslotServer& operator=(const LinuxMailslotServer&) = delete;

    std::int32_t Handle() const override;
    bool GetInfo(MailslotInfo& info) override;
    bool Read(std::span<char> buffer, std::size_t& read) override;

private:
    void Pump();

    FileDescriptor lock_;
    FileDescriptor socket_;
    const std::string socketPath_;
    const std::size_t maximumSize_;
    DatagramQueue queue_;
    std::thread pump_;
};

}  // namespace tallyhorn
