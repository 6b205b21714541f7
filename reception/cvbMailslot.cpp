#include "reception/cvbMailslot.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace tallyhorn {
namespace {

constexpr std::int32_t NoHandle = -1;
constexpr std::int16_t LastMessageNumber = 30000;
/// The length of a part without its header; part 0 is one character shorter.
constexpr std::size_t PartLength = 385;

/// Returns the text before the buffer's first NUL.
template <typename Buffer>
std::string_view TextIn(const Buffer& buffer) {
    const std::string_view all(buffer.data(), buffer.size());
    return all.substr(0, all.find('\0'));
}

/// Returns the next string of `messages`, which keeps the memory of the text that it held before.
std::string& Place(std::vector<std::string>& messages, std::size_t& placed) {
    if (++placed == messages.size())
        messages.emplace_back();
    return messages[placed];
}

/// Returns the characters of part `index` of the parts 0 to `last`; the last part may be empty.
std::string_view PartOf(std::string_view message, std::size_t index, std::size_t last) {
    const std::size_t start = index == 0 ? 0 : PartLength * index - 1;
    if (start >= message.size())
        return {};
    if (index == last)
        return message.substr(start);
    return message.substr(start, index == 0 ? PartLength - 1 : PartLength);
}

}  // namespace

cvbMailslot::cvbMailslot(MailslotTransport& transport, const Clock& clock)
    : transport_(transport), clock_(clock) {}

cvbMailslot::~cvbMailslot() {
    Terminate();
}

std::int32_t cvbMailslot::Handle() const {
    if (server_ != nullptr)
        return server_->Handle();
    return client_ != nullptr ? client_->Handle() : NoHandle;
}

bool cvbMailslot::InitializeMailslot(std::string_view mailslotName, bool initServer) {
    Terminate();
    serverMode_ = initServer;
    mailslotName_ = mailslotName;
    const std::string path = std::string(MailslotPrefix) + mailslotName_;
    try {
        if (initServer)
            server_ = transport_.Create(path, MaximumMessageSize);
        else
            client_ = transport_.Open(path);
    } catch (const std::exception&) {
        return false;
    }
    return server_ != nullptr || client_ != nullptr;
}

bool cvbMailslot::SendMessage(std::string_view message) {
    messageCounter_ = messageCounter_ < LastMessageNumber ? static_cast<std::int16_t>(messageCounter_ + 1)
                                                          : std::int16_t{1};
    if (message.size() < MaximumMessageSize)
        return client_ != nullptr && client_->Write(message);
    SendInParts(message);
    return true;
}

void cvbMailslot::SendInParts(std::string_view message) const {
    // compatibility: the quotient is rounded to the nearest integer.  If it is rounded up, the last part is
    // empty.  No quotient ends in exactly one half, because PartLength is odd.
    const std::size_t last = (message.size() + PartLength / 2) / PartLength;
    for (std::size_t index = 0; index <= last; ++index) {
        std::string datagram = '*' + std::to_string(messageCounter_) + '-' + std::to_string(index) + '-' +
                               std::to_string(last) + '-';
        datagram += PartOf(message, index, last);
        datagram += '\0';
        if (client_ == nullptr || !client_->Write(datagram))
            throw MailslotWriteError("A part of a long text could not be written to the mailslot.");
    }
}

std::int16_t cvbMailslot::CheckForMessages() {
    MailslotInfo info;
    if (server_ == nullptr || !server_->GetInfo(info))
        return 0;
    constexpr std::size_t Most = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(info.Waiting, Most));
}

void cvbMailslot::Terminate() {
    server_.reset();
    client_.reset();
}

std::int16_t cvbMailslot::ReadMessages(std::vector<std::string>& messages) {
    const std::int16_t count = CheckForMessages();
    fragments_.Reset();
    if (messages.empty())
        messages.emplace_back();
    messages.front().clear();
    std::size_t placed = 0;
    const bool complete = ReadWaiting(count, messages, placed);
    if (complete) {
        fragments_.Collect([&](std::string&& text) { Place(messages, placed) = std::move(text); });
        fragments_.Expire(clock_.Now());
    }
    messages.resize(placed + 1);
    return complete ? static_cast<std::int16_t>(placed) : std::int16_t{0};
}

/// Reads `count` datagrams.  Returns false if a read failed.
bool cvbMailslot::ReadWaiting(std::int16_t count, std::vector<std::string>& messages, std::size_t& placed) {
    ReadBuffer buffer{};
    for (std::int16_t i = 0; i < count; ++i) {
        if (!ReadNext(buffer))
            return false;
        const std::string_view text = TextIn(buffer);
        if (text.starts_with('*'))
            fragments_.Add(text, clock_.Now());
        else
            Place(messages, placed).assign(text);
        // compatibility: if the next text has no NUL, the buffer's old bytes are read as its continuation:
        // the rest of this text, if this one is longer, and then these blanks.
        std::fill(buffer.begin() + static_cast<std::ptrdiff_t>(text.size()), buffer.end(), ' ');
    }
    return true;
}

/// Reads one datagram into the start of `buffer` and leaves the bytes after it unchanged.
bool cvbMailslot::ReadNext(ReadBuffer& buffer) {
    MailslotInfo info;
    std::size_t read = 0;
    if (!server_->GetInfo(info))
        return false;
    return server_->Read(std::span(buffer).first(std::min(info.NextSize, buffer.size())), read);
}

}  // namespace tallyhorn
