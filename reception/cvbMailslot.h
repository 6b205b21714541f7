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

/// The mailslot that the engine sends to, and the console reads.
inline constexpr std::string_view EngineMailslotName = "TallyhornEngine";

/// A part of a long text that could not be written; the parts before it are on their way.
class MailslotWriteError : public std::runtime_error {
public:
    static constexpr int Number = 1;
    using std::runtime_error::runtime_error;
};

/// Owns one mailslot, open for reading (server mode) or for sending, and the store in which texts that come
/// in parts are put together. Called from the user-interface thread.
class cvbMailslot {
public:
    /// No datagram is longer, header and terminating NUL included.
    static constexpr std::size_t MaximumMessageSize = 401;

    /// Both outlive the object.
    cvbMailslot(MailslotTransport& transport, const Clock& clock);
    ~cvbMailslot();
    cvbMailslot(const cvbMailslot&) = delete;
    cvbMailslot& operator=(const cvbMailslot&) = delete;

    /// What InitializeMailslot asked for, whether or not it succeeded.
    bool ServerModeActive() const { return serverMode_; }
    const std::string& MailslotName() const { return mailslotName_; }
    /// -1 where nothing is open.
    std::int32_t Handle() const;
    bool InitializeMailslot(std::string_view mailslotName, bool initServer);
    /// Sends a text of at most 400 bytes as it is, without a NUL; a longer one in parts, each with its NUL,
    /// and then the result is true or a MailslotWriteError is thrown.
    bool SendMessage(std::string_view message);
    /// Number of datagrams that wait, at most 32767; 0 where the mailslot does not answer.
    std::int16_t CheckForMessages();
    void Terminate();
    /// Reads what CheckForMessages counts: puts whole texts and then those put together from parts at
    /// `messages` 1 to N and returns N; `messages` 0 is empty.  A failing read ends it with 0, and the texts
    /// before it stay in `messages`.  Hand in the same vector again to use its memory again.
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
