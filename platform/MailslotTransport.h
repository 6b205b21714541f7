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

/// The name at the end of a mailslot's path.  Nothing for another path, an empty name, one that starts with a
/// dot or one that holds a slash, a backslash or a NUL: no transport takes those.
std::optional<std::string_view> MailslotNameFromPath(std::string_view path);

/// What a mailslot tells of itself; sizes in bytes.
struct MailslotInfo {
    std::size_t MaximumSize = 0;
    std::size_t NextSize = 0;  ///< of the text that Read gives next; 0 where none waits
    std::size_t Waiting = 0;   ///< number of texts
};

/// The receiving end of a mailslot: owns the name as long as it lives, and every text that waits.
/// Called from the user-interface thread alone; nothing here ever blocks.
class MailslotServer {
public:
    virtual ~MailslotServer() = default;
    /// The system's own number for the open mailslot.
    virtual std::int32_t Handle() const = 0;
    virtual bool GetInfo(MailslotInfo& info) = 0;
    /// Takes the oldest text; false, and the text stays, where none waits or `buffer` is too short for it.
    virtual bool Read(std::span<char> buffer, std::size_t& read) = 0;
};

/// The sending end of a mailslot that somebody else reads.
/// One thread at a time; several clients may send to one mailslot at once.
class MailslotClient {
public:
    virtual ~MailslotClient() = default;
    virtual std::int32_t Handle() const = 0;
    /// Sends `text` as one datagram, whole or not at all; false where it is longer than the mailslot takes,
    /// the reader is gone or a signal came while waiting for room.
    virtual bool Write(std::string_view text) = 0;
};

/// Creates and opens mailslots by their path, `\\.\mailslot\NAME`; what it returns closes itself.
/// Called from any one thread; the objects that it makes do not need it any more.
class MailslotTransport {
public:
    /// The longest text that a mailslot can be created for.
    static constexpr std::size_t LargestSize = 65536;

    virtual ~MailslotTransport() = default;
    /// Null where the name is taken or no name, or `maximumSize` is 0 or over LargestSize.
    virtual std::unique_ptr<MailslotServer> Create(std::string_view path, std::size_t maximumSize) = 0;
    /// Null where nobody has created the mailslot.
    virtual std::unique_ptr<MailslotClient> Open(std::string_view path) = 0;
};

/// The system's own mailslots.  `folder` stands in for the user's mailslot folder on a system that keeps
/// mailslots in one (so that two consoles can live side by side); elsewhere it means nothing.
std::unique_ptr<MailslotTransport> MakeMailslotTransport(const std::string& folder = {});

}  // namespace tallyhorn
