#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tallyhorn {

constexpr bool IsUdpPort(std::int32_t number) {
    return number >= 0 && number <= std::numeric_limits<std::uint16_t>::max();
}

/// The numbers of datagrams that arrived at a UDP port but never reached its reader.
struct DatagramLosses {
    std::uint64_t NoRoom = 0;  ///< dropped by the receiver because MostWaiting bytes were waiting
    std::optional<std::uint64_t> BySystem;  ///< dropped by the system; empty if it does not count them
};

/// The receiving end of a UDP port: owns the port and all waiting datagrams.  Only one thread, the reader's,
/// may use it.  No function blocks except Stop and the destructor, which wait for the pump thread to end.
class DatagramReceiver {
public:
    /// The limit of waiting datagrams, in bytes.  Further datagrams are dropped and counted.
    static constexpr std::size_t MostWaiting = std::size_t{64} << 20U;
    /// The largest number of datagrams that Stop still takes from the socket.  The largest receive buffer in
    /// common use holds no more.
    static constexpr std::size_t LastDatagrams = 32'768;
    static constexpr std::chrono::milliseconds LongestStop{500};

    virtual ~DatagramReceiver() = default;
    /// Returns the UDP port in use: if Listen was called with 0, the one that the system chose.
    virtual std::uint16_t Port() const = 0;
    /// Closes the port.  Waiting datagrams, including those that the system had received by then, can still
    /// be read, and Losses still works.  During a flood, at most LastDatagrams are taken over from the
    /// system, in at most LongestStop.
    virtual void Stop() = 0;
    /// Removes and returns the oldest datagram, or returns nothing if none is waiting.  The view is valid
    /// until the next call of Next.
    virtual std::optional<std::string_view> Next() = 0;
    /// Returns whether a datagram is waiting.  After HasWaiting has returned false, or Next has returned
    /// nothing, `wake` is called for the next datagram that arrives.
    virtual bool HasWaiting() = 0;
    virtual DatagramLosses Losses() const = 0;
};

/// The sending end: owns a socket that sends to one UDP port of one machine.  For one thread at a time.
class DatagramSender {
public:
    virtual ~DatagramSender() = default;
    /// Sends each text as one datagram, in order, until the system rejects one, and returns the number sent.
    /// The system rejects a text that is too long, and may reject any text once Refused has become true.  A
    /// datagram that was sent need not arrive.
    virtual std::size_t SendBatch(std::span<const std::string_view> texts) = 0;
    bool Send(std::string_view text) { return SendBatch({&text, 1}) == 1; }
    /// Returns whether an ICMP message has ever reported that no program listens at the port.  Such messages
    /// are replies to datagrams, and arrive reliably only if both ends are on the same machine.
    virtual bool Refused() = 0;
};

/// Makes receivers and senders, which close their sockets when they are destroyed and may outlive this
/// object.  For one thread at a time.
class DatagramSockets {
public:
    /// The largest UDP datagram over IPv4.
    static constexpr std::size_t LargestSize = 65507;

    virtual ~DatagramSockets() = default;
    /// Binds `port` on all addresses of the machine, IPv6 and IPv4; if `port` is 0, the system chooses one.
    /// Returns null if that fails, for example because another program has the port or `port` is not a UDP
    /// port.
    ///
    /// The receiver calls `wake` from its pump thread when datagrams are waiting, possibly before Listen
    /// returns and never after Stop has returned.  It does not call `wake` again until the reader has found
    /// nothing waiting (Next returned nothing or HasWaiting returned false), so at most one wake is pending,
    /// however many datagrams arrive.  A reader that leaves datagrams waiting must therefore read again later
    /// without another wake.  The reader may also read without having been woken; after a later wake, it may
    /// then find nothing.  `wake` must not throw.
    virtual std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) = 0;
    /// Connects to `port` of `host`, a name or an address.  Returns null if the host is unknown or
    /// unreachable.
    virtual std::unique_ptr<DatagramSender> Open(const std::string& host, std::int32_t port) = 0;
};

/// Returns the back end that uses the UDP sockets of the system.
std::unique_ptr<DatagramSockets> MakeDatagramSockets();

}  // namespace tallyhorn
