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

/// Datagrams that arrived at a port and never came to its reader.
struct DatagramLosses {
    std::uint64_t NoRoom = 0;               ///< dropped because too many bytes waited for the reader
    std::optional<std::uint64_t> BySystem;  ///< dropped by the system, where it tells
};

/// The receiving end of a UDP port: owns the port as long as it lives, and every datagram that waits.
/// Called from one thread, the reader's; nothing here ever blocks, but that the end waits for the thread
/// which calls `wake`.
class DatagramReceiver {
public:
    /// What waits is bounded by this many bytes; what comes above that is dropped and counted.
    static constexpr std::size_t MostWaiting = std::size_t{64} << 20U;
    /// What a socket's buffer of the largest usual size can hold.
    static constexpr std::size_t LastDatagrams = 32'768;
    static constexpr std::chrono::milliseconds LongestStop{500};

    virtual ~DatagramReceiver() = default;
    /// The port that is really bound.
    virtual std::uint16_t Port() const = 0;
    /// Lets go of the port.  What waits can still be taken, what the system had delivered until then too (of
    /// a flood that goes on no more than LastDatagrams, in LongestStop), and Losses stays readable.
    virtual void Stop() = 0;
    /// Takes the oldest datagram, whole, which is valid until the next call; nothing where none waits.
    virtual std::optional<std::string_view> Next() = 0;
    /// Whether Next has something to give; of no cost worth counting.  A no means that the reader waits for
    /// the next wake: it lets `wake` be called again, as a Next that gave nothing does.
    virtual bool HasWaiting() = 0;
    virtual DatagramLosses Losses() const = 0;
};

/// The sending end: owns a socket that sends to one port of one machine.
/// One thread at a time.
class DatagramSender {
public:
    virtual ~DatagramSender() = default;
    /// Sends each text as a datagram of its own, in order, and tells how many of them, from the first on, the
    /// system took.  It takes none that is too long, and where it has heard that nobody listens it refuses
    /// one; that the others arrive is not said.
    virtual std::size_t SendBatch(std::span<const std::string_view> texts) = 0;
    bool Send(std::string_view text) { return SendBatch({&text, 1}) == 1; }
    /// Whether the other side has ever let know that nobody listens.  It can only tell after a datagram, and
    /// only the own machine does so for certain and at once.
    virtual bool Refused() = 0;
};

/// Binds and reaches UDP ports; what it returns closes itself.
/// Called from any one thread; the objects that it makes do not need it any more.
class DatagramSockets {
public:
    /// The longest datagram that every network carries.
    static constexpr std::size_t LargestSize = 65507;

    virtual ~DatagramSockets() = default;
    /// Binds `port` on all addresses of the machine, of both families where it has both; 0 lets the system
    /// choose.  Null where the system does not bind, because somebody else has the port or it is none.
    ///
    /// `wake` is called from a thread of the receiver's own, until the receiver's end and perhaps before this
    /// returns, when datagrams wait.  It is not called again before the reader has found none waiting (Next
    /// gave nothing or HasWaiting said no): however many datagrams come, one wake is on its way at most.  So
    /// a reader that stops earlier has to come back by itself.  Nothing ever waits without a wake, but a
    /// reader that looks unasked may leave nothing to the wake.  `wake` must not throw.
    virtual std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) = 0;
    /// `host` is a name or an address of either family.  Null where there is no way to it.
    virtual std::unique_ptr<DatagramSender> Open(const std::string& host, std::int32_t port) = 0;
};

/// The system's own UDP sockets.
std::unique_ptr<DatagramSockets> MakeDatagramSockets();

}  // namespace tallyhorn
