#include "platform/DatagramSockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <optional>
#include <utility>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxDatagramReceiver.h"
#include "platform/linux/SocketAddress.h"

namespace tallyhorn {
namespace {

FileDescriptor MakeSocket(int family) {
    return FileDescriptor(socket(family, SOCK_DGRAM | SOCK_CLOEXEC, 0));
}

/// Binds an IPv6 socket that also receives IPv4.  If that fails, `lacksIPv6` is true if the machine has no
/// IPv6, and false if the port is in use or not allowed.
FileDescriptor BindDualStack(std::uint16_t port, bool& lacksIPv6) {
    FileDescriptor bound = MakeSocket(AF_INET6);
    const int off = 0;
    lacksIPv6 = !bound || setsockopt(bound.Get(), IPPROTO_IPV6, IPV6_V6ONLY, &off, sizeof off) != 0;
    if (lacksIPv6)
        return {};
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    if (bind(bound.Get(), AsSockaddr(address), sizeof address) == 0)
        return bound;
    lacksIPv6 = errno == EADDRNOTAVAIL || errno == EAFNOSUPPORT;
    return {};
}

FileDescriptor BindIPv4(std::uint16_t port) {
    FileDescriptor bound = MakeSocket(AF_INET);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    return bound && bind(bound.Get(), AsSockaddr(address), sizeof address) == 0 ? std::move(bound)
                                                                                : FileDescriptor();
}

FileDescriptor Bind(std::uint16_t port) {
    bool lacksIPv6 = false;
    FileDescriptor both = BindDualStack(port, lacksIPv6);
    return lacksIPv6 ? BindIPv4(port) : std::move(both);
}

/// Returns the port to which the socket is bound.  IPv4 and IPv6 addresses have the port at the same offset.
std::uint16_t BoundPort(int socket) {
    sockaddr_in6 address{};
    socklen_t size = sizeof address;
    if (getsockname(socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        return 0;
    return ntohs(address.sin6_port);
}

/// Requests a receive buffer of 1 GiB, which the system reduces to its limit.  The unused part of the buffer
/// occupies no memory.
void AskForLargestBuffer(int socket) {
    const int size = 1 << 30;
    setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &size, sizeof size);
}

struct AddressDeleter {
    void operator()(addrinfo* list) const { freeaddrinfo(list); }
};
using Addresses = std::unique_ptr<addrinfo, AddressDeleter>;

/// Returns the addresses of the host, or null if its name cannot be resolved.
Addresses Resolve(const std::string& host, std::int32_t port) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), &hints, &list) != 0)
        return nullptr;
    return Addresses(list);
}

/// Owns a connected socket.  The system reports ICMP errors only for connected sockets.
class LinuxDatagramSender final : public DatagramSender {
public:
    explicit LinuxDatagramSender(FileDescriptor socket) : socket_(std::move(socket)) {}

    std::size_t SendBatch(std::span<const std::string_view> texts) override {
        std::size_t sent = 0;
        while (sent < texts.size()) {
            const std::size_t part = SendPart(texts.subspan(sent));
            if (part == 0)
                break;
            sent += part;
        }
        return sent;
    }

    bool Refused() override {
        int error = 0;
        socklen_t size = sizeof error;
        if (getsockopt(socket_.Get(), SOL_SOCKET, SO_ERROR, &error, &size) == 0)
            refused_ = refused_ || error == ECONNREFUSED;
        return refused_;
    }

private:
    /// Sends up to 64 datagrams by one system call, and returns how many the system accepted.
    std::size_t SendPart(std::span<const std::string_view> texts) {
        constexpr std::size_t Most = 64;
        std::array<iovec, Most> vectors{};
        std::array<mmsghdr, Most> messages{};
        const std::size_t count = std::min(texts.size(), Most);
        for (std::size_t i = 0; i < count; ++i) {
            // iovec has no const pointer, but sendmmsg does not write to the text.
            vectors[i] = {.iov_base = const_cast<char*>(texts[i].data()), .iov_len = texts[i].size()};
            messages[i].msg_hdr.msg_iov = &vectors[i];
            messages[i].msg_hdr.msg_iovlen = 1;
        }
        int sent = -1;
        do {
            sent = sendmmsg(socket_.Get(), messages.data(), static_cast<unsigned>(count), MSG_NOSIGNAL);
        } while (sent < 0 && errno == EINTR);
        refused_ = refused_ || (sent < 0 && errno == ECONNREFUSED);
        return sent < 0 ? 0 : static_cast<std::size_t>(sent);
    }

    const FileDescriptor socket_;
    bool refused_ = false;
};

class LinuxDatagramSockets final : public DatagramSockets {
public:
    std::unique_ptr<DatagramReceiver> Listen(std::int32_t port, std::function<void()> wake) override {
        if (!IsUdpPort(port))
            return nullptr;
        FileDescriptor bound = Bind(static_cast<std::uint16_t>(port));
        FileDescriptor stop(eventfd(0, EFD_CLOEXEC));
        if (!bound || !stop)
            return nullptr;
        AskForLargestBuffer(bound.Get());
        const std::uint16_t boundPort = BoundPort(bound.Get());
        return std::make_unique<LinuxDatagramReceiver>(std::move(bound), std::move(stop), boundPort,
                                                       std::move(wake));
    }

    std::unique_ptr<DatagramSender> Open(const std::string& host, std::int32_t port) override {
        if (!IsUdpPort(port) || port == 0)
            return nullptr;
        const Addresses addresses = Resolve(host, port);
        for (const addrinfo* address = addresses.get(); address != nullptr; address = address->ai_next) {
            FileDescriptor connected = MakeSocket(address->ai_family);
            if (connected && connect(connected.Get(), address->ai_addr, address->ai_addrlen) == 0)
                return std::make_unique<LinuxDatagramSender>(std::move(connected));
        }
        return nullptr;
    }
};

}  // namespace

std::unique_ptr<DatagramSockets> MakeDatagramSockets() {
    return std::make_unique<LinuxDatagramSockets>();
}

}  // namespace tallyhorn
