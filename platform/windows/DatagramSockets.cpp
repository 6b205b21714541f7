#include <winsock2.h>
// Must be included after winsock2.h.
#include <mstcpip.h>
#include <ws2tcpip.h>

#include <array>
#include <chrono>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

#include "platform/DatagramInbox.h"
#include "platform/DatagramSockets.h"

#ifndef SIO_UDP_CONNRESET
#define SIO_UDP_CONNRESET _WSAIOW(IOC_VENDOR, 12)
#endif

namespace tallyhorn {
namespace {

/// Keeps the socket library started (WSAStartup) for as long as the object exists.  Each socket owns one such
/// object.  Safe in any thread.
class SocketLibrary {
public:
    SocketLibrary() {
        WSADATA data;
        started_ = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~SocketLibrary() {
        if (started_)
            WSACleanup();
    }
    SocketLibrary(const SocketLibrary&) = delete;
    SocketLibrary& operator=(const SocketLibrary&) = delete;

private:
    bool started_ = false;
};

/// Owns one socket, or none, and the SocketLibrary that it needs.  Movable.
class OwnedSocket {
public:
    OwnedSocket() = default;
    explicit OwnedSocket(int family)
        : library_(std::make_unique<SocketLibrary>()),
          socket_(WSASocketW(family, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, WSA_FLAG_NO_HANDLE_INHERIT)) {}
    OwnedSocket(OwnedSocket&& other) noexcept
        : library_(std::move(other.library_)), socket_(std::exchange(other.socket_, INVALID_SOCKET)) {}
    OwnedSocket(const OwnedSocket&) = delete;
    OwnedSocket& operator=(const OwnedSocket&) = delete;
    OwnedSocket& operator=(OwnedSocket&&) = delete;
    ~OwnedSocket() { Close(); }

    void Close() {
        if (*this)
            closesocket(std::exchange(socket_, INVALID_SOCKET));
    }

    SOCKET Get() const { return socket_; }
    explicit operator bool() const { return socket_ != INVALID_SOCKET; }
    template <typename Value>
    bool Set(int level, int option, Value value) const {
        return setsockopt(socket_, level, option, reinterpret_cast<const char*>(&value), sizeof value) == 0;
    }

private:
    std::unique_ptr<SocketLibrary> library_;
    SOCKET socket_ = INVALID_SOCKET;
};

/// Owns one event object.  Any thread may set it and wait for it.
class OwnedEvent {
public:
    OwnedEvent() : event_(WSACreateEvent()) {}
    ~OwnedEvent() {
        if (*this)
            WSACloseEvent(event_);
    }
    OwnedEvent(const OwnedEvent&) = delete;
    OwnedEvent& operator=(const OwnedEvent&) = delete;

