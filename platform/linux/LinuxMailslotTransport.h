#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/MailslotTransport.h"

namespace tallyhorn {

/// Implements mailslots as Unix datagram sockets in a folder that only this user may enter.  The lock file of
/// a mailslot contains its maximum size, which the clients read.
class LinuxMailslotTransport final : public MailslotTransport {
public:
    explicit LinuxMailslotTransport(std::string folder);

    /// Also returns null if other users may enter the folder.
    std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) override;
    std::unique_ptr<MailslotClient> Open(std::string_view path) override;

private:
    std::string LockPath(std::string_view name) const;

    const std::string folder_;
};

}  // namespace tallyhorn
