#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tallyhorn {

inline constexpr std::string_view MailslotPrefix = R"(\\.\mailslot\)";

/// Returns NAME for the path `\\.\mailslot\NAME`.  Returns nothing for any other path, or if NAME is invalid:
/// empty, beginning with a dot, or containing a slash, a backslash or a NUL.
std::optional<std::string_view> MailslotNameFromPath(std::string_view path);

/// The state of a mailslot; sizes are in bytes.
struct MailslotInfo {
    std::size_t MaximumSize = 0;
    std::size_t NextSize = 0;  ///< the size of the text that Read returns next, or 0 if none is waiting
    std::size_t Waiting = 0;   ///< the number of waiting texts
};

/// The receiving end of a mailslot: owns its name and all waiting texts.  No function blocks.
class MailslotServer {
public:
    virtual ~MailslotServer() = default;
    /// Returns the descriptor or handle that the system assigned to the mailslot.
    virtual std::int32_t Handle() const = 0;
    /// Sets `info`.  Returns false if the mailslot cannot be queried.
    virtual bool GetInfo(MailslotInfo& info) = 0;
    /// Moves the oldest text to `buffer` and sets `read` to its size.  Returns false if no text is waiting,
    /// or if `buffer` is too small; the text then stays.
    virtual bool Read(std::span<char> buffer, std::size_t& read) = 0;
};

/// The sending end of a mailslot.  For one thread at a time; several clients may send to one mailslot at
/// once.
class MailslotClient {
public:
    virtual ~MailslotClient() = default;
    virtual std::int32_t Handle() const = 0;
    /// Sends `text` as one datagram, and waits while the mailslot has no room.  Returns false, with nothing
    /// sent, if the text is longer than the mailslot's maximum, the server no longer exists, or a signal
    /// interrupted the wait.
    virtual bool Write(std::string_view text) = 0;
};

/// Creates and opens mailslots by their path, `\\.\mailslot\NAME`.  The returned objects close their mailslot
/// when they are destroyed, and may outlive this object.  For one thread at a time.
class MailslotTransport {
public:
    /// The largest `maximumSize` of a mailslot.
    static constexpr std::size_t LargestSize = 65536;

    virtual ~MailslotTransport() = default;
    /// Creates a mailslot for texts of up to `maximumSize` bytes.  Returns null if the name is in use or
    /// invalid, or `maximumSize` is 0 or over LargestSize.
    virtual std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) = 0;
    /// Opens a mailslot for sending.  Returns null if it does not exist.
    virtual std::unique_ptr<MailslotClient> Open(std::string_view path) = 0;
};

/// Returns the back end for this operating system.  On Linux, mailslots are sockets in `folder`, or in the
/// user's mailslot folder if `folder` is empty; with different folders, two consoles can run side by side.
/// Windows ignores `folder`.
std::unique_ptr<MailslotTransport> MakeMailslotTransport(const std::string& folder = {});

}  // namespace tallyhorn
