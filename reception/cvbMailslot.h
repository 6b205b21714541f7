#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Clock.h"
#include "platform/MailslotTransport.h"
#include "reception/FragmentStore.h"

namespace tallyhorn {

/// The name of the mailslot to which the engine sends and from which the console reads.
inline constexpr std::string_view EngineMailslotName = "TallyhornEngine";

/// Thrown if a part of a long text could not be written; the parts before it have been sent.
class MailslotWriteError : public std::runtime_error {
public:
    static constexpr int Number = 1;
    using std::runtime_error::runtime_error;
};

/// Owns one mailslot, open for reading (server mode) or for sending, and the store that joins texts that
/// arrive in parts.
class cvbMailslot {
public:
    /// The most bytes of a datagram, including its header and terminating NUL.
    static constexpr std::size_t MaximumMessageSize = 401;

    /// Both arguments must outlive this object.
    cvbMailslot(MailslotTransport& transport, const Clock& clock);
    ~cvbMailslot();
    cvbMailslot(const cvbMailslot&) = delete;
    cvbMailslot& operator=(const cvbMailslot&) = delete;

    /// Return the arguments of the last call of InitializeMailslot, even if it failed.
    bool ServerModeActive() const { return serverMode_; }
    const std::string& MailslotName() const { return mailslotName_; }
    /// Returns the system's handle of the open mailslot, or -1 if none is open.
    std::int32_t Handle() const;
    bool InitializeMailslot(std::string_view mailslotName, bool initServer);
    /// Sends a text of at most 400 bytes as it is, without a NUL, and returns whether that succeeded.  Sends
    /// a longer text in parts, each ended by a NUL, and returns true or throws MailslotWriteError.
    bool SendMessage(std::string_view message);
    /// Returns the number of waiting datagrams, at most 32767, or 0 if the mailslot cannot be queried.
    std::int16_t CheckForMessages();
    void Terminate();
    /// Reads as many datagrams as CheckForMessages counts and returns the number N of complete texts.  Puts
    /// an empty text at index 0 of `messages`, and at the indexes 1 to N first the texts that arrived whole,
    /// then those joined from parts.  If a read fails, returns 0 at once and leaves the texts read so far in
    /// `messages`.  Passing the same vector again reuses its memory.
    std::int16_t ReadMessages(std::vector<std::string>& messages);

private:
    using ReadBuffer = std::array<char, MaximumMessageSize>;

    void SendInParts(std::string_view message) const;
    bool ReadNext(ReadBuffer& buffer);
    bool ReadWaiting(std::int16_t count, std::vector<std::string>& messages, std::size_t& placed);

    MailslotTransport& transport_;
    const Clock& clock_;
    std::unique_ptr<MailslotServer> server_;
    std::unique_ptr<MailslotClient> client_;
    std::string mailslotName_;
    bool serverMode_ = false;
    std::int16_t messageCounter_ = 0;
    FragmentStore fragments_;
};

}  // namespace tallyhorn