    WSAEVENT Get() const { return event_; }
    explicit operator bool() const { return event_ != WSA_INVALID_EVENT; }

private:
    const WSAEVENT event_;
};

template <typename Address>
bool BindTo(const OwnedSocket& socket, const Address& address) {
    return bind(socket.Get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// Binds an IPv6 socket that also receives IPv4.  If that fails, `lacksIPv6` is true if the machine has no
/// IPv6, and false if the port is in use or not allowed.
OwnedSocket BindDualStack(std::uint16_t port, bool& lacksIPv6) {
    OwnedSocket bound(AF_INET6);
    lacksIPv6 = !bound || !bound.Set(IPPROTO_IPV6, IPV6_V6ONLY, DWORD{0});
    if (lacksIPv6)
        return {};
    // Without this option, another program could bind the same port and take it over.
    bound.Set(SOL_SOCKET, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    if (BindTo(bound, address))
        return bound;
    const int error = WSAGetLastError();
    lacksIPv6 = error == WSAEADDRNOTAVAIL || error == WSAEAFNOSUPPORT;
    return {};
}

OwnedSocket Bind(std::uint16_t port) {
    bool lacksIPv6 = false;
    OwnedSocket both = BindDualStack(port, lacksIPv6);
    if (!lacksIPv6)
        return both;
    OwnedSocket old(AF_INET);
    if (!old)
        return {};
    old.Set(SOL_SOCKET, SO_EXCLUSIVEADDRUSE, BOOL{TRUE});
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (!BindTo(old, address))
        return {};
    return old;
}

/// Owns a bound socket, and a pump thread that moves datagrams from it into the inbox at once, since the
/// receive buffer of a socket is small.  Only the reader's thread may use it.
class WindowsDatagramReceiver final : public DatagramReceiver {
public:
    WindowsDatagramReceiver(OwnedSocket socket, std::function<void()> wake)
        : socket_(std::move(socket)), inbox_(MostWaiting, std::move(wake)) {
        // IPv4 and IPv6 addresses have the port at the same offset.
        sockaddr_in6 address{};
        int size = sizeof address;
        getsockname(socket_.Get(), reinterpret_cast<sockaddr*>(&address), &size);
        port_ = ntohs(address.sin6_port);
    }
    ~WindowsDatagramReceiver() override { WindowsDatagramReceiver::Stop(); }
    WindowsDatagramReceiver(const WindowsDatagramReceiver&) = delete;
    WindowsDatagramReceiver& operator=(const WindowsDatagramReceiver&) = delete;

    /// Starts the pump thread.  Returns false if an event object could not be created or used for the socket.
    bool Start() {
        if (!stop_ || !readable_ || WSAEventSelect(socket_.Get(), readable_.Get(), FD_READ) != 0)
            return false;
        pump_ = std::thread([this] { Pump(); });
        return true;
    }

    std::uint16_t Port() const override { return port_; }
    void Stop() override {
        WSASetEvent(stop_.Get());
        if (pump_.joinable())
            pump_.join();
        socket_.Close();
    }
    std::optional<std::string_view> Next() override { return inbox_.Next(); }
    bool HasWaiting() override { return inbox_.HasWaiting(); }
    DatagramLosses Losses() const override { return {.NoRoom = inbox_.NoRoom(), .BySystem = std::nullopt}; }

private:
    /// Waits for events, since a thread that is blocked in recvfrom cannot be ended reliably.
    void Pump() {
        const std::array<WSAEVENT, 2> events{stop_.Get(), readable_.Get()};
        while (WSAWaitForMultipleEvents(2, events.data(), FALSE, WSA_INFINITE, FALSE) != WSA_WAIT_EVENT_0) {
            WSAResetEvent(readable_.Get());
            if (!Drain())
                break;
        }
        // Takes the datagrams that the socket still holds, but within limits, so that a flood cannot keep the
        // thread running.
        const auto end = std::chrono::steady_clock::now() + LongestStop;
        for (std::size_t i = 0; i < LastDatagrams && std::chrono::steady_clock::now() < end; ++i) {
            if (TakeOne() == WSAEWOULDBLOCK)
                return;
        }
    }

    /// Receives all waiting datagrams.  Returns false if Stop was called.
    bool Drain() {
        while (true) {
            const int error = TakeOne();
            if (error == WSAEWOULDBLOCK)
                return true;
            // Any other error may be temporary, so the loop waits before it tries again.
            constexpr DWORD ErrorDelayMilliseconds = 10;
            if (WaitForSingleObject(stop_.Get(), error == 0 ? 0 : ErrorDelayMilliseconds) == WAIT_OBJECT_0)
                return false;
        }
    }

    /// Receives one datagram.  Returns 0 or the error, which is WSAEWOULDBLOCK if none is waiting.
    int TakeOne() {
        const int length =
            recvfrom(socket_.Get(), buffer_.data(), static_cast<int>(buffer_.size()), 0, nullptr, nullptr);
        if (length < 0)
            return WSAGetLastError();
        inbox_.Put(std::array{std::string_view(buffer_.data(), static_cast<std::size_t>(length))});
        return 0;
    }

    OwnedSocket socket_;
    std::uint16_t port_ = 0;
    const OwnedEvent stop_;
    const OwnedEvent readable_;
    std::vector<char> buffer_ = std::vector<char>(DatagramQueue::LargestText);
    DatagramInbox inbox_;
    std::thread pump_;
};

struct AddressDeleter {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, AddressDeleter>;

/// Returns the addresses of the host, or null if its name cannot be resolved.
Addresses Resolve(const std::string& host, std::int32_t port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list) != 0)
        return nullptr;
    return Addresses(list);
}

bool IsRefusal(int error) {
    return error == WSAECONNRESET || error == WSAECONNREFUSED;
}

/// Owns a connected socket.  The system reports ICMP errors only for connected sockets.
class WindowsDatagramSender final : public DatagramSender {
public:
    explicit WindowsDatagramSender(OwnedSocket socket) : socket_(std::move(socket)) {}

    std::size_t SendBatch(std::span<const std::string_view> texts) override {
        std::size_t sent = 0;
        while (sent < texts.size() && SendOne(texts[sent]))
            ++sent;
        return sent;
    }

    bool Refused() override {
        refused_ = refused_ || IsRefusal(ReadError()) || IsRefusal(SocketError());
        return refused_;
    }

private:
    /// Tries to receive, since Windows reports an ICMP error only to a receive call.  Returns the error, or
    /// 0.
    int ReadError() const {
        u_long unblocked = 1;
        u_long blocked = 0;
        std::array<char, 1> answer{};
        ioctlsocket(socket_.Get(), static_cast<long>(FIONBIO), &unblocked);
        const int length = recv(socket_.Get(), answer.data(), static_cast<int>(answer.size()), 0);
        const int error = length < 0 ? WSAGetLastError() : 0;
        ioctlsocket(socket_.Get(), static_cast<long>(FIONBIO), &blocked);
        return error;
    }

    /// Returns the value of SO_ERROR, in which Wine reports an ICMP error.
    int SocketError() const {
        int error = 0;
        int size = sizeof error;
        getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
        return error;
    }

    bool SendOne(std::string_view text) {
        if (text.size() > DatagramQueue::LargestText)
            return false;
        const int sent = send(socket_.Get(), text.data(), static_cast<int>(text.size()), 0);
        refused_ = refused_ || (sent < 0 && IsRefusal(WSAGetLastError()));
        return sent == static_cast<int>(text.size());
    }

    const OwnedSocket socket_;
    bool refused_ = false;
};

/// Owns a SocketLibrary, because Resolve needs one before any socket exists.
class WindowsDatagramSockets final : public DatagramSockets {
public:
    std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) override {
        if (!IsUdpPort(port))
            return nullptr;
        OwnedSocket bound = Bind(static_cast<std::uint16_t>(port));
        if (!bound)
            return nullptr;
        bound.Set(SOL_SOCKET, SO_RCVBUF, int{64 << 20});
        // Unless SIO_UDP_CONNRESET is off, recvfrom fails whenever an ICMP error arrives for a datagram that
        // was sent from this port.
        DWORD done = 0;
        BOOL off = FALSE;
        WSAIoctl(bound.Get(), SIO_UDP_CONNRESET, &off, sizeof off, nullptr, 0, &done, nullptr, nullptr);
        auto receiver = std::make_unique<WindowsDatagramReceiver>(std::move(bound), std::move(wake));
        return receiver->Start() ? std::move(receiver) : nullptr;
    }

    std::unique_ptr<DatagramSender> Open(const std::string& host, std::int32_t port) override {
        if (!IsUdpPort(port) || port == 0)
            return nullptr;
        const Addresses addresses = Resolve(host, port);
        for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next) {
            OwnedSocket connected(address->ai_family);
            if (connected &&
                connect(connected.Get(), address->ai_addr, static_cast<int>(address->ai_addrlen)) == 0)
                return std::make_unique<WindowsDatagramSender>(std::move(connected));
        }
        return nullptr;
    }

private:
    const SocketLibrary library_;
};

}  // namespace

std::unique_ptr<DatagramSockets> MakeDatagramSockets() {
    return std::make_unique<WindowsDatagramSockets>();
}

}  // namespace tallyhorn
