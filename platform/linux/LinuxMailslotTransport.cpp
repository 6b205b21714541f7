#include "platform/linux/LinuxMailslotTransport.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/LinuxMailslotServer.h"
#include "platform/linux/MailslotFolder.h"
#include "platform/linux/SocketAddress.h"

namespace tallyhorn {
namespace {

constexpr mode_t OwnerOnly = 0600;
/// The size of a sender's buffer; the system reduces it to its own limit.
constexpr int SendBuffer = 1 << 20;

/// Returns the socket address of the path, or nothing if the path is too long for one.
std::optional<sockaddr_un> AddressOf(const std::string& path) {
    sockaddr_un address{};
    if (path.size() >= sizeof address.sun_path)
        return std::nullopt;
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    return address;
}

FileDescriptor MakeSocket() {
    return FileDescriptor(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0));
}

bool PublishSize(int lock, std::size_t size) {
    const std::string text = std::to_string(size);
    return ftruncate(lock, 0) == 0 &&
           pwrite(lock, text.data(), text.size(), 0) == static_cast<ssize_t>(text.size());
}

std::optional<std::size_t> PublishedSize(const std::string& lockPath) {
    const FileDescriptor lock(open(lockPath.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    std::array<char, 16> text{};
    const ssize_t length = lock ? read(lock.Get(), text.data(), text.size()) : 0;
    std::size_t size = 0;
    if (length <= 0 || std::from_chars(text.data(), text.data() + length, size).ec != std::errc{})
        return std::nullopt;
    return size;
}

/// Removes the socket that a crashed server left behind.  Returns false if `path` is another kind of file.
bool RemoveStaleSocket(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0)
        return true;
    return S_ISSOCK(status.st_mode) && unlink(path.c_str()) == 0;
}

/// Owns the socket that sends to one mailslot, and refuses texts that are longer than the mailslot's maximum.
class LinuxMailslotClient final : public MailslotClient {
public:
    LinuxMailslotClient(FileDescriptor socket, std::size_t maximumSize)
        : socket_(std::move(socket)), maximumSize_(maximumSize) {}

    std::int32_t Handle() const override { return socket_.Get(); }

    bool Write(std::string_view text) override {
        if (text.size() > maximumSize_)
            return false;
        return send(socket_.Get(), text.data(), text.size(), MSG_NOSIGNAL) ==
               static_cast<ssize_t>(text.size());
    }

private:
    const FileDescriptor socket_;
    const std::size_t maximumSize_;
};

}  // namespace

LinuxMailslotTransport::LinuxMailslotTransport(std::string folder) : folder_(std::move(folder)) {}

std::unique_ptr<MailslotServer> LinuxMailslotTransport::Create(std::string_view path,
                                                               std::size_t maximumSize) {
    const std::optional<std::string_view> name = MailslotNameFromPath(path);
    if (!name || maximumSize == 0 || maximumSize > LargestSize || !PrepareMailslotFolder(folder_))
        return nullptr;
    const std::string socketPath = folder_ + '/' + std::string(*name);
    const std::optional<sockaddr_un> address = AddressOf(socketPath);
    if (!address)
        return nullptr;

    // The lock reserves the name, so no other process can execute the following steps for this name at the
    // same time.
    bool reachable = false;
    FileDescriptor lock = TakeLock(LockPath(*name), reachable);
    if (!lock || !RemoveStaleSocket(socketPath) || !PublishSize(lock.Get(), maximumSize))
        return nullptr;
    FileDescriptor bound = MakeSocket();
    if (!bound || fchmod(bound.Get(), OwnerOnly) != 0 ||
        bind(bound.Get(), AsSockaddr(*address), sizeof *address) != 0)
        return nullptr;
    return std::make_unique<LinuxMailslotServer>(std::move(lock), std::move(bound), socketPath, maximumSize);
}

std::unique_ptr<MailslotClient> LinuxMailslotTransport::Open(std::string_view path) {
    const std::optional<std::string_view> name = MailslotNameFromPath(path);
    if (!name || !IsPrivateFolder(folder_))
        return nullptr;
    const std::optional<sockaddr_un> address = AddressOf(folder_ + '/' + std::string(*name));
    FileDescriptor connected = MakeSocket();
    if (!address || !connected || connect(connected.Get(), AsSockaddr(*address), sizeof *address) != 0)
        return nullptr;
    // Must follow connect: a server publishes its maximum size before it binds its socket, so the size read
    // now is that of the connected server.
    const std::optional<std::size_t> size = PublishedSize(LockPath(*name));
    if (!size)
        return nullptr;
    setsockopt(connected.Get(), SOL_SOCKET, SO_SNDBUF, &SendBuffer, sizeof SendBuffer);
    return std::make_unique<LinuxMailslotClient>(std::move(connected), *size);
}

std::string LinuxMailslotTransport::LockPath(std::string_view name) const {
    return folder_ + "/.mailslot-" + std::string(name);
}

std::unique_ptr<MailslotTransport> MakeMailslotTransport(const std::string& folder) {
    return std::make_unique<LinuxMailslotTransport>(folder.empty() ? UserMailslotFolder() : folder);
}

}  // namespace tallyhorn
