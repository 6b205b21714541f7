#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <thread>

#include "platform/DatagramInbox.h"
#include "platform/DatagramSockets.h"
#include "platform/linux/FileDescriptor.h"

namespace tallyhorn {

/// Owns a bound socket, and a pump thread that moves datagrams from it into the inbox at once, since the
/// receive buffer of a socket is small.  Only the reader's thread may use it.
class LinuxDatagramReceiver final : public DatagramReceiver {
public:
    /// `stop` is an unsignalled eventfd, with which Stop wakes the pump thread.
    LinuxDatagramReceiver(FileDescriptor socket, FileDescriptor stop, std::uint16_t port,
                          std::function<void()> wake);
    ~LinuxDatagramReceiver() override;
    LinuxDatagramReceiver(const LinuxDatagramReceiver&) = delete;
    LinuxDatagramReceiver& operator=(const LinuxDatagramReceiver&) = delete;

    std::uint16_t Port() const override { return port_; }
    void Stop() override;
    std::optional<std::string_view> Next() override { return inbox_.Next(); }
    bool HasWaiting() override { return inbox_.HasWaiting(); }
    DatagramLosses Losses() const override;

private:
    enum class Delay { None, Short, AfterError, UntilReadable };

    void Pump();
    void Wait(Delay delay);

    FileDescriptor socket_;
    const FileDescriptor stop_;
    const std::uint16_t port_;
    const int shortDelay_;
    DatagramInbox inbox_;
    std::atomic<bool> stopping_ = false;
    DatagramLosses finalLosses_;  ///< the result of Losses after the socket is closed
    std::thread pump_;
};

}  // namespace tallyhorn
