#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/MailslotTransport.h"

namespace tallyhorn {

/// Mailslots as datagram sockets in a folder that only this user may enter; a socket's lock file holds its
/// maximum size for the senders to read.
/// Owns nothing but the folder's name; any one thread may call it.
class LinuxMailslotTransport final : public MailslotTransport {
public:
    explicit LinuxMailslotTransport(std::string folder);

    /// Null too where the folder is not private.
    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override;
    std::unique_ptr<MailslotClient> Open(std::string_view path) override;

private:
    std::string LockPath(std::string_view name) const;

    const std::string folder_;
};

}  // namespace tallyhorn
